// Programs that meet at one file, and files that are none.

#include <thread>

#include <sys/stat.h>

#include "programs/Programs.h"

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
