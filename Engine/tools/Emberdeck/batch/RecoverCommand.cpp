#include <ctime>
#include <optional>

#include <CLI/CLI.hpp>

#include "app/BackupStore.h"
#include "batch/Output.h"
#include "batch/RecoverRequest.h"
#include "formats/EmberdeckQSA.h"
#include "platform/FileLock.h"

std::string RecoverTimeText(uint64_t nNanoseconds)
{
    const std::time_t nSeconds = static_cast<std::time_t>(nNanoseconds / 1000000000u);
    std::tm local = {};
    char szText[32] = "";
    if (localtime_r(&nSeconds, &local))
        std::strftime(szText, sizeof(szText), "%Y-%m-%d %H:%M:%S", &local);
    return szText;
}

namespace
{
const char* TellSound(std::optional<bool> bSound)
{
    return !bSound ? "unknown" : *bSound ? "sound" : "damaged";
}

CJson SoundJson(std::optional<bool> bSound)
{
    return bSound ? CJson(*bSound) : CJson();
}

int List(const CRecoverRequest& request, const CBackupStore& store,
         const std::vector<CBackupStore::CEntry>& entries, const CBatchOptions& options)
{
    CJson list = CJson::array();
    for (size_t i = 0; i < entries.size(); ++i)
    {
        const CBackupStore::CEntry& entry = entries[i];
        const std::optional<bool> bSound =
            entry.m_bSound ? entry.m_bSound : store.IsSound(request.m_sFile, entry);
        list.push_back({{"copy", i + 1},
                        {"saved", RecoverTimeText(entry.m_nTime)},
                        {"bytes", entry.m_nSize},
                        {"sound", SoundJson(bSound)},
                        {"path", ReadableText(entry.m_sBackup)}});
        if (!options.m_bJson)
            std::printf("%zu  %s  %-7s  %llu bytes  %s\n", i + 1, RecoverTimeText(entry.m_nTime).c_str(),
                        TellSound(bSound), static_cast<unsigned long long>(entry.m_nSize),
                        entry.m_sBackup.c_str());
    }
    if (options.m_bJson)
        PrintJson(list);
    else if (entries.empty())
        std::printf("There is no copy of %s\n", request.m_sFile.c_str());
    return eExit_Done;
}

int Recover(const CRecoverRequest& request, const CBatchOptions& options)
{
    // A save in between would change the list and its numbers.
    const CFileLock lock(request.m_sFile, request.m_bList ? ELock::eShared : ELock::eExclusive);
    if (!lock.IsHeld())
        return Fail(lock.GetProblem());
    CBackupStore store(std::string(), IsWholeEffectFile);
    const std::vector<CBackupStore::CEntry> entries = store.List(request.m_sFile);
    if (request.m_bList)
        return List(request, store, entries, options);
    if (entries.empty())
        return Fail("there is no copy of " + request.m_sFile +
                    ". Copies are made when Emberdeck saves over a file");
    if (request.m_nCopy && (*request.m_nCopy < 1 || *request.m_nCopy > entries.size()))
        return Fail("there are " + std::to_string(entries.size()) + " copies of " + request.m_sFile +
                    ", and no number " + std::to_string(*request.m_nCopy) +
                    ". Run the command with --list to see them");
    const std::optional<size_t> nChosen =
        request.m_nCopy ? std::optional<size_t>(*request.m_nCopy - 1) : store.ChooseSound(request.m_sFile);
    if (!nChosen)
        return Fail("no copy of " + request.m_sFile +
                    " is whole. Run the command with --list to see them, and with "
                    "--copy to take one all the same");
    const CBackupStore::CEntry& chosen = entries[*nChosen];
    const std::optional<bool> bSound = store.IsSound(request.m_sFile, chosen);
    std::string sError;
    if (!store.Recover(request.m_sFile, *nChosen, sError))
        return Fail(sError);
    if (options.m_bJson)
        PrintJson({{"file", ReadableText(request.m_sFile)},
                   {"copy", *nChosen + 1},
                   {"saved", RecoverTimeText(chosen.m_nTime)},
                   {"bytes", chosen.m_nSize},
                   {"sound", SoundJson(bSound)}});
    else if (!options.m_bQuiet)
        std::printf("%s is as it was before the save of %s (copy %zu, %s)\n", request.m_sFile.c_str(),
                    RecoverTimeText(chosen.m_nTime).c_str(), *nChosen + 1, TellSound(bSound));
    return eExit_Done;
}
} // namespace

void AddRecoverCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand(
        "recover", "Bring back what a file held before it was saved over, or work that was never saved");
    auto pRequest = std::make_shared<CRecoverRequest>();
    CLI::Option* pFile = pCommand->add_option("FILE", pRequest->m_sFile, "The library");
    pCommand->add_flag("--list", pRequest->m_bList, "Only list the copies, newest first");
    CLI::Option* pCopy =
        pCommand->add_option("--copy", pRequest->m_nCopy,
                             "Number of the copy in that list; by default the newest one that is sound");
    CLI::Option* pJournals = pCommand->add_flag(
        "--journals", pRequest->m_bJournals,
        "Work that was not saved when a program or machine ended; --copy is the number in its list");
    pCommand
        ->add_option("-o,--output", pRequest->m_sOut,
                     "Save that work under this name; by default in its own file")
        ->needs(pJournals);
    pCommand->add_flag("--drop", pRequest->m_bDrop, "Forget that work")->needs(pJournals)->needs(pCopy);
    pCommand->callback(
        [&options, &nResult, pRequest, pFile]
        {
            if (!pRequest->m_bJournals && pRequest->m_sFile.empty())
                throw CLI::RequiredError(pFile->get_name());
            nResult =
                pRequest->m_bJournals ? RecoverJournals(*pRequest, options) : Recover(*pRequest, options);
        });
}
