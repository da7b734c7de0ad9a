#include "changes/Applier.h"
#include "changes/SameContent.h"

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

CPropKeyList CApplier::ListOf(std::vector<CPointImage> points)
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
    return keys;
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
        pProp->SetKeys(ListOf({first, first + slot.m_nCount}));
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

void RaiseCounter(CTrackList& tracks, uint32_t nKeyID)
{
    if (nKeyID >= tracks.m_nNextKeyID)
        tracks.m_nNextKeyID = nKeyID + 1;
}

// Whether keys or prefabs stand on it.
bool CApplier::IsInUse(const CEffectPropertySet& prefab)
{
    if (!m_Users)
    {
        m_Users.emplace();
        Mgr().ForEachKey([this](CSpell&, CKey& key) { ++(*m_Users)[key.GetParent()]; });
        for (const auto& pPrefab : Mgr().Prefabs())
            ++(*m_Users)[pPrefab->GetParent()];
    }
    const auto found = m_Users->find(&prefab);
    return found != m_Users->end() && found->second > 0;
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
        auto& back = Note(CPutBack<CSpell>{spells, {nPlace}, COwned<CSpell>(1)});
        m_Spells.erase(nSerial);
        m_Indexes.erase(pSpell);
        TakeOut(spells, back.m_Places, back.m_Taken);
        return {};
    }
    const CSpellImage* pNew = NodeOf<CSpellImage>(d, d.m_After);
    if (!pNew || pSpell || nPlace > spells.size())
        return c_szThere;
    COwned<CSpell> made(1);
    made[0] = std::make_unique<CSpell>(nSerial);
    made[0]->SetName(pNew->m_sName);
    CTrackList& tracks = made[0]->m_Tracks;
    tracks.m_nPhaseLength = pNew->m_nPhaseLength;
    for (const auto& pTrackImage : pNew->m_Tracks)
    {
        std::unique_ptr<CTrack> pTrack;
        if (const TWhy sWhy = MakeTrack(*pTrackImage, pTrack); !sWhy.empty())
            return sWhy;
        tracks.TracksToRestore().push_back(std::move(pTrack));
        for (const auto& pKeyImage : pTrackImage->m_Keys)
            RaiseCounter(tracks, pKeyImage->m_nKeyID);
    }
    tracks.Renumber();
    const CSpellIndex& index = IndexOf(*made[0]);
    if (index.m_Tracks.size() != tracks.GetNumTracks() || index.m_Keys.size() != tracks.GetNumKeys())
        return c_szThere; // twice the same
    m_Scope.TouchSpellList();
    m_Spells[nSerial] = made[0].get();
    ReserveMore(spells, 1);
    auto& back = Note(CTakeOutAgain<CSpell>{spells, {nPlace}, COwned<CSpell>(1)});
    PutIn(spells, back.m_Places, made);
    return {};
}

CApplier::TWhy CApplier::DropPrefab(const CSetImage& old, uint32_t nPlace, CEffectPropertySet* pPrefab)
{
    auto& prefabs = Mgr().PrefabsToRestore();
    if (!pPrefab || nPlace >= prefabs.size() || prefabs[nPlace].get() != pPrefab)
        return c_szGone;
    if (!IsSameContent(old, *m_Maker.MakePrefab(*pPrefab)))
        return c_szOther;
    if (IsInUse(*pPrefab))
        return "others stand on it";
    if (m_Target.m_Library.m_PrefabTree.FindData(pPrefab))
        return c_szHasItem;
    m_Scope.TouchPrefabList();
    m_Scope.TouchPrefab(pPrefab);
    m_Target.m_Owner.OnReleasing(*pPrefab);
    auto& back = Note(CPutBack<CEffectPropertySet>{prefabs, {nPlace}, COwned<CEffectPropertySet>(1)});
    m_Prefabs.erase(old.m_nSerial);
    --(*m_Users)[pPrefab->GetParent()]; // known, since somebody looked
    TakeOut(prefabs, back.m_Places, back.m_Taken);
    return {};
}

CApplier::TWhy CApplier::DoPrefab(const CDifference& d)
{
    auto& prefabs = Mgr().PrefabsToRestore();
    const uint64_t nSerial = d.m_Object.m_nSerial;
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CEffectPropertySet* pPrefab = FindPrefab(nSerial);
    if (const CSetImage* pOld = NodeOf<CSetImage>(d, d.m_Before))
        return DropPrefab(*pOld, nPlace, pPrefab);
    const CSetImage* pNew = NodeOf<CSetImage>(d, d.m_After);
    if (!pNew || pPrefab || nPlace > prefabs.size())
        return c_szThere;
    const CEffectTypeDesc* pType =
        pNew->m_pType ? m_Target.m_Module.FindType(pNew->m_pType->m_sName.c_str()) : nullptr;
    if (!pType)
        return c_szNoType;
    COwned<CEffectPropertySet> made(1);
    made[0] = std::make_unique<CEffectPropertySet>(pType);
    if (const TWhy sWhy = FillSet(*made[0], *pNew); !sWhy.empty())
        return sWhy;
    m_Users.reset();
    m_Scope.TouchPrefabList();
    m_Prefabs[nSerial] = made[0].get();
    ReserveMore(prefabs, 1);
    auto& back = Note(CTakeOutAgain<CEffectPropertySet>{prefabs, {nPlace}, COwned<CEffectPropertySet>(1)});
    PutIn(prefabs, back.m_Places, made);
    return {};
}
