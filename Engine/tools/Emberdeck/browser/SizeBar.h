#pragma once

#include <array>
#include <cstdint>

#include "app/resources/Bars.h"

class CLeftDockBar;
class IDockView;

enum class ESizeBarCursor
{
    eSizeHorizontal,
    eHand
};

// A strip of the bar that is filled with a pattern.
struct CSizeBarBand
{
    CRect m_rc;
    ESizeBarPattern m_eBitmap;
};

// The thin bar along the dock's right edge: a drag changes the dock's width, a click folds it away and brings
// it back. A folded dock isn't dragged.
class CSizeBar
{
public:
    static constexpr size_t c_nBands = 7;

    // Borrowed. nDragX: a pointer that moves so far, or further, drags.
    CSizeBar(CLeftDockBar& dock, IDockView& view, int32_t nDragX);

    // Points are in screen coordinates: the bar itself travels with the drag.
    void OnLeftPress(CPoint ptScreen);
    void OnMove(CPoint ptScreen, bool bLeftDown);
    void OnLeftRelease();
    void OnMouseLost() { m_bPressed = false; } // neither moves nor folds
    void Toggle();                             // folds or unfolds, as a click does; not while it is pressed

    bool IsCollapsed() const { return m_bCollapsed; }
    ESizeBarCursor GetCursor() const
    {
        return m_bCollapsed ? ESizeBarCursor::eHand : ESizeBarCursor::eSizeHorizontal;
    }
    // What a client rectangle is filled with, to be drawn in this order; a frame one pixel wide in the shadow
    // colour goes round it.
    static std::array<CSizeBarBand, c_nBands> GetBands(const CRect& rcClient);

private:
    CLeftDockBar& m_Dock;
    IDockView& m_View;
    const int32_t m_nDragX;
    bool m_bCollapsed = false;
    bool m_bPressed = false;
    bool m_bMoved = false;
    int32_t m_nPressX = 0;
    int32_t m_nPressWidth = 0; // of the dock
};
