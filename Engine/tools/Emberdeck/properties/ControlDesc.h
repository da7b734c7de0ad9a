#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/IDrawSurface.h"

// What a control of a property row is to the window that shows it.
enum class EControlKind
{
    eLabel,
    eEdit,
    eSpin,           // two arrows; tells steps, and has no position of its own
    eCombo,          // a list that drops down
    eSwatch,         // owner-drawn, shows m_nColor
    eFileButton,     // its text is a path, which is shortened in the middle when shown
    eClearButton,    // "C"
    eVectorButton,   // "..."
    eFunctionButton, // "Function"
    eCheck,
};

// One control as plain data. The owner changes it, the window shows it as it stands and forwards what the
// user does. All texts are plain: no mark of a shortcut, no mark-up.
struct CControlDesc
{
    EControlKind m_eKind = EControlKind::eLabel;
    uint32_t m_nID = 0; // unique among those that take focus; 65535 for labels, 0 for spins and small buttons
    CRect m_rc;         // in the dialog, pixels
    std::string m_sText;
    std::string m_sToolTip;
    bool m_bAlignRight = false; // labels
    bool m_bEnabled = true;
    bool m_bVisible = true;
    bool m_bChecked = false;          // check boxes
    std::vector<std::string> m_Items; // lists
    int m_nSelected = -1;             // lists; -1: none
    int32_t m_nDropHeight = 0;        // lists: room for the open list below the field
    CColorRef m_nColor = 0;           // swatches
    int m_nTarget = -1;               // spins and clear buttons: the slot that they change
};

constexpr uint32_t c_nLabelID = 65535;
