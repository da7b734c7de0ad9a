#pragma once

#include <QAccessible>
#include <QString>

class QWidget;

// The views that the program paints itself, told to assistive programs: what each one is and what it shows now.
// Names are the widgets' own (setAccessibleName).

// What a painted widget tells of itself: it inherits this beside QWidget.
class IAccessibleView
{
public:
    virtual QAccessible::Role AccessibleRole() const = 0;
    // What it shows, in words; empty: nothing beside its name.
    virtual QString AccessibleText() const { return QString(); }

protected:
    ~IAccessibleView() = default;
};

// Makes each IAccessibleView heard. Once before the first of them is shown; again does nothing.
void InstallAccessibleViews();

// What the view shows is another now. Costs nothing while no assistive program listens.
void AccessibleViewChanged(QWidget* pView);

// A colour in words.
QString ColorText(uint32_t nColor);
