#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/MakeOrNull.h"

// A dialog's own undo: of what was done in it since it opened, up to its OK, which is one step of the library.
class IOwnUndo
{
public:
    virtual ~IOwnUndo() = default;
    // After whatever the user has done; also when that has changed nothing. What is done in one run, as typing in one
    // box is, is one step; 0 is no run.
    virtual void NoteStep(uint64_t nRun = 0) = 0;
    // False: there is no such step.
    virtual bool Undo() = 0;
    virtual bool Redo() = 0;
};

// Keeps the states of what a dialog works on. A TState is a value, and two that are equal need no step between them.
// Without memory for one it is left out.
template <class TState>
class TOwnUndo : public IOwnUndo
{
public:
    static constexpr size_t c_nMostStates = 200; // then the oldest go

    void NoteStep(uint64_t nRun = 0) override
    {
        TryAllocating([&] { Note(GetState(), nRun); });
    }
    bool Undo() override
    {
        NoteStep();
        return m_nNow > 0 && GoTo(m_nNow - 1);
    }
    bool Redo() override
    {
        NoteStep();
        return m_nNow + 1 < m_States.size() && GoTo(m_nNow + 1);
    }

protected:
    virtual TState GetState() const = 0;
    virtual void SetState(const TState& state) = 0; // and shows it

private:
    void Note(TState state, uint64_t nRun)
    {
        if (m_States.empty())
        {
            m_States.push_back(std::move(state));
            return;
        }
        if (state == m_States[m_nNow])
            return;
        m_States.erase(m_States.begin() + static_cast<std::ptrdiff_t>(m_nNow) + 1, m_States.end());
        if (nRun != 0 && nRun == m_nRun && m_nNow > 0)
        {
            m_States.pop_back(); // where the run has come to takes its place
            --m_nNow;
        }
        m_nRun = nRun;
        if (state == m_States[m_nNow]) // back where the run began
        {
            m_nRun = 0;
            return;
        }
        m_States.push_back(std::move(state));
        ++m_nNow;
        if (m_States.size() > c_nMostStates)
        {
            m_States.erase(m_States.begin());
            --m_nNow;
        }
    }
    bool GoTo(size_t nState)
    {
        m_nRun = 0;
        m_nNow = nState;
        return TryAllocating([&] { SetState(m_States[nState]); });
    }

    std::vector<TState> m_States;
    size_t m_nNow = 0;
    uint64_t m_nRun = 0; // the last step's
};
