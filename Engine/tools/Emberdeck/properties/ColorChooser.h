#pragma once

#include <cstdint>

#include "shared/engine/GDISurface.h"

// Red and blue change places: a property's colour word has blue low, the palette's and a surface's red low.
constexpr uint32_t SwapRedBlue(uint32_t nColor)
{
    return (nColor & 0xFF00FF00) | (nColor & 0xFF) << 16 | (nColor >> 16 & 0xFF);
}

// Hue 0 to 359 degrees, saturation and luminance 0 to 255.
struct CHsl
{
    int m_nHue = 0;
    int m_nSat = 0;
    int m_nLum = 0;
    friend bool operator==(const CHsl&, const CHsl&) = default;
};
constexpr int c_nMaxHue = 359;
constexpr int c_nMaxChannel = 255;

CColorRef HslToRgb(const CHsl& hsl);
// A grey has no hue, black and white have no saturation either: these come from the colour before.
CHsl RgbToHsl(CColorRef nColor, const CHsl& before);

// A colour as it is chosen: 48 basic colours, a square of hue and saturation, a luminance bar, and numbers.
// Red, green and blue are the truth; hue and saturation are remembered beside them, since the way there and
// back in whole numbers changes most colours.
class CColorChooser
{
public:
    static constexpr int c_nBasicColumns = 8;
    static constexpr int c_nBasicColors = 48;

    CColorRef GetRgb() const { return m_nRgb; }
    const CHsl& GetHsl() const { return m_Hsl; }
    void SetRgb(CColorRef nColor); // red, green and blue of the word
    void SetHsl(const CHsl& hsl);  // limited to its ranges

    // The basic colours: eight across, greys in the first column, one hue in each of the others. rc is the
    // place of them all, wherever it may be.
    static CColorRef GetBasicColor(int nIndex); // black out of range
    static CRect GetBasicRect(const CRect& rc, int nIndex);
    static int HitBasic(const CRect& rc, CPoint pt); // -1: between the cells
    int GetBasicFocus() const { return m_nBasicFocus; }
    // A press takes the focus there, and the colour. False: it met nothing.
    bool PressBasic(const CRect& rc, CPoint pt);
    // Moves the focus by columns and rows, and stops at the edges.
    void MoveBasicFocus(int nColumns, int nRows);
    void PickBasicFocus(); // Space

    // A pointer in the square: hue across, saturation up. In the bar: luminance up. A point outside counts
    // as the nearest one inside.
    void PointAtSquare(const CRect& rc, CPoint pt);
    void PointAtBar(const CRect& rc, CPoint pt);
    CPoint GetSquareMark(const CRect& rc) const; // where the present colour lies
    int32_t GetBarMark(const CRect& rc) const;   // and its y

    // Fills a whole surface with the square at medium luminance, and with the bar of the present hue.
    static void PaintSquare(CGDISurface& surface);
    void PaintBar(CGDISurface& surface) const;

private:
    CColorRef m_nRgb = 0;
    CHsl m_Hsl;
    int m_nBasicFocus = 0;
};
