#include "changes/Applier.h"
#include "changes/SameContent.h"
#include "model/MakeOrNull.h"

// Effects, prefabs, tracks and keys that come, go and move.

CSpell* CApplier::FindSpell(uint64_t nSerial)
{
    if (!m_bIndexed)
    {
        for (const auto& pSpell : Mgr().Spells())
            m_Spells.emplace(pSpell->m_nSerial, pSpell.get());
        for (const auto& pPrefab : Mgr().Prefabs())
            m_Prefabs.emplace(pPrefab->m_Serial.Get(), pPrefab.get());
        m_bIndexed = true;
    }
    const auto found = m_Spells.find(nSerial);
    return found != m_Spells.end() ? found->second : nullptr;
}

CEffectPropertySet* CApplier::FindPrefab(uint64_t nSerial)
{
    FindSpell(0); // makes the index
    const auto found = m_Prefabs.find(nSerial);
    return found != m_Prefabs.end() ? found->second : nullptr;
}

CApplier::CSpellIndex& CApplier::IndexOf(CSpell& spell)
{
    const auto [place, bNew] = m_Indexes.try_emplace(&spell);
    CSpellIndex& index = place->second;
    for (size_t i = 0; bNew && i < spell.m_Tracks.Tracks().size(); ++i)
    {
        CTrack& track = *spell.m_Tracks.Tracks()[i];
        index.m_Tracks.emplace(SerialOf(track), &track);
        for (const auto& pKey : track.Keys())
            index.m_Keys.emplace(SerialOf(*pKey), pKey.get());
    }
    return index;
}

CTrack* CApplier::FindTrack(CSpell& spell, uint64_t nSerial)
{
    const auto& tracks = IndexOf(spell).m_Tracks;
    const auto found = tracks.find(nSerial);
    return found != tracks.end() ? found->second : nullptr;
}

CKey* CApplier::FindKey(CSpell& spell, uint64_t nSerial)
{
    const auto& keys = IndexOf(spell).m_Keys;
    const auto found = keys.find(nSerial);
    return found != keys.end() ? found->second : nullptr;
}

std::optional<uint32_t> CApplier::SlotOf(const CEffectPropertySet& set, uint32_t nSlot,
                                         const CTypeImage::CProp& prop, const CEffectModule& module)
{
    if (!set.m_pTypeDesc)
        return std::nullopt;
    const auto isIt = [&](uint32_t n)
    {
        return n < set.m_Props.size() && DescName(set.m_pTypeDesc->m_pProps[n]) == prop.m_sName &&
               set.m_pTypeDesc->m_pProps[n].m_eType == prop.m_eType;
    };
    if (isIt(nSlot))
        return nSlot;
    const int nFound = module.FindPropertyIndex(set.m_pTypeDesc, prop.m_sName);
    const auto nOther = static_cast<uint32_t>(nFound);
    return nFound >= 0 && isIt(nOther) ? std::optional<uint32_t>(nOther) : std::nullopt;
}

void CApplier::SetPoints(CEffectProperty& prop, std::vector<CPointImage> points)
{
    CPropKeyList keys;
    keys.Reserve(static_cast<uint32_t>(points.size()));
    for (CPointImage& point : points)
    {
        CPropKey key;
        key.m_fTime = point.m_fTime;
        key.m_Data = std::move(point.m_Data);
        keys.Add(std::move(key));
    }
    prop.SetKeys(std::move(keys));
}

