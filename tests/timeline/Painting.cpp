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

TEST(TimelinePainting, FillsAtLeastAThousandPixelsAndTheWholeSurface)
{
    CTimelineBench bench(aLibrary().effect("Smoke"));
    EXPECT_EQ(CCalls{"fill 0,0 1020x1000 #646464"}, Painted(bench));
    bench.wnd->OnSize(300, 2000, 70, 100, 20);
    EXPECT_EQ(CCalls{"fill 0,0 1000x1830 #646464"}, Painted(bench));
}
