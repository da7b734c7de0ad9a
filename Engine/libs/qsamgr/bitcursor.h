#pragma once

#include <cstdint>

// A place in a stream of bits whose bytes lie in memory piece by piece. Bits come from the lowest of each byte
// up.
struct CBitCursor
{
    const uint8_t* m_pNext = nullptr; // next byte to take
    const uint8_t* m_pEnd = nullptr;
    uint8_t m_nBitBuffer = 0; // byte being taken apart
    uint8_t m_nBitMask = 0;   // its next bit; 0 when a new byte is needed

    // Called when the piece is used up: gives the next one, or false at the end. Null with a single piece.
    bool (*m_pfnRefill)(CBitCursor& cursor) = nullptr;
    void* m_pUser = nullptr;

    // 0 or 1. False at the end of the stream; nBit is untouched then.
    bool GetBit(uint32_t& nBit)
    {
        if (m_nBitMask == 0)
        {
            if (m_pNext == m_pEnd && (m_pfnRefill == nullptr || !m_pfnRefill(*this)))
                return false;
            m_nBitBuffer = *m_pNext++;
            m_nBitMask = 1;
        }
        nBit = (m_nBitBuffer & m_nBitMask) != 0;
        m_nBitMask = uint8_t(m_nBitMask << 1);
        return true;
    }

    // A field of nCount bits, the highest first. One that can't be read takes the value of the bit before it,
    // 0 at the start. nRead, when given, tells how many could be read.
    uint32_t GetField(uint32_t nCount, uint32_t* pnRead = nullptr)
    {
        uint32_t nBit = 0;
        uint32_t nValue = 0;
        uint32_t nRead = 0;
        while (nCount-- != 0)
        {
            nRead += GetBit(nBit);
            nValue = (nValue << 1) | nBit;
        }
        if (pnRead != nullptr)
            *pnRead = nRead;
        return nValue;
    }
};
