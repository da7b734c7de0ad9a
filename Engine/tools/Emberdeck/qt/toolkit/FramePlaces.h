#pragma once

#include <QRect>
#include <vector>

#include "platform/IProfile.h"

class QMainWindow;
class QToolBar;

// What the main window keeps between runs: its place and size, the dock at its left, and where its bars stand.
// Values are read within bounds, and one that can't be right means the default: a window that fills the screen, the
// dock as wide as it is made, both toolbars in one row at the top, everything shown.
struct CFramePlaces
{
    QRect m_rc; // of the window when it isn't maximised; empty: the default
    bool m_bMaximised = true;
    int32_t m_nDockWidth = 0; // pixels, of the unfolded dock; 0: the default
    bool m_bDockFolded = false;
    bool m_bStatusBar = true;
};

CFramePlaces LoadFramePlaces(const IProfile& profile);
// False: they couldn't be written.
bool SaveFramePlaces(IProfile& profile, const CFramePlaces& places, const QMainWindow& window,
                     const std::vector<QToolBar*>& bars);

// The bars of the window, which it has by now, to where they stood: side, row, order, off the frame, hidden. One
// of which nothing is kept stands behind the one before it; what can't be right, or nothing of the first one, leaves all
// of them as they are.
void PlaceBars(const IProfile& profile, QMainWindow& window, const std::vector<QToolBar*>& bars);
