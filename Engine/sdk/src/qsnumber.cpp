#include "qsnumber.h"

#include "classiclocale.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

namespace
{

__extension__ typedef unsigned __int128 Uint128;

constexpr int c_nMaxDecimals = 64;
constexpr int c_nMaxFixed = 384; // 309 digits, sign, point, decimals, NUL

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

const char* SkipBlanks(const char* psz)
{
    while (*psz == ' ' || (*psz >= '\t' && *psz <= '\r'))
        ++psz;
    return psz;
}

// Skips blanks and takes one sign; true for a minus.
bool TakeSign(const char*& psz)
{
    psz = SkipBlanks(psz);
    const bool bMinus = *psz == '-';
    if (bMinus || *psz == '+')
        ++psz;
    return bMinus;
}

// The digits of a decimal number, read once.
struct CDecimal
{
    const char* m_pBegin = nullptr;
    const char* m_pEnd = nullptr; // behind the exponent, if there is a whole one
    uint64_t m_nMantissa = 0;     // the significant digits, when all fit
    int64_t m_nExponent = 0;      // power of ten of the last digit in m_nMantissa
    int64_t m_nMagnitude = 0;     // power of ten just above the first significant digit
    bool m_bExact = true;         // m_nMantissa holds every digit
    bool m_bAny = false;          // there was a digit
};

void TakeDigit(CDecimal& decimal, char c, int& nSignificant)
{
    decimal.m_bAny = true;
    if (nSignificant == 0 && c == '0')
        return;
    if (++nSignificant <= 18)
        decimal.m_nMantissa = decimal.m_nMantissa * 10 + uint64_t(c - '0');
    else
        decimal.m_bExact = false;
}

// Behind an "e" without digits the number has ended before it.
void TakeExponent(CDecimal& decimal, const char* psz)
{
    if (*psz != 'e' && *psz != 'E')
        return;
    ++psz;
    const bool bMinus = *psz == '-';
    if (bMinus || *psz == '+')
        ++psz;
    if (!IsDigit(*psz))
        return;
    int64_t nExponent = 0;
    for (; IsDigit(*psz); ++psz)
    {
        if (nExponent < 100000000)
            nExponent = nExponent * 10 + (*psz - '0');
    }
    nExponent = bMinus ? -nExponent : nExponent;
    decimal.m_nExponent += nExponent;
    decimal.m_nMagnitude += nExponent;
    decimal.m_pEnd = psz;
}

CDecimal ScanDecimal(const char* psz)
{
    CDecimal decimal;
    decimal.m_pBegin = psz;
    int nSignificant = 0;
    for (; IsDigit(*psz); ++psz)
    {
        TakeDigit(decimal, *psz, nSignificant);
        decimal.m_nMagnitude += nSignificant > 0;
    }
    if (*psz == '.')
    {
        for (++psz; IsDigit(*psz); ++psz)
        {
            TakeDigit(decimal, *psz, nSignificant);
            decimal.m_nMagnitude -= nSignificant == 0;
            --decimal.m_nExponent;
        }
    }
    decimal.m_pEnd = psz;
    if (decimal.m_bAny)
        TakeExponent(decimal, psz);
    return decimal;
}

// All exact.
constexpr double c_PowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A number of few digits without an exponent, as nearly all are: what ConvertDecimal gives for it. False for
// any other.
bool ConvertPlain(const char* psz, double& fValue)
{
    constexpr ptrdiff_t c_nMaxDigits = 18; // these can't wrap
    uint64_t nMantissa = 0;
    const char* const pBegin = psz;
    for (; IsDigit(*psz); ++psz)
        nMantissa = nMantissa * 10 + uint64_t(*psz - '0');
    ptrdiff_t nDigits = psz - pBegin;
    ptrdiff_t nDecimals = 0;
    if (*psz == '.')
    {
        const char* const pDecimals = ++psz;
        for (; IsDigit(*psz); ++psz)
            nMantissa = nMantissa * 10 + uint64_t(*psz - '0');
        nDecimals = psz - pDecimals;
        nDigits += nDecimals;
    }
    if (nDigits == 0 || nDigits > c_nMaxDigits || nMantissa > uint64_t(1) << 53 || *psz == 'e' || *psz == 'E')
        return false;
    fValue = double(nMantissa) / c_PowersOfTen[nDecimals];
    return true;
}

double ConvertDecimal(const CDecimal& decimal)
{
    // Both factors are exact in a double, so that the one operation rounds correctly.
    if (decimal.m_bExact && decimal.m_nMantissa <= (uint64_t(1) << 53) && decimal.m_nExponent >= -22 &&
        decimal.m_nExponent <= 22)
    {
        const double fMantissa = double(decimal.m_nMantissa);
        return decimal.m_nExponent < 0 ? fMantissa / c_PowersOfTen[-decimal.m_nExponent]
                                       : fMantissa * c_PowersOfTen[decimal.m_nExponent];
    }
    double fValue = 0.0;
    const auto result = std::from_chars(decimal.m_pBegin, decimal.m_pEnd, fValue);
    if (result.ec == std::errc::result_out_of_range)
        return decimal.m_nMagnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return result.ec == std::errc() ? fValue : 0.0;
}

// The value times 10^nDecimals as a whole number, correctly rounded; false when it is too large for this way.
bool ScaleExactly(double fValue, int nDecimals, uint64_t nPower, Uint128& nScaled)
{
    const uint64_t nBits = std::bit_cast<uint64_t>(fValue);
    const int nField = int(nBits >> 52) & 0x7FF;
    const uint64_t nMantissa = (nBits & ((uint64_t(1) << 52) - 1)) | (nField ? uint64_t(1) << 52 : 0);
    const int nShift = (nField ? nField : 1) - 1075; // value = mantissa * 2^shift
    if (nDecimals > 9 || nShift > 10)
        return false;

    const Uint128 nProduct = Uint128(nMantissa) * nPower; // below 2^83
    if (nShift >= 0)
    {
        nScaled = nProduct << nShift;
        return true;
    }
    if (nShift <= -100)
    {
        nScaled = 0; // below a half
        return true;
    }
    nScaled = nProduct >> -nShift;
    const Uint128 nRest = nProduct - (nScaled << -nShift);
    const Uint128 nHalf = Uint128(1) << (-nShift - 1);
    if (nRest > nHalf || (nRest == nHalf && (nScaled & 1) != 0))
        ++nScaled;
    return true;
}

// The fast way for values and decimals of a usual size. Gives the end of the text, or null.
char* WriteScaled(char* p, char* pEnd, double fValue, int nDecimals)
{
    static constexpr uint64_t c_Powers[] = {1,      10,      100,      1000,      10000,
                                            100000, 1000000, 10000000, 100000000, 1000000000};
    if (nDecimals > 9)
        return nullptr;
    const uint64_t nPower = c_Powers[nDecimals];
    Uint128 nScaled = 0;
    if (!ScaleExactly(fValue, nDecimals, nPower, nScaled))
        return nullptr;

    uint64_t nWhole, nFraction;
    if (nScaled >> 64 == 0)
    {
        nWhole = uint64_t(nScaled) / nPower;
        nFraction = uint64_t(nScaled) % nPower;
    }
    else
    {
        nWhole = uint64_t(nScaled / nPower);
        nFraction = uint64_t(nScaled % nPower);
    }
    p = std::to_chars(p, pEnd, nWhole).ptr;
    if (nDecimals > 0)
    {
        *p++ = '.';
        for (int n = nDecimals; n-- > 0; nFraction /= 10)
            p[n] = char('0' + nFraction % 10);
        p += nDecimals;
    }
    return p;
}

// Writes into c_nMaxFixed bytes, without a NUL; gives the end.
char* WriteFixed(char* p, double fValue, int nDecimals)
{
    char* const pEnd = p + c_nMaxFixed;
    if (std::signbit(fValue))
    {
        *p++ = '-';
        fValue = -fValue;
    }
    if (!std::isfinite(fValue))
    {
        const std::string_view sName = std::isnan(fValue) ? "nan" : "inf";
        return std::copy(sName.begin(), sName.end(), p);
    }
    if (char* pDone = WriteScaled(p, pEnd, fValue, nDecimals))
        return pDone;
    return std::to_chars(p, pEnd, fValue, std::chars_format::fixed, nDecimals).ptr;
}

// The first number that rounds to no float: half a unit above the largest.
constexpr double c_fBeyondFloat = 0x1.ffffffp127;

bool HasSign(const std::string& sNumber)
{
    return !sNumber.empty() && (sNumber[0] == '+' || sNumber[0] == '-');
}

std::string Trimmed(std::string_view sText)
{
    constexpr std::string_view sBlanks = " \t\n\v\f\r";
    const size_t nFirst = sText.find_first_not_of(sBlanks);
    if (nFirst == std::string_view::npos)
        return {};
    return std::string(sText.substr(nFirst, sText.find_last_not_of(sBlanks) - nFirst + 1));
}

int LimitDecimals(int nDecimals)
{
    return nDecimals < 0 ? 0 : nDecimals > c_nMaxDecimals ? c_nMaxDecimals : nDecimals;
}

} // namespace

