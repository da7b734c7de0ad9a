#include "properties/SwatchPainter.h"

void PaintSwatch(IDrawSurface& surface, const CRect& rc, CColorRef nColor)
{
    if (rc.IsEmpty())
        return;
    surface.FillRect(rc, nColor);
    const CPenSpec light{EPenStyle::eSolid, surface.SystemColor(ESystemColor::eLight), 1};
    const CPenSpec dark{EPenStyle::eSolid, surface.SystemColor(ESystemColor::eShadow), 1};
    const CPoint ptLast{rc.right - 1, rc.bottom - 1};
    surface.DrawLine(CPoint{rc.left, rc.top}, CPoint{ptLast.x, rc.top}, light);
    surface.DrawLine(CPoint{rc.left, rc.top}, CPoint{rc.left, ptLast.y}, light);
    surface.DrawLine(ptLast, CPoint{rc.left - 1, ptLast.y}, dark);
    surface.DrawLine(ptLast, CPoint{ptLast.x, rc.top - 1}, dark);
}
