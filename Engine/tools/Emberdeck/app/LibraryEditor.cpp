#include "app/LibraryEditor.h"

#include <algorithm>

#include "model/MakeOrNull.h"
#include "qsstrutils.h"

void CLibraryEditor::TouchGroup(CEditScope& scope, ELibrarySide eSide, HLibraryItem hGroup)
{
    scope.TouchGroup(eSide == ELibrarySide::eEffects ? ETreeSide::eEffects : ETreeSide::ePrefabs, hGroup);
}

void CLibraryEditor::TouchTree(CEditScope& scope, ELibrarySide eSide)
{
    if (eSide == ELibrarySide::eEffects)
        scope.TouchEffectTree();
    else
        scope.TouchPrefabTree();
}

HLibraryItem CLibraryEditor::EnsureRoot(ELibrarySide eSide)
{
    CLibraryTree& tree = Tree(eSide);
    const HLibraryItem hFirst = tree.GetRootItem();
    if (hFirst && tree.IsGroup(hFirst))
        return hFirst;

    CEditScope scope(m_Context.m_Edits, "Make Root");
    TouchTree(scope, eSide);
    std::vector<HLibraryItem> roots;
    for (HLibraryItem h = hFirst; h; h = tree.GetNextSiblingItem(h))
        roots.push_back(h);
    const HLibraryItem hRoot =
        tree.InsertGroup(eSide == ELibrarySide::eEffects ? c_szEffectRoot : c_szPrefabRoot, {});
    for (const HLibraryItem h : roots)
        MoveBranch(tree, h, hRoot);
    return hRoot;
}

// The group that a new item goes to. False: hGroup is something else.
bool CLibraryEditor::FindGroup(ELibrarySide eSide, HLibraryItem& hGroup)
{
    if (!hGroup)
        hGroup = EnsureRoot(eSide);
    return Tree(eSide).IsGroup(hGroup);
}

HLibraryItem CLibraryEditor::NewGroup(ELibrarySide eSide, HLibraryItem hGroup, const char* pszName)
{
    CEditScope scope(m_Context.m_Edits, "New Group");
    if (!FindGroup(eSide, hGroup))
        return {};
    TouchGroup(scope, eSide, hGroup);
    return Tree(eSide).InsertGroup(pszName, hGroup);
}

HLibraryItem CLibraryEditor::NewEffect(HLibraryItem hGroup)
{
    CEditScope scope(m_Context.m_Edits, "New Effect");
    if (!FindGroup(ELibrarySide::eEffects, hGroup))
        return {};
    scope.TouchSpellList();
    CSpell* pSpell = m_Context.m_SpellMgr.AddSpell();
    if (!pSpell)
        return {};
    scope.Touch(pSpell);
    TouchGroup(scope, ELibrarySide::eEffects, hGroup);
    return m_Context.m_EffectTree.InsertLeaf(pSpell->m_szName, hGroup, pSpell);
}

HLibraryItem CLibraryEditor::NewPrefab(HLibraryItem hGroup, const CEffectTypeDesc* pType)
{
    CEffectPropertySet* pPrefab = nullptr;
    HLibraryItem hItem;
    {
        CEditScope scope(m_Context.m_Edits, "New Prefab");
        if (!pType || !FindGroup(ELibrarySide::ePrefabs, hGroup))
            return {};
        std::string sName;
        m_Context.m_SpellMgr.MakeUniquePrefabName(TypeName(*pType).c_str(), sName);
        scope.TouchPrefabList();
        pPrefab = m_Context.m_SpellMgr.AddPrefab(pType);
        if (!pPrefab)
            return {};
        scope.TouchPrefab(pPrefab);
        TouchGroup(scope, ELibrarySide::ePrefabs, hGroup);
        pPrefab->m_sName = sName;
        EnsureComplete(pPrefab);
        hItem = m_Context.m_PrefabTree.InsertLeaf(sName, hGroup, pPrefab);
    }
    m_Context.m_Host.OfferActivePrefab(pPrefab);
    return hItem;
}

