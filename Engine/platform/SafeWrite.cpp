#include "platform/Files.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileHandle.h"
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

bool WriteAll(int nFile, const std::string& sContent)
{
    size_t nDone = 0;
    while (nDone < sContent.size())
    {
        const ssize_t nWritten = write(nFile, sContent.data() + nDone, sContent.size() - nDone);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        nDone += static_cast<size_t>(nWritten);
    }
    return true;
}

// A new file beside the target, under a short name of its own, so that a long name can't fail. Made
// by open rather than by mkstemp, for the user's own mask to give a new file its mode.
CFileHandle OpenBeside(const std::string& sTarget, std::string& sTemporary)
{
    static std::atomic<unsigned> s_nCounter{0};
    for (int i = 0; i < c_nMaxNames; ++i)
    {
        sTemporary = FolderOf(sTarget) + '/' + c_szSafeWritePrefix + std::to_string(getpid()) + '-' +
                     std::to_string(s_nCounter.fetch_add(1));
        CFileHandle file(open(sTemporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file.IsOpen() || errno != EEXIST)
            return file;
    }
    return CFileHandle();
}

// The rename is safe on the disk once its folder is. Some file systems can't do it: no failure.
void SyncFolder(const std::string& sFolder)
{
    CFileHandle folder(open(sFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen())
        fsync(folder.Get());
}

bool Replace(const std::string& sTarget, const std::string& sContent, const struct stat* pOld)
{
    std::string sTemporary;
    CFileHandle file = OpenBeside(sTarget, sTemporary);
    if (!file.IsOpen())
        return false;
    bool bOk = WriteAll(file.Get(), sContent);
    if (bOk && pOld)
    {
        // Who may not give files away becomes the owner; special bits stay with the old one. The mode
        // comes last, since a change of owner clears them.
        const bool bSame = pOld->st_uid == geteuid() && pOld->st_gid == getegid();
        const bool bGiven = bSame || fchown(file.Get(), pOld->st_uid, pOld->st_gid) == 0;
        bOk = fchmod(file.Get(), pOld->st_mode & (bGiven ? 07777 : 0777)) == 0;
    }
    bOk = bOk && fsync(file.Get()) == 0;
    bOk = file.Close() && bOk;
    bOk = bOk && rename(sTemporary.c_str(), sTarget.c_str()) == 0;
    if (!bOk)
    {
        unlink(sTemporary.c_str());
        return false;
    }
    SyncFolder(FolderOf(sTarget));
    return true;
}

} // namespace

bool WriteFileSafely(const std::string& sPath, const std::string& sContent)
{
    const std::string sTarget = FollowLinks(NativePath(sPath));
    if (sTarget.empty() || sTarget.back() == '/')
        return false;
    struct stat info;
    if (stat(sTarget.c_str(), &info) != 0)
        return errno == ENOENT && Replace(sTarget, sContent, nullptr);
    if (S_ISDIR(info.st_mode))
        return false;
    if (!S_ISREG(info.st_mode))
    {
        // A device must not be replaced by a file. A pipe without a reader fails here instead of waiting.
        CFileHandle device(open(sTarget.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
        if (!device.IsOpen())
            return false;
        fcntl(device.Get(), F_SETFL, fcntl(device.Get(), F_GETFL) & ~O_NONBLOCK);
        return WriteAll(device.Get(), sContent);
    }
    // The rename would replace what an ordinary write couldn't touch.
    if ((info.st_mode & 0222) == 0 || access(sTarget.c_str(), W_OK) != 0)
        return false;
    return Replace(sTarget, sContent, &info);
}
