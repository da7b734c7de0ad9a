#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/Key.h"

// The keys of one row, owned, by start time ascending. Keys may touch but don't overlap.
class CTrack
{
public:
    CTrack() = default;
    CTrack(const CTrack&) = delete;
    CTrack& operator=(const CTrack&) = delete;

    uint32_t GetNumKeys() const { return static_cast<uint32_t>(m_Keys.size()); }
    CKey* GetKey(uint32_t nIndex) const { return nIndex < m_Keys.size() ? m_Keys[nIndex].get() : nullptr; }
    int32_t IndexOf(const CKey* pKey) const;  // -1 when it isn't here
    CKey* GetPrevKey(const CKey* pKey) const; // null at the ends, or when pKey isn't here
    CKey* GetNextKey(const CKey* pKey) const;

    // At the end; not in order until PlaceKey has run. Null, and the key is gone, when out of memory.
    CKey* AppendKey(std::unique_ptr<CKey> pKey);
    // Makes the track consistent after pKey was added or its times changed; moves or cuts only
    // pKey, which is on this track. In a gap that is too small the key ends up shorter, at worst
    // with its end at or before its start. Knows no phase length.
    void PlaceKey(CKey* pKey);
    // AppendKey and PlaceKey for a track that was filled through this operation alone, with the same
    // outcome, as long as nobody changed the times of its keys meanwhile; costs no walk over the track when
    // the key comes last, as it does in a saved file. After any other operation it is just the two.
    CKey* AppendAndPlaceKey(std::unique_ptr<CKey> pKey);
    void SortKeys();                                   // by start, stable; cuts nothing
    std::unique_ptr<CKey> RemoveKey(const CKey* pKey); // null when it isn't here

    const std::vector<std::unique_ptr<CKey>>& Keys() const { return m_Keys; }

private:
    void SortPlaced();
    void FitKey(size_t nIndex);

    std::vector<std::unique_ptr<CKey>> m_Keys;
    // For AppendAndPlaceKey: the keys that it has placed here alone are in order, but for the one at
    // m_nRaised, whose start was raised above that of the next.
    static constexpr size_t c_nNone = SIZE_MAX;
    bool m_bPlacedOnly = true;
    size_t m_nRaised = c_nNone;
};
