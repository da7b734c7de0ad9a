#include "formats/StringTable.h"

namespace
{

std::string_view UpToNul(std::string_view sText)
{
    return sText.substr(0, sText.find('\0'));
}

} // namespace

uint32_t CStringTable::Add(std::string_view sText)
{
    sText = UpToNul(sText);
    const auto found = m_Offsets.find(sText);
    if (found != m_Offsets.end())
        return found->second;

    const size_t nOffset = m_sBytes.size();
    const size_t nPadding = 4 - sText.size() % 4; // the NUL among them
    m_sBytes.reserve(nOffset + sText.size() + nPadding > m_sBytes.capacity() ? 2 * nOffset + 1024 : 0);
    m_Offsets.emplace(sText, static_cast<uint32_t>(nOffset));
    m_sBytes.append(sText);
    m_sBytes.append(nPadding, '\0');
    return static_cast<uint32_t>(nOffset);
}

bool CStringTable::LookUp(std::string_view sText, uint32_t& nOffset) const
{
    const auto found = m_Offsets.find(UpToNul(sText));
    if (found == m_Offsets.end())
        return false;
    nOffset = found->second;
    return true;
}
