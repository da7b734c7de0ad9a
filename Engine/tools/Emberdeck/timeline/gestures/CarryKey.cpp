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
        Touch(Label());
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
        Touch(Label());
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

bool CCarryKey::Drop()
{
    if (m_Context.m_Layout.KeyFromPoint(m_ptCur))
        return false;
    if (CTrack* pTrack = m_Context.m_Layout.TrackFromY(m_ptCur.y))
        return DropOn(*pTrack);
    CTrack* pNew = Tracks().AddTrack();
    if (!pNew)
        return false;
    if (DropOn(*pNew))
        return true;
    Tracks().RemoveTrack(pNew);
    return false;
}

bool CCarryKey::DropOn(CTrack& track)
{
    if (!track.ReserveKey()) // a key that is appended without room would be gone
        return false;
    CRect rc;
    CarriedKey(rc);
    CKey* pKey = m_pKey.get();
    const int32_t nOldStart = pKey->m_nStartTime;
    const int32_t nOldEnd = pKey->m_nEndTime;
    const uint32_t nOldTrack = pKey->m_nTrack;
    pKey->m_nStartTime = TimeFromPixel(m_Context.m_Scale, rc.left);
    pKey->m_nEndTime = TimeFromPixel(m_Context.m_Scale, rc.right);
    pKey->m_nTrack = Tracks().GetTrackNumber(&track);
    track.AppendKey(std::move(m_pKey));
    track.PlaceKey(pKey);
    if (pKey->m_nStartTime < pKey->m_nEndTime)
        return true;

    m_pKey = track.RemoveKey(pKey);
    pKey->m_nStartTime = nOldStart;
    pKey->m_nEndTime = nOldEnd;
    pKey->m_nTrack = nOldTrack;
    return false;
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
