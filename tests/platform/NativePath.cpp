#include "platform/Paths.h"

#include "platform/Files.h"
#include "support/WorkingDir.h"

TEST(NativePath, TakesTheFormThatExists)
{
    CTempDir folder;
    folder.write("Res/Smoke.dds", "x");
    folder.write("res/other.dds", "x");
    folder.write("odd\\name/in.dds", "x");
    const std::string s = folder.dir() + '/';
    const std::string cases[][2] = {
        {"Res/Smoke.dds", "Res/Smoke.dds"},        // as it stands
        {"Res\\Smoke.dds", "Res/Smoke.dds"},       // separators turned
        {"RES\\smoke.DDS", "Res/Smoke.dds"},       // of two folders the first by bytes
        {"res\\Smoke.dds", "res/Smoke.dds"},       // an exact folder is not given up
        {"odd\\name", "odd\\name"},                // a backslash in a name
        {"odd\\name\\IN.dds", "odd\\name/in.dds"}, // and below such a folder
        {"RES\\new\\File.x", "Res/new/File.x"},    // to be made: the rest as typed
        {"RES\\", "Res/"},
        {"Res/Smoke.dds\\x", "Res/Smoke.dds/x"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(s + c[1], NativePath(s + c[0])) << c[0];
    const CWorkingDir here(folder.dir());
    EXPECT_EQ("Res/Smoke.dds", NativePath("RES\\SMOKE.DDS"));
    EXPECT_EQ("./Res/../res", NativePath(".\\RES\\..\\res"));
}

TEST(NativePath, ForeignAndMonstrousPathsNameNothing)
{
    CTempDir folder;
    folder.write("C:/game/x.dds", "x");
    folder.write("C:\\game\\y.dds", "x");
    const CWorkingDir here(folder.dir());
    for (const std::string sPath : {"C:\\game\\x.dds", "c:/game/x.dds", "C:\\game\\y.dds", "C:"})
    {
        EXPECT_EQ("", NativePath(sPath)) << sPath;
        EXPECT_EQ(sPath, DisplayPath(sPath));
        EXPECT_FALSE(FileExists(sPath));
        EXPECT_FALSE(WriteFileSafely(sPath, "y"));
    }
    EXPECT_FALSE(FileExists(std::string("C:\0x", 4)));
    EXPECT_EQ("", NativePath(std::string("a\0b", 3)));
    EXPECT_EQ("", NativePath(""));

    // Longer than the old limit of 259 is fine, longer than the system takes only isn't found.
    std::string sLong;
    for (int i = 0; i < 10; ++i)
        sLong += std::string(50, 'a') + '\\';
    folder.write(NativePath(sLong) + "x.txt", "long");
    EXPECT_TRUE(FileExists(sLong + "X.TXT"));
    EXPECT_EQ(100000u, NativePath(std::string(100000, '\\')).size());
}

TEST(NativePath, ResolvesLinksDotsAndCase)
{
    CTempDir folder;
    folder.write("game/Res/a.dds", "x");
    std::filesystem::create_directory_symlink(folder.path("game"), folder.path("link"));
    EXPECT_EQ(folder.path("game/Res/a.dds"), ResolvedPath(folder.dir() + "\\link\\.\\RES\\A.dds"));
    EXPECT_EQ(folder.path("game/Res/new.dds"), ResolvedPath(folder.path("link/Res/new.dds")));
    EXPECT_EQ("", ResolvedPath(folder.path("link/none/new.dds")));
    EXPECT_EQ("", ResolvedPath(""));
}

TEST(NativePath, FindsAPlugInUnderItsNameHere)
{
    CTempDir folder;
    const std::string sTyped = folder.dir() + "\\Bin\\Fire.DLL";
    EXPECT_EQ("", NativeLibraryPath(sTyped));
    folder.write("bin/libfire.so", "x");
    EXPECT_EQ(folder.path("bin/libfire.so"), NativeLibraryPath(sTyped));
    folder.write("bin/fire.so", "x");
    EXPECT_EQ(folder.path("bin/fire.so"), NativeLibraryPath(sTyped));
    folder.write("bin/fire.dll", "x");
    EXPECT_EQ(folder.path("bin/fire.dll"), NativeLibraryPath(sTyped));
    EXPECT_EQ(3u, NativeLibraryPaths(sTyped).size());
    EXPECT_EQ("", NativeLibraryPath(folder.path("bin")));
    EXPECT_EQ("", NativeLibraryPath(folder.path("bin/.dll")));
}
