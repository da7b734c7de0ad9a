#include "qsamgr/lzsswindow.h"

#include "qsamgr/qsabitfile.h"

#include <algorithm>
#include <numeric>

using namespace LZSS;

void CLZSSWindow::Reset()
{
    m_nEnd = c_nFirst;
    m_nPos = c_nFirst;
    m_nTokenStart = c_nFirst;
    m_nLast = c_nNone;
    m_nSource = 0;
    m_nRank = 0;
    m_nFree = 1;
    m_nBits = 0;
    m_nBitCount = 0;
    m_nOut = 0;

    for (uint32_t i = 0; i < c_nEntries; ++i)
        m_aEntries[i] = {{Index(c_nNone), Index(i + 1)}, {0, 0}, 0};
    m_aEntries[c_nNone] = {};
    m_aEntries[c_nHead].m_aLink[UP] = Index(c_nTail);
    m_aEntries[c_nTail].m_aLink[DOWN] = Index(c_nHead);
    std::fill(std::begin(m_aRank), std::end(m_aRank), 0u);
    std::fill(std::begin(m_aIsNewest), std::end(m_aIsNewest), uint8_t(0));
    std::fill(std::begin(m_aEntryAt), std::end(m_aEntryAt), Index(c_nNone));
    std::fill(std::begin(m_aHash), std::end(m_aHash), Index(c_nNone));
    std::fill(std::begin(m_aBucketUsed), std::end(m_aBucketUsed), uint64_t(0));
    std::fill(std::begin(m_aData), std::end(m_aData), uint8_t(0));
}

bool CLZSSWindow::AddByte(uint8_t nByte, CQSABitFile* pFile)
{
    m_aData[m_nEnd++] = nByte;
    if (m_nEnd == c_nBufferSize)
        AddBlock(nullptr, 0, pFile);
    return true;
}

bool CLZSSWindow::AddBlock(const void* pData, size_t nLen, CQSABitFile* pFile)
{
    Take(static_cast<const uint8_t*>(pData), nLen,
         [pFile](const uint8_t* pBytes, uint32_t nBytes) { pFile->SetBits(pBytes, nBytes * 8); });
    return true;
}

void CLZSSWindow::AddBlock(const void* pData, size_t nLen, std::vector<uint8_t>& out)
{
    Take(static_cast<const uint8_t*>(pData), nLen, [&out](const uint8_t* pBytes, size_t nBytes)
         { out.insert(out.end(), pBytes, pBytes + nBytes); });
}

void CLZSSWindow::Flush(CQSABitFile* pFile)
{
    FinishTokens();
    pFile->SetBits(m_aOut, m_nOut * 8 + m_nBitCount);
}

void CLZSSWindow::Flush(std::vector<uint8_t>& out)
{
    FinishTokens();
    out.insert(out.end(), m_aOut, m_aOut + m_nOut);
}

template <class TSink>
void CLZSSWindow::Take(const uint8_t* pData, size_t nLen, const TSink& sink)
{
    for (;;)
    {
        const size_t nPart = std::min(nLen, size_t(c_nBufferSize - m_nEnd));
        if (nPart != 0)
            std::memcpy(m_aData + m_nEnd, pData, nPart);
        m_nEnd += uint32_t(nPart);
        if (m_nEnd < c_nBufferSize)
            return;
        pData += nPart;
        nLen -= nPart;
        Encode();
        sink(m_aOut, m_nOut);
        m_nOut = 0;
        Slide();
    }
}

// Makes room for new bytes. What an entry of the list can point to lies in the part that stays.
void CLZSSWindow::Slide()
{
    std::memmove(m_aData, m_aData + c_nSlide, c_nBufferSize - c_nSlide);
    m_nEnd -= c_nSlide;
    m_nPos -= c_nSlide;
    m_nTokenStart -= c_nSlide;
    if (m_nSource != 0)
        m_nSource -= c_nSlide;
    for (CEntry& entry : m_aEntries)
        entry.m_nNewest = Index(entry.m_nNewest > c_nSlide ? entry.m_nNewest - c_nSlide : 0);
    if (m_nRank >= c_nRankLimit)
        CompactRanks();
}

