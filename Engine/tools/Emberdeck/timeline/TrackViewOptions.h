#pragma once

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
