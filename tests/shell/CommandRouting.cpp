#include "ShellTest.h"

TEST(CommandRouting, EnableRulesOfSourceControlFollowTheState)
{
    CFrameBench bench;
    bench.app->m_sFileName = "/game/a.Fx00a";
    // Connect, Disconnect, Add, Check Out, Submit, Undo, Get Latest, History.
    const auto states = [&]
    {
        bench.frame.OnMenuOpening(menu_items::c_SourceControlMenu);
        std::string sStates;
        for (int32_t nID = c_nCmdConnect; nID <= c_nCmdHistory; ++nID)
            sStates += bench.frame.IsEnabled(nID) ? '1' : '0';
        return sStates;
    };
    EXPECT_EQ("10000000", states());
    bench.sourceControl.m_bConnected = true;
    const std::pair<ESourceControlState, const char*> c_Cases[] = {
        {eSCState_Unknown, "01011111"},          {eSCState_NotControlled, "01100000"},
        {eSCState_PendingElsewhere, "01011111"}, {eSCState_CheckedOut, "01001111"},
        {eSCState_CheckedIn, "01010011"},        {eSCState_Blocked, "01000011"},
    };
    for (const auto& [eState, pszStates] : c_Cases)
    {
        bench.sourceControl.m_eState = eState;
        EXPECT_EQ(pszStates, states()) << eState;
    }
    // Only the menu that shows the answer asks the provider.
    bench.sourceControl.m_eState = eSCState_CheckedOut;
    bench.window.Take();
    for (const CMenuTable* pMenu :
         {&menu_items::c_FileMenu, &menu_items::c_ViewMenu, &menu_items::c_HelpMenu})
        bench.frame.OnMenuOpening(*pMenu);
    EXPECT_FALSE(bench.frame.IsEnabled(c_nCmdSubmit));
    EXPECT_EQ(CCalls{}, bench.window.Take());
    EXPECT_EQ("01001111", states());
    EXPECT_EQ(CCalls{"changed"}, bench.window.Take());
    // A library without a file has nothing to add, whatever a provider would say of an empty name.
    bench.app->m_sFileName.clear();
    EXPECT_EQ("01000000", states());
}

TEST(CommandRouting, SourceControlCommandsReachTheManagerWithTheFile)
{
    CFrameBench bench;
    bench.app->m_sFileName = "/game/a.Fx00a";
    bench.sourceControl.m_bConnected = true;
    struct CCase
    {
        int32_t m_nID;
        const char* m_pszCall;
        const char* m_pszDone;
        const char* m_pszFailed;
    };
    constexpr CCase c_Cases[] = {
        {c_nCmdCheckOut, "CheckOut", "a.Fx00a is checked out", "a.Fx00a isn't checked out"},
        {c_nCmdSubmit, "Submit", "a.Fx00a: the changes are submitted",
         "a.Fx00a: the changes aren't submitted"},
        {c_nCmdUndoChanges, "Undo", "a.Fx00a: the changes are undone", "a.Fx00a: the changes aren't undone"},
        {c_nCmdGetLatest, "GetLatest", "a.Fx00a is the latest version",
         "a.Fx00a: the latest version isn't fetched"},
        {c_nCmdHistory, "History", "", "a.Fx00a: no history can be shown"},
    };
    bench.sourceControl.m_eState = eSCState_PendingElsewhere;
    for (const CCase& test : c_Cases)
        for (const bool bDone : {true, false})
        {
            bench.sourceControl.m_bResult = bDone;
            bench.host.m_Status.clear();
            EXPECT_TRUE(bench.frame.Run(test.m_nID));
            EXPECT_EQ(CCalls{test.m_pszCall + std::string(" /game/a.Fx00a 0")},
                      std::exchange(bench.sourceControl.m_Calls, {}));
            EXPECT_EQ((CCalls{"end edit", "changed"}), bench.window.Take());
            const std::string sTold = bDone ? test.m_pszDone : test.m_pszFailed;
            EXPECT_EQ(sTold.empty() ? CCalls{} : CCalls{sTold}, bench.host.m_Status);
        }
    // The state is asked for when the command runs: a menu may still show what was.
    bench.sourceControl.m_eState = eSCState_CheckedOut;
    EXPECT_TRUE(bench.frame.IsEnabled(c_nCmdCheckOut));
    EXPECT_FALSE(bench.frame.Run(c_nCmdCheckOut));
    EXPECT_FALSE(bench.frame.IsEnabled(c_nCmdCheckOut));
    EXPECT_EQ(CCalls{}, bench.sourceControl.m_Calls);
    bench.sourceControl.m_eState = eSCState_NotControlled;
    EXPECT_TRUE(bench.frame.Run(c_nCmdAddToSourceControl));
    EXPECT_EQ(CCalls{"AddFile /game/a.Fx00a 0"}, bench.sourceControl.m_Calls);

    EXPECT_TRUE(bench.frame.Run(c_nCmdDisconnect));
    EXPECT_FALSE(bench.sourceControl.m_bConnected);
    EXPECT_FALSE(bench.frame.Run(c_nCmdDisconnect));
    EXPECT_TRUE(bench.frame.Run(c_nCmdConnect));
    EXPECT_TRUE(bench.sourceControl.m_bConnected);
}

