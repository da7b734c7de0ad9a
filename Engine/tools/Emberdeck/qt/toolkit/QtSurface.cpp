#include "qt/toolkit/QtSurface.h"

#include <algorithm>
#include <cmath>

#include <QVarLengthArray>

#include "qt/toolkit/QtText.h"

QtSurface::QtSurface(QPainter& painter, const QRect& bounds, const QPalette& palette)
    : m_Painter(painter),
      m_Bounds(bounds),
      m_Palette(palette),
      m_bPlainScale(painter.deviceTransform().type() <= QTransform::TxTranslate)
{
    QColor face = m_Palette.color(QPalette::Button);
    // What is drawn on the faces is black in every palette: a dark one is lightened until that shows.
    const bool bDark = face.lightness() < 128;
    if (bDark)
    {
        const auto lift = [](int n) { return n + (255 - n) * 11 / 20; };
        face = QColor(lift(face.red()), lift(face.green()), lift(face.blue()));
    }
    m_FaceTop = face.lighter(106);
    m_FaceBottom = face.darker(108);
    m_nFaceEdge = FromQt(face.darker(170));
    m_nFaceLight = FromQt(face.lighter(115));
    m_SunkenFace = face.darker(bDark ? 130 : 112);
}

// Coordinates may lie a billion pixels outside, where the painter's own arithmetic ends.
CRect QtSurface::Visible(const CRect& rc) const
{
    constexpr int32_t c_nMargin = 64;
    return CRect{std::max(rc.left, m_Bounds.left() - c_nMargin), std::max(rc.top, m_Bounds.top() - c_nMargin),
                 std::min(rc.right, m_Bounds.right() + c_nMargin),
                 std::min(rc.bottom, m_Bounds.bottom() + c_nMargin)};
}

void QtSurface::FillRect(const CRect& rc, CColorRef nColor)
{
    const CRect rcVisible = Visible(rc);
    if (!rcVisible.IsEmpty())
        m_Painter.fillRect(ToQt(rcVisible), ToQt(nColor));
}

