#include "timeline/TrackWnd.h"

#include <algorithm>

#include "qsassert.h"
#include "timeline/TrackCommands.h"
#include "timeline/TrackPainter.h"

CTrackWnd::CTrackWnd(CEditContext& context, CSpell& spell, ITrackView& view)
    : m_Context(context),
      m_Spell(spell),
      m_View(view),
      m_TimeBar(view, spell.m_Tracks.m_nPhaseLength),
      m_KeyInfo(context, spell, m_TimeBar, view),
      m_Layout(spell.m_Tracks, m_TimeBar)
{
    m_Context.m_Edits.AddListener(this);
}

CTrackWnd::~CTrackWnd()
{
    m_Context.m_Edits.RemoveListener(this);
    if (m_pGesture)
        m_pGesture->Cancel();
}

bool CTrackWnd::OnSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                       int32_t nScrollBarWidth)
{
    if (!m_Layout.SetSize(nWidth, nHeight, nKeyInfoHeight, nTimeBarHeight, nScrollBarWidth))
        return false;
    m_TimeBar.SetWidth(m_Layout.m_rcTimeBar.Width());
    m_View.Invalidate();
    return true;
}

void CTrackWnd::OnScroll(EScrollEvent eEvent, int32_t nThumbPos)
{
    constexpr int32_t nLine = 5;
    constexpr int32_t nPage = 20;
    constexpr int32_t nPixels = 4; // for each position
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
    m_Layout.m_nScrollY = nPixels * m_nScrollPos;
    m_View.PaintNow();
}

void CTrackWnd::Paint(IDrawSurface& surface) const
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
    CTrackPainter(Tracks(), m_Layout, m_Options, surface).Paint(carried, m_LinkLine.GetPoints());
}

void CTrackWnd::SetOptions(const CTrackViewOptions& options)
{
    m_Options = options;
    m_TimeBar.SetWholeLabels(options.m_bWholeRulerLabels);
}

// Of a carried key, as far as it is shown.
std::optional<CLanding> CTrackWnd::Landing() const
{
    return m_pGesture && m_Options.m_bShowLanding ? m_pGesture->Landing() : std::nullopt;
}

void CTrackWnd::UpdateKeyInfo()
{
    const std::optional<CLanding> landing = Landing();
    m_KeyInfo.UpdateInfo(m_pCurKey, landing && landing->m_bRoom ? &landing->m_Span : nullptr);
}

CRect CTrackWnd::GetKeyRect(const CKey* pKey) const
{
    QS_ASSERT_MSG(pKey, "Error: Unexpected NULL key passed into GetKeyRect");
    return pKey ? m_Layout.GetKeyRect(*pKey) : CRect();
}

void CTrackWnd::SetCurKey(CKey* pKey)
{
    if (pKey)
        pKey->m_bSelected = true;
    m_pCurKey = pKey;
    UpdateKeyInfo();
}

bool CTrackWnd::ClearSelection()
{
    bool bChanged = false;
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            bChanged = bChanged || pKey->m_bSelected;
            pKey->m_bSelected = false;
        }
    }
    return bChanged;
}

std::vector<CKey*> CTrackWnd::GetSelectedKeys() const
{
    std::vector<CKey*> selected;
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            if (pKey->m_bSelected)
                selected.push_back(pKey.get());
        }
    }
    return selected;
}

CKey* CTrackWnd::GetFirstSelectedKey() const
{
    for (const std::unique_ptr<CTrack>& pTrack : Tracks().Tracks())
    {
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            if (pKey->m_bSelected)
                return pKey.get();
        }
    }
    return nullptr;
}

uint32_t CTrackWnd::GetSelectedKeyCount() const
{
    return static_cast<uint32_t>(GetSelectedKeys().size());
}

void CTrackWnd::Refresh()
{
    m_View.Invalidate();
    UpdateKeyInfo();
}

void CTrackWnd::SetCursor(ECursorShape eShape)
{
    if (eShape == m_eCursor)
        return;
    m_eCursor = eShape;
    m_View.SetCursorShape(eShape);
}

void CTrackWnd::Command(int32_t nID)
{
    if (IsBusy() || nID == 0)
        return;
    for (const CTrackCommand& command : c_TrackCommands)
    {
        if (command.m_nID == nID)
        {
            m_Context.m_Host.ShowStatus(std::string()); // of the command before
            (this->*command.m_pfnHandler)();
            return;
        }
    }
}

bool CTrackWnd::OnKeyPress(uint16_t nKey, bool bCtrl, bool bShift, bool bAlt)
{
    for (const CTrackAccelerator& accelerator : c_TrackAccelerators)
    {
        if (accelerator.m_nKey == nKey && accelerator.m_bCtrl == bCtrl && accelerator.m_bShift == bShift &&
            !bAlt)
        {
            Command(accelerator.m_nID);
            return true;
        }
    }
    return false;
}

// The effect may have been changed from anywhere: nothing here may point to what has gone.
void CTrackWnd::OnEdit(const CEdit& edit)
{
    if (!edit.Touches(&m_Spell) && !edit.Touches(ETouched::eLibrary))
        return;
    if (m_pCurKey && !Tracks().FindTrackOf(m_pCurKey))
        m_pCurKey = nullptr;
    if (m_pCurTrack && Tracks().GetTrackNumber(m_pCurTrack) >= Tracks().GetNumTracks())
        m_pCurTrack = nullptr;
    if (!m_pCurKey)
        m_LinkLine.End();
    if (m_TimeBar.m_nPhaseLength != Tracks().m_nPhaseLength)
    {
        m_KeyInfo.m_nPhaseLength = Tracks().m_nPhaseLength;
        m_TimeBar.SetPhaseLength(Tracks().m_nPhaseLength);
    }
    Refresh();
}
