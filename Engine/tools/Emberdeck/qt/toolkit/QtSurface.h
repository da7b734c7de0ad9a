#pragma once

#include <cmath>
#include <string>
#include <unordered_map>

#include <QImage>
#include <QPainter>
#include <QPalette>

#include "platform/IDrawSurface.h"

// The rooms' points, rectangles and colours as the toolkit has them, and back. Rectangles keep their size, also when
// they are turned inside out. A colour has no alpha; one that comes back loses it.
inline QRect ToQt(const CRect& rc)
{
    return QRect(rc.left, rc.top, rc.Width(), rc.Height());
}
inline QPoint ToQt(CPoint pt)
{
    return QPoint(pt.x, pt.y);
}
inline QColor ToQt(CColorRef nColor)
{
    return QColor(nColor & 0xFF, nColor >> 8 & 0xFF, nColor >> 16 & 0xFF);
}
inline CRect FromQt(const QRect& rc)
{
    return CRect{rc.left(), rc.top(), rc.left() + rc.width(), rc.top() + rc.height()};
}
inline CPoint FromQt(const QPoint& pt)
{
    return CPoint{pt.x(), pt.y()};
}
inline CPoint FromQt(const QPointF& pt) // the pixel that it lies in
{
    return CPoint{int32_t(std::floor(pt.x())), int32_t(std::floor(pt.y()))};
}
inline CColorRef FromQt(const QColor& color)
{
    return MakeColorRef(uint32_t(color.red()), uint32_t(color.green()), uint32_t(color.blue()));
}

// Draws with a painter, whose origin is the surface's and whose font stays. Keeps the surface's convention: right and bottom
// edges out, the last point of a line not drawn, whatever the toolkit's own functions do there. Level and upright lines
// are filled strips, and so whole pixels at every scale; what slopes is drawn with soft edges.
//
// Made for one paint event, and gone with it. While it lives nobody else sets the painter's pen and brush.
class QtSurface : public IDrawSurface
{
public:
    // All but the bounds borrowed. bounds: what can be seen, in logical pixels; nothing outside it is drawn, so an event
    // that repaints a part gives that part alone.
    QtSurface(QPainter& painter, const QRect& bounds, const QPalette& palette);

    void FillRect(const CRect& rc, CColorRef nColor) override;
    void DrawLine(CPoint from, CPoint to, const CPenSpec& pen) override;
    void DrawPolygon(const CPoint* pPoints, int nCount, const CPenSpec& pen,
                     const CBrushSpec& brush) override;
    void DrawEllipse(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush) override;
    void DrawRectangle(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush) override;
    void DrawRaisedFace(const CRect& rc) override;
    void DrawSunkenFace(const CRect& rc) override;
    void DrawTextCentered(const CRect& rc, std::string_view sText, CColorRef nColor) override;
    void DrawFaceLabel(const CRect& rcFace, const CRect& rc, std::string_view sText,
                       CColorRef nColor) override;
    void DrawTextAt(CPoint pt, std::string_view sText, CColorRef nColor) override;
    int32_t TextWidth(std::string_view sText) const override;
    int32_t TextHeight() const override;
    CColorRef SystemColor(ESystemColor eColor) const override;
    CRect Bounds() const override { return FromQt(m_Bounds); }

private:
    void SetTools(const CPenSpec& pen, const CBrushSpec& brush);
    bool Clip(QPointF& from, QPointF& to) const;
    CRect Visible(const CRect& rc) const;
    void FillDotted(const CRect& rc, CColorRef nColor);
    const QImage& FaceImage(int nHeight);
    void ClearFace(const CRect& rcFace, const CRect& rcPart);
    QLinearGradient FaceGradient(int nTop, int nBottom) const;

    QPainter& m_Painter;
    QRect m_Bounds;
    const QPalette& m_Palette;
    const bool m_bPlainScale;       // a logical pixel is a pixel
    QColor m_FaceTop, m_FaceBottom; // of a raised face, from top to bottom
    QColor m_SunkenFace;
    CColorRef m_nFaceEdge, m_nFaceLight;
    bool m_bTools = false; // the painter's pen and brush are these
    CPenSpec m_ToolPen;
    CBrushSpec m_ToolBrush;
    QImage m_FaceImage; // of the last height
    QImage m_DottedRow, m_DottedColumn;
    CColorRef m_nDotted = 0;                                   // what they are made with
    mutable std::unordered_map<std::string, int32_t> m_Widths; // of texts that were asked for, in pixels
};
