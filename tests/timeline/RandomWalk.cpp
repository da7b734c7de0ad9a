#include <random>

#include "support/HistoryBench.h"
#include "timeline/TimelineBench.h"

namespace
{

// Whether the keys of each track come one after the other, from the origin on.
bool IsInOrder(CTimelineBench& bench)
{
    for (const auto& pTrack : bench.Tracks().Tracks())
    {
        int32_t nEnd = 0;
        for (const auto& pKey : pTrack->Keys())
        {
            if (pKey->m_nStartTime < nEnd || pKey->m_nEndTime <= pKey->m_nStartTime)
                return false;
            nEnd = pKey->m_nEndTime;
        }
    }
    return true;
}

class CWalk
{
public:
    explicit CWalk(uint32_t nSeed) : m_Random(nSeed) {}

    // What a hand may do to an effect, at random.
    void Step()
    {
        switch (Below(12))
        {
        case 0:
            return Paste();
        case 1:
            m_sStep = "add";
            m_Bench.wnd->OnRightRelease(Somewhere(), false);
            m_Bench.wnd->AddKey(m_Bench.context.m_EffectModule.GetType(0), nullptr);
            return;
        case 2:
            m_sStep = "phase length";
            m_Bench.wnd->KeyInfo().m_nPhaseLength = 1000 + int32_t(Below(20)) * 1000;
            m_Bench.wnd->KeyInfo().OnPhaseLengthEntered();
            return;
        case 3:
            m_sStep = "zoom";
            m_Bench.wnd->TimeBar().OnScaleSlider(int32_t(Below(4)) * 10);
            m_Bench.wnd->TimeBar().OnPhaseSlider(int32_t(Below(101)));
            return;
        case 4:
            m_sStep = "key length";
            m_Bench.prompts.onNumber(1 + Below(4000));
            m_Bench.wnd->Command(c_nCmdSetKeyLength);
            return;
        case 5:
            m_sStep = "expand or delete";
            m_Bench.wnd->Command(Below(3) ? c_nCmdExpandKeys : c_nCmdDeleteKeys);
            return;
        default:
            return Drag();
        }
    }

    CTimelineBench m_Bench{"S1000-2000 S2000-3000 S8500-10000 | L0-500 L9500-11500 | S0-10000 |"};
    CHistoryBench m_Undo{m_Bench.context};
    std::string m_sStep;

private:
    uint32_t Below(uint32_t n) { return uint32_t(m_Random() % n); }
    CPoint Somewhere() { return {int32_t(Below(1000)), 70 + int32_t(Below(5 * 36))}; }

    void Paste()
    {
        m_sStep = "paste";
        m_Bench.wnd->Command(c_nCmdCopyKey);
        m_Bench.view.m_ptPointer = Somewhere();
        m_Bench.wnd->Command(c_nCmdPasteKeyAtMouse);
    }

    // Moves, resizes and carries, of one key or several, by their edges or in the middle, in one step or more.
    void Drag()
    {
        CPoint pt = Somewhere();
        if (const CKey* pKey = m_Bench.wnd->KeyFromPoint(pt))
        {
            const CRect rc = m_Bench.wnd->GetKeyRect(pKey);
            const int32_t at[] = {pt.x, rc.left + 1, rc.right - 2};
            pt.x = at[Below(3)];
        }
        const bool bCtrl = Below(2), bShift = Below(4) == 0;
        m_sStep = std::string("drag") + (bCtrl ? " Ctrl" : "") + (bShift ? " Shift" : "");
        const bool bEscape = Below(8) == 0;
        const std::string sBefore = bEscape ? m_Undo.Text() : std::string();
        m_Bench.Press(pt, bCtrl, bShift);
        for (uint32_t n = 1 + Below(4); n > 0; --n)
        {
            const int32_t nReach = Below(2) ? 4 : 600;
            pt.x += int32_t(Below(uint32_t(2 * nReach + 1))) - nReach;
            pt.y += bShift ? int32_t(Below(80)) - 40 : 0;
            m_Bench.wnd->OnMove(pt, true);
        }
        if (bEscape && m_Bench.wnd->IsDragging())
        {
            EXPECT_TRUE(m_Bench.wnd->OnEscape());
            EXPECT_EQ(sBefore, m_Undo.Text()) << m_sStep;
        }
        m_Bench.wnd->OnLeftRelease(pt);
    }

    std::mt19937 m_Random;
};

} // namespace

TEST(TimelineWalk, NothingMakesAnOverlapOrAStartBeforeTheOrigin)
{
    for (uint32_t nSeed = 1; nSeed <= 20; ++nSeed)
    {
        CWalk walk(nSeed);
        ASSERT_TRUE(IsInOrder(walk.m_Bench));
        for (int i = 0; i < 300; ++i)
        {
            const std::string sBefore = walk.m_Bench.Dump();
            walk.Step();
            ASSERT_TRUE(IsInOrder(walk.m_Bench)) << nSeed << '.' << i << ' ' << walk.m_sStep << "\nfrom "
                                                 << sBefore << "\nto   " << walk.m_Bench.Dump();
            if (nSeed > 4) // it takes most of the time
                continue;
            walk.m_Undo.Check();
            ASSERT_FALSE(HasFatalFailure()) << nSeed << '.' << i << ' ' << walk.m_sStep;
        }
        if (nSeed <= 4)
            walk.m_Undo.CheckAll();
    }
}

TEST(TimelineWalk, APastedKeyNearTheEndStaysOffItsNeighbour)
{
    CTimelineBench bench("S0-9000");
    bench.Click(bench.At(4000, 0));
    bench.wnd->Command(c_nCmdCopyKey);
    bench.view.m_ptPointer = bench.At(9500, 0);
    bench.wnd->Command(c_nCmdPasteKeyAtMouse);
    EXPECT_EQ("0-9000* 9000-10499*", bench.Dump());
    bench.Drag(bench.At(9500, 0), bench.At(9510, 0));
    EXPECT_EQ("0-9000 9000-10499*", bench.Dump());
}
