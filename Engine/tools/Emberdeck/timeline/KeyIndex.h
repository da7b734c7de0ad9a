#pragma once

#include <cstdint>
#include <unordered_map>

#include "model/TrackList.h"

// Finds the targets of motion links in one pass over an effect. Good until a key comes or goes. It is filled
// at the first question, so that an effect without links pays nothing.
class CKeyIndex
{
public:
    explicit CKeyIndex(const CTrackList& tracks) : m_Tracks(tracks) {}

    // The key that key is linked to, the first with that id from the top. Null: not linked, no such key, or the
    // key itself, which would make it run from its own edges.
    const CKey* TargetOf(const CKey& key);

private:
    const CTrackList& m_Tracks;
    bool m_bFilled = false;
    std::unordered_map<uint32_t, const CKey*> m_Keys;
};
