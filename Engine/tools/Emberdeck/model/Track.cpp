#include "model/Track.h"

#include <algorithm>
#include <utility>

#include "model/MakeOrNull.h"

namespace
{

bool StartsEarlier(const std::unique_ptr<CKey>& pLeft, const std::unique_ptr<CKey>& pRight)
{
    return pLeft->m_nStartTime < pRight->m_nStartTime;
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

bool CTrack::ReserveKey()
{
    if (m_Keys.size() < m_Keys.capacity())
        return true;
    return TryAllocating([&] { m_Keys.reserve(std::max<size_t>(m_Keys.size() * 2, 4)); });
}

CKey* CTrack::AppendKey(std::unique_ptr<CKey> pKey)
{
    if (!pKey || !TryAllocating([&] { m_Keys.push_back(std::move(pKey)); }))
        return nullptr;
    return m_Keys.back().get();
}

void CTrack::SortKeys()
{
    if (!std::is_sorted(m_Keys.begin(), m_Keys.end(), StartsEarlier))
        std::stable_sort(m_Keys.begin(), m_Keys.end(), StartsEarlier);
}

void CTrack::PlaceKey(CKey* pKey)
{
    SortKeys();
    const int32_t nIndex = IndexOf(pKey);
    if (nIndex >= 0)
        pKey->FitBetween(nIndex > 0 ? m_Keys[nIndex - 1].get() : nullptr,
                         GetKey(static_cast<uint32_t>(nIndex) + 1));
}

CKeySpan CTrack::FitSpan(CKeySpan span) const
{
    const CKey* pPrev = nullptr;
    const CKey* pNext = nullptr;
    for (const std::unique_ptr<CKey>& pKey : m_Keys)
    {
        if (pKey->m_nStartTime <= span.m_nStart && (!pPrev || pPrev->m_nStartTime <= pKey->m_nStartTime))
            pPrev = pKey.get();
        if (pKey->m_nStartTime > span.m_nStart && (!pNext || pKey->m_nStartTime < pNext->m_nStartTime))
            pNext = pKey.get();
    }
    return CKey::Fit(span, pPrev, pNext);
}

std::unique_ptr<CKey> CTrack::RemoveKey(const CKey* pKey)
{
    const int32_t nIndex = IndexOf(pKey);
    if (nIndex < 0)
        return nullptr;
    std::unique_ptr<CKey> pRemoved = std::move(m_Keys[nIndex]);
    m_Keys.erase(m_Keys.begin() + nIndex);
    return pRemoved;
}
