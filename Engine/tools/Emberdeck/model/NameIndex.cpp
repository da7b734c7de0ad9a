#include "model/NameIndex.h"

#include <bit>

namespace
{

uint32_t HashName(std::string_view sName)
{
    uint32_t nHash = 2166136261u;
    for (const char c : sName)
        nHash = (nHash ^ FoldNameByte(c)) * 16777619u;
    return nHash ^ nHash >> 15;
}

} // namespace

bool IsSameName(std::string_view sLeft, std::string_view sRight)
{
    if (sLeft.size() != sRight.size())
        return false;
    for (size_t i = 0; i < sLeft.size(); ++i)
    {
        if (sLeft[i] != sRight[i] && FoldNameByte(sLeft[i]) != FoldNameByte(sRight[i]))
            return false;
    }
    return true;
}

void CNameIndex::Reserve(uint32_t nCount)
{
    m_Slots.assign(std::bit_ceil(size_t(nCount) * 2 + 2), CSlot());
}

void CNameIndex::Add(std::string_view sName, uint32_t nPlace)
{
    const uint32_t nHash = HashName(sName);
    CSlot& slot = m_Slots[Probe(sName, nHash)];
    if (!slot.m_pName)
        slot = CSlot{sName.data(), static_cast<uint32_t>(sName.size()), nHash, nPlace};
}

void CNameIndex::Clear()
{
    m_Slots = std::vector<CSlot>();
}

int CNameIndex::Find(std::string_view sName) const
{
    if (m_Slots.empty())
        return -1;
    const CSlot& slot = m_Slots[Probe(sName, HashName(sName))];
    return slot.m_pName ? static_cast<int>(slot.m_nPlace) : -1;
}

size_t CNameIndex::Probe(std::string_view sName, uint32_t nHash) const
{
    const size_t nMask = m_Slots.size() - 1;
    size_t nSlot = nHash & nMask;
    while (m_Slots[nSlot].m_pName)
    {
        const CSlot& slot = m_Slots[nSlot];
        if (slot.m_nHash == nHash && IsSameName(std::string_view(slot.m_pName, slot.m_nLen), sName))
            break;
        nSlot = (nSlot + 1) & nMask;
    }
    return nSlot;
}
