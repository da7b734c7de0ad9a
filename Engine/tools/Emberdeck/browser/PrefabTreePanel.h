#pragma once

#include "app/PrefabEditor.h"
#include "browser/LibraryPanel.h"

// The page of the prefabs: each leaf of its tree stands for one. One of them may be the active prefab, which
// the timeline uses; its item is bold. The mark follows the item when that is moved, and ends with it.
class CPrefabTreePanel : public CLibraryPanel
{
public:
    CPrefabTreePanel(CEditContext& context, ITreeView& view, const CTreeOptions& options = {});

    std::vector<CMenuEntry> GetMenu() const override;

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
    CLibraryEditor& Editor() override { return m_Editor; }
    bool& CancelEditFlag() override { return s_bCancelEdit; }
    void OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem) override;
    void SetActiveItem(HLibraryItem hItem);

    static bool s_bCancelEdit;
    CPrefabEditor m_Editor;
    HLibraryItem m_hActivePrefab;
    HLibraryItem m_hGone; // of the active prefab, when it has gone: an undo brings it back
    // The active prefab while its item is being taken away. Only compared: the prefab may go, too.
    const CEffectPropertySet* m_pLeaving = nullptr;
};

inline constexpr TCommandRoute<CPrefabTreePanel> c_PrefabPanelRoutes[] = {
    {c_nCmdOpenSelection, &CPrefabTreePanel::OnOpenPrefabs},
    {c_nCmdNewGroup, &CPrefabTreePanel::OnNewGroup},
    {c_nCmdNewPrefab, &CPrefabTreePanel::OnNewPrefab},
    {c_nCmdDuplicate, &CPrefabTreePanel::OnDuplicate},
    {c_nCmdDeleteSelection, &CPrefabTreePanel::OnDeleteSelection},
    {c_nCmdRenameItem, &CPrefabTreePanel::OnRenameItem},
    {c_nCmdSetActivePrefab, &CPrefabTreePanel::OnSetActivePrefab},
    {c_nCmdFind, &CPrefabTreePanel::OnFind},
    {c_nCmdFindNext, &CPrefabTreePanel::OnFindNext},
};
