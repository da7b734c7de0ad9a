#pragma once

#include <cstdint>
#include <memory>
#include <utility>
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
    int32_t IndexOf(const CKey* pKey) const; // -1 when it isn't here

    bool ReserveKey(); // room for one more; false when out of memory, true: the next AppendKey won't be
    // At the end; not in order until PlaceKey has run. Null, and the key is gone, when out of memory.
    CKey* AppendKey(std::unique_ptr<CKey> pKey);
    // Makes the track consistent after pKey was added or its times changed; moves or cuts only
    // pKey, which is on this track. In a gap that is too small the key ends up shorter, at worst
    // with its end at or before its start. Knows no phase length.
    void PlaceKey(CKey* pKey);
    CKeySpan FitSpan(CKeySpan span) const; // what PlaceKey would make of a key appended with these times
    void SortKeys();                       // by start, stable; cuts nothing
    std::unique_ptr<CKey> RemoveKey(const CKey* pKey); // null when it isn't here

    // For whoever puts keys back where they were: the list itself, which stays in order and without null.
    std::vector<std::unique_ptr<CKey>>& KeysToRestore() { return m_Keys; }
    // In place of those that are here: in order, as PlaceKey leaves them.
    void SetKeys(std::vector<std::unique_ptr<CKey>> keys) { m_Keys = std::move(keys); }

    const std::vector<std::unique_ptr<CKey>>& Keys() const { return m_Keys; }

    CSerial m_Serial;

private:
    std::vector<std::unique_ptr<CKey>> m_Keys;
};
