#pragma once

#include "browser/LibraryPanel.h"
#include "browser/SelectFXToImportDlg.h"

constexpr uint32_t c_nEffectTreeID = 1099; // the tree of dialog 181

// The page of the effects: each leaf of its tree stands for a CSpell.
class CEffectTreePanel : public CLibraryPanel
{
public:
    // All borrowed.
    CEffectTreePanel(CEditContext& context, ITreeView& view, IImportView& importView,
                     const CTreeOptions& options = {});

    CPanelMenu GetMenu() const override;

    void OnOpenEffects();
    void OnNewEffect();
    void OnImportEffects();

private:
    void OnOpen() override { OnOpenEffects(); }
    void RunCommand(int32_t nID) override;
    bool& CancelEditFlag() override { return s_bCancelEdit; }

    static bool s_bCancelEdit;
    IImportView& m_ImportView;
};

// Menu 169.
inline constexpr TPanelCommand<CEffectTreePanel> c_EffectPanelCommands[] = {
    {32887, "Open Effects", "Enter", &CEffectTreePanel::HasSelection, &CEffectTreePanel::OnOpenEffects},
    {},
    {32880, "New Group", "", &CEffectTreePanel::CanInsert, &CEffectTreePanel::OnNewGroup},
    {32881, "New Effect", "", &CEffectTreePanel::CanInsert, &CEffectTreePanel::OnNewEffect},
    {32884, "Import Effects...", "", &CEffectTreePanel::Always, &CEffectTreePanel::OnImportEffects},
    {32883, "Duplicate", "Insert", &CEffectTreePanel::HasSelection, &CEffectTreePanel::OnDuplicate},
    {},
    {32885, "Delete Selection", "Delete", &CEffectTreePanel::HasSelection,
     &CEffectTreePanel::OnDeleteSelection},
    {32888, "Rename Item", "F2", &CEffectTreePanel::IsSingle, &CEffectTreePanel::OnRenameItem},
    {},
    {57636, "&Find...", "Ctrl+F", &CEffectTreePanel::Always, &CEffectTreePanel::OnFind},
    {32895, "Find &Next", "F3", &CEffectTreePanel::Always, &CEffectTreePanel::OnFindNext},
};
