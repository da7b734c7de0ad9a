#pragma once

#include "qsamgr/lzssformat.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class CQSABitFile;

// The encoder of the compressed container. It takes bytes, and gives the tokens that the format's own match
// finder gives: the longest match of 2 to 17 bytes at each token's start, and among several of that length the
// one that stands nearest the root of a binary search tree over the strings of the last 4079 positions.
//
// That tree isn't built. What it answers follows from three simple things, which are kept instead:
//
//  - The strings in sorted order, as a linked list. The longest match is always a sorted neighbour of the new
//    string, and all strings that match as far stand in one run around it. The number of bytes that a string
//    shares with the one before it is kept too, so that runs are walked without looking at a byte.
//  - A rank for each string. A node hangs below all nodes of lower rank between which it stands, so the node
//    of a run that is nearest the root is the one of lowest rank. A new string gets the highest rank.
//  - A string that leaves while it has children on both sides hands its rank to the one before it in sorted
//    order, which is the one that takes its place in the tree. It has a child on a side exactly when its
//    sorted neighbour there has the higher rank.
//
// A string that equals one in the list in all 17 bytes takes its entry over. To find the place of a new
// string, the neighbours of the string one byte before it are moved on by one byte: they enclose the place,
// and mostly stand side by side.
//
// About 90 KB, no heap. Not copied while in use.
class CLZSSWindow
{
public:
    // Starts a new stream. Has to be called before the first byte.
    void Reset();

    // Takes one byte, or a block of them. Tokens go to pFile (open for writing) some thousand bytes at a
    // time. Always true: a failed write shows when the file is closed.
    bool AddByte(uint8_t nByte, CQSABitFile* pFile);
    bool AddBlock(const void* pData, size_t nLen, CQSABitFile* pFile);

    // Writes what is left, 17 bytes or less as literals, and the end token, whose bits of an incomplete last
    // byte stay in the file's bit buffer. Only Reset may follow.
    void Flush(CQSABitFile* pFile);

    // The same with memory as the target: whole bytes are appended to out, whose allocation may throw. The two
    // kinds of target aren't mixed within a stream.
    void AddBlock(const void* pData, size_t nLen, std::vector<uint8_t>& out);
    void Flush(std::vector<uint8_t>& out);

private:
    using Index = uint16_t; // of a byte in m_aData, or of an entry

    // Positions of the stream and indices of m_aData agree modulo the window size.
    static constexpr uint32_t c_nBufferSize = 4 * LZSS::c_nWindowSize;
    static constexpr uint32_t c_nSlide = 2 * LZSS::c_nWindowSize;
    static constexpr uint32_t c_nFirst = LZSS::c_nWindowSize + 1;
    static constexpr uint32_t c_nReach = LZSS::c_nWindowSize - LZSS::c_nLookAheadSize; // farthest match
    static constexpr uint32_t c_nPadding = 32;                                         // for wide loads

    static constexpr uint32_t c_nHead = LZSS::c_nWindowSize;     // entry before the smallest string
    static constexpr uint32_t c_nTail = LZSS::c_nWindowSize + 1; // entry behind the largest one
    static constexpr uint32_t c_nEntries = LZSS::c_nWindowSize + 2;
    static constexpr uint32_t c_nNone = 0; // the entry of positions that have none

    static constexpr uint32_t c_nHashBits = 12;
    static constexpr uint32_t c_nBuckets = 1 << 12;
    static constexpr uint32_t c_nRankLimit = 1u << 22;

    enum : uint32_t
    {
        DOWN = 0,
        UP = 1
    };

    // A string of the list. Index 0 is toward the smaller strings, 1 toward the larger.
    struct CEntry
    {
        Index m_aLink[2];     // its neighbours
        uint8_t m_aShared[2]; // the bytes that it shares with each, plus 1; 0 beside the ends
        Index m_nNewest;      // where it stands last
    };

    // Where a string belongs: beside m_nNear, in the direction that leads to m_nFar, with the bytes that it
    // shares with each, plus 1. Or the entry that equals it.
    struct CPlace
    {
        uint32_t m_nNear;
        uint32_t m_nFar;
        uint32_t m_nDirection;
        uint32_t m_nSharedNear;
        uint32_t m_nSharedFar;
        uint32_t m_nEqual;
    };

    template <class TSink>
    void Take(const uint8_t* pData, size_t nLen, const TSink& sink);
    void Slide();
    void Encode();
    bool EncodeRun();
    void EncodeString();
    void TakeOver(uint32_t nSource, uint32_t nPos, uint32_t nCount);
    void Advance(uint32_t nEntry);
    void FinishTokens();

    CPlace FindPlace() const;
    CPlace Search(uint32_t nEntry, uint32_t nDirection, uint32_t nShared) const;
    CPlace SearchHashOrBuckets() const;
    CPlace SearchBuckets() const;
    CPlace Compare(uint32_t nEntry) const;
    uint32_t CountShared(uint32_t nIndex, uint32_t nFrom) const;
    uint32_t EntryBehind(uint32_t nEntry) const;
    uint32_t LowestRank(const CPlace& place, uint32_t nShared) const;

    void Insert(const CPlace& place);
    void Expire(uint32_t nIndex);
    void Remove(uint32_t nEntry);
    void EnterBucket(uint32_t nEntry);
    void LeaveBucket(uint32_t nEntry);
    void CompactRanks();

    uint32_t BucketAt(uint32_t nIndex) const;
    uint32_t HashAt(uint32_t nIndex) const;
    void PutBits(uint32_t nBits, uint32_t nCount);
    void PutLiteral();
    void PutSpan(uint32_t nOffset, uint32_t nLen);

    uint32_t m_nEnd;        // bytes of m_aData that are filled
    uint32_t m_nPos;        // next string to enter
    uint32_t m_nTokenStart; // start of the next token, m_nPos or beyond
    uint32_t m_nLast;       // entry of the string before m_nPos, c_nNone without
    uint32_t m_nSource;     // a string whose first 16 bytes are those at m_nPos, 0 without
    uint32_t m_nRank;       // given last
    uint32_t m_nFree;       // first of the unused entries, linked by m_aLink[UP]

    uint64_t m_nBits; // of tokens, not yet in m_aOut, at most 7
    uint32_t m_nBitCount;
    uint32_t m_nOut;

    CEntry m_aEntries[c_nEntries];
    uint32_t m_aRank[c_nEntries];
    Index m_aEntryAt[LZSS::c_nWindowSize + 8];       // by position
    uint8_t m_aIsNewest[LZSS::c_nWindowSize + 8];    // by position: 1 when its entry stands here last
    Index m_aHash[1 << c_nHashBits];                 // some entry with these first bytes, perhaps a stale one
    Index m_aBucket[c_nBuckets];                     // smallest entry by its first 12 bits
    uint64_t m_aBucketUsed[c_nBuckets / 64];
    uint8_t m_aData[c_nBufferSize + c_nPadding];
    uint8_t m_aOut[c_nBufferSize];
};
