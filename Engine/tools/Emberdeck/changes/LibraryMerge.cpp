#include "changes/LibraryMerge.h"

#include <algorithm>

#include "changes/FoldedName.h"
#include "changes/MergeOrder.h"
#include "changes/MergeSpell.h"
#include "changes/SameContent.h"

namespace
{

// The same, but for the numbers in it.
bool IsAlike(const CSpellImage& left, const CSpellImage& right)
{
    return left.m_sName == right.m_sName && left.m_nPhaseLength == right.m_nPhaseLength &&
           std::equal(
               left.m_Tracks.begin(), left.m_Tracks.end(), right.m_Tracks.begin(), right.m_Tracks.end(),
               [](const auto& a, const auto& b)
               {
                   return std::equal(a->m_Keys.begin(), a->m_Keys.end(), b->m_Keys.begin(), b->m_Keys.end(),
                                     [](const auto& p, const auto& q) { return IsSameContent(*p, *q); });
               });
}

} // namespace

CLibraryMerge::CLibraryMerge(const CThree<CLibraryImage>& images, CMergeNotes& notes)
    : m_Images(NumberAlike(images)),
      m_Notes(notes),
      m_Trees{CTreeMerge(ETreeSide::eEffects, m_Images), CTreeMerge(ETreeSide::ePrefabs, m_Images)}
{
    IndexStates();
}

void CLibraryMerge::IndexStates()
{
    for (size_t i = 0; i < c_nNumStates; ++i)
    {
        for (const auto& pPrefab : m_Images[i]->m_Prefabs)
            m_Prefabs[i].emplace(pPrefab->m_nSerial, pPrefab);
        for (const auto& pSpell : m_Images[i]->m_Spells)
            m_Spells[i].emplace(pSpell->m_nSerial, pSpell);
    }
}

void CLibraryMerge::PickSpells()
{
    for (const size_t nState : {eState_Mine, eState_Theirs})
    {
        for (const auto& pSpell : m_Images[nState]->m_Spells)
        {
            const uint64_t n = pSpell->m_nSerial;
            const CThree<CSpellImage> three = StatesOf(m_Spells, n);
            if (nState == eState_Theirs && three[eState_Mine])
                continue;
            const auto isChanged = [&](size_t i)
            { return !IsSameContent(*three[eState_Base], *three[i]) || m_Trees[0].IsMoved(n, i); };
            const auto conflict = [&]
            {
                return m_Notes.SettleWhole(EMergeConflict::eDeleted,
                                           DifferenceOf(EDifference::eEffect, {}, {n, AnyOf(three)->m_sName}),
                                           three);
            };
            const EPresence ePresence = PresenceOf(three, isChanged, conflict);
            if (ePresence != EPresence::eNone)
                m_MergedSpells.emplace(n, MergeSpell(three, ePresence));
        }
    }
    SettleNames(m_Spells, m_MergedSpells, EDifference::eEffect, EDifference::eEffectName);
}

std::shared_ptr<const CSpellImage> CLibraryMerge::MergeSpell(const CThree<CSpellImage>& three,
                                                             EPresence ePresence)
{
    const auto& pBase = three[eState_Base];
    const auto& pMine = three[eState_Mine];
    const auto& pTheirs = three[eState_Theirs];
    if (ePresence != EPresence::eBoth)
        return ePresence == EPresence::eMine ? pMine : pTheirs;
    if (pBase ? pBase == pTheirs || IsSameContent(*pBase, *pTheirs) : IsAlike(*pMine, *pTheirs))
        return pMine;
    if (!pBase)
    {
        const CChangeRef effect = {pMine->m_nSerial, pMine->m_sName};
        const EMergeSide eSide = m_Notes.SettleWhole(EMergeConflict::eAdded,
                                                     DifferenceOf(EDifference::eEffect, {}, effect), three);
        m_AddedBy[0].emplace(pMine->m_nSerial, eSide);
        return three[StateOf(eSide)];
    }
    if (pBase == pMine || IsSameContent(*pBase, *pMine))
        return pTheirs;
    return CSpellMerge(three, m_Prefabs, m_Notes).Run();
}

template <class TNode>
std::vector<std::shared_ptr<const TNode>>
CLibraryMerge::InOrder(const std::vector<std::shared_ptr<const TNode>> CLibraryImage::*pList,
                       const CNodes<TNode>& merged) const
{
    std::array<std::vector<uint64_t>, c_nNumStates> lists;
    for (size_t i = 0; i < c_nNumStates; ++i)
    {
        for (const auto& pNode : (*m_Images[i]).*pList)
            lists[i].push_back(pNode->m_nSerial);
    }
    const auto nameOf = [&](uint64_t n)
    {
        const std::string& sName = merged.at(n)->m_sName;
        return std::pair(FoldedName(sName), sName);
    };
    std::vector<std::shared_ptr<const TNode>> ordered;
    for (const uint64_t n : MergeOrder(
             lists[eState_Base], lists[eState_Mine], lists[eState_Theirs],
             [&](uint64_t nNode) { return merged.contains(nNode); },
             [&](uint64_t a, uint64_t b) { return nameOf(a) < nameOf(b); }))
        ordered.push_back(merged.at(n));
    return ordered;
}

std::shared_ptr<const CLibraryImage> CLibraryMerge::Run()
{
    PickPrefabs();
    if (!m_KeptPrefabs.empty())
    {
        TakeBackDetaching(eState_Mine);
        TakeBackDetaching(eState_Theirs);
    }
    MergePrefabs();
    PickSpells();
    DetachLost();
    auto pImage = std::make_shared<CLibraryImage>();
    pImage->m_Spells = InOrder(&CLibraryImage::m_Spells, m_MergedSpells);
    pImage->m_Prefabs = InOrder(&CLibraryImage::m_Prefabs, m_MergedPrefabs);
    const auto objectsOf = [&](const auto& nodes, size_t nSide)
    {
        CTreeMerge::CObjects objects;
        for (const auto& [n, pNode] : nodes)
        {
            CTreeMerge::CObject& object = objects[n];
            object.m_sName = pNode->m_sName;
            if (const auto whose = m_AddedBy[nSide].find(n); whose != m_AddedBy[nSide].end())
                object.m_Whose = whose->second;
        }
        return objects;
    };
    pImage->m_Trees[0] = m_Trees[0].Run(objectsOf(m_MergedSpells, 0), m_Notes);
    pImage->m_Trees[1] = m_Trees[1].Run(objectsOf(m_MergedPrefabs, 1), m_Notes);
    return pImage;
}
