#include "qt/library/LibraryTreeView.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>

#include "qt/toolkit/PopupMenu.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

// Events of the tree's window, handed to its panel.

namespace
{
CModifiers ModifiersOf(const QInputEvent* pEvent)
{
    return CModifiers{bool(pEvent->modifiers() & Qt::ControlModifier),
                      bool(pEvent->modifiers() & Qt::ShiftModifier)};
}

ETreeKey TreeKey(const QKeyEvent* pEvent)
{
    const bool bKeypad = pEvent->modifiers() & Qt::KeypadModifier;
    switch (pEvent->key())
    {
    case Qt::Key_Up:
        return ETreeKey::eUp;
    case Qt::Key_Down:
        return ETreeKey::eDown;
    case Qt::Key_Left:
        return ETreeKey::eLeft;
    case Qt::Key_Right:
        return ETreeKey::eRight;
    case Qt::Key_Home:
        return ETreeKey::eHome;
    case Qt::Key_End:
        return ETreeKey::eEnd;
    case Qt::Key_PageUp:
        return ETreeKey::ePageUp;
    case Qt::Key_PageDown:
        return ETreeKey::ePageDown;
    case Qt::Key_Plus:
        return bKeypad ? ETreeKey::ePlus : ETreeKey::eOther;
    case Qt::Key_Minus:
        return bKeypad ? ETreeKey::eMinus : ETreeKey::eOther;
    case Qt::Key_Asterisk:
        return bKeypad ? ETreeKey::eMultiply : ETreeKey::eOther;
    case Qt::Key_Backspace:
        return ETreeKey::eBackspace;
    case Qt::Key_Insert:
        return ETreeKey::eInsert;
    case Qt::Key_Delete:
        return ETreeKey::eDelete;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return ETreeKey::eEnter;
    case Qt::Key_Escape:
        return ETreeKey::eEscape;
    case Qt::Key_F:
        return ETreeKey::eF;
    case Qt::Key_F2:
        return ETreeKey::eF2;
    case Qt::Key_F3:
        return ETreeKey::eF3;
    default:
        return ETreeKey::eOther;
    }
}
} // namespace

void LibraryTreeView::mousePressEvent(QMouseEvent* pEvent)
{
    const CPoint pt = FromQt(pEvent->position());
    if (!m_pPanel)
        return;
    if (pEvent->button() == Qt::RightButton)
    {
        m_pPanel->OnRightPress(pt, ModifiersOf(pEvent));
        return;
    }
    if (pEvent->button() != Qt::LeftButton)
        return;
    m_pPanel->OnLeftPress(pt, ModifiersOf(pEvent));
}

void LibraryTreeView::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (m_pPanel && pEvent->button() == Qt::LeftButton)
        m_pPanel->OnDoubleClick(FromQt(pEvent->position()), ModifiersOf(pEvent));
}

void LibraryTreeView::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (m_pPanel)
        m_pPanel->OnMove(FromQt(pEvent->position()), pEvent->buttons() & Qt::LeftButton);
}

void LibraryTreeView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (!m_pPanel)
        return;
    const CPoint pt = FromQt(pEvent->position());
    if (pEvent->button() == Qt::LeftButton)
        m_pPanel->OnLeftRelease(pt);
    else if (pEvent->button() == Qt::RightButton && viewport()->rect().contains(ToQt(pt)))
        ShowMenu(m_pPanel->OnRightRelease(pt), pEvent->globalPosition().toPoint());
}

void LibraryTreeView::contextMenuEvent(QContextMenuEvent* pEvent)
{
    // That of the mouse comes at the press; the menu belongs to the release. The keyboard's is taken here.
    pEvent->accept();
    if (!m_pPanel || pEvent->reason() != QContextMenuEvent::Keyboard)
        return;
    CPoint pt;
    const std::vector<CMenuEntry> menu = m_pPanel->OnMenuKey(pt);
    ShowMenu(menu, viewport()->mapToGlobal(ToQt(pt)));
}

void LibraryTreeView::ShowMenu(const std::vector<CMenuEntry>& entries, const QPoint& at)
{
    if (entries.empty())
        return;
    const std::optional<int> nChosen = RunPopup(MakePopup(this, entries), at);
    if (nChosen && *nChosen && m_pPanel)
        m_pPanel->Command(*nChosen);
}

void LibraryTreeView::keyPressEvent(QKeyEvent* pEvent)
{
    if (!m_pPanel)
        return;
    const CTreeKey key{TreeKey(pEvent), ModifiersOf(pEvent), bool(pEvent->modifiers() & Qt::AltModifier)};
    if (m_pPanel->OnKey(key) || (key.m_Modifiers.m_bCtrl && ScrollBy(key.m_eKey)))
        return;
    const QString sText = pEvent->text();
    if (!sText.isEmpty() && sText.at(0).isPrint() &&
        !(pEvent->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) &&
        m_pPanel->OnCharacter(QtText::FromQt(sText), uint64_t(m_Clock.elapsed())))
        return;
    pEvent->ignore();
}

// The keys that scroll with Ctrl, and leave the caret.
bool LibraryTreeView::ScrollBy(ETreeKey eKey)
{
    const bool bAcross = eKey == ETreeKey::eLeft || eKey == ETreeKey::eRight;
    QAbstractSlider::SliderAction eAction = QAbstractSlider::SliderNoAction;
    if (eKey == ETreeKey::eHome || eKey == ETreeKey::eEnd)
        eAction =
            eKey == ETreeKey::eHome ? QAbstractSlider::SliderToMinimum : QAbstractSlider::SliderToMaximum;
    else if (eKey == ETreeKey::ePageUp || eKey == ETreeKey::ePageDown)
        eAction = eKey == ETreeKey::ePageUp ? QAbstractSlider::SliderPageStepSub
                                            : QAbstractSlider::SliderPageStepAdd;
    else if (bAcross)
        eAction = eKey == ETreeKey::eLeft ? QAbstractSlider::SliderSingleStepSub
                                          : QAbstractSlider::SliderSingleStepAdd;
    (bAcross ? horizontalScrollBar() : verticalScrollBar())->triggerAction(eAction);
    return eAction != QAbstractSlider::SliderNoAction;
}

// The mouse is another's now, and the release with it.
bool LibraryTreeView::viewportEvent(QEvent* pEvent)
{
    if (m_pPanel && (pEvent->type() == QEvent::UngrabMouse || pEvent->type() == QEvent::WindowDeactivate))
        m_pPanel->OnMouseLost();
    return QTreeView::viewportEvent(pEvent);
}

// The panel can't follow a hand any more.
void LibraryTreeView::hideEvent(QHideEvent* pEvent)
{
    if (m_pPanel)
        m_pPanel->OnMouseLost();
    QTreeView::hideEvent(pEvent);
}

void LibraryTreeView::resizeEvent(QResizeEvent* pEvent)
{
    QTreeView::resizeEvent(pEvent);
    FitColumn();
}

void LibraryTreeView::wheelEvent(QWheelEvent* pEvent)
{
    if (m_pPanel && m_pPanel->m_Tree.OnWheel())
        pEvent->accept();
    else
        QTreeView::wheelEvent(pEvent);
}

void LibraryTreeView::focusInEvent(QFocusEvent* pEvent)
{
    QTreeView::focusInEvent(pEvent);
    if (m_pPanel)
        m_pPanel->OnFocusChange(true);
    viewport()->update();
}

void LibraryTreeView::focusOutEvent(QFocusEvent* pEvent)
{
    QTreeView::focusOutEvent(pEvent);
    if (m_pPanel)
        m_pPanel->OnFocusChange(false);
    viewport()->update();
}
