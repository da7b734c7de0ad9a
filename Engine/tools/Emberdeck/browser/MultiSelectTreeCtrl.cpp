#include "browser/MultiSelectTreeCtrl.h"

#include <utility>

CMultiSelectTreeCtrl::CMultiSelectTreeCtrl(CLibraryTree& tree, ITreeView& view, ITreeParent& parent,
                                           IPrompts& prompts, const CTreeOptions& options)
    : m_Items(tree),
      m_View(view),
      m_Parent(parent),
      m_Options(options),
      m_Selection(tree, *this),
      m_LabelEdit(m_Selection, view, parent),
      m_Search(m_Selection, m_LabelEdit, view, prompts),
      m_Keyboard(m_Selection, m_LabelEdit, m_Search, view)
{
    m_Items.SetListener([this](CLibraryTree::EChange eChange, HLibraryItem hItem)
                        { OnTreeChange(eChange, hItem); });
}

CMultiSelectTreeCtrl::~CMultiSelectTreeCtrl()
{
    m_Items.SetListener(nullptr);
}

uint32_t CMultiSelectTreeCtrl::CountFiltered(int32_t nArgument) const
{
    uint32_t nCount = 0;
    if (!m_pfnFilter)
        return 0;
    for (HLibraryItem h = GetFirstSelectedItem(); h; h = GetNextSelectedItem(h))
        nCount += m_pfnFilter(*this, h, nArgument, m_pFilterData);
    return nCount;
}

// The press first ends a label edit, which writes to the caret. That may have asked something: then the
// release went elsewhere, and the press is nobody's.
bool CMultiSelectTreeCtrl::OnLeftPress(CPoint pt, CModifiers modifiers)
{
    if (IsBusy())
        return true;
    EndEdit();
    m_View.TakeFocus();
    if (!m_View.IsLeftButtonDown())
        return true;
    const CTreeHit hit = m_View.HitTest(pt);
    if (m_Items.IsAlive(hit.m_hItem) && (hit.m_nFlags & eHit_Button))
        OnUserExpand(hit.m_hItem, !IsExpanded(hit.m_hItem), modifiers.m_bCtrl);
    else if (m_Options.m_bCheckBoxes && (hit.m_nFlags & eHit_StateIcon))
        return false;
    else
        m_pGesture = BeginTreeGesture({m_Selection, m_LabelEdit, m_View, m_Parent, m_Options.m_ptDragLimit,
                                       m_Options.m_bDisableDragDrop},
                                      hit, pt, modifiers);
    return true;
}

void CMultiSelectTreeCtrl::OnMove(CPoint pt, bool bLeftDown)
{
    const std::shared_ptr<CTreeGesture> pGesture = m_pGesture; // what it selects may end it
    if (!bLeftDown)
        OnMouseLost(); // the release went elsewhere
    else if (pGesture && pGesture->Move(pt))
        EndGesture(CTreeGesture::EEnd::eDrag);
}

void CMultiSelectTreeCtrl::EndGesture(CTreeGesture::EEnd eEnd)
{
    if (const std::shared_ptr<CTreeGesture> pGesture = std::exchange(m_pGesture, nullptr))
        pGesture->End(eEnd);
}

void CMultiSelectTreeCtrl::OnDoubleClick(CPoint pt, CModifiers modifiers)
{
    if (IsBusy())
        return;
    EndEdit();
    const CTreeHit hit = m_View.HitTest(pt);
    if (hit.m_nFlags & (eHit_Button | eHit_Icon | eHit_Label))
        OnUserExpand(hit.m_hItem, !IsExpanded(hit.m_hItem), modifiers.m_bCtrl);
    if (hit.m_nFlags & (eHit_Icon | eHit_Label))
        m_Parent.OnDoubleClick();
}

void CMultiSelectTreeCtrl::OnRightPress(CPoint pt, CModifiers modifiers)
{
    if (IsBusy())
        return;
    EndEdit();
    m_View.TakeFocus();
    SelectByRightPress(m_Selection, m_View.HitTest(pt), modifiers);
}

void CMultiSelectTreeCtrl::OnFocusChange(bool bFocus)
{
    if (!bFocus)
        m_LabelEdit.DontBegin();
    m_View.Invalidate(); // the selection has another colour without the focus
}

bool CMultiSelectTreeCtrl::OnKey(const CTreeKey& key)
{
    m_LabelEdit.DontBegin();
    if (IsBusy())
    {
        if (key.m_eKey == ETreeKey::eEscape)
            EndGesture(CTreeGesture::EEnd::eEscape);
        return true;
    }
    if (key.m_eKey == ETreeKey::eF && key.m_Modifiers.m_bCtrl && !key.m_bAlt)
    {
        OpenFindDialog();
        return true;
    }
    return m_Parent.OnKeyDown(key) || m_Keyboard.OnKey(key);
}

bool CMultiSelectTreeCtrl::OnCharacter(std::string_view sCharacter, uint64_t nTime)
{
    return !IsBusy() && !IsEditing() && m_Keyboard.OnCharacter(sCharacter, nTime);
}

void CMultiSelectTreeCtrl::FindAgain()
{
    if (!IsBusy())
        m_Search.FindAgain();
}

void CMultiSelectTreeCtrl::FindText(const std::string& sText, bool bWholeWord, bool bMatchCase, bool bDown)
{
    if (!IsBusy())
        m_Search.Find({sText, bMatchCase, bWholeWord, bDown});
}

void CMultiSelectTreeCtrl::OnExpanding(HLibraryItem hItem, bool bExpand)
{
    m_Parent.OnItemExpanding(hItem, bExpand);
    if (!bExpand)
        m_LabelEdit.EndBelow(hItem);
}

void CMultiSelectTreeCtrl::OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem)
{
    switch (eChange)
    {
    case CLibraryTree::eTree_Removing:
        m_LabelEdit.OnRemoving(hItem);
        if (m_pGesture && m_pGesture->EndsWith(hItem))
            m_pGesture.reset();
        m_Selection.OnRemoving(hItem);
        break;
    case CLibraryTree::eTree_Removed:
        m_Selection.OnRemoved();
        break;
    case CLibraryTree::eTree_Cleared:
        CancelModes();
        m_Selection.OnCleared();
        break;
    default:
        break;
    }
    m_View.TreeChanged(eChange, hItem);
    m_Parent.OnTreeChange(eChange, hItem);
}

void CMultiSelectTreeCtrl::CancelModes()
{
    CancelEdit();
    m_pGesture.reset();
}
