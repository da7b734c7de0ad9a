#pragma once

#include <cmath>

#include "platform/IDrawSurface.h"

// How well colours stand out from each other, by the formula that accessibility guidelines use.

// 0 black to 1 white, as bright as the eye takes it.
inline double RelativeLuminance(CColorRef nColor)
{
    const auto linear = [nColor](int nShift)
    {
        const double c = (nColor >> nShift & 0xFF) / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(0) + 0.7152 * linear(8) + 0.0722 * linear(16);
}

// 1 for equal colours, 21 for black and white. Text wants 4.5, lines and shapes 3.
inline double ContrastRatio(CColorRef nLeft, CColorRef nRight)
{
    const double fLeft = RelativeLuminance(nLeft) + 0.05;
    const double fRight = RelativeLuminance(nRight) + 0.05;
    return fLeft > fRight ? fLeft / fRight : fRight / fLeft;
}
