#include "qsamgr/qsatextscan.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace
{
constexpr uint64_t c_nOnes = 0x0101010101010101;
constexpr uint64_t c_nLow7 = 0x7F7F7F7F7F7F7F7F;

// 0x80 in each byte of the word that equals the given one, exactly; 0 elsewhere.
uint64_t EqualBytes(uint64_t nWord, unsigned char nByte)
{
    const uint64_t nDiff = nWord ^ (c_nOnes * nByte);
    return ~(((nDiff & c_nLow7) + c_nLow7) | nDiff | c_nLow7);
}

// The eight top bits of a word's bytes, gathered; the first byte in memory gives bit 0.
uint64_t GatherTopBits(uint64_t nTopBits)
{
    return ((nTopBits >> 7) * 0x0102040810204080) >> 56;
}

// The first byte in memory becomes the lowest.
uint64_t LoadWord(const char* pText)
{
    uint64_t nWord;
    std::memcpy(&nWord, pText, sizeof(nWord));
    if constexpr (std::endian::native == std::endian::big)
        nWord = __builtin_bswap64(nWord);
    return nWord;
}

// Bit i of the result is the parity of bits 0 to i.
inline uint64_t PrefixXor(uint64_t nBits)
{
    nBits ^= nBits << 1;
    nBits ^= nBits << 2;
    nBits ^= nBits << 4;
    nBits ^= nBits << 8;
    nBits ^= nBits << 16;
    return nBits ^ nBits << 32;
}

// The bytes of a block that are listed.
inline uint64_t FindEdges(const CQSATextMasks& masks, CQSATextState& state)
{
    // Set from each opening quote to the byte before the closing one.
    const uint64_t nInString = PrefixXor(masks.m_nQuote) ^ state.m_nInString;
    state.m_nInString = 0 - (nInString >> 63);
    const uint64_t nValue = ~(masks.m_nQuote | masks.m_nParen | masks.m_nWhite | nInString);
    const uint64_t nBehindValue = nValue << 1 | state.m_nAfterValue;
    state.m_nAfterValue = nValue >> 63;
    return (masks.m_nParen & ~nInString) | masks.m_nQuote | (nValue ^ nBehindValue);
}
} // namespace

void QSAScanPlain(const char* pText, size_t nBlocks, CQSATextMasks* pMasks)
{
    for (size_t nBlock = 0; nBlock < nBlocks; ++nBlock, pText += c_nTextBlock)
    {
        CQSATextMasks masks{};
        for (size_t i = 0; i < c_nTextBlock; i += 8)
        {
            const uint64_t nWord = LoadWord(pText + i);
            masks.m_nQuote |= GatherTopBits(EqualBytes(nWord, '"')) << i;
            // The parentheses differ in bit 0 only.
            masks.m_nParen |= GatherTopBits(EqualBytes(nWord & ~c_nOnes, '(')) << i;
            masks.m_nWhite |= GatherTopBits(EqualBytes(nWord, ' ') | EqualBytes(nWord, '\t') |
                                            EqualBytes(nWord, '\n') | EqualBytes(nWord, '\r'))
                              << i;
        }
        pMasks[nBlock] = masks;
    }
}

#if defined(__x86_64__)
void QSAScanSSE2(const char* pText, size_t nBlocks, CQSATextMasks* pMasks)
{
    const __m128i vQuote = _mm_set1_epi8('"');
    const __m128i vParen = _mm_set1_epi8('(');
    const __m128i vAllButBit0 = _mm_set1_epi8(static_cast<char>(0xFE));
    const __m128i vBlank = _mm_set1_epi8(' ');
    const __m128i vTab = _mm_set1_epi8('\t');
    const __m128i vLineFeed = _mm_set1_epi8('\n');
    const __m128i vReturn = _mm_set1_epi8('\r');
    const auto Bits = [](__m128i v) { return uint64_t(static_cast<uint32_t>(_mm_movemask_epi8(v))); };
    for (size_t nBlock = 0; nBlock < nBlocks; ++nBlock, pText += c_nTextBlock)
    {
        CQSATextMasks masks{};
        for (size_t i = 0; i < c_nTextBlock; i += 16)
        {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pText + i));
            const __m128i vWhite =
                _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, vBlank), _mm_cmpeq_epi8(v, vTab)),
                             _mm_or_si128(_mm_cmpeq_epi8(v, vLineFeed), _mm_cmpeq_epi8(v, vReturn)));
            masks.m_nQuote |= Bits(_mm_cmpeq_epi8(v, vQuote)) << i;
            masks.m_nParen |= Bits(_mm_cmpeq_epi8(_mm_and_si128(v, vAllButBit0), vParen)) << i;
            masks.m_nWhite |= Bits(vWhite) << i;
        }
        pMasks[nBlock] = masks;
    }
}

