#pragma once

// What the status line says when a command or a gesture of the timeline did nothing and no box tells it.
constexpr const char* c_szNothingToPaste = "Nothing to paste: no key was copied or cut";
constexpr const char* c_szPasteOffTracks = "Not pasted: the pointer is over no track";
constexpr const char* c_szPasteOnKey = "Not pasted: there is a key already";
constexpr const char* c_szNoRoomToPaste = "Not pasted: there is no room on the track";
constexpr const char* c_szNoRoomToAdd = "No key added: there is no room on the track";
constexpr const char* c_szNoLinkTarget = "Not linked: no other key was clicked";
constexpr const char* c_szCarryOneKey = "Not carried: only one key can be, and several are selected";
constexpr const char* c_szCarryRefused = "Not carried: there was no room where the key was dropped";
constexpr const char* c_szNoPrefabToAssign = "No prefab assigned: none is active";
constexpr const char* c_szPrefabOfOtherType =
    "No prefab assigned: the active one has another type than the key";
