#pragma once

#include <QLabel>
#include <QPointer>

#include "shell/Splash.h"

class QEvent;

// The picture over the window while the program starts.
class SplashScreen : private ISplashView
{
public:
    explicit SplashScreen(QWidget& owner) : m_Owner(owner), m_Splash(*this) {}

    CSplashWnd& Logic() { return m_Splash; }
    // Asked first, about every event of the program. True: the splash has taken it.
    bool Takes(QEvent* pEvent);
    // The owner has become the active window.
    void OnOwnerActivated();

private:
    bool CreateSplash(int32_t nMilliseconds) override;
    void DestroySplash() override;

    QWidget& m_Owner;
    CSplashWnd m_Splash;
    QPointer<QLabel> m_pPicture;
    bool m_bOverOwner = false;
};
