#pragma once

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

// A list on its way from one state to another, step by step, each step telling its place.
class CListDifference
{
public:
    CListDifference(std::vector<uint64_t> before, const std::vector<uint64_t>& after)
        : m_Now(std::move(before)),
          m_Target(after)
    {
        for (size_t i = 0; i < after.size(); ++i)
            m_Places.emplace(after[i], i);
    }

    // What is there now and has no place in the end, from the back to the front, as long as leave(number) says so.
    template <class TLeave, class TCall>
    void Remove(const TLeave& leave, const TCall& removed)
    {
        for (size_t i = m_Now.size(); i-- > 0;)
        {
            if (m_Places.contains(m_Now[i]) || !leave(m_Now[i]))
                continue;
            const uint64_t n = m_Now[i];
            m_Now.erase(m_Now.begin() + static_cast<std::ptrdiff_t>(i));
            removed(n, static_cast<uint32_t>(i));
        }
    }
    uint32_t RemoveOne(uint64_t n)
    {
        const auto found = std::find(m_Now.begin(), m_Now.end(), n);
        const auto nPlace = static_cast<uint32_t>(found - m_Now.begin());
        if (found != m_Now.end())
            m_Now.erase(found);
        return nPlace;
    }

    // Behind the nearest one before it in the end that is there now. The place.
    uint32_t Insert(uint64_t n)
    {
        const auto target = m_Places.find(n);
        size_t nPlace = 0;
        for (size_t i = target == m_Places.end() ? 0 : target->second; i-- > 0;)
        {
            const auto found = Find(m_Target[i]);
            if (found == m_Now.end())
                continue;
            nPlace = static_cast<size_t>(found - m_Now.begin()) + 1;
            break;
        }
        m_Now.insert(m_Now.begin() + static_cast<std::ptrdiff_t>(nPlace), n);
        m_nHint = nPlace;
        return static_cast<uint32_t>(nPlace);
    }

    // When what is there now are the same, but in another order: the range that is not as in the end. False: no such.
    bool FindDisorder(size_t& nFirst, size_t& nEnd) const
    {
        if (m_Now.size() != m_Target.size() || m_Now == m_Target)
            return false;
        nFirst = static_cast<size_t>(std::mismatch(m_Now.begin(), m_Now.end(), m_Target.begin()).first -
                                     m_Now.begin());
        nEnd = m_Now.size() -
               static_cast<size_t>(std::mismatch(m_Now.rbegin(), m_Now.rend(), m_Target.rbegin()).first -
                                   m_Now.rbegin());
        return true;
    }

    const std::vector<uint64_t>& Now() const { return m_Now; }
    const std::vector<uint64_t>& Target() const { return m_Target; }
    bool IsWanted(uint64_t n) const { return m_Places.contains(n); }

private:
    std::vector<uint64_t>::iterator Find(uint64_t n)
    {
        // What comes in comes one behind the other.
        if (m_nHint < m_Now.size() && m_Now[m_nHint] == n)
            return m_Now.begin() + static_cast<std::ptrdiff_t>(m_nHint);
        return std::find(m_Now.begin(), m_Now.end(), n);
    }

    std::vector<uint64_t> m_Now;
    const std::vector<uint64_t>& m_Target;
    std::unordered_map<uint64_t, size_t> m_Places; // in m_Target
    size_t m_nHint = 0;
};