// Enters every string, and writes every token, behind which a further byte is known. So the last 17 bytes of
// a stream stay out, as they do in the format's own encoder.
void CLZSSWindow::Encode()
{
    while (m_nPos + c_nLookAheadSize < m_nEnd)
    {
        if (WrapPosition(m_nPos) == 0)
        {
            // Position 0 is no match target and finds no match.
            Expire(m_nPos - c_nReach - 1);
            if (m_nTokenStart == m_nPos)
                PutLiteral();
            m_nSource = 0;
            Advance(c_nNone);
        }
        else if (m_nSource == 0 || !EncodeRun())
            EncodeString();
    }
}

// Passes over the strings that equal known ones one for one. False when there is none at m_nPos.
bool CLZSSWindow::EncodeRun()
{
    const uint32_t nLimit =
        std::min({m_nEnd - c_nLookAheadSize - m_nPos, c_nWindowSize - WrapPosition(m_nPos),
                  c_nWindowSize - WrapPosition(m_nSource), c_nWindowSize - WrapPosition(m_nPos - c_nReach - 1)});
    const uint8_t* const pNew = m_aData + m_nPos + c_nLookAheadSize - 1;
    const uint8_t* const pOld = m_aData + m_nSource + c_nLookAheadSize - 1;
    uint32_t nRun = 0;
    while (nRun < nLimit)
    {
        const uint64_t nDiff = Load64(pNew + nRun) ^ Load64(pOld + nRun);
        if (nDiff != 0)
        {
            nRun += uint32_t(std::countr_zero(nDiff)) / 8;
            break;
        }
        nRun += 8;
    }
    nRun = std::min(nRun, nLimit);
    if (nRun == 0)
        return false;

    const uint32_t nStop = m_nPos + nRun;
    const uint32_t nDistance = m_nPos - m_nSource;
    // The tokens first: their sources are the newest strings before this run, or lie in it.
    uint32_t nPos = m_nPos;
    while (nPos < nStop)
    {
        if (nPos == m_nTokenStart)
            PutSpan(m_aEntries[m_aEntryAt[WrapPosition(nPos - nDistance)]].m_nNewest, c_nLookAheadSize);
        uint32_t nPart = std::min(nStop, m_nTokenStart) - nPos;
        while (nPart != 0)
        {
            const uint32_t nCount = std::min(nPart, 8u);
            TakeOver(nPos - nDistance, nPos, nCount);
            nPos += nCount;
            nPart -= nCount;
        }
    }
    m_nLast = m_aEntryAt[WrapPosition(nStop - 1)];
    m_nPos = nStop;
    m_nSource = WrapPosition(nStop - nDistance) == 0 ? 0 : nStop - nDistance;
    return true;
}

// Up to 8 strings take the entries of equal ones, then those that leave meanwhile are removed. Doing the two
// one after the other comes to the same: what is taken over never leaves.
void CLZSSWindow::TakeOver(uint32_t nSource, uint32_t nPos, uint32_t nCount)
{
    const Index* const pFrom = m_aEntryAt + WrapPosition(nSource);
    Index* const pTo = m_aEntryAt + WrapPosition(nPos);
    uint8_t* const pIsNewest = m_aIsNewest + WrapPosition(nPos);
    for (uint32_t i = 0; i < nCount; ++i)
    {
        const uint32_t nEntry = pFrom[i];
        const uint32_t nOld = m_aEntries[nEntry].m_nNewest;
        pTo[i] = Index(nEntry);
        m_aIsNewest[WrapPosition(nOld)] = 0;
        m_aEntries[nEntry].m_nNewest = Index(nPos + i);
        pIsNewest[i] = 1;
    }
    const uint32_t nLeaving = WrapPosition(nPos - c_nReach - 1);
    uint64_t nGone = Load64(m_aIsNewest + nLeaving);
    if (nCount < 8)
        nGone &= (uint64_t(1) << (nCount * 8)) - 1;
    for (; nGone != 0; nGone &= nGone - 1)
        Remove(m_aEntryAt[nLeaving + uint32_t(std::countr_zero(nGone)) / 8]);
}

