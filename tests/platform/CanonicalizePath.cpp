#include "platform/Paths.h"

#include "support/WorkingDir.h"

TEST(CanonicalizePath, RemovesDotStepsAndNothingElse)
{
    const char* cases[][2] = {
        {"", ""},
        {"/a/b\\..\\c", "/a/c"},
        {"C:\\a\\.\\b\\..\\..\\x.dll", "C:\\x.dll"},
        {"/a/./b/", "/a/b/"},
        {"/a/b/..", "/a"},
        {"/a/b/..\\", "/a/"},
        {"/a/b/.", "/a/b"},
        {"/..", "/"},
        {"/../../a", "/a"},
        {"C:\\..\\..\\a", "C:\\a"},
        {"../../a", "../../a"},
        {"a/../../b", "../b"},
        {"a/..", "."},
        {"./a", "a"},
        {"a//b/..c/...", "a//b/..c/..."},
        {"a//../b", "b"},
        {"a/..//b", "b"},
        {".\\\\a", "a"},
        {"/a/..//b", "/b"},
        {"\\\\server\\share\\..\\x", "\\\\server\\x"},
        {"/a/.../.x/..y/ ", "/a/.../.x/..y/ "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c[1], CanonicalizePath(c[0])) << c[0];
}

TEST(Directories, FollowTheEnvironmentAndIgnoreRelativeValues)
{
    setenv("XDG_CONFIG_HOME", "/somewhere/config", 1);
    EXPECT_EQ("/somewhere/config", GetConfigDirectory());
    setenv("XDG_CONFIG_HOME", "relative", 1);
    setenv("HOME", "/home/x", 1);
    EXPECT_EQ("/home/x/.config", GetConfigDirectory());
    unsetenv("XDG_CONFIG_HOME");

    EXPECT_TRUE(GetExecutablePath().ends_with("/tests_platform"));
    CTempDir folder;
    const CWorkingDir here(folder.dir());
    EXPECT_EQ(folder.dir(), GetCurrentDirectoryPath());
    EXPECT_EQ(folder.path("none"), MakeFullPath("x\\..\\none"));
    EXPECT_EQ(NativeFolderOf(folder.path("none")), folder.dir());
}
