#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "model/KeyView.h"
#include "model/Track.h"

// The tracks of one effect, from the top of the timeline down, owned.
class CTrackList
{
public:
    // Tracks that a file or a gesture may ask for; numbers from here on are refused.
    static constexpr uint32_t c_nMaxTracks = 65536;

    CTrackList() = default;
    CTrackList(const CTrackList&) = delete;
    CTrackList& operator=(const CTrackList&) = delete;

    uint32_t GetNumTracks() const { return static_cast<uint32_t>(m_Tracks.size()); }
    CTrack* GetTrack(uint32_t nTrack) const;             // null at and beyond GetNumTracks
    uint32_t GetTrackNumber(const CTrack* pTrack) const; // all bits set when it isn't here
    CTrack* AddTrack(); // at the bottom; null when out of memory, and beyond c_nMaxTracks
    // Null puts it at the top; raises m_nTrack of the keys below. Null as AddTrack, and when pTrack isn't here.
    CTrack* InsertTrackAfter(const CTrack* pTrack);
    std::unique_ptr<CTrack>
    RemoveTrack(const CTrack* pTrack); // lowers m_nTrack of the keys below; null: not here
    void Clear();                      // no tracks; phase length and id counter stay
    // For whoever puts tracks back where they were: the list itself. Renumber runs behind each change.
    std::vector<std::unique_ptr<CTrack>>& TracksToRestore() { return m_Tracks; }
    void Renumber(); // tells all keys which track holds them

    CKey* FindKey(uint32_t nID) const;           // from the top, first found; null
    CTrack* FindTrackOf(const CKey* pKey) const; // the track that holds it, or null
    uint32_t GetNumKeys() const;                 // on all tracks
    // The counter becomes one more than the largest of itself and all key ids, so it grows each time. After
    // an effect was loaded; CSpell::CopyFrom runs it by itself.
    void RecalcNextKeyID();
    // A key id that no key has, counted up; the lowest unused one after the counter has wrapped.
    uint32_t TakeKeyID();

    const std::vector<std::unique_ptr<CTrack>>& Tracks() const { return m_Tracks; }
    CKeyView AllKeys() const { return CKeyView(m_Tracks); }

    int32_t m_nPhaseLength = 10000; // milliseconds
    uint32_t m_nNextKeyID = 0;

private:
    CTrack* InsertTrackAt(uint32_t nTrack);

    std::vector<std::unique_ptr<CTrack>> m_Tracks;
};
