#include "qt/library/LibraryTreeView.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>

#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

// Paints an item as the panel's control has it, whatever Qt's own selection says.
class LibraryTreeDelegate : public QStyledItemDelegate
{
public:
    explicit LibraryTreeDelegate(LibraryTreeView* pView) : QStyledItemDelegate(pView), m_pView(pView) {}

    void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(pOption, index);
        if (!m_pView->m_pPanel)
            return;
        const HLibraryItem hItem = LibraryTreeModel::ItemOf(index);
        const CMultiSelectTreeCtrl& control = m_pView->m_pPanel->m_Tree;
        pOption->state.setFlag(QStyle::State_Selected,
                               control.IsSelected(hItem) ||
                                   control.GetItemStateEx(hItem, eState_DropHilited) != 0);
        pOption->state.setFlag(QStyle::State_HasFocus, control.GetCaret() == hItem && m_pView->hasFocus());
        // The selection says where the next key goes: to this tree while it or a name in it is worked on.
        const bool bActive = m_pView->hasFocus() || (m_pView->m_pEdit && m_pView->m_pEdit->hasFocus());
        pOption->state.setFlag(QStyle::State_Active, bActive);
        MuteSelection(pOption->palette);
        if (pOption->state & QStyle::State_Open)
            pOption->icon = index.data(LibraryTreeModel::c_nOpenIconRole).value<QIcon>();
        pOption->font.setBold(control.GetItemStateEx(hItem, eState_Bold) != 0);
    }
    // The highlight ends with the label: what lies right of it is empty space, where a band begins.
    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyleOptionViewItem narrow = option;
        narrow.rect.setRight(m_pView->ItemRect(index).right - 1);
        QStyledItemDelegate::paint(pPainter, narrow, index);
    }

private:
    LibraryTreeView* m_pView;
};

namespace
{
// An arrow with what is dragged: one leaf, or several.
QCursor DragCursor(const QIcon& leaf, bool bSeveral, double fScale)
{
    constexpr int c_nSize = 32;
    QPixmap pixmap(QSize(c_nSize, c_nSize) * fScale);
    pixmap.setDevicePixelRatio(fScale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    if (bSeveral)
        leaf.paint(&painter, QRect(14, 8, 16, 16));
    leaf.paint(&painter, QRect(9, 14, 16, 16));
    painter.setPen(Qt::white);
    painter.setBrush(Qt::black);
    painter.drawPolygon(
        QPolygonF({{0.5, 0.5}, {0.5, 13.5}, {3.5, 10.5}, {5.5, 15.5}, {8, 14.5}, {6, 9.5}, {10.5, 9.5}}));
    return QCursor(pixmap, 0, 0);
}

// The box over a label. Keys that mean nothing in it end there: below it lies the tree, where they are commands.
class NameBox : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

protected:
    void keyPressEvent(QKeyEvent* pEvent) override
    {
        QLineEdit::keyPressEvent(pEvent);
        pEvent->accept();
    }
};

constexpr int c_nScrollEdge = 12; // pixels from the edge, where a drag scrolls
constexpr int c_nScrollMs = 60;
} // namespace

