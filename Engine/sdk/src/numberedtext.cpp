#include "qsstrutils.h"

#include <string_view>

namespace
{

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

void Append(std::string& sOut, std::string_view s)
{
    const size_t nRoom = c_nMaxNumberedText - sOut.size();
    sOut.append(s.substr(0, nRoom));
}

// Length of a format part such as "!s!" or "!-10d!" at the front of s, 0 for anything else: an exclamation
// mark of the text itself must stay.
size_t FormatLength(std::string_view s)
{
    if (s.empty() || s.front() != '!')
        return 0;
    constexpr std::string_view c_sFormatBytes =
        "+-#.*0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const size_t nEnd = s.find_first_not_of(c_sFormatBytes, 1);
    return nEnd != std::string_view::npos && nEnd > 1 && s[nEnd] == '!' ? nEnd + 1 : 0;
}

// Takes the number at the front of s, two digits at most, and the format part behind it. Arguments are texts
// already, so that the format has nothing left to say.
size_t TakeNumber(std::string_view& s)
{
    size_t nNumber = 0;
    for (int n = 0; n < 2 && !s.empty() && IsDigit(s.front()); ++n)
    {
        nNumber = nNumber * 10 + size_t(s.front() - '0');
        s.remove_prefix(1);
        if (nNumber == 0)
            break;
    }
    s.remove_prefix(FormatLength(s));
    return nNumber;
}

} // namespace

std::string FormatNumbered(const char* pszText, const std::vector<std::string>& args)
{
    std::string sOut;
    std::string_view s = pszText ? pszText : "";
    while (!s.empty() && sOut.size() < c_nMaxNumberedText)
    {
        const size_t nPlain = s.find('%');
        Append(sOut, s.substr(0, nPlain));
        if (nPlain == std::string_view::npos)
            break;
        s.remove_prefix(nPlain + 1);
        if (s.empty())
        {
            Append(sOut, "%"); // the last byte, with nothing to number
            break;
        }
        if (IsDigit(s.front()))
        {
            const size_t nNumber = TakeNumber(s);
            if (nNumber == 0)
                break;
            if (nNumber <= args.size())
                Append(sOut, args[nNumber - 1]);
            continue;
        }
        Append(sOut, s.front() == 'n' ? std::string_view("\r\n") : s.substr(0, 1));
        s.remove_prefix(1);
    }
    return sOut;
}
