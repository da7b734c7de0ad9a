#pragma once

#include "app/resources/Commands.h"
#include "app/resources/ToolbarIcons.h"

// The bars of the main frame.

struct CToolbarTable
{
    int32_t m_nBarID; // also the command that shows and hides it
    const char* m_pszTitle;
    const int32_t* m_pButtons; // commands; 0 is a gap
    int32_t m_nButtons;
    const CIconArt* m_pIcons; // one for each button that isn't a gap
    int32_t m_nIcons;
};

template <int32_t t_nButtons, int32_t t_nIcons>
constexpr CToolbarTable MakeToolbar(int32_t nBarID, const char* pszTitle,
                                    const int32_t (&buttons)[t_nButtons], const CIconArt (&icons)[t_nIcons])
{
    return CToolbarTable{nBarID, pszTitle, buttons, t_nButtons, icons, t_nIcons};
}

// clang-format off
inline constexpr int32_t c_StandardButtons[] = {
    c_nCmdNewEffect, c_nCmdOpen, 0,
    c_nCmdSave, c_nCmdPackEffects, c_nCmdLaunch, 0,
    c_nCmdSaveAndPack, c_nCmdSavePackLaunch};
inline constexpr int32_t c_SourceControlButtons[] = {
    c_nCmdConnect, c_nCmdDisconnect, 0,
    c_nCmdAddToSourceControl, c_nCmdCheckOut, 0,
    c_nCmdSubmit, c_nCmdUndoChanges, 0,
    c_nCmdGetLatest, c_nCmdHistory};
// clang-format on

// Both flat, visible at first, at the top, with tool tips, fly-by status text and a gripper.
inline constexpr CToolbarTable c_StandardToolbar =
    MakeToolbar(c_nCmdStandardBar, "Standard", c_StandardButtons, c_StandardIcons);
inline constexpr CToolbarTable c_SourceControlToolbar =
    MakeToolbar(c_nCmdSourceControlBar, "Source Control", c_SourceControlButtons, c_SourceControlIcons);

// The status bar has the message pane, then one for each of these.
struct CStatusIndicator
{
    int32_t m_nID;
    const char* m_pszText; // shown while the key's lock is on
};
inline constexpr CStatusIndicator c_StatusIndicators[] = {{59137, "CAP"}, {59138, "NUM"}, {59139, "SCRL"}};

constexpr int32_t c_nLeftDockBar = 4660; // of template 130, at the left, with a border on its right
constexpr int32_t c_nLeftDockTemplate = 130;

// Bitmaps 178 to 180, the patterns of the size bar beside the left dock: 8 by 8 pixels, one byte a row with
// the leftmost pixel highest. A set bit is the shadow colour, any other the face.
inline constexpr uint8_t c_SizeBarGrip[8] = {0x00, 0x7E, 0x00, 0x7E, 0x00, 0x7E, 0x00, 0x00};  // 178
inline constexpr uint8_t c_SizeBarDots[8] = {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00};  // 179
inline constexpr uint8_t c_SizeBarPlain[8] = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}; // 180
