#pragma once

#include "app/resources/Accelerators.h"
#include "timeline/TrackWnd.h"

// The commands of the timeline. They work on what the last click has left, and take no arguments.
inline constexpr TCommandRoute<CTrackWnd> c_TrackCommands[] = {
    {c_nCmdNameKeys, &CTrackWnd::OnTrackNameKey},
    {c_nCmdLinkKey, &CTrackWnd::OnTrackLinkKey},
    {c_nCmdExpandKeys, &CTrackWnd::OnTrackExpandKey},
    {c_nCmdSetKeyLength, &CTrackWnd::OnTrackSetKeyLength},
    {c_nCmdUnlinkKeys, &CTrackWnd::OnTrackUnlinkKey},
    {c_nCmdCopyKey, &CTrackWnd::OnTrackCopyKey},
    {c_nCmdCutKey, &CTrackWnd::OnTrackCutKey},
    {c_nCmdCreatePrefabFromKey, &CTrackWnd::OnTrackCreatePrefabFromKey},
    {c_nCmdAssignPrefabToKey, &CTrackWnd::OnTrackAssignPrefabToKey},
    {c_nCmdEditKey, &CTrackWnd::OnTrackEditKey},
    {c_nCmdDeleteKeys, &CTrackWnd::OnTrackDeleteKey},
    {c_nCmdAddKey, &CTrackWnd::OnTrackAddKey},
    {c_nCmdAddPrefabKey, &CTrackWnd::OnTrackAddChildKey},
    {c_nCmdPasteKey, &CTrackWnd::OnTrackPasteKey},
    {c_nCmdDeleteTrack, &CTrackWnd::OnTrackDeleteTrack},
    {c_nCmdInsertTrack, &CTrackWnd::OnTrackInsertTrack},
    {c_nCmdPasteKeyAtMouse, &CTrackWnd::OnTrackPasteKeyAtMouse},
};
