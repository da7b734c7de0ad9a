#include "platform/ReplacingFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
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

std::string FolderOf(const std::string& sPath)
{
    const size_t nSlash = sPath.rfind('/');
    return nSlash == std::string::npos ? "." : sPath.substr(0, std::max<size_t>(nSlash, 1));
}

// Where a chain of links ends, also when nothing is there yet. Empty for a chain without end.
std::string FollowLinks(std::string sPath)
{
    for (int i = 0; i < c_nMaxLinks; ++i)
    {
        char szTarget[4096];
        const ssize_t nLength = readlink(sPath.c_str(), szTarget, sizeof(szTarget));
        if (nLength < 0)
            return sPath;
        const std::string sTarget(szTarget, static_cast<size_t>(nLength));
        sPath = !sTarget.empty() && sTarget[0] == '/' ? sTarget : FolderOf(sPath) + '/' + sTarget;
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

// The rename is safe on the disk once its folder is. Some file systems can't do it: no failure.
void SyncFolder(const std::string& sFolder)
{
    CFileHandle folder(open(sFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen())
        fsync(folder.Get());
}

// For writing what is there. A pipe without a reader fails here instead of waiting.
CFileHandle OpenTarget(const std::string& sTarget, bool bTruncate)
{
    CFileHandle target(open(sTarget.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | (bTruncate ? O_TRUNC : 0)));
    if (target.IsOpen())
        fcntl(target.Get(), F_SETFL, fcntl(target.Get(), F_GETFL) & ~O_NONBLOCK);
    return target;
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
            OpenIn(FolderOf(m_sTarget));
        return;
    }
    // A rename would replace what an ordinary write couldn't touch.
    if (S_ISDIR(info.st_mode) || (info.st_mode & 0222) == 0 || access(m_sTarget.c_str(), W_OK) != 0)
        return;
    if (IsReplaceable(info) && OpenIn(FolderOf(m_sTarget)))
        return;
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
    const std::string sFolder = FolderOf(m_sTarget); // before it is done, or it would fail behind that
    // Some systems tell of a lost write only when a file is closed; this one stays open for its lock.
    CFileHandle again(dup(m_File.Get()));
    if (!again.IsOpen() || fsync(again.Get()) != 0 || !again.Close() ||
        rename(m_sTemporary.c_str(), m_sTarget.c_str()) != 0)
        return false;
    m_sTemporary.clear();
    SyncFolder(sFolder);
    return true;
}

bool CReplacingFile::CopyBytes()
{
    CFileHandle target = OpenTarget(m_sTarget, true);
    if (!target.IsOpen() || lseek(m_File.Get(), 0, SEEK_SET) != 0)
        return false;
    std::string sBlock(65536, '\0');
    for (;;)
    {
        const ssize_t nRead = read(m_File.Get(), sBlock.data(), sBlock.size());
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead < 0 || (nRead > 0 && !WriteAll(target.Get(), {sBlock.data(), static_cast<size_t>(nRead)})))
            return false;
        if (nRead == 0)
            break;
    }
    // A device or pipe has nothing to sync.
    const bool bSynced = fsync(target.Get()) == 0 || errno == EINVAL || errno == EROFS;
    return target.Close() && bSynced;
}

bool WriteFileSafely(const std::string& sPath, const std::string& sContent, unsigned nNewMode)
{
    CReplacingFile file(sPath, nNewMode);
    return file.IsOpen() && WriteAll(file.Get(), sContent) && file.Commit();
}
