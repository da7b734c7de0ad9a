#pragma once

#include <functional>
#include <map>
#include <memory>

#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

#include "app/EmberdeckApp.h"
#include "qt/toolkit/MenuStyle.h"
#include "qt/toolkit/QtPrompts.h"
#include "shell/MainFrame.h"
#include "shell/Splash.h"

class LeftDockWidget;
class QListWidget;
class QSessionManager;
class ToolBarWidget;
class TrackWidget;

// The program's window: menus, bars, the library at the left, one child window for each open effect.
class MainWindow : public QMainWindow,
                   public IFrameWindow,
                   public IDocuments,
                   public IEditorHost,
                   private IEditListener,
                   private ISplashView
{
    Q_OBJECT

public:
    MainWindow(IProfile& profile, ISourceControl& sourceControl, QtPrompts& prompts);
    ~MainWindow() override;

    // False: the program can't start.
    bool Create(bool bSplash, MenuStyle* pStyle);
    // For the first time: where it was left, with its bars and the dock, or filling the screen.
    void ShowAsLeft();
    // Opens the property dialogs on a key or prefab; true: accepted.
    void SetPropertyEditor(std::function<bool(CEffectPropertySet&)> edit)
    {
        m_EditProperties = std::move(edit);
    }
    CEmberdeckApp& App() { return *m_pApp; }
    CMainFrame& Frame() { return *m_pFrame; }
    LeftDockWidget* Dock() const { return m_pDock; }
    TrackWidget* ActiveTimeline() const;

    // IDocuments
    bool IsOpen(const CSpell* pSpell) const override;
    void Open(CSpell& spell) override;
    void Close(const CSpell* pSpell) override;
    void CloseAll() override;
    void RetitleAll() override;

    // IEditorHost
    CEffectPropertySet* GetActivePrefab() override;
    void OfferActivePrefab(CEffectPropertySet* pPrefab) override;
    void ClearActivePrefab() override;
    bool EditProperties(CEffectPropertySet& set) override;
    const CEffectTypeDesc* ChooseEffectType() override;
    void ShowStatus(const std::string& sText) override;

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
    void EnableDocking() override {} // bars dock on all sides from the start
    void SetToolBarImages(const CKRToolbar& toolbar) override;
    void DockToolBar(int32_t nBar, int32_t nBesideBar) override;
    void CreateLeftDock() override;
    void ShowSplash() override;
    bool HasBar(int32_t nBar) const override;
    bool IsBarVisible(int32_t nBar) const override;
    void ShowBar(int32_t nBar, bool bShow) override;
    void Close() override { close(); }
    void ShowAbout(const CAboutSharedDlg& dialog) override;
    void EndEdit() override;
    bool IsGestureRunning() const override;
    void CommandsChanged() override;
    // IEditListener
    void OnEdit(const CEdit& edit) override;
    // ISplashView
    bool CreateSplash(int32_t nMilliseconds) override;
    void DestroySplash() override;

    void BuildMenus();
    void AddItems(QMenu& menu, const CMenuTable& table);
    void AddAppearanceItems(QMenu& viewMenu);
    void AddTimelineItems(QMenu& viewMenu);
    void AddShortcuts();
    void ShowCommandStates();
    void RunCommand(int32_t nID);
    void ShowHint(int32_t nID);
    void ShowStatusLine(const QString& sText);
    void UpdateTitle();
    void UpdateLocks();
    void FocusLibrary();
    void CancelGestures();
    void OnSessionEnd(QSessionManager& session);
    void ExplainNoTypes(QListWidget& list, const std::function<bool()>& fill);
    QMdiSubWindow* FindChild(const CSpell* pSpell) const;
    void PlaceChild(QMdiSubWindow& child);
    void UpdateTextForm();
    void KeepPlaces();
    std::vector<QToolBar*> ToolBars() const;

    IProfile& m_Profile;
    QtPrompts& m_Prompts;
    std::unique_ptr<CEmberdeckApp> m_pApp;
    std::unique_ptr<CMainFrame> m_pFrame;
    std::function<bool(CEffectPropertySet&)> m_EditProperties;
    CSplashWnd m_Splash;
    MenuStyle* m_pStyle = nullptr;
    QMdiArea* m_pArea;
    QLabel* m_pEmpty;
    LeftDockWidget* m_pDock = nullptr;
    QWidget* m_pCentre;
    std::map<int32_t, ToolBarWidget*> m_Bars;
    std::vector<QAction*> m_Actions;
    std::vector<QLabel*> m_Locks;
    QPointer<QLabel> m_pSplash;
    bool m_bSplashOver = false; // this window
    bool m_bUpdateQueued = false;
    QString m_sStatus; // what the last command has come to; empty: nothing to tell
    QTimer m_StatusEnd;
    int m_nNextPlace = 0; // of the next child window
};
