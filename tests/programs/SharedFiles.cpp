// Programs that meet at one file, and files that are none.

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/FileHandle.h"
#include "platform/FileLock.h"
#include "programs/Programs.h"

namespace
{
// A command that stands still when it tells of what it has read, until it is let go: nobody takes what it says.
class CHeldCommand
{
public:
    CHeldCommand(const CTempDir& dir, const std::string& sArguments) : m_sPipe(dir.path("errors"))
    {
        EXPECT_EQ(0, mkfifo(m_sPipe.c_str(), 0600));
        m_Pipe = CFileHandle(open(m_sPipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
        while (write(m_Pipe.Get(), "x", 1) == 1)
            continue;
        m_Command = std::thread(
            [this, sArguments]
            {
                m_Result = RunProcess(
                    "sh",
                    {"-c", "exec " EMBERDECK_BIN_DIR "/emberdeck-batch " + sArguments + " 2>" + m_sPipe}, "",
                    60000);
            });
    }
    // Its exit status, and what it said.
    int LetGo(std::string& sErrors)
    {
        std::atomic<bool> bEnded{false};
        std::thread reader(
            [&]
            {
                char szText[4096];
                for (ssize_t n = 0; (n = read(m_Pipe.Get(), szText, sizeof(szText))) > 0 || !bEnded;)
                {
                    if (n > 0)
                        sErrors.append(szText, static_cast<size_t>(n));
                    else
                        std::this_thread::sleep_for(std::chrono::milliseconds(5));
                }
            });
        m_Command.join();
        bEnded = true;
        reader.join();
        std::filesystem::remove(m_sPipe);
        return m_Result.m_nExitCode;
    }

private:
    std::string m_sPipe;
    CFileHandle m_Pipe;
    std::thread m_Command;
    CProcessResult m_Result;
};
} // namespace

// Between the load and the save of one command another program writes: neither's work is lost.
TEST(SharedFiles, WhatIsWrittenBetweenALoadAndItsSaveIsntLost)
{
    const CSampleProject project;
    const std::string sFile = project.path("all/file.Fx00a");
    std::string sOld = ReadBytes(project.path("bonfire.Fx00a"));
    const std::string sOther = sOld + "\n";
    sOld.insert(sOld.find('\n', sOld.find("( key-list")) + 1, "( stray )\n"); // of which the loader tells
    for (const std::string& sCommand :
         {"-q update " + project.path("all"), "-q convert " + sFile + " " + sFile})
        for (const bool bAsksForLocks : {true, false})
        {
            SCOPED_TRACE(sCommand + (bAsksForLocks ? ", one of ours" : ", somebody else"));
            project.write("all/file.Fx00a", sOld);
            CHeldCommand command(project, sCommand);
            for (int i = 0; i < 400 && !CFileLock::IsInUse(sFile); ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            EXPECT_TRUE(CFileLock::IsInUse(sFile));
            CProcessResult other;
            std::atomic<bool> bDone{false};
            std::thread writer(
                [&]
                {
                    if (bAsksForLocks)
                        other = Batch({"convert", project.path("inferno.Fx00c"), sFile});
                    else
                        WriteBytes(sFile, sOther);
                    bDone = true;
                });
            if (bAsksForLocks)
                std::this_thread::sleep_for(std::chrono::milliseconds(300));
            else
                writer.join();
            EXPECT_EQ(!bAsksForLocks, bDone.load());
            std::string sErrors;
            const int nStatus = command.LetGo(sErrors);
            if (writer.joinable())
                writer.join();
            EXPECT_EQ(bAsksForLocks ? 0 : 1, nStatus) << sErrors;
            EXPECT_EQ(!bAsksForLocks, Holds(sErrors, "file.Fx00a has been changed by another program since"))
                << sErrors;
            if (bAsksForLocks)
            {
                EXPECT_EQ(0, other.m_nExitCode) << other.m_sErrors;
                EXPECT_EQ(
                    0,
                    Batch({"convert", project.path("inferno.Fx00c"), project.path("b.Fx00a")}).m_nExitCode);
                EXPECT_TRUE(ReadBytes(project.path("b.Fx00a")) == ReadBytes(sFile));
            }
            else
            {
                EXPECT_TRUE(sOther == ReadBytes(sFile));
            }
        }
}

TEST(SharedFiles, ProgramsThatSaveAndPackOneLibraryAtOnceNeverMixItsBytes)
{
    const CSampleProject project;
    const std::string sOne = project.path("bonfire.Fx00a"), sTwo = project.path("two.Fx00a");
    const std::string sFile = project.path("shared.Fx00a");
    // Two libraries of unlike size, saved onto one name by turns and at once.
    ASSERT_EQ(0, Batch({"convert", project.path("inferno.Fx00c"), sTwo}).m_nExitCode);
    ASSERT_EQ(0, Batch({"convert", sOne, sFile}).m_nExitCode);
    const std::string sOneSaved = ReadBytes(sFile), sTwoSaved = ReadBytes(sTwo);
    std::vector<std::thread> programs;
    for (int nProgram = 0; nProgram < 3; ++nProgram)
    {
        programs.emplace_back(
            [&, nProgram]
            {
                for (int i = 0; i < 6; ++i)
                {
                    const auto result = nProgram == 2
                                            ? Batch({"pack", sFile, "-o", project.path("shared.Fx00p")})
                                            : Batch({"convert", nProgram == 0 ? sOne : sTwo, sFile});
                    EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
                }
            });
    }
    for (std::thread& program : programs)
        program.join();
    const std::string sNow = ReadBytes(sFile);
    EXPECT_TRUE(sNow == sOneSaved || sNow == sTwoSaved);
}

TEST(SharedFiles, WhatIsNoFileIsRefusedAtOnce)
{
    const CSampleProject project;
    const std::string sPipe = project.path("pipe.Fx00a");
    ASSERT_EQ(0, mkfifo(sPipe.c_str(), 0600));
    for (const char* pszCommand : {"check", "info", "pack", "deps", "nodes"})
    {
        const auto result = Batch({pszCommand, sPipe});
        EXPECT_EQ(1, result.m_nExitCode) << pszCommand;
        EXPECT_TRUE(Holds(result.m_sErrors, "is a pipe, a socket or a device, not a file"))
            << result.m_sErrors;
    }
    // It would pass for an empty file, or never end.
    for (const char* pszCommand : {"compress", "decompress"})
    {
        const auto result = Batch({pszCommand, sPipe, project.path("out")});
        EXPECT_EQ(1, result.m_nExitCode) << pszCommand;
        EXPECT_FALSE(project.has("out")) << pszCommand;
    }
    EXPECT_TRUE(Holds(Batch({"dump", sPipe}).m_sErrors, "is a pipe, a socket or a device, not a file"));
}
