#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/EditContext.h"
#include "changes/Apply.h"

// The label of the edit that puts a file's library in place of another.
constexpr const char* c_szOpenLabel = "Open";

// What holds on to effects and prefabs in the program: views, the active prefab, the clipboard.
class CLibraryOwner : public ILibraryOwner
{
public:
    explicit CLibraryOwner(CEditContext& context) : m_Context(context) {}
    void OnReleasing(const CSpell& spell) override;
    void
    OnReleasing(CEffectPropertySet& prefab) override; // a key on the clipboard takes over what it has from it

private:
    CEditContext& m_Context;
};

// What the history's first position is.
enum class EHistoryStart
{
    eNew,    // an empty library
    eOpened, // what a file held
    eCut,    // steps before it are gone
};

// The steps of the library's edits, to go back and forth among them. It keeps what the hub's recorder gives; an edit
// that has changed nothing is no step, and another library begins a new history.
class CHistory : private IEditListener
{
public:
    static constexpr size_t c_nDefaultBudget = size_t(256) << 20; // bytes

    explicit CHistory(const CApplyTarget& target);
    ~CHistory() override;
    CHistory(const CHistory&) = delete;
    CHistory& operator=(const CHistory&) = delete;

    // Steps by number from 0, the oldest first. Those below the position are done, the others taken back.
    size_t GetNumSteps() const { return m_Steps.size(); }
    size_t GetPosition() const { return m_nPosition; }
    const std::string& GetLabel(size_t nStep) const { return m_Steps[nStep].m_sLabel; } // below GetNumSteps
    const CLibraryChange& GetChange(size_t nStep) const { return *m_Steps[nStep].m_pChange; }
    EHistoryStart GetStart() const { return m_eStart; }
    bool CanUndo() const { return m_nPosition > 0; }
    bool CanRedo() const { return m_nPosition < m_Steps.size(); }

    // One step. False, the library as it was: there is none, an edit is open, memory is short, or the library isn't as
    // the step left it; this empties the history. Of the last two GetProblem tells.
    bool Undo();
    bool Redo();
    bool GoTo(size_t nPosition); // step by step; false as soon as one is

    // The position that is saved. New and opened libraries count as saved.
    void MarkSaved();
    void MarkUnsaved(); // the file holds none of them any more
    bool IsSaved() const { return m_Saved == m_nPosition; }
    std::optional<size_t> GetSavedPosition() const { return m_Saved; } // nothing: no way leads there

    // Beyond this the oldest steps go; the newest one stays.
    void SetBudget(size_t nBytes);
    size_t GetMemory() const { return m_nMemory; } // bytes, about

    // Why the history is empty, or the last step back or forth did nothing, until the next one; empty when all is well.
    const std::string& GetProblem() const { return m_sProblem; }

    // Begins anew, with what is there now: before what the steps stand on goes. What is saved stays so.
    void Forget();

    // Told behind each change of what stands above, a problem among them. It opens no scope.
    std::function<void()> m_OnChanged;

private:
    struct CStep
    {
        std::string m_sLabel;
        std::shared_ptr<const CLibraryChange> m_pChange;
        size_t m_nMemory = 0;
    };

    void OnEdit(const CEdit& edit) override;
    bool Take(const CEdit& edit); // false: memory is short
    void Push(const CEdit& edit);
    void Complete(CStep& step, const CLibraryChange& change); // with what an edit adds to it
    void JoinStepBefore(const CEdit& edit);
    void DropRedo();
    void DropOldest();
    void BeginAnew(EHistoryStart eStart, const char* pszProblem);
    void SetProblem(const char* pszProblem);
    bool Do(const CStep& step, bool bBack);
    void Tell() const;

    CApplyTarget m_Target;
    std::deque<CStep> m_Steps;
    EHistoryStart m_eStart = EHistoryStart::eNew;
    size_t m_nPosition = 0;
    std::optional<size_t> m_Saved = 0;
    size_t m_nMemory = 0;
    size_t m_nBudget = c_nDefaultBudget;
    std::string m_sProblem;
    bool m_bDoing = false;
    bool m_bWalking = false; // over several steps
};
