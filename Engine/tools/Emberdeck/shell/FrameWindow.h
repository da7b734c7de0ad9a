#pragma once

#include <cstdint>

#include "app/ChangeSpots.h"
#include "shell/AboutDialog.h"
#include "shell/Toolbar.h"

// The main window, as the frame's logic needs it.
class IFrameWindow
{
public:
    virtual ~IFrameWindow() = default;

    // Creation, in the order in which CMainFrame::Create calls. False ends it, and the program.
    virtual bool CreateToolBar(const CKRToolbar& toolbar) = 0; // by its table, with no images yet; not owned
    virtual bool CreateStatusBar() = 0;                        // the message pane, then c_StatusIndicators
    // Gives a bar the images of its toolbar, at first and whenever they were made anew.
    virtual void SetToolBarImages(const CKRToolbar& toolbar) = 0;
    // At the top. nBesideBar is a docked bar whose row it joins, behind it; 0: a row of its own.
    virtual void DockToolBar(int32_t nBar, int32_t nBesideBar) = 0;
    virtual void CreateLeftDock() = 0; // not to be hidden by any menu of the toolkit
    // The steps of the library's history, which goes by c_nCmdHistoryList as a bar does; hidden at first.
    virtual void CreateHistoryDock() = 0;
    virtual void ShowSplash() = 0; // CSplashWnd::ShowSplashScreen

    // Toolbars, the status bar and the history dock, by their ids.
    virtual bool HasBar(int32_t nBar) const = 0;
    virtual bool IsBarVisible(int32_t nBar) const = 0; // as it is, whoever has closed it
    virtual void ShowBar(int32_t nBar, bool bShow) = 0;

    // Asks the window to close, as its frame's button does; it asks CMainFrame::QueryClose back.
    virtual void Close() = 0;
    virtual void ShowAbout(const CAboutSharedDlg& dialog) = 0; // template 100, modal

    // Takes over what is typed in a label or a field, before a command acts on it.
    virtual void EndEdit() = 0;
    // A mouse gesture or the rubber line of a link is under way.
    virtual bool IsGestureRunning() const = 0;
    // What an undo or redo has changed: open views of these effects show and select their keys, the library's trees
    // the items. Opens none.
    virtual void ShowChange(const CChangeSpots& spots) = 0;
    // Enable states, check marks and labels may be others now; ask for them again.
    virtual void CommandsChanged() = 0;
};
