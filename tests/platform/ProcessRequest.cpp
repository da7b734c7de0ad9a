#include "platform/FileMode.h"
#include "platform/Process.h"

#include <chrono>
#include <csignal>

#include "platform/Files.h"
#include "support/TempDir.h"

TEST(ProcessRequest, ChangesTheEnvironmentAndHasNoTerminal)
{
    setenv("EMBER_SET", "before", 1);
    setenv("EMBER_GONE", "x", 1);
    CProcessRequest request;
    request.m_sProgram = "sh";
    request.m_Arguments = {"-c",
                           "echo \"$EMBER_SET|${EMBER_GONE-unset}|$EMBER_NEW|${PATH:+path}\"; : < /dev/tty"};
    request.m_Environment = {"EMBER_SET=after", "EMBER_GONE", "EMBER_NEW=a=b"};
    const CProcessResult result = RunProcess(request);
    EXPECT_EQ("after|unset|a=b|path\n", result.m_sOutput);
    EXPECT_NE(0, result.m_nExitCode);
    EXPECT_STREQ("before", getenv("EMBER_SET"));
    unsetenv("EMBER_SET");
    unsetenv("EMBER_GONE");
}

TEST(ProcessRequest, StoppedProgramMayCleanUpAndAStubbornOneIsEnded)
{
    CTempDir dir;
    int nAsked = 0;
    CProcessRequest request;
    request.m_sProgram = "sh";
    request.m_sDirectory = dir.dir();
    request.m_nGraceMs = 300;
    request.m_KeepGoing = [&] { return ++nAsked < 5 || !dir.has("ready"); };
    request.m_Arguments = {"-c", "trap 'echo clean; exit 7' TERM; : > ready; while :; do sleep 0.05; done"};
    CProcessResult result = RunProcess(request);
    EXPECT_TRUE(result.m_bStopped && !result.m_bTimedOut);
    EXPECT_EQ(7, result.m_nExitCode);
    EXPECT_EQ("clean\n", result.m_sOutput);

    const auto begin = std::chrono::steady_clock::now();
    request.m_KeepGoing = nullptr;
    request.m_nTimeoutMs = 200;
    request.m_Arguments = {"-c", "trap '' TERM; while :; do sleep 0.05; done"};
    result = RunProcess(request);
    EXPECT_TRUE(result.m_bTimedOut && !result.m_bStopped);
    EXPECT_EQ(128 + SIGKILL, result.m_nExitCode);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST(FileMode, GivesTheOwnerTheRightToWrite)
{
    CTempDir dir;
    const std::string sFile = dir.write("Sub/File", "x");
    std::filesystem::permissions(sFile, std::filesystem::perms(0444));
    EXPECT_TRUE(MakeFileWritable(dir.dir() + "\\sub\\file"));
    EXPECT_EQ(std::filesystem::perms(0644), std::filesystem::status(sFile).permissions());
    EXPECT_TRUE(MakeFileWritable(sFile));
    EXPECT_FALSE(MakeFileWritable(dir.path("none")));
    EXPECT_FALSE(MakeFileWritable("C:\\x"));
}
