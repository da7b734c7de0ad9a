#pragma once

#include <cstdint>

#include "model/TrackList.h"
#include "platform/IDrawSurface.h"
#include "timeline/TimeScale.h"

// What a point on a key means for a press.
enum class EKeyZone
{
    eOutside = 0,
    eBody = 1,
    eLeftEdge = 2,
    eRightEdge = 3
};

// Where things stand in the timeline's window: its parts, the rows, the keys, and the ways back from a
// point. All coordinates are window coordinates in logical pixels.
class CTrackLayout
{
public:
    static constexpr int32_t c_nTrackHeight = 36;
    static constexpr int32_t c_nEdge = 4; // pixels at either end of a key that take its edge

    // Both are borrowed and outlive the layout.
    CTrackLayout(const CTrackList& tracks, const CTimeScale& scale) : m_Tracks(tracks), m_Scale(scale) {}

    // Divides a window of that size among its parts. False, and nothing changed: a size of 0 by 0.
    bool SetSize(int32_t nWidth, int32_t nHeight, int32_t nKeyInfoHeight, int32_t nTimeBarHeight,
                 int32_t nScrollBarWidth);

    CRect GetKeyRect(const CKey& key) const;
    CRect GetRect(uint32_t nTrack, CKeySpan span) const; // of a key on that track; it needn't be there

    // The division truncates, so that row 0 also answers for up to 35 pixels above the rows, and rows go on
    // below the track area.
    CTrack* TrackFromY(int32_t y) const; // null: no row there
    // By time, on the row at the point; null: none. In a pixel column that is shared by two keys this may
    // give another key than the rectangles do.
    CKey* KeyFromPoint(CPoint pt) const;
    CKey* KeyFromRect(CPoint pt) const; // by rectangle, right and bottom excluded; null: none
    EKeyZone HitTestKey(const CKey& key, CPoint pt) const;
    bool IsOverEdge(CPoint pt) const; // in some key, near one of its ends
    CTrack*
    TrackFromKey(const CKey* pKey) const; // by the key's number; null for a null key, or no such track

    // The part of the track area that the scroll bar leaves free.
    CRect VisibleTrackArea() const;

    CRect m_rcKeyInfo;
    CRect m_rcTimeBar;
    CRect m_rcScrollBar;    // runs down past the time bar
    CRect m_rcTrack;        // as wide as the window
    int32_t m_nScrollY = 0; // pixels by which the rows are scrolled up

private:
    CTrack* RowAt(int32_t y) const;

    const CTrackList& m_Tracks;
    const CTimeScale& m_Scale;
};
