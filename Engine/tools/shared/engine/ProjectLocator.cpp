#include "shared/engine/ProjectLocator.h"

#include <algorithm>
#include <vector>

#include "platform/FileProblem.h"
#include "platform/Files.h"
#include "platform/NameFold.h"
#include "platform/Paths.h"
#include "platform/Profile.h"

namespace
{

constexpr size_t c_nMaxPath = 259;
constexpr size_t c_nMaxValue = 259;
constexpr uint64_t c_nMaxLocatorSize = 1 << 20;
constexpr std::string_view c_sLocatorEnd = ".proj00";
constexpr std::string_view c_sProjectMark = "%PROJDIR%";

enum class EForm
{
    eText,
    eDirectory,
    eFile
};

struct CLocatorKey
{
    const char* m_pszSection;
    const char* m_pszKey;
    EForm m_eForm;
    std::string CProjectInfo::*m_pField;
};

constexpr CLocatorKey c_LocatorKeys[] = {
    {"General", "Game", EForm::eText, &CProjectInfo::m_sGame},
    {"Project Directories", "ResourceRoot", EForm::eDirectory, &CProjectInfo::m_sResourceRoot},
    {"Project Directories", "ToolsRoot", EForm::eDirectory, &CProjectInfo::m_sToolsRoot},
    {"Project Directories", "PC", EForm::eDirectory, &CProjectInfo::m_sPCRoot},
    {"Project Directories", "Xenon", EForm::eDirectory, &CProjectInfo::m_sXenonRoot},
    {"Project Binaries", "Fireglass", EForm::eFile, &CProjectInfo::m_sFireglass},
    {"Project Binaries", "GameServer", EForm::eFile, &CProjectInfo::m_sGameServer},
    {"Project Binaries", "GameDatabase", EForm::eFile, &CProjectInfo::m_sGameDatabase},
    {"Source Control", "Provider", EForm::eText, &CProjectInfo::m_sProvider},
    {"Source Control", "Database", EForm::eText, &CProjectInfo::m_sDatabase},
    {"Tools Launch", "PCBinary", EForm::eFile, &CProjectInfo::m_sPCBinary},
    {"Tools Launch", "PCWorking", EForm::eFile, &CProjectInfo::m_sPCWorking},
    {"Tools Launch", "XenonBinary", EForm::eFile, &CProjectInfo::m_sXenonBinary},
    {"Tools Launch", "XenonWorking", EForm::eFile, &CProjectInfo::m_sXenonWorking},
};

void CutPath(std::string& sPath)
{
    sPath.resize(std::min(sPath.size(), c_nMaxPath));
}

// The name of the locator file in a directory; empty when there is none. A link that leads nowhere is taken
// where nothing better is there, if the caller wants to know of it.
std::string FindLocator(const std::string& sDirectory, bool bDeadLinks)
{
    std::string sDead;
    std::vector<CDirectoryEntry> entries;
    ListDirectory(sDirectory, entries);
    for (const CDirectoryEntry& entry : entries)
    {
        // A backslash in a name would count as a separator from here on.
        if (entry.m_bDirectory || !EndsWithFolded(entry.m_sName, c_sLocatorEnd) ||
            entry.m_sName.find('\\') != std::string::npos)
            continue;
        if (FileExists(sDirectory + '\\' + entry.m_sName))
            return entry.m_sName;
        if (bDeadLinks && entry.m_bLink)
            sDead = entry.m_sName;
    }
    return sDead;
}

} // namespace

