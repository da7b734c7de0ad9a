#include "browser/EffectTreePanel.h"

#include "app/StatusText.h"
#include "platform/Paths.h"

bool CEffectTreePanel::s_bCancelEdit = false;

CEffectTreePanel::CEffectTreePanel(CEditContext& context, ITreeView& view, IImportView& importView,
                                   const CTreeOptions& options)
    : CLibraryPanel(context, context.m_EffectTree, eEffectPanel_Tree, view, c_EffectMessages, options),
      m_Editor(context),
      m_ImportView(importView)
{
}

std::vector<CMenuEntry> CEffectTreePanel::GetMenu() const
{
    return BuildMenu(c_EffectPanelMenu);
}

void CEffectTreePanel::RunCommand(int32_t nID)
{
    if (const auto* pRoute = FindRoute(c_EffectPanelRoutes, nID))
        (this->*pRoute->m_pfnRun)();
}

void CEffectTreePanel::OnNewEffect()
{
    HLibraryItem hGroup;
    if (FindInsertGroup(hGroup))
        ShowNew(m_Editor.NewEffect(hGroup));
}

void CEffectTreePanel::OnOpenEffects()
{
    if (!WidenAndAsk(c_EffectMessages.m_NoneToOpen, c_EffectMessages.m_ManyToOpen))
        return;
    for (CSpell* pSpell : GetSelectedLeafData(m_Context.m_EffectTree))
        m_Context.m_Documents.Open(*pSpell);
}

void CEffectTreePanel::ScrollTo(const CSpell* pSpell)
{
    m_Tree.EnsureVisible(m_Context.m_EffectTree.FindData(pSpell));
}

// Effects alone come, under the root: their prefabs and groups stay behind.
void CEffectTreePanel::OnImportEffects()
{
    CFileDialogRequest request;
    request.m_bOpen = true;
    request.m_sDefaultExtension = "*.Fx00c";
    request.m_sInitialName = "*.Fx00c";
    request.m_sInitialDirectory = GetCurrentDirectoryPath();
    request.m_sFilter = c_szEffectFilter;
    std::string sPath;
    if (!m_Context.m_Prompts.ChooseFile(request, sPath))
        return;

    CSelectFXToImportDlg dlg(m_Context, sPath);
    std::vector<uint32_t> rows;
    if (!dlg.OnInitDialog() || !m_ImportView.ChooseRows(dlg.GetRows(), rows))
        return;
    dlg.OnOK(rows);
    const size_t nBefore = m_Context.m_SpellMgr.Spells().size();
    m_Editor.ImportEffects(dlg.GetLibrary(), dlg.GetChosen());
    m_Context.m_Host.ShowStatus("Imported " +
                                TellCount(m_Context.m_SpellMgr.Spells().size() - nBefore, "effect") +
                                " from " + TellName(sPath));
}
