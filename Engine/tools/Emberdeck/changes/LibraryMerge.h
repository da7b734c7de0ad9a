#pragma once

#include <array>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "changes/MergeParts.h"
#include "changes/MergeTree.h"

// Gives what all three states have the same numbers: theirs and the base's change, mine's stay. What both sides made
// under one name is one.
CThree<CLibraryImage> NumberAlike(const CThree<CLibraryImage>& images);

// A merge of libraries whose numbers mean the same.
class CLibraryMerge
{
public:
    CLibraryMerge(const CThree<CLibraryImage>& images, CMergeNotes& notes);

    std::shared_ptr<const CLibraryImage> Run();

private:
    template <class TNode>
    using CNodes = std::unordered_map<uint64_t, std::shared_ptr<const TNode>>;
    template <class TNode>
    using CStates = std::array<CNodes<TNode>, c_nNumStates>;

    void IndexStates();
    void PickPrefabs();
    CChangeRef NewUserOf(uint64_t nPrefab, size_t nState);
    void CollectNewUsers(size_t nState);
    void TakeBackDetaching(size_t nState);
    std::shared_ptr<const CSpellImage> Reattached(const CSpellImage& spell, const CSpellImage& base) const;
    std::shared_ptr<const CKeyImage> Reattached(const CKeyImage& key, const CKeyImage& base) const;
    void MergePrefabs();
    void BreakCircles();
    void PickSpells();
    std::shared_ptr<const CSpellImage> MergeSpell(const CThree<CSpellImage>& three, EPresence ePresence);
    template <class TNode>
    void SettleNames(CStates<TNode>& states, CNodes<TNode>& merged, EDifference eNode, EDifference eName);
    void DetachLost();
    template <class TNode>
    std::vector<std::shared_ptr<const TNode>>
    InOrder(const std::vector<std::shared_ptr<const TNode>> CLibraryImage::*list,
            const CNodes<TNode>& merged) const;

    CThree<CLibraryImage> m_Images;
    CMergeNotes& m_Notes;
    std::array<CTreeMerge, c_nNumSides> m_Trees;
    CStates<CSetImage> m_Prefabs;
    CStates<CSpellImage> m_Spells;
    std::array<std::unordered_map<uint64_t, CChangeRef>, c_nNumStates> m_NewUsers; // by prefab
    std::unordered_set<uint64_t> m_KeptPrefabs; // one side deleted them, and wasn't heard
    std::unordered_map<uint64_t, EPresence> m_PrefabPresence;
    std::unordered_map<uint64_t, EMergeSide>
        m_AddedBy[c_nNumSides]; // whose, of what both made under one name
    CNodes<CSetImage> m_MergedPrefabs;
    CNodes<CSpellImage> m_MergedSpells;
};

// For its parts.

template <class TCall>
void ForEachKey(const CSpellImage& spell, const TCall& call)
{
    for (const auto& pTrack : spell.m_Tracks)
    {
        for (const auto& pKey : pTrack->m_Keys)
            call(*pKey);
    }
}

template <class TMap>
auto Find(const TMap& map, uint64_t n) -> typename TMap::mapped_type
{
    const auto found = map.find(n);
    return found != map.end() ? found->second : nullptr;
}

template <class TStates>
auto StatesOf(const TStates& states, uint64_t n)
{
    std::array<typename TStates::value_type::mapped_type, c_nNumStates> three;
    for (size_t i = 0; i < c_nNumStates; ++i)
        three[i] = Find(states[i], n);
    return three;
}

// An effect with some of its keys replaced: by call(key), where that gives one.
template <class TCall>
std::shared_ptr<const CSpellImage> WithKeys(const std::shared_ptr<const CSpellImage>& pSpell,
                                            const TCall& call)
{
    std::shared_ptr<CSpellImage> pResult;
    for (size_t nTrack = 0; nTrack < pSpell->m_Tracks.size(); ++nTrack)
    {
        std::shared_ptr<CTrackImage> pTrack;
        for (size_t i = 0; i < pSpell->m_Tracks[nTrack]->m_Keys.size(); ++i)
        {
            std::shared_ptr<const CKeyImage> pKey = call(*pSpell->m_Tracks[nTrack]->m_Keys[i]);
            if (!pKey)
                continue;
            if (!pTrack)
                pTrack = std::make_shared<CTrackImage>(*pSpell->m_Tracks[nTrack]);
            pTrack->m_Keys[i] = std::move(pKey);
        }
        if (!pTrack)
            continue;
        if (!pResult)
            pResult = std::make_shared<CSpellImage>(*pSpell);
        pResult->m_Tracks[nTrack] = std::move(pTrack);
    }
    return pResult ? pResult : pSpell;
}