// The white bytes have four different low halves: one table look-up by low half gives the one white byte that
// a byte could be. Other halves give a byte with another low half, and so never match.
__attribute__((target("avx2"))) void QSAScanAVX2(const char* pText, size_t nBlocks, CQSATextMasks* pMasks)
{
    const __m256i vQuote = _mm256_set1_epi8('"');
    const __m256i vParen = _mm256_set1_epi8('(');
    const __m256i vAllButBit0 = _mm256_set1_epi8(static_cast<char>(0xFE));
    const __m256i vWhiteByLowHalf =
        _mm256_setr_epi8(' ', 0, 0, 0, 0, 0, 0, 0, 0, '\t', '\n', 0, 0, '\r', 0, 0, //
                         ' ', 0, 0, 0, 0, 0, 0, 0, 0, '\t', '\n', 0, 0, '\r', 0, 0);
    for (size_t nBlock = 0; nBlock < nBlocks; ++nBlock, pText += c_nTextBlock)
    {
        const __m256i v0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pText));
        const __m256i v1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pText + 32));
        const auto Join = [](int32_t nLow, int32_t nHigh)
        { return uint64_t(static_cast<uint32_t>(nLow)) | uint64_t(static_cast<uint32_t>(nHigh)) << 32; };
        CQSATextMasks& masks = pMasks[nBlock];
        masks.m_nQuote = Join(_mm256_movemask_epi8(_mm256_cmpeq_epi8(v0, vQuote)),
                              _mm256_movemask_epi8(_mm256_cmpeq_epi8(v1, vQuote)));
        masks.m_nParen =
            Join(_mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_and_si256(v0, vAllButBit0), vParen)),
                 _mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_and_si256(v1, vAllButBit0), vParen)));
        masks.m_nWhite =
            Join(_mm256_movemask_epi8(_mm256_cmpeq_epi8(v0, _mm256_shuffle_epi8(vWhiteByLowHalf, v0))),
                 _mm256_movemask_epi8(_mm256_cmpeq_epi8(v1, _mm256_shuffle_epi8(vWhiteByLowHalf, v1))));
    }
}
#endif

uint32_t QSAIndexPlain(const CQSATextMasks* pMasks, size_t nBlocks, CQSATextState& state, uint16_t* pIndex)
{
    uint16_t* pNext = pIndex;
    for (size_t nBlock = 0; nBlock < nBlocks; ++nBlock)
    {
        const auto nBase = static_cast<uint32_t>(nBlock * c_nTextBlock);
        for (uint64_t nEdges = FindEdges(pMasks[nBlock], state); nEdges != 0; nEdges &= nEdges - 1)
            *pNext++ = static_cast<uint16_t>(nBase + static_cast<uint32_t>(std::countr_zero(nEdges)));
    }
    return static_cast<uint32_t>(pNext - pIndex);
}

#if defined(__x86_64__)
namespace
{
// For each byte of edges the places of its bits, and how many there are.
struct alignas(16) SPlaces
{
    uint16_t m_aPlace[8];
};
constexpr auto c_aPlaces = []
{
    std::array<SPlaces, 256> places{};
    for (uint32_t nByte = 0; nByte < 256; ++nByte)
    {
        for (uint16_t nBit = 0, n = 0; nBit < 8; ++nBit)
        {
            if ((nByte >> nBit & 1) != 0)
                places[nByte].m_aPlace[n++] = nBit;
        }
    }
    return places;
}();
constexpr auto c_aCounts = []
{
    std::array<uint8_t, 256> counts{};
    for (uint32_t nByte = 0; nByte < 256; ++nByte)
        counts[nByte] = static_cast<uint8_t>(std::popcount(nByte));
    return counts;
}();
} // namespace

// Writes eight places for each byte of edges, as many of them good as it has bits: nothing to guess for the
// processor.
uint32_t QSAIndexSSE2(const CQSATextMasks* pMasks, size_t nBlocks, CQSATextState& state, uint16_t* pIndex)
{
    uint16_t* pNext = pIndex;
    CQSATextState now = state; // in registers, while places are stored
    __m128i vBase = _mm_setzero_si128();
    for (size_t nBlock = 0; nBlock < nBlocks; ++nBlock)
    {
        uint64_t nEdges = FindEdges(pMasks[nBlock], now);
        for (int i = 0; i < 8; ++i, nEdges >>= 8)
        {
            const auto nByte = static_cast<uint8_t>(nEdges);
            const __m128i vPlaces = _mm_load_si128(reinterpret_cast<const __m128i*>(&c_aPlaces[nByte]));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(pNext), _mm_add_epi16(vPlaces, vBase));
            pNext += c_aCounts[nByte];
            vBase = _mm_add_epi16(vBase, _mm_set1_epi16(8));
        }
    }
    state = now;
    return static_cast<uint32_t>(pNext - pIndex);
}
#endif

QSAIndexFn QSAPickIndex()
{
#if defined(__x86_64__)
    return QSAIndexSSE2;
#else
    return QSAIndexPlain;
#endif
}

QSAScanFn QSAPickScan()
{
#if defined(__x86_64__)
    static const bool s_bAVX2 = __builtin_cpu_supports("avx2") != 0;
    return s_bAVX2 ? QSAScanAVX2 : QSAScanSSE2;
#else
    return QSAScanPlain;
#endif
}
