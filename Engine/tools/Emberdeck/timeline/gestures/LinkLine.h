#pragma once

#include "timeline/TrackPainter.h"

// The rubber line of the motion link command: from the key's centre to the pointer, with no button held.
class CLinkLine
{
public:
    // From the key's rectangle; nTop is the track area's. All in window coordinates.
    void Begin(const CRect& rcKey, CPoint ptPointer, int32_t nTop)
    {
        m_nTop = nTop;
        m_Points.m_bActive = true;
        m_Points.x0 = static_cast<int32_t>((int64_t(rcKey.left) + rcKey.right) >> 1);
        m_Points.y0 = static_cast<int32_t>((int64_t(rcKey.top) + rcKey.bottom) >> 1) - nTop;
        MoveTo(ptPointer);
    }
    // True: its end is at another place than before.
    bool MoveTo(CPoint pt)
    {
        const CPoint ptEnd{pt.x, pt.y - m_nTop};
        if (ptEnd == CPoint{m_Points.x1, m_Points.y1})
            return false;
        m_Points.x1 = ptEnd.x;
        m_Points.y1 = ptEnd.y;
        return true;
    }
    void End() { m_Points.m_bActive = false; }

    bool IsActive() const { return m_Points.m_bActive; }
    const CLinkLinePoints& GetPoints() const { return m_Points; } // in surface coordinates

private:
    int32_t m_nTop = 0;
    CLinkLinePoints m_Points;
};
