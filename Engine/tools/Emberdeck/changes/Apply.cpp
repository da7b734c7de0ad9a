#include "changes/Apply.h"

#include <algorithm>
#include <unordered_map>

#include "model/MakeOrNull.h"
#include "qsnumber.h"

bool IsSameWritten(const CPointImage& left, const CPointImage& right, uint32_t eType)
{
    if (IsSamePoint(left, right))
        return true;
    const auto same = [](float a, float b)
    { return QSFixedText(QSNearestFloat(a), 6) == QSFixedText(QSNearestFloat(b), 6); };
    if (!same(left.m_fTime, right.m_fTime))
        return false;
    const CPropData& a = left.m_Data;
    const CPropData& b = right.m_Data;
    if (IsTextKind(eType))
        return a.GetText() == b.GetText();
    if (eType == ePropType_Float)
        return same(a.GetFloat(), b.GetFloat());
    if (eType == ePropType_Vector)
        return same(a.GetVector().x, b.GetVector().x) && same(a.GetVector().y, b.GetVector().y) &&
               same(a.GetVector().z, b.GetVector().z);
    return a.GetInt() == b.GetInt(); // of a colour the word; None and UI have no other form
}

namespace
{

// The slot of the same property; null: empty. Another plug-in may have it at another place.
const CSetImage::CSlot* FindLike(const CSetImage& set, const CTypeImage::CProp& prop, uint32_t nSlot)
{
    const auto isIt = [&](const CSetImage::CSlot& slot)
    { return set.m_pType->m_Props[slot.m_nSlot] == prop; };
    const CSetImage::CSlot* pSlot = set.FindSlot(nSlot);
    if (pSlot && isIt(*pSlot))
        return pSlot;
    const auto found = std::find_if(set.m_Slots.begin(), set.m_Slots.end(), isIt);
    return found != set.m_Slots.end() ? &*found : nullptr;
}

// Whether a set is, in a file, what a difference has of it.
bool IsSameContent(const CSetImage& left, const CSetImage& right)
{
    if (left.m_sName != right.m_sName || left.m_nParent != right.m_nParent ||
        left.m_Slots.size() != right.m_Slots.size() || !left.m_pType || !right.m_pType ||
        left.m_pType->m_sName != right.m_pType->m_sName)
        return false;
    for (const CSetImage::CSlot& a : left.m_Slots)
    {
        const CTypeImage::CProp& prop = left.m_pType->m_Props[a.m_nSlot];
        const CSetImage::CSlot* pB = FindLike(right, prop, a.m_nSlot);
        if (!pB || a.m_nCount != pB->m_nCount)
            return false;
        for (uint32_t k = 0; k < a.m_nCount; ++k)
        {
            if (!IsSameWritten(left.m_Points[a.m_nFirst + k], right.m_Points[pB->m_nFirst + k], prop.m_eType))
                return false;
        }
    }
    return true;
}

bool IsSameContent(const CKeyImage& left, const CKeyImage& right)
{
    return left.m_nKeyID == right.m_nKeyID && left.m_nStartTime == right.m_nStartTime &&
           left.m_nEndTime == right.m_nEndTime && left.m_bMotionLinked == right.m_bMotionLinked &&
           left.m_nMotionLinkID == right.m_nMotionLinkID &&
           IsSameContent(static_cast<const CSetImage&>(left), static_cast<const CSetImage&>(right));
}

bool IsSameContent(const CTrackImage& left, const CTrackImage& right)
{
    return std::equal(left.m_Keys.begin(), left.m_Keys.end(), right.m_Keys.begin(), right.m_Keys.end(),
                      [](const auto& a, const auto& b)
                      { return a->m_nSerial == b->m_nSerial && IsSameContent(*a, *b); });
}

bool IsSameContent(const CSpellImage& left, const CSpellImage& right)
{
    return left.m_sName == right.m_sName && left.m_nPhaseLength == right.m_nPhaseLength &&
           std::equal(left.m_Tracks.begin(), left.m_Tracks.end(), right.m_Tracks.begin(),
                      right.m_Tracks.end(),
                      [](const auto& a, const auto& b)
                      { return a->m_nSerial == b->m_nSerial && IsSameContent(*a, *b); });
}

// Does differences one by one. Each function gives why it didn't, or nothing.
class CApplier
{
public:
    CApplier(const CApplyTarget& target, CEditScope& scope) : m_Target(target), m_Scope(scope) {}

