#include <algorithm>
#include <tuple>

#include "changes/MergeOrder.h"
#include "changes/MergeSpell.h"
#include "model/TrackList.h"

// The merged effect, once it is known which keys it has.

// Ids that both sides gave out: theirs takes another one.
void CSpellMerge::GiveIDs()
{
    std::unordered_set<uint32_t> used, others; // all that are or were, and those of keys that theirs hasn't
    uint32_t nNext = 0;
    const auto use = [&](uint32_t nID)
    {
        used.insert(nID);
        nNext = std::max(nNext, nID);
    };
    for (const CState& state : m_States)
    {
        for (const auto& [nKey, key] : state.m_Keys)
        {
            use(key.m_pKey->m_nKeyID);
            if (key.m_pKey->m_bMotionLinked)
                use(key.m_pKey->m_nMotionLinkID);
        }
    }
    for (const CKeyDraft& draft : m_Drafts)
    {
        if (!draft.m_bGone && !draft.m_Three[eState_Theirs])
            others.insert(draft.m_pKey->m_nKeyID);
        if (!draft.m_bGone && draft.m_Three[eState_Mine] && draft.m_Link.m_bLinked && !draft.m_Link.m_nTarget)
            others.insert(draft.m_Link.m_nID);
    }
    for (CKeyDraft& draft : m_Drafts)
    {
        if (draft.m_bGone || draft.m_Three[eState_Mine] || !others.contains(draft.m_pKey->m_nKeyID))
            continue;
        while (!used.insert(++nNext).second)
        {
        }
        draft.m_pKey->m_nKeyID = nNext;
    }
}

void CSpellMerge::FinishLinks()
{
    for (CKeyDraft& draft : m_Drafts)
    {
        CMergeLink link = draft.m_Link;
        // What it linked to had no room: what mine had there is left.
        if (m_LinkOf[m_DraftOf.at(draft.m_nNumber)] >= 0 && link.m_nTarget && !HasKey(link.m_nTarget))
        {
            const auto& pMine = draft.m_Three[eState_Mine];
            link = pMine ? LinkOf(eState_Mine, *pMine) : CMergeLink();
            if (link.m_nTarget && !HasKey(link.m_nTarget))
                link = {};
        }
        const auto target = m_DraftOf.find(link.m_nTarget);
        if (target != m_DraftOf.end() && link.m_nTarget && HasKey(link.m_nTarget))
            link.m_nID = m_Drafts[target->second].m_pKey->m_nKeyID;
        if (link.m_bLinked || draft.m_pKey->m_bMotionLinked)
        {
            draft.m_pKey->m_bMotionLinked = link.m_bLinked;
            draft.m_pKey->m_nMotionLinkID = link.m_bLinked ? link.m_nID : 0;
        }
    }
}

// New tracks by the keys on them.
bool CSpellMerge::ComesFirst(uint64_t nTrack, uint64_t nOther) const
{
    const auto keysOf = [&](uint64_t n)
    {
        std::vector<std::tuple<int32_t, int32_t, uint32_t, std::string>> keys;
        for (const size_t nState : {eState_Mine, eState_Theirs})
        {
            const auto found = m_States[nState].m_TrackKeys.find(n);
            for (size_t i = 0; found != m_States[nState].m_TrackKeys.end() && i < found->second.size(); ++i)
            {
                const CKeyImage& key = *m_States[nState].m_Keys.at(found->second[i]).m_pKey;
                keys.emplace_back(key.m_nStartTime, key.m_nEndTime, key.m_nKeyID, key.m_sName);
            }
            if (!keys.empty())
                break;
        }
        return keys;
    };
    return keysOf(nTrack) < keysOf(nOther);
}

// One that a side deleted stays while a key is on it.
std::vector<uint64_t> CSpellMerge::MergeTracks() const
{
    std::array<std::unordered_set<uint64_t>, c_nNumStates> has;
    for (size_t n = 0; n < c_nNumStates; ++n)
        has[n].insert(m_States[n].m_TrackList.begin(), m_States[n].m_TrackList.end());
    std::unordered_set<uint64_t> taken;
    for (const CKeyDraft& draft : m_Drafts)
    {
        if (!draft.m_bGone)
            taken.insert(draft.m_Place.m_nTrack);
    }
    return MergeOrder(
        m_States[eState_Base].m_TrackList, m_States[eState_Mine].m_TrackList,
        m_States[eState_Theirs].m_TrackList,
        [&](uint64_t n)
        {
            return taken.contains(n) || !has[eState_Base].contains(n) ||
                   (has[eState_Mine].contains(n) && has[eState_Theirs].contains(n));
        },
        [&](uint64_t a, uint64_t b) { return ComesFirst(a, b); });
}

