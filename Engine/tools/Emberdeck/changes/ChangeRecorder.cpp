#include "changes/ChangeRecorder.h"

#include <algorithm>

#include "model/MakeOrNull.h"
#include "model/NameIndex.h"

namespace
{

template <class TList>
std::vector<uint64_t> SerialsOf(const TList& list)
{
    std::vector<uint64_t> serials;
    serials.reserve(list.size());
    for (const auto& pObject : list)
    {
        if constexpr (requires { pObject->m_nSerial; })
            serials.push_back(pObject->m_nSerial);
        else
            serials.push_back(pObject->m_Serial.Get());
    }
    return serials;
}

// Whether an object that was there still is. The address is looked for first: what stands there may be gone.
template <class TList, class TObject>
bool IsThere(const TList& list, const TObject* pObject)
{
    return std::any_of(list.begin(), list.end(), [pObject](const auto& p) { return p.get() == pObject; });
}

} // namespace

CChangeRecorder::CChangeRecorder(const CApplyTarget& target) : m_Target(target)
{
    m_Target.m_Edits.SetRecorder(this);
}

CChangeRecorder::~CChangeRecorder()
{
    m_Target.m_Edits.SetRecorder(nullptr);
}

void CChangeRecorder::OnTouching(const CTouch& touch)
{
    if (m_bLibrary || m_bFailed)
        return;
    m_bFailed = !TryAllocating([&] { Keep(touch); });
}

void CChangeRecorder::Keep(const CTouch& touch)
{
    const CSpellMgr& spellMgr = m_Target.m_Library.m_SpellMgr;
    switch (touch.m_eKind)
    {
    case ETouched::eLibrary:
        m_bLibrary = true;
        break;
    case ETouched::eSpellList:
        m_Before.m_SpellList = SerialsOf(spellMgr.Spells());
        break;
    case ETouched::ePrefabList:
        m_Before.m_PrefabList = SerialsOf(spellMgr.Prefabs());
        break;
    case ETouched::ePrefab:
    {
        const auto* pPrefab = static_cast<const CEffectPropertySet*>(touch.m_pObject);
        m_Before.m_Prefabs.emplace(touch.m_nSerial, m_Maker.MakePrefab(*pPrefab));
        m_Prefabs.emplace(touch.m_nSerial, pPrefab);
        break;
    }
    case ETouched::eSpell:
        KeepSpell(*static_cast<const CSpell*>(touch.m_pObject), touch);
        break;
    case ETouched::eEffectTree:
    case ETouched::ePrefabTree:
    {
        const ETreeSide eSide =
            touch.m_eKind == ETouched::eEffectTree ? ETreeSide::eEffects : ETreeSide::ePrefabs;
        if (touch.m_ePart == EPart::eGroup)
        {
            KeepGroup(eSide, HLibraryItem{static_cast<uint32_t>(touch.m_nPart)});
            break;
        }
        const CLibraryTree& tree = m_Target.m_Library.Tree(eSide);
        KeepGroup(eSide, {});
        for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        {
            if (tree.IsGroup(h) || tree.HasChildren(h)) // an empty one, too, may have children in the end
                KeepGroup(eSide, h);
        }
        break;
    }
    }
}

void CChangeRecorder::KeepGroup(ETreeSide eSide, HLibraryItem hItem)
{
    auto& groups = m_Before.m_Groups[static_cast<size_t>(eSide)];
    if (!groups.contains(hItem.m_nID))
        groups.emplace(hItem.m_nID, CImageMaker::MakeGroup(m_Target.m_Library, eSide, hItem));
}

void CChangeRecorder::KeepKey(CKnownSpell& known, CTouchedSpell& touched, const CKey& key)
{
    const uint64_t nSerial = key.m_Serial.Get();
    if (known.m_Keys.contains(nSerial))
        return;
    touched.m_Keys.emplace_back(&key, nSerial);
    known.m_Keys.emplace(nSerial, m_Maker.MakeKey(key));
}

void CChangeRecorder::KeepTrack(CKnownSpell& known, const CTrack& track)
{
    if (!known.m_TrackKeys.contains(track.m_Serial.Get()))
        known.m_TrackKeys.emplace(track.m_Serial.Get(), SerialsOf(track.Keys()));
}

