#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/LibraryFiles.h"
#include "batch/Output.h"
#include "changes/ChangeWords.h"
#include "changes/Merge.h"
#include "changes/Renames.h"
#include "platform/Files.h"

namespace
{
struct CMergeRequest
{
    std::vector<std::string> m_Files;
    std::string m_sOut;
    bool m_bMine = false;
    bool m_bTheirs = false;
    bool m_bGit = false;
};

constexpr int c_nMergeConflicts = 1;
constexpr int c_nMergeTrouble = 2;
constexpr int c_nGitTrouble = 129; // git stops the merge then, and leaves the file as it was

const char* WhyName(EMergeConflict eWhy)
{
    switch (eWhy)
    {
    case EMergeConflict::eField:
        return "changed by both";
    case EMergeConflict::eDeleted:
        return "deleted and changed";
    case EMergeConflict::eAdded:
        return "made by both";
    case EMergeConflict::eName:
        return "name in use";
    case EMergeConflict::eOverlap:
        return "no room";
    case EMergeConflict::eTimes:
        return "end before start";
    case EMergeConflict::eMoved:
        return "moved by both";
    case EMergeConflict::eUsed:
        return "deleted and used";
    case EMergeConflict::eLinkTarget:
        return "link target deleted";
    case EMergeConflict::eCircle:
        return "circle of prefabs";
    case EMergeConflict::eTracks:
        return "too many tracks";
    }
    return "";
}

CJson ToJson(const CMergeConflict& conflict)
{
    const CDifference& mine = conflict.m_Mine;
    const auto valueOf = [&](const CChangeValue& value) { return ReadableText(TellValue(mine, value)); };
    return {{"why", WhyName(conflict.m_eWhy)},
            {"text", ReadableText(Tell(conflict))},
            {"about", ReadableText(TellAbout(mine))},
            {"effect", ReadableText(mine.m_Effect.m_sName)},
            {"object", ReadableText(mine.m_Object.m_sName)},
            {"property", ReadableText(mine.m_sProperty)},
            {"base", valueOf(mine.m_Before)},
            {"mine", valueOf(mine.m_After)},
            {"theirs", valueOf(conflict.m_Theirs)},
            {"other", ReadableText(conflict.m_Other.m_sName)},
            {"stands", conflict.m_eStands == EMergeSide::eMine ? "mine" : "theirs"}};
}

// The list beside the merged file; without conflicts an old one goes.
bool WriteSideFile(const std::string& sFile, const CJson& conflicts)
{
    const std::string sPath = sFile + ".conflicts";
    if (conflicts.empty())
        return !FileExists(sPath) || RemoveFile(sPath);
    return WriteFileSafely(sPath, conflicts.dump(2, ' ', false, CJson::error_handler_t::replace) + "\n");
}

struct CMergeFiles
{
    CLibraryFile m_Base, m_Mine, m_Theirs;
    std::string m_sOut;
    std::string m_sName; // of the library, beside which the list of conflicts goes
};

int MergeFiles(const CMergeFiles& files, const CMergeRequest& request, const CBatchOptions& options,
               int nTrouble)
{
    const auto fail = [&](const std::string& sWhy)
    {
        Fail(sWhy);
        return nTrouble;
    };
    std::vector<std::shared_ptr<const CLibraryImage>> images;
    std::string sError;
    if (!ReadLibraryFiles({files.m_Base, files.m_Mine, files.m_Theirs}, images, sError))
        return fail(sError);
    CMergeSettle settle;
    if (request.m_bTheirs)
        settle = [](const CMergeConflict&) { return EMergeSide::eTheirs; };
    const CMerged merged = Merge(*images[0], *AlignRenamed(*images[0], *images[1]),
                                 *AlignRenamed(*images[0], *images[2]), settle);
    if (!merged.m_pImage)
        return fail("out of memory");
    const bool bSettled = request.m_bMine || request.m_bTheirs;
    CJson list = CJson::array();
    for (const CMergeConflict& conflict : merged.m_Conflicts)
    {
        list.push_back(ToJson(conflict));
        if (!options.m_bJson && (!options.m_bQuiet || !bSettled))
            std::printf("%s: %s\n", files.m_sName.c_str(), ReadableText(Tell(conflict)).c_str());
    }
    if (!WriteLibraryImage(*merged.m_pImage, files.m_sOut, files.m_sName))
    {
        FailToWrite(files.m_sOut);
        return nTrouble;
    }
    const bool bClean = list.empty() || bSettled;
    if (!WriteSideFile(files.m_sName, bClean ? CJson::array() : list))
    {
        FailToWrite(files.m_sName + ".conflicts");
        return nTrouble;
    }
    if (options.m_bJson)
        PrintJson({{"out", ReadableText(files.m_sOut)}, {"clean", bClean}, {"conflicts", list}});
    else if (!options.m_bQuiet && !request.m_bGit)
        std::printf("%s: %s\n", files.m_sOut.c_str(),
                    list.empty()
                        ? "merged"
                        : (std::to_string(list.size()) + (list.size() == 1 ? " conflict" : " conflicts") +
                           (bSettled ? ", settled" : ""))
                              .c_str());
    return bClean ? static_cast<int>(eExit_Done) : c_nMergeConflicts;
}

int RunMerge(const CMergeRequest& request, const CBatchOptions& options)
{
    const auto& f = request.m_Files;
    const size_t nFiles = request.m_bGit ? 4 : 3;
    if (f.size() != nFiles || request.m_sOut.empty() != request.m_bGit ||
        (request.m_bMine && request.m_bTheirs))
    {
        Fail(request.m_bGit
                 ? "git calls a merge driver with %O %A %B %P; see \"emberdeck-batch git-setup --help\""
                 : "BASE, OURS, THEIRS and -o OUT are needed. \"emberdeck-batch merge --help\" tells more");
        return request.m_bGit ? c_nGitTrouble : c_nMergeTrouble;
    }
    if (request.m_bGit)
        return MergeFiles({{f[0], f[3], true}, {f[1], f[3]}, {f[2], f[3]}, f[1], f[3]}, request, options,
                          c_nGitTrouble);
    return MergeFiles({{f[0], {}, true}, {f[1]}, {f[2]}, request.m_sOut, request.m_sOut}, request, options,
                      c_nMergeTrouble);
}
} // namespace

void AddMergeCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("merge", "Merge what two sides have made of one library");
    auto pRequest = std::make_shared<CMergeRequest>();
    pCommand
        ->add_option("FILE", pRequest->m_Files,
                     "BASE OURS THEIRS; a base that is empty or isn't there has nothing in it")
        ->required();
    pCommand->add_option("-o", pRequest->m_sOut, "The merged library; its last letter decides the form");
    pCommand->add_flag("--ours", pRequest->m_bMine, "Settle every conflict by what ours has");
    pCommand->add_flag("--theirs", pRequest->m_bTheirs, "Settle every conflict by what theirs has");
    pCommand->add_flag("--git", pRequest->m_bGit,
                       "The arguments are those of git's merge driver: %O %A %B %P");
    pCommand->footer("\nExit status: 0 merged; 1 there are conflicts: OUT has ours where they are, and "
                     "OUT.conflicts lists them;\n"
                     "2 a file can't be read or written (129 with --git).\n"
                     "Different effects, keys and properties never conflict. What the files say is merged. "
                     "No plug-in is asked.");
    pCommand->callback([&options, &nResult, pRequest] { nResult = RunMerge(*pRequest, options); });
}
