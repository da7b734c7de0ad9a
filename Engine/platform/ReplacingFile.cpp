#include "platform/ReplacingFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

constexpr int c_nMaxLinks = 40; // as the system itself follows
constexpr int c_nMaxNames = 100;

// Whether a name is the system's for what a program has open, such as /dev/stdout behind its links. What it leads to
// must not be replaced: the program would go on with the file that was there.
bool IsOpenFile(const std::string& sPath)
{
    char szFolder[PATH_MAX];
    const std::string_view sFolder = realpath(NativeFolderOf(sPath).c_str(), szFolder) ? szFolder : "";
    return sFolder.starts_with("/proc/") && sFolder.ends_with("/fd");
}

// The descriptor of this program's own that such a name stands for, once more; it writes on where that stands.
CFileHandle OpenOwnFile(const std::string& sPath)
{
    struct stat named, own;
    int nFile = -1;
    const char* pszEnd = sPath.data() + sPath.size();
    const char* pszName = sPath.data() + sPath.rfind('/') + 1;
    if (!IsOpenFile(sPath) || std::from_chars(pszName, pszEnd, nFile).ptr != pszEnd ||
        stat(sPath.c_str(), &named) != 0 || fstat(nFile, &own) != 0 || named.st_dev != own.st_dev ||
        named.st_ino != own.st_ino)
        return CFileHandle();
    return CFileHandle(fcntl(nFile, F_DUPFD_CLOEXEC, 0));
}

// Where a chain of links ends, also when nothing is there yet. Empty for a chain without end.
std::string FollowLinks(std::string sPath)
{
    for (int i = 0; i < c_nMaxLinks; ++i)
    {
        if (IsOpenFile(sPath))
            return sPath;
        char szTarget[4096];
        const ssize_t nLength = readlink(sPath.c_str(), szTarget, sizeof(szTarget));
        if (nLength < 0)
            return sPath;
        const std::string sTarget(szTarget, static_cast<size_t>(nLength));
        sPath = !sTarget.empty() && sTarget[0] == '/' ? sTarget : NativeFolderOf(sPath) + '/' + sTarget;
    }
    return std::string();
}

