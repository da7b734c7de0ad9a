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

    // Up and down go by the middles; of two as near, to the first.
    const struct
    {
        const char* pszTracks;
        const char* pszBelow;
    } cases[] = {{"S4000-5000* | L0-500 L4200-4600", "4000-5000 | 0-500 4200-4600*"},
                 {"S4000-5000* | L3000-4000 L5000-6000", "4000-5000 | 3000-4000* 5000-6000"},
                 {"S4000-5000* | L3000-3990 L5000-6000", "4000-5000 | 3000-3990 5000-6000*"},
                 {"S4000-5000* | L0-9000 L9000-9100", "4000-5000 | 0-9000* 9000-9100"}};
    for (const auto& c : cases)
    {
        CTimelineBench near(c.pszTracks);
        near.Click(near.At(4500, 0));
        near.wnd->OnStep(EKeyStep::eDown, false);
        EXPECT_EQ(c.pszBelow, near.Dump());
        near.wnd->OnStep(EKeyStep::eUp, false);
        EXPECT_EQ(&near.Key(0, 0), near.wnd->GetCurKey());
        near.wnd->OnStep(EKeyStep::eUp, false);
        EXPECT_EQ(&near.Key(0, 0), near.wnd->GetCurKey());
    }
    CTimelineBench none(aLibrary().effect("Smoke"));
    none.wnd->OnStep(EKeyStep::eDown, false);
    EXPECT_FALSE(none.wnd->GetCurTrack());
    bench.Press(bench.At(4500, 0));
    wnd.OnStep(EKeyStep::ePrevious, false); // not within a gesture
    EXPECT_EQ(&bench.Key(0, 1), wnd.GetCurKey());
}

TEST(TimelineKeyboard, AStepScrollsNoFurtherThanItsRowNeeds)
{
    CTimelineBench bench("| | | | | | | | | | |");
    const auto step = [&](EKeyStep eStep, int nSteps)
    {
        for (; nSteps > 0; --nSteps)
            bench.wnd->OnStep(eStep, false);
        return bench.wnd->GetScrollPos();
    };
    EXPECT_EQ(0, step(EKeyStep::eDown, 8)); // row 7, as low as 288 of 300
    EXPECT_EQ(6, step(EKeyStep::eDown, 1)); // row 8 ends at 324: 24 pixels
    EXPECT_EQ(15, step(EKeyStep::eDown, 1));
    EXPECT_EQ(15, step(EKeyStep::eUp, 7)); // row 2 begins at 72
    EXPECT_EQ(9, step(EKeyStep::eUp, 1));
    bench.wnd->OnSize(1020, 473, 70, 100, 20);
    EXPECT_EQ(15, step(EKeyStep::eDown, 8)); // 57 pixels, in steps of 4
}

TEST(TimelineKeyboard, MenuOpensOnTheKeyOrWhereOneCanBeAdded)
{
    CTimelineBench bench("S0-1000 S4000-5000 | L0-500");
    CTrackWnd& wnd = *bench.wnd;
    EXPECT_EQ((CPoint{500, 220}), wnd.GetMenuPoint()) << "nothing is current: in the middle";
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

    // The middle of what is in view of the key, or of the free space behind the last one.
    const struct
    {
        const char* pszTrack;
        int nScroll;
        CPoint click, menu;
    } cases[] = {{"", 0, {500, 80}, {499, 88}},
                 {"S2000-4000", 0, {900, 80}, {699, 88}},
                 {"S2000-4000", 3, {300, 80}, {300, 76}},
                 {"S2000-4000", 6, {300, 75}, {300, 70}},
                 {"S9000-12000", 0, {100, 80}, {999, 88}},
                 {"S9000-12000", 0, {950, 80}, {949, 88}},
                 {"| | | | | | | | S2000-4000", 0, {300, 365}, {300, 369}}};
    for (const auto& c : cases)
    {
        CTimelineBench one(c.pszTrack);
        one.wnd->OnScroll(EScrollEvent::eThumbTrack, c.nScroll);
        one.Click(c.click);
        EXPECT_EQ(c.menu, one.wnd->GetMenuPoint()) << c.pszTrack << " scrolled by " << c.nScroll;
    }
    // What has left the view since is brought back.
    wnd.TimeBar().OnPhaseSlider(0);
    wnd.OnScroll(EScrollEvent::eThumbTrack, 100);
    wnd.ShowCurrent();
    EXPECT_EQ(&bench.Key(0, 1), wnd.KeyFromPoint(wnd.GetMenuPoint()));
    EXPECT_EQ(0, wnd.GetScrollPos());
    bench.Click({500, 340}); // below the rows the key stays the current one
    wnd.ShowCurrent();
    EXPECT_EQ(&bench.Key(0, 1), wnd.KeyFromPoint(wnd.GetMenuPoint()));
    CTimelineBench none("");
    none.wnd->ShowCurrent();
    EXPECT_EQ(0, none.view.m_nPainted);
    wnd.OnSize(10, 100, 70, 100, 20); // nothing of the rows is left
    EXPECT_TRUE(wnd.OnRightRelease(wnd.GetMenuPoint(), true).empty());
}
