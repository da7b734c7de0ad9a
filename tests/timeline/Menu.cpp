#include <set>

#include "timeline/TimelineBench.h"

TEST(TrackMenu, HoldsWhatAppliesToTheClick)
{
    CTimelineBench bench(aLibrary()
                             .prefab("Sprite", "Salt & Pepper")
                             .effect("Smoke")
                             .track()
                             .key("Sprite", 0, 9000)
                             .id(3)
                             .track()
                             .key("Light", 1000, 2000)
                             .link(3)
                             .key("Light", 2000, 3000)
                             .link(77)
                             .track()
                             .key("Light", 1000, 2000));
    CTrackWnd& wnd = *bench.wnd;
    const auto menu = [&](CPoint pt, bool bCtrl = false) { return DumpMenu(wnd.OnRightRelease(pt, bCtrl)); };
    const std::string sTrack = ", &Track(&Delete Track, &Insert Track)";
    const std::string sSingle = "&Copy Key, &Cut Key, Create &Prefab From Key, ";

    EXPECT_EQ("&Track(&Insert Track)", menu(bench.At(1500, 3)));
    EXPECT_EQ("&Track(&Add Key, &Delete Track, &Insert Track)", menu(bench.At(5000, 2)));
    EXPECT_EQ("&Key(&Name Key, &Motion Link To Key, E&xpand Key, &Set Key Length, " + sSingle +
                  "Edit &Key, -, &Delete Key)" + sTrack,
              menu(bench.At(1500, 2)));
    // Linked, by the flag alone; and linked to.
    EXPECT_EQ("&Key(&Name Key, &Motion Link To Key, &Unlink Key, " + sSingle + "Edit &Key, -, &Delete Key)" +
                  sTrack,
              menu(bench.At(2500, 1)));
    EXPECT_EQ("&Key(&Name Key, &Motion Link To Key, E&xpand Key, &Set Key Length, &Unlink Key, " + sSingle +
                  "Edit &Key, -, &Delete Key)" + sTrack,
              menu(bench.At(4000, 0)));
    // Two selected.
    EXPECT_EQ("&Key(&Name Key, &Motion Link To Key, E&xpand Key, &Set Key Length, -, &Delete Key)" + sTrack,
              menu(bench.At(1500, 2), true));

    bench.host.m_pActive = bench.m_pLibrary->m_SpellMgr.FindPrefab("Salt & Pepper");
    bench.clipboard.CopyKey(&bench.Key(0, 0), 1);
    EXPECT_EQ(
        "&Track(&Add Key, Add &Prefab Salt && Pepper - Sprite, &Paste Key, &Delete Track, &Insert Track)",
        menu(bench.At(5000, 2)));
    EXPECT_EQ(std::string::npos, menu(bench.At(1500, 2)).find("&Assign Prefab")); // another type
    EXPECT_NE(std::string::npos, menu(bench.At(4000, 0)).find("From Key, &Assign Prefab To Key, Edit"));

    // Outside the rows' part of the window a release shows nothing.
    for (const CPoint pt : {CPoint{500, 69}, CPoint{500, 370}, CPoint{1005, 100}, CPoint{-1, 100}})
        EXPECT_EQ("", menu(pt));
}

TEST(TrackMenu, RightReleasesSelect)
{
    CTimelineBench bench("S0-1000* S2000-3000");
    CTrackWnd& wnd = *bench.wnd;
    wnd.OnRightRelease(bench.At(2500, 0), true);
    EXPECT_EQ("0-1000* 2000-3000*", bench.Dump());
    EXPECT_EQ("---", wnd.KeyInfo().GetInfo().m_sStart);
    wnd.OnRightRelease(bench.At(5000, 0), true);
    EXPECT_EQ("0-1000* 2000-3000*", bench.Dump());
    EXPECT_FALSE(wnd.GetCurKey());
    wnd.OnRightRelease(bench.At(2500, 0), false);
    EXPECT_EQ("0-1000 2000-3000*", bench.Dump());
    EXPECT_EQ("2000 ms", wnd.KeyInfo().GetInfo().m_sStart);
    const int nPainted = bench.view.m_nPainted;
    wnd.OnRightRelease(bench.At(5000, 0), false);
    wnd.OnMenuClosed(0);
    EXPECT_EQ(nPainted + 2, bench.view.m_nPainted);
    EXPECT_EQ("0-1000 2000-3000", bench.Dump());
    EXPECT_EQ(0, bench.view.m_nFocus);
}

TEST(TrackCommands, TablesAreWhole)
{
    std::set<int32_t> ids;
    for (const auto& route : c_TrackCommands)
    {
        EXPECT_TRUE(route.m_nID != 0 && route.m_pfnRun != nullptr);
        EXPECT_TRUE(ids.insert(route.m_nID).second) << route.m_nID;
    }
    EXPECT_EQ(17u, ids.size());
    int nWithout = 0;
    for (const CAccelerator& accelerator : c_TimelineAccelerators)
        nWithout += int(1 - ids.count(accelerator.m_nID));
    EXPECT_EQ(2, nWithout); // the find commands

    CTimelineBench bench("S0-1000");
    bench.Click(bench.At(500, 0));
    EXPECT_TRUE(bench.wnd->OnKeyPress('F', true, false, false)); // ends here
    EXPECT_FALSE(bench.wnd->OnKeyPress(c_nKeyDelete, true, false, false));
    EXPECT_FALSE(bench.wnd->OnKeyPress(c_nKeyDelete, false, false, true));
    bench.checker.ExpectEdits(0);
    EXPECT_TRUE(bench.wnd->OnKeyPress(c_nKeyDelete, false, false, false));
    EXPECT_EQ("", bench.Dump());
    bench.checker.ExpectEdits(1);
}
