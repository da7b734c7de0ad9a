#include <utility>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Files.h"

void AddUpdateCommand(CLI::App& app, CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand(
        "update", "Re-save every library below a directory with the current writer and the current plug-in");
    auto pDir = std::make_shared<std::string>();
    auto pAnswer = std::make_shared<std::string>("no");
    pCommand->add_option("DIR", *pDir, "The directory")->required();
    pCommand
        ->add_option(
            "--checkout", *pAnswer,
            "yes: check each file out of the project's source control first; no: leave source control alone")
        ->check(CLI::IsMember({"yes", "no"}))
        ->capture_default_str();
    auto pRules = std::make_shared<CLoadRules>();
    AddStrictOption(*pCommand, *pRules);
    AddAllowOption(*pCommand, *pRules, "--repair",
                   "Save what could be read of libraries that are cut or in conflict, too");
    pCommand->callback(
        [&options, &nResult, pDir, pAnswer, pRules]
        {
            options.m_bCheckOut = *pAnswer == "yes";
            if (!DirectoryExists(*pDir))
            {
                nResult = Fail("there is no directory " + *pDir + ". Please check the name");
                return;
            }
            CBatchSession session(options);
            session.m_Prompts.TellCheckOut(!options.m_bQuiet);
            CJson files = CJson::array();
            int nNotCheckedOut = 0;
            int nLeft = 0;
            std::string sWhyLeft; // of the file that is at hand
            session.m_pApp->m_UpdateRules = {pRules->m_bAllowDamaged, pRules->m_bStrict};
            session.m_pApp->m_OnLeft = [&](const std::string& sFile, const std::string& sWhy)
            {
                ++nLeft;
                sWhyLeft = sWhy;
                Fail(sFile + " wasn't updated: " + sWhy);
            };
            session.m_pApp->m_OnUpdated = [&](const std::string& sFile, bool bSaved)
            {
                const bool bCheckedOut = session.NumNotCheckedOut() == nNotCheckedOut;
                nNotCheckedOut = session.NumNotCheckedOut();
                const std::string sLeft = std::exchange(sWhyLeft, std::string());
                if (!options.m_bJson)
                    return;
                CJson file = {{"file", ReadableText(sFile)},
                              {"result", bSaved ? "saved" : "failed"},
                              {"error", ReadableText(bSaved          ? ""
                                                     : sLeft.empty() ? session.m_Prompts.GetLastFailure()
                                                                     : sLeft)}};
                if (options.m_bCheckOut)
                    file["checkedOut"] = bCheckedOut;
                files.push_back(std::move(file));
            };
            const bool bWalked = session.m_pApp->UpdateEffectsInDirectory(pDir->c_str());
            const std::vector<std::string>& unread = session.m_pApp->GetUnreadDirectories();
            for (const std::string& sDirectory : unread)
                Fail("the directory " + sDirectory + " can't be read, so nothing in it was updated");
            // A file that could not be opened or saved has told so, and the walk went on.
            const int nFailures = nLeft + session.m_Prompts.GetNumFailures() + session.NumNotCheckedOut() +
                                  static_cast<int>(unread.size());
            nResult = bWalked && nFailures == 0 ? eExit_Done : eExit_Failed;
            if (options.m_bJson)
                PrintJson({{"directory", ReadableText(*pDir)},
                           {"checkout", options.m_bCheckOut},
                           {"files", std::move(files)},
                           {"failures", nFailures}});
        });
}
