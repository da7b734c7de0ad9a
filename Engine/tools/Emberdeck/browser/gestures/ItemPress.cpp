#include "browser/gestures/ItemPress.h"

namespace
{
constexpr uint32_t c_nSelectAndFocus = eState_Selected | eState_Focused;
}

CItemPress::CItemPress(const CTreeGestureContext& context, HLibraryItem hItem, CPoint ptPress)
    : m_Context(context),
      m_hItem(hItem),
      m_ptPress(ptPress)
{
}

CItemPress::CItemPress(const CTreeGestureContext& context, HLibraryItem hItem, CPoint ptPress,
                       CModifiers modifiers)
    : m_Context(context),
      m_hItem(hItem),
      m_ptPress(ptPress),
      m_Modifiers(modifiers)
{
    CTreeSelection& selection = context.m_Selection;
    if (modifiers.m_bShift)
    {
        const HLibraryItem hCaret = selection.GetCaret();
        selection.SelectRange(selection.AnchorOr(hCaret ? hCaret : hItem), hItem, !modifiers.m_bCtrl);
        selection.SetCaret(hItem);
        return;
    }
    selection.ForgetAnchor();
    if (!modifiers.m_bCtrl)
        selection.SelectOrKeep(hItem);
}

void CItemPress::End(EEnd eEnd)
{
    if (eEnd == EEnd::eDrag)
        Drag();
    if (eEnd != EEnd::eRelease)
        return;
    Click();
    m_Context.m_View.TakeFocus();
    m_Context.m_Parent.OnClick();
}

void CItemPress::Click()
{
    CTreeSelection& selection = m_Context.m_Selection;
    if (m_Modifiers.m_bShift)
        return;
    if (!m_Modifiers.m_bCtrl)
        selection.SelectAlone(m_hItem);
    else
        selection.SetItemStateEx(m_hItem, selection.IsSelected(m_hItem) ? eState_Focused : c_nSelectAndFocus,
                                 c_nSelectAndFocus);
}

void CItemPress::Drag()
{
    m_Context.m_Selection.SetItemStateEx(m_hItem, c_nSelectAndFocus, c_nSelectAndFocus);
    if (!m_Context.m_bDisableDragDrop)
        m_Context.m_Parent.OnBeginDrag(m_hItem, m_ptPress);
}
