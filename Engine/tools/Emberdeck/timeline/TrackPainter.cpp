#include "timeline/TrackPainter.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "timeline/KeyIndex.h"

namespace
{

constexpr CColorRef c_nBackground = 0x646464;
constexpr CColorRef c_nBlack = 0x000000;
constexpr CColorRef c_nWhite = 0xFFFFFF;
constexpr CColorRef c_nRed = 0x0000FF;
constexpr CPenSpec c_Pen = {EPenStyle::eSolid,
                            c_nBlack}; // in every palette: the faces see to it that it shows
constexpr int32_t c_nOverhang = 100;   // keeps the side edges of the strips out of sight
constexpr int32_t c_nMinFill = 1000;   // pixels of background in either direction, at least
constexpr int32_t c_nTextMargin = 5;   // what a key must be wider than its text
constexpr int32_t c_nFrameInset = 4;   // of the dotted frame
constexpr int32_t c_nMark = 5;         // half the width of triangles and circles
constexpr int32_t c_nNameMargin = 3;   // at either side of a name that is fitted in
constexpr int32_t c_nMinName = 8;      // pixels below which no letter has room
constexpr size_t c_nManyGuides = 256;  // keys, above which columns are looked at first

CRect Moved(const CRect& rc, int32_t dx, int32_t dy)
{
    return CRect{rc.left + dx, rc.top + dy, rc.right + dx, rc.bottom + dy};
}

// By shift, which rounds down left of the view start too.
CPoint Centre(const CRect& rc)
{
    return CPoint{static_cast<int32_t>((int64_t(rc.left) + rc.right) >> 1),
                  static_cast<int32_t>((int64_t(rc.top) + rc.bottom) >> 1)};
}

} // namespace

CTrackPainter::CTrackPainter(const CTrackList& tracks, const CTrackLayout& layout,
                             const CTrackViewOptions& options, IDrawSurface& surface)
    : m_Tracks(tracks),
      m_Layout(layout),
      m_Options(options),
      m_Surface(surface),
      m_nWidth(layout.m_rcTrack.Width()),
      m_nHeight(layout.m_rcTrack.Height())
{
}

void CTrackPainter::Paint(const CCarriedKey& carried, const CLinkLinePoints& linkLine)
{
    m_Surface.FillRect(CRect{0, 0, std::max(m_nWidth, c_nMinFill), std::max(m_nHeight, c_nMinFill)},
                       c_nBackground);
    PaintRows();
    if (carried.m_pKey && m_Options.m_bShowLanding)
    {
        if (carried.m_bLanding)
            PaintLanding(Moved(carried.m_rcLanding, 0, -m_Layout.m_rcTrack.top));
    }
    else
    {
        PaintGuides();
    }
    if (m_Options.m_bReadableNames)
    {
        PaintLinks();
        PaintNames();
        PaintCarried(carried);
    }
    else
    {
        PaintCarried(carried);
        PaintLinks();
    }
    if (linkLine.m_bActive)
        PaintLink(CPoint{linkLine.x0, linkLine.y0}, CPoint{linkLine.x1, linkLine.y1});
}

CRect CTrackPainter::SurfaceRect(const CKey& key) const
{
    return Moved(m_Layout.GetKeyRect(key), 0, -m_Layout.m_rcTrack.top);
}

// Keys may be out of order for as long as a gesture runs, so each row in view is looked through; what that
// costs is two products for a key.
void CTrackPainter::PaintRows()
{
    constexpr int32_t nRowHeight = CTrackLayout::c_nTrackHeight;
    for (auto i = static_cast<uint32_t>(m_Layout.m_nScrollY / nRowHeight); i < m_Tracks.GetNumTracks(); ++i)
    {
        const int32_t nTop = static_cast<int32_t>(i) * nRowHeight - m_Layout.m_nScrollY;
        if (nTop >= m_nHeight)
            break;
        m_Surface.DrawSunkenFace(CRect{-c_nOverhang, nTop, m_nWidth + c_nOverhang, nTop + nRowHeight});
        for (const std::unique_ptr<CKey>& pKey : m_Tracks.GetTrack(i)->Keys())
        {
            const CRect rc = SurfaceRect(*pKey);
            if (rc.IsEmpty() || rc.right <= 0 || rc.left >= m_nWidth)
                continue;
            if (!m_Options.m_bReadableNames)
            {
                DrawKey(*pKey, rc);
                continue;
            }
            m_Surface.DrawRaisedFace(rc);
            DrawFrame(*pKey, rc);
            m_Named.push_back(CNamed{pKey.get(), rc});
        }
    }
}

