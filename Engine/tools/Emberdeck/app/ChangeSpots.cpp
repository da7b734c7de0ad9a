#include "app/ChangeSpots.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace
{

// More differences say nothing more about what a step is called.
constexpr size_t c_nMostToTell = 200;

class CSpotFinder
{
public:
    explicit CSpotFinder(const CLibraryParts& library) : m_Library(library)
    {
        for (const auto& pSpell : library.m_SpellMgr.Spells())
            m_Spells.emplace(pSpell->m_nSerial, pSpell.get());
    }

    void Add(const CDifference& d)
    {
        switch (d.m_eKind)
        {
        case EDifference::eEffect:
        case EDifference::eEffectName:
        case EDifference::eEffectLength:
            EffectOf(d.m_Object.m_nSerial);
            break;
        case EDifference::eItem:
        case EDifference::eItemText:
            AddItem(d.m_eSide, HLibraryItem{static_cast<uint32_t>(d.m_Object.m_nSerial)});
            break;
        case EDifference::eTrack:
        case EDifference::eTrackOrder:
            AddTrack(d.m_Effect.m_nSerial, d.m_Object.m_nSerial);
            break;
        case EDifference::eKey: // where it is, or was
            if (!AddKey(d.m_Effect.m_nSerial, d.m_Object.m_nSerial))
                AddTrack(d.m_Effect.m_nSerial, d.m_Place.m_List.m_nSerial);
            break;
        case EDifference::eEffectOrder:
        case EDifference::ePrefabOrder:
        case EDifference::eItemOrder:
        case EDifference::eKeyOrder:
            break;
        default:
            if (d.m_Effect.m_nSerial)
                AddKey(d.m_Effect.m_nSerial, d.m_Object.m_nSerial);
            else
                AddPrefab(d.m_Object.m_nSerial);
        }
    }

    CChangeSpots m_Spots;

private:
    struct CIndex
    {
        size_t m_nPlace = 0;                        // in m_Spots.m_Effects
        std::unordered_map<uint64_t, CKey*> m_Keys; // that aren't told yet
    };

    // Null: the effect isn't there.
    CIndex* EffectOf(uint64_t nSerial)
    {
        const auto found = m_Spells.find(nSerial);
        if (found == m_Spells.end())
            return nullptr;
        const auto [place, bNew] = m_Indexes.try_emplace(nSerial);
        if (bNew)
        {
            place->second.m_nPlace = m_Spots.m_Effects.size();
            m_Spots.m_Effects.push_back({found->second, {}});
            for (CKey& key : found->second->m_Tracks.AllKeys())
                place->second.m_Keys.emplace(key.m_Serial.Get(), &key);
        }
        return &place->second;
    }
    // False: the effect has no such key, or it is told already.
    bool AddKey(uint64_t nSpell, uint64_t nKey)
    {
        CIndex* pIndex = EffectOf(nSpell);
        const auto found = pIndex ? pIndex->m_Keys.find(nKey) : decltype(pIndex->m_Keys.end())();
        if (!pIndex || found == pIndex->m_Keys.end())
            return false;
        m_Spots.m_Effects[pIndex->m_nPlace].m_Keys.push_back(found->second);
        pIndex->m_Keys.erase(found);
        return true;
    }
    void AddTrack(uint64_t nSpell, uint64_t nTrack)
    {
        const CIndex* pIndex = EffectOf(nSpell);
        if (!pIndex)
            return;
        CChangeSpots::CEffect& effect = m_Spots.m_Effects[pIndex->m_nPlace];
        for (const auto& pTrack : effect.m_pSpell->m_Tracks.Tracks())
        {
            if (pTrack->m_Serial.Get() == nTrack)
                effect.m_pTrack = pTrack.get();
        }
    }
    void AddPrefab(uint64_t nSerial)
    {
        for (const auto& pPrefab : m_Library.m_SpellMgr.Prefabs())
        {
            if (pPrefab->m_Serial.Get() == nSerial)
                AddItem(ETreeSide::ePrefabs, m_Library.m_PrefabTree.FindData(pPrefab.get()));
        }
    }
    void AddItem(ETreeSide eSide, HLibraryItem hItem)
    {
        std::vector<HLibraryItem>& items = m_Spots.m_Items[static_cast<size_t>(eSide)];
        if (m_Library.Tree(eSide).IsAlive(hItem) && m_Items[static_cast<size_t>(eSide)].insert(hItem).second)
            items.push_back(hItem);
    }

    const CLibraryParts& m_Library;
    std::unordered_map<uint64_t, CSpell*> m_Spells;
    std::map<uint64_t, CIndex> m_Indexes;
    std::set<HLibraryItem> m_Items[c_nNumSides];
};

// As it is called where it is whole: an effect that comes may have had another name when it was first touched.
std::string NameOf(const CDifference& d)
{
    for (const CChangeValue* pValue : {&d.m_After, &d.m_Before})
    {
        if (const auto* pSpell = std::get_if<std::shared_ptr<const CSpellImage>>(pValue))
            return (*pSpell)->m_sName;
        if (const auto* pPrefab = std::get_if<std::shared_ptr<const CSetImage>>(pValue))
            return (*pPrefab)->m_sName;
    }
    return d.m_Object.m_sName;
}

// Effects, prefabs and items by their names, which those of one thing share.
class CStepNames
{
public:
    void Add(const CDifference& d)
    {
        const bool bName = d.m_eKind == EDifference::eEffectName || d.m_eKind == EDifference::eItemText ||
                           d.m_eKind == EDifference::eSetName;
        const auto* pOld = bName ? std::get_if<std::string>(&d.m_Before) : nullptr;
        const auto* pNew = bName ? std::get_if<std::string>(&d.m_After) : nullptr;
        if (pOld && pNew && *pOld != *pNew)
            m_Renamed[*pOld] = *pNew;
        else if (!bName)
            m_Names.insert(NameOf(d));
        const bool bWhole = d.m_eKind == EDifference::eEffect || d.m_eKind == EDifference::ePrefab ||
                            d.m_eKind == EDifference::eItem;
        m_bComes = m_bComes || (bWhole && std::holds_alternative<std::monostate>(d.m_Before));
    }
    // Empty: none, or several.
    std::string Tell() const
    {
        if (m_Renamed.size() > 1)
            return {};
        std::set<std::string> names = m_Names;
        for (const auto& [sOld, sNew] : m_Renamed)
        {
            names.erase(sOld);
            names.erase(sNew);
        }
        if (names.size() + m_Renamed.size() != 1)
            return {};
        if (m_Renamed.empty())
            return " \"" + *names.begin() + '"';
        const auto& [sOld, sNew] = *m_Renamed.begin();
        return m_bComes ? " \"" + sNew + '"' : " \"" + sOld + "\" to \"" + sNew + '"';
    }
    bool IsEmpty() const { return m_Names.empty() && m_Renamed.empty(); }

private:
    std::set<std::string> m_Names;
    std::map<std::string, std::string> m_Renamed;
    bool m_bComes = false;
};

bool IsLibraryOrder(EDifference eKind)
{
    return eKind == EDifference::eEffectOrder || eKind == EDifference::ePrefabOrder ||
           eKind == EDifference::eItemOrder;
}

} // namespace

bool CChangeSpots::IsEmpty() const
{
    return m_Effects.empty() && std::all_of(std::begin(m_Items), std::end(m_Items),
                                            [](const auto& items) { return items.empty(); });
}

CChangeSpots FindSpots(const CLibraryChange& change, const CLibraryParts& library)
{
    CSpotFinder finder(library);
    for (const CDifference& difference : change.m_Differences)
        finder.Add(difference);
    return std::move(finder.m_Spots);
}

std::string TellStep(const std::string& sLabel, const CLibraryChange& change)
{
    CStepNames objects;
    std::set<std::string> effects; // with differences in them
    for (size_t i = 0; i < std::min(change.m_Differences.size(), c_nMostToTell); ++i)
    {
        const CDifference& d = change.m_Differences[i];
        if (d.m_Effect.m_nSerial)
            effects.insert(d.m_Effect.m_sName);
        else if (d.m_eKind == EDifference::eEffectLength)
            effects.insert(d.m_Object.m_sName);
        else if (!IsLibraryOrder(d.m_eKind))
            objects.Add(d);
    }
    if (objects.IsEmpty() && effects.size() == 1)
        return sLabel + " in " + *effects.begin();
    return sLabel + objects.Tell();
}
