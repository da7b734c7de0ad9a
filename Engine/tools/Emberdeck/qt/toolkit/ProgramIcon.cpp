#include "qt/toolkit/ProgramIcon.h"

#include <QPainter>
#include <QPainterPath>

#include "app/resources/ProgramArt.h"
#include "qsversion.h"
#include "qt/toolkit/QtSurface.h"

namespace
{
void DrawArt(QPainter& painter, const QRectF& rc)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(rc.topLeft());
    painter.scale(rc.width() / c_fProgramArtSize, rc.height() / c_fProgramArtSize);
    for (const CVectorShape& shape : c_ProgramIcon)
    {
        QPainterPath path;
        for (int32_t i = 0; i < shape.m_nSteps; ++i)
        {
            const CPathStep& step = shape.m_pSteps[i];
            switch (step.m_cKind)
            {
            case 'M':
                path.moveTo(step.x, step.y);
                break;
            case 'L':
                path.lineTo(step.x, step.y);
                break;
            case 'C':
                path.cubicTo(step.x1, step.y1, step.x2, step.y2, step.x, step.y);
                break;
            default:
                path.closeSubpath();
                break;
            }
        }
        painter.setBrush(ToQt(shape.m_nColor));
        painter.drawPath(path);
    }
    painter.restore();
}
} // namespace

QIcon ProgramIcon()
{
    QIcon icon;
    for (int nSize : {16, 24, 32, 48, 64, 128, 256})
    {
        QPixmap pixmap(nSize, nSize);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        DrawArt(painter, QRectF(0, 0, nSize, nSize));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QPixmap SplashPicture(qreal fScale)
{
    QPixmap pixmap(QSize(c_nSplashWidth, c_nSplashHeight) * fScale);
    pixmap.setDevicePixelRatio(fScale);
    pixmap.fill(ToQt(c_nSplashBackground));
    QPainter painter(&pixmap);
    DrawArt(painter, QRectF(ToQt(c_rcSplashIcon)));
    for (const CSplashText& text : c_SplashTexts)
    {
        QFont font = painter.font();
        font.setPixelSize(text.m_nPixelSize);
        font.setBold(text.m_bBold);
        const std::string sVersion = GetProgramVersionText(c_szVersionVersion);
        const QString sText =
            QString::fromUtf8(text.m_pszText).replace(QLatin1String("%s"), QString::fromStdString(sVersion));
        // Fonts that run wide are made smaller until the text clears the edge.
        constexpr int nMargin = 24;
        while (font.pixelSize() > 8 &&
               QFontMetrics(font).horizontalAdvance(sText) > c_nSplashWidth - text.m_nX - nMargin)
            font.setPixelSize(font.pixelSize() - 1);
        painter.setFont(font);
        painter.setPen(ToQt(text.m_nColor));
        painter.drawText(text.m_nX, text.m_nBaseline, sText);
    }
    painter.setPen(ToQt(c_nSplashEdge));
    painter.drawRect(0, 0, c_nSplashWidth - 1, c_nSplashHeight - 1);
    return pixmap;
}
