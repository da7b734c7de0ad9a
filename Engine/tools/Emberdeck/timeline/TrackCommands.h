#pragma once

#include "app/resources/Accelerators.h"
#include "timeline/TrackMenu.h"
#include "timeline/TrackWnd.h"

// The popup that offers a command.
enum class ETrackPopup
{
    eNone, // keys alone reach it
    eKey,
    eTrack
};

// A command of the timeline. They work on what the last click has left, and take no arguments.
struct CTrackCommand
{
    int32_t m_nID; // 0: a separator
    const char* m_pszLabel;
    void (CTrackWnd::*m_pfnHandler)();
    ETrackPopup m_ePopup;
    bool (CTrackMenuState::*m_pfnOffered)() const;
};

// In the order of the menus.
inline constexpr CTrackCommand c_TrackCommands[] = {
    {32823, "&Name Key", &CTrackWnd::OnTrackNameKey, ETrackPopup::eKey, &CTrackMenuState::Always},
    {32814, "&Motion Link To Key", &CTrackWnd::OnTrackLinkKey, ETrackPopup::eKey, &CTrackMenuState::Always},
    {32793, "E&xpand Key", &CTrackWnd::OnTrackExpandKey, ETrackPopup::eKey, &CTrackMenuState::IsUnlinked},
    {32816, "&Set Key Length", &CTrackWnd::OnTrackSetKeyLength, ETrackPopup::eKey,
     &CTrackMenuState::IsUnlinked},
    {32815, "&Unlink Key", &CTrackWnd::OnTrackUnlinkKey, ETrackPopup::eKey, &CTrackMenuState::HasLinks},
    {32825, "&Copy Key", &CTrackWnd::OnTrackCopyKey, ETrackPopup::eKey, &CTrackMenuState::IsSingle},
    {32826, "&Cut Key", &CTrackWnd::OnTrackCutKey, ETrackPopup::eKey, &CTrackMenuState::IsSingle},
    {32874, "Create &Prefab From Key", &CTrackWnd::OnTrackCreatePrefabFromKey, ETrackPopup::eKey,
     &CTrackMenuState::IsSingle},
    {32875, "&Assign Prefab To Key", &CTrackWnd::OnTrackAssignPrefabToKey, ETrackPopup::eKey,
     &CTrackMenuState::CanAssignPrefab},
    {32791, "Edit &Key", &CTrackWnd::OnTrackEditKey, ETrackPopup::eKey, &CTrackMenuState::CanEdit},
    {0, "", nullptr, ETrackPopup::eKey, &CTrackMenuState::Always},
    {32792, "&Delete Key", &CTrackWnd::OnTrackDeleteKey, ETrackPopup::eKey, &CTrackMenuState::Always},

    {32790, "&Add Key", &CTrackWnd::OnTrackAddKey, ETrackPopup::eTrack, &CTrackMenuState::OnFreeSpace},
    {32870, "Add &Prefab %s", &CTrackWnd::OnTrackAddChildKey, ETrackPopup::eTrack,
     &CTrackMenuState::CanAddPrefab}, // the active prefab's display name
    {32827, "&Paste Key", &CTrackWnd::OnTrackPasteKey, ETrackPopup::eTrack, &CTrackMenuState::CanPaste},
    {32809, "&Delete Track", &CTrackWnd::OnTrackDeleteTrack, ETrackPopup::eTrack, &CTrackMenuState::OnTrack},
    {32789, "&Insert Track", &CTrackWnd::OnTrackInsertTrack, ETrackPopup::eTrack, &CTrackMenuState::Always},

    {32841, "", &CTrackWnd::OnTrackPasteKeyAtMouse, ETrackPopup::eNone, &CTrackMenuState::Always},
};

// A key counts with exactly these modifiers.
using CTrackAccelerator = CAccelerator;
inline constexpr const auto& c_TrackAccelerators = c_TimelineAccelerators;
