#pragma once

#include "platform/IProfile.h"

// What the timeline shows beyond its plain picture. All off at first; the front sets what users get.
struct CTrackViewOptions
{
    // Names stand in what can be seen of their keys, shortened where that is too narrow, and no line runs through
    // them. Off: in the middle of the key, or not at all.
    bool m_bReadableNames = false;
    // The ruler's labels at both ends are moved inside. Off: they are cut.
    bool m_bWholeRulerLabels = false;
    // A carried key shows where it would land: with guides, in Key Info, and by the pointer where it is refused.
    bool m_bShowLanding = false;

    static constexpr CTrackViewOptions ForUsers() { return CTrackViewOptions{true, true, true}; }
};

// One of the options, as the user turns it on and off.
struct CTrackViewSwitch
{
    const char* m_pszKey;   // in the settings
    const char* m_pszLabel; // "&" marks the shortcut letter
    bool CTrackViewOptions::*m_pbOption;
};

// In the order of the menu.
inline constexpr CTrackViewSwitch c_TrackViewSwitches[] = {
    {"ReadableNames", "&Names Where Keys Are Visible", &CTrackViewOptions::m_bReadableNames},
    {"WholeRulerLabels", "Whole &Ruler Labels", &CTrackViewOptions::m_bWholeRulerLabels},
    {"ShowLanding", "&Landing Place of a Carried Key", &CTrackViewOptions::m_bShowLanding},
};

// The user's choice, kept in the settings. What isn't told there is as ForUsers has it.
CTrackViewOptions LoadTrackViewOptions(const IProfile& profile);
void SaveTrackViewOption(IProfile& profile, const CTrackViewSwitch& option, bool bOn);
