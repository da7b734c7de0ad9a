#include "BrowserBench.h"

#include "platform/Paths.h"

namespace
{
// The user stops what is told to be under way.
struct CStoppingPrompts : CScriptedPrompts
{
    bool Progress(const std::string& sWhat, double fFraction) override
    {
        EXPECT_LT(fFraction, 1.0);
        m_sTold += sWhat + "|";
        return sWhat != m_sStopAt;
    }
    std::string m_sTold, m_sStopAt;
};
} // namespace

TEST(ImportEffects, BringsChosenEffectsOnly)
{
    CTempDir dir;
    const std::string sFile = dir.path("other.Fx00a");
    auto pModule = std::make_shared<CTestModule>();
    {
        auto pOther = aLibrary(pModule).group("Far").effect("smoke").effect("Ash").effect("Zinc").build();
        ASSERT_TRUE(SaveEffectLibrary(sFile.c_str(), pOther->m_EffectTree, pOther->m_PrefabTree));
    }
    CBrowserBench bench(aLibrary(pModule).group("G").effect("Smoke"));
    CScopeChecker checker(bench.context);
    bench.Select({"Smoke"});
    bench.import.m_Selected = {1, 0, 77, 1};
    bench.prompts.onFile(sFile, "*.Fx00c");
    bench.effects.Command(c_nCmdImportEffects);
    checker.ExpectEdits(1);
    EXPECT_EQ((std::vector<std::string>{"Ash", "smoke", "Zinc"}), bench.import.m_Rows);
    EXPECT_EQ("[[Effects]]\n  [G]\n    Smoke\n  Ash\n  smoke_1\n", bench.dump());
    EXPECT_EQ("[Smoke]", bench.sel());
    const CFileDialogRequest& request = bench.prompts.m_Files[0];
    EXPECT_EQ(GetCurrentDirectoryPath(), request.m_sInitialDirectory);
    EXPECT_EQ("*.Fx00c", request.m_sDefaultExtension);

    bench.import.m_bOK = false;
    bench.prompts.onFile(sFile).onFile({});
    bench.effects.OnImportEffects(); // the list was cancelled, then the file
    bench.effects.OnImportEffects();
    EXPECT_EQ(3u, bench.lib->m_SpellMgr.Spells().size());
    // A cut file: what could be read, and a word.
    const std::string sCut = dir.write("cut.Fx00a", ReadBytes(sFile).substr(0, ReadBytes(sFile).size() - 8));
    bench.import.m_bOK = false;
    bench.prompts.onFile(sCut).onAsk("isn't whole");
    bench.effects.OnImportEffects();
    EXPECT_EQ(3u, bench.import.m_Rows.size());
    bench.prompts.m_Asked.clear();
    // A file that can't be read: an empty list.
    bench.import.m_bOK = true;
    bench.prompts.onFile(dir.path("none.Fx00a"))
        .onAsk("Failed loading the file " + dir.path("none.Fx00a") + ":\r\n");
    bench.effects.OnImportEffects();
    EXPECT_EQ("Error Loading", bench.prompts.m_Asked[0].m_sCaption);
    EXPECT_EQ(EIcon::eExclamation, bench.prompts.m_Asked[0].m_eIcon);
    EXPECT_TRUE(bench.import.m_Rows.empty());
    EXPECT_EQ(3u, bench.lib->m_SpellMgr.Spells().size());
}

TEST(ImportEffects, StoppedLeavesTheLibraryAsItWas)
{
    CTempDir dir;
    const std::string sFile = dir.path("other.Fx00a");
    auto pModule = std::make_shared<CTestModule>();
    {
        auto pOther = aLibrary(pModule).prefab("Light", "P").effect("Ash").key("Light").onPrefab("P").build();
        ASSERT_TRUE(SaveEffectLibrary(sFile.c_str(), pOther->m_EffectTree, pOther->m_PrefabTree));
    }
    CStoppingPrompts prompts;
    CBrowserBench bench(aLibrary(pModule).effect("Smoke").build(), prompts);
    CScopeChecker checker(bench.context);
    bench.import.m_Selected = {0};
    for (const char* pszStopAt : {"Reading the effects", "Importing the effects"})
    {
        prompts.m_sStopAt = pszStopAt;
        prompts.m_sTold.clear();
        prompts.onFile(sFile);
        bench.effects.OnImportEffects(); // without a message
        EXPECT_TRUE(prompts.m_sTold.ends_with(prompts.m_sStopAt + "|")) << prompts.m_sTold;
        EXPECT_EQ(prompts.m_sStopAt == "Importing the effects", !bench.import.m_Rows.empty());
        checker.ExpectEdits(0, pszStopAt);
    }
}
