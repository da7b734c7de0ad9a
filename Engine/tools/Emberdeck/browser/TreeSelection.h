#pragma once

#include <vector>

#include "browser/TreeStates.h"

// Who owns a selection, and hears of it. Any of these may change the tree or come back into the selection.
class ITreeSelectionOwner
{
public:
    virtual ~ITreeSelectionOwner() = default;
    virtual bool OnSelChanging(HLibraryItem hItem, bool bSelect) = 0; // true refuses
    virtual void OnSelChanged(HLibraryItem hItem, bool bSelect) = 0;
    virtual void OnExpanding(HLibraryItem hItem, bool bExpand) = 0; // before it happens
    virtual void OnExpanded(HLibraryItem hItem, bool bExpand) = 0;
    virtual void OnStatesChanged() = 0; // what items look like
    virtual void OnCaretMoved(HLibraryItem hItem) = 0;
    virtual void ScrollTo(HLibraryItem hItem) = 0; // whose groups are all expanded
    // Before the caret moves or an item is folded: takes over a text that is typed for the caret.
    virtual void FinishTyping() = 0;
};

// What is selected, expanded and the caret in a tree, without a view. The caret, where keys and single-item commands
// act, is one item or none, and apart from the selection: moving it changes no selected bit.
//
// All that works on the selection goes by the visible order. A hidden item is never selected. Every handle may be
// dead, and is nothing then. Walks over the visible items take time in proportion to them, and no operation takes
// more than a few walks.
class CTreeSelection
{
public:
    CTreeSelection(const CLibraryTree& tree, ITreeSelectionOwner& owner); // both borrowed

    const CLibraryTree& Tree() const { return m_Items; }
    const CTreeStates& States() const { return m_States; }

    // The bits of the mask that the item has.
    uint32_t GetItemStateEx(HLibraryItem hItem, uint32_t nMask) const;
    // Sets the bits of the mask, the caret first. False for a dead item and for a refused change, which leaves
    // the bit, though the caret has moved by then.
    bool SetItemStateEx(HLibraryItem hItem, uint32_t nState, uint32_t nMask);
    bool IsSelected(HLibraryItem hItem) const { return (m_States.Get(hItem) & eState_Selected) != 0; }
    HLibraryItem GetCaret() const { return m_hCaret; }
    bool SetCaret(HLibraryItem hItem);            // none clears it; the groups above it are expanded
    bool IsSingleCaret(HLibraryItem hItem) const; // the caret, and all that is selected

    HLibraryItem GetFirstSelectedItem() const;
    HLibraryItem GetNextSelectedItem(HLibraryItem hItem) const; // null at the end
    uint32_t GetSelectedCount() const { return m_nSelected; }
    void GetSelectedItems(std::vector<HLibraryItem>& list) const;
    bool SelectItem(HLibraryItem hItem, bool bSelect); // of a visible item, its bit alone. False: refused
    void SelectAllItems(bool bSelect, HLibraryItem hExcept);
    // From one to the other, whichever is first. A hidden one counts as what shows of its groups.
    void SelectRange(HLibraryItem hFirst, HLibraryItem hLast, bool bKeepOthers);
    bool SelectOnly(HLibraryItem hItem);   // one that is selected keeps the others. Whether it is selected
    void SelectAlone(HLibraryItem hItem);  // and nothing else, with the caret
    void SelectOrKeep(HLibraryItem hItem); // one that is selected only becomes the caret
    // The children, with bRecurse those of expanded ones, too. True: one of them is the caret.
    bool SelectChildren(HLibraryItem hParent, bool bSelect, bool bRecurse);
    // Expands and selects everything below each selected item.
    void WidenSelection();

    // The fixed end of a Shift selection, for as long as one is made: hElse from now on, when there is none.
    HLibraryItem AnchorOr(HLibraryItem hElse);
    void ForgetAnchor() { m_hAnchor = {}; }

    // Only items with children expand. Collapsing deselects what it hides, and is refused when that is.
    bool Expand(HLibraryItem hItem, bool bExpand);
    void ExpandChildren(HLibraryItem hParent, bool bExpand, bool bRecurse);
    // By the user; with bBranch the whole branch expands.
    void ExpandByHand(HLibraryItem hItem, bool bExpand, bool bBranch);
    bool Reveal(HLibraryItem hItem);        // expands the groups above it. False: it is dead
    void EnsureVisible(HLibraryItem hItem); // and scrolls to it

    // What becomes of the tree. Removing comes before it goes, with all below it; its selection ends without a
    // word. The caret goes to its next neighbour, else the one before, else the parent.
    void OnRemoving(HLibraryItem hItem);
    void OnRemoved();
    void OnCleared();

private:
    struct CBranchResult
    {
        bool m_bCaret = false;
        bool m_bRefused = false;
    };
    CBranchResult SelectBranch(HLibraryItem hParent, bool bSelect, bool bRecurse);
    void SetBits(HLibraryItem hItem, uint32_t nState, uint32_t nMask);
    bool DoExpand(HLibraryItem hItem, bool bExpand);

    const CLibraryTree& m_Items;
    ITreeSelectionOwner& m_Owner;
    CTreeStates m_States;
    uint32_t m_nSelected = 0;
    HLibraryItem m_hCaret;
    HLibraryItem m_hAnchor;  // dead: none
    HLibraryItem m_hEmptied; // the parent of what is just being removed
};
