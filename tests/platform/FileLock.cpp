#include "platform/FileLock.h"

#include <filesystem>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "platform/Files.h"
#include "support/TempDir.h"

namespace
{
struct CShortWait
{
    CShortWait() { CFileLock::SetWait(std::chrono::milliseconds(150)); }
    ~CShortWait() { CFileLock::SetWait(std::chrono::seconds(10)); }
};

// Another process that holds a lock until it is let go.
class CHolder
{
public:
    CHolder(const std::string& sPath, ELock eLock)
    {
        int nReady[2];
        EXPECT_TRUE(pipe(nReady) == 0 && pipe(m_nEnd) == 0);
        m_nChild = fork();
        if (m_nChild == 0)
        {
            close(m_nEnd[1]);
            const CFileLock lock(sPath, eLock);
            char c = lock.IsHeld() ? 1 : 0;
            if (write(nReady[1], &c, 1) == 1)
                c = static_cast<char>(read(m_nEnd[0], &c, 1));
            _exit(0);
        }
        char cHeld = 0;
        EXPECT_TRUE(read(nReady[0], &cHeld, 1) == 1 && cHeld == 1);
        for (const int nFile : {nReady[0], nReady[1], m_nEnd[0]})
            close(nFile);
    }
    ~CHolder() { LetGo(); }
    void LetGo()
    {
        if (m_nChild <= 0)
            return;
        close(m_nEnd[1]);
        waitpid(m_nChild, nullptr, 0);
        m_nChild = 0;
    }
    pid_t m_nChild = 0;

private:
    int m_nEnd[2] = {};
};
} // namespace

TEST(FileLock, ReadersShareAndAWriterIsAlone)
{
    const CTempDir dir;
    const std::string sFile = dir.write("a.Fx00a", "x");
    const CShortWait wait;
    {
        const CHolder reader(sFile, ELock::eShared);
        EXPECT_TRUE(CFileLock(sFile, ELock::eShared).IsHeld());
        const CFileLock writer(sFile, ELock::eExclusive);
        EXPECT_FALSE(writer.IsHeld());
        // Who it is, where the machine tells of this process at all.
        EXPECT_NE(std::string::npos, writer.GetProblem().find("a.Fx00a is being read or written by "));
        if (writer.GetProblem().find("another program") == std::string::npos)
        {
            EXPECT_NE(std::string::npos,
                      writer.GetProblem().find("(process " + std::to_string(reader.m_nChild) + ")"))
                << writer.GetProblem();
        }
    }
    const CHolder writer(sFile, ELock::eExclusive);
    EXPECT_FALSE(CFileLock(sFile, ELock::eShared).IsHeld());
}

TEST(FileLock, AThreadLocksAgainWhatItHolds)
{
    const CTempDir dir;
    const std::string sFile = dir.write("a", "x");
    const CShortWait wait;
    const auto isFreeForOthers = [&](ELock eLock)
    {
        bool bHeld = false;
        std::thread([&] { bHeld = CFileLock(sFile, eLock).IsHeld(); }).join();
        return bHeld;
    };
    auto pHold = std::make_unique<CFileHold>(sFile);
    {
        const CFileLock reader(sFile, ELock::eShared), writer(sFile, ELock::eExclusive, true);
        EXPECT_TRUE(reader.IsHeld() && writer.IsHeld());
        EXPECT_FALSE(writer.IsNew());
    }
    EXPECT_FALSE(isFreeForOthers(ELock::eShared)) << "the inner ones have taken the outer one along";
    EXPECT_EQ("", pHold->FindChange());
    EXPECT_TRUE(WriteFileSafely(sFile, "y"));
    EXPECT_NE(std::string::npos, pHold->FindChange().find("/a has been changed by another program"));
    pHold.reset();
    const CFileLock reader(sFile, ELock::eShared);
    EXPECT_TRUE(isFreeForOthers(ELock::eShared));
    EXPECT_FALSE(isFreeForOthers(ELock::eExclusive));
}

TEST(FileLock, WaitsForItsTurnAndKnowsAReplacedFile)
{
    const CTempDir dir;
    const std::string sFile = dir.write("a", "x");
    CHolder holder(sFile, ELock::eExclusive);
    std::thread end(
        [&]
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            EXPECT_TRUE(WriteFileSafely(sFile, "another file of this name"));
            holder.LetGo();
        });
    const CFileLock lock(sFile, ELock::eExclusive);
    end.join();
    EXPECT_TRUE(lock.IsHeld());
    const CShortWait wait;
    const pid_t nChild = fork();
    if (nChild == 0)
        _exit(CFileLock(sFile, ELock::eShared).IsHeld() ? 1 : 0); // of the new one, too
    int nStatus = 0;
    waitpid(nChild, &nStatus, 0);
    EXPECT_EQ(0, nStatus);

    // What isn't there can't be locked, unless it is to be made.
    EXPECT_TRUE(CFileLock(dir.path("none"), ELock::eExclusive).IsHeld());
    EXPECT_FALSE(dir.has("none"));
    EXPECT_TRUE(CFileLock(dir.path("none"), ELock::eExclusive, true).IsHeld());
    EXPECT_TRUE(dir.has("none"));
    EXPECT_TRUE(CFileLock(dir.path("no folder/none"), ELock::eExclusive, true).IsHeld());
}