bool QtSurface::Clip(QPointF& from, QPointF& to) const
{
    const QRectF area = QRectF(m_Bounds).adjusted(-64, -64, 64, 64);
    const double dx = to.x() - from.x(), dy = to.y() - from.y();
    double fFirst = 0.0, fLast = 1.0;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {from.x() - area.left(), area.right() - from.x(), from.y() - area.top(),
                         area.bottom() - from.y()};
    for (int i = 0; i < 4; ++i)
    {
        if (p[i] == 0.0)
        {
            if (q[i] < 0.0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0)
            fFirst = std::max(fFirst, t);
        else
            fLast = std::min(fLast, t);
    }
    if (fFirst > fLast)
        return false;
    const QPointF start = from;
    from = QPointF(start.x() + fFirst * dx, start.y() + fFirst * dy);
    to = QPointF(start.x() + fLast * dx, start.y() + fLast * dy);
    return true;
}

// Every second pixel.
void QtSurface::FillDotted(const CRect& rc, CColorRef nColor)
{
    const CRect rcVisible = Visible(rc);
    if (rcVisible.IsEmpty())
        return;
    constexpr int c_nDots = 512;
    if (!m_bPlainScale || rcVisible.Width() > c_nDots || rcVisible.Height() > c_nDots ||
        std::min(rcVisible.Width(), rcVisible.Height()) > 1)
    {
        m_Painter.fillRect(ToQt(rcVisible), QBrush(ToQt(nColor), Qt::Dense4Pattern));
        return;
    }
    // A pattern is set up anew for each fill; a picture of a line is there.
    if (m_DottedRow.isNull() || nColor != m_nDotted)
    {
        m_nDotted = nColor;
        m_DottedRow = QImage(c_nDots, 1, QImage::Format_ARGB32_Premultiplied);
        m_DottedColumn = QImage(1, c_nDots, QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < c_nDots; ++i)
        {
            const QColor color = i % 2 ? QColor(Qt::transparent) : ToQt(nColor);
            m_DottedRow.setPixelColor(i, 0, color);
            m_DottedColumn.setPixelColor(0, i, color);
        }
    }
    const bool bRow = rcVisible.Width() > 1;
    m_Painter.drawImage(QPoint(rcVisible.left, rcVisible.top), bRow ? m_DottedRow : m_DottedColumn,
                        QRect(0, 0, rcVisible.Width(), rcVisible.Height()));
}

void QtSurface::DrawLine(CPoint from, CPoint to, const CPenSpec& pen)
{
    if (pen.m_eStyle == EPenStyle::eNone || from == to)
        return;
    const bool bDotted = pen.m_eStyle == EPenStyle::eDotted;
    if (from.x == to.x || from.y == to.y)
    {
        // As a filled strip it is one logical pixel wide at every scale. The first point counts, the last not.
        CRect rc{from.x, from.y, from.x + 1, from.y + 1};
        if (to.x > from.x)
            rc.right = to.x;
        else if (to.x < from.x)
            rc.left = to.x + 1;
        if (to.y > from.y)
            rc.bottom = to.y;
        else if (to.y < from.y)
            rc.top = to.y + 1;
        // A wider line grows to both sides, by one more towards the origin when that can't be even.
        const int32_t nMore = std::max(pen.m_nWidth, 1) - 1;
        (from.x == to.x ? rc.left : rc.top) -= (nMore + 1) / 2;
        (from.x == to.x ? rc.right : rc.bottom) += nMore / 2;
        if (bDotted)
            FillDotted(rc, pen.m_nColor);
        else
            FillRect(rc, pen.m_nColor);
        return;
    }
    // One step short of the last point, along the longer side.
    const double dx = double(to.x) - from.x, dy = double(to.y) - from.y;
    const double fSteps = std::max(std::fabs(dx), std::fabs(dy));
    QPointF a(from.x, from.y), b(to.x - dx / fSteps, to.y - dy / fSteps);
    if (!Clip(a, b))
        return;
    if (bDotted)
    {
        const int nSteps = static_cast<int>(std::max(std::fabs(b.x() - a.x()), std::fabs(b.y() - a.y())));
        for (int i = 0; i <= nSteps; i += 2)
        {
            const double t = nSteps ? double(i) / nSteps : 0.0;
            m_Painter.fillRect(
                QRect(qRound(a.x() + (b.x() - a.x()) * t), qRound(a.y() + (b.y() - a.y()) * t), 1, 1),
                ToQt(pen.m_nColor));
        }
        return;
    }
    SetTools(pen, CBrushSpec{EBrushStyle::eNone, 0});
    m_Painter.save();
    m_Painter.setRenderHint(QPainter::Antialiasing);
    m_Painter.translate(0.5, 0.5); // through the pixels' centres
    m_Painter.drawLine(a, b);
    m_Painter.restore();
}

void QtSurface::SetTools(const CPenSpec& pen, const CBrushSpec& brush)
{
    if (m_bTools && pen == m_ToolPen && brush == m_ToolBrush)
        return; // one mark after the other: new tools would cost as much as the mark
    m_bTools = true;
    m_ToolPen = pen;
    m_ToolBrush = brush;
    if (pen.m_eStyle == EPenStyle::eNone)
        m_Painter.setPen(Qt::NoPen);
    else
    {
        QPen tool(ToQt(pen.m_nColor), std::max(pen.m_nWidth, 1));
        tool.setStyle(pen.m_eStyle == EPenStyle::eDotted ? Qt::DotLine : Qt::SolidLine);
        m_Painter.setPen(tool);
    }
    switch (brush.m_eStyle)
    {
    case EBrushStyle::eNone:
        m_Painter.setBrush(Qt::NoBrush);
        break;
    case EBrushStyle::eSolid:
        m_Painter.setBrush(ToQt(brush.m_nColor));
        break;
    case EBrushStyle::eHatchDiagonal:
        m_Painter.setBrush(QBrush(ToQt(brush.m_nColor), Qt::BDiagPattern));
        break;
    }
}

void QtSurface::DrawPolygon(const CPoint* pPoints, int nCount, const CPenSpec& pen, const CBrushSpec& brush)
{
    QVarLengthArray<QPoint, 8> points;
    for (int i = 0; i < nCount; ++i)
        points.append(
            QPoint(std::clamp(pPoints[i].x, -32000, 32000), std::clamp(pPoints[i].y, -32000, 32000)));
    SetTools(pen, brush);
    m_Painter.drawPolygon(points.constData(), nCount);
}

void QtSurface::DrawEllipse(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush)
{
    if (rc.IsEmpty() || !m_Bounds.adjusted(-64, -64, 64, 64).intersects(ToQt(rc)))
        return;
    SetTools(pen, brush);
    // With a pen the painter goes one pixel beyond the rectangle.
    const int nPen = pen.m_eStyle == EPenStyle::eNone ? 0 : 1;
    m_Painter.save();
    m_Painter.setRenderHint(QPainter::Antialiasing);
    m_Painter.drawEllipse(
        QRectF(rc.left + nPen * 0.5, rc.top + nPen * 0.5, rc.Width() - nPen, rc.Height() - nPen));
    m_Painter.restore();
}

void QtSurface::DrawRectangle(const CRect& rc, const CPenSpec& pen, const CBrushSpec& brush)
{
    const CRect rcVisible = Visible(rc);
    if (rcVisible.IsEmpty())
        return;
    if (brush.m_eStyle != EBrushStyle::eNone)
    {
        SetTools(CPenSpec{EPenStyle::eNone, 0}, brush);
        m_Painter.drawRect(ToQt(rcVisible));
    }
    if (pen.m_eStyle == EPenStyle::eNone)
        return;
    // Sides as lines: they are whole pixels at every scale.
    DrawLine(CPoint{rc.left, rc.top}, CPoint{rc.right, rc.top}, pen);
    DrawLine(CPoint{rc.left, rc.bottom - 1}, CPoint{rc.right, rc.bottom - 1}, pen);
    DrawLine(CPoint{rc.left, rc.top}, CPoint{rc.left, rc.bottom}, pen);
    DrawLine(CPoint{rc.right - 1, rc.top}, CPoint{rc.right - 1, rc.bottom}, pen);
}

// A raised face but for its sides, as a picture: to copy it costs a fraction of what a gradient does, and the
// keys of a timeline are all of one height.
const QImage& QtSurface::FaceImage(int nHeight)
{
    if (m_FaceImage.height() != nHeight)
    {
        constexpr int c_nWidth = 256;
        m_FaceImage = QImage(c_nWidth, nHeight, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&m_FaceImage);
        painter.fillRect(m_FaceImage.rect(), FaceGradient(0, nHeight));
        painter.fillRect(0, 0, c_nWidth, 1, ToQt(m_nFaceEdge));
        painter.fillRect(0, 1, c_nWidth, 1, ToQt(m_nFaceLight));
        painter.fillRect(0, nHeight - 1, c_nWidth, 1, ToQt(m_nFaceEdge));
    }
    return m_FaceImage;
}

QLinearGradient QtSurface::FaceGradient(int nTop, int nBottom) const
{
    QLinearGradient gradient(0, nTop, 0, nBottom);
    gradient.setColorAt(0, m_FaceTop);
    gradient.setColorAt(1, m_FaceBottom);
    return gradient;
}

void QtSurface::DrawRaisedFace(const CRect& rc)
{
    const CRect rcFace = Visible(rc);
    if (rcFace.IsEmpty())
        return;
    if (m_bPlainScale && rc.Width() > 3 && rc.Height() > 2 && rcFace.Height() == rc.Height())
    {
        const QImage& image = FaceImage(rc.Height());
        for (int32_t x = rcFace.left; x < rcFace.right; x += image.width())
            m_Painter.drawImage(QPoint(x, rc.top), image,
                                QRect(0, 0, std::min(rcFace.right - x, image.width()), rc.Height()));
    }
    else
    {
        m_Painter.fillRect(ToQt(rcFace), FaceGradient(rcFace.top, rcFace.bottom));
        FillRect(CRect{rc.left, rc.top, rc.right, rc.top + 1}, m_nFaceEdge);
        FillRect(CRect{rc.left, rc.bottom - 1, rc.right, rc.bottom}, m_nFaceEdge);
        if (rc.Width() > 3)
            FillRect(CRect{rc.left + 1, rc.top + 1, rc.right - 1, rc.top + 2}, m_nFaceLight);
    }
    FillRect(CRect{rc.left, rc.top, rc.left + 1, rc.bottom}, m_nFaceEdge);
    FillRect(CRect{rc.right - 1, rc.top, rc.right, rc.bottom}, m_nFaceEdge);
}

void QtSurface::DrawSunkenFace(const CRect& rc)
{
    FillRect(rc, FromQt(m_SunkenFace));
    FillRect(CRect{rc.left, rc.top, rc.right, rc.top + 1}, FromQt(m_SunkenFace.darker(125)));
    FillRect(CRect{rc.left, rc.bottom - 1, rc.right, rc.bottom}, FromQt(m_SunkenFace.lighter(108)));
}

void QtSurface::DrawTextCentered(const CRect& rc, std::string_view sText, CColorRef nColor)
{
    m_bTools = false;
    m_Painter.setPen(ToQt(nColor));
    m_Painter.drawText(ToQt(rc), Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                       QtText::ToQt(sText));
}

// The face anew in a part of it; its edges stay.
void QtSurface::ClearFace(const CRect& rcFace, const CRect& rcPart)
{
    const QRect part = ToQt(rcPart) & ToQt(rcFace.Inset(2)) & m_Bounds;
    if (!m_bPlainScale)
    {
        if (!part.isEmpty())
            m_Painter.fillRect(part, FaceGradient(rcFace.top, rcFace.bottom));
        return;
    }
    const QImage& image = FaceImage(rcFace.Height());
    for (int x = part.left(); x <= part.right(); x += image.width())
        m_Painter.drawImage(
            QPoint(x, part.top()), image,
            QRect(0, part.top() - rcFace.top, std::min(part.right() + 1 - x, image.width()), part.height()));
}

void QtSurface::DrawFaceLabel(const CRect& rcFace, const CRect& rc, std::string_view sText, CColorRef nColor)
{
    if (rc.IsEmpty())
        return;
    QString sLabel = QtText::ToQt(sText);
    int32_t nWidth = TextWidth(sText);
    if (nWidth > rc.Width())
    {
        const QFontMetrics metrics = m_Painter.fontMetrics();
        sLabel = metrics.elidedText(sLabel, Qt::ElideRight, rc.Width());
        if (sLabel.size() < 2) // the ellipsis alone
            return;
        nWidth = metrics.horizontalAdvance(sLabel);
    }
    constexpr int32_t c_nGap = 2; // between the letters and what ends at them
    const int32_t nHeight = TextHeight();
    CRect rcText{rc.left + (rc.Width() - nWidth) / 2, rc.top + (rc.Height() - nHeight) / 2, 0, 0};
    rcText.right = rcText.left + nWidth;
    rcText.bottom = rcText.top + nHeight;
    ClearFace(rcFace, CRect{rcText.left - c_nGap, rcText.top, rcText.right + c_nGap, rcText.bottom});
    m_bTools = false;
    m_Painter.setPen(ToQt(nColor));
    m_Painter.drawText(ToQt(rcText), Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, sLabel);
}

void QtSurface::DrawTextAt(CPoint pt, std::string_view sText, CColorRef nColor)
{
    m_bTools = false;
    m_Painter.setPen(ToQt(nColor));
    m_Painter.drawText(QPointF(pt.x, pt.y + m_Painter.fontMetrics().ascent()), QtText::ToQt(sText));
}

int32_t QtSurface::TextWidth(std::string_view sText) const
{
    // The same few names again and again, while the font of one painting stays.
    const auto [it, bNew] = m_Widths.try_emplace(std::string(sText), 0);
    if (bNew)
        it->second = m_Painter.fontMetrics().horizontalAdvance(QtText::ToQt(sText));
    return it->second;
}

int32_t QtSurface::TextHeight() const
{
    return m_Painter.fontMetrics().height();
}

CColorRef QtSurface::SystemColor(ESystemColor eColor) const
{
    switch (eColor)
    {
    case ESystemColor::eWindow:
        return FromQt(m_Palette.color(QPalette::Base));
    case ESystemColor::eWindowText:
        return FromQt(m_Palette.color(QPalette::Text));
    case ESystemColor::eFace:
        return FromQt(m_Palette.color(QPalette::Button));
    case ESystemColor::eFaceText:
        return FromQt(m_Palette.color(QPalette::ButtonText));
    case ESystemColor::eShadow:
        return FromQt(m_Palette.color(QPalette::Dark));
    case ESystemColor::eHighlight:
        return FromQt(m_Palette.color(QPalette::Highlight));
    case ESystemColor::eLight:
        return FromQt(m_Palette.color(QPalette::Light));
    case ESystemColor::eHighlightText:
        return FromQt(m_Palette.color(QPalette::HighlightedText));
    case ESystemColor::eGrayText:
        return FromQt(m_Palette.color(QPalette::Disabled, QPalette::Text));
    }
    return 0;
}
