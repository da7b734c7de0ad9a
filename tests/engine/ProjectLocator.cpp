#include "shared/engine/ProjectLocator.h"

#include "platform/Paths.h"
#include "support/WorkingDir.h"

namespace
{

std::string Locator(const std::string& sGame)
{
    return "[General]\r\nGame=" + sGame + "\r\n";
}

// The game that the search finds for a file; "-" for none.
std::string GameOf(const std::string& sFile)
{
    CProjectInfo info;
    info.m_sGame = "untouched";
    if (FindAndLoadProject(sFile.c_str(), info))
        return info.m_sGame;
    EXPECT_EQ("untouched", info.m_sGame);
    EXPECT_EQ("", info.m_sProjectDir);
    return "-";
}

} // namespace

TEST(ProjectLocator, ClimbsToTheNearestLocator)
{
    CTempDir dir;
    dir.write("top.Proj00", Locator("top"));
    MakeDir(dir, "a/b/c");
    EXPECT_EQ("top", GameOf(dir.path("a/b/c/none.Fx00c")));
    EXPECT_EQ("top", GameOf(dir.dir() + "\\A\\B\\none.Fx00c")); // as another system writes it
    EXPECT_EQ("top", GameOf(dir.path("x/y/../none.Fx00c")));    // folders that aren't there are climbed, too
    MakeDir(dir, "a/b/zero.proj00");                            // a folder is no locator
    dir.write("a/B.PROJ00", Locator("B"));
    dir.write("a/a.proj00", Locator("a"));
    dir.write("a/proj00", Locator("no extension"));
    std::filesystem::create_symlink("gone", dir.path("a/A.proj00"));
    EXPECT_EQ("a", GameOf(dir.path("a/b/c/x.Fx00c")));
    EXPECT_EQ("a", GameOf(dir.path("a/x")));
    EXPECT_EQ("top", GameOf(dir.path("a"))); // its own directory is that of the name

    const CWorkingDir here(dir.path("a/b"));
    EXPECT_EQ("a", GameOf("x.Fx00c"));
    EXPECT_EQ("top", GameOf("..\\..\\x.Fx00c"));
    EXPECT_EQ("a", GameOf("c\\..\\..\\x.Fx00c"));
}

TEST(ProjectLocator, FindsNothingAtTheRootOrUnderADriveLetter)
{
    CTempDir dir;
    dir.write("C:/game/p.proj00", Locator("below the working directory"));
    const CWorkingDir here(dir.dir());
    EXPECT_EQ("-", GameOf("C:\\game\\x.Fx00c"));
    EXPECT_EQ("-", GameOf("C:x.Fx00c"));
    EXPECT_EQ("-", GameOf("/x.Fx00c"));
    EXPECT_EQ("-", GameOf("\\\\x.Fx00c"));
    CProjectInfo info;
    EXPECT_EQ(GameOf(""), GameOf(dir.path("x"))); // nothing here or above
    FindAndLoadProject(nullptr, info);

    // What is longer than a path may be is cut, and the climb starts from what is left.
    dir.write("p.proj00", Locator("p"));
    EXPECT_EQ("p", GameOf(dir.dir() + '/' + std::string(400, 'd') + "/x.Fx00c"));
    std::string sDeep = dir.dir();
    while (sDeep.size() < 300)
        sDeep += "/eleven_more";
    std::filesystem::create_directories(sDeep);
    WriteBytes(sDeep + "/deep.proj00", Locator("deep"));
    EXPECT_EQ("p", GameOf(sDeep + "/x.Fx00c"));
}

TEST(ProjectLocator, ReadsEveryKeyByItsForm)
{
    CTempDir dir;
    const std::string sLocator =
        dir.write("p/game.proj00", "[general]\nGAME = \" My game \"\n"
                                   "[Project Directories]\n"
                                   "ResourceRoot=..\\res\nToolsRoot=T:\\tools\n"
                                   "PC=pc/\nXenon=/x/./y\n"
                                   "[Project Binaries]\n"
                                   "Fireglass=bin\\..\\..\\f.dll\nGameServer=\\\\s\\..\\g\n"
                                   "[Source Control]\n"
                                   "Provider=git\nDatabase=%PROJDIR%db %PROJDIR% %projdir%\n"
                                   "[Tools Launch]\n"
                                   "PCBinary=bin\\game.exe\nPCWorking=.\nXenonBinary=a:b\n");
    CProjectInfo info;
    EXPECT_TRUE(LoadProjectFile(info, sLocator.c_str()));
    const std::string sDir = dir.path("p") + '\\';
    const std::string cases[][2] = {
        {info.m_sGame, " My game "},
        {info.m_sProjectDir, sDir},
        {info.m_sResourceRoot, dir.path("res") + '\\'},
        {info.m_sToolsRoot, "T:\\tools\\"},
        {info.m_sPCRoot, sDir + "pc/"},
        {info.m_sXenonRoot, "/x/./y\\"}, // absolute: as it is
        {info.m_sFireglass, dir.path("f.dll")},
        {info.m_sGameServer, "\\\\s\\..\\g"},
        {info.m_sGameDatabase, sDir}, // a missing key
        {info.m_sProvider, "git"},
        {info.m_sDatabase, sDir + "db %PROJDIR% %projdir%"},
        {info.m_sPCBinary, sDir + "bin\\game.exe"},
        {info.m_sPCWorking, dir.path("p")},
        {info.m_sXenonBinary, "a:b"},
        {info.m_sXenonWorking, sDir},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c[1], c[0]);

    // Filled anew: what can't be read gives all defaults.
    EXPECT_TRUE(LoadProjectFile(info, dir.path("q/none.proj00").c_str()));
    EXPECT_EQ("", info.m_sGame);
    EXPECT_EQ("", info.m_sDatabase);
    EXPECT_EQ(dir.path("q") + '\\', info.m_sResourceRoot);
    EXPECT_EQ(dir.path("q") + '\\', info.m_sFireglass);
    dir.write("long.proj00", Locator(std::string(300, 'g')));
    LoadProjectFile(info, dir.path("long.proj00").c_str());
    EXPECT_EQ(std::string(259, 'g'), info.m_sGame);
}

TEST(ProjectLocator, PathHelpersCountBothSeparators)
{
    for (const char* pszPath : {"/a", "\\a", "C:", "C:a", "x:y\\z", "name:stream"})
        EXPECT_TRUE(IsAbsolutePath(pszPath)) << pszPath;
    for (const char* pszPath : {"", "a", "a/b:c", "a\\C:\\b", "."})
        EXPECT_FALSE(IsAbsolutePath(pszPath)) << pszPath;
    const char* cases[][3] = {
        {"a\\b/c", "a\\b", "a\\b/c\\"}, {"a/", "a", "a/"}, {"a", "", "a\\"}, {"", "", "\\"}};
    for (const auto& c : cases)
    {
        std::string sCut = c[0], sEnded = c[0];
        RemoveLastComponent(sCut);
        AddTrailingSeparator(sEnded);
        EXPECT_EQ(c[1], sCut);
        EXPECT_EQ(c[2], sEnded);
    }
}