std::vector<uint64_t> CSpellMerge::MergeKeys(uint64_t nTrack, const std::vector<size_t>& drafts) const
{
    static const std::vector<uint64_t> c_None;
    const auto listOf = [&](size_t nState) -> const std::vector<uint64_t>&
    {
        const auto found = m_States[nState].m_TrackKeys.find(nTrack);
        return found != m_States[nState].m_TrackKeys.end() ? found->second : c_None;
    };
    std::unordered_set<uint64_t> wanted;
    for (const size_t nDraft : drafts)
        wanted.insert(m_Drafts[nDraft].m_nNumber);
    const auto draftOf = [&](uint64_t nKey) -> const CKeyDraft& { return m_Drafts[m_DraftOf.at(nKey)]; };
    std::vector<uint64_t> keys = MergeOrder(
        listOf(eState_Base), listOf(eState_Mine), listOf(eState_Theirs),
        [&](uint64_t n) { return wanted.contains(n); },
        [&](uint64_t a, uint64_t b)
        {
            const CKeyImage& left = draftOf(a).Any();
            const CKeyImage& right = draftOf(b).Any();
            return std::tie(left.m_nStartTime, left.m_nEndTime, left.m_nKeyID, left.m_sName) <
                   std::tie(right.m_nStartTime, right.m_nEndTime, right.m_nKeyID, right.m_sName);
        });
    // Of one start those without length come first.
    std::stable_sort(keys.begin(), keys.end(),
                     [&](uint64_t a, uint64_t b)
                     {
                         const CMergePlace& left = draftOf(a).m_Place;
                         const CMergePlace& right = draftOf(b).m_Place;
                         return std::pair(left.m_nStart, left.m_nEnd > left.m_nStart) <
                                std::pair(right.m_nStart, right.m_nEnd > right.m_nStart);
                     });
    return keys;
}

std::shared_ptr<const CSpellImage> CSpellMerge::Run()
{
    const size_t nConflicts = m_Notes.GetNumConflicts();
    const CSpellImage& base = *m_Three[eState_Base];
    const CSpellImage& mine = *m_Three[eState_Mine];
    const CSpellImage& theirs = *m_Three[eState_Theirs];
    Number();
    auto pSpell = std::make_shared<CSpellImage>();
    pSpell->m_nSerial = m_Effect.m_nSerial;
    const auto about = [&](EDifference eKind) { return DifferenceOf(eKind, {}, m_Effect); };
    pSpell->m_sName = m_Three[StateOf(PickField(m_Notes, about(EDifference::eEffectName), &base.m_sName,
                                                mine.m_sName, theirs.m_sName))]
                          ->m_sName;
    const int64_t nBase = base.m_nPhaseLength;
    pSpell->m_nPhaseLength =
        m_Three[StateOf(PickField(m_Notes, about(EDifference::eEffectLength), &nBase,
                                  int64_t(mine.m_nPhaseLength), int64_t(theirs.m_nPhaseLength)))]
            ->m_nPhaseLength;
    PickKeys();
    for (size_t n = 0; n < m_Drafts.size(); ++n) // grows by the targets of links
        CheckLink(n);
    SettlePlaces();
    GiveIDs();
    FinishLinks();

    const std::vector<uint64_t> tracks = MergeTracks();
    if (tracks.size() >
        std::max({size_t(CTrackList::c_nMaxTracks), mine.m_Tracks.size(), theirs.m_Tracks.size()}))
    {
        m_Notes.Forget(nConflicts);
        return m_Three[StateOf(
            m_Notes.SettleWhole(EMergeConflict::eTracks, about(EDifference::eEffect), m_Three))];
    }
    std::unordered_map<uint64_t, std::vector<size_t>> onTrack;
    for (size_t n = 0; n < m_Drafts.size(); ++n)
    {
        if (!m_Drafts[n].m_bGone)
            onTrack[m_Drafts[n].m_Place.m_nTrack].push_back(n);
    }
    for (const uint64_t nTrack : tracks)
    {
        auto pTrack = std::make_shared<CTrackImage>();
        pTrack->m_nSerial = nTrack;
        for (const uint64_t nKey : MergeKeys(nTrack, onTrack[nTrack]))
        {
            const CKeyDraft& draft = m_Drafts[m_DraftOf.at(nKey)];
            draft.m_pKey->m_nStartTime = draft.m_Place.m_nStart;
            draft.m_pKey->m_nEndTime = draft.m_Place.m_nEnd;
            pTrack->m_Keys.push_back(draft.m_pKey);
        }
        pSpell->m_Tracks.push_back(std::move(pTrack));
    }
    return pSpell;
}
