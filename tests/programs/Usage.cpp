#include <unistd.h>

#include "programs/Programs.h"

TEST(BatchUsage, EveryCommandHasHelpAndWrongUseExitsWithTwo)
{
    const char* const aCommands[] = {"types",      "info",   "check",   "convert", "update",
                                     "pack",       "dump",   "nodes",   "deps",    "compress",
                                     "decompress", "launch", "recover", "diff",    "merge"};
    const CProcessResult help = Batch({"--help"});
    EXPECT_EQ(0, help.m_nExitCode);
    for (const char* pszCommand : aCommands)
    {
        EXPECT_TRUE(Holds(help.m_sOutput, std::string("\n  ") + pszCommand)) << pszCommand;
        const CProcessResult own = Batch({pszCommand, "--help"});
        EXPECT_EQ(0, own.m_nExitCode) << pszCommand;
        EXPECT_GT(own.m_sOutput.size(), 100u) << pszCommand;

        const CProcessResult bare = Batch({pszCommand});
        EXPECT_EQ(2, bare.m_nExitCode) << pszCommand;
        EXPECT_TRUE(Holds(bare.m_sErrors + bare.m_sOutput, "required")) << bare.m_sErrors;
        EXPECT_EQ(2, Batch({pszCommand, "a", "--no-such-option"}).m_nExitCode) << pszCommand;
    }
    EXPECT_EQ(2, Batch({}).m_nExitCode);
    EXPECT_EQ(2, Batch({"melt", "x"}).m_nExitCode);
    EXPECT_EQ(2, Batch({"pack", "x", "--target", "toaster"}).m_nExitCode);
    EXPECT_EQ(2, Batch({"update", ".", "--checkout", "maybe"}).m_nExitCode);
    EXPECT_EQ(0, Batch({"--version"}).m_nExitCode);

    // A script's variable that wasn't set must not mean another file.
    const CProcessResult empty = Batch({"pack", "x", "-o", ""});
    EXPECT_EQ(2, empty.m_nExitCode);
    EXPECT_TRUE(Holds(empty.m_sErrors, "the name is empty")) << empty.m_sErrors;
    EXPECT_EQ(
        1, RunProcess("sh",
                      {"-c", std::string("exec ") + EMBERDECK_BIN_DIR + "/emberdeck-batch --help >/dev/full"},
                      "", 60000)
               .m_nExitCode);
}

TEST(BatchUsage, FailuresOfTheProjectAreToldInTheSystemsWords)
{
    CTempDir bare;
    const std::string sLost = bare.write("a.Fx00a", "( header )");
    CProcessResult result = Batch({"info", sLost});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors,
                      "Unable to find a project locator file in the same directory or above the file " +
                          sLost + ". Please make sure that there is a proj00 file."))
        << result.m_sErrors;

    bare.write("game.proj00", "");
    result = Batch({"info", sLost});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "Error Loading: Unable to load the Fireglass library "))
        << result.m_sErrors;
    EXPECT_TRUE(Holds(result.m_sErrors, "Fireglass=PATH in the section [Project Binaries]"))
        << result.m_sErrors;

    const std::string sNoLibrary = bare.write("nolib.dll", "no library at all");
    bare.write("game.proj00", "[Project Binaries]\nFireglass=" + sNoLibrary + "\n");
    result = Batch({"types", sLost});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "for handling this file")) << result.m_sErrors;
    EXPECT_TRUE(Holds(result.m_sErrors, "nolib.dll: "))
        << "what the machine says of it: " << result.m_sErrors;

    // A real library, but without the entry points.
    bare.write("game.proj00",
               std::string("[Project Binaries]\nFireglass=") + EMBERDECK_BIN_DIR + "/AssertWin32DLL.dll\n");
    result = Batch({"types", sLost});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "It doesn't export Emberdeck")) << result.m_sErrors;

    bare.write("game.proj00", "[Project Binaries]\nFireglass=none.dll\n[Tools Launch]\nPCBinary=none\n");
    EXPECT_TRUE(Holds(Batch({"info", sLost}).m_sErrors, "There is no such file"));
    result = Batch({"launch", sLost});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "cannot start the game " + bare.path("none"))) << result.m_sErrors;
}