    std::string Do(const CDifference& d);

private:
    using TWhy = std::string;

    struct CSpellIndex
    {
        std::unordered_map<uint64_t, CTrack*> m_Tracks;
        std::unordered_map<uint64_t, CKey*> m_Keys;
    };

    CSpellMgr& Mgr() const { return m_Target.m_Library.m_SpellMgr; }
    CSpell* FindSpell(uint64_t nSerial);
    CEffectPropertySet* FindPrefab(uint64_t nSerial);
    CSpellIndex& IndexOf(CSpell& spell);
    CTrack* FindTrack(CSpell& spell, uint64_t nSerial);
    CKey* FindKey(CSpell& spell, uint64_t nSerial);
    static bool IsInUse(const CTrackImage& track, CSpellIndex& index);
    void ForgetIndex(const CSpell& spell) { m_Indexes.erase(&spell); }

    TWhy DoSpell(const CDifference& d);
    TWhy DoPrefab(const CDifference& d);
    TWhy DoTrack(const CDifference& d, CSpell& spell);
    TWhy DoKey(const CDifference& d, CSpell& spell);
    TWhy DoKeyTrack(const CDifference& d, CSpell& spell);
    TWhy DoHead(const CDifference& d, CSpell& spell);
    TWhy DoKeyField(const CDifference& d, CSpell& spell, CKey& key);
    TWhy DoSetField(const CDifference& d, CEffectPropertySet& set);
    TWhy DoValue(const CDifference& d, CEffectPropertySet& set);
    TWhy DoItem(const CDifference& d);
    TWhy DoItemOrder(const CDifference& d);
    TWhy DoItemText(const CDifference& d);
    TWhy DoInSpell(const CDifference& d);

    TWhy FillSet(CEffectPropertySet& set, const CSetImage& image);
    TWhy MakeKey(const CKeyImage& image, std::unique_ptr<CKey>& pKey);
    TWhy MakeTrack(const CTrackImage& image, std::unique_ptr<CTrack>& pTrack);
    static std::optional<uint32_t> SlotOf(const CEffectPropertySet& set, uint32_t nSlot,
                                          const CTypeImage::CProp& prop, const CEffectModule& module);
    static void SetPoints(CEffectProperty& prop, std::vector<CPointImage> points);

