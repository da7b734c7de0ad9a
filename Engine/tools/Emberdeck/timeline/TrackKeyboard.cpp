// Going through the keys without a mouse. What is done with them is the commands' business.

#include <algorithm>
#include <cstdlib>

#include "timeline/TrackWnd.h"

namespace
{

int64_t MiddleOf(const CKey& key)
{
    return (int64_t(key.m_nStartTime) + key.m_nEndTime) / 2;
}

// Null: the track is empty.
CKey* NearestKey(const CTrack& track, int64_t nTime)
{
    CKey* pNearest = nullptr;
    for (const std::unique_ptr<CKey>& pKey : track.Keys())
    {
        if (!pNearest || std::llabs(MiddleOf(*pKey) - nTime) < std::llabs(MiddleOf(*pNearest) - nTime))
            pNearest = pKey.get();
    }
    return pNearest;
}

// The keys of a track and the free space behind the last one, which is null, make a ring.
CKey* StepInRing(const CTrack& track, const CKey* pFrom, bool bNext)
{
    const int64_t nKeys = track.GetNumKeys();
    int64_t nPlace = nKeys;
    for (int64_t i = 0; i < nKeys; ++i)
    {
        if (track.GetKey(uint32_t(i)) == pFrom)
            nPlace = i;
    }
    nPlace = (nPlace + (bNext ? 1 : nKeys)) % (nKeys + 1);
    return nPlace == nKeys ? nullptr : track.GetKey(uint32_t(nPlace));
}

} // namespace

void CTrackWnd::OnStep(EKeyStep eStep, bool bAdd)
{
    if (IsBusy() || Tracks().GetNumTracks() == 0)
        return;
    CTrack* pTrack = m_pCurKey ? TrackFromKey(m_pCurKey) : m_pCurTrack;
    CKey* pKey = m_pCurKey;
    if (!pTrack)
    {
        pTrack = Tracks().GetTrack(0);
        pKey = NearestKey(*pTrack, 0);
    }
    else if (eStep == EKeyStep::ePrevious || eStep == EKeyStep::eNext)
    {
        pKey = StepInRing(*pTrack, pKey, eStep == EKeyStep::eNext);
    }
    else
    {
        const int64_t nTrack = int64_t(Tracks().GetTrackNumber(pTrack)) + (eStep == EKeyStep::eUp ? -1 : 1);
        if (nTrack < 0 || nTrack >= Tracks().GetNumTracks())
            return;
        pTrack = Tracks().GetTrack(uint32_t(nTrack));
        pKey = NearestKey(*pTrack, pKey ? MiddleOf(*pKey) : 0);
    }
    if (!bAdd)
        ClearSelection();
    m_pCurTrack = pTrack;
    SetCurKey(pKey);
    ScrollToCurrent();
    Refresh();
}

void CTrackWnd::ScrollToCurrent()
{
    constexpr int32_t nPixels = 4; // for each position of the scroll bar
    const int32_t nTop = int32_t(Tracks().GetTrackNumber(m_pCurTrack)) * CTrackLayout::c_nTrackHeight;
    const int32_t nMost = nTop;
    const int32_t nLeast = nTop + CTrackLayout::c_nTrackHeight - m_Layout.m_rcTrack.Height();
    if (m_Layout.m_nScrollY > nMost)
        OnScroll(EScrollEvent::eThumbTrack, nMost / nPixels);
    else if (m_Layout.m_nScrollY < nLeast)
        OnScroll(EScrollEvent::eThumbTrack, (nLeast + nPixels - 1) / nPixels);
    if (m_pCurKey)
        m_TimeBar.ScrollTo(m_pCurKey->m_nStartTime, m_pCurKey->m_nEndTime);
}

CPoint CTrackWnd::GetMenuPoint() const
{
    const CRect rcView = m_Layout.VisibleTrackArea();
    CPoint pt{(rcView.left + rcView.right) / 2, (rcView.top + rcView.bottom) / 2};
    const CTrack* pTrack = m_pCurKey ? TrackFromKey(m_pCurKey) : m_pCurTrack;
    if (pTrack)
    {
        pt.y = m_Layout.m_rcTrack.top - m_Layout.m_nScrollY +
               int32_t(Tracks().GetTrackNumber(pTrack)) * CTrackLayout::c_nTrackHeight +
               CTrackLayout::c_nTrackHeight / 2;
        int64_t nStart = 0, nEnd = Tracks().m_nPhaseLength;
        if (m_pCurKey)
        {
            nStart = m_pCurKey->m_nStartTime;
            nEnd = m_pCurKey->m_nEndTime;
        }
        else if (pTrack->GetNumKeys() > 0)
        {
            nStart = pTrack->GetKey(pTrack->GetNumKeys() - 1)->m_nEndTime;
            nEnd = std::max(nStart, nEnd);
        }
        // The middle of what of it is in view.
        const int32_t nLeft = std::clamp(PixelFromTime(m_TimeBar, nStart), rcView.left, rcView.right - 1);
        const int32_t nRight = std::clamp(PixelFromTime(m_TimeBar, nEnd), rcView.left, rcView.right - 1);
        pt.x = (nLeft + nRight) / 2;
    }
    pt.y = std::clamp(pt.y, rcView.top, rcView.bottom - 1);
    return pt;
}
