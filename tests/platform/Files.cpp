#include "platform/Files.h"

#include <sys/stat.h>

#include "platform/DynamicLibrary.h"
#include "support/WorkingDir.h"

namespace fs = std::filesystem;

namespace
{

mode_t ModeOf(const std::string& sPath)
{
    struct stat info = {};
    stat(sPath.c_str(), &info);
    return info.st_mode & 07777;
}

size_t CountEntries(const std::string& sPath)
{
    return static_cast<size_t>(std::distance(fs::directory_iterator(sPath), fs::directory_iterator()));
}

} // namespace

TEST(WriteFileSafely, KeepsModeAndLinksAndLeavesNothingBeside)
{
    CTempDir folder;
    const std::string sTarget = folder.write("real/a.txt", "old");
    fs::permissions(sTarget, fs::perms(0640));
    fs::create_symlink("real/a.txt", folder.path("link"));
    fs::create_symlink("link", folder.path("link2"));
    EXPECT_TRUE(WriteFileSafely(folder.dir() + "\\LINK2", "new content"));
    EXPECT_EQ("new content", ReadBytes(sTarget));
    EXPECT_EQ(0640u, ModeOf(sTarget));
    EXPECT_TRUE(fs::is_symlink(folder.path("link2")));
    EXPECT_EQ(1u, CountEntries(folder.path("real")));

    fs::create_symlink(folder.path("real/fresh"), folder.path("dangling"));
    const mode_t nMask = umask(027);
    EXPECT_TRUE(WriteFileSafely(folder.path("dangling"), std::string("a\0b", 3)));
    umask(nMask);
    EXPECT_EQ(std::string("a\0b", 3), ReadBytes(folder.path("real/fresh")));
    EXPECT_EQ(0640u, ModeOf(folder.path("real/fresh")));
    EXPECT_TRUE(WriteFileSafely(folder.path(std::string(255, 'n')), ""));
}

TEST(WriteFileSafely, FailsWithTheOldContentInPlace)
{
    CTempDir folder;
    const std::string sLocked = folder.write("locked.txt", "old");
    fs::permissions(sLocked, fs::perms(0444));
    EXPECT_FALSE(WriteFileSafely(sLocked, "new"));
    EXPECT_EQ("old", ReadBytes(sLocked));
    fs::create_symlink("loop2", folder.path("loop1"));
    fs::create_symlink("loop1", folder.path("loop2"));
    EXPECT_FALSE(WriteFileSafely(folder.path("loop1"), "new"));
    EXPECT_FALSE(WriteFileSafely(folder.dir(), "new"));
    EXPECT_FALSE(WriteFileSafely(folder.path("none/x"), "new"));
    EXPECT_FALSE(WriteFileSafely(folder.path("new/"), "new"));
    ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
    EXPECT_FALSE(WriteFileSafely(folder.path("pipe"), "nobody reads this"));
    EXPECT_EQ(4u, CountEntries(folder.dir()));
    EXPECT_TRUE(WriteFileSafely("/dev/null", "gone"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(ReadWholeFile, IsBounded)
{
    CTempDir folder;
    const std::string sContent(100000, 'q');
    const std::string sPath = folder.write("Big.bin", sContent);
    std::string sRead;
    EXPECT_TRUE(ReadWholeFile(folder.dir() + "\\big.BIN", sRead, 100000));
    EXPECT_EQ(sContent, sRead);
    EXPECT_FALSE(ReadWholeFile(sPath, sRead, 99999));
    EXPECT_EQ("", sRead);
    EXPECT_FALSE(ReadWholeFile(folder.dir(), sRead));
    EXPECT_FALSE(ReadWholeFile("/dev/zero", sRead, 1 << 20)); // never ends
    EXPECT_TRUE(ReadWholeFile("/proc/self/status", sRead));   // tells no size
    EXPECT_NE("", sRead);
    ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
    EXPECT_TRUE(ReadWholeFile(folder.path("pipe"), sRead)); // nobody writes: no waiting
    EXPECT_EQ("", sRead);
}

TEST(ListDirectory, SortsWithoutCaseAndLooksThroughLinks)
{
    CTempDir folder;
    for (const char* pszName : {"b", "A", "a", "C", ".hidden"})
        folder.write(pszName, "x");
    MakeDir(folder, "D");
    fs::create_directory_symlink("D", folder.path("e"));
    fs::create_symlink("gone", folder.path("f"));
    std::vector<CDirectoryEntry> entries;
    ASSERT_TRUE(ListDirectory(folder.dir(), entries));
    std::string sNames;
    for (const CDirectoryEntry& entry : entries)
        sNames += entry.m_sName + (entry.m_bDirectory ? "/" : "") + (entry.m_bLink ? "@ " : " ");
    EXPECT_EQ(".hidden A a b C D/ e/@ f@ ", sNames);
    EXPECT_FALSE(ListDirectory(folder.path("none"), entries));
    EXPECT_FALSE(ListDirectory(folder.path("b"), entries));
    EXPECT_TRUE(entries.empty());
}

TEST(Files, MakeRemoveAndLookAt)
{
    CTempDir folder;
    EXPECT_TRUE(MakeDirectories(folder.dir() + "\\One\\two\\"));
    EXPECT_TRUE(MakeDirectories(folder.path("ONE/Two/three")));
    EXPECT_TRUE(DirectoryExists(folder.path("One/two/three")));
    const std::string sFile = folder.write("One/file", "12345");
    EXPECT_FALSE(MakeDirectories(folder.path("One/file/x")));
    EXPECT_FALSE(MakeDirectories(""));
    EXPECT_EQ(5u, FileSize(sFile));
    EXPECT_EQ(0u, FileSize(folder.dir()));
    EXPECT_FALSE(FileExists(folder.dir()));
    EXPECT_TRUE(PathExists(folder.dir()));
    EXPECT_FALSE(RemoveFile(folder.path("One")));
    EXPECT_TRUE(RemoveFile(folder.path("one/FILE")));
    EXPECT_FALSE(FileExists(sFile));

    const std::string sTemporary = MakeTemporaryFile("ember/../x");
    EXPECT_EQ(0600u, ModeOf(sTemporary));
    EXPECT_TRUE(RemoveFile(sTemporary));
}

TEST(DynamicLibrary, TellsWhyItCannotLoad)
{
    CTempDir folder;
    std::string sError;
    EXPECT_EQ(nullptr, LoadDynamicLibrary(folder.path("none.dll"), &sError));
    EXPECT_NE(std::string::npos, sError.find("none.dll"));
    const std::string sJunk = folder.write("junk.dll", "no library");
    EXPECT_EQ(nullptr, LoadDynamicLibrary(sJunk, &sError));
    EXPECT_EQ(nullptr, LoadDynamicLibrary(folder.dir()));
    EXPECT_EQ(nullptr, GetLibrarySymbol(nullptr, "malloc"));
    FreeDynamicLibrary(nullptr);
}
