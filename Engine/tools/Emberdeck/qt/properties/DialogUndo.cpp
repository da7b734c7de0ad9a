#include "qt/properties/DialogUndo.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTimer>

#include "app/resources/Commands.h"
#include "qt/toolkit/TextUndo.h"

DialogUndo::DialogUndo(QDialog& dialog, IOwnUndo& undo) : QObject(&dialog), m_Dialog(dialog), m_Undo(undo)
{
    qApp->installEventFilter(this);
}

DialogUndo::~DialogUndo()
{
    qApp->removeEventFilter(this);
}

bool DialogUndo::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    const auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (!pWidget || pWidget->window() != &m_Dialog)
        return false;
    switch (pEvent->type())
    {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        if (UndoCommandOf(*static_cast<QKeyEvent*>(pEvent)) != 0)
            return OnUndoKey(*pEvent);
        [[fallthrough]];
    case QEvent::KeyRelease:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::WindowActivate:
        NoteSoon();
        return false;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        m_Undo.NoteStep(Run());
        ++m_nFocus;
        return false;
    default:
        return false;
    }
}

bool DialogUndo::OnUndoKey(QEvent& event)
{
    event.accept();
    if (event.type() != QEvent::KeyPress)
        return true;
    const bool bUndo = UndoCommandOf(static_cast<QKeyEvent&>(event)) == c_nCmdUndo;
    QWidget* pFocus = m_Dialog.focusWidget();
    auto* pText = qobject_cast<QPlainTextEdit*>(pFocus);
    QLineEdit* pLine = LineEditOf(pFocus);
    if (pLine && (bUndo ? pLine->isUndoAvailable() : pLine->isRedoAvailable()))
        bUndo ? pLine->undo() : pLine->redo();
    else if (pText && (bUndo ? pText->document()->isUndoAvailable() : pText->document()->isRedoAvailable()))
        bUndo ? pText->undo() : pText->redo();
    else if (!QApplication::mouseButtons()) // a drag goes on
        bUndo ? m_Undo.Undo() : m_Undo.Redo();
    return true;
}

// Behind what the event does.
void DialogUndo::NoteSoon()
{
    if (m_bQueued)
        return;
    m_bQueued = true;
    QTimer::singleShot(0, this,
                       [this]
                       {
                           m_bQueued = false;
                           if (!QApplication::mouseButtons())
                               m_Undo.NoteStep(Run());
                       });
}

uint64_t DialogUndo::Run() const
{
    QWidget* pFocus = m_Dialog.focusWidget();
    return LineEditOf(pFocus) || qobject_cast<QPlainTextEdit*>(pFocus) ? m_nFocus : 0;
}
