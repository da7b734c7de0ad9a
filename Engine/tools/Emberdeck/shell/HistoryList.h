#pragma once

#include <cstddef>
#include <string>

#include "app/History.h"

// The steps of a library's history as rows of a list, without its window. Row n stands for the position n of the
// history: the first one for what it began with, the others for the library behind that step.
class CHistoryList
{
public:
    explicit CHistoryList(const CHistory& history) : m_History(history) {} // borrowed

    size_t GetNumRows() const { return m_History.GetNumSteps() + 1; }
    size_t GetCurrent() const { return m_History.GetPosition(); }
    bool IsCurrent(size_t nRow) const { return nRow == m_History.GetPosition(); }
    bool IsUndone(size_t nRow) const { return nRow > m_History.GetPosition(); }
    bool IsSaved(size_t nRow) const { return m_History.GetSavedPosition() == nRow; }
    // "Move Keys in Campfire"; in the library's own bytes. nRow is below GetNumRows.
    std::string GetText(size_t nRow) const;
    // The same for who can't see how a row is drawn: "Move Keys in Campfire, current, saved".
    std::string GetDescription(size_t nRow) const;
    // Why the history is shorter than the work that was done; empty: it isn't, as far as is known.
    const std::string& GetProblem() const { return m_History.GetProblem(); }

private:
    const CHistory& m_History;
};
