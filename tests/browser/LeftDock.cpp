#include "browser/LeftDock.h"

#include "BrowserBench.h"

namespace
{
// A dock of 200 by 300 at 10, 40 in a frame at 10, 40 of 800 pixels; the layout gives it the size it asks for.
struct CFakeDockView : IDockView
{
    CRect GetClientRect() const override { return {0, 0, m_rcBar.Width(), m_rcBar.Height()}; }
    bool GetControlRect(uint32_t nID, CRect& rc) const override
    {
        rc = nID == eLeftDock_Tabs ? m_rcTabs : m_rcHolder;
        return nID == eLeftDock_Tabs || nID == eLeftDock_SizeBar;
    }
    void MoveControl(uint32_t nID, const CRect& rc) override
    {
        (nID == eLeftDock_Tabs ? m_rcTabs : m_rcHolder) = rc;
    }
    CRect GetBarRect() const override { return m_rcBar; }
    CRect GetParentRect() const override { return m_rcParent; }
    void MoveBar(const CRect& rc) override
    {
        EXPECT_EQ(0, rc.left);
        m_rcBar.right = m_rcBar.left + rc.Width();
    }
    void RecalcLayout() override
    {
        const CDockSize size = m_pDock->CalcSize({0, 300}, {200, 300});
        m_rcBar = {10, 40, 10 + size.m_nWidth, 40 + size.m_nHeight};
    }
    void HideControl(uint32_t nID) override { EXPECT_EQ(eLeftDock_SizeBar, nID); }
    void CreateSizeBar(const CRect& rc) override { m_rcSizeBar = rc; }
    void MoveSizeBar(const CRect& rc) override { m_rcSizeBar = rc; }
    void AddTab(const char* pszText) override { m_sTabs += pszText; }
    CRect GetTabArea(const CRect& rc) const override { return {rc.left, rc.top + 20, rc.right, rc.bottom}; }
    void CreatePage(int32_t) override {}
    void MovePage(int32_t nTab, const CRect& rc) override { m_rcPages[nTab] = rc; }
    void ShowPage(int32_t nTab, bool bShow) override
    {
        m_sShown += (bShow ? "+" : "-") + std::to_string(nTab);
    }
    void SetCapture() override {}
    void ReleaseCapture() override { m_pDock->SizeBar().OnMouseLost(); }

    CLeftDockBar* m_pDock = nullptr;
    CRect m_rcParent{10, 40, 810, 640}, m_rcBar{10, 40, 210, 340};
    CRect m_rcTabs{5, 5, 185, 295}, m_rcHolder{190, 50, 198, 250}, m_rcSizeBar, m_rcPages[2];
    std::string m_sTabs, m_sShown;
};

struct CDockBench : CBrowserBench
{
    CDockBench() : CBrowserBench("a", "p")
    {
        view.m_pDock = &dock;
        dock.Initialize();
    }
    int32_t Drag(std::vector<int32_t> way, bool bLose = false)
    {
        dock.SizeBar().OnLeftPress({205, 100});
        for (const int32_t x : way)
            dock.SizeBar().OnMove({205 + x, 400}, true);
        if (bLose)
            dock.SizeBar().OnMouseLost();
        dock.SizeBar().OnLeftRelease();
        return view.m_rcBar.Width();
    }
    CFakeDockView view;
    CLeftDockBar dock{view, effects, prefabs, 4};
};
} // namespace

TEST(LeftDock, DragsBetweenItsLimitsAndFoldsByAClick)
{
    CDockBench bench;
    EXPECT_EQ("   Effects      Prefabs   ", bench.view.m_sTabs);
    EXPECT_EQ("+0", bench.view.m_sShown);
    EXPECT_EQ(8, bench.dock.GetMinWidth());
    EXPECT_EQ(204, bench.Drag({4, 4})); // far enough; the first move only says so
    EXPECT_EQ(8, bench.Drag({3}));      // a click
    EXPECT_EQ(ESizeBarCursor::eHand, bench.dock.SizeBar().GetCursor());
    EXPECT_EQ(8, bench.Drag({50, 80})); // neither drags nor unfolds
    EXPECT_TRUE(bench.dock.SizeBar().IsCollapsed());
    EXPECT_EQ(204, bench.Drag({}));                  // back at the old width
    EXPECT_EQ(234, bench.Drag({-10, -300, 30, 30})); // comes back with the pointer
    EXPECT_EQ(800, bench.Drag({9, 2000}));
    EXPECT_EQ(8, bench.Drag({-9, -2000})); // no narrower, and not folded
    EXPECT_FALSE(bench.dock.SizeBar().IsCollapsed());
    EXPECT_EQ(8, bench.Drag({}));
    EXPECT_EQ(8, bench.Drag({}));
    EXPECT_EQ(8, bench.Drag({}, true)); // a lost mouse is no click
    EXPECT_FALSE(bench.dock.SizeBar().IsCollapsed());
    bench.view.m_rcParent.right = 14; // narrower than the minimum
    EXPECT_EQ(8, bench.Drag({9, 90}));
    EXPECT_EQ("+0", bench.view.m_sShown); // folding is no change of the page
}

TEST(LeftDock, PagesFollowSizeAndTabs)
{
    CDockBench bench;
    bench.view.m_rcBar = {10, 40, 310, 440}; // grown by 100 each way
    bench.dock.OnSize();
    EXPECT_EQ((CRect{290, 50, 298, 350}), bench.view.m_rcSizeBar);
    EXPECT_EQ((CRect{5, 25, 285, 395}), bench.view.m_rcPages[1]);
    bench.effects.OnFind();
    bench.dock.OnSelChange(0);
    EXPECT_EQ("+0", bench.view.m_sShown);
    bench.dock.OnSelChange(1);
    EXPECT_EQ("+0-0+1", bench.view.m_sShown);
    EXPECT_FALSE(bench.effectView.m_bDialogShown);
    bench.dock.OnSelChange(0);
    EXPECT_TRUE(bench.effectView.m_bDialogShown);

    // The tree fills its page.
    struct CPage : IDialogControls
    {
        CRect GetClientRect() const override { return m_rcPage; }
        bool GetControlRect(uint32_t, CRect& rc) const override { return rc = m_rcTree, true; }
        void MoveControl(uint32_t, const CRect& rc) override { m_rcTree = rc; }
        CRect m_rcPage{0, 0, 100, 200}, m_rcTree{7, 30, 93, 193};
    } page;
    for (CLibraryPanel* pPanel :
         {static_cast<CLibraryPanel*>(&bench.effects), static_cast<CLibraryPanel*>(&bench.prefabs)})
    {
        page = CPage();
        pPanel->OnCreate(&page);
        page.m_rcPage = {0, 0, 150, 180};
        pPanel->OnSize();
        EXPECT_EQ((CRect{7, 30, 143, 173}), page.m_rcTree);
    }

    const auto bands = CSizeBar::GetBands({0, 0, 8, 100});
    std::string sBands;
    for (const CSizeBarBand& band : bands)
        sBands += std::to_string(band.m_eBitmap) + ":" + std::to_string(band.m_rc.bottom) + " ";
    EXPECT_EQ("179:8 178:16 179:24 180:76 179:84 178:92 179:100 ", sBands);
    for (const CSizeBarBand& band : CSizeBar::GetBands({0, 0, 8, 10})) // too low for all of them
        EXPECT_TRUE(band.m_rc.top >= 0 && band.m_rc.bottom <= 10);
}
