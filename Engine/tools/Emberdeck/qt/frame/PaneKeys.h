#pragma once

class MainWindow;

// F6 and Shift+F6 take the focus from one part of the window to the next and back: the library, the open effect, the
// toolbars. The Tab key alone doesn't leave an effect's window. Ctrl+F4 closes that, Shift+F10 opens the menu of what
// has the focus.
void AddPaneKeys(MainWindow& window);
