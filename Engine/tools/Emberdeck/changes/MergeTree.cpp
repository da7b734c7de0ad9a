#include "changes/MergeTree.h"

#include <algorithm>
#include <deque>

#include "changes/FoldedName.h"
#include "changes/MergeOrder.h"
#include "model/LibraryTree.h"

namespace
{

bool IsLeaf(const CItemImage& item)
{
    return item.m_nImage == eImage_Leaf && item.m_nObject;
}

} // namespace

CTreeMerge::CTreeMerge(ETreeSide eSide, const CThree<CLibraryImage>& images)
    : m_eSide(eSide),
      m_Images(images)
{
    for (const auto& pImage : images)
    {
        for (const auto& pGroup : pImage->Tree(eSide))
        {
            for (const CItemImage& item : pGroup->m_Children)
                m_nFree = std::max(m_nFree, item.m_nItem + 1);
        }
    }
    for (const size_t nState : {eState_Mine, eState_Base, eState_Theirs})
        Fill(nState);
}

// From the roots down.
void CTreeMerge::Fill(size_t nState)
{
    CTreeState& state = m_States[nState];
    const CTreeImage& tree = m_Images[nState]->Tree(m_eSide);
    std::deque<std::pair<uint32_t, uint64_t>> open = {{0, 0}};
    while (!open.empty())
    {
        const auto [nHandle, nGroup] = open.front();
        open.pop_front();
        const CGroupImage* pGroup = FindGroup(tree, nHandle);
        for (size_t i = 0; pGroup && i < pGroup->m_Children.size(); ++i)
        {
            const CItemImage& item = pGroup->m_Children[i];
            uint64_t n = CTreeState::c_nLeaf | item.m_nObject;
            if (!IsLeaf(item))
                n = NumberOf(nState, nGroup, nGroup == 0 && i == 0, item);
            if (!IsLeaf(item) && state.m_Nodes.contains(n))
                n = m_nFree++; // a second root like the first
            if (!state.m_Nodes.emplace(n, CNode{nGroup, item}).second)
                continue; // nothing has two leaves
            m_Used.insert(n);
            state.m_Children[nGroup].push_back(n);
            state.m_Order.push_back(n);
            open.emplace_back(item.m_nItem, n);
        }
    }
}

uint64_t CTreeMerge::FirstRoot(size_t nState) const
{
    const auto roots = m_States[nState].m_Children.find(0);
    if (roots == m_States[nState].m_Children.end())
        return 0;
    const uint64_t nRoot = roots->second.front();
    return nRoot & CTreeState::c_nLeaf ? 0 : nRoot;
}

// A file has only what is below the first root: whatever it is called, it is the same in all states.
uint64_t CTreeMerge::NumberOf(size_t nState, uint64_t nParent, bool bFirst, const CItemImage& item)
{
    const CTreeState& mine = m_States[eState_Mine];
    if (nState == eState_Mine)
        return item.m_nItem;
    const uint64_t nRoot =
        bFirst ? (FirstRoot(eState_Base) ? FirstRoot(eState_Base) : FirstRoot(eState_Mine)) : 0;
    uint64_t n = nRoot;
    if (!n && nState == eState_Theirs)
    {
        const auto old = m_BaseNumbers.find(item.m_nItem);
        const CNode* pOld = old != m_BaseNumbers.end() ? m_States[eState_Base].Find(old->second) : nullptr;
        n = pOld && pOld->m_nParent == nParent ? old->second : LikeInMine(nParent, item);
    }
    else if (!n)
    {
        const CNode* pMine = mine.Find(item.m_nItem);
        n = pMine && pMine->m_nParent == nParent ? uint64_t(item.m_nItem) : 0;
    }
    if (!n)
        n = m_Used.contains(item.m_nItem) ? m_nFree++ : item.m_nItem;
    if (nState == eState_Base)
        m_BaseNumbers.emplace(item.m_nItem, n);
    return n;
}

