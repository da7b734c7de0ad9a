#include "qsamgr/qsaconverter.h"

#include <array>

#include "qsassert.h"

namespace
{
enum ECharClass : uint8_t
{
    CLASS_OTHER,
    CLASS_WHITE,
    CLASS_DIGIT,
    CLASS_LETTER,
    CLASS_SIGN,
    CLASS_POINT,
    CLASS_END,
};

constexpr std::array<ECharClass, 128> MakeCharClasses()
{
    std::array<ECharClass, 128> classes{};
    for (uint32_t c = 0x09; c <= 0x0D; ++c)
        classes[c] = CLASS_WHITE;
    classes[' '] = CLASS_WHITE;
    for (uint32_t c = '0'; c <= '9'; ++c)
        classes[c] = CLASS_DIGIT;
    for (uint32_t c = 'a'; c <= 'z'; ++c)
        classes[c] = classes[c - 'a' + 'A'] = CLASS_LETTER;
    classes['+'] = classes['-'] = CLASS_SIGN;
    classes['.'] = CLASS_POINT;
    classes[0] = CLASS_END;
    return classes;
}

constexpr std::array<ECharClass, 128> c_CharClasses = MakeCharClasses();

ECharClass ClassOf(char c)
{
    const auto nByte = static_cast<unsigned char>(c);
    return nByte < c_CharClasses.size() ? c_CharClasses[nByte] : CLASS_OTHER;
}
} // namespace

int32_t CQSAConverter::StrToInt(const char* pszValue)
{
    if (pszValue == nullptr)
        return 0;
    while (ClassOf(*pszValue) == CLASS_WHITE)
        ++pszValue;

    const bool bMinus = *pszValue == '-';
    if (ClassOf(*pszValue) == CLASS_SIGN)
        ++pszValue;

    uint32_t nValue = 0; // unsigned, where wrapping is defined
    for (; ClassOf(*pszValue) == CLASS_DIGIT; ++pszValue)
        nValue = nValue * 10 + static_cast<uint32_t>(*pszValue - '0');
    return static_cast<int32_t>(bMinus ? 0 - nValue : nValue);
}

uint32_t CQSAConverter::IntToStr(int32_t nValue, char* pszBuffer, uint32_t nBufferLen)
{
    QS_ASSERT(pszBuffer);
    QS_ASSERT(nBufferLen > 0);
    if (pszBuffer == nullptr || nBufferLen == 0)
        return 0;

    uint32_t nStored = 0;
    auto nMagnitude = static_cast<uint32_t>(nValue);
    if (nValue < 0)
    {
        nMagnitude = 0 - nMagnitude;
        if (nBufferLen > 1)
            pszBuffer[nStored++] = '-';
    }

    uint32_t nPower = 1;
    while (nMagnitude / nPower > 9)
        nPower *= 10;
    for (; nPower != 0 && nStored < nBufferLen - 1; nPower /= 10)
        pszBuffer[nStored++] = static_cast<char>('0' + nMagnitude / nPower % 10);
    pszBuffer[nStored] = '\0';
    return nStored;
}
