#include "qsamgr/lzssdecoder.h"

#include "qsassert.h"

#include <algorithm>

using namespace LZSS;

namespace
{

// Of the end token's offset are written at least so many bits: up to 7 bits at the very end aren't.
constexpr uint32_t c_nWrittenEndBits = c_nOffsetBits + c_nLengthBits - 7;

// The most that copying a span at once writes, with what it spills behind the span.
constexpr size_t c_nSpill = 40;

// What a span of a short distance, 1 to 7, repeats. Multiplying the pattern's number by the factor repeats it
// through 8 bytes; a store of these every c_aPatternStep bytes goes on with it.
constexpr uint64_t c_aPatternFactor[8] = {
    0,
    0x0101010101010101,
    0x0001000100010001,
    0x0001000001000001,
    0x0000000100000001,
    0x0000010000000001,
    0x0001000000000001,
    0x0100000000000001,
};
constexpr uint32_t c_aPatternStep[8] = {0, 8, 8, 6, 8, 5, 6, 7};

// Copies 17 bytes from nDistance bytes back, byte after byte in effect, and spills up to c_nSpill in all.
inline void CopyWide(uint8_t* pOut, size_t nDistance)
{
    const uint8_t* pFrom = pOut - nDistance;
    if (nDistance >= 16)
    {
        std::memcpy(pOut, pFrom, 16);
        std::memcpy(pOut + 16, pFrom + 16, 8);
    }
    else if (nDistance >= 8)
    {
        std::memcpy(pOut, pFrom, 8);
        std::memcpy(pOut + 8, pFrom + 8, 8);
        std::memcpy(pOut + 16, pFrom + 16, 8);
    }
    else
    {
        const uint64_t nPattern = Load64(pFrom) & ((uint64_t(1) << (nDistance * 8)) - 1);
        const uint64_t nRepeated = nPattern * c_aPatternFactor[nDistance];
        const size_t nStep = c_aPatternStep[nDistance];
        for (size_t i = 0; i < 4; ++i)
            Store64(pOut + i * nStep, nRepeated);
    }
}

} // namespace

struct CLZSSDecoder::COutput
{
    uint8_t* m_pNext;
    uint8_t* const m_pEnd;
    const size_t m_nBefore; // bytes before m_pBegin that hold the output of earlier calls
    uint8_t* const m_pBegin;

    size_t Room() const { return size_t(m_pEnd - m_pNext); }
    size_t Count() const { return size_t(m_pNext - m_pBegin); }
};

void CLZSSDecoder::Reset()
{
    std::fill(std::begin(m_aRing), std::end(m_aRing), uint8_t(0));
    m_nPos = 1;
    m_nSpanLen = 0;
    m_nOffset = 0;
    m_bEnded = false;
}

size_t CLZSSDecoder::Decode(CBitCursor& cursor, uint8_t* pOut, size_t nLen, size_t nHistory)
{
    COutput out = {pOut, pOut + nLen, nHistory, pOut};
    const bool bEndedBefore = m_bEnded;
    m_bEnded = false;
    bool bMore = true;
    while (bMore)
    {
        if (m_nSpanLen != 0)
            CopySpan(out);
        if (out.Room() == 0)
            break;
        bMore = DecodeTokens(cursor, out) && (m_nSpanLen != 0 || out.Room() == 0 || DecodeToken(cursor, out));
    }
    KeepRing(out);
    if (out.Count() == 0)
        m_bEnded |= bEndedBefore;
    return out.Count();
}

// One token, bit by bit: at the end of a piece of the stream or of the output.
bool CLZSSDecoder::DecodeToken(CBitCursor& cursor, COutput& out)
{
    uint32_t nFlag;
    if (!cursor.GetBit(nFlag))
        return false;
    if (nFlag != 0)
    {
        *out.m_pNext++ = uint8_t(cursor.GetField(8));
        return true;
    }
    uint32_t nRead;
    m_nOffset = cursor.GetField(c_nOffsetBits, &nRead);
    if (m_nOffset == 0)
    {
        m_bEnded = nRead >= c_nWrittenEndBits;
        return false;
    }
    m_nSpanLen = cursor.GetField(c_nLengthBits) + c_nShortestSpan;
    return true;
}

