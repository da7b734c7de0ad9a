#include "ScriptedSourceControl.h"

namespace
{

using World = CScriptedSourceControl;

constexpr uint32_t c_nOther = 0x80004005;

} // namespace

TEST(SourceControlConnect, ProjectNamesItsProviderByIdOrName)
{
    World world;
    CSharedSourceControlMgr mgr(world.m_Services);
    mgr.SetChangeSetInfo("Emberdeck", "made");
    EXPECT_TRUE(mgr.SetProject("BETA", "Db"));
    EXPECT_FALSE(mgr.IsConnected());
    EXPECT_EQ("", world.TakeLog()); // nothing connects before the first file
    EXPECT_TRUE(mgr.Connect());
    EXPECT_EQ("init B; open [Db]; caps; ", world.TakeLog());
    EXPECT_TRUE(mgr.SetProject(World::c_B.ToText(), "dB"));
    EXPECT_TRUE(mgr.IsConnected()); // the same but for case
    EXPECT_TRUE(mgr.SetProject("alpha", "Db"));
    EXPECT_FALSE(mgr.IsConnected());
    EXPECT_EQ(0, world.m_nProviders);
    world.m_nCapabilities = 0x100;
    EXPECT_TRUE(mgr.Connect());
    EXPECT_TRUE(mgr.GetClient()->UsesChangeSets());
    EXPECT_EQ("init A; open [Db]; caps; create Emberdeck,made/1; activate -1; ", world.TakeLog());

    // Change sets that fail leave the connection standing.
    for (const char* pszOperation : {"create", "activate", "caps"})
    {
        mgr.Disconnect();
        world.Fail(pszOperation, c_nOther);
        EXPECT_TRUE(mgr.Connect());
        EXPECT_FALSE(mgr.GetClient()->UsesChangeSets());
    }
    mgr.Disconnect();
}

TEST(SourceControlConnect, WorkingWithoutIsAskedOnceForTheSession)
{
    World world;
    CSharedSourceControlMgr mgr(world.m_Services);
    world.ChooseUnasked(); // which is nobody's choice
    EXPECT_TRUE(mgr.EnsureCheckedOut("x", 0));
    world.Choose(CClassId());
    EXPECT_TRUE(mgr.CheckOut("x", 0));
    EXPECT_TRUE(mgr.EnsureCheckedOut("x", 0));
    EXPECT_TRUE(mgr.Submit("x"));
    EXPECT_EQ("select-unasked; select; ", world.TakeLog());
    mgr.SetProject(World::c_Unregistered.ToText(), "db"); // would have to ask, too
    EXPECT_TRUE(mgr.EnsureCheckedOut("x", 0));
    EXPECT_EQ("", world.TakeLog());
    mgr.SetProject("alpha", "db"); // which fails: the message, but no choice between the others
    world.Fail("init", c_nOther, "gone");
    world.m_Prompts.onAsk("gone");
    EXPECT_TRUE(mgr.EnsureCheckedOut("x", 0));
    EXPECT_EQ("init A; ", world.TakeLog());
    mgr.SetProject("no such provider", "db");
    mgr.Disconnect();
    world.Choose(World::c_A);
    EXPECT_TRUE(mgr.Connect()); // the user's own wish
    EXPECT_EQ("select; init A; open []; caps; ", world.TakeLog());
    mgr.Disconnect();

    // A cancelled choice is no choice.
    world.CancelChoice("cancelled");
    EXPECT_FALSE(mgr.Connect());
    world.CancelChoice("cancelled");
    EXPECT_TRUE(mgr.CheckOut("x", 0));
    EXPECT_EQ("select; select; ", world.TakeLog());

    CSharedSourceControlMgr none; // no services at all
    EXPECT_FALSE(none.Connect());
    EXPECT_TRUE(none.CheckOut("x", 0));
    EXPECT_FALSE(none.CheckOut(nullptr, 0));
    EXPECT_EQ(eSCState_CheckedIn, none.SourceControlStateForFile("x"));
    EXPECT_EQ(eSCState_Unknown, none.SourceControlStateForFile(nullptr));
}