// Into an empty set of that type.
CApplier::TWhy CApplier::FillSet(CEffectPropertySet& set, const CSetImage& image)
{
    set.m_Serial.Restore(image.m_nSerial);
    set.m_sName = image.m_sName;
    CEffectPropertySet* pParent = image.m_nParent ? FindPrefab(image.m_nParent) : nullptr;
    if (image.m_nParent && (!pParent || !set.SetParent(pParent)))
        return "its prefab isn't there";
    for (const CSetImage::CSlot& slot : image.m_Slots)
    {
        const auto nSlot = SlotOf(set, slot.m_nSlot, image.m_pType->m_Props[slot.m_nSlot], m_Target.m_Module);
        if (!nSlot || set.m_Props[*nSlot])
            return c_szNoType;
        auto pProp = std::make_unique<CEffectProperty>(&set.m_pTypeDesc->m_pProps[*nSlot]);
        const auto first = image.m_Points.begin() + slot.m_nFirst;
        SetPoints(*pProp, {first, first + slot.m_nCount});
        set.m_Props[*nSlot] = std::move(pProp);
    }
    return {};
}

CApplier::TWhy CApplier::MakeKey(const CKeyImage& image, std::unique_ptr<CKey>& pKey)
{
    const CEffectTypeDesc* pType =
        image.m_pType ? m_Target.m_Module.FindType(image.m_pType->m_sName.c_str()) : nullptr;
    if (!pType)
        return c_szNoType;
    pKey = std::make_unique<CKey>(pType);
    pKey->m_nKeyID = image.m_nKeyID;
    pKey->m_nStartTime = image.m_nStartTime;
    pKey->m_nEndTime = image.m_nEndTime;
    if (image.m_bMotionLinked)
        pKey->Link(image.m_nMotionLinkID);
    else
        pKey->m_nMotionLinkID = image.m_nMotionLinkID;
    return FillSet(*pKey, image);
}

CApplier::TWhy CApplier::MakeTrack(const CTrackImage& image, std::unique_ptr<CTrack>& pTrack)
{
    pTrack = std::make_unique<CTrack>();
    pTrack->m_Serial.Restore(image.m_nSerial);
    for (const auto& pKeyImage : image.m_Keys)
    {
        std::unique_ptr<CKey> pKey;
        if (const TWhy sWhy = MakeKey(*pKeyImage, pKey); !sWhy.empty())
            return sWhy;
        pTrack->KeysToRestore().push_back(std::move(pKey));
    }
    return {};
}

// Whether a track or one of its keys has a number that is in use in its effect.
bool CApplier::IsInUse(const CTrackImage& track, CSpellIndex& index)
{
    bool bFree = index.m_Tracks.emplace(track.m_nSerial, nullptr).second;
    for (const auto& pKey : track.m_Keys)
        bFree = index.m_Keys.emplace(pKey->m_nSerial, nullptr).second && bFree;
    return !bFree;
}

void RaiseCounter(CTrackList& tracks, uint32_t nKeyID)
{
    if (nKeyID >= tracks.m_nNextKeyID)
        tracks.m_nNextKeyID = nKeyID + 1;
}

void RaiseCounter(CTrackList& tracks, const CTrackImage& track)
{
    for (const auto& pKey : track.m_Keys)
        RaiseCounter(tracks, pKey->m_nKeyID);
}

CApplier::TWhy CApplier::DoSpell(const CDifference& d)
{
    auto& spells = Mgr().SpellsToRestore();
    const uint64_t nSerial = d.m_Object.m_nSerial;
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CSpell* pSpell = FindSpell(nSerial);
    if (const CSpellImage* pOld = NodeOf<CSpellImage>(d, d.m_Before))
    {
        if (!pSpell || nPlace >= spells.size() || spells[nPlace].get() != pSpell)
            return c_szGone;
        if (!IsSameContent(*pOld, *m_Maker.MakeSpell(*pSpell)))
            return c_szOther;
        if (m_Target.m_Library.m_EffectTree.FindData(pSpell))
            return c_szHasItem;
        m_Scope.TouchSpellList();
        m_Scope.Touch(pSpell);
        m_Target.m_Owner.OnReleasing(*pSpell);
        ForgetIndex(*pSpell);
        m_Spells.erase(nSerial);
        TakeAt(spells, nPlace);
        return {};
    }
    const CSpellImage* pNew = NodeOf<CSpellImage>(d, d.m_After);
    if (!pNew || pSpell || nPlace > spells.size())
        return c_szThere;
    auto pMade = std::make_unique<CSpell>(nSerial);
    pMade->SetName(pNew->m_sName);
    pMade->m_Tracks.m_nPhaseLength = pNew->m_nPhaseLength;
    CSpellIndex used;
    for (const auto& pTrackImage : pNew->m_Tracks)
    {
        if (IsInUse(*pTrackImage, used))
            return c_szThere;
        std::unique_ptr<CTrack> pTrack;
        if (const TWhy sWhy = MakeTrack(*pTrackImage, pTrack); !sWhy.empty())
            return sWhy;
        pMade->m_Tracks.TracksToRestore().push_back(std::move(pTrack));
        RaiseCounter(pMade->m_Tracks, *pTrackImage);
    }
    pMade->m_Tracks.Renumber();
    m_Scope.TouchSpellList();
    m_Spells[nSerial] = pMade.get();
    InsertAt(spells, nPlace, std::move(pMade));
    return {};
}

