// Emberdeck: the editor in its window.

#include <csignal>
#include <cstdio>

#include <QApplication>
#include <QElapsedTimer>
#include <QWindow>

#include "app/CommandLineInfo.h"
#include "platform/Profile.h"
#include "qsversion.h"
#include "qt/frame/AssertDialog.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/MainWindow.h"
#include "qt/frame/RecoveryBar.h"
#include "qt/properties/QtPropertyDialogs.h"
#include "qt/sourcecontrol/SourceControlFront.h"
#include "qt/toolkit/Appearance.h"
#include "qt/toolkit/DialogPlaces.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/QtText.h"
#include "shared/sourcecontrol/BuiltInProviders.h"
#include "shared/sourcecontrol/ProviderLibraries.h"
#include "shared/sourcecontrol/SharedSourceControlMgr.h"

namespace
{
std::vector<std::string> Parameters()
{
    std::vector<std::string> params;
    for (const QString& sParam : QApplication::arguments().mid(1))
        params.push_back(QtText::PathFromQt(sParam));
    return params;
}

// Until the window has its place on the screen, so that a question about the first file stands over its middle.
// No longer than a moment: without a window manager it may never come.
void WaitForWindow(const QWidget& window)
{
    constexpr int nMostMs = 300;
    QElapsedTimer clock;
    for (clock.start();
         clock.elapsed() < nMostMs && !(window.windowHandle()->isExposed() && window.isActiveWindow());)
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
}

void Complain(const std::string& sText)
{
    std::fprintf(stderr, "emberdeck: %s\n", sText.c_str());
}

// The providers and their windows. The one manager of the process outlives it all, and lets go of it at the end.
struct CSourceControlSetUp
{
    explicit CSourceControlSetUp(QtPrompts& prompts)
    {
        RegisterBuiltInProviders(m_Registry, {&prompts, &m_Front, [this] { return m_Front.CurrentFile(); }});
        for (const std::string& sProblem : RegisterProviderLibraries(m_Registry, GetProviderListFile()))
            Complain(sProblem);
        CSourceControlServices services;
        services.m_pRegistry = &m_Registry;
        services.m_pPrompts = &prompts;
        services.m_MakeLocator = [this, &prompts] { return m_Front.MakeLocator(m_Registry, &prompts); };
        services.m_TellFailure = Complain;
        CSharedSourceControlMgr::Instance(services);
    }
    ~CSourceControlSetUp() { CSharedSourceControlMgr::Instance().Disconnect(); }
    CSourceControlSetUp(const CSourceControlSetUp&) = delete;
    CSourceControlSetUp& operator=(const CSourceControlSetUp&) = delete;

    void SetWindow(MainWindow* pWindow)
    {
        m_Front.SetOwner(pWindow, [pWindow] { return pWindow->App().m_sFileName; });
        CSharedSourceControlMgr::Instance().SetWindow(pWindow);
    }

    CProviderRegistry m_Registry;
    QtSourceControl m_Front;
};

int Start(const CEmberdeckCommandLineInfo& line, MenuStyle* pStyle)
{
    QtPrompts prompts;
    QPointer<MainWindow> pShown;
    const auto tellFailure = [&pShown](const std::string& sProblem)
    {
        const std::string sText = "The settings can't be kept. " + sProblem;
        std::fprintf(stderr, "emberdeck: %s\n", sText.c_str());
        if (pShown)
            pShown->Host().ShowStatus(sText);
    };
    const std::unique_ptr<IProfile> pProfile = OpenFileProfile("emberdeck/settings.ini", tellFailure);
    ApplyAppearance(LoadAppearance(*pProfile));
    DialogPlaces places(*pProfile);
    CSourceControlSetUp sourceControl(prompts);
    MainWindow window(*pProfile, CSharedSourceControlMgr::Instance(), prompts);
    pShown = &window;
    sourceControl.SetWindow(&window);
    if (!window.Create(line.m_bShowSplash && !line.IsUpdateMode(), pStyle))
        return 1;
    if (line.IsUpdateMode())
    {
        int nFailed = 0;
        window.App().m_OnLoaded = [](const std::string& sFile, const CLoadReport& report)
        {
            if (report.IsDamaged())
                std::fprintf(stderr, "%s\n", report.Lines(sFile + ": ").c_str());
        };
        window.App().m_OnLeft = [](const std::string& sFile, const std::string& sWhy)
        { std::fprintf(stderr, "emberdeck: %s wasn't updated: %s\n", sFile.c_str(), sWhy.c_str()); };
        window.App().m_OnUpdated = [&nFailed](const std::string&, bool bSaved) { nFailed += bSaved ? 0 : 1; };
        const bool bWalked = window.App().UpdateEffectsInDirectory(line.m_sUpdateDir.c_str());
        for (const std::string& sDirectory : window.App().GetUnreadDirectories())
            std::fprintf(stderr, "emberdeck: the folder %s can't be read, so nothing in it was updated\n",
                         sDirectory.c_str());
        return bWalked && nFailed == 0 && window.App().GetUnreadDirectories().empty() ? 0 : 1;
    }
    QtPropertyDialogs dialogs(window.App().Context(), *pProfile, &window);
    window.Host().SetPropertyEditor([&dialogs](CEffectPropertySet& set)
                                    { return dialogs.EditProperties(set); });
    window.ShowAsLeft();
    WaitForWindow(window);
    window.Frame().OpenFirstFile(line.m_sOpenFile);
    window.Effects().RetitleAll();
    window.Recovery()->OfferAll();
    return QApplication::exec();
}
} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is a failed write, which is told
    SetProgramVersion(MakeVersionBlock("Emberdeck", EMBERDECK_VERSION, "Copyright Harrowgate Works"));
    // The scale of the screen as it is, without rounding: text stays sharp at 150 per cent.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);

    // Help and version need no display.
    std::vector<std::string> early(argv + 1, argv + argc);
    const CEmberdeckCommandLineInfo first = ParseCommandLine(early);
    if (first.m_bHelp)
    {
        std::fputs(GetCommandLineHelp().c_str(), stdout);
        return 0;
    }
    if (first.m_bVersion)
    {
        std::printf("emberdeck %s\n", EMBERDECK_VERSION);
        return 0;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Emberdeck"));
    QApplication::setDesktopFileName(QStringLiteral("emberdeck"));
    QApplication::setWindowIcon(ProgramIcon());
#ifndef NDEBUG
    // Who works on the program is asked. A user's failed assertions go to the log, and on.
    AskAboutAsserts();
#endif
    auto* pStyle = new MenuStyle; // the application takes it
    QApplication::setStyle(pStyle);

    const CEmberdeckCommandLineInfo line = ParseCommandLine(Parameters());
    for (const std::string& sComplaint : line.m_Complaints)
        std::fprintf(stderr, "emberdeck: %s\n", sComplaint.c_str());
    if (!line.m_Complaints.empty())
        std::fprintf(stderr, "emberdeck: \"emberdeck --help\" lists the options\n");
    return Start(line, pStyle);
}
