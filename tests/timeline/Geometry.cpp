#include "timeline/TimelineBench.h"

TEST(TimelineGeometry, TimesAndPixelsTruncateTowardZeroAndNeverOverflow)
{
    CTimeScale scale{0, MakePixelsPerMs(1000, 10000, 1.0f)};
    EXPECT_EQ(0.1f, scale.m_fPixelsPerMs);
    EXPECT_EQ(200, PixelFromTime(scale, 2000));
    EXPECT_EQ(1999, TimeFromPixel(scale, 200)); // the float lies above 0.1
    EXPECT_EQ(-199, TimeFromPixel(scale, -20));

    scale.m_nViewStart = 105;
    EXPECT_EQ(0, PixelFromTime(scale, 100)); // and just right of the view start too
    EXPECT_EQ(0, PixelFromTime(scale, 110));
    EXPECT_EQ(-1, PixelFromTime(scale, 95));
    EXPECT_EQ(105, TimeFromPixel(scale, 0));

    scale.m_fPixelsPerMs = 11.0f;
    EXPECT_EQ(c_nMaxPixel, PixelFromTime(scale, INT32_MAX));
    EXPECT_EQ(-c_nMaxPixel, PixelFromTime(scale, INT32_MIN));
    scale.m_fPixelsPerMs = MakePixelsPerMs(1, INT32_MAX, 1.0f);
    EXPECT_EQ(INT32_MAX, TimeFromPixel(scale, 1 << 20));
    EXPECT_EQ(INT32_MIN, TimeFromPixel(scale, -(1 << 20)));

    EXPECT_EQ(1000.0f, MakePixelsPerMs(1000, 0, 1.0f));
    EXPECT_EQ(1000.0f, MakePixelsPerMs(1000, -7, 1.0f));
    EXPECT_EQ(0.5f, MakePixelsPerMs(-20, 2, 1.0f));
}

TEST(TimelineGeometry, KeysAndRowsStandWhereHitTestsFindThem)
{
    CTimelineBench bench("S0-5 | | S2000-3000 L3000-3400");
    CTrackWnd& wnd = *bench.wnd;
    const CKey& key = bench.Key(2, 0);
    const CKey& next = bench.Key(2, 1);
    EXPECT_EQ((CRect{200, 142, 300, 178}), wnd.GetKeyRect(&key));

    // Row 0 also answers above the rows; below the last there is nothing.
    EXPECT_FALSE(wnd.TrackFromY(34));
    EXPECT_EQ(bench.Tracks().GetTrack(0), wnd.TrackFromY(35));
    EXPECT_EQ(bench.Tracks().GetTrack(0), wnd.TrackFromY(105));
    EXPECT_EQ(bench.Tracks().GetTrack(2), wnd.TrackFromY(177));
    EXPECT_FALSE(wnd.TrackFromY(178));

    // By time: the first column of a key isn't its own yet, the one at its right edge still is.
    EXPECT_FALSE(wnd.KeyFromPoint({200, 150}));
    EXPECT_EQ(&key, wnd.KeyFromPoint({201, 150}));
    EXPECT_EQ(&key, wnd.KeyFromPoint({300, 150}));
    EXPECT_EQ(&next, wnd.KeyFromPoint({301, 150}));
    // By rectangle; nothing above row 0 here.
    EXPECT_EQ(&key, wnd.KeyFromRect({200, 142}));
    EXPECT_EQ(&next, wnd.KeyFromRect({300, 177}));
    EXPECT_FALSE(wnd.KeyFromRect({340, 150}));
    EXPECT_EQ(&bench.Key(0, 0), wnd.KeyFromPoint({0, 60})); // no pixel wide, yet hit by its time
    EXPECT_FALSE(wnd.KeyFromRect({0, 60}));
    EXPECT_EQ(EKeyZone::eOutside, wnd.HitTestKey(bench.Key(0, 0), {0, 80}));

    const auto zone = [&](int32_t x, int32_t y = 150) { return int(wnd.HitTestKey(key, {x, y})); };
    EXPECT_EQ("0 2 2 1 1 3 3 0", std::to_string(zone(199)) + " " + std::to_string(zone(200)) + " " +
                                     std::to_string(zone(203)) + " " + std::to_string(zone(204)) + " " +
                                     std::to_string(zone(296)) + " " + std::to_string(zone(297)) + " " +
                                     std::to_string(zone(299)) + " " + std::to_string(zone(300)));
    EXPECT_EQ(0, zone(250, 141));
    EXPECT_EQ(0, zone(250, 178));

    EXPECT_EQ(bench.Tracks().GetTrack(2), wnd.TrackFromKey(&key));
    EXPECT_FALSE(wnd.TrackFromKey(nullptr));
    EXPECT_TRUE(wnd.GetKeyRect(nullptr).IsEmpty()); // reported

    // Hover: within the rectangle and near one of its ends.
    wnd.OnMove({203, 150}, false);
    EXPECT_EQ(ECursorShape::eSizeHorizontal, bench.view.m_eShape);
    wnd.OnMove({250, 150}, false);
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
    wnd.OnMove({339, 150}, false);
    EXPECT_EQ(ECursorShape::eSizeHorizontal, bench.view.m_eShape);
    wnd.OnMove({340, 150}, false);
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
}

