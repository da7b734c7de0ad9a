#include "changes/MergeOrder.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace
{

using CList = std::vector<uint64_t>;
using CSet = std::unordered_set<uint64_t>;
using CPlaces = std::unordered_map<uint64_t, size_t>;

CList WantedOf(const CList& list, const std::function<bool(uint64_t)>& isWanted)
{
    CList wanted;
    CSet seen;
    for (const uint64_t n : list)
    {
        if (isWanted(n) && seen.insert(n).second)
            wanted.push_back(n);
    }
    return wanted;
}

// The most of what has a place that can stay where it is: the longest run of rising places.
CSet Unmoved(const CList& list, const CPlaces& places)
{
    CList run; // of each length the one that ends lowest: its last
    std::vector<size_t> ends;
    std::unordered_map<uint64_t, uint64_t> before;
    for (const uint64_t n : list)
    {
        const auto place = places.find(n);
        if (place == places.end())
            continue;
        const auto found = std::lower_bound(ends.begin(), ends.end(), place->second);
        const auto nLength = static_cast<size_t>(found - ends.begin());
        if (nLength > 0)
            before[n] = run[nLength - 1];
        if (found == ends.end())
        {
            ends.push_back(place->second);
            run.push_back(n);
        }
        else
        {
            *found = place->second;
            run[nLength] = n;
        }
    }
    CSet unmoved;
    for (uint64_t n = run.empty() ? 0 : run.back(); !run.empty();)
    {
        unmoved.insert(n);
        const auto previous = before.find(n);
        if (previous == before.end())
            break;
        n = previous->second;
    }
    return unmoved;
}

class COrderMerge
{
public:
    COrderMerge(const CList& base, const CList& mine, const CList& theirs)
        : m_Sides{mine, theirs},
          m_In{CSet(mine.begin(), mine.end()), CSet(theirs.begin(), theirs.end())}
    {
        for (const uint64_t n : base)
        {
            m_Base.emplace(n, m_Base.size());
            if (m_In[0].contains(n) && m_In[1].contains(n))
                m_Common.emplace(n, m_Common.size());
        }
    }

    CList Run(const std::function<bool(uint64_t, uint64_t)>& comesFirst)
    {
        if (m_Sides[0] == m_Sides[1])
            return m_Sides[0];
        for (const size_t nSide : {0u, 1u})
            m_Still[nSide] = Unmoved(m_Sides[nSide], m_Common);
        m_nFirst = IsFirst(comesFirst) ? 0 : 1;
        CList anchors;
        for (const uint64_t n : m_Sides[0])
        {
            if (m_Still[0].contains(n) && m_Still[1].contains(n))
                anchors.push_back(n);
        }
        const CSet fixed(anchors.begin(), anchors.end());
        std::vector<CList> gaps[2];
        for (const size_t nSide : {0u, 1u})
        {
            gaps[nSide].resize(anchors.size() + 1);
            size_t nGap = 0;
            for (const uint64_t n : m_Sides[nSide])
            {
                if (fixed.contains(n))
                    ++nGap;
                else if (Source(n) == nSide)
                    gaps[nSide][nGap].push_back(n);
            }
        }
        CList merged;
        for (size_t nGap = 0; nGap <= anchors.size(); ++nGap)
        {
            if (nGap > 0)
                merged.push_back(anchors[nGap - 1]);
            for (const size_t nSide : {m_nFirst, 1 - m_nFirst})
                merged.insert(merged.end(), gaps[nSide][nGap].begin(), gaps[nSide][nGap].end());
        }
        return merged;
    }

private:
    // Whether mine goes first where something has to: told by what the lists hold, not by whose they are.
    bool IsFirst(const std::function<bool(uint64_t, uint64_t)>& comesFirst) const
    {
        const CList& mine = m_Sides[0];
        const CList& theirs = m_Sides[1];
        for (size_t i = 0; i < mine.size() && i < theirs.size(); ++i)
        {
            const auto a = m_Base.find(mine[i]);
            const auto b = m_Base.find(theirs[i]);
            if (mine[i] == theirs[i])
                continue;
            if (a != m_Base.end() && b != m_Base.end())
                return a->second < b->second;
            if (a != m_Base.end() || b != m_Base.end())
                return a != m_Base.end();
            if (comesFirst(mine[i], theirs[i]))
                return true;
            if (comesFirst(theirs[i], mine[i]))
                return false;
        }
        return mine.size() <= theirs.size();
    }
    // The side that says where something stands which isn't an anchor.
    size_t Source(uint64_t n) const
    {
        if (!m_In[0].contains(n) || !m_In[1].contains(n))
            return m_In[0].contains(n) ? 0 : 1;
        if (m_Common.contains(n) && m_Still[0].contains(n) != m_Still[1].contains(n))
            return m_Still[0].contains(n) ? 1 : 0;
        return m_nFirst;
    }

    const CList m_Sides[2];
    const CSet m_In[2];
    CPlaces m_Base;
    CPlaces m_Common; // what all three have
    CSet m_Still[2];
    size_t m_nFirst = 0;
};

} // namespace

std::vector<uint64_t> MergeOrder(const std::vector<uint64_t>& base, const std::vector<uint64_t>& mine,
                                 const std::vector<uint64_t>& theirs,
                                 const std::function<bool(uint64_t)>& isWanted,
                                 const std::function<bool(uint64_t, uint64_t)>& comesFirst)
{
    return COrderMerge(base, WantedOf(mine, isWanted), WantedOf(theirs, isWanted)).Run(comesFirst);
}