void CLZSSWindow::EncodeString()
{
    Expire(m_nPos - c_nReach - 1);
    const CPlace place = FindPlace();
    if (place.m_nEqual != c_nNone)
    {
        const uint32_t nOld = m_aEntries[place.m_nEqual].m_nNewest;
        if (m_nTokenStart == m_nPos)
            PutSpan(nOld, c_nLookAheadSize);
        m_nSource = WrapPosition(nOld + 1) == 0 ? 0 : nOld + 1;
        m_aEntries[place.m_nEqual].m_nNewest = Index(m_nPos);
        m_aIsNewest[WrapPosition(nOld)] = 0;
        m_aIsNewest[WrapPosition(m_nPos)] = 1;
        Advance(place.m_nEqual);
        return;
    }
    if (m_nTokenStart == m_nPos)
    {
        const uint32_t nShared = std::max(place.m_nSharedNear, place.m_nSharedFar);
        if (nShared > c_nShortestSpan)
            PutSpan(m_aEntries[LowestRank(place, nShared)].m_nNewest, nShared - 1);
        else
            PutLiteral();
    }
    m_nSource = 0;
    Insert(place);
}

inline void CLZSSWindow::Advance(uint32_t nEntry)
{
    m_aEntryAt[WrapPosition(m_nPos)] = Index(nEntry);
    m_nLast = nEntry;
    ++m_nPos;
}

// Of the strings that share nShared - 1 bytes with the new one, the most that any does, the one nearest the
// root of the tree.
uint32_t CLZSSWindow::LowestRank(const CPlace& place, uint32_t nShared) const
{
    uint32_t nBest = place.m_nSharedNear == nShared ? place.m_nNear : place.m_nFar;
    const auto Walk = [&](uint32_t nEntry, uint32_t nDirection)
    {
        for (;;)
        {
            if (m_aRank[nEntry] < m_aRank[nBest])
                nBest = nEntry;
            if (m_aEntries[nEntry].m_aShared[nDirection] < nShared)
                return;
            nEntry = m_aEntries[nEntry].m_aLink[nDirection];
        }
    };
    if (place.m_nSharedNear == nShared)
        Walk(place.m_nNear, place.m_nDirection ^ 1);
    if (place.m_nSharedFar == nShared)
        Walk(place.m_nFar, place.m_nDirection);
    return nBest;
}

CLZSSWindow::CPlace CLZSSWindow::FindPlace() const
{
    if (m_nSource != 0)
    {
        const bool bUp =
            m_aData[m_nPos + c_nLookAheadSize - 1] > m_aData[m_nSource + c_nLookAheadSize - 1];
        return Search(m_aEntryAt[WrapPosition(m_nSource)], bUp ? UP : DOWN, c_nLookAheadSize);
    }
    if (m_nLast == c_nNone)
        return SearchHashOrBuckets();
    const CEntry& last = m_aEntries[m_nLast];
    const uint32_t nSide = last.m_aShared[UP] > last.m_aShared[DOWN] ? UP : DOWN;
    const uint32_t nShared = last.m_aShared[nSide];
    if (nShared > 4)
    {
        const uint32_t nEntry = EntryBehind(last.m_aLink[nSide]);
        if (nEntry != c_nNone)
            return Search(nEntry, nSide ^ 1, nShared - 1);
    }
    return SearchHashOrBuckets();
}

// The entry of the string one byte behind that of nEntry.
inline uint32_t CLZSSWindow::EntryBehind(uint32_t nEntry) const
{
    return m_aEntryAt[WrapPosition(m_aEntries[nEntry].m_nNewest + 1u)];
}

// Walks from an entry that shares nShared - 1 bytes with the new string, in the direction in which that one
// lies. A neighbour that shares more than that with the entry is on the same side of the new string, one that
// shares less is on the other; no byte has to be looked at for it.
inline CLZSSWindow::CPlace CLZSSWindow::Search(uint32_t nEntry, uint32_t nDirection, uint32_t nShared) const
{
    for (;;)
    {
        const uint32_t nFar = m_aEntries[nEntry].m_aLink[nDirection];
        const uint32_t nStep = m_aEntries[nEntry].m_aShared[nDirection];
        if (nStep < nShared)
            return {nEntry, nFar, nDirection, nShared, nStep, c_nNone};
        if (nStep == nShared)
        {
            const uint32_t nIndex = m_aEntries[nFar].m_nNewest;
            const uint32_t nEqual = CountShared(nIndex, nShared - 1);
            if (nEqual == c_nLookAheadSize)
                return {0, 0, 0, 0, 0, nFar};
            const bool bUp = m_aData[m_nPos + nEqual] > m_aData[nIndex + nEqual];
            if (uint32_t(bUp) != nDirection)
                return {nEntry, nFar, nDirection, nShared, nEqual + 1, c_nNone};
            nShared = nEqual + 1;
        }
        nEntry = nFar;
    }
}