CEffectPropertySet* CLibraryEditor::CreatePrefabFromKey(const CKey& key, const std::string& sName)
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
    const HLibraryItem hRoot = EnsureRoot(ELibrarySide::ePrefabs);
    TouchGroup(scope, ELibrarySide::ePrefabs, hRoot);
    m_Context.m_PrefabTree.InsertLeaf(sUnique, hRoot, pPrefab);
    return pPrefab;
}

HLibraryItem CLibraryEditor::DuplicateEffect(const CSpell& source, HLibraryItem hItem, CUniqueNames& names)
{
    CSpellMgr& spellMgr = m_Context.m_SpellMgr;
    CEditScope scope(m_Context.m_Edits, "Duplicate");
    const std::string sName = UniqueEffectName(names, source.m_szName);
    scope.TouchSpellList();
    CSpell* pSpell = spellMgr.AddSpell();
    if (!pSpell)
        return {};
    scope.Touch(pSpell);
    pSpell->SetName(sName);
    if (!pSpell->CopyFrom(source))
    {
        spellMgr.DeleteSpell(pSpell);
        return {};
    }
    names.Add(BoundedText(pSpell->m_szName));
    const HLibraryItem hGroup = m_Context.m_EffectTree.GetParentItem(hItem);
    TouchGroup(scope, ELibrarySide::eEffects, hGroup);
    return m_Context.m_EffectTree.InsertLeaf(pSpell->m_szName, hGroup, pSpell);
}

HLibraryItem CLibraryEditor::DuplicatePrefab(const CEffectPropertySet& source, HLibraryItem hItem,
                                             CUniqueNames& names)
{
    CEditScope scope(m_Context.m_Edits, "Duplicate");
    const std::string sName = names.Make(source.m_sName);
    scope.TouchPrefabList();
    CEffectPropertySet* pPrefab = m_Context.m_SpellMgr.AddPrefab(source.m_pTypeDesc);
    if (!pPrefab)
        return {};
    scope.TouchPrefab(pPrefab);
    *pPrefab = source;
    pPrefab->m_sName = sName;
    names.Add(pPrefab->m_sName);
    const HLibraryItem hGroup = m_Context.m_PrefabTree.GetParentItem(hItem);
    TouchGroup(scope, ELibrarySide::ePrefabs, hGroup);
    return m_Context.m_PrefabTree.InsertLeaf(sName, hGroup, pPrefab);
}

HLibraryItem CLibraryEditor::DuplicateLeaf(ELibrarySide eSide, HLibraryItem hItem, CUniqueNames& names)
{
    CLibraryTree& tree = Tree(eSide);
    const void* pData = tree.GetItemData(hItem);
    if (!tree.IsLeaf(hItem) || !pData)
        return {};
    CEditScope scope(m_Context.m_Edits, "Duplicate");
    if (!tree.GetParentItem(hItem))
    {
        EnsureRoot(eSide);
        hItem = tree.FindData(pData); // it may have been moved under the root
    }
    return eSide == ELibrarySide::eEffects
               ? DuplicateEffect(*static_cast<const CSpell*>(pData), hItem, names)
               : DuplicatePrefab(*static_cast<const CEffectPropertySet*>(pData), hItem, names);
}

HLibraryItem CLibraryEditor::Duplicate(ELibrarySide eSide, HLibraryItem hItem)
{
    CUniqueNames names;
    return IndexNames(eSide, 1, names) ? DuplicateLeaf(eSide, hItem, names) : HLibraryItem();
}

std::vector<HLibraryItem> CLibraryEditor::DuplicateItems(ELibrarySide eSide,
                                                         const std::vector<HLibraryItem>& items)
{
    CEditScope scope(m_Context.m_Edits, "Duplicate");
    std::vector<HLibraryItem> copies;
    CUniqueNames names;
    if (!IndexNames(eSide, items.size(), names))
        return copies;
    for (const HLibraryItem hItem : items)
    {
        if (const HLibraryItem hCopy = DuplicateLeaf(eSide, hItem, names))
            copies.push_back(hCopy);
    }
    Sort(eSide);
    return copies;
}