LibraryTreeView::LibraryTreeView(CLibraryTree& tree, QIcon leaf, QWidget* pParent)
    : QTreeView(pParent),
      m_Tree(tree),
      m_Leaf(leaf),
      m_pModel(new LibraryTreeModel(tree, std::move(leaf), this))
{
    setModel(m_pModel);
    setItemDelegate(new LibraryTreeDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setExpandsOnDoubleClick(false);
    setItemsExpandable(false); // the control does it
    setIconSize(QSize(16, 16));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus); // the wheel scrolls, and leaves the keyboard where it is
    header()->setStretchLastSection(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_DragScroll.setInterval(c_nScrollMs);
    connect(&m_DragScroll, &QTimer::timeout, this, &LibraryTreeView::ScrollWhileDragging);
    m_Clock.start();
}

void LibraryTreeView::SetPanel(CLibraryPanel* pPanel)
{
    m_pPanel = pPanel;
    m_bStale = true;
    Sync();
}

void LibraryTreeView::Sync() const
{
    if (!m_bStale)
        return;
    m_bStale = false;
    auto* pThis = const_cast<LibraryTreeView*>(this);
    const int nScroll = verticalScrollBar()->value();
    m_pModel->Rebuild();
    if (m_pPanel)
        for (HLibraryItem h = m_Tree.GetRootItem(); h; h = m_pPanel->m_Tree.NextVisible(h))
            if (m_pPanel->m_Tree.IsExpanded(h))
                pThis->setExpanded(m_pModel->IndexOf(h), true);
    pThis->doItemsLayout();
    pThis->FitColumn();
    if (m_pPanel)
        pThis->setCurrentIndex(m_pModel->IndexOf(m_pPanel->m_Tree.GetCaret()));
    verticalScrollBar()->setValue(nScroll);
}

// At least as wide as the view, and as wide as the labels are: what is long or lies deep can be scrolled to.
void LibraryTreeView::FitColumn()
{
    m_bFitQueued = false;
    if (!m_bStale)
        header()->resizeSection(0, std::max(viewport()->width(), sizeHintForColumn(0)));
}

void LibraryTreeView::QueueFit()
{
    if (!m_bFitQueued)
        QTimer::singleShot(0, this, [this] { FitColumn(); });
    m_bFitQueued = true;
}

void LibraryTreeView::TreeChanged(CLibraryTree::EChange eChange, HLibraryItem hItem)
{
    if (eChange == CLibraryTree::eTree_Text && !m_bStale)
    {
        m_pModel->TextChanged(hItem);
        QueueFit();
        return;
    }
    // Qt must not look at an item that goes; many changes in a row cost one rebuild.
    if (!m_bStale)
    {
        m_bStale = true;
        QTimer::singleShot(0, this, [this] { Sync(); });
    }
    if (eChange == CLibraryTree::eTree_Removing || eChange == CLibraryTree::eTree_Cleared)
        m_pModel->Rebuild();
    viewport()->update();
}

void LibraryTreeView::ItemExpanded(HLibraryItem hItem, bool bExpanded)
{
    if (m_bStale)
        return;
    setExpanded(m_pModel->IndexOf(hItem), bExpanded);
    QueueFit();
}

void LibraryTreeView::CaretChanged(HLibraryItem hItem)
{
    if (!m_bStale)
        setCurrentIndex(m_pModel->IndexOf(hItem));
    viewport()->update();
}

void LibraryTreeView::ScrollTo(HLibraryItem hItem)
{
    Sync();
    const QModelIndex index = m_pModel->IndexOf(hItem);
    const int nAcross = horizontalScrollBar()->value();
    scrollTo(index);
    // The toolkit shows the left end of the row; it is the label that is wanted.
    horizontalScrollBar()->setValue(nAcross);
    const CRect rc = ItemRect(index);
    if (rc.right > viewport()->width())
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + rc.right - viewport()->width());
    const int nLeft = visualRect(index).left() - indentation();
    if (nLeft < 0)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + nLeft);
}

CRect LibraryTreeView::ItemRect(const QModelIndex& index) const
{
    const QRect rc = visualRect(index);
    QFont f = font();
    f.setBold(m_pPanel && m_pPanel->m_Tree.GetItemStateEx(LibraryTreeModel::ItemOf(index), eState_Bold));
    const int nText = QFontMetrics(f).horizontalAdvance(index.data().toString()) + 8;
    const int nLeft = rc.left() + iconSize().width() + 6;
    return CRect{nLeft, rc.top(), nLeft + nText, rc.bottom() + 1};
}

CRect LibraryTreeView::GetLabelRect(HLibraryItem hItem) const
{
    Sync();
    const QModelIndex index = m_pModel->IndexOf(hItem);
    return index.isValid() ? ItemRect(index) : CRect{};
}

CTreeHit LibraryTreeView::HitTest(CPoint pt) const
{
    Sync();
    // The whole row counts, also beside the view.
    const int nInside = std::clamp(pt.x, 0, std::max(viewport()->width() - 1, 0));
    const QModelIndex index =
        viewport()->rect().contains(nInside, pt.y) ? indexAt(QPoint(nInside, pt.y)) : QModelIndex();
    if (!index.isValid())
        return CTreeHit{};
    const CRect rcLabel = ItemRect(index);
    const int nItemLeft = visualRect(index).left();
    CTreeHit hit{LibraryTreeModel::ItemOf(index), eHit_Right};
    if (pt.x < nItemLeft - indentation() || (pt.x < nItemLeft && !m_Tree.HasChildren(hit.m_hItem)))
        hit.m_nFlags = eHit_Indent;
    else if (pt.x < nItemLeft)
        hit.m_nFlags = eHit_Button;
    else if (pt.x < rcLabel.left)
        hit.m_nFlags = eHit_Icon;
    else if (pt.x < rcLabel.right)
        hit.m_nFlags = eHit_Label;
    return hit;
}

CTreeRows LibraryTreeView::GetRows() const
{
    Sync();
    const QRect rc = visualRect(m_pModel->IndexOf(m_Tree.GetRootItem()));
    const int nHeight = std::max(rc.height(), 1);
    return CTreeRows{rc.top(), nHeight, std::max(viewport()->height() / nHeight, 1)};
}

// With the scroll bars and the frame: a drop on them is a drop on the tree.
CRect LibraryTreeView::GetClientRect() const
{
    return FromQt(QRect(viewport()->mapFrom(this, QPoint(0, 0)), size()));
}

void LibraryTreeView::ShowBand(const CRect& rc)
{
    m_rcBand = rc;
    m_bBand = true;
    viewport()->update();
}

void LibraryTreeView::HideBand()
{
    m_bBand = false;
    viewport()->update();
}

bool LibraryTreeView::IsLeftButtonDown() const
{
    return QGuiApplication::mouseButtons() & Qt::LeftButton;
}

