#pragma once

#include <QObject>
#include <QRect>

#include "platform/IProfile.h"

class QDialog;

// Brings dialogs back where they were closed, as large as they were, and keeps every one within its screen, also
// when that has become smaller or another. It looks at all dialogs of the program from outside, so a dialog does
// nothing for it.
//
// Short questions are left out, and what belongs to the window below it: they open over their owner.
class DialogPlaces : public QObject
{
    Q_OBJECT

public:
    // The profile outlives it. One for the whole program.
    explicit DialogPlaces(IProfile& profile);
    ~DialogPlaces() override;

    // Of a frame, the nearest that lies in the room: moved, and made smaller where it has to be.
    static QRect FitInto(const QRect& rcFrame, const QRect& rcRoom);
    // The same for a window's rectangle without its frame, in the screen that it has most to do with.
    static QRect FitOnScreen(const QWidget& window, const QRect& rc);
    // A window that is shown, once it has its frame, whose size nobody knows before.
    static void KeepOnScreen(QWidget& window);

    // A place as the settings have it. False, rc untouched, for a text that can't be one.
    static bool ReadPlace(const std::string& sPlace, QRect& rc);
    static std::string WritePlace(const QRect& rc);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void Restore(QDialog& dialog);
    void Keep(const QDialog& dialog);

    IProfile& m_Profile;
};
