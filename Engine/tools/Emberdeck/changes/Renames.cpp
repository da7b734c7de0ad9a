#include "changes/Renames.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "changes/Compare.h"
#include "changes/FoldedName.h"

namespace
{

using CFeatures = std::vector<size_t>; // of what a thing is made of; each once

// A thing that the other library has nothing of the same name for.
struct CLone
{
    size_t m_nThing = 0;
    CFeatures m_Features;
};

size_t HashOf(const std::string& sText)
{
    return std::hash<std::string>()(sText);
}

void AppendPoints(std::string& sText, const CSetImage& set, const CSetImage::CSlot& slot)
{
    for (uint32_t i = 0; i < slot.m_nCount; ++i)
    {
        const CPointImage& point = set.m_Points[slot.m_nFirst + i];
        uint8_t aBytes[CPropData::c_nSize];
        point.m_Data.CopyTo(aBytes);
        sText += std::to_string(point.m_fTime);
        sText.append(reinterpret_cast<const char*>(aBytes), sizeof(aBytes));
    }
}

std::string SlotText(const CSetImage& set, const CSetImage::CSlot& slot)
{
    std::string sText = set.m_pType->m_sName + "/" + set.m_pType->m_Props[slot.m_nSlot].m_sName + "/";
    AppendPoints(sText, set, slot);
    return sText;
}

CFeatures Sorted(CFeatures features)
{
    std::sort(features.begin(), features.end());
    features.erase(std::unique(features.begin(), features.end()), features.end());
    return features;
}

CFeatures FeaturesOf(const CSetImage& prefab)
{
    CFeatures features;
    for (const CSetImage::CSlot& slot : prefab.m_Slots)
        features.push_back(HashOf(SlotText(prefab, slot)));
    return Sorted(std::move(features));
}

CFeatures FeaturesOf(const CSpellImage& spell)
{
    CFeatures features;
    for (size_t nTrack = 0; nTrack < spell.m_Tracks.size(); ++nTrack)
    {
        for (const auto& pKey : spell.m_Tracks[nTrack]->m_Keys)
        {
            std::string sText = std::to_string(pKey->m_nKeyID) + "/" + std::to_string(nTrack) + "/" +
                                std::to_string(pKey->m_nStartTime) + "/" + std::to_string(pKey->m_nEndTime) +
                                "/" + pKey->m_sName + "/";
            for (const CSetImage::CSlot& slot : pKey->m_Slots)
                sText += SlotText(*pKey, slot);
            features.push_back(HashOf(sText));
        }
    }
    return Sorted(std::move(features));
}

// For each of the others the one of the library that it is, by their places among the lone ones.
std::map<size_t, size_t> FindLikes(const std::vector<CLone>& library, const std::vector<CLone>& others)
{
    constexpr size_t c_nMaxOwners = 8; // what so many have says nothing
    std::unordered_map<size_t, std::vector<size_t>> owners;
    for (size_t i = 0; i < library.size(); ++i)
    {
        for (const size_t nFeature : library[i].m_Features)
            owners[nFeature].push_back(i);
    }
    struct CPair
    {
        size_t m_nShared, m_nOther, m_nLibrary;
    };
    std::vector<CPair> pairs;
    for (size_t i = 0; i < others.size(); ++i)
    {
        std::map<size_t, size_t> shared;
        for (const size_t nFeature : others[i].m_Features)
        {
            const auto found = owners.find(nFeature);
            for (size_t n = 0;
                 found != owners.end() && n < found->second.size() && found->second.size() <= c_nMaxOwners;
                 ++n)
                ++shared[found->second[n]];
        }
        for (const auto& [nLibrary, nShared] : shared)
        {
            if (2 * nShared >= std::max(library[nLibrary].m_Features.size(), others[i].m_Features.size()))
                pairs.push_back({nShared, i, nLibrary});
        }
    }
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const CPair& a, const CPair& b) { return a.m_nShared > b.m_nShared; });
    std::map<size_t, size_t> likes;
    std::vector<bool> taken(library.size());
    for (const CPair& pair : pairs)
    {
        if (taken[pair.m_nLibrary] || likes.contains(others[pair.m_nOther].m_nThing))
            continue;
        taken[pair.m_nLibrary] = true;
        likes.emplace(others[pair.m_nOther].m_nThing, library[pair.m_nLibrary].m_nThing);
    }
    return likes;
}

