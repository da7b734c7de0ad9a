#pragma once

#include <functional>
#include <memory>
#include <string>

#include "browser/TreeTypes.h"

// The find dialog, modeless: a text, whole word, match case, up or down. It opens with an empty text, both
// options off and the direction down; its button is grey while the text is empty.
class IFindDialog
{
public:
    virtual ~IFindDialog() = default; // closes it. Comes from within OnFindDialogClosed, too
    virtual void Raise() = 0;
    virtual void SetVisible(bool bVisible) = 0;
    // Does the work at once. What is asked in it is asked over the dialog, if that is shown.
    virtual void AskOver(const std::function<void()>& work) = 0;
};

// Where the rows stand: one height for all, the first one's top in window coordinates (above the window when
// it is scrolled).
struct CTreeRows
{
    int32_t m_nFirstTop = 0;
    int32_t m_nHeight = 1;
    int32_t m_nPage = 1; // whole rows in view
};

enum class EDragCursor
{
    eNone, // the arrow again
    eOneItem,
    eSeveralItems
};

// What the tree control asks of the window that shows it. The window shows CLibraryTree by itself; what is
// expanded, selected or the caret it learns here. Points are in window coordinates. No call comes back into
// the control before it returns, but for focus changes.
class ITreeView
{
public:
    virtual ~ITreeView() = default;

    virtual CTreeHit HitTest(CPoint pt) const = 0;
    virtual CTreeRows GetRows() const = 0;
    virtual CRect GetLabelRect(HLibraryItem hItem) const = 0; // of a visible item; outside the view, too
    virtual CRect GetClientRect() const = 0;

    // The tree has changed, in the words of CLibraryTree; Removing comes before the change.
    virtual void TreeChanged(CLibraryTree::EChange eChange, HLibraryItem hItem) = 0;
    virtual void ItemExpanded(HLibraryItem hItem, bool bExpanded) = 0;
    virtual void CaretChanged(HLibraryItem hItem) = 0; // none: there is no caret
    virtual void ScrollTo(HLibraryItem hItem) = 0;     // an item whose groups are all expanded
    virtual void Invalidate() = 0;                     // schedules a repaint
    virtual void UpdateNow() = 0;                      // paints what was scheduled
    virtual void ShowBand(const CRect& rc) = 0;        // the outline, 2 pixels wide, in place of the last one
    virtual void HideBand() = 0;

    virtual void TakeFocus() = 0;              // ends a label edit, whose end may ask something
    virtual bool IsLeftButtonDown() const = 0; // the real button, now
    virtual void SetDragCursor(EDragCursor eCursor) = 0;
    // Calls OnEditTimer once, after the double-click time.
    virtual void StartEditTimer() = 0;

    // Opens the edit box over an item's label, with the text selected.
    virtual void OpenEditBox(HLibraryItem hItem, const std::string& sText) = 0;
    // The text that stood in it. A focus that was in the box goes to the tree.
    virtual std::string CloseEditBox() = 0;
    virtual std::unique_ptr<IFindDialog> OpenFindDialog() = 0;
};

// Who owns the control and hears of what happens in it.
class ITreeParent
{
public:
    virtual ~ITreeParent() = default;
    // Before and after each change of a selected bit. True refuses the change.
    virtual bool OnSelChanging(HLibraryItem hItem, bool bSelect)
    {
        (void)hItem;
        (void)bSelect;
        return false;
    }
    virtual void OnSelChanged(HLibraryItem hItem, bool bSelect)
    {
        (void)hItem;
        (void)bSelect;
    }
    virtual void OnItemExpanding(HLibraryItem hItem, bool bExpand) // before it happens
    {
        (void)hItem;
        (void)bExpand;
    }
    virtual void OnBeginDrag(HLibraryItem hItem, CPoint ptPress) = 0;
    virtual void OnClick() {}       // a click or a rubber band has ended
    virtual void OnDoubleClick() {} // on an item's icon or label
    // Before the control's own handling. True: it ends here.
    virtual bool OnKeyDown(const CTreeKey& key) = 0;
    virtual bool OnBeginLabelEdit(HLibraryItem hItem) = 0; // true refuses
    // The edit box has closed with that text; the item still has the old one.
    virtual void OnEndLabelEdit(const std::string& sText) = 0;
    virtual void OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem)
    {
        (void)eChange;
        (void)hItem;
    }
};
