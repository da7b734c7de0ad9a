#pragma once

#include <cstdint>

// The window that shows the splash picture, as its logic needs it.
class ISplashView
{
public:
    virtual ~ISplashView() = default;
    // Shows the picture at once, centred on the screen and not above other programs, and starts a timer of
    // that length. False: it can't be shown, and nothing is left of it.
    virtual bool CreateSplash(int32_t nMilliseconds) = 0;
    // Takes picture and timer away, and repaints the main window at once.
    virtual void DestroySplash() = 0;
};

// An event of the program, before anybody sees it.
struct CSplashEvent
{
    enum EKind
    {
        eKeyPress, // a modifier alone counts. Also what a toolkit sends ahead to ask for shortcuts.
        eKeyRelease,
        eButtonPress, // left, right or middle; the second press of a double click is one too
        eButtonRelease,
        eOther
    };
    EKind m_eKind = eOther;
    int32_t m_nCode = 0;         // the key or button, in the toolkit's numbers
    bool m_bAutoRepeat = false;  // of a key that is held down
    bool m_bForModalBox = false; // a modal window is up and gets it
};

// Shown from the end of the frame's creation to the first of timer, key and mouse button.
class CSplashWnd
{
public:
    static constexpr int32_t c_nMilliseconds = 3000;

    explicit CSplashWnd(ISplashView& view) : m_View(view) {}
    ~CSplashWnd() { HideSplashScreen(); }
    CSplashWnd(const CSplashWnd&) = delete;
    CSplashWnd& operator=(const CSplashWnd&) = delete;

    // False: it will not be shown. It is enabled at first.
    void EnableSplashScreen(bool bEnable) { m_bShowSplashWnd = bEnable; }
    void ShowSplashScreen(); // nothing when disabled, or when it is shown
    void HideSplashScreen();
    void OnTimer() { HideSplashScreen(); }
    bool IsShown() const { return m_bShown; }

    // Asked first, about every event of the program. True: it is taken, and reaches nobody else. The press
    // that hides the splash is taken, with all that belongs to it up to its release, or a right release
    // would open a menu. What goes to a modal box hides the splash too, but isn't taken.
    bool PreTranslateAppMessage(const CSplashEvent& event);

private:
    struct CTaken
    {
        bool m_bTaken = false;
        int32_t m_nCode = 0;
        bool Is(int32_t nCode) const { return m_bTaken && m_nCode == nCode; }
    };

    ISplashView& m_View;
    bool m_bShowSplashWnd = true;
    bool m_bShown = false;
    CTaken m_Key; // the press that hid the splash, until its release
    CTaken m_Button;
};
