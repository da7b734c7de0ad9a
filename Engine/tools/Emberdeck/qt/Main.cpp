// Emberdeck: the editor in its window.

#include <cstdio>

#include <QApplication>

#include "app/CommandLineInfo.h"
#include "platform/Profile.h"
#include "qsversion.h"
#include "qt/MainWindow.h"
#include "qt/ProgramIcon.h"
#include "qt/QtPropertyDialogs.h"
#include "qt/QtText.h"
#include "shared/engine/SharedSourceControlMgr.h"

namespace
{
std::vector<std::string> Parameters()
{
    std::vector<std::string> params;
    for (const QString& sParam : QApplication::arguments().mid(1))
        params.push_back(QtText::PathFromQt(sParam));
    return params;
}

int Start(const CEmberdeckCommandLineInfo& line, MenuStyle* pStyle)
{
    QtPrompts prompts;
    const std::unique_ptr<IProfile> pProfile = OpenFileProfile("emberdeck/settings.ini");
    CSharedSourceControlMgr& sourceControl = CSharedSourceControlMgr::Instance();
    MainWindow window(*pProfile, sourceControl, prompts);
    if (!window.Create(line.m_bShowSplash && !line.IsUpdateMode(), pStyle))
        return 1;
    if (line.IsUpdateMode())
    {
        window.App().UpdateEffectsInDirectory(line.m_sUpdateDir.c_str());
        return 0;
    }
    QtPropertyDialogs dialogs(window.App().Context(), *pProfile, &window);
    window.SetPropertyEditor([&dialogs](CEffectPropertySet& set) { return dialogs.EditProperties(set); });
    window.showMaximized();
    window.App().OpenFirstFile(line.m_sOpenFile);
    window.Frame().RefreshSourceControl();
    window.RetitleAll();
    return QApplication::exec();
}
} // namespace

int main(int argc, char** argv)
{
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
    auto* pStyle = new MenuStyle; // the application takes it
    QApplication::setStyle(pStyle);

    const CEmberdeckCommandLineInfo line = ParseCommandLine(Parameters());
    for (const std::string& sComplaint : line.m_Complaints)
        std::fprintf(stderr, "emberdeck: %s\n", sComplaint.c_str());
    return Start(line, pStyle);
}
