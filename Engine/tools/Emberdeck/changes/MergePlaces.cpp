#include <iterator>
#include <map>

#include "changes/MergeClaims.h"
#include "changes/MergeSpell.h"

namespace
{

// Who is when on which track.
class CTimeBoard
{
public:
    explicit CTimeBoard(const std::vector<CKeyDraft>& drafts) : m_Drafts(drafts), m_Placed(drafts.size()) {}

    bool Has(size_t n, EClaim eClaim) const
    {
        return eClaim == EClaim::eMerged || m_Drafts[n].m_Three[StateOf(eClaim)];
    }
    const CMergePlace& Place(size_t n, EClaim eClaim) const
    {
        return eClaim == EClaim::eMerged ? m_Drafts[n].m_Place : m_Drafts[n].m_Places[StateOf(eClaim)];
    }
    void Put(size_t n, EClaim eClaim)
    {
        m_Placed[n] = Place(n, eClaim);
        m_Tracks[m_Placed[n].m_nTrack].emplace(OrderOf(n, m_Placed[n]), n);
    }
    void Lift(size_t n) { m_Tracks[m_Placed[n].m_nTrack].erase(OrderOf(n, m_Placed[n])); }

    // On a track each ends before the next one starts, so that only the last one before can reach so far.
    std::vector<size_t> Rivals(size_t n, EClaim eClaim) const
    {
        std::vector<size_t> rivals;
        const CMergePlace& place = Place(n, eClaim);
        const auto track = m_Tracks.find(place.m_nTrack);
        if (track == m_Tracks.end())
            return rivals;
        const auto check = [&](size_t nOther)
        {
            if (!IsOfOneSide(n, place, nOther))
                rivals.push_back(nOther);
        };
        const auto next = track->second.lower_bound(OrderOf(n, place));
        if (next != track->second.begin())
        {
            const size_t nBefore = std::prev(next)->second;
            if (m_Placed[nBefore].m_nEnd > place.m_nStart)
                check(nBefore);
        }
        for (auto it = next; it != track->second.end() && m_Placed[it->second].m_nStart < place.m_nEnd; ++it)
            check(it->second);
        return rivals;
    }

private:
    using COrder = std::tuple<int32_t, bool, size_t>;
    static size_t StateOf(EClaim eClaim) { return eClaim == EClaim::eMine ? eState_Mine : eState_Theirs; }
    static COrder OrderOf(size_t n, const CMergePlace& place)
    {
        return {place.m_nStart, place.m_nEnd > place.m_nStart, n};
    }
    // What a side has beside each other stays so.
    bool IsOfOneSide(size_t n, const CMergePlace& place, size_t nOther) const
    {
        for (const size_t nState : {eState_Mine, eState_Theirs})
        {
            const auto isOf = [&](size_t i, const CMergePlace& at)
            { return m_Drafts[i].m_Three[nState] && m_Drafts[i].m_Places[nState] == at; };
            if (isOf(n, place) && isOf(nOther, m_Placed[nOther]))
                return true;
        }
        return false;
    }

    const std::vector<CKeyDraft>& m_Drafts;
    std::vector<CMergePlace> m_Placed;
    std::unordered_map<uint64_t, std::map<COrder, size_t>> m_Tracks;
};

} // namespace

// Gives each key its place, and drops those for which there is none.
void CSpellMerge::SettlePlaces()
{
    std::vector<EClaim> claims;
    for (const CKeyDraft& draft : m_Drafts)
    {
        const bool bMine = draft.m_Three[eState_Mine] && draft.m_Place == draft.m_Places[eState_Mine];
        claims.push_back(bMine ? EClaim::eMine : EClaim::eMerged);
    }
    CTimeBoard board(m_Drafts);
    claims =
        SettleClaims(std::move(claims), board,
                     [&](size_t nLoser, size_t nRival)
                     {
                         const CKeyDraft& loser = m_Drafts[nLoser];
                         return m_Notes.SettleWhole(EMergeConflict::eOverlap,
                                                    DifferenceOf(EDifference::eKey, m_Effect, loser.Ref()),
                                                    loser.m_Three, m_Drafts[nRival].Ref());
                     });
    for (size_t n = 0; n < m_Drafts.size(); ++n)
    {
        m_Drafts[n].m_bGone = !board.Has(n, claims[n]);
        if (!m_Drafts[n].m_bGone)
            m_Drafts[n].m_Place = board.Place(n, claims[n]);
    }
}
