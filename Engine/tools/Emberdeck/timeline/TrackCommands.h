#pragma once

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

// The accelerators of the timeline and its bars, table 170. A key counts with exactly these modifiers.
struct CTrackAccelerator
{
    bool m_bCtrl;
    bool m_bShift;
    uint16_t m_nKey; // a capital letter, or a c_nKey number
    int32_t m_nID;
};

// Numbers of keys that have no character.
constexpr uint16_t c_nKeyInsert = 0x2D;
constexpr uint16_t c_nKeyDelete = 0x2E;
constexpr uint16_t c_nKeyF2 = 0x71;
constexpr uint16_t c_nKeyF3 = 0x72;

inline constexpr CTrackAccelerator c_TrackAccelerators[] = {
    {true, false, 'C', 32825},
    {true, false, c_nKeyInsert, 32825},
    {true, false, 'X', 32826},
    {false, true, c_nKeyDelete, 32826},
    {true, false, 'V', 32841},
    {false, true, c_nKeyInsert, 32841},
    {false, false, c_nKeyDelete, 32792},
    {false, false, c_nKeyF2, 32823},
    // The find commands of the trees have no handler here: in the timeline these keys end without effect.
    {true, false, 'F', 57636},
    {false, false, c_nKeyF3, 32895},
};
