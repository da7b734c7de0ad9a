#include <random>

#include "timeline/TimelineBench.h"

TEST(CarryKey, ShiftCopiesAndCtrlShiftMoves)
{
    CTimelineBench bench("S1000-2005#4 | L5000-6000");
    CTrackWnd& wnd = *bench.wnd;
    bench.Press(bench.At(1500, 0), false, true);
    int nInvalidated = bench.view.m_nInvalidated;
    wnd.OnMove({350, 130}, true);
    wnd.OnMove({350, 130}, true); // no step
    EXPECT_EQ(++nInvalidated, bench.view.m_nInvalidated);
    CRecordingSurface surface;
    wnd.Paint(surface);
    EXPECT_EQ("raised 300,42 100x36", surface.Calls("raised").back());
    const int nPainted = bench.view.m_nPainted;
    wnd.OnLeftRelease({350, 130});
    EXPECT_EQ(nPainted, bench.view.m_nPainted); // such steps are painted later
    // The ends land on the pixel grid; both keys are selected, the source stays the current one.
    EXPECT_EQ("1000-2005* | 2999-3999* 5000-6000", bench.Dump());
    EXPECT_EQ(6u, bench.Key(1, 0).m_nKeyID);
    EXPECT_EQ(&bench.Key(0, 0), wnd.GetCurKey());
    EXPECT_EQ(bench.Tracks().GetTrack(0), wnd.GetCurTrack());
    bench.checker.ExpectEdits(1);

    bench.Click(bench.At(1500, 0));
    bench.Drag(bench.At(1500, 0), bench.At(7500, 1), true, true);
    EXPECT_EQ(" | 2999-3999 5000-6000 6999-7999*", bench.Dump());
    bench.checker.ExpectEdits(1);

    bench.Click(bench.At(3500, 1), true); // two are selected: nothing runs
    bench.Press(bench.At(3500, 1), true, true);
    EXPECT_FALSE(wnd.IsDragging());
    bench.checker.ExpectEdits(0);
}

TEST(CarryKey, BelowAndAboveTheRowsANewTrackTakesIt)
{
    CTimelineBench bench("S1000-2000 | L1000-2000");
    bench.Drag(bench.At(1500, 0), {150, 900}, true, true);
    EXPECT_EQ(" | 1000-2000 | 999-1999*", bench.Dump());
    bench.wnd->ClearSelection();
    bench.Drag(bench.At(1500, 1), {150, 20}, true, true);
    EXPECT_EQ(" | | 999-1999 | 999-1999*", bench.Dump());
    bench.checker.ExpectEdits(2);
}

TEST(CarryKey, WhatFindsNoPlaceGoesBack)
{
    CTimelineBench bench("S1000-2005#4 | L0-500");
    bench.Drag(bench.At(1500, 0), bench.At(250, 1), true, true); // onto a key
    EXPECT_EQ("1000-2005* | 0-500", bench.Dump());
    bench.Drag(bench.At(1500, 0), bench.At(250, 1), false, true);
    EXPECT_EQ("1000-2005* | 0-500", bench.Dump());
    EXPECT_EQ(7u, bench.Tracks().m_nNextKeyID); // the id of a dropped copy stays spent

    bench.Drag(bench.At(1500, 0), {-60, 120}, true, true); // wholly left of the origin
    EXPECT_EQ("1000-2005* | 0-500", bench.Dump());
    bench.Drag(bench.At(1500, 0), {-60, 900}, true, true); // and no new track for it
    EXPECT_EQ("1000-2005* | 0-500", bench.Dump());

    // Cut to the neighbours where it merely overlaps them.
    bench.Drag(bench.At(1500, 0), bench.At(800, 1), true, true);
    EXPECT_EQ(" | 0-500 500-1299*", bench.Dump());

    // A window that closes puts it back.
    bench.Press(bench.At(1000, 1), true, true);
    bench.wnd->OnMove(bench.At(7000, 0), true);
    EXPECT_EQ(" | 0-500", bench.Dump());
    bench.Open();
    EXPECT_EQ(" | 0-500 500-1299*", bench.Dump());
}

TEST(CarryKey, LinkedKeysAreUnlinkedFirst)
{
    CTimelineBench bench("S1000-5000 | L2000-3000>0");
    bench.prompts.onAsk("You must unlink this key first, would you like to unlink it?", EAnswer::eNo);
    bench.Drag(bench.At(2500, 1), bench.At(7000, 1), true, true);
    EXPECT_EQ("Move Key", bench.prompts.m_Asked.at(0).m_sCaption);
    EXPECT_EQ("1000-5000 | 2000-3000*", bench.Dump());
    bench.checker.ExpectEdits(0);

    bench.Drag(bench.At(2500, 1), bench.At(7000, 1), false, true); // a copy keeps its link, and asks nothing
    EXPECT_EQ("1000-5000 | 2000-3000* 6499-7499*", bench.Dump());
    EXPECT_TRUE(bench.Key(1, 1).m_bMotionLinked);
    bench.checker.ExpectEdits(1);

    // The question has taken the release: the target is dropped where it was taken, off both its links.
    bench.view.m_bLeftDown = false;
    bench.prompts.onAsk("You must unlink this key first", EAnswer::eYes);
    bench.wnd->ClearSelection();
    bench.Press(bench.At(4000, 0), true, true);
    EXPECT_EQ("999-4999* | 2000-3000 6499-7499", bench.Dump());
    EXPECT_FALSE(bench.Key(1, 0).m_bMotionLinked || bench.Key(1, 1).m_bMotionLinked);
    EXPECT_FALSE(bench.wnd->IsDragging());
    bench.checker.ExpectEdits(1); // both as one
}

