#include "shell/MenuItem.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int32_t c_nSubmenuArrow = 15;
constexpr int32_t c_nHeightRoom = 9;
constexpr int32_t c_nTextInset = 6; // of text and separators within the text area
constexpr int32_t c_nAcceleratorInset = 12;
constexpr int32_t c_nCheckBox = 20;
constexpr CColorRef c_nDisabledCheck = 0x606060;

CRect CenterSquare(const CRect& rc, int32_t nSize)
{
    const int32_t x = rc.left + (rc.Width() - nSize) / 2;
    const int32_t y = rc.top + (rc.Height() - nSize) / 2;
    return CRect{x, y, x + nSize, y + nSize};
}

// Seven columns, each three pixels high.
void DrawCheckSign(IShellSurface& surface, const CRect& rc, CColorRef nColor)
{
    constexpr int32_t c_Columns[] = {2, 3, 4, 3, 2, 1, 0};
    const CRect rcSign = CenterSquare(rc, 7);
    for (int32_t i = 0; i < 7; ++i)
    {
        const int32_t y = rcSign.top + c_Columns[i];
        surface.FillRect(CRect{rcSign.left + i, y, rcSign.left + i + 1, y + 3}, nColor);
    }
}

} // namespace

CKRMenuItem::CKRMenuItem(int32_t nID, uint32_t nState, std::string sText, std::string sAccelerator)
    : m_nID(nID),
      m_nState(nState),
      m_sText(std::move(sText)),
      m_sAccelerator(std::move(sAccelerator))
{
}

void CKRMenuItem::MeasureItem(const IMenuFont& font, int32_t nTextColumn)
{
    if (IsSeparator())
    {
        m_nWidth = 0;
        m_nHeight = c_nSeparatorHeight;
        return;
    }
    const CMenuTextSize text = font.Measure(m_sText, IsBold());
    m_nWidth = text.m_nWidth;
    m_nHeight = text.m_nHeight;
    if (!m_sAccelerator.empty())
    {
        const CMenuTextSize accelerator = font.Measure(m_sAccelerator, IsBold());
        m_nWidth = std::max(m_nWidth, accelerator.m_nWidth + nTextColumn);
        m_nHeight = std::max(m_nHeight, accelerator.m_nHeight);
    }
    m_nWidth += c_nMenuGutter;
    if (m_nState & eMenuSubmenu)
        m_nWidth += c_nSubmenuArrow;
    m_nHeight += c_nHeightRoom;
}

void CKRMenuItem::DrawItem(IShellSurface& surface, const CRect& rc, const CMenuItemState& state,
                           const CMenuItemIcons& icons, const CShellColors& colors) const
{
    const CRect rcGutter{rc.left, rc.top, rc.left + c_nMenuGutter, rc.bottom};
    const CRect rcText{rcGutter.right, rc.top, rc.right, rc.bottom};
    surface.FillRect(rcGutter, colors.BarGround());
    surface.FillRect(rcText, colors.m_nMenu);

    if (IsSeparator())
    {
        const int32_t y = rc.top + rc.Height() / 2;
        surface.FillRect(CRect{rcText.left + c_nTextInset, y, rcText.right, y + 1}, colors.Line());
        return;
    }

    if (state.m_bSelected)
        DrawBox(surface, rc, colors.BoxEdge(), colors.SelectedFill());
    DrawSign(surface, rcGutter, state, icons, colors);

    const CColorRef nColor = state.m_bDisabled ? colors.m_nGrayText : colors.m_nMenuText;
    surface.DrawMenuText(CRect{rcText.left + c_nTextInset, rc.top, rc.right, rc.bottom}, m_sText, nColor,
                         IsBold(), false);
    if (!m_sAccelerator.empty())
        surface.DrawMenuText(CRect{rcText.left, rc.top, rc.right - c_nAcceleratorInset, rc.bottom},
                             m_sAccelerator, nColor, IsBold(), true);
}

// What stands in the gutter: the icon, or the check sign, in its box when checked.
void CKRMenuItem::DrawSign(IShellSurface& surface, const CRect& rcGutter, const CMenuItemState& state,
                           const CMenuItemIcons& icons, const CShellColors& colors) const
{
    if (state.m_bChecked && state.m_bDisabled)
        DrawBox(surface, CenterSquare(rcGutter, c_nCheckBox), colors.DisabledEdge(), colors.DisabledFill());
    else if (state.m_bChecked)
        DrawBox(surface, CenterSquare(rcGutter, c_nCheckBox), colors.BoxEdge(), colors.CheckedFill());

    const auto at = [&](const CPixelImage& image)
    {
        const CRect rc = CenterSquare(rcGutter, image.m_nSize);
        return CPoint{rc.left, rc.top};
    };
    if (state.m_bDisabled && icons.m_pDisabled)
        surface.DrawImage(at(*icons.m_pDisabled), *icons.m_pDisabled);
    else if (state.m_bDisabled && icons.m_pNormal)
        surface.DrawImage(at(*icons.m_pNormal), MakeFlatImage(*icons.m_pNormal, colors.Line()));
    else if (!state.m_bDisabled && state.m_bSelected && icons.m_pHot)
        DrawRaisedImage(surface, at(*icons.m_pHot), *icons.m_pHot, colors.ImageShadow());
    else if (!state.m_bDisabled && icons.m_pNormal)
        surface.DrawImage(at(*icons.m_pNormal), *icons.m_pNormal);
    else if (state.m_bChecked)
        DrawCheckSign(surface, rcGutter, state.m_bDisabled ? c_nDisabledCheck : colors.m_nMenuText);
}
