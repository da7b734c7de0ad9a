#pragma once

#include <cstdint>

#include "model/LibraryTree.h"
#include "platform/IDrawSurface.h"

// State bits of a tree item.
enum ETreeState : uint32_t
{
    eState_Focused = 1, // not stored: the item is the caret
    eState_Selected = 2,
    eState_DropHilited = 8,
    eState_Bold = 16,
    eState_Expanded = 32,
};

// What a point lies on. An item comes with every flag but Nowhere: its whole row counts.
enum ETreeHit : uint32_t
{
    eHit_Nowhere = 1, // below the last row
    eHit_Icon = 2,
    eHit_Label = 4,
    eHit_Indent = 8,
    eHit_Button = 16, // what opens and closes a group
    eHit_Right = 32,  // behind the label
    eHit_StateIcon = 64,
    eHit_Empty = eHit_Nowhere | eHit_Indent | eHit_Right, // counts as empty space
    eHit_Item = eHit_Icon | eHit_Label | eHit_StateIcon,
};

struct CTreeHit
{
    HLibraryItem m_hItem; // none: nothing is there
    uint32_t m_nFlags = eHit_Nowhere;
};

// Ctrl and Shift as they were when an event came.
struct CModifiers
{
    bool m_bCtrl = false;
    bool m_bShift = false;
    bool None() const { return !m_bCtrl && !m_bShift; }
};

enum class ETreeKey
{
    eOther,
    eUp,
    eDown,
    eLeft,
    eRight,
    eHome,
    eEnd,
    ePageUp,
    ePageDown,
    ePlus, // of the keypad, as the two below
    eMinus,
    eMultiply,
    eBackspace,
    eInsert,
    eDelete,
    eEnter, // both of them
    eEscape,
    eF, // the letter
    eF2,
    eF3,
};

struct CTreeKey
{
    ETreeKey m_eKey = ETreeKey::eOther;
    CModifiers m_Modifiers;
    bool m_bAlt = false;
    bool IsPlain() const { return m_Modifiers.None() && !m_bAlt; }
};
