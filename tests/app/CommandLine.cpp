#include "app/CommandLineInfo.h"

#include "platform/Paths.h"
#include "support/TempDir.h"
#include "support/WorkingDir.h"

namespace
{
CEmberdeckCommandLineInfo Parse(const std::vector<std::string>& params)
{
    return ParseCommandLine(params, [](const std::string& s) { return s == "/here"; });
}
} // namespace

TEST(CommandLine, UpdateModeNeedsTheDirectoryBehindTheFlag)
{
    for (const char* pszFlag : {"/UpdateFx", "/updatefx", "-UPDATEFX", "--updateFx"})
    {
        const auto info = Parse({pszFlag, "/a/b", "more"});
        EXPECT_TRUE(info.IsUpdateMode()) << pszFlag;
        EXPECT_EQ("/a/b", info.m_sUpdateDir);
        EXPECT_EQ("more", info.m_sFileName);
        EXPECT_FALSE(info.m_bShowSplash);
        EXPECT_TRUE(info.m_Complaints.empty());
    }
    EXPECT_FALSE(Parse({"/UpdateFx"}).IsUpdateMode());
    const auto before = Parse({"dir", "/UpdateFx"});
    EXPECT_FALSE(before.IsUpdateMode());
    EXPECT_TRUE(before.m_bUpdateFx && before.m_bShowSplash);
    EXPECT_EQ("dir", before.m_sFileName);
    // What is on the disk is no flag.
    EXPECT_EQ("/here", Parse({"/UpdateFx", "/here"}).m_sUpdateDir);
}

TEST(CommandLine, FlagsOfItsOwnAndUnknownOnes)
{
    EXPECT_EQ("-odd.Fx00a", Parse({"--open", "-odd.Fx00a"}).m_sOpenFile);
    EXPECT_EQ("a b", Parse({"--OPEN=a b"}).m_sOpenFile);
    EXPECT_EQ("", Parse({"plain.Fx00a"}).m_sOpenFile);
    EXPECT_FALSE(Parse({"/nosplash"}).m_bShowSplash);
    for (const char* pszHelp : {"--help", "-h", "/?"})
        EXPECT_TRUE(Parse({pszHelp}).m_bHelp) << pszHelp;
    EXPECT_TRUE(Parse({"--version"}).m_bVersion);
    const auto none = Parse({});
    EXPECT_FALSE(none.m_bHelp || none.m_bVersion || none.m_bUpdateFx || !none.m_bShowSplash);
    EXPECT_EQ("a", Parse({"a", "b"}).m_sFileName) << "the first one";

    const auto info = Parse({"/x", "--frob", "-", "", "/a/b", "--open"});
    EXPECT_EQ((std::vector<std::string>{"unknown option: /x", "unknown option: --frob", "unknown option: -",
                                        "--open needs a file behind it"}),
              info.m_Complaints);
    EXPECT_EQ("/a/b", info.m_sFileName);
}

TEST(CommandLine, FullPathsAndHelp)
{
    CTempDir dir;
    CWorkingDir work(dir.dir());
    const std::string sHere = std::filesystem::canonical(dir.dir());
    for (const auto& [sPath, sFull] :
         std::initializer_list<std::pair<std::string, std::string>>{{"", ""},
                                                                    {"C:\\a.Fx00a", "C:\\a.Fx00a"},
                                                                    {"/a/b", "/a/b"},
                                                                    {"a.Fx00a", sHere + "/a.Fx00a"},
                                                                    {"b\\..\\a.Fx00a", sHere + "/a.Fx00a"}})
        EXPECT_EQ(sFull, MakeFullPath(sPath));
    EXPECT_EQ("Usage: emberdeck [options]\n\n"
              "Opens the effect file of the last session, or an empty library.\n\n"
              "  --open FILE            open FILE instead\n"
              "  /UpdateFx DIRECTORY    re-save every effect file below DIRECTORY, then end\n"
              "  --nosplash             start without the splash window\n"
              "  --version              print the version and end\n"
              "  --help                 print this text and end\n",
              GetCommandLineHelp());
}
