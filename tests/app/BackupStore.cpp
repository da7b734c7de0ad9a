#include "app/BackupStore.h"

#include "support/TempDir.h"

namespace
{
// The file that tells whose copy it is.
std::string OwnerFile(const std::string& sCopy)
{
    return sCopy.substr(0, sCopy.find('-', sCopy.rfind('/'))) + ".path";
}
} // namespace

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
    EXPECT_EQ(std::filesystem::canonical(sFile).string(),
              ReadBytes(OwnerFile(other.List(sFile)[0].m_sBackup)));

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
    std::filesystem::remove(OwnerFile(sCopy));
    dir.write("store/readme.bak", "mine");
    const char cOther = sCopy[sCopy.size() - 5] == 'f' ? 'e' : 'f';
    std::filesystem::create_directories(sCopy.substr(0, sCopy.size() - 5) + cOther + ".bak");
    EXPECT_EQ(1u, store.List(sFirst).size());
    WriteBytes(sFirst, "changed");
    EXPECT_NE("", store.Keep(sFirst));
    EXPECT_EQ(std::filesystem::canonical(sFirst).string(), ReadBytes(OwnerFile(sCopy)))
        << "made good by the next copy";

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

namespace
{
// "whole ..." is sound, "?" can't be told.
std::optional<bool> IsWholeText(const std::string&, const std::string& sContent)
{
    return sContent == "?" ? std::nullopt : std::optional(sContent.starts_with("whole"));
}
} // namespace

TEST(BackupStore, RecoversWhatIsSound)
{
    CTempDir dir;
    CBackupStore store(dir.path("store"), IsWholeText);
    const std::string sFile = dir.path("Smoke.Fx00a");
    const auto keep = [&](const std::string& sContent)
    {
        WriteBytes(sFile, sContent);
        EXPECT_NE("", store.Keep(sFile));
    };
    const auto recovered = [&]
    {
        std::string sError;
        const std::optional<size_t> nCopy = store.ChooseSound(sFile);
        return nCopy && store.Recover(sFile, *nCopy, sError) ? ReadBytes(sFile) : "nothing";
    };
    EXPECT_FALSE(store.ChooseSound(sFile));
    keep("whole 1");
    keep("whole 2");
    for (int i = 0; i < 9; ++i)
        keep("cut " + std::to_string(i));
    // Nine bad saves haven't pushed it out.
    ASSERT_EQ(5u, store.List(sFile).size());
    EXPECT_EQ(true, store.List(sFile)[4].m_bSound);
    EXPECT_EQ(false, store.List(sFile)[0].m_bSound);
    EXPECT_EQ("whole 2", recovered());

    // A recover that was killed has kept the cut content, or the whole one that it was to replace: the next one brings
    // back the same.
    keep("cut again");
    EXPECT_EQ("whole 2", recovered());
    for (const char* pszContent : {"whole 0", "whole 2", "whole 3"})
        keep(pszContent);
    EXPECT_EQ("whole 2", recovered());
    EXPECT_EQ("whole 3", recovered()) << "a recover can be taken back";

    // Copies of earlier versions say nothing, and names may lie: what they hold is looked at.
    const auto rename = [&](const char* pszSound)
    {
        for (const CBackupStore::CEntry& entry : CBackupStore(dir.path("store")).List(sFile))
        {
            const size_t nMark = entry.m_sBackup.size() - (entry.m_bSound ? 6 : 4);
            std::filesystem::rename(entry.m_sBackup, entry.m_sBackup.substr(0, nMark) + pszSound + ".bak");
        }
    };
    rename("-s");
    WriteBytes(sFile, "cut");
    CBackupStore later(dir.path("store"), IsWholeText);
    const auto chosen = [&]
    {
        const std::optional<size_t> nCopy = later.ChooseSound(sFile);
        return nCopy ? ReadBytes(later.List(sFile).at(*nCopy).m_sBackup) : "nothing";
    };
    EXPECT_EQ("whole 2", chosen());
    rename("");
    EXPECT_EQ("whole 2", chosen());
    for (int i = 0; i < 9; ++i)
    {
        WriteBytes(sFile, "cut " + std::to_string(i));
        EXPECT_NE("", later.Keep(sFile));
    }
    EXPECT_EQ("whole 2", chosen()) << "and kept";
}

