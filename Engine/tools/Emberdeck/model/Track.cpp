#include "model/Track.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "model/MakeOrNull.h"

namespace
{

bool StartsEarlier(const std::unique_ptr<CKey>& pLeft, const std::unique_ptr<CKey>& pRight)
{
    return pLeft->m_nStartTime < pRight->m_nStartTime;
}

// Takes one owner out and puts it in at nTo, those between move up. As bytes, since a file may fill a track
// backward: one by one this would take ten times as long.
void MoveOwner(std::vector<std::unique_ptr<CKey>>& keys, std::ptrdiff_t nFrom, std::ptrdiff_t nTo)
{
    std::unique_ptr<CKey> pMoved = std::move(keys[nFrom]);
    std::unique_ptr<CKey>* pKeys = keys.data();
    if (nFrom < nTo)
        std::memmove(static_cast<void*>(pKeys + nFrom), pKeys + nFrom + 1, sizeof(*pKeys) * (nTo - nFrom));
    else
        std::memmove(static_cast<void*>(pKeys + nTo + 1), pKeys + nTo, sizeof(*pKeys) * (nFrom - nTo));
    // What stands at nTo now is a second owner of its neighbour's key, so it is overwritten, not assigned to.
    std::construct_at(pKeys + nTo, std::move(pMoved));
}

} // namespace

int32_t CTrack::IndexOf(const CKey* pKey) const
{
    for (size_t i = 0; i < m_Keys.size(); ++i)
    {
        if (m_Keys[i].get() == pKey)
            return static_cast<int32_t>(i);
    }
    return -1;
}

CKey* CTrack::GetPrevKey(const CKey* pKey) const
{
    const int32_t nIndex = IndexOf(pKey);
    return nIndex > 0 ? m_Keys[nIndex - 1].get() : nullptr;
}

CKey* CTrack::GetNextKey(const CKey* pKey) const
{
    const int32_t nIndex = IndexOf(pKey);
    return nIndex >= 0 ? GetKey(static_cast<uint32_t>(nIndex) + 1) : nullptr;
}

CKey* CTrack::AppendKey(std::unique_ptr<CKey> pKey)
{
    if (!pKey || !TryAllocating([&] { m_Keys.push_back(std::move(pKey)); }))
        return nullptr;
    m_bPlacedOnly = false;
    return m_Keys.back().get();
}

void CTrack::SortKeys()
{
    m_bPlacedOnly = false;
    if (!std::is_sorted(m_Keys.begin(), m_Keys.end(), StartsEarlier))
        std::stable_sort(m_Keys.begin(), m_Keys.end(), StartsEarlier);
}

void CTrack::PlaceKey(CKey* pKey)
{
    SortKeys();
    const int32_t nIndex = IndexOf(pKey);
    if (nIndex >= 0)
        FitKey(static_cast<size_t>(nIndex));
}

// Cuts a key to the room between its neighbours; its end may come to lie before its start.
void CTrack::FitKey(size_t nIndex)
{
    CKey& key = *m_Keys[nIndex];
    if (nIndex == 0)
        key.m_nStartTime = std::max(key.m_nStartTime, 0);
    else
        key.m_nStartTime = std::max(key.m_nStartTime, m_Keys[nIndex - 1]->m_nEndTime);
    if (nIndex + 1 < m_Keys.size())
        key.m_nEndTime = std::min(key.m_nEndTime, m_Keys[nIndex + 1]->m_nStartTime);
}

CKey* CTrack::AppendAndPlaceKey(std::unique_ptr<CKey> pKey)
{
    if (!m_bPlacedOnly)
    {
        CKey* pAppended = AppendKey(std::move(pKey));
        if (pAppended)
            PlaceKey(pAppended);
        return pAppended;
    }
    if (!pKey || !TryAllocating([&] { m_Keys.push_back(std::move(pKey)); }))
        return nullptr;
    SortPlaced();

    // Behind all keys that don't start later, as a stable sort leaves it.
    const auto last = m_Keys.end() - 1;
    auto place = last;
    if (last != m_Keys.begin() && StartsEarlier(*last, *(last - 1)))
    {
        place = std::upper_bound(m_Keys.begin(), last, *last, StartsEarlier);
        MoveOwner(m_Keys, last - m_Keys.begin(), place - m_Keys.begin());
    }
    const auto nIndex = static_cast<size_t>(place - m_Keys.begin());
    FitKey(nIndex);
    if (nIndex + 1 < m_Keys.size() && StartsEarlier(m_Keys[nIndex + 1], m_Keys[nIndex]))
        m_nRaised = nIndex;
    return m_Keys[nIndex].get();
}

// Moves the one key that the last placing raised out of order behind those that start earlier. The key just
// appended isn't among them yet.
void CTrack::SortPlaced()
{
    if (m_nRaised == c_nNone)
        return;
    const auto raised = m_Keys.begin() + static_cast<std::ptrdiff_t>(m_nRaised);
    const auto place = std::lower_bound(raised + 1, m_Keys.end() - 1, *raised, StartsEarlier);
    MoveOwner(m_Keys, raised - m_Keys.begin(), place - m_Keys.begin() - 1);
    m_nRaised = c_nNone;
}

std::unique_ptr<CKey> CTrack::RemoveKey(const CKey* pKey)
{
    const int32_t nIndex = IndexOf(pKey);
    if (nIndex < 0)
        return nullptr;
    m_bPlacedOnly = false;
    std::unique_ptr<CKey> pRemoved = std::move(m_Keys[nIndex]);
    m_Keys.erase(m_Keys.begin() + nIndex);
    return pRemoved;
}
