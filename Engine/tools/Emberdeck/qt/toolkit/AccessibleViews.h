#pragma once

class QWidget;

// The views that the program paints itself, told to assistive programs: what each one is and what it shows now.
// Names are the widgets' own (setAccessibleName).

// Once before the first of them is shown; again does nothing.
void InstallAccessibleViews();

// What the view shows is another now. Costs nothing while no assistive program listens.
void AccessibleViewChanged(QWidget* pView);
