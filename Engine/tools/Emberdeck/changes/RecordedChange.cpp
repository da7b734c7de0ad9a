#include <algorithm>
#include <unordered_set>

#include "changes/ChangeRecorder.h"
#include "changes/Serials.h"
#include "model/NameIndex.h"

// The end of an edit: what is there now of all that was touched, and what is new; and what has changed so.

namespace
{

std::pair<std::string, int32_t> HeadOf(const CSpell& spell)
{
    return {std::string(BoundedText(spell.m_szName)), spell.m_Tracks.m_nPhaseLength};
}

void LookAtNewTrack(const CTrack& track, CImageMaker& maker, CKnownSpell& known)
{
    known.m_TrackKeys.emplace(SerialOf(track), SerialsOf(track.Keys()));
    for (const auto& pKey : track.Keys())
        known.m_Keys.emplace(SerialOf(*pKey), maker.MakeKey(*pKey));
}

// Calls found(object, serial) for each object that was touched and still is. One that has gone leaves but an address,
// at which another may stand.
template <class TObject, class TTouched, class TCall>
void ForEachThatIsThere(const std::vector<std::unique_ptr<TObject>>& list, const TTouched& touched,
                        const TCall& found)
{
    std::vector<std::pair<const TObject*, uint64_t>> sorted;
    sorted.reserve(touched.size());
    for (const auto& entry : touched)
    {
        if constexpr (requires { entry.second.m_pSpell; })
            sorted.emplace_back(entry.second.m_pSpell, entry.first);
        else
            sorted.emplace_back(entry.second, entry.first);
    }
    std::sort(sorted.begin(), sorted.end());
    for (size_t i = 0; !sorted.empty() && i < list.size(); ++i)
    {
        const TObject* pObject = list[i].get();
        const auto place = std::lower_bound(sorted.begin(), sorted.end(), pObject,
                                            [](const auto& a, const TObject* p) { return a.first < p; });
        if (place != sorted.end() && place->first == pObject && SerialOf(*pObject) == place->second)
            found(*pObject, place->second);
    }
}

} // namespace

// Of an effect that was there before.
void CChangeRecorder::LookAtSpell(const CKnownSpell& before, CTouchedSpell& touched, CKnownSpell& after)
{
    const CSpell& spell = *touched.m_pSpell;
    if (before.m_Head)
        after.m_Head = HeadOf(spell);
    if (before.m_Tracks)
        after.m_Tracks = SerialsOf(spell.m_Tracks.Tracks());
    std::unordered_set<uint64_t> oldTracks, oldKeys;
    if (before.m_Tracks)
        oldTracks.insert(before.m_Tracks->begin(), before.m_Tracks->end());
    for (const auto& [nTrack, keys] : before.m_TrackKeys)
        oldKeys.insert(keys.begin(), keys.end());
    std::sort(touched.m_Keys.begin(), touched.m_Keys.end());
    for (const std::unique_ptr<CTrack>& pTrack : spell.m_Tracks.Tracks())
    {
        const uint64_t nTrack = SerialOf(*pTrack);
        const bool bList =
            before.m_TrackKeys.contains(nTrack) || (before.m_Tracks && !oldTracks.contains(nTrack));
        if (bList)
            after.m_TrackKeys.emplace(nTrack, SerialsOf(pTrack->Keys()));
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            const auto found = std::lower_bound(touched.m_Keys.begin(), touched.m_Keys.end(),
                                                std::pair<const CKey*, uint64_t>(pKey.get(), 0));
            const bool bTouched = found != touched.m_Keys.end() && found->first == pKey.get();
            if (bTouched || (bList && !oldKeys.contains(SerialOf(*pKey))))
                after.m_Keys.emplace(SerialOf(*pKey), m_Maker.MakeKey(*pKey));
        }
    }
}

void CChangeRecorder::LookAtSpells(CKnownLibrary& after)
{
    const auto& spells = m_Target.m_Library.m_SpellMgr.Spells();
    ForEachThatIsThere(
        spells, m_Spells,
        [&](const CSpell&, uint64_t nSerial)
        { LookAtSpell(m_Before.m_Spells[nSerial], m_Spells[nSerial], after.m_Spells[nSerial]); });
    if (!m_Before.m_SpellList)
        return;
    after.m_SpellList = SerialsOf(spells);
    for (const auto& pSpell : spells)
    {
        if (std::binary_search(m_OldSpells.begin(), m_OldSpells.end(), SerialOf(*pSpell)))
            continue;
        CKnownSpell& known = after.m_Spells[SerialOf(*pSpell)] = CKnownSpell();
        known.m_Head = HeadOf(*pSpell);
        known.m_Tracks = SerialsOf(pSpell->m_Tracks.Tracks());
        for (const auto& pTrack : pSpell->m_Tracks.Tracks())
            LookAtNewTrack(*pTrack, m_Maker, known);
    }
}

