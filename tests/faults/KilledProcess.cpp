// The batch program is killed at random moments of everything that it writes. Afterwards the old or the new content is
// there, whole: in the file, or in the copy that `recover` finds; and the next run leaves nothing of ours behind.

#include <cstdlib>
#include <random>

#include "FaultBench.h"
#include "ShortLife.h"
#include "platform/ReplacingFile.h"

namespace
{
using CClock = std::chrono::steady_clock;

// Of each job; the environment says another number for a long run.
int NumKills()
{
    const char* pszKills = std::getenv("EMBERDECK_KILLS");
#ifdef EMBERDECK_SANITIZED
    return pszKills ? std::atoi(pszKills) : 6;
#else
    return pszKills ? std::atoi(pszKills) : 20;
#endif
}

// Runs emberdeck-batch with its settings below sHome, and kills it after that time; 0: lets it end. Whether it
// ended by itself and well.
bool RunBatch(const std::string& sHome, std::vector<std::string> arguments, std::chrono::microseconds life)
{
    arguments.insert(arguments.begin(), {EMBERDECK_BIN_DIR "/emberdeck-batch", "--quiet"});
    const int nStatus = RunForAWhile(arguments, "XDG_STATE_HOME=" + sHome, life);
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

// A job that writes one file.
struct CVictim
{
    const char* m_pszName;
    const char* m_pszTarget;
    bool m_bInPlace; // cut by a kill, it has to be recovered
    // The job that gives the file one of two contents, 0 or 1.
    std::function<std::vector<std::string>(int n)> m_Arguments;
    // What stands there before; by default the other one.
    std::function<std::string(int n)> m_Old = {};
};

struct CKillBench : CFaultBench
{
    CKillBench()
    {
        for (const char* pszName : {"0.Fx00a", "1.Fx00a", "0.Fx00c", "1.Fx00c"})
            MakeFile(pszName, 120, std::string(1, *pszName));
        m_Random.seed(std::random_device{}());
    }
    bool Run(const std::vector<std::string>& arguments, std::chrono::microseconds life = {})
    {
        return RunBatch(dir.path("state"), arguments, life);
    }
    std::string Left() const
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.dir()))
            if (entry.path().filename().string().starts_with(c_szSafeWritePrefix))
                return entry.path();
        return std::string();
    }
    std::chrono::microseconds Moment()
    {
        const uint64_t nMost = static_cast<uint64_t>(m_Whole.count() * 5 / 4);
        return std::chrono::microseconds(1 + m_Random() % std::max<uint64_t>(nMost, 1));
    }
    // Does it undisturbed, and takes its time.
    std::string DoIt(const CVictim& victim, int n)
    {
        const auto start = CClock::now();
        EXPECT_TRUE(Run(victim.m_Arguments(n))) << victim.m_pszName;
        m_Whole = std::chrono::duration_cast<std::chrono::microseconds>(CClock::now() - start);
        EXPECT_EQ("", Left()) << victim.m_pszName;
        return ReadBytes(path(victim.m_pszTarget));
    }
    // Killed recoveries do no harm, either: the next one brings back what was sound last.
    void Recover(const std::string& sFile, const std::string& sCut, const std::string& sOld)
    {
        for (int i = 0; i < 3; ++i)
        {
            Run({"recover", sFile}, Moment());
            const std::string sBetween = ReadBytes(sFile);
            ASSERT_TRUE(sBetween == sCut || sBetween == sOld);
            WriteBytes(sFile, sCut);
        }
        ASSERT_TRUE(Run({"recover", sFile}));
        ASSERT_TRUE(ReadBytes(sFile) == sOld);
    }
    void Kill(const CVictim& victim);

private:
    std::mt19937_64 m_Random;
    std::chrono::microseconds m_Whole{0};
};

void CKillBench::Kill(const CVictim& victim)
{
    const std::string sFile = path(victim.m_pszTarget);
    std::string content[2];
    for (int n : {1, 0})
    {
        if (victim.m_Old)
            WriteBytes(sFile, victim.m_Old(n));
        content[n] = DoIt(victim, n);
    }
    ASSERT_TRUE(content[0] != content[1]);
    int nNew = 0, nCut = 0;
    const int nKills = NumKills();
    for (int i = 0; i < nKills; ++i)
    {
        const int n = 1 - i % 2;
        const std::string sOld = victim.m_Old ? victim.m_Old(n) : content[1 - n];
        WriteBytes(sFile, sOld);
        Run(victim.m_Arguments(n), Moment());
        const std::string sFound = ReadBytes(sFile);
        nNew += sFound == content[n] ? 1 : 0;
        if (sFound != sOld && sFound != content[n])
        {
            ++nCut;
            ASSERT_TRUE(victim.m_bInPlace) << victim.m_pszName << " was cut";
            ASSERT_NO_FATAL_FAILURE(Recover(sFile, sFound, sOld)) << victim.m_pszName;
        }
        WriteBytes(sFile, sOld);
        ASSERT_TRUE(DoIt(victim, n) == content[n]) << victim.m_pszName;
    }
    std::printf("%s: %d kills within %lld us, %d times the new, %d cut and recovered\n", victim.m_pszName,
                nKills, static_cast<long long>(m_Whole.count()), nNew, nCut);
}
} // namespace

TEST(KilledProcess, LeavesTheOldOrTheNew)
{
    CKillBench bench;
    const auto pApp = bench.Start();
    ASSERT_TRUE(pApp->OpenEffectFile(bench.path("0.Fx00a").c_str())); // for the types
    const auto source = [&](int n, const char* pszForm) { return bench.path(std::to_string(n) + pszForm); };
    const auto toFile = [&](const char* pszCommand, const char* pszForm, const char* pszTarget)
    {
        return [=, &bench](int n) {
            return std::vector<std::string>{pszCommand, source(n, pszForm), bench.path(pszTarget)};
        };
    };
    // What is saved over itself has another form before.
    const auto loose = [&](int n) { return ReadBytes(source(n, ".Fx00a")) + "\r\n"; };
    std::filesystem::create_directory(bench.path("own"));
    const CVictim victims[] = {
        {"save as text", "file.Fx00a", true, toFile("convert", ".Fx00a", "file.Fx00a")},
        {"save compressed", "file.Fx00c", true, toFile("convert", ".Fx00a", "file.Fx00c")},
        {"update", "own/x.Fx00a", true,
         [&](int) {
             return std::vector<std::string>{"update", bench.path("own")};
         },
         loose},
        {"convert onto itself", "self.Fx00a", true,
         [&](int) {
             return std::vector<std::string>{"convert", bench.path("self.Fx00a"), bench.path("self.Fx00a")};
         },
         loose},
        {"compress", "file.z", false, toFile("compress", ".Fx00a", "file.z")},
        {"decompress", "file.t", false, toFile("decompress", ".Fx00c", "file.t")},
        {"pack", "file.Fx00p", false,
         [&](int n) {
             return std::vector<std::string>{"pack", source(n, ".Fx00a"), "-o", bench.path("file.Fx00p")};
         }},
        // Each brings back what the one before has replaced.
        {"recover", "file.Fx00a", false,
         [&](int) {
             return std::vector<std::string>{"recover", bench.path("file.Fx00a")};
         }},
    };
    for (const CVictim& victim : victims)
        ASSERT_NO_FATAL_FAILURE(bench.Kill(victim));
}
