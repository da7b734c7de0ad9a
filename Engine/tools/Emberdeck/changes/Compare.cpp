#include "changes/Compare.h"

#include <algorithm>
#include <unordered_set>

#include "changes/ListDifference.h"

namespace
{

using CNumbers = std::unordered_set<uint64_t>;

const std::vector<uint64_t> c_NoNumbers;

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
        const CNumbers old(prefabs.Now().begin(), prefabs.Now().end());
        for (const uint64_t nSerial : prefabs.Target())
        {
            if (old.contains(nSerial))
                continue;
            m_BornPrefabs.insert(nSerial);
            CDifference& difference = Add(EDifference::ePrefab, {}, PrefabRef(nSerial));
            difference.m_Place.m_nPlace = prefabs.Insert(nSerial);
            difference.m_After = Content(m_After.m_Prefabs, nSerial);
        }
    }
    void BearSpells(CListDifference& spells)
    {
        const CNumbers old(spells.Now().begin(), spells.Now().end());
        for (const uint64_t nSerial : spells.Target())
        {
            if (old.contains(nSerial))
                continue;
            m_BornSpells.insert(nSerial);
            CDifference& difference = Add(EDifference::eEffect, {}, SpellRef(nSerial));
            difference.m_Place.m_nPlace = spells.Insert(nSerial);
            difference.m_After = Assemble(m_After, nSerial);
        }
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

// One side's tree: items that go, from the leaves up, items that come, from the top down, order, texts. An item never
// changes its parent.
class CTreeComparison
{
public:
    using CGroups = std::map<uint32_t, std::shared_ptr<const CGroupImage>>;
    CTreeComparison(const CGroups& before, const CGroups& after) : m_Before(before), m_After(after)
    {
        Note(before, m_Old);
        Note(after, m_New);
        for (const auto& [nGroup, pGroup] : before)
            Lists(nGroup);
        for (const auto& [nGroup, pGroup] : after)
            Lists(nGroup);
    }

    // Calls gone(parent, item, place), come(parent, item, place), order(group, lists), text(parent, old, new).
    template <class TGone, class TCome, class TOrder, class TText>
    void Run(const TGone& gone, const TCome& come, const TOrder& order, const TText& text)
    {
        for (const auto& [nGroup, pGroup] : m_Before)
        {
            if (nGroup == 0 || m_New.contains(nGroup) || !m_Old.contains(nGroup))
                Clear(nGroup, gone);
        }
        for (const auto& [nGroup, pGroup] : m_After)
        {
            if (nGroup == 0 || m_Old.contains(nGroup) || !m_New.contains(nGroup))
                Fill(nGroup, come);
        }
        for (auto& [nGroup, lists] : m_Lists)
            order(nGroup, lists);
        for (const auto& [nItem, old] : m_Old)
        {
            const auto now = m_New.find(nItem);
            if (now != m_New.end() && old.second->m_sText != now->second.second->m_sText)
                text(old.first, *old.second, *now->second.second);
        }
    }

private:
    using CItems = std::map<uint64_t, std::pair<uint32_t, const CItemImage*>>; // with the parent
    static void Note(const CGroups& groups, CItems& items)
    {
        for (const auto& [nGroup, pGroup] : groups)
        {
            for (const CItemImage& item : pGroup->m_Children)
                items[item.m_nItem] = {nGroup, &item};
        }
    }
    static std::vector<uint64_t> Children(const CGroups& groups, uint32_t nGroup)
    {
        std::vector<uint64_t> children;
        const auto found = groups.find(nGroup);
        for (size_t i = 0; found != groups.end() && i < found->second->m_Children.size(); ++i)
            children.push_back(found->second->m_Children[i].m_nItem);
        return children;
    }
    // A group that came or went has no children on the other side.
    CListDifference& Lists(uint32_t nGroup)
    {
        const auto found = m_Lists.find(nGroup);
        if (found != m_Lists.end())
            return found->second;
        std::vector<uint64_t>& target = m_Targets[nGroup] = Children(m_After, nGroup);
        return m_Lists.emplace(nGroup, CListDifference(Children(m_Before, nGroup), target)).first->second;
    }

    // What is gone of a group, each item behind its own children.
    template <class TGone>
    void Clear(uint32_t nTop, const TGone& gone)
    {
        std::vector<std::pair<uint32_t, bool>> open = {{nTop, false}};
        while (!open.empty())
        {
            auto& [nGroup, bOpened] = open.back();
            if (!bOpened)
            {
                bOpened = true;
                const auto found = m_Before.find(nGroup);
                for (size_t i = 0; found != m_Before.end() && i < found->second->m_Children.size(); ++i)
                {
                    const uint32_t nItem = found->second->m_Children[i].m_nItem;
                    if (!m_New.contains(nItem) && m_Before.contains(nItem))
                        open.emplace_back(nItem, false);
                }
                continue;
            }
            const uint32_t nDone = nGroup;
            open.pop_back();
            Lists(nDone).Remove([](uint64_t) { return true; }, [&](uint64_t nItem, uint32_t nPlace)
                                { gone(nDone, *m_Old.at(nItem).second, nPlace); });
        }
    }
    // What has come to a group, and then to what has come.
    template <class TCome>
    void Fill(uint32_t nTop, const TCome& come)
    {
        std::vector<uint32_t> open = {nTop};
        while (!open.empty())
        {
            const uint32_t nGroup = open.back();
            open.pop_back();
            CListDifference& lists = Lists(nGroup);
            const CNumbers here(lists.Now().begin(), lists.Now().end());
            for (const uint64_t nItem : lists.Target())
            {
                if (here.contains(nItem))
                    continue;
                come(nGroup, *m_New.at(nItem).second, lists.Insert(nItem));
                if (m_After.contains(static_cast<uint32_t>(nItem)))
                    open.push_back(static_cast<uint32_t>(nItem));
            }
        }
    }

    const CGroups& m_Before;
    const CGroups& m_After;
    CItems m_Old;
    CItems m_New;
    std::map<uint32_t, std::vector<uint64_t>> m_Targets; // where they stay
    std::map<uint32_t, CListDifference> m_Lists;
};

void CComparison::CompareTree(ETreeSide eSide)
{
    const size_t nSide = static_cast<size_t>(eSide);
    const auto ref = [this, eSide](uint64_t nItem)
    {
        const auto n = static_cast<uint32_t>(nItem);
        return CChangeRef{nItem, n ? m_Names.m_Item(eSide, n) : std::string()};
    };
    const auto addItem = [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace) -> CDifference&
    {
        CDifference& difference = Add(EDifference::eItem, {}, {item.m_nItem, item.m_sText});
        difference.m_eSide = eSide;
        difference.m_Place = {ref(nGroup), nPlace};
        return difference;
    };
    CTreeComparison comparison(m_Before.m_Groups[nSide], m_After.m_Groups[nSide]);
    comparison.Run(
        [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace)
        { addItem(nGroup, item, nPlace).m_Before = item; },
        [&](uint32_t nGroup, const CItemImage& item, uint32_t nPlace)
        { addItem(nGroup, item, nPlace).m_After = item; },
        [&](uint32_t nGroup, const CListDifference& lists)
        { AddOrder(EDifference::eItemOrder, eSide, {}, ref(nGroup), lists, ref); },
        [&](uint32_t nGroup, const CItemImage& before, const CItemImage& after)
        {
            CDifference& difference = Add(EDifference::eItemText, {}, {before.m_nItem, before.m_sText});
            difference.m_eSide = eSide;
            difference.m_Place.m_List = ref(nGroup);
            difference.m_Before = before.m_sText;
            difference.m_After = after.m_sText;
        });
}

CChangeRef KeyRef(const CKeyImage& key)
{
    return {key.m_nSerial, std::to_string(key.m_nKeyID)};
}

// The tracks of an effect, and which keys they have.
class CTrackComparison
{
public:
    CTrackComparison(const CKnownSpell& before, const CKnownSpell& after)
        : m_bTracks(before.m_Tracks && after.m_Tracks),
          m_Tracks(m_bTracks ? *before.m_Tracks : c_NoNumbers, m_bTracks ? *after.m_Tracks : c_NoNumbers),
          m_OldTracks(m_Tracks.Now().begin(), m_Tracks.Now().end())
    {
        for (const auto& [nTrack, keys] : before.m_TrackKeys)
        {
            for (size_t i = 0; !IsBornTrack(nTrack) && i < keys.size(); ++i)
                m_Old[keys[i]] = nTrack;
        }
        for (const auto& [nTrack, keys] : after.m_TrackKeys)
        {
            for (const uint64_t nKey : keys)
                m_New[nKey] = nTrack;
        }
        for (const auto& [nTrack, keys] : before.m_TrackKeys)
        {
            const auto target = after.m_TrackKeys.find(nTrack);
            if (!IsBornTrack(nTrack))
                m_Lists.emplace(
                    nTrack,
                    CListDifference(keys, target != after.m_TrackKeys.end() ? target->second : c_NoNumbers));
        }
        // A new track comes with the keys that are new themselves.
        for (const auto& [nTrack, keys] : after.m_TrackKeys)
        {
            if (!IsBornTrack(nTrack))
                continue;
            std::vector<uint64_t> own;
            for (const uint64_t nKey : keys)
            {
                if (IsBorn(nKey))
                    own.push_back(nKey);
            }
            m_Lists.emplace(nTrack, CListDifference(std::move(own), keys));
        }
    }

    bool IsBornTrack(uint64_t nTrack) const
    {
        return m_bTracks && m_Tracks.IsWanted(nTrack) && !m_OldTracks.contains(nTrack);
    }
    bool IsDyingTrack(uint64_t nTrack) const { return m_bTracks && !m_Tracks.IsWanted(nTrack); }
    bool IsBorn(uint64_t nKey) const { return m_New.contains(nKey) && !m_Old.contains(nKey); }
    bool IsGone(uint64_t nKey) const { return m_Old.contains(nKey) && !m_New.contains(nKey); }

    const bool m_bTracks; // whether these are known
    CListDifference m_Tracks;
    const CNumbers m_OldTracks;
    std::unordered_map<uint64_t, uint64_t> m_Old; // the track of each key
    std::unordered_map<uint64_t, uint64_t> m_New;
    std::map<uint64_t, CListDifference> m_Lists; // by track
};

void CComparison::CompareSpells(uint64_t nSerial, const CKnownSpell& before, const CKnownSpell& after)
{
    const CChangeRef effect = SpellRef(nSerial);
    if (before.m_Head && after.m_Head)
    {
        AddField(EDifference::eEffectName, {}, effect, before.m_Head->first, after.m_Head->first);
        AddField(EDifference::eEffectLength, {}, effect, int64_t(before.m_Head->second),
                 int64_t(after.m_Head->second));
    }

    CTrackComparison tracks(before, after);
    const auto trackRef = [&](uint64_t nTrack)
    {
        for (const CKnownSpell* pKnown : {&before, &after})
        {
            const size_t nCount = pKnown->m_Tracks ? pKnown->m_Tracks->size() : 0;
            for (size_t i = 0; i < nCount; ++i)
            {
                if ((*pKnown->m_Tracks)[i] == nTrack)
                    return CChangeRef{nTrack, std::to_string(i)};
            }
        }
        return CChangeRef{nTrack, {}};
    };
    const auto keyRef = [&](uint64_t nKey)
    {
        const auto old = before.m_Keys.find(nKey);
        const auto now = after.m_Keys.find(nKey);
        return old != before.m_Keys.end()  ? KeyRef(*old->second)
               : now != after.m_Keys.end() ? KeyRef(*now->second)
                                           : CChangeRef{nKey, {}};
    };
    for (const uint64_t nTrack : tracks.m_Tracks.Target())
    {
        if (!tracks.IsBornTrack(nTrack))
            continue;
        CDifference& difference = Add(EDifference::eTrack, effect, trackRef(nTrack));
        difference.m_Place.m_nPlace = tracks.m_Tracks.Insert(nTrack);
        const auto lists = tracks.m_Lists.find(nTrack);
        m_bWhole = m_bWhole && lists != tracks.m_Lists.end();
        if (m_bWhole)
            difference.m_After = AssembleTrack(after, nTrack, lists->second.Now());
    }
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        const CChangePlace track = {trackRef(nTrack), 0};
        if (tracks.IsDyingTrack(nTrack))
            continue;
        lists.Remove([&](uint64_t nKey) { return tracks.IsGone(nKey); },
                     [&](uint64_t nKey, uint32_t nPlace)
                     {
                         CDifference& difference = Add(EDifference::eKey, effect, keyRef(nKey));
                         difference.m_Place = {track.m_List, nPlace};
                         difference.m_Before = Content(before.m_Keys, nKey);
                     });
    }
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        for (const uint64_t nKey : lists.Target())
        {
            const auto old = tracks.m_Old.find(nKey);
            if (old == tracks.m_Old.end() || old->second == nTrack)
                continue;
            CDifference& difference = Add(EDifference::eKeyTrack, effect, keyRef(nKey));
            difference.m_Before =
                CChangePlace{trackRef(old->second), tracks.m_Lists.at(old->second).RemoveOne(nKey)};
            difference.m_After = CChangePlace{trackRef(nTrack), lists.Insert(nKey)};
        }
    }
    for (auto& [nTrack, lists] : tracks.m_Lists)
    {
        if (tracks.IsDyingTrack(nTrack))
            continue;
        const CNumbers here(lists.Now().begin(), lists.Now().end());
        for (const uint64_t nKey : lists.Target())
        {
            if (here.contains(nKey))
                continue;
            CDifference& difference = Add(EDifference::eKey, effect, keyRef(nKey));
            difference.m_Place = {trackRef(nTrack), lists.Insert(nKey)};
            difference.m_After = Content(after.m_Keys, nKey);
        }
        AddOrder(EDifference::eKeyOrder, ETreeSide::eEffects, effect, trackRef(nTrack), lists, keyRef);
    }
    tracks.m_Tracks.Remove([](uint64_t) { return true; },
                           [&](uint64_t nTrack, uint32_t nPlace)
                           {
                               CDifference& difference = Add(EDifference::eTrack, effect, trackRef(nTrack));
                               difference.m_Place.m_nPlace = nPlace;
                               const auto lists = tracks.m_Lists.find(nTrack);
                               m_bWhole = m_bWhole && lists != tracks.m_Lists.end();
                               if (m_bWhole)
                                   difference.m_Before = AssembleTrack(before, nTrack, lists->second.Now());
                           });
    AddOrder(EDifference::eTrackOrder, ETreeSide::eEffects, effect, {}, tracks.m_Tracks, trackRef);

    for (const auto& [nKey, pKey] : before.m_Keys)
    {
        const auto now = after.m_Keys.find(nKey);
        if (now != after.m_Keys.end() && now->second != pKey && !tracks.IsBorn(nKey))
            CompareKeys(effect, *pKey, *now->second);
    }
}

