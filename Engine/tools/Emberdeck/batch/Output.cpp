#include "batch/Output.h"

#include <cstdint>
#include <cstdio>

#include "platform/FileProblem.h"

namespace
{
void AppendUtf8(std::string& sOut, uint32_t nCode)
{
    if (nCode < 0x80)
        sOut += static_cast<char>(nCode);
    else if (nCode < 0x800)
    {
        sOut += static_cast<char>(0xC0 | nCode >> 6);
        sOut += static_cast<char>(0x80 | (nCode & 0x3F));
    }
    else
    {
        sOut += static_cast<char>(0xE0 | nCode >> 12);
        sOut += static_cast<char>(0x80 | (nCode >> 6 & 0x3F));
        sOut += static_cast<char>(0x80 | (nCode & 0x3F));
    }
}

// Length of the well-formed sequence at the front, or 0.
size_t Utf8Length(std::string_view s)
{
    const auto at = [&](size_t i) { return i < s.size() ? static_cast<uint8_t>(s[i]) : 0; };
    const auto tail = [&](size_t i) { return (at(i) & 0xC0) == 0x80; };
    const uint8_t c = at(0);
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c < 0xE0)
        return tail(1) ? 2 : 0;
    if (c >= 0xE0 && c < 0xF0)
    {
        const bool bOverlong = c == 0xE0 && at(1) < 0xA0;
        const bool bSurrogate = c == 0xED && at(1) >= 0xA0;
        return tail(1) && tail(2) && !bOverlong && !bSurrogate ? 3 : 0;
    }
    if (c >= 0xF0 && c < 0xF5)
    {
        const bool bOverlong = c == 0xF0 && at(1) < 0x90;
        const bool bBeyond = c == 0xF4 && at(1) >= 0x90;
        return tail(1) && tail(2) && tail(3) && !bOverlong && !bBeyond ? 4 : 0;
    }
    return 0;
}

bool IsUtf8(std::string_view s)
{
    while (!s.empty())
    {
        const size_t nLength = Utf8Length(s);
        if (nLength == 0)
            return false;
        s.remove_prefix(nLength);
    }
    return true;
}

// 0x80 to 0x9F of Windows-1252; the five places without a character keep their number.
constexpr uint16_t c_aWindows1252[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                         0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
} // namespace

std::string ReadableText(std::string_view sBytes)
{
    if (IsUtf8(sBytes))
        return std::string(sBytes);
    std::string sOut;
    for (char c : sBytes)
    {
        const uint8_t n = static_cast<uint8_t>(c);
        AppendUtf8(sOut, n >= 0x80 && n < 0xA0 ? c_aWindows1252[n - 0x80] : n);
    }
    return sOut;
}

std::string ByteText(std::string_view sBytes)
{
    std::string sOut;
    for (char c : sBytes)
        AppendUtf8(sOut, static_cast<uint8_t>(c));
    return sOut;
}

void Put(std::string_view sBytes)
{
    std::fwrite(sBytes.data(), 1, sBytes.size(), stdout);
}

void PrintJson(const CJson& json)
{
    const std::string sText = json.dump(2, ' ', false, CJson::error_handler_t::replace);
    std::fwrite(sText.data(), 1, sText.size(), stdout);
    std::fputc('\n', stdout);
}

bool FlushOutput()
{
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return true;
    std::fprintf(stderr, "emberdeck-batch: the output could not be written\n");
    return false;
}

int Fail(const std::string& sText)
{
    std::fprintf(stderr, "emberdeck-batch: %s\n", sText.c_str());
    return eExit_Failed;
}

int FailToRead(const std::string& sPath)
{
    const std::string sProblem = ReadProblem(sPath);
    return Fail("cannot read " + sPath + (sProblem.empty() ? "" : ". ") + sProblem);
}

int FailToWrite(const std::string& sPath)
{
    const std::string sProblem = WriteProblem(sPath);
    return Fail("cannot write " + sPath + ". " +
                (sProblem.empty()
                     ? "Please make sure that the file is writable and there is room on the drive."
                     : sProblem));
}