int32_t QSTextToInt(const char* pszText)
{
    if (!pszText)
        return 0;
    const bool bMinus = TakeSign(pszText);
    uint32_t nValue = 0;
    for (; IsDigit(*pszText); ++pszText)
        nValue = nValue * 10 + uint32_t(*pszText - '0');
    return int32_t(bMinus ? 0u - nValue : nValue);
}

int32_t QSTextToNearestInt(const char* pszText)
{
    if (!pszText)
        return 0;
    const bool bMinus = TakeSign(pszText);
    const int64_t nLimit =
        bMinus ? -int64_t(std::numeric_limits<int32_t>::min()) : int64_t(std::numeric_limits<int32_t>::max());
    int64_t nValue = 0;
    for (; IsDigit(*pszText) && nValue < nLimit; ++pszText)
        nValue = std::min(nValue * 10 + (*pszText - '0'), nLimit);
    return static_cast<int32_t>(bMinus ? -nValue : nValue);
}

double QSTextToDouble(const char* pszText)
{
    if (!pszText)
        return 0.0;
    const bool bMinus = TakeSign(pszText);
    double fValue = 0.0;
    if (!ConvertPlain(pszText, fValue))
    {
        const CDecimal decimal = ScanDecimal(pszText);
        if (!decimal.m_bAny)
            return 0.0;
        fValue = ConvertDecimal(decimal);
    }
    return bMinus ? -fValue : fValue;
}

