#pragma once

#include "browser/LibraryPanel.h"

constexpr uint32_t c_nPrefabTreeID = 1116; // the tree of dialog 183

// The page of the prefabs: each leaf of its tree stands for one. One of them may be the active prefab, which
// the timeline uses; its item is bold. The mark follows the item when that is moved, and ends with it.
class CPrefabTreePanel : public CLibraryPanel
{
public:
    CPrefabTreePanel(CEditContext& context, ITreeView& view, const CTreeOptions& options = {});

    CPanelMenu GetMenu() const override;

    CEffectPropertySet* GetActivePrefab() const; // null: none
    HLibraryItem GetActiveItem() const { return m_hActivePrefab; }
    // What the front's IEditorHost hands on.
    void OfferActivePrefab(CEffectPropertySet* pPrefab); // becomes it when there is none
    void ClearActivePrefab() { SetActiveItem({}); }

    void OnOpenPrefabs();
    void OnNewPrefab();
    void OnSetActivePrefab();

private:
    void OnOpen() override { OnOpenPrefabs(); }
    void RunCommand(int32_t nID) override;
    bool& CancelEditFlag() override { return s_bCancelEdit; }
    void OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem) override;
    void SetActiveItem(HLibraryItem hItem);

    static bool s_bCancelEdit;
    HLibraryItem m_hActivePrefab;
    // The active prefab while its item is being taken away. Only compared: the prefab may go, too.
    const void* m_pLeaving = nullptr;
};

// Menu 170.
inline constexpr TPanelCommand<CPrefabTreePanel> c_PrefabPanelCommands[] = {
    {32887, "Open Prefabs", "Enter", &CPrefabTreePanel::HasSelection, &CPrefabTreePanel::OnOpenPrefabs},
    {},
    {32880, "New Group", "", &CPrefabTreePanel::CanInsert, &CPrefabTreePanel::OnNewGroup},
    {32892, "New Prefab", "", &CPrefabTreePanel::CanInsert, &CPrefabTreePanel::OnNewPrefab},
    {32883, "Duplicate", "Insert", &CPrefabTreePanel::HasSelection, &CPrefabTreePanel::OnDuplicate},
    {},
    {32885, "Delete Selection", "Delete", &CPrefabTreePanel::HasSelection,
     &CPrefabTreePanel::OnDeleteSelection},
    {32888, "Rename Item", "F2", &CPrefabTreePanel::IsSingle, &CPrefabTreePanel::OnRenameItem},
    {},
    {32866, "Set Active Prefab", "", &CPrefabTreePanel::IsSingleLeaf, &CPrefabTreePanel::OnSetActivePrefab},
    {},
    {57636, "&Find...", "Ctrl+F", &CPrefabTreePanel::Always, &CPrefabTreePanel::OnFind},
    {32895, "Find &Next", "F3", &CPrefabTreePanel::Always, &CPrefabTreePanel::OnFindNext},
};
