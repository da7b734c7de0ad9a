#include "app/History.h"

#include <utility>

#include "model/MakeOrNull.h"

namespace
{

constexpr const char* c_szNotRecorded =
    "The computer ran short of memory: your last change is made, but it and those before it can't be undone.";
constexpr const char* c_szNotAsItWas = "Nothing was changed: the library isn't what this step expects. The "
                                       "steps so far can't be undone or redone.";
constexpr const char* c_szNotDone = "Nothing was changed: the computer ran short of memory. Try again.";

} // namespace

void CLibraryOwner::OnReleasing(const CSpell& spell)
{
    m_Context.m_Documents.Close(&spell);
}

void CLibraryOwner::OnReleasing(CEffectPropertySet& prefab)
{
    if (m_Context.m_Host.GetActivePrefab() == &prefab)
        m_Context.m_Host.ClearActivePrefab();
    if (CKey* pKey = m_Context.m_Clipboard.GetKey())
        pKey->DetachFromParent(&prefab);
}

CHistory::CHistory(const CApplyTarget& target) : m_Target(target)
{
    m_Target.m_Edits.AddListener(this);
}

CHistory::~CHistory()
{
    m_Target.m_Edits.RemoveListener(this);
}

void CHistory::OnEdit(const CEdit& edit)
{
    if (edit.Touches(ETouched::eLibrary))
        BeginAnew(edit.m_sLabel == c_szOpenLabel ? EHistoryStart::eOpened : EHistoryStart::eNew, "");
    else if (m_bDoing)
        return; // of its own steps it knows the change
    else if (edit.m_bRecordFailed || !Take(edit))
        BeginAnew(EHistoryStart::eCut, c_szNotRecorded);
}

bool CHistory::Take(const CEdit& edit)
{
    if (!edit.m_pChange || edit.m_pChange->IsEmpty())
        return true;
    return AllocateAll([&] { edit.m_bStep ? Push(edit) : JoinStepBefore(edit); });
}

void CHistory::DropRedo()
{
    while (CanRedo())
    {
        m_nMemory -= m_Steps.back().m_nMemory;
        m_Steps.pop_back();
    }
    if (m_Saved && *m_Saved > m_nPosition)
        m_Saved.reset();
}

void CHistory::Push(const CEdit& edit)
{
    // What is saved stays a position of its own.
    if (edit.m_bContinues && CanUndo() && !CanRedo() && !IsSaved())
    {
        Complete(m_Steps.back(), *edit.m_pChange);
        return;
    }
    DropRedo();
    const size_t nMemory = sizeof(CStep) + edit.m_pChange->GetMemory();
    m_Steps.push_back({edit.m_sLabel, edit.m_pChange, nMemory});
    m_nMemory += nMemory;
    m_nPosition = m_Steps.size();
    m_sProblem.clear();
    DropOldest();
    Tell();
}

void CHistory::Complete(CStep& step, const CLibraryChange& change)
{
    auto pJoined = std::make_shared<const CLibraryChange>(step.m_pChange->Joined(change));
    m_nMemory -= step.m_nMemory;
    step.m_pChange = std::move(pJoined);
    step.m_nMemory = sizeof(CStep) + step.m_pChange->GetMemory();
    m_nMemory += step.m_nMemory;
    DropOldest();
    Tell();
}

// What isn't a step of its own is done and undone with the one before. Without one it lies where the history begins.
// A saved library counts as saved on: it loads as what it is now.
void CHistory::JoinStepBefore(const CEdit& edit)
{
    DropRedo();
    if (m_nPosition > 0)
        Complete(m_Steps.back(), *edit.m_pChange);
    else
        Tell();
}

void CHistory::DropOldest()
{
    // What is taken back goes last, or it could never be done again.
    while (m_nMemory > m_nBudget && m_nPosition > 1)
    {
        m_nMemory -= m_Steps.front().m_nMemory;
        m_Steps.pop_front();
        --m_nPosition;
        m_eStart = EHistoryStart::eCut;
        if (m_Saved)
            m_Saved = *m_Saved > 0 ? std::optional<size_t>(*m_Saved - 1) : std::nullopt;
    }
}

void CHistory::BeginAnew(EHistoryStart eStart, const char* pszProblem)
{
    m_Steps.clear();
    m_nPosition = 0;
    m_nMemory = 0;
    m_eStart = eStart;
    m_Saved = eStart == EHistoryStart::eCut ? std::nullopt : std::optional<size_t>(0);
    SetProblem(pszProblem);
}

void CHistory::SetProblem(const char* pszProblem)
{
    TryAllocating([&] { m_sProblem = pszProblem; });
    Tell();
}

void CHistory::Forget()
{
    const bool bSaved = IsSaved();
    if (m_Steps.empty())
        return;
    BeginAnew(EHistoryStart::eCut, "");
    if (bSaved)
        MarkSaved();
}

// The step may go while it is done, with the whole history.
bool CHistory::Do(const CStep& step, bool bBack)
{
    const std::shared_ptr<const CLibraryChange> pChange = step.m_pChange;
    CLibraryChange turned;
    std::string sLabel;
    const auto prepare = [&]
    {
        sLabel = (bBack ? "Undo " : "Redo ") + step.m_sLabel;
        if (bBack)
            turned = pChange->TurnedRound();
    };
    const bool bPrepared = AllocateAll(prepare);
    m_bDoing = true;
    std::optional<CConflict> conflict;
    if (bPrepared)
        conflict = Apply(bBack ? turned : *pChange, m_Target, sLabel);
    m_bDoing = false;
    if (!bPrepared || (conflict && conflict->m_bNoMemory))
        SetProblem(c_szNotDone);
    else if (conflict)
        BeginAnew(EHistoryStart::eCut, c_szNotAsItWas);
    else
        m_sProblem.clear();
    return bPrepared && !conflict;
}

bool CHistory::Undo()
{
    if (!CanUndo() || m_Target.m_Edits.IsOpen() || !Do(m_Steps[m_nPosition - 1], true))
        return false;
    --m_nPosition;
    Tell();
    return true;
}

bool CHistory::Redo()
{
    if (!CanRedo() || m_Target.m_Edits.IsOpen() || !Do(m_Steps[m_nPosition], false))
        return false;
    ++m_nPosition;
    Tell();
    return true;
}

bool CHistory::GoTo(size_t nPosition)
{
    if (nPosition > m_Steps.size())
        return false;
    m_bWalking = true; // of the way there nobody needs to hear
    bool bDone = true;
    while (bDone && m_nPosition != nPosition)
        bDone = m_nPosition > nPosition ? Undo() : Redo();
    m_bWalking = false;
    Tell();
    return bDone;
}

void CHistory::MarkSaved()
{
    m_Saved = m_nPosition;
    Tell();
}

void CHistory::MarkUnsaved()
{
    m_Saved.reset();
    Tell();
}

void CHistory::SetBudget(size_t nBytes)
{
    m_nBudget = nBytes;
    DropOldest();
    Tell();
}

void CHistory::Tell() const
{
    if (m_OnChanged && !m_bWalking)
        TryAllocating(m_OnChanged);
}
