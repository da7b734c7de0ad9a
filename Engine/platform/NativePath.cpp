#include "platform/Paths.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

#include "platform/NameFold.h"

namespace
{

bool Exists(const std::string& sPath)
{
    struct stat info;
    return lstat(sPath.c_str(), &info) == 0;
}

bool IsFileHere(const std::string& sPath)
{
    struct stat info;
    return stat(sPath.c_str(), &info) == 0 && !S_ISDIR(info.st_mode);
}

std::string TurnSeparators(std::string_view sPath)
{
    std::string sTurned(sPath);
    std::replace(sTurned.begin(), sTurned.end(), '\\', '/');
    return sTurned;
}

// The entry of a directory whose name is sName but for case; of several the first by bytes, since
// they are all equal without case. Empty when there is none.
std::string FindEntry(const std::string& sDirectory, std::string_view sName)
{
    std::unique_ptr<DIR, int (*)(DIR*)> pDir(opendir(sDirectory.empty() ? "." : sDirectory.c_str()),
                                             closedir);
    std::string sFound;
    if (!pDir)
        return sFound;
    while (const dirent* pEntry = readdir(pDir.get()))
    {
        if (EqualFolded(pEntry->d_name, sName) && (sFound.empty() || sFound > pEntry->d_name))
            sFound = pEntry->d_name;
    }
    return sFound;
}

// Length of the longest part of the path, cut at a separator of the original, that exists.
size_t ExistingPrefix(std::string_view sOriginal, const std::string& sPath)
{
    for (size_t i = sPath.size(); i-- > 1;)
    {
        if (IsSeparator(sOriginal[i]) && !IsSeparator(sOriginal[i - 1]) && Exists(sPath.substr(0, i)))
            return i;
    }
    return !sPath.empty() && sPath[0] == '/' ? 1 : 0;
}

// Goes on from an existing directory through the components of sRest, which has only slashes. The
// first one that can't be found ends the search: nothing lies behind it.
std::string WalkComponents(std::string sReached, std::string_view sRest)
{
    size_t i = 0;
    while (i < sRest.size())
    {
        if (sRest[i] == '/')
        {
            sReached += sRest[i++];
            continue;
        }
        const size_t nEnd = std::min(sRest.find('/', i), sRest.size());
        const std::string_view sName = sRest.substr(i, nEnd - i);
        const std::string sExact = sReached + std::string(sName);
        if (!Exists(sExact))
        {
            const std::string sEntry = FindEntry(sReached, sName);
            if (sEntry.empty())
                return sReached + std::string(sRest.substr(i));
            sReached += sEntry;
        }
        else
            sReached = sExact;
        i = nEnd;
    }
    return sReached;
}

} // namespace

bool IsForeignPath(std::string_view sPath)
{
    if (sPath.find('\0') != std::string_view::npos)
        return true;
    const bool bDrive =
        sPath.size() >= 2 && sPath[1] == ':' && FoldChar(sPath[0]) >= 'a' && FoldChar(sPath[0]) <= 'z';
    return bDrive && (sPath.size() == 2 || IsSeparator(sPath[2]));
}

std::string NativePath(std::string_view sPath)
{
    if (sPath.empty() || IsForeignPath(sPath))
        return std::string();
    std::string sTyped(sPath);
    // Nothing longer can exist, and there is no point in asking for each part of it.
    if (sPath.size() >= PATH_MAX)
        return TurnSeparators(sPath);
    if (Exists(sTyped))
        return sTyped;
    std::string sTurned = TurnSeparators(sPath);
    if (sTurned != sTyped && Exists(sTurned))
        return sTurned;

    // A folder's own name may hold a backslash: the form that reaches farther is the right one.
    const size_t nTyped = ExistingPrefix(sPath, sTyped);
    const size_t nTurned = sTurned == sTyped ? nTyped : ExistingPrefix(sPath, sTurned);
    const std::string& sBase = nTyped >= nTurned ? sTyped : sTurned;
    const size_t nBase = std::max(nTyped, nTurned);
    return WalkComponents(sBase.substr(0, nBase), std::string_view(sTurned).substr(nBase));
}

std::string DisplayPath(std::string_view sPath)
{
    std::string sNative = NativePath(sPath);
    return sNative.empty() ? std::string(sPath) : sNative;
}

std::string ResolvedPath(std::string_view sPath)
{
    const std::string sNative = NativePath(sPath);
    std::unique_ptr<char, void (*)(void*)> pResolved(realpath(sNative.c_str(), nullptr), std::free);
    if (pResolved)
        return pResolved.get();
    const size_t nSlash = sNative.rfind('/');
    const std::string sName = nSlash == std::string::npos ? sNative : sNative.substr(nSlash + 1);
    if (sName.empty() || sName == "." || sName == "..")
        return std::string();
    const std::string sFolder = nSlash == std::string::npos ? "." : sNative.substr(0, nSlash + 1);
    pResolved.reset(realpath(sFolder.c_str(), nullptr));
    if (!pResolved)
        return std::string();
    std::string sResult = pResolved.get();
    if (sResult != "/")
        sResult += '/';
    return sResult + sName;
}

std::vector<std::string> NativeLibraryPaths(std::string_view sPath)
{
    std::vector<std::string> found;
    const auto add = [&found](const std::string& sCandidate)
    {
        std::string sNative = NativePath(sCandidate);
        if (IsFileHere(sNative))
            found.push_back(std::move(sNative));
    };
    add(std::string(sPath));
    constexpr std::string_view c_sEnd = ".dll";
    if (!EndsWithFolded(sPath, c_sEnd))
        return found;
    const std::string sStem(sPath.substr(0, sPath.size() - c_sEnd.size()));
    const size_t nName = sStem.find_last_of("\\/") + 1; // npos + 1 is 0: no folder
    if (nName == sStem.size())
        return found;
    add(sStem + ".so");
    add(sStem.substr(0, nName) + "lib" + sStem.substr(nName) + ".so");
    return found;
}

std::string NativeLibraryPath(std::string_view sPath)
{
    const std::vector<std::string> found = NativeLibraryPaths(sPath);
    return found.empty() ? std::string() : found.front();
}
