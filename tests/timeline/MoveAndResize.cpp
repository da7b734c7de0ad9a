#include "timeline/TimelineBench.h"

namespace
{

// A drag of the key at nTime on row nRow by dt milliseconds, which are tens; the effect afterwards.
std::string Dragged(CTimelineBench& bench, int32_t nTime, int32_t nRow, int32_t dt, bool bCtrl = false)
{
    bench.Drag(bench.At(nTime, nRow), bench.At(nTime + dt, nRow), bCtrl);
    return bench.Dump();
}

} // namespace

TEST(MoveKeys, StopAtOriginPhaseEndAndNeighbours)
{
    CTimelineBench bench("S500-1500 S3000-4000 S8000-9000");
    EXPECT_EQ("0-1000* 3000-4000 8000-9000", Dragged(bench, 1000, 0, -5000));
    bench.checker.ExpectEdits(1);
    EXPECT_EQ("2000-3000* 3000-4000 8000-9000", Dragged(bench, 500, 0, 7000)); // never over it
    EXPECT_EQ("2000-3000 3000-4000 9000-10000*", Dragged(bench, 8500, 0, 5000));
    EXPECT_EQ("2000-3000 3500-4500* 9000-10000", Dragged(bench, 3500, 0, 500));
    EXPECT_EQ("2000-3000 3000-4000* 9000-10000", Dragged(bench, 4000, 0, -5000));

    // The first of two touching keys meets the other's old place, and follows at the next step.
    bench.Click(bench.At(2500, 0));
    bench.Press(bench.At(3500, 0), true);
    bench.wnd->OnMove(bench.At(4000, 0), true);
    EXPECT_EQ("2000-3000* 3500-4500* 9000-10000", bench.Dump());
    const int nPainted = bench.view.m_nPainted;
    bench.wnd->OnMove({400, 300}, true); // the same x: no step
    EXPECT_EQ(nPainted, bench.view.m_nPainted);
    bench.wnd->OnMove(bench.At(4010, 0), true);
    EXPECT_EQ(nPainted + 1, bench.view.m_nPainted);
    EXPECT_EQ("2500-3500* 3510-4510* 9000-10000", bench.Dump());
    bench.wnd->OnLeftRelease(bench.At(4010, 0));
    EXPECT_EQ("2500-3500* 3510-4510* 9000-10000", bench.Dump());
}

TEST(MoveKeys, TheLaterRuleWinsWhereTheRoomIsTooSmall)
{
    // Longer than the room between its neighbours: the next key's bound comes after the previous one's.
    CTimelineBench bench("S0-1000 S1000-3000 S2000-2500");
    EXPECT_EQ("0-1000 0-2000* 2000-2500", Dragged(bench, 1500, 0, -200));
    const struct
    {
        const char* pszTracks;
        int32_t nTime, nRow, dt;
        const char* pszAfter;
    } cases[] = {
        // The next key's bound holds where it is reached, not only where it is passed.
        {"S0-1000 S1000-3000 S2500-2600", 1500, 0, -500, "0-1000 500-2500* 2500-2600"},
        {"S0-1000 S1000-3000 S2510-2600", 1500, 0, -500, "0-1000 1000-3000* 2510-2600"},
        // So does the end that a link leaves, and comes after the neighbours; its start has to be passed.
        {"S0-5050 | L2000-4000>0 L4500-4600", 3000, 1, 1000, "0-5050 | 3000-5000* 4500-4600"},
        {"S0-5060 | L2000-4000>0 L4500-4600", 3000, 1, 1000, "0-5060 | 2500-4500* 4500-4600"},
        {"S950-9000 | L0-2000 L3000-4000>0", 3500, 1, -2000, "950-9000 | 0-2000 2000-3000*"},
        {"S960-9000 | L0-2000 L3000-4000>0", 3500, 1, -2000, "960-9000 | 0-2000 1010-2010*"},
    };
    for (const auto& c : cases)
    {
        CTimelineBench one(c.pszTracks);
        EXPECT_EQ(c.pszAfter, Dragged(one, c.nTime, c.nRow, c.dt)) << c.pszTracks;
    }
}

TEST(MoveKeys, AKeyThatHangsOverThePhaseEndNeverLiesOverItsNeighbour)
{
    const auto Moved = [](const std::string& sTracks, int32_t nTime, int32_t dt, int32_t nLength = 10000)
    {
        CTimelineBench bench(sTracks);
        bench.Arrange([&] { bench.Tracks().m_nPhaseLength = nLength; });
        return Dragged(bench, nTime, 0, dt);
    };
    for (const int32_t dt : {10, -10})
    {
        EXPECT_EQ("0-9500 9500-11500*", Moved("S0-9500 S9500-11500", 9800, dt));
        EXPECT_EQ("0-9000 9000-11000*", Moved("S0-9000 S9500-11500", 9800, dt));
        EXPECT_EQ("8000-10000*", Moved("S9000-11000", 9800, dt));
        EXPECT_EQ("0-12000*", Moved("S0-12000", 5000, dt));
        EXPECT_EQ("0-10000*", Moved("S0-10000", 3000, dt, 5000)); // the phase was shortened
    }
}

