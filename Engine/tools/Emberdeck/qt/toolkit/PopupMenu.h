#pragma once

#include <optional>

class QMenu;
class QPoint;

// Shows a menu that its view has made for itself, at a point of the screen, until it closes, and destroys it. What was
// chosen, by the number that its action carries; 0: nothing. None: the view has gone while the menu was up, and has
// taken it along; the caller may not touch itself any more if it is that view.
std::optional<int> RunPopup(QMenu* pMenu, const QPoint& at);
