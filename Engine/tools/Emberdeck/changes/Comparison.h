#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/Compare.h"
#include "changes/ListDifference.h"

using CNumbers = std::unordered_set<uint64_t>;

inline const std::vector<uint64_t> c_NoNumbers;

// The differences of two states, in an order in which they can be done one after the other, and taken back from the
// end: what others stand on comes first and goes last.
class CComparison
{
public:
    CComparison(const CKnownLibrary& before, const CKnownLibrary& after, const CChangeNames& names,
                CLibraryChange& change)
        : m_Before(before),
          m_After(after),
          m_Names(names),
          m_Change(change)
    {
    }

    bool Run()
    {
        CListDifference prefabs(ListOf(m_Before.m_PrefabList, m_After.m_PrefabList),
                                ListOf(m_After.m_PrefabList, m_Before.m_PrefabList));
        CListDifference spells(ListOf(m_Before.m_SpellList, m_After.m_SpellList),
                               ListOf(m_After.m_SpellList, m_Before.m_SpellList));
        BearPrefabs(prefabs);
        BearSpells(spells);
        for (const ETreeSide eSide : c_TreeSides)
            CompareTree(eSide);
        for (const auto& [nSerial, pPrefab] : m_Before.m_Prefabs)
        {
            const auto after = m_After.m_Prefabs.find(nSerial);
            if (after != m_After.m_Prefabs.end() && !m_BornPrefabs.contains(nSerial))
                CompareSets({}, {nSerial, pPrefab->m_sName}, *pPrefab, *after->second);
        }
        for (const auto& [nSerial, known] : m_Before.m_Spells)
        {
            const auto after = m_After.m_Spells.find(nSerial);
            if (after != m_After.m_Spells.end() && !m_BornSpells.contains(nSerial))
                CompareSpells(nSerial, known, after->second);
        }
        DropSpells(spells);
        DropPrefabs(prefabs);
        return m_bWhole;
    }

private:
    // A list that only one side knows hasn't changed.
    static const std::vector<uint64_t>& ListOf(const std::optional<std::vector<uint64_t>>& list,
                                               const std::optional<std::vector<uint64_t>>& other)
    {
        return list && other ? *list : c_NoNumbers;
    }

    CDifference& Add(EDifference eKind, const CChangeRef& effect, const CChangeRef& object)
    {
        CDifference& difference = m_Change.m_Differences.emplace_back();
        difference.m_eKind = eKind;
        difference.m_Effect = effect;
        difference.m_Object = object;
        return difference;
    }
    template <class TValue>
    void AddField(EDifference eKind, const CChangeRef& effect, const CChangeRef& object, const TValue& before,
                  const TValue& after)
    {
        if (before == after)
            return;
        CDifference& difference = Add(eKind, effect, object);
        difference.m_Before = before;
        difference.m_After = after;
    }
    // The range of a list that is in another order.
    template <class TRef>
    void AddOrder(EDifference eKind, ETreeSide eSide, const CChangeRef& effect, const CChangeRef& list,
                  const CListDifference& lists, const TRef& ref)
    {
        size_t nFirst = 0;
        size_t nEnd = 0;
        if (!lists.FindDisorder(nFirst, nEnd))
            return;
        CDifference& difference = Add(eKind, effect, {});
        difference.m_eSide = eSide;
        difference.m_Place = {list, static_cast<uint32_t>(nFirst)};
        std::vector<CChangeRef> before, after;
        before.reserve(nEnd - nFirst);
        after.reserve(nEnd - nFirst);
        for (size_t i = nFirst; i < nEnd; ++i)
        {
            before.push_back(ref(lists.Now()[i]));
            after.push_back(ref(lists.Target()[i]));
        }
        difference.m_Before = std::move(before);
        difference.m_After = std::move(after);
    }

    CChangeRef SpellRef(uint64_t nSerial) const { return {nSerial, m_Names.m_Spell(nSerial)}; }
    CChangeRef PrefabRef(uint64_t nSerial) const { return {nSerial, m_Names.m_Prefab(nSerial)}; }

    template <class TMap>
    auto Content(const TMap& map, uint64_t nSerial) -> typename TMap::mapped_type
    {
        const auto found = map.find(nSerial);
        if (found != map.end())
            return found->second;
        m_bWhole = false;
        return nullptr;
    }

