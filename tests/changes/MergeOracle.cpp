// A merge against a plain one of the tests' own, which knows a library as a list of facts: on random pictures of one
// library. EMBERDECK_MERGES says how many.

#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <set>

#include "changes/RandomEdits.h"

namespace
{
using CFacts = std::map<std::string, std::string>; // by what they are of, whose existence is a fact, too

std::string SlotText(const CSetImage& set, const CSetImage::CSlot& slot)
{
    std::string sText;
    for (uint32_t i = 0; i < slot.m_nCount; ++i)
    {
        const CPointImage& point = set.m_Points[slot.m_nFirst + i];
        sText += std::to_string(point.m_fTime) + ":";
        uint8_t aBytes[CPropData::c_nSize];
        point.m_Data.CopyTo(aBytes);
        sText.append(reinterpret_cast<const char*>(aBytes), sizeof(aBytes));
    }
    return sText;
}

void AddSetFacts(CFacts& facts, const std::string& sWhat, const CSetImage& set)
{
    facts[sWhat] = set.m_pType->m_sName;
    facts[sWhat + "/name"] = set.m_sName;
    facts[sWhat + "/parent"] = std::to_string(set.m_nParent);
    for (const CSetImage::CSlot& slot : set.m_Slots)
        facts[sWhat + "/" + set.m_pType->m_Props[slot.m_nSlot].m_sName] = SlotText(set, slot);
}

CFacts FactsOf(const CLibraryImage& image)
{
    CFacts facts;
    for (const auto& pPrefab : image.m_Prefabs)
        AddSetFacts(facts, "P" + std::to_string(pPrefab->m_nSerial), *pPrefab);
    for (const auto& pSpell : image.m_Spells)
    {
        const std::string sSpell = "E" + std::to_string(pSpell->m_nSerial);
        facts[sSpell] = "";
        facts[sSpell + "/name"] = pSpell->m_sName;
        facts[sSpell + "/length"] = std::to_string(pSpell->m_nPhaseLength);
        std::map<uint32_t, uint64_t> byID;
        for (const auto& pTrack : pSpell->m_Tracks)
        {
            for (const auto& pKey : pTrack->m_Keys)
                byID[pKey->m_nKeyID] = pKey->m_nSerial;
        }
        for (const auto& pTrack : pSpell->m_Tracks)
        {
            for (const auto& pKey : pTrack->m_Keys)
            {
                const std::string sKey = sSpell + "K" + std::to_string(pKey->m_nSerial);
                AddSetFacts(facts, sKey, *pKey);
                facts[sKey + "/start"] = std::to_string(pKey->m_nStartTime);
                facts[sKey + "/end"] = std::to_string(pKey->m_nEndTime);
                facts[sKey + "/track"] = std::to_string(pTrack->m_nSerial);
                if (pKey->m_bMotionLinked)
                    facts[sKey + "/link"] = std::to_string(byID[pKey->m_nMotionLinkID]);
            }
        }
    }
    for (const ETreeSide eSide : c_TreeSides)
    {
        for (const auto& pGroup : image.Tree(eSide))
        {
            for (const CItemImage& item : pGroup->m_Children)
            {
                if (item.m_nObject)
                    facts[(eSide == ETreeSide::eEffects ? "E" : "P") + std::to_string(item.m_nObject) +
                          "/group"] = std::to_string(pGroup->m_nItem);
            }
        }
    }
    return facts;
}

std::string ObjectOf(const std::string& sFact)
{
    return sFact.substr(0, sFact.find('/'));
}
// An effect's keys belong to it.
bool IsPartOf(const std::string& sFact, const std::string& sObject)
{
    return sFact.compare(0, sObject.size(), sObject) == 0 &&
           (sFact.size() == sObject.size() || sFact[sObject.size()] == '/' || sFact[sObject.size()] == 'K');
}

struct COracle
{
    CFacts m_Merged;
    std::set<std::string> m_Conflicts; // what both sides touched
    bool m_bBroken = false;            // the union breaks what must hold

    COracle(const CFacts& base, const CFacts& mine, const CFacts& theirs)
    {
        std::set<std::string> all;
        for (const CFacts* pFacts : {&base, &mine, &theirs})
        {
            for (const auto& [sFact, sValue] : *pFacts)
                all.insert(sFact);
        }
        const auto valueOf = [](const CFacts& facts, const std::string& sFact)
        {
            const auto found = facts.find(sFact);
            return found != facts.end() ? std::optional(found->second) : std::nullopt;
        };
        std::set<std::string> gone;
        for (const std::string& sObject : all)
        {
            const size_t nKey = sObject.find('K');
            if ((nKey != std::string::npos && gone.contains(sObject.substr(0, nKey))) ||
                sObject.find('/') != std::string::npos || !base.contains(sObject) ||
                mine.contains(sObject) == theirs.contains(sObject))
                continue;
            const CFacts& left = mine.contains(sObject) ? mine : theirs;
            bool bChanged = false;
            for (const std::string& sFact : all)
                bChanged =
                    bChanged || (IsPartOf(sFact, sObject) && valueOf(left, sFact) != valueOf(base, sFact));
            if (bChanged)
                m_Conflicts.insert("deleted " + sObject);
            gone.insert(sObject);
        }
        for (const std::string& sFact : all)
        {
            bool bGone = false;
            for (size_t n = 1; n <= sFact.size() && !bGone; ++n)
                bGone = gone.contains(sFact.substr(0, n)) && IsPartOf(sFact, sFact.substr(0, n));
            if (bGone)
                continue;
            const auto b = valueOf(base, sFact), m = valueOf(mine, sFact), t = valueOf(theirs, sFact);
            if (b != m && b != t && m != t)
                m_Conflicts.insert("field " + sFact);
            if (const auto value = m == b ? t : m)
                m_Merged[sFact] = *value;
        }
        FillKeys(mine);
        FillKeys(theirs);
        std::erase_if(m_Conflicts, [&](const std::string& s) { return IsOpen(s, base, mine, theirs); });
        Check(base);
    }

