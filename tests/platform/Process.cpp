#include "platform/Process.h"

#include <chrono>
#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/Files.h"
#include "support/WorkingDir.h"

using namespace std::chrono_literals;

namespace
{

std::string WaitForFile(const std::string& sPath)
{
    for (int i = 0; i < 1000 && !std::filesystem::exists(sPath); ++i)
        std::this_thread::sleep_for(5ms);
    return ReadBytes(sPath);
}

std::string Script(const CTempDir& folder, const std::string& sName, const std::string& sText)
{
    const std::string sPath = folder.write(sName, "#!/bin/sh\n" + sText);
    std::filesystem::permissions(sPath, std::filesystem::perms(0755));
    return sPath;
}

} // namespace

TEST(SplitCommandLine, CutsAtBlanksOutsideQuotes)
{
    using Words = std::vector<std::string>;
    EXPECT_EQ(Words(), SplitCommandLine(" \t "));
    EXPECT_EQ((Words{"-level", "fire pit", "", "a b", "\\x"}),
              SplitCommandLine("  -level \"fire pit\" \"\" a\" \"b\t\\x "));
    EXPECT_EQ((Words{"open quote "}), SplitCommandLine("\"open quote "));
}

TEST(StartProcess, RunsInItsDirectoryAndLeavesNoZombie)
{
    CTempDir folder;
    MakeDir(folder, "Work");
    Script(folder, "bin/game", "printf '%s|' \"$PWD\" \"$#\" \"$@\" > out.tmp && mv out.tmp out\n");
    const CWorkingDir here(folder.dir());
    // The path is seen from here, the directory counts in the child; the other system's ending is dropped.
    EXPECT_TRUE(StartProcess("bin\\Game.exe", {"a b", ""}, folder.dir() + "\\work"));
    EXPECT_EQ(folder.path("Work") + "|2|a b||", WaitForFile(folder.path("Work/out")));
    EXPECT_EQ(folder.dir(), std::filesystem::current_path().string());
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG)); // no child is left at all

    EXPECT_FALSE(StartProcess("bin/none", {}, ""));
    EXPECT_FALSE(StartProcess("", {}, ""));
    EXPECT_FALSE(StartProcess("bin/game", {}, folder.path("none")));
    EXPECT_FALSE(StartProcess("C:\\game.exe", {}, ""));
    EXPECT_FALSE(StartProcess(folder.write("text", "echo no shell"), {}, ""));
}

TEST(RunProcess, GivesBothOutputsAndTheExitCode)
{
    CTempDir folder;
    const std::string sFlood =
        Script(folder, "flood", "yes out | head -c 300000; yes err | head -c 300000 >&2; cat; exit 3\n");
    const CProcessResult result = RunProcess(sFlood, {}, "", 60000, 1000);
    EXPECT_TRUE(result.m_bStarted);
    EXPECT_EQ(3, result.m_nExitCode);
    EXPECT_EQ(1000u, result.m_sOutput.size());
    EXPECT_EQ("err\nerr\n", result.m_sErrors.substr(0, 8));
    EXPECT_EQ(folder.dir() + "\n", RunProcess("pwd", {}, folder.dir(), 0).m_sOutput);
    EXPECT_EQ(128 + SIGTERM, RunProcess("sh", {"-c", "kill $$"}, "", 60000).m_nExitCode);

    const CProcessResult missing = RunProcess("no-such-program-here", {}, "", 1000);
    EXPECT_FALSE(missing.m_bStarted);
    EXPECT_NE(std::string::npos, missing.m_sErrors.find("no-such-program-here"));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
}

TEST(RunProcess, EndsTheWholeGroupInTimeAndDoesNotWaitForHeldPipes)
{
    CTempDir folder;
    const auto begin = std::chrono::steady_clock::now();
    const std::string sSlow =
        Script(folder, "slow", "echo first; (sleep 60; echo late) & echo $! > pid; sleep 60\n");
    const CProcessResult result = RunProcess(sSlow, {}, folder.dir(), 300);
    EXPECT_TRUE(result.m_bTimedOut);
    EXPECT_EQ("first\n", result.m_sOutput);
    EXPECT_EQ(128 + SIGKILL, result.m_nExitCode);
    const pid_t nInner = std::stoi(ReadBytes(folder.path("pid")));
    bool bGone = false;
    for (int i = 0; i < 400 && !bGone; ++i, std::this_thread::sleep_for(5ms))
    {
        std::string sStat; // tells no size, and may be gone
        bGone = kill(nInner, 0) != 0 || !ReadWholeFile("/proc/" + std::to_string(nInner) + "/stat", sStat) ||
                sStat.find(") Z") != std::string::npos;
    }
    EXPECT_TRUE(bGone);

    const CProcessResult held = RunProcess("sh", {"-c", "sleep 5 & echo done"}, "", 60000);
    EXPECT_EQ("done\n", held.m_sOutput);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}
