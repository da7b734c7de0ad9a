#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/EmberdeckApp.h"
#include "app/resources/Menus.h"
#include "shell/FrameWindow.h"
#include "shell/MenuDecorator.h"

// The main frame without a window: its construction, the way of every command of menu bar, toolbars and
// accelerators, their states, the frame's title and status line, and the question before it closes.
//
//     CMainFrame frame(app, window);
//     if (!frame.Create()) return false;
//     for (const CMenuItem& item : c_MenuBar) ...         // build menus from the tables
//     action.triggered: frame.Run(item.m_nID);
//     menu.aboutToShow: frame.OnMenuOpening(table); then IsEnabled and IsChecked of each item
//     window.dropEvent: frame.OpenFile(path)
//     window.closeEvent: accept when frame.QueryClose()
class CMainFrame
{
public:
    // All borrowed.
    CMainFrame(CEmberdeckApp& app, IFrameWindow& window, const CShellColors& colors = CShellColors());
    CMainFrame(const CMainFrame&) = delete;
    CMainFrame& operator=(const CMainFrame&) = delete;

    // Builds the window's bars. False: the program can't start.
    bool Create();
    // The user's palette has changed: the toolbars' images are made anew.
    void SetColors(const CShellColors& colors);
    void SetIconMaker(const IconMaker& maker);

    // Whether a command may be given now. False for ids that aren't the frame's. Cheap, and never opens a
    // dialog: what source control says of the file is what it said when it was last asked.
    bool IsEnabled(int32_t nID) const;
    // A bar's item has a check mark while the bar is visible.
    bool IsChecked(int32_t nID) const;
    // What a menu shows for a command: the label of its item, with the name of the step behind it where the command
    // is Undo or Redo and there is one. "&" marks the shortcut letter.
    std::string GetLabel(const CMenuItem& item) const;
    // The tool tip of a command's button, likewise. Plain text.
    std::string GetTip(int32_t nID) const;
    // Carries a command out, if it may be given by now: a menu may show a state that is gone. A command
    // that comes while another has a dialog up, or while a gesture runs, does nothing; but Exit is the
    // window's to judge. False: nothing was done.
    bool Run(int32_t nID);
    // A file that was dropped on the window, under the conditions of a command.
    bool OpenFile(const std::string& sPath);
    // The first file of the session (CEmberdeckApp::OpenFirstFile), likewise.
    bool OpenFirstFile(const std::string& sAskedFor);
    // To that position of the library's history, under the conditions of a command.
    bool GoToStep(size_t nPosition);
    // A command has a dialog up, the exit question is asked, or a gesture runs: no command may be given.
    bool IsBusy() const;
    // Before a menu of the bar opens. Source control is asked about the file when the menu's own items
    // depend on the answer, and otherwise only after commands; never when idle.
    void OnMenuOpening(const CMenuTable& menu);

    // Whether a key of an accelerator table gets a shortcut of the frame. Those of standard commands that
    // nobody carries out get none: two shortcuts on one key silence both.
    static bool IsShortcut(const CAccelerator& accelerator);
    // There is something that carries out the command.
    static bool HasHandler(int32_t nID);

    // May the window close? Puts the exit question, once for each closing: a yes stands until something is
    // edited or a command runs, so a closing that comes in two steps (the end of the desktop session) asks
    // in the first. False also while a command has a dialog up, or while the question itself is up. The
    // window cancels a gesture that runs before it asks.
    bool QueryClose();

    // "Emberdeck", and the title of the active view when there is one. That of a maximised view is left to
    // the toolkit, which adds it on its own.
    static std::string GetTitle(std::string_view sActiveView, bool bMaximised);
    // Behind that, the name of the library's file: " - fire.Fx00a". Empty for a library that has none. An asterisk
    // behind it marks unsaved work, and a library without a name is then told as "Untitled".
    static std::string GetTitleOfFile(const std::string& sFileName, bool bSaved);
    // The message pane while the pointer is over a command; "Ready" for one without a text, and for 0.
    static std::string_view GetStatusLine(int32_t nID);

    CKRMenuDecorator& MenuDecorator() { return m_MenuDecorator; }
    const CKRToolbar& StandardToolbar() const { return m_wndToolBar; }
    const CKRToolbar& SourceControlToolbar() const { return m_wndSourceControlBar; }
    const CKRToolbar& EditToolbar() const { return m_wndEditBar; }

private:
    static const TCommandRoute<CMainFrame> c_Routes[22];

    void DockWithImages(CKRToolbar& toolbar, int32_t nBesideBar);
    bool IsAllowed(EEnableRule eRule) const;
    // Of the step that Undo or Redo would go; empty: there is none, or it is another command.
    std::string GetStepLabel(int32_t nID) const;
    // Carries something out when nothing else is under way; false: it isn't, or has given false. bFile: it may have
    // changed what source control says of the file.
    bool RunAlone(const std::function<bool()>& operation, bool bFile = true);
    std::vector<CKRToolbar*> Toolbars() { return {&m_wndToolBar, &m_wndSourceControlBar, &m_wndEditBar}; }
    void RefreshSourceControl();
    void OnBarCheck(int32_t nBar);

    void OnNew();
    void OnOpen();
    void OnSave();
    void OnSaveAs();
    void OnPackEffects();
    void OnPackEffectsAs();
    void OnSaveAndPack();
    void OnSavePackLaunch();
    void OnLaunch();
    void OnEditGameInfo();
    void OnNewEffect();
    void OnAbout();
    void OnConnect();
    void OnDisconnect();
    void OnAddToSourceControl();
    void OnCheckOut();
    void OnSubmit();
    void OnUndoChanges();
    void OnGetLatest();
    void OnHistory();
    void OnUndo();
    void OnRedo();
    // Undoes and redoes up to that position, shows what that has changed, and tells it.
    void GoTo(size_t nPosition);

    // In the status line.
    void Tell(const std::string& sText);
    // Carries an operation of source control out on the open file and tells what it gave; an empty text isn't told.
    void TellOperation(const std::function<bool(const char*)>& operation, const char* pszDone,
                       const char* pszFailed);
    // The file's name for a call that may run anything, and so change it.
    std::string FileName() const { return m_App.m_sFileName; }

    CEmberdeckApp& m_App;
    IFrameWindow& m_Window;
    CShellColors m_Colors;
    CKRToolbar m_wndToolBar;
    CKRToolbar m_wndSourceControlBar;
    CKRToolbar m_wndEditBar;
    CKRMenuDecorator m_MenuDecorator;
    ESourceControlState m_eFileState = eSCState_Unknown;
    bool m_bRunning = false; // a command
    bool m_bAsking = false;  // the exit question
    bool m_bMayClose = false;
    uint64_t m_nEditsAtClose = 0; // edits that were done when the closing was allowed
};
