#pragma once

#include "qsamgr/bitcursor.h"
#include "qsamgr/qsafilebuffer.h"

// A file of single bits, the lowest of each byte first.
class CQSABitFile : public CQSAFileBuffer
{
public:
    // As CQSAFileBuffer's. Starts at the first bit of a byte.
    bool Open(const char* pszFilename, EOpenMode eMode, uint32_t nCacheSize, bool bAppend);

    // Gives zero for a clear bit and anything else for a set one. False at the end of the file, and on a read
    // error; *pBit is untouched then.
    bool GetBit(uint8_t* pBit);

    // Any number but zero sets the bit. A byte is written when its last bit comes; the bits of an incomplete
    // one are dropped at Close. False when the write failed.
    bool SetBit(uint8_t nBit);

    // The first nCount bits of pBytes, each byte from its lowest bit up, as that many calls of SetBit.
    bool SetBits(const uint8_t* pBytes, uint32_t nCount);

protected:
    // The reading place, to be moved on outside and handed back. In between the file isn't touched.
    CBitCursor GetCursor();
    void SetCursor(const CBitCursor& cursor);

private:
    static bool RefillCursor(CBitCursor& cursor);

    uint8_t m_nBitBuffer = 0;
    uint8_t m_nBitMask = 1; // next bit; 0, when reading, for one in a byte not yet taken
};
