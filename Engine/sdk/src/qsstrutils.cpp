#include "qsstrutils.h"

#include "classiclocale.h"
#include "qsassert.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{

int FoldCase(char c)
{
    const int n = static_cast<unsigned char>(c);
    return n >= 'A' && n <= 'Z' ? n + ('a' - 'A') : n;
}

// Order of two pointers of which at least one is null.
int32_t CompareNull(const char* pszStr1, const char* pszStr2)
{
    return int32_t(pszStr1 != nullptr) - int32_t(pszStr2 != nullptr);
}

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Bytes of the UTF-8 sequence that a lead byte begins; 1 for any other byte.
size_t SequenceLength(char c)
{
    const unsigned char n = static_cast<unsigned char>(c);
    if (n >= 0xC2 && n <= 0xDF)
        return 2;
    if ((n & 0xF0) == 0xE0)
        return 3;
    return n >= 0xF0 && n <= 0xF4 ? 4 : 1;
}

} // namespace

void QSStrCpy(char* pszDst, const char* pszSrc, uint32_t nBufferChars)
{
    if (!pszDst || nBufferChars == 0)
    {
        QS_ASSERT_FORCED("QSStrCpy: Invalid destination buffer provided");
        return;
    }
    if (!pszSrc)
    {
        QS_ASSERT_FORCED("QSStrCpy: Invalid source string provided");
        pszSrc = "";
    }
    const size_t nLength = std::strlen(pszSrc);
    QS_ASSERT_TEXT(nBufferChars > nLength, "nBufferChars > QSStrLen(pSrc)",
                   "QSStrCpy : Copy source is truncated");
    const size_t nCopy = nLength < nBufferChars ? nLength : nBufferChars - 1;
    std::memmove(pszDst, pszSrc, nCopy);
    std::memset(pszDst + nCopy, 0, nBufferChars - nCopy);
}

void QSStrCat(char* pszDst, const char* pszSrc, uint32_t nBufferChars)
{
    if (!pszDst || nBufferChars == 0)
    {
        QS_ASSERT_FORCED("QSStrCat: Invalid destination buffer provided");
        return;
    }
    if (!pszSrc)
    {
        QS_ASSERT_FORCED("QSStrCat: Invalid source string provided");
        pszSrc = "";
    }
    // Without a NUL in its size the destination leaves a negative room: nothing is appended, the report is
    // made.
    const size_t nUsed = strnlen(pszDst, nBufferChars);
    const size_t nLength = std::strlen(pszSrc);
    const bool bTerminated = nUsed < nBufferChars;
    const size_t nRoom = bTerminated ? nBufferChars - nUsed - 1 : 0;
    QS_ASSERT_TEXT(bTerminated && nRoom >= nLength, "catLen >= QSStrLen(pSrc)",
                   "QSStrCat : Copy source is truncated");
    if (bTerminated)
    {
        const size_t nCopy = nLength < nRoom ? nLength : nRoom;
        std::memmove(pszDst + nUsed, pszSrc, nCopy);
        pszDst[nUsed + nCopy] = '\0';
    }
    pszDst[nBufferChars - 1] = '\0';
}

int32_t QSVSNPrintF(char* pszDst, uint32_t nBufferChars, const char* pszFormat, va_list args)
{
    if (!pszDst || nBufferChars == 0)
    {
        QS_ASSERT_FORCED("QSVSNPrintF: Invalid destination buffer provided");
        return -1;
    }
    if (!pszFormat)
    {
        QS_ASSERT_FORCED("QSVSNPrintF: Invalid source string provided");
        pszFormat = "";
    }
    const CClassicLocale locale;
    pszDst[0] = '\0';
    const int nLength = std::vsnprintf(pszDst, nBufferChars, pszFormat, args);
    pszDst[nBufferChars - 1] = '\0';
    return nLength < 0 || uint32_t(nLength) > nBufferChars ? -1 : int32_t(nLength);
}

int32_t QSSNPrintF(char* pszDst, uint32_t nBufferChars, const char* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    const int32_t nResult = QSVSNPrintF(pszDst, nBufferChars, pszFormat, args);
    va_end(args);
    return nResult;
}

int32_t QSStrCmp(const char* pszStr1, const char* pszStr2)
{
    QS_ASSERT_MSG(pszStr1 && pszStr2, "Error: Invalid input to QSStrCmp");
    if (!pszStr1 || !pszStr2)
        return CompareNull(pszStr1, pszStr2);
    const int n = std::strcmp(pszStr1, pszStr2);
    return int32_t(n > 0) - int32_t(n < 0);
}

int32_t QSStrICmp(const char* pszStr1, const char* pszStr2)
{
    QS_ASSERT_MSG(pszStr1 && pszStr2, "Error: Invalid input to QSStrICmp");
    if (!pszStr1 || !pszStr2)
        return CompareNull(pszStr1, pszStr2);
    for (;; ++pszStr1, ++pszStr2)
    {
        const int nDifference = *pszStr1 == *pszStr2 ? 0 : FoldCase(*pszStr1) - FoldCase(*pszStr2);
        if (nDifference != 0 || *pszStr1 == '\0')
            return nDifference;
    }
}

bool QSStrIEquals(const char* pszStr1, const char* pszStr2)
{
    return QSStrICmp(pszStr1, pszStr2) == 0;
}

int32_t FindExtension(const char* pszPath)
{
    if (!pszPath)
        return -1;
    for (size_t n = std::strlen(pszPath); n-- > 0;)
    {
        if (pszPath[n] == '.')
            return int32_t(n) + 1;
        if (pszPath[n] == '/' || pszPath[n] == '\\')
            return -1;
    }
    return -1;
}

std::string_view QSTrim(std::string_view sText)
{
    constexpr std::string_view c_sBlanks = " \t\n\v\f\r";
    const size_t nFirst = sText.find_first_not_of(c_sBlanks);
    if (nFirst == std::string_view::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(c_sBlanks) - nFirst + 1);
}

std::string CutAtCharacter(std::string_view sText, size_t nMaxBytes)
{
    if (sText.size() <= nMaxBytes)
        return std::string(sText);
    // Only a whole sequence that straddles the cut gives way: text in another code page is cut at bytes.
    size_t nCut = nMaxBytes;
    for (size_t nBack = 1; nBack <= 3 && nBack <= nMaxBytes; ++nBack)
    {
        const size_t nLead = nMaxBytes - nBack;
        const size_t nLength = SequenceLength(sText[nLead]);
        if (nLength == 1 && IsContinuation(sText[nLead]))
            continue;
        if (nLength > nBack && nLead + nLength <= sText.size() &&
            std::all_of(sText.begin() + static_cast<std::ptrdiff_t>(nLead + 1),
                        sText.begin() + static_cast<std::ptrdiff_t>(nLead + nLength), IsContinuation))
            nCut = nLead;
        break;
    }
    return std::string(sText.substr(0, nCut));
}
