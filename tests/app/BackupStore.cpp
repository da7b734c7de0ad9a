#include "app/BackupStore.h"

#include "support/TempDir.h"

TEST(BackupStore, KeepsTheLastFiveStatesAndBringsThemBack)
{
    CTempDir dir;
    CBackupStore store(dir.path("store"));
    const std::string sFile = dir.path("Smoke.Fx00a");
    EXPECT_EQ("", store.Keep(sFile)); // nothing there, and no fault of anybody's
    EXPECT_EQ("", store.GetLastProblem());
    for (int i = 0; i < 7; ++i)
    {
        WriteBytes(sFile, "state " + std::to_string(i));
        const std::string sCopy = store.Keep(sFile);
        EXPECT_EQ("state " + std::to_string(i), ReadBytes(sCopy));
        EXPECT_EQ(sCopy, store.Keep(sFile)) << "the same bytes again";
    }
    CBackupStore other(dir.path("store")); // another program
    ASSERT_EQ(5u, other.List(sFile).size());
    EXPECT_EQ("state 6", ReadBytes(other.List(dir.path("./smoke.fx00A")).at(0).m_sBackup))
        << "one file, other words";
    ASSERT_EQ(1u, other.ListAll().size());
    EXPECT_EQ(std::filesystem::canonical(sFile), other.ListAll()[0].m_sPath);

    // The oldest, with the cut file kept in its turn; then again by number.
    WriteBytes(sFile, "cut");
    std::string sError;
    EXPECT_TRUE(other.Recover(sFile, 4, sError)) << sError;
    EXPECT_EQ("state 2", ReadBytes(sFile));
    EXPECT_EQ("cut", ReadBytes(other.List(sFile)[0].m_sBackup));
    EXPECT_FALSE(other.Recover(sFile, 5, sError));
    EXPECT_NE(std::string::npos, sError.find("only 5"));
    EXPECT_EQ("state 2", ReadBytes(sFile));

    std::filesystem::remove(sFile); // gone altogether
    EXPECT_TRUE(other.Recover(sFile, 0, sError)) << sError;
    EXPECT_EQ("cut", ReadBytes(sFile));
}

TEST(BackupStore, StandsDamageAndStaysWithinItsSize)
{
    CTempDir dir;
    CBackupStore store(dir.path("store"));
    const std::string sFirst = dir.write("first", std::string(10000, 'a'));
    const std::string sCopy = store.Keep(sFirst);

    // A lost owner file, foreign files and a folder with a copy's name don't disturb.
    std::filesystem::remove(sCopy.substr(0, sCopy.find('-', dir.path("store").size())) + ".path");
    dir.write("store/readme.bak", "mine");
    const char cOther = sCopy[sCopy.size() - 5] == 'f' ? 'e' : 'f';
    std::filesystem::create_directories(sCopy.substr(0, sCopy.size() - 5) + cOther + ".bak");
    ASSERT_EQ(1u, store.ListAll().size());
    EXPECT_EQ("", store.ListAll()[0].m_sPath);
    EXPECT_EQ(1u, store.List(sFirst).size());
    WriteBytes(sFirst, "changed");
    EXPECT_NE("", store.Keep(sFirst));
    EXPECT_NE("", store.ListAll()[0].m_sPath) << "made good by the next copy";

    // Oldest first, and never the new one.
    store.SetMaxTotal(25000);
    const std::string sSecond = dir.write("second", std::string(12000, 'b'));
    store.Keep(sSecond);
    ASSERT_EQ(1u, store.List(sFirst).size());
    EXPECT_EQ("changed", ReadBytes(store.List(sFirst)[0].m_sBackup));
    const std::string sThird = dir.write("third", std::string(30000, 'c'));
    EXPECT_NE("", store.Keep(sThird));
    EXPECT_EQ(1u, store.List(sThird).size());
    EXPECT_TRUE(store.List(sFirst).empty() && store.List(sSecond).empty());
    EXPECT_TRUE(dir.has("store/readme.bak"));

    CBackupStore blocked(sFirst + "/store"); // below a file: can't be made
    EXPECT_EQ("", blocked.Keep(sSecond));
    EXPECT_NE("", blocked.GetLastProblem());
}

TEST(BackupStore, SharesItsFolderWithOtherPrograms)
{
    CTempDir dir;
    CBackupStore editor(dir.path("store")), batch(dir.path("store"));
    const std::string sFile = dir.write("Smoke.Fx00a", "whole");
    editor.Keep(sFile);
    WriteBytes(sFile, "cut");
    batch.Keep(sFile); // as a recovery does
    WriteBytes(sFile, "whole");
    editor.Keep(sFile);
    EXPECT_EQ("whole", ReadBytes(batch.List(sFile)[0].m_sBackup)) << "what a recovery takes first";
}

TEST(BackupStore, CopiesAreAsPrivateAsTheirFile)
{
    namespace fs = std::filesystem;
    CTempDir dir;
    fs::create_directories(dir.path("store"));
    fs::permissions(dir.path("store"), fs::perms::all);
    const std::string sFile = dir.write("Smoke.Fx00a", "secret");
    fs::permissions(sFile, fs::perms::owner_read | fs::perms::owner_write);
    CBackupStore store(dir.path("store"));
    const std::string sCopy = store.Keep(sFile);
    const fs::perms others = fs::perms::group_all | fs::perms::others_all;
    EXPECT_EQ(fs::perms::none, fs::status(sCopy).permissions() & others);
    EXPECT_EQ(fs::perms::none, fs::status(dir.path("store")).permissions() & others);
    fs::remove(sFile);
    std::string sError;
    EXPECT_TRUE(store.Recover(sFile, 0, sError)) << sError;
    EXPECT_EQ(fs::perms::none, fs::status(sFile).permissions() & others);
}
