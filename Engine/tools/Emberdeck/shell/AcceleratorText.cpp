#include "shell/MenuDecorator.h"

#include "qsnumber.h"

namespace
{

struct CKeyName
{
    uint16_t m_nKey;
    const char* m_pszName;
};

constexpr CKeyName c_KeyNames[] = {
    {8, "Backspace"}, {9, "Tab"},        {12, "Clear"},  {13, "Enter"}, {27, "ESC"},     {32, "Space"},
    {33, "Page Up"},  {34, "Page Down"}, {35, "End"},    {36, "Home"},  {37, "Left"},    {38, "Up"},
    {39, "Right"},    {40, "Down"},      {41, "Select"}, {42, "Print"}, {43, "Execute"}, {44, "PrtScrn"},
    {45, "Insert"},   {46, "Delete"},    {47, "Help"},
};

// The characters of the keys that bear one, as the usual layout has them. Letters and digits are their own.
struct CKeyChar
{
    uint16_t m_nKey;
    char m_cChar;
};

constexpr CKeyChar c_KeyChars[] = {
    {0x6A, '*'}, {0x6B, '+'}, {0x6D, '-'}, {0x6E, '.'}, {0x6F, '/'}, {0xBA, ';'},  {0xBB, '='}, {0xBC, ','},
    {0xBD, '-'}, {0xBE, '.'}, {0xBF, '/'}, {0xC0, '`'}, {0xDB, '['}, {0xDC, '\\'}, {0xDD, ']'}, {0xDE, '\''},
};

std::string UpperChar(uint16_t nChar)
{
    if (nChar < 0x21 || nChar > 0x7E)
        return std::string();
    return std::string(1, static_cast<char>(nChar >= 'a' && nChar <= 'z' ? nChar - 'a' + 'A' : nChar));
}

std::string KeyName(uint16_t nKey)
{
    for (const CKeyName& name : c_KeyNames)
    {
        if (name.m_nKey == nKey)
            return name.m_pszName;
    }
    if (nKey >= c_nKeyF1 && nKey <= c_nKeyF24)
        return QSFormat("F%d", nKey - c_nKeyF1 + 1);
    if ((nKey >= '0' && nKey <= '9') || (nKey >= 'A' && nKey <= 'Z'))
        return std::string(1, static_cast<char>(nKey));
    if (nKey >= 0x60 && nKey <= 0x69) // of the number pad
        return std::string(1, static_cast<char>('0' + nKey - 0x60));
    for (const CKeyChar& key : c_KeyChars)
    {
        if (key.m_nKey == nKey)
            return std::string(1, key.m_cChar);
    }
    return std::string();
}

} // namespace

bool GetAcceleratorText(const CAccelerator& accelerator, std::string& sText)
{
    sText.clear();
    const std::string sKey =
        accelerator.m_bCharacter ? UpperChar(accelerator.m_nKey) : KeyName(accelerator.m_nKey);
    if (sKey.empty())
        return false;
    if (accelerator.m_bCtrl)
        sText += "Ctrl+";
    if (accelerator.m_bShift)
        sText += "Shift+";
    if (accelerator.m_bAlt)
        sText += "Alt+";
    sText += sKey;
    return true;
}