TEST(TimelineGeometry, SizesDivideTheWindowAndScrollingStopsAtItsEnds)
{
    CTimelineBench bench("");
    CTrackWnd& wnd = *bench.wnd;
    EXPECT_EQ((CRect{0, 0, 1020, 70}), wnd.Layout().m_rcKeyInfo);
    EXPECT_EQ((CRect{0, 370, 1000, 470}), wnd.Layout().m_rcTimeBar);
    EXPECT_EQ((CRect{1000, 70, 1020, 470}), wnd.Layout().m_rcScrollBar);
    EXPECT_EQ((CRect{0, 70, 1020, 370}), wnd.Layout().m_rcTrack);
    EXPECT_FALSE(wnd.OnSize(0, 0, 70, 100, 20));
    EXPECT_EQ(1020, wnd.Layout().m_rcTrack.right);
    EXPECT_TRUE(wnd.OnSize(10, 90, 70, 100, 20)); // narrower than its scroll bar, lower than its bars
    EXPECT_EQ(0, wnd.Layout().m_rcTimeBar.Width());
    EXPECT_EQ(0, wnd.Layout().m_rcTrack.Height());
    EXPECT_EQ(0.0001f, wnd.TimeBar().m_fPixelsPerMs);

    const auto scroll = [&](EScrollEvent eEvent, int32_t nThumb = 0)
    {
        wnd.OnScroll(eEvent, nThumb);
        EXPECT_EQ(4 * wnd.GetScrollPos(), wnd.Layout().m_nScrollY);
        return wnd.GetScrollPos();
    };
    const int nPainted = bench.view.m_nPainted;
    EXPECT_EQ(0, scroll(EScrollEvent::eLineUp));
    EXPECT_EQ(5, scroll(EScrollEvent::eLineDown));
    EXPECT_EQ(25, scroll(EScrollEvent::ePageDown));
    EXPECT_EQ(20, scroll(EScrollEvent::eLineUp));
    EXPECT_EQ(0, scroll(EScrollEvent::ePageUp));
    EXPECT_EQ(191, scroll(EScrollEvent::eThumbTrack, 200));
    EXPECT_EQ(191, scroll(EScrollEvent::eOther, 3));
    EXPECT_EQ(nPainted + 7, bench.view.m_nPainted);
    EXPECT_EQ(-764 + 70,
              wnd.GetKeyRect(std::make_unique<CKey>(bench.m_pLibrary->Module().GetType(0)).get()).top);
}
