#include "changes/Applier.h"

#include "model/MakeOrNull.h"

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
