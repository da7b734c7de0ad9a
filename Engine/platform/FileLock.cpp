#include "platform/FileLock.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>

#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

std::atomic<int64_t> s_nWaitMs{10000};
constexpr std::chrono::milliseconds c_Pause(15);
constexpr uint64_t c_nMaxLockList = 4u << 20;

// One name may have become another file meanwhile: a writer that renames gives it a new one.
bool IsStillThere(int nFile, const std::string& sNative)
{
    struct stat held;
    struct stat named;
    return fstat(nFile, &held) == 0 && stat(sNative.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
           held.st_ino == named.st_ino;
}

// "sed (process 4711)", by the machine's list of locks. Empty where it doesn't tell.
std::string HolderOf(int nFile)
{
    struct stat info;
    std::string sLocks;
    if (fstat(nFile, &info) != 0 || !ReadWholeFile("/proc/locks", sLocks, c_nMaxLockList))
        return std::string();
    char szFile[64];
    std::snprintf(szFile, sizeof(szFile), " %02x:%02x:%llu ", major(info.st_dev), minor(info.st_dev),
                  static_cast<unsigned long long>(info.st_ino));
    // "1: FLOCK  ADVISORY  WRITE 4711 fe:00:262179 0 EOF"; one that waits has "->" behind its number.
    for (size_t nLine = 0; nLine < sLocks.size();)
    {
        const size_t nEnd = std::min(sLocks.find('\n', nLine), sLocks.size());
        const std::string sLine = sLocks.substr(nLine, nEnd - nLine);
        nLine = nEnd + 1;
        const size_t nAt = sLine.find(szFile);
        if (nAt == std::string::npos || sLine.find("->") != std::string::npos)
            continue;
        const size_t nProcess = sLine.rfind(' ', nAt - 1) + 1;
        const std::string sProcess = sLine.substr(nProcess, nAt - nProcess);
        std::string sName;
        if (sProcess.find_first_not_of("0123456789") != std::string::npos)
            return std::string(); // of another name space
        ReadWholeFile("/proc/" + sProcess + "/comm", sName, 256);
        while (!sName.empty() && sName.back() == '\n')
            sName.pop_back();
        return (sName.empty() ? "a program" : sName) + " (process " + sProcess + ")";
    }
    return std::string();
}

} // namespace

bool CFileLock::IsInUse(const std::string& sPath)
{
    const CFileHandle file(open(NativePath(sPath).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.IsOpen() && flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

void CFileLock::SetWait(std::chrono::milliseconds wait)
{
    s_nWaitMs = wait.count();
}

CFileLock::CFileLock(const std::string& sPath, ELock eLock, bool bCreate)
{
    const std::string sNative = NativePath(sPath);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(s_nWaitMs.load());
    const int nKind = (eLock == ELock::eShared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    for (;;)
    {
        // Without O_NONBLOCK a pipe would wait for its writer.
        // Over a network a file can be locked for writing only when it is open for that.
        const int nAccess = eLock == ELock::eExclusive ? O_RDWR : O_RDONLY;
        const int nFlags = O_CLOEXEC | O_NONBLOCK | nAccess | (bCreate ? O_CREAT : 0);
        m_File = CFileHandle(open(sNative.c_str(), nFlags, 0666));
        if (!m_File.IsOpen() && nAccess != O_RDONLY)
            m_File = CFileHandle(open(sNative.c_str(), O_CLOEXEC | O_NONBLOCK | O_RDONLY));
        if (!m_File.IsOpen())
            return;
        if (flock(m_File.Get(), nKind) == 0)
        {
            if (IsStillThere(m_File.Get(), sNative))
                return;
            continue;
        }
        if (errno != EWOULDBLOCK && errno != EINTR)
            return;
        if (std::chrono::steady_clock::now() >= end)
            break;
        std::this_thread::sleep_for(c_Pause);
    }
    const std::string sHolder = HolderOf(m_File.Get());
    m_sProblem = sNative + " is being read or written by " + (sHolder.empty() ? "another program" : sHolder) +
                 ". Please try again when it has ended.";
    m_File.Close();
}
