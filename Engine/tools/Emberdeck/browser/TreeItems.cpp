#include "browser/MultiSelectTreeCtrl.h"

// The visible order, the caret, expanding, and what happens when the tree changes.

HLibraryItem CMultiSelectTreeCtrl::NextVisible(HLibraryItem hItem) const
{
    return NextBelow({}, hItem, true);
}

// The item behind this one among all below hTop, or among the visible ones; null at their end. Climbs no
// higher than hTop, so that a walk over a branch takes no longer deep down in the tree.
HLibraryItem CMultiSelectTreeCtrl::NextBelow(HLibraryItem hTop, HLibraryItem hItem, bool bVisible) const
{
    HLibraryItem hNext = !bVisible || IsExpanded(hItem) ? m_Items.GetChildItem(hItem) : HLibraryItem();
    while (!hNext && hItem && hItem != hTop)
    {
        hNext = m_Items.GetNextSiblingItem(hItem);
        hItem = m_Items.GetParentItem(hItem);
    }
    return hNext;
}

HLibraryItem CMultiSelectTreeCtrl::PrevVisible(HLibraryItem hItem) const
{
    HLibraryItem h = m_Items.GetPrevSiblingItem(hItem);
    if (!h)
        return m_Items.GetParentItem(hItem);
    while (IsExpanded(h) && m_Items.HasChildren(h))
        h = m_Items.GetLastChildItem(h);
    return h;
}

HLibraryItem CMultiSelectTreeCtrl::LastVisible() const
{
    HLibraryItem h = m_Items.GetRootItem();
    while (const HLibraryItem hNext = m_Items.GetNextSiblingItem(h))
        h = hNext;
    while (IsExpanded(h) && m_Items.HasChildren(h))
        h = m_Items.GetLastChildItem(h);
    return h;
}

bool CMultiSelectTreeCtrl::IsVisible(HLibraryItem hItem) const
{
    return m_Items.IsAlive(hItem) && VisibleAncestor(hItem) == hItem;
}

// The item itself when it is visible, else the lowest item above it that is; null for a dead one.
HLibraryItem CMultiSelectTreeCtrl::VisibleAncestor(HLibraryItem hItem) const
{
    HLibraryItem hVisible = m_Items.IsAlive(hItem) ? hItem : HLibraryItem();
    for (HLibraryItem h = m_Items.GetParentItem(hItem); h; h = m_Items.GetParentItem(h))
    {
        if (!IsExpanded(h))
            hVisible = h;
    }
    return hVisible;
}

// Expands the groups above an item, the uppermost first.
bool CMultiSelectTreeCtrl::Reveal(HLibraryItem hItem)
{
    std::vector<HLibraryItem> closed;
    for (HLibraryItem h = m_Items.GetParentItem(hItem); h; h = m_Items.GetParentItem(h))
    {
        if (!IsExpanded(h))
            closed.push_back(h);
    }
    for (auto it = closed.rbegin(); it != closed.rend(); ++it)
        DoExpand(*it, true);
    return m_Items.IsAlive(hItem);
}

void CMultiSelectTreeCtrl::EnsureVisible(HLibraryItem hItem)
{
    if (Reveal(hItem))
        m_View.ScrollTo(hItem);
}

bool CMultiSelectTreeCtrl::SetCaret(HLibraryItem hItem)
{
    if (hItem == m_hCaret)
        return true;
    // The end of a label edit takes the caret for the item that was edited.
    EndEdit();
    if (hItem && !Reveal(hItem))
        return false;
    m_hEditWanted = {};
    m_hCaret = hItem;
    m_View.CaretChanged(hItem);
    if (hItem)
        m_View.ScrollTo(hItem);
    return true;
}

