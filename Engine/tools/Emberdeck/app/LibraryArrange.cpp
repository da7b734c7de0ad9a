#include <set>

#include "app/LibraryEditor.h"
#include "qsstrutils.h"

// Moving and sorting.

HLibraryItem CLibraryEditor::Move(HLibraryItem hItem, HLibraryItem hTarget)
{
    // A leaf beside the root may come to where it is saved; a root group stays.
    const bool bStays = !m_Tree.IsAlive(hItem) || (!m_Tree.IsLeaf(hItem) && !m_Tree.GetParentItem(hItem));
    if (bStays || !m_Tree.IsGroup(hTarget) || m_Tree.IsAncestor(hItem, hTarget))
        return {};
    if (m_Tree.GetParentItem(hItem) == hTarget)
        return hItem;

    CEditScope scope(m_Context.m_Edits, LabelFor("Move", {hItem}));
    TouchTree(scope);
    return m_Tree.MoveItem(hItem, hTarget);
}

void CLibraryEditor::MoveItems(const std::vector<HLibraryItem>& items, HLibraryItem hTarget)
{
    if (!m_Tree.IsGroup(hTarget))
        return;
    CEditScope scope(m_Context.m_Edits, LabelFor("Move", items));
    for (const HLibraryItem hItem : items)
    {
        if (m_Tree.IsLeaf(hItem))
            Move(hItem, hTarget);
    }

    // An inner group stays in the outer one, whose move makes it a new item that the list doesn't know.
    // Found before anything moves; one within a group that can't move itself still moves.
    const std::set<HLibraryItem> listed(items.begin(), items.end());
    std::vector<HLibraryItem> groups;
    for (const HLibraryItem hItem : items)
    {
        if (!m_Tree.IsGroup(hItem))
            continue;
        bool bInner = false;
        for (HLibraryItem h = m_Tree.GetParentItem(hItem); h && !bInner; h = m_Tree.GetParentItem(h))
            bInner = listed.contains(h) && m_Tree.GetParentItem(h) && !m_Tree.IsAncestor(h, hTarget);
        if (!bInner)
            groups.push_back(hItem);
    }
    for (const HLibraryItem hItem : groups)
        Move(hItem, hTarget);
    Sort();
}

void CLibraryEditor::Sort()
{
    const auto compare = [this](HLibraryItem hLeft, HLibraryItem hRight)
    {
        const char* pszLeft = LeafName(hLeft);
        const char* pszRight = LeafName(hRight);
        return pszLeft && pszRight ? int(QSStrICmp(pszLeft, pszRight))
                                   : int(pszLeft != nullptr) - int(pszRight != nullptr);
    };
    const auto isSorted = [&](HLibraryItem hParent)
    {
        HLibraryItem hPrev;
        for (HLibraryItem h = m_Tree.GetChildItem(hParent); h; hPrev = h, h = m_Tree.GetNextSiblingItem(h))
        {
            if (hPrev && compare(hPrev, h) > 0)
                return false;
        }
        return true;
    };

    std::vector<HLibraryItem> unsorted; // first, since sorting moves what comes next
    for (HLibraryItem h = m_Tree.GetRootItem(); h; h = m_Tree.GetNextItem(h))
    {
        if (!isSorted(h))
            unsorted.push_back(h);
    }
    if (unsorted.empty())
        return;
    CEditScope scope(m_Context.m_Edits, "Sort");
    for (const HLibraryItem h : unsorted)
    {
        TouchGroup(scope, h);
        m_Tree.SortChildren(h, compare);
    }
}