// Gives renamed ones the library's names, and keeps theirs by number.
template <class TNode>
void TakeNames(const std::vector<std::shared_ptr<const TNode>>& library,
               std::vector<std::shared_ptr<const TNode>>& other,
               std::unordered_map<uint64_t, std::string>& names)
{
    const auto loneOf = [](const auto& nodes, const auto& against)
    {
        std::unordered_map<std::string, size_t> there;
        for (const auto& pNode : against)
            ++there[FoldedName(pNode->m_sName)];
        std::vector<CLone> lone;
        for (size_t i = 0; i < nodes.size(); ++i)
        {
            if (!there.contains(FoldedName(nodes[i]->m_sName)))
                lone.push_back({i, FeaturesOf(*nodes[i])});
        }
        return lone;
    };
    for (const auto& [nOther, nLibrary] : FindLikes(loneOf(library, other), loneOf(other, library)))
    {
        names.emplace(library[nLibrary]->m_nSerial, other[nOther]->m_sName);
        auto pNode = std::make_shared<TNode>(*other[nOther]);
        pNode->m_sName = library[nLibrary]->m_sName;
        other[nOther] = std::move(pNode);
    }
}

// A prefab never changes its type: one that has the name of another type's is another one. Hides its name for a while,
// by a number that stays its own.
void HideOtherTypes(const CLibraryImage& library, CLibraryImage& other,
                    std::unordered_map<uint64_t, std::string>& names)
{
    const auto typeOf = [](const CSetImage& set)
    { return set.m_pType ? set.m_pType->m_sName : std::string(); };
    std::map<std::string, std::vector<std::string>> types;
    for (const auto& pPrefab : library.m_Prefabs)
        types[FoldedName(pPrefab->m_sName)].push_back(typeOf(*pPrefab));
    for (auto& pPrefab : other.m_Prefabs)
    {
        const auto found = types.find(FoldedName(pPrefab->m_sName));
        if (found == types.end() ||
            std::find(found->second.begin(), found->second.end(), typeOf(*pPrefab)) != found->second.end())
            continue;
        names.emplace(pPrefab->m_nSerial, pPrefab->m_sName);
        auto pHidden = std::make_shared<CSetImage>(*pPrefab);
        pHidden->m_sName += std::string(1, '\0') + std::to_string(pPrefab->m_nSerial); // in no file
        pPrefab = std::move(pHidden);
    }
}

template <class TNode>
void GiveNamesBack(std::vector<std::shared_ptr<const TNode>>& nodes,
                   const std::unordered_map<uint64_t, std::string>& names)
{
    for (auto& pNode : nodes)
    {
        const auto found = names.find(pNode->m_nSerial);
        if (found == names.end())
            continue;
        auto pCopy = std::make_shared<TNode>(*pNode);
        pCopy->m_sName = found->second;
        pNode = std::move(pCopy);
    }
}

// The same for groups, from the roots down: those of one parent, by what lies in them.
class CGroupRenames
{
public:
    CGroupRenames(const CTreeImage& library, CTreeImage& other) : m_Library(library), m_Other(other) {}

    // Gives the texts that the other has, by the library's items.
    std::unordered_map<uint32_t, std::string> Run()
    {
        std::vector<std::pair<uint32_t, uint32_t>> open = {{0, 0}};
        while (!open.empty())
        {
            const auto [nLibrary, nOther] = open.back();
            open.pop_back();
            Pair(nLibrary, nOther, open);
        }
        return std::move(m_Texts);
    }

private:
    using CGroups = std::vector<std::pair<std::string, uint32_t>>; // in their order

