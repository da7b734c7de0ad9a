#pragma once

#include <cstdint>
#include <string_view>

#include "app/resources/Commands.h"

// The string table. The entry of a command has its id, and holds the text of the status line and, behind a line feed, the
// tool tip of its button.

constexpr int32_t c_nStrVersionLine = 185; // version, then build
constexpr int32_t c_nStrLegalNotice = 186;
constexpr int32_t c_nStrReady = 57345; // the status line when there is nothing else to say

struct CStringEntry
{
    int32_t m_nID;
    const char* m_pszText;
};

// clang-format off
inline constexpr CStringEntry c_Strings[] = {
    {c_nStrVersionLine, "Version: %s - %s"},
    {c_nStrLegalNotice,
     "This program is protected by copyright. It may be used, copied and passed on only as its licence "
     "allows, and it comes without warranty of any kind. Effect libraries and packed files that you make "
     "with it are yours; the plug-ins, resources and games that it works with belong to their owners."},
    {c_nCmdSave, "Saves the currently open effect file to disk\nSave"},
    {c_nCmdLaunch, "Launches the application specified in the settings dialog\nLaunch"},
    {c_nCmdPackEffects, "Packs the current effects into a format readible by effect systems\nPack Effects"},
    {c_nCmdPackEffectsAs, "Packs the current effects for an effect system under the specified name\nPack Effects As"},
    {c_nCmdSaveAndPack, "Saves and packs the currently open effect file\nSave And Pack"},
    {c_nCmdSavePackLaunch, "Saves and packs the currently open effects and then launches the application\nSave, Pack, Launch"},
    {c_nCmdSetActivePrefab, "Sets the currently selected prefab to be the prefab that all operations involve\nSet Active Prefab"},
    {c_nCmdNewEffect, "Creates a new effect\nNew Effect"},
    {c_nCmdFindNext, "Repeats the last find.\nFind Next"},
    {c_nCmdConnect, "Connects to source control.\nConnect"},
    {c_nCmdDisconnect, "Disconnects from source control.\nDisconnect"},
    {c_nCmdAddToSourceControl, "Add this file to source control\nAdd to Source Control"},
    {c_nCmdCheckOut, "Check out this file for edit\nCheck Out"},
    {c_nCmdSubmit, "Submit changes made to this file\nSubmit Pending Changes"},
    {c_nCmdUndoChanges, "Undo changes made to this file\nUndo Pending Changes"},
    {c_nCmdGetLatest, "Get the latest version of this file.\nGet Latest Version"},
    {c_nCmdHistory, "Displays the history dialog for this file\nHistory"},
    {c_nCmdSourceControlBar, "Show or hide the source control toolbar\nToggle Source Control ToolBar"},
    {c_nCmdStandardBar, "Show or hide the standard toolbar\nToggle Standard ToolBar"},
    {c_nCmdEditBar, "Show or hide the edit toolbar\nToggle Edit ToolBar"},
    {c_nCmdHistoryList, "Show or hide the list of the changes to the library\nHistory"},
    {c_nCmdUndo, "Takes the last change to the library back\nUndo"},
    {c_nCmdRedo, "Makes the change again that was taken back\nRedo"},
    {c_nStrReady, "Ready"},
    {c_nCmdNew, "Create a new document\nNew"},
    {c_nCmdOpen, "Open an existing document\nOpen"},
    {c_nCmdFind, "Find the specified text\nFind"},
    {c_nCmdAbout, "Display program information, version number and copyright\nAbout"},
    {c_nCmdExit, "Quit the application; prompts to save documents\nExit"},
    {c_nCmdStatusBar, "Show or hide the status bar\nToggle StatusBar"},
};
// clang-format on

// Empty when there is no such string.
constexpr std::string_view FindString(int32_t nID)
{
    for (const CStringEntry& entry : c_Strings)
    {
        if (entry.m_nID == nID)
            return entry.m_pszText;
    }
    return {};
}

// What the status line says of a command while the pointer is over it; empty: it has no text of its own.
constexpr std::string_view GetStatusText(int32_t nCommand)
{
    const std::string_view sText = FindString(nCommand);
    return sText.substr(0, sText.find('\n'));
}

// Empty: no tool tip.
constexpr std::string_view GetToolTip(int32_t nCommand)
{
    const std::string_view sText = FindString(nCommand);
    const size_t nEnd = sText.find('\n');
    return nEnd == std::string_view::npos ? std::string_view() : sText.substr(nEnd + 1);
}
