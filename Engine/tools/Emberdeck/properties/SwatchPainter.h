#pragma once

#include "platform/IDrawSurface.h"

// The swatch button of a colour row: the colour with a raised edge all round.
void PaintSwatch(IDrawSurface& surface, const CRect& rc, CColorRef nColor);