void LibraryTreeView::SetDragCursor(EDragCursor eCursor)
{
    if (eCursor == EDragCursor::eNone)
    {
        viewport()->unsetCursor();
        m_DragScroll.stop();
        return;
    }
    viewport()->setCursor(DragCursor(m_Leaf, eCursor == EDragCursor::eSeveralItems, devicePixelRatioF()));
    m_DragScroll.start();
}

// A pointer that rests at the upper or lower edge brings what lies beyond it.
void LibraryTreeView::ScrollWhileDragging()
{
    const QPoint at = viewport()->mapFromGlobal(QCursor::pos());
    if (!m_pPanel || !m_pPanel->IsDragging() || !viewport()->rect().contains(at))
        return;
    QScrollBar* pBar = verticalScrollBar();
    const int nOld = pBar->value();
    if (at.y() < c_nScrollEdge)
        pBar->triggerAction(QAbstractSlider::SliderSingleStepSub);
    else if (at.y() >= viewport()->height() - c_nScrollEdge)
        pBar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    if (pBar->value() != nOld)
        m_pPanel->OnMove(FromQt(at), IsLeftButtonDown());
}

void LibraryTreeView::StartEditTimer()
{
    QTimer::singleShot(QApplication::doubleClickInterval(), this,
                       [this]
                       {
                           if (m_pPanel)
                               m_pPanel->m_Tree.OnEditTimer();
                       });
}

void LibraryTreeView::OpenEditBox(HLibraryItem hItem, const std::string& sText)
{
    Sync();
    scrollTo(m_pModel->IndexOf(hItem));
    m_pEdit = new NameBox(QtText::ToQt(sText), viewport());
    m_pEdit->setAccessibleName(tr("Name"));
    FitEditBox();
    connect(m_pEdit, &QLineEdit::textChanged, this, [this] { FitEditBox(); });
    m_pEdit->installEventFilter(this);
    m_pEdit->selectAll();
    m_pEdit->show();
    m_pEdit->setFocus();
}

// As wide as what stands in it, as far as the view goes.
void LibraryTreeView::FitEditBox()
{
    if (!m_pEdit || !m_pPanel)
        return;
    const CRect rc = GetLabelRect(m_pPanel->m_Tree.GetCaret());
    const int nHeight = std::max(m_pEdit->sizeHint().height(), rc.Height());
    const int nText = m_pEdit->fontMetrics().horizontalAdvance(m_pEdit->text()) + 28;
    const int nLeft = std::clamp(rc.left - 4, 0, std::max(viewport()->width() - 60, 0));
    m_pEdit->setGeometry(nLeft, rc.top - (nHeight - rc.Height()) / 2,
                         std::min(std::max(nText, 100), viewport()->width() - nLeft), nHeight);
}

std::string LibraryTreeView::CloseEditBox()
{
    if (!m_pEdit)
        return std::string();
    const std::string sText = QtText::FromQt(m_pEdit->text());
    QLineEdit* pEdit = m_pEdit;
    m_pEdit = nullptr;
    pEdit->removeEventFilter(this);
    // Hidden with the focus in it, it would hand that along to whatever comes next in the window.
    if (window()->focusWidget() == pEdit)
        setFocus(Qt::OtherFocusReason);
    pEdit->hide();
    pEdit->deleteLater();
    return sText;
}

bool LibraryTreeView::eventFilter(QObject* pObject, QEvent* pEvent)
{
    if (pObject == m_pEdit && m_pEdit && m_pPanel)
    {
        if (pEvent->type() == QEvent::KeyPress)
        {
            const int nKey = static_cast<QKeyEvent*>(pEvent)->key();
            const bool bTaken = nKey == Qt::Key_Return || nKey == Qt::Key_Enter || nKey == Qt::Key_Tab ||
                                nKey == Qt::Key_Backtab;
            if (bTaken || nKey == Qt::Key_Escape)
            {
                m_pPanel->Command(bTaken ? c_nControlOk : c_nControlCancel);
                return true;
            }
        }
        if (pEvent->type() == QEvent::FocusOut &&
            static_cast<QFocusEvent*>(pEvent)->reason() != Qt::PopupFocusReason &&
            static_cast<QFocusEvent*>(pEvent)->reason() != Qt::ActiveWindowFocusReason)
            QTimer::singleShot(0, this,
                               [this]
                               {
                                   if (m_pPanel && m_pEdit && !m_pEdit->hasFocus())
                                       m_pPanel->FinishEdit();
                               });
    }
    return QTreeView::eventFilter(pObject, pEvent);
}

void LibraryTreeView::paintEvent(QPaintEvent* pEvent)
{
    Sync();
    QTreeView::paintEvent(pEvent);
    if (!m_bBand)
        return;
    // An outline that inverts what is below it, so that it is seen on rows of either colour.
    constexpr int c_nBandWidth = 2;
    const QRect rcBand = ToQt(m_rcBand);
    const QRegion inner(rcBand.adjusted(c_nBandWidth, c_nBandWidth, -c_nBandWidth, -c_nBandWidth));
    QPainter painter(viewport());
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    for (const QRect& rc : QRegion(rcBand) - inner)
        painter.fillRect(rc, Qt::white);
}
