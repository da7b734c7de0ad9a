#pragma once

#include <cstdint>
#include <string_view>

// The string table. The entry of a command holds the text of the status line and, behind a line feed, the
// tool tip of its button.

constexpr int32_t c_nStrDocument = 128;    // names of the document kind
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
    {c_nStrDocument, "\nEmberdeck\nEmberdeck\n\n\nEmberdeck.Document\nEmberdeck Document"},
    {c_nStrVersionLine, "Version: %s - %s"},
    {c_nStrLegalNotice,
     "This program is protected by copyright. It may be used, copied and passed on only as its licence "
     "allows, and it comes without warranty of any kind. Effect libraries and packed files that you make "
     "with it are yours; the plug-ins, resources and games that it works with belong to their owners."},
    {32796, "Saves the currently open effect file to disk\nSave"},
    {32800, "Launches the application specified in the settings dialog\nLaunch"},
    {32824, "Changes the current key to a different type."}, // a command that no menu offers
    {32853, "Packs the current effects into a format readible by effect systems\nPack Effects"},
    {32854, "Packs the current effects for an effect system under the specified name\nPack Effects As"},
    {32859, "Saves and packs the currently open effect file\nSave And Pack"},
    {32862, "Saves and packs the currently open effects and then launches the application\nSave, Pack, Launch"},
    {32866, "Sets the currently selected prefab to be the prefab that all operations involve\nSet Active Prefab"},
    {32877, "Creates a new effect\nNew Effect"},
    {32895, "Repeats the last find.\nFind Next"},
    {32905, "Connects to source control.\nConnect"},
    {32906, "Disconnects from source control.\nDisconnect"},
    {32907, "Add this file to source control\nAdd to Source Control"},
    {32908, "Check out this file for edit\nCheck Out"},
    {32909, "Submit changes made to this file\nSubmit Pending Changes"},
    {32910, "Undo changes made to this file\nUndo Pending Changes"},
    {32911, "Get the latest version of this file.\nGet Latest Version"},
    {32912, "Displays the history dialog for this file\nHistory"},
    {32916, "Show or hide the source control toolbar\nToggle Source Control ToolBar"},
    {32917, "Show or hide the standard toolbar\nToggle Standard ToolBar"},
    {c_nStrReady, "Ready"},
    {57600, "Create a new document\nNew"},
    {57601, "Open an existing document\nOpen"},
    {57636, "Find the specified text\nFind"},
    {57664, "Display program information, version number and copyright\nAbout"},
    {57665, "Quit the application; prompts to save documents\nExit"},
    {59393, "Show or hide the status bar\nToggle StatusBar"},
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
