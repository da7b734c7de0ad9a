#include "batch/DepFile.h"

#include <glob.h>

#include <algorithm>
#include <new>
#include <set>
#include <string_view>

#include "app/EmberdeckApp.h"
#include "formats/ResourceCollector.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "shared/engine/AssetLibrarySource.h"

namespace
{
constexpr std::string_view c_sEscaped = " #:";              // by a backslash; "$" is doubled
constexpr std::string_view c_sUnreadable = "*?|;=\"&'<>^`"; // one of the two takes these for something else

// make takes "[...]" for a pattern. It falls back on the name itself, unless files are there that match.
bool MatchesOthers(const std::string& sPath)
{
    if (sPath.find('[') == std::string::npos)
        return false;
    glob_t found = {};
    const bool bMatches = glob(sPath.c_str(), GLOB_NOSORT, nullptr, &found) == 0;
    globfree(&found);
    return bMatches;
}

// The spelling that both read as that name.
std::string DepName(const std::string& sPath)
{
    std::string sOut = sPath.starts_with('~') ? "./" : ""; // no home folder is meant
    for (char c : sPath)
    {
        if (c_sEscaped.find(c) != std::string_view::npos)
            sOut += '\\';
        if (c == '$')
            sOut += '$';
        sOut += c;
    }
    return sOut;
}

// A target of its own keeps make going when the file is gone. With a "%" in its name make needs a recipe, too,
// which does nothing; ninja passes over it.
std::string OwnTarget(const std::string& sPath)
{
    return "\n" + DepName(sPath) + ":\n" + (sPath.find('%') != std::string::npos ? "\t:\n" : "");
}

// By whatever names; what isn't there yet is looked for in its folder.
bool IsSamePlace(const std::string& sLeft, const std::string& sRight)
{
    const std::string sPlace = ResolvedPath(sLeft);
    return IsSameFile(sLeft, sRight) || (!sPlace.empty() && sPlace == ResolvedPath(sRight));
}

std::set<std::string> Dependencies(const CEmberdeckApp& app)
{
    std::set<std::string> files = {NativePath(app.m_sFileName), NativePath(app.m_Project.m_sLocator),
                                   NativeLibraryPath(app.m_Project.m_sFireglass)};
    CAssetLibrarySource source;
    const CEffectTree& tree = app.m_EffectTree;
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextSiblingItem(h)) // all are packed
    {
        if (!CollectResources(tree, h, source))
            throw std::bad_alloc();
    }
    for (const auto& pDependency : source.Dependencies())
    {
        if (pDependency->m_sResourceType.empty())
            files.insert(NativePath(app.m_sResourceRoot + pDependency->m_sResource));
    }
    std::erase_if(files, [](const std::string& sFile) { return !FileExists(sFile); });
    return files;
}
} // namespace

bool IsDepName(const std::string& sPath)
{
    for (size_t i = 0; i < sPath.size(); ++i)
    {
        const char c = sPath[i];
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
            c_sUnreadable.find(c) != std::string_view::npos)
            return false;
        // In front of an escape it would be read as one more.
        if (c == '\\' &&
            (i + 1 == sPath.size() || std::string_view(" #:$%").find(sPath[i + 1]) != std::string_view::npos))
            return false;
    }
    if (sPath.empty() || sPath.back() == ' ' || sPath.back() == ':')
        return false;
    const bool bArchive =
        sPath.back() == ')' && sPath.find('(') != std::string::npos; // ARCHIVE(MEMBER) to make
    return !bArchive && !MatchesOthers(sPath);
}

std::string DepFileProblem(const std::string& sDepFile, const std::string& sLibrary,
                           const std::string& sPackName)
{
    if (IsSamePlace(sDepFile, sLibrary))
        return "--depfile " + sDepFile + " is the library itself. Give it another name.";
    if (IsSamePlace(sDepFile, sPackName))
        return "--depfile " + sDepFile + " is the packed file itself. Give it another name.";
    if (!IsDepName(NativePath(sPackName)))
        return "make and ninja don't both read the name of the packed file " + DisplayPath(sPackName) +
               ", so there can be no --depfile for it. Give it another name.";
    return std::string();
}

bool WriteDepFile(const std::string& sDepFile, const std::string& sPackName, const CEmberdeckApp& app,
                  std::vector<std::string>& leftOut)
{
    std::string sText = DepName(NativePath(sPackName)) + ":", sTargets;
    for (const std::string& sFile : Dependencies(app))
    {
        if (IsSameFile(sDepFile, sFile))
            return false;
        if (!IsDepName(sFile))
        {
            leftOut.push_back(sFile);
            continue;
        }
        sText += " \\\n  " + DepName(sFile);
        sTargets += OwnTarget(sFile);
    }
    return !IsSamePlace(sDepFile, sPackName) && WriteFileSafely(sDepFile, sText + "\n" + sTargets);
}