// A group that both sides made in one place, under one name. 0: there is none.
uint64_t CTreeMerge::LikeInMine(uint64_t nParent, const CItemImage& item)
{
    const CTreeState& mine = m_States[eState_Mine];
    const auto siblings = mine.m_Children.find(nParent);
    if (siblings == mine.m_Children.end())
        return 0;
    const auto nameOf = [](const CItemImage& of) { return std::pair(of.m_nImage, FoldedName(of.m_sText)); };
    const auto [likes, bNew] = m_Likes.try_emplace(nParent);
    for (size_t i = siblings->second.size(); bNew && i-- > 0;)
    {
        const uint64_t n = siblings->second[i];
        if (!(n & CTreeState::c_nLeaf) && !m_States[eState_Base].Find(n))
            likes->second[nameOf(mine.Find(n)->m_Item)].push_back(n); // the first comes last
    }
    std::vector<uint64_t>& same = likes->second[nameOf(item)];
    if (same.empty())
        return 0;
    const uint64_t n = same.back();
    same.pop_back();
    return n;
}

bool CTreeMerge::IsMoved(uint64_t nObject, size_t nState) const
{
    const CNode* pBase = m_States[eState_Base].Find(CTreeState::c_nLeaf | nObject);
    const CNode* pNow = m_States[nState].Find(CTreeState::c_nLeaf | nObject);
    return pBase && pNow && pBase->m_nParent != pNow->m_nParent;
}

std::string CTreeMerge::TextOf(uint64_t n) const
{
    for (const size_t nState : {eState_Mine, eState_Theirs, eState_Base})
    {
        if (const CNode* pNode = m_States[nState].Find(n))
            return pNode->m_Item.m_sText;
    }
    return {};
}

CChangeRef CTreeMerge::RefOf(uint64_t n) const
{
    return {n & ~CTreeState::c_nLeaf, TextOf(n)};
}

CDifference CTreeMerge::About(uint64_t n) const
{
    CDifference difference = DifferenceOf(EDifference::eItem, {}, RefOf(n));
    difference.m_eSide = m_eSide;
    return difference;
}

void CTreeMerge::MergeLeaf(uint64_t n, const CObject& object, CMergeNotes& notes)
{
    std::array<const CNode*, c_nNumStates> nodes{};
    for (size_t i = 0; i < c_nNumStates; ++i)
        nodes[i] = m_States[i].Find(n);
    const auto* pMine = nodes[eState_Mine];
    const auto* pTheirs = nodes[eState_Theirs];
    if (!pMine && !pTheirs)
        return;
    EMergeSide eSide = pMine ? EMergeSide::eMine : EMergeSide::eTheirs;
    const auto* pBase = nodes[eState_Base];
    if (pMine && pTheirs && object.m_Whose)
        eSide = *object.m_Whose;
    else if (pMine && pTheirs)
        eSide =
            PickSide(pBase ? &pBase->m_nParent : nullptr, pMine->m_nParent, pTheirs->m_nParent,
                     std::equal_to<uint64_t>(),
                     [&]
                     {
                         const auto placeOf = [&](const CNode* p) {
                             return p ? CChangeValue(CChangePlace{RefOf(p->m_nParent), 0}) : CChangeValue();
                         };
                         CDifference mine = About(n);
                         mine.m_Before = placeOf(pBase);
                         mine.m_After = placeOf(pMine);
                         return notes.Settle(EMergeConflict::eMoved, std::move(mine), placeOf(pTheirs));
                     });
    CMergedNode node;
    node.m_nFrom = StateOf(eSide);
    node.m_nParent = nodes[node.m_nFrom]->m_nParent;
    node.m_bNewThere = !pBase || pBase->m_nParent != node.m_nParent;
    node.m_Item = nodes[node.m_nFrom]->m_Item;
    node.m_Item.m_sText = object.m_sName;
    m_Merged.emplace(n, std::move(node));
    m_MergedOrder.push_back(n);
}

