#include "timeline/gestures/CarryKey.h"

#include <utility>

namespace
{

// The spot of the pointer may lie anywhere; sums stay within what pixels may be.
CRect Offset(const CRect& rc, int64_t dx, int64_t dy)
{
    const auto bound = [](int64_t n) {
        return static_cast<int32_t>(n < -c_nMaxPixel ? -c_nMaxPixel : n > c_nMaxPixel ? c_nMaxPixel : n);
    };
    return CRect{bound(rc.left + dx), bound(rc.top + dy), bound(rc.right + dx), bound(rc.bottom + dy)};
}

} // namespace

CCarryKey::CCarryKey(const CGestureContext& context, CTrack& track, CKey& key, bool bMove, CPoint ptDown)
    : CTrackGesture(context),
      m_Track(track),
      m_bMove(bMove),
      m_rcDrag(Offset(context.m_Layout.GetKeyRect(key), -int64_t(ptDown.x), -int64_t(ptDown.y))),
      m_ptCur(ptDown)
{
    if (bMove)
    {
        CEditScope& scope = Scope(Label());
        scope.TouchTrack(context.m_Spell, track);
        scope.TouchKey(context.m_Spell, key);
        m_pKey = track.RemoveKey(&key);
    }
    else
    {
        m_pKey = key.Clone();
    }
}

bool CCarryKey::Move(CPoint pt)
{
    if (pt == m_ptCur)
        return false;
    m_ptCur = pt;
    return true;
}

const CKey* CCarryKey::CarriedKey(CRect& rc) const
{
    rc = Offset(m_rcDrag, m_ptCur.x, m_ptCur.y);
    return m_pKey.get();
}

void CCarryKey::Release()
{
    if (m_pKey)
    {
        if (!m_bMove)
            m_pKey->m_nKeyID = Tracks().TakeKeyID(); // spent, whether or not the copy finds a place
        if (!Drop())
            GoBack();
    }
    CloseScope();
}

void CCarryKey::Cancel()
{
    if (m_pKey)
        GoBack();
    CloseScope();
}

std::optional<CLanding> CCarryKey::Landing() const
{
    if (!m_pKey)
        return std::nullopt;
    CLanding landing;
    if (m_Context.m_Layout.KeyFromPoint(m_ptCur))
        return landing;
    CRect rc;
    CarriedKey(rc);
    const CKeySpan span = {TimeFromPixel(m_Context.m_Scale, rc.left),
                           TimeFromPixel(m_Context.m_Scale, rc.right)};
    const CTrack* pTrack = m_Context.m_Layout.TrackFromY(m_ptCur.y);
    landing.m_nTrack = pTrack ? Tracks().GetTrackNumber(pTrack) : Tracks().GetNumTracks();
    landing.m_Span = pTrack ? pTrack->FitSpan(span) : CKey::Fit(span, nullptr, nullptr);
    landing.m_bRoom = landing.m_Span.HasLength();
    return landing;
}

bool CCarryKey::Drop()
{
    const std::optional<CLanding> landing = Landing();
    if (!landing || !landing->m_bRoom)
        return false;
    if (CTrack* pTrack = Tracks().GetTrack(landing->m_nTrack))
        return DropOn(*pTrack, landing->m_Span);
    Scope(Label()).TouchTracks(m_Context.m_Spell);
    CTrack* pNew = Tracks().AddTrack();
    if (!pNew)
        return false;
    if (DropOn(*pNew, landing->m_Span))
        return true;
    Tracks().RemoveTrack(pNew);
    return false;
}

bool CCarryKey::DropOn(CTrack& track, CKeySpan span)
{
    if (!track.ReserveKey()) // a key that is appended without room would be gone
        return false;
    Scope(Label()).TouchTrack(m_Context.m_Spell, track);
    CKey* pKey = m_pKey.get();
    pKey->m_nStartTime = span.m_nStart;
    pKey->m_nEndTime = span.m_nEnd;
    pKey->m_nTrack = Tracks().GetTrackNumber(&track);
    track.AppendKey(std::move(m_pKey));
    track.PlaceKey(pKey);
    return true;
}

// A copy is gone. A moved key was on its track a moment ago, whose memory is still there for it.
void CCarryKey::GoBack()
{
    if (!m_bMove)
    {
        m_pKey.reset();
        return;
    }
    CKey* pKey = m_Track.AppendKey(std::move(m_pKey));
    m_Track.PlaceKey(pKey);
}
