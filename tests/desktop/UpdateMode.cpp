// The program's update mode, as a program of its own on the tests' desktop: it asks for each file.

#include <atomic>
#include <thread>

#include "desktop/DesktopBench.h"
#include "platform/Process.h"

namespace
{
// Answers every question with Escape, which is No.
CProcessResult UpdateBelow(const std::string& sFolder)
{
    CProcessResult result;
    std::atomic<bool> bEnded{false};
    std::thread program(
        [&]
        {
            result = RunProcess(EMBERDECK_BIN_DIR "/emberdeck", {"/UpdateFx", sFolder}, "", 60000);
            bEnded = true;
        });
    while (!bEnded)
    {
        Desktop::Key("Escape");
        Desktop::Settle({}, 50);
    }
    program.join();
    EXPECT_TRUE(result.m_bStarted && !result.m_bTimedOut);
    return result;
}
} // namespace

TEST(UpdateMode, SavesTheSoundFilesAndFailsOverTheOthers)
{
    const CTempDir dir;
    std::filesystem::copy(EMBERDECK_BIN_DIR "/bonfire-project", dir.dir(),
                          std::filesystem::copy_options::recursive);
    const std::string sWhole = ReadBytes(dir.path("bonfire.Fx00a"));
    const std::string sCut = sWhole.substr(0, sWhole.rfind("( effect\r\n"));
    dir.write("all/one.Fx00a", "; by hand\n" + sWhole);
    dir.write("all/cut.Fx00a", sCut);
    CProcessResult result = UpdateBelow(dir.path("all"));
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_NE(std::string::npos, result.m_sErrors.find("cut.Fx00a wasn't updated: it was cut"))
        << result.m_sErrors;
    EXPECT_TRUE(ReadBytes(dir.path("all/cut.Fx00a")) == sCut);
    EXPECT_TRUE(ReadBytes(dir.path("all/one.Fx00a")) == sWhole);

    // One that doesn't load: its box tells, and so does the status.
    std::filesystem::remove(dir.path("all/cut.Fx00a"));
    dir.write("all/two.Fx00a", "( header ( version 2 ) )");
    EXPECT_EQ(1, UpdateBelow(dir.path("all")).m_nExitCode);
    std::filesystem::remove(dir.path("all/two.Fx00a"));
    result = UpdateBelow(dir.path("all"));
    EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
}