void CComparison::CompareKeys(const CChangeRef& effect, const CKeyImage& before, const CKeyImage& after)
{
    const CChangeRef object = KeyRef(before);
    AddField(EDifference::eKeyID, effect, object, int64_t(before.m_nKeyID), int64_t(after.m_nKeyID));
    AddField(EDifference::eKeyStart, effect, object, int64_t(before.m_nStartTime),
             int64_t(after.m_nStartTime));
    AddField(EDifference::eKeyEnd, effect, object, int64_t(before.m_nEndTime), int64_t(after.m_nEndTime));
    const auto linkOf = [](const CKeyImage& key)
    { return key.m_bMotionLinked ? std::optional<int64_t>(key.m_nMotionLinkID) : std::nullopt; };
    if (linkOf(before) != linkOf(after))
    {
        CDifference& difference = Add(EDifference::eKeyLink, effect, object);
        if (before.m_bMotionLinked)
            difference.m_Before = int64_t(before.m_nMotionLinkID);
        if (after.m_bMotionLinked)
            difference.m_After = int64_t(after.m_nMotionLinkID);
    }
    CompareSets(effect, object, before, after);
}

void CComparison::CompareSets(const CChangeRef& effect, const CChangeRef& object, const CSetImage& before,
                              const CSetImage& after)
{
    const bool bSameType = before.m_pType == after.m_pType ||
                           (before.m_pType && after.m_pType && *before.m_pType == *after.m_pType);
    m_bWhole = m_bWhole && bSameType; // no edit does that
    if (!bSameType)
        return;
    AddField(EDifference::eSetName, effect, object, before.m_sName, after.m_sName);
    if (before.m_nParent != after.m_nParent)
    {
        CDifference& difference = Add(EDifference::eSetParent, effect, object);
        if (before.m_nParent)
            difference.m_Before = CChangeRef{before.m_nParent, before.m_sParent};
        if (after.m_nParent)
            difference.m_After = CChangeRef{after.m_nParent, after.m_sParent};
    }
    const size_t nProps = before.m_pType ? before.m_pType->m_Props.size() : 0;
    size_t nOld = 0;
    size_t nNew = 0;
    for (uint32_t i = 0; i < nProps; ++i)
    {
        const bool bOld = nOld < before.m_Slots.size() && before.m_Slots[nOld].m_nSlot == i;
        const bool bNew = nNew < after.m_Slots.size() && after.m_Slots[nNew].m_nSlot == i;
        if (bOld || bNew)
            CompareSlot(effect, object, i, before, after);
        nOld += bOld ? 1 : 0;
        nNew += bNew ? 1 : 0;
    }
}

