#include <map>

#include "timeline/TimelineBench.h"

namespace
{

// The ruler tick by tick, as it is to look; "x" or "X" for a short or long tick in a column, then the labels.
std::vector<std::string> PlainRuler(const CTimeBar& bar, int32_t nWidth)
{
    std::map<int32_t, bool> ticks;
    std::vector<std::string> labels;
    int64_t t = bar.m_nViewStart / 100 * 100;
    int32_t nLastRight = -50;
    for (int32_t i = 0; i < bar.m_nPhaseLength / 100 + 1; ++i, t += 100)
    {
        const int32_t x = PixelFromTime(bar, t);
        ticks[x] = ticks[x] || t % 1000 == 0;
        const std::string sLabel = std::to_string(t / 1000);
        const int32_t nHalf = int32_t(sLabel.size()) * 6 / 2;
        if (t % 1000 != 0 || x - nHalf <= nLastRight)
            continue;
        nLastRight = x + nHalf + 5;
        if (x - nHalf < nWidth)
            labels.push_back("text " + std::to_string(x - nHalf) + ",10 " + sLabel);
    }
    std::vector<std::string> calls;
    for (const auto& [x, bMajor] : ticks)
        if (x < nWidth)
            calls.push_back("line " + std::to_string(x) + ",0 " + std::to_string(x) +
                            (bMajor ? ",10" : ",5"));
    calls.insert(calls.end(), labels.begin(), labels.end());
    return calls;
}

std::vector<std::string> DrawnRuler(const CTimeBar& bar, int32_t nWidth)
{
    CRecordingSurface surface;
    bar.DrawRuler(surface, nWidth, 26);
    EXPECT_EQ("fill 0,0 " + std::to_string(nWidth) + "x26 #DCDCDC", surface.m_Calls.front());
    std::vector<std::string> calls;
    for (const std::string sKind : {"line", "text"})
        for (const std::string& sCall : surface.Calls(sKind))
            if (std::stoi(sCall.substr(5)) < nWidth)
                calls.push_back(sCall);
    return calls;
}

} // namespace

TEST(TimeBar, RulerHasTicksEachTenthAndLabelsThatDontCrowd)
{
    CFakeTrackView view;
    CTimeBar bar(view, 10000);
    bar.SetWidth(1000);
    CRecordingSurface surface;
    bar.DrawRuler(surface, 1000, 26);
    EXPECT_EQ(101u, surface.Calls("line").size());
    EXPECT_EQ("line 100,0 100,10", surface.Calls("line").at(10));
    EXPECT_EQ("line 110,0 110,5", surface.Calls("line").at(11));
    EXPECT_EQ(11u, surface.Calls("text").size());
    EXPECT_EQ("text -3,10 0", surface.Calls("text").front());
    EXPECT_EQ("text 994,10 10", surface.Calls("text").back());

    // Panned, not a multiple of a tick, crowded, and absurdly long: what is drawn is what a pass over all
    // ticks would leave in view.
    struct
    {
        int32_t nWidth, nPhase, nScale, nPan;
    } const cases[] = {{1000, 10000, 10, 47}, {1000, 1050, 0, 0},   {1000, 1000000, 0, 0},
                       {777, 1000000, 3, 61}, {333, 123456, 1, 99}, {1000, 60, 0, 0},
                       {1000, 0, 0, 0},       {1000, -500, 0, 0},   {1000, 999999, 50, 50},
                       {90, 20000000, 0, 0}};
    for (const auto& c : cases)
    {
        bar.SetWidth(c.nWidth);
        bar.SetPhaseLength(c.nPhase);
        bar.OnScaleSlider(c.nScale);
        bar.OnPhaseSlider(c.nPan);
        EXPECT_EQ(PlainRuler(bar, c.nWidth), DrawnRuler(bar, c.nWidth)) << c.nWidth << " " << c.nPhase;
    }

    // Two thousand million milliseconds cost no more than the columns.
    bar.SetWidth(1000);
    bar.SetPhaseLength(INT32_MAX);
    bar.OnScaleSlider(0);
    CRecordingSurface all;
    bar.DrawRuler(all, 1000, 26);
    EXPECT_GT(1200u, all.m_Calls.size());
}