bool FindAndLoadProject(const char* pszFile, CProjectInfo& info, std::string* pUnusable)
{
    const auto cut = [pUnusable](std::string& sText)
    {
        if (!pUnusable)
            CutPath(sText);
    };
    std::string sPath = pszFile ? pszFile : "";
    cut(sPath);
    if (!IsAbsolutePath(sPath))
    {
        sPath = GetCurrentDirectoryPath() + '\\' + sPath;
        cut(sPath);
        sPath = CanonicalizePath(sPath);
    }
    // Drives are no part of this system: what follows would look below the working directory.
    if (sPath.empty() || !IsSeparator(sPath[0]))
        return false;
    for (;;)
    {
        RemoveLastComponent(sPath);
        if (sPath.find_first_not_of("\\/") == std::string::npos)
            return false;
        const std::string sName = FindLocator(sPath, pUnusable != nullptr);
        if (sName.empty())
            continue;
        std::string sLocator = sPath + '\\' + sName;
        if (pUnusable && (sLocator.size() > c_nMaxPath || !FileExists(sLocator)))
        {
            *pUnusable = sLocator;
            return false;
        }
        CutPath(sLocator);
        return LoadProjectFile(info, sLocator.c_str());
    }
}

bool LoadProjectFile(CProjectInfo& info, const char* pszLocator)
{
    const std::string sLocator = pszLocator ? pszLocator : "";
    std::string sText;
    CProfileText profile;
    if (ReadWholeFile(sLocator, sText, c_nMaxLocatorSize))
        profile.Parse(sText);

    info.m_sLocator = sLocator;
    info.m_sProjectDir = sLocator;
    RemoveLastComponent(info.m_sProjectDir);
    AddTrailingSeparator(info.m_sProjectDir);
    for (const CLocatorKey& key : c_LocatorKeys)
    {
        std::string sValue;
        profile.Get(key.m_pszSection, key.m_pszKey, sValue, c_nMaxValue);
        if (key.m_eForm == EForm::eText)
            info.*key.m_pField = sValue;
        else
            ResolvePath(info.m_sProjectDir.c_str(), sValue.c_str(), key.m_eForm == EForm::eDirectory,
                        info.*key.m_pField);
    }
    const size_t nMark = info.m_sDatabase.find(c_sProjectMark);
    if (nMark != std::string::npos)
        info.m_sDatabase.replace(nMark, c_sProjectMark.size(), info.m_sProjectDir);
    return true;
}

std::string LocatorProblem(const std::string& sLocator)
{
    if (sLocator.empty())
        return std::string();
    const std::string sShown = DisplayPath(sLocator);
    if (sLocator.size() > c_nMaxPath)
        return "The path of the project locator file " + sShown +
               " has more than 259 bytes. Move the project to a folder with a shorter one.";
    const std::string sProblem = ReadProblem(sLocator);
    if (!sProblem.empty())
        return "The project locator file can't be read: " + sProblem;
    if (FileSize(sLocator) > c_nMaxLocatorSize)
        return "The project locator file " + sShown + " is larger than 1 MB.";
    std::string sText;
    if (!ReadWholeFile(sLocator, sText, c_nMaxLocatorSize))
        return "The project locator file " + sShown + " can't be read.";
    const bool bMarked = sText.starts_with("\xFF\xFE") || sText.starts_with("\xFE\xFF");
    if (bMarked || sText.find('\0') != std::string::npos)
        return "The project locator file " + sShown + " is UTF-16, or no text at all. Save it as UTF-8.";
    return std::string();
}

void ResolvePath(const char* pszBase, const char* pszValue, bool bTrailingSeparator, std::string& sOut)
{
    const std::string sValue = pszValue ? pszValue : "";
    if (IsAbsolutePath(sValue))
        sOut = sValue;
    else
    {
        std::string sJoined = pszBase ? pszBase : "";
        AddTrailingSeparator(sJoined);
        sOut = CanonicalizePath(sJoined + sValue);
    }
    if (bTrailingSeparator)
        AddTrailingSeparator(sOut);
}

bool IsAbsolutePath(const std::string& sPath)
{
    const size_t nFirst = sPath.find_first_of("\\/:");
    return nFirst != std::string::npos && (nFirst == 0 || sPath[nFirst] == ':');
}

void RemoveLastComponent(std::string& sPath)
{
    const size_t nLast = sPath.find_last_of("\\/");
    sPath.resize(nLast == std::string::npos ? 0 : nLast);
}

void AddTrailingSeparator(std::string& sPath)
{
    if (sPath.empty() || !IsSeparator(sPath.back()))
        sPath += '\\';
}
