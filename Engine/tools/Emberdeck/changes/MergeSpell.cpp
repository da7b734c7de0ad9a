#include "changes/MergeSpell.h"

#include <algorithm>

#include "changes/SameContent.h"

namespace
{

std::vector<CNumbered> TracksOf(const CSpellImage& spell)
{
    std::vector<CNumbered> tracks;
    for (const auto& pTrack : spell.m_Tracks)
        tracks.push_back({pTrack->m_nSerial, {}});
    return tracks;
}

template <class TCall>
void ForEachKey(const CSpellImage& spell, const TCall& call)
{
    for (const auto& pTrack : spell.m_Tracks)
    {
        for (const auto& pKey : pTrack->m_Keys)
            call(*pTrack, pKey);
    }
}

std::vector<CNumbered> KeysOf(const CSpellImage& spell)
{
    std::vector<CNumbered> keys;
    ForEachKey(spell,
               [&](const CTrackImage&, const auto& pKey) {
                   keys.push_back({pKey->m_nSerial, pKey->m_pType ? pKey->m_pType->m_sName : std::string()});
               });
    return keys;
}

} // namespace

CSpellMerge::CSpellMerge(const CThree<CSpellImage>& three,
                         const std::array<CSetsByNumber, c_nNumStates>& prefabs, CMergeNotes& notes)
    : m_Three(three),
      m_Prefabs(prefabs),
      m_Notes(notes),
      m_Effect{AnyOf(three)->m_nSerial, AnyOf(three)->m_sName}
{
}

// A track and a key that both sides made the same are one.
void CSpellMerge::Number()
{
    const CSpellImage& base = *m_Three[eState_Base];
    const CSpellImage& mine = *m_Three[eState_Mine];
    const CSpellImage& theirs = *m_Three[eState_Theirs];
    CNumbering keys;
    std::unordered_map<uint32_t, std::pair<uint64_t, const CKeyImage*>> mineByID; // with the track
    std::unordered_map<uint64_t, std::pair<uint64_t, const CKeyImage*>> theirsByNumber;
    ForEachKey(mine, [&](const CTrackImage& track, const auto& pKey)
               { mineByID.insert_or_assign(pKey->m_nKeyID, std::pair(track.m_nSerial, pKey.get())); });
    ForEachKey(theirs, [&](const CTrackImage& track, const auto& pKey)
               { theirsByNumber.emplace(pKey->m_nSerial, std::pair(track.m_nSerial, pKey.get())); });
    CNumbering tracks;
    const auto likeOf = [&](const CKeyImage& key) -> std::pair<uint64_t, const CKeyImage*>
    {
        const auto found = mineByID.find(key.m_nKeyID);
        return found != mineByID.end() && IsSameContent(*found->second.second, key)
                   ? found->second
                   : std::pair<uint64_t, const CKeyImage*>(0, nullptr);
    };
    std::unordered_map<uint64_t, const CTrackImage*> theirTracks;
    for (const auto& pTrack : theirs.m_Tracks)
        theirTracks.emplace(pTrack->m_nSerial, pTrack.get());
    tracks.Run(TracksOf(base), TracksOf(mine), TracksOf(theirs),
               [&](uint64_t nTrack)
               {
                   const CTrackImage& track = *theirTracks[nTrack];
                   const uint64_t nLike = track.m_Keys.empty() ? 0 : likeOf(*track.m_Keys.front()).first;
                   return tracks.IsNewInMine(nLike) ? nLike : 0;
               });
    keys.Run(KeysOf(base), KeysOf(mine), KeysOf(theirs),
             [&](uint64_t nKey)
             {
                 const auto& [nTrack, pKey] = theirsByNumber[nKey];
                 const auto [nLikeTrack, pLike] = likeOf(*pKey);
                 return pLike && nLikeTrack == NumberIn(tracks.Theirs(), nTrack) ? pLike->m_nSerial : 0;
             });
    FillState(eState_Base, tracks.Base(), keys.Base());
    FillState(eState_Mine, {}, {});
    FillState(eState_Theirs, tracks.Theirs(), keys.Theirs());
}

void CSpellMerge::FillState(size_t nState, const CNumberMap& tracks, const CNumberMap& keys)
{
    CState& state = m_States[nState];
    for (const auto& pTrack : m_Three[nState]->m_Tracks)
        state.m_TrackList.push_back(NumberIn(tracks, pTrack->m_nSerial));
    ForEachKey(*m_Three[nState],
               [&](const CTrackImage& track, const std::shared_ptr<const CKeyImage>& pKey)
               {
                   const uint64_t nKey = NumberIn(keys, pKey->m_nSerial);
                   const CMergePlace place = {NumberIn(tracks, track.m_nSerial), pKey->m_nStartTime,
                                              pKey->m_nEndTime};
                   if (!state.m_Keys.emplace(nKey, CKeyOf{pKey, place}).second)
                       return;
                   state.m_KeyList.push_back(nKey);
                   state.m_TrackKeys[place.m_nTrack].push_back(nKey);
                   state.m_ByID.emplace(pKey->m_nKeyID, nKey);
               });
}

