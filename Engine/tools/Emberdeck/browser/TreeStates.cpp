#include "browser/TreeStates.h"

uint32_t CTreeStates::Get(HLibraryItem hItem) const
{
    const uint32_t nPlace = hItem.m_nID - m_nFirst;
    return nPlace < m_Bits.size() ? m_Bits[nPlace] : 0;
}

void CTreeStates::Set(HLibraryItem hItem, uint32_t nState, uint32_t nMask)
{
    if (!hItem)
        return;
    if (m_Bits.empty())
        m_nFirst = hItem.m_nID;
    if (hItem.m_nID < m_nFirst)
    {
        m_Bits.insert(m_Bits.begin(), m_nFirst - hItem.m_nID, 0);
        m_nFirst = hItem.m_nID;
    }
    const size_t nPlace = hItem.m_nID - m_nFirst;
    if (nPlace >= m_Bits.size())
        m_Bits.resize(nPlace + 1);
    m_Bits[nPlace] = static_cast<uint8_t>((m_Bits[nPlace] & ~nMask) | (nState & nMask));
}

HLibraryItem CTreeStates::NextBelow(HLibraryItem hTop, HLibraryItem hItem, bool bVisible) const
{
    HLibraryItem hNext = !bVisible || IsExpanded(hItem) ? m_Items.GetChildItem(hItem) : HLibraryItem();
    while (!hNext && hItem && hItem != hTop)
    {
        hNext = m_Items.GetNextSiblingItem(hItem);
        hItem = m_Items.GetParentItem(hItem);
    }
    return hNext;
}

HLibraryItem CTreeStates::PrevVisible(HLibraryItem hItem) const
{
    const HLibraryItem hAbove = m_Items.GetPrevSiblingItem(hItem);
    return hAbove ? LowestOf(hAbove) : m_Items.GetParentItem(hItem);
}

HLibraryItem CTreeStates::LastVisible() const
{
    HLibraryItem h = m_Items.GetRootItem();
    while (const HLibraryItem hNext = m_Items.GetNextSiblingItem(h))
        h = hNext;
    return LowestOf(h);
}

// The last of the rows that an item and what shows below it take.
HLibraryItem CTreeStates::LowestOf(HLibraryItem hItem) const
{
    while (IsExpanded(hItem))
        hItem = m_Items.GetLastChildItem(hItem);
    return hItem;
}

HLibraryItem CTreeStates::MovedBy(HLibraryItem hItem, bool bDown, int32_t nRows) const
{
    for (; nRows > 0; --nRows)
    {
        const HLibraryItem hNext = bDown ? NextVisible(hItem) : PrevVisible(hItem);
        if (!hNext)
            break;
        hItem = hNext;
    }
    return hItem;
}

HLibraryItem CTreeStates::VisibleAncestor(HLibraryItem hItem) const
{
    HLibraryItem hVisible = m_Items.IsAlive(hItem) ? hItem : HLibraryItem();
    for (HLibraryItem h = m_Items.GetParentItem(hItem); h; h = m_Items.GetParentItem(h))
    {
        if (!IsExpanded(h))
            hVisible = h;
    }
    return hVisible;
}

bool CTreeStates::IsVisible(HLibraryItem hItem) const
{
    return m_Items.IsAlive(hItem) && VisibleAncestor(hItem) == hItem;
}

bool CTreeStates::Reaches(HLibraryItem hFrom, HLibraryItem hTo) const
{
    while (hFrom && hFrom != hTo)
        hFrom = NextVisible(hFrom);
    return bool(hFrom);
}
