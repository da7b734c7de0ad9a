// SPDX-License-Identifier: 0BSD
#include "game/StagePainter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QLinearGradient>
#include <QRadialGradient>

namespace
{
constexpr int c_nShapeSize = 64;
constexpr int c_nMostShapes = 600;                   // 16 KB each
constexpr double c_fDepthX = 0.28, c_fDepthY = 0.16; // what a metre away from the eye is on the screen
constexpr double c_fTurn = 6.283185307179586;

QColor Colour(const CTint& tint, double fStrength = 1)
{
    return QColor::fromRgbF(float(tint.r), float(tint.g), float(tint.b),
                            float(std::clamp(tint.a * fStrength, 0.0, 1.0)));
}

// How much of the colour is there, x and y from -1 to 1, y up; and in fCore how near to white it is.
double Cover(ELook eLook, double x, double y, double& fCore)
{
    const double r = std::hypot(x, y);
    const auto soft = [](double f, double fPower) { return f <= 0 ? 0.0 : std::pow(f, fPower); };
    fCore = 0;
    switch (eLook)
    {
    case ELook::eFlame: // a tongue: broad below, pointed above
    {
        const double fWidth = y < -0.25 ? std::sqrt(std::max(0.0, 1 - std::pow((y + 0.25) / 0.75, 2)))
                                        : std::pow(std::max(0.0, 1 - (y + 0.25) / 1.25), 0.8);
        const double f = fWidth <= 0 ? 0 : std::max(0.0, 1 - std::abs(x) / (0.62 * fWidth));
        const double fCover = soft(f, 1.3) * soft(1 - r * 0.9, 0.6);
        fCore = fCover * fCover * 0.35;
        return fCover * 0.75;
    }
    case ELook::eSmoke:
    {
        const double fRagged = r + 0.13 * std::sin(9 * x + 2 * y) * std::cos(7 * y - 3 * x);
        return soft(1 - fRagged, 1.3) * (0.85 + 0.15 * std::sin(8 * x - 5 * y));
    }
    case ELook::eSpark:
    {
        const double fCover = soft(1 - r, 3) + 0.9 * soft(1 - std::hypot(x * 4, y), 1.5);
        fCore = 0.8 * soft(1 - 2.2 * r, 1.2);
        return std::min(1.0, fCover);
    }
    case ELook::eDrop:
        return soft(1 - std::hypot(x * 1.6, y), 0.8);
    default:
        fCore = 0.5 * soft(1 - 1.6 * r, 2);
        return soft(1 - r, 2);
    }
}

QImage MakeShape(ELook eLook, const CTint& tint)
{
    QImage image(c_nShapeSize, c_nShapeSize, QImage::Format_ARGB32_Premultiplied);
    const auto channel = [](double f) { return int(std::clamp(f, 0.0, 1.0) * 255 + 0.5); };
    for (int nY = 0; nY < c_nShapeSize; ++nY)
        for (int nX = 0; nX < c_nShapeSize; ++nX)
        {
            const double x = (2 * nX + 1.0) / c_nShapeSize - 1, y = 1 - (2 * nY + 1.0) / c_nShapeSize;
            double fCore = 0;
            const double a = Cover(eLook, x, y, fCore);
            const auto mixed = [&](double f) { return a * (f + (1 - f) * fCore); };
            image.setPixel(
                nX, nY,
                qRgba(channel(mixed(tint.r)), channel(mixed(tint.g)), channel(mixed(tint.b)), channel(a)));
        }
    return image;
}

QPainter::CompositionMode ModeOf(EBlend eBlend)
{
    switch (eBlend)
    {
    case EBlend::eAlpha:
        return QPainter::CompositionMode_SourceOver;
    case EBlend::eMultiply:
        return QPainter::CompositionMode_Multiply;
    case EBlend::eSubtract:
        return QPainter::CompositionMode_Difference;
    case EBlend::eScreen:
        return QPainter::CompositionMode_Screen;
    default:
        return QPainter::CompositionMode_Plus;
    }
}
} // namespace

QPointF StagePainter::ToScreen(const CPoint& at) const
{
    const double z = std::clamp(at.z, -20.0, 20.0);
    return {m_Size.width() / 2.0 + (at.x - m_fMiddle + c_fDepthX * z) * m_fScale,
            m_fGround - (at.y + c_fDepthY * z) * m_fScale};
}

void StagePainter::Paint(QPainter& painter, const QSize& size, const CStage& stage, const CView& view)
{
    m_Size = size;
    m_fScale = size.height() / view.m_fHeight;
    m_fGround = size.height() - view.m_fBelow * m_fScale;
    m_fMiddle = view.m_fMiddle;

    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    PaintBackdrop(painter, stage);
    painter.save();
    painter.translate(-stage.m_Shake.x * m_fScale * 0.25, stage.m_Shake.y * m_fScale * 0.25);
    for (const CStain& stain : stage.m_Stains)
        PaintStain(painter, stain);
    for (const CLamp& lamp : stage.m_Lamps)
        PaintGlow(painter, lamp);
    for (const CThing& thing : stage.m_Things)
        PaintThing(painter, thing);
    for (const CDot& dot : stage.m_Dots)
        PaintDot(painter, dot);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(1);
    for (const CWords& words : stage.m_Words)
        PaintWords(painter, words);
    painter.restore();
}

