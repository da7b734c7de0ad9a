#include "qt/toolkit/Appearance.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>
#include <memory>

#include "qsstrutils.h"

namespace
{
constexpr const char* c_szSetting = "Appearance";
constexpr const char* c_Names[] = {"Desktop", "Light", "Dark"};

struct CTone
{
    QPalette::ColorRole m_eRole;
    QRgb m_nLight;
    QRgb m_nDark;
    QRgb m_nLightDisabled; // 0: as enabled
    QRgb m_nDarkDisabled;
};

// Text on each ground keeps a contrast of at least 7 to 1, greyed text one of 3 to 1.
constexpr CTone c_Tones[] = {
    {QPalette::Window, 0xFFF0F0F2, 0xFF2B2D31, 0, 0},
    {QPalette::WindowText, 0xFF1C1D20, 0xFFE6E7EA, 0xFF84868C, 0xFF8D9097},
    {QPalette::Base, 0xFFFFFFFF, 0xFF1F2124, 0xFFF5F5F7, 0xFF27292D},
    {QPalette::AlternateBase, 0xFFF6F6F8, 0xFF25272B, 0, 0},
    {QPalette::Text, 0xFF1C1D20, 0xFFE6E7EA, 0xFF84868C, 0xFF8D9097},
    {QPalette::PlaceholderText, 0xFF74767C, 0xFF9A9DA4, 0, 0},
    {QPalette::Button, 0xFFE8E8EB, 0xFF3A3D43, 0, 0},
    {QPalette::ButtonText, 0xFF1C1D20, 0xFFE6E7EA, 0xFF7C7E84, 0xFF92959C},
    {QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF, 0, 0},
    {QPalette::Light, 0xFFFFFFFF, 0xFF54585F, 0, 0},
    {QPalette::Midlight, 0xFFF4F4F6, 0xFF464A50, 0, 0},
    {QPalette::Mid, 0xFFB9BAC0, 0xFF26282C, 0, 0},
    {QPalette::Dark, 0xFF9A9CA3, 0xFF1A1B1E, 0, 0},
    {QPalette::Shadow, 0xFF6B6D73, 0xFF0E0F11, 0, 0},
    {QPalette::Highlight, 0xFF2F74C0, 0xFF3D7FCB, 0xFFB4B7BD, 0xFF50545B},
    {QPalette::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFB9BCC2},
    {QPalette::Link, 0xFF1F5FA8, 0xFF7DB3EE, 0, 0},
    {QPalette::LinkVisited, 0xFF6A4C93, 0xFFB39BD8, 0, 0},
    {QPalette::ToolTipBase, 0xFFFFFFE6, 0xFF3A3D43, 0, 0},
    {QPalette::ToolTipText, 0xFF1C1D20, 0xFFE6E7EA, 0, 0},
};
} // namespace

QPalette AppearancePalette(EAppearance eAppearance)
{
    const bool bDark = eAppearance == EAppearance::eDark;
    QPalette palette;
    for (const CTone& tone : c_Tones)
    {
        palette.setColor(tone.m_eRole, QColor(bDark ? tone.m_nDark : tone.m_nLight));
        const QRgb nDisabled = bDark ? tone.m_nDarkDisabled : tone.m_nLightDisabled;
        if (nDisabled != 0)
            palette.setColor(QPalette::Disabled, tone.m_eRole, QColor(nDisabled));
    }
    return palette;
}

void MuteSelection(QPalette& palette)
{
    // A desktop that has a colour of its own for it knows best.
    if (palette.color(QPalette::Inactive, QPalette::Highlight) !=
        palette.color(QPalette::Active, QPalette::Highlight))
        return;
    const QColor ground = palette.color(QPalette::Active, QPalette::Base),
                 text = palette.color(QPalette::Active, QPalette::Text);
    // As much of the text's colour as is seen as a selection, and as little as leaves the text legible on it.
    const auto mix = [](int nGround, int nText) { return nGround + (nText - nGround) * 2 / 10; };
    palette.setColor(QPalette::Inactive, QPalette::Highlight,
                     QColor(mix(ground.red(), text.red()), mix(ground.green(), text.green()),
                            mix(ground.blue(), text.blue())));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, text);
}

namespace
{
// The toolkit stands in with colours of its own where the desktop gives none.
bool HasDesktopColors()
{
    const std::unique_ptr<QStyle> pStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QPalette now = QApplication::palette(), plain = pStyle ? pStyle->standardPalette() : QPalette();
    return now.color(QPalette::Window) != plain.color(QPalette::Window) ||
           now.color(QPalette::Highlight) != plain.color(QPalette::Highlight);
}
} // namespace

void ApplyAppearance(EAppearance eAppearance)
{
    if (eAppearance == EAppearance::eDesktop)
    {
        QApplication::setPalette(QPalette()); // gives the desktop's own back
        if (HasDesktopColors())
            return;
        eAppearance = EAppearance::eLight;
    }
    QApplication::setPalette(AppearancePalette(eAppearance));
}

EAppearance LoadAppearance(IProfile& profile)
{
    const std::string sName = profile.GetString("", c_szSetting);
    for (int i = 0; i < 3; ++i)
        if (QSStrIEquals(sName.c_str(), c_Names[i]))
            return static_cast<EAppearance>(i);
    return EAppearance::eDesktop;
}

void SaveAppearance(IProfile& profile, EAppearance eAppearance)
{
    profile.WriteString("", c_szSetting, c_Names[static_cast<int>(eAppearance)]);
}
