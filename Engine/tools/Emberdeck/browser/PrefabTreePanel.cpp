#include "browser/PrefabTreePanel.h"

#include <utility>

bool CPrefabTreePanel::s_bCancelEdit = false;

CPrefabTreePanel::CPrefabTreePanel(CEditContext& context, ITreeView& view, const CTreeOptions& options)
    : CLibraryPanel(context, context.m_PrefabTree, ePrefabPanel_Tree, view, c_PrefabMessages, options),
      m_Editor(context)
{
}

std::vector<CMenuEntry> CPrefabTreePanel::GetMenu() const
{
    return BuildMenu(c_PrefabPanelMenu);
}

void CPrefabTreePanel::RunCommand(int32_t nID)
{
    if (const auto* pRoute = FindRoute(c_PrefabPanelRoutes, nID))
        (this->*pRoute->m_pfnRun)();
}

CEffectPropertySet* CPrefabTreePanel::GetActivePrefab() const
{
    return m_Context.m_PrefabTree.GetItemData(m_hActivePrefab);
}

void CPrefabTreePanel::OfferActivePrefab(CEffectPropertySet* pPrefab)
{
    if (!GetActivePrefab() && pPrefab)
        SetActiveItem(m_Context.m_PrefabTree.FindData(pPrefab));
}

void CPrefabTreePanel::SetActiveItem(HLibraryItem hItem)
{
    m_Tree.SetItemStateEx(m_hActivePrefab, 0, eState_Bold);
    m_hActivePrefab = hItem;
    m_hGone = {};
    m_Tree.SetItemStateEx(m_hActivePrefab, eState_Bold, eState_Bold);
}

// An item that moves is copied, then taken away: its prefab has an item still. One that is deleted hasn't.
void CPrefabTreePanel::OnTreeChange(CLibraryTree::EChange eChange, HLibraryItem hItem)
{
    const CPrefabTree& tree = m_Context.m_PrefabTree;
    if (eChange == CLibraryTree::eTree_Removing && m_hActivePrefab && tree.IsAncestor(hItem, m_hActivePrefab))
        m_pLeaving = tree.GetItemData(m_hActivePrefab);
    if (eChange == CLibraryTree::eTree_Removed && m_pLeaving)
    {
        const HLibraryItem hGone = m_hActivePrefab;
        SetActiveItem(tree.FindData(std::exchange(m_pLeaving, nullptr)));
        if (!m_hActivePrefab)
            m_hGone = hGone;
    }
    if (eChange == CLibraryTree::eTree_Inserted && hItem == m_hGone) // undone
        SetActiveItem(hItem);
    if (eChange == CLibraryTree::eTree_Cleared)
        m_hActivePrefab = m_hGone = {};
}

void CPrefabTreePanel::OnSetActivePrefab()
{
    if (m_Tree.Tree().IsLeaf(m_Tree.GetCaret()))
        SetActiveItem(m_Tree.GetCaret());
}

// It becomes active, when none is, before its label is edited.
void CPrefabTreePanel::OnNewPrefab()
{
    HLibraryItem hGroup;
    if (!FindInsertGroup(hGroup))
        return;
    const CEffectTypeDesc* pType = m_Context.m_Host.ChooseEffectType();
    if (pType)
        ShowNew(m_Editor.NewPrefab(hGroup, pType));
}

// One editor after the other; Cancel in one goes on with the next.
void CPrefabTreePanel::OnOpenPrefabs()
{
    if (!WidenAndAsk(c_PrefabMessages.m_NoneToOpen, c_PrefabMessages.m_ManyToOpen))
        return;
    for (CEffectPropertySet* pPrefab : GetSelectedLeafData(m_Context.m_PrefabTree))
    {
        if (m_Context.m_PrefabTree.FindData(pPrefab)) // still there after the editors before it
            m_Context.m_Host.EditProperties(*pPrefab);
    }
}
