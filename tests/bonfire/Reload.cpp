#include "game/Reload.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

#include "game/GameFile.h"

namespace
{
CFileStamp Stamp(uint64_t nSize, int64_t nTime)
{
    return {true, nSize, nTime, 1};
}

struct CFolder
{
    std::filesystem::path m_Path;
    CFolder()
    {
        std::string sName = (std::filesystem::temp_directory_path() / "bonfire-XXXXXX").string();
        m_Path = mkdtemp(sName.data());
    }
    ~CFolder() { std::filesystem::remove_all(m_Path); }
    std::string Write(const std::string& sName, const std::string& sText) const
    {
        std::ofstream(m_Path / sName, std::ios::binary) << sText;
        return m_Path / sName;
    }
};
} // namespace

TEST(Reload, WaitsForTheWriterToRest)
{
    CReloadWatch watch;
    watch.Loaded(Stamp(100, 1));
    EXPECT_EQ(EReload::eNothing, watch.Ask(Stamp(100, 1), 10));
    EXPECT_EQ(EReload::eWait, watch.Ask(Stamp(40, 2), 11)); // half written
    EXPECT_EQ(EReload::eWait, watch.Ask(Stamp(80, 3), 11.1));
    EXPECT_EQ(EReload::eWait, watch.Ask(Stamp(80, 3), 11.15));
    EXPECT_EQ(EReload::eLoad, watch.Ask(Stamp(80, 3), 11.3));
    EXPECT_EQ(EReload::eNothing, watch.Ask(Stamp(80, 3), 11.4)); // told once
    CFileStamp other = Stamp(80, 3);
    other.m_nFile = 2; // put in its place, with all else the same
    EXPECT_EQ(EReload::eWait, watch.Ask(other, 12));
    EXPECT_EQ(EReload::eLoad, watch.Ask(other, 12.5));
}

TEST(Reload, AFileMovedAwayForAMomentIsNotGone)
{
    CReloadWatch watch;
    watch.Loaded(Stamp(100, 1));
    EXPECT_EQ(EReload::eWait, watch.Ask({}, 1));
    EXPECT_EQ(EReload::eWait, watch.Ask({}, 1.5));
    EXPECT_EQ(EReload::eWait, watch.Ask(Stamp(120, 2), 1.6));
    EXPECT_EQ(EReload::eLoad, watch.Ask(Stamp(120, 2), 1.8));
    EXPECT_EQ(EReload::eWait, watch.Ask({}, 2));
    EXPECT_EQ(EReload::eGone, watch.Ask({}, 3.5));
    EXPECT_EQ(EReload::eNothing, watch.Ask({}, 5));
    EXPECT_EQ(EReload::eWait, watch.Ask(Stamp(100, 1), 6)); // back as it was is a change too
    EXPECT_EQ(EReload::eLoad, watch.Ask(Stamp(100, 1), 6.5));
}

TEST(Reload, StampsTellAReplacedFile)
{
    const CFolder folder;
    const std::string sFile = folder.Write("a.Fx00p", "one");
    const CFileStamp first = StampOf(sFile);
    EXPECT_TRUE(first.m_bThere);
    const auto time = std::filesystem::last_write_time(sFile);
    const std::string sOther = folder.Write("b", "two");
    std::filesystem::last_write_time(sOther, time);
    std::filesystem::rename(sOther, sFile);
    EXPECT_FALSE(first == StampOf(sFile));
    EXPECT_FALSE(StampOf(sFile + "x").m_bThere);
}

TEST(Reload, WithoutANameTheFilePackedLastIsPlayed)
{
    const CFolder folder, empty;
    const std::string sOld = folder.Write("old.Fx00p", "");
    const std::string sNew = folder.Write("new.FX00P", "");
    folder.Write("newer.Fx00a", "");
    const auto time = std::filesystem::last_write_time(sNew);
    std::filesystem::last_write_time(sOld, time - std::chrono::seconds(5));
    EXPECT_EQ(sNew, ChooseFile({empty.m_Path, folder.m_Path / "none", folder.m_Path}, "x"));
    EXPECT_EQ("x", ChooseFile({empty.m_Path}, "x"));
    std::string sError;
    EXPECT_EQ(nullptr, LoadGame(sOld, "no.so", sError)); // the file is read first, then the plug-in
    EXPECT_NE(std::string::npos, sError.find("cannot load the effect types"));
    EXPECT_EQ(nullptr, LoadGame(folder.m_Path, "no.so", sError));
    EXPECT_EQ(0u, sError.find("cannot read "));
}
