#include "changes/Applier.h"
#include "changes/SameContent.h"

// Tracks and keys that come, go and move.

namespace
{

template <class TBack>
struct CThenRenumber
{
    TBack m_Back;
    CTrackList& m_Tracks;
    void operator()()
    {
        m_Back();
        m_Tracks.Renumber();
    }
};

// A key from one place to another, which has room, and back.
struct CMoveKey
{
    CTrack& m_From;
    CTrack& m_To;
    uint32_t m_nFrom;
    uint32_t m_nTo;
    uint32_t m_nFromTrack; // the number

    static void Move(COwned<CKey>& from, uint32_t nFrom, COwned<CKey>& to, uint32_t nTo, uint32_t nTrack)
    {
        std::unique_ptr<CKey> pKey = std::move(from[nFrom]);
        from.erase(from.begin() + nFrom);
        pKey->m_nTrack = nTrack;
        to.insert(to.begin() + nTo, std::move(pKey));
    }
    void operator()() { Move(m_To.KeysToRestore(), m_nTo, m_From.KeysToRestore(), m_nFrom, m_nFromTrack); }
};

} // namespace

CApplier::TWhy CApplier::DoTrack(const CDifference& d, CSpell& spell)
{
    auto& tracks = spell.m_Tracks.TracksToRestore();
    const uint32_t nPlace = d.m_Place.m_nPlace;
    CTrack* pTrack = FindTrack(spell, d.m_Object.m_nSerial);
    CSpellIndex& index = IndexOf(spell);
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
        auto& back =
            Note(CThenRenumber<CPutBack<CTrack>>{{tracks, {nPlace}, COwned<CTrack>(1)}, spell.m_Tracks})
                .m_Back;
        for (const auto& pKey : pTrack->Keys())
            index.m_Keys.erase(SerialOf(*pKey));
        index.m_Tracks.erase(SerialOf(*pTrack));
        TakeOut(tracks, back.m_Places, back.m_Taken);
        spell.m_Tracks.Renumber();
        return {};
    }
    const CTrackImage* pNew = NodeOf<CTrackImage>(d, d.m_After);
    if (!pNew || pTrack || nPlace > tracks.size() || tracks.size() >= CTrackList::c_nMaxTracks)
        return c_szThere;
    COwned<CTrack> made(1);
    if (const TWhy sWhy = MakeTrack(*pNew, made[0]); !sWhy.empty())
        return sWhy;
    bool bFree = index.m_Tracks.emplace(pNew->m_nSerial, made[0].get()).second;
    for (const auto& pKey : made[0]->Keys())
        bFree = index.m_Keys.emplace(SerialOf(*pKey), pKey.get()).second && bFree;
    if (!bFree)
        return c_szThere;
    m_Scope.TouchTracks(spell);
    ReserveMore(tracks, 1);
    auto& back =
        Note(CThenRenumber<CTakeOutAgain<CTrack>>{{tracks, {nPlace}, COwned<CTrack>(1)}, spell.m_Tracks})
            .m_Back;
    PutIn(tracks, back.m_Places, made);
    for (const auto& pKey : pNew->m_Keys)
        RaiseCounter(spell.m_Tracks, pKey->m_nKeyID);
    spell.m_Tracks.Renumber();
    return {};
}

CApplier::TWhy CApplier::DropKeys(TRun run, CSpell& spell, CTrack& track, size_t& nFault)
{
    auto& keys = track.KeysToRestore();
    CPutBack<CKey> drop{keys, {}, COwned<CKey>(run.size())};
    for (nFault = 0; nFault < run.size(); ++nFault)
    {
        const CDifference& d = run[nFault];
        const CKeyImage* pOld = NodeOf<CKeyImage>(d, d.m_Before);
        const CKey* pKey = FindKey(spell, d.m_Object.m_nSerial);
        const uint32_t nPlace = d.m_Place.m_nPlace;
        if (!pOld || !pKey || nPlace >= keys.size() || keys[nPlace].get() != pKey)
            return c_szGone;
        if (!IsSameContent(*pOld, *m_Maker.MakeKey(*pKey)))
            return c_szOther;
        drop.m_Places.push_back(nPlace);
    }
    m_Scope.TouchTrack(spell, track);
    for (const uint32_t nPlace : drop.m_Places)
        m_Scope.TouchKey(spell, *keys[nPlace]);
    std::reverse(drop.m_Places.begin(), drop.m_Places.end());
    auto& back = Note(std::move(drop));
    for (const CDifference& d : run)
        IndexOf(spell).m_Keys.erase(d.m_Object.m_nSerial);
    TakeOut(keys, back.m_Places, back.m_Taken);
    return {};
}

CApplier::TWhy CApplier::BearKeys(TRun run, CSpell& spell, CTrack& track, size_t& nFault)
{
    auto& keys = track.KeysToRestore();
    CTakeOutAgain<CKey> bear{keys, {}, COwned<CKey>(run.size())};
    COwned<CKey> made(run.size());
    const uint32_t nTrack = spell.m_Tracks.GetTrackNumber(&track);
    for (nFault = 0; nFault < run.size(); ++nFault)
    {
        const CDifference& d = run[nFault];
        const CKeyImage* pNew = NodeOf<CKeyImage>(d, d.m_After);
        if (!pNew || d.m_Place.m_nPlace > keys.size() + nFault || FindKey(spell, pNew->m_nSerial))
            return c_szThere;
        if (const TWhy sWhy = MakeKey(*pNew, made[nFault]); !sWhy.empty())
            return sWhy;
        made[nFault]->m_nTrack = nTrack;
        IndexOf(spell).m_Keys[pNew->m_nSerial] = made[nFault].get();
        bear.m_Places.push_back(d.m_Place.m_nPlace);
    }
    m_Scope.TouchTrack(spell, track);
    ReserveMore(keys, run.size());
    auto& back = Note(std::move(bear));
    for (const auto& pKey : made)
        RaiseCounter(spell.m_Tracks, pKey->m_nKeyID);
    PutIn(keys, back.m_Places, made);
    return {};
}

CApplier::TWhy CApplier::DoKeys(TRun run, size_t& nFault)
{
    CSpell* pSpell = FindSpell(run[0].m_Effect.m_nSerial);
    CTrack* pTrack = pSpell ? FindTrack(*pSpell, run[0].m_Place.m_List.m_nSerial) : nullptr;
    if (!pTrack)
        return "its track isn't there";
    return std::holds_alternative<std::monostate>(run[0].m_Before) ? BearKeys(run, *pSpell, *pTrack, nFault)
                                                                   : DropKeys(run, *pSpell, *pTrack, nFault);
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
    ReserveMore(pNew->KeysToRestore(), 1);
    Note(CMoveKey{*pOld, *pNew, pFrom->m_nPlace, pTo->m_nPlace, pKey->m_nTrack});
    CMoveKey::Move(pOld->KeysToRestore(), pFrom->m_nPlace, pNew->KeysToRestore(), pTo->m_nPlace,
                   spell.m_Tracks.GetTrackNumber(pNew));
    return {};
}
