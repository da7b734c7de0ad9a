#include "app/LibraryEditor.h"

#include "app/StatusText.h"
#include "qsstrutils.h"

std::string CLibraryEditor::LabelFor(const char* pszVerb, const std::vector<HLibraryItem>& items) const
{
    size_t nGroups = 0;
    size_t nLeaves = 0;
    for (const HLibraryItem hItem : items)
    {
        nGroups += m_Tree.IsGroup(hItem) ? 1 : 0;
        nLeaves += m_Tree.IsLeaf(hItem) ? 1 : 0;
    }
    const char* pszThing = nGroups == 0 ? m_pszLeaf : nLeaves == 0 ? "Group" : "Item";
    return TellThings(pszVerb, nGroups + nLeaves, pszThing);
}

HLibraryItem CLibraryEditor::EnsureRoot()
{
    const HLibraryItem hFirst = m_Tree.GetRootItem();
    if (hFirst && m_Tree.IsGroup(hFirst))
        return hFirst;

    CEditScope scope(m_Context.m_Edits, "Make Root");
    TouchTree(scope);
    std::vector<HLibraryItem> roots;
    for (HLibraryItem h = hFirst; h; h = m_Tree.GetNextSiblingItem(h))
        roots.push_back(h);
    const HLibraryItem hRoot = m_Tree.InsertGroup(m_pszRoot, {});
    for (const HLibraryItem h : roots)
        m_Tree.MoveItem(h, hRoot);
    return hRoot;
}

bool CLibraryEditor::FindGroup(HLibraryItem& hGroup)
{
    if (!hGroup)
        hGroup = EnsureRoot();
    return m_Tree.IsGroup(hGroup);
}

HLibraryItem CLibraryEditor::NewGroup(HLibraryItem hGroup, const char* pszName)
{
    CEditScope scope(m_Context.m_Edits, "New Group");
    if (!FindGroup(hGroup))
        return {};
    TouchGroup(scope, hGroup);
    return m_Tree.InsertGroup(pszName, hGroup);
}

HLibraryItem CLibraryEditor::Duplicate(HLibraryItem hItem)
{
    CEditScope scope(m_Context.m_Edits, LabelFor("Duplicate", {hItem}));
    CUniqueNames names;
    return m_Tree.IsLeaf(hItem) && IndexNames(1, names) ? DuplicateLeaf(hItem, names) : HLibraryItem();
}

std::vector<HLibraryItem> CLibraryEditor::DuplicateItems(const std::vector<HLibraryItem>& items)
{
    CEditScope scope(m_Context.m_Edits, LabelFor("Duplicate", items));
    std::vector<HLibraryItem> copies;
    CUniqueNames names;
    if (!IndexNames(items.size(), names))
        return copies;
    for (const HLibraryItem hItem : items)
    {
        const HLibraryItem hCopy = m_Tree.IsLeaf(hItem) ? DuplicateLeaf(hItem, names) : HLibraryItem();
        if (hCopy)
            copies.push_back(hCopy);
    }
    Sort();
    return copies;
}

std::string CLibraryEditor::NameFor(HLibraryItem hItem, const std::string& sText) const
{
    return CleanName(sText, m_Tree.IsLeaf(hItem) ? m_nMaxName : c_nMaxEntryName);
}

ERename CLibraryEditor::Rename(HLibraryItem hItem, const std::string& sText)
{
    const std::string sName = NameFor(hItem, sText);
    if (sName.empty() || !m_Tree.GetParentItem(hItem))
        return ERename::eUnchanged;

    CEditScope scope(m_Context.m_Edits, LabelFor("Rename", {hItem}));
    if (!m_Tree.IsLeaf(hItem))
    {
        if (sName == m_Tree.GetItemText(hItem))
            return ERename::eUnchanged;
        TouchGroup(scope, m_Tree.GetParentItem(hItem));
        m_Tree.SetItemText(hItem, sName);
        return ERename::eDone;
    }

    const char* pszOld = LeafName(hItem);
    if (!pszOld || QSStrIEquals(sName.c_str(), pszOld))
        return ERename::eUnchanged;
    if (IsNameTaken(sName))
        return ERename::eInUse;
    RenameLeaf(scope, hItem, sName);
    TouchGroup(scope, m_Tree.GetParentItem(hItem));
    m_Tree.SetItemText(hItem, sName);
    m_Context.m_Documents.RetitleAll();
    Sort();
    return ERename::eDone;
}

bool CLibraryEditor::Delete(HLibraryItem hItem)
{
    const bool bLeaf = m_Tree.IsLeaf(hItem);
    // A leaf beside the root may go; a root group holds what is saved.
    if (!m_Tree.IsAlive(hItem) || (!bLeaf && !m_Tree.GetParentItem(hItem)))
        return false;
    CEditScope scope(m_Context.m_Edits, LabelFor("Delete", {hItem}));
    if (bLeaf)
        return DeleteLeaves(scope, {hItem});

    std::vector<HLibraryItem> leaves;
    for (HLibraryItem h = m_Tree.GetNextItem(hItem); h && m_Tree.IsAncestor(hItem, h);
         h = m_Tree.GetNextItem(h))
    {
        if (m_Tree.IsLeaf(h))
            leaves.push_back(h);
    }
    if (!DeleteLeaves(scope, leaves)) // without their items they would be in no tree
        return false;
    TouchTree(scope);
    m_Tree.DeleteItem(hItem);
    return true;
}

void CLibraryEditor::DeleteItems(const std::vector<HLibraryItem>& items)
{
    CEditScope scope(m_Context.m_Edits, LabelFor("Delete", items));
    std::vector<HLibraryItem> leaves;
    for (const HLibraryItem hItem : items)
    {
        if (m_Tree.IsLeaf(hItem))
            leaves.push_back(hItem);
    }
    if (!DeleteLeaves(scope, leaves))
        return;
    for (const HLibraryItem hItem : items)
        Delete(hItem); // dead by now: nothing
}
