#include <optional>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/FileLock.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{
using CTransform = bool (*)(const uint8_t*, size_t, std::vector<uint8_t>&);

bool Compress(const uint8_t* pBytes, size_t nLen, std::vector<uint8_t>& out)
{
    return QSACompress(pBytes, nLen, out);
}
bool Decompress(const uint8_t* pBytes, size_t nLen, std::vector<uint8_t>& out)
{
    return QSADecompress(pBytes, nLen, out);
}

// Either file may be a library that is just being saved. Only an ordinary one is read: a pipe without a writer would
// pass for an empty file, and one with an idle writer has no end.
int Read(const std::string& sPath, std::string& sContent)
{
    const CFileLock lock(sPath, ELock::eShared);
    if (!lock.IsHeld())
        return Fail(lock.GetProblem());
    return ReadOrdinaryFile(sPath, sContent) ? eExit_Done : FailToRead(sPath);
}

int Write(const std::string& sPath, const std::vector<uint8_t>& content)
{
    const CFileLock lock(sPath, ELock::eExclusive);
    if (!lock.IsHeld())
        return Fail(lock.GetProblem());
    return WriteFileSafely(sPath, std::string(content.begin(), content.end())) ? eExit_Done
                                                                               : FailToWrite(sPath);
}

int Transform(const std::string& sIn, const std::string& sOut, CTransform transform, const char* pszWrong,
              const CBatchOptions& options)
{
    std::optional<CFileHold> hold; // in place, nobody writes in between
    if (IsSameFile(sIn, sOut))
        hold.emplace(sIn);
    if (hold && !hold->IsHeld())
        return Fail(hold->GetProblem());
    std::string sContent;
    if (Read(sIn, sContent) != eExit_Done)
        return eExit_Failed;
    std::vector<uint8_t> result;
    if (!transform(reinterpret_cast<const uint8_t*>(sContent.data()), sContent.size(), result))
        return Fail(sIn + ": " + pszWrong);
    if (const std::string sChange = hold ? hold->FindChange() : ""; !sChange.empty())
        return Fail(sChange);
    if (Write(sOut, result) != eExit_Done)
        return eExit_Failed;
    if (options.m_bJson)
        PrintJson({{"in", ReadableText(sIn)},
                   {"inBytes", sContent.size()},
                   {"out", ReadableText(sOut)},
                   {"outBytes", result.size()}});
    else if (!options.m_bQuiet)
        std::printf("%s, %zu bytes -> %s, %zu bytes\n", sIn.c_str(), sContent.size(), sOut.c_str(),
                    result.size());
    return eExit_Done;
}

void AddOne(CLI::App& app, const CBatchOptions& options, int& nResult, const char* pszName,
            const char* pszHelp, CTransform transform, const char* pszWrong)
{
    CLI::App* pCommand = app.add_subcommand(pszName, pszHelp);
    auto pIn = std::make_shared<std::string>();
    auto pOut = std::make_shared<std::string>();
    pCommand->add_option("IN", *pIn, "The file to read")->required();
    pCommand->add_option("OUT", *pOut, "The file to write")->required();
    pCommand->callback([&options, &nResult, pIn, pOut, transform, pszWrong]
                       { nResult = Transform(*pIn, *pOut, transform, pszWrong, options); });
}
} // namespace

void AddContainerCommands(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    AddOne(app, options, nResult, "compress", "Put any file into the compressed container", Compress,
           "could not be compressed");
    AddOne(app, options, nResult, "decompress", "Take a file out of the compressed container", Decompress,
           "not a compressed file, its first four bytes are not zero");
}
