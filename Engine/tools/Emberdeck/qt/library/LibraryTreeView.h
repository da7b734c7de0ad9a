#pragma once

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>
#include <QTreeView>

#include "browser/LibraryPanel.h"
#include "qt/library/LibraryTreeModel.h"

// One page's tree on the screen. What is selected, expanded, or the caret is the panel's to say; Qt lays out,
// scrolls and tells assistive programs.
class LibraryTreeView : public QTreeView, public ITreeView
{
    Q_OBJECT

public:
    LibraryTreeView(CLibraryTree& tree, QIcon leaf, QWidget* pParent);

    void SetPanel(CLibraryPanel* pPanel); // borrowed; null before the panel goes
    CLibraryPanel* Panel() const { return m_pPanel; }

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void focusOutEvent(QFocusEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    bool viewportEvent(QEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    friend class LibraryTreeDelegate;

    CTreeHit HitTest(CPoint pt) const override;
    CTreeRows GetRows() const override;
    CRect GetLabelRect(HLibraryItem hItem) const override;
    CRect GetClientRect() const override;
    void TreeChanged(CLibraryTree::EChange eChange, HLibraryItem hItem) override;
    void ItemExpanded(HLibraryItem hItem, bool bExpanded) override;
    void CaretChanged(HLibraryItem hItem) override;
    void ScrollTo(HLibraryItem hItem) override;
    void Invalidate() override { viewport()->update(); }
    void UpdateNow() override { viewport()->repaint(); }
    void ShowBand(const CRect& rc) override;
    void HideBand() override;
    void TakeFocus() override { setFocus(Qt::OtherFocusReason); }
    bool IsLeftButtonDown() const override;
    void SetDragCursor(EDragCursor eCursor) override;
    void StartEditTimer() override;
    void OpenEditBox(HLibraryItem hItem, const std::string& sText) override;
    std::string CloseEditBox() override;
    std::unique_ptr<IFindDialog> OpenFindDialog() override;

    void Sync() const; // brings Qt's picture of the tree up to date
    void ShowMenu(const std::vector<CMenuEntry>& entries, const QPoint& at);
    CRect ItemRect(const QModelIndex& index) const; // of the label
    void FitColumn();
    void QueueFit();
    void FitEditBox();
    bool ScrollBy(ETreeKey eKey);
    void ScrollWhileDragging();

    CLibraryTree& m_Tree;
    QIcon m_Leaf;
    LibraryTreeModel* m_pModel;
    CLibraryPanel* m_pPanel = nullptr;
    QLineEdit* m_pEdit = nullptr;
    CRect m_rcBand;
    bool m_bBand = false;
    bool m_bFitQueued = false;
    mutable bool m_bStale = true;
    QTimer m_DragScroll; // runs while items are dragged
    QElapsedTimer m_Clock;
};
