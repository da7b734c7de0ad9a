#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "changes/Apply.h"
#include "changes/Serials.h"

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

// What it tells, and what its parts share.
inline constexpr const char* c_szGone = "it isn't there";
inline constexpr const char* c_szThere = "it is there already";
inline constexpr const char* c_szHasItem = "an item stands for it";
inline constexpr const char* c_szOther = "something else is there";
inline constexpr const char* c_szNoType = "the plug-in has no such type or property";
inline constexpr const char* c_szNoMemory = "out of memory";

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

// The counter never goes back: an id that has come is above it no more.
void RaiseCounter(CTrackList& tracks, uint32_t nKeyID);
void RaiseCounter(CTrackList& tracks, const CTrackImage& track);
