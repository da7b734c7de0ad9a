#pragma once

#include <optional>

#include "app/MenuEntry.h"

class QMenu;
class QPoint;
class QWidget;

// A menu of these entries, whose actions carry the numbers of their commands. The view owns it until RunPopup.
QMenu* MakePopup(QWidget* pView, const std::vector<CMenuEntry>& entries);

// Shows such a menu at a point of the screen, until it closes, and destroys it. What was chosen; 0: nothing. None: the
// view has gone while the menu was up, and has taken it along; the caller may not touch itself any more if it is that
// view.
std::optional<int> RunPopup(QMenu* pMenu, const QPoint& at);
