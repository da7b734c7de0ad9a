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
        std::vector<bool> left(m_Now.size());
        for (size_t i = m_Now.size(); i-- > 0;)
        {
            left[i] = !m_Places.contains(m_Now[i]) && leave(m_Now[i]);
            if (left[i])
                removed(m_Now[i], static_cast<uint32_t>(i));
        }
        size_t nTo = 0;
        for (size_t i = 0; i < m_Now.size(); ++i)
        {
            if (!left[i])
                m_Now[nTo++] = m_Now[i];
        }
        m_Now.resize(nTo);
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
            const auto found = std::find(m_Now.begin(), m_Now.end(), m_Target[i]);
            if (found == m_Now.end())
                continue;
            nPlace = static_cast<size_t>(found - m_Now.begin()) + 1;
            break;
        }
        m_Now.insert(m_Now.begin() + static_cast<std::ptrdiff_t>(nPlace), n);
        return static_cast<uint32_t>(nPlace);
    }
    // All that is there in the end and isn't now, each as Insert does it, in the order of the end.
    template <class TCall>
    void InsertMissing(const TCall& inserted)
    {
        std::unordered_map<uint64_t, size_t> behind; // slots: 0 in front, i + 1 behind what is at i now
        behind.reserve(m_Now.size());
        for (size_t i = 0; i < m_Now.size(); ++i)
            behind.emplace(m_Now[i], i + 1);
        std::vector<std::vector<uint64_t>> come(m_Now.size() + 1);
        std::vector<uint32_t> sums(m_Now.size() + 2); // a tree of sums: how many have come to slots
        size_t nSlot = 0;
        for (const uint64_t n : m_Target)
        {
            const auto here = behind.find(n);
            if (here != behind.end())
            {
                nSlot = here->second;
                continue;
            }
            size_t nPlace = nSlot;
            for (size_t i = nSlot + 1; i > 0; i &= i - 1)
                nPlace += sums[i];
            for (size_t i = nSlot + 1; i < sums.size(); i += i & (~i + 1))
                ++sums[i];
            come[nSlot].push_back(n);
            inserted(n, static_cast<uint32_t>(nPlace));
        }
        std::vector<uint64_t> now;
        now.reserve(m_Target.size());
        for (size_t i = 0; i < come.size(); ++i)
        {
            if (i > 0)
                now.push_back(m_Now[i - 1]);
            now.insert(now.end(), come[i].begin(), come[i].end());
        }
        m_Now = std::move(now);
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
    std::vector<uint64_t> m_Now;
    const std::vector<uint64_t>& m_Target;
    std::unordered_map<uint64_t, size_t> m_Places; // in m_Target
};
