#include "shell/Splash.h"

#include <gtest/gtest.h>

namespace
{

class CMemorySplash : public ISplashView
{
public:
    bool CreateSplash(int32_t nMilliseconds) override
    {
        m_nCreated += m_bWorks;
        m_nMilliseconds = nMilliseconds;
        return m_bWorks;
    }
    void DestroySplash() override { ++m_nDestroyed; }

    bool m_bWorks = true;
    int m_nCreated = 0;
    int m_nDestroyed = 0;
    int32_t m_nMilliseconds = 0;
};

} // namespace

TEST(Splash, ShowsOnceUntilTheTimerEnds)
{
    CMemorySplash view;
    {
        CSplashWnd splash(view);
        splash.EnableSplashScreen(false);
        splash.ShowSplashScreen();
        EXPECT_EQ(0, view.m_nCreated);
        splash.EnableSplashScreen(true);
        view.m_bWorks = false;
        splash.ShowSplashScreen();
        EXPECT_FALSE(splash.IsShown());
        view.m_bWorks = true;
        splash.ShowSplashScreen();
        splash.ShowSplashScreen();
        EXPECT_EQ(1, view.m_nCreated);
        EXPECT_EQ(3000, view.m_nMilliseconds);
        splash.OnTimer();
        splash.OnTimer();
        EXPECT_FALSE(splash.IsShown());
        EXPECT_EQ(1, view.m_nDestroyed);
        splash.ShowSplashScreen();
    }
    EXPECT_EQ(2, view.m_nDestroyed); // not left on the screen
}

TEST(Splash, TakesThePressThatHidesItAndAllThatBelongsToIt)
{
    CMemorySplash view;
    CSplashWnd splash(view);
    constexpr auto c_eKey = CSplashEvent::eKeyPress;
    constexpr auto c_eKeyUp = CSplashEvent::eKeyRelease;
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKey, 'A'})); // no splash

    splash.ShowSplashScreen();
    EXPECT_FALSE(splash.PreTranslateAppMessage({CSplashEvent::eOther}));
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKeyUp, 'A'}));
    EXPECT_TRUE(splash.IsShown());
    EXPECT_TRUE(splash.PreTranslateAppMessage({c_eKey, 'A'})); // asked ahead as a shortcut
    EXPECT_FALSE(splash.IsShown());
    EXPECT_TRUE(splash.PreTranslateAppMessage({c_eKey, 'A'})); // the key itself
    EXPECT_TRUE(splash.PreTranslateAppMessage({c_eKeyUp, 'A', true}));
    EXPECT_TRUE(splash.PreTranslateAppMessage({c_eKey, 'A', true}));
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKey, 'B'}));
    EXPECT_TRUE(splash.PreTranslateAppMessage({c_eKeyUp, 'A'}));
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKey, 'A'}));

    splash.ShowSplashScreen();
    EXPECT_TRUE(splash.PreTranslateAppMessage({CSplashEvent::eButtonPress, 2}));
    EXPECT_FALSE(splash.PreTranslateAppMessage({CSplashEvent::eButtonRelease, 1}));
    EXPECT_TRUE(splash.PreTranslateAppMessage({CSplashEvent::eButtonRelease, 2}));
    EXPECT_FALSE(splash.PreTranslateAppMessage({CSplashEvent::eButtonRelease, 2}));

    // A modal box at start gets its answer.
    splash.ShowSplashScreen();
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKey, 'Y', false, true}));
    EXPECT_FALSE(splash.IsShown());
    EXPECT_FALSE(splash.PreTranslateAppMessage({c_eKeyUp, 'Y'}));
}
