#include <utility>

#include "browser/MultiSelectTreeCtrl.h"

// The mouse of the tree control. Ctrl and Shift count as they are at the press.

namespace
{
constexpr uint32_t c_nSelectAndFocus = eState_Selected | eState_Focused;
}

void CMultiSelectTreeCtrl::TakeFocus()
{
    if (!m_View.HasFocus())
        m_View.TakeFocus();
}

// The press first ends a label edit, which writes to the caret. That may have asked something: then the
// release went elsewhere, and the press is nobody's.
bool CMultiSelectTreeCtrl::BeginPress()
{
    m_hEditWanted = {};
    EndEdit();
    TakeFocus();
    return m_View.IsLeftButtonDown();
}

void CMultiSelectTreeCtrl::StartMode(EMouse eMode, CPoint pt)
{
    m_eMouse = eMode;
    m_ptPress = pt;
    m_View.SetCapture();
}

void CMultiSelectTreeCtrl::EndMode()
{
    m_eMouse = EMouse::eIdle; // first, since the end of the capture comes back as its loss
    m_hTracked = {};
    m_View.ReleaseCapture();
}

bool CMultiSelectTreeCtrl::OnLeftPress(CPoint pt, CModifiers modifiers)
{
    if (IsBusy() || !BeginPress())
        return true;
    const CTreeHit hit = m_View.HitTest(pt);
    const HLibraryItem hItem = hit.m_hItem;
    m_PressModifiers = modifiers;
    if (m_Items.IsAlive(hItem) && (hit.m_nFlags & eHit_Button))
        OnUserExpand(hItem, !IsExpanded(hItem), modifiers.m_bCtrl);
    else if (m_Options.m_bCheckBoxes && (hit.m_nFlags & eHit_StateIcon))
        return false;
    else if (!m_Items.IsAlive(hItem) || (hit.m_nFlags & eHit_Empty))
    {
        m_Band.Press(pt, modifiers);
        StartMode(EMouse::eBand, pt);
    }
    else if (modifiers.None() && (hit.m_nFlags & eHit_Label) && IsSelected(hItem) && hItem == m_hCaret &&
             m_nSelected == 1)
    {
        m_hTracked = hItem;
        StartMode(EMouse::eLabel, pt);
    }
    else
        PressItem(hItem, pt);
    m_View.Invalidate();
    return true;
}

// A plain press on a selected item keeps the selection until the release, so that all of it can be dragged.
void CMultiSelectTreeCtrl::PressItem(HLibraryItem hItem, CPoint pt)
{
    if (m_PressModifiers.m_bShift)
    {
        if (!m_Items.IsAlive(m_hAnchor))
            m_hAnchor = m_hCaret ? m_hCaret : hItem;
        SelectRange(m_hAnchor, hItem, !m_PressModifiers.m_bCtrl);
        SetItemStateEx(hItem, eState_Focused, eState_Focused);
    }
    else
    {
        m_hAnchor = {};
        if (!m_PressModifiers.m_bCtrl)
        {
            if (!IsSelected(hItem))
                SelectAllItems(false, hItem);
            SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
        }
    }
    m_hTracked = hItem;
    StartMode(EMouse::eTracking, pt);
}

void CMultiSelectTreeCtrl::OnMove(CPoint pt, bool bLeftDown)
{
    if (!bLeftDown)
        OnMouseLost(); // the release went elsewhere
    else if (m_eMouse == EMouse::eBand)
        m_Band.Move(pt);
    else if (IsBusy() && IsBeyond(pt, m_ptPress, m_Options.m_ptDragLimit))
        BeginDrag();
}

void CMultiSelectTreeCtrl::OnLeftRelease()
{
    if (m_eMouse == EMouse::eBand)
        OnMouseLost();
    else if (IsBusy())
        EndClick();
}

void CMultiSelectTreeCtrl::EndClick()
{
    const HLibraryItem hItem = m_hTracked;
    const bool bLabel = m_eMouse == EMouse::eLabel;
    EndMode();
    if (bLabel)
    {
        m_hEditWanted = hItem;
        m_View.StartEditTimer();
    }
    else if (m_PressModifiers.m_bCtrl && !m_PressModifiers.m_bShift)
        SetItemStateEx(hItem, IsSelected(hItem) ? eState_Focused : c_nSelectAndFocus, c_nSelectAndFocus);
    else if (!m_PressModifiers.m_bShift)
    {
        SelectAllItems(false, hItem);
        SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
    }
    TakeFocus();
    m_Parent.OnClick();
}

void CMultiSelectTreeCtrl::BeginDrag()
{
    const HLibraryItem hItem = m_hTracked;
    EndMode();
    SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
    if (!m_Options.m_bDisableDragDrop)
        m_Parent.OnBeginDrag(hItem, m_ptPress);
}

// A band ends as by its release, the tracking of a click without effect.
void CMultiSelectTreeCtrl::OnMouseLost()
{
    if (!IsBusy())
        return;
    const bool bBand = m_eMouse == EMouse::eBand;
    EndMode();
    if (!bBand)
        return;
    m_Band.End();
    m_Parent.OnClick();
}

void CMultiSelectTreeCtrl::OnDoubleClick(CPoint pt, CModifiers modifiers)
{
    m_hEditWanted = {};
    if (IsBusy())
        return;
    EndEdit();
    const CTreeHit hit = m_View.HitTest(pt);
    if (!(hit.m_nFlags & (eHit_Button | eHit_Icon | eHit_Label)))
        return;
    if (m_Items.HasChildren(hit.m_hItem))
        OnUserExpand(hit.m_hItem, !IsExpanded(hit.m_hItem), modifiers.m_bCtrl);
    if (hit.m_nFlags & (eHit_Icon | eHit_Label))
        m_Parent.OnDoubleClick();
}

void CMultiSelectTreeCtrl::OnRightPress(CPoint pt, CModifiers modifiers)
{
    if (IsBusy())
        return;
    m_hEditWanted = {};
    EndEdit();
    TakeFocus();
    const CTreeHit hit = m_View.HitTest(pt);
    const HLibraryItem hItem = hit.m_hItem;
    const bool bItem = m_Items.IsAlive(hItem);
    if (modifiers.m_bShift)
    {
        if (bItem && !(hit.m_nFlags & eHit_Nowhere))
        {
            if (!IsSelected(hItem))
                SelectAllItems(false, hItem);
            SetItemStateEx(hItem, eState_Selected, eState_Selected);
        }
    }
    else if (!modifiers.m_bCtrl)
    {
        if (!bItem || (hit.m_nFlags & eHit_Empty))
            SelectAllItems(false, {});
        else if (hit.m_nFlags & eHit_Item)
        {
            if (!IsSelected(hItem))
                SelectAllItems(false, hItem);
            SetItemStateEx(hItem, c_nSelectAndFocus, c_nSelectAndFocus);
        }
    }
    m_View.Invalidate();
}

void CMultiSelectTreeCtrl::OnRightRelease()
{
    TakeFocus();
}

void CMultiSelectTreeCtrl::OnEditTimer()
{
    const HLibraryItem hItem = std::exchange(m_hEditWanted, {});
    if (hItem && hItem == m_hCaret && IsSelected(hItem) && m_nSelected == 1 && !IsBusy())
        EditLabel(hItem);
}

// The selection has another colour without the focus.
void CMultiSelectTreeCtrl::OnFocusChange(bool bFocus)
{
    if (!bFocus)
        m_hEditWanted = {};
    if (m_nSelected > 0)
        m_View.Invalidate();
}