TEST(CommandRouting, FileCommandsRunTheApplication)
{
    CFrameBench bench;
    EXPECT_FALSE(bench.frame.IsEnabled(c_nCmdSave));
    EXPECT_FALSE(bench.frame.Run(c_nCmdSave)); // no dialog comes up

    const std::string sPath = bench.path("new.Fx00a");
    EXPECT_TRUE(bench.frame.Run(c_nCmdNew));
    EXPECT_TRUE(bench.frame.Run(c_nCmdNewEffect));
    EXPECT_EQ("[[Effects]]\n  Untitled FX 0\n", DumpTree(bench.app->m_EffectTree));
    bench.prompts.onFile(sPath);
    EXPECT_TRUE(bench.frame.Run(c_nCmdSaveAs));
    EXPECT_TRUE(bench.frame.IsEnabled(c_nCmdSave));
    EXPECT_EQ(sPath, bench.app->m_sFileName);
    bench.sourceControl.m_Calls.clear();
    EXPECT_TRUE(bench.frame.Run(c_nCmdSave));
    EXPECT_EQ(CCalls{"EnsureCheckedOut " + sPath + " 0"}, bench.sourceControl.m_Calls);

    bench.prompts.onText("-windowed", "Game Information");
    EXPECT_TRUE(bench.frame.Run(c_nCmdEditGameInfo));
    EXPECT_EQ("-windowed", bench.profile->GetString("", "CommandLine"));
    bench.prompts.onFile(std::nullopt);
    EXPECT_TRUE(bench.frame.Run(c_nCmdPackEffectsAs));
    bench.prompts.onFile(std::nullopt);
    EXPECT_TRUE(bench.frame.Run(c_nCmdOpen));
    EXPECT_EQ(sPath, bench.app->m_sFileName);
}

TEST(CommandRouting, NothingRunsUnderADialogOrInAGesture)
{
    CFrameBench bench;
    bench.app->m_sFileName = "/game/a.Fx00a";
    bench.window.m_bGesture = true;
    EXPECT_FALSE(bench.frame.Run(c_nCmdNew));
    EXPECT_FALSE(bench.frame.OpenFile(bench.path("b.Fx00a")));
    EXPECT_TRUE(bench.frame.IsEnabled(c_nCmdNew)); // buttons don't flicker with each gesture
    EXPECT_EQ("/game/a.Fx00a", bench.app->m_sFileName);
    EXPECT_TRUE(bench.frame.Run(c_nCmdExit));
    bench.window.m_bGesture = false;
    bench.window.Take();

    bench.window.m_WhileAbout = [&]
    {
        EXPECT_FALSE(bench.frame.Run(c_nCmdNew));
        EXPECT_FALSE(bench.frame.OpenFile(bench.path("b.Fx00a")));
        EXPECT_FALSE(bench.frame.QueryClose()); // without a question over the dialog
    };
    EXPECT_TRUE(bench.frame.Run(c_nCmdAbout));
    EXPECT_EQ((CCalls{"end edit", "about", "changed"}), bench.window.Take());
    EXPECT_EQ("/game/a.Fx00a", bench.app->m_sFileName);

    // Ids of the panels, of the toolkit and of nobody aren't the frame's.
    for (int32_t nID : {c_nCmdOpenSelection, c_nCmdFind, c_nCmdToolkitCopy, c_nCmdCopyKey, 12345, 0})
    {
        EXPECT_FALSE(bench.frame.IsEnabled(nID)) << nID;
        EXPECT_FALSE(bench.frame.Run(nID)) << nID;
    }
}

TEST(CommandRouting, ADroppedFileGoesTheWayOfACommand)
{
    CFrameBench bench;
    bench.app->m_sFileName = "/game/a.Fx00a";
    // There is no project above it: the failure is told, and nothing else may run meanwhile.
    bench.prompts.onAsk("Unable to find a project locator file", EAnswer::eOk);
    EXPECT_TRUE(bench.frame.OpenFile("/no/such/b.Fx00a"));
    EXPECT_EQ((CCalls{"end edit", "changed"}), bench.window.Take());
    EXPECT_EQ("", bench.app->m_sFileName);

    // The first file of a session is the one asked for, else the last one, else none.
    bench.profile->WriteString("", "LastOpenedFile", "/no/such/c.Fx00a");
    bench.prompts.onAsk("above the file /no/such/d.Fx00a", EAnswer::eOk);
    EXPECT_TRUE(bench.frame.OpenFirstFile("/no/such/d.Fx00a"));
    bench.prompts.onAsk("above the file /no/such/c.Fx00a", EAnswer::eOk);
    EXPECT_TRUE(bench.frame.OpenFirstFile(""));
    EXPECT_EQ("[[Effects]]\n", DumpTree(bench.app->m_EffectTree));
}

TEST(CommandRouting, BarsAreShownHiddenAndChecked)
{
    CFrameBench bench;
    for (int32_t nBar : {c_nCmdStandardBar, c_nCmdSourceControlBar, c_nCmdEditBar, c_nCmdStatusBar})
    {
        EXPECT_TRUE(bench.frame.IsEnabled(nBar) && bench.frame.IsChecked(nBar));
        EXPECT_TRUE(bench.frame.Run(nBar));
        EXPECT_FALSE(bench.window.m_Bars[nBar]);
        EXPECT_FALSE(bench.frame.IsChecked(nBar));
        bench.window.m_Bars[nBar] = true; // shown by other means
        EXPECT_TRUE(bench.frame.IsChecked(nBar));
    }
    bench.window.m_Bars.erase(c_nCmdStandardBar);
    EXPECT_FALSE(bench.frame.IsEnabled(c_nCmdStandardBar) || bench.frame.IsChecked(c_nCmdStandardBar));
    EXPECT_FALSE(bench.frame.Run(c_nCmdStandardBar));
    EXPECT_FALSE(bench.frame.IsChecked(c_nCmdSave));
}