TEST(BatchUsage, FilesThatCantBeReadOrWritten)
{
    CSampleProject project;
    CProcessResult result = Batch({"info", project.path("none.Fx00a")});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "Failed to load the file from disk into memory\nThere is no file " +
                                            project.path("none.Fx00a")))
        << result.m_sErrors;
    std::filesystem::copy(project.path("bonfire.Fx00a"), project.path("a:text.Fx00c"));
    result = ::Run("emberdeck-batch", {"info", "a:text.Fx00c"}, project.dir());
    EXPECT_TRUE(Holds(result.m_sErrors, "The file doesn't hold compressed text")) << result.m_sErrors;
    EXPECT_EQ(1, Batch({"info", project.path("resources")}).m_nExitCode);

    const std::string sLibrary = project.path("bonfire.Fx00a");
    result = Batch({"convert", sLibrary, "/dev/full"});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors,
                      "Error Saving: An error occurred saving the file /dev/full. Please make sure that "
                      "the file is writable and there is room on the drive."))
        << result.m_sErrors;
    EXPECT_EQ(1, Batch({"convert", sLibrary, project.path("resources")}).m_nExitCode);
    result = Batch({"convert", sLibrary, project.path("no/such/folder/x.Fx00c")});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "There is no folder " + project.path("no/such/folder")))
        << result.m_sErrors;

    result = Batch({"pack", sLibrary, "-o", "/dev/full"});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "Error Packing: An error occurred packing the file /dev/full."))
        << result.m_sErrors;

    project.write("noise.Fx00p", std::string(200, '\x55'));
    result = Batch({"dump", project.path("noise.Fx00p")});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_FALSE(result.m_sErrors.empty());
    EXPECT_EQ(1, Batch({"decompress", sLibrary, project.path("out")}).m_nExitCode);
    EXPECT_FALSE(project.has("out"));
}

TEST(BatchUsage, UpdateGoesOnBehindADamagedFileAndSaysSo)
{
    CSampleProject project;
    project.write("sub folder/broken.FX00A", "( header ( version 2 ) )");
    project.write("sub folder/notes.txt", "no library");
    std::filesystem::copy(project.path("bonfire.Fx00a"), project.path("sub folder/zz.Fx00a"));
    const std::string sOld = ReadBytes(project.path("bonfire.Fx00a"));
    const CProcessResult result = Batch({"update", project.dir(), "--checkout", "yes"});
    EXPECT_EQ(1, result.m_nExitCode);
    EXPECT_TRUE(Holds(result.m_sErrors, "Invalid file version")) << result.m_sErrors;
    EXPECT_TRUE(Holds(result.m_sErrors, "zz.Fx00a: Yes")) << result.m_sErrors;
    EXPECT_EQ(sOld, ReadBytes(project.path("bonfire.Fx00a")));
    EXPECT_EQ(sOld, ReadBytes(project.path("sub folder/zz.Fx00a")));
    EXPECT_EQ(0, Batch({"update", project.path("resources")}).m_nExitCode);
    EXPECT_EQ(1, Batch({"update", project.path("none")}).m_nExitCode);
}

