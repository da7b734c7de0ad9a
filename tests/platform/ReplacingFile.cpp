#include "platform/ReplacingFile.h"

#include <fcntl.h>
#include <sys/file.h>
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
