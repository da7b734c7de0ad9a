#pragma once

#include <memory>

#include "browser/LabelEdit.h"

// What a gesture works on. All borrowed.
struct CTreeGestureContext
{
    CTreeSelection& m_Selection;
    CLabelEdit& m_LabelEdit;
    ITreeView& m_View;
    ITreeParent& m_Parent;
    CPoint m_ptDragLimit;    // the pointer moves further than this: a drag
    bool m_bDisableDragDrop; // nothing is dragged: such a gesture ends there
};

// What a press of the left button begins, until it ends in one of these ways. Ctrl and Shift count as they were at
// the press.
class CTreeGesture
{
public:
    enum class EEnd
    {
        eRelease, // where the last move was
        eDrag,    // the items are dragged from now on
        eLost,    // the mouse is another's now
        eEscape
    };

    virtual ~CTreeGesture() = default;                          // without End: leaves everything as it is
    virtual bool Move(CPoint pt) = 0;                           // true: it is to end as a drag
    virtual void End(EEnd eEnd) = 0;                            // the last call; the control is idle by then
    virtual bool EndsWith(HLibraryItem) const { return false; } // with that item and all below it
    virtual bool HoldsWheel() const { return false; }
};

// The gesture that a press begins there; its first step is done.
std::unique_ptr<CTreeGesture> BeginTreeGesture(const CTreeGestureContext& context, const CTreeHit& hit,
                                               CPoint pt, CModifiers modifiers);

// A press of the right button, which is over at once.
void SelectByRightPress(CTreeSelection& selection, const CTreeHit& hit, CModifiers modifiers);

// Further away than the limit, in x or in y.
bool IsBeyond(CPoint pt, CPoint ptStart, CPoint ptLimit);
