#pragma once

#include <unordered_set>

#include "browser/ITreeView.h"

class CMultiSelectTreeCtrl;

// Selects the items whose labels a rectangle touches while it is drawn with the mouse. Ctrl inverts what was
// selected before under the band, Shift adds to it, neither starts anew; what the band leaves falls back to
// what it was before, but what Shift touched of the old selection does not. The band holds both its end
// points, so a straight line selects, too.
class CRubberBand
{
public:
    CRubberBand(CMultiSelectTreeCtrl& ctrl, ITreeView& view, CPoint ptDragLimit)
        : m_Ctrl(ctrl),
          m_View(view),
          m_ptLimit(ptDragLimit)
    {
    }

    void Press(CPoint pt, CModifiers modifiers);
    void Move(CPoint pt);
    void End();    // a release, or the loss of the mouse; a click on empty space clears the selection
    void Escape(); // deselects everything, what was selected before, too
    void Cancel(); // leaves the selection as it is
    bool IsActive() const { return m_bActive; }
    bool HasBand() const { return m_bBand; }

private:
    void Update(const CRect& rcBand);
    void UpdateItem(HLibraryItem hItem, bool bTouched);

    CMultiSelectTreeCtrl& m_Ctrl;
    ITreeView& m_View;
    CPoint m_ptLimit;
    bool m_bActive = false;
    bool m_bBand = false; // it has left the limit about its start
    CModifiers m_Modifiers;
    CPoint m_ptStart;
    std::unordered_set<uint32_t> m_Preselected; // numbers of items
};

// Further away than the limit, in x or in y.
bool IsBeyond(CPoint pt, CPoint ptStart, CPoint ptLimit);
