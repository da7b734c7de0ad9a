#include "sys/win/krstrconv.h"

#include "qsassert.h"

#include <cstddef>
#include <new>

static_assert(sizeof(wchar_t) == 4, "a wide character holds a whole code point");

namespace
{

constexpr uint32_t c_nUtf8 = 65001;
constexpr size_t c_nIllFormed = size_t(-1);

bool IsCodePoint(uint32_t n)
{
    return n <= 0x10FFFF && (n < 0xD800 || n > 0xDFFF);
}

// Bytes of one code point. pszOut null only counts.
size_t PutUtf8(uint32_t n, char* pszOut)
{
    const size_t nLength = n < 0x80 ? 1 : n < 0x800 ? 2 : n < 0x10000 ? 3 : 4;
    if (!pszOut)
        return nLength;
    static constexpr uint32_t c_Lead[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    for (size_t i = nLength; i-- > 1; n >>= 6)
        pszOut[i] = char(0x80 | (n & 0x3F));
    pszOut[0] = char(c_Lead[nLength] | n);
    return nLength;
}

// Takes one code point; false on a byte that can't stand there, an overlong form, or no code point.
bool TakeUtf8(const char*& psz, uint32_t& nPoint)
{
    const uint32_t nLead = static_cast<unsigned char>(*psz++);
    if (nLead < 0x80)
    {
        nPoint = nLead;
        return true;
    }
    const int nMore = nLead >= 0xF0 ? 3 : nLead >= 0xE0 ? 2 : 1;
    if (nLead < 0xC2 || nLead > 0xF4)
        return false;
    nPoint = nLead & (0x3Fu >> nMore);
    for (int i = 0; i < nMore; ++i, ++psz)
    {
        const uint32_t nByte = static_cast<unsigned char>(*psz); // the NUL at the end stops here
        if ((nByte & 0xC0) != 0x80)
            return false;
        nPoint = nPoint << 6 | (nByte & 0x3F);
    }
    static constexpr uint32_t c_Least[] = {0, 0x80, 0x800, 0x10000};
    return nPoint >= c_Least[nMore] && IsCodePoint(nPoint);
}

// Length of the converted text without its NUL, which is written to pszOut unless null.
size_t ToNarrow(const wchar_t* psz, char* pszOut)
{
    size_t nLength = 0;
    for (; *psz; ++psz)
    {
        const uint32_t nPoint = uint32_t(*psz); // NOLINT(bugprone-signed-char-misuse): it is a wide one
        if (!IsCodePoint(nPoint))
            return c_nIllFormed;
        nLength += PutUtf8(nPoint, pszOut ? pszOut + nLength : nullptr);
    }
    if (pszOut)
        pszOut[nLength] = '\0';
    return nLength;
}

size_t ToWide(const char* psz, wchar_t* pszOut)
{
    size_t nLength = 0;
    for (; *psz; ++nLength)
    {
        uint32_t nPoint = 0;
        if (!TakeUtf8(psz, nPoint))
            return c_nIllFormed;
        if (pszOut)
            pszOut[nLength] = wchar_t(nPoint);
    }
    if (pszOut)
        pszOut[nLength] = 0;
    return nLength;
}

bool IsKnownCodePage(uint32_t nCodePage)
{
    return nCodePage == 0 || nCodePage == c_nUtf8;
}

// The inline buffer, or one from the heap for a longer text; null without memory.
template <typename T>
T* ChooseBuffer(size_t nLength, T* pInline, std::unique_ptr<T[]>& pHeap)
{
    if (nLength < c_nStrConvInline)
        return pInline;
    pHeap.reset(new (std::nothrow) T[nLength + 1]);
    return pHeap.get();
}

} // namespace

void KRW2AEX::Init(const wchar_t* pszSource, uint32_t nCodePage)
{
    if (!pszSource)
        return;
    m_szInline[0] = '\0';
    m_pszText = m_szInline;
    const size_t nLength = IsKnownCodePage(nCodePage) ? ToNarrow(pszSource, nullptr) : c_nIllFormed;
    if (nLength == c_nIllFormed)
    {
        QS_ASSERT_FORCED("[KRW2AEX::Init] : WideCharToMultiByte Failed");
        return;
    }
    char* pszBuffer = ChooseBuffer(nLength, m_szInline, m_pHeap);
    if (!pszBuffer)
    {
        QS_ASSERT_FORCED("[KRW2AEX::Init] : Out of Memory");
        return;
    }
    ToNarrow(pszSource, pszBuffer);
    m_pszText = pszBuffer;
}

void KRA2WEX::Init(const char* pszSource, uint32_t nCodePage)
{
    if (!pszSource)
        return;
    m_szInline[0] = 0;
    m_pszText = m_szInline;
    const size_t nLength = IsKnownCodePage(nCodePage) ? ToWide(pszSource, nullptr) : c_nIllFormed;
    if (nLength == c_nIllFormed)
    {
        QS_ASSERT_FORCED("[KRA2WEX::Init] : MultiByteToWideChar Failed");
        return;
    }
    wchar_t* pszBuffer = ChooseBuffer(nLength, m_szInline, m_pHeap);
    if (!pszBuffer)
    {
        QS_ASSERT_FORCED("[KRA2WEX::Init] : Out of Memory");
        return;
    }
    ToWide(pszSource, pszBuffer);
    m_pszText = pszBuffer;
}
