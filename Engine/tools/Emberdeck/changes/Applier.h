#pragma once

#include <new>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "changes/Apply.h"
#include "changes/Serials.h"
#include "changes/TakeBack.h"
#include "qsmemory.h"

// Does differences one after the other. Each function looks first, then makes what it needs and notes the way back,
// and changes the library last, which takes no memory any more: a difference is done as a whole or not at all.
class CApplier
{
public:
    CApplier(const CApplyTarget& target, CEditScope& scope) : m_Target(target), m_Scope(scope) {}

    // The first of the differences, with those behind it that are best done with it. Gives nothing, and how many
    // were done; or why it did none, and the place of the one at fault. Throws std::bad_alloc, having done none.
    std::string Do(std::span<const CDifference> rest, size_t& nDone);
    // All that was done. Takes no memory, and nothing is to be done behind it.
    void TakeBack() noexcept { m_TakeBack.Run(); }

private:
    using TWhy = std::string;
    using TRun = std::span<const CDifference>;

    struct CSpellIndex
    {
        std::unordered_map<uint64_t, CTrack*> m_Tracks;
        std::unordered_map<uint64_t, CKey*> m_Keys;
    };

    // The last thing before a change. What was made for it may lack a payload where memory was short.
    template <class TBack>
    TBack& Note(TBack back)
    {
        if (GetNumFailedAllocations() != m_nFailed)
            throw std::bad_alloc();
        return m_TakeBack.Note(std::move(back));
    }
    // A change by exchange, which is its own way back.
    template <class T>
    void Set(T& where, T value)
    {
        Note(CSetBack<T>{where, std::move(value)})();
    }
    template <class T>
    TWhy Reorder(COwned<T>& list, const CDifference& d);

    CSpellMgr& Mgr() const { return m_Target.m_Library.m_SpellMgr; }
    CSpell* FindSpell(uint64_t nSerial);
    CEffectPropertySet* FindPrefab(uint64_t nSerial);
    CSpellIndex& IndexOf(CSpell& spell);
    CTrack* FindTrack(CSpell& spell, uint64_t nSerial);
    CKey* FindKey(CSpell& spell, uint64_t nSerial);
    bool IsInUse(const CEffectPropertySet& prefab);

    TWhy DoOne(const CDifference& d);
    TWhy DoSpell(const CDifference& d);
    TWhy DoPrefab(const CDifference& d);
    TWhy DropPrefab(const CSetImage& old, uint32_t nPlace, CEffectPropertySet* pPrefab);
    TWhy DoInSpell(const CDifference& d);
    TWhy DoTrack(const CDifference& d, CSpell& spell);
    TWhy DoTrackOrder(const CDifference& d, CSpell& spell);
    TWhy DoKeys(TRun run, size_t& nFault);
    TWhy DropKeys(TRun run, CSpell& spell, CTrack& track, size_t& nFault);
    TWhy BearKeys(TRun run, CSpell& spell, CTrack& track, size_t& nFault);
    TWhy DoKeyTrack(const CDifference& d, CSpell& spell);
    TWhy DoHead(const CDifference& d, CSpell& spell);
    TWhy DoKeyField(const CDifference& d, CSpell& spell, CKey& key);
    TWhy DoKeyLink(const CDifference& d, CKey& key);
    TWhy DoSetField(const CDifference& d, CEffectPropertySet& set);
    TWhy DoValue(const CDifference& d, CEffectPropertySet& set);
    TWhy DoItem(const CDifference& d);
    TWhy DropItem(const CDifference& d, const CItemImage& old);
    TWhy DoItemOrder(const CDifference& d);
    TWhy DoItemText(const CDifference& d);
    HLibraryItem ItemBefore(const CDifference& d);

    TWhy FillSet(CEffectPropertySet& set, const CSetImage& image);
    TWhy MakeKey(const CKeyImage& image, std::unique_ptr<CKey>& pKey);
    TWhy MakeTrack(const CTrackImage& image, std::unique_ptr<CTrack>& pTrack);
    static std::optional<uint32_t> SlotOf(const CEffectPropertySet& set, uint32_t nSlot,
                                          const CTypeImage::CProp& prop, const CEffectModule& module);
    static CPropKeyList ListOf(std::vector<CPointImage> points);

    const CApplyTarget& m_Target;
    CEditScope& m_Scope;
    CTakeBack m_TakeBack;
    uint64_t m_nFailed = 0; // allocations, when the present difference began
    CImageMaker m_Maker;
    // By serial. What a difference has entered that was not done in the end stays: nothing is done behind it.
    std::unordered_map<uint64_t, CSpell*> m_Spells;
    std::unordered_map<uint64_t, CEffectPropertySet*> m_Prefabs;
    bool m_bIndexed = false;
    std::unordered_map<const CSpell*, CSpellIndex> m_Indexes;
    // How many keys and prefabs stand on a prefab; nothing: not known.
    std::optional<std::unordered_map<const CEffectPropertySet*, size_t>> m_Users;
    // The item that came last, to which the next one is most often near.
    struct CLastItem
    {
        ETreeSide m_eSide = ETreeSide::eEffects;
        HLibraryItem m_hParent, m_hItem;
        uint32_t m_nPlace = 0;
    };
    std::optional<CLastItem> m_LastItem;
};

// What it tells, and what its parts share.
inline constexpr const char* c_szGone = "it isn't there";
inline constexpr const char* c_szThere = "it is there already";
inline constexpr const char* c_szHasItem = "an item stands for it";
inline constexpr const char* c_szOther = "something else is there";
inline constexpr const char* c_szNoType = "the plug-in has no such type or property";

// The content of its object that a difference holds on one side; null for none.
template <class TNode>
const TNode* NodeOf(const CDifference& d, const CChangeValue& value)
{
    const auto* p = std::get_if<std::shared_ptr<const TNode>>(&value);
    return p && *p && (*p)->m_nSerial == d.m_Object.m_nSerial ? p->get() : nullptr;
}

// Puts a range of owned objects into another order.
template <class T>
CApplier::TWhy CApplier::Reorder(COwned<T>& list, const CDifference& d)
{
    const auto* pBefore = std::get_if<std::vector<CChangeRef>>(&d.m_Before);
    const auto* pAfter = std::get_if<std::vector<CChangeRef>>(&d.m_After);
    const size_t nFirst = d.m_Place.m_nPlace;
    if (!pBefore || !pAfter || pBefore->size() != pAfter->size() || nFirst > list.size() ||
        pBefore->size() > list.size() - nFirst)
        return c_szOther;
    const size_t nCount = pBefore->size();
    std::unordered_map<uint64_t, size_t> places;
    for (size_t i = 0; i < nCount; ++i)
    {
        if (SerialOf(*list[nFirst + i]) != (*pBefore)[i].m_nSerial ||
            !places.emplace((*pBefore)[i].m_nSerial, i).second)
            return c_szOther;
    }
    CReorder<T> reorder{list, nFirst, {}, std::vector<size_t>(nCount), COwned<T>(nCount)};
    for (size_t i = 0; i < nCount; ++i)
    {
        const auto found = places.find((*pAfter)[i].m_nSerial);
        if (found == places.end())
            return c_szOther;
        reorder.m_Order.push_back(found->second);
        reorder.m_Back[found->second] = i;
        places.erase(found); // each once
    }
    Note(std::move(reorder)).Do();
    return {};
}

// Compares and sets a field that a difference has as one type.
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
