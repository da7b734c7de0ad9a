#include <algorithm>
#include <set>

#include "app/LibraryEditor.h"
#include "qsstrutils.h"

// Deleting, moving and sorting.

namespace
{

bool StandsOn(const CEffectPropertySet& set, const CEffectPropertySet* pPrefab)
{
    for (const CEffectPropertySet* p = set.GetParent(); p; p = p->GetParent())
    {
        if (p == pPrefab)
            return true;
    }
    return false;
}

} // namespace

// Frees every key from a prefab, then destroys it.
void CLibraryEditor::DropPrefab(CEditScope& scope, CEffectPropertySet* pPrefab)
{
    if (m_Context.m_Host.GetActivePrefab() == pPrefab)
        m_Context.m_Host.ClearActivePrefab();
    m_Context.m_SpellMgr.ForEachKey(
        [&](CSpell& spell, CKey& key)
        {
            if (!StandsOn(key, pPrefab))
                return;
            scope.Touch(&spell);
            key.DetachFromParent(pPrefab);
        });
    if (CKey* pKey = m_Context.m_Clipboard.GetKey())
        pKey->DetachFromParent(pPrefab);
    scope.TouchPrefab(pPrefab);
    m_Context.m_SpellMgr.DeletePrefab(pPrefab);
}

// The item goes first: while it is taken away, whoever shows it can still read its data.
void CLibraryEditor::DeleteLeaf(CEditScope& scope, ELibrarySide eSide, HLibraryItem hItem)
{
    CLibraryTree& tree = Tree(eSide);
    void* pData = tree.GetItemData(hItem);
    TouchTree(scope, eSide);
    if (eSide == ELibrarySide::ePrefabs)
    {
        tree.DeleteItem(hItem);
        if (pData)
            DropPrefab(scope, static_cast<CEffectPropertySet*>(pData));
        return;
    }
    CSpell* pSpell = static_cast<CSpell*>(pData);
    if (pSpell)
    {
        m_Context.m_Documents.Close(pSpell);
        scope.Touch(pSpell);
    }
    tree.DeleteItem(hItem);
    if (pSpell)
        m_Context.m_SpellMgr.DeleteSpell(pSpell);
}

bool CLibraryEditor::Delete(ELibrarySide eSide, HLibraryItem hItem)
{
    CLibraryTree& tree = Tree(eSide);
    const bool bLeaf = tree.IsLeaf(hItem);
    // A leaf beside the root may go; a root group holds what is saved.
    if (!tree.IsAlive(hItem) || (!bLeaf && !tree.GetParentItem(hItem)))
        return false;
    CEditScope scope(m_Context.m_Edits, "Delete");
    if (bLeaf)
    {
        DeleteLeaf(scope, eSide, hItem);
        return true;
    }

    std::vector<HLibraryItem> leaves;
    for (HLibraryItem h = tree.GetNextItem(hItem); h && tree.IsAncestor(hItem, h); h = tree.GetNextItem(h))
    {
        if (tree.IsLeaf(h))
            leaves.push_back(h);
    }
    for (const HLibraryItem h : leaves)
        DeleteLeaf(scope, eSide, h);
    TouchTree(scope, eSide);
    tree.DeleteItem(hItem);
    return true;
}

void CLibraryEditor::DeleteItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items)
{
    CLibraryTree& tree = Tree(eSide);
    CEditScope scope(m_Context.m_Edits, "Delete Selection");
    for (const HLibraryItem hItem : items)
    {
        if (tree.IsLeaf(hItem))
            Delete(eSide, hItem);
    }
    for (const HLibraryItem hItem : items)
        Delete(eSide, hItem); // dead by now: nothing
}

