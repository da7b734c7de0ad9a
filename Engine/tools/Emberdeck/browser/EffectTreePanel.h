#pragma once

#include "browser/LibraryPanel.h"
#include "browser/SelectFXToImportDlg.h"

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

inline constexpr TCommandRoute<CEffectTreePanel> c_EffectPanelRoutes[] = {
    {c_nCmdOpenSelection, &CEffectTreePanel::OnOpenEffects},
    {c_nCmdNewGroup, &CEffectTreePanel::OnNewGroup},
    {c_nCmdNewEffectInGroup, &CEffectTreePanel::OnNewEffect},
    {c_nCmdImportEffects, &CEffectTreePanel::OnImportEffects},
    {c_nCmdDuplicate, &CEffectTreePanel::OnDuplicate},
    {c_nCmdDeleteSelection, &CEffectTreePanel::OnDeleteSelection},
    {c_nCmdRenameItem, &CEffectTreePanel::OnRenameItem},
    {c_nCmdFind, &CEffectTreePanel::OnFind},
    {c_nCmdFindNext, &CEffectTreePanel::OnFindNext},
};
