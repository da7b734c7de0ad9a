#include "shell/MainFrame.h"

#include "app/StatusText.h"
#include "app/resources/Strings.h"

namespace
{

constexpr const char* c_szProgram = "Emberdeck";

// Sets a flag for a scope.
class CFlagScope
{
public:
    explicit CFlagScope(bool& bFlag) : m_bFlag(bFlag) { m_bFlag = true; }
    ~CFlagScope() { m_bFlag = false; }
    CFlagScope(const CFlagScope&) = delete;
    CFlagScope& operator=(const CFlagScope&) = delete;

private:
    bool& m_bFlag;
};

bool AsksProvider(EEnableRule eRule)
{
    return eRule == EEnableRule::eCanAdd || eRule == EEnableRule::eCanCheckOut ||
           eRule == EEnableRule::eCanSubmitOrUndo || eRule == EEnableRule::eIsControlled;
}

} // namespace

CMainFrame::CMainFrame(CEmberdeckApp& app, IFrameWindow& window, const CShellColors& colors)
    : m_App(app),
      m_Window(window),
      m_Colors(colors),
      m_wndToolBar(c_StandardToolbar, colors),
      m_wndSourceControlBar(c_SourceControlToolbar, colors),
      m_wndEditBar(c_EditToolbar, colors)
{
    m_MenuDecorator.AddAccelerators(c_FrameAccelerators);
    m_MenuDecorator.AddAccelerators(c_PanelAccelerators);
    m_MenuDecorator.AddAccelerators(c_TimelineAccelerators);
    m_MenuDecorator.AddAccelerators(c_CurveAccelerators);
}

bool CMainFrame::Create()
{
    if (!m_Window.CreateToolBar(m_wndToolBar) || !m_Window.CreateToolBar(m_wndSourceControlBar) ||
        !m_Window.CreateToolBar(m_wndEditBar) || !m_Window.CreateStatusBar())
        return false;
    DockWithImages(m_wndToolBar, 0);
    DockWithImages(m_wndSourceControlBar, m_wndToolBar.GetID());
    DockWithImages(m_wndEditBar, m_wndSourceControlBar.GetID());
    m_Window.CreateLeftDock();
    m_Window.CreateHistoryDock();
    m_Window.ShowSplash();
    return true;
}

void CMainFrame::DockWithImages(CKRToolbar& toolbar, int32_t nBesideBar)
{
    m_Window.SetToolBarImages(toolbar);
    m_Window.DockToolBar(toolbar.GetID(), nBesideBar);
    m_MenuDecorator.AddToolbar(&toolbar);
}

void CMainFrame::SetColors(const CShellColors& colors)
{
    m_Colors = colors;
    for (CKRToolbar* pToolbar : Toolbars())
    {
        pToolbar->SetColors(colors);
        if (m_Window.HasBar(pToolbar->GetID()))
            m_Window.SetToolBarImages(*pToolbar);
    }
}

void CMainFrame::SetIconMaker(const IconMaker& maker)
{
    for (CKRToolbar* pToolbar : Toolbars())
        pToolbar->SetIconMaker(maker);
}

bool CMainFrame::IsAllowed(EEnableRule eRule) const
{
    const bool bFile = !m_App.m_sFileName.empty();
    const bool bConnected = m_App.SourceControl().IsConnected();
    const ESourceControlState eState = m_eFileState;
    switch (eRule)
    {
    case EEnableRule::eAlways:
    case EEnableRule::eBarExists: // asked before
        return true;
    case EEnableRule::eHasFileName:
        return bFile;
    case EEnableRule::eNotConnected:
        return !bConnected;
    case EEnableRule::eConnected:
        return bConnected;
    case EEnableRule::eCanAdd:
        return bConnected && bFile && eState == eSCState_NotControlled;
    case EEnableRule::eCanCheckOut:
        return bConnected && eState != eSCState_NotControlled && eState != eSCState_CheckedOut &&
               eState != eSCState_Blocked;
    case EEnableRule::eCanSubmitOrUndo:
        return bConnected && eState != eSCState_NotControlled && eState != eSCState_CheckedIn &&
               eState != eSCState_Blocked;
    case EEnableRule::eIsControlled:
        return bConnected && eState != eSCState_NotControlled;
    case EEnableRule::eCanUndo:
        return m_App.History().CanUndo() && !m_App.m_Edits.IsOpen();
    case EEnableRule::eCanRedo:
        return m_App.History().CanRedo() && !m_App.m_Edits.IsOpen();
    default: // the conditions of other owners
        return false;
    }
}

