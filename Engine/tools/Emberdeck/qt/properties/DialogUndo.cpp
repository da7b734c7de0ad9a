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

namespace
{

// A text keeps what was typed in it earlier. Once other things have been done since, that would come back out of turn.
void ForgetTyping(QWidget* pFocus)
{
    QLineEdit* pLine = LineEditOf(pFocus);
    if (pLine && (pLine->isUndoAvailable() || pLine->isRedoAvailable()))
    {
        const int nCursor = pLine->cursorPosition();
        pLine->setText(pLine->text());
        pLine->setCursorPosition(nCursor);
    }
    if (auto* pText = qobject_cast<QPlainTextEdit*>(pFocus))
        pText->document()->clearUndoRedoStacks();
}

} // namespace

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
        if (Run() != 0)
            m_nTyped = m_nRun;
        [[fallthrough]];
    case QEvent::KeyRelease:
    case QEvent::MouseButtonRelease:
    case QEvent::WindowActivate:
        NoteSoon();
        return false;
    case QEvent::Wheel:
        BeginRun(*pWidget);
        NoteSoon();
        return false;
    case QEvent::FocusIn:
        if (static_cast<QFocusEvent*>(pEvent)->reason() == Qt::ActiveWindowFocusReason)
            return false;
        [[fallthrough]];
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::FocusOut:
        BeginRun(*pWidget);
        return false;
    default:
        return false;
    }
}

// What was typed until now is a step by itself, also where the focus stays: what a press begins is none of it.
void DialogUndo::BeginRun(const QWidget& widget)
{
    m_Undo.NoteStep(Run());
    ++m_nRun;
    if (&widget != m_Dialog.focusWidget())
        ForgetTyping(m_Dialog.focusWidget());
}

bool DialogUndo::OnUndoKey(QEvent& event)
{
    event.accept();
    if (event.type() != QEvent::KeyPress)
        return true;
    const bool bUndo = UndoCommandOf(static_cast<QKeyEvent&>(event)) == c_nCmdUndo;
    QWidget* pFocus = m_Dialog.focusWidget();
    const bool bTyping = m_nTyped == m_nRun;
    auto* pText = bTyping ? qobject_cast<QPlainTextEdit*>(pFocus) : nullptr;
    QLineEdit* pLine = bTyping ? LineEditOf(pFocus) : nullptr;
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
    return LineEditOf(pFocus) || qobject_cast<QPlainTextEdit*>(pFocus) ? m_nRun : 0;
}
