#include "shell/Toolbar.h"

namespace
{

constexpr int32_t c_nGripperInset = 4;
constexpr int32_t c_nGripperStep = 2; // between the dots, and between the lines
constexpr int32_t c_nGripperWidth = 3;

CPoint CenterImage(const CRect& rc, const CPixelImage& image)
{
    return CPoint{rc.left + (rc.Width() - image.m_nSize) / 2, rc.top + (rc.Height() - image.m_nSize) / 2};
}

bool IsAcross(EBarSide eSide)
{
    return eSide == EBarSide::eTop || eSide == EBarSide::eBottom;
}

CImageList MakeImages(const CToolbarTable& table, const IconMaker& maker = IconMaker(),
                      int32_t nGrid = c_nIconSize)
{
    CImageList images;
    for (const CToolbarButton& button : table)
        if (!button.IsGap())
            images.push_back(maker && nGrid != c_nIconSize ? maker(*button.m_pIcon, nGrid)
                                                           : MakeImage(*button.m_pIcon));
    return images;
}

} // namespace

CKRToolbar::CKRToolbar(const CToolbarTable& table, const CShellColors& colors) : m_pTable(&table)
{
    SetColors(colors);
}

void CKRToolbar::SetColors(const CShellColors& colors)
{
    m_Colors = colors;
    m_Images.BuildImages(MakeImages(*m_pTable), colors);
    m_FineImages.clear();
}

void CKRToolbar::SetIconMaker(IconMaker maker)
{
    m_Maker = std::move(maker);
    m_FineImages.clear();
}

const CKRToolbarImages& CKRToolbar::ImagesFor(int32_t nGrid) const
{
    if (!m_Maker || nGrid == c_nIconSize)
        return m_Images;
    const auto [it, bNew] = m_FineImages.try_emplace(nGrid);
    if (bNew)
        it->second.BuildImages(MakeImages(*m_pTable, m_Maker, nGrid), m_Colors);
    return it->second;
}

const CPixelImage* CKRToolbar::FindImage(int32_t nCommand, EImageKind eKind, int32_t nGrid) const
{
    if (nCommand == 0)
        return nullptr;
    int32_t nImage = 0;
    for (const CToolbarButton& button : *m_pTable)
    {
        if (button.m_nCommand == nCommand)
            return ImagesFor(nGrid).GetImage(nImage, eKind);
        nImage += !button.IsGap(); // which has no image
    }
    return nullptr;
}

void CKRToolbar::DrawGround(IShellSurface& surface, const CRect& rcBar) const
{
    surface.FillRect(rcBar, m_Colors.BarGround());
}

void CKRToolbar::DrawItem(IShellSurface& surface, const CRect& rc, int32_t nCommand,
                          const CToolItemState& state) const
{
    const int32_t nGrid = surface.IconGrid();
    const CPixelImage* pNormal = FindImage(nCommand, EImageKind::eNormal, nGrid);
    if (state.m_bDisabled)
    {
        if (const CPixelImage* pImage = FindImage(nCommand, EImageKind::eDisabled, nGrid))
            surface.DrawImage(CenterImage(rc, *pImage), *pImage);
        else if (pNormal)
            surface.DrawImage(CenterImage(rc, *pNormal), MakeFlatImage(*pNormal, m_Colors.Line()));
    }
    else if (!state.m_bPressed && state.m_bHot)
    {
        DrawBox(surface, rc, m_Colors.BoxEdge(), m_Colors.SelectedFill());
        if (const CPixelImage* pHot = FindImage(nCommand, EImageKind::eHot, nGrid))
            DrawRaisedImage(surface, CenterImage(rc, *pHot), *pHot, m_Colors.ImageShadow());
    }
    else
    {
        if (state.m_bPressed)
            DrawBox(surface, rc, m_Colors.BoxEdge(), m_Colors.SelectedFill());
        if (pNormal)
            surface.DrawImage(CenterImage(rc, *pNormal), *pNormal);
    }
}

CRect CKRToolbar::GetGripperRect(const CRect& rcBar, EBarSide eSide)
{
    const int32_t n = c_nGripperInset;
    if (eSide == EBarSide::eFloating)
        return CRect{};
    if (IsAcross(eSide))
        return CRect{rcBar.left + n, rcBar.top + n, rcBar.left + n + c_nGripperWidth, rcBar.bottom - n};
    return CRect{rcBar.left + n, rcBar.top + n, rcBar.right - n, rcBar.top + n + c_nGripperWidth};
}

CRect CKRToolbar::GetGripperZone(const CRect& rcBar, EBarSide eSide)
{
    const CRect rc = GetGripperRect(rcBar, eSide);
    if (rc.IsEmpty())
        return CRect{};
    return CRect{rc.left - 4 - 3, rc.top - 6, rc.right + 4 - 3, rc.bottom + 6};
}

void CKRToolbar::DrawGripper(IShellSurface& surface, const CRect& rcBar, EBarSide eSide) const
{
    const CRect rc = GetGripperRect(rcBar, eSide);
    const CColorRef nColor = Lighten(m_Colors.m_nShadow, 0.2);
    for (int32_t y = rc.top; y < rc.bottom; y += c_nGripperStep)
    {
        for (int32_t x = rc.left; x < rc.right; x += c_nGripperStep)
            surface.FillRect(CRect{x, y, x + 1, y + 1}, nColor);
    }
}