bool CMainFrame::IsEnabled(int32_t nID) const
{
    const CCommand* pCommand = FindCommand(nID);
    if (!pCommand)
        return false;
    if (pCommand->m_eOwner == ECommandOwner::eFrame)
        return m_Window.HasBar(nID);
    return pCommand->m_eOwner == ECommandOwner::eApplication && IsAllowed(pCommand->m_eRule);
}

bool CMainFrame::IsChecked(int32_t nID) const
{
    const CCommand* pCommand = FindCommand(nID);
    return pCommand && pCommand->m_eOwner == ECommandOwner::eFrame && m_Window.HasBar(nID) &&
           m_Window.IsBarVisible(nID);
}

void CMainFrame::RefreshSourceControl()
{
    if (!m_App.SourceControl().IsConnected())
        m_eFileState = eSCState_Unknown;
    else if (m_App.m_sFileName.empty())
        m_eFileState = eSCState_NotControlled;
    else
        m_eFileState = m_App.SourceControl().SourceControlStateForFile(FileName().c_str());
}

void CMainFrame::OnMenuOpening(const CMenuTable& menu)
{
    for (const CMenuItem& item : menu)
    {
        const CCommand* pCommand = FindCommand(item.m_nID);
        if (pCommand && AsksProvider(pCommand->m_eRule))
        {
            RefreshSourceControl();
            m_Window.CommandsChanged();
            return;
        }
    }
}

bool CMainFrame::IsBusy() const
{
    return m_bRunning || m_bAsking || m_Window.IsGestureRunning();
}

bool CMainFrame::RunAlone(const std::function<bool()>& operation, bool bFile)
{
    if (IsBusy())
        return false;
    {
        CFlagScope running(m_bRunning);
        m_Window.EndEdit();
        if (!operation())
            return false;
        m_bMayClose = false;
        if (bFile)
            RefreshSourceControl();
    }
    m_Window.CommandsChanged();
    return true;
}

bool CMainFrame::Run(int32_t nID)
{
    const CCommand* pCommand = FindCommand(nID);
    if (!pCommand || !HasHandler(nID))
        return false;
    if (pCommand->m_eOwner == ECommandOwner::eFrame)
    {
        if (!m_Window.HasBar(nID))
            return false;
        OnBarCheck(nID);
        return true;
    }
    if (nID == c_nCmdExit)
    {
        m_Window.Close(); // which may be the end of everything here
        return true;
    }
    return RunAlone(
        [this, pCommand]
        {
            if (AsksProvider(pCommand->m_eRule))
                RefreshSourceControl();
            if (!IsEnabled(pCommand->m_nID))
                return false;
            (this->*FindRoute(c_Routes, pCommand->m_nID)->m_pfnRun)();
            return true;
        },
        nID != c_nCmdUndo && nID != c_nCmdRedo);
}

bool CMainFrame::OpenFile(const std::string& sPath)
{
    return RunAlone(
        [this, &sPath]
        {
            m_App.OpenEffectFile(sPath.c_str());
            return true;
        });
}

bool CMainFrame::OpenFirstFile(const std::string& sAskedFor)
{
    return RunAlone(
        [this, &sAskedFor]
        {
            m_App.OpenFirstFile(sAskedFor);
            return true;
        });
}

void CMainFrame::OnBarCheck(int32_t nBar)
{
    m_Window.ShowBar(nBar, !m_Window.IsBarVisible(nBar));
    m_Window.CommandsChanged();
}

bool CMainFrame::QueryClose()
{
    if (m_bRunning || m_bAsking)
        return false;
    if (m_bMayClose && m_nEditsAtClose == m_App.m_Edits.GetNumEdits())
        return true;

    CFlagScope asking(m_bAsking);
    m_Window.EndEdit();
    m_bMayClose = m_App.ConfirmExit();
    m_nEditsAtClose = m_App.m_Edits.GetNumEdits();
    return m_bMayClose;
}

std::string CMainFrame::GetTitle(std::string_view sActiveView, bool bMaximised)
{
    std::string sTitle = c_szProgram;
    if (!sActiveView.empty() && !bMaximised)
        sTitle.append(" - ").append(sActiveView);
    return sTitle;
}

std::string CMainFrame::GetTitleOfFile(const std::string& sFileName, bool bSaved)
{
    if (sFileName.empty() && bSaved)
        return std::string();
    return " - " + (sFileName.empty() ? std::string("Untitled") : TellName(sFileName)) + (bSaved ? "" : "*");
}

std::string_view CMainFrame::GetStatusLine(int32_t nID)
{
    const std::string_view sText = nID == 0 ? std::string_view() : GetStatusText(nID);
    return sText.empty() ? FindString(c_nStrReady) : sText;
}
