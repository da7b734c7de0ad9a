#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "model/Track.h"

// Fills empty tracks with keys in the order in which they come, with the outcome of AppendKey and PlaceKey for
// each, at the cost of a search: a file may hold a million keys of one track from the last to the first. The
// tracks have their keys once Finish has run; until then nobody changes the times of a placed key.
class CTrackFill
{
public:
    CTrackFill() = default;

    // Owned by the filling. Null, and the key is gone, when out of memory; so may be one before it.
    CKey* Place(std::unique_ptr<CKey> pKey);
    const CKey* GetLastKey() const { return m_Chunks.empty() ? nullptr : m_Chunks.back().back().get(); }
    // Hands the keys over; those that the track held before are destroyed. False when out of memory: the keys
    // stay here.
    bool Finish(CTrack& track);

private:
    using CChunk = std::vector<std::unique_ptr<CKey>>;
    struct CPlace
    {
        size_t m_nChunk = 0;
        size_t m_nIndex = 0; // may be the chunk's length
    };

    void PlaceRaised();
    template <class TIsBefore>
    CPlace Search(TIsBefore isBefore) const;
    CPlace Insert(CPlace place, std::unique_ptr<CKey> pKey);
    CKey* Neighbour(CPlace place, int nStep) const;
    void Fit(CPlace place);

    // None is empty. Keys by start, but for the one that Fit has raised above the next one's.
    std::vector<CChunk> m_Chunks;
    bool m_bRaised = false;
    CPlace m_Raised;
};
