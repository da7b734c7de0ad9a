#pragma once

#include "app/resources/Commands.h"
#include "app/resources/ToolbarIcons.h"

// The bars of the main frame.

struct CToolbarButton
{
    int32_t m_nCommand = 0; // 0: a gap
    const CIconArt* m_pIcon = nullptr;

    constexpr bool IsGap() const { return m_nCommand == 0; }
};

struct CToolbarTable
{
    int32_t m_nBarID; // also the command that shows and hides it
    const char* m_pszTitle;
    const CToolbarButton* m_pButtons;
    int32_t m_nButtons;

    constexpr const CToolbarButton* begin() const { return m_pButtons; }
    constexpr const CToolbarButton* end() const { return m_pButtons + m_nButtons; }
};

template <int32_t t_nButtons>
constexpr CToolbarTable MakeToolbar(int32_t nBarID, const char* pszTitle,
                                    const CToolbarButton (&buttons)[t_nButtons])
{
    return CToolbarTable{nBarID, pszTitle, buttons, t_nButtons};
}

// clang-format off
inline constexpr CToolbarButton c_StandardButtons[] = {
    {c_nCmdNewEffect, &c_NewEffectIcon},
    {c_nCmdOpen, &c_FolderOpenIcon},
    {},
    {c_nCmdSave, &c_SaveIcon},
    {c_nCmdPackEffects, &c_PackIcon},
    {c_nCmdLaunch, &c_LaunchIcon},
    {},
    {c_nCmdSaveAndPack, &c_SaveAndPackIcon},
    {c_nCmdSavePackLaunch, &c_SavePackLaunchIcon},
};
inline constexpr CToolbarButton c_SourceControlButtons[] = {
    {c_nCmdConnect, &c_ConnectIcon},
    {c_nCmdDisconnect, &c_DisconnectIcon},
    {},
    {c_nCmdAddToSourceControl, &c_AddToSourceControlIcon},
    {c_nCmdCheckOut, &c_CheckOutIcon},
    {},
    {c_nCmdSubmit, &c_SubmitIcon},
    {c_nCmdUndoChanges, &c_UndoChangesIcon},
    {},
    {c_nCmdGetLatest, &c_GetLatestIcon},
    {c_nCmdHistory, &c_HistoryIcon},
};
inline constexpr CToolbarButton c_EditButtons[] = {
    {c_nCmdUndo, &c_UndoIcon},
    {c_nCmdRedo, &c_RedoIcon},
};
// clang-format on

// All flat, visible at first, at the top, with tool tips, fly-by status text and a gripper.
inline constexpr CToolbarTable c_StandardToolbar =
    MakeToolbar(c_nCmdStandardBar, "Standard", c_StandardButtons);
inline constexpr CToolbarTable c_SourceControlToolbar =
    MakeToolbar(c_nCmdSourceControlBar, "Source Control", c_SourceControlButtons);
inline constexpr CToolbarTable c_EditToolbar = MakeToolbar(c_nCmdEditBar, "Edit", c_EditButtons);

// The status bar has the message pane, then one for each of these.
enum EStatusIndicator : int32_t
{
    eIndicator_Caps = 59137,
    eIndicator_Num = 59138,
    eIndicator_Scroll = 59139,
};
struct CStatusIndicator
{
    EStatusIndicator m_eID;
    const char* m_pszText; // shown while the key's lock is on
};
inline constexpr CStatusIndicator c_StatusIndicators[] = {
    {eIndicator_Caps, "CAP"}, {eIndicator_Num, "NUM"}, {eIndicator_Scroll, "SCRL"}};

// The patterns of the size bar beside the left dock: 8 by 8 pixels, one byte a row with the leftmost pixel highest. A
// set bit is the shadow colour, any other the face.
enum ESizeBarPattern : uint32_t
{
    eSizeBar_Grip = 178,
    eSizeBar_Dots = 179,
    eSizeBar_Plain = 180,
};
struct CSizeBarPattern
{
    ESizeBarPattern m_eID;
    uint8_t m_Rows[8];
};
inline constexpr CSizeBarPattern c_SizeBarPatterns[] = {
    {eSizeBar_Grip, {0x00, 0x7E, 0x00, 0x7E, 0x00, 0x7E, 0x00, 0x00}},
    {eSizeBar_Dots, {0x00, 0x00, 0x00, 0x18, 0x18, 0x00, 0x00, 0x00}},
    {eSizeBar_Plain, {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}},
};
constexpr const uint8_t* GetSizeBarRows(ESizeBarPattern eID)
{
    return c_SizeBarPatterns[eID - eSizeBar_Grip].m_Rows;
}
