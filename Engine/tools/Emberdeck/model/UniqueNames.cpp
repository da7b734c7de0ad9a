#include "model/UniqueNames.h"

#include <algorithm>

void CUniqueNames::Reserve(size_t nCount)
{
    m_Names.Reserve(static_cast<uint32_t>(nCount));
    m_NextNumbers.clear();
}

std::string CUniqueNames::Make(std::string_view sWanted)
{
    if (m_Names.Find(sWanted) < 0)
        return std::string(sWanted);
    const std::string sBase =
        std::string(sWanted.substr(0, sWanted.find_last_not_of("1234567890_") + 1)) + '_';
    std::string sFolded = sBase;
    std::transform(sFolded.begin(), sFolded.end(), sFolded.begin(),
                   [](char c) { return static_cast<char>(FoldNameByte(c)); });
    uint32_t& nNumber = m_NextNumbers.try_emplace(sFolded, 1).first->second;
    std::string sName = sBase + std::to_string(nNumber);
    while (m_Names.Find(sName) >= 0)
        sName = sBase + std::to_string(++nNumber);
    return sName;
}
