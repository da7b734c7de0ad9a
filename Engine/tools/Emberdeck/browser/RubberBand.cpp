#include "browser/RubberBand.h"

#include <algorithm>
#include <cstdlib>

#include "browser/MultiSelectTreeCtrl.h"

bool IsBeyond(CPoint pt, CPoint ptStart, CPoint ptLimit)
{
    return std::abs(int64_t(pt.x) - ptStart.x) > ptLimit.x || std::abs(int64_t(pt.y) - ptStart.y) > ptLimit.y;
}

void CRubberBand::Press(CPoint pt, CModifiers modifiers)
{
    m_bActive = true;
    m_bBand = false;
    m_Modifiers = modifiers;
    m_ptStart = pt;
    m_Preselected.clear();
    if (modifiers.None())
        return;
    for (HLibraryItem h = m_Ctrl.GetFirstSelectedItem(); h; h = m_Ctrl.GetNextSelectedItem(h))
        m_Preselected.insert(h.m_nID);
}

void CRubberBand::Move(CPoint pt)
{
    if (!m_bActive)
        return;
    if (!m_bBand)
    {
        if (!IsBeyond(pt, m_ptStart, m_ptLimit))
            return;
        m_bBand = true;
        if (m_Modifiers.None())
            m_Ctrl.SelectAllItems(false, {});
        m_View.ShowBand({m_ptStart.x, m_ptStart.y, m_ptStart.x + 1, m_ptStart.y + 1});
        return;
    }
    const CRect rcBand = {std::min(m_ptStart.x, pt.x), std::min(m_ptStart.y, pt.y),
                          std::min(std::max(m_ptStart.x, pt.x), INT32_MAX - 1) + 1,
                          std::min(std::max(m_ptStart.y, pt.y), INT32_MAX - 1) + 1};
    m_View.ShowBand(rcBand); // painted by the update, with the items
    Update(rcBand);
}

// The rows have one height, so only labels in the band's rows are asked for.
void CRubberBand::Update(const CRect& rcBand)
{
    const CTreeRows rows = m_View.GetRows();
    int64_t nTop = rows.m_nFirstTop;
    for (HLibraryItem h = m_Ctrl.Tree().GetRootItem(); h; h = m_Ctrl.NextVisible(h))
    {
        bool bTouched = nTop < rcBand.bottom && nTop + rows.m_nHeight > rcBand.top;
        if (bTouched)
        {
            const CRect rc = m_View.GetLabelRect(h);
            bTouched = rc.left < rcBand.right && rc.right > rcBand.left && rc.top < rcBand.bottom &&
                       rc.bottom > rcBand.top;
        }
        UpdateItem(h, bTouched);
        nTop += rows.m_nHeight;
    }
    m_View.Invalidate();
    m_View.UpdateNow();
}

void CRubberBand::UpdateItem(HLibraryItem hItem, bool bTouched)
{
    const bool bSelected = m_Ctrl.IsSelected(hItem);
    const bool bInList = !m_Preselected.empty() && m_Preselected.contains(hItem.m_nID);
    if (!bTouched)
        m_Ctrl.SelectItem(hItem, bInList);
    else if (!bSelected && !bInList)
        m_Ctrl.SelectItem(hItem, true);
    else if (bInList && m_Modifiers.m_bCtrl)
        m_Ctrl.SelectItem(hItem, false);
    else if (bInList && m_Modifiers.m_bShift)
        m_Preselected.erase(hItem.m_nID);
}

void CRubberBand::End()
{
    if (m_bActive && !m_bBand && m_Modifiers.None())
        m_Ctrl.SelectAllItems(false, {});
    Cancel();
}

void CRubberBand::Escape()
{
    m_Ctrl.SelectAllItems(false, {});
    End();
}

void CRubberBand::Cancel()
{
    if (m_bBand)
        m_View.HideBand();
    m_bActive = false;
    m_bBand = false;
    m_Preselected.clear();
}
