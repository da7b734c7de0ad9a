#include "platform/NameFold.h"

#include <algorithm>

std::string FoldName(std::string_view sName)
{
    std::string sFolded(sName);
    for (char& c : sFolded)
        c = FoldChar(c);
    return sFolded;
}

int CompareFolded(std::string_view sLeft, std::string_view sRight)
{
    const size_t nCommon = std::min(sLeft.size(), sRight.size());
    for (size_t i = 0; i < nCommon; ++i)
    {
        const int nLeft = static_cast<unsigned char>(FoldChar(sLeft[i]));
        const int nRight = static_cast<unsigned char>(FoldChar(sRight[i]));
        if (nLeft != nRight)
            return nLeft - nRight;
    }
    if (sLeft.size() == sRight.size())
        return 0;
    return sLeft.size() < sRight.size() ? -1 : 1;
}

bool EqualFolded(std::string_view sLeft, std::string_view sRight)
{
    return sLeft.size() == sRight.size() && CompareFolded(sLeft, sRight) == 0;
}

bool EndsWithFolded(std::string_view sText, std::string_view sEnd)
{
    return sText.size() >= sEnd.size() && EqualFolded(sText.substr(sText.size() - sEnd.size()), sEnd);
}
