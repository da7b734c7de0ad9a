#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "browser/ITreeView.h"
#include "browser/RubberBand.h"
#include "browser/TreeFind.h"
#include "platform/IPrompts.h"

struct CTreeOptions
{
    CPoint m_ptDragLimit{4, 4}; // the pointer moves further than this: a drag
    bool m_bCheckBoxes = false; // a press on the state icon is the view's
    bool m_bDisableDragDrop = false;
};

// A tree view with many selected items, without its window. The caret, where keys and single-item commands
// act, is one item or none, and apart from the selection: moving it changes no selected bit.
//
// All that works on the selection goes by the visible order: the root, then down through expanded items.
// A hidden item is never selected. Every handle may be dead, and is nothing then. Walks over the visible items
// take time in proportion to them, and no operation takes more than a few walks.
//
// It is the one listener of its tree, and hands every change on to the view and the parent.
class CMultiSelectTreeCtrl
{
public:
    // All borrowed; the view hears nothing before the first event or operation.
    CMultiSelectTreeCtrl(CLibraryTree& tree, ITreeView& view, ITreeParent& parent, IPrompts& prompts,
                         const CTreeOptions& options = {});
    ~CMultiSelectTreeCtrl();
    CMultiSelectTreeCtrl(const CMultiSelectTreeCtrl&) = delete;
    CMultiSelectTreeCtrl& operator=(const CMultiSelectTreeCtrl&) = delete;

    CLibraryTree& Tree() const { return m_Items; }
    int GetItemKind(HLibraryItem hItem) const { return m_Items.GetItemImage(hItem); } // 0 group, 2 leaf

    // The bits of the mask that the item has.
    uint32_t GetItemStateEx(HLibraryItem hItem, uint32_t nMask) const;
    // Sets the bits of the mask, the caret first. False for a dead item and for a refused change, which leaves
    // the bit, though the caret has moved by then.
    bool SetItemStateEx(HLibraryItem hItem, uint32_t nState, uint32_t nMask);
    bool IsSelected(HLibraryItem hItem) const { return (m_States.Get(hItem) & eState_Selected) != 0; }
    bool IsExpanded(HLibraryItem hItem) const { return (m_States.Get(hItem) & eState_Expanded) != 0; }
    HLibraryItem GetCaret() const { return m_hCaret; }
    bool SetCaret(HLibraryItem hItem); // none clears it; the groups above it are expanded

    HLibraryItem NextVisible(HLibraryItem hItem) const; // null at the end
    HLibraryItem PrevVisible(HLibraryItem hItem) const;
    bool IsVisible(HLibraryItem hItem) const;
    void EnsureVisible(HLibraryItem hItem); // expands the groups above it and scrolls

    // The selection.
    HLibraryItem GetFirstSelectedItem() const;
    HLibraryItem GetNextSelectedItem(HLibraryItem hItem) const;
    uint32_t GetSelectedCount() const { return m_nSelected; }
    uint32_t CountFiltered(int32_t nArgument) const; // 0 without a filter
    void GetSelectedItems(std::vector<HLibraryItem>& list) const;
    bool SelectItem(HLibraryItem hItem, bool bSelect); // of a visible item, its bit alone. False: refused
    void SelectAllItems(bool bSelect, HLibraryItem hExcept);
    // From one to the other, whichever is first. A hidden one counts as what shows of its groups.
    void SelectRange(HLibraryItem hFirst, HLibraryItem hLast, bool bKeepOthers);
    bool SelectOnly(HLibraryItem hItem); // one that is selected keeps the others. Whether it is selected
    // The children, with bRecurse those of expanded ones, too. True: one of them is the caret.
    bool SelectChildren(HLibraryItem hParent, bool bSelect, bool bRecurse);
    // Expands and selects everything below each selected item.
    void WidenSelection();

    // Only items with children expand. Collapsing deselects what it hides, and is refused when that is.
    bool Expand(HLibraryItem hItem, bool bExpand);
    void ExpandChildren(HLibraryItem hParent, bool bExpand, bool bRecurse);
    // By the user: with Ctrl the whole branch expands.
    void OnUserExpand(HLibraryItem hItem, bool bExpand, bool bCtrl);

