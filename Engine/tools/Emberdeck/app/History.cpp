#include "app/History.h"

#include <utility>

#include "model/MakeOrNull.h"

namespace
{

constexpr const char* c_szNotRecorded =
    "This step can't be undone: memory was short. The history begins anew.";
constexpr const char* c_szNotAsItWas = "The library isn't what this step left. The history begins anew.";

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
        return;
    else if (edit.m_bRecordFailed || (edit.m_pChange && !TryAllocating([&] { Push(edit); })))
        BeginAnew(EHistoryStart::eCut, c_szNotRecorded);
}

void CHistory::Push(const CEdit& edit)
{
    if (edit.m_pChange->IsEmpty())
        return;
    // What is saved stays a position of its own.
    if (edit.m_bContinues && CanUndo() && !CanRedo() && !IsSaved())
    {
        Complete(m_Steps.back(), *edit.m_pChange);
        return;
    }
    while (CanRedo())
    {
        m_nMemory -= m_Steps.back().m_nMemory;
        m_Steps.pop_back();
    }
    if (m_Saved && *m_Saved > m_nPosition)
        m_Saved.reset();
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
    TryAllocating([&] { m_sProblem = pszProblem; });
    Tell();
}

bool CHistory::Do(const CLibraryChange& change, const std::string& sLabel)
{
    m_bDoing = true;
    bool bDone = false;
    TryAllocating([&] { bDone = !Apply(change, m_Target, sLabel); });
    m_bDoing = false;
    if (!bDone)
        BeginAnew(EHistoryStart::eCut, c_szNotAsItWas);
    return bDone;
}

bool CHistory::Undo()
{
    if (!CanUndo() || m_Target.m_Edits.IsOpen())
        return false;
    const CStep step = m_Steps[m_nPosition - 1];
    if (!Do(step.m_pChange->TurnedRound(), "Undo " + step.m_sLabel))
        return false;
    --m_nPosition;
    Tell();
    return true;
}

bool CHistory::Redo()
{
    if (!CanRedo() || m_Target.m_Edits.IsOpen())
        return false;
    const CStep step = m_Steps[m_nPosition];
    if (!Do(*step.m_pChange, "Redo " + step.m_sLabel))
        return false;
    ++m_nPosition;
    Tell();
    return true;
}

bool CHistory::GoTo(size_t nPosition)
{
    if (nPosition > m_Steps.size())
        return false;
    while (m_nPosition != nPosition)
    {
        if (!(m_nPosition > nPosition ? Undo() : Redo()))
            return false;
    }
    return true;
}

void CHistory::MarkSaved()
{
    m_Saved = m_nPosition;
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
    if (m_OnChanged)
        TryAllocating(m_OnChanged);
}
