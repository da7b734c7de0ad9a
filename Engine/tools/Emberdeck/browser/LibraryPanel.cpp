#include "browser/LibraryPanel.h"

#include "qsnumber.h"

// Commands and label editing. Events and drag and drop are in LibraryPanelEvents.cpp.

namespace
{

constexpr uint32_t c_nManyItems = 4; // more than these are asked for

bool IsLeafItem(const CMultiSelectTreeCtrl& ctrl, HLibraryItem hItem, int32_t, uint32_t)
{
    return ctrl.GetItemKind(hItem) == eImage_Leaf;
}

} // namespace

CLibraryPanel::CLibraryPanel(CEditContext& context, CLibraryTree& tree, uint32_t nTreeID, ITreeView& view,
                             const CPanelMessages& messages, const CTreeOptions& options)
    : m_Tree(tree, view, *this, context.m_Prompts, options),
      m_Context(context),
      m_View(view),
      m_Drag(m_Tree, view),
      m_nTreeID(nTreeID),
      m_Messages(messages)
{
    m_Context.m_Edits.AddListener(this);
}

CLibraryPanel::~CLibraryPanel()
{
    m_Context.m_Edits.RemoveListener(this);
}

void CLibraryPanel::OnCreate(IDialogControls* pControls)
{
    m_SizeCtrl.Initialize(pControls);
    m_SizeCtrl.AddControl(m_nTreeID, 0, 0, 0, 0);
    // A file that has brought no root isn't given one before something is put into it.
    if (!m_Tree.Tree().GetRootItem())
        Editor().EnsureRoot();
}

bool CLibraryPanel::CanInsert() const
{
    if (!m_Tree.Tree().IsGroup(m_Tree.Tree().GetRootItem()))
        return true;
    return IsSingle() && m_Tree.GetItemKind(m_Tree.GetFirstSelectedItem()) == eImage_Group;
}

bool CLibraryPanel::IsSingleLeaf() const
{
    return IsSingle() && m_Tree.GetItemKind(m_Tree.GetFirstSelectedItem()) == eImage_Leaf;
}

void CLibraryPanel::Command(int32_t nID)
{
    if (IsBusy())
        return;
    if (nID == c_nControlOk || nID == c_nControlCancel)
    {
        OnDialogCommand(nID);
        return;
    }
    FinishEdit();
    if (const CCommand* pCommand = FindCommand(nID); pCommand && IsAllowed(pCommand->m_eRule))
        RunCommand(nID);
}

bool CLibraryPanel::IsAllowed(EEnableRule eRule) const
{
    switch (eRule)
    {
    case EEnableRule::eAlways:
    case EEnableRule::eTreeExists:
        return true;
    case EEnableRule::eAnySelected:
        return HasSelection();
    case EEnableRule::eOneSelected:
        return IsSingle();
    case EEnableRule::eOneGroupSelected:
        return CanInsert();
    case EEnableRule::eOnePrefabSelected:
        return IsSingleLeaf();
    default: // the conditions of other owners
        return false;
    }
}

std::vector<CMenuEntry> CLibraryPanel::BuildMenu(const CMenuTable& table) const
{
    std::vector<CMenuEntry> menu;
    for (const CMenuItem& item : table)
    {
        menu.push_back(MakeMenuEntry(item));
        if (const CCommand* pCommand = FindCommand(item.m_nID))
            menu.back().m_bEnabled = IsAllowed(pCommand->m_eRule);
    }
    return menu;
}

// Enter and Esc. In the edit box they end the edit, and mean nothing else.
void CLibraryPanel::OnDialogCommand(int32_t nID)
{
    if (m_Tree.IsEditing())
    {
        CancelEditFlag() = nID == c_nControlCancel;
        m_Tree.EndEdit(); // the focus comes back with it
    }
    else if (nID == c_nControlOk)
        OnOpen();
}

bool CLibraryPanel::OnBeginLabelEdit(HLibraryItem hItem)
{
    if (!m_Tree.Tree().GetParentItem(hItem))
        return true;
    CancelEditFlag() = false;
    return false;
}

void CLibraryPanel::OnEndLabelEdit(const std::string& sText)
{
    const HLibraryItem hItem = m_Tree.GetCaret();
    if (CancelEditFlag() || !hItem)
    {
        m_hNew = {};
        return;
    }
    if (Rename(hItem, sText) == ERename::eInUse)
    {
        ShowMessage(m_Context.m_Prompts, m_Messages.m_NameInUse, {Editor().NameFor(hItem, sText)});
        m_View.TakeFocus();
    }
}