void StagePainter::PaintBackdrop(QPainter& painter, const CStage& stage)
{
    const double fHorizon = m_fGround - 2.2 * c_fDepthY * m_fScale;
    QLinearGradient sky(0, 0, 0, fHorizon);
    sky.setColorAt(0, QColor(7, 9, 18));
    sky.setColorAt(1, QColor(24, 25, 38));
    painter.fillRect(QRectF(QPointF(0, 0), QSizeF(m_Size)), sky);
    painter.setPen(Qt::NoPen);
    for (uint64_t i = 0; i < 90; ++i)
    {
        const double fBright = Chance(i, 23);
        painter.setBrush(QColor(200, 210, 235, int(30 + 110 * fBright * fBright)));
        const double r = 0.5 + 0.7 * fBright;
        painter.drawEllipse(QPointF(Chance(i, 21) * m_Size.width(), Chance(i, 22) * fHorizon), r, r);
    }
    QLinearGradient ground(0, fHorizon, 0, m_Size.height());
    ground.setColorAt(0, QColor(17, 16, 19));
    ground.setColorAt(1, QColor(32, 27, 25));
    const QRectF rcGround(0, fHorizon, m_Size.width(), m_Size.height() - fHorizon);
    painter.fillRect(rcGround, ground);
    painter.save();
    painter.setClipRect(rcGround);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    for (const CLamp& lamp : stage.m_Lamps)
        PaintLampOnGround(painter, lamp);
    painter.restore();
}

void StagePainter::PaintLampOnGround(QPainter& painter, const CLamp& lamp) const
{
    if (!(lamp.m_fRadius > 0.01))
        return;
    const QPointF at = ToScreen({lamp.m_At.x, 0, lamp.m_At.z});
    QRadialGradient light(QPointF(0, 0), 1);
    light.setColorAt(0, Colour(lamp.m_Tint, 0.28));
    light.setColorAt(0.35, Colour(lamp.m_Tint, 0.12));
    light.setColorAt(1, Colour(lamp.m_Tint, 0));
    painter.save();
    painter.translate(at);
    painter.scale(lamp.m_fRadius * m_fScale, lamp.m_fRadius * m_fScale * 0.34);
    painter.setBrush(light);
    painter.drawEllipse(QPointF(0, 0), 1, 1);
    painter.restore();
}

