#include "desktop/Desktop.h"

#include <gtest/gtest.h>

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

pid_t s_nServer = 0;
pid_t s_nManager = 0;
Display* s_pDisplay = nullptr; // a connection of the harness's own

// A program that ends with this one, however that ends. 0 when it can't be started at all.
pid_t Spawn(const std::vector<std::string>& words, bool bQuiet)
{
    std::vector<char*> args;
    for (const std::string& sWord : words)
        args.push_back(const_cast<char*>(sWord.c_str()));
    args.push_back(nullptr);
    const pid_t nParent = getpid();
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != nParent)
            _exit(1);
        const int nNull = bQuiet ? open("/dev/null", O_WRONLY) : -1;
        if (nNull >= 0)
        {
            dup2(nNull, STDOUT_FILENO);
            dup2(nNull, STDERR_FILENO);
        }
        execvp(args[0], args.data());
        _exit(127);
    }
    return nChild > 0 ? nChild : 0;
}

void End(pid_t& nChild)
{
    if (nChild > 0)
    {
        kill(nChild, SIGTERM);
        waitpid(nChild, nullptr, 0);
    }
    nChild = 0;
}

// The number that the server writes once it listens; empty when it doesn't.
std::string ReadDisplay(int nPipe)
{
    std::string sNumber;
    pollfd waiting = {nPipe, POLLIN, 0};
    char c = 0;
    while (poll(&waiting, 1, 20000) > 0 && read(nPipe, &c, 1) == 1)
    {
        if (c == '\n')
            return sNumber;
        sNumber += c;
    }
    return std::string();
}

bool StartServer()
{
    int ends[2];
    if (pipe(ends) != 0)
        return false;
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    s_nServer = Spawn({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", "1600x1000x24",
                       "-nolisten", "tcp", "-noreset"},
                      true);
    close(ends[1]);
    const std::string sNumber = ReadDisplay(ends[0]);
    close(ends[0]);
    if (sNumber.empty())
        return false;
    setenv("DISPLAY", (":" + sNumber).c_str(), 1);
    s_pDisplay = XOpenDisplay(nullptr);
    return s_pDisplay != nullptr;
}

bool HasManager()
{
    Atom type = None;
    int nFormat = 0;
    unsigned long nItems = 0, nRest = 0;
    unsigned char* pData = nullptr;
    XGetWindowProperty(s_pDisplay, DefaultRootWindow(s_pDisplay),
                       XInternAtom(s_pDisplay, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False, XA_WINDOW,
                       &type, &nFormat, &nItems, &nRest, &pData);
    if (pData)
        XFree(pData);
    return nItems == 1;
}

bool StartManager()
{
    s_nManager = Spawn({"openbox", "--sm-disable"}, true);
    for (int i = 0; i < 400; ++i)
    {
        if (HasManager())
            return true;
        usleep(25000);
    }
    return false;
}

// Counts what comes from the server, before anybody handles it.
class CArrivals : public QAbstractNativeEventFilter
{
public:
    enum EKind
    {
        eKey,
        eButton,
        eMotion,
        eKinds
    };
    bool nativeEventFilter(const QByteArray& type, void* pMessage, qintptr*) override
    {
        if (type != "xcb_generic_event_t")
            return false;
        // The first byte is the kind; an event of an extension has its own at byte 8.
        uint8_t nKind = 0;
        uint16_t nExtended = 0;
        std::memcpy(&nKind, pMessage, sizeof(nKind));
        std::memcpy(&nExtended, static_cast<const char*>(pMessage) + 8, sizeof(nExtended));
        nKind &= 0x7F;
        const int nEvent = nKind == GenericEvent ? nExtended : nKind;
        ++m_nAll;
        if (nEvent == KeyPress || nEvent == KeyRelease)
            ++m_Counts[eKey];
        else if (nEvent == ButtonPress || nEvent == ButtonRelease)
            ++m_Counts[eButton];
        else if (nEvent == MotionNotify || nEvent == EnterNotify || nEvent == LeaveNotify)
            ++m_Counts[eMotion];
        return false;
    }

    uint64_t m_nAll = 0;
    std::array<uint64_t, eKinds> m_Counts = {};
};

CArrivals& Arrivals()
{
    static CArrivals s_Arrivals;
    static QPointer<QCoreApplication> s_pApp;
    if (!s_pApp)
    {
        s_pApp = QCoreApplication::instance();
        s_pApp->installNativeEventFilter(&s_Arrivals);
    }
    return s_Arrivals;
}

// One order to the server, then everything that comes of it. What a window manager or a window elsewhere
// takes never arrives here; then the wait ends on its own.
void Send(std::vector<std::string> words, CArrivals::EKind eKind, uint64_t nEvents)
{
    CArrivals& arrivals = Arrivals();
    const uint64_t nAwaited = arrivals.m_Counts[eKind] + nEvents;
    words.insert(words.begin(), "xdotool");
    const pid_t nChild = Spawn(words, false);
    int nStatus = -1;
    ASSERT_TRUE(nChild > 0 && waitpid(nChild, &nStatus, 0) == nChild && nStatus == 0)
        << "xdotool " << words[1] << " has failed; is it installed?";
    Desktop::Settle([&] { return arrivals.m_Counts[eKind] >= nAwaited; },
                    eKind == CArrivals::eMotion ? 60 : 400);
    Desktop::Settle();
}

std::vector<std::string> Split(const std::string& sKeys)
{
    std::vector<std::string> words;
    for (size_t nStart = 0; nStart < sKeys.size();)
    {
        const size_t nEnd = std::min(sKeys.find('+', nStart), sKeys.size());
        words.push_back(sKeys.substr(nStart, nEnd - nStart));
        nStart = nEnd + 1;
    }
    return words;
}

QWidget* TopMost()
{
    QWidget* pPopup = QApplication::activePopupWidget();
    return pPopup ? pPopup : QApplication::activeModalWidget();
}

void WaitAndAct(const std::function<void(QWidget*)>& act, const QPointer<QWidget>& pBefore,
                QElapsedTimer clock)
{
    const QPointer<QWidget> pOpen = TopMost();
    const bool bSubmenu = pOpen && pBefore && pOpen->inherits("QMenu") && pBefore->inherits("QMenu");
    const bool bReady =
        pOpen && pOpen != pBefore && !bSubmenu && pOpen->windowHandle() && pOpen->windowHandle()->isExposed();
    if (!bReady && clock.elapsed() < 5000)
    {
        QTimer::singleShot(10, qApp, [=] { WaitAndAct(act, pBefore, clock); });
        return;
    }
    ASSERT_TRUE(bReady) << "nothing has opened";
    if (!pOpen->inherits("QMenu"))
        Desktop::Settle([&] { return !pOpen || pOpen->isActiveWindow(); }, 3000);
    Desktop::Settle();
    act(pOpen);
    // A button that is pressed by its letter takes a moment.
    Desktop::Settle([&] { return !pOpen || !pOpen->isVisible(); }, 1000);
    if (pOpen && pOpen->isVisible())
    {
        ADD_FAILURE() << pOpen->metaObject()->className() << " is still open";
        pOpen->close();
    }
}

} // namespace

