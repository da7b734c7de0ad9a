#include "model/LibraryTree.h"

#include <algorithm>
#include <utility>

#include "model/MakeOrNull.h"

// Items are linked by plain pointers and owned by the table of numbers, so that no chain of destructors runs
// down a deep tree.
struct CLibraryTree::CItem
{
    std::string m_sText;
    int m_nImage = 0;
    int m_nSelectedImage = 0;
    void* m_pData = nullptr;
    uint32_t m_nID = 0;
    CItem* m_pParent = nullptr;
    CItem* m_pFirstChild = nullptr;
    CItem* m_pLastChild = nullptr;
    CItem* m_pPrev = nullptr;
    CItem* m_pNext = nullptr;
};

struct CLibraryTree::CDataUse
{
    uint32_t m_nCount = 0;
    uint32_t m_nID = 0; // of the item, when there is only one and it is known
};

CLibraryTree::CTakenItem::CTakenItem() = default;
CLibraryTree::CTakenItem::~CTakenItem() = default;
CLibraryTree::CTakenItem::CTakenItem(CTakenItem&&) noexcept = default;
CLibraryTree::CTakenItem& CLibraryTree::CTakenItem::operator=(CTakenItem&&) noexcept = default;

CLibraryTree::CLibraryTree() = default;
CLibraryTree::~CLibraryTree() = default;

CLibraryTree::CItem* CLibraryTree::Find(HLibraryItem hItem) const
{
    // Numbers below the first, the empty one among them, wrap to beyond the end.
    const uint32_t nPlace = hItem.m_nID - m_nFirstID;
    return nPlace < m_Items.size() ? m_Items[nPlace].get() : nullptr;
}

HLibraryItem CLibraryTree::HandleOf(const CItem* pItem)
{
    return pItem ? HLibraryItem{pItem->m_nID} : HLibraryItem();
}

void CLibraryTree::Tell(EChange eChange, HLibraryItem hItem) const
{
    if (m_Listener)
        m_Listener(eChange, hItem);
}

HLibraryItem CLibraryTree::GetRootItem() const
{
    return HandleOf(m_pFirstRoot);
}

HLibraryItem CLibraryTree::GetChildItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return HandleOf(pItem ? pItem->m_pFirstChild : nullptr);
}

HLibraryItem CLibraryTree::GetLastChildItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return HandleOf(pItem ? pItem->m_pLastChild : nullptr);
}

HLibraryItem CLibraryTree::GetNextSiblingItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return HandleOf(pItem ? pItem->m_pNext : nullptr);
}

HLibraryItem CLibraryTree::GetPrevSiblingItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return HandleOf(pItem ? pItem->m_pPrev : nullptr);
}

HLibraryItem CLibraryTree::GetParentItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return HandleOf(pItem ? pItem->m_pParent : nullptr);
}

bool CLibraryTree::IsAlive(HLibraryItem hItem) const
{
    return Find(hItem) != nullptr;
}

bool CLibraryTree::IsAncestor(HLibraryItem hAncestor, HLibraryItem hItem) const
{
    const CItem* pAncestor = Find(hAncestor);
    const CItem* pItem = Find(hItem);
    while (pItem && pItem != pAncestor)
        pItem = pItem->m_pParent;
    return pItem != nullptr;
}

uint32_t CLibraryTree::GetCount() const
{
    return m_nCount;
}

int CLibraryTree::GetItemImage(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return pItem ? pItem->m_nImage : -1;
}

int CLibraryTree::GetItemSelectedImage(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return pItem ? pItem->m_nSelectedImage : -1;
}

const std::string& CLibraryTree::GetItemText(HLibraryItem hItem) const
{
    static const std::string s_sNone;
    const CItem* pItem = Find(hItem);
    return pItem ? pItem->m_sText : s_sNone;
}

void* CLibraryTree::DataOf(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    return pItem ? pItem->m_pData : nullptr;
}

HLibraryItem CLibraryTree::InsertItem(std::string_view sText, int nImage, int nSelectedImage,
                                      HLibraryItem hParent, void* pData)
{
    CItem* pParent = Find(hParent);
    const uint64_t nID = uint64_t(m_nFirstID) + m_Items.size();
    if ((hParent && !pParent) || nID > UINT32_MAX)
        return HLibraryItem();
    const bool bMade = TryAllocating(
        [&]
        {
            auto pNew = std::make_unique<CItem>();
            pNew->m_sText = sText;
            m_Items.push_back(std::move(pNew));
        });
    if (!bMade)
        return HLibraryItem();
    CItem* pItem = m_Items.back().get();
    pItem->m_nImage = nImage;
    pItem->m_nSelectedImage = nSelectedImage;
    pItem->m_pData = pData;
    pItem->m_nID = static_cast<uint32_t>(nID);
    Append(pItem, pParent);
    NoteData(pItem);
    ++m_nCount;
    const HLibraryItem hItem = HandleOf(pItem);
    Tell(eTree_Inserted, hItem);
    return hItem;
}