void StagePainter::PaintGlow(QPainter& painter, const CLamp& lamp) const
{
    if (!(lamp.m_fRadius > 0.01))
        return;
    const QPointF at = ToScreen(lamp.m_At);
    const double r = lamp.m_fRadius * m_fScale * 0.55;
    QRadialGradient light(at, r);
    light.setColorAt(0, Colour(lamp.m_Tint, 0.26));
    light.setColorAt(0.3, Colour(lamp.m_Tint, 0.1));
    light.setColorAt(1, Colour(lamp.m_Tint, 0));
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.setBrush(light);
    painter.drawEllipse(at, r, r);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void StagePainter::PaintStain(QPainter& painter, const CStain& stain) const
{
    QRadialGradient dark(QPointF(0, 0), 1);
    dark.setColorAt(0, Colour(stain.m_Tint));
    dark.setColorAt(0.6, Colour(stain.m_Tint, 0.7));
    dark.setColorAt(1, Colour(stain.m_Tint, 0));
    painter.save();
    painter.translate(ToScreen({stain.m_At.x, 0, stain.m_At.z}));
    painter.scale(std::max(1.0, stain.m_fWidth * m_fScale / 2),
                  std::max(1.0, stain.m_fDepth * m_fScale / 2 * 0.34));
    painter.setBrush(dark);
    painter.drawEllipse(QPointF(0, 0), 1, 1);
    painter.restore();
}

// Logs lie crosswise; everything else is a stone.
void StagePainter::PaintThing(QPainter& painter, const CThing& thing) const
{
    const double fUnit = m_fScale;
    painter.save();
    painter.translate(ToScreen(thing.m_At));
    painter.scale(fUnit * thing.m_Scale.x, fUnit * thing.m_Scale.y);
    painter.setPen(Qt::NoPen);
    const auto warm = [&](int r, int g, int b) {
        return QColor(std::min(255, int(r + 70 * thing.m_fHeat)), std::min(255, int(g + 14 * thing.m_fHeat)),
                      b);
    };
    if (thing.m_sModel.find("log") == std::string_view::npos)
    {
        QRadialGradient stone(QPointF(-0.12, -0.42), 0.7);
        stone.setColorAt(0, warm(112, 108, 106));
        stone.setColorAt(1, warm(38, 37, 40));
        painter.setBrush(stone);
        painter.drawRoundedRect(QRectF(-0.45, -0.55, 0.9, 0.62), 0.36, 0.32);
    }
    else
        for (const double fTilt : {-11.0, 13.0, -2.0})
        {
            painter.save();
            painter.translate(fTilt == -2.0 ? QPointF(0, 0.02) : QPointF(fTilt / 90, -0.1));
            painter.rotate(fTilt);
            QLinearGradient bark(0, -0.12, 0, 0.12);
            bark.setColorAt(0, warm(96, 60, 36));
            bark.setColorAt(0.5, warm(66, 40, 24));
            bark.setColorAt(1, warm(26, 16, 11));
            painter.setBrush(bark);
            painter.drawRoundedRect(QRectF(-0.6, -0.11, 1.2, 0.22), 0.07, 0.1);
            painter.setBrush(warm(140, 98, 62));
            painter.drawEllipse(QPointF(0.57, 0), 0.045, 0.1);
            painter.setBrush(warm(100, 66, 40));
            painter.drawEllipse(QPointF(0.57, 0), 0.022, 0.05);
            painter.restore();
        }
    painter.restore();
}

const QImage& StagePainter::SoftShape(ELook eLook, const CTint& tint)
{
    // Sixteen shades of each channel are more than an eye follows in a flame.
    const auto shade = [](double f) { return quint32(std::clamp(f, 0.0, 1.0) * 15 + 0.5); };
    const quint32 nKey = quint32(eLook) << 12 | shade(tint.r) << 8 | shade(tint.g) << 4 | shade(tint.b);
    const auto it = m_Shapes.constFind(nKey);
    if (it != m_Shapes.constEnd())
        return *it;
    if (m_Shapes.size() >= c_nMostShapes)
        m_Shapes.clear();
    const CTint shown = {(nKey >> 8 & 15) / 15.0, (nKey >> 4 & 15) / 15.0, (nKey & 15) / 15.0, 1};
    return *m_Shapes.insert(nKey, MakeShape(eLook, shown));
}

void StagePainter::PaintDot(QPainter& painter, const CDot& dot)
{
    // Never smaller than a pixel and a half, or sparks far away would flicker between two pixels.
    double w = std::max(1.5, dot.m_fSize * m_fScale), h = w * dot.m_fStretch;
    if (dot.m_eLook == ELook::eSpark || dot.m_eLook == ELook::eGlow)
        w = h = std::max({3.5, w * 1.6}); // the shape's halo is part of its picture
    if (dot.m_eLook == ELook::eSpark)
        h = w * dot.m_fStretch;
    const double fMost = 4.0 * std::max(m_Size.width(), m_Size.height());
    w = std::min(w, fMost);
    h = std::min(h, fMost);
    QPointF at = ToScreen(dot.m_At);
    if (dot.m_eLook == ELook::eFlame) // stands on its place
        at.ry() -= 0.3 * h;
    const double r = std::max(w, h);
    if (dot.m_Tint.a < 0.004 || at.x() < -r || at.y() < -r || at.x() > m_Size.width() + r ||
        at.y() > m_Size.height() + r)
        return;
    painter.setCompositionMode(ModeOf(dot.m_eBlend));
    painter.setOpacity(dot.m_Tint.a);
    const QImage& shape = SoftShape(dot.m_eLook, dot.m_Tint);
    if (dot.m_fAngle == 0)
    {
        painter.drawImage(QRectF(at.x() - w / 2, at.y() - h / 2, w, h), shape);
        return;
    }
    const QTransform before = painter.transform();
    painter.translate(at);
    painter.rotate(-dot.m_fAngle);
    painter.drawImage(QRectF(-w / 2, -h / 2, w, h), shape);
    painter.setTransform(before);
}

void StagePainter::PaintWords(QPainter& painter, const CWords& words) const
{
    QString sText = QString::fromUtf8(words.m_sText.data(), qsizetype(words.m_sText.size()));
    if (sText.contains(QChar(QChar::ReplacementCharacter)))
        sText = QString::fromLatin1(words.m_sText.data(), qsizetype(words.m_sText.size()));
    QFont font = painter.font();
    font.setPixelSize(int(std::clamp(words.m_fHeight * m_fScale, 9.0, 200.0)));
    font.setBold(true);
    painter.setFont(font);
    const QPointF at = ToScreen(words.m_At);
    const double fWide = 4000;
    QRectF rc(at.x() - fWide / 2, at.y() - 400, fWide, 800);
    int nFlags = Qt::AlignVCenter | Qt::AlignHCenter;
    if (words.m_sAlign == "Left")
    {
        rc.moveLeft(at.x());
        nFlags = Qt::AlignVCenter | Qt::AlignLeft;
    }
    else if (words.m_sAlign == "Right")
    {
        rc.moveRight(at.x());
        nFlags = Qt::AlignVCenter | Qt::AlignRight;
    }
    painter.setPen(QColor(0, 0, 0, int(150 * words.m_Tint.a)));
    painter.drawText(rc.translated(1.5, 1.5), nFlags, sText);
    painter.setPen(Colour(words.m_Tint));
    painter.drawText(rc, nFlags, sText);
}
