#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "timeline/TrackLayout.h"

// The rubber line of the motion link command, in surface coordinates.
struct CLinkLinePoints
{
    bool m_bActive = false;
    int32_t x0 = 0;
    int32_t y0 = 0;
    int32_t x1 = 0;
    int32_t y1 = 0;
};

// A key on its way from track to track; its rectangle in window coordinates.
struct CCarriedKey
{
    const CKey* m_pKey = nullptr; // null: none
    CRect m_rc;
};

// Paints the track area: its origin is the surface's, so surface y is window y less the area's top. Draws
// only what is in view.
class CTrackPainter
{
public:
    CTrackPainter(const CTrackList& tracks, const CTrackLayout& layout, IDrawSurface& surface);

    void Paint(const CCarriedKey& carried, const CLinkLinePoints& linkLine);
    // A block with the key's display name, where that fits, and a dotted frame when it is selected.
    void DrawKey(const CKey& key, const CRect& rc);

private:
    // A pixel column with ends of selected keys; the numbers are those of the keys.
    struct CColumn
    {
        int32_t m_nTop = INT32_MAX; // of its longest line
        size_t m_nLastLine = SIZE_MAX;
        size_t m_nLastMark = SIZE_MAX;
    };

    void PaintRows();
    void PaintGuides();
    void PaintManyGuides(const std::vector<CRect>& selected);
    void FillColumns(const std::vector<CColumn>& columns, int32_t nBottom);
    void PaintGuide(int32_t x, int32_t nTop);
    void PaintEndMark(int32_t x);
    void PaintLinks();
    void PaintLink(CPoint from, CPoint to);
    CRect SurfaceRect(const CKey& key) const;

    const CTrackList& m_Tracks;
    const CTrackLayout& m_Layout;
    IDrawSurface& m_Surface;
    int32_t m_nWidth;
    int32_t m_nHeight;
};
