#pragma once

#include "platform/IDrawSurface.h"

// The colours of bars and menus are the user's palette made lighter or darker. All work on each channel by
// itself and leave the colour's top byte alone.

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
    bool m_bDark = false; // light text on dark ground

    // Toward the ground that text stands on, and away from it. In a light palette that is lighter and darker;
    // in a dark one it is the other way round, or text would stand white on pale blue.
    constexpr CColorRef Fade(CColorRef nColor, int nAmount) const
    {
        return m_bDark ? Darken(nColor, nAmount) : Lighten(nColor, nAmount);
    }
    constexpr CColorRef Deepen(CColorRef nColor, int nAmount) const
    {
        return m_bDark ? Lighten(nColor, nAmount) : Darken(nColor, nAmount);
    }

    // The ground of bars, and of the strip at the left of a menu.
    constexpr CColorRef BarGround() const { return Fade(m_nFace, 100); }
    // Of separators, and of images that are disabled and have no image for that.
    constexpr CColorRef Line() const { return Deepen(m_nFace, 50); }
    // The box about what is selected, hot, pressed or checked.
    constexpr CColorRef BoxEdge() const { return Deepen(m_nHighlight, 40); }
    constexpr CColorRef SelectedFill() const { return Fade(m_nHighlight, 150); }
    constexpr CColorRef CheckedFill() const { return Fade(m_nHighlight, 200); }
    constexpr CColorRef DisabledEdge() const { return Deepen(m_nShadow, 40); }
    constexpr CColorRef DisabledFill() const { return Fade(m_nShadow, 200); }
    // Under a raised image: dark in every palette.
    constexpr CColorRef ImageShadow() const { return Darken(m_nShadow, 30); }
};
