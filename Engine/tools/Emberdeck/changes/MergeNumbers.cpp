#include <map>

#include "changes/FoldedName.h"
#include "changes/LibraryMerge.h"

namespace
{

template <class TNode>
using CList = std::vector<std::shared_ptr<const TNode>>;

std::string KindOf(const CSetImage& set)
{
    return set.m_pType ? set.m_pType->m_sName : std::string();
}
std::string KindOf(const CSpellImage&)
{
    return {};
}

template <class TNode>
std::vector<CNumbered> ThingsOf(const CList<TNode>& nodes)
{
    std::vector<CNumbered> things;
    things.reserve(nodes.size());
    for (const auto& pNode : nodes)
        things.push_back({pNode->m_nSerial, KindOf(*pNode)});
    return things;
}

// Pairs new effects or prefabs by name, of equal ones the first with the first.
template <class TNode>
void NumberByName(CNumbering& numbering, const CThree<CLibraryImage>& images,
                  CList<TNode> CLibraryImage::*pList)
{
    const auto nameOf = [](const TNode& node) { return std::pair(KindOf(node), FoldedName(node.m_sName)); };
    std::map<std::pair<std::string, std::string>, std::vector<uint64_t>> likes;
    bool bLikes = false;
    std::unordered_map<uint64_t, const TNode*> theirs;
    for (const auto& pNode : (*images[eState_Theirs]).*pList)
        theirs.emplace(pNode->m_nSerial, pNode.get());
    const auto pairOf = [&](uint64_t n) -> uint64_t
    {
        const auto& mine = (*images[eState_Mine]).*pList;
        for (size_t i = mine.size(); !bLikes && i-- > 0;)
        {
            if (numbering.IsNewInMine(mine[i]->m_nSerial))
                likes[nameOf(*mine[i])].push_back(mine[i]->m_nSerial);
        }
        bLikes = true;
        std::vector<uint64_t>& same = likes[nameOf(*theirs[n])];
        const uint64_t nLike = same.empty() ? 0 : same.back();
        if (nLike)
            same.pop_back();
        return nLike;
    };
    numbering.Run(ThingsOf((*images[eState_Base]).*pList), ThingsOf((*images[eState_Mine]).*pList),
                  ThingsOf((*images[eState_Theirs]).*pList), pairOf);
}

void RenumberSet(CSetImage& set, uint64_t nSerial, const CNumberMap& prefabs)
{
    set.m_nSerial = nSerial;
    set.m_nParent = set.m_nParent ? NumberIn(prefabs, set.m_nParent) : 0;
}

std::shared_ptr<const CSpellImage> RenumberedSpell(const CSpellImage& spell, uint64_t nSerial,
                                                   const CNumberMap& prefabs)
{
    auto pSpell = std::make_shared<CSpellImage>(spell);
    pSpell->m_nSerial = nSerial;
    for (auto& pTrack : pSpell->m_Tracks)
    {
        auto pTrackCopy = std::make_shared<CTrackImage>(*pTrack);
        for (auto& pKey : pTrackCopy->m_Keys)
        {
            if (!pKey->m_nParent || NumberIn(prefabs, pKey->m_nParent) == pKey->m_nParent)
                continue;
            auto pKeyCopy = std::make_shared<CKeyImage>(*pKey);
            RenumberSet(*pKeyCopy, pKey->m_nSerial, prefabs);
            pKey = std::move(pKeyCopy);
        }
        pTrack = std::move(pTrackCopy);
    }
    return pSpell;
}

std::shared_ptr<const CLibraryImage> Renumbered(const CLibraryImage& image, const CNumberMap& prefabs,
                                                const CNumberMap& spells)
{
    auto pImage = std::make_shared<CLibraryImage>(image);
    for (auto& pPrefab : pImage->m_Prefabs)
    {
        auto pCopy = std::make_shared<CSetImage>(*pPrefab);
        RenumberSet(*pCopy, NumberIn(prefabs, pPrefab->m_nSerial), prefabs);
        pPrefab = std::move(pCopy);
    }
    for (auto& pSpell : pImage->m_Spells)
        pSpell = RenumberedSpell(*pSpell, NumberIn(spells, pSpell->m_nSerial), prefabs);
    for (const ETreeSide eSide : c_TreeSides)
    {
        const CNumberMap& objects = eSide == ETreeSide::eEffects ? spells : prefabs;
        for (auto& pGroup : pImage->m_Trees[static_cast<size_t>(eSide)])
        {
            auto pCopy = std::make_shared<CGroupImage>(*pGroup);
            for (CItemImage& item : pCopy->m_Children)
                item.m_nObject = item.m_nObject ? NumberIn(objects, item.m_nObject) : 0;
            pGroup = std::move(pCopy);
        }
    }
    return pImage;
}

} // namespace

CThree<CLibraryImage> NumberAlike(const CThree<CLibraryImage>& images)
{
    CNumbering prefabs, spells;
    NumberByName(prefabs, images, &CLibraryImage::m_Prefabs);
    NumberByName(spells, images, &CLibraryImage::m_Spells);
    if (!prefabs.ChangesAny() && !spells.ChangesAny())
        return images;
    CThree<CLibraryImage> alike = images;
    alike[eState_Base] = Renumbered(*images[eState_Base], prefabs.Base(), spells.Base());
    alike[eState_Theirs] = Renumbered(*images[eState_Theirs], prefabs.Theirs(), spells.Theirs());
    return alike;
}
