#include <cstdio>

#include "timeline/TimelineBench.h"

namespace
{

using CCalls = std::vector<std::string>;

CCalls Painted(const CTimelineBench& bench)
{
    CRecordingSurface surface;
    bench.wnd->Paint(surface);
    return surface.m_Calls;
}

} // namespace

TEST(TimelinePainting, DrawsRowsThenGuidesThenLinks)
{
    CTimelineBench bench("S1000-5000#7=Big | L2000-3000*>7 L3000-3080* M4000-4470");
    const CCalls expected = {
        "fill 0,0 1020x1000 #646464",
        "sunken -100,0 1220x36",
        "raised 100,0 400x36",
        "text 100,0 400x36 Big - Sprite",
        "sunken -100,36 1220x36",
        "raised 200,36 100x36",
        "text 200,36 100x36 Light",
        "dotted 204,40 92x28",
        "raised 300,36 8x36", // too narrow for a text and a frame
        "raised 400,36 47x36",
        "text 400,36 47x36 Marker", // 36 wide; would go at 41
        "line 200,36 200,300",
        "line 300,36 300,300",
        "polygon 195,295 205,295 200,300 #0000FF",
        "polygon 295,295 305,295 300,300 #0000FF",
        "line 300,36 300,300",
        "line 308,36 308,300",
        "polygon 295,295 305,295 300,300 #0000FF",
        "polygon 303,295 313,295 308,300 #0000FF",
        "line 250,54 300,18",
        "ellipse 295,13 11x11 #FFFFFF",
    };
    EXPECT_EQ(expected, Painted(bench));

    bench.Arrange([&] { bench.Key(1, 2).m_nEndTime = 4410; }); // no room for a text of the width less five
    EXPECT_EQ("raised 400,36 41x36", Painted(bench).at(9));
    EXPECT_EQ("line 200,36 200,300", Painted(bench).at(10));

    // A link to nothing, and one to itself, draw nothing.
    bench.Arrange(
        [&]
        {
            bench.Key(1, 0).m_nMotionLinkID = 4711;
            bench.Key(1, 1).Link(bench.Key(1, 1).m_nKeyID);
        });
    EXPECT_EQ(18u, Painted(bench).size());
}

TEST(TimelinePainting, DrawsOnlyWhatIsInView)
{
    CLibraryBuilder builder = aLibrary();
    builder.effect("Smoke");
    for (int i = 0; i < 12; ++i)
    {
        builder.track();
        for (int nKey = 0; nKey < 50; ++nKey)
            builder.key("Marker", nKey * 200, nKey * 200 + 200);
    }
    CTimelineBench bench(builder);
    bench.Key(0, 3).m_bSelected = true;
    bench.Key(1, 30).m_bSelected = true;
    bench.wnd->TimeBar().OnScaleSlider(50);
    bench.wnd->TimeBar().OnPhaseSlider(5); // 454 ms on, 1.1 pixels a millisecond
    bench.wnd->OnScroll(EScrollEvent::ePageDown);
    bench.Arrange(
        [&]
        {
            bench.Key(9, 40).Link(bench.Key(0, 4).m_nKeyID); // right of the view, to above it
            bench.Key(0, 3).Link(bench.Key(0, 4).m_nKeyID);  // both above
        });

    CRecordingSurface surface;
    bench.wnd->Paint(surface);
    EXPECT_EQ("sunken -100,-8 1220x36", surface.Calls("sunken").front());
    EXPECT_EQ(9u, surface.Calls("sunken").size());
    EXPECT_EQ(9u * 5, surface.Calls("raised").size());
    // The guides of a key that is scrolled away, and of it alone: the other's are off to the right.
    EXPECT_EQ(2u, surface.Calls("polygon").size());
    EXPECT_EQ(1u, surface.Calls("ellipse").size());
}

// What can be seen of the guides, as a picture of letters: L for a line, T for a mark.
std::vector<std::string> PictureOf(const CCalls& calls, int nWidth, int nHeight)
{
    std::vector<std::string> rows(size_t(nHeight), std::string(size_t(nWidth), '.'));
    for (const std::string& sCall : calls)
    {
        int x = 0, y = 0, nRight = 0, nHigh = 0;
        if (std::sscanf(sCall.c_str(), "fill %d,%d %dx%d #000000", &x, &y, &nRight, &nHigh) == 4 &&
            sCall.find("#000000") != std::string::npos)
        {
            for (int nRow = y; nRow < y + nHigh; ++nRow)
                rows.at(size_t(nRow)).replace(size_t(x), size_t(nRight), size_t(nRight), 'L');
            continue;
        }
        const bool bMark = std::sscanf(sCall.c_str(), "polygon %d,%d %d", &x, &y, &nRight) == 3;
        if (!bMark && std::sscanf(sCall.c_str(), "line %d,%d %d", &x, &y, &nRight) != 3)
            continue;
        for (int nRow = std::max(y, 0); nRow < nHeight; ++nRow)
            for (int nInset = bMark ? nRow - y : 0, nAt = x + nInset; nAt <= nRight - nInset; ++nAt)
                if (nAt >= 0 && nAt < nWidth)
                    rows[size_t(nRow)][size_t(nAt)] = bMark ? 'T' : 'L';
    }
    return rows;
}

