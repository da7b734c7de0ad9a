#include "ScriptedSourceControl.h"

#include "support/TempDir.h"

namespace
{

using World = CScriptedSourceControl;

class SourceControlFiles : public testing::Test
{
protected:
    SourceControlFiles()
    {
        m_Mgr.SetProject("alpha", "db");
        EXPECT_TRUE(m_Mgr.Connect());
        m_World.TakeLog();
    }
    ~SourceControlFiles() override { m_Mgr.Disconnect(); }

    World m_World;
    CSharedSourceControlMgr m_Mgr{m_World.m_Services};
};

} // namespace

TEST(SourceControlState, FollowsTheStatusBits)
{
    const int32_t cases[][2] = {
        {-1, 1},      {0, 4},       {0x2, 3},     {0x1, 4},        {0x3, 3},       {0x10001, 4},
        {0x20003, 3}, {0x10000, 3}, {0x20000, 5}, {0x30000, 3},    {0x20002, 5},   {0x8, 4},
        {0xA, 3},     {0xC, 2},     {0xE, 3},     {0x14, 2},       {0x10, 4},      {0x2000C, 2},
        {0x10008, 4}, {0x20010, 4}, {0x4, 4},     {0x40000000, 4}, {INT32_MIN, 4},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c[1], CSourceControlClient::StateFromStatus(c[0])) << std::hex << c[0];
}

TEST_F(SourceControlFiles, EnsureCheckedOutOnlyWhereItHelps)
{
    m_World.m_Files = {{"in", 0}, {"out", 2}, {"blocked", 0x20002}};
    EXPECT_TRUE(m_Mgr.EnsureCheckedOut("unknown", 0));
    EXPECT_TRUE(m_Mgr.EnsureCheckedOut("out", 0));
    EXPECT_FALSE(m_Mgr.EnsureCheckedOut("blocked", 0));
    EXPECT_EQ(std::string::npos, m_World.TakeLog().find("check-out"));
    EXPECT_TRUE(m_Mgr.EnsureCheckedOut("in", 5));
    EXPECT_EQ("known in; status @in; known in; check-out @in/5; ", m_World.TakeLog());
    EXPECT_FALSE(m_Mgr.CheckOut("unknown", 0));

    // Errors show in the result alone; a status that fails counts as 0.
    m_World.Fail("status", c_nSourceControlFailed, "never shown");
    m_World.Fail("check-out", c_nSourceControlFailed, "never shown");
    EXPECT_FALSE(m_Mgr.EnsureCheckedOut("out", 0));
    EXPECT_NE(std::string::npos, m_World.TakeLog().find("check-out @out/0"));
    m_World.Fail("known", c_nSourceControlFailed);
    EXPECT_EQ(eSCState_CheckedIn, m_Mgr.SourceControlStateForFile("unknown"));
    EXPECT_EQ(eSCState_NotControlled, m_Mgr.SourceControlStateForFile("unknown"));
}

TEST_F(SourceControlFiles, AddMakesMissingFoldersAndSubmitSendsThemFirst)
{
    CTempDir dir;
    const std::string sPath = dir.write("new/deep/x.Fx00c", "x");
    std::string sKnown = dir.dir() + '/';
    std::replace(sKnown.begin(), sKnown.end(), '/', '\\');
    m_World.m_Files[sKnown] = 0;
    EXPECT_TRUE(m_Mgr.AddFile(sPath.c_str()));
    const std::string sNew = sKnown + "new\\", sDeep = sNew + "deep\\";
    const std::string sLog = m_World.TakeLog();
    EXPECT_EQ(0u, sLog.find("known \\; ")); // from the top
    const std::string sEnd = "known " + sKnown + "; known " + sNew + "; add-folder @" + sKnown + ' ' + sNew +
                             "/0; known " + sDeep + "; add-folder @" + sNew + ' ' + sDeep + "/0; add " +
                             sPath + "/0; ";
    EXPECT_EQ(sEnd, sLog.substr(sLog.size() - std::min(sLog.size(), sEnd.size())));

    EXPECT_TRUE(m_Mgr.Submit(sPath.c_str()));
    std::string sSubmits;
    const std::string sSubmitLog = m_World.TakeLog();
    for (size_t i = sSubmitLog.find("submit"); i != std::string::npos; i = sSubmitLog.find("submit", i + 1))
        sSubmits += sSubmitLog.substr(i, sSubmitLog.find(';', i) + 1 - i);
    EXPECT_EQ("submit @" + sNew + "/0;submit @" + sDeep + "/0;submit @" + sPath + "/0;", sSubmits);

    // Nothing above is known: no folder is added. No such file: the provider isn't asked at all.
    m_World.m_Files.clear();
    EXPECT_TRUE(m_Mgr.AddFile(sPath.c_str()));
    EXPECT_EQ(std::string::npos, m_World.TakeLog().find("add-folder"));
    EXPECT_FALSE(m_Mgr.AddFile(dir.path("none").c_str()));
    EXPECT_EQ("", m_World.TakeLog());
}

TEST_F(SourceControlFiles, OtherOperationsGoByTheDepotPath)
{
    EXPECT_TRUE(m_Mgr.Undo("x"));
    EXPECT_TRUE(m_Mgr.GetLatest("x"));
    EXPECT_TRUE(m_Mgr.History("x"));
    EXPECT_EQ("revert @x/0; sync @x/0; history @x; ", m_World.TakeLog());
    for (const char* pszOperation : {"revert", "sync", "history", "submit", "known"})
        m_World.Fail(pszOperation, c_nSourceControlFailed);
    EXPECT_FALSE(m_Mgr.Undo("x"));
    EXPECT_FALSE(m_Mgr.GetLatest("x"));
    EXPECT_FALSE(m_Mgr.History("x"));
    EXPECT_FALSE(m_Mgr.CheckOut("x", 0));
    EXPECT_FALSE(m_Mgr.Submit("x"));
    EXPECT_TRUE(m_Mgr.IsConnected());
}

TEST_F(SourceControlFiles, DialogThatLeadsBackHereChangesNothing)
{
    m_World.m_Files["x"] = 2;
    m_World.m_OnCall = [this](const std::string& sOperation)
    {
        if (sOperation != "history")
            return;
        EXPECT_FALSE(m_Mgr.Submit("x"));
        EXPECT_EQ(eSCState_Unknown, m_Mgr.SourceControlStateForFile("x"));
        m_Mgr.SetProject("beta", "db"); // lets go of the present one, but not under its feet
        EXPECT_EQ(1, m_World.m_nProviders);
    };
    EXPECT_TRUE(m_Mgr.History("x"));
    EXPECT_EQ("history @x; ", m_World.TakeLog());
    EXPECT_FALSE(m_Mgr.IsConnected());
    EXPECT_EQ(0, m_World.m_nProviders);
    EXPECT_EQ(eSCState_CheckedOut, m_Mgr.SourceControlStateForFile("x"));
    EXPECT_EQ(0u, m_World.TakeLog().find("init B"));
}
