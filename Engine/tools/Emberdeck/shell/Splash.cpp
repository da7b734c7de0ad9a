#include "shell/Splash.h"

void CSplashWnd::ShowSplashScreen()
{
    if (m_bShowSplashWnd && !m_bShown)
        m_bShown = m_View.CreateSplash(c_nMilliseconds);
}

void CSplashWnd::HideSplashScreen()
{
    if (!m_bShown)
        return;
    m_bShown = false; // the repaint may bring events here
    m_View.DestroySplash();
}

bool CSplashWnd::PreTranslateAppMessage(const CSplashEvent& event)
{
    const bool bKey = event.m_eKind == CSplashEvent::eKeyPress || event.m_eKind == CSplashEvent::eKeyRelease;
    const bool bPress =
        event.m_eKind == CSplashEvent::eKeyPress || event.m_eKind == CSplashEvent::eButtonPress;
    if (event.m_eKind == CSplashEvent::eOther)
        return false;

    CTaken& taken = bKey ? m_Key : m_Button;
    if (m_bShown && bPress)
    {
        HideSplashScreen();
        if (event.m_bForModalBox)
            return false;
        taken = CTaken{true, event.m_nCode};
        return true;
    }
    if (!taken.Is(event.m_nCode))
        return false;
    if (bKey)
    {
        // One press comes as several events, and again while the key is held.
        if (!bPress && !event.m_bAutoRepeat)
            taken.m_bTaken = false;
        return true;
    }
    // A second press of the same button: its release went elsewhere.
    taken.m_bTaken = false;
    return !bPress;
}
