#include "app/Messages.h"
#include "browser/MultiSelectTreeCtrl.h"
#include "browser/TreeMessages.h"

// Label editing and the find dialog.

bool CMultiSelectTreeCtrl::EditLabel(HLibraryItem hItem)
{
    EndEdit();
    if (!m_Items.IsAlive(hItem) || IsBusy())
        return false;
    TakeFocus();
    if (m_Parent.OnBeginLabelEdit(hItem))
        return false;
    SetCaret(hItem);
    EnsureVisible(hItem);
    m_hEdited = hItem;
    if (!m_View.OpenEditBox(hItem, m_Items.GetItemText(hItem)))
        m_hEdited = {};
    return IsEditing();
}

void CMultiSelectTreeCtrl::EndEdit()
{
    if (!m_hEdited)
        return;
    m_hEdited = {}; // first, since the box loses the focus while it closes
    m_Parent.OnEndLabelEdit(m_View.CloseEditBox());
}

void CMultiSelectTreeCtrl::CancelEdit()
{
    if (!m_hEdited)
        return;
    m_hEdited = {};
    m_View.CloseEditBox();
}

void CMultiSelectTreeCtrl::OpenFindDialog()
{
    EndEdit();
    if (m_pFindDlg)
        m_pFindDlg->Raise();
    else
        m_pFindDlg = m_View.OpenFindDialog();
}

void CMultiSelectTreeCtrl::ShowFindDialog(bool bShow)
{
    if (m_pFindDlg)
        m_pFindDlg->SetVisible(bShow);
}

void CMultiSelectTreeCtrl::OnFindDialogClosed()
{
    m_pFindDlg.reset();
    m_View.TakeFocus();
}

void CMultiSelectTreeCtrl::OnFindNext(const CFindOptions& options)
{
    CWaitScope wait(&m_Prompts);
    FindText(options.m_sText, options.m_bWholeWord, options.m_bMatchCase, options.m_bSearchDown);
}

void CMultiSelectTreeCtrl::FindText(const std::string& sText, bool bWholeWord, bool bMatchCase, bool bDown)
{
    if (sText.empty() || IsBusy())
        return;
    m_Search = {sText, bMatchCase, bWholeWord, bDown};
    RunSearch();
}

void CMultiSelectTreeCtrl::FindAgain()
{
    if (IsBusy())
        return;
    if (m_Search.m_sText.empty())
        OpenFindDialog();
    else
        RunSearch();
}

void CMultiSelectTreeCtrl::RunSearch()
{
    EndEdit();
    const CFindOptions search = m_Search; // the questions may lead to another search
    HLibraryItem hFound;
    const EFind eResult = FindInTree(
        m_Items, m_hCaret, search,
        [this] { return ShowMessage(m_Prompts, c_MsgReachedEnd) == EAnswer::eYes; }, hFound);
    if (eResult == EFind::eNotFound)
        ShowMessage(m_Prompts, c_MsgStringNotFound, {search.m_sText});
    if (eResult != EFind::eFound)
        return;
    SelectOnly({});
    SelectOnly(hFound);
    EnsureVisible(hFound);
}
