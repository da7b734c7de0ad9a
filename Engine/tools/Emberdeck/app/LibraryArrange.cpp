#include <algorithm>
#include <set>

#include "app/LibraryEditor.h"
#include "model/MakeOrNull.h"
#include "qsstrutils.h"

// Deleting, moving and sorting.

// Frees every key from the prefabs that go, in one walk over all keys, then destroys them.
void CLibraryEditor::DropPrefabs(CEditScope& scope, const CDoomed& doomed)
{
    // The nearest one above a set; null.
    const auto doomedParent = [&doomed](const CEffectPropertySet& set)
    {
        CEffectPropertySet* p = set.GetParent();
        while (p && !doomed.contains(p))
            p = p->GetParent();
        return p;
    };
    const auto detach = [&doomedParent](CKey& key)
    {
        for (CEffectPropertySet* p = doomedParent(key); p && key.DetachFromParent(p);)
            p = doomedParent(key);
    };
    CEffectPropertySet* pActive = m_Context.m_Host.GetActivePrefab();
    if (pActive && doomed.contains(pActive))
        m_Context.m_Host.ClearActivePrefab();
    m_Context.m_SpellMgr.ForEachKey(
        [&](CSpell& spell, CKey& key)
        {
            if (!doomedParent(key))
                return;
            scope.TouchKey(spell, key);
            detach(key);
        });
    if (CKey* pKey = m_Context.m_Clipboard.GetKey())
        detach(*pKey);
    scope.TouchPrefabList();
    // From the back, where taking one out moves the fewest.
    const auto& prefabs = m_Context.m_SpellMgr.Prefabs();
    for (size_t i = prefabs.size(); i-- > 0;)
    {
        CEffectPropertySet* pPrefab = prefabs[i].get();
        if (!doomed.contains(pPrefab))
            continue;
        scope.TouchPrefab(pPrefab);
        m_Context.m_SpellMgr.DeletePrefab(pPrefab);
    }
}

void CLibraryEditor::DropSpells(const CDoomed& doomed)
{
    const auto& spells = m_Context.m_SpellMgr.Spells();
    for (size_t i = spells.size(); i-- > 0;)
    {
        if (doomed.contains(spells[i].get()))
            m_Context.m_SpellMgr.DeleteSpell(spells[i].get());
    }
}

// The items go first: while they are taken away, whoever shows them can still read their data.
void CLibraryEditor::DeleteLeaves(CEditScope& scope, ELibrarySide eSide,
                                  const std::vector<HLibraryItem>& leaves)
{
    CLibraryTree& tree = Tree(eSide);
    CDoomed doomed;
    const bool bListed = TryAllocating(
        [&]
        {
            for (const HLibraryItem hItem : leaves)
            {
                if (tree.GetItemData(hItem))
                    doomed.insert(tree.GetItemData(hItem));
            }
        });
    if (leaves.empty() || !bListed)
        return;
    TouchTree(scope, eSide);
    if (eSide == ELibrarySide::eEffects)
        scope.TouchSpellList();
    for (const HLibraryItem hItem : leaves)
    {
        const auto* pSpell =
            eSide == ELibrarySide::eEffects ? static_cast<const CSpell*>(tree.GetItemData(hItem)) : nullptr;
        if (pSpell)
        {
            m_Context.m_Documents.Close(pSpell);
            scope.Touch(pSpell);
        }
        tree.DeleteItem(hItem);
    }
    if (eSide == ELibrarySide::eEffects)
        DropSpells(doomed);
    else
        DropPrefabs(scope, doomed);
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
        DeleteLeaves(scope, eSide, {hItem});
        return true;
    }

    std::vector<HLibraryItem> leaves;
    for (HLibraryItem h = tree.GetNextItem(hItem); h && tree.IsAncestor(hItem, h); h = tree.GetNextItem(h))
    {
        if (tree.IsLeaf(h))
            leaves.push_back(h);
    }
    DeleteLeaves(scope, eSide, leaves);
    TouchTree(scope, eSide);
    tree.DeleteItem(hItem);
    return true;
}

void CLibraryEditor::DeleteItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items)
{
    CLibraryTree& tree = Tree(eSide);
    CEditScope scope(m_Context.m_Edits, "Delete Selection");
    std::vector<HLibraryItem> leaves;
    for (const HLibraryItem hItem : items)
    {
        if (tree.IsLeaf(hItem))
            leaves.push_back(hItem);
    }
    DeleteLeaves(scope, eSide, leaves);
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
    // A leaf beside the root may come to where it is saved; a root group stays.
    const bool bStays = !tree.IsAlive(hItem) || (!tree.IsLeaf(hItem) && !tree.GetParentItem(hItem));
    if (bStays || !tree.IsGroup(hTarget) || tree.IsAncestor(hItem, hTarget))
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
    for (const HLibraryItem h : unsorted)
    {
        TouchGroup(scope, eSide, h);
        tree.SortChildren(h, compare);
    }
}
