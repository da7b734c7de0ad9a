#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/FileHandle.h"
#include "platform/Files.h"

enum class ELock
{
    eShared,    // for reading: others may read
    eExclusive, // for writing: nobody else may do either
};

// Keeps programs of this kind off a file while one of them reads or writes it in place. The lock is advisory and of
// the machine: it ends with its holder, however that ends. What the thread has locked already it may lock again, for
// as long as the first lock lives: so whoever reads and then writes holds the file over both. Only from a shared lock
// there is no way to an exclusive one, which would wait for the first.
class CFileLock
{
public:
    // Waits for another program as long as SetWait says. With bCreate a file that isn't there is made, empty; it goes
    // again when the lock can't be had. Without, there is nothing to lock, and the lock counts as held. So it does
    // where the file system knows no locks, or the file can't be opened: whoever works on it will meet that.
    CFileLock(const std::string& sPath, ELock eLock, bool bCreate = false);
    ~CFileLock(); // in the thread that made it
    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

    bool IsHeld() const { return m_sProblem.empty(); }
    // Why it isn't held: a sentence that names the file and, where the machine tells, who has it.
    const std::string& GetProblem() const { return m_sProblem; }
    // With bCreate: there was no file, and none with anything in it came before the lock was there. Whoever then fails
    // to write it removes it.
    bool IsNew() const { return m_bNew; }

    // Whether another program reads or writes the file so that it can't be read right now; asked
    // without waiting. False also for what isn't there.
    static bool IsInUse(const std::string& sPath);

    // Ten seconds by default, for the whole program; tests have less time.
    static void SetWait(std::chrono::milliseconds wait);

private:
    bool Acquire(bool bCreate);
    bool Open(bool bCreate);
    bool IsCovered() const;
    bool IsEmptyStill() const;
    void GiveUp();

    ELock m_eLock;
    std::string m_sNative;
    CFileHandle m_File;
    std::string m_sProblem;
    bool m_bMissing = false; // when it was asked for
    bool m_bNew = false;

    // Which file, of what process, and the lock that this thread had taken before this one.
    uint64_t m_nDevice = 0;
    uint64_t m_nFile = 0;
    int m_nProcess = 0;
    CFileLock* m_pBefore = nullptr;
};

// Holds a file from the moment before it is read until what came of that is written over it. Nobody who asks for
// locks writes it in between; somebody who doesn't ask is found out before his work would be lost.
class CFileHold
{
public:
    explicit CFileHold(const std::string& sPath);

    bool IsHeld() const { return m_Lock.IsHeld(); }
    const std::string& GetProblem() const { return m_Lock.GetProblem(); }
    const std::string& GetPath() const { return m_sPath; }
    // Empty as long as the file is the one that was there; else a sentence that names it.
    std::string FindChange() const;

private:
    std::string m_sPath;
    CFileLock m_Lock;
    CFileVersion m_Version;
};
