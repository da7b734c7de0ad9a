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

} // namespace

std::shared_ptr<const CLibraryImage> AlignRenamed(const CLibraryImage& library, const CLibraryImage& other)
{
    CLibraryImage named = other;
    std::unordered_map<uint64_t, std::string> prefabs, spells;
    TakeNames(library.m_Prefabs, named.m_Prefabs, prefabs);
    TakeNames(library.m_Spells, named.m_Spells, spells);
    const auto pAligned = Align(library, named);
    if (prefabs.empty() && spells.empty())
        return pAligned;
    auto pResult = std::make_shared<CLibraryImage>(*pAligned);
    GiveNamesBack(pResult->m_Prefabs, prefabs);
    GiveNamesBack(pResult->m_Spells, spells);
    return pResult;
}
