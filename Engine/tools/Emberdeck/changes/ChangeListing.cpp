#include "changes/ChangeListing.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "changes/ChangeWords.h"

namespace
{

using EKind = CToldChange::EKind;

bool IsNothing(const CChangeValue& value)
{
    return std::holds_alternative<std::monostate>(value);
}

EKind KindOf(const CDifference& difference)
{
    switch (difference.m_eKind)
    {
    case EDifference::eEffect:
    case EDifference::ePrefab:
    case EDifference::eTrack:
    case EDifference::eKey:
    case EDifference::eItem:
        return IsNothing(difference.m_Before) ? EKind::eNew : EKind::eGone;
    default:
        return EKind::eChanged;
    }
}

std::string Quoted(const std::string& sText)
{
    return "\"" + sText + "\"";
}

std::string PlaceOf(const CDifference& difference)
{
    switch (difference.m_eKind)
    {
    case EDifference::eEffect:
    case EDifference::eEffectName:
    case EDifference::eEffectLength:
        return "effect " + Quoted(difference.m_Object.m_sName);
    case EDifference::eEffectOrder:
        return "effects";
    case EDifference::ePrefabOrder:
        return "prefabs";
    case EDifference::eItem:
    case EDifference::eItemOrder:
    case EDifference::eItemText:
        return difference.m_eSide == ETreeSide::eEffects ? "effects" : "prefabs";
    default:
        return difference.m_Effect.m_nSerial ? "effect " + Quoted(difference.m_Effect.m_sName)
                                             : "prefab " + Quoted(difference.m_Object.m_sName);
    }
}

// What it is about, without the place that stands above it.
std::string WhatOf(const CDifference& difference)
{
    std::string sText = Tell(difference);
    const std::string sPlace =
        difference.m_Effect.m_nSerial ? difference.m_Effect.m_sName + ": " : PlaceOf(difference);
    if (sText.compare(0, sPlace.size(), sPlace) == 0)
        sText.erase(0, sPlace.size());
    const size_t nStart = sText.find_first_not_of(", ");
    return nStart == std::string::npos ? sText : sText.substr(nStart);
}

// The items of a change: those that come, go or change their names with what they stand for say nothing new, and one
// that goes here and comes there has moved.
class CItemMoves
{
public:
    explicit CItemMoves(const CLibraryChange& change)
    {
        for (const CDifference& difference : change.m_Differences)
        {
            const bool bEffect =
                difference.m_eKind == EDifference::eEffect || difference.m_eKind == EDifference::eEffectName;
            const bool bPrefab =
                difference.m_eKind == EDifference::ePrefab ||
                (difference.m_eKind == EDifference::eSetName && !difference.m_Effect.m_nSerial);
            if (difference.m_eKind == EDifference::eEffect || difference.m_eKind == EDifference::ePrefab)
                m_Whole[bEffect ? 0 : 1].insert(difference.m_Object.m_nSerial);
            else if (bEffect || bPrefab)
                m_Renamed[bEffect ? 0 : 1].insert(NamesOf(difference));
            else if (difference.m_eKind == EDifference::eItem && IsNothing(difference.m_After))
                m_Gone[Side(difference)].emplace(std::get<CItemImage>(difference.m_Before).m_nObject,
                                                 &difference);
        }
    }

    // False: it is told elsewhere.
    bool Tells(const CDifference& difference, CToldChange& told) const
    {
        const size_t nSide = Side(difference);
        if (difference.m_eKind == EDifference::eItemText)
        {
            const auto [sOld, sNew] = NamesOf(difference);
            told.m_sWhat = "group " + Quoted(sOld) + ", name: " + Quoted(sOld) + " -> " + Quoted(sNew);
            return !m_Renamed[nSide].contains({sOld, sNew});
        }
        if (difference.m_eKind != EDifference::eItem)
            return true;
        const auto* pItem = std::get_if<CItemImage>(&difference.m_After);
        const uint64_t nObject = (pItem ? *pItem : std::get<CItemImage>(difference.m_Before)).m_nObject;
        if (!nObject)
        {
            told.m_sWhat = "group " + Quoted(difference.m_Object.m_sName) + (pItem ? " is new" : " is gone");
            return true;
        }
        const auto gone = m_Gone[nSide].find(nObject);
        if (!pItem || gone == m_Gone[nSide].end() || m_Whole[nSide].contains(nObject))
            return false;
        told.m_eKind = EKind::eChanged;
        told.m_sWhere = (nSide == 0 ? "effect " : "prefab ") + Quoted(difference.m_Object.m_sName);
        told.m_sWhat = "group: " + Quoted(gone->second->m_Place.m_List.m_sName) + " -> " +
                       Quoted(difference.m_Place.m_List.m_sName);
        return true;
    }

private:
    static size_t Side(const CDifference& difference) { return static_cast<size_t>(difference.m_eSide); }
    static std::pair<std::string, std::string> NamesOf(const CDifference& difference)
    {
        return {std::get<std::string>(difference.m_Before), std::get<std::string>(difference.m_After)};
    }

    std::unordered_set<uint64_t> m_Whole[c_nNumSides];
    std::set<std::pair<std::string, std::string>> m_Renamed[c_nNumSides];
    std::unordered_map<uint64_t, const CDifference*> m_Gone[c_nNumSides];
};

} // namespace

std::vector<CToldChange> ListChange(const CLibraryChange& change)
{
    const CItemMoves moves(change);
    std::vector<std::vector<CToldChange>> places;
    std::unordered_map<std::string, size_t> placeOf;
    for (const CDifference& difference : change.m_Differences)
    {
        CToldChange told{PlaceOf(difference), WhatOf(difference), KindOf(difference)};
        if (!moves.Tells(difference, told))
            continue;
        const auto [place, bNew] = placeOf.emplace(told.m_sWhere, places.size());
        if (bNew)
            places.emplace_back();
        places[place->second].push_back(std::move(told));
    }
    std::vector<CToldChange> all;
    for (auto& place : places)
        std::move(place.begin(), place.end(), std::back_inserter(all));
    return all;
}
