#pragma once

#include "browser/MultiSelectTreeCtrl.h"

// Tree items that are dragged: onto a group of the tree, or out of it. What is done with them in the end is the
// panel's.
class CItemDrag
{
public:
    CItemDrag(CMultiSelectTreeCtrl& tree, ITreeView& view); // both borrowed

    bool IsRunning() const { return m_bRunning; }
    HLibraryItem GetTarget() const { return m_hTarget; } // the highlighted group, or none

    void Begin(); // with the selection
    // The whole row of an item counts, as far as the tree goes: outside it a drop opens. A selected item is no
    // target: it is what moves.
    void MoveTo(CPoint pt);
    void End(); // the arrow and no highlight again

private:
    void SetTarget(HLibraryItem hTarget);

    CMultiSelectTreeCtrl& m_Tree;
    ITreeView& m_View;
    bool m_bRunning = false;
    HLibraryItem m_hTarget;
};
