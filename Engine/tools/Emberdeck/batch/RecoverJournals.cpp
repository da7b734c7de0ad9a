#include <cstdio>

#include "app/Recovery.h"
#include "batch/Output.h"
#include "batch/RecoverRequest.h"

// Work that was never saved: what there is, and back into a file.

namespace
{
std::string NameOf(const CJournalStore::CEntry& entry)
{
    return entry.m_Head.m_sLibrary.empty() ? "a library without a file" : entry.m_Head.m_sLibrary;
}

int List(const std::vector<CJournalStore::CEntry>& entries, const CRecoverRequest& request,
         const CBatchOptions& options)
{
    CJson list = CJson::array();
    for (size_t i = 0; i < entries.size(); ++i)
    {
        const CJournalStore::CEntry& entry = entries[i];
        list.push_back({{"journal", i + 1},
                        {"readable", entry.m_bReadable},
                        {"whole", entry.m_bReadable && !entry.m_bCut},
                        {"file", ReadableText(entry.m_Head.m_sLibrary)},
                        {"changes", entry.m_nSteps},
                        {"last", entry.m_bReadable ? RecoverTimeText(entry.m_nLastTime) : ""},
                        {"label", ReadableText(entry.m_sLastLabel)},
                        {"effect", ReadableText(entry.m_sLastEffect)},
                        {"path", ReadableText(entry.m_sStem)}});
        if (options.m_bJson)
            continue;
        if (entry.m_bReadable)
            std::printf("%zu  %s  %llu %s%s  %s%s%s  %s\n", i + 1, RecoverTimeText(entry.m_nLastTime).c_str(),
                        static_cast<unsigned long long>(entry.m_nSteps),
                        entry.m_nSteps == 1 ? "change" : "changes", entry.m_bCut ? ", then damaged" : "",
                        entry.m_sLastLabel.c_str(), entry.m_sLastEffect.empty() ? "" : " in ",
                        entry.m_sLastEffect.c_str(), NameOf(entry).c_str());
        else
            std::printf("%zu  damaged  %s\n", i + 1, entry.m_sStem.c_str());
    }
    if (options.m_bJson)
        PrintJson(list);
    else if (entries.empty())
        std::printf("There is no unsaved work%s%s\n", request.m_sFile.empty() ? "" : " of ",
                    request.m_sFile.c_str());
    return eExit_Done;
}

// Into the file of the request. An empty result: it is there.
std::string Save(CBatchSession& session, const CRecoverRequest& request, const CBroughtBack& result)
{
    CEmberdeckApp& app = *session.m_pApp;
    if (!request.m_sOut.empty())
        app.m_sFileName = request.m_sOut;
    else if (result.m_bRenamed || !result.m_Conflicts.empty())
        return result.m_sText + " Give another name with -o";
    return app.SaveEffectFile() ? std::string() : "what came back could not be saved";
}

int BringBackAndSave(const CJournalStore::CEntry& entry, const CRecoverRequest& request,
                     const CBatchOptions& options)
{
    CBatchSession session(options);
    const CBroughtBack result = BringBack(*session.m_pApp, entry);
    if (!result.m_bDone)
        return Fail(NameOf(entry) + ": " + result.m_sText);
    CJson conflicts = CJson::array();
    for (const std::string& sConflict : result.m_Conflicts)
    {
        conflicts.push_back(ReadableText(sConflict));
        std::fprintf(stderr, "conflict: %s\n", sConflict.c_str());
    }
    const std::string sProblem = Save(session, request, result);
    if (!sProblem.empty())
        return Fail(sProblem);
    const std::string sFile = session.m_pApp->m_sFileName;
    const bool bAll = result.m_bWhole && result.m_Conflicts.empty();
    if (bAll)
        CJournalStore::Remove(entry.m_sStem);
    if (options.m_bJson)
        PrintJson({{"file", ReadableText(sFile)},
                   {"changes", result.m_nSteps},
                   {"whole", result.m_bWhole},
                   {"conflicts", conflicts},
                   {"text", ReadableText(result.m_sText)}});
    else if (!options.m_bQuiet && bAll)
        std::printf("%s holds the unsaved work of %s: %llu changes\n", sFile.c_str(), NameOf(entry).c_str(),
                    static_cast<unsigned long long>(result.m_nSteps));
    if (bAll)
        return eExit_Done;
    return Fail(sFile +
                (result.m_bWhole ? " holds the unsaved work, but not all that the file held"
                                 : " holds a part of the unsaved work") +
                "; the journal stays. " + result.m_sText);
}
} // namespace

int RecoverJournals(const CRecoverRequest& request, const CBatchOptions& options)
{
    const CJournalStore store;
    const std::vector<CJournalStore::CEntry> entries =
        request.m_sFile.empty() ? store.List() : store.List(request.m_sFile);
    if (request.m_bList)
        return List(entries, request, options);
    if (entries.empty())
        return Fail("there is no unsaved work" +
                    (request.m_sFile.empty() ? std::string() : " of " + request.m_sFile));
    if (request.m_sFile.empty() && !request.m_nCopy && entries.size() > 1)
        return Fail("there is unsaved work of several sessions. Run the command with --list to see it, and "
                    "with --copy to choose");
    const size_t nChosen = request.m_nCopy.value_or(1);
    if (nChosen < 1 || nChosen > entries.size())
        return Fail("there is no journal number " + std::to_string(nChosen) +
                    ". Run the command with --list to see them");
    const CJournalStore::CEntry& chosen = entries[nChosen - 1];
    if (!request.m_bDrop)
        return BringBackAndSave(chosen, request, options);
    CJournalStore::Remove(chosen.m_sStem);
    return eExit_Done;
}