// Only the run of values that differs.
void CComparison::CompareSlot(const CChangeRef& effect, const CChangeRef& object, uint32_t nSlot,
                              const CSetImage& before, const CSetImage& after)
{
    const CSetImage::CSlot* pOld = before.FindSlot(nSlot);
    const CSetImage::CSlot* pNew = after.FindSlot(nSlot);
    const auto pointsOf = [](const CSetImage& set, const CSetImage::CSlot* pSlot)
    {
        const auto first = set.m_Points.begin() + (pSlot ? pSlot->m_nFirst : 0);
        return std::vector<CPointImage>(first, first + (pSlot ? pSlot->m_nCount : 0));
    };
    CChangePoints old{0, pointsOf(before, pOld)};
    CChangePoints now{0, pointsOf(after, pNew)};
    if (pOld && pNew)
    {
        auto& a = old.m_Points;
        auto& b = now.m_Points;
        const auto nFirst =
            std::mismatch(a.begin(), a.end(), b.begin(), b.end(), IsSamePoint).first - a.begin();
        a.erase(a.begin(), a.begin() + nFirst);
        b.erase(b.begin(), b.begin() + nFirst);
        const auto nTail =
            std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend(), IsSamePoint).first - a.rbegin();
        a.erase(a.end() - nTail, a.end());
        b.erase(b.end() - nTail, b.end());
        if (a.empty() && b.empty())
            return;
        old.m_nFirst = now.m_nFirst = static_cast<uint32_t>(nFirst);
    }
    CDifference& difference = Add(EDifference::eSetValue, effect, object);
    difference.m_sProperty = before.m_pType->m_Props[nSlot].m_sName;
    difference.m_eType = before.m_pType->m_Props[nSlot].m_eType;
    difference.m_nSlot = nSlot;
    if (pOld)
        difference.m_Before = std::move(old);
    if (pNew)
        difference.m_After = std::move(now);
}

} // namespace