// A moved item is a new one, with its image for both states.
HLibraryItem CLibraryEditor::MoveBranch(CLibraryTree& tree, HLibraryItem hItem, HLibraryItem hTarget)
{
    const auto copy = [&tree](HLibraryItem hOld, HLibraryItem hParent)
    {
        const int nImage = tree.GetItemImage(hOld);
        const std::string sText = tree.GetItemText(hOld);
        return tree.InsertItem(sText, nImage, nImage, hParent, tree.GetItemData(hOld));
    };
    const HLibraryItem hMoved = copy(hItem, hTarget);
    std::vector<std::pair<HLibraryItem, HLibraryItem>> open = {{hItem, hMoved}};
    while (!open.empty())
    {
        const auto [hOld, hNew] = open.back();
        open.pop_back();
        for (HLibraryItem h = tree.GetChildItem(hOld); h; h = tree.GetNextSiblingItem(h))
            open.emplace_back(h, copy(h, hNew));
    }
    tree.DeleteItem(hItem);
    return hMoved;
}

HLibraryItem CLibraryEditor::Move(ELibrarySide eSide, HLibraryItem hItem, HLibraryItem hTarget)
{
    CLibraryTree& tree = Tree(eSide);
    if (!tree.GetParentItem(hItem) || !tree.IsGroup(hTarget) || tree.IsAncestor(hItem, hTarget))
        return {};
    if (tree.GetParentItem(hItem) == hTarget)
        return hItem;

    CEditScope scope(m_Context.m_Edits, "Move");
    TouchTree(scope, eSide);
    return MoveBranch(tree, hItem, hTarget);
}

void CLibraryEditor::MoveItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items,
                               HLibraryItem hTarget)
{
    CLibraryTree& tree = Tree(eSide);
    if (!tree.IsGroup(hTarget))
        return;
    CEditScope scope(m_Context.m_Edits, "Move Items");
    for (const HLibraryItem hItem : items)
    {
        if (tree.IsLeaf(hItem))
            Move(eSide, hItem, hTarget);
    }

    // An inner group stays in the outer one, whose move makes it a new item that the list doesn't know.
    // Found before anything moves; one within a group that can't move itself still moves.
    const std::set<HLibraryItem> listed(items.begin(), items.end());
    std::vector<HLibraryItem> groups;
    for (const HLibraryItem hItem : items)
    {
        if (!tree.IsGroup(hItem))
            continue;
        bool bInner = false;
        for (HLibraryItem h = tree.GetParentItem(hItem); h && !bInner; h = tree.GetParentItem(h))
            bInner = listed.contains(h) && tree.GetParentItem(h) && !tree.IsAncestor(h, hTarget);
        if (!bInner)
            groups.push_back(hItem);
    }
    for (const HLibraryItem hItem : groups)
        Move(eSide, hItem, hTarget);
    Sort(eSide);
}

void CLibraryEditor::Sort(ELibrarySide eSide)
{
    CLibraryTree& tree = Tree(eSide);
    const bool bEffects = eSide == ELibrarySide::eEffects;
    const auto compare = [&tree, bEffects](HLibraryItem hLeft, HLibraryItem hRight)
    {
        const void* pLeft = tree.GetItemData(hLeft);
        const void* pRight = tree.GetItemData(hRight);
        if (!pLeft || !pRight)
            return int(pLeft != nullptr) - int(pRight != nullptr);
        if (bEffects)
            return int(QSStrICmp(static_cast<const CSpell*>(pLeft)->m_szName,
                                 static_cast<const CSpell*>(pRight)->m_szName));
        return int(QSStrICmp(static_cast<const CEffectPropertySet*>(pLeft)->m_sName.c_str(),
                             static_cast<const CEffectPropertySet*>(pRight)->m_sName.c_str()));
    };
    const auto isSorted = [&](HLibraryItem hParent)
    {
        HLibraryItem hPrev;
        for (HLibraryItem h = tree.GetChildItem(hParent); h; hPrev = h, h = tree.GetNextSiblingItem(h))
        {
            if (hPrev && compare(hPrev, h) > 0)
                return false;
        }
        return true;
    };

    std::vector<HLibraryItem> unsorted; // first, since sorting moves what comes next
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
    {
        if (!isSorted(h))
            unsorted.push_back(h);
    }
    if (unsorted.empty())
        return;
    CEditScope scope(m_Context.m_Edits, "Sort");
    TouchTree(scope, eSide);
    for (const HLibraryItem h : unsorted)
        tree.SortChildren(h, compare);
}
