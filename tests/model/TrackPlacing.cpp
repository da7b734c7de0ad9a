#include "model/Track.h"

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
        CTrack appended, placed, mixed;
        CSpans plain;
        const int nRange = 10 << nRound % 6;
        for (uint32_t nID = 0; nID < 30; ++nID)
        {
            const int nStart = nRound % 3 == 0 ? int(nID) * 10 : int(random() % nRange) - 5;
            const CSpan span{nID, nStart, nStart + int(random() % 25) - 2};
            plain.push_back(span);
            PlacePlainly(plain, nID);

            CKey* pKey = placed.AppendKey(MakeKey(span));
            placed.PlaceKey(pKey);
            ASSERT_EQ(plain, SpansOf(placed));
            ASSERT_EQ(nID, appended.AppendAndPlaceKey(MakeKey(span))->m_nKeyID);
            ASSERT_EQ(plain, SpansOf(appended));
            pKey = nID % 5 == 2 ? mixed.AppendKey(MakeKey(span)) : mixed.AppendAndPlaceKey(MakeKey(span));
            if (nID % 5 == 2)
                mixed.PlaceKey(pKey);
            ASSERT_EQ(plain, SpansOf(mixed));
        }
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

TEST(TrackPlacing, LongTracksLoadFast)
{
    CTrack track;
    for (int i = 0; i < 100000; ++i)
        track.AppendAndPlaceKey(MakeKey({uint32_t(i), i * 10, i * 10 + 5}));
    for (int i = 0; i < 100; ++i) // overlapping all
        track.AppendAndPlaceKey(MakeKey({uint32_t(100000 + i), 7, 2000000}));
    EXPECT_EQ(100100u, track.GetNumKeys());
}

TEST(TrackPlacing, KeysKnowTheirNeighbours)
{
    CTrack track;
    CKey* pB = track.AppendAndPlaceKey(MakeKey({2, 10, 20}));
    CKey* pA = track.AppendAndPlaceKey(MakeKey({1, -500, 5}));
    EXPECT_EQ((CSpans{{1, 0, 5}, {2, 10, 20}}), SpansOf(track));
    EXPECT_EQ(pB, track.GetNextKey(pA));
    EXPECT_EQ(pA, track.GetPrevKey(pB));
    EXPECT_EQ(nullptr, track.GetNextKey(pB));
    EXPECT_EQ(nullptr, track.GetPrevKey(pA));
    EXPECT_EQ(nullptr, track.AppendKey(nullptr));
    EXPECT_EQ(nullptr, track.AppendAndPlaceKey(nullptr));

    const std::unique_ptr<CKey> pRemoved = track.RemoveKey(pA);
    EXPECT_EQ(pA, pRemoved.get());
    EXPECT_EQ(nullptr, track.RemoveKey(pA));
    EXPECT_EQ(nullptr, track.GetNextKey(pA));
    EXPECT_EQ(-1, track.IndexOf(pA));
    track.PlaceKey(pA); // not here: nothing is cut
    EXPECT_EQ((CSpans{{2, 10, 20}}), SpansOf(track));
}
