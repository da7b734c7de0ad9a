#pragma once

#include <cstdint>

#include "app/resources/Commands.h"

// A key that gives a command, with exactly these modifiers.
struct CAccelerator
{
    bool m_bCtrl;
    bool m_bShift;
    uint16_t m_nKey; // a virtual key: a capital letter, a digit, or one of the numbers below
    int32_t m_nID;   // the command
    bool m_bAlt = false;
    bool m_bCharacter = false; // m_nKey is a character as typed, not a key
};

constexpr uint16_t c_nKeyBackspace = 0x08;
constexpr uint16_t c_nKeyTab = 0x09;
constexpr uint16_t c_nKeyEnter = 0x0D;
constexpr uint16_t c_nKeyInsert = 0x2D;
constexpr uint16_t c_nKeyDelete = 0x2E;
constexpr uint16_t c_nKeyF1 = 0x70; // up to F24
constexpr uint16_t c_nKeyF2 = 0x71;
constexpr uint16_t c_nKeyF3 = 0x72;
constexpr uint16_t c_nKeyF5 = 0x74;
constexpr uint16_t c_nKeyF6 = 0x75;
constexpr uint16_t c_nKeyF24 = 0x87;

// Table 128, the frame's. Rows of standard commands of the toolkit that nothing carries out here get no
// shortcut (CMainFrame::IsShortcut): the timeline has some of the same keys. A command shows its first key.
inline constexpr CAccelerator c_FrameAccelerators[] = {
    {true, false, 'O', c_nCmdOpen},
    {true, false, 'S', c_nCmdSave},
    {true, false, c_nKeyF5, c_nCmdLaunch},
    {true, false, 'C', c_nCmdToolkitCopy},
    {true, false, c_nKeyInsert, c_nCmdToolkitCopy},
    {true, false, 'X', c_nCmdToolkitCut},
    {false, true, c_nKeyDelete, c_nCmdToolkitCut},
    {true, false, 'V', c_nCmdToolkitPaste},
    {false, true, c_nKeyInsert, c_nCmdToolkitPaste},
    {true, false, 'Z', c_nCmdUndo},
    {false, false, c_nKeyBackspace, c_nCmdUndo, true},
    {true, false, 'Y', c_nCmdRedo},
    {true, true, 'Z', c_nCmdRedo},
    {false, false, c_nKeyF6, c_nCmdNextPane},
    {false, true, c_nKeyF6, c_nCmdPreviousPane},
};

// Table 169, of both panels. It serves only to show the keys in their menus: the trees handle them.
inline constexpr CAccelerator c_PanelAccelerators[] = {
    {false, false, c_nKeyEnter, c_nCmdOpenSelection},
    {false, false, c_nKeyInsert, c_nCmdDuplicate},
    {false, false, c_nKeyDelete, c_nCmdDeleteSelection},
    {false, false, c_nKeyF2, c_nCmdRenameItem},
    {true, false, 'F', c_nCmdFind},
    {false, false, c_nKeyF3, c_nCmdFindNext},
};

// Table 170, of the timeline and its bars.
inline constexpr CAccelerator c_TimelineAccelerators[] = {
    {true, false, 'C', c_nCmdCopyKey},
    {true, false, c_nKeyInsert, c_nCmdCopyKey},
    {true, false, 'X', c_nCmdCutKey},
    {false, true, c_nKeyDelete, c_nCmdCutKey},
    {true, false, 'V', c_nCmdPasteKeyAtMouse},
    {false, true, c_nKeyInsert, c_nCmdPasteKeyAtMouse},
    {false, false, c_nKeyDelete, c_nCmdDeleteKeys},
    {false, false, c_nKeyF2, c_nCmdNameKeys},
    // The find commands of the trees have no handler here: in the timeline these keys end without effect.
    {true, false, 'F', c_nCmdFind},
    {false, false, c_nKeyF3, c_nCmdFindNext},
};

// Of the curve dialog. They come before the control that has the focus.
inline constexpr CAccelerator c_CurveAccelerators[] = {
    {true, false, c_nKeyDelete, c_nCmdDeleteCurveKeys},
    {true, false, 'A', c_nCmdSelectAllCurveKeys},
    {true, false, 'U', c_nCmdUnselectAllCurveKeys},
    {true, false, 'F', c_nCmdBestFit},
};
