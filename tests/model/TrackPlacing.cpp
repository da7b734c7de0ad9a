#include "model/TrackFill.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "support/TestPlugin.h"

namespace
{

struct CSpan
{
    uint32_t m_nID;
    int32_t m_nStart, m_nEnd;
    friend bool operator==(const CSpan&, const CSpan&) = default;
    friend std::ostream& operator<<(std::ostream& out, const CSpan& span)
    {
        return out << span.m_nID << ":" << span.m_nStart << "-" << span.m_nEnd;
    }
};
using CSpans = std::vector<CSpan>;

std::unique_ptr<CKey> MakeKey(const CSpan& span)
{
    static const CTestModule s_Test;
    auto pKey = std::make_unique<CKey>(s_Test.m_Module.FindType("Marker"));
    pKey->m_nKeyID = span.m_nID;
    pKey->m_nStartTime = span.m_nStart;
    pKey->m_nEndTime = span.m_nEnd;
    return pKey;
}

CSpans SpansOf(const CTrack& track)
{
    CSpans spans;
    for (const auto& pKey : track.Keys())
        spans.push_back({pKey->m_nKeyID, pKey->m_nStartTime, pKey->m_nEndTime});
    return spans;
}

// The steps, word for word.
void PlacePlainly(CSpans& spans, uint32_t nID)
{
    bool bSwapped = spans.size() > 1;
    while (bSwapped)
    {
        bSwapped = false;
        for (size_t i = 0; i + 1 < spans.size(); ++i)
        {
            if (spans[i].m_nStart > spans[i + 1].m_nStart)
            {
                std::swap(spans[i], spans[i + 1]);
                bSwapped = true;
            }
        }
    }
    const auto found =
        std::find_if(spans.begin(), spans.end(), [nID](const CSpan& s) { return s.m_nID == nID; });
    if (found == spans.begin() && found->m_nStart < 0)
        found->m_nStart = 0;
    if (found != spans.begin() && found->m_nStart < (found - 1)->m_nEnd)
        found->m_nStart = (found - 1)->m_nEnd;
    if (found + 1 != spans.end() && found->m_nEnd > (found + 1)->m_nStart)
        found->m_nEnd = (found + 1)->m_nStart;
}

} // namespace

TEST(TrackPlacing, FollowsTheStepsInEveryWay)
{
    std::mt19937 random(4);
    for (int nRound = 0; nRound < 600; ++nRound)
    {
        CTrack filled, placed;
        CTrackFill fill;
        CSpans plain;
        const int nRange = 10 << nRound % 6;
        for (uint32_t nID = 0; nID < 30; ++nID)
        {
            const int nStart = nRound % 3 == 0 ? int(nID) * 10 : int(random() % nRange) - 5;
            const CSpan span{nID, nStart, nStart + int(random() % 25) - 2};
            plain.push_back(span);
            PlacePlainly(plain, nID);

            const CKeySpan fitted = placed.FitSpan(CKeySpan{span.m_nStart, span.m_nEnd});
            CKey* pKey = placed.AppendKey(MakeKey(span));
            placed.PlaceKey(pKey);
            ASSERT_EQ(fitted, (CKeySpan{pKey->m_nStartTime, pKey->m_nEndTime}));
            ASSERT_EQ(plain, SpansOf(placed));
            ASSERT_EQ(nID, fill.Place(MakeKey(span))->m_nKeyID);
            ASSERT_EQ(plain.back().m_nID, fill.GetLastKey()->m_nKeyID);
        }
        ASSERT_TRUE(fill.Finish(filled));
        ASSERT_EQ(plain, SpansOf(filled));
        // And when times have changed.
        const uint32_t nMoved = random() % 30;
        const int nStart = int(random() % nRange) - 5;
        CKey* pMoved = nullptr;
        for (const auto& pKey : placed.Keys())
            pMoved = pKey->m_nKeyID == nMoved ? pKey.get() : pMoved;
        pMoved->m_nStartTime = nStart;
        pMoved->m_nEndTime = nStart + 10;
        for (CSpan& span : plain)
            span = span.m_nID == nMoved ? CSpan{nMoved, nStart, nStart + 10} : span;
        placed.PlaceKey(pMoved);
        PlacePlainly(plain, nMoved);
        ASSERT_EQ(plain, SpansOf(placed));
    }
}

// Long enough that the keys lie in many chunks.
TEST(TrackPlacing, LongTracksFillInAnyOrder)
{
    constexpr uint32_t c_nKeys = 100000;
    for (const char* pszOrder : {"rising", "falling", "mixed"})
    {
        SCOPED_TRACE(pszOrder);
        CTrackFill fill;
        for (uint32_t i = 0; i < c_nKeys; ++i)
        {
            const uint32_t nID = *pszOrder == 'r'   ? i
                                 : *pszOrder == 'f' ? c_nKeys - 1 - i
                                                    : uint32_t(i * uint64_t(7919) % c_nKeys);
            ASSERT_TRUE(fill.Place(MakeKey({nID, int(nID) * 10, int(nID) * 10 + 5})));
        }
        for (uint32_t i = 0; i < 100; ++i) // overlapping all
            fill.Place(MakeKey({c_nKeys + i, 7, 2000000}));
        CTrack track;
        ASSERT_TRUE(fill.Finish(track));
        ASSERT_EQ(c_nKeys + 100, track.GetNumKeys());
        const auto isByStart = [](const auto& pA, const auto& pB)
        { return pA->m_nStartTime < pB->m_nStartTime; };
        EXPECT_TRUE(std::is_sorted(track.Keys().begin(), track.Keys().end(), isByStart));
        EXPECT_EQ(c_nKeys - 1, track.GetKey(c_nKeys + 99)->m_nKeyID);
    }
}

TEST(TrackPlacing, LooksOnlyAtKeysOfTheTrack)
{
    CTrack track;
    track.AppendKey(MakeKey({2, 10, 20}));
    CKey* pA = track.AppendKey(MakeKey({1, -500, 5}));
    track.PlaceKey(pA);
    EXPECT_EQ((CSpans{{1, 0, 5}, {2, 10, 20}}), SpansOf(track));
    EXPECT_EQ(nullptr, track.AppendKey(nullptr));
    EXPECT_EQ(nullptr, CTrackFill().Place(nullptr));

    const std::unique_ptr<CKey> pRemoved = track.RemoveKey(pA);
    EXPECT_EQ(pA, pRemoved.get());
    EXPECT_EQ(nullptr, track.RemoveKey(pA));
    EXPECT_EQ(-1, track.IndexOf(pA));
    track.PlaceKey(pA); // not here: nothing is cut
    EXPECT_EQ((CSpans{{2, 10, 20}}), SpansOf(track));
}
