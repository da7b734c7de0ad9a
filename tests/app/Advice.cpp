#include "app/Advice.h"

#include <sys/stat.h>

#include "app/StatusText.h"
#include "platform/Paths.h"
#include "support/AppBench.h"

namespace
{
constexpr const char* c_pszRecover =
    "\"emberdeck-batch recover FILE\" brings back what it held before the last save.";

std::string Module(const char* pszName)
{
    return std::string(EMBERDECK_BIN_DIR "/test_modules/") + pszName;
}
} // namespace

TEST(Advice, AProjectThatCantBeUsedIsToldWithItsCause)
{
    CAppBench bench;
    const std::string sHere = bench.dir.write("game/here.Fx00a", "");
    const std::string sAway = bench.path("away.Fx00a");
    EXPECT_EQ("", AdviseOnMissingProject(sHere));
    EXPECT_EQ("There is no file " + sAway + " either.", AdviseOnMissingProject(sAway));
    EXPECT_EQ("The name is empty.", AdviseOnMissingProject(""));
    EXPECT_EQ("C:\\a.Fx00a is a path of another system.", AdviseOnMissingProject("C:\\a.Fx00a"));
    const std::string sWide = bench.dir.write("wide/game.proj00", std::string("\xFF\xFE", 2) + "[");
    EXPECT_EQ("The project locator file " + sWide + " is UTF-16, or no text at all. Save it as UTF-8.",
              AdviseOnMissingProject(sAway, sWide));

    const std::string sPlace = "the proj00 file in " + bench.path("");
    const auto advise = [&](const std::string& sPlugin)
    {
        bench.WriteProject(sPlugin.empty() ? "" : "Fireglass=" + sPlugin + "\r\n");
        EXPECT_TRUE(bench.app->LocateProject(sHere.c_str()));
        return AdviseOnPlugin(bench.app->m_Project);
    };
    const std::string sUnnamed = "No plug-in is named: add its path to " + sPlace +
                                 ", as Fireglass=PATH in the section [Project Binaries].";
    EXPECT_EQ(sUnnamed, advise(""));
    EXPECT_EQ(sUnnamed, advise("."));
    EXPECT_EQ("There is no such file, nor a .so of its name. Build the game's plug-in, or correct the line "
              "Fireglass= of " +
                  sPlace + ".",
              advise("none.dll"));
    const std::string sCorrect =
        " Build the plug-in for this machine, or correct the line Fireglass= of " + sPlace + ".";
    EXPECT_EQ("It doesn't export EmberdeckReleaseInfo." + sCorrect, advise(Module("plugin_half.so")));
    EXPECT_EQ("It gives no table of effect types, or one that can't be right." + sCorrect,
              advise(Module("plugin_wild.so")));
    EXPECT_TRUE(advise(sHere).ends_with("." + sCorrect)); // between them the machine's own words
    std::filesystem::remove(bench.path("game.proj00"));
    EXPECT_EQ("The project locator file can't be read: There is no file " + bench.path("game.proj00") + ".",
              AdviseOnPlugin(bench.app->m_Project));
    EXPECT_EQ("Correct the plug-in, then open the file with File > Open. When that works, the next start "
              "opens it again.",
              AdviseOnPluginThatEnded());
    EXPECT_EQ("There are no types of keys yet. A game's plug-in brings them, and the game's project locator "
              "file (*.proj00) names the plug-in. Choose that file, or open a library of the game.",
              AdviseOnNoTypes(bench.app->m_Project, bench.app->m_EffectModule));
    bench.app->m_Project.m_sFireglass = Module("plugin_whole.so");
    bench.app->m_EffectModule.Load(Module("plugin_whole.so").c_str());
    EXPECT_EQ("The plug-in of this project, " + Module("plugin_whole.so") + ", offers no types of keys.",
              AdviseOnNoTypes(bench.app->m_Project, bench.app->m_EffectModule));
}

