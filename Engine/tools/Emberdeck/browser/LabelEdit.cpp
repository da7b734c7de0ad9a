#include "browser/LabelEdit.h"

#include <utility>

CLabelEdit::CLabelEdit(CTreeSelection& selection, ITreeView& view, ITreeParent& parent)
    : m_Selection(selection),
      m_View(view),
      m_Parent(parent)
{
}

bool CLabelEdit::Begin(HLibraryItem hItem)
{
    End();
    if (!m_Selection.Tree().IsAlive(hItem))
        return false;
    m_View.TakeFocus();
    if (m_Parent.OnBeginLabelEdit(hItem))
        return false;
    m_Selection.SetCaret(hItem);
    m_Selection.EnsureVisible(hItem);
    m_hEdited = hItem;
    m_View.OpenEditBox(hItem, m_Selection.Tree().GetItemText(hItem));
    return true;
}

void CLabelEdit::End()
{
    m_hWanted = {};
    if (!m_hEdited)
        return;
    m_hEdited = {}; // first, since the box loses the focus while it closes
    m_Parent.OnEndLabelEdit(m_View.CloseEditBox());
}

void CLabelEdit::EndBelow(HLibraryItem hGroup)
{
    if (hGroup != m_hEdited && m_Selection.Tree().IsAncestor(hGroup, m_hEdited))
        End();
}

void CLabelEdit::Cancel()
{
    m_hWanted = {};
    if (!m_hEdited)
        return;
    m_hEdited = {};
    m_View.CloseEditBox();
}

void CLabelEdit::OnRemoving(HLibraryItem hItem)
{
    if (m_Selection.Tree().IsAncestor(hItem, m_hEdited))
        Cancel();
}

void CLabelEdit::BeginLater(HLibraryItem hItem)
{
    m_hWanted = hItem;
    m_View.StartEditTimer();
}

void CLabelEdit::OnTimer()
{
    const HLibraryItem hItem = std::exchange(m_hWanted, {});
    if (hItem && m_Selection.IsSingleCaret(hItem))
        Begin(hItem);
}
