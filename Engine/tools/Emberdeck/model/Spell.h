#pragma once

#include <cstdint>
#include <string_view>

#include "model/TrackList.h"

// One effect. Every construction counts for the numbers in default names, so it is neither copied
// nor moved; CopyFrom fills a new one for Duplicate.
class CSpell
{
public:
    static constexpr uint32_t c_nMaxName = 127;

    CSpell(); // named "Untitled FX %d"
    // In place of one that has gone, under its serial: without a name, and counted for none.
    explicit CSpell(uint64_t nSerial);
    CSpell(const CSpell&) = delete;
    CSpell& operator=(const CSpell&) = delete;

    void SetName(std::string_view sName); // up to the first NUL; at most 127 bytes are kept, the rest zero
    // Takes phase length, tracks and clones of the keys, which keep ids and links; not the name. Runs
    // RecalcNextKeyID at the end. False when memory ran out part way: only good to be deleted then.
    bool CopyFrom(const CSpell& other);

    // As of model/Serial.h: tells effects apart where a pointer might have been reused.
    const uint64_t m_nSerial;
    char m_szName[c_nMaxName + 1];
    CTrackList m_Tracks;
};
