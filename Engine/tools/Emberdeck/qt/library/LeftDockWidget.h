#pragma once

#include <QTabBar>
#include <QWidget>

#include "browser/EffectTreePanel.h"
#include "browser/LeftDock.h"
#include "browser/PrefabTreePanel.h"
#include "qt/toolkit/AccessibleViews.h"

class LibraryTreeView;

// The thin bar along the dock's right edge.
class SizeBarWidget : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    SizeBarWidget(QWidget* pParent);
    QAccessible::Role AccessibleRole() const override { return QAccessible::Splitter; }
    void SetBar(CSizeBar* pBar) // borrowed; null before it goes
    {
        m_pBar = pBar;
        ShowCursor();
    }

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    void ShowCursor();

    CSizeBar* m_pBar = nullptr;
};

// A page: the dialog that its panel lays out, with the tree as its one control.
class LibraryPage : public QWidget, public IDialogControls
{
    Q_OBJECT

public:
    LibraryPage(CLibraryTree& tree, const QIcon& leaf, int32_t nTemplate, uint32_t nTreeID, QWidget* pParent);

    void SetPanel(CLibraryPanel* pPanel); // borrowed; null before the panel goes
    LibraryTreeView* Tree() const { return m_pTree; }

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    CRect GetClientRect() const override;
    bool GetControlRect(uint32_t nID, CRect& rc) const override;
    void MoveControl(uint32_t nID, const CRect& rc) override;

    const uint32_t m_nTreeID;
    LibraryTreeView* m_pTree;
    CLibraryPanel* m_pPanel = nullptr;
};

// The bar at the left with the two pages of the library.
class LeftDockWidget : public QWidget, public IDockView, public IImportView
{
    Q_OBJECT

public:
    LeftDockWidget(CEditContext& context, QWidget* pParent);
    ~LeftDockWidget() override;

    CEffectTreePanel& EffectPanel() { return *m_pEffectPanel; }
    CPrefabTreePanel& PrefabPanel() { return *m_pPrefabPanel; }
    void FinishEdits();
    bool IsEditing() const; // a name
    bool IsBusy() const;
    // On their page, as CLibraryPanel::ShowItems does. Neither unfolds the dock nor takes the focus.
    void ShowItems(ETreeSide eSide, const std::vector<HLibraryItem>& items);
    CLeftDockBar& Bar() { return *m_pDock; }

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    CRect GetClientRect() const override;
    bool GetControlRect(uint32_t nID, CRect& rc) const override;
    void MoveControl(uint32_t nID, const CRect& rc) override;
    CRect GetBarRect() const override;
    CRect GetParentRect() const override;
    void MoveBar(const CRect& rc) override;
    void RecalcLayout() override;
    void CreateSizeBar(const CRect& rc) override;
    void MoveSizeBar(const CRect& rc) override;
    void AddTab(const char* pszText) override;
    CRect GetTabArea(const CRect& rcTabs) const override;
    void CreatePage(int32_t nTab) override;
    void MovePage(int32_t nTab, const CRect& rc) override;
    void ShowPage(int32_t nTab, bool bShow) override;
    bool ChooseRows(const std::vector<std::string>& rows, std::vector<uint32_t>& selected) override;

    void SwitchPage(int nTab);
    LibraryPage* Page(int32_t nTab) const { return nTab == 0 ? m_pEffectPage : m_pPrefabPage; }

    QTabBar* m_pTabs;
    SizeBarWidget* m_pSizeBar;
    LibraryPage* m_pEffectPage;
    LibraryPage* m_pPrefabPage;
    LibraryTreeView* m_pEffects;
    LibraryTreeView* m_pPrefabs;
    QRect m_rcTabs; // of the control with the tabs and the page below them
    QRect m_rcSizeBar;
    std::unique_ptr<CEffectTreePanel> m_pEffectPanel;
    std::unique_ptr<CPrefabTreePanel> m_pPrefabPanel;
    std::unique_ptr<CLeftDockBar> m_pDock;
    bool m_bReady = false;
};
