#include "formats/LineWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "qsamgr/qsafile.h"
#include "qsassert.h"
#include "qsnumber.h"

namespace
{

// Longest "%.6f" of a float: 39 digits, sign, point and six decimals.
constexpr size_t c_nMaxFixed = 64;
constexpr size_t c_nMaxInt = 16;

// Six digits, from the last one back.
void PutSixDigits(char* pszDst, uint32_t nValue)
{
    for (int i = 5; i >= 0; --i)
    {
        pszDst[i] = static_cast<char>('0' + nValue % 10);
        nValue /= 10;
    }
}

// A float has 24 bits and a million 20, so their product is exact in a double, and rounding it to a whole
// number, ties to even, is the correct rounding of the decimal text. Gives the end of the text.
char* PutFixed(char* pszDst, float fValue)
{
    constexpr float c_fLimit = 1e9f;
    if (!(std::fabs(fValue) < c_fLimit))
        return pszDst + QSFormatFixed(pszDst, c_nMaxFixed, double(fValue), 6);

    if (std::signbit(fValue))
        *pszDst++ = '-';
    const uint64_t nMillionths = static_cast<uint64_t>(std::llrint(std::fabs(double(fValue)) * 1000000.0));
    pszDst = std::to_chars(pszDst, pszDst + c_nMaxInt, nMillionths / 1000000).ptr;
    *pszDst++ = '.';
    PutSixDigits(pszDst, static_cast<uint32_t>(nMillionths % 1000000));
    return pszDst + 6;
}

} // namespace

CLineWriter::CLineWriter(CQSAFile* pFile)
    : m_pFile(pFile),
      m_pBuffer(std::make_unique_for_overwrite<char[]>(c_nBufferSize))
{
}

void CLineWriter::Line(uint32_t nDepth, std::string_view sText)
{
    Begin(nDepth);
    Add(sText);
    End();
}

void CLineWriter::IntLine(uint32_t nDepth, std::string_view sName, int32_t nValue)
{
    Begin(nDepth);
    Add("( ");
    Add(sName);
    Add(" ");
    AddInt(nValue);
    Add(" )");
    End();
}

void CLineWriter::TextLine(uint32_t nDepth, std::string_view sName, std::string_view sText)
{
    Begin(nDepth);
    Add("( ");
    Add(sName);
    Add(" ");
    AddText(sText);
    Add(" )");
    End();
}

void CLineWriter::Begin(uint32_t nDepth)
{
    m_nMaxDepth = std::max(m_nMaxDepth, nDepth);
    PutTabs(nDepth);
    if (c_nBufferSize - m_nUsed < c_nMaxLine)
        Flush();
}

void CLineWriter::PutTabs(uint32_t nCount)
{
    while (nCount > 0)
    {
        if (m_nUsed == c_nBufferSize)
            Flush();
        const size_t nPart = std::min<size_t>(nCount, c_nBufferSize - m_nUsed);
        std::memset(m_pBuffer.get() + m_nUsed, '\t', nPart);
        m_nUsed += nPart;
        nCount -= static_cast<uint32_t>(nPart);
    }
}

void CLineWriter::Add(std::string_view sPiece)
{
    const size_t nPart = std::min(sPiece.size(), c_nBufferSize - m_nUsed);
    QS_ASSERT(nPart == sPiece.size());
    std::memcpy(m_pBuffer.get() + m_nUsed, sPiece.data(), nPart);
    m_nUsed += nPart;
}

void CLineWriter::AddInt(int32_t nValue)
{
    char szText[c_nMaxInt];
    const char* pszEnd = std::to_chars(szText, szText + sizeof(szText), nValue).ptr;
    Add({szText, static_cast<size_t>(pszEnd - szText)});
}

void CLineWriter::AddFixed(float fValue)
{
    char szText[c_nMaxFixed];
    const char* pszEnd = PutFixed(szText, fValue);
    Add({szText, static_cast<size_t>(pszEnd - szText)});
}

void CLineWriter::AddText(std::string_view sText)
{
    sText = sText.substr(0, std::min(sText.find('\0'), c_nMaxText));
    Add("\"");
    const size_t nStart = m_nUsed;
    Add(sText);
    std::replace(m_pBuffer.get() + nStart, m_pBuffer.get() + m_nUsed, '"', '\'');
    Add("\"");
}

void CLineWriter::End()
{
    Add("\r\n");
}

void CLineWriter::Flush()
{
    if (m_pFile && m_nUsed > 0)
        m_pFile->WriteBlock(m_pBuffer.get(), static_cast<uint32_t>(m_nUsed));
    m_nUsed = 0;
}
