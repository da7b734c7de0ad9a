#include "timeline/TrackScene.h"

#include <algorithm>

#include "timeline/TrackPainter.h"

namespace
{

constexpr int32_t c_nScrollPixels = 4; // for each position of the scroll bar

} // namespace

CTrackScene::CTrackScene(CEditContext& context, CSpell& spell, const CKeySelection& selection,
                         ITrackView& view)
    : m_Tracks(spell.m_Tracks),
      m_Selection(selection),
      m_View(view),
      m_TimeBar(view, spell.m_Tracks.m_nPhaseLength),
      m_KeyInfo(context, spell, selection, m_TimeBar, view),
      m_Layout(spell.m_Tracks, m_TimeBar)
{
}

bool CTrackScene::OnSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                         int32_t nScrollBarWidth)
{
    if (!m_Layout.SetSize(nWidth, nHeight, nKeyInfoHeight, nTimeBarHeight, nScrollBarWidth))
        return false;
    m_TimeBar.SetWidth(m_Layout.m_rcTimeBar.Width());
    m_View.Invalidate();
    return true;
}

void CTrackScene::OnScroll(EScrollEvent eEvent, int32_t nThumbPos)
{
    constexpr int32_t nLine = 5;
    constexpr int32_t nPage = 20;
    int32_t nPos = m_nScrollPos;
    switch (eEvent)
    {
    case EScrollEvent::eLineUp:
        nPos -= nLine;
        break;
    case EScrollEvent::eLineDown:
        nPos += nLine;
        break;
    case EScrollEvent::ePageUp:
        nPos -= nPage;
        break;
    case EScrollEvent::ePageDown:
        nPos += nPage;
        break;
    case EScrollEvent::eThumbTrack:
        nPos = nThumbPos;
        break;
    case EScrollEvent::eOther:
        break;
    }
    m_nScrollPos = std::clamp(nPos, 0, c_nMaxScrollPos);
    m_Layout.m_nScrollY = c_nScrollPixels * m_nScrollPos;
    m_View.PaintNow();
}

void CTrackScene::Paint(IDrawSurface& surface) const
{
    CCarriedKey carried;
    if (m_pGesture)
        carried.m_pKey = m_pGesture->CarriedKey(carried.m_rc);
    const std::optional<CLanding> landing = Landing();
    if (landing && landing->m_bRoom)
    {
        carried.m_bLanding = true;
        carried.m_rcLanding = m_Layout.GetRect(landing->m_nTrack, landing->m_Span);
    }
    CTrackPainter(m_Tracks, m_Layout, m_Options, surface).Paint(carried, m_LinkLine.GetPoints());
}

void CTrackScene::SetOptions(const CTrackViewOptions& options)
{
    m_Options = options;
    m_TimeBar.SetWholeLabels(options.m_bWholeRulerLabels);
}

// Of a carried key, as far as it is shown.
std::optional<CLanding> CTrackScene::Landing() const
{
    return m_pGesture && m_Options.m_bShowLanding ? m_pGesture->Landing() : std::nullopt;
}

void CTrackScene::UpdateKeyInfo()
{
    const std::optional<CLanding> landing = Landing();
    m_KeyInfo.UpdateInfo(landing && landing->m_bRoom ? &landing->m_Span : nullptr);
}

void CTrackScene::Refresh()
{
    m_View.Invalidate();
    UpdateKeyInfo();
}

void CTrackScene::SetCursor(ECursorShape eShape)
{
    if (eShape == m_eCursor)
        return;
    m_eCursor = eShape;
    m_View.SetCursorShape(eShape);
}

void CTrackScene::FollowEffect()
{
    if (m_TimeBar.m_nPhaseLength != m_Tracks.m_nPhaseLength)
    {
        m_KeyInfo.m_nPhaseLength = m_Tracks.m_nPhaseLength;
        m_TimeBar.SetPhaseLength(m_Tracks.m_nPhaseLength);
    }
    Refresh();
}

void CTrackScene::ShowCurrent()
{
    const CKey* pKey = m_Selection.GetCurKey();
    const CTrack* pTrack = pKey ? m_Layout.TrackFromKey(pKey) : m_Selection.GetCurTrack();
    if (!pTrack)
        return;
    const int32_t nTop = int32_t(m_Tracks.GetTrackNumber(pTrack)) * CTrackLayout::c_nTrackHeight;
    const int32_t nBottom = nTop + CTrackLayout::c_nTrackHeight;
    if (m_Layout.m_nScrollY > nTop)
        OnScroll(EScrollEvent::eThumbTrack, nTop / c_nScrollPixels);
    else if (m_Layout.m_nScrollY < nBottom - m_Layout.m_rcTrack.Height())
        OnScroll(EScrollEvent::eThumbTrack,
                 (nBottom - m_Layout.m_rcTrack.Height() + c_nScrollPixels - 1) / c_nScrollPixels);
    if (pKey)
        m_TimeBar.ScrollTo(pKey->m_nStartTime, pKey->m_nEndTime);
}

CPoint CTrackScene::GetMenuPoint() const
{
    const CRect rcView = m_Layout.VisibleTrackArea();
    CPoint pt{(rcView.left + rcView.right) / 2, (rcView.top + rcView.bottom) / 2};
    const CKey* pKey = m_Selection.GetCurKey();
    const CTrack* pTrack = pKey ? m_Layout.TrackFromKey(pKey) : m_Selection.GetCurTrack();
    if (!pTrack || rcView.IsEmpty())
        return pt;
    CKeySpan span{0, m_Tracks.m_nPhaseLength};
    if (pKey)
    {
        span = CKeySpan{pKey->m_nStartTime, pKey->m_nEndTime};
    }
    else if (pTrack->GetNumKeys() > 0)
    {
        span.m_nStart = pTrack->GetKey(pTrack->GetNumKeys() - 1)->m_nEndTime;
        span.m_nEnd = std::max(span.m_nStart, span.m_nEnd);
    }
    // The middle of what of it is in view.
    const CRect rc = m_Layout.GetRect(m_Tracks.GetTrackNumber(pTrack), span);
    const auto column = [&](int32_t x) { return std::clamp(x, rcView.left, rcView.right - 1); };
    pt.x = (column(rc.left) + column(rc.right)) / 2;
    pt.y = std::clamp((rc.top + rc.bottom) / 2, rcView.top, rcView.bottom - 1);
    return pt;
}
