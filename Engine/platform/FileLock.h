#pragma once

#include <chrono>
#include <string>

#include "platform/FileHandle.h"

enum class ELock
{
    eShared,    // for reading: others may read
    eExclusive, // for writing: nobody else may do either
};

// Keeps programs of this kind off a file while one of them reads or writes it in place. The lock is advisory and of
// the machine: it ends with its holder, however that ends. Never take two on one file in one thread: the second
// would wait for the first.
class CFileLock
{
public:
    // Waits for another program as long as SetWait says. With bCreate a file that isn't there is made, empty;
    // without, there is nothing to lock, and the lock counts as held. So it does where the file system knows no
    // locks, or the file can't be opened: whoever works on it will meet that.
    CFileLock(const std::string& sPath, ELock eLock, bool bCreate = false);

    bool IsHeld() const { return m_sProblem.empty(); }
    // Why it isn't held: a sentence that names the file and, where the machine tells, who has it.
    const std::string& GetProblem() const { return m_sProblem; }

    // Whether another program reads or writes the file so that it can't be read right now; asked
    // without waiting. False also for what isn't there.
    static bool IsInUse(const std::string& sPath);

    // Ten seconds by default, for the whole program; tests have less time.
    static void SetWait(std::chrono::milliseconds wait);

private:
    CFileHandle m_File;
    std::string m_sProblem;
};
