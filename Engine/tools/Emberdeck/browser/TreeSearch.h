#pragma once

#include <memory>
#include <string>

#include "browser/LabelEdit.h"
#include "browser/TreeFind.h"
#include "platform/IPrompts.h"

// The find dialog of a tree and its searches. The dialog is there from OpenDialog until it says that it was closed;
// a second one isn't made.
class CTreeSearch
{
public:
    // All borrowed.
    CTreeSearch(CTreeSelection& selection, CLabelEdit& labelEdit, ITreeView& view, IPrompts& prompts);

    void OpenDialog();
    void ShowDialog(bool bShow);                  // nothing without a dialog
    void OnFindNext(const CFindOptions& options); // from the dialog
    void OnDialogClosed();

    void Find(const CFindOptions& options); // without a text: nothing, and the last search stays
    void FindAgain();                       // opens the dialog when nothing was searched yet
    const CFindOptions& GetLast() const { return m_Last; }

private:
    void Run();
    void Walk();

    CTreeSelection& m_Selection;
    CLabelEdit& m_LabelEdit;
    ITreeView& m_View;
    IPrompts& m_Prompts;
    std::unique_ptr<IFindDialog> m_pDialog;
    CFindOptions m_Last;
};
