#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

// The numbers of the compressed container, and the order of its bits.
//
// A file is four zero bytes, then tokens to its end:
//
//   literal        1, then the 8 bits of the byte
//   span           0, then 12 bits of offset (1 to 4095), then 4 bits of length less 2
//   end            0, then 12 zero bits, then 4 zero bits
//
// The offset is an absolute position in a ring of 4096 bytes, not a distance: the first byte of the data goes
// to position 1, the one after position 4095 to position 0. Position 0 is never an offset, which is what makes
// an offset of zero the end. A byte is filled from its lowest bit up, while a field of several bits goes out
// from its highest bit down; bits of an incomplete last byte aren't written.
namespace LZSS
{

constexpr uint32_t c_nOffsetBits = 12;
constexpr uint32_t c_nLengthBits = 4;
constexpr uint32_t c_nWindowSize = 1u << c_nOffsetBits;                     // 4096
constexpr uint32_t c_nBreakEven = (1 + c_nOffsetBits + c_nLengthBits) / 9;  // 1
constexpr uint32_t c_nShortestSpan = c_nBreakEven + 1;                      // 2
constexpr uint32_t c_nLookAheadSize = (1u << c_nLengthBits) + c_nBreakEven; // 17
constexpr uint32_t c_nLiteralBits = 1 + 8;                                  // 9
constexpr uint32_t c_nSpanBits = 1 + c_nOffsetBits + c_nLengthBits;         // 17
constexpr uint32_t c_nHeaderSize = 4;

constexpr uint32_t WrapPosition(uint32_t nPos)
{
    return nPos & (c_nWindowSize - 1);
}

// Every byte with its bits in the opposite order: turns a field's order into that of the bytes and back.
constexpr std::array<uint8_t, 256> c_aReversed = []
{
    std::array<uint8_t, 256> aResult = {};
    for (uint32_t i = 0; i < 256; ++i)
        for (uint32_t nBit = 0; nBit < 8; ++nBit)
            aResult[i] = uint8_t(aResult[i] | (((i >> nBit) & 1) << (7 - nBit)));
    return aResult;
}();

constexpr uint32_t ReverseOffset(uint32_t nOffset)
{
    return (uint32_t(c_aReversed[nOffset & 0xFF]) << 4) | (c_aReversed[nOffset >> 8] >> 4);
}

constexpr uint32_t ReverseLength(uint32_t nLength)
{
    return c_aReversed[nLength] >> 4;
}

// The bits of a token, the first one lowest.
constexpr uint32_t LiteralToken(uint8_t nByte)
{
    return 1u | (uint32_t(c_aReversed[nByte]) << 1);
}
constexpr uint32_t SpanToken(uint32_t nOffset, uint32_t nLength)
{
    return (ReverseOffset(nOffset) << 1) | (ReverseLength(nLength - c_nShortestSpan) << (1 + c_nOffsetBits));
}

constexpr uint64_t SwapOnBigEndian(uint64_t n)
{
    if constexpr (std::endian::native == std::endian::big)
        return __builtin_bswap64(n);
    return n;
}

// Eight bytes as a number, the first one lowest, on every machine.
inline uint64_t Load64(const uint8_t* p)
{
    uint64_t n;
    std::memcpy(&n, p, sizeof(n));
    return SwapOnBigEndian(n);
}

inline void Store64(uint8_t* p, uint64_t n)
{
    n = SwapOnBigEndian(n);
    std::memcpy(p, &n, sizeof(n));
}

} // namespace LZSS