void CTreeMerge::MergeGroup(uint64_t n, CMergeNotes& notes)
{
    CThree<CNode> three;
    for (size_t i = 0; i < c_nNumStates; ++i)
    {
        if (const CNode* pNode = m_States[i].Find(n))
            three[i] = std::shared_ptr<const CNode>(std::shared_ptr<void>(), pNode);
    }
    const auto fillText = [&](CDifference& mine)
    {
        mine.m_eKind = EDifference::eItemText;
        const auto textOf = [&](size_t i)
        { return three[i] ? CChangeValue(three[i]->m_Item.m_sText) : CChangeValue(); };
        mine.m_Before = textOf(eState_Base);
        mine.m_After = textOf(eState_Mine);
        return textOf(eState_Theirs);
    };
    const auto settle = [&](EMergeConflict eWhy)
    {
        CDifference mine = About(n);
        CChangeValue theirs = fillText(mine);
        return notes.Settle(eWhy, std::move(mine), std::move(theirs));
    };
    const EPresence ePresence = PresenceOf(
        three, [&](size_t i) { return three[i]->m_Item.m_sText != three[eState_Base]->m_Item.m_sText; },
        [&] { return settle(EMergeConflict::eDeleted); });
    if (ePresence == EPresence::eNone)
        return;
    CMergedNode node;
    node.m_nFrom = ePresence == EPresence::eTheirs ? eState_Theirs : eState_Mine;
    node.m_nParent = three[node.m_nFrom]->m_nParent;
    node.m_bNewThere = !three[eState_Base];
    node.m_Item = three[node.m_nFrom]->m_Item;
    if (ePresence == EPresence::eBoth)
    {
        const std::string* pBase = three[eState_Base] ? &three[eState_Base]->m_Item.m_sText : nullptr;
        const EMergeSide eText =
            PickSide(pBase, three[eState_Mine]->m_Item.m_sText, three[eState_Theirs]->m_Item.m_sText,
                     std::equal_to<std::string>(), [&] { return settle(EMergeConflict::eField); });
        node.m_Item.m_sText = three[StateOf(eText)]->m_Item.m_sText;
    }
    m_Merged.emplace(n, std::move(node));
    m_MergedOrder.push_back(n);
}

// A group that was deleted, and others lie in it. Those that one side put there anew are a conflict; the others are
// there since another conflict kept them.
void CTreeMerge::AskForGroup(uint64_t n, CMergeNotes& notes)
{
    const CMergedNode& node = m_Merged.at(n);
    const uint64_t nGroup = node.m_nParent;
    if (nGroup == 0 || m_Merged.contains(nGroup))
        return;
    if (!node.m_bNewThere)
    {
        Revive(nGroup);
        return;
    }
    if (!m_Refused.insert(nGroup).second)
        return;
    CDifference mine = About(nGroup);
    const auto itemOf = [&](size_t i)
    {
        const CNode* pNode = m_States[i].Find(nGroup);
        return pNode ? CChangeValue(pNode->m_Item) : CChangeValue();
    };
    mine.m_Before = itemOf(eState_Base);
    mine.m_After = itemOf(eState_Mine);
    const EMergeSide eStands =
        notes.Settle(EMergeConflict::eUsed, std::move(mine), itemOf(eState_Theirs), RefOf(n));
    if (StateOf(eStands) == node.m_nFrom)
        Revive(nGroup);
}

// With the groups that it lies in.
void CTreeMerge::Revive(uint64_t n)
{
    while (n != 0 && !m_Merged.contains(n))
    {
        const size_t nFrom = m_States[eState_Mine].Find(n) ? eState_Mine : eState_Theirs;
        const CNode& old = *m_States[nFrom].Find(n);
        m_Merged.emplace(n, CMergedNode{old.m_nParent, old.m_Item, nFrom, false});
        m_MergedOrder.push_back(n);
        n = old.m_nParent;
    }
}

// What lies in a group that isn't there goes to the next one above.
void CTreeMerge::FindHomes()
{
    for (const uint64_t n : m_MergedOrder)
    {
        CMergedNode& node = m_Merged.at(n);
        while (node.m_nParent != 0 && !m_Merged.contains(node.m_nParent))
            node.m_nParent = m_States[node.m_nFrom].Find(node.m_nParent)->m_nParent;
    }
}

