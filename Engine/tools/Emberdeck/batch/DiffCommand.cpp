#include <map>
#include <unistd.h>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/LibraryFiles.h"
#include "batch/LibraryListing.h"
#include "batch/Output.h"
#include "changes/ChangeListing.h"
#include "changes/ChangeWords.h"
#include "changes/Compare.h"
#include "changes/Renames.h"

namespace
{
struct CDiffRequest
{
    std::vector<std::string> m_Files;
    bool m_bStat = false;
    bool m_bTextConv = false;
    bool m_bGit = false;
};

// As other programs that compare: 0 the same, 1 different.
constexpr int c_nSame = eExit_Done;
constexpr int c_nDifferent = 1;
constexpr int c_nTrouble = 2;

using EKind = CToldChange::EKind;

char Sign(EKind eKind)
{
    return eKind == EKind::eNew ? '+' : eKind == EKind::eGone ? '-' : ' ';
}

// Colours are for a terminal, and only there.
bool WantsColor()
{
    const char* pszNoColor = std::getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) && !(pszNoColor && *pszNoColor);
}

void PrintChanges(const std::vector<CToldChange>& changes)
{
    const bool bColor = WantsColor();
    const auto paint = [&](const char* pszColor, const std::string& sLine)
    { Put(bColor ? std::string(pszColor) + sLine + "\x1b[m\n" : sLine + "\n"); };
    std::string sWhere;
    for (const CToldChange& change : changes)
    {
        if (change.m_sWhere != sWhere)
            paint("\x1b[1m", ReadableText(change.m_sWhere));
        sWhere = change.m_sWhere;
        const char* pszColor = change.m_eKind == EKind::eNew    ? "\x1b[32m"
                               : change.m_eKind == EKind::eGone ? "\x1b[31m"
                                                                : "";
        paint(pszColor, std::string("  ") + Sign(change.m_eKind) + " " + ReadableText(change.m_sWhat));
    }
}

void PrintStat(const std::vector<CToldChange>& changes)
{
    std::vector<std::pair<std::string, size_t>> counts;
    for (const CToldChange& change : changes)
    {
        if (counts.empty() || counts.back().first != change.m_sWhere)
            counts.emplace_back(change.m_sWhere, 0);
        ++counts.back().second;
    }
    for (const auto& [sWhere, nCount] : counts)
        std::printf("%s: %zu change%s\n", ReadableText(sWhere).c_str(), nCount, nCount == 1 ? "" : "s");
}

CJson ToJson(const std::vector<CToldChange>& changes)
{
    CJson list = CJson::array();
    for (const CToldChange& change : changes)
        list.push_back({{"where", ReadableText(change.m_sWhere)},
                        {"what", ReadableText(change.m_sWhat)},
                        {"kind", change.m_eKind == EKind::eNew    ? "new"
                                 : change.m_eKind == EKind::eGone ? "gone"
                                                                  : "changed"}});
    return list;
}

int Trouble(const std::string& sWhy)
{
    Fail(sWhy);
    return c_nTrouble;
}

int DiffFiles(const CLibraryFile& left, const CLibraryFile& right, const CDiffRequest& request,
              const CBatchOptions& options)
{
    std::vector<std::shared_ptr<const CLibraryImage>> images;
    std::string sError;
    if (!ReadLibraryFiles({left, right}, images, sError))
        return Trouble(sError);
    const auto changes = ListChange(Compare(*images[0], *AlignRenamed(*images[0], *images[1])));
    if (options.m_bJson)
        PrintJson({{"same", changes.empty()}, {"changes", ToJson(changes)}});
    else if (request.m_bStat)
        PrintStat(changes);
    else
        PrintChanges(changes);
    return changes.empty() ? c_nSame : c_nDifferent;
}

// What git calls an external diff with: PATH OLD-FILE OLD-HEX OLD-MODE NEW-FILE NEW-HEX NEW-MODE, then the new name
// and how much is alike where it was renamed; PATH alone where a merge left it open.
int DiffForGit(const CDiffRequest& request, const CBatchOptions& options)
{
    const auto& files = request.m_Files;
    if (files.size() != 1 && files.size() != 7 && files.size() != 9)
        return Trouble(
            "git calls an external diff with 7 or 9 arguments; see \"emberdeck-batch git-setup --help\"");
    const std::string& sNew = files.size() == 9 ? files[7] : files[0];
    Put("diff " + files[0] + (files.size() == 9 ? " -> " + sNew : "") + "\n");
    if (files.size() == 1)
        Put("  not merged yet\n");
    // Git takes any other exit status for a diff that has died.
    else if (DiffFiles({files[1], files[0]}, {files[4], sNew}, request, options) == c_nTrouble)
        Put("  can't be compared\n");
    return eExit_Done;
}

int ShowText(const std::string& sFile)
{
    std::vector<std::shared_ptr<const CLibraryImage>> images;
    std::string sError;
    if (!ReadLibraryFiles({{sFile}}, images, sError))
        return Trouble(sError);
    Put(ReadableText(ListLibrary(*images[0])));
    return eExit_Done;
}

int RunDiff(const CDiffRequest& request, const CBatchOptions& options)
{
    const size_t nFiles = request.m_Files.size();
    if (request.m_bGit)
        return DiffForGit(request, options);
    if (request.m_bTextConv)
        return nFiles == 1 ? ShowText(request.m_Files[0]) : Trouble("--textconv takes one file");
    if (nFiles != 2)
        return Trouble("two libraries are compared. \"emberdeck-batch diff --help\" tells more");
    return DiffFiles({request.m_Files[0]}, {request.m_Files[1]}, request, options);
}
} // namespace

void AddDiffCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand =
        app.add_subcommand("diff", "Tell what differs between two libraries, by effect, key and property");
    auto pRequest = std::make_shared<CDiffRequest>();
    pCommand->add_option("FILE", pRequest->m_Files, "The two libraries, the older one first")->required();
    pCommand->add_flag("--stat", pRequest->m_bStat,
                       "Only how many changes there are of each effect and prefab");
    pCommand->add_flag("--textconv", pRequest->m_bTextConv,
                       "Print one library as text that can be compared, for git");
    pCommand->add_flag("--git", pRequest->m_bGit, "The arguments are those of git's external diff");
    pCommand->footer(
        "\nExit status: 0 they are the same; 1 they differ; 2 one can't be read. With --git always 0.\n"
        "What the files say is compared. No plug-in is asked.");
    pCommand->callback([&options, &nResult, pRequest] { nResult = RunDiff(*pRequest, options); });
}
