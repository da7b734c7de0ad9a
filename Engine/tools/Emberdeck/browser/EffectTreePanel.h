#pragma once

#include "app/EffectEditor.h"
#include "browser/LibraryPanel.h"
#include "browser/SelectFXToImportDlg.h"

// The page of the effects: each leaf of its tree stands for a CSpell.
class CEffectTreePanel : public CLibraryPanel
{
public:
    // All borrowed.
    CEffectTreePanel(CEditContext& context, ITreeView& view, IImportView& importView,
                     const CTreeOptions& options = {});

    std::vector<CMenuEntry> GetMenu() const override;

    void OnOpenEffects();
    void OnNewEffect();
    void OnImportEffects();
    void ScrollTo(const CSpell* pSpell); // its item into view

private:
    void OnOpen() override { OnOpenEffects(); }
    void RunCommand(int32_t nID) override;
    CLibraryEditor& Editor() override { return m_Editor; }
    bool& CancelEditFlag() override { return s_bCancelEdit; }

    static bool s_bCancelEdit;
    CEffectEditor m_Editor;
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
