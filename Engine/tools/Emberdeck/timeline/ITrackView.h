#pragma once

#include "platform/IDrawSurface.h"

enum class ECursorShape
{
    eArrow,
    eSizeHorizontal,
    eForbidden // what is carried would be refused here
};

// What the timeline asks of the window that shows it. None of these calls comes back into the timeline
// before it returns, but for PaintNow and PaintRulerNow, which may run the painting operations.
class ITrackView
{
public:
    virtual ~ITrackView() = default;

    virtual void TakeFocus() = 0;
    virtual void Invalidate() = 0;     // schedules a repaint of the whole window
    virtual void PaintNow() = 0;       // paints the track area before it returns
    virtual void PaintRulerNow() = 0;  // the same for the ruler; asks for no other repaint
    virtual void KeyInfoChanged() = 0; // show CKeyInfoBar::GetInfo again
    virtual void SetCursorShape(ECursorShape eShape) = 0;
    // In window coordinates, rounded down to whole logical pixels; may lie outside the window.
    virtual CPoint PointerPosition() const = 0;
    virtual bool IsLeftButtonDown() const = 0; // the real button, now
    // Calls CKeyInfoBar::OnPhaseLengthEntered once the present event is over, unless the bar has gone by
    // then.
    virtual void PostPhaseLengthEntered() = 0;
};
