#include "browser/TreeSearch.h"

#include "app/Messages.h"
#include "browser/TreeMessages.h"

CTreeSearch::CTreeSearch(CTreeSelection& selection, CLabelEdit& labelEdit, ITreeView& view, IPrompts& prompts)
    : m_Selection(selection),
      m_LabelEdit(labelEdit),
      m_View(view),
      m_Prompts(prompts)
{
}

void CTreeSearch::OpenDialog()
{
    m_LabelEdit.End();
    if (m_pDialog)
        m_pDialog->Raise();
    else
        m_pDialog = m_View.OpenFindDialog();
}

void CTreeSearch::ShowDialog(bool bShow)
{
    if (m_pDialog)
        m_pDialog->SetVisible(bShow);
}

void CTreeSearch::OnDialogClosed()
{
    m_pDialog.reset();
    m_View.TakeFocus();
}

void CTreeSearch::OnFindNext(const CFindOptions& options)
{
    CWaitScope wait(&m_Prompts);
    Find(options);
}

void CTreeSearch::Find(const CFindOptions& options)
{
    if (options.m_sText.empty())
        return;
    m_Last = options;
    Run();
}

void CTreeSearch::FindAgain()
{
    if (m_Last.m_sText.empty())
        OpenDialog();
    else
        Run();
}

void CTreeSearch::Run()
{
    m_LabelEdit.End();
    if (m_pDialog)
        m_pDialog->AskOver([this] { Walk(); });
    else
        Walk();
}

void CTreeSearch::Walk()
{
    const CFindOptions search = m_Last; // the questions may lead to another search
    HLibraryItem hFound;
    const EFind eResult = FindInTree(
        m_Selection.Tree(), m_Selection.GetCaret(), search,
        [this] { return ShowMessage(m_Prompts, c_MsgReachedEnd) == EAnswer::eYes; }, hFound);
    if (eResult == EFind::eNotFound)
        ShowMessage(m_Prompts, c_MsgStringNotFound, {search.m_sText});
    if (eResult == EFind::eFound)
        m_Selection.SelectAlone(hFound); // which scrolls to it: the caret is never what is found
}
