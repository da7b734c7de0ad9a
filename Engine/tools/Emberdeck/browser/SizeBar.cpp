#include "browser/SizeBar.h"

#include <algorithm>
#include <cstdlib>

#include "browser/LeftDock.h"

CSizeBar::CSizeBar(CLeftDockBar& dock, IDockView& view, int32_t nDragX)
    : m_Dock(dock),
      m_View(view),
      m_nDragX(nDragX)
{
}

void CSizeBar::OnLeftPress(CPoint ptScreen)
{
    m_nPressX = ptScreen.x;
    m_nPressWidth = m_View.GetBarRect().Width();
    m_bPressed = true;
    m_bMoved = false;
}

void CSizeBar::OnMove(CPoint ptScreen, bool bLeftDown)
{
    if (!m_bPressed)
        return;
    if (!bLeftDown)
    {
        OnMouseLost(); // the release went elsewhere
        return;
    }
    const int64_t nWay = int64_t(ptScreen.x) - m_nPressX;
    if (!m_bMoved)
    {
        m_bMoved = std::abs(nWay) >= m_nDragX; // the way up to here is made up for by the next move
        return;
    }
    // From the press, so that a width that was limited on the way comes back with the pointer.
    const int64_t nDelta = m_nPressWidth + nWay - m_View.GetBarRect().Width();
    if (!m_bCollapsed && nDelta != 0)
        m_Dock.ResizeBy(static_cast<int32_t>(std::clamp<int64_t>(nDelta, INT32_MIN, INT32_MAX)));
}

void CSizeBar::OnLeftRelease()
{
    if (!m_bPressed)
        return;
    m_bPressed = false;
    if (!m_bMoved)
        Toggle();
}

void CSizeBar::Toggle()
{
    if (m_bPressed)
        return;
    m_bCollapsed = !m_bCollapsed;
    if (m_bCollapsed)
        m_Dock.Collapse();
    else
        m_Dock.Expand();
}

std::array<CSizeBarBand, CSizeBar::c_nBands> CSizeBar::GetBands(const CRect& rcClient)
{
    constexpr int32_t c_nBand = 8;
    constexpr ESizeBarPattern c_Bitmaps[c_nBands] = {eSizeBar_Dots,  eSizeBar_Grip, eSizeBar_Dots,
                                                     eSizeBar_Plain, eSizeBar_Dots, eSizeBar_Grip,
                                                     eSizeBar_Dots};
    // Steps of bands from the top, from the fourth edge on from the bottom.
    constexpr int32_t c_Edges[c_nBands + 1] = {0, 1, 2, 3, -3, -2, -1, 0};
    constexpr size_t c_nMiddle = 3;
    const auto edge = [&](size_t i)
    {
        const int32_t nFrom = i <= c_nMiddle ? rcClient.top : rcClient.bottom;
        return std::clamp(nFrom + c_Edges[i] * c_nBand, rcClient.top,
                          std::max(rcClient.top, rcClient.bottom));
    };
    std::array<CSizeBarBand, c_nBands> bands;
    for (size_t i = 0; i < c_nBands; ++i)
        bands[i] = {{rcClient.left, edge(i), rcClient.right, edge(i + 1)}, c_Bitmaps[i]};
    return bands;
}