void CChangeRecorder::KeepSpell(const CSpell& spell, const CTouch& touch)
{
    CKnownSpell& known = m_Before.m_Spells[spell.m_nSerial];
    CTouchedSpell& touched = m_Spells[spell.m_nSerial];
    if (!touched.m_pSpell)
    {
        touched.m_pSpell = &spell;
        touched.m_sName = BoundedText(spell.m_szName);
    }
    const bool bWhole = touch.m_ePart == EPart::eWhole;
    if ((bWhole || touch.m_ePart == EPart::eHead) && !known.m_Head)
        known.m_Head = {std::string(BoundedText(spell.m_szName)), spell.m_Tracks.m_nPhaseLength};
    // With a track's keys its number is of interest.
    if (touch.m_ePart != EPart::eHead && touch.m_ePart != EPart::eKey && !known.m_Tracks)
        known.m_Tracks = SerialsOf(spell.m_Tracks.Tracks());
    if (touch.m_ePart == EPart::eTrack)
        KeepTrack(known, *static_cast<const CTrack*>(touch.m_pPart));
    if (touch.m_ePart == EPart::eKey)
        KeepKey(known, touched, *static_cast<const CKey*>(touch.m_pPart));
    for (size_t i = 0; bWhole && i < spell.m_Tracks.Tracks().size(); ++i)
    {
        const CTrack& track = *spell.m_Tracks.Tracks()[i];
        KeepTrack(known, track);
        for (const std::unique_ptr<CKey>& pKey : track.Keys())
            KeepKey(known, touched, *pKey);
    }
}

// What is there now of an effect that still is: of what was touched, and of what is new.
void CChangeRecorder::LookAgain(uint64_t nSerial, const CKnownSpell& before, CTouchedSpell& touched,
                                CKnownSpell& after)
{
    (void)nSerial;
    const CSpell& spell = *touched.m_pSpell;
    if (before.m_Head)
        after.m_Head = {std::string(BoundedText(spell.m_szName)), spell.m_Tracks.m_nPhaseLength};
    if (before.m_Tracks)
        after.m_Tracks = SerialsOf(spell.m_Tracks.Tracks());
    const std::unordered_set<uint64_t> oldTracks(
        before.m_Tracks ? before.m_Tracks->begin() : std::vector<uint64_t>::const_iterator(),
        before.m_Tracks ? before.m_Tracks->end() : std::vector<uint64_t>::const_iterator());
    std::unordered_set<uint64_t> oldKeys;
    for (const auto& [nTrack, keys] : before.m_TrackKeys)
        oldKeys.insert(keys.begin(), keys.end());
    std::sort(touched.m_Keys.begin(), touched.m_Keys.end());
    for (const std::unique_ptr<CTrack>& pTrack : spell.m_Tracks.Tracks())
    {
        const uint64_t nTrack = pTrack->m_Serial.Get();
        const bool bList =
            before.m_TrackKeys.contains(nTrack) || (before.m_Tracks && !oldTracks.contains(nTrack));
        if (bList)
            after.m_TrackKeys.emplace(nTrack, SerialsOf(pTrack->Keys()));
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            const auto found = std::lower_bound(touched.m_Keys.begin(), touched.m_Keys.end(),
                                                std::pair<const CKey*, uint64_t>(pKey.get(), 0));
            const bool bTouched = found != touched.m_Keys.end() && found->first == pKey.get();
            if (bTouched || (bList && !oldKeys.contains(pKey->m_Serial.Get())))
                after.m_Keys.emplace(pKey->m_Serial.Get(), m_Maker.MakeKey(*pKey));
        }
    }
}

CKnownLibrary CChangeRecorder::LookAgain()
{
    const CLibraryParts& library = m_Target.m_Library;
    const auto& spells = library.m_SpellMgr.Spells();
    const auto& prefabs = library.m_SpellMgr.Prefabs();
    CKnownLibrary after;
    if (m_Before.m_SpellList)
        after.m_SpellList = SerialsOf(spells);
    if (m_Before.m_PrefabList)
        after.m_PrefabList = SerialsOf(prefabs);

    const auto notIn = [](const std::optional<std::vector<uint64_t>>& list)
    {
        return [known = std::unordered_set<uint64_t>(list->begin(), list->end())](uint64_t n)
        { return !known.contains(n); };
    };
    if (m_Before.m_SpellList)
    {
        const auto isNew = notIn(m_Before.m_SpellList);
        for (const auto& pSpell : spells)
        {
            if (!isNew(pSpell->m_nSerial))
                continue;
            CKnownSpell& known = after.m_Spells[pSpell->m_nSerial];
            known.m_Head = {std::string(BoundedText(pSpell->m_szName)), pSpell->m_Tracks.m_nPhaseLength};
            known.m_Tracks = SerialsOf(pSpell->m_Tracks.Tracks());
            for (const auto& pTrack : pSpell->m_Tracks.Tracks())
            {
                known.m_TrackKeys.emplace(pTrack->m_Serial.Get(), SerialsOf(pTrack->Keys()));
                for (const auto& pKey : pTrack->Keys())
                    known.m_Keys.emplace(pKey->m_Serial.Get(), m_Maker.MakeKey(*pKey));
            }
        }
    }
    if (m_Before.m_PrefabList)
    {
        const auto isNew = notIn(m_Before.m_PrefabList);
        for (const auto& pPrefab : prefabs)
        {
            if (isNew(pPrefab->m_Serial.Get()))
                after.m_Prefabs.emplace(pPrefab->m_Serial.Get(), m_Maker.MakePrefab(*pPrefab));
        }
    }
    for (auto& [nSerial, touched] : m_Spells)
    {
        if (!after.m_Spells.contains(nSerial) && IsThere(spells, touched.m_pSpell) &&
            touched.m_pSpell->m_nSerial == nSerial)
            LookAgain(nSerial, m_Before.m_Spells[nSerial], touched, after.m_Spells[nSerial]);
    }
    for (const auto& [nSerial, pPrefab] : m_Prefabs)
    {
        if (!after.m_Prefabs.contains(nSerial) && IsThere(prefabs, pPrefab) &&
            pPrefab->m_Serial.Get() == nSerial)
            after.m_Prefabs.emplace(nSerial, m_Maker.MakePrefab(*pPrefab));
    }

    for (const ETreeSide eSide : c_TreeSides)
    {
        const CLibraryTree& tree = library.Tree(eSide);
        const auto& before = m_Before.m_Groups[static_cast<size_t>(eSide)];
        auto& groups = after.m_Groups[static_cast<size_t>(eSide)];
        std::unordered_set<uint32_t> old;
        std::vector<uint32_t> open;
        for (const auto& [nGroup, pGroup] : before)
        {
            if (nGroup == 0 || tree.IsAlive(HLibraryItem{nGroup}))
                open.push_back(nGroup);
            for (const CItemImage& item : pGroup->m_Children)
                old.insert(item.m_nItem);
        }
        while (!open.empty())
        {
            const HLibraryItem hGroup{open.back()};
            open.pop_back();
            const auto& pGroup = groups[hGroup.m_nID] = CImageMaker::MakeGroup(library, eSide, hGroup);
            for (const CItemImage& item : pGroup->m_Children)
            {
                if (!old.contains(item.m_nItem) && !groups.contains(item.m_nItem) &&
                    tree.HasChildren(HLibraryItem{item.m_nItem}))
                    open.push_back(item.m_nItem);
            }
        }
    }
    return after;
}