TEST(Advice, AFileThatCantBeLoadedOrIsntWhole)
{
    CAppBench bench;
    const std::string sPlugin = Module("TestFireglass.so");
    ASSERT_TRUE(bench.Open(bench.MakeFile("Smoke.Fx00a")));
    const auto advise = [&](const std::string& sName, const std::string& sBytes, bool bKept,
                            const std::vector<CLoadFinding>& findings = {})
    {
        CLoadReport report;
        for (const CLoadFinding& finding : findings)
            report.OnFinding(finding);
        return AdviseOnLoading(bench.dir.write("game/" + sName, sBytes), bench.app->m_Project, bKept, report);
    };
    const std::string sForeign = "The file is damaged, or made for another plug-in than " + sPlugin + ".";
    EXPECT_EQ(sForeign, advise("a.Fx00a", "( x )", false));
    EXPECT_EQ(sForeign + " " + c_pszRecover, advise("a.Fx00a", "( x )", true));
    const std::string sText = "The file doesn't hold compressed text; its name must end in another letter "
                              "than c, as in .Fx00a.";
    EXPECT_EQ(sText, advise("a.Fx00c", "( x )", true));
    EXPECT_EQ(sText, advise("a.Fx00c", std::string("\0\0\0x", 4), true));
    EXPECT_EQ("The file holds compressed text; for that its name must end in c, as in .Fx00c.",
              advise("a.Fx00a", std::string(4, '\0'), true));
    EXPECT_EQ(sForeign, advise("a.Fx00a", std::string(3, '\0'), false)); // too short for either
    EXPECT_EQ("There is no file " + bench.path("none.Fx00a") + ".",
              AdviseOnLoading(bench.path("none.Fx00a"), bench.app->m_Project, true, CLoadReport()));
    EXPECT_EQ("Smoke: 7: No type Fog.\nThe plug-in is " + sPlugin +
                  ". Build it with that type, or correct the name of the type in the file.",
              advise("a.Fx00a", "( x )", true, {{"Smoke", "7", "No type Fog.", EFinding::eMissingType}}));
    EXPECT_EQ(std::string("The file is damaged: it was cut, so that its end is missing. ") + c_pszRecover,
              advise("a.Fx00a", "( x )", true, {{"", "", "cut", EFinding::eCut}}));
    EXPECT_EQ("The file is damaged: a merge has left a conflict in it.",
              advise("a.Fx00a", "( x )", false,
                     {{"", "", "cut", EFinding::eCut}, {"", "", "marks", EFinding::eConflict}}));

    CLoadReport report;
    report.OnFinding({"", "", "cut here", EFinding::eCut});
    EXPECT_EQ("cut here\nBring the file back from source control or a copy.", AdviseOnDamage(report, false));
    EXPECT_EQ(std::string("cut here\n") + c_pszRecover, AdviseOnDamage(report, true));
    report.OnFinding({"", "", "marks", EFinding::eConflict});
    EXPECT_EQ("cut here\nmarks\nResolve the conflict in the file, then open it again.",
              AdviseOnDamage(report, true));
    EXPECT_EQ("", DamageText(CLoadReport()));
}

TEST(Advice, WhatPackingLacks)
{
    CAppBench bench;
    EXPECT_EQ("No plug-in is loaded. Open an effect file of a game first.",
              AdviseOnPacking(bench.path("a.Fx00p"), bench.app->m_EffectModule));
    bench.Build();
    EXPECT_EQ("", AdviseOnPacking(bench.path("a.Fx00p"), bench.app->m_EffectModule));
    EXPECT_EQ("There is no folder " + bench.path("no") + ".",
              AdviseOnPacking(bench.path("no/a.Fx00p"), bench.app->m_EffectModule));
    EXPECT_EQ("The packed file would take the place of the library L itself. Pack to another name, or save "
              "the library under one that doesn't end in .Fx00p.",
              AdviseOnPackingOver("L"));
    // A table whose numbers don't fit.
    CTestModule wrong([](CTestPlugin& plugin) { plugin.type("A", 0).type("B", 2); });
    EXPECT_EQ("The plug-in gives the effect type B the number 2, which must be below the number of its "
              "types. Correct the plug-in.",
              AdviseOnPacking(bench.path("a.Fx00p"), wrong.m_Module));
}

