// The batch program is killed at random moments while it saves, packs and recovers. Afterwards the old or the
// new content is there, whole: in the file, or in the copy that `recover` finds.

#include <csignal>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

#include "FaultBench.h"
#include "platform/ReplacingFile.h"

namespace
{
using CClock = std::chrono::steady_clock;

#ifdef EMBERDECK_SANITIZED
constexpr int c_nKills = 100;
#else
constexpr int c_nKills = 1000;
#endif

// Runs emberdeck-batch with its settings below sHome, and kills it after that time; 0: lets it end. Whether it
// ended by itself and well.
bool RunBatch(const std::string& sHome, std::vector<std::string> arguments, std::chrono::microseconds life)
{
    arguments.insert(arguments.begin(), {EMBERDECK_BIN_DIR "/emberdeck-batch", "--quiet"});
    std::vector<char*> argv;
    for (std::string& sArgument : arguments)
        argv.push_back(sArgument.data());
    argv.push_back(nullptr);
    const std::string sState = "XDG_STATE_HOME=" + sHome;
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        char* const envp[] = {const_cast<char*>(sState.c_str()), nullptr};
        execve(argv[0], argv.data(), envp);
        _exit(127);
    }
    if (life.count() != 0)
    {
        usleep(static_cast<useconds_t>(life.count()));
        kill(nChild, SIGKILL);
    }
    int nStatus = 0;
    EXPECT_EQ(nChild, waitpid(nChild, &nStatus, 0));
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

struct CKillBench : CFaultBench
{
    CKillBench()
    {
        for (const char* pszName : {"a.Fx00a", "b.Fx00a"})
            MakeFile(pszName, 120, pszName);
    }
    bool Run(const std::vector<std::string>& arguments, std::chrono::microseconds life = {})
    {
        return RunBatch(dir.path("state"), arguments, life);
    }
    // How long it takes when nobody disturbs it.
    std::chrono::microseconds Measure(const std::vector<std::string>& arguments)
    {
        auto shortest = std::chrono::microseconds::max();
        for (int i = 0; i < 5; ++i)
        {
            const auto start = CClock::now();
            EXPECT_TRUE(Run(arguments));
            shortest = std::min(shortest,
                                std::chrono::duration_cast<std::chrono::microseconds>(CClock::now() - start));
        }
        return shortest;
    }
    bool HasLeftovers() const
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.dir()))
            if (entry.path().filename().string().starts_with(c_szSafeWritePrefix))
                return true;
        return false;
    }
    // One in some dozens is left alone, so that the contents change places on a busy machine, too.
    std::chrono::microseconds Moment(std::chrono::microseconds whole)
    {
        const uint64_t nMoment = 1 + m_Random() % static_cast<uint64_t>(whole.count() * 5 / 4);
        return std::chrono::microseconds(m_nMoments++ % 30 == 0 ? 0 : nMoment);
    }

    std::mt19937_64 m_Random{std::random_device{}()};
    int m_nMoments = 0;
};
} // namespace

TEST(KilledProcess, ASaveLeavesTheOldOrTheNew)
{
    for (const char* pszForm : {"file.Fx00a", "file.Fx00c"})
    {
        CKillBench bench;
        const std::string sFile = bench.path(pszForm);
        std::string content[2];
        for (int i = 0; i < 2; ++i)
        {
            ASSERT_TRUE(bench.Run({"convert", bench.path(i ? "b.Fx00a" : "a.Fx00a"), sFile}));
            content[i] = ReadBytes(sFile);
        }
        const auto whole = bench.Measure({"convert", bench.path("b.Fx00a"), sFile});
        int nNow = 1, nCut = 0, nNew = 0;
        for (int i = 0; i < c_nKills * 2 / 5; ++i)
        {
            bench.Run({"convert", bench.path(nNow ? "a.Fx00a" : "b.Fx00a"), sFile}, bench.Moment(whole));
            const std::string sFound = ReadBytes(sFile);
            if (sFound == content[1 - nNow])
            {
                nNow = 1 - nNow;
                ++nNew;
            }
            else if (sFound != content[nNow])
            {
                ++nCut;
                // Killed recoveries do no harm, either: the next one brings back what was sound last.
                for (int nKilled = 0; nKilled < 3; ++nKilled)
                {
                    bench.Run({"recover", sFile}, bench.Moment(whole));
                    const std::string sBetween = ReadBytes(sFile);
                    ASSERT_TRUE(sBetween == sFound || sBetween == content[nNow]);
                    WriteBytes(sFile, sFound);
                }
                ASSERT_TRUE(bench.Run({"recover", sFile}));
                ASSERT_TRUE(ReadBytes(sFile) == content[nNow]);
            }
        }
        std::printf("%s: %d kills in %lld us, %d times the new, %d cut and recovered\n", pszForm,
                    c_nKills * 2 / 5, static_cast<long long>(whole.count()), nNew, nCut);
        EXPECT_GT(nNew, 0);
    }
}

TEST(KilledProcess, APackLeavesTheOldOrTheNew)
{
    CKillBench bench;
    const auto pApp = bench.Start();
    ASSERT_TRUE(pApp->OpenEffectFile(bench.path("a.Fx00a").c_str())); // for the types
    const std::string sFile = bench.path("file.Fx00p");
    std::string content[2];
    for (int i = 0; i < 2; ++i)
    {
        ASSERT_TRUE(bench.Run({"pack", bench.path(i ? "b.Fx00a" : "a.Fx00a"), "-o", sFile}));
        content[i] = ReadBytes(sFile);
    }
    const auto whole = bench.Measure({"pack", bench.path("b.Fx00a"), "-o", sFile});
    int nNow = 1, nNew = 0;
    for (int i = 0; i < c_nKills / 5; ++i)
    {
        bench.Run({"pack", bench.path(nNow ? "a.Fx00a" : "b.Fx00a"), "-o", sFile}, bench.Moment(whole));
        const std::string sFound = ReadBytes(sFile);
        if (sFound == content[1 - nNow])
        {
            nNow = 1 - nNow;
            ++nNew;
        }
        ASSERT_TRUE(sFound == content[nNow]);
    }
    ASSERT_TRUE(bench.Run({"pack", bench.path("a.Fx00a"), "-o", sFile}));
    EXPECT_FALSE(bench.HasLeftovers()) << "a file that a killed run has left";
    std::printf("pack: %d kills in %lld us, %d times the new\n", c_nKills / 5,
                static_cast<long long>(whole.count()), nNew);
    EXPECT_GT(nNew, 0);
}
