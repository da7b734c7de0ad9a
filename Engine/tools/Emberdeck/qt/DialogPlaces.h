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

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void Restore(QDialog& dialog);
    void Keep(const QDialog& dialog);
    static void KeepOnScreen(QDialog& dialog);

    IProfile& m_Profile;
};