TEST(SourceControlConnect, UnregisteredProviderHasOneChoice)
{
    World world;
    CSharedSourceControlMgr mgr(world.m_Services);
    mgr.SetProject(World::c_Unregistered.ToText(), "db");
    world.Choose(World::c_A);
    EXPECT_TRUE(mgr.Connect());
    EXPECT_EQ("select; init A; open [db]; caps; ", world.TakeLog());
    mgr.Disconnect();
    world.Choose(World::c_Unregistered);
    world.m_Prompts.onAsk("Failed to connect to source control.\n\nSource control modules");
    EXPECT_FALSE(mgr.Connect());
    EXPECT_EQ("Source Control Error", world.m_Prompts.m_Asked[0].m_sCaption);
    EXPECT_EQ(EIcon::eStop, world.m_Prompts.m_Asked[0].m_eIcon);
    world.CancelChoice("cancelled"); // ends it without a message
    EXPECT_FALSE(mgr.Connect());

    world.m_Services.m_MakeLocator = [] { return nullptr; };
    CSharedSourceControlMgr broken(world.m_Services);
    world.m_Prompts.onAsk("Failed to connect");
    EXPECT_FALSE(broken.Connect());
}

TEST(SourceControlConnect, FailedInitializeIsTriedWithAnotherChoice)
{
    World world;
    CSharedSourceControlMgr mgr(world.m_Services);
    mgr.SetProject("alpha", "db");

    // Two messages at most, and asking for another choice doesn't count.
    world.Fail("init", c_nOther, "first");
    world.Fail("init", c_nSourceControlChooseAgain, "silent");
    world.Fail("init", c_nOther);
    for (const CClassId& id : {World::c_B, World::c_A})
        world.Choose(id);
    world.m_Prompts.onAsk("first").onAsk("Failed to connect");
    EXPECT_FALSE(mgr.Connect());
    EXPECT_EQ("init A; select; init B; select; init A; ", world.TakeLog());

    world.Fail("init", c_nSourceControlChooseAgain, "silent");
    world.CancelChoice("why not");
    world.m_Prompts.onAsk("why not");
    EXPECT_FALSE(mgr.Connect());

    world.Fail("init", c_nOther, "other");
    world.CancelChoice("not shown");
    world.m_Prompts.onAsk("other");
    EXPECT_FALSE(mgr.Connect());
    world.TakeLog();

    // A choice of another that isn't registered is only seen when it can't be made.
    world.Fail("init", c_nSourceControlChooseAgain);
    world.Choose(World::c_Unregistered);
    world.m_Prompts.onAsk("Failed to connect");
    world.Choose(CClassId());
    EXPECT_FALSE(mgr.Connect());
    EXPECT_EQ("init A; select; select; ", world.TakeLog());

    // The choice to work without answers no provider that asks for another.
    world.Fail("init", c_nSourceControlChooseAgain);
    world.Choose(World::c_B);
    EXPECT_TRUE(mgr.CheckOut("x", 0) || mgr.IsConnected());
    EXPECT_TRUE(mgr.IsConnected());
    mgr.Disconnect();
}

TEST(SourceControlConnect, DatabaseIsChosenUntilOneOpens)
{
    World world;
    CSharedSourceControlMgr mgr(world.m_Services);
    mgr.SetProject("alpha", "db");
    world.Fail("open", c_nOther);
    world.Fail("open", c_nOther);
    EXPECT_TRUE(mgr.Connect());
    EXPECT_EQ("init A; open [db]; choose-db; open [chosen]; choose-db; open [chosen]; caps; ",
              world.TakeLog());
    mgr.Disconnect();
    world.Fail("open", c_nOther, "not shown");
    world.Fail("choose-db", c_nOther);
    EXPECT_FALSE(mgr.Connect()); // begins with the project's own again
    EXPECT_EQ("init A; open [db]; choose-db; ", world.TakeLog());
    EXPECT_EQ(0, world.m_nProviders);
}

TEST(ClassId, ReadsItsOneForm)
{
    const std::string sText = "{3C5E1A90-7D24-4B68-9E1F-62AD07C4B315}";
    EXPECT_EQ(sText, CClassId::FromText(sText).ToText());
    EXPECT_EQ(sText, CClassId::FromText("{3c5e1a90-7d24-4b68-9e1f-62ad07c4b315}").ToText());
    for (std::string sBad : {sText.substr(1), sText + " ", std::string("{}"), std::string()})
        EXPECT_TRUE(CClassId::FromText(sBad).IsZero()) << sBad;
    for (size_t i = 0; i < sText.size(); ++i)
    {
        std::string sBad = sText;
        sBad[i] = 'g';
        EXPECT_TRUE(CClassId::FromText(sBad).IsZero()) << sBad;
    }
    World world;
    EXPECT_EQ(World::c_B, world.m_Registry.IdFromText(" beta "));
    EXPECT_TRUE(world.m_Registry.IdFromText("").IsZero());
    EXPECT_FALSE(world.m_Registry.Register(World::c_A, "again", [] { return nullptr; }));
}
