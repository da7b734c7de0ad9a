#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "browser/LabelEdit.h"
#include "browser/TreeKeyboard.h"
#include "browser/TreeSearch.h"
#include "browser/TreeSelection.h"
#include "browser/gestures/TreeGesture.h"

struct CTreeOptions
{
    CPoint m_ptDragLimit{4, 4}; // the pointer moves further than this: a drag
    bool m_bCheckBoxes = false; // a press on the state icon is the view's
    bool m_bDisableDragDrop = false;
};

// A tree view with many selected items, without its window: hands what happens to the selection, the running gesture,
// the keyboard, the label edit and the search, and tells the view and the parent what came of it. The operations
// are those of these parts, which say what they do.
//
// It is the one listener of its tree, and hands every change on to the view and the parent.
class CMultiSelectTreeCtrl : private ITreeSelectionOwner
{
public:
    // All borrowed; the view hears nothing before the first event or operation.
    CMultiSelectTreeCtrl(CLibraryTree& tree, ITreeView& view, ITreeParent& parent, IPrompts& prompts,
                         const CTreeOptions& options = {});
    ~CMultiSelectTreeCtrl() override;
    CMultiSelectTreeCtrl(const CMultiSelectTreeCtrl&) = delete;
    CMultiSelectTreeCtrl& operator=(const CMultiSelectTreeCtrl&) = delete;

    CLibraryTree& Tree() const { return m_Items; }
    int GetItemKind(HLibraryItem hItem) const { return m_Items.GetItemImage(hItem); } // 0 group, 2 leaf

    uint32_t GetItemStateEx(HLibraryItem h, uint32_t nMask) const
    {
        return m_Selection.GetItemStateEx(h, nMask);
    }
    bool SetItemStateEx(HLibraryItem hItem, uint32_t nState, uint32_t nMask)
    {
        return m_Selection.SetItemStateEx(hItem, nState, nMask);
    }
    bool IsSelected(HLibraryItem hItem) const { return m_Selection.IsSelected(hItem); }
    bool IsExpanded(HLibraryItem hItem) const { return m_Selection.States().IsExpanded(hItem); }
    HLibraryItem GetCaret() const { return m_Selection.GetCaret(); }
    bool SetCaret(HLibraryItem hItem) { return m_Selection.SetCaret(hItem); }

    HLibraryItem NextVisible(HLibraryItem hItem) const { return m_Selection.States().NextVisible(hItem); }
    HLibraryItem PrevVisible(HLibraryItem hItem) const { return m_Selection.States().PrevVisible(hItem); }
    bool IsVisible(HLibraryItem hItem) const { return m_Selection.States().IsVisible(hItem); }
    void EnsureVisible(HLibraryItem hItem) { m_Selection.EnsureVisible(hItem); }

    HLibraryItem GetFirstSelectedItem() const { return m_Selection.GetFirstSelectedItem(); }
    HLibraryItem GetNextSelectedItem(HLibraryItem h) const { return m_Selection.GetNextSelectedItem(h); }
    uint32_t GetSelectedCount() const { return m_Selection.GetSelectedCount(); }
    void GetSelectedItems(std::vector<HLibraryItem>& list) const { m_Selection.GetSelectedItems(list); }
    bool SelectItem(HLibraryItem hItem, bool bSelect) { return m_Selection.SelectItem(hItem, bSelect); }
    void SelectAllItems(bool bSelect, HLibraryItem hExcept) { m_Selection.SelectAllItems(bSelect, hExcept); }
    void SelectRange(HLibraryItem hFirst, HLibraryItem hLast, bool bKeepOthers)
    {
        m_Selection.SelectRange(hFirst, hLast, bKeepOthers);
    }
    bool SelectOnly(HLibraryItem hItem) { return m_Selection.SelectOnly(hItem); }
    bool SelectChildren(HLibraryItem hParent, bool bSelect, bool bRecurse)
    {
        return m_Selection.SelectChildren(hParent, bSelect, bRecurse);
    }
    void WidenSelection() { m_Selection.WidenSelection(); }

