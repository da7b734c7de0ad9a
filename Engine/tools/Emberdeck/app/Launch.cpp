#include "app/Launch.h"

#include <algorithm>

#include "platform/Paths.h"
#include "platform/Process.h"

CLaunch MakeLaunch(const std::string& sBinary, const std::string& sCommandLine)
{
    std::string sName = sBinary;
    std::replace(sName.begin(), sName.end(), '/', '\\');
    const size_t nSeparator = sName.rfind('\\');

    CLaunch launch;
    // Full, since a relative name would be looked for from the game's directory.
    launch.m_sProgram = MakeFullPath(sName);
    if (nSeparator != std::string::npos)
        launch.m_sDirectory = MakeFullPath(sName.substr(0, nSeparator));
    launch.m_Arguments = SplitCommandLine(sCommandLine);
    return launch;
}

bool LaunchProgram(const std::string& sBinary, const std::string& sCommandLine)
{
    if (sBinary.empty())
        return false;
    const CLaunch launch = MakeLaunch(sBinary, sCommandLine);
    return StartProcess(launch.m_sProgram, launch.m_Arguments, launch.m_sDirectory);
}
