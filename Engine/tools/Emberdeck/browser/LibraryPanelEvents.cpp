#include "browser/LibraryPanel.h"

#include <algorithm>

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

void CLibraryPanel::ShowItems(const std::vector<HLibraryItem>& items)
{
    constexpr size_t c_nMost = 100; // more than these nobody looks at
    if (IsBusy() || items.empty())
        return;
    m_Tree.SelectAllItems(false, {});
    for (size_t i = std::min(items.size(), c_nMost); i-- > 0;)
    {
        m_Tree.EnsureVisible(items[i]);
        m_Tree.SelectItem(items[i], true);
    }
    m_Tree.SetCaret(items.front());
}

bool CLibraryPanel::OnLeftPress(CPoint pt, CModifiers modifiers)
{
    return IsDragging() || m_Tree.OnLeftPress(pt, modifiers);
}

void CLibraryPanel::OnMove(CPoint pt, bool bLeftDown)
{
    if (!IsDragging())
        m_Tree.OnMove(pt, bLeftDown);
    else if (bLeftDown)
        m_Drag.MoveTo(pt);
    else
        m_Drag.End(); // the release went elsewhere: neither moved nor opened
}

void CLibraryPanel::OnLeftRelease(CPoint pt)
{
    if (IsDragging())
        Drop(pt);
    else
        m_Tree.OnLeftRelease();
}

void CLibraryPanel::OnDoubleClick(CPoint pt, CModifiers modifiers)
{
    if (!IsDragging())
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
    if (!IsDragging())
        m_Tree.OnRightPress(pt, modifiers);
}

std::vector<CMenuEntry> CLibraryPanel::OnRightRelease(CPoint pt)
{
    if (IsBusy())
        return {};
    FinishEdit();
    m_Tree.OnRightRelease();
    return m_View.GetClientRect().Contains(pt) ? GetMenu() : std::vector<CMenuEntry>();
}

std::vector<CMenuEntry> CLibraryPanel::OnMenuKey(CPoint& pt)
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
    m_Drag.End();
    m_Tree.OnMouseLost();
}

bool CLibraryPanel::OnKey(const CTreeKey& key)
{
    if (!IsDragging())
        return m_Tree.OnKey(key);
    if (key.m_eKey == ETreeKey::eEscape)
        m_Drag.End();
    return true;
}

bool CLibraryPanel::OnCharacter(std::string_view sCharacter, uint64_t nTime)
{
    return !IsDragging() && m_Tree.OnCharacter(sCharacter, nTime);
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

// What moves goes to the target that was highlighted last.
void CLibraryPanel::Drop(CPoint pt)
{
    const HLibraryItem hTarget = m_Drag.GetTarget();
    m_Drag.End();
    if (!m_View.GetClientRect().Contains(pt))
        OnOpen();
    else if (m_Tree.Tree().IsAlive(hTarget))
        MoveSelection(hTarget);
}

void CLibraryPanel::MoveSelection(HLibraryItem hTarget)
{
    std::vector<HLibraryItem> items;
    m_Tree.GetSelectedItems(items);
    const HLibraryItem hCaret = m_Tree.GetCaret();
    Editor().MoveItems(items, hTarget);
    // A moved item is a new one; the caret would have gone to a neighbour.
    if (hCaret && !m_Tree.Tree().IsAlive(hCaret))
        m_Tree.SetCaret(hTarget);
}