CLZSSWindow::CPlace CLZSSWindow::SearchHashOrBuckets() const
{
    const uint32_t nEntry = m_aHash[HashAt(m_nPos)];
    const uint32_t nIndex = m_aEntries[nEntry].m_nNewest;
    if (nIndex + c_nReach >= m_nPos)
    {
        const uint32_t nEqual = CountShared(nIndex, 0);
        if (nEqual == c_nLookAheadSize)
            return {0, 0, 0, 0, 0, nEntry};
        if (nEqual >= 3)
            return Search(nEntry, m_aData[m_nPos + nEqual] > m_aData[nIndex + nEqual] ? UP : DOWN, nEqual + 1);
    }
    return SearchBuckets();
}

CLZSSWindow::CPlace CLZSSWindow::SearchBuckets() const
{
    const uint32_t nBucket = BucketAt(m_nPos);
    uint32_t nWord = nBucket / 64;
    uint64_t nUsed = m_aBucketUsed[nWord] >> (nBucket % 64) << (nBucket % 64);
    while (nUsed == 0 && ++nWord < c_nBuckets / 64)
        nUsed = m_aBucketUsed[nWord];

    // The smallest entry of this bucket, or else of the next one that has any.
    uint32_t nNext = c_nTail;
    uint32_t nSharedNext = 0;
    if (nUsed != 0)
    {
        nNext = m_aBucket[nWord * 64 + uint32_t(std::countr_zero(nUsed))];
        const uint32_t nIndex = m_aEntries[nNext].m_nNewest;
        const uint32_t nEqual = CountShared(nIndex, 0);
        if (nEqual == c_nLookAheadSize)
            return {0, 0, 0, 0, 0, nNext};
        if (m_aData[m_nPos + nEqual] > m_aData[nIndex + nEqual])
            return Search(nNext, UP, nEqual + 1);
        nSharedNext = nEqual + 1;
    }
    const uint32_t nPrev = m_aEntries[nNext].m_aLink[DOWN];
    const uint32_t nSharedPrev = nPrev == c_nHead ? 0 : CountShared(m_aEntries[nPrev].m_nNewest, 0) + 1;
    return {nPrev, nNext, UP, nSharedPrev, nSharedNext, c_nNone};
}

// The number of equal bytes, 17 at most, of the new string and the one at nIndex, whose first nFrom are equal.
inline uint32_t CLZSSWindow::CountShared(uint32_t nIndex, uint32_t nFrom) const
{
    for (;; nFrom += 8)
    {
        const uint64_t nDiff = Load64(m_aData + m_nPos + nFrom) ^ Load64(m_aData + nIndex + nFrom);
        if (nDiff != 0)
            return std::min(nFrom + uint32_t(std::countr_zero(nDiff)) / 8, c_nLookAheadSize);
        if (nFrom + 8 >= c_nLookAheadSize)
            return c_nLookAheadSize;
    }
}

inline void CLZSSWindow::Insert(const CPlace& place)
{
    const uint32_t nEntry = m_nFree;
    const uint32_t nToFar = place.m_nDirection;
    const uint32_t nToNear = nToFar ^ 1;
    CEntry& entry = m_aEntries[nEntry];
    CEntry& nearEntry = m_aEntries[place.m_nNear];
    CEntry& farEntry = m_aEntries[place.m_nFar];
    m_nFree = entry.m_aLink[UP];
    entry.m_aLink[nToFar] = Index(place.m_nFar);
    entry.m_aLink[nToNear] = Index(place.m_nNear);
    entry.m_aShared[nToFar] = uint8_t(place.m_nSharedFar);
    entry.m_aShared[nToNear] = uint8_t(place.m_nSharedNear);
    entry.m_nNewest = Index(m_nPos);
    nearEntry.m_aLink[nToFar] = Index(nEntry);
    nearEntry.m_aShared[nToFar] = uint8_t(place.m_nSharedNear);
    farEntry.m_aLink[nToNear] = Index(nEntry);
    farEntry.m_aShared[nToNear] = uint8_t(place.m_nSharedFar);
    m_aRank[nEntry] = ++m_nRank;
    m_aIsNewest[WrapPosition(m_nPos)] = 1;
    m_aHash[HashAt(m_nPos)] = Index(nEntry);
    if (entry.m_aShared[DOWN] < 3)
        EnterBucket(nEntry);
    Advance(nEntry);
}

