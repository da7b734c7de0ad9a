#pragma once

#include "qsamgr/lzssformat.h"

#include <algorithm>
#include <cstdint>

// The strings of the last 4079 positions, 17 bytes each, in sorted order, and what a binary search tree of
// them would answer. The format's own match finder is such a tree, and the match that it gives decides the
// bytes of a file. The tree isn't built here. Its answers follow from three simple things:
//
//  - The sorted order, as a linked list. The longest match is always a sorted neighbour of the new string, and
//    all strings that match as far stand in one stretch around it. The number of bytes that neighbours share is
//    kept with them, so that most steps along the list look at no byte.
//  - A rank for each string. A node of the tree hangs below all those of lower rank between which it stands, so
//    the node of a stretch that is nearest the root is the one of lowest rank. A new string gets the highest.
//  - A string that leaves while it has children on both sides is replaced in the tree by the one before it in
//    sorted order, which takes over its rank. It has a child on a side exactly when its neighbour there has the
//    higher rank.
//
// A string that equals one in the list in all 17 bytes takes over its entry.
//
// Strings are told by their index in a buffer, which agrees with their position modulo the window size;
// position 0 is never entered. The caller fills the buffer and slides it down when it is full.
class CLZSSIndex
{
public:
    enum EDirection : uint32_t
    {
        DOWN = 0, // toward the smaller strings
        UP = 1,
    };

    static constexpr uint32_t c_nReach = LZSS::c_nWindowSize - LZSS::c_nLookAheadSize; // farthest match
    static constexpr uint32_t c_nNone = 0;                                             // no entry

    static constexpr uint32_t c_nBufferSize = 8 * LZSS::c_nWindowSize;
    static constexpr uint32_t c_nSlide = 6 * LZSS::c_nWindowSize;
    static constexpr uint32_t c_nFirstIndex = LZSS::c_nWindowSize + 1; // of the stream's first byte

    // A string of the list that shares bytes with the new one: the way to the new one's place.
    struct CFinger
    {
        uint32_t m_nEntry;
        uint32_t m_nIndex;     // a place where it stands
        uint32_t m_nDirection; // that of the new string, seen from it
        uint32_t m_nShared;    // bytes that the two share, plus 1
    };

    // Where the new string belongs: beside m_Near.m_nEntry, in m_Near's direction, before m_nFar. Or the entry
    // that equals it.
    struct CPlace
    {
        CFinger m_Near;
        uint32_t m_nFar;
        uint32_t m_nSharedFar; // bytes shared with m_nFar, plus 1; 0 when that is an end of the list
        uint32_t m_nFarIndex;  // where m_nFar stands, when m_nSharedFar isn't the smaller one; else 0
        uint32_t m_nEqual;
    };

    void Reset();

    // The buffer, of c_nBufferSize bytes.
    uint8_t* GetData() { return m_aData; }
    const uint8_t* GetData() const { return m_aData; }

    // Moves the buffer's bytes and all that is known of them down by c_nSlide. Strings to be entered from now
    // on have to lie at or behind index c_nSlide.
    void Slide();

    // The string at nIndex is about to be out of reach: takes it out unless a newer equal one has its entry.
    void Expire(uint32_t nIndex)
    {
        if (m_aIsNewest[LZSS::WrapPosition(nIndex)] != 0)
            Remove(m_aEntryAt[LZSS::WrapPosition(nIndex)]);
    }

    // The search of a place. The first form follows a finger, the other needs none.
    CPlace FindFrom(uint32_t nIndex, CFinger finger) const;
    CPlace Find(uint32_t nIndex) const;

    // The entry of the match that the tree would give for the new string of that place, of nShared - 1 bytes,
    // the larger of the place's two numbers.
    uint32_t FindMatch(const CPlace& place, uint32_t nShared) const;

    void Insert(uint32_t nIndex, const CPlace& place);

    // The string at nIndex takes the entry over from an equal one. Gives where that one stands.
    uint32_t TakeOver(uint32_t nEntry, uint32_t nIndex)
    {
        const uint32_t nOld = m_aEntries[nEntry].m_nNewest;
        m_aIsNewest[LZSS::WrapPosition(nOld)] = 0;
        SetEntryAt(nIndex, nEntry);
        m_aEntries[nEntry].m_nNewest = Index(nIndex);
        return nOld;
    }

    // The same for nCount strings, 16 at most, that equal those from nSource on one for one, together with the
    // expiry that belongs to each. pOld gets where the equal ones stand. None of the positions involved may wrap.
    void TakeOverRun(uint32_t nSource, uint32_t nIndex, uint32_t nCount, uint32_t* pOld);

    // Position 0 has no entry.
    void SkipPosition() { m_aIsNewest[0] = 0; }

    uint32_t GetEntryAt(uint32_t nIndex) const { return m_aEntryAt[LZSS::WrapPosition(nIndex)]; }
    uint32_t GetNewest(uint32_t nEntry) const { return m_aEntries[nEntry].m_nNewest; }

private:
    using Index = uint16_t;

    static constexpr uint32_t c_nHead = LZSS::c_nWindowSize;     // entry before the smallest string
    static constexpr uint32_t c_nTail = LZSS::c_nWindowSize + 1; // entry behind the largest one
    static constexpr uint32_t c_nEntries = LZSS::c_nWindowSize + 2;
    static constexpr uint32_t c_nSpare = 32; // behind arrays that are written in blocks

    static constexpr uint32_t c_nBuckets = 256 * 128;
    static constexpr uint32_t c_nRankLimit = 1u << 19;

