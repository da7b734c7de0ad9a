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
                .key("Marker", nKey * 1070 - 60 + (i * 7) % 23 * 30,
                     nKey * 1070 - 60 + (i * 7) % 23 * 30 + 120 + i % 5 * 30)
                .selected();
    }
    CTimelineBench bench(builder);
    // Rows that begin above, within and below the strip of marks at the bottom.
    bench.wnd->OnSize(1020, 70 + 100 + 7 * 36 + 3, 70, 100, 20);
    bench.wnd->OnScroll(EScrollEvent::eThumbTrack, 27);
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

// Joined with "; ".
std::string Of(const CCalls& calls, std::initializer_list<const char*> kinds)
{
    std::string sText;
    for (const std::string& sCall : calls)
        for (const char* pszKind : kinds)
            if (sCall.rfind(pszKind, 0) == 0)
                sText += (sText.empty() ? "" : "; ") + sCall;
    return sText;
}

TEST(TimelinePainting, WhatTouchesTheEdgeOfTheViewIsDrawnAndNothingBeyond)
{
    // The area is 1020 wide; a key's end shows by a line within it, and by a mark of 5 pixels at either side.
    const auto mark = [](int x)
    {
        return "polygon " + std::to_string(x - 5) + ",295 " + std::to_string(x + 5) + ",295 " +
               std::to_string(x) + ",300 #0000FF";
    };
    const struct
    {
        const char* pszKey;
        std::string sGuides;
        const char* pszFaces;
    } keys[] = {
        {"M-100--50*", mark(-5), ""},
        {"M-100--60*", "", ""},
        {"M-60--50*", mark(-5), ""},
        {"M-100-0*", "line 0,0 0,300; " + mark(0), ""},
        {"M-100-10*", "line 1,0 1,300; " + mark(1), "raised -10,0 11x36; dotted -6,4 3x28"},
        {"M10190-10260*", "line 1019,0 1019,300; " + mark(1019), "raised 1019,0 7x36"},
        {"M10200-10260*", mark(1020), ""},
        {"M10250-10260*", mark(1025), ""},
        {"M10260-10300*", "", ""},
        {"M4600-4605*", "line 460,0 460,300; line 460,0 460,300; " + mark(460) + "; " + mark(460), ""},
        {"M4000-4080*", "line 400,0 400,300; line 408,0 408,300; " + mark(400) + "; " + mark(408),
         "raised 400,0 8x36"},
        {"M4000-4090*", "line 400,0 400,300; line 409,0 409,300; " + mark(400) + "; " + mark(409),
         "raised 400,0 9x36; dotted 404,4 1x28"},
    };
    for (const auto& key : keys)
    {
        const CCalls calls = Painted(CTimelineBench(key.pszKey));
        EXPECT_EQ(key.sGuides, Of(calls, {"line", "polygon"})) << key.pszKey;
        EXPECT_EQ(key.pszFaces, Of(calls, {"raised", "dotted", "text"})) << key.pszKey;
    }

    // A link is drawn while its box, with the circle, touches the view. Both middles stand at the same place.
    const struct
    {
        int nFirst, nLast, nRow, nHeight, nScroll;
        bool bDrawn;
    } links[] = {{-80, -40, 0, 300, 0, true},       {-90, -50, 0, 300, 0, false},
                 {10230, 10270, 0, 300, 0, true},   {10240, 10280, 0, 300, 0, false},
                 {1000, 2000, 0, 300, 6, true},     {1000, 2000, 0, 300, 7, false},
                 {1000, 2000, 8, 301, 0, true},     {1000, 2000, 8, 300, 0, false},
                 {-90000, 200000, 0, 300, 0, false}}; // with its middle far to the right
    for (const auto& c : links)
    {
        std::string sTracks;
        for (int i = 0; i < c.nRow; ++i)
            sTracks += "| ";
        const std::string sKey = "M" + std::to_string(c.nFirst) + "-" + std::to_string(c.nLast);
        CTimelineBench bench(sTracks + sKey + "#1 " + sKey + "#2>1");
        bench.wnd->OnSize(1020, 170 + c.nHeight, 70, 100, 20);
        bench.wnd->OnScroll(EScrollEvent::eThumbTrack, c.nScroll);
        EXPECT_EQ(c.bDrawn, !Of(Painted(bench), {"ellipse"}).empty()) << c.nFirst << " in row " << c.nRow;
    }
}