bool Desktop::Start()
{
    if (!StartServer())
    {
        std::fputs("No X server for the tests: Xvfb can't be started. Is it installed?\n", stderr);
        return false;
    }
    if (!StartManager())
    {
        std::fputs("No window manager for the tests: openbox can't be started. Is it installed?\n", stderr);
        return false;
    }
    return true;
}

void Desktop::Stop()
{
    End(s_nManager);
    if (s_pDisplay)
        XCloseDisplay(s_pDisplay);
    s_pDisplay = nullptr;
    End(s_nServer);
}

void Desktop::Key(const std::string& sKeys)
{
    Send({"key", sKeys}, CArrivals::eKey, 2);
}

void Desktop::Type(const std::string& sText)
{
    Send({"type", "--delay", "0", "--", sText}, CArrivals::eKey, 2 * sText.size());
}

void Desktop::HoldKey(const std::string& sKey)
{
    Send({"keydown", sKey}, CArrivals::eKey, 1);
}

void Desktop::LetKeyGo(const std::string& sKey)
{
    Send({"keyup", sKey}, CArrivals::eKey, 1);
}

void Desktop::Move(QPoint pt)
{
    const qreal fScale = qApp->devicePixelRatio();
    const QPoint at(qRound(pt.x() * fScale), qRound(pt.y() * fScale));
    Send({"mousemove", std::to_string(at.x()), std::to_string(at.y())}, CArrivals::eMotion, 1);
}

void Desktop::Press(int nButton)
{
    Send({"mousedown", std::to_string(nButton)}, CArrivals::eButton, 1);
}

void Desktop::Release(int nButton)
{
    Send({"mouseup", std::to_string(nButton)}, CArrivals::eButton, 1);
}

void Desktop::Click(QPoint pt, int nButton, const std::string& sHeld)
{
    Move(pt);
    for (const std::string& sKey : Split(sHeld))
        HoldKey(sKey);
    Press(nButton);
    Release(nButton);
    for (const std::string& sKey : Split(sHeld))
        LetKeyGo(sKey);
}

void Desktop::DoubleClick(QPoint pt)
{
    Move(pt);
    Send({"click", "--repeat", "2", "--delay", "60", "1"}, CArrivals::eButton, 4);
}

void Desktop::Drag(QPoint from, QPoint to, const std::string& sHeld, int nButton)
{
    constexpr int nSteps = 4;
    Move(from);
    for (const std::string& sKey : Split(sHeld))
        HoldKey(sKey);
    Press(nButton);
    for (int i = 1; i <= nSteps; ++i)
        Move(from + (to - from) * i / nSteps);
    Release(nButton);
    for (const std::string& sKey : Split(sHeld))
        LetKeyGo(sKey);
}

QPoint Desktop::On(const QWidget* pWidget, QPoint pt)
{
    return pWidget->mapToGlobal(pt);
}

QPoint Desktop::On(const QWidget* pWidget)
{
    return On(pWidget, pWidget->rect().center());
}

bool Desktop::Settle(const std::function<bool()>& until, int nMilliseconds)
{
    CArrivals& arrivals = Arrivals();
    QElapsedTimer clock;
    clock.start();
    Display* const pDisplay = qApp->nativeInterface<QNativeInterface::QX11Application>()->display();
    for (int nQuiet = 0; clock.elapsed() < nMilliseconds;)
    {
        const uint64_t nBefore = arrivals.m_nAll;
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (until && until())
            return true;
        XSync(pDisplay, False);
        QApplication::processEvents();
        nQuiet = arrivals.m_nAll == nBefore ? nQuiet + 1 : 0;
        if (!until && nQuiet == 3)
            return true;
        QThread::msleep(2);
    }
    return until && until();
}

void Desktop::WhileOpen(const std::function<void(QWidget*)>& act)
{
    QElapsedTimer clock;
    clock.start();
    const QPointer<QWidget> pBefore = TopMost();
    QTimer::singleShot(0, qApp, [=] { WaitAndAct(act, pBefore, clock); });
}

bool Desktop::Grab(const std::string& sPath)
{
    return QGuiApplication::primaryScreen()->grabWindow(0).save(QString::fromStdString(sPath));
}
