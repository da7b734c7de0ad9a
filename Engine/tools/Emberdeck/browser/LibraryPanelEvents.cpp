#include "browser/LibraryPanel.h"

// Events of the tree's window, and drag and drop.

void CLibraryPanel::OnPageShown(bool bShown)
{
    if (!bShown)
    {
        FinishEdit();
        CancelModes();
    }
    m_Tree.ShowFindDialog(bShown);
}

bool CLibraryPanel::OnLeftPress(CPoint pt, CModifiers modifiers)
{
    return m_bDragging || m_Tree.OnLeftPress(pt, modifiers);
}

void CLibraryPanel::OnMove(CPoint pt, bool bLeftDown)
{
    if (!m_bDragging)
        m_Tree.OnMove(pt, bLeftDown);
    else if (bLeftDown)
        DragTo(pt);
    else
        EndDrag(); // the release went elsewhere: neither moved nor opened
}

void CLibraryPanel::OnLeftRelease(CPoint pt)
{
    if (m_bDragging)
        Drop(pt);
    else
        m_Tree.OnLeftRelease();
}

void CLibraryPanel::OnDoubleClick(CPoint pt, CModifiers modifiers)
{
    if (!m_bDragging)
        m_Tree.OnDoubleClick(pt, modifiers);
}

// A group only folds and unfolds, which the tree has done.
void CLibraryPanel::OnDoubleClick()
{
    if (m_Tree.Tree().IsLeaf(m_Tree.GetCaret()))
        OnOpen();
}

void CLibraryPanel::OnRightPress(CPoint pt, CModifiers modifiers)
{
    if (!m_bDragging)
        m_Tree.OnRightPress(pt, modifiers);
}

CPanelMenu CLibraryPanel::OnRightRelease(CPoint pt)
{
    if (IsBusy())
        return {};
    FinishEdit();
    m_Tree.OnRightRelease();
    return m_View.GetClientRect().Contains(pt) ? GetMenu() : CPanelMenu();
}

CPanelMenu CLibraryPanel::OnMenuKey(CPoint& pt)
{
    if (IsBusy())
        return {};
    FinishEdit();
    const CRect rcClient = m_View.GetClientRect();
    pt = {rcClient.left, rcClient.top};
    if (const HLibraryItem hCaret = m_Tree.GetCaret())
    {
        m_Tree.EnsureVisible(hCaret);
        const CRect rcLabel = m_View.GetLabelRect(hCaret);
        pt = {rcLabel.left, rcLabel.bottom};
    }
    return GetMenu();
}

void CLibraryPanel::OnMouseLost()
{
    EndDrag();
    m_Tree.OnMouseLost();
}

bool CLibraryPanel::OnKey(const CTreeKey& key)
{
    if (!m_bDragging)
        return m_Tree.OnKey(key);
    if (key.m_eKey == ETreeKey::eEscape)
        EndDrag();
    return true;
}

bool CLibraryPanel::OnCharacter(std::string_view sCharacter, uint64_t nTime)
{
    return !m_bDragging && m_Tree.OnCharacter(sCharacter, nTime);
}

// With Ctrl or Shift, Insert and Delete are other commands.
bool CLibraryPanel::OnKeyDown(const CTreeKey& key)
{
    if (!key.IsPlain())
        return false;
    switch (key.m_eKey)
    {
    case ETreeKey::eEnter:
        Command(c_nControlOk);
        return true;
    case ETreeKey::eEscape:
        Command(c_nControlCancel);
        return true;
    case ETreeKey::eInsert:
        OnDuplicate();
        return true;
    case ETreeKey::eDelete:
        OnDeleteSelection();
        return true;
    default:
        return false;
    }
}

void CLibraryPanel::OnBeginDrag(HLibraryItem hItem, CPoint)
{
    m_bDragging = true;
    m_View.SetCapture();
    m_View.SetDragCursor(m_Tree.GetSelectedCount() < 2 ? EDragCursor::eOneItem : EDragCursor::eSeveralItems);
    if (m_Tree.GetSelectedCount() <= 1)
        m_Tree.SelectOnly(hItem);
}

void CLibraryPanel::SetDropTarget(HLibraryItem hTarget)
{
    m_Tree.SetItemStateEx(m_hDropTarget, 0, eState_DropHilited);
    m_hDropTarget = hTarget;
    m_Tree.SetItemStateEx(m_hDropTarget, eState_DropHilited, eState_DropHilited);
}

// The whole row of an item counts, as far as the tree goes: outside it a drop opens. A selected item is no
// target: it is what moves.
void CLibraryPanel::DragTo(CPoint pt)
{
    const CLibraryTree& tree = m_Tree.Tree();
    const bool bInside = m_View.GetClientRect().Contains(pt);
    const HLibraryItem hItem = bInside ? m_View.HitTest(pt).m_hItem : HLibraryItem();
    if (!tree.IsAlive(hItem))
        SetDropTarget({});
    else if (hItem != m_hDropTarget)
    {
        HLibraryItem hTarget;
        if (!m_Tree.IsSelected(hItem))
            hTarget = tree.IsGroup(hItem) ? hItem : tree.GetParentItem(hItem);
        SetDropTarget(hTarget);
    }
}

// What moves goes to the target that was highlighted last.
void CLibraryPanel::Drop(CPoint pt)
{
    const HLibraryItem hTarget = m_hDropTarget;
    EndDrag();
    if (!m_View.GetClientRect().Contains(pt))
        OnOpen();
    else if (hTarget)
        MoveSelection(hTarget);
}

void CLibraryPanel::EndDrag()
{
    if (!m_bDragging)
        return;
    m_bDragging = false; // first, since the end of the capture comes back as its loss
    SetDropTarget({});
    m_View.ReleaseCapture();
    m_View.SetDragCursor(EDragCursor::eNone);
}

void CLibraryPanel::MoveSelection(HLibraryItem hTarget)
{
    std::vector<HLibraryItem> items;
    m_Tree.GetSelectedItems(items);
    const HLibraryItem hCaret = m_Tree.GetCaret();
    m_Editor.MoveItems(m_eSide, items, hTarget);
    // A moved item is a new one; the caret would have gone to a neighbour.
    if (hCaret && !m_Tree.Tree().IsAlive(hCaret))
        m_Tree.SetCaret(hTarget);
}
