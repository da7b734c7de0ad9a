#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Files.h"

void AddLaunchCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("launch", "Start the game of a file's project, without waiting for it");
    auto pFile = std::make_shared<std::string>();
    auto pLine = std::make_shared<std::string>();
    pCommand->add_option("FILE", *pFile, "A library, or any path in the project's folders")->required();
    pCommand->add_option("--command-line", *pLine, "Arguments for the game; double quotes keep blanks together");
    pCommand->callback([&options, &nResult, pFile, pLine] {
        CBatchSession session(options);
        nResult = eExit_Failed;
        if (!session.m_pApp->LocateProject(pFile->c_str()))
            return;
        const std::string& sBinary = session.m_pApp->m_Project.m_sPCBinary;
        if (!FileExists(sBinary))
        {
            Fail("the project's game binary " + sBinary + " is not there");
            return;
        }
        session.m_pProfile->WriteString("", "CommandLine", *pLine);
        session.m_pApp->LaunchGame();
        nResult = eExit_Done;
    });
}
