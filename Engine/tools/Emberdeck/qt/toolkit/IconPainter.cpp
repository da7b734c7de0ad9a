#include "qt/toolkit/IconPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "qt/toolkit/QtSurface.h"

namespace
{

// Walks over the text of an icon's shapes, and gives them as paths in pixels.
class CShapeReader
{
public:
    CShapeReader(const CIconShapes& shapes, double fScale)
        : m_sRest(shapes.m_pszShapes ? shapes.m_pszShapes : ""),
          m_nX(shapes.m_nX),
          m_fScale(fScale),
          // A pixel and a half is drawn as one: two would leave no room between lines.
          m_nPen(std::max(1, static_cast<int>(std::ceil(fScale - 0.5))))
    {
    }

    // The next shape; false at the end, and at one that can't be read.
    bool Next()
    {
        Skip(" ;");
        if (m_sRest.size() < 2)
            return false;
        m_cFill = m_sRest[0];
        m_cPen = m_sRest[1];
        m_sRest.remove_prefix(2);
        m_Path = QPainterPath();
        for (Skip(" "); !m_sRest.empty() && m_sRest.front() != ';'; Skip(" "))
        {
            const char cStep = m_sRest.front();
            m_sRest.remove_prefix(1);
            if (!Step(cStep))
                return false;
        }
        return true;
    }

    CColorRef Fill() const { return GetIconColor(m_cFill); }
    CColorRef Pen() const { return GetIconColor(m_cPen); }
    int PenWidth() const { return m_nPen; }
    const QPainterPath& Path() const { return m_Path; }

private:
    bool Step(char cStep)
    {
        double n[6];
        const int nNumbers = CountFor(cStep);
        if (nNumbers < 0 || !Numbers(n, nNumbers))
            return false;
        const QPointF at = m_Path.currentPosition();
        switch (cStep)
        {
        case 'M':
            m_Path.moveTo(Snapped(n[0], n[1]));
            break;
        case 'L':
            m_Path.lineTo(Snapped(n[0], n[1]));
            break;
        case 'H':
            m_Path.lineTo(Snapped(n[0], 0).x(), at.y());
            break;
        case 'V':
            m_Path.lineTo(at.x(), Snapped(0, n[0]).y());
            break;
        case 'C':
            m_Path.cubicTo(Scaled(n[0], n[1]), Scaled(n[2], n[3]), Snapped(n[4], n[5]));
            break;
        case 'R':
            m_Path.addRect(QRectF(Snapped(n[0], n[1]), Snapped(n[0] + n[2], n[1] + n[3])));
            break;
        case 'E':
            m_Path.addEllipse(QRectF(Snapped(n[0] - n[2], n[1] - n[3]), Snapped(n[0] + n[2], n[1] + n[3])));
            break;
        default:
            m_Path.closeSubpath();
            break;
        }
        return true;
    }

    static int CountFor(char cStep)
    {
        switch (cStep)
        {
        case 'Z':
            return 0;
        case 'H':
        case 'V':
            return 1;
        case 'M':
        case 'L':
            return 2;
        case 'R':
        case 'E':
            return 4;
        case 'C':
            return 6;
        default:
            return -1;
        }
    }

    bool Numbers(double* pNumbers, int nCount)
    {
        for (int i = 0; i < nCount; ++i)
        {
            Skip(" ");
            const char* pEnd = m_sRest.data() + m_sRest.size();
            const auto result = std::from_chars(m_sRest.data(), pEnd, pNumbers[i]);
            if (result.ec != std::errc())
                return false;
            m_sRest.remove_prefix(static_cast<size_t>(result.ptr - m_sRest.data()));
        }
        return true;
    }

    void Skip(std::string_view sChars)
    {
        const size_t nKept = m_sRest.find_first_not_of(sChars);
        m_sRest.remove_prefix(nKept == std::string_view::npos ? m_sRest.size() : nKept);
    }

    QPointF Scaled(double x, double y) const { return QPointF(x + m_nX, y) * m_fScale; }

    // An outline of an odd width lies along the middle of pixels, anything else between them.
    QPointF Snapped(double x, double y) const
    {
        const double fOff = GetIconColor(m_cPen) != c_nIconTransparent && m_nPen % 2 ? 0.5 : 0.0;
        const QPointF pt = Scaled(x, y);
        return QPointF(std::round(pt.x() - fOff) + fOff, std::round(pt.y() - fOff) + fOff);
    }

    std::string_view m_sRest;
    int32_t m_nX; // moved to the right, in units
    double m_fScale;
    int m_nPen;
    char m_cFill = '.';
    char m_cPen = '.';
    QPainterPath m_Path;
};

CPixelImage FromQImage(const QImage& image)
{
    CPixelImage result;
    result.m_nSize = c_nIconSize;
    result.m_nGrid = image.width();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
        {
            const QRgb n = image.pixel(x, y); // not multiplied by its alpha
            result.m_Pixels.push_back(
                static_cast<uint32_t>(qAlpha(n)) << 24 |
                MakeColorRef(uint32_t(qRed(n)), uint32_t(qGreen(n)), uint32_t(qBlue(n))));
        }
    return result;
}

} // namespace

CPixelImage PaintIcon(const CIconArt& art, int32_t nGrid)
{
    constexpr int32_t c_nMost = c_nIconSize * 16;
    nGrid = std::clamp(nGrid, 1, c_nMost);
    if (nGrid == c_nIconSize)
        return MakeImage(art);
    QImage image(nGrid, nGrid, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const CIconShapes& shapes : art.m_Shapes)
    {
        CShapeReader reader(shapes, double(nGrid) / c_nIconSize);
        while (reader.Next())
        {
            if (reader.Fill() != c_nIconTransparent)
                painter.fillPath(reader.Path(), ToQt(reader.Fill()));
            if (reader.Pen() != c_nIconTransparent)
            {
                // The painter's own thin lines have soft corners.
                QPainterPathStroker stroker;
                stroker.setWidth(reader.PenWidth());
                stroker.setCapStyle(Qt::FlatCap);
                stroker.setJoinStyle(Qt::MiterJoin);
                stroker.setMiterLimit(1.0); // right angles are whole, acute ones have no spike
                painter.fillPath(stroker.createStroke(reader.Path()), ToQt(reader.Pen()));
            }
        }
    }
    painter.end();
    return FromQImage(image);
}

QImage ToQImage(const CPixelImage& image)
{
    const int32_t nGrid = image.GetGrid();
    QImage result(nGrid, nGrid, QImage::Format_ARGB32);
    for (int32_t y = 0; y < nGrid; ++y)
        for (int32_t x = 0; x < nGrid; ++x)
        {
            const uint32_t n = image.m_Pixels[size_t(y) * size_t(nGrid) + size_t(x)];
            result.setPixel(x, y,
                            qRgba(int(n & 0xFF), int(n >> 8 & 0xFF), int(n >> 16 & 0xFF), int(n >> 24)));
        }
    if (image.m_nSize > 0)
        result.setDevicePixelRatio(double(nGrid) / image.m_nSize);
    return result;
}
