#include "browser/gestures/TreeGesture.h"

#include <cstdlib>

#include "browser/gestures/ItemPress.h"
#include "browser/gestures/RubberBand.h"

bool IsBeyond(CPoint pt, CPoint ptStart, CPoint ptLimit)
{
    return std::abs(int64_t(pt.x) - ptStart.x) > ptLimit.x || std::abs(int64_t(pt.y) - ptStart.y) > ptLimit.y;
}

std::unique_ptr<CTreeGesture> BeginTreeGesture(const CTreeGestureContext& context, const CTreeHit& hit,
                                               CPoint pt, CModifiers modifiers)
{
    if (!context.m_Selection.Tree().IsAlive(hit.m_hItem) || (hit.m_nFlags & eHit_Empty))
        return std::make_unique<CRubberBand>(context, pt, modifiers);
    if (modifiers.None() && (hit.m_nFlags & eHit_Label) && context.m_Selection.IsSingleCaret(hit.m_hItem))
        return std::make_unique<CLabelPress>(context, hit.m_hItem, pt);
    return std::make_unique<CItemPress>(context, hit.m_hItem, pt, modifiers);
}

void SelectByRightPress(CTreeSelection& selection, const CTreeHit& hit, CModifiers modifiers)
{
    const HLibraryItem hItem = hit.m_hItem;
    const bool bItem = selection.Tree().IsAlive(hItem) && !(hit.m_nFlags & eHit_Nowhere);
    if (modifiers.m_bShift)
    {
        if (!bItem)
            return;
        if (!selection.IsSelected(hItem))
            selection.SelectAllItems(false, hItem);
        selection.SetItemStateEx(hItem, eState_Selected, eState_Selected);
    }
    else if (!modifiers.m_bCtrl)
    {
        if (!bItem || (hit.m_nFlags & eHit_Empty))
            selection.SelectAllItems(false, {});
        else if (hit.m_nFlags & eHit_Item)
            selection.SelectOrKeep(hItem);
    }
}
