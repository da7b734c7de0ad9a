#include "app/StatusText.h"
#include "platform/Files.h"
#include "shell/MainFrame.h"

// The application's commands by id. Exit and the bars are the frame's own business.
const TCommandRoute<CMainFrame> CMainFrame::c_Routes[] = {
    {c_nCmdNew, &CMainFrame::OnNew},
    {c_nCmdOpen, &CMainFrame::OnOpen},
    {c_nCmdSave, &CMainFrame::OnSave},
    {c_nCmdSaveAs, &CMainFrame::OnSaveAs},
    {c_nCmdPackEffects, &CMainFrame::OnPackEffects},
    {c_nCmdPackEffectsAs, &CMainFrame::OnPackEffectsAs},
    {c_nCmdSaveAndPack, &CMainFrame::OnSaveAndPack},
    {c_nCmdSavePackLaunch, &CMainFrame::OnSavePackLaunch},
    {c_nCmdLaunch, &CMainFrame::OnLaunch},
    {c_nCmdEditGameInfo, &CMainFrame::OnEditGameInfo},
    {c_nCmdNewEffect, &CMainFrame::OnNewEffect},
    {c_nCmdAbout, &CMainFrame::OnAbout},
    {c_nCmdConnect, &CMainFrame::OnConnect},
    {c_nCmdDisconnect, &CMainFrame::OnDisconnect},
    {c_nCmdAddToSourceControl, &CMainFrame::OnAddToSourceControl},
    {c_nCmdCheckOut, &CMainFrame::OnCheckOut},
    {c_nCmdSubmit, &CMainFrame::OnSubmit},
    {c_nCmdUndoChanges, &CMainFrame::OnUndoChanges},
    {c_nCmdGetLatest, &CMainFrame::OnGetLatest},
    {c_nCmdHistory, &CMainFrame::OnHistory},
    {c_nCmdUndo, &CMainFrame::OnUndo},
    {c_nCmdRedo, &CMainFrame::OnRedo},
};

bool CMainFrame::HasHandler(int32_t nID)
{
    const CCommand* pCommand = FindCommand(nID);
    return pCommand &&
           (pCommand->m_eOwner == ECommandOwner::eFrame || nID == c_nCmdExit || FindRoute(c_Routes, nID));
}

bool CMainFrame::IsShortcut(const CAccelerator& accelerator)
{
    return HasHandler(accelerator.m_nID);
}

void CMainFrame::OnNew()
{
    m_App.NewEffectFile();
}

void CMainFrame::OnOpen()
{
    m_App.OpenWithDialog();
}

void CMainFrame::OnSave()
{
    m_App.SaveEffectFile();
}

void CMainFrame::OnSaveAs()
{
    m_App.SaveEffectFileAs();
}

void CMainFrame::OnPackEffects()
{
    m_App.PackEffects();
}

void CMainFrame::OnPackEffectsAs()
{
    m_App.PackEffectsAs();
}

void CMainFrame::OnSaveAndPack()
{
    m_App.SaveAndPack();
}

void CMainFrame::OnSavePackLaunch()
{
    m_App.SavePackLaunch();
}

void CMainFrame::OnLaunch()
{
    m_App.LaunchGame();
}

void CMainFrame::OnEditGameInfo()
{
    m_App.EditGameInfo();
}

void CMainFrame::OnNewEffect()
{
    m_App.NewEffect();
}

void CMainFrame::OnAbout()
{
    m_Window.ShowAbout(CAboutSharedDlg());
}

void CMainFrame::OnConnect()
{
    m_App.ConnectSourceControl();
    Tell(m_App.SourceControl().IsConnected() ? "Connected to source control"
                                             : "Not connected to source control");
}

void CMainFrame::OnDisconnect()
{
    m_App.SourceControl().Disconnect();
    Tell("Disconnected from source control");
}

// What the file operations give is advice: the state that is asked for afterwards shows what came of them. Most have
// no box that tells of it.

void CMainFrame::TellOperation(const std::function<bool(const char*)>& operation, const char* pszDone,
                               const char* pszFailed)
{
    const std::string sFile = m_App.m_sFileName; // a copy: the call may run anything
    const CFileVersion before = FileVersion(sFile);
    const bool bDone = operation(sFile.c_str());
    const char* pszText = bDone ? pszDone : pszFailed;
    const bool bSame = FileVersion(sFile) == before;
    if (!bSame)
        m_App.History().MarkUnsaved(); // the library isn't what the file holds now
    if (*pszText)
        Tell(TellName(sFile) + pszText + (bSame ? "" : ". File > Open shows the version that is there now"));
}

void CMainFrame::OnAddToSourceControl()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().AddFile(pszFile); },
                  " is added to source control", " isn't added to source control");
}

void CMainFrame::OnCheckOut()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().CheckOut(pszFile, 0); },
                  " is checked out", " isn't checked out");
}

void CMainFrame::OnSubmit()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().Submit(pszFile); },
                  ": the changes are submitted", ": the changes aren't submitted");
}

void CMainFrame::OnUndoChanges()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().Undo(pszFile); },
                  ": the changes are undone", ": the changes aren't undone");
}

void CMainFrame::OnGetLatest()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().GetLatest(pszFile); },
                  " is the latest version", ": the latest version isn't fetched");
}

void CMainFrame::OnHistory()
{
    TellOperation([this](const char* pszFile) { return m_App.SourceControl().History(pszFile); }, "",
                  ": no history can be shown");
}

void CMainFrame::Tell(const std::string& sText)
{
    m_App.Context().m_Host.ShowStatus(sText);
}
