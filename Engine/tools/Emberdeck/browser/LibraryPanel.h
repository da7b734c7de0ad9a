#pragma once

#include <string>
#include <vector>

#include "app/DialogSizeCtrl.h"
#include "app/EditContext.h"
#include "app/LibraryEditor.h"
#include "app/MenuEntry.h"
#include "app/resources/DialogIds.h"
#include "browser/MultiSelectTreeCtrl.h"
#include "browser/TreeMessages.h"
#include "browser/gestures/ItemDrag.h"

// What both pages of the library share, without their windows: a tree whose leaves stand for objects of one
// side of the model, label editing, the popup menu, keys, drag and drop, and the commands that only differ in
// words. All changes of model and tree go through the side's editor.
//
// Events of the tree's window come here. Points are in its coordinates.
class CLibraryPanel : private ITreeParent, private IEditListener
{
public:
    ~CLibraryPanel() override;
    CLibraryPanel(const CLibraryPanel&) = delete;
    CLibraryPanel& operator=(const CLibraryPanel&) = delete;

    // At the first creation, with the dialog at its template's size. Gives an empty tree its root.
    void OnCreate(IDialogControls* pControls);
    void OnSize() { m_SizeCtrl.OnParentSize(); }
    // The dock's message 0x8064: the page is shown or hidden, and the find dialog with it.
    void OnPageShown(bool bShown);

    bool OnLeftPress(CPoint pt, CModifiers modifiers); // false: it is the view's own
    void OnMove(CPoint pt, bool bLeftDown);
    void OnLeftRelease(CPoint pt);
    void OnDoubleClick(CPoint pt, CModifiers modifiers);
    void OnRightPress(CPoint pt, CModifiers modifiers);
    // The menu to be shown there; empty: none.
    std::vector<CMenuEntry> OnRightRelease(CPoint pt);
    std::vector<CMenuEntry> OnMenuKey(CPoint& pt); // pt: where it is to be shown
    void OnMouseLost();
    bool OnKey(const CTreeKey& key); // true: it ends here
    bool OnCharacter(std::string_view sCharacter, uint64_t nTime);
    void OnFocusChange(bool bFocus) { m_Tree.OnFocusChange(bFocus); }

    // A command of the menu, when it is enabled; and c_nControlOk and c_nControlCancel, which come from Enter and Esc
    // in the tree or in its edit box.
    void Command(int32_t nID);
    virtual std::vector<CMenuEntry> GetMenu() const = 0;
    // A click, a band or a drag runs: commands that change or close the library are to be refused.
    bool IsBusy() const { return IsDragging() || m_Tree.IsBusy(); }
    bool IsDragging() const { return m_Drag.IsRunning(); }
    HLibraryItem GetDropTarget() const { return m_Drag.GetTarget(); } // the highlighted group, or none
    // Before a command of another window runs: takes over a text that is still in the edit box.
    void FinishEdit() { m_Tree.EndEdit(); }
    // Items that were changed from elsewhere: selected alone, and in view. Dead ones are passed over. Nothing while
    // IsBusy.
    void ShowItems(const std::vector<HLibraryItem>& items);
    void CancelModes(); // ends edit, click, band and drag without their effect

    // Conditions of the commands: they go by the selection, while the commands act on the caret.
    bool HasSelection() const { return m_Tree.GetSelectedCount() > 0; }
    bool IsSingle() const { return m_Tree.GetSelectedCount() == 1; }
    // One group. A tree without a root group counts, since what is made there gets it first.
    bool CanInsert() const;
    bool IsSingleLeaf() const;

    void OnNewGroup();
    void OnRenameItem() { m_Tree.EditLabel(m_Tree.GetCaret()); }
    void OnDuplicate();
    void OnDeleteSelection();
    void OnFind() { m_Tree.OpenFindDialog(); }
    void OnFindNext() { m_Tree.FindAgain(); }

    CMultiSelectTreeCtrl m_Tree;
    DialogSizeCtrl m_SizeCtrl;

protected:
    CLibraryPanel(CEditContext& context, CLibraryTree& tree, uint32_t nTreeID, ITreeView& view,
                  const CPanelMessages& messages, const CTreeOptions& options);

    virtual void OnOpen() = 0;
    virtual void RunCommand(int32_t nID) = 0; // enabled by now; one that isn't the panel's does nothing
    std::vector<CMenuEntry> BuildMenu(const CMenuTable& table) const;
    virtual CLibraryEditor& Editor() = 0;
    virtual bool& CancelEditFlag() = 0; // the label edit in progress was ended by Cancel

    // The group that a new item goes to: the caret, or none for the root that is to be made. False: neither.
    bool FindInsertGroup(HLibraryItem& hGroup) const;
    void ShowNew(HLibraryItem hItem); // selected, visible, and its label is edited
    // Widens the selection and asks when it holds many leaves. False: not to go on.
    bool WidenAndAsk(const CMessage& none, const CMessage& many);
    // What the selected leaves of the side's tree stand for.
    template <class TObject>
    std::vector<TObject*> GetSelectedLeafData(const TLibraryTree<TObject>& tree) const
    {
        std::vector<TObject*> data;
        for (HLibraryItem h = m_Tree.GetFirstSelectedItem(); h; h = m_Tree.GetNextSelectedItem(h))
        {
            if (TObject* pObject = tree.GetItemData(h))
                data.push_back(pObject);
        }
        return data;
    }

    CEditContext& m_Context;
    ITreeView& m_View;

private:
    void OnBeginDrag(HLibraryItem, CPoint) override { m_Drag.Begin(); }
    void OnDoubleClick() override;
    bool OnKeyDown(const CTreeKey& key) override;
    bool OnBeginLabelEdit(HLibraryItem hItem) override;
    void OnEndLabelEdit(const std::string& sText) override;
    void OnTouching(const std::string& sLabel, const CTouch& touch) override;
    void OnEdit(const CEdit& edit) override;

    bool IsAllowed(EEnableRule eRule) const;
    void OnDialogCommand(int32_t nID);
    uint32_t CountLeaves();
    ERename Rename(HLibraryItem hItem, const std::string& sText);
    void Drop(CPoint pt);
    void MoveSelection(HLibraryItem hTarget);

    CItemDrag m_Drag;
    HLibraryItem m_hNew;        // whose first name is being edited; none: there is no such item
    uint64_t m_nEditsAtNew = 0; // edits that were done when it was made
    const uint32_t m_nTreeID;
    const CPanelMessages& m_Messages;
};
