#include "ShellTest.h"
#include "app/EffectEditor.h"
#include "app/PrefabEditor.h"
#include "shell/HistoryList.h"

namespace
{

struct CUndoBench : CFrameBench
{
    CUndoBench()
    {
        Build().prefab("Sprite", "Puff").effect("Smoke").key("Sprite").onPrefab("Puff").effect("Fire");
        app->m_sFileName = path("smoke.Fx00a");
        EXPECT_TRUE(app->SaveEffectFile());
        host.m_Status.clear();
    }
    CSpell& Smoke() { return *app->m_SpellMgr.FindSpell("Smoke"); }
    CKey& Key() { return *Smoke().m_Tracks.GetTrack(0)->GetKey(0); }
    void MoveKey(int32_t nTime)
    {
        CEditScope scope(app->m_Edits, "Move Keys");
        scope.TouchKey(Smoke(), Key());
        Key().m_nStartTime += nTime;
        Key().m_nEndTime += nTime;
    }
    // What the menu's items say, a star before those that may not be given.
    std::string Menu() const
    {
        std::string sText;
        for (const CMenuItem& item : menu_items::c_EditMenu)
            sText += (sText.empty() ? "" : "|") + std::string(frame.IsEnabled(item.m_nID) ? "" : "*") +
                     frame.GetLabel(item);
        return sText;
    }
    std::string Title() const
    {
        return CMainFrame::GetTitleOfFile(app->m_sFileName, app->History().IsSaved());
    }
    std::string Rows() const
    {
        const CHistoryList list(app->History());
        std::string sRows;
        for (size_t i = 0; i < list.GetNumRows(); ++i)
            sRows += list.GetDescription(i) + "\n";
        return sRows;
    }
};

} // namespace

TEST(Undo, CommandsBearTheStepsNameAndTellWhatTheyDid)
{
    CUndoBench bench;
    EXPECT_EQ("*&Undo|*&Redo", bench.Menu());
    EXPECT_FALSE(bench.frame.Run(c_nCmdUndo) || bench.frame.Run(c_nCmdRedo) || bench.frame.GoToStep(1));
    EXPECT_EQ(" - smoke.Fx00a", bench.Title());

    const int32_t nStart = bench.Key().m_nStartTime;
    bench.MoveKey(100);
    CEffectEditor effects(bench.app->Context());
    effects.Rename(bench.app->m_EffectTree.FindData(&bench.Smoke()), "Smoke & Ash");
    EXPECT_EQ("&Undo Rename Effect|*&Redo", bench.Menu());
    EXPECT_EQ("Undo Rename Effect", bench.frame.GetTip(c_nCmdUndo));
    EXPECT_EQ("Redo", bench.frame.GetTip(c_nCmdRedo));
    EXPECT_EQ("Open", bench.frame.GetTip(c_nCmdOpen));
    EXPECT_EQ(" - smoke.Fx00a*", bench.Title());
    bench.window.Take();
    bench.sourceControl.m_Calls.clear();
    EXPECT_TRUE(bench.frame.Run(c_nCmdUndo));
    EXPECT_EQ((CCalls{"end edit", "changed"}), bench.window.Take());
    EXPECT_EQ("&Undo Move Keys|&Redo Rename Effect", bench.Menu());
    EXPECT_EQ("Smoke:\n1 items\n", bench.window.m_sShown);
    EXPECT_TRUE(bench.frame.Run(c_nCmdUndo));
    EXPECT_EQ("Smoke: 0\n", bench.window.m_sShown);
    EXPECT_EQ(nStart, bench.Key().m_nStartTime);
    EXPECT_EQ("*&Undo|&Redo Move Keys", bench.Menu());
    EXPECT_EQ(" - smoke.Fx00a", bench.Title()) << "back at what the file holds";
    EXPECT_TRUE(bench.frame.Run(c_nCmdRedo));
    EXPECT_TRUE(bench.frame.GoToStep(2));
    EXPECT_TRUE(bench.frame.GoToStep(0));
    EXPECT_EQ((CCalls{"Undone: Rename Effect \"Smoke\" to \"Smoke & Ash\"", "Undone: Move Keys in Smoke",
                      "Redone: Move Keys in Smoke", "Redone: Rename Effect \"Smoke\" to \"Smoke & Ash\"",
                      "Undone: 2 steps, back to before Move Keys in Smoke"}),
              bench.host.m_Status);
    EXPECT_FALSE(bench.frame.GoToStep(3));
}

TEST(Undo, WaitsForGesturesDialogsAndOpenEdits)
{
    CUndoBench bench;
    bench.MoveKey(100);
    bench.window.m_bGesture = true;
    EXPECT_FALSE(bench.frame.Run(c_nCmdUndo) || bench.frame.GoToStep(0));
    bench.window.m_bGesture = false;
    bench.window.m_WhileAbout = [&] { EXPECT_FALSE(bench.frame.Run(c_nCmdUndo) || bench.frame.GoToStep(0)); };
    EXPECT_TRUE(bench.frame.Run(c_nCmdAbout));
    {
        CEditScope scope(bench.app->m_Edits, "Open");
        EXPECT_EQ("*&Undo Move Keys|*&Redo", bench.Menu());
        EXPECT_FALSE(bench.frame.Run(c_nCmdUndo) || bench.frame.GoToStep(0));
    }
    EXPECT_TRUE(bench.frame.Run(c_nCmdUndo));
    // A name that is still being typed is an edit of its own, which drops what could have been done again.
    bench.window.m_OnEndEdit = [&] { bench.MoveKey(7); };
    EXPECT_FALSE(bench.frame.Run(c_nCmdRedo));
    EXPECT_EQ(1u, bench.app->History().GetNumSteps());
}