    // What one side changed of a key whose prefab the other one deleted: it depends on whether the prefab stays.
    static bool IsOpen(const std::string& sConflict, const CFacts& base, const CFacts& mine,
                       const CFacts& theirs)
    {
        const std::string sObject = ObjectOf(sConflict.substr(sConflict.find(' ') + 1));
        const auto parent = base.find(sObject + "/parent");
        return sConflict.find('/') != std::string::npos && parent != base.end() && parent->second != "0" &&
               mine.contains("P" + parent->second) != theirs.contains("P" + parent->second);
    }

    // A key that stands on no prefab any more has all values: those that it saw.
    void FillKeys(const CFacts& side)
    {
        CFacts filled;
        for (const auto& [sFact, sValue] : m_Merged)
        {
            const std::string sObject = ObjectOf(sFact);
            const auto parent = side.find(sObject + "/parent");
            if (sFact != sObject + "/parent" || sValue != "0" || parent == side.end())
                continue;
            const std::string sPrefab = "P" + parent->second + "/";
            for (auto it = side.lower_bound(sPrefab); it != side.end() && it->first.starts_with(sPrefab);
                 ++it)
                filled.emplace(sObject + "/" + it->first.substr(sPrefab.size()), it->second);
        }
        for (const auto& [sFact, sValue] : filled)
        {
            if (!sFact.ends_with("/group"))
                m_Merged.emplace(sFact, sValue); // none that is there
        }
    }

    // What must hold, on the facts themselves.
    void Check(const CFacts& base)
    {
        std::set<std::string> names;
        std::map<std::string, std::vector<std::pair<int, int>>> tracks;
        for (const auto& [sFact, sValue] : m_Merged)
        {
            const std::string sObject = ObjectOf(sFact);
            const std::string sField = sFact.substr(std::min(sFact.size(), sObject.size() + 1));
            const size_t nKey = sObject.find('K');
            const bool bKey = nKey != std::string::npos;
            const auto before = base.find(sFact);
            const bool bNew = before == base.end() || before->second != sValue;
            if (sField == "name" && !bKey)
                m_bBroken = m_bBroken || !names.insert(sObject[0] + sValue).second;
            if (sField == "parent" && sValue != "0")
                m_bBroken = m_bBroken || !m_Merged.contains("P" + sValue);
            if (sField == "link" && bNew)
                m_bBroken = m_bBroken || !m_Merged.contains(sObject.substr(0, nKey) + "K" + sValue);
            if (sField == "start")
                tracks[sObject.substr(0, nKey) + "/" + m_Merged[sObject + "/track"]].emplace_back(
                    std::stoi(sValue), std::stoi(m_Merged[sObject + "/end"]));
        }
        for (auto& [sTrack, spans] : tracks)
        {
            std::sort(spans.begin(), spans.end());
            for (size_t i = 0; i < spans.size(); ++i)
                m_bBroken = m_bBroken || spans[i].second < spans[i].first ||
                            (i > 0 && spans[i].first < spans[i - 1].second);
        }
    }
};

// The conflicts of a merge in the oracle's words; bBroken: there are some of the union.
std::set<std::string> ConflictsOf(const CMerged& merged, bool& bBroken)
{
    static const std::map<EDifference, std::string> c_Fields = {
        {EDifference::eEffectName, "name"}, {EDifference::eEffectLength, "length"},
        {EDifference::eSetName, "name"},    {EDifference::eSetParent, "parent"},
        {EDifference::eKeyStart, "start"},  {EDifference::eKeyEnd, "end"},
        {EDifference::eKeyTrack, "track"},  {EDifference::eKeyLink, "link"}};
    std::set<std::string> conflicts;
    bBroken = false;
    for (const CMergeConflict& conflict : merged.m_Conflicts)
    {
        const CDifference& mine = conflict.m_Mine;
        std::string sObject = std::to_string(mine.m_Object.m_nSerial);
        const bool bEffect = mine.m_eKind == EDifference::eEffect ||
                             mine.m_eKind == EDifference::eEffectName ||
                             mine.m_eKind == EDifference::eEffectLength ||
                             (mine.m_eKind == EDifference::eItem && mine.m_eSide == ETreeSide::eEffects);
        sObject = mine.m_Effect.m_nSerial ? "E" + std::to_string(mine.m_Effect.m_nSerial) + "K" + sObject
                                          : (bEffect ? "E" : "P") + sObject;
        if (conflict.m_eWhy == EMergeConflict::eDeleted)
            conflicts.insert("deleted " + sObject);
        else if (conflict.m_eWhy == EMergeConflict::eMoved)
            conflicts.insert("field " + sObject + "/group");
        else if (conflict.m_eWhy == EMergeConflict::eField)
            conflicts.insert(
                "field " + sObject + "/" +
                (mine.m_eKind == EDifference::eSetValue ? mine.m_sProperty : c_Fields.at(mine.m_eKind)));
        else
            bBroken = true;
    }
    return conflicts;
}

// Everything in its order, but for ids and handles.
std::string ShapeOf(const CLibraryImage& image)
{
    std::string sShape;
    for (const auto& pPrefab : image.m_Prefabs)
        sShape += "P" + std::to_string(pPrefab->m_nSerial) + " ";
    for (const auto& pSpell : image.m_Spells)
    {
        sShape += "\nE" + std::to_string(pSpell->m_nSerial);
        for (const auto& pTrack : pSpell->m_Tracks)
        {
            sShape += " T" + std::to_string(pTrack->m_nSerial);
            for (const auto& pKey : pTrack->m_Keys)
                sShape += " K" + std::to_string(pKey->m_nSerial);
        }
    }
    for (const ETreeSide eSide : c_TreeSides)
    {
        for (const auto& pGroup : image.Tree(eSide))
        {
            sShape += "\nG" + std::to_string(pGroup->m_nItem);
            for (const CItemImage& item : pGroup->m_Children)
                sShape += " " + item.m_sText;
        }
    }
    return sShape;
}

} // namespace

