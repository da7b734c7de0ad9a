#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/SpellMgr.h"

// The number of each object, which no other one has.
inline uint64_t SerialOf(const CSpell& spell)
{
    return spell.m_nSerial;
}
inline uint64_t SerialOf(const CEffectPropertySet& set) // a prefab or key
{
    return set.m_Serial.Get();
}
inline uint64_t SerialOf(const CTrack& track)
{
    return track.m_Serial.Get();
}

template <class T>
std::vector<uint64_t> SerialsOf(const std::vector<std::unique_ptr<T>>& list)
{
    std::vector<uint64_t> serials;
    serials.reserve(list.size());
    for (const auto& pObject : list)
        serials.push_back(SerialOf(*pObject));
    return serials;
}
