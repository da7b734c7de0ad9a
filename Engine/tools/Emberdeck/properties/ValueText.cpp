#include "properties/ValueText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "model/PropData.h"
#include "qsnumber.h"

namespace
{

constexpr std::string_view c_sBlanks = " \t\n\v\f\r";

// "%W.Nf": only a number that isn't finite is ever shorter than the width.
std::string FixedField(double fValue, size_t nWidth, int nDecimals)
{
    std::string sText = QSFixedText(fValue, nDecimals);
    if (sText.size() < nWidth)
        sText.insert(0, nWidth - sText.size(), ' ');
    return sText;
}

} // namespace

std::string IntText(int32_t nValue)
{
    return std::to_string(nValue);
}

std::string FloatText(double fValue)
{
    return FixedField(fValue, 6, 4);
}

std::string VectorText(double fValue)
{
    return FixedField(fValue, 4, 3);
}

std::string AlphaText(uint32_t nAlpha)
{
    return FloatText(static_cast<float>(nAlpha) * c_fOneOver255);
}

uint32_t AlphaFromText(const std::string& sText)
{
    return static_cast<uint32_t>(std::clamp(QSTextToDouble(sText.c_str()) * 255.0, 0.0, 255.0));
}

std::string NumberEntryText(float fValue)
{
    char aText[64];
    const std::to_chars_result result = std::to_chars(
        aText, aText + sizeof(aText), static_cast<double>(fValue), std::chars_format::general, 6);
    return std::string(aText, result.ptr);
}

bool ParseNumberEntry(const std::string& sText, float& fValue)
{
    const size_t nFirst = sText.find_first_not_of(c_sBlanks);
    if (nFirst == std::string::npos)
        return false;
    const std::string sNumber = sText.substr(nFirst, sText.find_last_not_of(c_sBlanks) - nFirst + 1);
    // Only for where the number ends: one that is too small for a double is no failure.
    const size_t nSign = sNumber[0] == '+' || sNumber[0] == '-' ? 1 : 0;
    const char* pEnd = sNumber.data() + sNumber.size();
    if (sNumber.find_first_not_of("0123456789.", nSign) == nSign)
        return false;
    double fIgnored = 0.0;
    const std::from_chars_result result =
        std::from_chars(sNumber.data() + nSign, pEnd, fIgnored, std::chars_format::general);
    if (result.ec == std::errc::invalid_argument || result.ptr != pEnd)
        return false;
    const float fNumber = QSTextToFloat(sNumber.c_str());
    if (!std::isfinite(fNumber))
        return false;
    fValue = fNumber;
    return true;
}