CMergeLink CSpellMerge::LinkOf(size_t nState, const CKeyImage& key) const
{
    const auto& byID = m_States[nState].m_ByID;
    const auto found = key.m_bMotionLinked ? byID.find(key.m_nMotionLinkID) : byID.end();
    return {key.m_bMotionLinked, key.m_nMotionLinkID, found != byID.end() ? found->second : 0};
}

CThree<CKeyImage> CSpellMerge::StatesOf(uint64_t nKey) const
{
    CThree<CKeyImage> three;
    for (size_t n = 0; n < c_nNumStates; ++n)
    {
        const auto found = m_States[n].m_Keys.find(nKey);
        if (found != m_States[n].m_Keys.end())
            three[n] = found->second.m_pKey;
    }
    return three;
}

bool CSpellMerge::HasKey(uint64_t nKey) const
{
    const auto found = m_DraftOf.find(nKey);
    return found != m_DraftOf.end() && !m_Drafts[found->second].m_bGone;
}

// Which keys there are.
void CSpellMerge::PickKeys()
{
    for (const size_t nState : {eState_Mine, eState_Theirs})
    {
        for (const uint64_t nKey : m_States[nState].m_KeyList)
        {
            const CThree<CKeyImage> three = StatesOf(nKey);
            if (nState == eState_Theirs && three[eState_Mine])
                continue;
            const auto isChanged = [&](size_t n)
            {
                return !IsSameContent(*three[eState_Base], *three[n]) ||
                       m_States[eState_Base].m_Keys.at(nKey).m_Place.m_nTrack !=
                           m_States[n].m_Keys.at(nKey).m_Place.m_nTrack;
            };
            const auto conflict = [&]
            {
                const CChangeRef key = {nKey, std::to_string(AnyOf(three)->m_nKeyID)};
                return m_Notes.SettleWhole(EMergeConflict::eDeleted,
                                           DifferenceOf(EDifference::eKey, m_Effect, key), three);
            };
            const EPresence ePresence = PresenceOf(three, isChanged, conflict);
            if (ePresence != EPresence::eNone)
                AddDraft(nKey, ePresence);
        }
    }
}

void CSpellMerge::AddDraft(uint64_t nKey, EPresence ePresence)
{
    CKeyDraft draft;
    draft.m_nNumber = nKey;
    draft.m_Three = StatesOf(nKey);
    for (size_t n = 0; n < c_nNumStates; ++n)
    {
        if (draft.m_Three[n])
            draft.m_Places[n] = m_States[n].m_Keys.at(nKey).m_Place;
    }
    const size_t nFrom = ePresence == EPresence::eTheirs ? eState_Theirs : eState_Mine;
    draft.m_pKey = std::make_shared<CKeyImage>(*draft.m_Three[nFrom]);
    draft.m_pKey->m_nSerial = nKey;
    draft.m_Place = draft.m_Places[nFrom];
    draft.m_Link = LinkOf(nFrom, *draft.m_pKey);
    int nLink = static_cast<int>(nFrom); // the state that made the link what it is
    const auto& pBase = draft.m_Three[eState_Base];
    const auto isSameLink = [](const CMergeLink& a, const CMergeLink& b)
    {
        const bool bTargets = a.m_nTarget && b.m_nTarget;
        return a.m_bLinked == b.m_bLinked &&
               (!a.m_bLinked || (bTargets ? a.m_nTarget == b.m_nTarget : a.m_nID == b.m_nID));
    };
    if (ePresence == EPresence::eBoth && pBase)
    {
        const CMergeLink base = LinkOf(eState_Base, *pBase);
        const CMergeLink theirs = LinkOf(eState_Theirs, *draft.m_Three[eState_Theirs]);
        const auto valueOf = [](const CMergeLink& link)
        { return link.m_bLinked ? CChangeValue(int64_t(link.m_nID)) : CChangeValue(); };
        const EMergeSide eSide =
            PickSide(&base, draft.m_Link, theirs, isSameLink,
                     [&]
                     {
                         CDifference mine = DifferenceOf(EDifference::eKeyLink, m_Effect, draft.Ref());
                         mine.m_Before = valueOf(base);
                         mine.m_After = valueOf(draft.m_Link);
                         return m_Notes.Settle(EMergeConflict::eField, std::move(mine), valueOf(theirs));
                     });
        nLink = static_cast<int>(StateOf(eSide));
        draft.m_Link = eSide == EMergeSide::eMine ? draft.m_Link : theirs;
    }
    if (!draft.m_Link.m_nTarget || (pBase && isSameLink(LinkOf(eState_Base, *pBase), draft.m_Link)))
        nLink = -1;
    if (ePresence == EPresence::eBoth && pBase)
        MergeKeyFields(draft);
    m_DraftOf.emplace(nKey, m_Drafts.size());
    m_Drafts.push_back(std::move(draft));
    m_LinkOf.push_back(nLink);
}

