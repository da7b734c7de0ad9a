#pragma once

#include <functional>
#include <string>

#include <QPoint>

class QWidget;

// A desktop of this program's own: an X server without a screen and a window manager, both gone when the
// program ends. What a test does with pointer and keys goes through that server as it does for a person; the
// window itself lives in this process, so that a test can look at the model behind it.
//
// Points are those of QWidget::mapToGlobal. Everything that is sent is waited for: when a call returns, the
// events have been delivered and handled. A press that opens a menu or a dialog comes back when that has
// closed again, so what is to be done in it is said before, by WhileOpen.
namespace Desktop
{

// Before there is an application object. False: no desktop, and why is told on standard error.
bool Start();
void Stop(); // after the application object has gone

// Names are those of the X server's keysyms, joined by plus signs: "ctrl+z", "Escape", "shift+Tab".
void Key(const std::string& sKeys);
void Type(const std::string& sText); // plain ASCII
// Held down until it is let go: "ctrl", "shift", "alt".
void HoldKey(const std::string& sKey);
void LetKeyGo(const std::string& sKey);

// Buttons: 1 left, 2 middle, 3 right, 4 and 5 the wheel up and down.
void Move(QPoint pt);
void Press(int nButton = 1);
void Release(int nButton = 1);
// With keys held as "ctrl+shift"; empty: none.
void Click(QPoint pt, int nButton = 1, const std::string& sHeld = std::string());
void DoubleClick(QPoint pt);
// In several steps, as a hand does it.
void Drag(QPoint from, QPoint to, const std::string& sHeld = std::string(), int nButton = 1);

// A point of a widget; without one, its middle.
QPoint On(const QWidget* pWidget, QPoint pt);
QPoint On(const QWidget* pWidget);

// Handles events until none is left and the server has answered. With a condition: until that holds; false
// when it doesn't within the time.
bool Settle(const std::function<bool()>& until = {}, int nMilliseconds = 5000);
// What is done in the next menu or modal dialog that opens; a submenu is part of its menu. One that is still open afterwards is closed, and
// counts as a failure, as does one that never opens.
void WhileOpen(const std::function<void(QWidget*)>& act);

// The whole screen as a PNG file, as the server has it.
bool Grab(const std::string& sPath);

} // namespace Desktop
