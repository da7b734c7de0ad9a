#include <set>

#include "changes/FoldedName.h"
#include "changes/LibraryMerge.h"
#include "changes/MergeClaims.h"

namespace
{

struct CNameItem
{
    uint64_t m_nNumber = 0;
    std::string m_sMerged;
    std::array<const std::string*, c_nNumStates> m_Names{}; // null: it isn't there
};

// Who has which name.
class CNameBoard
{
public:
    explicit CNameBoard(const std::vector<CNameItem>& items) : m_Items(items), m_Held(items.size()) {}

    const std::string* Name(size_t n, EClaim eClaim) const
    {
        return eClaim == EClaim::eMerged
                   ? &m_Items[n].m_sMerged
                   : m_Items[n].m_Names[eClaim == EClaim::eMine ? eState_Mine : eState_Theirs];
    }
    bool Has(size_t n, EClaim eClaim) const { return Name(n, eClaim) != nullptr; }
    void Put(size_t n, EClaim eClaim)
    {
        m_Held[n] = {FoldedName(*Name(n, eClaim)), SidesOf(n, eClaim)};
        m_Names[m_Held[n].first][m_Held[n].second].insert(n);
    }
    void Lift(size_t n) { m_Names[m_Held[n].first][m_Held[n].second].erase(n); }
    std::vector<size_t> Rivals(size_t n, EClaim eClaim) const
    {
        std::vector<size_t> rivals;
        const auto found = m_Names.find(FoldedName(*Name(n, eClaim)));
        for (size_t nSides = 0; found != m_Names.end() && nSides < found->second.size(); ++nSides)
        {
            // What a side has under one name stays so.
            if ((nSides & SidesOf(n, eClaim)) == 0)
                rivals.insert(rivals.end(), found->second[nSides].begin(), found->second[nSides].end());
        }
        return rivals;
    }

private:
    // Bit 0: it is mine's name, bit 1: theirs.
    size_t SidesOf(size_t n, EClaim eClaim) const
    {
        const std::string& sName = *Name(n, eClaim);
        const auto isOf = [&](size_t nState)
        { return m_Items[n].m_Names[nState] && *m_Items[n].m_Names[nState] == sName; };
        return (isOf(eState_Mine) ? 1u : 0u) | (isOf(eState_Theirs) ? 2u : 0u);
    }

    const std::vector<CNameItem>& m_Items;
    std::vector<std::pair<std::string, size_t>> m_Held;
    std::unordered_map<std::string, std::array<std::set<size_t>, 4>> m_Names; // by whose they are
};

} // namespace

// Of those that would bear one name all but one take their own side's, or go.
template <class TNode>
void CLibraryMerge::SettleNames(CStates<TNode>& states, CNodes<TNode>& merged, EDifference eNode,
                                EDifference eName)
{
    std::vector<CNameItem> items;
    std::vector<EClaim> claims;
    for (const auto& [n, pNode] : merged)
    {
        CNameItem item{n, pNode->m_sName, {}};
        for (size_t i = 0; i < c_nNumStates; ++i)
        {
            const auto found = states[i].find(n);
            item.m_Names[i] = found != states[i].end() ? &found->second->m_sName : nullptr;
        }
        items.push_back(std::move(item));
    }
    std::sort(items.begin(), items.end(),
              [](const auto& a, const auto& b) { return a.m_nNumber < b.m_nNumber; });
    for (const CNameItem& item : items)
    {
        const std::string* pMine = item.m_Names[eState_Mine];
        claims.push_back(pMine && *pMine == item.m_sMerged ? EClaim::eMine : EClaim::eMerged);
    }
    CNameBoard board(items);
    const auto settle = [&](size_t nLoser, size_t nRival)
    {
        const CNameItem& loser = items[nLoser];
        const CChangeRef object = {loser.m_nNumber, loser.m_sMerged};
        const CChangeRef other = {items[nRival].m_nNumber, items[nRival].m_sMerged};
        if (!loser.m_Names[eState_Mine] || !loser.m_Names[eState_Theirs])
        {
            CThree<TNode> three;
            for (size_t i = 0; i < c_nNumStates; ++i)
            {
                if (loser.m_Names[i])
                    three[i] = states[i].at(loser.m_nNumber);
            }
            return m_Notes.SettleWhole(EMergeConflict::eName, DifferenceOf(eNode, {}, object), three, other);
        }
        const auto textOf = [&](size_t i)
        { return loser.m_Names[i] ? CChangeValue(*loser.m_Names[i]) : CChangeValue(); };
        CDifference mine = DifferenceOf(eName, {}, object);
        mine.m_Before = textOf(eState_Base);
        mine.m_After = textOf(eState_Mine);
        return m_Notes.Settle(EMergeConflict::eName, std::move(mine), textOf(eState_Theirs), other);
    };
    claims = SettleClaims(std::move(claims), board, settle);
    for (size_t n = 0; n < items.size(); ++n)
    {
        const std::string* pName = board.Name(n, claims[n]);
        auto& pNode = merged.at(items[n].m_nNumber);
        if (!pName)
            merged.erase(items[n].m_nNumber);
        else if (*pName != pNode->m_sName)
        {
            auto pCopy = std::make_shared<TNode>(*pNode);
            pCopy->m_sName = *pName;
            pNode = std::move(pCopy);
        }
    }
}

template void CLibraryMerge::SettleNames(CStates<CSetImage>&, CNodes<CSetImage>&, EDifference, EDifference);
template void CLibraryMerge::SettleNames(CStates<CSpellImage>&, CNodes<CSpellImage>&, EDifference,
                                         EDifference);
