#include "browser/MultiSelectTreeCtrl.h"

// Selection. Caret, expanding and changes of the tree are in TreeItems.cpp, mouse, keys and find in files of
// their own.

CMultiSelectTreeCtrl::CMultiSelectTreeCtrl(CLibraryTree& tree, ITreeView& view, ITreeParent& parent,
                                           IPrompts& prompts, const CTreeOptions& options)
    : m_Items(tree),
      m_View(view),
      m_Parent(parent),
      m_Prompts(prompts),
      m_Options(options),
      m_Band(*this, view, options.m_ptDragLimit)
{
    m_Items.SetListener([this](CLibraryTree::EChange eChange, HLibraryItem hItem)
                        { OnTreeChange(eChange, hItem); });
}

CMultiSelectTreeCtrl::~CMultiSelectTreeCtrl()
{
    m_Items.SetListener(nullptr);
}

uint32_t CMultiSelectTreeCtrl::GetItemStateEx(HLibraryItem hItem, uint32_t nMask) const
{
    const uint32_t nFocus = hItem && hItem == m_hCaret ? uint32_t(eState_Focused) : 0u;
    return (m_States.Get(hItem) | nFocus) & nMask;
}

bool CMultiSelectTreeCtrl::SetItemStateEx(HLibraryItem hItem, uint32_t nState, uint32_t nMask)
{
    if (!m_Items.IsAlive(hItem))
        return false;
    if (nMask & eState_Focused)
    {
        if (nState & eState_Focused)
        {
            if (!SetCaret(hItem))
                return false;
        }
        else if (hItem == m_hCaret)
            SetCaret({});
    }
    if (nMask & eState_Selected)
    {
        const bool bSelect = (nState & eState_Selected) != 0;
        if (bSelect)
            Reveal(hItem);
        if (!SelectItem(hItem, bSelect))
            return false;
    }
    // What is expanded isn't set by a bit: it decides who is visible.
    m_States.Set(hItem, nState, nMask & (eState_DropHilited | eState_Bold));
    m_View.Invalidate();
    return true;
}

bool CMultiSelectTreeCtrl::SelectItem(HLibraryItem hItem, bool bSelect)
{
    if (IsSelected(hItem) == bSelect)
        return true;
    if (m_Parent.OnSelChanging(hItem, bSelect) || !m_Items.IsAlive(hItem))
        return false;
    if (IsSelected(hItem) != bSelect) // the parent may have been quicker
    {
        m_States.Set(hItem, bSelect ? ~0u : 0u, eState_Selected);
        m_nSelected += bSelect ? 1u : ~0u;
    }
    m_Parent.OnSelChanged(hItem, bSelect);
    return true;
}

HLibraryItem CMultiSelectTreeCtrl::GetFirstSelectedItem() const
{
    if (m_nSelected == 0)
        return {};
    const HLibraryItem hRoot = m_Items.GetRootItem();
    return IsSelected(hRoot) ? hRoot : GetNextSelectedItem(hRoot);
}

HLibraryItem CMultiSelectTreeCtrl::GetNextSelectedItem(HLibraryItem hItem) const
{
    do
        hItem = NextVisible(hItem);
    while (hItem && !IsSelected(hItem));
    return hItem;
}

uint32_t CMultiSelectTreeCtrl::CountFiltered(int32_t nArgument) const
{
    uint32_t nCount = 0;
    if (!m_pfnFilter)
        return 0;
    for (HLibraryItem h = GetFirstSelectedItem(); h; h = GetNextSelectedItem(h))
        nCount += m_pfnFilter(*this, h, nArgument, m_pFilterData);
    return nCount;
}

void CMultiSelectTreeCtrl::GetSelectedItems(std::vector<HLibraryItem>& list) const
{
    list.clear();
    list.reserve(m_nSelected);
    for (HLibraryItem h = GetFirstSelectedItem(); h; h = GetNextSelectedItem(h))
        list.push_back(h);
}

void CMultiSelectTreeCtrl::SelectAllItems(bool bSelect, HLibraryItem hExcept)
{
    const uint32_t nKept = IsSelected(hExcept);
    for (HLibraryItem h = m_Items.GetRootItem(); h; h = NextVisible(h))
    {
        if (!bSelect && m_nSelected <= nKept)
            break; // none is left to deselect
        if (h != hExcept)
            SelectItem(h, bSelect);
    }
    m_View.Invalidate();
}

void CMultiSelectTreeCtrl::SelectRange(HLibraryItem hFirst, HLibraryItem hLast, bool bKeepOthers)
{
    hFirst = VisibleAncestor(hFirst);
    hLast = VisibleAncestor(hLast);
    if (!hFirst || !hLast)
        return;
    HLibraryItem hEnd; // the other end, once the range has begun
    bool bPast = false;
    for (HLibraryItem h = m_Items.GetRootItem(); h && !(bPast && bKeepOthers); h = NextVisible(h))
    {
        if (!hEnd && !bPast && (h == hFirst || h == hLast))
            hEnd = h == hFirst ? hLast : hFirst;
        if (hEnd)
            SelectItem(h, true);
        else if (!bKeepOthers)
            SelectItem(h, false);
        if (h == hEnd)
        {
            hEnd = {};
            bPast = true;
        }
    }
    m_View.Invalidate();
}

bool CMultiSelectTreeCtrl::SelectOnly(HLibraryItem hItem)
{
    if (!m_Items.IsAlive(hItem))
    {
        SelectAllItems(false, {});
        return false;
    }
    if (!IsSelected(hItem))
    {
        SelectAllItems(false, {});
        SetItemStateEx(hItem, eState_Selected | eState_Focused, eState_Selected | eState_Focused);
    }
    return IsSelected(hItem);
}

CMultiSelectTreeCtrl::CBranchResult CMultiSelectTreeCtrl::SelectBranch(HLibraryItem hParent, bool bSelect,
                                                                       bool bRecurse)
{
    CBranchResult result;
    HLibraryItem h = m_Items.GetChildItem(hParent);
    while (h)
    {
        result.m_bCaret |= h == m_hCaret;
        result.m_bRefused |= !SelectItem(h, bSelect);
        h = bRecurse ? NextBelow(hParent, h, true) : m_Items.GetNextSiblingItem(h);
    }
    m_View.Invalidate();
    return result;
}

bool CMultiSelectTreeCtrl::SelectChildren(HLibraryItem hParent, bool bSelect, bool bRecurse)
{
    if (bSelect)
        Reveal(m_Items.GetChildItem(hParent));
    return SelectBranch(hParent, bSelect, bRecurse).m_bCaret;
}

void CMultiSelectTreeCtrl::WidenSelection()
{
    std::vector<HLibraryItem> items;
    GetSelectedItems(items);
    for (size_t i = 0; i < items.size(); ++i)
    {
        // What is selected below an item follows it in the list, and is dealt with by then.
        const HLibraryItem hTop = items[i];
        size_t nKnown = 0;
        DoExpand(hTop, true);
        ExpandChildren(hTop, true, true);
        for (HLibraryItem h = m_Items.GetChildItem(hTop); h; h = NextBelow(hTop, h, true))
        {
            nKnown += IsSelected(h);
            SelectItem(h, true);
        }
        i += nKnown;
    }
    m_View.Invalidate();
}
