// Writes that fail: at every size of the file, from the first byte on, and where nothing may be written. The
// old content stays or can be had back, and a packed file stays as it was.

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

#include "FaultBench.h"
#include "app/Recovery.h"
#include "platform/ReplacingFile.h"
#include "support/EditWalk.h"

namespace
{
// No file grows beyond nBytes: the write that would make it ends as on a full disk.
class CSizeLimit
{
public:
    explicit CSizeLimit(size_t nBytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_Old);
        m_pfnOld = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {nBytes, m_Old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_Old);
        std::signal(SIGXFSZ, m_pfnOld);
    }

private:
    rlimit m_Old = {};
    void (*m_pfnOld)(int) = nullptr;
};

// Nobody in particular, where the tests run as one who may do everything.
class CPlainUser
{
public:
    CPlainUser() : m_nUser(geteuid()) { m_bPlain = m_nUser != 0 || seteuid(65534) == 0; }
    ~CPlainUser()
    {
        if (m_nUser == 0)
        {
            EXPECT_EQ(0, seteuid(0));
        }
    }
    bool m_bPlain;

private:
    uid_t m_nUser;
};
} // namespace

TEST(FullDisk, ASaveThatFailsInTheMiddleLosesNothing)
{
    for (const char* pszName : {"file.Fx00a", "file.Fx00c"})
    {
        CFaultBench bench;
        const std::string sOld = bench.MakeFile(pszName, 2, "Old");
        auto pApp = bench.StartWith(pszName, 3, "New");
        const size_t nStep = sOld.size() / 40;
        size_t nLimit = 0, nFailed = 0;
        for (;; nLimit += nStep)
        {
            const bool bNew = nFailed % 4 == 3; // to a name that isn't there yet
            if (bNew)
                std::filesystem::remove(bench.path(pszName));
            else
                WriteBytes(bench.path(pszName), sOld);
            std::filesystem::remove_all(bench.dir.path("backups"));
            bench.prompts.m_nFailures = 0;
            bool bSaved = false;
            {
                const CSizeLimit limit(nLimit);
                bSaved = pApp->SaveEffectFile();
            }
            if (bSaved)
                break;
            ++nFailed;
            EXPECT_EQ(1, bench.prompts.m_nFailures);
            EXPECT_TRUE(bNew ? !std::filesystem::exists(bench.path(pszName)) : bench.CanHave(pszName, sOld))
                << "limit " << nLimit << " of " << sOld.size();
        }
        EXPECT_GT(nFailed, 40u);
        pApp.reset(); // two can't share the plug-in
        const std::string sNew = ReadBytes(bench.path(pszName));
        EXPECT_GE(nLimit, sNew.size()) << "a save that couldn't write all of it was told as done";
        EXPECT_EQ(sNew, bench.MakeFile("again" + std::string(pszName), 3, "New"));
        EXPECT_TRUE(bench.Start()->OpenEffectFile(bench.path(pszName).c_str()));
    }
}

TEST(FullDisk, APackThatFailsInTheMiddleIsToldAndTheOldFileStands)
{
    CFaultBench bench;
    const auto pApp = bench.StartWith("file.Fx00a", 3, "New");
    ASSERT_TRUE(pApp->PackEffects());
    const std::string sPacked = ReadBytes(bench.path("file.Fx00p"));
    for (size_t nLimit = 0; nLimit < sPacked.size(); nLimit += 13)
    {
        bench.prompts.m_nFailures = 0;
        {
            const CSizeLimit limit(nLimit);
            EXPECT_FALSE(pApp->PackEffects()) << nLimit;
        }
        EXPECT_EQ(1, bench.prompts.m_nFailures);
        EXPECT_TRUE(sPacked == ReadBytes(bench.path("file.Fx00p"))) << nLimit;
        for (const auto& entry : std::filesystem::directory_iterator(bench.dir.path("game")))
            EXPECT_FALSE(entry.path().filename().string().starts_with(c_szSafeWritePrefix)) << entry.path();
    }
    EXPECT_TRUE(pApp->PackEffects());
    EXPECT_EQ(sPacked, ReadBytes(bench.path("file.Fx00p")));
}