TEST(TimelinePainting, WithEveryOptionACarriedKeyLiesOverAllAndItsLandingBelow)
{
    CTimelineBench bench("S1000-3000#4=Puff | L1500-2500>4");
    bench.wnd->SetOptions(CTrackViewOptions::ForUsers());
    bench.Press(bench.At(1200, 0), false, true);
    bench.wnd->OnMove(bench.At(6200, 1), true);
    const CCalls expected = {
        "fill 0,0 1020x1000 #646464",
        "sunken -100,0 1220x36",
        "raised 100,0 200x36",
        "dotted 104,4 192x28",
        "sunken -100,36 1220x36",
        "raised 150,36 100x36",
        "dotted 599,36 200x36", // where it would lie, on the grid of the pixels
        "line 599,36 599,300",
        "line 799,36 799,300",
        "polygon 594,295 604,295 599,300 #0000FF",
        "polygon 794,295 804,295 799,300 #0000FF",
        "line 200,54 200,18",
        "ellipse 195,13 11x11 #FFFFFF",
        "label 103,0 87x36 Puff - Sprite", // beside the circle
        "label 153,36 94x36 Light",
        "raised 600,36 200x36",
        "dotted 604,40 192x28",
        "label 603,36 194x36 Puff - Sprite",
    };
    EXPECT_EQ(expected, Painted(bench));
    bench.wnd->OnMove(bench.At(2200, 1), true); // on a key: no landing, and no guides in its place
    EXPECT_EQ("line 200,54 200,18", Of(Painted(bench), {"line", "polygon"}));
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
    const auto scrolled = [&](int32_t nPos)
    {
        bench.wnd->OnScroll(EScrollEvent::eThumbTrack, nPos);
        const std::string sLabels = Of(Painted(bench), {"label"});
        return sLabels.substr(0, sLabels.find(';'));
    };
    EXPECT_EQ("label 3,0 994x16 Big - Sprite", scrolled(5)); // 16 of the row's 36 pixels are left
    EXPECT_EQ("label 3,0 994x12 Big - Sprite", scrolled(6)); // the height of a line
    EXPECT_EQ("label 3,-28 994x36 Big - Sprite", scrolled(7));

    // A name takes 3 pixels less at either side, and beside the circle 10 from its middle; 8 are the least.
    const struct
    {
        const char* pszTracks;
        const char* pszLabels;
    } cases[] = {
        {"M1000-1140", "label 103,0 8x36 ~"},
        {"M1000-1130", ""},
        {"M1000-1420#1 | M0-10000#2>1", "label 103,0 8x36 ~; label 3,36 994x36 Marker"},
        {"M1000-1410#1 | M0-10000#2>1", "label 130,0 8x36 ~; label 3,36 994x36 Marker"},
        {"M1000-1400#1 | M0-10000#2>1", "label 3,36 994x36 Marker"},
        {"M-200-800#1 | M0-10000#2>1", "label 40,0 37x36 Marker; label 3,36 994x36 Marker"},
        {"M-800-160#1 | M0-10000#2>1",
         "label 3,0 10x36 ~; label 3,36 994x36 Marker"}, // its circle is out of view
    };
    for (const auto& c : cases)
    {
        CTimelineBench one(c.pszTracks);
        one.wnd->SetOptions(CTrackViewOptions{true, false, false});
        EXPECT_EQ(c.pszLabels, Of(Painted(one), {"label"})) << c.pszTracks;
    }
}