// Whether a temporary file is nobody's. Where the file system knows no locks, that can't be told.
bool IsAbandoned(const std::string& sPath)
{
    CFileHandle file(open(sPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat info;
    return file.IsOpen() && fstat(file.Get(), &info) == 0 && S_ISREG(info.st_mode) &&
           info.st_uid == geteuid() && flock(file.Get(), LOCK_EX | LOCK_NB) == 0;
}

// Once for each folder that this program writes to: it has no leftovers of its own.
void RemoveLeftovers(const std::string& sFolder)
{
    static std::mutex s_Mutex;
    static std::set<std::string> s_Done;
    {
        const std::lock_guard<std::mutex> lock(s_Mutex);
        if (!s_Done.insert(sFolder).second)
            return;
    }
    std::vector<CDirectoryEntry> entries;
    ListDirectory(sFolder, entries);
    for (const CDirectoryEntry& entry : entries)
    {
        const std::string sPath = sFolder + '/' + entry.m_sName;
        if (entry.m_sName.starts_with(c_szSafeWritePrefix) && !entry.m_bDirectory && IsAbandoned(sPath))
            unlink(sPath.c_str());
    }
}

bool IsRegular(int nFile)
{
    struct stat info;
    return fstat(nFile, &info) == 0 && S_ISREG(info.st_mode);
}

// For writing what is there. A pipe without a reader fails here instead of waiting.
CFileHandle OpenTarget(const std::string& sTarget)
{
    struct stat info;
    const bool bRegular = stat(sTarget.c_str(), &info) == 0 && S_ISREG(info.st_mode); // whose bytes are kept
    CFileHandle target(open(sTarget.c_str(), (bRegular ? O_RDWR : O_WRONLY) | O_CLOEXEC | O_NONBLOCK));
    if (target.IsOpen())
        fcntl(target.Get(), F_SETFL, fcntl(target.Get(), F_GETFL) & ~O_NONBLOCK);
    return target;
}

// Gives each block of a range of a file to a taker, until that fails.
template <class TTake>
bool ReadRange(int nFile, uint64_t nFrom, uint64_t nEnd, const TTake& take)
{
    std::string sBlock(65536, '\0');
    while (nFrom < nEnd)
    {
        const size_t nWanted = static_cast<size_t>(std::min<uint64_t>(sBlock.size(), nEnd - nFrom));
        const ssize_t nRead = pread(nFile, sBlock.data(), nWanted, static_cast<off_t>(nFrom));
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0 || !take(std::string_view(sBlock.data(), static_cast<size_t>(nRead)), nFrom))
            return false;
        nFrom += static_cast<uint64_t>(nRead);
    }
    return true;
}

bool WriteAt(int nFile, std::string_view sContent, uint64_t nAt)
{
    return lseek(nFile, static_cast<off_t>(nAt), SEEK_SET) >= 0 && WriteAll(nFile, sContent);
}

// In place, without losing what stands there. What needs room on the disk comes first, behind the old bytes; these
// are kept until the new ones are safe, and put back when they can't be.
bool Overwrite(int nTarget, int nSource)
{
    struct stat old, fresh;
    if (fstat(nTarget, &old) != 0 || fstat(nSource, &fresh) != 0)
        return false;
    const uint64_t nOld = static_cast<uint64_t>(old.st_size), nNew = static_cast<uint64_t>(fresh.st_size);
    std::string sKept;
    const auto keep = [&](std::string_view sBlock, uint64_t)
    {
        sKept += sBlock;
        return true;
    };
    const auto put = [&](std::string_view sBlock, uint64_t nAt) { return WriteAt(nTarget, sBlock, nAt); };
    if (!ReadRange(nTarget, 0, nOld, keep))
        return false;
    if (ReadRange(nSource, nOld, nNew, put) && ReadRange(nSource, 0, std::min(nOld, nNew), put) &&
        (nOld <= nNew || ftruncate(nTarget, fresh.st_size) == 0) && fsync(nTarget) == 0)
        return true;
    if (ftruncate(nTarget, old.st_size) == 0)
        WriteAt(nTarget, sKept, 0);
    return false;
}

bool CopyTo(int nTarget, int nSource)
{
    struct stat info;
    const auto put = [&](std::string_view sBlock, uint64_t) { return WriteAll(nTarget, sBlock); };
    return fstat(nSource, &info) == 0 && ReadRange(nSource, 0, static_cast<uint64_t>(info.st_size), put);
}

bool IsReplaceable(const struct stat& info)
{
    return S_ISREG(info.st_mode) && info.st_nlink <= 1;
}

// Links of the system to what is open may lead to a file whose name is gone, or another's by now: such a link is
// taken as the file itself.
std::string TargetOf(const std::string& sPath)
{
    struct stat file, target;
    const std::string sTarget = FollowLinks(sPath);
    if (stat(sPath.c_str(), &file) == 0 &&
        (stat(sTarget.c_str(), &target) != 0 || file.st_dev != target.st_dev || file.st_ino != target.st_ino))
        return sPath;
    return sTarget;
}

} // namespace

