#include "properties/ColorPalette.h"

#include <cstdio>

#include "qsnumber.h"

namespace
{

// Across or down, without its last point.
void DrawLine(CGDISurface& surface, CPoint from, CPoint to, CColorRef nColor)
{
    const int dx = (to.x > from.x) - (to.x < from.x);
    const int dy = (to.y > from.y) - (to.y < from.y);
    for (; from != to; from.x += dx, from.y += dy)
        surface.SetPixel(from.x, from.y, nColor);
}

void DrawOutline(CGDISurface& surface, const CRect& rc, CColorRef nColor)
{
    surface.FillRect(CRect{rc.left, rc.top, rc.right, rc.top + 1}, nColor);
    surface.FillRect(CRect{rc.left, rc.bottom - 1, rc.right, rc.bottom}, nColor);
    surface.FillRect(CRect{rc.left, rc.top, rc.left + 1, rc.bottom}, nColor);
    surface.FillRect(CRect{rc.right - 1, rc.top, rc.right, rc.bottom}, nColor);
}

const char* SkipBlanks(const char* psz)
{
    while (*psz == ' ' || (*psz >= '\t' && *psz <= '\r'))
        ++psz;
    return psz;
}

// One decimal number; null when there is none.
const char* TakeNumber(const char* psz, uint32_t& nValue)
{
    psz = SkipBlanks(psz);
    const char* pszStart = psz;
    if (*psz == '+' || *psz == '-')
        ++psz;
    if (*psz < '0' || *psz > '9')
        return nullptr;
    nValue = static_cast<uint32_t>(QSTextToInt(pszStart));
    while (*psz >= '0' && *psz <= '9')
        ++psz;
    return psz;
}

} // namespace

std::string ColorKey(int nCell)
{
    char szKey[32];
    std::snprintf(szKey, sizeof(szKey), "Color%.2d", nCell);
    return szKey;
}

std::string FormatColorValue(uint32_t nColor)
{
    char szValue[64];
    std::snprintf(szValue, sizeof(szValue), "%3u, %3u, %3u, %3u", nColor & 0xFF, nColor >> 8 & 0xFF,
                  nColor >> 16 & 0xFF, nColor >> 24);
    return szValue;
}

uint32_t ParseColorValue(const std::string& sText)
{
    uint32_t anFields[4] = {255, 255, 255, 255};
    const char* psz = sText.c_str();
    for (int i = 0; i < 4; ++i)
    {
        if (i > 0 && *psz++ != ',')
            break;
        psz = TakeNumber(psz, anFields[i]);
        if (!psz)
            break;
    }
    return (anFields[0] & 0xFF) | (anFields[1] & 0xFF) << 8 | (anFields[2] & 0xFF) << 16 |
           (anFields[3] & 0xFF) << 24;
}

CCustomColorPalette::CCustomColorPalette(IPaletteParent& parent) : m_Parent(parent)
{
    m_anColors.fill(c_nEmptyColor);
}

void CCustomColorPalette::Attach(int32_t nWidth, int32_t nHeight)
{
    constexpr uint32_t c_nDepth = 32;
    m_Surface.Create(nWidth, nHeight, c_nDepth);
}

void CCustomColorPalette::SetColors(const CCells& colors)
{
    m_anColors = colors;
    m_Parent.RepaintPalette();
}

void CCustomColorPalette::SetCurrentColor(uint32_t nColor)
{
    m_anColors[static_cast<size_t>(m_nSelected)] = nColor;
    m_Parent.RepaintPalette();
}

void CCustomColorPalette::SendCurrentColor()
{
    m_Parent.OnColorChosen(GetColor(m_nSelected));
}

void CCustomColorPalette::LoadFromProfile(const IProfile& profile)
{
    for (int i = 0; i < c_nNumCells; ++i)
        m_anColors[static_cast<size_t>(i)] =
            ParseColorValue(profile.GetString(c_szCustomColorSection, ColorKey(i)));
}

void CCustomColorPalette::SaveToProfile(std::vector<IProfile::CEntry>& entries) const
{
    for (int i = 0; i < c_nNumCells; ++i)
        entries.push_back({c_szCustomColorSection, ColorKey(i), FormatColorValue(GetColor(i))});
}

void CCustomColorPalette::LoadFromFile(const CProfileText& file)
{
    for (int i = 0; i < c_nNumCells; ++i)
    {
        std::string sValue;
        file.Get(c_szFileColorSection, ColorKey(i), sValue);
        m_anColors[static_cast<size_t>(i)] = ParseColorValue(sValue);
    }
    m_Parent.RepaintPalette();
    SendCurrentColor();
}

void CCustomColorPalette::SaveToFile(CProfileText& file) const
{
    for (int i = 0; i < c_nNumCells; ++i)
        file.SetPadded(c_szFileColorSection, ColorKey(i), FormatColorValue(GetColor(i)));
}

CRect CCustomColorPalette::GetCellRect(int nCell)
{
    const int32_t nLeft = 25 * (nCell % c_nNumColumns) + 3;
    const int32_t nTop = 22 * (nCell / c_nNumColumns) + 3;
    return CRect{nLeft, nTop, nLeft + 20, nTop + 17};
}