TEST(CarryKey, ShowsWhereItWouldLand)
{
    CTimelineBench bench("S1000-2005#4 | L0-500 L4000-6000");
    bench.wnd->SetOptions(CTrackViewOptions::ForUsers());
    bench.Press(bench.At(1500, 0), true, true);
    const auto calls = [&](const char* pszKind)
    {
        CRecordingSurface surface;
        bench.wnd->Paint(surface);
        return surface.Calls(pszKind);
    };
    using CCalls = std::vector<std::string>;
    bench.wnd->OnMove(bench.At(3500, 1), true);
    EXPECT_EQ((CCalls{"dotted 299,36 100x36", "dotted 304,40 92x28"}), calls("dotted"));
    EXPECT_EQ((CCalls{"line 299,36 299,300", "line 399,36 399,300"}), calls("line"));
    EXPECT_EQ(2u, calls("polygon").size());
    EXPECT_EQ("2999 ms", bench.wnd->KeyInfo().GetInfo().m_sStart);
    EXPECT_EQ("3999 ms", bench.wnd->KeyInfo().GetInfo().m_sEnd);
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);

    bench.wnd->OnMove(bench.At(4500, 1), true); // on a key
    EXPECT_EQ(CCalls(), calls("polygon"));
    EXPECT_EQ(ECursorShape::eForbidden, bench.view.m_eShape);
    EXPECT_EQ("1000 ms", bench.wnd->KeyInfo().GetInfo().m_sStart); // it goes back there
    bench.wnd->OnMove({-60, 120}, true);                           // left of the origin
    EXPECT_EQ(ECursorShape::eForbidden, bench.view.m_eShape);
    bench.wnd->OnMove(bench.At(7500, 4), true); // below the rows, where it gets a track
    EXPECT_EQ("line 699,72 699,300", calls("line").at(0));
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
    bench.wnd->OnMove(bench.At(4500, 1), true);
    bench.wnd->OnLeftRelease(bench.At(4500, 1));
    EXPECT_EQ(ECursorShape::eArrow, bench.view.m_eShape);
    EXPECT_EQ("Not carried: there was no room where the key was dropped", bench.Status());
    EXPECT_EQ("1000-2005* | 0-500 4000-6000", bench.Dump());

    bench.Click(bench.At(5000, 1), true); // two are selected
    bench.Press(bench.At(5000, 1), true, true);
    EXPECT_EQ("Not carried: only one key can be, and several are selected", bench.Status());
}

TEST(CarryKey, LandsWhereItIsShown)
{
    std::mt19937 random(3);
    CTimelineBench bench("S1000-2005 S3000-3500 S7000-9500 | L0-500 L4000-6000 L6000-6100 | | L8000-9990");
    bench.wnd->SetOptions(CTrackViewOptions::ForUsers());
    int nLanded = 0;
    for (int i = 0; i < 500; ++i)
    {
        CTrack& track = *bench.Tracks().GetTrack(uint32_t(random() % bench.Tracks().GetNumTracks()));
        if (track.GetNumKeys() == 0)
            continue;
        CKey& key = *track.GetKey(uint32_t(random() % track.GetNumKeys()));
        const CRect rc = bench.wnd->GetKeyRect(&key);
        const CPoint from = {(rc.left + rc.right) / 2, rc.top + 18},
                     to = {int32_t(random() % 1000), int32_t(60 + random() % 170)};
        bench.wnd->ClearSelection();
        bench.Press(from, true, true);
        if (!bench.wnd->IsDragging())
            continue; // so short that the pixel isn't in it
        bench.wnd->OnMove(to, true);
        const CKeyInfo shown = bench.wnd->KeyInfo().GetInfo();
        const auto times = [](const CKeyInfo& info) { return info.m_sStart + " to " + info.m_sEnd; };
        const bool bShown = bench.view.m_eShape == ECursorShape::eArrow;
        bench.wnd->OnLeftRelease(to);
        ASSERT_EQ(times(shown), times(bench.wnd->KeyInfo().GetInfo())) << i;
        ASSERT_EQ(bShown ? "" : "Not carried: there was no room where the key was dropped", bench.Status());
        nLanded += bShown ? 1 : 0;
    }
    EXPECT_GT(nLanded, 50);
}