CApplier::TWhy CApplier::DoPrefab(const CDifference& d)
{
    auto& prefabs = Mgr().PrefabsToRestore();
    const uint64_t nSerial = d.m_Object.m_nSerial;
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CEffectPropertySet* pPrefab = FindPrefab(nSerial);
    if (const CSetImage* pOld = NodeOf<CSetImage>(d, d.m_Before))
    {
        if (!pPrefab || nPlace >= prefabs.size() || prefabs[nPlace].get() != pPrefab)
            return c_szGone;
        if (!IsSameContent(*pOld, *m_Maker.MakePrefab(*pPrefab)))
            return c_szOther;
        bool bUsed = false;
        Mgr().ForEachKey([&](CSpell&, CKey& key) { bUsed = bUsed || key.GetParent() == pPrefab; });
        for (const auto& pOther : prefabs)
            bUsed = bUsed || pOther->GetParent() == pPrefab;
        if (bUsed)
            return "others stand on it";
        if (m_Target.m_Library.m_PrefabTree.FindData(pPrefab))
            return c_szHasItem;
        m_Scope.TouchPrefabList();
        m_Scope.TouchPrefab(pPrefab);
        m_Target.m_Owner.OnReleasing(*pPrefab);
        m_Prefabs.erase(nSerial);
        TakeAt(prefabs, nPlace);
        return {};
    }
    const CSetImage* pNew = NodeOf<CSetImage>(d, d.m_After);
    if (!pNew || pPrefab || nPlace > prefabs.size())
        return c_szThere;
    const CEffectTypeDesc* pType =
        pNew->m_pType ? m_Target.m_Module.FindType(pNew->m_pType->m_sName.c_str()) : nullptr;
    if (!pType)
        return c_szNoType;
    auto pMade = std::make_unique<CEffectPropertySet>(pType);
    if (const TWhy sWhy = FillSet(*pMade, *pNew); !sWhy.empty())
        return sWhy;
    m_Scope.TouchPrefabList();
    m_Prefabs[nSerial] = pMade.get();
    InsertAt(prefabs, nPlace, std::move(pMade));
    return {};
}

CApplier::TWhy CApplier::DoTrack(const CDifference& d, CSpell& spell)
{
    auto& tracks = spell.m_Tracks.TracksToRestore();
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CTrack* pTrack = FindTrack(spell, d.m_Object.m_nSerial);
    if (const CTrackImage* pOld = NodeOf<CTrackImage>(d, d.m_Before))
    {
        if (!pTrack || nPlace >= tracks.size() || tracks[nPlace].get() != pTrack)
            return c_szGone;
        if (!IsSameContent(*pOld, *m_Maker.MakeTrack(*pTrack)))
            return c_szOther;
        m_Scope.TouchTracks(spell);
        m_Scope.TouchTrack(spell, *pTrack);
        for (const auto& pKey : pTrack->Keys())
            m_Scope.TouchKey(spell, *pKey);
        TakeAt(tracks, nPlace);
        ForgetIndex(spell);
    }
    else
    {
        const CTrackImage* pNew = NodeOf<CTrackImage>(d, d.m_After);
        if (!pNew || pTrack || nPlace > tracks.size() || tracks.size() >= CTrackList::c_nMaxTracks)
            return c_szThere;
        CSpellIndex used = IndexOf(spell);
        if (IsInUse(*pNew, used))
            return c_szThere;
        std::unique_ptr<CTrack> pMade;
        if (const TWhy sWhy = MakeTrack(*pNew, pMade); !sWhy.empty())
            return sWhy;
        m_Scope.TouchTracks(spell);
        InsertAt(tracks, nPlace, std::move(pMade));
        RaiseCounter(spell.m_Tracks, *pNew);
        ForgetIndex(spell);
    }
    spell.m_Tracks.Renumber();
    return {};
}

