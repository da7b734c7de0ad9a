// An editor is killed at random moments of its work. Every step that had returned comes back, and no half step.

#include <cstdlib>
#include <map>
#include <random>

#include "FaultBench.h"
#include "ShortLife.h"
#include "app/Recovery.h"
#include "app/StoreNames.h"
#include "platform/Process.h"

namespace
{
constexpr const char* c_szEdits = "150";

// What the editor has printed, until it ended or was killed after that time; 0: it ends by itself.
std::string RunEditor(const CTempDir& dir, const std::string& sFile, int nSeed, bool bTexts,
                      std::chrono::microseconds life)
{
    const std::string sOutput = dir.path("output");
    WriteBytes(sOutput, ""); // one that is killed at once has printed nothing
    const std::string sTemporary = "TMPDIR=" + dir.dir();
    std::vector<std::string> arguments = {EMBERDECK_JOURNAL_EDITOR, sFile,
                                          dir.path("state/emberdeck/journals"), std::to_string(nSeed),
                                          c_szEdits};
    if (bTexts)
        arguments.emplace_back("texts");
    const int nStatus = RunForAWhile(arguments, sTemporary, life, sOutput);
    EXPECT_TRUE(life.count() != 0 || (WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0)) << nStatus;
    return ReadBytes(sOutput);
}
CProcessResult Recover(const CTempDir& dir, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"recover", "--journals"});
    CProcessRequest request;
    request.m_sProgram = EMBERDECK_BIN_DIR "/emberdeck-batch";
    request.m_Arguments = std::move(arguments);
    request.m_Environment = {"XDG_STATE_HOME=" + dir.path("state")};
    request.m_nTimeoutMs = 60000;
    return RunProcess(request);
}
} // namespace

TEST(KilledEditor, EveryStepThatHadReturnedComesBack)
{
    CFaultBench bench;
    bench.MakeFile("fire.Fx00a", 4, "Fire");
    const std::string sFile = bench.path("fire.Fx00a");
    const auto pApp = bench.Start();
    ASSERT_TRUE(pApp->OpenEffectFile(sFile.c_str())); // for the types
    std::mt19937_64 random(std::random_device{}());

    const char* pszKills = std::getenv("EMBERDECK_KILLS");
    const int nKills = pszKills ? std::atoi(pszKills) : 30;
    int nWithSteps = 0;
    for (int nSeed = 0; nSeed * 10 < nKills; ++nSeed)
    {
        std::map<uint64_t, std::string> texts;
        std::istringstream lines(RunEditor(bench.dir, sFile, nSeed, true, {}));
        uint64_t nStep = 0;
        for (std::string sHash; lines >> nStep >> sHash;)
            texts[nStep] = sHash;
        ASSERT_GT(texts.size(), 50u);
        const auto start = std::chrono::steady_clock::now();
        RunEditor(bench.dir, sFile, nSeed, false, {});
        const auto whole =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
        for (int i = 0; i < 10; ++i)
        {
            std::filesystem::remove_all(bench.dir.path("state/emberdeck/journals"));
            const std::chrono::microseconds life(1 + random() % static_cast<uint64_t>(whole.count()));
            const std::string sTold = RunEditor(bench.dir, sFile, nSeed, false, life);
            const size_t nLast = sTold.size() < 2 ? 0 : sTold.rfind('\n', sTold.size() - 2) + 1;
            const uint64_t nTold = static_cast<uint64_t>(std::atoi(sTold.substr(nLast).c_str()));
            const auto entries = CJournalStore(bench.dir.path("state/emberdeck/journals")).List();
            if (nTold == 0)
                continue;
            ++nWithSteps;
            ASSERT_EQ(1u, entries.size()) << nSeed << " " << nTold;
            CReplayedJournal replayed;
            ASSERT_TRUE(ReplayJournal(entries[0], pApp->m_EffectModule, replayed)) << replayed.m_sProblem;
            ASSERT_GE(replayed.m_nSteps, nTold);
            ASSERT_TRUE(SaveLibraryImage(bench.path("back.Fx00a").c_str(), *replayed.m_pNow));
            ASSERT_EQ(texts[replayed.m_nSteps], HashOf(ReadBytes(bench.path("back.Fx00a"))))
                << nSeed << " " << replayed.m_nSteps << " " << nTold;
        }
    }
    std::printf("%d kills, %d of them behind a step\n", nKills, nWithSteps);
    EXPECT_GT(nWithSteps, nKills / 10);
}

TEST(KilledEditor, TheBatchCommandListsAndBringsBackItsWork)
{
    CFaultBench bench;
    const std::string sOld = bench.MakeFile("fire.Fx00a", 4, "Fire");
    const std::string sFile = bench.path("fire.Fx00a");
    EXPECT_EQ(1, Recover(bench.dir, {sFile}).m_nExitCode);
    EXPECT_EQ("There is no unsaved work\n", Recover(bench.dir, {"--list"}).m_sOutput);
    const std::string sTexts = RunEditor(bench.dir, sFile, 1, true, {});
    const std::string sHash = sTexts.substr(sTexts.rfind(' ') + 1, c_nHashDigits);

    CProcessResult result = Recover(bench.dir, {"--list"});
    EXPECT_EQ(0, result.m_nExitCode);
    EXPECT_TRUE(result.m_sOutput.starts_with("1  ") && result.m_sOutput.ends_with("fire.Fx00a\n"))
        << result.m_sOutput;
    EXPECT_NE(std::string::npos, result.m_sOutput.find(" changes  "));
    EXPECT_EQ(1, Recover(bench.dir, {sFile, "--copy", "2"}).m_nExitCode);
    EXPECT_EQ(2, Recover(bench.dir, {sFile, "--drop"}).m_nExitCode) << "of which one?";

    // Onto a file that somebody else has written meanwhile, too.
    WriteBytes(sFile, sOld + "\r\n");
    result = Recover(bench.dir, {sFile});
    EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    EXPECT_EQ(sHash, HashOf(ReadBytes(sFile)));
    EXPECT_EQ("There is no unsaved work\n", Recover(bench.dir, {"--list"}).m_sOutput);

    // A damaged end: the part is saved under the other name, the rest stays, and goes by request.
    WriteBytes(sFile, sOld);
    RunEditor(bench.dir, sFile, 1, false, {});
    const auto entries = CJournalStore(bench.dir.path("state/emberdeck/journals")).List();
    ASSERT_EQ(1u, entries.size());
    const std::string sJournal = ReadBytes(entries[0].m_sStem + ".journal");
    WriteBytes(entries[0].m_sStem + ".journal", sJournal.substr(0, sJournal.size() - 5));
    const std::string sOut = bench.path("back.Fx00a");
    result = Recover(bench.dir, {sFile, "-o", sOut});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_NE(std::string::npos, result.m_sErrors.find("a part of the unsaved work")) << result.m_sErrors;
    EXPECT_EQ(sOld, ReadBytes(sFile));
    EXPECT_NE(sOld, ReadBytes(sOut));
    EXPECT_EQ(0, Recover(bench.dir, {"--copy", "1", "--drop"}).m_nExitCode);
    EXPECT_EQ(1, Recover(bench.dir, {sFile}).m_nExitCode);
}
