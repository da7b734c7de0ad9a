#include "qsamgr/lzssindex.h"

using namespace LZSS;

namespace
{

// The second byte's part of a bucket's number. Never falls as the byte grows, and tells all of ASCII's text
// characters apart.
constexpr std::array<uint8_t, 256> c_aColumn = []
{
    std::array<uint8_t, 256> aResult = {};
    for (uint32_t i = 0; i < 256; ++i)
        aResult[i] = uint8_t(i < 32 ? i / 8 : i < 128 ? i - 28 : 100 + (i - 128) / 8);
    return aResult;
}();

inline uint32_t BucketOf(const uint8_t* pString)
{
    return (uint32_t(pString[0]) << 7) | c_aColumn[pString[1]];
}

} // namespace

void CLZSSIndex::Reset()
{
    m_nRank = 0;
    m_nFree = 1;
    for (uint32_t i = 0; i < c_nEntries; ++i)
        m_aEntries[i] = {{Index(c_nNone), Index(i + 1)}, {0, 0}, 0};
    m_aEntries[c_nNone] = {};
    m_aEntries[c_nHead].m_aLink[UP] = Index(c_nTail);
    m_aEntries[c_nTail].m_aLink[DOWN] = Index(c_nHead);
    std::fill(std::begin(m_aRank), std::end(m_aRank), 0u);
    std::fill(std::begin(m_aEntryAt), std::end(m_aEntryAt), Index(c_nNone));
    std::fill(std::begin(m_aIsNewest), std::end(m_aIsNewest), uint8_t(0));
    std::fill(std::begin(m_aBucketUsed), std::end(m_aBucketUsed), uint64_t(0));
    std::fill(std::begin(m_aData), std::end(m_aData), uint8_t(0));
}

CLZSSIndex::CPlace CLZSSIndex::Find(uint32_t nIndex) const
{
    const uint32_t nBucket = BucketOf(m_aData + nIndex);
    uint32_t nWord = nBucket / 64;
    uint64_t nUsed = m_aBucketUsed[nWord] >> (nBucket % 64) << (nBucket % 64);
    while (nUsed == 0 && ++nWord < c_nBuckets / 64)
        nUsed = m_aBucketUsed[nWord];

    // The smallest entry of this bucket, or else of the next one that has any.
    uint32_t nNext = c_nTail;
    uint32_t nNextIndex = 0;
    uint32_t nSharedNext = 0;
    if (nUsed != 0)
    {
        nNext = m_aBucket[nWord * 64 + uint32_t(std::countr_zero(nUsed))];
        nNextIndex = m_aEntries[nNext].m_nNewest;
        const uint32_t nEqual = CountShared(m_aData + nIndex, m_aData + nNextIndex, 0);
        if (nEqual == c_nLookAheadSize)
            return {{}, c_nNone, 0, 0, nNext};
        if (m_aData[nIndex + nEqual] > m_aData[nNextIndex + nEqual])
            return FindFrom(nIndex, {nNext, nNextIndex, UP, nEqual + 1});
        nSharedNext = nEqual + 1;
    }
    const uint32_t nPrev = m_aEntries[nNext].m_aLink[DOWN];
    const uint32_t nPrevIndex = m_aEntries[nPrev].m_nNewest;
    const uint32_t nSharedPrev =
        nPrev == c_nHead ? 0 : CountShared(m_aData + nIndex, m_aData + nPrevIndex, 0) + 1;
    return {{nPrev, nPrevIndex, UP, nSharedPrev},
            nNext,
            nSharedNext,
            nSharedNext >= nSharedPrev ? nNextIndex : 0,
            c_nNone};
}

uint32_t CLZSSIndex::FindMatch(const CPlace& place, uint32_t nShared) const
{
    uint32_t nBest = place.m_Near.m_nShared == nShared ? place.m_Near.m_nEntry : place.m_nFar;
    uint32_t nBestRank = m_aRank[nBest];
    const auto Walk = [&](uint32_t nEntry, uint32_t nDirection)
    {
        for (;;)
        {
            const uint32_t nRank = m_aRank[nEntry];
            nBest = nRank < nBestRank ? nEntry : nBest;
            nBestRank = std::min(nBestRank, nRank);
            if (m_aEntries[nEntry].m_aShared[nDirection] < nShared)
                return;
            nEntry = m_aEntries[nEntry].m_aLink[nDirection];
        }
    };
    if (place.m_Near.m_nShared == nShared)
        Walk(place.m_Near.m_nEntry, place.m_Near.m_nDirection ^ 1);
    if (place.m_nSharedFar == nShared)
        Walk(place.m_nFar, place.m_Near.m_nDirection);
    return nBest;
}