bool CLibraryTree::RestoreItem(HLibraryItem hItem, std::string_view sText, int nImage, int nSelectedImage,
                               HLibraryItem hParent, HLibraryItem hPrev, void* pData)
{
    CItem* pParent = Find(hParent);
    CItem* pPrev = Find(hPrev);
    const uint32_t nPlace = hItem.m_nID - m_nFirstID; // wraps for what lies before the first
    const bool bPlaces = (!hParent || pParent) && (!hPrev || (pPrev && pPrev->m_pParent == pParent));
    const bool bNew = nPlace >= m_Items.size();
    if (!bPlaces || (bNew ? nPlace - m_Items.size() >= c_nMaxGap : m_Items[nPlace] != nullptr))
        return false;
    const bool bMade = TryAllocating(
        [&]
        {
            auto pNew = std::make_unique<CItem>();
            pNew->m_sText = sText;
            if (bNew)
                m_Items.resize(size_t(nPlace) + 1);
            m_Items[nPlace] = std::move(pNew);
        });
    if (!bMade)
        return false;
    CItem* pItem = m_Items[nPlace].get();
    pItem->m_nImage = nImage;
    pItem->m_nSelectedImage = nSelectedImage;
    pItem->m_pData = pData;
    pItem->m_nID = hItem.m_nID;
    InsertBehind(pItem, pParent, pPrev);
    NoteData(pItem);
    ++m_nCount;
    Tell(eTree_Inserted, hItem);
    return true;
}

HLibraryItem CLibraryTree::MoveItem(HLibraryItem hItem, HLibraryItem hTarget)
{
    const auto copy = [this](HLibraryItem hOld, HLibraryItem hParent)
    {
        const int nImage = GetItemImage(hOld);
        const std::string sText = GetItemText(hOld);
        return InsertItem(sText, nImage, nImage, hParent, DataOf(hOld));
    };
    const HLibraryItem hMoved = copy(hItem, hTarget);
    std::vector<std::pair<HLibraryItem, HLibraryItem>> open = {{hItem, hMoved}};
    while (!open.empty())
    {
        const auto [hOld, hNew] = open.back();
        open.pop_back();
        for (HLibraryItem h = GetChildItem(hOld); h; h = GetNextSiblingItem(h))
            open.emplace_back(h, copy(h, hNew));
    }
    DeleteItem(hItem);
    return hMoved;
}

void CLibraryTree::SetItemText(HLibraryItem hItem, std::string_view sText)
{
    if (CItem* pItem = Find(hItem))
    {
        pItem->m_sText = std::string(sText);
        Tell(eTree_Text, hItem);
    }
}

void CLibraryTree::SwapItemText(HLibraryItem hItem, std::string& sText)
{
    if (CItem* pItem = Find(hItem))
    {
        pItem->m_sText.swap(sText);
        Tell(eTree_Text, hItem);
    }
}

void CLibraryTree::TakeItem(HLibraryItem hItem, CTakenItem& taken)
{
    if (!IsAlive(hItem) || HasChildren(hItem))
        return;
    Tell(eTree_Removing, hItem);
    CItem* pItem = Find(hItem);
    if (!pItem || pItem->m_pFirstChild)
        return;
    Unlink(pItem); // it keeps its own links
    ForgetData(pItem);
    --m_nCount;
    taken.m_pItem = std::move(m_Items[hItem.m_nID - m_nFirstID]);
    Tell(eTree_Removed, hItem);
}

void CLibraryTree::PutBackItem(CTakenItem& taken)
{
    CItem* pItem = taken.m_pItem.get();
    if (!pItem)
        return;
    m_Items[pItem->m_nID - m_nFirstID] = std::move(taken.m_pItem);
    InsertBehind(pItem, pItem->m_pParent, pItem->m_pPrev);
    NoteData(pItem);
    ++m_nCount;
    Tell(eTree_Inserted, HandleOf(pItem));
}

void CLibraryTree::OrderChildren(HLibraryItem hItem, const std::vector<HLibraryItem>& children)
{
    CItem* pParent = Find(hItem);
    if (!pParent)
        return;
    pParent->m_pFirstChild = nullptr;
    pParent->m_pLastChild = nullptr;
    for (const HLibraryItem hChild : children)
        Append(Find(hChild), pParent);
    Tell(eTree_Sorted, hItem);
}

void CLibraryTree::DeleteItem(HLibraryItem hItem)
{
    if (!IsAlive(hItem))
        return;
    Tell(eTree_Removing, hItem);
    CItem* pTop = Find(hItem); // the listener may have been quicker
    if (!pTop)
        return;
    // The deepest first child goes first, until the top itself is that.
    CItem* pItem = pTop;
    while (true)
    {
        while (pItem->m_pFirstChild)
            pItem = pItem->m_pFirstChild;
        CItem* pParent = pItem->m_pParent;
        const bool bTop = pItem == pTop;
        Destroy(pItem);
        if (bTop)
            break;
        pItem = pParent;
    }
    Tell(eTree_Removed, hItem);
}