TEST(BatchUsage, ALocatorThatCantBeUsedIsNamedAsTheCause)
{
    CSampleProject project;
    const std::string sLibrary = project.path("sub/bonfire.Fx00a"),
                      sLocator = project.path("sub/game.proj00");
    project.write("sub/bonfire.Fx00a", ReadBytes(project.path("bonfire.Fx00a")));
    const std::string sText = "\r\n" + ReadBytes(project.path("bonfire.proj00"));
    const auto told = [&](const std::string& sFile)
    {
        const CProcessResult result = Batch({"info", sFile});
        EXPECT_EQ(1, result.m_nExitCode) << "the project above is not meant";
        EXPECT_FALSE(Holds(result.m_sErrors, "No plug-in is named")) << result.m_sErrors;
        return result.m_sErrors;
    };

    std::string sWide = "\xFF\xFE";
    for (char c : sText)
        sWide += {c, '\0'};
    for (const std::string& sBad : {sWide, sWide.substr(2)})
    {
        WriteBytes(sLocator, sBad);
        EXPECT_TRUE(Holds(told(sLibrary), "The project locator file " + sLocator + " is UTF-16"));
    }
    WriteBytes(sLocator, sText + std::string(1 << 20, ';'));
    EXPECT_TRUE(Holds(told(sLibrary), sLocator + " is larger than 1 MB"));
    if (geteuid() != 0)
    {
        std::filesystem::permissions(sLocator, std::filesystem::perms::none);
        EXPECT_TRUE(Holds(told(sLibrary), sLocator + " can't be read: permission denied"));
    }
    std::filesystem::remove(sLocator);
    std::filesystem::create_symlink("gone.proj00", sLocator);
    EXPECT_TRUE(Holds(told(sLibrary), "The project locator file can't be read"));
    std::filesystem::remove(sLocator);
    WriteBytes(sLocator, "\xEF\xBB\xBF" + sText.substr(2)); // UTF-8 with its mark is as good as without
    EXPECT_EQ(0, Batch({"info", sLibrary}).m_nExitCode);

    std::string sDeep = project.dir();
    while (sDeep.size() < 260)
        sDeep += "/eleven_more";
    std::filesystem::create_directories(sDeep);
    WriteBytes(sDeep + "/x.Fx00a", ReadBytes(sLibrary));
    EXPECT_EQ(0, Batch({"info", sDeep + "/x.Fx00a"}).m_nExitCode) << "nothing nearer than the one at the top";
    WriteBytes(sDeep + "/deep.proj00", sText);
    const std::string sErrors = told(sDeep + "/x.Fx00a");
    EXPECT_TRUE(Holds(sErrors, "Unable to find a project locator file")) << sErrors;
    EXPECT_TRUE(Holds(sErrors, sDeep + "/deep.proj00 has more than 259 bytes")) << sErrors;
}

TEST(BatchUsage, LaunchLetsGoOfTheGame)
{
    CSampleProject project;
    project.write("game.sh", "#!/bin/sh\necho loud; echo loud >&2; touch runs; while [ ! -e end ]; do sleep "
                             "0.1; done; cat > input; touch ended\n");
    std::filesystem::permissions(project.path("game.sh"), std::filesystem::perms(0755));
    project.write("bonfire.proj00", "[Tools Launch]\nPCBinary=game.sh\n");
    const auto wait = [&](const std::string& sName)
    {
        for (int i = 0; i < 100 && !project.has(sName); ++i)
            RunProcess("sleep", {"0.05"}, "", 1000);
        return project.has(sName);
    };
    const std::string sBatch = std::string(EMBERDECK_BIN_DIR) + "/emberdeck-batch";
    // A colon in a relative name is no drive letter, as for every other command.
    const CProcessResult piped = RunProcess(
        "sh", {"-c", "echo in | " + sBatch + " launch a:b.Fx00a 2>&1 | cat"}, project.dir(), 20000);
    EXPECT_FALSE(piped.m_bTimedOut) << "who reads the pipe waits for the game";
    EXPECT_EQ("", piped.m_sOutput);
    EXPECT_TRUE(wait("runs"));
    EXPECT_FALSE(project.has("ended"));
    project.write("end", "");
    EXPECT_TRUE(wait("ended"));
    EXPECT_EQ("", ReadBytes(project.path("input")));

    RunProcess("sh", {"-c", sBatch + " launch x > log 2>&1"}, project.dir(), 20000);
    EXPECT_TRUE(wait("log"));
    for (int i = 0; i < 100 && ReadBytes(project.path("log")) != "loud\nloud\n"; ++i)
        RunProcess("sleep", {"0.05"}, "", 1000);
    EXPECT_EQ("loud\nloud\n", ReadBytes(project.path("log")));
}
