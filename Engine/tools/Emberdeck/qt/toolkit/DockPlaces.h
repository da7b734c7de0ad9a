#pragma once

#include "platform/IProfile.h"

class QDockWidget;
class QMainWindow;

// What is kept of a dock of the main window between runs, by its object's name: whether it is shown, on which side, how
// wide or high, or where on the screen when it floats. Values are read within bounds; one that can't be right, or none,
// leaves the dock as it was made.
void PlaceDock(const IProfile& profile, QMainWindow& window, QDockWidget& dock); // before the window is shown
bool SaveDockPlace(IProfile& profile, const QMainWindow& window,
                   const QDockWidget& dock); // false: not written
