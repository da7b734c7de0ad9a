#pragma once

#include <cstddef>
#include <cstdint>

// Finds the bytes that mean something in node text, 64 at a time. Bit i stands for byte i of the block.
struct CQSATextMasks
{
    uint64_t m_nQuote; // "
    uint64_t m_nParen; // ( and )
    uint64_t m_nWhite; // blank, tab, line feed, carriage return
};

constexpr size_t c_nTextBlock = 64;

// Fills one record for each of nBlocks blocks of 64 readable bytes. All kernels give the same.
using QSAScanFn = void (*)(const char* pText, size_t nBlocks, CQSATextMasks* pMasks);

void QSAScanPlain(const char* pText, size_t nBlocks, CQSATextMasks* pMasks); // any processor
#if defined(__x86_64__)
void QSAScanSSE2(const char* pText, size_t nBlocks, CQSATextMasks* pMasks); // every x86-64
void QSAScanAVX2(const char* pText, size_t nBlocks, CQSATextMasks* pMasks); // only where the processor has it
#endif

// The fastest kernel that this processor runs.
QSAScanFn QSAPickScan();

// Carries over from one block to the next.
struct CQSATextState
{
    uint64_t m_nInString = 0;   // all ones when the block before ended inside a string
    uint64_t m_nAfterValue = 0; // 1 when its last byte was a value's
};

// Most blocks that one call of an index function takes, and room that its list needs for them.
constexpr size_t c_nIndexBlocks = 64;
constexpr size_t c_nIndexRoom = c_nIndexBlocks * c_nTextBlock + 32;

// Lists the bytes where something begins or ends, in order: parentheses outside strings, the quotes around
// strings, the first byte of each value, and the byte behind each value. That may be a parenthesis or an
// opening quote as well, and is listed once then. An atom ends at the byte that is listed behind its start: no
// other comes between. Places count from the first block. Gives their number.
using QSAIndexFn = uint32_t (*)(const CQSATextMasks* pMasks, size_t nBlocks, CQSATextState& state,
                                uint16_t* pIndex);

uint32_t QSAIndexPlain(const CQSATextMasks* pMasks, size_t nBlocks, CQSATextState& state, uint16_t* pIndex);
#if defined(__x86_64__)
uint32_t QSAIndexSSE2(const CQSATextMasks* pMasks, size_t nBlocks, CQSATextState& state,
                      uint16_t* pIndex); // every x86-64
#endif

QSAIndexFn QSAPickIndex();