void CTrackPainter::DrawKey(const CKey& key, const CRect& rc)
{
    m_Surface.DrawRaisedFace(rc);
    if (rc.Width() > c_nTextMargin) // else not even an empty text has room
    {
        const std::string sText = key.GetDisplayName();
        if (m_Surface.TextWidth(sText) < rc.Width() - c_nTextMargin)
            m_Surface.DrawTextCentered(rc, sText, c_nBlack);
    }
    DrawFrame(key, rc);
}

void CTrackPainter::DrawFrame(const CKey& key, const CRect& rc)
{
    const CRect rcFrame = rc.Inset(c_nFrameInset);
    if (key.m_bSelected && !rcFrame.IsEmpty())
        m_Surface.DrawRectangle(rcFrame, CPenSpec{EPenStyle::eDotted, c_nBlack},
                                CBrushSpec{EBrushStyle::eNone, c_nBlack});
}

// In what can be seen of the key. Beside the circle that marks the target of a link, since one of them would hide
// the other.
void CTrackPainter::DrawName(const CKey& key, const CRect& rc)
{
    const int32_t nRight = std::min(m_nWidth, m_Layout.VisibleTrackArea().Width());
    CRect rcName = {std::max(rc.left, 0) + c_nNameMargin, rc.top, std::min(rc.right, nRight) - c_nNameMargin,
                    rc.bottom};
    if (std::min(rc.bottom, m_nHeight) - std::max(rc.top, 0) >= m_Surface.TextHeight())
    {
        rcName.top = std::max(rc.top, 0);
        rcName.bottom = std::min(rc.bottom, m_nHeight);
    }
    const int32_t nMiddle = Centre(rc).x;
    if (m_Targets.count(&key) && nMiddle + 2 * c_nMark > rcName.left && nMiddle - 2 * c_nMark < rcName.right)
    {
        if (nMiddle - rcName.left >= rcName.right - nMiddle)
            rcName.right = nMiddle - 2 * c_nMark;
        else
            rcName.left = nMiddle + 2 * c_nMark;
    }
    if (rcName.Width() >= c_nMinName)
        m_Surface.DrawFaceLabel(rc, rcName, key.GetDisplayName(), c_nBlack);
}

void CTrackPainter::PaintNames()
{
    for (const CNamed& named : m_Named)
        DrawName(*named.m_pKey, named.m_rc);
}

void CTrackPainter::PaintCarried(const CCarriedKey& carried)
{
    if (!carried.m_pKey)
        return;
    const CRect rc = Moved(carried.m_rc, 0, -m_Layout.m_rcTrack.top);
    if (!m_Options.m_bReadableNames)
    {
        DrawKey(*carried.m_pKey, rc);
        return;
    }
    m_Surface.DrawRaisedFace(rc);
    DrawFrame(*carried.m_pKey, rc);
    DrawName(*carried.m_pKey, rc);
}

// Where a carried key would lie, on a track or below the last one. It has the guides in place of those that are
// selected: what counts now is where it goes, not where it comes from.
void CTrackPainter::PaintLanding(const CRect& rcLanding)
{
    m_Surface.DrawRectangle(rcLanding, CPenSpec{EPenStyle::eDotted, c_nBlack},
                            CBrushSpec{EBrushStyle::eNone, c_nBlack});
    PaintGuidesOf(rcLanding);
}

void CTrackPainter::PaintGuide(int32_t x, int32_t nTop)
{
    if (x >= 0 && x < m_nWidth)
        m_Surface.DrawLine(CPoint{x, nTop}, CPoint{x, m_nHeight}, c_Pen);
}

void CTrackPainter::PaintEndMark(int32_t x)
{
    const CPoint triangle[] = {
        {x - c_nMark, m_nHeight - c_nMark}, {x + c_nMark, m_nHeight - c_nMark}, {x, m_nHeight}};
    m_Surface.DrawPolygon(triangle, 3, c_Pen, CBrushSpec{EBrushStyle::eSolid, c_nRed});
}

// A selected key shows its ends at the bottom, also when its row is scrolled away.
void CTrackPainter::PaintGuides()
{
    std::vector<CRect> selected;
    for (const CKey& key : m_Tracks.AllKeys())
    {
        if (!key.m_bSelected)
            continue;
        const CRect rc = SurfaceRect(key);
        if (rc.right >= -c_nMark && rc.left <= m_nWidth + c_nMark)
            selected.push_back(rc);
    }
    if (selected.size() > c_nManyGuides)
    {
        PaintManyGuides(selected);
        return;
    }
    for (const CRect& rc : selected)
        PaintGuidesOf(rc);
}