// The strings are taken over first and those that leave meanwhile removed then, which comes to the same: a
// string whose entry is taken over here is within reach, and so isn't one of those that leave. The blocks write
// beyond nCount, but only to positions that have left already.
void CLZSSIndex::TakeOverRun(uint32_t nSource, uint32_t nIndex, uint32_t nCount, uint32_t* pOld)
{
    const Index* pFrom = m_aEntryAt + WrapPosition(nSource);
    Index* const pTo = m_aEntryAt + WrapPosition(nIndex);
    if (nIndex - nSource >= 16)
        std::memcpy(pTo, pFrom, 16 * sizeof(Index));
    else
    {
        for (uint32_t i = 0; i < nCount; ++i)
            pTo[i] = pFrom[i];
        pFrom = pTo;
    }
    std::memset(m_aIsNewest + WrapPosition(nIndex), 1, 16);
    for (uint32_t i = 0; i < nCount; ++i)
    {
        CEntry& entry = m_aEntries[pFrom[i]];
        const uint32_t nOld = entry.m_nNewest;
        pOld[i] = nOld;
        entry.m_nNewest = Index(nIndex + i);
        m_aIsNewest[WrapPosition(nOld)] = 0;
    }

    const uint32_t nLeaving = WrapPosition(nIndex - c_nReach - 1);
    const auto RemoveMarked = [&](uint32_t nFirst, uint32_t nLen)
    {
        uint64_t nMarked = Load64(m_aIsNewest + nFirst);
        if (nLen < 8)
            nMarked &= (uint64_t(1) << (nLen * 8)) - 1;
        for (; nMarked != 0; nMarked &= nMarked - 1)
            Remove(m_aEntryAt[nFirst + uint32_t(std::countr_zero(nMarked)) / 8]);
    };
    RemoveMarked(nLeaving, nCount);
    if (nCount > 8)
        RemoveMarked(nLeaving + 8, nCount - 8);
}

void CLZSSIndex::Slide()
{
    std::memmove(m_aData, m_aData + c_nSlide, c_nBufferSize - c_nSlide);
    for (CEntry& entry : m_aEntries)
        entry.m_nNewest = Index(entry.m_nNewest > c_nSlide ? entry.m_nNewest - c_nSlide : 0);
    if (m_nRank >= c_nRankLimit)
        CompactRanks();
}

void CLZSSIndex::EnterBucket(uint32_t nEntry)
{
    const uint32_t nBucket = BucketOf(m_aData + m_aEntries[nEntry].m_nNewest);
    const uint32_t nPrev = m_aEntries[nEntry].m_aLink[DOWN];
    if (nPrev != c_nHead && BucketOf(m_aData + m_aEntries[nPrev].m_nNewest) == nBucket)
        return;
    m_aBucket[nBucket] = Index(nEntry);
    m_aBucketUsed[nBucket / 64] |= uint64_t(1) << (nBucket % 64);
}

void CLZSSIndex::LeaveBucket(uint32_t nEntry)
{
    const uint32_t nBucket = BucketOf(m_aData + m_aEntries[nEntry].m_nNewest);
    if (m_aBucket[nBucket] != nEntry)
        return;
    const uint32_t nNext = m_aEntries[nEntry].m_aLink[UP];
    if (nNext != c_nTail && BucketOf(m_aData + m_aEntries[nNext].m_nNewest) == nBucket)
        m_aBucket[nBucket] = Index(nNext);
    else
        m_aBucketUsed[nBucket / 64] &= ~(uint64_t(1) << (nBucket % 64));
}

// Numbers the ranks anew from 1 in the same order, so that they never run over.
void CLZSSIndex::CompactRanks()
{
    Index aOrder[c_nEntries];
    uint32_t nCount = 0;
    for (uint32_t n = m_aEntries[c_nHead].m_aLink[UP]; n != c_nTail; n = m_aEntries[n].m_aLink[UP])
        aOrder[nCount++] = Index(n);
    std::sort(aOrder, aOrder + nCount, [this](Index a, Index b) { return m_aRank[a] < m_aRank[b]; });
    for (uint32_t i = 0; i < nCount; ++i)
        m_aRank[aOrder[i]] = i + 1;
    m_nRank = nCount;
}
