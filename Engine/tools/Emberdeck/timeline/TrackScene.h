#pragma once

#include <cstdint>
#include <optional>

#include "timeline/ITrackView.h"
#include "timeline/KeyInfoBar.h"
#include "timeline/KeySelection.h"
#include "timeline/TimeBar.h"
#include "timeline/TrackLayout.h"
#include "timeline/TrackViewOptions.h"
#include "timeline/gestures/LinkLine.h"
#include "timeline/gestures/TrackGesture.h"

// A scroll event from the vertical scroll bar.
enum class EScrollEvent
{
    eLineUp,
    eLineDown,
    ePageUp,
    ePageDown,
    eThumbTrack, // the position comes with it
    eOther       // the end of a thumb's way included
};

// What the timeline's window shows of its effect: where things stand, how far the rows are scrolled, zoom, the
// Key Info bar, the link line, the carried key and the pointer's shape. It changes nothing in the library, and
// asks the window for what has to be painted anew.
class CTrackScene
{
public:
    static constexpr int32_t c_nScrollRange = 200; // of the scroll bar, from 0
    static constexpr int32_t c_nScrollPage = 10;
    static constexpr int32_t c_nMaxScrollPos = c_nScrollRange - c_nScrollPage + 1;

    // All borrowed. The view hears nothing yet.
    CTrackScene(CEditContext& context, CSpell& spell, const CKeySelection& selection, ITrackView& view);

    // A size event, with the heights that the bars have; false: it was ignored. The parts' places are in Layout.
    bool OnSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                int32_t nScrollBarWidth);
    void OnScroll(EScrollEvent eEvent, int32_t nThumbPos);
    // All are off before. Asks for no repaint.
    void SetOptions(const CTrackViewOptions& options);
    // The track area, its origin being the surface's.
    void Paint(IDrawSurface& surface) const;

    void Refresh(); // repaint soon, and Key Info
    void UpdateKeyInfo();
    // The effect may have another phase length. Refreshes.
    void FollowEffect();
    void SetCursor(ECursorShape eShape);
    // The gesture that runs, whose carried key is shown; null: none. Borrowed until the next call.
    void ShowGesture(const CTrackGesture* pGesture) { m_pGesture = pGesture; }
    // Of a carried key, as far as that is shown.
    std::optional<CLanding> Landing() const;

    // Scrolls the current key's track into view, and to the key; without one, to the current track.
    void ShowCurrent();
    // Where the popup menu opens that is called by a key: on the current key, or the free space of its track.
    CPoint GetMenuPoint() const;

    const CTrackLayout& Layout() const { return m_Layout; }
    CTimeBar& TimeBar() { return m_TimeBar; }
    CKeyInfoBar& KeyInfo() { return m_KeyInfo; }
    CLinkLine& LinkLine() { return m_LinkLine; }
    const CLinkLine& LinkLine() const { return m_LinkLine; }
    int32_t GetScrollPos() const { return m_nScrollPos; } // 0 to c_nMaxScrollPos

private:
    const CTrackList& m_Tracks;
    const CKeySelection& m_Selection;
    ITrackView& m_View;
    CTimeBar m_TimeBar;
    CKeyInfoBar m_KeyInfo;
    CTrackLayout m_Layout;
    CTrackViewOptions m_Options;
    CLinkLine m_LinkLine;
    const CTrackGesture* m_pGesture = nullptr;
    ECursorShape m_eCursor = ECursorShape::eArrow;
    int32_t m_nScrollPos = 0;
};
