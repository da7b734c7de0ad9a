#include "changes/Applier.h"

#include "model/MakeOrNull.h"

CApplier::TWhy CApplier::DoTrackOrder(const CDifference& d, CSpell& spell)
{
    struct CRenumber
    {
        CTrackList& m_Tracks;
        void operator()() { m_Tracks.Renumber(); }
    };
    m_Scope.TouchTracks(spell);
    Note(CRenumber{spell.m_Tracks}); // behind the order that is taken back
    const TWhy sWhy = Reorder(spell.m_Tracks.TracksToRestore(), d);
    spell.m_Tracks.Renumber();
    return sWhy;
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
        return DoTrackOrder(d, *pSpell);
    case EDifference::eKeyTrack:
        return DoKeyTrack(d, *pSpell);
    case EDifference::eKeyOrder:
    {
        CTrack* pTrack = FindTrack(*pSpell, d.m_Place.m_List.m_nSerial);
        if (!pTrack)
            return c_szGone;
        m_Scope.TouchTrack(*pSpell, *pTrack);
        return Reorder(pTrack->KeysToRestore(), d);
    }
    default:
    {
        CKey* pKey = FindKey(*pSpell, d.m_Object.m_nSerial);
        return pKey ? DoKeyField(d, *pSpell, *pKey) : TWhy(c_szGone);
    }
    }
}

CApplier::TWhy CApplier::DoOne(const CDifference& d)
{
    switch (d.m_eKind)
    {
    case EDifference::eEffect:
        return DoSpell(d);
    case EDifference::eEffectOrder:
        m_Scope.TouchSpellList();
        return Reorder(Mgr().SpellsToRestore(), d);
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
        return Reorder(Mgr().PrefabsToRestore(), d);
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

namespace
{

// Keys that come to one track, or go from it, each behind or before the one that was done last.
size_t LengthOfRun(std::span<const CDifference> rest)
{
    const CDifference& first = rest.front();
    const auto isGone = [](const CDifference& d)
    { return !std::holds_alternative<std::monostate>(d.m_Before); };
    size_t n = 1;
    for (; first.m_eKind == EDifference::eKey && n < rest.size(); ++n)
    {
        const CDifference& d = rest[n];
        const uint32_t nLast = rest[n - 1].m_Place.m_nPlace;
        if (d.m_eKind != first.m_eKind || isGone(d) != isGone(first) ||
            d.m_Effect.m_nSerial != first.m_Effect.m_nSerial ||
            d.m_Place.m_List.m_nSerial != first.m_Place.m_List.m_nSerial ||
            (isGone(d) ? d.m_Place.m_nPlace >= nLast : d.m_Place.m_nPlace <= nLast))
            break;
    }
    return n;
}

bool MayChangeParents(EDifference eKind)
{
    return eKind == EDifference::eEffect || eKind == EDifference::eTrack || eKind == EDifference::eKey ||
           eKind == EDifference::eSetParent;
}

} // namespace

std::string CApplier::Do(std::span<const CDifference> rest, size_t& nDone)
{
    m_nFailed = GetNumFailedAllocations();
    nDone = 0;
    const size_t nCount = LengthOfRun(rest);
    if (MayChangeParents(rest[0].m_eKind))
        m_Users.reset();
    const TWhy sWhy =
        rest[0].m_eKind == EDifference::eKey ? DoKeys(rest.first(nCount), nDone) : DoOne(rest[0]);
    if (sWhy.empty())
        nDone = nCount;
    return sWhy;
}

std::optional<CConflict> Apply(const CLibraryChange& change, const CApplyTarget& target,
                               const std::string& sLabel)
{
    CEditScope scope(target.m_Edits, sLabel);
    CApplier applier(target, scope);
    const std::span<const CDifference> all = change.m_Differences;
    for (size_t i = 0; i < all.size();)
    {
        const uint64_t nFailed = GetNumFailedAllocations();
        size_t nDone = 0;
        std::string sWhy;
        const bool bTried = TryAllocating([&] { sWhy = applier.Do(all.subspan(i), nDone); });
        if (bTried)
            i += nDone;
        if (bTried && sWhy.empty())
            continue;
        applier.TakeBack();
        CConflict conflict;
        conflict.m_nDifference = i;
        // What was looked at may lack a payload where memory was short, and seem to be another.
        conflict.m_bNoMemory = !bTried || GetNumFailedAllocations() != nFailed;
        TryAllocating(
            [&] { conflict.m_sWhy = Tell(all[i]) + ": " + (conflict.m_bNoMemory ? "out of memory" : sWhy); });
        return conflict;
    }
    return std::nullopt;
}
