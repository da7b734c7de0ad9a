#include "browser/TreeSelection.h"

namespace
{
constexpr uint32_t c_nSelectAndFocus = eState_Selected | eState_Focused;
}

CTreeSelection::CTreeSelection(const CLibraryTree& tree, ITreeSelectionOwner& owner)
    : m_Items(tree),
      m_Owner(owner),
      m_States(tree)
{
}

uint32_t CTreeSelection::GetItemStateEx(HLibraryItem hItem, uint32_t nMask) const
{
    const uint32_t nFocus = hItem && hItem == m_hCaret ? uint32_t(eState_Focused) : 0u;
    return (m_States.Get(hItem) | nFocus) & nMask;
}

bool CTreeSelection::SetItemStateEx(HLibraryItem hItem, uint32_t nState, uint32_t nMask)
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
    SetBits(hItem, nState, nMask & (eState_DropHilited | eState_Bold));
    return true;
}

void CTreeSelection::SetBits(HLibraryItem hItem, uint32_t nState, uint32_t nMask)
{
    if (((m_States.Get(hItem) ^ nState) & nMask) == 0)
        return;
    m_States.Set(hItem, nState, nMask);
    m_Owner.OnStatesChanged();
}

bool CTreeSelection::SetCaret(HLibraryItem hItem)
{
    if (hItem == m_hCaret)
        return true;
    m_Owner.FinishTyping();
    if (hItem && !Reveal(hItem))
        return false;
    m_hCaret = hItem;
    m_Owner.OnCaretMoved(hItem);
    if (hItem)
        m_Owner.ScrollTo(hItem);
    return true;
}

bool CTreeSelection::IsSingleCaret(HLibraryItem hItem) const
{
    return hItem == m_hCaret && m_nSelected == 1 && IsSelected(hItem);
}

HLibraryItem CTreeSelection::GetFirstSelectedItem() const
{
    if (m_nSelected == 0)
        return {};
    const HLibraryItem hRoot = m_Items.GetRootItem();
    return IsSelected(hRoot) ? hRoot : GetNextSelectedItem(hRoot);
}

HLibraryItem CTreeSelection::GetNextSelectedItem(HLibraryItem hItem) const
{
    do
        hItem = m_States.NextVisible(hItem);
    while (hItem && !IsSelected(hItem));
    return hItem;
}

void CTreeSelection::GetSelectedItems(std::vector<HLibraryItem>& list) const
{
    list.clear();
    list.reserve(m_nSelected);
    for (HLibraryItem h = GetFirstSelectedItem(); h; h = GetNextSelectedItem(h))
        list.push_back(h);
}

bool CTreeSelection::SelectItem(HLibraryItem hItem, bool bSelect)
{
    if (IsSelected(hItem) == bSelect)
        return true;
    if (m_Owner.OnSelChanging(hItem, bSelect) || !m_Items.IsAlive(hItem))
        return false;
    if (IsSelected(hItem) != bSelect) // the owner may have been quicker
    {
        m_nSelected += bSelect ? 1u : ~0u;
        SetBits(hItem, bSelect ? ~0u : 0u, eState_Selected);
    }
    m_Owner.OnSelChanged(hItem, bSelect);
    return true;
}

void CTreeSelection::SelectAllItems(bool bSelect, HLibraryItem hExcept)
{
    const uint32_t nKept = IsSelected(hExcept);
    for (HLibraryItem h = m_Items.GetRootItem(); h; h = m_States.NextVisible(h))
    {
        if (!bSelect && m_nSelected <= nKept)
            break; // none is left to deselect
        if (h != hExcept)
            SelectItem(h, bSelect);
    }
}

void CTreeSelection::SelectRange(HLibraryItem hFirst, HLibraryItem hLast, bool bKeepOthers)
{
    hFirst = m_States.VisibleAncestor(hFirst);
    hLast = m_States.VisibleAncestor(hLast);
    if (!hFirst || !hLast)
        return;
    HLibraryItem hEnd; // the other end, once the range has begun
    bool bPast = false;
    for (HLibraryItem h = m_Items.GetRootItem(); h && !(bPast && bKeepOthers); h = m_States.NextVisible(h))
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
}

bool CTreeSelection::SelectOnly(HLibraryItem hItem)
{
    if (!m_Items.IsAlive(hItem))
        SelectAllItems(false, {});
    else if (!IsSelected(hItem))
        SelectAlone(hItem);
    return IsSelected(hItem);
}

void CTreeSelection::SelectAlone(HLibraryItem hItem)
{
    SelectAllItems(false, hItem);
    SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
}

void CTreeSelection::SelectOrKeep(HLibraryItem hItem)
{
    if (IsSelected(hItem))
        SetCaret(hItem);
    else
        SelectAlone(hItem);
}

CTreeSelection::CBranchResult CTreeSelection::SelectBranch(HLibraryItem hParent, bool bSelect, bool bRecurse)
{
    CBranchResult result;
    HLibraryItem h = m_Items.GetChildItem(hParent);
    while (h)
    {
        result.m_bCaret |= h == m_hCaret;
        result.m_bRefused |= !SelectItem(h, bSelect);
        h = bRecurse ? m_States.NextBelow(hParent, h, true) : m_Items.GetNextSiblingItem(h);
    }
    return result;
}

