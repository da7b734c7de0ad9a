#include "platform/ReplacingFile.h"

#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Files.h"
#include "support/TempDir.h"

namespace
{
namespace fs = std::filesystem;

size_t FilesIn(const std::string& sFolder)
{
    return size_t(std::distance(fs::directory_iterator(sFolder), fs::directory_iterator()));
}
} // namespace

TEST(ReplacingFile, WhatIsNotCommittedChangesNothing)
{
    CTempDir dir;
    const std::string sOld = dir.write("folder/a", "old");
    for (const std::string& sPath : {sOld, dir.path("folder/new")})
    {
        CReplacingFile file(sPath);
        ASSERT_TRUE(file.IsOpen());
        WriteBytes(file.GetPath(), "half");
        EXPECT_EQ("old", ReadBytes(sOld));
    }
    EXPECT_EQ(1u, FilesIn(dir.path("folder")));

    CReplacingFile file(sOld);
    WriteBytes(file.GetPath(), "new");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ("new", ReadBytes(sOld));
    EXPECT_EQ(1u, FilesIn(dir.path("folder")));
}

TEST(ReplacingFile, WhatARenameWouldBreakIsWrittenInPlace)
{
    CTempDir dir;
    const std::string sFile = dir.write("a", "old, and longer than the new");
    fs::create_hard_link(sFile, dir.path("twin"));
    fs::create_directories(dir.path("links"));
    fs::create_symlink("../a", dir.path("links/up"));
    EXPECT_TRUE(WriteFileSafely(dir.path("links/up"), "new"));
    EXPECT_EQ("new", ReadBytes(dir.path("twin")));
    EXPECT_TRUE(fs::is_symlink(dir.path("links/up")));

    // A link to nothing brings its target about.
    fs::create_symlink("there", dir.path("links/dangling"));
    EXPECT_TRUE(WriteFileSafely(dir.path("links/dangling"), "x"));
    EXPECT_TRUE(fs::is_symlink(dir.path("links/dangling")));
    EXPECT_EQ("x", ReadBytes(dir.path("links/there")));

    EXPECT_TRUE(WriteFileSafely("/dev/null", "gone"));
    EXPECT_FALSE(WriteFileSafely("/dev/full", "no room"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    ASSERT_EQ(0, mkfifo(dir.path("pipe").c_str(), 0600));
    EXPECT_FALSE(WriteFileSafely(dir.path("pipe"), "nobody reads")); // and doesn't wait
    const int nReader = open(dir.path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(WriteFileSafely(dir.path("pipe"), "read"));
    char szRead[5] = {};
    EXPECT_EQ(4, read(nReader, szRead, 4));
    EXPECT_STREQ("read", szRead);
    close(nReader);
    EXPECT_FALSE(WriteFileSafely(dir.dir(), "a folder"));
}

// As on a full disk: no write goes beyond that place.
TEST(ReplacingFile, AFailureWithinACopyLeavesTheOldBytes)
{
    CTempDir dir;
    const std::string sOld(300000, 'o');
    const std::string sFile = dir.write("a", sOld);
    fs::create_hard_link(sFile, dir.path("twin"));
    rlimit old = {};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto pfnOld = std::signal(SIGXFSZ, SIG_IGN);
    for (const auto& [nNew, nLimit] :
         {std::pair<size_t, size_t>{500000, 400000}, {500000, 499999}, {200000, 150000}})
    {
        CReplacingFile file(sFile);
        ASSERT_TRUE(WriteAll(file.Get(), std::string(nNew, 'n')));
        const rlimit limit = {nLimit, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        EXPECT_FALSE(file.Commit()) << nLimit;
        setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_EQ(sOld, ReadBytes(dir.path("twin"))) << nLimit;
    }
    std::signal(SIGXFSZ, pfnOld);
    for (const size_t nNew : {500000u, 70000u})
    {
        EXPECT_TRUE(WriteFileSafely(sFile, std::string(nNew, 'n')));
        EXPECT_EQ(std::string(nNew, 'n'), ReadBytes(dir.path("twin")));
    }
}

TEST(ReplacingFile, WhatTheProgramHasOpenIsWrittenOn)
{
    CTempDir dir;
    const std::string sFile = dir.write("a", "");
    const int nFile = open(sFile.c_str(), O_WRONLY);
    EXPECT_EQ(5, write(nFile, "head ", 5));
    EXPECT_TRUE(WriteFileSafely("/dev/fd/" + std::to_string(nFile), "new"));
    EXPECT_EQ(5, write(nFile, " tail", 5));
    close(nFile);
    EXPECT_EQ("head new tail", ReadBytes(sFile));
}

TEST(ReplacingFile, IsAsPrivateAsItsTargetAndKeepsOutOfOthersNames)
{
    CTempDir dir;
    const std::string sFile = dir.write("a", "old");
    fs::permissions(sFile, fs::perms::owner_read | fs::perms::owner_write);
    CReplacingFile file(sFile);
    EXPECT_EQ(fs::perms::none,
              fs::status(file.GetPath()).permissions() & (fs::perms::group_all | fs::perms::others_all));

    // In a folder such as /tmp the names of others can't be given to another file.
    if (geteuid() != 0)
        GTEST_SKIP() << "needs the files of several users";
    fs::permissions(dir.dir(), fs::perms(0755));
    fs::create_directories(dir.path("shared"));
    fs::permissions(dir.path("shared"), fs::perms(01777));
    const std::string sShared = dir.write("shared/b", "old");
    fs::permissions(sShared, fs::perms(0666));
    ASSERT_EQ(0, chown(sShared.c_str(), 1, 1) | chown(dir.path("shared").c_str(), 2, 2));
    ASSERT_EQ(0, seteuid(65534));
    const bool bWritten = WriteFileSafely(sShared, "new");
    ASSERT_EQ(0, seteuid(0));
    EXPECT_TRUE(bWritten);
    EXPECT_EQ("new", ReadBytes(sShared));
    EXPECT_EQ(1u, FilesIn(dir.path("shared")));
}

TEST(ReplacingFile, TheFirstInAFolderRemovesWhatKilledProgramsHaveLeft)
{
    CTempDir dir;
    const std::string sName = c_szSafeWritePrefix;
    dir.write(sName + "1-0", "left");
    const std::string sBusy = dir.write(sName + "1-1", "another program is writing it");
    dir.write("mine", "not ours");
    const int nBusy = open(sBusy.c_str(), O_RDONLY);
    ASSERT_EQ(0, flock(nBusy, LOCK_EX));
    EXPECT_TRUE(WriteFileSafely(dir.path("a"), "x"));
    EXPECT_FALSE(dir.has(sName + "1-0"));
    EXPECT_TRUE(dir.has(sName + "1-1"));
    EXPECT_EQ(3u, FilesIn(dir.dir()));
    close(nBusy);
}
