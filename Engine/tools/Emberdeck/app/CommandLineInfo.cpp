#include "app/CommandLineInfo.h"

#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsstrutils.h"

namespace
{

bool IsFlag(const std::string& sParam, const std::function<bool(const std::string&)>& exists)
{
    if (sParam.empty() || (sParam[0] != '-' && sParam[0] != '/'))
        return false;
    if (sParam[0] == '-')
        return true;
    return sParam.find('/', 1) == std::string::npos && !exists(sParam);
}

bool Is(const std::string& sFlag, const char* pszName)
{
    return QSStrIEquals(sFlag.c_str(), pszName);
}

} // namespace

void CEmberdeckCommandLineInfo::ParseParam(const std::string& sParam, bool bFlag)
{
    if (!bFlag)
    {
        if (m_bUpdateFx && m_sUpdateDir.empty())
            m_sUpdateDir = sParam;
        else if (m_sFileName.empty())
            m_sFileName = sParam;
        if (IsUpdateMode())
            m_bShowSplash = false;
        return;
    }

    // The second dash of the long form.
    const std::string sFlag = !sParam.empty() && sParam[0] == '-' ? sParam.substr(1) : sParam;
    if (Is(sFlag, "UpdateFx"))
        m_bUpdateFx = true;
    else if (Is(sFlag, "nosplash"))
        m_bShowSplash = false;
    else if (Is(sFlag, "help") || Is(sFlag, "h") || Is(sFlag, "?"))
        m_bHelp = true;
    else if (Is(sFlag, "version"))
        m_bVersion = true;
    else if (Is(sFlag, "open"))
        m_bWantsFile = true;
    else if (Is(sFlag.substr(0, 5), "open="))
        m_sOpenFile = sFlag.substr(5);
    else
        m_Complaints.push_back("unknown option: " + sParam);
}

CEmberdeckCommandLineInfo ParseCommandLine(const std::vector<std::string>& params,
                                           const std::function<bool(const std::string&)>& exists)
{
    const auto isThere = exists ? exists : [](const std::string& sPath) { return PathExists(sPath); };
    CEmberdeckCommandLineInfo info;
    for (const std::string& sParam : params)
    {
        // Whatever stands behind --open is its file, so that a name with a dash in front can be given.
        if (info.m_bWantsFile)
        {
            info.m_sOpenFile = sParam;
            info.m_bWantsFile = false;
            continue;
        }
        const bool bFlag = IsFlag(sParam, isThere);
        const size_t nComplaints = info.m_Complaints.size();
        info.ParseParam(bFlag ? sParam.substr(1) : sParam, bFlag);
        if (info.m_Complaints.size() > nComplaints)
            info.m_Complaints.back() = "unknown option: " + sParam; // as it was typed
    }
    if (info.m_bWantsFile)
        info.m_Complaints.push_back("--open needs a file behind it");
    return info;
}

std::string GetCommandLineHelp()
{
    return "Usage: emberdeck [options]\n"
           "\n"
           "Opens the effect file of the last session, or an empty library.\n"
           "\n"
           "  --open FILE            open FILE instead\n"
           "  /UpdateFx DIRECTORY    re-save every effect file below DIRECTORY, then end\n"
           "  --nosplash             start without the splash window\n"
           "  --version              print the version and end\n"
           "  --help                 print this text and end\n";
}
