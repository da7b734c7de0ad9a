#include "app/JournalText.h"

#include <algorithm>
#include <utility>

#include "app/StoreNames.h"
#include "model/MakeOrNull.h"
#include "qsnumber.h"

namespace
{

constexpr std::string_view c_sHead = "journal 1";
constexpr std::string_view c_sStep = "step";
constexpr size_t c_nMaxLine = 80; // of a record

std::string HashOfRecord(std::string_view sKind, std::string_view sBody)
{
    std::string sBoth(sKind);
    sBoth += '\n';
    sBoth += sBody;
    return HashOf(sBoth);
}

std::string WriteRecord(std::string_view sKind, const std::string& sBody)
{
    std::string sRecord(sKind);
    sRecord += ' ' + std::to_string(sBody.size()) + ' ' + HashOfRecord(sKind, sBody) + '\n';
    return sRecord + sBody + '\n';
}

// Takes the next record off the text. False: it isn't whole, and the text stays.
bool TakeRecord(std::string_view& sText, std::string_view sKind, std::string_view& sBody)
{
    const std::string_view sLine = sText.substr(0, std::min(sText.find('\n'), c_nMaxLine));
    if (!sLine.starts_with(sKind) || sLine.size() <= sKind.size() + 2 + c_nHashDigits)
        return false;
    const size_t nHash = sLine.size() - c_nHashDigits;
    const std::string_view sNumber = sLine.substr(sKind.size() + 1, nHash - sKind.size() - 2);
    int64_t nLength = 0;
    if (sLine[sKind.size()] != ' ' || sLine[nHash - 1] != ' ' || !QSParseInt(sNumber, nLength) ||
        nLength < 0 || sNumber != std::to_string(nLength))
        return false;
    const std::string_view sRest = sText.substr(std::min(sLine.size() + 1, sText.size()));
    const auto nSize = static_cast<uint64_t>(nLength);
    if (sRest.size() <= nSize || sRest[nSize] != '\n' || sText[sLine.size()] != '\n' ||
        HashOfRecord(sKind, sRest.substr(0, nSize)) != sLine.substr(nHash))
        return false;
    sBody = sRest.substr(0, nSize);
    sText = sRest.substr(nSize + 1);
    return true;
}

// A text within a line: paths hold whatever their makers liked.
std::string Escaped(std::string_view sText)
{
    std::string sLine;
    for (const char c : sText)
    {
        if (static_cast<unsigned char>(c) < ' ' || c == '%')
            sLine += '%' + HexDigits(static_cast<unsigned char>(c), 2);
        else
            sLine += c;
    }
    return sLine;
}

int DigitOf(char c)
{
    return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : 16;
}

bool Unescape(std::string_view sLine, std::string& sText)
{
    sText.clear();
    for (size_t i = 0; i < sLine.size(); ++i)
    {
        if (sLine[i] != '%')
        {
            sText += sLine[i];
            continue;
        }
        const int nHigh = i + 2 < sLine.size() ? DigitOf(sLine[i + 1]) : 16;
        const int nLow = nHigh < 16 ? DigitOf(sLine[i + 2]) : 16;
        if (nLow >= 16)
            return false;
        sText += static_cast<char>(nHigh * 16 + nLow);
        i += 2;
    }
    return true;
}

// A line "NAME TEXT", or "NAME" without one.
bool TakeText(std::string_view& sBody, std::string_view sName, std::string& sText)
{
    const size_t nEnd = sBody.find('\n');
    std::string_view sLine = sBody.substr(0, nEnd);
    if (nEnd == std::string_view::npos || !sLine.starts_with(sName))
        return false;
    sLine.remove_prefix(sName.size());
    if (!sLine.empty() && sLine[0] != ' ')
        return false;
    sBody.remove_prefix(nEnd + 1);
    return Unescape(sLine.substr(std::min<size_t>(1, sLine.size())), sText);
}

bool TakeNumber(std::string_view& sBody, std::string_view sName, uint64_t& nNumber)
{
    std::string sText;
    int64_t n = 0;
    if (!TakeText(sBody, sName, sText) || !QSParseInt(sText, n) || n < 0)
        return false;
    nNumber = static_cast<uint64_t>(n);
    return true;
}

void AddLine(std::string& sBody, std::string_view sName, std::string_view sText)
{
    sBody += sName;
    sBody += sText.empty() ? "" : " ";
    sBody += Escaped(sText) + '\n';
}

// The fields in their order, for the reader as for the writer.
template <class THead, class TText, class TNumber>
bool ForEachField(THead& head, const TText& text, const TNumber& number)
{
    return text("library", head.m_sLibrary) && number("size", head.m_nSize) && text("hash", head.m_sHash) &&
           text("locator", head.m_sLocator) && text("plug-in", head.m_sPlugin) &&
           number("version", head.m_nPluginVersion) && text("types", head.m_sTypes) &&
           text("base", head.m_sBase) && text("origin", head.m_sOrigin) &&
           number("before", head.m_nStepsBefore) && number("time", head.m_nLastTime) &&
           text("label", head.m_sLastLabel) && text("effect", head.m_sLastEffect);
}

bool ReadHead(std::string_view sBody, CJournalHead& head)
{
    return ForEachField(
               head,
               [&](std::string_view sName, std::string& sText) { return TakeText(sBody, sName, sText); },
               [&](std::string_view sName, uint64_t& n) { return TakeNumber(sBody, sName, n); }) &&
           sBody.empty();
}

} // namespace

std::string WriteJournalHead(const CJournalHead& head)
{
    std::string sBody;
    const auto text = [&](std::string_view sName, const std::string& sText)
    {
        AddLine(sBody, sName, sText);
        return true;
    };
    ForEachField(head, text,
                 [&](std::string_view sName, uint64_t n) { return text(sName, std::to_string(n)); });
    return WriteRecord(c_sHead, sBody);
}

std::string WriteJournalStep(uint64_t nTime, const std::string& sLabel, const std::string& sEffect,
                             std::string_view sChange)
{
    std::string sBody;
    AddLine(sBody, "time", std::to_string(nTime));
    AddLine(sBody, "label", sLabel);
    AddLine(sBody, "effect", sEffect);
    sBody += sChange;
    return WriteRecord(c_sStep, sBody);
}

bool ReadJournalText(std::string_view sText, CJournalText& journal)
{
    journal = CJournalText();
    std::string_view sRest = sText;
    std::string_view sBody;
    bool bHead = false;
    const auto read = [&]
    {
        bHead = TakeRecord(sRest, c_sHead, sBody) && ReadHead(sBody, journal.m_Head);
        while (bHead)
        {
            journal.m_nWhole = sText.size() - sRest.size();
            CJournalStep step;
            if (!TakeRecord(sRest, c_sStep, sBody) || !TakeNumber(sBody, "time", step.m_nTime) ||
                !TakeText(sBody, "label", step.m_sLabel) || !TakeText(sBody, "effect", step.m_sEffect))
                break;
            step.m_Change = sBody;
            journal.m_Steps.push_back(std::move(step));
        }
    };
    return TryAllocating(read) && bHead;
}
