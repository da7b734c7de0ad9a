#include "app/ChangeSpots.h"
#include "app/StatusText.h"
#include "app/resources/Strings.h"
#include "model/MakeOrNull.h"
#include "shell/MainFrame.h"

// Undo and redo.

std::string CMainFrame::GetStepLabel(int32_t nID) const
{
    const CHistory& history = m_App.History();
    if (nID == c_nCmdUndo && history.CanUndo())
        return history.GetLabel(history.GetPosition() - 1);
    if (nID == c_nCmdRedo && history.CanRedo())
        return history.GetLabel(history.GetPosition());
    return std::string();
}

std::string CMainFrame::GetLabel(const CMenuItem& item) const
{
    const std::string sStep = GetStepLabel(item.m_nID);
    return item.GetLabel() + (sStep.empty() ? sStep : " " + DoubleAmpersands(sStep));
}

std::string CMainFrame::GetTip(int32_t nID) const
{
    const std::string sStep = GetStepLabel(nID);
    return std::string(GetToolTip(nID)) + (sStep.empty() ? sStep : " " + sStep);
}

void CMainFrame::OnUndo()
{
    GoTo(m_App.History().GetPosition() - 1);
}

void CMainFrame::OnRedo()
{
    GoTo(m_App.History().GetPosition() + 1);
}

bool CMainFrame::GoToStep(size_t nPosition)
{
    return RunAlone(
        [this, nPosition]
        {
            // The edit that was just ended may have dropped the steps that were taken back.
            if (m_App.m_Edits.IsOpen() || nPosition > m_App.History().GetNumSteps())
                return false;
            GoTo(nPosition);
            return true;
        },
        false);
}

void CMainFrame::GoTo(size_t nPosition)
{
    CHistory& history = m_App.History();
    const size_t nFrom = history.GetPosition();
    const bool bBack = nPosition < nFrom;
    if (nPosition == nFrom)
        return;
    if (!history.GoTo(nPosition))
    {
        Tell(history.GetProblem());
        return;
    }
    // Without memory for the words the library is where it should be.
    TryAllocating(
        [&]
        {
            const size_t nSteps = bBack ? nFrom - nPosition : nPosition - nFrom;
            const size_t nLast = bBack ? nPosition : nPosition - 1; // the last one that was undone or redone
            const CLibraryChange& change = history.GetChange(nLast);
            Tell(std::string(bBack ? "Undone: " : "Redone: ") +
                 (nSteps > 1 ? TellCount(nSteps, "step") + (bBack ? ", back to before " : ", up to ") : "") +
                 TellStep(history.GetLabel(nLast), change));
            m_Window.ShowChange(
                FindSpots(change, {m_App.m_SpellMgr, m_App.m_EffectTree, m_App.m_PrefabTree}));
        });
}