float QSTextToFloat(const char* pszText)
{
    return QSNearestFloat(QSTextToDouble(pszText));
}

float QSNearestFloat(double fValue)
{
    constexpr double fLargest = std::numeric_limits<float>::max();
    if (std::isnan(fValue))
        return 0.0f;
    return float(fValue > fLargest ? fLargest : fValue < -fLargest ? -fLargest : fValue);
}

bool QSParseInt(std::string_view sText, int64_t& nValue)
{
    const std::string sNumber = Trimmed(sText);
    const size_t nSign = HasSign(sNumber) ? 1 : 0;
    if (sNumber.size() == nSign || sNumber.find_first_not_of("0123456789", nSign) != std::string::npos)
        return false;
    int64_t nNumber = 0;
    const char* const pStart = sNumber.data() + (sNumber[0] == '+' ? 1 : 0); // from_chars takes a minus alone
    if (std::from_chars(pStart, sNumber.data() + sNumber.size(), nNumber).ec != std::errc())
        return false;
    nValue = nNumber;
    return true;
}

bool QSParseFloat(std::string_view sText, float& fValue)
{
    const std::string sNumber = Trimmed(sText);
    const char* const pStart = sNumber.data() + (HasSign(sNumber) ? 1 : 0);
    const CDecimal decimal = ScanDecimal(pStart);
    if (!decimal.m_bAny || decimal.m_pEnd != sNumber.data() + sNumber.size())
        return false;
    const double fNumber = QSTextToDouble(sNumber.c_str());
    if (std::fabs(fNumber) >= c_fBeyondFloat)
        return false;
    fValue = QSNearestFloat(fNumber);
    return true;
}

size_t QSFormatFixed(char* pszDst, size_t nSize, double fValue, int nDecimals)
{
    if (!pszDst || nSize == 0)
        return 0;
    char szText[c_nMaxFixed];
    const bool bRoom = nSize > size_t(c_nMaxFixed); // then no second copy is needed
    char* const pText = bRoom ? pszDst : szText;
    size_t nLength = size_t(WriteFixed(pText, fValue, LimitDecimals(nDecimals)) - pText);
    if (!bRoom)
    {
        nLength = nLength < nSize ? nLength : nSize - 1;
        std::memcpy(pszDst, szText, nLength);
    }
    pszDst[nLength] = '\0';
    return nLength;
}

std::string QSFixedText(double fValue, int nDecimals)
{
    char szText[c_nMaxFixed];
    return std::string(szText, WriteFixed(szText, fValue, LimitDecimals(nDecimals)));
}

std::string QSFormat(const char* pszFormat, ...)
{
    if (!pszFormat)
        return {};
    const CClassicLocale locale;
    char szText[512];
    va_list args, again;
    va_start(args, pszFormat);
    va_copy(again, args);
    const int nLength = std::vsnprintf(szText, sizeof szText, pszFormat, args);
    va_end(args);

    std::string sText;
    if (nLength > 0 && size_t(nLength) < sizeof szText)
        sText.assign(szText, size_t(nLength));
    else if (nLength > 0)
    {
        sText.resize(size_t(nLength));
        std::vsnprintf(sText.data(), sText.size() + 1, pszFormat, again);
    }
    va_end(again);
    return sText;
}
