#include "shared/sourcecontrol/GitProvider.h"

#include <algorithm>
#include <cstdlib>

#include "platform/FileMode.h"
#include "platform/Files.h"

namespace
{

constexpr uint64_t c_nMaxMarks = 4 << 20;

// Variables that a hook or an alias sets would turn every command to another repository.
const std::vector<std::string>& Environment()
{
    static const std::vector<std::string> s_Variables = {
        "GIT_DIR",
        "GIT_WORK_TREE",
        "GIT_INDEX_FILE",
        "GIT_PREFIX",
        "GIT_COMMON_DIR",
        "GIT_NAMESPACE",
        "GIT_OBJECT_DIRECTORY",
        "GIT_ALTERNATE_OBJECT_DIRECTORIES",
        "GIT_TERMINAL_PROMPT=0",
        "GIT_ASKPASS=",            // not even the window that the settings name
        "GIT_EDITOR=:",            // nothing that waits for a person
        "GIT_LITERAL_PATHSPECS=1", // brackets and stars in names are no patterns
        "GIT_OPTIONAL_LOCKS=0",    // a question must not be in the way of a command that runs beside it
    };
    return s_Variables;
}

// A path as the program prints it: with one line end behind it, whatever the path holds.
std::string PathOf(std::string sOutput)
{
    if (sOutput.ends_with('\n'))
        sOutput.pop_back();
    return sOutput;
}

std::string LoginName()
{
    for (const char* pszVariable : {"USER", "LOGNAME"})
    {
        const char* pszName = std::getenv(pszVariable);
        if (pszName && *pszName)
            return pszName;
    }
    return "emberdeck";
}

CHistoryEntry EntryOf(std::string_view sRecord)
{
    CHistoryEntry entry;
    for (std::string* pField : {&entry.m_sRevision, &entry.m_sAuthor, &entry.m_sDate})
    {
        const size_t nEnd = std::min(sRecord.find('\n'), sRecord.size());
        *pField = sRecord.substr(0, nEnd);
        sRecord.remove_prefix(std::min(nEnd + 1, sRecord.size()));
    }
    while (sRecord.ends_with('\n'))
        sRecord.remove_suffix(1);
    entry.m_sMessage = sRecord;
    return entry;
}

} // namespace

CGitProvider::CGitProvider(const CProviderHost& host)
    : CWorkCopyProvider("Git", CClientProgram("git", Environment(), host.m_pPrompts), host)
{
}

