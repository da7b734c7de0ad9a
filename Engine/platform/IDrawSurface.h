#pragma once

#include <cstdint>
#include <string_view>

// What the painters of the timeline, the curve editor and the vector editor draw on. One convention
// holds for all of it: coordinates are whole logical pixels, y down; the right and bottom edges of a
// rectangle are outside it; the last point of a line is not drawn; an ellipse fills the box of its
// rectangle with the same edges left out (so a circle of 11 pixels is given as 11 by 11).
// Coordinates may lie far outside the surface; the surface clips.

struct CPoint
{
    int32_t x = 0;
    int32_t y = 0;
    friend bool operator==(const CPoint&, const CPoint&) = default;
};

struct CRect
{
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    int32_t Width() const { return right - left; }
    int32_t Height() const { return bottom - top; }
    bool IsEmpty() const { return left >= right || top >= bottom; }
    bool Contains(CPoint pt) const { return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom; }
    CRect Inset(int32_t n) const { return CRect{left + n, top + n, right - n, bottom - n}; }
    friend bool operator==(const CRect&, const CRect&) = default;
};

// 0x00BBGGRR: red in the low byte.
using CColorRef = uint32_t;
constexpr CColorRef MakeColorRef(uint32_t nRed, uint32_t nGreen, uint32_t nBlue)
{
    return (nRed & 0xFF) | (nGreen & 0xFF) << 8 | (nBlue & 0xFF) << 16;
}

enum class EPenStyle
{
    eNone,
    eSolid,
    eDotted
};
enum class EBrushStyle
{
    eNone,
    eSolid,
    eHatchDiagonal
};

// Colours of the user's palette, for what isn't fixed.
enum class ESystemColor
{
    eWindow,
    eWindowText,
    eFace,
    eFaceText,
    eShadow,
    eHighlight,
    eLight,
    eHighlightText,
    eGrayText
};

struct CPenSpec
{
    EPenStyle m_eStyle = EPenStyle::eSolid;
    CColorRef m_nColor = 0;
    int32_t m_nWidth = 1; // pixels
    friend bool operator==(const CPenSpec&, const CPenSpec&) = default;
};

struct CBrushSpec
{
    EBrushStyle m_eStyle = EBrushStyle::eSolid;
    CColorRef m_nColor = 0xFFFFFF;
    friend bool operator==(const CBrushSpec&, const CBrushSpec&) = default;
};

class IDrawSurface
{
public:
    virtual ~IDrawSurface() = default;

    virtual void FillRect(const CRect& rc, CColorRef nColor) = 0;
    virtual void DrawLine(CPoint from, CPoint to, const CPenSpec& pen) = 0; // without its last point
    // The outline passes through the points; the inside by the brush.
    virtual void DrawPolygon(const CPoint* pPoints, int nCount, const CPenSpec& pen,
                             const CBrushSpec& brush) = 0;
    virtual void DrawEllipse(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush) = 0;
    virtual void DrawRectangle(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush) = 0;
    virtual void DrawRaisedFace(const CRect& rc) = 0; // a push button's face
    virtual void DrawSunkenFace(const CRect& rc) = 0; // the same, pushed
    // One line of text: centred both ways in rc, unclipped, background left as it is.
    virtual void DrawTextCentered(const CRect& rc, std::string_view sText, CColorRef nColor) = 0;
    // One line of text, centred in rc, on the raised face that was drawn in rcFace: what runs over the face ends at
    // the text. Shortened at its end, with an ellipsis, where rc is too narrow; nothing where no letter has room.
    virtual void DrawFaceLabel(const CRect& rcFace, const CRect& rc, std::string_view sText,
                               CColorRef nColor) = 0;
    // One line with its top left corner at pt.
    virtual void DrawTextAt(CPoint pt, std::string_view sText, CColorRef nColor) = 0;
    virtual int32_t TextWidth(std::string_view sText) const = 0;
    virtual int32_t TextHeight() const = 0;
    virtual CColorRef SystemColor(ESystemColor eColor) const = 0;
    virtual CRect Bounds() const = 0; // what can be seen of the surface
};
