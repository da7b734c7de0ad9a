// emberdeck-batch: everything that Emberdeck does to files, without a window.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/PluginCall.h"
#include "qsversion.h"

namespace
{
constexpr const char* c_pszFooter =
    "\nExit status: 0 the job is done; 1 it failed, with the reason on standard error; 2 wrong usage.\n"
    "A library whose name ends in c is compressed text, any other is plain text.\n"
    "\"emberdeck-batch COMMAND --help\" tells more of a command.";

constexpr const char* c_pszOutOfMemory = "emberdeck-batch: out of memory\n";

// An empty name is a variable of a script that wasn't set. Only what the game is given may be empty.
void RefuseEmptyNames(CLI::App& app)
{
    for (CLI::App* pCommand : app.get_subcommands({}))
        for (CLI::Option* pOption : pCommand->get_options())
            if (pOption->get_items_expected_max() > 0 && !pOption->check_lname("command-line"))
                pOption->check([](const std::string& s)
                               { return std::string(s.empty() ? "the name is empty" : ""); },
                               "", "");
}

// What is wrong with the command line, in which command, and where to read on.
std::string UsageProblem(const CLI::App* pApp, const CLI::Error& error)
{
    const std::vector<CLI::App*> commands = pApp->get_subcommands();
    const std::vector<std::string> extras = pApp->remaining();
    std::string sProgram = "emberdeck-batch", sProblem = error.what();
    if (!commands.empty())
        sProgram += " " + commands.front()->get_name();
    else if (!extras.empty())
        sProblem = (extras.front().starts_with('-') ? "There is no option " : "There is no command ") +
                   extras.front();
    else if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError))
        sProblem = "A command is required";
    return sProgram + ": " + sProblem + ". \"" + sProgram + " --help\" tells what there is.\n";
}

int Run(int argc, char** argv)
{
    SetProgramVersion(MakeVersionBlock("Emberdeck", EMBERDECK_VERSION, "Copyright Harrowgate Works"));

    CBatchOptions options;
    int nResult = eExit_Done;
    CLI::App app("Emberdeck without a window: checks, converts, updates and packs effect libraries.",
                 "emberdeck-batch");
    app.footer(c_pszFooter);
    app.require_subcommand(1);
    app.fallthrough();
    app.failure_message(UsageProblem);
    app.set_version_flag("--version", std::string("emberdeck-batch ") + EMBERDECK_VERSION);
    app.add_flag("--json", options.m_bJson, "Print results as JSON");
    app.add_flag("-q,--quiet", options.m_bQuiet, "No progress and no remarks; failures are still told");

    AddTypesCommand(app, options, nResult);
    AddInfoCommand(app, options, nResult);
    AddCheckCommand(app, options, nResult);
    AddConvertCommand(app, options, nResult);
    AddUpdateCommand(app, options, nResult);
    AddPackCommand(app, options, nResult);
    AddDumpCommand(app, options, nResult);
    AddNodesCommand(app, options, nResult);
    AddContainerCommands(app, options, nResult);
    AddDepsCommand(app, options, nResult);
    AddLaunchCommand(app, options, nResult);
    AddRecoverCommand(app, options, nResult);
    AddDiffCommand(app, options, nResult);
    AddMergeCommand(app, options, nResult);
    AddGitSetupCommand(app, options, nResult);
    RefuseEmptyNames(app);

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        // Help and version are no errors; everything else is wrong usage, whatever its own number.
        if (app.exit(error) != 0)
            return eExit_Usage;
        return FlushOutput() ? eExit_Done : eExit_Failed;
    }
    if (!FlushOutput() && nResult == eExit_Done)
        nResult = eExit_Failed;
    return nResult;
}
// Where nothing can be thrown, as in destructors, memory that runs out comes here: a failure like any other.
[[noreturn]] void OnTerminate()
{
    try
    {
        if (const std::exception_ptr pCause = std::current_exception())
            std::rethrow_exception(pCause);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs(c_pszOutOfMemory, stderr);
        EndProgram(eExit_Failed);
    }
    catch (...)
    {
    }
    std::abort();
}
} // namespace

// A plug-in finds these before the system's own, which would end the program past every exit handler.
extern "C" [[noreturn]] void _exit(int nStatus)
{
    EndProgram(nStatus);
}
extern "C" [[noreturn]] void _Exit(int nStatus) noexcept
{
    EndProgram(nStatus);
}

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit on file sizes is a failed write, which is told
    std::set_terminate(OnTerminate);
    TellOfPluginsThatEnd("emberdeck-batch");
    try
    {
        const int nResult = Run(argc, argv);
        CloseOutputToPlugins();
        return nResult;
    }
    catch (const std::bad_alloc&)
    {
        std::fputs(c_pszOutOfMemory, stderr);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "emberdeck-batch: %s\n", error.what());
    }
    return eExit_Failed;
}
