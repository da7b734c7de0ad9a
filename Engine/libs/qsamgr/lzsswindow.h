#pragma once

#include "qsamgr/lzssindex.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class CQSABitFile;

// The encoder of the compressed container (lzssformat.h tells the form). Greedy: at each token's start it takes
// the longest match of 2 to 17 bytes, and where several are as long the one that the format's own match finder
// takes, so that equal data give equal files. The last 17 bytes of a stream are literals.
//
// About 200 KB, no heap. Not copied while in use.
class CLZSSWindow
{
public:
    // Starts a new stream. Has to be called before the first byte.
    void Reset();

    // Takes one byte, or a block of them. Tokens go to pFile (open for writing) some thousand bytes at a
    // time. Always true: a failed write shows when the file is closed.
    bool AddByte(uint8_t nByte, CQSABitFile* pFile);
    bool AddBlock(const void* pData, size_t nLen, CQSABitFile* pFile);

    // Writes what is left and the end token, whose bits of an incomplete last byte stay in the file's bit
    // buffer. Only Reset may follow.
    void Flush(CQSABitFile* pFile);

    // The same with memory as the target: whole bytes are appended to out, whose allocation may throw. The two
    // kinds of target aren't mixed within a stream.
    void AddBlock(const void* pData, size_t nLen, std::vector<uint8_t>& out);
    void Flush(std::vector<uint8_t>& out);

private:
    using CFinger = CLZSSIndex::CFinger;
    using CPlace = CLZSSIndex::CPlace;

    template <class TSink>
    void Take(const uint8_t* pData, size_t nLen, const TSink& sink);
    void Encode();
    void FinishTokens();

    bool EncodeRun();
    void EncodeString(const CPlace& place);
    void EncodeMatch(const CPlace& place);
    CPlace FindPlace() const;
    void SetFinger(const CFinger& finger);

    void PutBits(uint32_t nBits, uint32_t nCount);
    void PutLiteral();
    void PutSpan(uint32_t nIndex, uint32_t nLen);

    CLZSSIndex m_Index;

    // Indices in the buffer.
    uint32_t m_nEnd;        // behind the last byte that is filled
    uint32_t m_nPos;        // next string to enter
    uint32_t m_nTokenStart; // start of the next token, m_nPos or beyond

    uint32_t m_nSource; // a string whose first 16 bytes are those of the one at m_nPos; 0 without
    CFinger m_Finger;   // for the string at m_nPos; m_nShared is 0 without

    uint64_t m_nBits; // of tokens, not yet in m_aOut, at most 7
    uint32_t m_nBitCount;
    uint32_t m_nOut;
    uint8_t m_aOut[CLZSSIndex::c_nBufferSize / 8 * LZSS::c_nLiteralBits + 16]; // of a buffer full of literals
};
