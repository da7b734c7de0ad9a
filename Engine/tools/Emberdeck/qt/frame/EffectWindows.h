#pragma once

#include <functional>

#include <QMdiArea>

#include "app/ChangeSpots.h"
#include "app/EmberdeckApp.h"

class QLabel;
class TrackWidget;

// The work area beside the library: one child window with a timeline for each open effect, and a greeting while
// there is none.
class EffectWindows : public QMdiArea, public IDocuments
{
    Q_OBJECT

public:
    // Both borrowed; the application may come into being later, but before anything is opened.
    EffectWindows(CEmberdeckApp& app, IProfile& profile);

    // IDocuments
    bool IsOpen(const CSpell* pSpell) const override;
    void Open(CSpell& spell) override;
    void Close(const CSpell* pSpell) override;
    void CloseAll() override;
    void RetitleAll() override;

    TrackWidget* Active() const; // null: no effect is open
    bool IsActiveMaximised() const;
    bool IsGestureRunning() const;
    void CancelGestures();
    void RepaintAll();
    // Those of the effects that are open show and select what a change concerns; the first becomes the active one,
    // unless one of them is. False: none of them is open.
    bool ShowChange(const std::vector<CChangeSpots::CEffect>& effects);
    void ReadOptions(); // what they show beyond the plain picture, as the settings have it by now
    // The greeting tells of the library that is loaded; nothing while an effect is open.
    void UpdateGreeting();
    // Whether the widget belongs to an effect that is not the active one.
    bool IsInBackground(const QWidget& widget) const;

signals:
    void Changed(); // which effects are open, their titles, or which is active and how

protected:
    void resizeEvent(QResizeEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    void KeepKeyboard(const std::function<void()>& activate);
    std::vector<TrackWidget*> Timelines() const; // in the order in which they were opened
    QMdiSubWindow* FindChild(const CSpell* pSpell) const;
    void PlaceChild(QMdiSubWindow& child);

    CEmberdeckApp& m_App;
    IProfile& m_Profile;
    QLabel* m_pGreeting;
    int m_nNextPlace = 0; // of the next child window
};