TEST(TimeBar, SlidersZoomAndPanWithinThePhase)
{
    CFakeTrackView view;
    CTimeBar bar(view, 10000);
    bar.SetWidth(1000);
    bar.OnPhaseSlider(80); // nothing to pan over yet
    EXPECT_EQ(0, bar.m_nViewStart);

    bar.OnScaleSlider(5);
    EXPECT_EQ(2.0f, bar.m_fZoom);
    EXPECT_EQ(0.2f, bar.m_fPixelsPerMs);
    EXPECT_EQ(0, bar.m_nViewStart); // the phase slider isn't asked
    bar.OnPhaseSlider(50);
    EXPECT_EQ(2500, bar.m_nViewStart);
    bar.OnPhaseSlider(100);
    EXPECT_EQ(5000, bar.m_nViewStart);
    bar.OnScaleSlider(1); // zoom 1.2: what fits begins at 1667 at the latest
    EXPECT_EQ(1.2f, bar.m_fZoom);
    EXPECT_EQ(1667, bar.m_nViewStart);
    bar.OnScaleSlider(0);
    EXPECT_EQ(0, bar.m_nViewStart);
    bar.OnScaleSlider(99);
    EXPECT_EQ(11.0f, bar.m_fZoom);

    // A shorter phase leaves the view start to the next slider; it never goes below 0.
    bar.OnPhaseSlider(100);
    EXPECT_EQ(9090, bar.m_nViewStart);
    bar.SetPhaseLength(-5);
    EXPECT_EQ(9090, bar.m_nViewStart);
    bar.OnScaleSlider(50);
    EXPECT_EQ(0, bar.m_nViewStart);
    bar.OnPhaseSlider(100);
    EXPECT_EQ(0, bar.m_nViewStart);

    CTimeBar unsized(view, 11000); // no width yet counts as one pixel
    EXPECT_EQ(1.0f / 11000, unsized.m_fPixelsPerMs);
    unsized.OnScaleSlider(50);
    unsized.OnPhaseSlider(100);
    EXPECT_EQ(10000, unsized.m_nViewStart);
}

TEST(TimeBar, ScrollsToWhatIsOutOfViewAlone)
{
    CFakeTrackView view;
    CTimeBar bar(view, 10000);
    bar.SetWidth(1000);
    const auto scrolled = [&](int32_t nFrom, int32_t nStart, int32_t nEnd)
    {
        bar.OnPhaseSlider(nFrom);
        bar.ScrollTo(nStart, nEnd);
        return bar.m_nViewStart;
    };
    EXPECT_EQ(0, scrolled(0, 10500, 11000)); // all of the phase is in view
    EXPECT_EQ(0, bar.GetPhasePos());
    bar.OnScaleSlider(5);
    const struct
    {
        int32_t nFrom, nStart, nEnd, nViewStart;
    } cases[] = {{0, 4999, 6000, 0},      {0, 5000, 6000, 4950},   {0, 9000, 9500, 5000},
                 {100, 4000, 5000, 3950}, {100, 4000, 5001, 5000}, {100, -3000, -2000, 0},
                 {50, 2600, 2700, 2500},  {50, 1000, 1250, 950}}; // in steps of the slider, downwards
    for (const auto& c : cases)
        EXPECT_EQ(c.nViewStart, scrolled(c.nFrom, c.nStart, c.nEnd)) << c.nFrom << " " << c.nStart;
    EXPECT_EQ(19, bar.GetPhasePos());
}

TEST(TimeBar, EveryNotificationDrawsTheRulerAndOnlyChangesTheRows)
{
    CFakeTrackView view;
    CTimeBar bar(view, 10000);
    EXPECT_EQ(0, view.m_nInvalidated + view.m_nRulers);
    bar.SetWidth(1000);
    bar.SetWidth(1000);
    EXPECT_EQ(1, view.m_nInvalidated);
    bar.OnScaleSlider(5);
    bar.OnScaleSlider(5);
    bar.SetPhaseLength(10000);
    EXPECT_EQ(2, view.m_nInvalidated);
    EXPECT_EQ(3, view.m_nRulers);
    bar.OnPhaseSlider(50);
    bar.OnPhaseSlider(50);
    EXPECT_EQ(3, view.m_nInvalidated);
    EXPECT_EQ(5, view.m_nRulers);
    bar.SetPhaseLength(20000);
    bar.SetWidth(900);
    EXPECT_EQ(5, view.m_nInvalidated);
    EXPECT_EQ(6, view.m_nRulers); // the bar paints itself when its size changes
    CRecordingSurface surface;
    bar.DrawRuler(surface, 1000, 26);
    EXPECT_EQ(5, view.m_nInvalidated);
}

