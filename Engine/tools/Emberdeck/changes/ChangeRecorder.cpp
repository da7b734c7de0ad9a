#include "changes/ChangeRecorder.h"

#include <algorithm>

#include "changes/Serials.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"

namespace
{

// Whether a list is touched and hadn't this one.
bool IsNew(const std::optional<std::vector<uint64_t>>& list, const std::vector<uint64_t>& sorted,
           uint64_t nSerial)
{
    return list && !std::binary_search(sorted.begin(), sorted.end(), nSerial);
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
    m_bFailed = !AllocateAll([&] { Keep(touch); });
}

void CChangeRecorder::Keep(const CTouch& touch)
{
    const CSpellMgr& spellMgr = m_Target.m_Library.m_SpellMgr;
    const auto keepList =
        [](std::optional<std::vector<uint64_t>>& list, std::vector<uint64_t>& sorted, const auto& objects)
    {
        if (list) // a second touch tells nothing of what was
            return;
        sorted = SerialsOf(objects);
        std::vector<uint64_t> serials = sorted;
        std::sort(sorted.begin(), sorted.end());
        list = std::move(serials);
    };
    switch (touch.m_eKind)
    {
    case ETouched::eLibrary:
        m_bLibrary = true;
        break;
    case ETouched::eSpellList:
        keepList(m_Before.m_SpellList, m_OldSpells, spellMgr.Spells());
        break;
    case ETouched::ePrefabList:
        keepList(m_Before.m_PrefabList, m_OldPrefabs, spellMgr.Prefabs());
        break;
    case ETouched::ePrefab:
    {
        const auto* pPrefab = static_cast<const CEffectPropertySet*>(touch.m_pObject);
        if (m_Prefabs.contains(touch.m_nSerial) ||
            IsNew(m_Before.m_PrefabList, m_OldPrefabs, touch.m_nSerial))
            break;
        m_Before.m_Prefabs.emplace(touch.m_nSerial, m_Maker.MakePrefab(*pPrefab));
        m_Prefabs.emplace(touch.m_nSerial, pPrefab);
        break;
    }
    case ETouched::eSpell:
        if (!IsNew(m_Before.m_SpellList, m_OldSpells, touch.m_nSerial))
            KeepSpell(*static_cast<const CSpell*>(touch.m_pObject), touch);
        break;
    case ETouched::eEffectTree:
    case ETouched::ePrefabTree:
    {
        const ETreeSide eSide =
            touch.m_eKind == ETouched::eEffectTree ? ETreeSide::eEffects : ETreeSide::ePrefabs;
        if (touch.m_ePart == EPart::eGroup)
            KeepGroup(eSide, HLibraryItem{static_cast<uint32_t>(touch.m_nPart)});
        else
            KeepTree(eSide);
        break;
    }
    }
}

void CChangeRecorder::KeepTree(ETreeSide eSide)
{
    const CLibraryTree& tree = m_Target.m_Library.Tree(eSide);
    KeepGroup(eSide, {});
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
    {
        if (tree.IsGroup(h) || tree.HasChildren(h)) // an empty one, too, may have children in the end
            KeepGroup(eSide, h);
    }
}

// Whether an item has come within this edit: the nearest group above that is kept hadn't what leads to it.
bool CChangeRecorder::IsNewItem(ETreeSide eSide, HLibraryItem hItem) const
{
    const CLibraryTree& tree = m_Target.m_Library.Tree(eSide);
    const auto& groups = m_Before.m_Groups[static_cast<size_t>(eSide)];
    while (hItem)
    {
        const HLibraryItem hParent = tree.GetParentItem(hItem);
        if (groups.contains(hParent.m_nID))
            return !m_OldItems[static_cast<size_t>(eSide)].contains(hItem.m_nID);
        hItem = hParent;
    }
    return false;
}

void CChangeRecorder::KeepGroup(ETreeSide eSide, HLibraryItem hItem)
{
    auto& groups = m_Before.m_Groups[static_cast<size_t>(eSide)];
    if (groups.contains(hItem.m_nID) || IsNewItem(eSide, hItem))
        return;
    const auto& pGroup =
        groups.emplace(hItem.m_nID, CImageMaker::MakeGroup(m_Target.m_Library, eSide, hItem)).first->second;
    for (const CItemImage& item : pGroup->m_Children)
        m_OldItems[static_cast<size_t>(eSide)].emplace(item.m_nItem, &item);
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

void CChangeRecorder::Finish(CEdit& edit)
{
    if (!m_bLibrary)
    {
        std::shared_ptr<CLibraryChange> pChange;
        bool bFound = false;
        const auto find = [&]
        {
            pChange = std::make_shared<CLibraryChange>();
            bFound = FindChange(*pChange);
            pChange->m_Differences.shrink_to_fit();
        };
        edit.m_bRecordFailed = m_bFailed || edit.m_bTouchesLost || !AllocateAll(find) || !bFound;
        if (!edit.m_bRecordFailed)
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
    const auto find = [&]
    {
        bFound = FindChange(change);
        change = change.TurnedRound();
    };
    return AllocateAll(find) && bFound && !Apply(change, m_Target, edit.m_sLabel);
}

void CChangeRecorder::Forget()
{
    m_Before = CKnownLibrary();
    m_Spells.clear();
    m_Prefabs.clear();
    m_OldSpells.clear();
    m_OldPrefabs.clear();
    for (CSide& items : m_OldItems)
        items.clear();
    m_bLibrary = false;
    m_bFailed = false;
    m_Maker.ForgetTypes();
}
