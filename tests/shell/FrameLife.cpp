#include "ShellTest.h"

TEST(FrameLife, IsBuiltInOrderAndStopsAtAFailedBar)
{
    CAppBench bench;
    CMemoryFrameWindow window;
    CMainFrame frame(*bench.app, window);
    EXPECT_TRUE(frame.Create());
    const CCalls order = {"toolbar Standard",
                          "toolbar Source Control",
                          "toolbar Edit",
                          "status bar",
                          "images Standard",
                          "dock 32917 beside 0",
                          "images Source Control",
                          "dock 32916 beside 32917",
                          "images Edit",
                          "dock 33024 beside 32916",
                          "left dock",
                          "history dock",
                          "splash"};
    EXPECT_EQ(order, window.Take());
    EXPECT_NE(nullptr, frame.MenuDecorator().FindIcon(c_nCmdSave, EImageKind::eHot));
    EXPECT_NE(nullptr, frame.MenuDecorator().FindIcon(c_nCmdHistory, EImageKind::eDisabled));

    size_t nCalls = 1;
    for (int32_t nBar : {c_nCmdStandardBar, c_nCmdSourceControlBar, c_nCmdEditBar, c_nCmdStatusBar})
    {
        CMemoryFrameWindow failing;
        failing.m_nFailingBar = nBar;
        EXPECT_FALSE(CMainFrame(*bench.app, failing).Create());
        EXPECT_EQ(nCalls++, failing.Take().size());
    }
}

TEST(FrameLife, TheExitQuestionComesOnceForEachClosing)
{
    CFrameBench bench;
    bench.prompts.onAsk("save your work", EAnswer::eCancel);
    EXPECT_FALSE(bench.frame.QueryClose());
    bench.prompts.onAsk("save your work", EAnswer::eNo);
    EXPECT_TRUE(bench.frame.QueryClose());
    EXPECT_TRUE(bench.frame.QueryClose()); // the second step of the same closing

    // Work that is done after a closing that came to nothing is asked about again.
    bench.app->NewEffect();
    bench.prompts.onAsk("save your work", EAnswer::eNo);
    EXPECT_TRUE(bench.frame.QueryClose());
    EXPECT_TRUE(bench.frame.Run(c_nCmdAbout));
    bench.prompts.onAsk("save your work", EAnswer::eYes).onFile(std::nullopt);
    EXPECT_TRUE(bench.frame.QueryClose()); // a save that came to nothing doesn't stop the exit

    // Exit is a wish to the window, which asks back.
    bench.window.Take();
    EXPECT_TRUE(bench.frame.Run(c_nCmdExit));
    EXPECT_EQ(CCalls{"close"}, bench.window.Take());
}

TEST(FrameLife, TitleAndStatusLine)
{
    EXPECT_EQ("Emberdeck", CMainFrame::GetTitle("", false));
    EXPECT_EQ("Emberdeck - Smoke", CMainFrame::GetTitle("Smoke", false));
    EXPECT_EQ("Emberdeck", CMainFrame::GetTitle("Smoke", true));
    EXPECT_EQ(" - fire.Fx00a", CMainFrame::GetTitleOfFile("C:\\game/fx\\fire.Fx00a", true));
    EXPECT_EQ(" - fire.Fx00a*", CMainFrame::GetTitleOfFile("fire.Fx00a", false));
    EXPECT_EQ("", CMainFrame::GetTitleOfFile("", true));
    EXPECT_EQ(" - Untitled*", CMainFrame::GetTitleOfFile("", false));
    EXPECT_EQ("Creates a new effect", CMainFrame::GetStatusLine(c_nCmdNewEffect));
    EXPECT_EQ("Ready", CMainFrame::GetStatusLine(0));
    EXPECT_EQ("Ready", CMainFrame::GetStatusLine(c_nCmdSaveAs));
}