    // An effect of its parts; null: not all are known.
    std::shared_ptr<const CSpellImage> Assemble(const CKnownLibrary& library, uint64_t nSerial)
    {
        const auto found = library.m_Spells.find(nSerial);
        if (found == library.m_Spells.end() || !found->second.m_Head || !found->second.m_Tracks)
        {
            m_bWhole = false;
            return nullptr;
        }
        const CKnownSpell& known = found->second;
        auto pSpell = std::make_shared<CSpellImage>();
        pSpell->m_nSerial = nSerial;
        pSpell->m_sName = known.m_Head->first;
        pSpell->m_nPhaseLength = known.m_Head->second;
        for (const uint64_t nTrack : *known.m_Tracks)
        {
            const auto keys = known.m_TrackKeys.find(nTrack);
            m_bWhole = m_bWhole && keys != known.m_TrackKeys.end();
            if (m_bWhole)
                pSpell->m_Tracks.push_back(AssembleTrack(known, nTrack, keys->second));
        }
        return pSpell;
    }
    std::shared_ptr<const CTrackImage> AssembleTrack(const CKnownSpell& known, uint64_t nTrack,
                                                     const std::vector<uint64_t>& keys)
    {
        auto pTrack = std::make_shared<CTrackImage>();
        pTrack->m_nSerial = nTrack;
        pTrack->m_Keys.reserve(keys.size());
        for (const uint64_t nKey : keys)
            pTrack->m_Keys.push_back(Content(known.m_Keys, nKey));
        return pTrack;
    }

    void BearPrefabs(CListDifference& prefabs)
    {
        prefabs.InsertMissing(
            [this](uint64_t nSerial, uint32_t nPlace)
            {
                m_BornPrefabs.insert(nSerial);
                CDifference& difference = Add(EDifference::ePrefab, {}, PrefabRef(nSerial));
                difference.m_Place.m_nPlace = nPlace;
                difference.m_After = Content(m_After.m_Prefabs, nSerial);
            });
    }
    void BearSpells(CListDifference& spells)
    {
        spells.InsertMissing(
            [this](uint64_t nSerial, uint32_t nPlace)
            {
                m_BornSpells.insert(nSerial);
                CDifference& difference = Add(EDifference::eEffect, {}, SpellRef(nSerial));
                difference.m_Place.m_nPlace = nPlace;
                difference.m_After = Assemble(m_After, nSerial);
            });
    }
    void DropSpells(CListDifference& spells)
    {
        spells.Remove([](uint64_t) { return true; },
                      [this](uint64_t nSerial, uint32_t nPlace)
                      {
                          CDifference& difference = Add(EDifference::eEffect, {}, SpellRef(nSerial));
                          difference.m_Place.m_nPlace = nPlace;
                          difference.m_Before = Assemble(m_Before, nSerial);
                      });
        AddOrder(EDifference::eEffectOrder, ETreeSide::eEffects, {}, {}, spells,
                 [this](uint64_t n) { return SpellRef(n); });
    }
    void DropPrefabs(CListDifference& prefabs)
    {
        prefabs.Remove([](uint64_t) { return true; },
                       [this](uint64_t nSerial, uint32_t nPlace)
                       {
                           CDifference& difference = Add(EDifference::ePrefab, {}, PrefabRef(nSerial));
                           difference.m_Place.m_nPlace = nPlace;
                           difference.m_Before = Content(m_Before.m_Prefabs, nSerial);
                       });
        AddOrder(EDifference::ePrefabOrder, ETreeSide::ePrefabs, {}, {}, prefabs,
                 [this](uint64_t n) { return PrefabRef(n); });
    }

    void CompareTree(ETreeSide eSide);
    void CompareSpells(uint64_t nSerial, const CKnownSpell& before, const CKnownSpell& after);
    void CompareKeys(const CChangeRef& effect, const CKeyImage& before, const CKeyImage& after);
    void CompareSets(const CChangeRef& effect, const CChangeRef& object, const CSetImage& before,
                     const CSetImage& after);
    void CompareSlot(const CChangeRef& effect, const CChangeRef& object, uint32_t nSlot,
                     const CSetImage& before, const CSetImage& after);

    const CKnownLibrary& m_Before;
    const CKnownLibrary& m_After;
    const CChangeNames& m_Names;
    CLibraryChange& m_Change;
    CNumbers m_BornPrefabs;
    CNumbers m_BornSpells;
    bool m_bWhole = true;
};
