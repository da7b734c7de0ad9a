#include "browser/LeftDock.h"

#include "BrowserBench.h"

namespace
{
// A dock of 200 by 300 at 4, 3 in a frame of 800 by 600 pixels; the layout gives it the size it asks for.
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
        EXPECT_EQ((CRect{4, 3, 4 + rc.Width(), 303}), rc); // it only changes its width
        m_rcBar.right = m_rcBar.left + rc.Width();
    }
    void RecalcLayout() override
    {
        ++m_nLayouts;
        const CDockSize size = m_pDock->CalcSize({0, 300}, {200, 300});
        m_rcBar = {m_rcBar.left, m_rcBar.top, m_rcBar.left + size.m_nWidth, m_rcBar.top + size.m_nHeight};
    }
    void CreateSizeBar(const CRect& rc) override { m_rcSizeBar = rc; }
    void MoveSizeBar(const CRect& rc) override { m_rcSizeBar = rc; }
    void AddTab(const char* pszText) override { m_sTabs += pszText; }
    CRect GetTabArea(const CRect& rc) const override { return {rc.left, rc.top + 20, rc.right, rc.bottom}; }
    void CreatePage(int32_t nTab) override { m_sShown += std::to_string(nTab); }
    void MovePage(int32_t nTab, const CRect& rc) override { m_rcPages[nTab] = rc; }
    void ShowPage(int32_t nTab, bool bShow) override
    {
        m_sShown += (bShow ? "+" : "-") + std::to_string(nTab);
    }

    CLeftDockBar* m_pDock = nullptr;
    int m_nLayouts = 0;
    CRect m_rcParent{6, 37, 806, 637}, m_rcBar{10, 40, 210, 340};
    CRect m_rcTabs{5, 5, 185, 295}, m_rcHolder{190, 50, 198, 250}, m_rcSizeBar, m_rcPages[2];
    std::string m_sTabs, m_sShown;
};

