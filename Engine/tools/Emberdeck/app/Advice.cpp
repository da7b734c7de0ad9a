#include "app/Advice.h"

#include <cstdio>

#include "model/EffectProperty.h"
#include "platform/DynamicLibrary.h"
#include "platform/FileLock.h"
#include "platform/FileProblem.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsamgr/qsautil.h"
#include "qsnumber.h"

namespace
{

constexpr const char* c_pszRecover =
    " \"emberdeck-batch recover FILE\" brings back what it held before the last save.";
constexpr size_t c_nContainerMark = 4; // zero bytes that a compressed file begins with

// A file whose name promises the other form than it has.
std::string FormProblem(const std::string& sFile)
{
    unsigned char mark[c_nContainerMark] = {};
    std::FILE* pFile =
        FileSize(sFile) >= sizeof(mark) ? std::fopen(NativePath(sFile).c_str(), "rb") : nullptr;
    if (!pFile)
        return std::string();
    const size_t nRead = std::fread(mark, 1, sizeof(mark), pFile);
    std::fclose(pFile);
    const bool bCompressed = nRead == sizeof(mark) && !mark[0] && !mark[1] && !mark[2] && !mark[3];
    if (bCompressed == CQSAUtil::IsFileCompressed(sFile.c_str()))
        return std::string();
    return bCompressed ? "The file holds compressed text; for that its name must end in c, as in .Fx00c."
                       : "The file doesn't hold compressed text; its name must end in another letter than c, "
                         "as in .Fx00a.";
}

std::string LocatorPlace(const CProjectInfo& project)
{
    return QSFormat("the proj00 file in %s", DisplayPath(project.m_sProjectDir).c_str());
}

// For a library that is there. It is loaded once more, since only the machine knows what is wrong with it.
std::string PluginProblem(const std::string& sPlugin)
{
    std::string sError;
    void* hModule = LoadDynamicLibrary(sPlugin, &sError);
    if (!hModule)
        return sError + ".";
    const char* pszMissing = nullptr;
    for (const char* pszName : {EMBERDECK_GET_INFO_NAME, EMBERDECK_RELEASE_INFO_NAME})
    {
        if (!GetLibrarySymbol(hModule, pszName))
            pszMissing = pszName;
    }
    FreeDynamicLibrary(hModule);
    return pszMissing ? QSFormat("It doesn't export %s.", pszMissing)
                      : std::string("It gives no table of effect types, or one that can't be right.");
}

} // namespace

std::string AdviseOnNoTypes(const CProjectInfo& project, const CEffectModule& module)
{
    if (module.IsLoaded())
        return QSFormat("The plug-in of this project, %s, offers no types of keys.",
                        DisplayPath(project.m_sFireglass).c_str());
    return "There are no types of keys yet. A game's plug-in brings them, and the game's project locator "
           "file (*.proj00) names the plug-in. Choose that file, or open a library of the game.";
}

std::string AdviseOnMissingProject(const std::string& sFile, const std::string& sUnusable)
{
    if (!sUnusable.empty())
        return LocatorProblem(sUnusable);
    if (IsForeignPath(sFile) || sFile.empty())
        return ReadProblem(sFile);
    return PathExists(sFile) ? std::string() : "There is no file " + DisplayPath(sFile) + " either.";
}

std::string AdviseOnPlugin(const CProjectInfo& project)
{
    const std::string& sPlugin = project.m_sFireglass;
    const std::string sProblem = LocatorProblem(project.m_sLocator);
    if (!sProblem.empty())
        return sProblem;
    const std::string sPlace = LocatorPlace(project);
    if (sPlugin.empty() || DirectoryExists(sPlugin))
        return QSFormat(
            "No plug-in is named: add its path to %s, as Fireglass=PATH in the section [Project Binaries].",
            sPlace.c_str());
    if (NativeLibraryPaths(sPlugin).empty())
        return QSFormat(
            "There is no such file, nor a .so of its name. Build the game's plug-in, or correct the line "
            "Fireglass= of %s.",
            sPlace.c_str());
    return QSFormat("%s Build the plug-in for this machine, or correct the line Fireglass= of %s.",
                    PluginProblem(sPlugin).c_str(), sPlace.c_str());
}

std::string AdviseOnPluginThatEnded()
{
    return "Correct the plug-in, then open the file with File > Open. When that works, the next start opens "
           "it again.";
}

std::string AdviseOnLoading(const std::string& sFile, const CProjectInfo& project, bool bKept,
                            const CLoadReport& report)
{
    std::string sAdvice = ReadProblem(sFile);
    if (!sAdvice.empty())
        return sAdvice;
    if (CFileLock::IsInUse(sFile)) // the message says by whom; nothing is wrong with the file
        return std::string();
    sAdvice = FormProblem(sFile);
    if (!sAdvice.empty())
        return sAdvice;
    const std::string sPlugin = NativeLibraryPath(project.m_sFireglass); // as it was loaded
    const std::string sPluginName = sPlugin.empty() ? DisplayPath(project.m_sFireglass) : sPlugin;
    const std::string sMissing = report.MissingTypes();
    if (!sMissing.empty())
        return QSFormat(
            "%s\nThe plug-in is %s. Build it with that type, or correct the name of the type in the file.",
            sMissing.c_str(), sPluginName.c_str());
    sAdvice = report.IsDamaged() ? QSFormat("The file is damaged: %s.", DamageText(report).c_str())
                                 : QSFormat("The file is damaged, or made for another plug-in than %s.",
                                            sPluginName.c_str());
    return sAdvice + (bKept ? c_pszRecover : "");
}

std::string AdviseOnDamage(const CLoadReport& report, bool bKept)
{
    return report.Lines() + (report.IsConflict() ? "\nResolve the conflict in the file, then open it again."
                             : bKept             ? std::string("\n") + (c_pszRecover + 1)
                                                 : "\nBring the file back from source control or a copy.");
}

std::string DamageText(const CLoadReport& report)
{
    if (report.IsConflict())
        return "a merge has left a conflict in it";
    return report.IsCut() ? "it was cut, so that its end is missing" : "";
}

std::string AdviseOnPackingOver(const std::string& sLibrary)
{
    return QSFormat(
        "The packed file would take the place of the library %s itself. Pack to another name, or save the "
        "library under one that doesn't end in .Fx00p.",
        sLibrary.c_str());
}

std::string AdviseOnPacking(const std::string& sPackName, const CEffectModule& module)
{
    if (!module.IsLoaded())
        return "No plug-in is loaded. Open an effect file of a game first.";
    std::string sProblem = WriteProblem(sPackName);
    if (!sProblem.empty())
        return sProblem;
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
    {
        const CEffectTypeDesc& type = *module.GetType(i);
        if (type.m_nTypeID >= module.GetNumTypes())
            return QSFormat(
                "The plug-in gives the effect type %s the number %u, which must be below the number of its "
                "types. Correct the plug-in.",
                TypeName(type).c_str(), type.m_nTypeID);
    }
    return std::string();
}
