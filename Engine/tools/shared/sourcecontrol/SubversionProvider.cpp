#include "shared/sourcecontrol/SubversionProvider.h"

#include <algorithm>

#include "platform/FileMode.h"
#include "platform/Files.h"
#include "qsnumber.h"

namespace
{

constexpr std::chrono::seconds c_Peace{30};

// What stands behind a file's name keeps an "@" in it from being taken as the mark of a revision.
std::string Target(const std::string& sDepotPath)
{
    std::string sTarget = sDepotPath;
    if (sTarget.size() > 1 && sTarget.ends_with('/'))
        sTarget.pop_back();
    return sTarget + '@';
}

// "r12 | somebody | 2026-11-24 20:51:12 +0000 (Tue, 24 Nov 2026) | 2 lines". The number of lines; -1 when it
// is no such line. The author's name may hold anything.
int ReadHeader(std::string_view sLine, CHistoryEntry& entry)
{
    constexpr std::string_view c_sBar = " | ";
    const size_t nAuthor = sLine.find(c_sBar);
    const size_t nLines = sLine.rfind(c_sBar);
    if (nAuthor == std::string_view::npos || nLines <= nAuthor)
        return -1;
    const size_t nDate = sLine.rfind(c_sBar, nLines - 1);
    if (nDate == std::string_view::npos || nDate <= nAuthor)
        return -1;
    entry.m_sRevision = sLine.substr(0, nAuthor);
    entry.m_sAuthor = sLine.substr(nAuthor + c_sBar.size(), nDate - nAuthor - c_sBar.size());
    const std::string_view sDate = sLine.substr(nDate + c_sBar.size(), nLines - nDate - c_sBar.size());
    entry.m_sDate = sDate.substr(0, sDate.find(" ("));
    return QSTextToInt(std::string(sLine.substr(nLines + c_sBar.size())).c_str());
}

} // namespace

CSubversionProvider::CSubversionProvider(const CProviderHost& host)
    : CWorkCopyProvider("Subversion", CClientProgram("svn", {"SVN_EDITOR=:"}, host.m_pPrompts), host)
{
}

CClientProgram::CRun CSubversionProvider::Svn(std::vector<std::string> arguments,
                                              const std::string& sDepotPath, const char* pszWhat,
                                              EPatience ePatience) const
{
    arguments.push_back("--non-interactive");
    arguments.push_back("--");
    arguments.push_back(Target(sDepotPath));
    return Run(arguments, pszWhat, ePatience);
}

CSourceControlStatus CSubversionProvider::FindWorkCopyOf(const std::string& sFolder, CWorkCopy& workCopy)
{
    CRun run = Svn({"info", "--show-item", "wc-root", "--no-newline"}, sFolder, "Looking for the work copy");
    workCopy.m_sTop = run.m_sOutput;
    return run.m_Status;
}

// ---- What is known of a file

CSourceControlStatus CSubversionProvider::ReadColumns(const std::string& sDepotPath, CColumns& columns) const
{
    if (!IsInside(sDepotPath))
        return {};
    const CRun run = Svn({"status", "--verbose", "--depth", "empty"}, sDepotPath, "Looking for changes");
    const std::vector<std::string_view> lines = SplitLines(run.m_sOutput);
    if (run.m_Status.Failed() || lines.empty() || lines[0].size() < 8)
        return run.m_Status;
    columns.m_cItem = lines[0][0];
    columns.m_cProperties = lines[0][1];
    columns.m_cLock = lines[0][5];
    columns.m_cTree = lines[0][6];
    columns.m_bKnown = columns.m_cItem != '?' && columns.m_cItem != 'I' && columns.m_cItem != 'X';
    return {};
}

CSourceControlStatus CSubversionProvider::ReadKnown(const std::string& sDepotPath, CColumns& columns) const
{
    const CStatus status = ReadColumns(sDepotPath, columns);
    if (status.Failed() || columns.m_bKnown)
        return status;
    return Failure(sDepotPath + " isn't under version control.");
}

bool CSubversionProvider::NeedsLock(const std::string& sDepotPath) const
{
    const CRun run = Svn({"propget", "svn:needs-lock"}, sDepotPath, "Looking for properties");
    return !run.m_Status.Failed() && !run.m_sOutput.empty();
}

void CSubversionProvider::AskServerForLock(const std::string& sDepotPath, CColumns& columns)
{
    if (std::chrono::steady_clock::now() < m_AskAgain)
        return;
    const CRun run = Svn({"status", "--show-updates", "--verbose", "--depth", "empty"}, sDepotPath,
                         "Looking for locks", EPatience::eGlance);
    if (run.m_Status.Failed())
        m_AskAgain = std::chrono::steady_clock::now() + c_Peace;
    else if (run.m_sOutput.size() > 5)
        columns.m_cLock = run.m_sOutput[5];
}

CSourceControlStatus CSubversionProvider::IsKnown(const std::string& sLocalPath, bool& bKnown)
{
    bKnown = false;
    const std::string sPath = DepotPath(sLocalPath);
    CColumns columns;
    if (sPath.empty())
        return {};
    Follow(sPath);
    const CStatus status = ReadColumns(sPath, columns);
    bKnown = columns.m_bKnown;
    return status;
}