struct CDockBench : CBrowserBench
{
    CDockBench() : CBrowserBench("a", "p")
    {
        view.m_pDock = &dock;
        EXPECT_EQ(77, dock.CalcSize({0, 300}, {77, 66}).m_nWidth); // the template's, before
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
    EXPECT_EQ("01+0", bench.view.m_sShown);
    EXPECT_EQ((CRect{190, 50, 198, 250}), bench.view.m_rcSizeBar);
    EXPECT_EQ((CRect{5, 25, 185, 295}), bench.view.m_rcPages[1]);
    EXPECT_EQ(8, bench.dock.GetMinWidth());
    EXPECT_EQ(ESizeBarCursor::eSizeHorizontal, bench.dock.SizeBar().GetCursor());
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
    bench.view.m_rcParent.right = 10; // narrower than the minimum
    EXPECT_EQ(8, bench.Drag({9, 90}));
    EXPECT_EQ("01+0", bench.view.m_sShown); // folding is no change of the page

    // A move without the button: the release went elsewhere. Pressed, it isn't folded by another way.
    CSizeBar& bar = bench.dock.SizeBar();
    bench.view.m_rcParent.right = 806;
    bar.OnLeftPress({205, 100});
    bar.Toggle();
    bar.OnMove({300, 100}, true);
    bar.OnMove({400, 100}, false);
    bar.OnMove({400, 100}, true);
    bar.OnLeftRelease();
    EXPECT_EQ(8, bench.view.m_rcBar.Width());
    EXPECT_FALSE(bar.IsCollapsed());
}

TEST(LeftDock, ComesBackAsItWasInAnotherRun)
{
    struct
    {
        int32_t m_nWidth;
        bool m_bFolded;
        int32_t m_nNow, m_nUnfolded;
    } const c_Cases[] = {{0, false, 200, 200}, {0, true, 8, 200}, {300, false, 300, 300},
                         {300, true, 8, 300},  {1, false, 8, 8},  {-5, false, 200, 200}};
    for (const auto& c : c_Cases)
    {
        CDockBench bench;
        bench.dock.Restore(c.m_nWidth, c.m_bFolded);
        EXPECT_EQ(c.m_nNow, bench.view.m_rcBar.Width()) << c.m_nWidth << c.m_bFolded;
        EXPECT_EQ(c.m_nUnfolded, bench.dock.GetUnfoldedWidth());
        EXPECT_EQ(c.m_bFolded, bench.dock.SizeBar().IsCollapsed());
        if (c.m_bFolded)
            bench.dock.SizeBar().Toggle();
        EXPECT_EQ(c.m_nUnfolded, bench.view.m_rcBar.Width());
        EXPECT_EQ(c.m_nUnfolded, bench.dock.GetWidth());
    }
}

TEST(LeftDock, PagesFollowSizeAndTabs)
{
    CDockBench bench;
    bench.view.m_rcBar = {10, 40, 310, 440}; // grown by 100 each way
    bench.dock.OnSize();
    EXPECT_EQ(1, bench.view.m_nLayouts);
    EXPECT_EQ((CRect{290, 50, 298, 350}), bench.view.m_rcSizeBar);
    EXPECT_EQ((CRect{5, 25, 285, 395}), bench.view.m_rcPages[1]);
    bench.effects.OnFind();
    bench.prefabs.OnFind();
    for (const int32_t nTab : {0, -1, 2})
        bench.dock.OnSelChange(nTab);
    EXPECT_EQ("01+0", bench.view.m_sShown);
    bench.dock.OnSelChange(1);
    EXPECT_EQ("01+0-0+1", bench.view.m_sShown);
    EXPECT_EQ(1, bench.dock.GetCurTab());
    EXPECT_FALSE(bench.effectView.m_bDialogShown);
    EXPECT_TRUE(bench.prefabView.m_bDialogShown);
    bench.dock.OnSelChange(0);
    EXPECT_TRUE(bench.effectView.m_bDialogShown);
    EXPECT_FALSE(bench.prefabView.m_bDialogShown);

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
        EXPECT_EQ(2u, pPanel->m_Tree.Tree().GetCount()); // it had a root
    }
    // An empty tree gets one; a file that brought none keeps what it has.
    CBrowserBench bare("", "");
    for (CLibraryTree* pTree :
         std::initializer_list<CLibraryTree*>{&bare.lib->m_EffectTree, &bare.lib->m_PrefabTree})
        pTree->DeleteAllItems();
    bare.lib->m_EffectTree.InsertGroup("a", {}), bare.lib->m_EffectTree.InsertGroup("b", {});
    bare.effects.OnCreate(&page);
    bare.prefabs.OnCreate(&page);
    EXPECT_EQ("[a]\n[b]\n[[Prefabs]]\n", bare.dump() + bare.prefabDump());
    bare.lib->m_EffectTree.DeleteItem(bare.item("b"));

    // Strips from the top and from the bottom, and what lies between.
    const auto bands = [](const CRect& rc)
    {
        std::string sBands;
        for (const CSizeBarBand& band : CSizeBar::GetBands(rc))
        {
            EXPECT_EQ(rc.left, band.m_rc.left);
            EXPECT_EQ(rc.right, band.m_rc.right);
            sBands += std::to_string(band.m_eBitmap) + ":" + std::to_string(band.m_rc.top) + "-" +
                      std::to_string(band.m_rc.bottom) + " ";
        }
        return sBands;
    };
    EXPECT_EQ("179:5-13 178:13-21 179:21-29 180:29-81 179:81-89 178:89-97 179:97-105 ",
              bands({2, 5, 10, 105}));
    for (const CSizeBarBand& band : CSizeBar::GetBands({0, 0, 8, 10}))
        EXPECT_TRUE(band.m_rc.top >= 0 && band.m_rc.bottom <= 10);
}
