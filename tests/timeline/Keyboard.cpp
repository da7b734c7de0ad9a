#include "timeline/TimelineBench.h"

TEST(TimelineKeyboard, StepsGoThroughEveryKeyAndToFreeSpace)
{
    CTimelineBench bench("S0-1000 S4000-5000 | | L0-500 L4200-4600#3 L6000-7000>3");
    CTrackWnd& wnd = *bench.wnd;
    const auto go = [&](EKeyStep eStep, bool bAdd = false)
    {
        wnd.OnStep(eStep, bAdd);
        return bench.Dump();
    };
    EXPECT_EQ("0-1000* 4000-5000 | | 0-500 4200-4600 6000-7000", go(EKeyStep::eDown)) << "from nowhere";
    EXPECT_EQ("0-1000 4000-5000* | | 0-500 4200-4600 6000-7000", go(EKeyStep::eNext));
    go(EKeyStep::eDown);
    EXPECT_FALSE(wnd.GetCurKey());
    EXPECT_EQ(bench.Tracks().GetTrack(1), wnd.GetCurTrack()) << "a track without keys can be gone to";
    go(EKeyStep::eUp);
    go(EKeyStep::eNext);
    EXPECT_EQ("0-1000 4000-5000* | | 0-500 4200-4600 6000-7000", bench.Dump());
    go(EKeyStep::eDown);
    go(EKeyStep::eDown);
    go(EKeyStep::eNext);
    // One that others follow is selected without a question.
    EXPECT_EQ("0-1000 4000-5000 | | 0-500 4200-4600* 6000-7000", bench.Dump());
    EXPECT_EQ("0-1000 4000-5000 | | 0-500 4200-4600* 6000-7000*", go(EKeyStep::eNext, true));
    EXPECT_EQ("0-1000 4000-5000 | | 0-500 4200-4600 6000-7000", go(EKeyStep::eNext));
    EXPECT_FALSE(wnd.GetCurKey());
    EXPECT_EQ("0-1000 4000-5000 | | 0-500* 4200-4600 6000-7000", go(EKeyStep::eNext)) << "round";
    EXPECT_EQ("0-1000 4000-5000 | | 0-500* 4200-4600 6000-7000", go(EKeyStep::eDown)) << "no track below";
    bench.checker.ExpectEdits(0);
}

TEST(TimelineKeyboard, MenuOpensOnTheKeyOrWhereOneCanBeAdded)
{
    CTimelineBench bench("S0-1000 S4000-5000 | L0-500");
    CTrackWnd& wnd = *bench.wnd;
    wnd.OnStep(EKeyStep::eDown, false);
    wnd.OnStep(EKeyStep::eNext, false);
    EXPECT_EQ(bench.At(4500, 0), wnd.GetMenuPoint());
    EXPECT_EQ(2u, wnd.OnRightRelease(wnd.GetMenuPoint(), true).size());
    EXPECT_EQ(&bench.Key(0, 1), wnd.GetCurKey());
    wnd.OnMenuClosed(0);
    wnd.OnStep(EKeyStep::eDown, false);
    EXPECT_EQ(bench.At(250, 1), wnd.GetMenuPoint());
    wnd.OnStep(EKeyStep::eUp, false);
    wnd.OnStep(EKeyStep::eNext, false);
    wnd.OnStep(EKeyStep::eNext, false);
    EXPECT_FALSE(wnd.KeyFromPoint(wnd.GetMenuPoint()));
    EXPECT_EQ(bench.Tracks().GetTrack(0), wnd.TrackFromY(wnd.GetMenuPoint().y));

    // Zoomed in, a step brings what is out of view back, and the slider's place with it.
    wnd.TimeBar().OnScaleSlider(50);
    wnd.OnStep(EKeyStep::ePrevious, false);
    EXPECT_EQ(&bench.Key(0, 1), wnd.GetCurKey());
    EXPECT_GT(wnd.TimeBar().GetPhasePos(), 0);
    EXPECT_TRUE(wnd.Layout().VisibleTrackArea().Contains(wnd.GetMenuPoint()));
    EXPECT_EQ(&bench.Key(0, 1), wnd.KeyFromPoint(wnd.GetMenuPoint()));
}
