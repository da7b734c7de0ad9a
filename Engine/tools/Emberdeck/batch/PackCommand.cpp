#include <cstring>
#include <set>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/ResourceCollector.h"
#include "shared/engine/AssetLibrarySource.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{
struct CPackRequest
{
    std::string m_sLibrary;
    std::string m_sOut;
    std::string m_sTarget = "pc";
    std::string m_sDepFile;
};

// What make can't be told by any spelling.
bool IsMakeName(const std::string& sPath)
{
    return !sPath.empty() && sPath.find_first_of(";=\r\n") == std::string::npos;
}

// A name as make reads it: blanks and special signs by a backslash, "$" doubled.
std::string MakeName(const std::string& sPath)
{
    std::string sOut;
    for (char c : sPath)
    {
        if (c != '\0' && std::strchr(" \t#:%*?[", c))
            sOut += '\\';
        if (c == '$')
            sOut += '$';
        sOut += c;
    }
    return sOut;
}

// What the packed file is made from: the library, the plug-in, and the files that its effects refer to.
bool WriteDepFile(const CPackRequest& request, const std::string& sOut, const CEmberdeckApp& app, bool bQuiet)
{
    std::set<std::string> files;
    CAssetLibrarySource source;
    CollectResources(app.m_EffectTree, app.m_EffectTree.GetRootItem(), source);
    for (const auto& pDependency : source.Dependencies())
    {
        if (!pDependency->m_sResourceType.empty())
            continue;
        const std::string sFile = NativePath(app.m_sResourceRoot + pDependency->m_sResource);
        if (IsMakeName(sFile))
            files.insert(sFile);
        else if (!bQuiet)
            std::fprintf(stderr, "emberdeck-batch pack: make can't read the name \"%s\"; %s leaves it out.\n",
                         (app.m_sResourceRoot + pDependency->m_sResource).c_str(), request.m_sDepFile.c_str());
    }

    std::string sText = MakeName(NativePath(sOut)) + ": " + MakeName(NativePath(request.m_sLibrary));
    const std::string sPlugin = NativeLibraryPath(app.m_Project.m_sFireglass);
    if (!sPlugin.empty())
        sText += " \\\n  " + MakeName(sPlugin);
    for (const std::string& sFile : files)
        sText += " \\\n  " + MakeName(sFile);
    sText += "\n";
    // A file that has gone since must not stop make: each dependency is a target of its own.
    for (const std::string& sFile : files)
        sText += "\n" + MakeName(sFile) + ":\n";
    return WriteFileSafely(request.m_sDepFile, sText);
}

int Pack(const CPackRequest& request, const CBatchOptions& options)
{
    if (!request.m_sDepFile.empty() && IsSameFile(request.m_sDepFile, request.m_sLibrary))
        return Fail("--depfile " + request.m_sDepFile + " is the library itself. Give it another name.");
    CBatchSession session(options);
    CEmberdeckApp& app = *session.m_pApp;
    if (!session.Open(request.m_sLibrary))
        return eExit_Failed;

    std::string sOut = request.m_sOut;
    if (sOut.empty() && request.m_sTarget == "pc")
    {
        sOut = CEmberdeckApp::MakePackName(app.m_sFileName);
        if (!app.PackEffects())
            return eExit_Failed;
    }
    else
    {
        if (sOut.empty())
            sOut = CEmberdeckApp::MakePackName(app.m_sFileName);
        app.SourceControl().EnsureCheckedOut(sOut.c_str(), 0);
        if (!app.PackTo(sOut, request.m_sTarget == "xenon" ? "Xenon" : "PC"))
        {
            app.TellPackFailed(sOut);
            return eExit_Failed;
        }
    }
    if (!request.m_sDepFile.empty() && !WriteDepFile(request, sOut, app, options.m_bQuiet))
        return FailToWrite(request.m_sDepFile);

    const uint64_t nBytes = FileSize(sOut);
    if (options.m_bJson)
        PrintJson({{"library", ReadableText(request.m_sLibrary)},
                   {"packed", ReadableText(NativePath(sOut))},
                   {"target", request.m_sTarget},
                   {"effects", app.m_SpellMgr.Spells().size()},
                   {"bytes", nBytes}});
    else if (!options.m_bQuiet)
        std::printf("%s -> %s, %llu bytes\n", request.m_sLibrary.c_str(), NativePath(sOut).c_str(),
                    static_cast<unsigned long long>(nBytes));
    return session.NumNotCheckedOut() == 0 ? eExit_Done : eExit_Failed;
}
} // namespace

void AddPackCommand(CLI::App& app, CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("pack", "Pack a library into the file that the game reads");
    auto pRequest = std::make_shared<CPackRequest>();
    auto pAnswer = std::make_shared<std::string>("no");
    pCommand->add_option("LIB", pRequest->m_sLibrary, "The library")->required();
    pCommand->add_option("-o,--output", pRequest->m_sOut, "The packed file; beside the library by default");
    pCommand->add_option("--target", pRequest->m_sTarget, "Byte order of the target machine")
        ->check(CLI::IsMember({"pc", "xenon"}))
        ->capture_default_str();
    pCommand->add_option("--depfile", pRequest->m_sDepFile, "Write the files that the result depends on, for make");
    pCommand->add_option("--checkout", *pAnswer, "yes: check the library and the packed file out of the project's source control first; "
                         "no: leave source control alone")
        ->check(CLI::IsMember({"yes", "no"}))
        ->capture_default_str();
    pCommand->callback([&options, &nResult, pRequest, pAnswer] {
        options.m_bCheckOut = *pAnswer == "yes";
        nResult = Pack(*pRequest, options);
    });
}
