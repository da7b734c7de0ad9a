#include "changes/Replay.h"

#include <utility>
#include <vector>

#include "model/MakeOrNull.h"

namespace
{

void AddTree(const CLibraryImage& image, ETreeSide eSide, CLibraryChange& change)
{
    std::vector<std::pair<uint32_t, std::string>> open = {{0, {}}};
    while (!open.empty())
    {
        const auto [nGroup, sGroup] = std::move(open.back());
        open.pop_back();
        const CGroupImage* pGroup = FindGroup(image.Tree(eSide), nGroup);
        for (uint32_t i = 0; pGroup && i < pGroup->m_Children.size(); ++i)
        {
            const CItemImage& item = pGroup->m_Children[i];
            CDifference& difference = change.m_Differences.emplace_back();
            difference.m_eKind = EDifference::eItem;
            difference.m_eSide = eSide;
            difference.m_Object = {item.m_nItem, item.m_sText};
            difference.m_Place = {{nGroup, sGroup}, i};
            difference.m_After = item;
            open.emplace_back(item.m_nItem, item.m_sText);
        }
    }
}

} // namespace

CLibraryChange ComeFromNothing(const CLibraryImage& image)
{
    CLibraryChange change;
    const auto add = [&](EDifference eKind, const auto& nodes)
    {
        for (uint32_t i = 0; i < nodes.size(); ++i)
        {
            CDifference& difference = change.m_Differences.emplace_back();
            difference.m_eKind = eKind;
            difference.m_Object = {nodes[i]->m_nSerial, nodes[i]->m_sName};
            difference.m_Place.m_nPlace = i;
            difference.m_After = nodes[i];
        }
    };
    add(EDifference::ePrefab, image.m_Prefabs); // keys stand on them
    add(EDifference::eEffect, image.m_Spells);
    for (const ETreeSide eSide : c_TreeSides)
        AddTree(image, eSide, change);
    return change;
}

bool CReplay::Do(std::string_view sChangeText, std::string& sWhy)
{
    sWhy = "out of memory";
    bool bDone = false;
    const auto work = [&]
    {
        CLibraryChange change;
        if (!ReadChangeText(sChangeText, change, sWhy, &m_Numbers))
            return;
        const CApplyTarget target = {{m_SpellMgr, m_EffectTree, m_PrefabTree}, m_Module, m_Edits, m_Owner};
        const std::optional<CConflict> conflict = Apply(change, target, "Replay");
        bDone = !conflict;
        sWhy = conflict ? conflict->m_sWhy : std::string();
    };
    return TryAllocating(work) && bDone;
}

std::shared_ptr<const CLibraryImage> CReplay::MakeImage()
{
    std::shared_ptr<const CLibraryImage> pImage;
    const auto work = [&]
    {
        for (const auto& pPrefab : m_SpellMgr.Prefabs())
            ValidateSet(pPrefab.get());
        m_SpellMgr.ForEachKey([](CSpell&, CKey& key) { ValidateSet(&key); });
        pImage = CLibraryImage::Make({m_SpellMgr, m_EffectTree, m_PrefabTree}, m_Maker);
    };
    return AllocateAll(work) ? pImage : nullptr;
}