void CLibraryTree::DeleteAllItems()
{
    m_nFirstID += static_cast<uint32_t>(m_Items.size());
    m_Items = std::vector<std::unique_ptr<CItem>>();
    m_Data.clear();
    m_bDataComplete = true;
    m_pFirstRoot = nullptr;
    m_pLastRoot = nullptr;
    m_nCount = 0;
    Tell(eTree_Cleared, HLibraryItem());
}

void CLibraryTree::SortChildren(HLibraryItem hItem,
                                const std::function<int(HLibraryItem, HLibraryItem)>& compare)
{
    CItem* pParent = Find(hItem);
    if (!pParent || !compare)
        return;
    std::vector<CItem*> children;
    for (CItem* pChild = pParent->m_pFirstChild; pChild; pChild = pChild->m_pNext)
        children.push_back(pChild);
    std::stable_sort(children.begin(), children.end(),
                     [&compare](const CItem* pLeft, const CItem* pRight)
                     { return compare(HandleOf(pLeft), HandleOf(pRight)) < 0; });
    pParent->m_pFirstChild = nullptr;
    pParent->m_pLastChild = nullptr;
    for (CItem* pChild : children)
        Append(pChild, pParent);
    Tell(eTree_Sorted, hItem);
}

HLibraryItem CLibraryTree::ItemOf(const void* pData) const
{
    if (pData && m_bDataComplete)
    {
        const auto use = m_Data.find(pData);
        if (use == m_Data.end())
            return HLibraryItem();
        if (use->second.m_nID != 0)
            return HLibraryItem{use->second.m_nID};
    }
    HLibraryItem hItem = GetRootItem();
    while (hItem && DataOf(hItem) != pData)
        hItem = GetNextItem(hItem);
    return hItem;
}

HLibraryItem CLibraryTree::GetNextItem(HLibraryItem hItem) const
{
    const CItem* pItem = Find(hItem);
    if (pItem && pItem->m_pFirstChild)
        return HandleOf(pItem->m_pFirstChild);
    while (pItem && !pItem->m_pNext)
        pItem = pItem->m_pParent;
    return HandleOf(pItem ? pItem->m_pNext : nullptr);
}

void CLibraryTree::SetListener(std::function<void(EChange, HLibraryItem)> listener)
{
    m_Listener = std::move(listener);
}

void CLibraryTree::Append(CItem* pItem, CItem* pParent)
{
    InsertBehind(pItem, pParent, pParent ? pParent->m_pLastChild : m_pLastRoot);
}

void CLibraryTree::InsertBehind(CItem* pItem, CItem* pParent, CItem* pPrev)
{
    CItem*& pFirst = pParent ? pParent->m_pFirstChild : m_pFirstRoot;
    CItem*& pLast = pParent ? pParent->m_pLastChild : m_pLastRoot;
    pItem->m_pParent = pParent;
    pItem->m_pPrev = pPrev;
    pItem->m_pNext = pPrev ? pPrev->m_pNext : pFirst;
    (pPrev ? pPrev->m_pNext : pFirst) = pItem;
    (pItem->m_pNext ? pItem->m_pNext->m_pPrev : pLast) = pItem;
}

void CLibraryTree::Unlink(CItem* pItem)
{
    CItem* pParent = pItem->m_pParent;
    CItem*& pFirst = pParent ? pParent->m_pFirstChild : m_pFirstRoot;
    CItem*& pLast = pParent ? pParent->m_pLastChild : m_pLastRoot;
    (pItem->m_pPrev ? pItem->m_pPrev->m_pNext : pFirst) = pItem->m_pNext;
    (pItem->m_pNext ? pItem->m_pNext->m_pPrev : pLast) = pItem->m_pPrev;
}

void CLibraryTree::Destroy(CItem* pItem)
{
    Unlink(pItem);
    ForgetData(pItem);
    --m_nCount;
    m_Items[pItem->m_nID - m_nFirstID].reset();
}

void CLibraryTree::NoteData(const CItem* pItem)
{
    if (!pItem->m_pData)
        return;
    const bool bNoted = TryAllocating(
        [&]
        {
            CDataUse& use = m_Data[pItem->m_pData];
            use.m_nID = ++use.m_nCount == 1 ? pItem->m_nID : 0;
        });
    if (!bNoted)
        m_bDataComplete = false;
}

// Of two items with one data, nobody remembers which is left: a search walks the tree then.
void CLibraryTree::ForgetData(const CItem* pItem)
{
    const auto use = m_Data.find(pItem->m_pData);
    if (use != m_Data.end() && --use->second.m_nCount == 0)
        m_Data.erase(use);
}