// The first name belongs to the making of the item, as long as nothing has come between.
ERename CLibraryPanel::Rename(HLibraryItem hItem, const std::string& sText)
{
    const bool bFirst = m_hNew && m_hNew == hItem && m_nEditsAtNew == m_Context.m_Edits.GetNumEdits();
    m_hNew = {};
    if (!bFirst)
        return Editor().Rename(hItem, sText);
    CEditScope scope(m_Context.m_Edits, "Name New Item");
    scope.Continue();
    return Editor().Rename(hItem, sText);
}

bool CLibraryPanel::FindInsertGroup(HLibraryItem& hGroup) const
{
    const CLibraryTree& tree = m_Tree.Tree();
    hGroup = m_Tree.GetCaret();
    if (tree.IsGroup(hGroup))
        return true;
    hGroup = {};
    return !tree.IsGroup(tree.GetRootItem());
}

void CLibraryPanel::ShowNew(HLibraryItem hItem)
{
    if (!hItem)
        return;
    m_Tree.SelectOnly(hItem);
    m_hNew = hItem;
    m_nEditsAtNew = m_Context.m_Edits.GetNumEdits();
    m_Tree.EditLabel(hItem);
}

void CLibraryPanel::OnNewGroup()
{
    HLibraryItem hGroup;
    if (FindInsertGroup(hGroup))
        ShowNew(Editor().NewGroup(hGroup));
}

uint32_t CLibraryPanel::CountLeaves()
{
    m_Tree.m_pfnFilter = &IsLeafItem;
    m_Tree.m_pFilterData = 0;
    return m_Tree.CountFiltered(-1);
}

bool CLibraryPanel::WidenAndAsk(const CMessage& none, const CMessage& many)
{
    m_Tree.WidenSelection();
    const uint32_t nCount = CountLeaves();
    if (nCount == 0)
    {
        ShowMessage(m_Context.m_Prompts, none);
        m_View.TakeFocus();
        return false;
    }
    if (nCount <= c_nManyItems)
        return true;
    const EAnswer eAnswer = m_Context.m_Prompts.Ask(QSFormat(many.m_pszText, int(nCount)), many.m_pszCaption,
                                                    many.m_eButtons, many.m_eIcon);
    m_View.TakeFocus();
    return eAnswer == EAnswer::eOk;
}

void CLibraryPanel::OnDuplicate()
{
    if (!WidenAndAsk(m_Messages.m_NoneToDuplicate, m_Messages.m_ManyToDuplicate))
        return;
    std::vector<HLibraryItem> items;
    m_Tree.GetSelectedItems(items);
    // Each copy would be selected alone in its turn: the last one stays so.
    const std::vector<HLibraryItem> copies = Editor().DuplicateItems(items);
    if (!copies.empty())
        m_Tree.SelectOnly(copies.back());
}

void CLibraryPanel::OnDeleteSelection()
{
    m_Tree.WidenSelection();
    const uint32_t nSelected = m_Tree.GetSelectedCount();
    const uint32_t nLeaves = CountLeaves();
    if (nSelected == 0)
        return;
    const CMessage& message = m_Messages.m_DeleteSelection;
    const EAnswer eAnswer =
        m_Context.m_Prompts.Ask(QSFormat(message.m_pszText, int(nSelected - nLeaves), int(nLeaves)),
                                message.m_pszCaption, message.m_eButtons, message.m_eIcon);
    m_View.TakeFocus();
    if (eAnswer != EAnswer::eOk)
        return;
    std::vector<HLibraryItem> items;
    m_Tree.GetSelectedItems(items);
    Editor().DeleteItems(items);
}

void CLibraryPanel::CancelModes()
{
    m_Drag.End();
    m_Tree.CancelModes();
}

// A new or opened library: nothing that runs may go on over it.
void CLibraryPanel::OnTouching(const std::string&, const CTouch& touch)
{
    if (touch.m_eKind == ETouched::eLibrary)
        CancelModes();
}

// A library opens with its root unfolded: closed, it would look like an empty one.
void CLibraryPanel::OnEdit(const CEdit& edit)
{
    if (edit.Touches(ETouched::eLibrary))
        m_Tree.Expand(m_Tree.Tree().GetRootItem(), true);
}
