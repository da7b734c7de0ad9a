#pragma once

#include <cstdint>

#include "timeline/ITrackView.h"
#include "timeline/TimeScale.h"

// The bar below the rows: owns the time scale, draws the ruler, and has the two sliders that set the zoom
// and the part of the phase in view. m_nViewStart and m_fPixelsPerMs are those of its base.
class CTimeBar : public CTimeScale
{
public:
    static constexpr int32_t c_nMaxScalePos = 50;  // of the scale slider, whose range begins at 0
    static constexpr int32_t c_nMaxPhasePos = 100; // of the phase slider

    // Tells the view nothing yet.
    CTimeBar(ITrackView& view, int32_t nPhaseLength);
    CTimeBar(const CTimeBar&) = delete;
    CTimeBar& operator=(const CTimeBar&) = delete;

    // Milliseconds. The view start stays as it was. Draws the ruler at once.
    void SetPhaseLength(int32_t nPhaseLength);
    // The bar's width in pixels, after a size event.
    void SetWidth(int32_t nWidth);
    void UpdateScale();

    // Every notification of a slider, with its position, whatever the kind. Neither slider moves the other.
    void OnScaleSlider(int32_t nPos);
    void OnPhaseSlider(int32_t nPos);
    // Moves the view, and the phase slider with it, when nothing of that time can be seen.
    void ScrollTo(int32_t nStart, int32_t nEnd);

    // See CTrackViewOptions. The ruler isn't drawn by this.
    void SetWholeLabels(bool bWhole) { m_bWholeLabels = bWhole; }
    // Into the ruler's rectangle, whose origin is the surface's.
    void DrawRuler(IDrawSurface& surface, int32_t nWidth, int32_t nHeight) const;

    int32_t GetPhasePos() const { return m_nPhasePos; }

    int32_t m_nPhaseLength; // milliseconds, a copy of the effect's
    float m_fZoom = 1.0f;   // 1.0 to 11.0

private:
    struct CShown
    {
        int32_t m_nViewStart;
        int32_t m_nPhaseLength;
        int32_t m_nWidth;
        float m_fZoom;
        friend bool operator==(const CShown&, const CShown&) = default;
    };
    CShown Shown() const { return CShown{m_nViewStart, m_nPhaseLength, m_nWidth, m_fZoom}; }
    void Redraw(const CShown& before);
    double VisibleTime() const;
    int64_t NextTick(int64_t nTick, int32_t x) const;

    ITrackView& m_View;
    int32_t m_nWidth = 0;
    int32_t m_nScalePos = 0;
    int32_t m_nPhasePos = 0;
    bool m_bWholeLabels = false;
};
