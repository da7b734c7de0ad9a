#pragma once

#include <QObject>

#include "properties/OwnUndo.h"

class QDialog;
class QWidget;

// The keys of Undo and Redo in a dialog, and what counts as a step there: whatever a press, a key, the wheel or another
// dialog on top of it has come to. A line of text comes first while it is typed in.
class DialogUndo : public QObject
{
    Q_OBJECT

public:
    // The dialog owns it. undo: borrowed; it outlives the dialog.
    DialogUndo(QDialog& dialog, IOwnUndo& undo);
    ~DialogUndo() override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void BeginRun(const QWidget& widget); // where it begins
    bool OnUndoKey(QEvent& event);
    void NoteSoon();
    uint64_t Run() const; // of the typing that is going on; 0: none is

    QDialog& m_Dialog;
    IOwnUndo& m_Undo;
    uint64_t m_nRun = 1;   // counts presses and moves of the focus, between which typing is one step
    uint64_t m_nTyped = 0; // the last run in which a text was typed
    bool m_bQueued = false;
};
