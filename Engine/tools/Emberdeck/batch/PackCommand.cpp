#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/DepFile.h"
#include "batch/Output.h"
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
    CLoadRules m_Rules;
};

bool WriteDepFileOf(const CPackRequest& request, const std::string& sOut, const CEmberdeckApp& app)
{
    std::vector<std::string> leftOut;
    const bool bWritten = WriteDepFile(request.m_sDepFile, sOut, app, leftOut);
    for (const std::string& sFile : leftOut)
        std::fprintf(
            stderr,
            "emberdeck-batch pack: make and ninja don't both read the name \"%s\"; %s leaves it out.\n",
            sFile.c_str(), request.m_sDepFile.c_str());
    return bWritten;
}

int Pack(const CPackRequest& request, const CBatchOptions& options)
{
    const std::string sPlace =
        request.m_sOut.empty() ? CEmberdeckApp::MakePackName(request.m_sLibrary) : request.m_sOut;
    const std::string sProblem =
        request.m_sDepFile.empty() ? "" : DepFileProblem(request.m_sDepFile, request.m_sLibrary, sPlace);
    if (!sProblem.empty())
        return Fail(sProblem);
    CBatchSession session(options);
    CEmberdeckApp& app = *session.m_pApp;
    if (!session.Open(request.m_sLibrary, request.m_Rules))
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
    if (!request.m_sDepFile.empty() && !WriteDepFileOf(request, sOut, app))
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
    pCommand->add_option("--depfile", pRequest->m_sDepFile,
                         "Write the files that the result depends on, for make and ninja");
    AddStrictOption(*pCommand, pRequest->m_Rules);
    AddAllowOption(*pCommand, pRequest->m_Rules, "--lenient",
                   "Pack what could be read of a library that is cut or in conflict");
    pCommand
        ->add_option("--checkout", *pAnswer,
                     "yes: check the library and the packed file out of the project's source control first; "
                     "no: leave source control alone")
        ->check(CLI::IsMember({"yes", "no"}))
        ->capture_default_str();
    pCommand->callback(
        [&options, &nResult, pRequest, pAnswer]
        {
            options.m_bCheckOut = *pAnswer == "yes";
            nResult = Pack(*pRequest, options);
        });
}
