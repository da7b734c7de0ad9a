#pragma once

#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "app/EmberdeckApp.h"
#include "batch/BatchPrompts.h"
#include "batch/LoadRules.h"
#include "shared/sourcecontrol/ProviderRegistry.h"

class CCheckOutWatch;

namespace CLI
{
class App;
}

// What every command returns and the process exits with. Wrong usage is told by the option parser.
enum EExit : int
{
    eExit_Done = 0,
    eExit_Failed = 1,
    eExit_Usage = 2,
};

// Options that stand before the command.
struct CBatchOptions
{
    bool m_bJson = false;
    bool m_bQuiet = false;    // no progress, no remarks; messages of failures stay
    bool m_bCheckOut = false; // the answer to the check-out question
};

// The application without a window: settings in memory, so that a build machine's run leaves an
// artist's settings alone; source control only where the command line asked for it.
class CBatchSession
{
public:
    explicit CBatchSession(const CBatchOptions& options);
    ~CBatchSession();

    // Opens a library as the window does, and tells what the loader found. False: the message has been shown,
    // of a library that the rules refuse, too. With bToSave the command saves over the same file next.
    bool Open(const std::string& sFile, const CLoadRules& rules, bool bToSave = false);
    // Finds the project of a file. False: the message has been shown.
    bool LocateProject(const std::string& sFile);
    // The same, and loads its plug-in, without a library.
    bool OpenProject(const std::string& sFile);

    // Files that should have been checked out and aren't; each has been told. A job that is done over them has
    // failed all the same.
    int NumNotCheckedOut() const;

    CBatchPrompts m_Prompts;
    std::unique_ptr<IProfile> m_pProfile;
    CProviderRegistry m_Providers;
    std::unique_ptr<ISourceControl> m_pSourceControl;
    std::unique_ptr<CEmberdeckApp> m_pApp;

private:
    const CCheckOutWatch* m_pCheckOuts = nullptr; // null: nothing is to be checked out
};

using CJson = nlohmann::ordered_json; // members in the order in which they are written

// Each sets up its options on a new subcommand and runs later, when the parser has chosen it. options and nResult
// outlive the parser: options are read when the command runs, and nResult takes its EExit. A command prints what it
// found to standard output, as text or with --json as one document, and everything else to standard error.
using CCommandResult = int;
void AddTypesCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddInfoCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddCheckCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddConvertCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddUpdateCommand(CLI::App& app, CBatchOptions& options, CCommandResult& nResult);
void AddPackCommand(CLI::App& app, CBatchOptions& options, CCommandResult& nResult);
void AddDumpCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddNodesCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddContainerCommands(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddDepsCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddLaunchCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddRecoverCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddDiffCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddMergeCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
void AddGitSetupCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult);
