#include "qt/properties/DragView.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "qt/toolkit/QtSurface.h"

DragView::DragView(QWidget& dialog) : QWidget(&dialog)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    dialog.installEventFilter(this);
}

CPoint DragView::InDialog(const QMouseEvent& event) const
{
    return FromQt(mapToParent(event.position()));
}

void DragView::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        OnPress(InDialog(*pEvent), pEvent->modifiers());
}

void DragView::mouseMoveEvent(QMouseEvent* pEvent)
{
    if (!(pEvent->buttons() & Qt::LeftButton))
        EndDrag(); // the release went elsewhere
    OnMove(InDialog(*pEvent), pEvent->modifiers());
}

void DragView::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        EndDrag();
    else if (pEvent->button() == Qt::RightButton)
        OnRightRelease(InDialog(*pEvent));
}

void DragView::hideEvent(QHideEvent* pEvent)
{
    EndDrag();
    QWidget::hideEvent(pEvent);
}

// What the box with the focus didn't take comes to the dialog.
bool DragView::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_Escape)
        return CancelDrag();
    if (pEvent->type() == QEvent::ActivationChange && !isActiveWindow())
        EndDrag(); // without the mouse there is no release to come
    return QWidget::eventFilter(pWatched, pEvent);
}