    // The mouse. False from a press: it is the view's own.
    bool OnLeftPress(CPoint pt, CModifiers modifiers);
    void OnMove(CPoint pt, bool bLeftDown);
    void OnLeftRelease();                                // where the last move was
    void OnDoubleClick(CPoint pt, CModifiers modifiers); // in place of the second press
    void OnRightPress(CPoint pt, CModifiers modifiers);
    void OnRightRelease();
    bool OnWheel() const { return m_Band.HasBand(); } // true: the wheel is to do nothing
    void OnMouseLost();
    void OnEditTimer();
    void OnFocusChange(bool bFocus);
    // The keyboard. True: the key ends here.
    bool OnKey(const CTreeKey& key);
    // A character that is no command, at a time in milliseconds: goes to the next item that begins with what
    // was typed in short order.
    bool OnCharacter(std::string_view sCharacter, uint64_t nTime);
    // A press is tracked, or a band drawn: nothing else may begin.
    bool IsBusy() const { return m_eMouse != EMouse::eIdle; }
    void CancelModes(); // leaves tracking, band and label edit without their effect

    // Label editing. At most one item is edited, and it is the caret.
    bool EditLabel(HLibraryItem hItem);
    bool IsEditing() const { return bool(m_hEdited); }
    void EndEdit();    // closes the edit box and tells the parent its text
    void CancelEdit(); // closes it; the text is lost

    // Find. The dialog is there from OpenFindDialog until it says that it was closed; a second one isn't made.
    void OpenFindDialog();
    void FindAgain(); // opens the dialog when nothing was searched yet
    void FindText(const std::string& sText, bool bWholeWord, bool bMatchCase, bool bDown);
    void OnFindNext(const CFindOptions& options); // from the dialog
    void OnFindDialogClosed();
    void ShowFindDialog(bool bShow); // nothing without a dialog
    const CFindOptions& GetLastSearch() const { return m_Search; }

    using FFilter = bool (*)(const CMultiSelectTreeCtrl&, HLibraryItem hItem, int32_t nArgument,
                             uint32_t nData);
    FFilter m_pfnFilter = nullptr;
    uint32_t m_pFilterData = 0;

private:
    enum class EMouse
    {
        eIdle,
        eTracking, // a press on an item
        eLabel,    // a second press on the label of the one selected item
        eBand
    };

    void OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem);
    void ForgetBranch(HLibraryItem hItem);
    void Reset();
    bool Reveal(HLibraryItem hItem);
    bool DoExpand(HLibraryItem hItem, bool bExpand);
    struct CBranchResult
    {
        bool m_bCaret = false;
        bool m_bRefused = false;
    };
    CBranchResult SelectBranch(HLibraryItem hParent, bool bSelect, bool bRecurse);
    HLibraryItem VisibleAncestor(HLibraryItem hItem) const;
    HLibraryItem NextBelow(HLibraryItem hTop, HLibraryItem hItem, bool bVisible) const;
    HLibraryItem LastVisible() const;
    bool Reaches(HLibraryItem hFrom, HLibraryItem hTo) const;

    bool BeginPress();
    void PressItem(HLibraryItem hItem, CPoint pt);
    void StartMode(EMouse eMode, CPoint pt);
    void EndMode();
    void EndClick();
    void BeginDrag();
    void OnArrow(bool bDown, CModifiers modifiers);
    bool OnTravelKey(ETreeKey eKey);
    void GoTo(HLibraryItem hItem);
    HLibraryItem MovedBy(HLibraryItem hItem, bool bDown, int32_t nRows) const;
    HLibraryItem FindTyped(HLibraryItem hFrom, std::string_view sText) const;
    void RunSearch();
    void TakeFocus();

    CLibraryTree& m_Items;
    ITreeView& m_View;
    ITreeParent& m_Parent;
    IPrompts& m_Prompts;
    const CTreeOptions m_Options;

    CTreeStates m_States;
    uint32_t m_nSelected = 0;
    HLibraryItem m_hCaret;
    HLibraryItem m_hAnchor;  // the fixed end of a Shift selection; none, or dead: none
    HLibraryItem m_hEdited;  // its label is in the edit box
    HLibraryItem m_hEmptied; // the parent of what is just being removed

    EMouse m_eMouse = EMouse::eIdle;
    HLibraryItem m_hTracked;
    CPoint m_ptPress;
    CModifiers m_PressModifiers;
    HLibraryItem m_hEditWanted; // clicked on its label; the edit begins unless it was a double click
    CRubberBand m_Band;

    std::string m_sTyped;
    uint64_t m_nTypedTime = 0;

    std::unique_ptr<IFindDialog> m_pFindDlg;
    CFindOptions m_Search;
};