CSourceControlStatus CSubversionProvider::GetFileStatus(const std::string& sDepotPath, uint32_t& nStatus)
{
    nStatus = 0;
    CColumns columns;
    const CStatus status = ReadKnown(sDepotPath, columns);
    if (status.Failed())
        return status;
    const bool bFolder = IsFolder(sDepotPath);
    if (columns.IsConflict())
        nStatus = c_nBlocked;
    else if (columns.m_cItem == 'A')
        nStatus = c_nPendingAdd | c_nOpenHere;
    else if (columns.m_cItem == 'D')
        nStatus = c_nPendingDelete | c_nOpenHere;
    if (nStatus != 0)
        return {};
    if (!bFolder && NeedsLock(sDepotPath))
        AskServerForLock(sDepotPath, columns);
    if (columns.m_cLock == 'O' || columns.m_cLock == 'T')
        nStatus = c_nBlocked;
    else if (columns.IsChanged() || columns.m_cLock == 'K')
        nStatus = c_nOpenHere;
    return {};
}

// ---- Commands

CSourceControlStatus CSubversionProvider::CheckOutFile(const std::string& sDepotPath, const std::string&, int)
{
    CColumns columns;
    const CStatus status = ReadColumns(sDepotPath, columns);
    if (status.Failed())
        return status;
    if (!columns.m_bKnown || IsFolder(sDepotPath))
        return Failure(sDepotPath + " can't be checked out.");
    if (columns.m_cItem != 'A' && columns.m_cLock != 'K' && NeedsLock(sDepotPath))
    {
        const CRun run = Svn({"lock"}, sDepotPath, "Locking the file", EPatience::eServer);
        if (run.m_Status.Failed())
            return run.m_Status;
    }
    if (FileExists(sDepotPath) && !MakeFileWritable(sDepotPath))
        return Failure("The file " + sDepotPath + " can't be made writable.");
    return {};
}

CSourceControlStatus CSubversionProvider::AddFile(const std::string& sLocalPath, const std::string&, int)
{
    const std::string sPath = DepotPath(sLocalPath);
    Follow(sPath);
    if (!IsInside(sPath))
        return Failure(sLocalPath + " isn't in the work copy " + Top());
    return Svn({"add", "--quiet", "--parents"}, sPath, "Adding the file").m_Status;
}

CSourceControlStatus CSubversionProvider::AddFolder(const std::string&, const std::string& sLocalPath,
                                                    const std::string&, int)
{
    const std::string sPath = DepotPath(sLocalPath);
    Follow(sPath);
    if (!IsInside(sPath))
        return Failure(sLocalPath + " isn't in the work copy " + Top());
    return Svn({"add", "--quiet", "--depth", "empty"}, sPath, "Adding a folder").m_Status;
}

CSourceControlStatus CSubversionProvider::BeforeSubmit(const std::string& sDepotPath, bool& bAsk)
{
    bAsk = false;
    CColumns columns;
    const CStatus status = ReadKnown(sDepotPath, columns);
    if (status.Failed())
        return status;
    // The client program passes this over in silence.
    if (columns.IsMissing())
        return Failure(sDepotPath + " isn't on the disk. Undo brings it back.");
    bAsk = columns.IsChanged() || columns.IsConflict();
    if (bAsk || columns.m_cLock != 'K')
        return {};
    // A commit would give the lock back; without a change there is none.
    return Svn({"unlock"}, sDepotPath, "Giving the lock back", EPatience::eServer).m_Status;
}

CSourceControlStatus CSubversionProvider::Commit(const std::string& sDepotPath, const std::string& sText)
{
    // A description that is a file's name by chance is meant as it stands.
    return Svn({"commit", "--quiet", "--depth", "empty", "--force-log", "--encoding", "UTF-8", "--message",
                sText},
               sDepotPath, "Committing the file", EPatience::eServer)
        .m_Status;
}

CSourceControlStatus CSubversionProvider::RevertFile(const std::string& sDepotPath, const std::string&, int)
{
    CColumns columns;
    const CStatus status = ReadColumns(sDepotPath, columns);
    if (status.Failed())
        return status;
    if (!columns.m_bKnown)
        return Failure("There are no changes of " + sDepotPath + " to undo.");
    const CRun run = Svn({"revert", "--quiet", "--depth", "empty"}, sDepotPath, "Undoing changes");
    if (run.m_Status.Failed() || columns.m_cLock != 'K')
        return run.m_Status;
    return Svn({"unlock"}, sDepotPath, "Giving the lock back", EPatience::eServer).m_Status;
}

CSourceControlStatus CSubversionProvider::SyncFile(const std::string& sDepotPath, int)
{
    return Svn({"update", "--quiet"}, sDepotPath, "Getting the latest version", EPatience::eServer).m_Status;
}

CSourceControlStatus CSubversionProvider::ReadHistory(const std::string& sDepotPath,
                                                      std::vector<CHistoryEntry>& entries)
{
    constexpr const char* c_pszWhat = "Reading the history";
    const std::string sLimit = std::to_string(c_nMaxHistory);
    CRun run =
        Svn({"log", "--limit", sLimit, "--revision", "HEAD:1"}, sDepotPath, c_pszWhat, EPatience::eServer);
    if (run.m_Status.Failed() && run.m_nExitCode > 0) // removed by others, perhaps: up to what is here, then
        run = Svn({"log", "--limit", sLimit}, sDepotPath, c_pszWhat, EPatience::eServer);
    const std::vector<std::string_view> lines = SplitLines(run.m_sOutput);
    // A rule, a header, an empty line, the text; the header says how long that is, so it may hold rules.
    for (size_t i = 1; i < lines.size();)
    {
        CHistoryEntry entry;
        const int nLines = ReadHeader(lines[i], entry);
        if (nLines < 0)
            break;
        const size_t nBegin = std::min(i + 2, lines.size());
        const size_t nEnd = std::min(nBegin + static_cast<size_t>(nLines), lines.size());
        for (size_t n = nBegin; n < nEnd; ++n)
            entry.m_sMessage.append(n == nBegin ? "" : "\n").append(lines[n]);
        entries.push_back(std::move(entry));
        i = nEnd + 1;
    }
    return run.m_Status;
}
