#pragma once

#include "qsamgr/bitcursor.h"
#include "qsamgr/lzssformat.h"

#include <cstddef>
#include <cstdint>

// The decoder of the compressed container, without the header. Any stream decodes to something; a damaged one
// to wrong bytes.
class CLZSSDecoder
{
public:
    // Starts a new stream. What a damaged one copies from before its start is zero.
    void Reset();

    // Decodes up to nLen bytes to pOut, and moves the cursor on behind the last bit used. Fewer bytes mean that
    // the end token was met or that the bits ran out where a token would begin; a further call goes on reading
    // behind the end token. Bits that are missing within a token take the value of the bit before them.
    //
    // nHistory is the number of bytes before pOut that hold the output of the calls before, 0 when it isn't
    // kept: the copying of spans is faster with it.
    size_t Decode(CBitCursor& cursor, uint8_t* pOut, size_t nLen, size_t nHistory = 0);

    // Whether what was decoded last ended with the end token, not because the bits ran out. Nothing tells it
    // from a span that was cut in its first bits, other than what it ends.
    bool HasEnded() const { return m_bEnded; }

private:
    struct COutput;

    // Both give false at the end of the stream.
    bool DecodeToken(CBitCursor& cursor, COutput& out);
    bool DecodeTokens(CBitCursor& cursor, COutput& out);

    void CopySpan(COutput& out);
    void KeepRing(const COutput& out);

    uint8_t m_aRing[LZSS::c_nWindowSize]; // up to the begin of a call of Decode
    uint32_t m_nPos;                      // next ring position to write, at the begin of a call
    uint32_t m_nSpanLen;                  // bytes left of the span being copied
    uint32_t m_nOffset;                   // ring position of its next byte
    bool m_bEnded;
};
