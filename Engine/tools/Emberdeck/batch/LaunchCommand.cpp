#include <CLI/CLI.hpp>

#include "app/Launch.h"
#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Paths.h"

void AddLaunchCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand =
        app.add_subcommand("launch", "Start the game of a file's project, without waiting for it");
    auto pFile = std::make_shared<std::string>();
    auto pLine = std::make_shared<std::string>();
    pCommand->add_option("FILE", *pFile, "A library, or any path in the project's folders")->required();
    pCommand->add_option("--command-line", *pLine,
                         "Arguments for the game; double quotes keep blanks together");
    pCommand->callback(
        [&options, &nResult, pFile, pLine]
        {
            CBatchSession session(options);
            nResult = eExit_Failed;
            if (!session.LocateProject(*pFile))
                return;
            const CProjectInfo& project = session.m_pApp->m_Project;
            if (LaunchProgram(project.m_sPCBinary, *pLine))
                nResult = eExit_Done;
            else if (const std::string sProblem = LocatorProblem(project.m_sLocator); !sProblem.empty())
                Fail(sProblem);
            else
                Fail("cannot start the game " + DisplayPath(project.m_sPCBinary) +
                     ". Its path stands as PCBinary= in the section [Tools Launch] of the proj00 file in " +
                     DisplayPath(project.m_sProjectDir));
        });
}
