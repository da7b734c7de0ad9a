#include "platform/Paths.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <pwd.h>
#include <unistd.h>

#include "platform/NameFold.h"

namespace
{

// The part of a path that no double-dot step can remove.
size_t RootLength(std::string_view sPath)
{
    size_t nRoot = 0;
    if (sPath.size() >= 2 && sPath[1] == ':' && FoldChar(sPath[0]) >= 'a' && FoldChar(sPath[0]) <= 'z')
        nRoot = 2;
    while (nRoot < sPath.size() && IsSeparator(sPath[nRoot]))
        ++nRoot;
    return nRoot;
}

// Takes the last component off, which stands in front of the separator that ends sOut. False when
// there is none, or when it is a double-dot step itself.
bool DropLastStep(std::string& sOut, size_t nRoot)
{
    size_t nEnd = sOut.size();
    while (nEnd > nRoot && IsSeparator(sOut[nEnd - 1]))
        --nEnd;
    size_t nBegin = nEnd;
    while (nBegin > nRoot && !IsSeparator(sOut[nBegin - 1]))
        --nBegin;
    const std::string_view sStep = std::string_view(sOut).substr(nBegin, nEnd - nBegin);
    if (sStep.empty() || sStep == "..")
        return false;
    sOut.resize(nBegin);
    return true;
}

std::string EnvironmentDirectory(const char* pszVariable, const char* pszBelowHome)
{
    // A relative value is to be ignored, by the rules for these variables.
    const char* pszValue = std::getenv(pszVariable);
    if (pszValue && pszValue[0] == '/')
        return pszValue;
    const char* pszHome = std::getenv("HOME");
    if (!pszHome || pszHome[0] != '/')
    {
        const passwd* pUser = getpwuid(getuid());
        pszHome = pUser ? pUser->pw_dir : nullptr;
    }
    return pszHome && pszHome[0] == '/' ? std::string(pszHome) + '/' + pszBelowHome : std::string();
}

} // namespace

std::string CanonicalizePath(std::string_view sPath)
{
    const size_t nRoot = RootLength(sPath);
    const bool bRooted = nRoot > 0 && IsSeparator(sPath[nRoot - 1]);
    std::string sOut(sPath.substr(0, nRoot));
    size_t i = nRoot;
    while (i < sPath.size())
    {
        size_t nEnd = i;
        while (nEnd < sPath.size() && !IsSeparator(sPath[nEnd]))
            ++nEnd;
        const std::string_view sStep = sPath.substr(i, nEnd - i);
        const bool bLast = nEnd == sPath.size();
        i = bLast ? nEnd : nEnd + 1;
        // A separator that has lost what stood in front of it would make a root, or another one.
        const bool bDropped = sStep == "." || (sStep == ".." && (DropLastStep(sOut, nRoot) || bRooted)) ||
                              (sStep.empty() && sOut.size() == nRoot);
        if (!bDropped)
            sOut += sPath.substr(nEnd - sStep.size(), sStep.size() + (bLast ? 0 : 1));
        else if (bLast && sOut.size() > nRoot)
            sOut.pop_back(); // the separator in front of the dots goes with them
    }
    return sOut.empty() && !sPath.empty() ? "." : sOut;
}

std::string GetCurrentDirectoryPath()
{
    std::unique_ptr<char, void (*)(void*)> pPath(getcwd(nullptr, 0), std::free);
    return pPath ? pPath.get() : std::string();
}

std::string MakeFullPath(const std::string& sPath)
{
    if (sPath.empty() || IsForeignPath(sPath))
        return sPath;
    const std::string sNative = NativePath(sPath);
    if (sNative.empty() || sNative[0] == '/')
        return sNative.empty() ? sPath : sNative;
    const std::string sDirectory = GetCurrentDirectoryPath();
    return sDirectory.empty() ? sNative : CanonicalizePath(sDirectory + '/' + sNative);
}

std::string NativeFolderOf(const std::string& sNative)
{
    const size_t nSlash = sNative.rfind('/');
    return nSlash == std::string::npos ? "." : sNative.substr(0, std::max<size_t>(nSlash, 1));
}

std::string GetExecutablePath()
{
    char szPath[PATH_MAX];
    const ssize_t nLength = readlink("/proc/self/exe", szPath, sizeof(szPath));
    return nLength > 0 ? std::string(szPath, static_cast<size_t>(nLength)) : std::string();
}

std::string GetConfigDirectory()
{
    return EnvironmentDirectory("XDG_CONFIG_HOME", ".config");
}

std::string GetStateDirectory()
{
    return EnvironmentDirectory("XDG_STATE_HOME", ".local/state");
}

std::string GetTemporaryDirectory()
{
    const char* pszValue = std::getenv("TMPDIR");
    return pszValue && pszValue[0] == '/' ? pszValue : "/tmp";
}
