#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "timeline/TrackLayout.h"
#include "timeline/TrackViewOptions.h"

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
    bool m_bLanding = false; // it would come to lie at m_rcLanding, which is in window coordinates too
    CRect m_rcLanding;
};

// Paints the track area: its origin is the surface's, so surface y is window y less the area's top. Draws
// only what is in view.
class CTrackPainter
{
public:
    CTrackPainter(const CTrackList& tracks, const CTrackLayout& layout, const CTrackViewOptions& options,
                  IDrawSurface& surface);

    void Paint(const CCarriedKey& carried, const CLinkLinePoints& linkLine);
    // A block with the key's display name, where that fits, and a dotted frame when it is selected.
    void DrawKey(const CKey& key, const CRect& rc);

private:
    struct CNamed
    {
        const CKey* m_pKey;
        CRect m_rc;
    };
    // A pixel column with ends of selected keys; the numbers are those of the keys.
    struct CColumn
    {
        int32_t m_nTop = INT32_MAX; // of its longest line
        size_t m_nLastMark = SIZE_MAX;
    };

    void PaintRows();
    void DrawFrame(const CKey& key, const CRect& rc);
    void DrawName(const CKey& key, const CRect& rc);
    void PaintNames();
    void PaintCarried(const CCarriedKey& carried);
    void PaintLanding(const CRect& rcLanding);
    void PaintGuides();
    void PaintGuidesOf(const CRect& rc);
    void PaintManyGuides(const std::vector<CRect>& selected);
    void FillColumns(const std::vector<CColumn>& columns, int32_t nBottom);
    void PaintGuide(int32_t x, int32_t nTop);
    void PaintEndMark(int32_t x);
    void PaintLinks();
    void PaintLink(CPoint from, CPoint to);
    CRect SurfaceRect(const CKey& key) const;

    const CTrackList& m_Tracks;
    const CTrackLayout& m_Layout;
    const CTrackViewOptions m_Options;
    IDrawSurface& m_Surface;
    int32_t m_nWidth;
    int32_t m_nHeight;
    std::vector<CNamed> m_Named;               // faces without their names yet, on the surface
    std::unordered_set<const CKey*> m_Targets; // of links in view
};
