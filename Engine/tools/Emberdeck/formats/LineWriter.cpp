#include "formats/LineWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

#include "qsamgr/qsafile.h"
#include "qsnumber.h"

namespace
{

// Longest "%.6f" of a float: 39 digits, sign, point and six decimals.
constexpr size_t c_nMaxFixed = 64;
constexpr size_t c_nMaxInt = 16;

constexpr auto c_aTwoDigits = []
{
    std::array<char, 200> digits{};
    for (size_t i = 0; i < 100; ++i)
    {
        digits[2 * i] = static_cast<char>('0' + i / 10);
        digits[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return digits;
}();

char* PutTwoDigits(char* pNext, uint32_t nValue)
{
    std::memcpy(pNext, &c_aTwoDigits[2 * nValue], 2);
    return pNext + 2;
}

char* PutWhole(char* pNext, uint64_t nValue)
{
    if (nValue < 10)
    {
        *pNext = static_cast<char>('0' + nValue);
        return pNext + 1;
    }
    return std::to_chars(pNext, pNext + c_nMaxInt, nValue).ptr;
}

} // namespace

CLineWriter::CLineWriter(CQSAFile* pFile)
    : m_pFile(pFile),
      m_pBuffer(std::make_unique_for_overwrite<char[]>(c_nBufferSize)),
      m_pNext(m_pBuffer.get()),
      m_pEnd(m_pNext + c_nBufferSize)
{
}

// Nothing limits the depth of groups, so the tabs alone may fill the buffer.
char* CLineWriter::BeginSlowly(uint32_t nDepth)
{
    while (nDepth > 0)
    {
        if (m_pNext == m_pEnd)
            Flush();
        const size_t nPart = std::min<size_t>(nDepth, static_cast<size_t>(m_pEnd - m_pNext));
        std::memset(m_pNext, '\t', nPart);
        m_pNext += nPart;
        nDepth -= static_cast<uint32_t>(nPart);
    }
    if (static_cast<size_t>(m_pEnd - m_pNext) < c_nMaxLine)
        Flush();
    return m_pNext;
}

char* CLineWriter::PutNumber(char* pNext, int32_t nValue)
{
    return std::to_chars(pNext, pNext + c_nMaxInt, nValue).ptr;
}

char* CLineWriter::PutNumber(char* pNext, float fValue)
{
    constexpr float c_fLimit = 1e9f;
    if (!(std::fabs(fValue) < c_fLimit))
        return pNext + QSFormatFixed(pNext, c_nMaxFixed, double(fValue), 6);

    *pNext = '-';
    pNext += std::signbit(fValue);
    // A float has 24 bits and a million 20, so their product is exact in a double, and rounding it to a whole
    // number, ties to even, is the correct rounding of the decimal text. The sum rounds so: it lies where
    // doubles are whole numbers, and its low bits are the one that is looked for.
    constexpr double c_fWhole = 4503599627370496.0; // 2^52
    const double fSum = std::fabs(double(fValue)) * 1000000.0 + c_fWhole;
    const uint64_t nMillionths = std::bit_cast<uint64_t>(fSum) & ((uint64_t(1) << 52) - 1);
    const auto nDecimals = static_cast<uint32_t>(nMillionths % 1000000);
    pNext = PutWhole(pNext, nMillionths / 1000000);
    *pNext++ = '.';
    pNext = PutTwoDigits(pNext, nDecimals / 10000);
    pNext = PutTwoDigits(pNext, nDecimals / 100 % 100);
    return PutTwoDigits(pNext, nDecimals % 100);
}

char* CLineWriter::PutText(char* pNext, std::string_view sText)
{
    for (const char c : sText.substr(0, c_nMaxText))
    {
        if (c == '\0')
            break;
        *pNext++ = c == '"' ? '\'' : c;
    }
    return pNext;
}

void CLineWriter::Flush()
{
    const auto nUsed = static_cast<uint32_t>(m_pNext - m_pBuffer.get());
    if (m_pFile && nUsed > 0)
        m_pFile->WriteBlock(m_pBuffer.get(), nUsed);
    m_pNext = m_pBuffer.get();
}
