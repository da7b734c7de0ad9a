#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Files.h"

void AddConvertCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand(
        "convert", "Load a library and save it under another name; its last letter decides the form");
    auto pIn = std::make_shared<std::string>();
    auto pOut = std::make_shared<std::string>();
    pCommand->add_option("IN", *pIn, "The library to load")->required();
    pCommand->add_option("OUT", *pOut, "The name to save under, such as fire.Fx00a or fire.Fx00c")
        ->required();
    auto pRules = std::make_shared<CLoadRules>();
    AddStrictOption(*pCommand, *pRules);
    AddAllowOption(*pCommand, *pRules, "--repair",
                   "Save what could be read of a library that is cut or in conflict");
    pCommand->callback(
        [&options, &nResult, pIn, pOut, pRules]
        {
            CBatchSession session(options);
            nResult = eExit_Failed;
            if (!session.Open(*pIn, *pRules, IsSameFile(*pIn, *pOut)))
                return;
            session.m_pApp->m_sFileName = *pOut;
            if (!session.m_pApp->SaveEffectFile())
                return;
            nResult = eExit_Done;
            if (options.m_bJson)
                PrintJson({{"in", ReadableText(*pIn)}, {"out", ReadableText(*pOut)}});
            else if (!options.m_bQuiet)
                std::printf("%s -> %s\n", pIn->c_str(), pOut->c_str());
        });
}