    static CGroups GroupsOf(const CTreeImage& tree, uint32_t nItem)
    {
        CGroups groups;
        const CGroupImage* pGroup = FindGroup(tree, nItem);
        for (size_t i = 0; pGroup && i < pGroup->m_Children.size(); ++i)
        {
            const CItemImage& item = pGroup->m_Children[i];
            if (!item.m_nObject)
                groups.emplace_back(FoldedName(item.m_sText), item.m_nItem);
        }
        return groups;
    }
    // The texts of leaves are those of what they stand for, but for renamed ones: those are told apart by others.
    static CFeatures FeaturesOf(const CTreeImage& tree, uint32_t nItem)
    {
        CFeatures features;
        const CGroupImage* pGroup = FindGroup(tree, nItem);
        for (size_t i = 0; pGroup && i < pGroup->m_Children.size(); ++i)
            features.push_back(HashOf(FoldedName(pGroup->m_Children[i].m_sText)));
        return Sorted(std::move(features));
    }
    // As Align does it: of equal names the first with the first. What is left over is looked at more closely.
    void Pair(uint32_t nLibrary, uint32_t nOther, std::vector<std::pair<uint32_t, uint32_t>>& open)
    {
        std::map<std::string, std::vector<uint32_t>> byName;
        const CGroups ours = GroupsOf(m_Library, nLibrary);
        for (size_t i = ours.size(); i-- > 0;)
            byName[ours[i].first].push_back(ours[i].second);
        std::vector<CLone> lone, lonelyOthers;
        for (const auto& [sName, nItem] : GroupsOf(m_Other, nOther))
        {
            const auto found = byName.find(sName);
            if (found == byName.end())
                lonelyOthers.push_back({nItem, FeaturesOf(m_Other, nItem)});
            else if (!found->second.empty())
            {
                open.emplace_back(found->second.back(), nItem);
                found->second.pop_back();
            }
        }
        for (const auto& [sName, items] : byName)
        {
            for (const uint32_t nItem : items)
                lone.push_back({nItem, FeaturesOf(m_Library, nItem)});
        }
        for (const auto& [nTheirs, nOurs] : FindLikes(lone, lonelyOthers))
        {
            TakeText(nLibrary, static_cast<uint32_t>(nOurs), nOther, static_cast<uint32_t>(nTheirs));
            open.emplace_back(static_cast<uint32_t>(nOurs), static_cast<uint32_t>(nTheirs));
        }
    }
    void TakeText(uint32_t nParent, uint32_t nItem, uint32_t nOtherParent, uint32_t nOther)
    {
        const auto isItem = [](uint32_t n)
        { return [n](const CItemImage& item) { return item.m_nItem == n; }; };
        const auto& children = FindGroup(m_Library, nParent)->m_Children;
        const std::string& sText = std::find_if(children.begin(), children.end(), isItem(nItem))->m_sText;
        const auto group = std::lower_bound(m_Other.begin(), m_Other.end(), nOtherParent,
                                            [](const auto& p, uint32_t n) { return p->m_nItem < n; });
        auto pCopy = std::make_shared<CGroupImage>(**group);
        const auto item = std::find_if(pCopy->m_Children.begin(), pCopy->m_Children.end(), isItem(nOther));
        m_Texts.emplace(nItem, item->m_sText);
        item->m_sText = sText;
        *group = std::move(pCopy);
    }

    const CTreeImage& m_Library;
    CTreeImage& m_Other;
    std::unordered_map<uint32_t, std::string> m_Texts;
};

void GiveTextsBack(CTreeImage& tree, const std::unordered_map<uint32_t, std::string>& texts)
{
    for (auto& pGroup : tree)
    {
        auto pCopy = std::make_shared<CGroupImage>(*pGroup);
        for (CItemImage& item : pCopy->m_Children)
        {
            const auto found = texts.find(item.m_nItem);
            item.m_sText = found != texts.end() ? found->second : item.m_sText;
        }
        pGroup = std::move(pCopy);
    }
}

} // namespace

std::shared_ptr<const CLibraryImage> AlignRenamed(const CLibraryImage& library, const CLibraryImage& other)
{
    CLibraryImage named = other;
    std::unordered_map<uint64_t, std::string> prefabs, spells;
    TakeNames(library.m_Prefabs, named.m_Prefabs, prefabs);
    HideOtherTypes(library, named, prefabs);
    TakeNames(library.m_Spells, named.m_Spells, spells);
    std::unordered_map<uint32_t, std::string> texts[c_nNumSides];
    for (size_t nSide = 0; nSide < c_nNumSides; ++nSide)
        texts[nSide] = CGroupRenames(library.m_Trees[nSide], named.m_Trees[nSide]).Run();
    auto pResult = std::make_shared<CLibraryImage>(*Align(library, named));
    GiveNamesBack(pResult->m_Prefabs, prefabs);
    GiveNamesBack(pResult->m_Spells, spells);
    for (size_t nSide = 0; nSide < c_nNumSides; ++nSide)
    {
        if (!texts[nSide].empty())
            GiveTextsBack(pResult->m_Trees[nSide], texts[nSide]);
    }
    return pResult;
}
