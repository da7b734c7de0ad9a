#include "qt/toolkit/ShellPainter.h"

#include <cmath>

#include "qt/toolkit/IconPainter.h"
#include "qt/toolkit/QtSurface.h"
#include "qt/toolkit/QtText.h"

namespace
{
QFont WithWeight(QFont font, bool bBold)
{
    font.setBold(bBold);
    return font;
}
} // namespace

CShellColors ShellColors(const QPalette& palette)
{
    const auto active = [&palette](QPalette::ColorRole eRole)
    { return palette.color(QPalette::Active, eRole); };
    CShellColors colors;
    colors.m_bDark = active(QPalette::Text).lightness() > active(QPalette::Base).lightness();
    colors.m_nFace = FromQt(active(QPalette::Button));
    // What is darker than the face is all but black in a dark palette: there the edge is the lighter one.
    colors.m_nShadow = FromQt(active(colors.m_bDark ? QPalette::Light : QPalette::Dark));
    colors.m_nHighlight = FromQt(active(QPalette::Highlight));
    colors.m_nMenu = FromQt(active(QPalette::Base));
    colors.m_nMenuText = FromQt(active(QPalette::Text));
    colors.m_nGrayText = FromQt(palette.color(QPalette::Disabled, QPalette::Text));
    return colors;
}

int32_t ShellPainter::IconGrid() const
{
    return static_cast<int32_t>(std::lround(c_nIconSize * m_Painter.device()->devicePixelRatioF()));
}

void ShellPainter::FillRect(const CRect& rc, CColorRef nColor)
{
    m_Painter.fillRect(ToQt(rc), ToQt(nColor));
}

void ShellPainter::DrawImage(CPoint pt, const CPixelImage& image)
{
    // Onto whole pixels of the screen, where an image of its pixels is drawn as it is.
    const QTransform toDevice = m_Painter.deviceTransform();
    const QPointF device = toDevice.map(QPointF(ToQt(pt)));
    const QPointF whole(std::round(device.x()), std::round(device.y()));
    m_Painter.drawImage(toDevice.inverted().map(whole), ToQImage(image));
}

void ShellPainter::DrawMenuText(const CRect& rc, std::string_view sText, CColorRef nColor, bool bBold,
                                bool bRight)
{
    m_Painter.save();
    m_Painter.setFont(WithWeight(m_Painter.font(), bBold));
    m_Painter.setPen(ToQt(nColor));
    const int nFlags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic |
                       (bRight ? Qt::AlignRight : Qt::AlignLeft);
    m_Painter.drawText(ToQt(rc), nFlags, QtText::ToQt(sText));
    m_Painter.restore();
}

CMenuTextSize MenuFont::Measure(std::string_view sText, bool bBold) const
{
    const QFontMetrics metrics(WithWeight(m_Font, bBold));
    return CMenuTextSize{metrics.size(Qt::TextShowMnemonic, QtText::ToQt(sText)).width(), metrics.height()};
}
