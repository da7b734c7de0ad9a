#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "app/Advice.h"
#include "platform/FileLock.h"
#include "platform/Paths.h"
#include "support/AppBench.h"
#include "support/ScopeChecker.h"
#include "support/WorkingDir.h"

using CCalls = std::vector<std::string>;

TEST(OpenAndSave, OpensInTheToldOrderAndWritesBackTheSameBytes)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    const std::string sBytes = ReadBytes(sFile);
    bench.profile->WriteString("", "LastOpenedFile", "");

    ASSERT_TRUE(bench.Open(sFile, EAnswer::eYes)); // a check-out that fails stops nothing
    EXPECT_EQ((CCalls{"SetProject prov|db", "CheckOut " + sFile + " 0"}), bench.sourceControl.m_Calls);
    const auto& question = bench.prompts.m_Asked.back();
    EXPECT_EQ(
        "Would you like to checkout the following file for edit?  You must check the file out before you "
        "start to modify it because changes may accidentally get overwritten.\n\n" +
            sFile,
        question.m_sText);
    EXPECT_EQ("Checkout For Edit?", question.m_sCaption);
    EXPECT_TRUE(question.m_eButtons == EButtons::eYesNo && question.m_eIcon == EIcon::eQuestion);
    EXPECT_EQ(sFile, bench.lastFile());
    EXPECT_EQ(bench.path("res/"), NativePath(bench.app->m_sResourceRoot));
    EXPECT_EQ("[[Effects]]\n  Smoke\n", DumpTree(bench.app->m_EffectTree));

    bench.sourceControl.m_Calls.clear();
    bench.documents.Open(*bench.app->m_SpellMgr.FindSpell("smoke"));
    ASSERT_TRUE(bench.app->SaveEffectFile());
    EXPECT_EQ((CCalls{"EnsureCheckedOut " + sFile + " 0"}), bench.sourceControl.m_Calls);
    EXPECT_EQ(sBytes, ReadBytes(sFile));
    EXPECT_EQ(sBytes, ReadBytes(bench.app->GetLastBackup()));

    // The name itself may be given; views go, and the active prefab.
    bench.host.m_pActive = bench.app->m_SpellMgr.FindPrefab("Puff");
    bench.prompts.onAsk("checkout", EAnswer::eNo);
    ASSERT_TRUE(bench.app->OpenEffectFile(bench.app->m_sFileName.c_str()));
    EXPECT_TRUE(bench.documents.m_Open.empty());
    EXPECT_EQ(nullptr, bench.host.m_pActive);
    EXPECT_EQ(sFile, bench.app->m_sFileName);
}

TEST(OpenAndSave, AProjectIsChosenByItsLocatorFile)
{
    CAppBench bench;
    bench.prompts.onFile(std::nullopt);
    EXPECT_FALSE(bench.app->ChooseProject());
    bench.prompts.onFile(bench.dir.path("nowhere/none.proj00")).onAsk("Unable to find a project");
    EXPECT_FALSE(bench.app->ChooseProject());
    EXPECT_FALSE(bench.app->m_EffectModule.IsLoaded());
    EXPECT_TRUE(bench.sourceControl.m_Calls.empty());

    bench.prompts.onFile(bench.path("game.proj00"));
    EXPECT_TRUE(bench.app->ChooseProject());
    EXPECT_TRUE(bench.app->m_EffectModule.IsLoaded());
    EXPECT_EQ(CCalls{"SetProject prov|db"}, bench.sourceControl.m_Calls);
    const CFileDialogRequest& request = bench.prompts.m_Files.back();
    EXPECT_TRUE(request.m_bOpen);
    EXPECT_NE(std::string::npos, request.m_sFilter.find("*.proj00"));
}