CTreeImage CTreeMerge::Run(const CObjects& objects, CMergeNotes& notes)
{
    for (const size_t nState : {eState_Mine, eState_Theirs})
    {
        for (const uint64_t n : m_States[nState].m_Order)
        {
            if (m_Merged.contains(n) || (nState == eState_Theirs && m_States[eState_Mine].Find(n)))
                continue;
            const auto object = objects.find(n & ~CTreeState::c_nLeaf);
            if (!(n & CTreeState::c_nLeaf))
                MergeGroup(n, notes);
            else if (object != objects.end())
                MergeLeaf(n, object->second, notes);
        }
    }
    for (size_t i = 0; i < m_MergedOrder.size(); ++i) // grows
        AskForGroup(m_MergedOrder[i], notes);
    FindHomes();
    return Build();
}

std::vector<uint64_t> CTreeMerge::MergeChildren(uint64_t nGroup, std::vector<uint64_t> children) const
{
    static const std::vector<uint64_t> c_None;
    const auto listOf = [&](size_t nState) -> const std::vector<uint64_t>&
    {
        const auto found = m_States[nState].m_Children.find(nGroup);
        return found != m_States[nState].m_Children.end() ? found->second : c_None;
    };
    const std::unordered_set<uint64_t> wanted(children.begin(), children.end());
    const auto comesFirst = [&](uint64_t a, uint64_t b)
    {
        const std::string& sLeft = m_Merged.at(a).m_Item.m_sText;
        const std::string& sRight = m_Merged.at(b).m_Item.m_sText;
        return std::tuple(FoldedName(sLeft), sLeft, a & CTreeState::c_nLeaf) <
               std::tuple(FoldedName(sRight), sRight, b & CTreeState::c_nLeaf);
    };
    std::vector<uint64_t> merged = MergeOrder(
        listOf(eState_Base), listOf(eState_Mine), listOf(eState_Theirs),
        [&](uint64_t n) { return wanted.contains(n); }, comesFirst);
    if (merged.size() == children.size())
        return merged;
    // Those whose own group is gone.
    const std::unordered_set<uint64_t> here(merged.begin(), merged.end());
    std::erase_if(children, [&](uint64_t n) { return here.contains(n); });
    std::stable_sort(children.begin(), children.end(), comesFirst);
    merged.insert(merged.end(), children.begin(), children.end());
    return merged;
}

// An item keeps mine's handle as long as it and its group are where mine has them: no item changes its parent.
CTreeImage CTreeMerge::Build()
{
    std::unordered_map<uint64_t, std::vector<uint64_t>> children;
    for (const uint64_t n : m_MergedOrder)
        children[m_Merged.at(n).m_nParent].push_back(n);
    CTreeImage tree;
    struct COpen
    {
        uint64_t m_nGroup;
        uint32_t m_nHandle;
        bool m_bMine;
    };
    std::deque<COpen> open = {{0, 0, true}};
    while (!open.empty())
    {
        const COpen group = open.front();
        open.pop_front();
        const auto found = children.find(group.m_nGroup);
        if (found == children.end() && group.m_nGroup != 0)
            continue;
        auto pGroup = std::make_shared<CGroupImage>();
        pGroup->m_nItem = group.m_nHandle;
        if (found != children.end())
        {
            for (const uint64_t n : MergeChildren(group.m_nGroup, std::move(found->second)))
            {
                CItemImage item = m_Merged.at(n).m_Item;
                const CNode* pMine = m_States[eState_Mine].Find(n);
                const bool bMine = group.m_bMine && pMine && pMine->m_nParent == group.m_nGroup;
                item.m_nItem = bMine ? pMine->m_Item.m_nItem : m_nFree++;
                open.push_back({n, item.m_nItem, bMine});
                pGroup->m_Children.push_back(std::move(item));
            }
        }
        tree.push_back(std::move(pGroup));
    }
    std::sort(tree.begin(), tree.end(), [](const auto& a, const auto& b) { return a->m_nItem < b->m_nItem; });
    return tree;
}