    struct CEntry
    {
        Index m_aLink[2];     // the neighbours, by direction
        uint8_t m_aShared[2]; // the bytes shared with each, plus 1; 0 beside the ends
        Index m_nNewest;      // where the string stands last
    };

    void SetEntryAt(uint32_t nIndex, uint32_t nEntry)
    {
        m_aEntryAt[LZSS::WrapPosition(nIndex)] = Index(nEntry);
        m_aIsNewest[LZSS::WrapPosition(nIndex)] = 1;
    }
    void Remove(uint32_t nEntry);
    void EnterBucket(uint32_t nEntry);
    void LeaveBucket(uint32_t nEntry);
    void CompactRanks();

    uint32_t m_nRank; // given last
    uint32_t m_nFree; // first of the unused entries, linked upward

    CEntry m_aEntries[c_nEntries];
    uint32_t m_aRank[c_nEntries];
    Index m_aEntryAt[LZSS::c_nWindowSize + c_nSpare];    // by position
    uint8_t m_aIsNewest[LZSS::c_nWindowSize + c_nSpare]; // by position: 1 when its entry stands there last

    // The way to a place without a finger: the smallest entry of each bucket. Buckets go by the first two bytes
    // and follow one another in sorted order.
    Index m_aBucket[c_nBuckets];
    uint64_t m_aBucketUsed[c_nBuckets / 64];

    uint8_t m_aData[c_nBufferSize + c_nSpare]; // wide loads read beyond the last string
};

// The number of equal bytes, 17 at most, of two strings whose first nFrom are known to be equal.
inline uint32_t CountShared(const uint8_t* pA, const uint8_t* pB, uint32_t nFrom)
{
    for (;; nFrom += 8)
    {
        const uint64_t nDiff = LZSS::Load64(pA + nFrom) ^ LZSS::Load64(pB + nFrom);
        if (nDiff != 0)
            return std::min(nFrom + uint32_t(std::countr_zero(nDiff)) / 8, LZSS::c_nLookAheadSize);
        if (nFrom + 8 >= LZSS::c_nLookAheadSize)
            return LZSS::c_nLookAheadSize;
    }
}

// A neighbour that shares more bytes with the finger's string than the new one does stands on the same side of
// the new one; one that shares less stands on the other. Only of one that shares as many are bytes compared.
inline CLZSSIndex::CPlace CLZSSIndex::FindFrom(uint32_t nIndex, CFinger finger) const
{
    const uint32_t nDirection = finger.m_nDirection;
    for (;;)
    {
        uint32_t nFar = m_aEntries[finger.m_nEntry].m_aLink[nDirection];
        uint32_t nStep = m_aEntries[finger.m_nEntry].m_aShared[nDirection];
        if (nStep > finger.m_nShared)
        {
            do
            {
                finger.m_nEntry = nFar;
                nFar = m_aEntries[finger.m_nEntry].m_aLink[nDirection];
                nStep = m_aEntries[finger.m_nEntry].m_aShared[nDirection];
            } while (nStep > finger.m_nShared);
            finger.m_nIndex = m_aEntries[finger.m_nEntry].m_nNewest;
        }
        if (nStep < finger.m_nShared) [[likely]]
            return {finger, nFar, nStep, 0, c_nNone};

        const uint32_t nFarIndex = m_aEntries[nFar].m_nNewest;
        const uint32_t nEqual = CountShared(m_aData + nIndex, m_aData + nFarIndex, finger.m_nShared - 1);
        if (nEqual == LZSS::c_nLookAheadSize)
            return {finger, nFar, 0, 0, nFar};
        const bool bUp = m_aData[nIndex + nEqual] > m_aData[nFarIndex + nEqual];
        if (bUp != (nDirection == UP))
            return {finger, nFar, nEqual + 1, nFarIndex, c_nNone};
        finger.m_nEntry = nFar;
        finger.m_nIndex = nFarIndex;
        finger.m_nShared = nEqual + 1;
    }
}

inline void CLZSSIndex::Insert(uint32_t nIndex, const CPlace& place)
{
    const uint32_t nEntry = m_nFree;
    const uint32_t nToFar = place.m_Near.m_nDirection;
    const uint32_t nToNear = nToFar ^ 1;
    CEntry& entry = m_aEntries[nEntry];
    CEntry& nearEntry = m_aEntries[place.m_Near.m_nEntry];
    CEntry& farEntry = m_aEntries[place.m_nFar];
    m_nFree = entry.m_aLink[UP];
    entry.m_aLink[nToFar] = Index(place.m_nFar);
    entry.m_aLink[nToNear] = Index(place.m_Near.m_nEntry);
    entry.m_aShared[nToFar] = uint8_t(place.m_nSharedFar);
    entry.m_aShared[nToNear] = uint8_t(place.m_Near.m_nShared);
    entry.m_nNewest = Index(nIndex);
    nearEntry.m_aLink[nToFar] = Index(nEntry);
    nearEntry.m_aShared[nToFar] = uint8_t(place.m_Near.m_nShared);
    farEntry.m_aLink[nToNear] = Index(nEntry);
    farEntry.m_aShared[nToNear] = uint8_t(place.m_nSharedFar);
    m_aRank[nEntry] = ++m_nRank;
    SetEntryAt(nIndex, nEntry);
    if (entry.m_aShared[DOWN] < 3) [[unlikely]]
        EnterBucket(nEntry);
}

inline void CLZSSIndex::Remove(uint32_t nEntry)
{
    CEntry& entry = m_aEntries[nEntry];
    if (entry.m_aShared[DOWN] < 3) [[unlikely]]
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
    entry.m_aLink[UP] = Index(m_nFree);
    m_nFree = nEntry;
}
