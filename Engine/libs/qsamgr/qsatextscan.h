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
