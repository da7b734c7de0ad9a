#pragma once

#include <Qt>

#include "app/resources/Accelerators.h"

// The number that the accelerator tables know a key by; 0 for one that none of them could have.
inline uint16_t VirtualKey(int nKey)
{
    if ((nKey >= Qt::Key_A && nKey <= Qt::Key_Z) || (nKey >= Qt::Key_0 && nKey <= Qt::Key_9))
        return static_cast<uint16_t>(nKey);
    if (nKey >= Qt::Key_F1 && nKey <= Qt::Key_F24)
        return static_cast<uint16_t>(c_nKeyF1 + (nKey - Qt::Key_F1));
    switch (nKey)
    {
    case Qt::Key_Backspace:
        return c_nKeyBackspace;
    case Qt::Key_Tab:
        return c_nKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return c_nKeyEnter;
    case Qt::Key_Insert:
        return c_nKeyInsert;
    case Qt::Key_Delete:
        return c_nKeyDelete;
    default:
        return 0;
    }
}

// The toolkit's number of such a key.
inline int QtKey(uint16_t nKey)
{
    if (nKey >= c_nKeyF1 && nKey <= c_nKeyF24)
        return Qt::Key_F1 + (nKey - c_nKeyF1);
    switch (nKey)
    {
    case c_nKeyBackspace:
        return Qt::Key_Backspace;
    case c_nKeyTab:
        return Qt::Key_Tab;
    case c_nKeyEnter:
        return Qt::Key_Return;
    case c_nKeyInsert:
        return Qt::Key_Insert;
    case c_nKeyDelete:
        return Qt::Key_Delete;
    default:
        return nKey;
    }
}

inline bool IsTimelineAccelerator(uint16_t nKey, Qt::KeyboardModifiers modifiers)
{
    for (const CAccelerator& accelerator : c_TimelineAccelerators)
        if (nKey && accelerator.m_nKey == nKey &&
            accelerator.m_bCtrl == bool(modifiers & Qt::ControlModifier) &&
            accelerator.m_bShift == bool(modifiers & Qt::ShiftModifier) &&
            accelerator.m_bAlt == bool(modifiers & Qt::AltModifier))
            return true;
    return false;
}
