#pragma once

#include <QObject>

#include "properties/OwnUndo.h"

class QDialog;
class QWidget;

// The keys of Undo and Redo in a dialog, and what counts as a step there: whatever a press, a key, the wheel or another
// dialog on top of it has come to. A line of text with something to undo of its own comes first.
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
    bool OnUndoKey(QEvent& event);
    void NoteSoon();
    uint64_t Run() const; // of the typing that is going on; 0: none is

    QDialog& m_Dialog;
    IOwnUndo& m_Undo;
    uint64_t m_nFocus = 1; // how often the focus has moved
    bool m_bQueued = false;
};
