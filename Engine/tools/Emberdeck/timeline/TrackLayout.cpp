#include "timeline/TrackLayout.h"

#include <algorithm>
#include <cstdlib>

bool CTrackLayout::SetSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                           int32_t nScrollBarWidth)
{
    if (nWidth == 0 && nHeight == 0)
        return false;
    const int32_t nInner = std::max(nWidth - nScrollBarWidth, 0);
    const int32_t nTimeBarTop = nHeight - nTimeBarHeight;

    m_rcKeyInfo = CRect{0, 0, nWidth, nKeyInfoHeight};
    m_rcTimeBar = CRect{0, nTimeBarTop, nInner, nHeight};
    m_rcScrollBar =
        CRect{nWidth - nScrollBarWidth, nKeyInfoHeight, nWidth, std::max(nHeight, nKeyInfoHeight)};
    m_rcTrack = CRect{0, nKeyInfoHeight, nWidth, std::max(nTimeBarTop, nKeyInfoHeight)};
    return true;
}

CRect CTrackLayout::GetKeyRect(const CKey& key) const
{
    return GetRect(key.m_nTrack, CKeySpan{key.m_nStartTime, key.m_nEndTime});
}

CRect CTrackLayout::GetRect(uint32_t nTrack, CKeySpan span) const
{
    const int32_t nTop = static_cast<int32_t>(nTrack) * c_nTrackHeight - m_nScrollY + m_rcTrack.top;
    return CRect{PixelFromTime(m_Scale, span.m_nStart), nTop, PixelFromTime(m_Scale, span.m_nEnd),
                 nTop + c_nTrackHeight};
}

CTrack* CTrackLayout::TrackFromY(int32_t y) const
{
    const int64_t nRow = (int64_t(m_nScrollY) - m_rcTrack.top + y) / c_nTrackHeight;
    return nRow < 0 ? nullptr : m_Tracks.GetTrack(static_cast<uint32_t>(nRow));
}

// The row whose rectangles hold y, which the truncating division above doesn't give above the rows.
CTrack* CTrackLayout::RowAt(int32_t y) const
{
    return int64_t(m_nScrollY) - m_rcTrack.top + y < 0 ? nullptr : TrackFromY(y);
}

CKey* CTrackLayout::KeyFromPoint(CPoint pt) const
{
    const CTrack* pTrack = TrackFromY(pt.y);
    if (!pTrack)
        return nullptr;
    const int32_t nTime = TimeFromPixel(m_Scale, pt.x);
    for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
    {
        if (pKey->m_nStartTime <= nTime && nTime < pKey->m_nEndTime)
            return pKey.get();
    }
    return nullptr;
}

CKey* CTrackLayout::KeyFromRect(CPoint pt) const
{
    const CTrack* pTrack = RowAt(pt.y);
    if (!pTrack)
        return nullptr;
    for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
    {
        if (GetKeyRect(*pKey).Contains(pt))
            return pKey.get();
    }
    return nullptr;
}

EKeyZone CTrackLayout::HitTestKey(const CKey& key, CPoint pt) const
{
    const CRect rc = GetKeyRect(key);
    if (!rc.Contains(pt))
        return EKeyZone::eOutside;
    if (std::abs(pt.x - rc.left) < c_nEdge)
        return EKeyZone::eLeftEdge;
    if (std::abs(rc.right - pt.x) < c_nEdge)
        return EKeyZone::eRightEdge;
    return EKeyZone::eBody;
}

bool CTrackLayout::IsOverEdge(CPoint pt) const
{
    const CTrack* pTrack = RowAt(pt.y);
    if (!pTrack)
        return false;
    return std::any_of(pTrack->Keys().begin(), pTrack->Keys().end(),
                       [&](const std::unique_ptr<CKey>& pKey)
                       {
                           const EKeyZone eZone = HitTestKey(*pKey, pt);
                           return eZone == EKeyZone::eLeftEdge || eZone == EKeyZone::eRightEdge;
                       });
}

CTrack* CTrackLayout::TrackFromKey(const CKey* pKey) const
{
    return pKey ? m_Tracks.GetTrack(pKey->m_nTrack) : nullptr;
}

CRect CTrackLayout::VisibleTrackArea() const
{
    CRect rc = m_rcTrack;
    rc.right = std::min(rc.right, m_rcScrollBar.left);
    return rc;
}