TEST(Merge, IsWhatAPlainMergeOfFactsIs)
{
    const char* pszRounds = std::getenv("EMBERDECK_MERGES");
    const uint32_t nRounds = pszRounds ? uint32_t(std::atoi(pszRounds)) : 240;
    uint32_t nClean = 0;
    for (uint32_t nRound = 0; nRound < nRounds; ++nRound)
    {
        SCOPED_TRACE(nRound);
        const auto pBase = RandomBase(nRound / 8);
        CEditor mine(*pBase, nRound * 2 + 1, 1000000), theirs(*pBase, nRound * 2 + 2, 2000000);
        for (uint32_t i = nRound % 12; i > 0; --i)
        {
            mine.Edit();
            theirs.Edit();
        }
        const CFacts base = FactsOf(*pBase), facts[] = {FactsOf(mine.Image()), FactsOf(theirs.Image())};
        const COracle oracle(base, facts[0], facts[1]);
        const CMerged merged = Merge(*pBase, mine.Image(), theirs.Image());
        const CMerged turned = Merge(*pBase, theirs.Image(), mine.Image());
        bool bBroken = false, bTurnedBroken = false;
        const auto conflictsOf = [&](const CMerged& of, bool& bOfUnion)
        {
            std::set<std::string> found = ConflictsOf(of, bOfUnion);
            std::erase_if(found,
                          [&](const std::string& s) { return COracle::IsOpen(s, base, facts[0], facts[1]); });
            return found;
        };
        const std::set<std::string> conflicts = conflictsOf(merged, bBroken);
        ASSERT_EQ(oracle.m_Conflicts, conflicts);
        ASSERT_EQ(oracle.m_Conflicts, conflictsOf(turned, bTurnedBroken));
        if (conflicts.empty())
        {
            ASSERT_EQ(oracle.m_bBroken, bBroken);
            ASSERT_EQ(oracle.m_bBroken, bTurnedBroken);
        }
        if (merged.m_Conflicts.empty())
        {
            ++nClean;
            ASSERT_EQ(oracle.m_Merged, FactsOf(*merged.m_pImage));
            ASSERT_EQ(oracle.m_Merged, FactsOf(*turned.m_pImage));
            ASSERT_EQ(ShapeOf(*merged.m_pImage), ShapeOf(*turned.m_pImage));
        }
        if (nRound % 4 == 0 || nRounds > 240)
        {
            ExpectSound(*merged.m_pImage);
            // Each conflict settled one way or the other.
            std::mt19937 random(nRound);
            ExpectSound(*Merge(*pBase, mine.Image(), theirs.Image(),
                               [&](const CMergeConflict&)
                               { return random() % 2 ? EMergeSide::eMine : EMergeSide::eTheirs; })
                             .m_pImage);
            ASSERT_EQ(ImageBytes(mine.Image()), ImageBytes(*Merge(*pBase, *pBase, mine.Image()).m_pImage));
        }
        if (HasFailure())
            return;
    }
    EXPECT_GT(nClean, nRounds / 5);
    EXPECT_LT(nClean, nRounds * 9 / 10);
}