    bool Expand(HLibraryItem hItem, bool bExpand) { return m_Selection.Expand(hItem, bExpand); }
    void ExpandChildren(HLibraryItem hParent, bool bExpand, bool bRecurse)
    {
        m_Selection.ExpandChildren(hParent, bExpand, bRecurse);
    }
    // By the user: with Ctrl the whole branch expands.
    void OnUserExpand(HLibraryItem h, bool bExpand, bool bCtrl)
    {
        m_Selection.ExpandByHand(h, bExpand, bCtrl);
    }

    // How many of the selected items the filter takes; 0 without one.
    using FFilter = bool (*)(const CMultiSelectTreeCtrl&, HLibraryItem hItem, int32_t nArgument,
                             uint32_t nData);
    FFilter m_pfnFilter = nullptr;
    uint32_t m_pFilterData = 0;
    uint32_t CountFiltered(int32_t nArgument) const;

    // The mouse. False from a press: it is the view's own.
    bool OnLeftPress(CPoint pt, CModifiers modifiers);
    void OnMove(CPoint pt, bool bLeftDown);
    void OnLeftRelease() { EndGesture(CTreeGesture::EEnd::eRelease); } // where the last move was
    void OnDoubleClick(CPoint pt, CModifiers modifiers);               // in place of the second press
    void OnRightPress(CPoint pt, CModifiers modifiers);
    void OnRightRelease() { m_View.TakeFocus(); }
    bool OnWheel() const
    {
        return m_pGesture && m_pGesture->HoldsWheel();
    } // true: the wheel is to do nothing
    void OnMouseLost() { EndGesture(CTreeGesture::EEnd::eLost); }
    void OnFocusChange(bool bFocus);
    // A press is tracked, or a band drawn: nothing else may begin.
    bool IsBusy() const { return m_pGesture != nullptr; }
    void CancelModes(); // leaves gesture and label edit without their effect

    // The keyboard. True: it ends here.
    bool OnKey(const CTreeKey& key);
    bool OnCharacter(std::string_view sCharacter, uint64_t nTime);

    bool EditLabel(HLibraryItem hItem) { return !IsBusy() && m_LabelEdit.Begin(hItem); }
    bool IsEditing() const { return m_LabelEdit.IsEditing(); }
    void EndEdit() { m_LabelEdit.End(); }
    void CancelEdit() { m_LabelEdit.Cancel(); }
    void OnEditTimer() { m_LabelEdit.OnTimer(); }

    void OpenFindDialog() { m_Search.OpenDialog(); }
    void FindAgain();
    void FindText(const std::string& sText, bool bWholeWord, bool bMatchCase, bool bDown);
    void OnFindNext(const CFindOptions& options) { m_Search.OnFindNext(options); } // from the dialog
    void OnFindDialogClosed() { m_Search.OnDialogClosed(); }
    void ShowFindDialog(bool bShow) { m_Search.ShowDialog(bShow); }
    const CFindOptions& GetLastSearch() const { return m_Search.GetLast(); }

private:
    bool OnSelChanging(HLibraryItem h, bool bSelect) override { return m_Parent.OnSelChanging(h, bSelect); }
    void OnSelChanged(HLibraryItem h, bool bSelect) override { m_Parent.OnSelChanged(h, bSelect); }
    void OnExpanding(HLibraryItem hItem, bool bExpand) override;
    void OnExpanded(HLibraryItem hItem, bool bExpand) override { m_View.ItemExpanded(hItem, bExpand); }
    void OnStatesChanged() override { m_View.Invalidate(); }
    void OnCaretMoved(HLibraryItem hItem) override { m_View.CaretChanged(hItem); }
    void ScrollTo(HLibraryItem hItem) override { m_View.ScrollTo(hItem); }
    void FinishTyping() override { m_LabelEdit.End(); }

    void OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem);
    void EndGesture(CTreeGesture::EEnd eEnd);

    CLibraryTree& m_Items;
    ITreeView& m_View;
    ITreeParent& m_Parent;
    const CTreeOptions m_Options;

    CTreeSelection m_Selection;
    CLabelEdit m_LabelEdit;
    CTreeSearch m_Search;
    CTreeKeyboard m_Keyboard;
    std::shared_ptr<CTreeGesture> m_pGesture; // null: none runs
};
