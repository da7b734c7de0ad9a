#include "changes/Applier.h"

// Tree items that come, go, and stand in another order or under another text.

namespace
{

struct CItemBack
{
    CLibraryTree& m_Tree;
    CLibraryTree::CTakenItem m_Taken;
    void operator()() { m_Tree.PutBackItem(m_Taken); }
};

struct CItemGone
{
    CLibraryTree& m_Tree;
    HLibraryItem m_hItem;
    void operator()() { m_Tree.DeleteItem(m_hItem); }
};

// Another text for an item, and the old one back.
struct CSetText
{
    CLibraryTree& m_Tree;
    HLibraryItem m_hItem;
    std::string m_sText;
    void operator()() { m_Tree.SwapItemText(m_hItem, m_sText); }
};

struct COrderBack
{
    CLibraryTree& m_Tree;
    HLibraryItem m_hParent;
    std::vector<HLibraryItem> m_Children;
    void operator()() { m_Tree.OrderChildren(m_hParent, m_Children); }
};

HLibraryItem FirstChild(const CLibraryTree& tree, HLibraryItem hParent)
{
    return hParent ? tree.GetChildItem(hParent) : tree.GetRootItem();
}

} // namespace

// The sibling that an item comes behind. What comes in comes one behind the other.
HLibraryItem CApplier::ItemBefore(const CDifference& d)
{
    const CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    const uint32_t nPlace = d.m_Place.m_nPlace;
    HLibraryItem hPrev;
    uint32_t i = 0;
    if (m_LastItem && m_LastItem->m_eSide == d.m_eSide && m_LastItem->m_hParent == hParent &&
        m_LastItem->m_nPlace < nPlace)
    {
        hPrev = m_LastItem->m_hItem;
        i = m_LastItem->m_nPlace + 1;
    }
    HLibraryItem h = hPrev ? tree.GetNextSiblingItem(hPrev) : FirstChild(tree, hParent);
    for (; i < nPlace && h; ++i, h = tree.GetNextSiblingItem(h))
        hPrev = h;
    m_LastItem = CLastItem{d.m_eSide, hParent, HLibraryItem{static_cast<uint32_t>(d.m_Object.m_nSerial)}, i};
    return hPrev;
}

CApplier::TWhy CApplier::DropItem(const CDifference& d, const CItemImage& old)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    if (!tree.IsAlive(hItem) || tree.GetParentItem(hItem) != hParent)
        return c_szGone;
    if (tree.HasChildren(hItem) || CImageMaker::MakeItem(m_Target.m_Library, d.m_eSide, hItem) != old)
        return c_szOther;
    m_LastItem.reset();
    m_Scope.TouchGroup(d.m_eSide, hParent);
    auto& back = Note(CItemBack{tree, {}});
    tree.TakeItem(hItem, back.m_Taken);
    return {};
}

CApplier::TWhy CApplier::DoItem(const CDifference& d)
{
    if (const auto* pOld = std::get_if<CItemImage>(&d.m_Before))
        return DropItem(d, *pOld);
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    const auto* pNew = std::get_if<CItemImage>(&d.m_After);
    if (!pNew || tree.IsAlive(hItem) || (hParent && !tree.IsAlive(hParent)))
        return c_szThere;
    const bool bEffects = d.m_eSide == ETreeSide::eEffects;
    CSpell* pSpell = bEffects && pNew->m_nObject ? FindSpell(pNew->m_nObject) : nullptr;
    CEffectPropertySet* pPrefab = !bEffects && pNew->m_nObject ? FindPrefab(pNew->m_nObject) : nullptr;
    if (pNew->m_nObject && !pSpell && !pPrefab)
        return "what it stands for isn't there";
    m_Scope.TouchGroup(d.m_eSide, hParent);
    const HLibraryItem hPrev = ItemBefore(d);
    Note(CItemGone{tree, hItem});
    const auto restore = [&](auto& side, auto* pObject)
    {
        return side.RestoreItem(hItem, pNew->m_sText, pNew->m_nImage, pNew->m_nSelectedImage, hParent, hPrev,
                                pObject);
    };
    const bool bRestored = bEffects ? restore(m_Target.m_Library.m_EffectTree, pSpell)
                                    : restore(m_Target.m_Library.m_PrefabTree, pPrefab);
    return bRestored ? TWhy() : TWhy("its handle isn't free");
}

CApplier::TWhy CApplier::DoItemOrder(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    const auto* pBefore = std::get_if<std::vector<CChangeRef>>(&d.m_Before);
    const auto* pAfter = std::get_if<std::vector<CChangeRef>>(&d.m_After);
    const size_t nFirst = d.m_Place.m_nPlace;
    if (!tree.IsAlive(hParent) || !pBefore || !pAfter || pBefore->size() != pAfter->size())
        return c_szGone;
    COrderBack back{tree, hParent, {}};
    for (HLibraryItem h = tree.GetChildItem(hParent); h; h = tree.GetNextSiblingItem(h))
        back.m_Children.push_back(h);
    std::vector<HLibraryItem> children = back.m_Children;
    if (nFirst > children.size() || pBefore->size() > children.size() - nFirst)
        return c_szOther;
    std::unordered_map<uint64_t, size_t> left; // to be placed
    for (size_t i = 0; i < pBefore->size(); ++i)
    {
        if ((*pBefore)[i].m_nSerial != children[nFirst + i].m_nID)
            return c_szOther;
        left.emplace((*pBefore)[i].m_nSerial, i);
    }
    for (size_t i = 0; i < pAfter->size(); ++i)
    {
        if (left.erase((*pAfter)[i].m_nSerial) == 0)
            return c_szOther;
        children[nFirst + i] = HLibraryItem{static_cast<uint32_t>((*pAfter)[i].m_nSerial)};
    }
    m_LastItem.reset();
    m_Scope.TouchGroup(d.m_eSide, hParent);
    Note(std::move(back));
    tree.OrderChildren(hParent, children);
    return {};
}

CApplier::TWhy CApplier::DoItemText(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    if (!tree.IsAlive(hItem))
        return c_szGone;
    m_Scope.TouchGroup(d.m_eSide, tree.GetParentItem(hItem));
    return SetField<std::string>(d, tree.GetItemText(hItem),
                                 [&](const std::string& s) {
                                     Note(CSetText{tree, hItem, s})();
                                 });
}