TEST(TimelinePainting, GuidesOfManyKeysLookAsIfEachHadBeenDrawn)
{
    CLibraryBuilder builder = aLibrary();
    builder.effect("Smoke");
    for (int i = 0; i < 60; ++i)
    {
        builder.track();
        for (int nKey = 0; nKey < 10; ++nKey)
            builder
                .key("Marker", nKey * 900 + (i * 7) % 23 * 30,
                     nKey * 900 + (i * 7) % 23 * 30 + 120 + i % 5 * 30)
                .selected();
    }
    CTimelineBench bench(builder);
    // Rows that begin above, within and below the strip of marks at the bottom.
    bench.wnd->OnSize(1020, 70 + 100 + 7 * 36 + 3, 70, 100, 20);
    bench.wnd->OnScroll(EScrollEvent::eThumbTrack, 30);
    const int nWidth = bench.wnd->Layout().m_rcTrack.Width(),
              nHeight = bench.wnd->Layout().m_rcTrack.Height();

    CCalls each;
    for (const auto& pTrack : bench.Tracks().Tracks())
        for (const auto& pKey : pTrack->Keys())
        {
            const CRect rc = bench.wnd->GetKeyRect(pKey.get());
            const auto add = [&](const char* pszFormat, int a, int b, int c)
            {
                char szCall[80];
                std::snprintf(szCall, sizeof(szCall), pszFormat, a, b, c);
                each.push_back(szCall);
            };
            for (const int x : {rc.left, rc.right})
                add("line %d,%d %d", x, rc.top - bench.wnd->Layout().m_rcTrack.top, x);
            for (const int x : {rc.left, rc.right})
                add("polygon %d,%d %d", x - 5, nHeight - 5, x + 5);
        }
    CCalls drawn = Painted(bench);
    EXPECT_LT(drawn.size(), each.size());
    EXPECT_EQ(PictureOf(each, nWidth, nHeight), PictureOf(drawn, nWidth, nHeight));
}

TEST(TimelinePainting, FillsAtLeastAThousandPixelsAndTheWholeSurface)
{
    CTimelineBench bench(aLibrary().effect("Smoke"));
    EXPECT_EQ(CCalls{"fill 0,0 1020x1000 #646464"}, Painted(bench));
    bench.wnd->OnSize(300, 2000, 70, 100, 20);
    EXPECT_EQ(CCalls{"fill 0,0 1000x1830 #646464"}, Painted(bench));
}

TEST(TimelinePainting, NamesAreReadInWhatCanBeSeenOfTheirKeys)
{
    CTimelineBench bench(
        "S1000-9000#7=Big | L2000-3000*>7=Small L3000-3450=Narrow L3450-3500 M9500-12000=End");
    bench.wnd->SetOptions(CTrackViewOptions{true, false, false});
    const CCalls described = [&]
    {
        CTimelineBench plain(
            "S1000-9000#7=Big | L2000-3000*>7=Small L3000-3450=Narrow L3450-3500 M9500-12000=End");
        return Painted(plain);
    }();
    CRecordingSurface surface;
    bench.wnd->Paint(surface);
    // Above the links, which were drawn before them; beside the circle; cut to the window, less the scroll bar.
    const CCalls labels = {"label 103,0 387x36 Big - Sprite", "label 203,36 94x36 Small - Light",
                           "label 303,36 39x36 Narro~", "label 953,36 44x36 End - ~"};
    EXPECT_EQ(labels, surface.Calls("label"));
    EXPECT_EQ(labels, CCalls(surface.m_Calls.end() - 4, surface.m_Calls.end()));
    EXPECT_EQ(CCalls(), surface.Calls("text"));
    // Everything else is as it was.
    const auto without = [](CCalls calls)
    {
        std::erase_if(calls, [](const std::string& s)
                      { return s.rfind("text", 0) == 0 || s.rfind("label", 0) == 0; });
        return calls;
    };
    EXPECT_EQ(without(described), without(surface.m_Calls));

    // Zoomed into the middle of the long key, whose own middle is out of view.
    bench.wnd->TimeBar().OnScaleSlider(50);
    bench.wnd->TimeBar().OnPhaseSlider(20);
    CRecordingSurface zoomed;
    bench.wnd->Paint(zoomed);
    EXPECT_EQ("label 3,0 994x36 Big - Sprite", zoomed.Calls("label").at(0));
    bench.wnd->OnScroll(EScrollEvent::eLineDown); // 16 of the row's 36 pixels are left
    CRecordingSurface scrolled;
    bench.wnd->Paint(scrolled);
    EXPECT_EQ("label 3,0 994x16 Big - Sprite", scrolled.Calls("label").at(0));
}
