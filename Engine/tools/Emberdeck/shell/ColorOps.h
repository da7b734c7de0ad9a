#pragma once

#include "platform/IDrawSurface.h"

// The colours of bars and menus are the user's palette made lighter or darker. All work on each channel by
// itself and leave the colour's top byte alone.

// The colours of the user's palette that bars and menus are made of. The front fills them in, and again
// when the palette changes.
struct CShellColors
{
    CColorRef m_nFace = MakeColorRef(0xF0, 0xF0, 0xF0); // of a button
    CColorRef m_nShadow = MakeColorRef(0xA0, 0xA0, 0xA0);
    CColorRef m_nHighlight = MakeColorRef(0x30, 0x8C, 0xC6);
    CColorRef m_nMenu = MakeColorRef(0xFF, 0xFF, 0xFF);
    CColorRef m_nMenuText = MakeColorRef(0x00, 0x00, 0x00);
    CColorRef m_nGrayText = MakeColorRef(0x80, 0x80, 0x80);
};

template <typename TOperation>
constexpr CColorRef MapChannels(CColorRef nColor, const TOperation& operation)
{
    CColorRef nResult = nColor & 0xFF000000u;
    for (int nShift = 0; nShift < 24; nShift += 8)
    {
        const int nChannel = static_cast<int>(nColor >> nShift & 0xFF);
        nResult |= (static_cast<CColorRef>(operation(nChannel)) & 0xFF) << nShift;
    }
    return nResult;
}

// Amounts are 0 to 255, and limited to that.
constexpr int LimitAmount(int nAmount)
{
    return nAmount < 0 ? 0 : nAmount > 255 ? 255 : nAmount;
}

// Toward white: 0 leaves the colour, 255 is white.
constexpr CColorRef Lighten(CColorRef nColor, int nAmount)
{
    const int n = LimitAmount(nAmount);
    return MapChannels(nColor, [n](int c) { return c + (255 - c) * n / 255; });
}

// The same by a fraction. One of 0 or less, above 1, or that is no number, leaves the colour.
constexpr CColorRef Lighten(CColorRef nColor, double fFraction)
{
    if (!(fFraction > 0.0 && fFraction <= 1.0))
        return nColor;
    return MapChannels(nColor, [fFraction](int c) { return static_cast<int>(c + (255 - c) * fFraction); });
}

// Toward black: 0 leaves the colour, 255 is black.
constexpr CColorRef Darken(CColorRef nColor, int nAmount)
{
    const int n = LimitAmount(nAmount);
    return MapChannels(nColor, [n](int c) { return c * (255 - n) / 255; });
}

// 0 to 255. In whole numbers: sums of fractions would make many greys darker by one.
constexpr int Luminance(CColorRef nColor)
{
    return static_cast<int>((30 * (nColor & 0xFF) + 59 * (nColor >> 8 & 0xFF) + 11 * (nColor >> 16 & 0xFF)) /
                            100);
}