    const CApplyTarget& m_Target;
    CEditScope& m_Scope;
    CImageMaker m_Maker;
    std::unordered_map<uint64_t, CSpell*> m_Spells;
    std::unordered_map<uint64_t, CEffectPropertySet*> m_Prefabs;
    bool m_bIndexed = false;
    std::unordered_map<const CSpell*, CSpellIndex> m_Indexes;
};

constexpr const char* c_szGone = "it isn't there";
constexpr const char* c_szThere = "it is there already";
constexpr const char* c_szHasItem = "an item stands for it";
constexpr const char* c_szOther = "something else is there";
constexpr const char* c_szNoType = "the plug-in has no such type or property";
constexpr const char* c_szNoMemory = "out of memory";

// The content of its object that a difference holds on one side; null for none.
template <class TNode>
const TNode* NodeOf(const CDifference& d, const CChangeValue& value)
{
    const auto* p = std::get_if<std::shared_ptr<const TNode>>(&value);
    return p && *p && (*p)->m_nSerial == d.m_Object.m_nSerial ? p->get() : nullptr;
}

template <class TList, class TSerial>
bool IsAt(const TList& list, uint32_t nPlace, uint64_t nSerial, const TSerial& serialOf)
{
    return nPlace < list.size() && serialOf(*list[nPlace]) == nSerial;
}

uint64_t SerialOf(const CSpell& spell)
{
    return spell.m_nSerial;
}
uint64_t SerialOf(const CEffectPropertySet& set)
{
    return set.m_Serial.Get();
}
uint64_t SerialOf(const CTrack& track)
{
    return track.m_Serial.Get();
}

// Puts a range of owned objects into another order. False: it isn't in the order that is expected.
template <class T>
bool Reorder(std::vector<std::unique_ptr<T>>& list, const CDifference& d)
{
    const auto* pBefore = std::get_if<std::vector<CChangeRef>>(&d.m_Before);
    const auto* pAfter = std::get_if<std::vector<CChangeRef>>(&d.m_After);
    const size_t nFirst = d.m_Place.m_nPlace;
    if (!pBefore || !pAfter || pBefore->size() != pAfter->size() || nFirst > list.size() ||
        pBefore->size() > list.size() - nFirst)
        return false;
    std::unordered_map<uint64_t, size_t> places;
    for (size_t i = 0; i < pBefore->size(); ++i)
    {
        if (SerialOf(*list[nFirst + i]) != (*pBefore)[i].m_nSerial ||
            !places.emplace((*pBefore)[i].m_nSerial, nFirst + i).second)
            return false;
    }
    std::vector<size_t> order;
    for (const CChangeRef& ref : *pAfter)
    {
        const auto found = places.find(ref.m_nSerial);
        if (found == places.end())
            return false;
        order.push_back(found->second);
        places.erase(found); // each once
    }
    std::vector<std::unique_ptr<T>> moved;
    moved.reserve(order.size());
    for (const size_t nPlace : order)
        moved.push_back(std::move(list[nPlace]));
    std::move(moved.begin(), moved.end(), list.begin() + static_cast<std::ptrdiff_t>(nFirst));
    return true;
}

template <class T>
void InsertAt(std::vector<std::unique_ptr<T>>& list, uint32_t nPlace, std::unique_ptr<T> pObject)
{
    list.insert(list.begin() + nPlace, std::move(pObject));
}

template <class T>
std::unique_ptr<T> TakeAt(std::vector<std::unique_ptr<T>>& list, uint32_t nPlace)
{
    std::unique_ptr<T> pObject = std::move(list[nPlace]);
    list.erase(list.begin() + nPlace);
    return pObject;
}

// Compares and sets a field that a difference has as one type. Empty: done.
template <class TValue, class TSet>
std::string SetField(const CDifference& d, const TValue& now, const TSet& set)
{
    const auto* pBefore = std::get_if<TValue>(&d.m_Before);
    const auto* pAfter = std::get_if<TValue>(&d.m_After);
    if (!pBefore || !pAfter || now != *pBefore)
        return c_szOther;
    set(*pAfter);
    return {};
}

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

// The counter never goes back: an id that has come is above it no more.
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

CApplier::TWhy CApplier::DoHead(const CDifference& d, CSpell& spell)
{
    m_Scope.TouchHead(spell);
    if (d.m_eKind == EDifference::eEffectName)
        return SetField<std::string>(d, std::string(spell.m_szName),
                                     [&](const std::string& s) { spell.SetName(s); });
    return SetField<int64_t>(d, spell.m_Tracks.m_nPhaseLength,
                             [&](int64_t n) { spell.m_Tracks.m_nPhaseLength = static_cast<int32_t>(n); });
}

CApplier::TWhy CApplier::DoKeyField(const CDifference& d, CSpell& spell, CKey& key)
{
    m_Scope.TouchKey(spell, key);
    switch (d.m_eKind)
    {
    case EDifference::eKeyID:
        return SetField<int64_t>(d, key.m_nKeyID,
                                 [&](int64_t n)
                                 {
                                     key.m_nKeyID = static_cast<uint32_t>(n);
                                     RaiseCounter(spell.m_Tracks, key.m_nKeyID);
                                 });
    case EDifference::eKeyStart:
        return SetField<int64_t>(d, key.m_nStartTime,
                                 [&](int64_t n) { key.m_nStartTime = static_cast<int32_t>(n); });
    case EDifference::eKeyEnd:
        return SetField<int64_t>(d, key.m_nEndTime,
                                 [&](int64_t n) { key.m_nEndTime = static_cast<int32_t>(n); });
    case EDifference::eKeyLink:
    {
        const CChangeValue now =
            key.m_bMotionLinked ? CChangeValue(int64_t(key.m_nMotionLinkID)) : CChangeValue();
        const auto* pBefore = std::get_if<int64_t>(&d.m_Before);
        const auto* pNow = std::get_if<int64_t>(&now);
        if (!pBefore != !pNow || (pBefore && *pBefore != *pNow))
            return c_szOther;
        if (const auto* pAfter = std::get_if<int64_t>(&d.m_After))
            key.Link(static_cast<uint32_t>(*pAfter));
        else
            key.Unlink();
        return {};
    }
    default:
        return DoSetField(d, key);
    }
}

CApplier::TWhy CApplier::DoSetField(const CDifference& d, CEffectPropertySet& set)
{
    if (d.m_eKind == EDifference::eSetName)
        return SetField<std::string>(d, set.m_sName, [&](const std::string& s) { set.m_sName = s; });
    if (d.m_eKind == EDifference::eSetValue)
        return DoValue(d, set);
    const auto* pBefore = std::get_if<CChangeRef>(&d.m_Before);
    const auto* pAfter = std::get_if<CChangeRef>(&d.m_After);
    const uint64_t nNow = set.GetParent() ? SerialOf(*set.GetParent()) : 0;
    if (nNow != (pBefore ? pBefore->m_nSerial : 0))
        return c_szOther;
    CEffectPropertySet* pParent = pAfter ? FindPrefab(pAfter->m_nSerial) : nullptr;
    if (pAfter && !pParent)
        return "the prefab isn't there";
    return set.SetParent(pParent) ? TWhy() : TWhy("the prefab is of another type");
}

CApplier::TWhy CApplier::DoValue(const CDifference& d, CEffectPropertySet& set)
{
    const auto nSlot = SlotOf(set, d.m_nSlot, {d.m_sProperty, d.m_eType}, m_Target.m_Module);
    if (!nSlot)
        return c_szNoType;
    std::unique_ptr<CEffectProperty>& pProp = set.m_Props[*nSlot];
    const auto* pBefore = std::get_if<CChangePoints>(&d.m_Before);
    const auto* pAfter = std::get_if<CChangePoints>(&d.m_After);
    if (!pBefore != !pProp)
        return c_szOther;
    std::vector<CPointImage> points;
    for (uint32_t i = 0; pProp && i < pProp->GetNumKeys(); ++i)
    {
        const CPropKey& key = *std::as_const(*pProp).GetKey(i);
        points.push_back({key.m_fTime, key.m_Data});
    }
    if (pBefore)
    {
        const auto sameWritten = [&](const CPointImage& a, const CPointImage& b)
        { return IsSameWritten(a, b, d.m_eType); };
        const size_t nFirst = pBefore->m_nFirst;
        const size_t nCount = pBefore->m_Points.size();
        const bool bWhole = !pAfter && (nFirst != 0 || nCount != points.size());
        if (bWhole || nFirst > points.size() || nCount > points.size() - nFirst ||
            (pAfter && pAfter->m_nFirst != nFirst) ||
            !std::equal(pBefore->m_Points.begin(), pBefore->m_Points.end(),
                        points.begin() + static_cast<std::ptrdiff_t>(nFirst), sameWritten))
            return c_szOther;
        const auto first = points.begin() + static_cast<std::ptrdiff_t>(nFirst);
        points.erase(first, first + static_cast<std::ptrdiff_t>(nCount));
    }
    if (!pAfter)
    {
        pProp.reset();
        return {};
    }
    if (pAfter->m_nFirst > points.size())
        return c_szOther;
    points.insert(points.begin() + pAfter->m_nFirst, pAfter->m_Points.begin(), pAfter->m_Points.end());
    if (!pProp)
        pProp = std::make_unique<CEffectProperty>(&set.m_pTypeDesc->m_pProps[*nSlot]);
    SetPoints(*pProp, std::move(points));
    return {};
}

CApplier::TWhy CApplier::DoItem(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    if (const auto* pOld = std::get_if<CItemImage>(&d.m_Before))
    {
        if (!tree.IsAlive(hItem) || tree.GetParentItem(hItem) != hParent)
            return c_szGone;
        if (tree.HasChildren(hItem) || CImageMaker::MakeItem(m_Target.m_Library, d.m_eSide, hItem) != *pOld)
            return c_szOther;
        m_Scope.TouchGroup(d.m_eSide, hParent);
        tree.DeleteItem(hItem);
        return {};
    }
    const auto* pNew = std::get_if<CItemImage>(&d.m_After);
    if (!pNew || tree.IsAlive(hItem) || (hParent && !tree.IsAlive(hParent)))
        return c_szThere;
    const bool bEffects = d.m_eSide == ETreeSide::eEffects;
    CSpell* pSpell = bEffects && pNew->m_nObject ? FindSpell(pNew->m_nObject) : nullptr;
    CEffectPropertySet* pPrefab = !bEffects && pNew->m_nObject ? FindPrefab(pNew->m_nObject) : nullptr;
    if (pNew->m_nObject && !pSpell && !pPrefab)
        return "what it stands for isn't there";
    HLibraryItem hPrev;
    HLibraryItem h = hParent ? tree.GetChildItem(hParent) : tree.GetRootItem();
    for (uint32_t i = 0; i < d.m_Place.m_nPlace && h; ++i, h = tree.GetNextSiblingItem(h))
        hPrev = h;
    m_Scope.TouchGroup(d.m_eSide, hParent);
    const auto restore = [&](auto& side, auto* pObject)
    {
        return side.RestoreItem(hItem, pNew->m_sText, pNew->m_nImage, pNew->m_nSelectedImage, hParent, hPrev,
                                pObject);
    };
    const bool bRestored = bEffects ? restore(m_Target.m_Library.m_EffectTree, pSpell)
                                    : restore(m_Target.m_Library.m_PrefabTree, pPrefab);
    return bRestored ? TWhy() : TWhy("its handle isn't free");
}

std::vector<uint64_t> SortedNumbers(const std::vector<CChangeRef>& refs)
{
    std::vector<uint64_t> numbers;
    numbers.reserve(refs.size());
    for (const CChangeRef& ref : refs)
        numbers.push_back(ref.m_nSerial);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

CApplier::TWhy CApplier::DoItemOrder(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    const auto* pBefore = std::get_if<std::vector<CChangeRef>>(&d.m_Before);
    const auto* pAfter = std::get_if<std::vector<CChangeRef>>(&d.m_After);
    if (!tree.IsAlive(hParent) || !pBefore || !pAfter || SortedNumbers(*pBefore) != SortedNumbers(*pAfter))
        return c_szGone;
    std::unordered_map<uint32_t, size_t> places;
    size_t nChild = 0;
    for (HLibraryItem h = tree.GetChildItem(hParent); h; h = tree.GetNextSiblingItem(h), ++nChild)
    {
        const size_t nFrom = nChild - d.m_Place.m_nPlace; // wraps before the range
        if (nFrom < pBefore->size() && (*pBefore)[nFrom].m_nSerial != h.m_nID)
            return c_szOther;
        places.emplace(h.m_nID, nChild);
    }
    if (d.m_Place.m_nPlace > nChild || pBefore->size() > nChild - d.m_Place.m_nPlace)
        return c_szOther;
    for (size_t i = 0; i < pAfter->size(); ++i)
    {
        const auto found = places.find(static_cast<uint32_t>((*pAfter)[i].m_nSerial));
        if (found == places.end())
            return c_szOther;
        found->second = d.m_Place.m_nPlace + i;
    }
    m_Scope.TouchGroup(d.m_eSide, hParent);
    tree.SortChildren(hParent, [&](HLibraryItem hLeft, HLibraryItem hRight)
                      { return places[hLeft.m_nID] < places[hRight.m_nID] ? -1 : 1; });
    return {};
}

CApplier::TWhy CApplier::DoItemText(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    if (!tree.IsAlive(hItem))
        return c_szGone;
    m_Scope.TouchGroup(d.m_eSide, tree.GetParentItem(hItem));
    return SetField<std::string>(d, tree.GetItemText(hItem),
                                 [&](const std::string& s) { tree.SetItemText(hItem, s); });
}

CApplier::TWhy CApplier::DoInSpell(const CDifference& d)
{
    CSpell* pSpell = FindSpell(d.m_Effect.m_nSerial);
    if (!pSpell)
        return "the effect isn't there";
    switch (d.m_eKind)
    {
    case EDifference::eTrack:
        return DoTrack(d, *pSpell);
    case EDifference::eTrackOrder:
    {
        m_Scope.TouchTracks(*pSpell);
        const bool bDone = Reorder(pSpell->m_Tracks.TracksToRestore(), d);
        pSpell->m_Tracks.Renumber();
        return bDone ? TWhy() : TWhy(c_szOther);
    }
    case EDifference::eKey:
        return DoKey(d, *pSpell);
    case EDifference::eKeyTrack:
        return DoKeyTrack(d, *pSpell);
    case EDifference::eKeyOrder:
    {
        CTrack* pTrack = FindTrack(*pSpell, d.m_Place.m_List.m_nSerial);
        if (!pTrack)
            return c_szGone;
        m_Scope.TouchTrack(*pSpell, *pTrack);
        return Reorder(pTrack->KeysToRestore(), d) ? TWhy() : TWhy(c_szOther);
    }
    default:
    {
        CKey* pKey = FindKey(*pSpell, d.m_Object.m_nSerial);
        return pKey ? DoKeyField(d, *pSpell, *pKey) : TWhy(c_szGone);
    }
    }
}

std::string CApplier::Do(const CDifference& d)
{
    switch (d.m_eKind)
    {
    case EDifference::eEffect:
        return DoSpell(d);
    case EDifference::eEffectOrder:
        m_Scope.TouchSpellList();
        return Reorder(Mgr().SpellsToRestore(), d) ? TWhy() : TWhy(c_szOther);
    case EDifference::eEffectName:
    case EDifference::eEffectLength:
    {
        CSpell* pSpell = FindSpell(d.m_Object.m_nSerial);
        return pSpell ? DoHead(d, *pSpell) : TWhy(c_szGone);
    }
    case EDifference::ePrefab:
        return DoPrefab(d);
    case EDifference::ePrefabOrder:
        m_Scope.TouchPrefabList();
        return Reorder(Mgr().PrefabsToRestore(), d) ? TWhy() : TWhy(c_szOther);
    case EDifference::eItem:
        return DoItem(d);
    case EDifference::eItemOrder:
        return DoItemOrder(d);
    case EDifference::eItemText:
        return DoItemText(d);
    default:
        break;
    }
    if (d.m_Effect.m_nSerial)
        return DoInSpell(d);
    CEffectPropertySet* pPrefab = FindPrefab(d.m_Object.m_nSerial);
    if (!pPrefab || !(d.m_eKind == EDifference::eSetName || d.m_eKind == EDifference::eSetParent ||
                      d.m_eKind == EDifference::eSetValue))
        return c_szGone;
    m_Scope.TouchPrefab(pPrefab);
    return DoSetField(d, *pPrefab);
}

} // namespace

std::optional<CConflict> Apply(const CLibraryChange& change, const CApplyTarget& target,
                               const std::string& sLabel)
{
    std::optional<CConflict> conflict;
    CEditScope scope(target.m_Edits, sLabel);
    CApplier applier(target, scope);
    for (size_t i = 0; i < change.m_Differences.size() && !conflict; ++i)
    {
        std::string sWhy = c_szNoMemory;
        TryAllocating([&] { sWhy = applier.Do(change.m_Differences[i]); });
        if (!sWhy.empty())
            conflict = CConflict{i, Tell(change.m_Differences[i]) + ": " + sWhy};
    }
    if (!conflict)
        return conflict;
    CLibraryChange done;
    done.m_Differences.assign(change.m_Differences.begin(),
                              change.m_Differences.begin() +
                                  static_cast<std::ptrdiff_t>(conflict->m_nDifference));
    for (const CDifference& difference : done.TurnedRound().m_Differences)
        TryAllocating([&] { applier.Do(difference); });
    return conflict;
}
