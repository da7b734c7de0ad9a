#include "bench/window/Bench.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace
{

using CClock = std::chrono::steady_clock;

pid_t Spawn(const std::vector<std::string>& words)
{
    std::vector<char*> args;
    for (const std::string& sWord : words)
        args.push_back(const_cast<char*>(sWord.c_str()));
    args.push_back(nullptr);
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int nNull = open("/dev/null", O_WRONLY);
        dup2(nNull, STDOUT_FILENO);
        dup2(nNull, STDERR_FILENO);
        execvp(args[0], args.data());
        _exit(127);
    }
    return nChild;
}

void End(pid_t nChild, int nSignal)
{
    if (nChild <= 0)
        return;
    kill(nChild, nSignal);
    waitpid(nChild, nullptr, 0);
}

// A screen without a picture, gone with this object.
class CScreen
{
public:
    CScreen()
    {
        int ends[2];
        if (pipe(ends) != 0)
            return;
        fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        m_nServer = Spawn(
            {"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", "1600x1000x24", "-noreset"});
        close(ends[1]);
        std::string sNumber;
        pollfd waiting = {ends[0], POLLIN, 0};
        for (char c = 0; poll(&waiting, 1, 20000) > 0 && read(ends[0], &c, 1) == 1 && c != '\n';)
            sNumber += c;
        close(ends[0]);
        setenv("DISPLAY", (":" + sNumber).c_str(), 1);
        m_pDisplay = sNumber.empty() ? nullptr : XOpenDisplay(nullptr);
    }
    ~CScreen()
    {
        if (m_pDisplay)
            XCloseDisplay(m_pDisplay);
        End(m_nServer, SIGTERM);
    }
    CScreen(const CScreen&) = delete;
    CScreen& operator=(const CScreen&) = delete;

    bool IsUp() const { return m_pDisplay != nullptr; }
    // The screen is black until a window is painted on it; the sides of the first one count.
    bool HasPicture() const
    {
        XImage* pImage =
            XGetImage(m_pDisplay, DefaultRootWindow(m_pDisplay), 0, 500, 1200, 1, AllPlanes, ZPixmap);
        if (!pImage)
            return false;
        bool bPainted = true;
        for (int x = 100; x < 1200; x += 100)
            bPainted = bPainted && (XGetPixel(pImage, x, 0) & 0xFFFFFF) != 0;
        XDestroyImage(pImage);
        return bPainted;
    }

private:
    pid_t m_nServer = 0;
    Display* m_pDisplay = nullptr;
};

} // namespace

CWindowFigure MeasureStartup(int nRounds)
{
    CWindowFigure figure = {"Start of the program on the sample, to the painted window", {}, 1000.0};
    std::string sHome = (std::filesystem::temp_directory_path() / "emberdeck_bench_XXXXXX").string();
    const CScreen screen;
    if (!screen.IsUp() || !mkdtemp(sHome.data()))
        return figure;
    for (const char* pszName : {"XDG_CONFIG_HOME", "XDG_STATE_HOME"})
        setenv(pszName, sHome.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    const std::string sBin = EMBERDECK_BIN_DIR;
    for (int i = 0; i <= nRounds; ++i)
    {
        const auto start = CClock::now();
        const pid_t nChild =
            Spawn({sBin + "/emberdeck", "--nosplash", "--open", sBin + "/bonfire-project/bonfire.Fx00a"});
        const auto elapsed = [&]
        { return std::chrono::duration<double, std::milli>(CClock::now() - start).count(); };
        while (!screen.HasPicture() && elapsed() < 20000.0)
            usleep(1000);
        const double fTime = elapsed();
        if (i > 0 && fTime < 20000.0) // the first one fills the machine's caches
            figure.m_Samples.push_back(fTime);
        End(nChild, SIGKILL);
        while (screen.HasPicture() && elapsed() < 30000.0)
            usleep(1000);
    }
    std::error_code error;
    std::filesystem::remove_all(sHome, error);
    return figure;
}