bool Compare(const CKnownLibrary& before, const CKnownLibrary& after, const CChangeNames& names,
             CLibraryChange& change)
{
    return CComparison(before, after, names, change).Run();
}

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

std::string ItemName(const CLibraryImage& image, ETreeSide eSide, uint32_t nItem)
{
    for (const auto& pGroup : image.Tree(eSide))
    {
        for (const CItemImage& item : pGroup->m_Children)
        {
            if (item.m_nItem == nItem)
                return item.m_sText;
        }
    }
    return {};
}

} // namespace

CLibraryChange Compare(const CLibraryImage& before, const CLibraryImage& after)
{
    std::unordered_map<uint64_t, const std::string*> spells, prefabs;
    for (const CLibraryImage* pImage : {&before, &after})
    {
        for (const auto& pSpell : pImage->m_Spells)
            spells.emplace(pSpell->m_nSerial, &pSpell->m_sName);
        for (const auto& pPrefab : pImage->m_Prefabs)
            prefabs.emplace(pPrefab->m_nSerial, &pPrefab->m_sName);
    }
    CChangeNames names;
    names.m_Spell = [&](uint64_t n) { return spells.contains(n) ? *spells[n] : std::string(); };
    names.m_Prefab = [&](uint64_t n) { return prefabs.contains(n) ? *prefabs[n] : std::string(); };
    names.m_Item = [&](ETreeSide eSide, uint32_t n)
    {
        const std::string sName = ItemName(before, eSide, n);
        return sName.empty() ? ItemName(after, eSide, n) : sName;
    };
    CLibraryChange change;
    Compare(KnownOf(before, after), KnownOf(after, before), names, change);
    return change;
}
