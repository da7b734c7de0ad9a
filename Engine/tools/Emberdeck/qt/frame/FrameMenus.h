#pragma once

#include <vector>

#include "app/resources/Menus.h"
#include "shell/MainFrame.h"

class IProfile;
class IPrompts;
class QAction;
class QMainWindow;
class QMenu;

// The frame's menu bar and its shortcuts, made from the tables, with what the front adds to them.
class FrameMenus
{
public:
    // All borrowed. run carries out the command of an item or shortcut.
    FrameMenus(QMainWindow& window, CMainFrame& frame, std::function<void(int32_t)> run);

    // Greys, checks and names all items as the frame says.
    void ShowStates();
    // Below the table's items of the View menu, since it is the toolkit's own matter.
    void AddAppearance(IProfile& profile);
    // Switches of what timelines show, and who hears of a change.
    void AddTimelineOptions(IProfile& profile, const std::function<void()>& changed);
    void AddManual(IPrompts& prompts);
    // A submenu below the table's items of the File menu.
    QMenu& AddRecover();

private:
    void AddItems(QMenu& menu, const CMenuTable& table);
    void AddShortcuts();

    QMainWindow& m_Window;
    CMainFrame& m_Frame;
    std::function<void(int32_t)> m_Run;
    std::vector<std::pair<QAction*, const CMenuItem*>> m_Actions;
    QMenu* m_pFile = nullptr;
    QMenu* m_pView = nullptr;
    QMenu* m_pHelp = nullptr;
};