void CChangeRecorder::LookAtPrefabs(CKnownLibrary& after)
{
    const auto& prefabs = m_Target.m_Library.m_SpellMgr.Prefabs();
    ForEachThatIsThere(prefabs, m_Prefabs,
                       [&](const CEffectPropertySet& prefab, uint64_t nSerial)
                       { after.m_Prefabs.emplace(nSerial, m_Maker.MakePrefab(prefab)); });
    if (!m_Before.m_PrefabList)
        return;
    after.m_PrefabList = SerialsOf(prefabs);
    for (const auto& pPrefab : prefabs)
    {
        if (!std::binary_search(m_OldPrefabs.begin(), m_OldPrefabs.end(), SerialOf(*pPrefab)))
            after.m_Prefabs.emplace(SerialOf(*pPrefab), m_Maker.MakePrefab(*pPrefab));
    }
}

// The groups that were touched, and from there on down what is new.
void CChangeRecorder::LookAtTree(ETreeSide eSide, CKnownLibrary& after) const
{
    const size_t nSide = static_cast<size_t>(eSide);
    const CLibraryTree& tree = m_Target.m_Library.Tree(eSide);
    auto& groups = after.m_Groups[nSide];
    std::vector<uint32_t> open;
    for (const auto& [nGroup, pGroup] : m_Before.m_Groups[nSide])
    {
        if (nGroup == 0 || tree.IsAlive(HLibraryItem{nGroup}))
            open.push_back(nGroup);
    }
    while (!open.empty())
    {
        const HLibraryItem hGroup{open.back()};
        open.pop_back();
        const auto& pGroup = groups[hGroup.m_nID] = CImageMaker::MakeGroup(m_Target.m_Library, eSide, hGroup);
        for (const CItemImage& item : pGroup->m_Children)
        {
            if (!m_OldItems[nSide].contains(item.m_nItem) && !groups.contains(item.m_nItem) &&
                tree.HasChildren(HLibraryItem{item.m_nItem}))
                open.push_back(item.m_nItem);
        }
    }
}

CKnownLibrary CChangeRecorder::LookAgain()
{
    CKnownLibrary after;
    LookAtSpells(after);
    LookAtPrefabs(after);
    for (const ETreeSide eSide : c_TreeSides)
        LookAtTree(eSide, after);
    return after;
}

// What was there is told by its old name. Of what nobody touched an index is made when it is asked for.
CChangeNames CChangeRecorder::NamesWith(const CKnownLibrary& after) const
{
    const CLibraryParts& library = m_Target.m_Library;
    CChangeNames names;
    names.m_Spell = [&, index = std::unordered_map<uint64_t, std::string>()](uint64_t nSerial) mutable
    {
        const auto touched = m_Spells.find(nSerial);
        if (touched != m_Spells.end())
            return touched->second.m_sName;
        const auto isNew = after.m_Spells.find(nSerial);
        if (isNew != after.m_Spells.end())
            return isNew->second.m_Head->first;
        if (index.empty())
        {
            for (const auto& pSpell : library.m_SpellMgr.Spells())
                index.emplace(SerialOf(*pSpell), BoundedText(pSpell->m_szName));
        }
        return index[nSerial];
    };
    names.m_Prefab = [&, index = std::unordered_map<uint64_t, std::string>()](uint64_t nSerial) mutable
    {
        for (const auto* pPrefabs : {&m_Before.m_Prefabs, &after.m_Prefabs})
        {
            const auto known = pPrefabs->find(nSerial);
            if (known != pPrefabs->end())
                return known->second->m_sName;
        }
        if (index.empty())
        {
            for (const auto& pPrefab : library.m_SpellMgr.Prefabs())
                index.emplace(SerialOf(*pPrefab), pPrefab->m_sName);
        }
        return index[nSerial];
    };
    names.m_Item = [this](ETreeSide eSide, uint32_t nItem)
    {
        const CSide& old = m_OldItems[static_cast<size_t>(eSide)];
        const auto found = old.find(nItem);
        return found != old.end() ? found->second->m_sText
                                  : m_Target.m_Library.Tree(eSide).GetItemText(HLibraryItem{nItem});
    };
    names.m_KeyID = [this, nOf = uint64_t(0),
                     index = std::unordered_map<uint64_t, uint32_t>()](uint64_t nSpell, uint64_t nKey) mutable
    {
        if (nOf != nSpell)
        {
            nOf = nSpell;
            index.clear();
            for (const CKey& key : m_Spells.at(nSpell).m_pSpell->m_Tracks.AllKeys()) // it is still there
                index.emplace(SerialOf(key), key.m_nKeyID);
        }
        return index[nKey];
    };
    return names;
}

bool CChangeRecorder::FindChange(CLibraryChange& change)
{
    const CKnownLibrary after = LookAgain();
    return Compare(m_Before, after, NamesWith(after), change);
}