TEST(OpenAndSave, EachFailureLeavesTheStateOfNew)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    const auto expectFailure = [&](const std::string& sText)
    {
        const auto& asked = bench.prompts.m_Asked.back();
        EXPECT_EQ(sText, asked.m_sText);
        EXPECT_EQ("Error Loading", asked.m_sCaption);
        EXPECT_TRUE(asked.m_eButtons == EButtons::eOk && asked.m_eIcon == EIcon::eStop);
        bench.ExpectNewState();
        EXPECT_EQ(sFile, bench.lastFile());
    };

    // No project: the library that was open is gone, the project that was found stays.
    ASSERT_TRUE(bench.Open(sFile));
    const std::string sLost = bench.dir.write("elsewhere/100%s.Fx00a", "");
    const std::string sProject = bench.app->m_Project.m_sProjectDir;
    bench.prompts.onAsk("Unable to find");
    EXPECT_FALSE(bench.app->OpenEffectFile(sLost.c_str()));
    expectFailure("Unable to find a project locator file in the same directory or above the file " + sLost +
                  ". Please make sure that there is a proj00 file.");
    EXPECT_EQ(sProject, bench.app->m_Project.m_sProjectDir);
    EXPECT_TRUE(bench.app->m_EffectModule.IsLoaded());

    // A damaged file: nothing of what was read stays.
    const std::string sBad = bench.path("Bad.Fx00a");
    std::string sBytes = ReadBytes(sFile);
    const size_t nType = sBytes.rfind("Sprite");
    sBytes.replace(nType, 6, "Sprote");
    WriteBytes(sBad, sBytes);
    bench.prompts.onAsk("checkout", EAnswer::eNo).onAsk("Failed loading");
    EXPECT_FALSE(bench.app->OpenEffectFile(sBad.c_str()));
    expectFailure("Failed loading the file " + sBad +
                  ":\r\nError loading key for effect Smoke\r\nError loading effect\r\n"
                  "Failed loading children of container [Effects]\r\nFailed loading effect tree");

    // No plug-in named: the project's folder stands for it.
    bench.WriteProject("");
    bench.prompts.onAsk("checkout", EAnswer::eNo).onAsk("Unable to load");
    EXPECT_FALSE(bench.app->OpenEffectFile(sFile.c_str()));
    expectFailure("Unable to load the Fireglass library " + DisplayPath(bench.app->m_Project.m_sProjectDir) +
                  " for handling this file");
    EXPECT_FALSE(bench.app->m_EffectModule.IsLoaded());
    EXPECT_EQ(0, bench.prompts.m_nWaitDepth);
}

TEST(OpenAndSave, BeginsWithTheLastFileAndKeepsItsNameWhenItIsGone)
{
    CAppBench bench;
    bench.app->OpenFirstFile();
    bench.ExpectNewState();
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    bench.prompts.onAsk("checkout");
    bench.app->OpenFirstFile();
    EXPECT_EQ(sFile, bench.app->m_sFileName);
    std::filesystem::remove(sFile);
    bench.prompts.onAsk("checkout").onAsk("Failed to load the file from disk");
    bench.app->OpenFirstFile();
    bench.ExpectNewState();
    EXPECT_EQ(sFile, bench.lastFile());

    const std::string sOther = bench.MakeFile("Other.Fx00a");
    CWorkingDir work(bench.path(""));
    bench.prompts.onAsk("checkout");
    bench.app->OpenFirstFile("Other.Fx00a");
    EXPECT_EQ(std::filesystem::canonical(sOther), bench.lastFile());
}

