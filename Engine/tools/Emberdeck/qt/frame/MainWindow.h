#pragma once

#include <functional>
#include <map>
#include <memory>

#include <QMainWindow>

#include "app/EmberdeckApp.h"
#include "qt/frame/EditorHost.h"
#include "qt/frame/SplashScreen.h"
#include "qt/toolkit/MenuStyle.h"
#include "qt/toolkit/QtPrompts.h"
#include "shell/MainFrame.h"

class EffectWindows;
class FrameMenus;
class FrameStatusBar;
class HistoryDock;
class LeftDockWidget;
class QSessionManager;
class RecoveryBar;
class ToolBarWidget;
class TrackWidget;

// The program's window: menus, bars, the library at the left, the open effects beside it.
class MainWindow : public QMainWindow, public IFrameWindow, private IEditListener
{
    Q_OBJECT

public:
    MainWindow(IProfile& profile, ISourceControl& sourceControl, QtPrompts& prompts);
    ~MainWindow() override;

    // False: the program can't start.
    bool Create(bool bSplash, MenuStyle* pStyle);
    // For the first time: where it was left, with its bars and the dock, or filling the screen.
    void ShowAsLeft();

    CEmberdeckApp& App() { return m_App; }
    CMainFrame& Frame() { return *m_pFrame; }
    EditorHost& Host() { return m_Host; }
    EffectWindows& Effects() { return *m_pEffects; }
    LeftDockWidget* Dock() const { return m_pDock; }
    RecoveryBar* Recovery() const { return m_pRecovery; }
    TrackWidget* ActiveTimeline() const;

protected:
    void closeEvent(QCloseEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;
    QMenu* createPopupMenu() override { return nullptr; } // none that could hide the library
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    bool focusNextPrevChild(bool bNext) override;

private:
    // IFrameWindow
    bool CreateToolBar(const CKRToolbar& toolbar) override;
    bool CreateStatusBar() override;
    void SetToolBarImages(const CKRToolbar& toolbar) override;
    void DockToolBar(int32_t nBar, int32_t nBesideBar) override;
    void CreateLeftDock() override;
    void CreateHistoryDock() override;
    void ShowSplash() override { m_Splash.Logic().ShowSplashScreen(); }
    bool HasBar(int32_t nBar) const override;
    bool IsBarVisible(int32_t nBar) const override;
    void ShowBar(int32_t nBar, bool bShow) override;
    void Close() override { close(); }
    void ShowAbout(const CAboutSharedDlg& about) override;
    void EndEdit() override;
    bool IsGestureRunning() const override;
    void ShowChange(const CChangeSpots& spots) override;
    void CommandsChanged() override;
    // IEditListener
    void OnEdit(const CEdit& edit) override;

    QWidget* FindBar(int32_t nBar) const; // null: there is none
    void ShowCommandStates();
    void OnHistoryChanged();
    void RunCommand(int32_t nID);
    void ShowHint(int32_t nID);
    void UpdateTitle();
    void UpdateTextForm();
    void OnBroughtBack(const QString& sText);
    void FocusLibrary();
    void CancelGestures();
    void OnSessionEnd(QSessionManager& session);
    void KeepPlaces();
    std::vector<QToolBar*> ToolBars() const;

    IProfile& m_Profile;
    QtPrompts& m_Prompts;
    FrameStatusBar* m_pStatus;
    EffectWindows* m_pEffects;
    EditorHost m_Host;
    CEmberdeckApp m_App;
    std::unique_ptr<CMainFrame> m_pFrame;
    std::unique_ptr<FrameMenus> m_pMenus;
    SplashScreen m_Splash;
    MenuStyle* m_pStyle = nullptr;
    LeftDockWidget* m_pDock = nullptr;
    HistoryDock* m_pHistory = nullptr;
    RecoveryBar* m_pRecovery = nullptr;
    QWidget* m_pCentre;
    std::string m_sToldProblem; // of the history
    std::map<int32_t, ToolBarWidget*> m_Bars;
    bool m_bUpdateQueued = false;
};
