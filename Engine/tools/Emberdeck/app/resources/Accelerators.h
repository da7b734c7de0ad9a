#pragma once

#include <cstdint>

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

// Table 128, the frame's. All but the first three rows are standard commands of the toolkit that nothing
// carries out here. They get no shortcut (CMainFrame::IsShortcut): the timeline has some of the same keys.
inline constexpr CAccelerator c_FrameAccelerators[] = {
    {true, false, 'O', 57601},
    {true, false, 'S', 32796},
    {true, false, c_nKeyF5, 32800},
    {true, false, 'C', 57634},
    {true, false, c_nKeyInsert, 57634},
    {true, false, 'X', 57635},
    {false, true, c_nKeyDelete, 57635},
    {true, false, 'V', 57637},
    {false, true, c_nKeyInsert, 57637},
    {true, false, 'Z', 57643},
    {false, false, c_nKeyBackspace, 57643, true},
    {false, false, c_nKeyF6, 57680},
    {false, true, c_nKeyF6, 57681},
};

// Table 169, of both panels. It serves only to show the keys in their menus: the trees handle them.
inline constexpr CAccelerator c_PanelAccelerators[] = {
    {false, false, c_nKeyEnter, 32887},  {false, false, c_nKeyInsert, 32883},
    {false, false, c_nKeyDelete, 32885}, {false, false, c_nKeyF2, 32888},
    {true, false, 'F', 57636},           {false, false, c_nKeyF3, 32895},
};

// Table 170, of the timeline and its bars.
inline constexpr CAccelerator c_TimelineAccelerators[] = {
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

// Of the curve dialog. They come before the control that has the focus.
inline constexpr CAccelerator c_CurveAccelerators[] = {
    {true, false, c_nKeyDelete, 32847},
    {true, false, 'A', 32848},
    {true, false, 'U', 32849},
    {true, false, 'F', 32852},
};
