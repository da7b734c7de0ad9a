#include "changes/Compare.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace
{

template <class TNode>
std::vector<uint64_t> Numbers(const std::vector<std::shared_ptr<const TNode>>& nodes)
{
    std::vector<uint64_t> numbers;
    numbers.reserve(nodes.size());
    for (const auto& pNode : nodes)
        numbers.push_back(pNode->m_nSerial);
    return numbers;
}

CKnownSpell KnownOf(const CSpellImage& spell)
{
    CKnownSpell known;
    known.m_Head = {spell.m_sName, spell.m_nPhaseLength};
    known.m_Tracks = Numbers(spell.m_Tracks);
    for (const auto& pTrack : spell.m_Tracks)
    {
        known.m_TrackKeys[pTrack->m_nSerial] = Numbers(pTrack->m_Keys);
        for (const auto& pKey : pTrack->m_Keys)
            known.m_Keys.emplace(pKey->m_nSerial, pKey);
    }
    return known;
}

// All of a picture but the nodes that the other one shares.
CKnownLibrary KnownOf(const CLibraryImage& image, const CLibraryImage& other)
{
    CKnownLibrary known;
    known.m_SpellList = Numbers(image.m_Spells);
    known.m_PrefabList = Numbers(image.m_Prefabs);
    std::unordered_set<const void*> shared;
    for (const auto& pSpell : other.m_Spells)
        shared.insert(pSpell.get());
    for (const auto& pPrefab : other.m_Prefabs)
        shared.insert(pPrefab.get());
    for (const ETreeSide eSide : c_TreeSides)
    {
        for (const auto& pGroup : other.Tree(eSide))
            shared.insert(pGroup.get());
    }
    for (const auto& pSpell : image.m_Spells)
    {
        if (!shared.contains(pSpell.get()))
            known.m_Spells.emplace(pSpell->m_nSerial, KnownOf(*pSpell));
    }
    for (const auto& pPrefab : image.m_Prefabs)
    {
        if (!shared.contains(pPrefab.get()))
            known.m_Prefabs.emplace(pPrefab->m_nSerial, pPrefab);
    }
    for (const ETreeSide eSide : c_TreeSides)
    {
        for (const auto& pGroup : image.Tree(eSide))
        {
            if (!shared.contains(pGroup.get()))
                known.m_Groups[static_cast<size_t>(eSide)].emplace(pGroup->m_nItem, pGroup);
        }
    }
    return known;
}

using CTexts = std::unordered_map<uint64_t, const std::string*>;

std::string Named(const CTexts& texts, uint64_t nNumber)
{
    const auto found = texts.find(nNumber);
    return found != texts.end() ? *found->second : std::string();
}

} // namespace

CLibraryChange Compare(const CLibraryImage& before, const CLibraryImage& after)
{
    CTexts spells, prefabs, items[c_nNumSides];
    for (const CLibraryImage* pImage : {&before, &after})
    {
        for (const auto& pSpell : pImage->m_Spells)
            spells.emplace(pSpell->m_nSerial, &pSpell->m_sName);
        for (const auto& pPrefab : pImage->m_Prefabs)
            prefabs.emplace(pPrefab->m_nSerial, &pPrefab->m_sName);
        for (const ETreeSide eSide : c_TreeSides)
        {
            for (const auto& pGroup : pImage->Tree(eSide))
            {
                for (const CItemImage& item : pGroup->m_Children)
                    items[static_cast<size_t>(eSide)].emplace(item.m_nItem, &item.m_sText);
            }
        }
    }
    CChangeNames names;
    names.m_Spell = [&](uint64_t n) { return Named(spells, n); };
    names.m_Prefab = [&](uint64_t n) { return Named(prefabs, n); };
    names.m_Item = [&](ETreeSide eSide, uint32_t n) { return Named(items[static_cast<size_t>(eSide)], n); };
    names.m_KeyID = [](uint64_t, uint64_t) { return 0; }; // of an effect that differs all keys are known
    CLibraryChange change;
    Compare(KnownOf(before, after), KnownOf(after, before), names, change);
    return change;
}
