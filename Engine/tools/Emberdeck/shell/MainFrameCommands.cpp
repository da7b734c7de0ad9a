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
}

void CMainFrame::OnDisconnect()
{
    m_App.SourceControl().Disconnect();
}

// What the file operations give is advice: the state that is asked for afterwards shows what came of them.

void CMainFrame::OnAddToSourceControl()
{
    m_App.SourceControl().AddFile(FileName().c_str());
}

void CMainFrame::OnCheckOut()
{
    m_App.SourceControl().CheckOut(FileName().c_str(), 0);
}

void CMainFrame::OnSubmit()
{
    m_App.SourceControl().Submit(FileName().c_str());
}

void CMainFrame::OnUndoChanges()
{
    m_App.SourceControl().Undo(FileName().c_str());
}

void CMainFrame::OnGetLatest()
{
    m_App.SourceControl().GetLatest(FileName().c_str());
}

void CMainFrame::OnHistory()
{
    m_App.SourceControl().History(FileName().c_str());
}
