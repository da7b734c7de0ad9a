#pragma once

#include <cstdint>

class QEvent;
class QKeyEvent;
class QLineEdit;
class QObject;

// The keys of Undo and Redo, which in a line of text are the text's own.

// c_nCmdUndo, c_nCmdRedo, or 0 for any other key: all keys that the program gives these commands, not only the
// toolkit's.
int32_t UndoCommandOf(const QKeyEvent& event);
// The line of text that gets the keys of that object: itself, or that of a box with arrows; null: none.
QLineEdit* LineEditOf(QObject* pObject);
// From an event filter. A line of text does with these keys what it can, and nobody else gets them. True: that was it.
bool TakeTextUndo(QObject* pObject, QEvent& event);