// The focus first: whoever loses it still stores what was typed for the old cell.
void CCustomColorPalette::OnLeftDown(CPoint pt, bool bCtrl)
{
    for (int i = 0; i < c_nNumCells; ++i)
    {
        if (!GetCellRect(i).Contains(pt))
            continue;
        m_Parent.OnPaletteFocus();
        const bool bChanged = m_nFocus != i || m_nSelected != i;
        if (m_nFocus != i)
        {
            m_nFocus = i;
            m_Parent.OnCellFocused(i);
        }
        if (m_nSelected != i)
        {
            m_nSelected = i;
            m_Parent.OnCellSelected(i);
        }
        if (!bCtrl)
            SendCurrentColor();
        if (bChanged)
            m_Parent.RepaintPalette();
        return;
    }
}

void CCustomColorPalette::OnKey(EPaletteKey eKey, bool bCtrl)
{
    const int f = m_nFocus;
    switch (eKey)
    {
    case EPaletteKey::eSpace:
        if (f == m_nSelected)
            break;
        m_nSelected = f;
        m_Parent.OnCellSelected(f);
        m_Parent.RepaintPalette();
        if (!bCtrl)
            SendCurrentColor();
        break;
    case EPaletteKey::eLeft:
        if (f % c_nNumColumns > 0)
            MoveFocus(f - 1);
        break;
    case EPaletteKey::eRight:
        if (f % c_nNumColumns + 1 < c_nNumColumns)
            MoveFocus(f + 1);
        break;
    case EPaletteKey::eUp:
        if (f / c_nNumColumns > 0)
            MoveFocus(f - c_nNumColumns);
        break;
    case EPaletteKey::eDown:
        if (f / c_nNumColumns + 1 < c_nNumCells / c_nNumColumns)
            MoveFocus(f + c_nNumColumns);
        break;
    case EPaletteKey::eDelete:
        ClearFocusCell();
        break;
    }
}

void CCustomColorPalette::MoveFocus(int nCell)
{
    m_nFocus = nCell;
    m_Parent.OnCellFocused(nCell);
    m_Parent.RepaintPalette();
}

void CCustomColorPalette::ClearFocusCell()
{
    m_anColors[static_cast<size_t>(m_nFocus)] = c_nEmptyColor;
    if (m_nFocus == m_nSelected)
        SendCurrentColor();
    m_Parent.OnCellCleared(m_nFocus);
    m_Parent.RepaintPalette();
}

const CGDISurface& CCustomColorPalette::Paint(const CPaletteColors& colors, bool bHasFocus)
{
    m_Surface.FillRect(m_Surface.Bounds(), colors.m_nFace);
    for (int i = 0; i < c_nNumCells; ++i)
        PaintCell(i, colors);
    if (bHasFocus)
        PaintFocus();
    return m_Surface;
}

void CCustomColorPalette::PaintCell(int nCell, const CPaletteColors& colors)
{
    const CRect rc = GetCellRect(nCell);
    const int32_t l = rc.left;
    const int32_t t = rc.top;
    const int32_t r = rc.right;
    const int32_t b = rc.bottom;
    DrawLine(m_Surface, {l, t}, {r - 1, t}, colors.m_nShadow);
    DrawLine(m_Surface, {l, t}, {l, b - 1}, colors.m_nShadow);
    DrawLine(m_Surface, {l + 1, t + 1}, {r - 2, t + 1}, colors.m_nDarkShadow);
    DrawLine(m_Surface, {l + 1, t + 1}, {l + 1, b - 2}, colors.m_nDarkShadow);
    DrawLine(m_Surface, {r - 1, b - 1}, {l - 1, b - 1}, colors.m_nHighlight);
    DrawLine(m_Surface, {r - 1, b - 1}, {r - 1, t - 1}, colors.m_nHighlight);
    DrawLine(m_Surface, {r - 2, b - 2}, {l + 2, b - 2}, colors.m_nLight);
    DrawLine(m_Surface, {r - 2, b - 2}, {r - 2, t + 2}, colors.m_nLight);
    m_Surface.FillRect(rc.Inset(2), GetColor(nCell) & 0xFFFFFF);
    if (nCell == m_nSelected)
        DrawOutline(m_Surface, rc.Inset(-1), colors.m_nOutline);
}

// Dots in the opposite of what is there, so that they show on every desktop.
void CCustomColorPalette::PaintFocus()
{
    const CRect rc = GetCellRect(m_nFocus).Inset(-3);
    for (int32_t y = rc.top; y < rc.bottom; ++y)
    {
        const bool bEdge = y == rc.top || y == rc.bottom - 1;
        for (int32_t x = rc.left; x < rc.right; x += bEdge ? 1 : rc.Width() - 1)
        {
            if (((x + y) & 1) == 0)
                m_Surface.SetPixel(x, y, m_Surface.GetPixel(x, y) ^ 0xFFFFFF);
        }
    }
}