CApplier::TWhy CApplier::DoKey(const CDifference& d, CSpell& spell)
{
    CTrack* pTrack = FindTrack(spell, d.m_Place.m_List.m_nSerial);
    if (!pTrack)
        return "its track isn't there";
    auto& keys = pTrack->KeysToRestore();
    const uint64_t nSerial = d.m_Object.m_nSerial;
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CKey* pKey = FindKey(spell, nSerial);
    if (const CKeyImage* pOld = NodeOf<CKeyImage>(d, d.m_Before))
    {
        if (!pKey || nPlace >= keys.size() || keys[nPlace].get() != pKey)
            return c_szGone;
        if (!IsSameContent(*pOld, *m_Maker.MakeKey(*pKey)))
            return c_szOther;
        m_Scope.TouchTrack(spell, *pTrack);
        m_Scope.TouchKey(spell, *pKey);
        IndexOf(spell).m_Keys.erase(nSerial);
        TakeAt(keys, nPlace);
        return {};
    }
    const CKeyImage* pNew = NodeOf<CKeyImage>(d, d.m_After);
    if (!pNew || pKey || nPlace > keys.size())
        return c_szThere;
    std::unique_ptr<CKey> pMade;
    if (const TWhy sWhy = MakeKey(*pNew, pMade); !sWhy.empty())
        return sWhy;
    m_Scope.TouchTrack(spell, *pTrack);
    pMade->m_nTrack = spell.m_Tracks.GetTrackNumber(pTrack);
    IndexOf(spell).m_Keys[nSerial] = pMade.get();
    InsertAt(keys, nPlace, std::move(pMade));
    RaiseCounter(spell.m_Tracks, pNew->m_nKeyID);
    return {};
}

CApplier::TWhy CApplier::DoKeyTrack(const CDifference& d, CSpell& spell)
{
    const auto* pFrom = std::get_if<CChangePlace>(&d.m_Before);
    const auto* pTo = std::get_if<CChangePlace>(&d.m_After);
    CTrack* pOld = pFrom ? FindTrack(spell, pFrom->m_List.m_nSerial) : nullptr;
    CTrack* pNew = pTo ? FindTrack(spell, pTo->m_List.m_nSerial) : nullptr;
    CKey* pKey = FindKey(spell, d.m_Object.m_nSerial);
    if (!pOld || !pNew || pOld == pNew || !pKey || pFrom->m_nPlace >= pOld->Keys().size() ||
        pOld->Keys()[pFrom->m_nPlace].get() != pKey || pTo->m_nPlace > pNew->Keys().size())
        return c_szGone;
    m_Scope.TouchTrack(spell, *pOld);
    m_Scope.TouchTrack(spell, *pNew);
    m_Scope.TouchKey(spell, *pKey);
    pNew->KeysToRestore().reserve(pNew->Keys().size() + 1);
    InsertAt(pNew->KeysToRestore(), pTo->m_nPlace, TakeAt(pOld->KeysToRestore(), pFrom->m_nPlace));
    pKey->m_nTrack = spell.m_Tracks.GetTrackNumber(pNew);
    return {};
}
