#pragma once

#include <cstdint>
#include <vector>

#include "app/MenuEntry.h"
#include "app/resources/Commands.h"
#include "model/Key.h"

// What decides on the entries of the popup menu, as the right button release has left it.
struct CTrackMenuState
{
    bool m_bTrack = false;                               // the click is on a track
    const CKey* m_pKey = nullptr;                        // and on this key; null: on free space
    bool m_bLinkedTo = false;                            // another key has a motion link to it
    uint32_t m_nSelected = 0;                            // keys
    const CEffectPropertySet* m_pActivePrefab = nullptr; // null: none
    bool m_bKeyOnClipboard = false;

    // Whether a command with that rule is offered. False for the rules of other owners.
    bool IsAllowed(EEnableRule eRule) const;
};

// The menu for that state, to be shown with its middle at the click's x. Nothing in it is ever greyed: what doesn't apply is left out.
std::vector<CMenuEntry> BuildTrackMenu(const CTrackMenuState& state);
