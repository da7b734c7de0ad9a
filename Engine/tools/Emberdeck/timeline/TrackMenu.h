#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/resources/Commands.h"
#include "model/Key.h"

// One entry of a popup menu: a command, a popup of its own, or a separator.
struct CMenuEntry
{
    std::string m_sLabel; // "&" marks the shortcut letter, "&&" is an ampersand; empty for a separator
    int32_t m_nID = 0;    // 0: a popup, or a separator
    std::vector<CMenuEntry> m_Entries;
    bool IsSeparator() const { return m_nID == 0 && m_Entries.empty(); }
};

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
