#include "app/PrefabEditor.h"

#include <algorithm>

#include "model/MakeOrNull.h"
#include "qsstrutils.h"

const char* CPrefabEditor::LeafName(HLibraryItem hItem) const
{
    const CEffectPropertySet* pPrefab = m_Context.m_PrefabTree.GetItemData(hItem);
    return pPrefab ? pPrefab->m_sName.c_str() : nullptr;
}

bool CPrefabEditor::IsNameTaken(const std::string& sName) const
{
    return m_Context.m_SpellMgr.FindPrefab(sName.c_str()) != nullptr;
}

void CPrefabEditor::RenameLeaf(CEditScope& scope, HLibraryItem hItem, const std::string& sName)
{
    CEffectPropertySet* pPrefab = m_Context.m_PrefabTree.GetItemData(hItem);
    scope.TouchPrefab(pPrefab);
    pPrefab->m_sName = sName;
}

bool CPrefabEditor::IndexNames(size_t nMore, CUniqueNames& names) const
{
    return TryAllocating(
        [&]
        {
            names.Reserve(m_Context.m_SpellMgr.Prefabs().size() + nMore);
            for (const auto& pPrefab : m_Context.m_SpellMgr.Prefabs())
                names.Add(pPrefab->m_sName);
        });
}

HLibraryItem CPrefabEditor::NewPrefab(HLibraryItem hGroup, const CEffectTypeDesc* pType)
{
    CEffectPropertySet* pPrefab = nullptr;
    HLibraryItem hItem;
    {
        CEditScope scope(m_Context.m_Edits, "New Prefab");
        if (!pType || !FindGroup(hGroup))
            return {};
        std::string sName;
        m_Context.m_SpellMgr.MakeUniquePrefabName(TypeName(*pType).c_str(), sName);
        scope.TouchPrefabList();
        pPrefab = m_Context.m_SpellMgr.AddPrefab(pType);
        if (!pPrefab)
            return {};
        scope.TouchPrefab(pPrefab);
        TouchGroup(scope, hGroup);
        pPrefab->m_sName = sName;
        EnsureComplete(pPrefab);
        hItem = m_Context.m_PrefabTree.InsertLeaf(sName, hGroup, pPrefab);
    }
    m_Context.m_Host.OfferActivePrefab(pPrefab);
    return hItem;
}

CEffectPropertySet* CPrefabEditor::CreatePrefabFromKey(const CKey& key, const std::string& sName)
{
    if (!key.m_pTypeDesc)
        return nullptr;
    CEditScope scope(m_Context.m_Edits, "Create Prefab From Key");
    scope.TouchPrefabList();
    CEffectPropertySet* pPrefab = m_Context.m_SpellMgr.AddPrefab(key.m_pTypeDesc);
    if (!pPrefab)
        return nullptr;
    scope.TouchPrefab(pPrefab);
    *pPrefab = key;
    pPrefab->Flatten();
    // The copy has brought the key's name, which the search for a free one would take for another's.
    pPrefab->m_sName.clear();
    std::string sTyped = sName;
    std::replace(sTyped.begin(), sTyped.end(), '"', '\'');
    std::string sUnique;
    m_Context.m_SpellMgr.MakeUniquePrefabName(CutAtCharacter(sTyped, c_nMaxEntryName).c_str(), sUnique);
    pPrefab->m_sName = sUnique;
    const HLibraryItem hRoot = EnsureRoot();
    TouchGroup(scope, hRoot);
    m_Context.m_PrefabTree.InsertLeaf(sUnique, hRoot, pPrefab);
    return pPrefab;
}

HLibraryItem CPrefabEditor::DuplicateLeaf(HLibraryItem hItem, CUniqueNames& names)
{
    CPrefabTree& tree = m_Context.m_PrefabTree;
    const CEffectPropertySet* pSource = tree.GetItemData(hItem);
    if (!pSource)
        return {};
    if (!tree.GetParentItem(hItem))
    {
        EnsureRoot();
        hItem = tree.FindData(pSource); // it may have been moved under the root
    }
    const std::string sName = names.Make(pSource->m_sName);
    CEditScope scope(m_Context.m_Edits, "Duplicate Prefab");
    scope.TouchPrefabList();
    CEffectPropertySet* pPrefab = m_Context.m_SpellMgr.AddPrefab(pSource->m_pTypeDesc);
    if (!pPrefab)
        return {};
    scope.TouchPrefab(pPrefab);
    *pPrefab = *pSource;
    pPrefab->m_sName = sName;
    names.Add(pPrefab->m_sName);
    const HLibraryItem hGroup = tree.GetParentItem(hItem);
    TouchGroup(scope, hGroup);
    return tree.InsertLeaf(sName, hGroup, pPrefab);
}

// Every key and the clipboard, in one walk over all keys. What they have inherited becomes their own.
void CPrefabEditor::FreeFrom(CEditScope& scope, const CDoomed& doomed)
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
}

bool CPrefabEditor::DeleteLeaves(CEditScope& scope, const std::vector<HLibraryItem>& leaves)
{
    CPrefabTree& tree = m_Context.m_PrefabTree;
    CDoomed doomed;
    if (leaves.empty())
        return true;
    if (!TryAllocating([&] { doomed = ObjectsOf(tree, leaves); }))
        return false;
    TouchTree(scope);
    for (const HLibraryItem hItem : leaves)
        tree.DeleteItem(hItem);
    const CEffectPropertySet* pActive = m_Context.m_Host.GetActivePrefab();
    if (pActive && doomed.contains(pActive))
        m_Context.m_Host.ClearActivePrefab();
    FreeFrom(scope, doomed);
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
    return true;
}
