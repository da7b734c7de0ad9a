#pragma once

#include <cstdint>
#include <vector>

#include "model/TrackList.h"

// A way to another key by the keyboard.
enum class EKeyStep
{
    ePrevious, // on the track; from the first to the free space behind the last
    eNext,     // and back round
    eUp,       // to the nearest on the track above
    eDown
};

// What is selected on the tracks of one effect. The flags stand in the keys, where they outlive this object, but
// are no content of the library: they change without an edit scope. Tells nobody of a change.
class CKeySelection
{
public:
    // Borrowed; outlives the selection.
    explicit CKeySelection(const CTrackList& tracks) : m_Tracks(tracks) {}
    CKeySelection(const CKeySelection&) = delete;
    CKeySelection& operator=(const CKeySelection&) = delete;

    // The key that single-key commands act on; null: none. Its flag may have been cleared since.
    CKey* GetCurKey() const { return m_pCurKey; }
    void SetCurKey(CKey* pKey); // sets its flag; null changes no flag
    // The track of the last click; null: none.
    CTrack* GetCurTrack() const { return m_pCurTrack; }
    void SetCurTrack(CTrack* pTrack) { m_pCurTrack = pTrack; }

    bool Clear();                       // all flags; the current key stays. True: there was one
    CKey* GetFirst() const;             // by track and place; null: none
    uint32_t GetCount() const;          // keys with the flag
    std::vector<CKey*> GetKeys() const; // those, by track and place; a list of its own

    // These keys and no others, the first one current; without a key that track alone. Both empty: nothing changes.
    void Select(const std::vector<CKey*>& keys, CTrack* pTrack);
    // Makes another key the current one, or none and a track. bAdd: the flags stay. False: there is no such way,
    // and nothing has changed.
    bool Step(EKeyStep eStep, bool bAdd);
    // After the effect was changed from anywhere: nothing here points to what has gone.
    void ForgetGone();

private:
    const CTrackList& m_Tracks;
    CTrack* m_pCurTrack = nullptr;
    CKey* m_pCurKey = nullptr;
};