bool CTreeSelection::SelectChildren(HLibraryItem hParent, bool bSelect, bool bRecurse)
{
    if (bSelect)
        Reveal(m_Items.GetChildItem(hParent));
    return SelectBranch(hParent, bSelect, bRecurse).m_bCaret;
}

void CTreeSelection::WidenSelection()
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
        for (HLibraryItem h = m_Items.GetChildItem(hTop); h; h = m_States.NextBelow(hTop, h, true))
        {
            nKnown += IsSelected(h);
            SelectItem(h, true);
        }
        i += nKnown;
    }
}

HLibraryItem CTreeSelection::AnchorOr(HLibraryItem hElse)
{
    if (!m_Items.IsAlive(m_hAnchor))
        m_hAnchor = hElse;
    return m_States.VisibleAncestor(m_hAnchor);
}

bool CTreeSelection::DoExpand(HLibraryItem hItem, bool bExpand)
{
    if (!m_Items.HasChildren(hItem) || m_States.IsExpanded(hItem) == bExpand)
        return false;
    m_Owner.OnExpanding(hItem, bExpand);
    if (!bExpand)
    {
        const CBranchResult result = SelectBranch(hItem, false, true);
        if (result.m_bRefused)
            return false;
        ExpandChildren(hItem, false, true);
        if (result.m_bCaret)
            SetCaret(IsSelected(hItem) ? hItem : HLibraryItem());
    }
    m_States.Set(hItem, bExpand ? ~0u : 0u, eState_Expanded);
    m_Owner.OnExpanded(hItem, bExpand);
    return true;
}

bool CTreeSelection::Expand(HLibraryItem hItem, bool bExpand)
{
    if (bExpand)
        Reveal(hItem);
    return DoExpand(hItem, bExpand);
}

// Expanding goes from above and collapsing from below, so that nothing expanded ever lies within something
// collapsed, and each item is passed once however deep the branch.
void CTreeSelection::ExpandChildren(HLibraryItem hParent, bool bExpand, bool bRecurse)
{
    HLibraryItem h = m_Items.GetChildItem(hParent);
    if (bExpand)
        Reveal(h);
    std::vector<HLibraryItem> open;
    while (h)
    {
        if (bExpand)
            DoExpand(h, true);
        else if (m_States.IsExpanded(h))
            open.push_back(h);
        h = bRecurse ? m_States.NextBelow(hParent, h, true) : m_Items.GetNextSiblingItem(h);
    }
    for (auto it = open.rbegin(); it != open.rend(); ++it)
        DoExpand(*it, false);
}

void CTreeSelection::ExpandByHand(HLibraryItem hItem, bool bExpand, bool bBranch)
{
    m_Owner.FinishTyping();
    if (Expand(hItem, bExpand) && bExpand && bBranch)
        ExpandChildren(hItem, true, true);
}

// The uppermost group first.
bool CTreeSelection::Reveal(HLibraryItem hItem)
{
    std::vector<HLibraryItem> closed;
    for (HLibraryItem h = m_Items.GetParentItem(hItem); h; h = m_Items.GetParentItem(h))
    {
        if (!m_States.IsExpanded(h))
            closed.push_back(h);
    }
    for (auto it = closed.rbegin(); it != closed.rend(); ++it)
        DoExpand(*it, true);
    return m_Items.IsAlive(hItem);
}

void CTreeSelection::EnsureVisible(HLibraryItem hItem)
{
    if (Reveal(hItem))
        m_Owner.ScrollTo(hItem);
}

void CTreeSelection::OnRemoving(HLibraryItem hItem)
{
    bool bCaret = false;
    for (HLibraryItem h = hItem; h; h = m_States.NextBelow(hItem, h, false))
    {
        bCaret |= h == m_hCaret;
        m_nSelected -= IsSelected(h);
        m_States.Set(h, 0, ~0u);
    }
    m_hEmptied = m_Items.GetParentItem(hItem);
    if (!bCaret)
        return;
    m_hCaret = m_Items.GetNextSiblingItem(hItem);
    if (!m_hCaret)
        m_hCaret = m_Items.GetPrevSiblingItem(hItem);
    if (!m_hCaret)
        m_hCaret = m_hEmptied;
    m_Owner.OnCaretMoved(m_hCaret);
}

void CTreeSelection::OnRemoved()
{
    if (!m_States.IsExpanded(m_hEmptied) || m_Items.HasChildren(m_hEmptied))
        return;
    m_States.Set(m_hEmptied, 0, eState_Expanded);
    m_Owner.OnExpanded(m_hEmptied, false);
}

void CTreeSelection::OnCleared()
{
    m_States.Clear();
    m_nSelected = 0;
    if (m_hCaret)
    {
        m_hCaret = {};
        m_Owner.OnCaretMoved({});
    }
}
