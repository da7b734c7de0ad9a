#pragma once

#include <cstdint>
#include <string_view>

// What the painters of the timeline, the curve editor and the vector editor draw on. One convention
// holds for all of it: coordinates are whole logical pixels, y down; the right and bottom edges of a
// rectangle are outside it; the last point of a line is not drawn; an ellipse fills the box of its
// rectangle with the same edges left out (so a circle of 11 pixels is given as 11 by 11).
// Coordinates may lie far outside the surface; the surface clips. An empty rectangle draws nothing.
//
// A logical pixel is one pixel at scale 1; on a finer screen the surface draws it as several. Texts are the model's
// bytes, in whichever form they have there; the surface makes characters of them. They are drawn in the font
// of the window that is painted, on one line, without mark-up and without shortcut marks.

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
    // Smaller by n on each side; larger for an n below 0. May turn inside out, and is empty then.
    CRect Inset(int32_t n) const { return CRect{left + n, top + n, right - n, bottom - n}; }
    friend bool operator==(const CRect&, const CRect&) = default;
};

// 0x00BBGGRR: red in the low byte.
using CColorRef = uint32_t;
constexpr CColorRef MakeColorRef(uint32_t nRed, uint32_t nGreen, uint32_t nBlue)
{
    return (nRed & 0xFF) | (nGreen & 0xFF) << 8 | (nBlue & 0xFF) << 16;
}

// Lines are eDotted as every second pixel, from the first on.
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

// Colours of the user's palette, for what isn't fixed. They may change between two paintings, so nobody keeps them.
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

// The outline of a shape, or a line.
struct CPenSpec
{
    EPenStyle m_eStyle = EPenStyle::eSolid;
    CColorRef m_nColor = 0;
    int32_t m_nWidth = 1; // pixels; below 1 counts as 1
    friend bool operator==(const CPenSpec&, const CPenSpec&) = default;
};

// The inside of a shape. A hatching leaves what is between its lines as it was.
struct CBrushSpec
{
    EBrushStyle m_eStyle = EBrushStyle::eSolid;
    CColorRef m_nColor = 0xFFFFFF;
    friend bool operator==(const CBrushSpec&, const CBrushSpec&) = default;
};

// Lent to a painter for one painting; nobody keeps it. The painter draws from the back to the front: what comes later
// covers what was there. Nothing fails.
class IDrawSurface
{
public:
    virtual ~IDrawSurface() = default;

    virtual void FillRect(const CRect& rc, CColorRef nColor) = 0;
    // Without its last point, so a line from a point to itself draws nothing. A wider one grows to both sides.
    virtual void DrawLine(CPoint from, CPoint to, const CPenSpec& pen) = 0;
    // The outline passes through the points, nCount of them, and closes itself; the inside by the brush.
    virtual void DrawPolygon(const CPoint* pPoints, int nCount, const CPenSpec& pen,
                             const CBrushSpec& brush) = 0;
    // Inside the box, its outline too.
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
    // Of that text on one line, in pixels; 0 for an empty one.
    virtual int32_t TextWidth(std::string_view sText) const = 0;
    virtual int32_t TextHeight() const = 0; // of any line
    virtual CColorRef SystemColor(ESystemColor eColor) const = 0;
    virtual CRect Bounds() const = 0; // what can be seen of the surface
};
