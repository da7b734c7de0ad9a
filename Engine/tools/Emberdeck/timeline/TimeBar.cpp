#include "timeline/TimeBar.h"

#include <algorithm>
#include <string>

namespace
{

constexpr CColorRef c_nRulerColor = 0xDCDCDC;
constexpr int64_t c_nTick = 100;   // milliseconds from tick to tick
constexpr int64_t c_nMajor = 1000; // and from label to label
constexpr int32_t c_nShortTick = 5;
constexpr int32_t c_nLongTick = 10;
constexpr int32_t c_nLabelTop = 10;
constexpr int32_t c_nLabelGap = 5;

// The first multiple of nStep at or after nTime.
int64_t RoundUp(int64_t nTime, int64_t nStep)
{
    const int64_t nRest = nTime % nStep;
    return nRest == 0 ? nTime : nTime - nRest + (nTime > 0 ? nStep : 0);
}

} // namespace

CTimeBar::CTimeBar(ITrackView& view, int32_t nPhaseLength) : m_nPhaseLength(nPhaseLength), m_View(view)
{
    UpdateScale();
}

void CTimeBar::UpdateScale()
{
    m_fPixelsPerMs = MakePixelsPerMs(m_nWidth, m_nPhaseLength, m_fZoom);
}

// The rows follow only when there is something to follow: a ruler that asked for their repaint whenever it
// is painted would never come to rest under a window that repaints its children.
void CTimeBar::Redraw(const CShown& before)
{
    m_View.PaintRulerNow();
    if (Shown() != before)
        m_View.Invalidate();
}

void CTimeBar::SetPhaseLength(int32_t nPhaseLength)
{
    const CShown before = Shown();
    m_nPhaseLength = nPhaseLength;
    UpdateScale();
    Redraw(before);
}

void CTimeBar::SetWidth(int32_t nWidth)
{
    const CShown before = Shown();
    m_nWidth = nWidth;
    UpdateScale();
    if (Shown() != before)
        m_View.Invalidate();
}

double CTimeBar::VisibleTime() const
{
    return static_cast<double>(std::max(m_nWidth, 1)) / static_cast<double>(m_fPixelsPerMs);
}

void CTimeBar::OnScaleSlider(int32_t nPos)
{
    const CShown before = Shown();
    m_nScalePos = std::clamp(nPos, 0, c_nMaxScalePos);
    m_fZoom = static_cast<float>(m_nScalePos * 0.2 + 1.0);
    UpdateScale();

    const int64_t nLimit = m_nPhaseLength - static_cast<int64_t>(VisibleTime());
    // The float scale lies beside the true one, so at zoom 1.0 the limit isn't always 0.
    if (m_nViewStart < 0 || m_nScalePos == 0)
        m_nViewStart = 0;
    else if (m_nViewStart >= nLimit)
        m_nViewStart = static_cast<int32_t>(std::max<int64_t>(nLimit, 0));
    Redraw(before);
}

void CTimeBar::OnPhaseSlider(int32_t nPos)
{
    const CShown before = Shown();
    m_nPhasePos = std::clamp(nPos, 0, c_nMaxPhasePos);
    const float fRoom = static_cast<float>(std::max(m_nPhaseLength - VisibleTime(), 0.0));
    const double fStart = static_cast<double>(m_nPhasePos) / c_nMaxPhasePos * static_cast<double>(fRoom);
    m_nViewStart = m_nScalePos == 0 ? 0 : static_cast<int32_t>(std::min(fStart, double(INT32_MAX)));
    Redraw(before);
}

void CTimeBar::ScrollTo(int32_t nStart, int32_t nEnd)
{
    const double fVisible = VisibleTime();
    const bool bInView = nEnd > m_nViewStart && nStart < m_nViewStart + fVisible;
    const double fRoom = m_nScalePos == 0 ? 0.0 : m_nPhaseLength - fVisible;
    if (!bInView && fRoom > 0.0)
        OnPhaseSlider(static_cast<int32_t>(std::clamp(nStart / fRoom, 0.0, 1.0) * c_nMaxPhasePos));
}

// The first tick right of pixel column x, nTick being one that lies in it. Where many ticks share a column,
// those between needn't be looked at.
int64_t CTimeBar::NextTick(int64_t nTick, int32_t x) const
{
    int64_t nNext = nTick + c_nTick;
    if (PixelFromTime(*this, nNext) > x)
        return nNext;
    const double fEdge = (double(x) + 1.0) / static_cast<double>(m_fPixelsPerMs);
    nNext = std::max(nNext, RoundUp(m_nViewStart + static_cast<int64_t>(fEdge), c_nTick));
    // The quotient may be a step off.
    while (nNext - c_nTick > nTick && PixelFromTime(*this, nNext - c_nTick) > x)
        nNext -= c_nTick;
    while (PixelFromTime(*this, nNext) <= x)
        nNext += c_nTick;
    return nNext;
}

void CTimeBar::DrawRuler(IDrawSurface& surface, int32_t nWidth, int32_t nHeight) const
{
    constexpr CPenSpec pen;
    surface.FillRect(CRect{0, 0, nWidth, nHeight}, c_nRulerColor);

    const int64_t nFirst = m_nViewStart / c_nTick * c_nTick;
    const int64_t nLast = nFirst + m_nPhaseLength / c_nTick * c_nTick;
    // A label that begins right of the ruler can't be seen; neither can anything further on.
    const int64_t nStop = int64_t(nWidth) + surface.TextWidth(std::to_string(nLast / c_nMajor) + "0");

    int32_t nLastRight = -50;
    int32_t x = 0;
    for (int64_t nTick = nFirst; nTick <= nLast; nTick = NextTick(nTick, x))
    {
        x = PixelFromTime(*this, nTick);
        if (x > nStop)
            break;
        // A column that holds several ticks looks as its longest; of several labels the first one has it.
        const int64_t nMajor = RoundUp(nTick, c_nMajor);
        const bool bMajor = nMajor <= nLast && PixelFromTime(*this, nMajor) == x;
        surface.DrawLine(CPoint{x, 0}, CPoint{x, bMajor ? c_nLongTick : c_nShortTick}, pen);
        if (!bMajor || x <= nLastRight)
            continue;
        const std::string sLabel = std::to_string(nMajor / c_nMajor);
        const int32_t nLabel = surface.TextWidth(sLabel);
        const int32_t nHalf = nLabel / 2;
        int32_t nLeft = x - nHalf;
        const bool bInSight = nLeft + nLabel > 0 && nLeft < nWidth;
        if (m_bWholeLabels && bInSight)
            nLeft = std::clamp(nLeft, 0, std::max(nWidth - nLabel, 0));
        if (nLeft > nLastRight)
        {
            surface.DrawTextAt(CPoint{nLeft, c_nLabelTop}, sLabel, pen.m_nColor);
            nLastRight = nLeft + 2 * nHalf + c_nLabelGap;
        }
    }
}