TEST(MoveKeys, LinkedKeysStayInsideTheirTarget)
{
    CTimelineBench bench("S1000-5000 | L2000-3000>0 L1500-1600");
    EXPECT_EQ("1000-5000 | 1050-2050* 1500-1600",
              Dragged(bench, 2500, 1, -3000)); // over its neighbour, then sorted
    EXPECT_EQ("1000-5000 | 1500-1600 3950-4950*", Dragged(bench, 1300, 1, 8000));
    bench.Arrange([&] { bench.Key(1, 1).m_nMotionLinkID = bench.Key(1, 1).m_nKeyID; }); // itself: none
    EXPECT_EQ("1000-5000 | 1500-1600 4950-5950*", Dragged(bench, 4500, 1, 1000));
    bench.Arrange([&] { bench.Key(1, 1).m_nMotionLinkID = 999; }); // no key
    EXPECT_EQ("1000-5000 | 1500-1600 9000-10000*", Dragged(bench, 5500, 1, 9000));
}

TEST(MoveKeys, ALinkTargetAsksAndNeverMoves)
{
    CTimelineBench bench("S1000-5000 | L2000-3000>0 L6000-7000");
    bench.prompts.onAsk("This key has been linked to, you cannot move it, Unlink ?", EAnswer::eNo);
    EXPECT_EQ("1000-5000* | 2000-3000 6000-7000", Dragged(bench, 3000, 0, 500));
    EXPECT_EQ("Emberdeck", bench.prompts.m_Asked.at(0).m_sCaption);
    EXPECT_EQ(EIcon::eQuestion, bench.prompts.m_Asked.at(0).m_eIcon);
    bench.checker.ExpectEdits(0);

    // It follows a group whose key under the pointer is another one.
    EXPECT_EQ("1500-5500* | 2000-3000 6500-7500*", Dragged(bench, 6500, 1, 500, true));
    bench.checker.ExpectEdits(1);

    bench.prompts.onAsk("Unlink ?", EAnswer::eYes);
    bench.Drag({152, 80}, {100, 80}); // its left edge
    EXPECT_EQ("1500-5500* | 2000-3000 6500-7500", bench.Dump());
    EXPECT_FALSE(bench.Key(1, 0).m_bMotionLinked);
    bench.checker.ExpectEdits(1);
}

TEST(ResizeKeys, EdgesStopAtTheirBoundsAndAtALeastLength)
{
    CTimelineBench bench("S500-1500 S2000-3000 S8000-9000");
    const auto left = [&](int32_t nStart, int32_t nTo)
    {
        bench.Drag({nStart / 10 + 1, 80}, {nTo / 10 + 1, 80});
        return bench.Dump();
    };
    const auto right = [&](int32_t nEnd, int32_t nTo)
    {
        bench.Drag({nEnd / 10 - 1, 80}, {nTo / 10 - 1, 80});
        return bench.Dump();
    };
    EXPECT_EQ("700-1500* 2000-3000 8000-9000", left(500, 700));
    EXPECT_EQ("700-1500 2000-3000 8000-9500*", right(9000, 9500));
    EXPECT_EQ("700-1500 2000-3000 8000-9000*", right(9500, 9000));
    EXPECT_EQ("0-1500* 2000-3000 8000-9000", left(700, -400));
    EXPECT_EQ("1400-1500* 2000-3000 8000-9000", left(0, 1490));
    EXPECT_EQ("1400-1500 1500-3000* 8000-9000", left(2000, 1000));
    EXPECT_EQ("1400-1500 1500-8000* 8000-9000", right(3000, 9500));
    EXPECT_EQ("1400-1500 1500-1600* 8000-9000", right(8000, 1000));
    EXPECT_EQ("1400-1500 1500-1600 8000-10000*", right(9000, 20000));
    EXPECT_EQ("1400-1500 1500-8000* 8000-10000", right(1600, 20000)); // beyond both: the neighbour is nearer
    EXPECT_EQ("1400-1500 1500-1600* 8000-10000", right(8000, 1000));

    // Shorter than the least length already: the edge isn't pushed into a neighbour.
    bench.Arrange(
        [&]
        {
            bench.Key(0, 1).m_nEndTime = 1560;
            bench.Key(0, 2).m_nStartTime = 1580;
        });
    EXPECT_EQ("1400-1500 1500-1560* 1580-10000", left(1500, 1540));
    EXPECT_EQ("1400-1500 1500-1580* 1580-10000", right(1560, 1530));
    // A bound that would leave nothing leaves the key as it was.
    bench.Arrange(
        [&]
        {
            bench.Key(0, 2).m_nStartTime = 10500;
            bench.Key(0, 2).m_nEndTime = 11500;
        });
    bench.Drag({1149, 80}, {1145, 80}); // it stands beyond the phase
    EXPECT_EQ("1400-1500 1500-1580 10500-11500*", bench.Dump());
}

TEST(ResizeKeys, LinkedEdgesKeepTheirMargin)
{
    CTimelineBench bench("S1000-5000 | L500-2000 L2000-3000>0");
    bench.Drag({201, 120}, {50, 120});
    EXPECT_EQ("1000-5000 | 500-2000 1050-3000*", bench.Dump()); // over its neighbour
    bench.Drag({299, 120}, {700, 120});
    EXPECT_EQ("1000-5000 | 500-2000 1050-4950*", bench.Dump());
}
