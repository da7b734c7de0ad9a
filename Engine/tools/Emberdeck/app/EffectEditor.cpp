#include "app/EffectEditor.h"

#include "app/StatusText.h"
#include "model/MakeOrNull.h"
#include "qsstrutils.h"

const char* CEffectEditor::LeafName(HLibraryItem hItem) const
{
    const CSpell* pSpell = m_Context.m_EffectTree.GetItemData(hItem);
    return pSpell ? pSpell->m_szName : nullptr;
}

bool CEffectEditor::IsNameTaken(const std::string& sName) const
{
    return m_Context.m_SpellMgr.FindSpell(sName.c_str()) != nullptr;
}

void CEffectEditor::RenameLeaf(CEditScope& scope, HLibraryItem hItem, const std::string& sName)
{
    CSpell* pSpell = m_Context.m_EffectTree.GetItemData(hItem);
    scope.TouchHead(*pSpell);
    pSpell->SetName(sName);
}

bool CEffectEditor::IndexNames(size_t nMore, CUniqueNames& names) const
{
    return TryAllocating(
        [&]
        {
            names.Reserve(m_Context.m_SpellMgr.Spells().size() + nMore);
            for (const auto& pSpell : m_Context.m_SpellMgr.Spells())
                names.Add(BoundedText(pSpell->m_szName));
        });
}

std::string CEffectEditor::UniqueName(CUniqueNames& names, const std::string& sName)
{
    std::string sUnique = names.Make(sName);
    // The number behind a long name must not be cut off again, or the name would be in use after all.
    constexpr size_t c_nRoomForNumber = 11;
    if (sUnique.size() > CSpell::c_nMaxName)
        sUnique = names.Make(CutAtCharacter(sName, CSpell::c_nMaxName - c_nRoomForNumber));
    return CutAtCharacter(sUnique, CSpell::c_nMaxName);
}

HLibraryItem CEffectEditor::NewEffect(HLibraryItem hGroup)
{
    CEditScope scope(m_Context.m_Edits, "New Effect");
    if (!FindGroup(hGroup))
        return {};
    scope.TouchSpellList();
    CSpell* pSpell = m_Context.m_SpellMgr.AddSpell();
    if (!pSpell)
        return {};
    scope.Touch(pSpell);
    TouchGroup(scope, hGroup);
    return m_Context.m_EffectTree.InsertLeaf(pSpell->m_szName, hGroup, pSpell);
}

HLibraryItem CEffectEditor::DuplicateLeaf(HLibraryItem hItem, CUniqueNames& names)
{
    CEffectTree& tree = m_Context.m_EffectTree;
    CSpellMgr& spellMgr = m_Context.m_SpellMgr;
    const CSpell* pSource = tree.GetItemData(hItem);
    if (!pSource)
        return {};
    if (!tree.GetParentItem(hItem))
    {
        EnsureRoot();
        hItem = tree.FindData(pSource); // it may have been moved under the root
    }
    const std::string sName = UniqueName(names, pSource->m_szName);
    CEditScope scope(m_Context.m_Edits, "Duplicate Effect");
    scope.TouchSpellList();
    CSpell* pSpell = spellMgr.AddSpell();
    if (!pSpell)
        return {};
    scope.Touch(pSpell);
    pSpell->SetName(sName);
    if (!pSpell->CopyFrom(*pSource))
    {
        spellMgr.DeleteSpell(pSpell);
        return {};
    }
    names.Add(BoundedText(pSpell->m_szName));
    const HLibraryItem hGroup = tree.GetParentItem(hItem);
    TouchGroup(scope, hGroup);
    return tree.InsertLeaf(pSpell->m_szName, hGroup, pSpell);
}

bool CEffectEditor::DeleteLeaves(CEditScope& scope, const std::vector<HLibraryItem>& leaves)
{
    CEffectTree& tree = m_Context.m_EffectTree;
    std::unordered_set<const CSpell*> doomed;
    if (leaves.empty())
        return true;
    if (!TryAllocating([&] { doomed = ObjectsOf(tree, leaves); }))
        return false;
    TouchTree(scope);
    scope.TouchSpellList();
    for (const HLibraryItem hItem : leaves)
    {
        if (const CSpell* pSpell = tree.GetItemData(hItem))
        {
            m_Context.m_Documents.Close(pSpell);
            scope.Touch(pSpell);
        }
        tree.DeleteItem(hItem);
    }
    // From the back, where taking one out moves the fewest.
    const auto& spells = m_Context.m_SpellMgr.Spells();
    for (size_t i = spells.size(); i-- > 0;)
    {
        if (doomed.contains(spells[i].get()))
            m_Context.m_SpellMgr.DeleteSpell(spells[i].get());
    }
    return true;
}

// The prefabs of the temporary library go with it, so the keys take over what they have from them. False:
// the user has stopped it.
bool CEffectEditor::FlattenAll(const std::vector<std::unique_ptr<CSpell>>& spells)
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

unsigned CEffectEditor::ImportEffects(CSpellMgr& source, const std::vector<CSpell*>& spells)
{
    const CWaitScope wait(&m_Context.m_Prompts);
    std::vector<std::unique_ptr<CSpell>> taken;
    if (!TryAllocating([&] { taken = source.TakeSpells(spells); }) || taken.empty() || !FlattenAll(taken))
        return 0;

    CUniqueNames names;
    if (!IndexNames(taken.size(), names))
        return 0;
    CEditScope scope(m_Context.m_Edits, TellThings("Import", taken.size(), "Effect"));
    const HLibraryItem hRoot = EnsureRoot();
    scope.TouchSpellList();
    TouchGroup(scope, hRoot);
    unsigned nCount = 0;
    for (std::unique_ptr<CSpell>& pTaken : taken)
    {
        pTaken->SetName(UniqueName(names, pTaken->m_szName));
        scope.Touch(pTaken.get());
        CSpell* pSpell = m_Context.m_SpellMgr.AdoptSpell(std::move(pTaken));
        if (!pSpell)
            break;
        names.Add(BoundedText(pSpell->m_szName));
        m_Context.m_EffectTree.InsertLeaf(pSpell->m_szName, hRoot, pSpell);
        ++nCount;
    }
    if (nCount > 0)
        Sort();
    return nCount;
}
