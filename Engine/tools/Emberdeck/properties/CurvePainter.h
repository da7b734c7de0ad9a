#pragma once

#include "properties/CurveView.h"

// What makes a curve easier to read than its plain picture. The front turns all of it on.
struct CCurvePaintOptions
{
    bool m_bContrastPens =
        false; // over a curve of colours: pens that stand out from the ground where the plain ones don't
    bool m_bScale = false; // marks of values at the left, for kinds that have numbers
};

// Paints a curve on a surface that is as large as the view's area, with the origin at its top left. Draws
// only what is in the surface's bounds. A null surface is reported.
void PaintCurve(IDrawSurface* pSurface, const CCurveView& view, const CEffectProperty& prop,
                const CCurvePaintOptions& options = CCurvePaintOptions());