TEST(Advice, TheStatusLineTellsResults)
{
    for (const auto& [nCount, pszText] :
         std::initializer_list<std::pair<uint64_t, const char*>>{{0, "0 bytes"},
                                                                 {1, "1 byte"},
                                                                 {999, "999 bytes"},
                                                                 {1000, "1,000 bytes"},
                                                                 {123456, "123,456 bytes"},
                                                                 {1234567, "1,234,567 bytes"}})
        EXPECT_EQ(pszText, TellCount(nCount, "byte"));
    EXPECT_EQ("a.Fx00a", TellName("C:\\b/a.Fx00a"));
    EXPECT_EQ("a.Fx00a", TellName("/b\\a.Fx00a"));
    EXPECT_EQ("a.Fx00a", TellName("a.Fx00a"));

    CAppBench bench;
    const auto last = [&] { return bench.host.m_Status.empty() ? "" : bench.host.m_Status.back(); };
    const auto bytes = [&](const char* pszName)
    { return TellCount(std::filesystem::file_size(bench.path(pszName)), "byte"); };
    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    EXPECT_EQ("Saved Smoke.Fx00a: 1 effect, " + bytes("Smoke.Fx00a"), last());
    ASSERT_TRUE(bench.Open(sFile));
    EXPECT_EQ("Opened Smoke.Fx00a: 1 effect, " + bytes("Smoke.Fx00a"), last());
    EXPECT_TRUE(bench.app->PackEffects());
    EXPECT_EQ("Packed Smoke.Fx00p: 1 effect, " + bytes("Smoke.Fx00p"), last());
    bench.prompts.onFile(bench.path("no/As.Fx00p")).onFile(bench.path("As.Fx00p"));
    EXPECT_FALSE(bench.app->PackEffectsAs());
    EXPECT_EQ("Packing As.Fx00p has failed", last());
    EXPECT_TRUE(bench.app->PackEffectsAs());
    EXPECT_EQ("Packed As.Fx00p: 1 effect, " + bytes("As.Fx00p"), last());
    bench.prompts.onFile(bench.path("game.proj00"));
    EXPECT_TRUE(bench.app->ChooseProject());
    EXPECT_EQ("Project game.proj00: " + TellCount(bench.app->m_EffectModule.GetNumTypes(), "type") +
                  " of keys",
              last());

    for (const char* pszNone : {"", "/game/", "\\game\\"})
    {
        bench.app->m_Project.m_sPCBinary = pszNone;
        bench.app->LaunchGame();
        EXPECT_EQ("No game to launch: the project names none", last());
        bench.host.m_Status.clear();
    }
    bench.app->m_Project.m_sPCBinary = bench.path("none");
    bench.app->LaunchGame();
    EXPECT_EQ("Couldn't launch " + bench.path("none"), last());
    bench.app->m_Project.m_sPCBinary = "/bin/true";
    bench.app->LaunchGame();
    EXPECT_EQ("Launched /bin/true", last());
}

// What stands below the boxes of the workflow itself.
TEST(Advice, FailuresSayWhereTheOldContentLies)
{
    CAppBench bench;
    bench.prompts.onAsk("Unable to find a project locator file in the same directory or above the file "
                        "/none/x.Fx00a. Please make sure that there is a proj00 file.");
    EXPECT_FALSE(bench.app->LocateProject("/none/x.Fx00a"));
    EXPECT_EQ(std::vector<std::string>{"There is no file /none/x.Fx00a either."}, bench.prompts.m_Advice);

    const std::string sFile = bench.MakeFile("Smoke.Fx00a");
    ASSERT_TRUE(bench.Open(sFile));
    std::filesystem::remove(sFile);
    std::filesystem::create_directory(sFile);
    bench.prompts.onAsk("An error occurred saving the file " + sFile);
    EXPECT_FALSE(bench.app->SaveEffectFile());
    EXPECT_EQ(sFile + " is a folder, not a file.",
              bench.prompts.m_Advice.back().substr(0, sFile.size() + 26));
    std::filesystem::remove(sFile);
    EXPECT_TRUE(bench.app->SaveEffectFile()); // a new file

    // The name of a packed file that another library has.
    bench.app->m_sFileName = bench.path("no/x.Fx00a");
    bench.prompts.onAsk("An error occurred packing the file " + bench.path("no/x.Fx00p"));
    EXPECT_FALSE(bench.app->PackEffects());
    EXPECT_EQ("There is no folder " + bench.path("no") + ".", bench.prompts.m_Advice.back());
    const std::string sOwn = bench.MakeFile("Own.Fx00p");
    ASSERT_TRUE(bench.Open(sOwn));
    bench.prompts.onAsk("An error occurred packing");
    EXPECT_FALSE(bench.app->PackEffects());
    EXPECT_EQ(AdviseOnPackingOver(sOwn), bench.prompts.m_Advice.back());
}