CClientProgram::CRun CGitProvider::Git(const std::vector<std::string>& arguments, const char* pszWhat,
                                       EPatience ePatience) const
{
    std::vector<std::string> all = {"-C", Top()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return Run(all, pszWhat, ePatience);
}

CSourceControlStatus CGitProvider::FindWorkCopyOf(const std::string& sFolder, CWorkCopy& workCopy)
{
    constexpr const char* c_pszWhat = "Looking for the repository";
    const CRun top = Run({"-C", sFolder, "rev-parse", "--show-toplevel"}, c_pszWhat);
    if (top.m_Status.Failed())
        return top.m_Status;
    const CRun own = Run({"-C", sFolder, "rev-parse", "--absolute-git-dir"}, c_pszWhat);
    workCopy.m_sTop = PathOf(top.m_sOutput);
    workCopy.m_sOwnFolder = PathOf(own.m_sOutput);
    return own.m_Status;
}

bool CGitProvider::IsIgnored(const std::string& sDepotPath) const
{
    // This command takes no patterns, and refuses to be told so.
    return !Git({"--no-literal-pathspecs", "check-ignore", "--quiet", "--", sDepotPath},
                "Looking the file up")
                .m_Status.Failed();
}

// ---- What is known of a file

bool CGitProvider::CLetters::IsUnmerged() const
{
    return m_cIndex == 'U' || m_cDisk == 'U' || (m_cIndex == m_cDisk && (m_cIndex == 'A' || m_cIndex == 'D'));
}

CSourceControlStatus CGitProvider::IsKnown(const std::string& sLocalPath, bool& bKnown)
{
    const std::string sPath = DepotPath(sLocalPath);
    Follow(sPath);
    bKnown = IsInside(sPath) && !IsInRepositoryFolder(sPath);
    if (!bKnown || IsFolder(sPath))
        return {}; // Git doesn't keep folders: each one of the work copy is as good as known
    const CRun run = Git({"ls-files", "-z", "--", sPath}, "Looking the file up");
    bKnown = !run.m_sOutput.empty();
    return run.m_Status;
}

CSourceControlStatus CGitProvider::ReadLetters(const std::string& sDepotPath, CLetters& letters) const
{
    if (!IsInside(sDepotPath))
        return Failure(sDepotPath + " isn't in the work copy " + Top());
    const CRun run =
        Git({"status", "--porcelain", "-z", "--no-renames", "--untracked-files=no", "--", sDepotPath},
            "Looking for changes");
    if (run.m_Status.Failed() || run.m_sOutput.size() < 2)
        return run.m_Status;
    letters.m_cIndex = run.m_sOutput[0];
    letters.m_cDisk = run.m_sOutput[1];
    return {};
}

CSourceControlStatus CGitProvider::GetFileStatus(const std::string& sDepotPath, uint32_t& nStatus)
{
    nStatus = 0;
    if (IsFolder(sDepotPath))
        return {};
    CLetters letters;
    const CStatus status = ReadLetters(sDepotPath, letters);
    if (status.Failed())
        return status;
    if (letters.IsUnmerged() || (IsLockable(sDepotPath) && IsLockedByAnother(sDepotPath)))
        nStatus = c_nBlocked;
    else if (letters.IsAdded())
        nStatus = c_nPendingAdd | c_nOpenHere;
    else if (!letters.IsClean() || IsMarked(sDepotPath))
        nStatus = c_nOpenHere;
    return {};
}

// ---- Locks at the server, for files that can't be merged

bool CGitProvider::IsLockable(const std::string& sDepotPath) const
{
    // PATH, name and value, each with a NUL behind it.
    const CRun run = Git({"check-attr", "-z", "lockable", "--", sDepotPath}, "Looking for attributes");
    constexpr std::string_view c_sSet("\0lockable\0set\0", 14);
    return !run.m_Status.Failed() && run.m_sOutput.ends_with(c_sSet);
}

// A server that doesn't answer locks nothing.
bool CGitProvider::IsLockedByAnother(const std::string& sDepotPath) const
{
    const CRun run = Git({"lfs", "locks", "--verify", "--path", BelowTop(sDepotPath)}, "Looking for locks",
                         EPatience::eGlance);
    // The user's own locks have an O in front of the path, those of others a blank.
    return !run.m_Status.Failed() && run.m_sOutput.starts_with(' ');
}

// ---- The mark that stands for a check-out

std::set<std::string> CGitProvider::ReadMarks() const
{
    std::set<std::string> marks;
    std::string sText;
    if (!FileExists(MarkFile()) || !ReadWholeFile(MarkFile(), sText, c_nMaxMarks))
        return marks;
    size_t nBegin = 0;
    for (size_t nEnd; (nEnd = sText.find('\0', nBegin)) != std::string::npos; nBegin = nEnd + 1)
        marks.insert(sText.substr(nBegin, nEnd - nBegin));
    return marks;
}

CSourceControlStatus CGitProvider::SetMark(const std::string& sDepotPath, bool bMark) const
{
    std::set<std::string> marks = ReadMarks();
    const std::string sName = BelowTop(sDepotPath);
    if (marks.contains(sName) == bMark)
        return {};
    if (bMark)
        marks.insert(sName);
    else
        marks.erase(sName);
    std::string sText;
    for (const std::string& sMark : marks)
        sText += sMark + '\0';
    const bool bDone = sText.empty() ? RemoveFile(MarkFile()) : WriteFileSafely(MarkFile(), sText);
    return bDone ? CStatus() : Failure("The file " + MarkFile() + " can't be written.");
}

// ---- Commands

CSourceControlStatus CGitProvider::CheckOutFile(const std::string& sDepotPath, const std::string&, int)
{
    if (!IsInside(sDepotPath) || IsFolder(sDepotPath))
        return Failure(sDepotPath + " can't be checked out.");
    if (!IsMarked(sDepotPath) && IsLockable(sDepotPath))
    {
        const CRun run = Git({"lfs", "lock", BelowTop(sDepotPath)}, "Locking the file", EPatience::eServer);
        if (run.m_Status.Failed())
            return run.m_Status;
    }
    if (FileExists(sDepotPath) && !MakeFileWritable(sDepotPath))
        return Failure("The file " + sDepotPath + " can't be made writable.");
    return SetMark(sDepotPath, true);
}

CSourceControlStatus CGitProvider::AddFile(const std::string& sLocalPath, const std::string&, int)
{
    const std::string sPath = DepotPath(sLocalPath);
    Follow(sPath);
    if (!IsInside(sPath))
        return Failure(sLocalPath + " isn't in the work copy " + Top());
    return Git({"add", "--", sPath}, "Adding the file").m_Status;
}

CSourceControlStatus CGitProvider::AddFolder(const std::string&, const std::string&, const std::string&, int)
{
    return {}; // it comes with its first file
}

CSourceControlStatus CGitProvider::BeforeSubmit(const std::string& sDepotPath, bool& bAsk)
{
    bAsk = false;
    if (IsFolder(sDepotPath))
        return {};
    CLetters letters;
    const CStatus status = ReadLetters(sDepotPath, letters);
    if (status.Failed())
        return status;
    if (letters.IsClean())
        return SetMark(sDepotPath, false);
    // To the client program that would be a deletion, which nobody has asked for.
    if (!FileExists(sDepotPath))
        return Failure(sDepotPath + " isn't on the disk. Undo brings it back.");
    bAsk = true;
    return {};
}

// Options that name somebody as the author on a machine where nobody has said who it is. Who wants to be
// asked for that by the client program has said so in its settings.
std::vector<std::string> CGitProvider::Identity() const
{
    constexpr const char* c_pszWhat = "Looking for the author";
    if (!Git({"var", "GIT_AUTHOR_IDENT"}, c_pszWhat).m_Status.Failed() &&
        !Git({"var", "GIT_COMMITTER_IDENT"}, c_pszWhat).m_Status.Failed())
        return {};
    const auto isSet = [&](const char* pszKey) {
        return !PathOf(Git({"config", "--get", pszKey}, c_pszWhat).m_sOutput).empty();
    };
    if (PathOf(Git({"config", "--type=bool", "--get", "user.useConfigOnly"}, c_pszWhat).m_sOutput) == "true")
        return {};
    std::vector<std::string> options;
    if (!isSet("user.name"))
        options.insert(options.end(), {"-c", "user.name=" + LoginName()});
    if (!isSet("user.email"))
        options.insert(options.end(), {"-c", "user.email=" + LoginName() + "@localhost"});
    return options;
}

CSourceControlStatus CGitProvider::Commit(const std::string& sDepotPath, const std::string& sText)
{
    std::vector<std::string> arguments = Identity();
    arguments.insert(arguments.end(),
                     {"commit", "--quiet", "--cleanup=whitespace", "-m", sText, "--only", "--", sDepotPath});
    const CRun run = Git(arguments, "Committing the file");
    return run.m_Status.Failed() ? run.m_Status : SetMark(sDepotPath, false);
}

CSourceControlStatus CGitProvider::RevertFile(const std::string& sDepotPath, const std::string&, int)
{
    constexpr const char* c_pszWhat = "Undoing changes";
    if (IsFolder(sDepotPath) || !IsInside(sDepotPath))
        return Failure("There are no changes of " + sDepotPath + " to undo.");
    CLetters letters;
    CStatus status = ReadLetters(sDepotPath, letters);
    if (status.Failed())
        return status;
    if (letters.IsAdded() && !letters.IsUnmerged())
        status = Git({"rm", "--quiet", "--cached", "--force", "--", sDepotPath}, c_pszWhat).m_Status;
    else if (!letters.IsClean())
        status = Git({"checkout", "--quiet", "HEAD", "--", sDepotPath}, c_pszWhat).m_Status;
    if (status.Failed())
        return status;
    const bool bMarked = IsMarked(sDepotPath);
    status = SetMark(sDepotPath, false);
    if (status.Failed() || !bMarked || !IsLockable(sDepotPath))
        return status;
    return Git({"lfs", "unlock", BelowTop(sDepotPath)}, "Giving the lock back", EPatience::eServer).m_Status;
}

CSourceControlStatus CGitProvider::SyncFile(const std::string&, int)
{
    // Only the first half waits for a server. It touches no file, so it may be stopped at any time.
    const CRun fetch = Git({"fetch", "--quiet"}, "Getting the latest version", EPatience::eServer);
    if (fetch.m_Status.Failed())
        return fetch.m_Status;
    return Git({"merge", "--quiet", "--ff-only", "--no-autostash", "@{upstream}"},
               "Bringing files up to date", EPatience::eServer)
        .m_Status;
}

CSourceControlStatus CGitProvider::ReadHistory(const std::string& sDepotPath,
                                               std::vector<CHistoryEntry>& entries)
{
    const CRun run = Git({"log", "-z", "--follow", "--encoding=UTF-8", "--no-show-signature", "--no-color",
                          "--date=iso", "--max-count=" + std::to_string(c_nMaxHistory),
                          "--format=tformat:%h%n%an%n%ad%n%B", "--", sDepotPath},
                         "Reading the history");
    std::string_view sRest = run.m_sOutput;
    while (!sRest.empty())
    {
        const size_t nEnd = std::min(sRest.find('\0'), sRest.size());
        entries.push_back(EntryOf(sRest.substr(0, nEnd)));
        sRest.remove_prefix(std::min(nEnd + 1, sRest.size()));
    }
    return run.m_Status;
}