// As many tokens as 8 bytes can be loaded and a whole span can be stored for.
bool CLZSSDecoder::DecodeTokens(CBitCursor& cursor, COutput& out)
{
    const uint8_t* pNext = cursor.m_pNext;
    uint8_t* pOut = out.m_pNext;
    if (cursor.m_pEnd - pNext < 8 || out.Room() < 3 * c_nSpill)
        return true;
    const uint8_t* const pLast = cursor.m_pEnd - 8;
    uint8_t* const pOutLast = out.m_pEnd - 3 * c_nSpill;

    // Bits taken from the bytes but not yet used: the lowest nBits of nAhead, first one lowest.
    uint32_t nBits = cursor.m_nBitMask == 0 ? 0 : 8 - uint32_t(std::countr_zero(cursor.m_nBitMask));
    uint64_t nAhead = uint64_t(cursor.m_nBitBuffer) >> (8 - nBits);
    bool bMore = true;
    while (bMore && pNext <= pLast && pOut <= pOutLast)
    {
        nAhead |= Load64(pNext) << nBits;
        pNext += (63 - nBits) / 8;
        nBits |= 56; // at least; enough for three tokens
        for (int i = 0; i < 3; ++i)
        {
            if ((nAhead & 1) != 0)
            {
                *pOut++ = c_aReversed[(nAhead >> 1) & 0xFF];
                nAhead >>= c_nLiteralBits;
                nBits -= c_nLiteralBits;
                continue;
            }
            const uint32_t nOffset = ReverseOffset(uint32_t(nAhead >> 1) & (c_nWindowSize - 1));
            if (nOffset == 0)
            {
                nBits -= 1 + c_nOffsetBits;
                m_bEnded = true;
                bMore = false;
                break;
            }
            const uint32_t nLen =
                ReverseLength(uint32_t(nAhead >> (1 + c_nOffsetBits)) & 15) + c_nShortestSpan;
            nAhead >>= c_nSpanBits;
            nBits -= c_nSpanBits;
            const size_t nDone = size_t(pOut - out.m_pBegin);
            const size_t nDistance = WrapPosition(m_nPos + uint32_t(nDone) - nOffset - 1) + 1;
            if (nDistance > nDone + out.m_nBefore)
            {
                // From the ring, in part at least.
                out.m_pNext = pOut;
                m_nOffset = nOffset;
                m_nSpanLen = nLen;
                CopySpan(out); // has room for all
            }
            else
                CopyWide(pOut, nDistance);
            pOut += nLen;
        }
    }
    out.m_pNext = pOut;

    // Whole bytes go back.
    pNext -= nBits / 8;
    nBits %= 8;
    if (pNext != cursor.m_pNext)
        cursor.m_nBitBuffer = pNext[-1];
    cursor.m_pNext = pNext;
    cursor.m_nBitMask = nBits == 0 ? 0 : uint8_t(1u << (8 - nBits));
    return bMore;
}

// What the output has room for. A byte that this call has written is taken from there, an older one from the
// ring.
void CLZSSDecoder::CopySpan(COutput& out)
{
    QS_ASSERT(m_nSpanLen > 0);
    while (m_nSpanLen != 0 && out.Room() != 0)
    {
        const size_t nDistance = WrapPosition(m_nPos + uint32_t(out.Count()) - m_nOffset - 1) + 1;
        *out.m_pNext = nDistance <= out.Count() ? *(out.m_pNext - nDistance) : m_aRing[m_nOffset];
        ++out.m_pNext;
        m_nOffset = WrapPosition(m_nOffset + 1);
        --m_nSpanLen;
    }
}

void CLZSSDecoder::KeepRing(const COutput& out)
{
    const size_t nKept = std::min(out.Count(), size_t(c_nWindowSize));
    const uint8_t* const pKept = out.m_pNext - nKept;
    m_nPos = WrapPosition(m_nPos + uint32_t(out.Count()));
    const uint32_t nBegin = WrapPosition(m_nPos - uint32_t(nKept));
    const size_t nFirst = std::min(nKept, size_t(c_nWindowSize - nBegin));
    std::memcpy(m_aRing + nBegin, pKept, nFirst);
    std::memcpy(m_aRing, pKept + nFirst, nKept - nFirst);
}