TEST(Undo, TheListTellsWhereTheLibraryStands)
{
    CUndoBench bench;
    EXPECT_EQ("New Library, current, saved\n", bench.Rows());
    bench.MoveKey(100);
    bench.MoveKey(200);
    EXPECT_TRUE(bench.app->SaveEffectFile());
    EXPECT_TRUE(bench.frame.GoToStep(1));
    EXPECT_EQ("New Library\nMove Keys in Smoke, current\nMove Keys in Smoke, undone, saved\n", bench.Rows());
    bench.MoveKey(300);
    EXPECT_EQ("New Library\nMove Keys in Smoke\nMove Keys in Smoke, current\n", bench.Rows());
    bench.app->History().SetBudget(1);
    EXPECT_EQ("Earlier Changes\nMove Keys in Smoke, current\n", bench.Rows());

    // What couldn't be written is saved nowhere.
    EXPECT_TRUE(bench.app->SaveEffectFile());
    bench.prompts.onFile(bench.path("none/such.Fx00a"));
    bench.prompts.onAsk("An error occurred saving the file", EAnswer::eOk);
    bench.frame.Run(c_nCmdSaveAs);
    EXPECT_EQ(" - such.Fx00a*", bench.Title());
    EXPECT_EQ("Earlier Changes\nMove Keys in Smoke, current\n", bench.Rows());

    // A save under another name marks the place, too; what is opened begins anew.
    bench.prompts.onFile(bench.path("other.Fx00a"));
    EXPECT_TRUE(bench.frame.Run(c_nCmdSaveAs));
    EXPECT_EQ(" - other.Fx00a", bench.Title());
    EXPECT_EQ("Earlier Changes\nMove Keys in Smoke, current, saved\n", bench.Rows());
    bench.prompts.onAsk("checkout the following file", EAnswer::eNo);
    EXPECT_TRUE(bench.frame.OpenFile(bench.path("other.Fx00a")));
    EXPECT_EQ("Opened Library, current, saved\n", bench.Rows());
    EXPECT_TRUE(bench.frame.Run(c_nCmdNewEffect));
    EXPECT_TRUE(bench.frame.Run(c_nCmdNew));
    EXPECT_EQ("New Library, current, saved\n", bench.Rows());
    EXPECT_EQ("", bench.Title());
}

// Steps by what they are about, and what is shown of them once they are taken back.
TEST(Undo, StepsAreNamedByWhatTheyChange)
{
    CUndoBench bench;
    CEmberdeckApp& app = *bench.app;
    CEffectEditor effects(app.Context());
    CPrefabEditor prefabs(app.Context());
    const auto item = [&](const char* pszText) { return ItemOf(app.m_EffectTree, pszText); };
    const auto prefab = [&](const char* pszText) { return ItemOf(app.m_PrefabTree, pszText); };
    struct CCase
    {
        std::function<void()> m_Edit;
        const char* m_pszStep;
        const char* m_pszShown; // after the undo
    };
    const CCase c_Cases[] = {
        {[&] { effects.NewGroup({}, "Old"); }, "New Group \"Old\"", ""},
        {[&] { effects.MoveItems({item("Smoke")}, effects.NewGroup({}, "Old")); }, "Move Effect \"Smoke\"",
         "1 items\n"},
        {[&] { effects.DuplicateItems({item("Smoke")}); }, "Duplicate Effect \"Smoke_1\"", ""},
        {[&] {
             effects.DuplicateItems({item("Smoke"), item("Fire")});
         },
         "Duplicate 2 Effects", ""},
        {[&] { effects.DeleteItems({item("Smoke")}); }, "Delete Effect \"Smoke\"", "Smoke:\n1 items\n"},
        {[&] {
             effects.DeleteItems({item("Smoke"), item("Fire")});
         },
         "Delete 2 Effects", "Fire:\nSmoke:\n2 items\n"},
        {[&] { prefabs.DeleteItems({prefab("Puff")}); }, "Delete Prefab \"Puff\"", "Smoke: 0\n1 items\n"},
        {[&] { prefabs.Rename(prefab("Puff"), "Cloud"); }, "Rename Prefab \"Puff\" to \"Cloud\"",
         "1 items\n"},
        {[&]
         {
             CEditScope scope(app.m_Edits, "Insert Track");
             scope.TouchTracks(bench.Smoke());
             bench.Smoke().m_Tracks.AddTrack();
         },
         "Insert Track in Smoke", "Smoke:\n"},
        {[&]
         {
             CEditScope scope(app.m_Edits, "Set Phase Length");
             scope.TouchHead(bench.Smoke());
             bench.Smoke().m_Tracks.m_nPhaseLength = 7;
         },
         "Set Phase Length in Smoke", "Smoke:\n"},
    };
    for (const CCase& test : c_Cases)
    {
        const size_t nSteps = app.History().GetPosition();
        test.m_Edit();
        ASSERT_LT(nSteps, app.History().GetNumSteps()) << test.m_pszStep;
        const size_t nLast = app.History().GetNumSteps() - 1;
        EXPECT_EQ(test.m_pszStep, CHistoryList(app.History()).GetText(nLast + 1));
        bench.window.m_sShown = "nothing";
        EXPECT_TRUE(bench.frame.Run(c_nCmdUndo)) << test.m_pszStep;
        EXPECT_EQ(test.m_pszShown, bench.window.m_sShown) << test.m_pszStep;
        EXPECT_TRUE(bench.frame.GoToStep(0)) << test.m_pszStep;
    }
}
