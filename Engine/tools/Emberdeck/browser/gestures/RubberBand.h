#pragma once

#include <unordered_set>

#include "browser/gestures/TreeGesture.h"

// Selects the items whose labels a rectangle touches while it is drawn with the mouse. Ctrl inverts what was
// selected before under the band, Shift adds to it, neither starts anew; what the band leaves falls back to
// what it was before, but what Shift touched of the old selection does not. The band holds both its end
// points, so a straight line selects, too.
class CRubberBand : public CTreeGesture
{
public:
    CRubberBand(const CTreeGestureContext& context, CPoint ptStart, CModifiers modifiers);
    ~CRubberBand() override; // the outline goes, the selection stays as it is

    bool Move(CPoint pt) override;
    // A click on empty space clears the selection; Esc deselects everything, what was selected before, too.
    void End(EEnd eEnd) override;
    bool HoldsWheel() const override { return m_bBand; }

private:
    void Update(const CRect& rcBand);
    void UpdateItem(HLibraryItem hItem, bool bTouched);

    const CTreeGestureContext m_Context;
    const CPoint m_ptStart;
    const CModifiers m_Modifiers;
    bool m_bBand = false;                       // it has left the limit about its start
    std::unordered_set<uint32_t> m_Preselected; // numbers of items
};