TEST(FullDisk, StepsThatHaveNoRoomInTheJournalFollowLater)
{
    CFaultBench bench;
    bench.MakeFile("fire.Fx00a", 2, "Fire");
    CEmberdeckApp app({bench.prompts, *bench.profile, bench.sourceControl, nullptr, nullptr,
                       bench.dir.path("backups"), bench.dir.path("journals")});
    app.Start();
    ASSERT_TRUE(app.OpenEffectFile(bench.path("fire.Fx00a").c_str()));
    int nTold = 0;
    app.Journal().m_OnProblem = [&nTold](const std::string&) { ++nTold; };
    CEditWalk walk(app, 7);
    while (app.Journal().GetStem().empty())
        walk.EditOnce();
    {
        const CSizeLimit limit(std::filesystem::file_size(app.Journal().GetStem() + ".journal") + 1500);
        for (int i = 0; i < 40; ++i)
            walk.EditOnce();
        EXPECT_FALSE(app.Journal().IsWhole());
    }
    EXPECT_EQ(1, nTold);
    while (!app.Journal().IsWhole())
        walk.EditOnce();
    const std::string sCopy = bench.dir.path("crash");
    std::filesystem::copy(bench.dir.path("journals"), sCopy);
    const auto entries = CJournalStore(sCopy).List();
    ASSERT_EQ(1u, entries.size());
    CReplayedJournal replayed;
    ASSERT_TRUE(ReplayJournal(entries[0], app.m_EffectModule, replayed));
    EXPECT_EQ(app.History().GetNumSteps(), replayed.m_nSteps);
    ASSERT_TRUE(SaveLibraryImage(bench.path("back.Fx00a").c_str(), *replayed.m_pNow));
    EXPECT_EQ(walk.Text(), ReadBytes(bench.path("back.Fx00a")));
}

TEST(FullDisk, AWriteThatFailsAtOnceIsTold)
{
    CFaultBench bench;
    const std::string sOld = bench.MakeFile("locked.Fx00a", 1, "Old");
    const auto pApp = bench.StartWith("file.Fx00a", 1, "New");
    const auto ExpectFailure = [&](const std::string& sName)
    {
        pApp->m_sFileName = bench.path(sName);
        bench.prompts.m_nFailures = 0;
        EXPECT_FALSE(pApp->SaveEffectFile()) << sName;
        EXPECT_FALSE(pApp->PackEffects()) << sName;
        EXPECT_EQ(2, bench.prompts.m_nFailures) << sName;
    };
    for (const char* pszName : {"full.Fx00a", "full.Fx00c", "full.Fx00p"})
        std::filesystem::create_symlink("/dev/full", bench.path(pszName));
    ExpectFailure("full.Fx00a");
    ExpectFailure("full.Fx00c");
    ExpectFailure("missing/file.Fx00a");
    std::filesystem::create_directories(bench.path("folder.Fx00a"));
    std::filesystem::create_directories(bench.path("folder.Fx00p"));
    ExpectFailure("folder.Fx00a");

    bench.dir.write("game/locked.Fx00p", "old");
    namespace fs = std::filesystem;
    for (const char* pszName : {"locked.Fx00a", "locked.Fx00p"})
        fs::permissions(bench.path(pszName), fs::perms::owner_read | fs::perms::others_read);
    // The way to the files stays open to anybody.
    fs::permissions(bench.dir.dir(), fs::perms::others_read | fs::perms::others_exec, fs::perm_options::add);
    {
        const CPlainUser user;
        if (user.m_bPlain)
            ExpectFailure("locked.Fx00a");
    }
    EXPECT_EQ(sOld, ReadBytes(bench.path("locked.Fx00a")));
    EXPECT_EQ("old", ReadBytes(bench.path("locked.Fx00p")));
}

TEST(FullDisk, ASaveThroughALinkToNothingLeavesTheLink)
{
    CFaultBench bench;
    std::filesystem::create_symlink("elsewhere.Fx00a", bench.path("link.Fx00a"));
    const auto pApp = bench.StartWith("link.Fx00a", 1, "New");
    {
        const CSizeLimit limit(100);
        EXPECT_FALSE(pApp->SaveEffectFile());
    }
    EXPECT_TRUE(std::filesystem::is_symlink(bench.path("link.Fx00a")));
    EXPECT_FALSE(bench.dir.has("game/elsewhere.Fx00a"));
    EXPECT_TRUE(pApp->SaveEffectFile());
    EXPECT_TRUE(std::filesystem::is_symlink(bench.path("link.Fx00a")));
    EXPECT_TRUE(bench.dir.has("game/elsewhere.Fx00a"));
}
