#pragma once

#include <QFont>
#include <QPainter>
#include <QPalette>

#include "shell/MenuItem.h"

CShellColors ShellColors(const QPalette& palette);

// Draws what the shell draws of bars and menus, with a painter whose font is the menu's.
class ShellPainter : public IShellSurface
{
public:
    explicit ShellPainter(QPainter& painter) : m_Painter(painter) {}
    int32_t IconGrid() const override;
    void FillRect(const CRect& rc, CColorRef nColor) override;
    void DrawImage(CPoint pt, const CPixelImage& image) override;
    void DrawMenuText(const CRect& rc, std::string_view sText, CColorRef nColor, bool bBold,
                      bool bRight) override;

private:
    QPainter& m_Painter;
};

class MenuFont : public IMenuFont
{
public:
    explicit MenuFont(const QFont& font) : m_Font(font) {}
    CMenuTextSize Measure(std::string_view sText, bool bBold) const override;

private:
    QFont m_Font;
};
