#include "browser/LeftDock.h"

#include <algorithm>

CLeftDockBar::CLeftDockBar(IDockView& view, CLibraryPanel& effectPanel, CLibraryPanel& prefabPanel,
                           int32_t nDragX)
    : m_View(view),
      m_SizeBar(*this, view, nDragX),
      m_Pages{&effectPanel, &prefabPanel}
{
}

void CLeftDockBar::Initialize()
{
    m_nWidth = m_View.GetBarRect().Width();
    m_SizeCtrl.Initialize(&m_View);
    m_SizeCtrl.AddControl(eLeftDock_Tabs, 0, 0, 0, 0);
    m_SizeCtrl.AddControl(eLeftDock_SizeBar, 1, 0, 0, 0); // along the right edge, at its width

    const CRect rcSizeBar = ControlRect(eLeftDock_SizeBar);
    m_nMinWidth = rcSizeBar.Width();
    m_View.CreateSizeBar(rcSizeBar);
    for (int32_t i = 0; i < c_nDockTabs; ++i)
    {
        m_View.AddTab(c_DockTabs[i]);
        m_View.CreatePage(i);
    }
    PlacePages();
    m_View.ShowPage(m_nCurTab, true);
    m_bInitialised = true;
}

CRect CLeftDockBar::ControlRect(uint32_t nID) const
{
    CRect rc;
    m_View.GetControlRect(nID, rc);
    return rc;
}

void CLeftDockBar::PlacePages()
{
    const CRect rc = m_View.GetTabArea(ControlRect(eLeftDock_Tabs));
    for (int32_t i = 0; i < c_nDockTabs; ++i)
        m_View.MovePage(i, rc);
}

void CLeftDockBar::OnSize()
{
    m_SizeCtrl.OnParentSize();
    m_View.MoveSizeBar(ControlRect(eLeftDock_SizeBar));
    PlacePages();
    m_View.RecalcLayout();
}

CDockSize CLeftDockBar::CalcSize(CDockSize layout, CDockSize fromTemplate) const
{
    return m_bInitialised ? CDockSize{m_nWidth, layout.m_nHeight} : fromTemplate;
}

void CLeftDockBar::OnSelChange(int32_t nTab)
{
    if (nTab == m_nCurTab || nTab < 0 || nTab >= c_nDockTabs)
        return;
    m_View.ShowPage(m_nCurTab, false);
    m_Pages[m_nCurTab]->OnPageShown(false);
    m_View.ShowPage(nTab, true);
    m_Pages[nTab]->OnPageShown(true);
    m_nCurTab = nTab;
}

void CLeftDockBar::ResizeBy(int32_t nDelta)
{
    const CRect rcBar = m_View.GetBarRect();
    const CRect rcParent = m_View.GetParentRect();
    const int64_t nWanted = int64_t(rcBar.Width()) + nDelta;
    m_nWidth =
        static_cast<int32_t>(std::max<int64_t>(std::min<int64_t>(nWanted, rcParent.Width()), m_nMinWidth));
    const int32_t nLeft = rcBar.left - rcParent.left;
    const int32_t nTop = rcBar.top - rcParent.top;
    m_View.MoveBar({nLeft, nTop, nLeft + m_nWidth, nTop + rcBar.Height()});
}

void CLeftDockBar::Restore(int32_t nWidth, bool bFolded)
{
    if (nWidth > 0)
        m_nWidth = std::max(nWidth, m_nMinWidth);
    m_View.RecalcLayout();
    if (bFolded)
        m_SizeBar.Toggle();
}

void CLeftDockBar::Collapse()
{
    m_nSavedWidth = m_nWidth;
    m_nWidth = m_nMinWidth;
    m_View.RecalcLayout();
}

void CLeftDockBar::Expand()
{
    m_nWidth = m_nSavedWidth;
    m_View.RecalcLayout();
}