TEST(BackupStore, LooksIntoUnknownCopiesUntilOneIsSound)
{
    CTempDir dir;
    std::string sLooked;
    CBackupStore plain(dir.path("store"));
    CBackupStore store(dir.path("store"),
                       [&](const std::string& sPath, const std::string& sContent)
                       {
                           sLooked += sContent + ", ";
                           return IsWholeText(sPath, sContent);
                       });
    const auto kept =
        [&](CBackupStore& into, const char* pszName, std::initializer_list<const char*> contents)
    {
        for (const char* pszContent : contents)
            EXPECT_NE("", into.Keep(dir.write(pszName, pszContent)));
        return std::exchange(sLooked, "");
    };
    // From the newest on, not into those whose names say it, and no further than needed.
    EXPECT_EQ("", kept(plain, "first", {"whole a", "whole b", "cut c"}));
    EXPECT_EQ("cut d, cut e, cut f, cut c, whole b, ", kept(store, "first", {"cut d", "cut e", "cut f"}));
    EXPECT_EQ("cut g, ", kept(store, "first", {"cut g"})) << "it is known now";
    // Down to the oldest, and that stays.
    EXPECT_EQ("", kept(plain, "second", {"whole a", "cut b", "cut c", "cut d", "cut e"}));
    EXPECT_EQ("cut f, cut e, cut d, cut c, cut b, whole a, ", kept(store, "second", {"cut f"}));
    const auto entries = store.List(dir.path("second"));
    ASSERT_EQ(5u, entries.size());
    EXPECT_EQ("whole a", ReadBytes(entries.back().m_sBackup));
}

TEST(BackupStore, WithoutASoundCopyNothingIsPreferredButTheUnknown)
{
    CTempDir dir;
    CBackupStore store(dir.path("store"), IsWholeText);
    const std::string sFile = dir.write("Smoke.Fx00a", "cut");
    store.Keep(sFile);
    WriteBytes(sFile, "cut, too");
    EXPECT_FALSE(store.ChooseSound(sFile));
    WriteBytes(sFile, "?");
    store.Keep(sFile);
    WriteBytes(sFile, "cut, too");
    ASSERT_TRUE(store.ChooseSound(sFile));
    EXPECT_EQ("?", ReadBytes(store.List(sFile)[*store.ChooseSound(sFile)].m_sBackup));

    // A check that runs out of memory refuses no save.
    CBackupStore failing(dir.path("store"),
                         [](const std::string&, const std::string&) -> std::optional<bool>
                         { throw std::bad_alloc(); });
    WriteBytes(sFile, "whole");
    EXPECT_NE("", failing.Keep(sFile));
    EXPECT_EQ(std::nullopt, failing.List(sFile)[0].m_bSound);

    // The size of all copies goes before: other files' last sound ones go last.
    CBackupStore small(dir.path("small"), IsWholeText);
    const std::string sFirst = dir.write("first", "whole " + std::string(10000, 'a'));
    small.Keep(sFirst);
    WriteBytes(sFirst, "cut " + std::string(10000, 'a'));
    small.Keep(sFirst);
    small.SetMaxTotal(25000);
    small.Keep(dir.write("second", "whole " + std::string(10000, 'b')));
    ASSERT_EQ(1u, small.List(sFirst).size());
    EXPECT_EQ(true, small.List(sFirst)[0].m_bSound);
    small.Keep(dir.write("third", "whole " + std::string(24000, 'c')));
    EXPECT_TRUE(small.List(sFirst).empty());
}
