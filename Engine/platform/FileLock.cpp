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
#include <unistd.h>

#include "platform/Paths.h"

namespace
{

std::atomic<int64_t> s_nWaitMs{10000};
constexpr std::chrono::milliseconds c_Pause(15);
constexpr uint64_t c_nMaxLockList = 4u << 20;

thread_local CFileLock* s_pLast = nullptr; // of this thread's locks

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

// False: there is nothing to lock.
bool CFileLock::Open(bool bCreate)
{
    // Without O_NONBLOCK a pipe would wait for its writer.
    constexpr int c_nFlags = O_CLOEXEC | O_NONBLOCK;
    // Over a network a file can be locked for writing only when it is open for that.
    const int nAccess = m_eLock == ELock::eExclusive ? O_RDWR : O_RDONLY;
    m_File = CFileHandle(open(m_sNative.c_str(), c_nFlags | nAccess));
    if (!m_File.IsOpen() && errno == ENOENT && bCreate)
    {
        m_bMissing = true;
        m_File = CFileHandle(open(m_sNative.c_str(), c_nFlags | nAccess | O_CREAT, 0666));
    }
    if (!m_File.IsOpen() && nAccess != O_RDONLY)
        m_File = CFileHandle(open(m_sNative.c_str(), c_nFlags | O_RDONLY));
    struct stat info;
    if (!m_File.IsOpen() || fstat(m_File.Get(), &info) != 0)
        return false;
    m_nDevice = info.st_dev;
    m_nFile = info.st_ino;
    return true;
}

// Whether this thread has locked the file already. What a process has inherited isn't its own.
bool CFileLock::IsCovered() const
{
    const auto covers = [this](const CFileLock& lock)
    {
        return lock.m_nProcess == m_nProcess && lock.m_nDevice == m_nDevice && lock.m_nFile == m_nFile &&
               (lock.m_eLock == ELock::eExclusive || m_eLock == ELock::eShared);
    };
    for (const CFileLock* pLock = m_pBefore; pLock; pLock = pLock->m_pBefore)
        if (covers(*pLock))
            return true;
    return false;
}

bool CFileLock::IsEmptyStill() const
{
    struct stat info;
    return fstat(m_File.Get(), &info) == 0 && S_ISREG(info.st_mode) && info.st_size == 0;
}

CFileLock::CFileLock(const std::string& sPath, ELock eLock, bool bCreate)
    : m_eLock(eLock),
      m_sNative(NativePath(sPath)),
      m_nProcess(getpid()),
      m_pBefore(s_pLast)
{
    if (Acquire(bCreate))
        s_pLast = this;
    else
        GiveUp();
}

// Also true where there is nothing to lock.
bool CFileLock::Acquire(bool bCreate)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(s_nWaitMs.load());
    const int nKind = (m_eLock == ELock::eShared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    for (;;)
    {
        if (!Open(bCreate))
        {
            m_bNew = m_bMissing;
            return true;
        }
        const bool bLocked = IsCovered() || flock(m_File.Get(), nKind) == 0;
        if (bLocked && !IsStillThere(m_File.Get(), m_sNative))
            continue;
        if (bLocked || (errno != EWOULDBLOCK && errno != EINTR))
        {
            m_bNew = m_bMissing && IsEmptyStill();
            return true;
        }
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(c_Pause);
    }
}

void CFileLock::GiveUp()
{
    const std::string sHolder = HolderOf(m_File.Get());
    m_sProblem = m_sNative + " is being read or written by " +
                 (sHolder.empty() ? "another program" : sHolder) + ". Please try again when it has ended.";
    // Where a link leads to, not the link. A writer that has the lock by now opens it anew.
    if (m_bMissing && IsEmptyStill() && IsStillThere(m_File.Get(), m_sNative))
        unlink(ResolvedPath(m_sNative).c_str());
    m_File.Close();
}

CFileLock::~CFileLock()
{
    // Mostly the last one; a lock may also be ended before one that was taken later.
    for (CFileLock** ppLock = &s_pLast; *ppLock; ppLock = &(*ppLock)->m_pBefore)
    {
        if (*ppLock != this)
            continue;
        *ppLock = m_pBefore;
        return;
    }
}

CFileHold::CFileHold(const std::string& sPath)
    : m_sPath(sPath),
      m_Lock(sPath, ELock::eExclusive),
      m_Version(FileVersion(sPath))
{
}

std::string CFileHold::FindChange() const
{
    if (FileVersion(m_sPath) == m_Version)
        return std::string();
    return DisplayPath(m_sPath) +
           " has been changed by another program since it was read. It was left as it is "
           "now. Please try again.";
}