bool CMultiSelectTreeCtrl::DoExpand(HLibraryItem hItem, bool bExpand)
{
    if (!m_Items.HasChildren(hItem) || IsExpanded(hItem) == bExpand)
        return false;
    m_Parent.OnItemExpanding(hItem, bExpand);
    if (!bExpand)
    {
        if (m_Items.IsAncestor(hItem, m_hEdited) && hItem != m_hEdited)
            EndEdit();
        const CBranchResult result = SelectBranch(hItem, false, true);
        if (result.m_bRefused)
            return false;
        ExpandChildren(hItem, false, true);
        if (result.m_bCaret)
            SetCaret(IsSelected(hItem) ? hItem : HLibraryItem());
    }
    m_States.Set(hItem, bExpand ? ~0u : 0u, eState_Expanded);
    m_View.ItemExpanded(hItem, bExpand);
    return true;
}

bool CMultiSelectTreeCtrl::Expand(HLibraryItem hItem, bool bExpand)
{
    if (bExpand)
        Reveal(hItem);
    return DoExpand(hItem, bExpand);
}

// Expanding goes from above and collapsing from below, so that nothing expanded ever lies within something
// collapsed, and each item is passed once however deep the branch.
void CMultiSelectTreeCtrl::ExpandChildren(HLibraryItem hParent, bool bExpand, bool bRecurse)
{
    HLibraryItem h = m_Items.GetChildItem(hParent);
    if (bExpand)
        Reveal(h);
    std::vector<HLibraryItem> open;
    while (h)
    {
        if (bExpand)
            DoExpand(h, true);
        else if (IsExpanded(h))
            open.push_back(h);
        h = bRecurse ? NextBelow(hParent, h, true) : m_Items.GetNextSiblingItem(h);
    }
    for (auto it = open.rbegin(); it != open.rend(); ++it)
        DoExpand(*it, false);
}

void CMultiSelectTreeCtrl::OnUserExpand(HLibraryItem hItem, bool bExpand, bool bCtrl)
{
    if (IsExpanded(hItem) == bExpand)
        return;
    EndEdit();
    if (Expand(hItem, bExpand) && bExpand && bCtrl)
        ExpandChildren(hItem, true, true);
}

void CMultiSelectTreeCtrl::OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem)
{
    if (eChange == CLibraryTree::eTree_Removing)
        ForgetBranch(hItem);
    if (eChange == CLibraryTree::eTree_Cleared)
        Reset();
    m_View.TreeChanged(eChange, hItem);
    if (eChange == CLibraryTree::eTree_Removed && IsExpanded(m_hEmptied) && !m_Items.HasChildren(m_hEmptied))
    {
        m_States.Set(m_hEmptied, 0, eState_Expanded);
        m_View.ItemExpanded(m_hEmptied, false);
    }
    m_Parent.OnTreeChange(eChange, hItem);
}

// An item goes with all below it. Its selection ends without a word, as it does itself.
void CMultiSelectTreeCtrl::ForgetBranch(HLibraryItem hItem)
{
    bool bCaret = false;
    for (HLibraryItem h = hItem; h; h = NextBelow(hItem, h, false))
    {
        if (h == m_hEdited)
            CancelEdit();
        if (IsBusy() && h == m_hTracked)
            EndMode();
        if (h == m_hAnchor)
            m_hAnchor = {};
        bCaret |= h == m_hCaret;
        m_nSelected -= IsSelected(h);
        m_States.Set(h, 0, ~0u);
    }
    m_hEmptied = m_Items.GetParentItem(hItem);
    if (!bCaret)
        return;
    m_hEditWanted = {};
    m_hCaret = m_Items.GetNextSiblingItem(hItem);
    if (!m_hCaret)
        m_hCaret = m_Items.GetPrevSiblingItem(hItem);
    if (!m_hCaret)
        m_hCaret = m_hEmptied;
    m_View.CaretChanged(m_hCaret);
}

void CMultiSelectTreeCtrl::Reset()
{
    CancelModes();
    m_States.Clear();
    m_nSelected = 0;
    m_hAnchor = {};
    m_hEmptied = {};
    if (m_hCaret)
    {
        m_hCaret = {};
        m_View.CaretChanged({});
    }
}

void CMultiSelectTreeCtrl::CancelModes()
{
    CancelEdit();
    m_hEditWanted = {};
    m_sTyped.clear();
    m_Band.Cancel();
    if (IsBusy())
        EndMode();
}