// Takes the string at nIndex out, unless a newer equal one has its entry.
inline void CLZSSWindow::Expire(uint32_t nIndex)
{
    if (m_aIsNewest[WrapPosition(nIndex)] != 0)
        Remove(m_aEntryAt[WrapPosition(nIndex)]);
}

inline void CLZSSWindow::Remove(uint32_t nEntry)
{
    CEntry& entry = m_aEntries[nEntry];
    if (entry.m_aShared[DOWN] < 3)
        LeaveBucket(nEntry);
    const uint32_t nPrev = entry.m_aLink[DOWN];
    const uint32_t nNext = entry.m_aLink[UP];
    const uint32_t nRank = m_aRank[nEntry];
    const uint32_t nPrevRank = m_aRank[nPrev];
    m_aRank[nPrev] = m_aRank[nNext] > nRank ? std::min(nPrevRank, nRank) : nPrevRank;
    const uint8_t nShared = std::min(entry.m_aShared[DOWN], entry.m_aShared[UP]);
    m_aEntries[nPrev].m_aLink[UP] = Index(nNext);
    m_aEntries[nPrev].m_aShared[UP] = nShared;
    m_aEntries[nNext].m_aLink[DOWN] = Index(nPrev);
    m_aEntries[nNext].m_aShared[DOWN] = nShared;
    m_aIsNewest[WrapPosition(entry.m_nNewest)] = 0;
    entry.m_aLink[UP] = Index(m_nFree);
    m_nFree = nEntry;
}

void CLZSSWindow::EnterBucket(uint32_t nEntry)
{
    const uint32_t nPrev = m_aEntries[nEntry].m_aLink[DOWN];
    const uint32_t nBucket = BucketAt(m_nPos);
    if (nPrev != c_nHead && BucketAt(m_aEntries[nPrev].m_nNewest) == nBucket)
        return;
    m_aBucket[nBucket] = Index(nEntry);
    m_aBucketUsed[nBucket / 64] |= uint64_t(1) << (nBucket % 64);
}

void CLZSSWindow::LeaveBucket(uint32_t nEntry)
{
    const uint32_t nBucket = BucketAt(m_aEntries[nEntry].m_nNewest);
    if (m_aBucket[nBucket] != nEntry)
        return;
    const uint32_t nNext = m_aEntries[nEntry].m_aLink[UP];
    if (nNext != c_nTail && BucketAt(m_aEntries[nNext].m_nNewest) == nBucket)
        m_aBucket[nBucket] = Index(nNext);
    else
        m_aBucketUsed[nBucket / 64] &= ~(uint64_t(1) << (nBucket % 64));
}

// Numbers the ranks anew from 1 in the same order, so that they never run over.
void CLZSSWindow::CompactRanks()
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

inline uint32_t CLZSSWindow::BucketAt(uint32_t nIndex) const
{
    return (uint32_t(m_aData[nIndex]) << 4) | (m_aData[nIndex + 1] >> 4);
}

inline uint32_t CLZSSWindow::HashAt(uint32_t nIndex) const
{
    return (uint32_t(Load64(m_aData + nIndex) & 0xFFFFFF) * 0x9E3779B1u) >> (32 - c_nHashBits);
}

// The rest goes out as literals, whatever match it has.
void CLZSSWindow::FinishTokens()
{
    Encode();
    while (m_nTokenStart < m_nEnd)
        PutLiteral();
    PutBits(0, c_nSpanBits);
}

inline void CLZSSWindow::PutBits(uint32_t nBits, uint32_t nCount)
{
    m_nBits |= uint64_t(nBits) << m_nBitCount;
    m_nBitCount += nCount;
    Store64(m_aOut + m_nOut, m_nBits);
    m_nOut += m_nBitCount / 8;
    m_nBits >>= m_nBitCount / 8 * 8;
    m_nBitCount %= 8;
}

inline void CLZSSWindow::PutLiteral()
{
    PutBits(LiteralToken(m_aData[m_nTokenStart]), c_nLiteralBits);
    ++m_nTokenStart;
}

inline void CLZSSWindow::PutSpan(uint32_t nOffset, uint32_t nLen)
{
    PutBits(SpanToken(WrapPosition(nOffset), nLen), c_nSpanBits);
    m_nTokenStart += nLen;
}
