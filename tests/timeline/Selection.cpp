#include "timeline/TimelineBench.h"

TEST(TimelineSelection, PlainCtrlAndMissingPressesFollowTheirSteps)
{
    CTimelineBench bench("S0-1000 S2000-3000 | L0-1000");
    CTrackWnd& wnd = *bench.wnd;
    bench.Click(bench.At(500, 0));
    bench.Click(bench.At(2500, 0), true);
    EXPECT_EQ("0-1000* 2000-3000* | 0-1000", bench.Dump());
    EXPECT_EQ(&bench.Key(0, 1), wnd.GetCurKey());
    EXPECT_EQ(2, bench.view.m_nFocus);

    bench.Click(bench.At(2500, 0)); // reduces; a second click doesn't deselect
    EXPECT_EQ("0-1000 2000-3000* | 0-1000", bench.Dump());

    bench.Click(bench.At(5000, 0), true); // free space: no current key, flags stay
    EXPECT_EQ("0-1000 2000-3000* | 0-1000", bench.Dump());
    EXPECT_FALSE(wnd.GetCurKey());
    EXPECT_EQ(bench.Tracks().GetTrack(0), wnd.GetCurTrack());

    // Below the rows: flags go, the current key stays; the view hears of it.
    bench.Click(bench.At(500, 1));
    const int nInvalidated = bench.view.m_nInvalidated;
    bench.Click(bench.At(500, 2));
    EXPECT_EQ("0-1000 2000-3000 | 0-1000", bench.Dump());
    EXPECT_EQ(&bench.Key(1, 0), wnd.GetCurKey());
    EXPECT_FALSE(wnd.GetCurTrack());
    EXPECT_EQ(nInvalidated + 1, bench.view.m_nInvalidated);
    bench.Click(bench.At(500, 2)); // nothing more to clear
    bench.Click(bench.At(5000, 0));
    EXPECT_EQ(nInvalidated + 1, bench.view.m_nInvalidated);
    bench.Click(bench.At(500, 1));
    bench.Press(bench.At(5000, 0)); // clears
    EXPECT_EQ(nInvalidated + 5, bench.view.m_nInvalidated);
    bench.Click(bench.At(500, 1));
    bench.Click(bench.At(500, 2));
    wnd.OnDoubleClick(bench.At(500, 2), false, false);
    EXPECT_EQ(std::vector<CEffectPropertySet*>{&bench.Key(1, 0)}, bench.host.m_Edited);
    bench.checker.ExpectEdits(0);
}

TEST(TimelineSelection, PressInASharedColumnSelectsAndRunsNothing)
{
    CTimelineBench bench("S1000-2000 S2000-3000");
    bench.Press({200, 80}); // the left key by time, outside its rectangle
    EXPECT_EQ("1000-2000* 2000-3000", bench.Dump());
    EXPECT_FALSE(bench.wnd->IsDragging());
    bench.Press(bench.At(1500, 0));
    EXPECT_TRUE(bench.wnd->IsDragging());
    EXPECT_EQ(ECursorShape::eSizeHorizontal, bench.view.m_eShape);
    bench.wnd->OnMouseLost();
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
    bench.wnd->OnMouseLost();
    bench.wnd->OnLeftRelease(bench.At(5000, 0));
    const struct
    {
        CPoint ptHover, pt;
        bool bShift;
        ECursorShape eShape;
    } presses[] = {{{500, 300}, {101, 80}, false, ECursorShape::eSizeHorizontal},
                   {{500, 300}, {198, 80}, false, ECursorShape::eSizeHorizontal},
                   {{101, 80}, {101, 80}, true, ECursorShape::eArrow}};
    for (const auto& press : presses)
    {
        bench.view.m_eShape = ECursorShape::eArrow; // of a window that has just been opened
        bench.wnd->OnMove(press.ptHover, false);
        bench.Press(press.pt, false, press.bShift);
        EXPECT_TRUE(bench.wnd->IsDragging());
        EXPECT_EQ(press.eShape, bench.view.m_eShape) << press.pt.x;
        bench.wnd.reset(); // the window goes, and a copy with it
        bench.Open();
        EXPECT_EQ("1000-2000* 2000-3000", bench.Dump());
    }

    // The focus change took the release: no gesture follows, and no move sticks to the pointer.
    bench.view.m_bLeftDown = false;
    bench.Press(bench.At(1500, 0));
    EXPECT_FALSE(bench.wnd->IsDragging());
    bench.checker.ExpectEdits(0);
}

TEST(TimelineSelection, NothingElseRunsWhileAGestureDoes)
{
    CTimelineBench bench("S1000-2000");
    CTrackWnd& wnd = *bench.wnd;
    bench.Press(bench.At(1500, 0));
    EXPECT_TRUE(wnd.IsBusy());
    EXPECT_TRUE(wnd.OnKeyPress(c_nKeyDelete, false, false, false));
    wnd.Command(c_nCmdDeleteKeys);
    wnd.OnDoubleClick(bench.At(1500, 0), false, false);
    EXPECT_TRUE(wnd.OnRightRelease(bench.At(5000, 0), false).empty());
    bench.Press(bench.At(5000, 0));
    EXPECT_TRUE(bench.host.m_Edited.empty());
    wnd.OnMove(bench.At(2000, 0), false); // the button went up elsewhere: a release at this point
    EXPECT_FALSE(wnd.IsBusy());
    EXPECT_EQ("1500-2500*", bench.Dump());
    bench.checker.ExpectEdits(1);
    bench.Press(bench.At(2000, 0));
    wnd.OnLeftRelease(bench.At(3000, 0)); // a move to its point comes first
    EXPECT_EQ("2500-3500*", bench.Dump());
    bench.checker.ExpectEdits(1);
}

TEST(TimelineSelection, NothingPointsToWhatIsGone)
{
    CTimelineBench bench("S0-1000 | L0-1000");
    CTrackWnd& wnd = *bench.wnd;
    bench.Click(bench.At(500, 1));
    {
        CEditScope scope(bench.edits, "From elsewhere in a Test");
        scope.Touch(&bench.Spell());
        bench.Tracks().RemoveTrack(bench.Tracks().GetTrack(1));
        bench.Tracks().m_nPhaseLength = 20000;
    }
    EXPECT_FALSE(wnd.GetCurKey());
    EXPECT_FALSE(wnd.GetCurTrack());
    EXPECT_EQ("Key Info", wnd.KeyInfo().GetInfo().m_sTitle);
    EXPECT_EQ("20000", wnd.KeyInfo().GetInfo().m_sPhaseLength);
    EXPECT_EQ(0.05f, wnd.TimeBar().m_fPixelsPerMs);
    // An edit of something else is no news, one of the whole library is; after the window's end neither is.
    const auto repaints = [&](const auto& touch)
    {
        const int nInvalidated = bench.view.m_nInvalidated;
        {
            CEditScope scope(bench.edits, "From elsewhere in a Test");
            touch(scope);
        }
        return bench.view.m_nInvalidated - nInvalidated;
    };
    EXPECT_EQ(0, repaints([](CEditScope& scope) { scope.TouchEffectTree(); }));
    EXPECT_EQ(1, repaints([](CEditScope& scope) { scope.TouchLibrary(); }));
    bench.wnd.reset();
    EXPECT_EQ(0, repaints([](CEditScope& scope) { scope.TouchLibrary(); }));
}
