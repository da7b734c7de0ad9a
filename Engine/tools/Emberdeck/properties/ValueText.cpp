#include "properties/ValueText.h"

#include <algorithm>
#include <charconv>

#include "model/PropData.h"
#include "qsnumber.h"

namespace
{

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
