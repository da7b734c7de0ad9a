#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/Process.h"

namespace
{
constexpr const char* c_pszBegin = "# Emberdeck libraries: set up by emberdeck-batch git-setup\n";
constexpr const char* c_pszEnd = "# end of Emberdeck libraries\n";
constexpr const char* c_pszRules = "*.Fx00a -text diff=emberdeck merge=emberdeck\n"
                                   "*.Fx00c -text diff=emberdeck merge=emberdeck\n";
constexpr int c_nTimeout = 60000;

// For the shell through which git starts a driver.
std::string ShellQuoted(const std::string& sText)
{
    std::string sQuoted = "'";
    for (const char c : sText)
        sQuoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return sQuoted + "'";
}

// A git command in a folder. False: why is in sError.
bool RunGit(const std::string& sDirectory, std::vector<std::string> arguments, std::string& sOutput,
            std::string& sError)
{
    const CProcessResult result = RunProcess("git", arguments, sDirectory, c_nTimeout);
    sOutput = result.m_sOutput;
    sError = result.m_sErrors;
    while (sOutput.ends_with('\n'))
        sOutput.pop_back();
    while (sError.ends_with('\n'))
        sError.pop_back();
    return result.m_bStarted && result.m_nExitCode == 0;
}

// The attributes without what an earlier set-up put there.
std::string WithoutRules(const std::string& sAttributes)
{
    const size_t nBegin = sAttributes.find(c_pszBegin);
    const size_t nEnd = sAttributes.find(c_pszEnd, nBegin == std::string::npos ? 0 : nBegin);
    if (nBegin == std::string::npos || nEnd == std::string::npos)
        return sAttributes;
    return sAttributes.substr(0, nBegin) + sAttributes.substr(nEnd + std::string_view(c_pszEnd).size());
}

bool WriteAttributes(const std::string& sTop, bool bUndo)
{
    const std::string sPath = sTop + "/.gitattributes";
    std::string sOld;
    if (FileExists(sPath) && !ReadOrdinaryFile(sPath, sOld))
    {
        FailToRead(sPath);
        return false;
    }
    std::string sNew = WithoutRules(sOld);
    if (!bUndo)
        sNew += std::string(sNew.empty() || sNew.ends_with('\n') ? "" : "\n") + c_pszBegin + c_pszRules +
                c_pszEnd;
    if (sNew == sOld)
        return true;
    const bool bDone = sNew.empty() ? RemoveFile(sPath) : WriteFileSafely(sPath, sNew);
    if (!bDone)
        FailToWrite(sPath);
    return bDone;
}

bool Configure(const std::string& sTop, bool bUndo)
{
    const std::string sProgram = ShellQuoted(GetExecutablePath());
    const std::pair<const char*, std::string> settings[] = {
        {"diff.emberdeck.command", sProgram + " diff --git"},
        {"diff.emberdeck.textconv", sProgram + " diff --textconv"},
        {"merge.emberdeck.name", "Emberdeck libraries, by effect, key and property"},
        {"merge.emberdeck.driver", sProgram + " merge --git %O %A %B %P"},
    };
    std::string sOutput, sError;
    for (const char* pszSection : {"diff.emberdeck", "merge.emberdeck"})
    {
        if (bUndo)
            RunGit(sTop, {"config", "--local", "--remove-section", pszSection}, sOutput,
                   sError); // may not be there
    }
    for (const auto& [pszName, sValue] : settings)
    {
        if (bUndo || RunGit(sTop, {"config", "--local", pszName, sValue}, sOutput, sError))
            continue;
        Fail("git can't be set up: " + sError);
        return false;
    }
    return true;
}

int RunSetup(const std::string& sDirectory, bool bUndo, const CBatchOptions& options)
{
    std::string sTop, sError;
    if (!RunGit(sDirectory, {"rev-parse", "--show-toplevel"}, sTop, sError))
        return Fail(sDirectory + " is in no work copy of git. " + sError);
    if (!Configure(sTop, bUndo) || !WriteAttributes(sTop, bUndo))
        return eExit_Failed;
    if (options.m_bJson)
        PrintJson({{"directory", ReadableText(sTop)}, {"set up", !bUndo}});
    else if (!options.m_bQuiet)
        std::printf(bUndo ? "%s: libraries are text to git again\n"
                          : "%s: git compares and merges libraries by effect, key and property now.\n"
                            "Commit .gitattributes; each work copy needs this set-up once.\n",
                    sTop.c_str());
    return eExit_Done;
}
} // namespace

void AddGitSetupCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand(
        "git-setup", "Have git compare and merge the libraries of a work copy by effect, key and property");
    auto pDirectory = std::make_shared<std::string>(".");
    auto pUndo = std::make_shared<bool>(false);
    pCommand->add_option("DIR", *pDirectory, "A folder of the work copy; the present one without it");
    pCommand->add_flag("--undo", *pUndo, "Take the set-up back");
    pCommand->footer(
        "\nSets diff.emberdeck and merge.emberdeck in the work copy's own configuration, and names them in\n"
        ".gitattributes at its top. A work copy without them merges libraries as text.");
    pCommand->callback([&options, &nResult, pDirectory, pUndo]
                       { nResult = RunSetup(*pDirectory, *pUndo, options); });
}
