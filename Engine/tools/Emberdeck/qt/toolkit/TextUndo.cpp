#include "qt/toolkit/TextUndo.h"

#include <QAbstractSpinBox>
#include <QKeyEvent>
#include <QLineEdit>

#include "qt/toolkit/KeyCodes.h"

int32_t UndoCommandOf(const QKeyEvent& event)
{
    const uint16_t nKey = VirtualKey(event.key());
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    for (const CAccelerator& accelerator : c_FrameAccelerators)
    {
        Qt::KeyboardModifiers wanted = Qt::NoModifier;
        wanted.setFlag(Qt::ControlModifier, accelerator.m_bCtrl);
        wanted.setFlag(Qt::ShiftModifier, accelerator.m_bShift);
        wanted.setFlag(Qt::AltModifier, accelerator.m_bAlt);
        if ((accelerator.m_nID == c_nCmdUndo || accelerator.m_nID == c_nCmdRedo) && nKey &&
            accelerator.m_nKey == nKey && modifiers == wanted)
            return accelerator.m_nID;
    }
    return 0;
}

QLineEdit* LineEditOf(QObject* pObject)
{
    if (auto* pSpin = qobject_cast<QAbstractSpinBox*>(pObject))
        return pSpin->findChild<QLineEdit*>();
    return qobject_cast<QLineEdit*>(pObject);
}

bool TakeTextUndo(QObject* pObject, QEvent& event)
{
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride)
        return false;
    QLineEdit* pEdit = LineEditOf(pObject);
    const int32_t nCommand = pEdit ? UndoCommandOf(static_cast<QKeyEvent&>(event)) : 0;
    if (nCommand == 0)
        return false;
    if (event.type() == QEvent::KeyPress)
        nCommand == c_nCmdUndo ? pEdit->undo() : pEdit->redo();
    event.accept();
    return true;
}
