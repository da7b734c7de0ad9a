#include "model/TrackFill.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "model/MakeOrNull.h"

namespace
{

// A chunk this long is cut in two before a key is put into its middle.
constexpr size_t c_nMaxChunk = 256;

} // namespace

CKey* CTrackFill::Place(std::unique_ptr<CKey> pKey)
{
    CKey* pPlaced = pKey.get();
    const auto place = [&]
    {
        PlaceRaised();
        // Behind all keys that don't start later, as a stable sort leaves it.
        const int32_t nStart = pPlaced->m_nStartTime;
        Fit(Insert(Search([nStart](const CKey& key) { return key.m_nStartTime <= nStart; }),
                   std::move(pKey)));
    };
    return pPlaced && TryAllocating(place) ? pPlaced : nullptr;
}

// The next sort moves the key that the last placing raised, behind those that start earlier; those that start
// with it came later.
void CTrackFill::PlaceRaised()
{
    if (!m_bRaised)
        return;
    CChunk& chunk = m_Chunks[m_Raised.m_nChunk];
    const auto taken = chunk.begin() + static_cast<std::ptrdiff_t>(m_Raised.m_nIndex);
    std::unique_ptr<CKey> pRaised = std::move(*taken);
    chunk.erase(taken);
    if (chunk.empty())
        m_Chunks.erase(m_Chunks.begin() + static_cast<std::ptrdiff_t>(m_Raised.m_nChunk));
    m_bRaised = false;
    const int32_t nStart = pRaised->m_nStartTime;
    Insert(Search([nStart](const CKey& key) { return key.m_nStartTime < nStart; }), std::move(pRaised));
}

// Behind all keys for which isBefore holds; it holds for the first ones only.
template <class TIsBefore>
CTrackFill::CPlace CTrackFill::Search(TIsBefore isBefore) const
{
    if (m_Chunks.empty())
        return {};
    // Nearly always the last place of all: a saved file has its keys in order.
    const auto isChunkBefore = [&](const CChunk& chunk) { return isBefore(*chunk.front()); };
    auto chunk = isBefore(*m_Chunks.back().back())
                     ? m_Chunks.end()
                     : std::partition_point(m_Chunks.begin(), m_Chunks.end(), isChunkBefore);
    if (chunk != m_Chunks.begin())
        --chunk;
    const auto isKeyBefore = [&](const std::unique_ptr<CKey>& pKey) { return isBefore(*pKey); };
    const auto key = isKeyBefore(chunk->back())
                         ? chunk->end()
                         : std::partition_point(chunk->begin(), chunk->end(), isKeyBefore);
    return {static_cast<size_t>(chunk - m_Chunks.begin()), static_cast<size_t>(key - chunk->begin())};
}

CTrackFill::CPlace CTrackFill::Insert(CPlace place, std::unique_ptr<CKey> pKey)
{
    if (m_Chunks.empty())
    {
        CChunk first;
        first.push_back(std::move(pKey));
        m_Chunks.push_back(std::move(first));
        return place;
    }
    const size_t nLength = m_Chunks[place.m_nChunk].size();
    if (nLength >= c_nMaxChunk && place.m_nIndex < nLength)
    {
        m_Chunks.reserve(m_Chunks.size() + 1); // so that nothing fails once keys have moved
        CChunk& cut = m_Chunks[place.m_nChunk];
        const size_t nKept = nLength / 2;
        CChunk upper(std::make_move_iterator(cut.begin() + static_cast<std::ptrdiff_t>(nKept)),
                     std::make_move_iterator(cut.end()));
        cut.resize(nKept);
        m_Chunks.insert(m_Chunks.begin() + static_cast<std::ptrdiff_t>(place.m_nChunk) + 1, std::move(upper));
        if (place.m_nIndex > nKept)
            place = {place.m_nChunk + 1, place.m_nIndex - nKept};
    }
    CChunk& chunk = m_Chunks[place.m_nChunk];
    chunk.insert(chunk.begin() + static_cast<std::ptrdiff_t>(place.m_nIndex), std::move(pKey));
    return place;
}

// The key one before (-1) or behind (1) a place, null at the ends.
CKey* CTrackFill::Neighbour(CPlace place, int nStep) const
{
    const CChunk& chunk = m_Chunks[place.m_nChunk];
    if (nStep < 0)
    {
        if (place.m_nIndex > 0)
            return chunk[place.m_nIndex - 1].get();
        return place.m_nChunk > 0 ? m_Chunks[place.m_nChunk - 1].back().get() : nullptr;
    }
    if (place.m_nIndex + 1 < chunk.size())
        return chunk[place.m_nIndex + 1].get();
    return place.m_nChunk + 1 < m_Chunks.size() ? m_Chunks[place.m_nChunk + 1].front().get() : nullptr;
}

void CTrackFill::Fit(CPlace place)
{
    CKey& key = *m_Chunks[place.m_nChunk][place.m_nIndex];
    const CKey* pNext = Neighbour(place, 1);
    key.FitBetween(Neighbour(place, -1), pNext);
    m_bRaised = pNext && pNext->m_nStartTime < key.m_nStartTime;
    m_Raised = place;
}

bool CTrackFill::Finish(CTrack& track)
{
    const auto joinChunks = [&]
    {
        size_t nKeys = 0;
        for (const CChunk& chunk : m_Chunks)
            nKeys += chunk.size();
        CChunk& keys = m_Chunks.front();
        keys.reserve(nKeys);
        for (size_t i = 1; i < m_Chunks.size(); ++i)
            std::move(m_Chunks[i].begin(), m_Chunks[i].end(), std::back_inserter(keys));
    };
    if (!m_Chunks.empty())
    {
        if (m_Chunks.size() > 1 && !TryAllocating(joinChunks))
            return false;
        track.SetKeys(std::move(m_Chunks.front()));
    }
    m_Chunks.clear();
    m_bRaised = false;
    return true;
}