TEST(KeyInfoBar, ShowsTheCurrentKeyAndTotals)
{
    CTimelineBench bench("S1500-3500=A&B | L0-900");
    const CKeyInfo& info = bench.wnd->KeyInfo().GetInfo();
    const auto shown = [&]
    {
        return info.m_sTitle + "|" + info.m_sStart + "|" + info.m_sEnd + "|" + info.m_sLength + "|" +
               info.m_sTotalKeys + "|" + info.m_sTotalTracks + "|" + info.m_sPhaseLength +
               (info.m_bKey ? "+" : "");
    };
    EXPECT_EQ("Key Info||||2|2|10000", shown());
    bench.Click(bench.At(2000, 0));
    EXPECT_EQ("Key Info [A&&B - Sprite]|1500 ms|3500 ms|2000 ms|2|2|10000+", shown());
    bench.Click(bench.At(500, 1), true);
    EXPECT_EQ("Key Info [Light]|---|---|---|2|2|10000+", shown());
    bench.Click(bench.At(5000, 1));
    EXPECT_EQ("Key Info||||2|2|10000", shown());
    bench.Click(bench.At(2000, 0));
    bench.Click({500, 300}); // below the rows the key stays the current one
    EXPECT_EQ("Key Info [A&&B - Sprite]|1500 ms|3500 ms|2000 ms|2|2|10000+", shown());

    // At each step of a drag.
    bench.Press(bench.At(2000, 0));
    bench.wnd->OnMove(bench.At(2500, 0), true);
    EXPECT_EQ("2000 ms", info.m_sStart);
    bench.wnd->OnLeftRelease(bench.At(2500, 0));
    const int nKeyInfos = bench.view.m_nKeyInfos;
    bench.Click(bench.At(2500, 0)); // the same again is no news
    EXPECT_EQ(nKeyInfos, bench.view.m_nKeyInfos);
    bench.Click(bench.At(500, 1));
    EXPECT_EQ(nKeyInfos + 1, bench.view.m_nKeyInfos);
}

TEST(KeyInfoBar, PhaseLengthWaitsForItsDialogToGo)
{
    CTimelineBench bench("S8000-9000");
    CKeyInfoBar& bar = bench.wnd->KeyInfo();
    bench.prompts.onNumber(std::nullopt, "Choose phase length in Milliseconds")
        .onNumber(5000, "Choose phase length");
    bar.OnPhaseLengthButton();
    EXPECT_EQ(0, bench.view.m_nPosted);
    bar.OnPhaseLengthButton();
    EXPECT_EQ(1, bench.prompts.m_Numbers.at(0).m_nMin);
    EXPECT_EQ(1000000, bench.prompts.m_Numbers.at(0).m_nMax);
    EXPECT_EQ(1, bench.view.m_nPosted);
    EXPECT_EQ(1, bench.view.m_nKeyInfos);
    EXPECT_EQ("5000", bar.GetInfo().m_sPhaseLength);
    EXPECT_EQ(10000, bench.Tracks().m_nPhaseLength);

    bar.OnPhaseLengthEntered();
    bench.checker.ExpectEdits(1);
    EXPECT_EQ(5000, bench.Tracks().m_nPhaseLength);
    EXPECT_EQ(0.2f, bench.wnd->TimeBar().m_fPixelsPerMs);
    EXPECT_EQ("8000-9000", bench.Dump());
    bar.OnPhaseLengthEntered(); // the same again changes nothing
    bench.checker.ExpectEdits(0);
}

TEST(TimeBar, LabelsAtTheEndsAreMovedInside)
{
    CFakeTrackView view;
    CTimeBar bar(view, 10000);
    bar.SetWidth(1000);
    const auto labels = [&](int32_t nWidth)
    {
        CRecordingSurface surface;
        bar.DrawRuler(surface, nWidth, 26);
        return surface.Calls("text");
    };
    const auto plain = labels(1000);
    EXPECT_EQ("text -3,10 0", plain.front());
    EXPECT_EQ("text 994,10 10", plain.back());
    bar.SetWholeLabels(true);
    auto whole = labels(1000);
    EXPECT_EQ("text 0,10 0", whole.front());
    EXPECT_EQ("text 988,10 10", whole.back());
    EXPECT_EQ(plain.size(), whole.size());
    for (size_t i = 1; i + 1 < plain.size(); ++i)
        EXPECT_EQ(plain[i], whole[i]);

    // At any zoom and place no label is cut or stands in another, and those within stay under their marks.
    for (const int32_t nWidth : {1000, 300, 5, 0})
        for (int32_t nZoom = 0; nZoom <= CTimeBar::c_nMaxScalePos; nZoom += 7)
            for (int32_t nPhase = 0; nPhase <= CTimeBar::c_nMaxPhasePos; ++nPhase)
            {
                bar.SetWidth(nWidth);
                bar.OnScaleSlider(nZoom);
                bar.OnPhaseSlider(nPhase);
                int32_t nLastRight = -1000;
                for (const std::string& sLabel : labels(nWidth))
                {
                    const int32_t nLeft = std::stoi(sLabel.substr(5));
                    const int32_t nLabel = int32_t(sLabel.size() - sLabel.rfind(' ') - 1) * 6;
                    ASSERT_GT(nLeft, nLastRight);
                    ASSERT_TRUE(nLeft >= nWidth || nLeft + nLabel <= std::max(nWidth, nLabel)) << nLeft;
                    ASSERT_TRUE(nLeft >= 0 || nLeft + nLabel <= 0) << nLeft;
                    nLastRight = nLeft + nLabel;
                }
            }
}
