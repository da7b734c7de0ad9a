#pragma once

#include "browser/ITreeView.h"
#include "browser/TreeSelection.h"

// The edit of a label: at most one item is edited, and it is the caret. It begins at once, or after the double-click
// time when it is asked for by a click.
class CLabelEdit
{
public:
    CLabelEdit(CTreeSelection& selection, ITreeView& view, ITreeParent& parent); // all borrowed

    bool Begin(HLibraryItem hItem); // ends another one first. False: the item is dead, or the parent refuses
    bool IsEditing() const { return bool(m_hEdited); }
    void End();                          // closes the edit box and tells the parent its text
    void EndBelow(HLibraryItem hGroup);  // when what is edited is about to be hidden
    void Cancel();                       // closes it; the text is lost
    void OnRemoving(HLibraryItem hItem); // with all below it

    void BeginLater(HLibraryItem hItem);
    void DontBegin() { m_hWanted = {}; } // something else came meanwhile
    void OnTimer();

private:
    CTreeSelection& m_Selection;
    ITreeView& m_View;
    ITreeParent& m_Parent;
    HLibraryItem m_hEdited; // its label is in the edit box
    HLibraryItem m_hWanted; // the edit begins unless the click was the first half of a double click
};
