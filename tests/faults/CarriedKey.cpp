// No memory at the drop of a carried key: it is on the track that it came from, or where it was dropped.

#include "FaultyMemory.h"
#include "timeline/TimelineBench.h"

TEST(OutOfMemory, ACarriedKeyIsNeverLost)
{
    // Onto a track that is full, and below the rows, where a track has to be made first.
    for (const CPoint ptDrop : {CTimelineBench::At(7000, 1), CTimelineBench::At(7000, 4)})
    {
        int nBack = 0;
        for (size_t nFailAt = 1; nFailAt <= 2 || nBack == 0; ++nFailAt)
        {
            CTimelineBench bench("S1000-2000 | L1000-2000");
            bench.checker.m_bMemoryFails = true;
            const CKey* pCarried = &bench.Key(0, 0);
            bench.Press(bench.At(1500, 0), true, true);
            bench.wnd->OnMove(ptDrop, true);
            EXPECT_EQ(" | 1000-2000", bench.Dump());
            {
                const CFaultyMemory fault(nFailAt, false);
                bench.wnd->OnLeftRelease(ptDrop);
            }
            ASSERT_TRUE(CFaultyMemory::WasHit());
            ASSERT_EQ(2u, bench.Tracks().GetNumKeys()) << nFailAt;
            CTrack* pTrack = bench.Tracks().FindTrackOf(pCarried);
            ASSERT_TRUE(pTrack) << nFailAt;
            EXPECT_EQ(bench.Tracks().GetTrackNumber(pTrack), pCarried->m_nTrack);
            if (pTrack != bench.Tracks().GetTrack(0))
                continue;
            ++nBack;
            EXPECT_EQ("1000-2000* | 1000-2000", bench.Dump());
            bench.Drag(bench.At(1500, 0), ptDrop, true, true); // with memory it goes
            EXPECT_EQ(0u, bench.Tracks().GetTrack(0)->GetNumKeys());
        }
        EXPECT_GT(nBack, 0);
    }
}
