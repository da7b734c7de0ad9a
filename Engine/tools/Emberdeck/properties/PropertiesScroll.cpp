#include "properties/FXProperties.h"

#include <algorithm>

// The list's scrolling: rows are real controls, and move.

CScrollBarState CFXPropertiesDlg::GetScrollBar() const
{
    const int32_t nRows = GetNumRows();
    CScrollBarState state;
    state.m_nMax = std::max(nRows - m_nVisibleRows, 0);
    state.m_nPage = m_nVisibleRows;
    state.m_nPos = m_nTopRow;
    state.m_bEnabled = nRows > 0 && m_bCanScroll;
    state.m_bUp = m_nTopRow > 0;
    state.m_bDown = m_nTopRow <= nRows - 1 - m_nVisibleRows;
    return state;
}

void CFXPropertiesDlg::UpdateScrollBar()
{
    if (m_pView)
        m_pView->OnScrollBarChanged();
}

void CFXPropertiesDlg::OnVScroll(EScrollCode eCode, int32_t nPos)
{
    if (!m_bCanScroll)
        return;
    int64_t nDelta = 0;
    switch (eCode)
    {
    case EScrollCode::eLineUp:
        nDelta = -1;
        break;
    case EScrollCode::eLineDown:
        nDelta = 1;
        break;
    case EScrollCode::ePageUp:
        nDelta = -m_nVisibleRows;
        break;
    case EScrollCode::ePageDown:
        nDelta = m_nVisibleRows;
        break;
    case EScrollCode::eThumbTrack:
        nDelta = int64_t(nPos) - m_nTopRow;
        break;
    case EScrollCode::eOther:
        break;
    }
    const int64_t nLowest = -int64_t(m_nTopRow);
    const int64_t nHighest = std::max<int64_t>(int64_t(GetNumRows()) - m_nVisibleRows - m_nTopRow, nLowest);
    const int32_t nRows = static_cast<int32_t>(std::clamp(nDelta, nLowest, nHighest));
    if (nRows == 0)
        return;
    m_nTopRow += nRows;
    UpdateScrollBar();
    const int32_t dy = -m_Metrics.m_nPitch * nRows;
    for (uint32_t i = 0; i < m_Rows.size(); ++i)
    {
        if (m_Rows[i].m_pCtrls)
            m_Rows[i].m_pCtrls->MoveControls(0, dy);
        if (CControlDesc* pCheck = m_Rows[i].m_pCheck.get())
        {
            pCheck->m_rc.top += dy;
            pCheck->m_rc.bottom += dy;
        }
        UpdateRowVisibility(i);
    }
    if (m_pView)
        m_pView->Repaint();
}

void CFXPropertiesDlg::OnMouseWheel(int32_t nDelta, bool bFine)
{
    if (nDelta == 0)
        return; // a horizontal one
    if (!bFine)
    {
        OnVScroll(nDelta > 0 ? EScrollCode::eLineUp : EScrollCode::eLineDown);
        return;
    }
    constexpr int32_t c_nNotch = 120;
    constexpr int32_t c_nMaxFine = 100 * c_nNotch; // no stroke is longer
    m_nFineDelta =
        std::clamp(m_nFineDelta + std::clamp(nDelta, -c_nMaxFine, c_nMaxFine), -c_nMaxFine, c_nMaxFine);
    for (; m_nFineDelta >= c_nNotch; m_nFineDelta -= c_nNotch)
        OnVScroll(EScrollCode::eLineUp);
    for (; m_nFineDelta <= -c_nNotch; m_nFineDelta += c_nNotch)
        OnVScroll(EScrollCode::eLineDown);
}

bool CFXPropertiesDlg::OnTabOut(bool bForward)
{
    const int32_t nOldTop = m_nTopRow;
    OnVScroll(bForward ? EScrollCode::eLineDown : EScrollCode::eLineUp);
    return m_nTopRow != nOldTop;
}

bool CFXPropertiesDlg::IsRowVisible(uint32_t nRow) const
{
    return nRow < m_Rows.size() && int64_t(nRow) >= m_nTopRow &&
           int64_t(nRow) < int64_t(m_nTopRow) + m_nVisibleRows;
}

void CFXPropertiesDlg::UpdateRowVisibility(uint32_t nIndex)
{
    if (nIndex >= m_Rows.size())
        return;
    const bool bVisible = IsRowVisible(nIndex);
    if (m_Rows[nIndex].m_pCtrls)
        m_Rows[nIndex].m_pCtrls->ShowControls(bVisible);
    if (CControlDesc* pCheck = m_Rows[nIndex].m_pCheck.get())
    {
        pCheck->m_bVisible = bVisible;
        CheckChanged(nIndex);
    }
}