void CTrackPainter::PaintGuidesOf(const CRect& rc)
{
    PaintGuide(rc.left, rc.top);
    PaintGuide(rc.right, rc.top);
    for (const int32_t x : {rc.left, rc.right})
    {
        if (x >= -c_nMark && x <= m_nWidth + c_nMark)
            PaintEndMark(x);
    }
}

// The same picture with a line and a mark for each column instead of each end of a key: what a later one in
// the column covers whole is left out. Lines of one colour may come in any order, and end where the marks begin,
// which cover the rest of them; among the marks each keeps its turn.
void CTrackPainter::PaintManyGuides(const std::vector<CRect>& selected)
{
    const int32_t nMarksTop = m_nHeight - c_nMark;
    const int32_t nColumns = std::max(m_nWidth, 0) + 2 * c_nMark + 1; // the first at x = -c_nMark
    std::vector<CColumn> columns(static_cast<size_t>(nColumns));
    const auto columnAt = [&](int32_t x) -> CColumn*
    {
        const int64_t nColumn = int64_t(x) + c_nMark;
        return nColumn >= 0 && nColumn < nColumns ? &columns[static_cast<size_t>(nColumn)] : nullptr;
    };
    for (size_t i = 0; i < selected.size(); ++i)
    {
        const CRect& rc = selected[i];
        for (const int32_t x : {rc.left, rc.right})
        {
            CColumn* pColumn = columnAt(x);
            if (!pColumn)
                continue;
            pColumn->m_nLastMark = i;
            pColumn->m_nTop = std::min(pColumn->m_nTop, std::max(rc.top, 0));
        }
    }
    FillColumns(columns, nMarksTop);
    for (size_t i = 0; i < selected.size(); ++i)
    {
        const CRect& rc = selected[i];
        for (const int32_t x : {rc.left, rc.right})
        {
            const CColumn* pColumn = columnAt(x);
            if (pColumn && pColumn->m_nLastMark == i)
                PaintEndMark(x);
        }
    }
}

// The lines of many columns, from their tops down to nBottom. Where they stand side by side they are filled
// together, which a surface does many times faster than one thin line after the other.
void CTrackPainter::FillColumns(const std::vector<CColumn>& columns, int32_t nBottom)
{
    const auto topAt = [&](int32_t x) { return columns[static_cast<size_t>(x) + c_nMark].m_nTop; };
    std::set<int32_t> tops;
    for (int32_t x = 0; x < m_nWidth; ++x)
    {
        if (topAt(x) < nBottom)
            tops.insert(topAt(x));
    }
    std::vector<CRect> open; // by x; they end at the top that is looked at
    for (const int32_t nTop : tops)
    {
        std::vector<CRect> strips;
        auto above = open.begin();
        for (int32_t x = 0; x < m_nWidth; ++x)
        {
            if (topAt(x) > nTop)
                continue;
            const int32_t nLeft = x;
            while (x < m_nWidth && topAt(x) <= nTop)
                ++x;
            CRect strip{nLeft, nTop, x, nBottom};
            // One that is as wide above goes on; those that it swallows end here.
            for (; above != open.end() && above->left < x; ++above)
            {
                if (above->left == nLeft && above->right == x)
                    strip.top = above->top;
                else
                    m_Surface.FillRect(CRect{above->left, above->top, above->right, nTop}, c_Pen.m_nColor);
            }
            strips.push_back(strip);
        }
        open = std::move(strips);
    }
    for (const CRect& rc : open)
        m_Surface.FillRect(rc, c_Pen.m_nColor);
}

void CTrackPainter::PaintLinks()
{
    CKeyIndex index(m_Tracks);
    for (const CKey& key : m_Tracks.AllKeys())
    {
        const CKey* pTarget = index.TargetOf(key);
        if (!pTarget)
            continue;
        const CPoint from = Centre(SurfaceRect(key));
        const CPoint to = Centre(SurfaceRect(*pTarget));
        const bool bInView =
            std::max(from.x, to.x) >= -c_nMark - 1 && std::min(from.x, to.x) <= m_nWidth + c_nMark &&
            std::max(from.y, to.y) >= -c_nMark - 1 && std::min(from.y, to.y) <= m_nHeight + c_nMark;
        if (!bInView)
            continue;
        PaintLink(from, to);
        if (m_Options.m_bReadableNames)
            m_Targets.insert(pTarget);
    }
}

void CTrackPainter::PaintLink(CPoint from, CPoint to)
{
    m_Surface.DrawLine(from, to, c_Pen);
    m_Surface.DrawEllipse(CRect{to.x - c_nMark, to.y - c_nMark, to.x + c_nMark + 1, to.y + c_nMark + 1},
                          c_Pen, CBrushSpec{EBrushStyle::eSolid, c_nWhite});
}
