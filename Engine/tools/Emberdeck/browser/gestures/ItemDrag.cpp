#include "browser/gestures/ItemDrag.h"

CItemDrag::CItemDrag(CMultiSelectTreeCtrl& tree, ITreeView& view) : m_Tree(tree), m_View(view) {}

void CItemDrag::Begin()
{
    m_bRunning = true;
    m_View.SetDragCursor(m_Tree.GetSelectedCount() > 1 ? EDragCursor::eSeveralItems : EDragCursor::eOneItem);
}

void CItemDrag::SetTarget(HLibraryItem hTarget)
{
    if (hTarget == m_hTarget)
        return;
    m_Tree.SetItemStateEx(m_hTarget, 0, eState_DropHilited);
    m_hTarget = hTarget;
    m_Tree.SetItemStateEx(m_hTarget, eState_DropHilited, eState_DropHilited);
}

void CItemDrag::MoveTo(CPoint pt)
{
    const CLibraryTree& tree = m_Tree.Tree();
    const bool bInside = m_View.GetClientRect().Contains(pt);
    const HLibraryItem hItem = bInside ? m_View.HitTest(pt).m_hItem : HLibraryItem();
    if (!tree.IsAlive(hItem) || m_Tree.IsSelected(hItem))
        SetTarget({});
    else
        SetTarget(tree.IsGroup(hItem) ? hItem : tree.GetParentItem(hItem));
}

void CItemDrag::End()
{
    if (!m_bRunning)
        return;
    m_bRunning = false;
    SetTarget({});
    m_View.SetDragCursor(EDragCursor::eNone);
}