TEST(OpenAndSave, APlugInThatEndsTheStartDoesSoOnlyOnce)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    // A start in a process of its own, which the plug-in ends.
    const auto die = [&](const std::string& sAskedFor)
    {
        const pid_t nChild = fork();
        if (nChild == 0)
        {
            setenv("EMBERDECK_TEST_PLUGIN_ENDS", "1", 1);
            bench.prompts.onAsk("checkout");
            bench.app->OpenFirstFile(sAskedFor);
            _exit(1); // it never comes here
        }
        int nStatus = -1;
        waitpid(nChild, &nStatus, 0);
        EXPECT_EQ(0, nStatus);
    };
    const auto expectNothingOpened = [&]
    {
        bench.prompts.onAsk("TestFireglass.so for the file " + sFile + ", so nothing is opened");
        bench.app->OpenFirstFile();
        bench.ExpectNewState();
    };
    die("");
    expectNothingOpened();
    expectNothingOpened(); // not only once: nothing has shown yet that it works
    die(sFile);            // asked for by name it is tried again
    expectNothingOpened();

    EXPECT_TRUE(bench.Open(sFile)); // by hand, and it works
    bench.Start();
    bench.prompts.onAsk("checkout");
    bench.app->OpenFirstFile();
    EXPECT_EQ(sFile, bench.app->m_sFileName);

    // What isn't a mark of ours is none.
    bench.dir.write("loading-plug-in", "");
    bench.prompts.onAsk("checkout");
    bench.app->OpenFirstFile();
    EXPECT_EQ(sFile, bench.app->m_sFileName);
}

TEST(OpenAndSave, SaveAsNamesTheFileAndAFailureTellsWhereTheOldBytesAre)
{
    CAppBench bench;
    CWorkingDir work(bench.dir.dir());
    bench.Build().effect("Smoke");
    bench.prompts.onFile(std::nullopt, "*.Fx00c"); // cancelled
    EXPECT_FALSE(bench.app->SaveEffectFile());
    const CFileDialogRequest& request = bench.prompts.m_Files.back();
    EXPECT_FALSE(request.m_bOpen);
    EXPECT_TRUE(request.m_bOverwritePrompt);
    EXPECT_EQ("*.Fx00c", request.m_sDefaultExtension);
    EXPECT_EQ(std::filesystem::canonical(bench.dir.dir()), request.m_sInitialDirectory);
    EXPECT_EQ("Effect Files (*.Fx00a,*.Fx00c)|*.Fx00a;*.Fx00c|All Files (*.*)|*.*||", request.m_sFilter);
    EXPECT_EQ("", bench.app->m_sFileName);

    const std::string sFile = bench.path("New.Fx00a");
    bench.prompts.onFile(sFile);
    EXPECT_TRUE(bench.app->SaveEffectFile());
    EXPECT_EQ(sFile, bench.lastFile());
    EXPECT_EQ("", bench.app->GetLastBackup());

    // Into a folder that isn't there: the name stays, and what can't be found isn't offered again.
    const std::string sNowhere = bench.path("no/where.Fx00a");
    bench.prompts.onFile(sNowhere, sFile).onAsk("An error occurred saving");
    EXPECT_FALSE(bench.app->SaveEffectFileAs());
    const auto& asked = bench.prompts.m_Asked.back();
    EXPECT_EQ("An error occurred saving the file " + sNowhere +
                  ". Please make sure that the file is writable and there is room on the drive.",
              asked.m_sText);
    EXPECT_TRUE(asked.m_sCaption == "Error Saving" && asked.m_eIcon == EIcon::eExclamation);
    EXPECT_EQ(sNowhere, bench.app->m_sFileName);
    EXPECT_EQ(sFile, bench.lastFile());
    bench.prompts.onFile("/dev/full", "*.Fx00c").onAsk("/dev/full");
    EXPECT_FALSE(bench.app->SaveEffectFileAs());
}

// What is wrong is the moment, not the file: whoever brought back a backup now would lose the other's work.
TEST(OpenAndSave, AFileInUseIsNotCalledDamaged)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    const int nOther = open(sFile.c_str(), O_RDONLY);
    ASSERT_EQ(0, flock(nOther, LOCK_EX));
    CFileLock::SetWait(std::chrono::milliseconds(50));
    bench.prompts.onAsk("checkout", EAnswer::eNo).onAsk("is being read or written by");
    EXPECT_FALSE(bench.app->OpenEffectFile(sFile.c_str()));
    CFileLock::SetWait(std::chrono::seconds(10));
    EXPECT_EQ("", AdviseOnLoading(sFile, bench.app->m_Project, true, CLoadReport()));
    close(nOther);
    EXPECT_NE("", AdviseOnLoading(sFile, bench.app->m_Project, true, CLoadReport()));
}

