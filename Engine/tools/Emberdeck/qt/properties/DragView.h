#pragma once

#include <QWidget>

#include "platform/IDrawSurface.h"
#include "qt/toolkit/AccessibleViews.h"

// A painted part of a dialog, in which the left button drags something. A drag ends by the release, and when the mouse
// is lost: the view is hidden, another window is used. Esc takes it back; without one it closes the dialog.
class DragView : public QWidget, public IAccessibleView
{
    Q_OBJECT

public:
    explicit DragView(QWidget& dialog); // a child of the dialog

protected:
    // Points are the dialog's.
    virtual void OnPress(CPoint pt, Qt::KeyboardModifiers held) = 0;
    virtual void OnMove(CPoint pt, Qt::KeyboardModifiers held) = 0; // also without a drag
    virtual void OnRightRelease(CPoint pt) = 0;
    virtual void EndDrag() = 0;    // also without one
    virtual bool CancelDrag() = 0; // false: there is none

    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    CPoint InDialog(const QMouseEvent& event) const;
};