bool CChangeRecorder::FindChange(CLibraryChange& change)
{
    const CLibraryParts& library = m_Target.m_Library;
    CChangeNames names;
    std::unordered_map<uint64_t, std::string> spells,
        prefabs; // of those that nobody touched, when they are asked for
    names.m_Spell = [&](uint64_t nSerial)
    {
        const auto touched = m_Spells.find(nSerial);
        if (touched != m_Spells.end())
            return touched->second.m_sName;
        for (size_t i = 0; spells.empty() && i < library.m_SpellMgr.Spells().size(); ++i)
        {
            const CSpell& spell = *library.m_SpellMgr.Spells()[i];
            spells.emplace(spell.m_nSerial, BoundedText(spell.m_szName));
        }
        return spells[nSerial];
    };
    names.m_Prefab = [&](uint64_t nSerial)
    {
        const auto known = m_Before.m_Prefabs.find(nSerial);
        if (known != m_Before.m_Prefabs.end())
            return known->second->m_sName;
        for (size_t i = 0; prefabs.empty() && i < library.m_SpellMgr.Prefabs().size(); ++i)
        {
            const CEffectPropertySet& prefab = *library.m_SpellMgr.Prefabs()[i];
            prefabs.emplace(prefab.m_Serial.Get(), prefab.m_sName);
        }
        return prefabs[nSerial];
    };
    names.m_Item = [&](ETreeSide eSide, uint32_t nItem)
    {
        const CLibraryTree& tree = library.Tree(eSide);
        if (tree.IsAlive(HLibraryItem{nItem}))
            return tree.GetItemText(HLibraryItem{nItem});
        for (const auto& [nGroup, pGroup] : m_Before.m_Groups[static_cast<size_t>(eSide)])
        {
            for (const CItemImage& item : pGroup->m_Children)
            {
                if (item.m_nItem == nItem)
                    return item.m_sText;
            }
        }
        return std::string();
    };
    return Compare(m_Before, LookAgain(), names, change);
}

void CChangeRecorder::Finish(CEdit& edit)
{
    if (!m_bLibrary)
    {
        std::shared_ptr<CLibraryChange> pChange;
        bool bFound = false;
        TryAllocating(
            [&]
            {
                pChange = std::make_shared<CLibraryChange>();
                bFound = !m_bFailed && FindChange(*pChange);
            });
        edit.m_bRecordFailed = !bFound;
        if (bFound)
            edit.m_pChange = std::move(pChange);
    }
    Forget();
}

bool CChangeRecorder::PutBack(const CEdit& edit)
{
    if (m_bLibrary || m_bFailed)
        return false;
    CLibraryChange change;
    bool bFound = false;
    TryAllocating([&] { bFound = FindChange(change); });
    return bFound && !Apply(change.TurnedRound(), m_Target, edit.m_sLabel);
}

void CChangeRecorder::Forget()
{
    m_Before = CKnownLibrary();
    m_Spells.clear();
    m_Prefabs.clear();
    m_bLibrary = false;
    m_bFailed = false;
    m_Maker.ForgetTypes();
}
