#pragma once

#include "properties/CurveView.h"

// Paints a curve on a surface that is as large as the view's area, with the origin at its top left. Draws
// only what is in the surface's bounds. A null surface is reported.
void PaintCurve(IDrawSurface* pSurface, const CCurveView& view, const CEffectProperty& prop);
