#include "browser/gestures/RubberBand.h"

#include <algorithm>

CRubberBand::CRubberBand(const CTreeGestureContext& context, CPoint ptStart, CModifiers modifiers)
    : m_Context(context),
      m_ptStart(ptStart),
      m_Modifiers(modifiers)
{
    if (modifiers.None())
        return;
    const CTreeSelection& selection = context.m_Selection;
    for (HLibraryItem h = selection.GetFirstSelectedItem(); h; h = selection.GetNextSelectedItem(h))
        m_Preselected.insert(h.m_nID);
}

CRubberBand::~CRubberBand()
{
    if (m_bBand)
        m_Context.m_View.HideBand();
}

bool CRubberBand::Move(CPoint pt)
{
    if (!m_bBand)
    {
        if (!IsBeyond(pt, m_ptStart, m_Context.m_ptDragLimit))
            return false;
        m_bBand = true;
        if (m_Modifiers.None())
            m_Context.m_Selection.SelectAllItems(false, {});
        m_Context.m_View.ShowBand({m_ptStart.x, m_ptStart.y, m_ptStart.x + 1, m_ptStart.y + 1});
        return false;
    }
    const CRect rcBand = {std::min(m_ptStart.x, pt.x), std::min(m_ptStart.y, pt.y),
                          std::min(std::max(m_ptStart.x, pt.x), INT32_MAX - 1) + 1,
                          std::min(std::max(m_ptStart.y, pt.y), INT32_MAX - 1) + 1};
    m_Context.m_View.ShowBand(rcBand); // painted by the update, with the items
    Update(rcBand);
    return false;
}

// The rows have one height, so only labels in the band's rows are asked for.
void CRubberBand::Update(const CRect& rcBand)
{
    const CTreeSelection& selection = m_Context.m_Selection;
    const CTreeRows rows = m_Context.m_View.GetRows();
    int64_t nTop = rows.m_nFirstTop;
    for (HLibraryItem h = selection.Tree().GetRootItem(); h; h = selection.States().NextVisible(h))
    {
        bool bTouched = nTop < rcBand.bottom && nTop + rows.m_nHeight > rcBand.top;
        if (bTouched)
        {
            const CRect rc = m_Context.m_View.GetLabelRect(h);
            bTouched = rc.left < rcBand.right && rc.right > rcBand.left;
        }
        UpdateItem(h, bTouched);
        nTop += rows.m_nHeight;
    }
    m_Context.m_View.UpdateNow();
}

void CRubberBand::UpdateItem(HLibraryItem hItem, bool bTouched)
{
    CTreeSelection& selection = m_Context.m_Selection;
    const bool bInList = m_Preselected.contains(hItem.m_nID);
    if (!bTouched)
        selection.SelectItem(hItem, bInList);
    else if (!bInList)
        selection.SelectItem(hItem, true);
    else if (m_Modifiers.m_bCtrl)
        selection.SelectItem(hItem, false);
    else
        m_Preselected.erase(hItem.m_nID);
}

void CRubberBand::End(EEnd eEnd)
{
    if (eEnd == EEnd::eEscape || (!m_bBand && m_Modifiers.None()))
        m_Context.m_Selection.SelectAllItems(false, {});
    m_Context.m_Parent.OnClick();
}