ERename CLibraryEditor::Rename(ELibrarySide eSide, HLibraryItem hItem, const std::string& sText)
{
    CLibraryTree& tree = Tree(eSide);
    const bool bEffect = eSide == ELibrarySide::eEffects;
    const bool bLeaf = tree.IsLeaf(hItem);
    const size_t nMax = bLeaf && bEffect ? CSpell::c_nMaxName : c_nMaxEntryName;
    const std::string sName = CleanName(sText, nMax);
    if (sName.empty() || !tree.GetParentItem(hItem))
        return ERename::eUnchanged;

    CEditScope scope(m_Context.m_Edits, "Rename");
    if (!bLeaf)
    {
        if (sName == tree.GetItemText(hItem))
            return ERename::eUnchanged;
        TouchGroup(scope, eSide, tree.GetParentItem(hItem));
        tree.SetItemText(hItem, sName);
        return ERename::eDone;
    }

    void* pData = tree.GetItemData(hItem);
    if (!pData || QSStrIEquals(sName.c_str(), NameOf(eSide, pData).c_str()))
        return ERename::eUnchanged;
    const bool bInUse = bEffect ? m_Context.m_SpellMgr.FindSpell(sName.c_str()) != nullptr
                                : m_Context.m_SpellMgr.FindPrefab(sName.c_str()) != nullptr;
    if (bInUse)
        return ERename::eInUse;
    if (bEffect)
    {
        CSpell* pSpell = static_cast<CSpell*>(pData);
        scope.TouchHead(*pSpell);
        pSpell->SetName(sName);
    }
    else
    {
        CEffectPropertySet* pPrefab = static_cast<CEffectPropertySet*>(pData);
        scope.TouchPrefab(pPrefab);
        pPrefab->m_sName = sName;
    }
    TouchGroup(scope, eSide, tree.GetParentItem(hItem));
    tree.SetItemText(hItem, sName);
    m_Context.m_Documents.RetitleAll();
    Sort(eSide);
    return ERename::eDone;
}

// The prefabs of the temporary library go with it, so the keys take over what they have from them. False:
// the user has stopped it.
bool CLibraryEditor::FlattenAll(const std::vector<std::unique_ptr<CSpell>>& spells)
{
    for (size_t i = 0; i < spells.size(); ++i)
    {
        const double fDone = static_cast<double>(i) / static_cast<double>(spells.size());
        if (!m_Context.m_Prompts.Progress("Importing the effects", fDone))
            return false;
        for (CKey& key : spells[i]->m_Tracks.AllKeys())
            key.Flatten();
    }
    return true;
}

unsigned CLibraryEditor::ImportEffects(CSpellMgr& source, const std::vector<CSpell*>& spells)
{
    const CWaitScope wait(&m_Context.m_Prompts);
    std::vector<std::unique_ptr<CSpell>> taken;
    if (!TryAllocating([&] { taken = source.TakeSpells(spells); }) || taken.empty() || !FlattenAll(taken))
        return 0;

    CUniqueNames names;
    if (!IndexNames(ELibrarySide::eEffects, taken.size(), names))
        return 0;
    CEditScope scope(m_Context.m_Edits, "Import Effects");
    const HLibraryItem hRoot = EnsureRoot(ELibrarySide::eEffects);
    scope.TouchSpellList();
    TouchGroup(scope, ELibrarySide::eEffects, hRoot);
    unsigned nCount = 0;
    for (std::unique_ptr<CSpell>& pTaken : taken)
    {
        pTaken->SetName(UniqueEffectName(names, pTaken->m_szName));
        scope.Touch(pTaken.get());
        CSpell* pSpell = m_Context.m_SpellMgr.AdoptSpell(std::move(pTaken));
        if (!pSpell)
            break;
        names.Add(BoundedText(pSpell->m_szName));
        m_Context.m_EffectTree.InsertLeaf(pSpell->m_szName, hRoot, pSpell);
        ++nCount;
    }
    if (nCount > 0)
        Sort(ELibrarySide::eEffects);
    return nCount;
}
