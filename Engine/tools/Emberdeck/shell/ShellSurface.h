#pragma once

#include <string_view>

#include "shell/ToolbarImages.h"

// What toolbars and menu items are drawn on. Coordinates as with IDrawSurface.
class IShellSurface
{
public:
    virtual ~IShellSurface() = default;
    // Pixels to a side of an image that is as sharp as the screen.
    virtual int32_t IconGrid() const { return c_nIconSize; }
    virtual void FillRect(const CRect& rc, CColorRef nColor) = 0;
    // Its top left corner at pt; what is transparent in it leaves the ground.
    virtual void DrawImage(CPoint pt, const CPixelImage& image) = 0;
    // One line in the menu's font, centred in the height, at the left or the right end. "&" marks the
    // shortcut letter, which is shown as the toolkit does; "&&" is an ampersand.
    virtual void DrawMenuText(const CRect& rc, std::string_view sText, CColorRef nColor, bool bBold,
                              bool bRight) = 0;
};

// A filled rectangle with a border one pixel wide.
inline void DrawBox(IShellSurface& surface, const CRect& rc, CColorRef nBorder, CColorRef nFill)
{
    surface.FillRect(rc, nBorder);
    const CRect rcInside = rc.Inset(1);
    if (!rcInside.IsEmpty())
        surface.FillRect(rcInside, nFill);
}

// An image lifted by a pixel, with its shadow under it.
inline void DrawRaisedImage(IShellSurface& surface, CPoint pt, const CPixelImage& image, CColorRef nShadow)
{
    surface.DrawImage(CPoint{pt.x + 1, pt.y + 1}, MakeFlatImage(image, nShadow));
    surface.DrawImage(CPoint{pt.x - 1, pt.y - 1}, image);
}
