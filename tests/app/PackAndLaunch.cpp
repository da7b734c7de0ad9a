#include <chrono>
#include <thread>

#include "app/Launch.h"
#include "support/AppBench.h"
#include "support/ScopeChecker.h"

TEST(PackAndLaunch, PackNameCutsOnlyTheLastComponentsExtension)
{
    EXPECT_EQ("\\a.b\\x.Fx00p", CEmberdeckApp::MakePackName("/a.b/x"));
    EXPECT_EQ("C:\\d\\x.Fx00p", CEmberdeckApp::MakePackName("C:\\d/x.Fx00c"));
    EXPECT_EQ("x.y.Fx00p", CEmberdeckApp::MakePackName("x.y.Fx00a"));
    EXPECT_EQ("x.Fx00p", CEmberdeckApp::MakePackName("x"));
    EXPECT_EQ("\\a\\.Fx00p", CEmberdeckApp::MakePackName("/a/.Fx00a"));
}

TEST(PackAndLaunch, PacksBesideTheFileAndRepairsValuesInTheOpen)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    ASSERT_TRUE(bench.Open(sFile));
    bench.sourceControl.m_Calls.clear();
    CScopeChecker checker(bench.app->Context());
    EXPECT_TRUE(bench.app->PackEffects());
    checker.ExpectEdits(0, "valid values");
    EXPECT_TRUE(bench.dir.has("game/Smoke.Fx00p"));
    std::string sWindows = bench.path("Smoke.Fx00p");
    std::replace(sWindows.begin(), sWindows.end(), '/', '\\');
    EXPECT_EQ("EnsureCheckedOut " + sWindows + " 0", bench.sourceControl.m_Calls.back());

    // What it repairs is no step: it is undone with the step before, and a saved library counts as saved.
    CHistory& history = bench.app->History();
    const std::string sBefore = LibrarySnapshot(bench.app->Context(), bench.dir);
    const auto spoil = [&]
    {
        CEditScope scope(bench.app->m_Edits, "Spoil");
        CEffectPropertySet* pPuff = bench.app->m_SpellMgr.FindPrefab("Puff");
        scope.TouchPrefab(pPuff);
        PropOf(*pPuff, "Count")->GetKey(0)->m_Data.SetInt(5000);
    };
    spoil();
    checker.ExpectEdits(1);
    history.MarkSaved();
    EXPECT_TRUE(bench.app->PackEffects());
    checker.ExpectEdits(1, "a value beyond its range");
    EXPECT_EQ(1000, IntOf(*KeyOf(bench.app->m_SpellMgr, "Smoke"), "Count"));
    EXPECT_TRUE(history.GetNumSteps() == 1 && history.IsSaved());
    EXPECT_EQ("Spoil", history.GetLabel(0));
    const std::string sPacked = LibrarySnapshot(bench.app->Context(), bench.dir);
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(sBefore, LibrarySnapshot(bench.app->Context(), bench.dir));
    EXPECT_TRUE(history.Redo());
    EXPECT_EQ(sPacked, LibrarySnapshot(bench.app->Context(), bench.dir));
    spoil();
    history.Forget();
    EXPECT_TRUE(bench.app->PackEffects());
    EXPECT_EQ(0u, history.GetNumSteps()) << "nothing to go with";

    bench.app->m_sFileName = bench.path("no/x.Fx00a");
    bench.prompts.onAsk("An error occurred packing the file " + bench.path("no/x.Fx00p") +
                        ". Please make sure");
    EXPECT_FALSE(bench.app->PackEffects());
    EXPECT_EQ("Error Packing", bench.prompts.m_Asked.back().m_sCaption);

    // Without a name a dialog, and no message of a failure.
    bench.app->m_sFileName.clear();
    bench.sourceControl.m_Calls.clear();
    bench.prompts.onFile(bench.path("no/x.Fx00p")).onFile(bench.path("As.Fx00p"));
    EXPECT_FALSE(bench.app->PackEffects());
    EXPECT_TRUE(bench.app->PackEffects());
    EXPECT_EQ("*.Fx00p", bench.prompts.m_Files.back().m_sDefaultExtension);
    EXPECT_TRUE(bench.sourceControl.m_Calls.empty());
    EXPECT_EQ(ReadBytes(bench.path("As.Fx00p")).size(), ReadBytes(bench.path("Smoke.Fx00p")).size());

    // A library that has a packed file's name isn't packed over.
    const std::string sOwn = bench.MakeFile("Own.Fx00p");
    ASSERT_TRUE(bench.Open(sOwn));
    const std::string sText = ReadBytes(sOwn);
    bench.prompts.onAsk("An error occurred packing");
    EXPECT_FALSE(bench.app->PackEffects());
    std::filesystem::create_symlink(sOwn, bench.path("Link.Fx00p"));
    EXPECT_FALSE(bench.app->PackTo(bench.path("Link.Fx00p")));
    bench.prompts.onFile(sOwn).onAsk("An error occurred packing");
    EXPECT_FALSE(bench.app->PackEffectsAs());
    EXPECT_EQ(sText, ReadBytes(sOwn));
    bench.app->m_sFileName.clear();

    bench.prompts.onFile(std::nullopt, "*.Fx00c"); // stops before packing
    EXPECT_FALSE(bench.app->SaveAndPack());
}

TEST(PackAndLaunch, StartsTheGameInItsFolderWithItsArguments)
{
    CAppBench bench;
    const std::string sGame = bench.dir.write(
        "game/bin/play.sh", "#!/bin/sh\n{ pwd; for a in \"$0\" \"$@\"; do echo \"$a\"; done; } > ../out.tmp; "
                            "mv ../out.tmp ../out.txt\n");
    std::filesystem::permissions(sGame, std::filesystem::perms::owner_all);
    bench.WriteProject("", "[Tools Launch]\r\nPCBinary=bin\\play.sh\r\n");
    ASSERT_TRUE(bench.app->LocateProject(bench.path("x.Fx00a").c_str()));

    bench.prompts.onText("-level \"two words\" x", "Game Information\nCommand Line").onText(std::nullopt);
    bench.app->EditGameInfo();
    bench.app->EditGameInfo(); // cancelled
    EXPECT_EQ("-level \"two words\" x", bench.prompts.m_Offered.back());
    const auto here = std::filesystem::current_path();
    bench.app->LaunchGame();
    for (int i = 0; i < 500 && !bench.dir.has("game/out.txt"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(bench.path("bin") + "\n" + sGame + "\n-level\ntwo words\nx\n",
              ReadBytes(bench.path("out.txt")));
    EXPECT_EQ(here, std::filesystem::current_path());

    LaunchProgram("", "x"); // nothing, and no word of what can't be started
    LaunchProgram(bench.path("none"), "");
    EXPECT_EQ("", MakeLaunch("play.sh", "").m_sDirectory);
}