void SyncFolder(const std::string& sFolder)
{
    CFileHandle folder(open(sFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen())
        fsync(folder.Get());
}

CReplacingFile::CReplacingFile(const std::string& sPath, unsigned nNewMode)
    : m_sTarget(TargetOf(NativePath(sPath))),
      m_nNewMode(nNewMode)
{
    if (m_sTarget.empty() || m_sTarget.back() == '/')
        return;
    struct stat info;
    if (stat(m_sTarget.c_str(), &info) != 0)
    {
        if (errno == ENOENT)
            OpenIn(NativeFolderOf(m_sTarget));
        return;
    }
    // A rename would replace what an ordinary write couldn't touch.
    if (S_ISDIR(info.st_mode) || (info.st_mode & 0222) == 0 || access(m_sTarget.c_str(), W_OK) != 0)
        return;
    if (IsReplaceable(info) && !IsOpenFile(m_sTarget))
    {
        if (OpenIn(NativeFolderOf(m_sTarget)))
        {
            fchmod(m_File.Get(), 0600); // nobody sees more of it than of the old one
            return;
        }
        // A folder where nothing can be made, not a disk that has no room for it.
        if (errno != EACCES && errno != EPERM && errno != EROFS)
            return;
    }
    m_bRename = false;
    const char* pszFolder = std::getenv("TMPDIR");
    OpenIn(pszFolder && *pszFolder ? pszFolder : "/tmp");
}

CReplacingFile::~CReplacingFile()
{
    if (!m_sTemporary.empty())
        unlink(m_sTemporary.c_str());
}

// Under a short name of its own, so that a long name can't fail. Made by open rather than by mkstemp, for the user's
// own mask to give a new file its mode.
bool CReplacingFile::OpenIn(const std::string& sFolder)
{
    static std::atomic<unsigned> s_nCounter{0};
    RemoveLeftovers(sFolder);
    for (int i = 0; i < c_nMaxNames; ++i)
    {
        // In its place before there is such a file: when memory is out, none stays behind.
        m_sTemporary = sFolder + '/' + c_szSafeWritePrefix + std::to_string(getpid()) + '-' +
                       std::to_string(s_nCounter.fetch_add(1));
        CFileHandle file(
            open(m_sTemporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, m_bRename ? m_nNewMode : 0600));
        if (!file.IsOpen() && errno == EEXIST)
            continue;
        if (!file.IsOpen())
            break;
        // Before the lock is there another program may take the file for a leftover.
        struct stat info;
        const bool bBusy = flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (bBusy || (fstat(file.Get(), &info) == 0 && info.st_nlink == 0))
        {
            unlink(m_sTemporary.c_str());
            continue;
        }
        m_File = std::move(file);
        return true;
    }
    m_sTemporary.clear();
    return false;
}

bool CReplacingFile::Commit()
{
    if (!IsOpen())
        return false;
    const bool bDone = m_bRename ? Rename() : CopyBytes();
    m_File.Close();
    return bDone;
}

bool CReplacingFile::Rename()
{
    struct stat old;
    if (stat(m_sTarget.c_str(), &old) == 0)
    {
        // Who may not give files away becomes the owner; special bits stay with the old one. The mode comes
        // last, since a change of owner clears them.
        const bool bSame = old.st_uid == geteuid() && old.st_gid == getegid();
        const bool bGiven = bSame || fchown(m_File.Get(), old.st_uid, old.st_gid) == 0;
        if (fchmod(m_File.Get(), old.st_mode & (bGiven ? 07777 : 0777)) != 0)
            return false;
    }
    const std::string sFolder = NativeFolderOf(m_sTarget); // before it is done, or it would fail behind that
    // Some systems tell of a lost write only when a file is closed; this one stays open for its lock.
    CFileHandle again(dup(m_File.Get()));
    if (!again.IsOpen() || fsync(again.Get()) != 0 || !again.Close())
        return false;
    if (rename(m_sTemporary.c_str(), m_sTarget.c_str()) != 0)
    {
        // Another user's file in a folder that lets each remove but his own, or a file that is a mount itself.
        const bool bKeepsName = errno == EPERM || errno == EBUSY;
        return bKeepsName && CopyBytes();
    }
    m_sTemporary.clear();
    SyncFolder(sFolder);
    return true;
}

bool CReplacingFile::CopyBytes()
{
    CFileHandle own = OpenOwnFile(m_sTarget);
    if (own.IsOpen())
        return CopyTo(own.Get(), m_File.Get()) && own.Close();
    CFileHandle target = OpenTarget(m_sTarget);
    if (!target.IsOpen())
        return false;
    // A device or pipe has nothing to sync.
    const bool bDone =
        IsRegular(target.Get()) ? Overwrite(target.Get(), m_File.Get()) : CopyTo(target.Get(), m_File.Get());
    return target.Close() && bDone;
}

bool WriteFileSafely(const std::string& sPath, const std::string& sContent, unsigned nNewMode)
{
    CReplacingFile file(sPath, nNewMode);
    return file.IsOpen() && WriteAll(file.Get(), sContent) && file.Commit();
}
