#include "shared/sourcecontrol/ClassId.h"

namespace
{

constexpr std::string_view c_sForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
constexpr std::string_view c_sDigits = "0123456789ABCDEF";

// -1 for what is no hexadecimal digit.
int DigitOf(char c)
{
    if (c >= 'a' && c <= 'f')
        c = static_cast<char>(c - 'a' + 'A');
    const size_t nPlace = c_sDigits.find(c);
    return nPlace == std::string_view::npos ? -1 : static_cast<int>(nPlace);
}

} // namespace

CClassId CClassId::FromText(std::string_view sText)
{
    CClassId id;
    if (sText.size() != c_sForm.size())
        return CClassId();
    size_t nDigit = 0;
    for (size_t i = 0; i < c_sForm.size(); ++i)
    {
        if (c_sForm[i] != 'x')
        {
            if (sText[i] != c_sForm[i])
                return CClassId();
            continue;
        }
        const int nValue = DigitOf(sText[i]);
        if (nValue < 0)
            return CClassId();
        uint8_t& nByte = id.m_Bytes[nDigit++ / 2];
        nByte = static_cast<uint8_t>(nByte << 4 | nValue);
    }
    return id;
}

std::string CClassId::ToText() const
{
    std::string sText(c_sForm);
    size_t nDigit = 0;
    for (char& c : sText)
    {
        if (c != 'x')
            continue;
        const uint8_t nByte = m_Bytes[nDigit / 2];
        c = c_sDigits[nDigit++ % 2 == 0 ? nByte >> 4 : nByte & 0xF];
    }
    return sText;
}