TEST(OpenAndSave, ExitAndConnectAskFirst)
{
    CAppBench bench;
    bench.Build();
    bench.prompts.onAsk("before exiting", EAnswer::eCancel);
    EXPECT_FALSE(bench.app->ConfirmExit());
    EXPECT_TRUE(bench.prompts.m_Asked.back().m_eButtons == EButtons::eYesNoCancel);
    bench.prompts.onAsk("before exiting", EAnswer::eNo);
    EXPECT_TRUE(bench.app->ConfirmExit());
    bench.prompts.onAsk("before exiting", EAnswer::eYes).onFile(std::nullopt); // goes all the same
    EXPECT_TRUE(bench.app->ConfirmExit());

    bench.app->Start();
    EXPECT_EQ("SetChangeSetInfo Emberdeck|Change set created by Emberdeck",
              bench.sourceControl.m_Calls.back());
    bench.sourceControl.m_Calls.clear();
    bench.prompts.onAsk("must be saved before", EAnswer::eNo);
    bench.app->ConnectSourceControl();
    bench.prompts.onAsk("must be saved before", EAnswer::eYes).onFile(std::nullopt);
    bench.app->ConnectSourceControl();
    EXPECT_TRUE(bench.sourceControl.m_Calls.empty());
    bench.app->m_sFileName = bench.path("a.Fx00a");
    bench.app->ConnectSourceControl();
    bench.app->ConnectSourceControl(); // stands already
    EXPECT_EQ(CCalls{"Connect"}, bench.sourceControl.m_Calls);
}

// The plug-in is really unloaded here, so whoever looks at its tables afterwards is caught.
TEST(OpenAndSave, NothingFollowsAPointerIntoAnUnloadedPlugin)
{
    CAppBench bench;
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    ASSERT_TRUE(bench.Open(sFile));
    // A key that inherits all it has goes on the clipboard; its prefab and its plug-in go.
    CEmberdeckApp& app = *bench.app;
    app.m_Clipboard.CopyKey(KeyOf(app.m_SpellMgr, "Smoke"), 1);
    app.m_Clipboard.CopyCurve(PropOf(*KeyOf(app.m_SpellMgr, "Smoke"), "Size"));
    PropOf(*app.m_SpellMgr.FindPrefab("Puff"), "Count")->GetKey(0)->m_Data.SetInt(77);
    ASSERT_TRUE(bench.Open(sFile));
    ASSERT_TRUE(app.m_Clipboard.GetKey());
    EXPECT_EQ(nullptr, app.m_Clipboard.GetKey()->GetParent());
    EXPECT_EQ(77, IntOf(*app.m_Clipboard.GetKey(), "Count"));
    EXPECT_EQ(app.m_EffectModule.FindType("Sprite"), app.m_Clipboard.GetKey()->m_pTypeDesc);

    // Over a time without any plug-in.
    app.m_Project.m_sFireglass = "nothing";
    bench.prompts.onAsk("Unable to load the Fireglass library nothing");
    EXPECT_FALSE(app.LoadProjectPlugin());
    bench.ExpectNewState(); // its library couldn't stay
    ASSERT_TRUE(bench.Open(sFile));
    ASSERT_TRUE(app.m_Clipboard.GetKey());
    EXPECT_EQ(77, IntOf(*app.m_Clipboard.GetKey(), "Count"));
    EXPECT_TRUE(app.m_Clipboard.CanPasteCurve(PropOf(*KeyOf(app.m_SpellMgr, "Smoke"), "Size")));

    bench.app.reset(); // with library and clipboard full
}