void CSpellMerge::MergeKeyFields(CKeyDraft& draft)
{
    const auto& three = draft.m_Three;
    CKeyImage& key = *draft.m_pKey;
    const CChangeRef object = draft.Ref();
    const std::array<const CSetImage*, c_nNumStates> sets = {
        three[eState_Base].get(), three[eState_Mine].get(), three[eState_Theirs].get()};
    MergeSet(key, sets, m_Effect, object, m_Notes);
    key.m_nSerial = draft.m_nNumber;
    if (!key.m_nParent)
    {
        // One side left the prefab, the other emptied a slot to have its value.
        for (const size_t n : {eState_Mine, eState_Theirs, eState_Base})
            FillFrom(key, *three[n], m_Prefabs[n]);
    }
    const auto pick = [&](EDifference eKind, int64_t nBase, int64_t nMine, int64_t nTheirs)
    { return PickField(m_Notes, DifferenceOf(eKind, m_Effect, object), &nBase, nMine, nTheirs); };
    key.m_nKeyID = three[StateOf(pick(EDifference::eKeyID, three[eState_Base]->m_nKeyID,
                                      three[eState_Mine]->m_nKeyID, three[eState_Theirs]->m_nKeyID))]
                       ->m_nKeyID;
    const auto& places = draft.m_Places;
    draft.m_Place.m_nStart =
        places[StateOf(pick(EDifference::eKeyStart, places[eState_Base].m_nStart,
                            places[eState_Mine].m_nStart, places[eState_Theirs].m_nStart))]
            .m_nStart;
    draft.m_Place.m_nEnd = places[StateOf(pick(EDifference::eKeyEnd, places[eState_Base].m_nEnd,
                                               places[eState_Mine].m_nEnd, places[eState_Theirs].m_nEnd))]
                               .m_nEnd;
    MergePlace(draft);
}

void CSpellMerge::MergePlace(CKeyDraft& draft)
{
    const auto& places = draft.m_Places;
    const auto valueOf = [&](size_t nState)
    {
        const auto& list = m_States[nState].m_TrackList;
        const auto nPlace = std::find(list.begin(), list.end(), places[nState].m_nTrack) - list.begin();
        return CChangePlace{{places[nState].m_nTrack, std::to_string(nPlace)}, 0};
    };
    const uint64_t nBase = places[eState_Base].m_nTrack;
    const EMergeSide eTrack = PickSide(
        &nBase, places[eState_Mine].m_nTrack, places[eState_Theirs].m_nTrack, std::equal_to<uint64_t>(),
        [&]
        {
            CDifference mine = DifferenceOf(EDifference::eKeyTrack, m_Effect, draft.Ref());
            mine.m_Before = valueOf(eState_Base);
            mine.m_After = valueOf(eState_Mine);
            return m_Notes.Settle(EMergeConflict::eField, std::move(mine), valueOf(eState_Theirs));
        });
    draft.m_Place.m_nTrack = places[StateOf(eTrack)].m_nTrack;
    const auto isTurned = [](const CMergePlace& place) { return place.m_nEnd < place.m_nStart; };
    if (isTurned(draft.m_Place) && !isTurned(places[eState_Mine]) && !isTurned(places[eState_Theirs]))
        draft.m_Place = places[StateOf(m_Notes.SettleWhole(
            EMergeConflict::eTimes, DifferenceOf(EDifference::eKey, m_Effect, draft.Ref()), draft.m_Three))];
}

// A link that one side made, to a key that the other one deleted.
void CSpellMerge::CheckLink(size_t nDraft)
{
    const int nMaker = m_LinkOf[nDraft];
    const uint64_t nTarget = m_Drafts[nDraft].m_Link.m_nTarget;
    if (nMaker < 0 || HasKey(nTarget))
        return;
    const CKeyDraft& draft = m_Drafts[nDraft];
    const CThree<CKeyImage> target = StatesOf(nTarget);
    const EMergeSide eStands = m_Notes.SettleWhole(
        EMergeConflict::eLinkTarget, DifferenceOf(EDifference::eKeyLink, m_Effect, draft.Ref()),
        draft.m_Three, {nTarget, std::to_string(AnyOf(target)->m_nKeyID)});
    if (static_cast<int>(StateOf(eStands)) == nMaker)
    {
        AddDraft(nTarget, nMaker == int(eState_Mine) ? EPresence::eMine : EPresence::eTheirs);
        return;
    }
    const auto& pOther = draft.m_Three[StateOf(eStands)];
    m_Drafts[nDraft].m_Link = pOther ? LinkOf(StateOf(eStands), *pOther) : CMergeLink();
}
