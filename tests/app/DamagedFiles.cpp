// Files that are cut or hold the marks of a merge: opened with a word, saved over and updated only when that is wanted.

#include "support/AppBench.h"

namespace
{
struct CDamagedBench : CAppBench
{
    // A library with its last bytes gone, and one with both sides of a merge.
    CDamagedBench()
    {
        const std::string sBytes = ReadBytes(MakeFile("Whole.Fx00a"));
        dir.write("game/Cut.Fx00a", sBytes.substr(0, sBytes.size() - 40));
        const size_t nLine = sBytes.find('\n', sBytes.find("( key-list")) + 1;
        std::string sMerged = sBytes;
        dir.write("game/Merged.Fx00a", sMerged.insert(nLine, "<<<<<<< HEAD\n=======\n>>>>>>> topic\n"));
    }
};
} // namespace

TEST(DamagedFiles, OpeningTellsOnceAndTheFirstSaveAsks)
{
    for (const char* pszName : {"Cut.Fx00a", "Merged.Fx00a"})
    {
        CDamagedBench bench;
        const std::string sFile = bench.path(pszName);
        const std::string sBytes = ReadBytes(sFile);
        bench.prompts.onAsk("checkout", EAnswer::eNo).onAsk("isn't whole. Only what could be read");
        ASSERT_TRUE(bench.app->OpenEffectFile(sFile.c_str()));
        EXPECT_EQ(EButtons::eOk, bench.prompts.m_Asked.back().m_eButtons);
        EXPECT_EQ(1u, bench.app->m_SpellMgr.Spells().size());

        bench.prompts.onAsk("save over it all the same?", EAnswer::eNo);
        EXPECT_FALSE(bench.app->SaveEffectFile());
        EXPECT_EQ(EIcon::eStop, bench.prompts.m_Asked.back().m_eIcon) << "Enter is No";
        EXPECT_EQ(sBytes, ReadBytes(sFile));

        // Another name needs no question, and its file is whole.
        bench.prompts.onFile(bench.path("Other.Fx00c"));
        EXPECT_TRUE(bench.app->SaveEffectFileAs());
        bench.prompts.onFile(sFile).onAsk("save over it all the same?", EAnswer::eYes);
        EXPECT_TRUE(bench.app->SaveEffectFileAs());
        EXPECT_EQ(sBytes, ReadBytes(bench.app->GetLastBackup()));
        EXPECT_TRUE(bench.app->SaveEffectFile()) << "asked once";
        EXPECT_TRUE(bench.Open(sFile)) << "whole again";
        EXPECT_FALSE(bench.app->GetLoadReport().IsDamaged());
        EXPECT_TRUE(bench.app->SaveEffectFile());
    }
}

TEST(DamagedFiles, ANewLibraryIsntAskedFor)
{
    CDamagedBench bench;
    bench.prompts.onAsk("checkout", EAnswer::eNo).onAsk("isn't whole");
    ASSERT_TRUE(bench.app->OpenEffectFile(bench.path("Cut.Fx00a").c_str()));
    bench.app->NewEffectFile();
    bench.prompts.onFile(bench.path("Cut.Fx00a"));
    EXPECT_TRUE(bench.app->SaveEffectFile());
}

TEST(DamagedFiles, UpdateLeavesThemAlone)
{
    CDamagedBench bench;
    const std::string sCut = ReadBytes(bench.path("Cut.Fx00a"));
    const std::string sMerged = ReadBytes(bench.path("Merged.Fx00a"));
    const std::string sWhole = ReadBytes(bench.path("Whole.Fx00a"));
    WriteBytes(bench.path("Whole.Fx00a"), "; old\r\n" + sWhole);
    bench.prompts.onAsk("Cut.Fx00a", EAnswer::eNo)
        .onAsk("isn't whole")
        .onAsk("Merged.Fx00a", EAnswer::eNo)
        .onAsk("isn't whole")
        .onAsk("Whole.Fx00a", EAnswer::eNo);
    std::vector<std::string> saved, left;
    bench.app->m_OnLeft = [&](const std::string& sFile, const std::string&) { left.push_back(sFile); };
    bench.app->m_OnUpdated = [&](const std::string& sFile, bool bSaved)
    {
        if (bSaved)
            saved.push_back(sFile);
    };
    EXPECT_TRUE(bench.app->UpdateEffectsInDirectory(bench.path("").c_str()));
    EXPECT_EQ(std::vector<std::string>{bench.path("Whole.Fx00a")}, saved);
    EXPECT_EQ((std::vector<std::string>{bench.path("Cut.Fx00a"), bench.path("Merged.Fx00a")}), left);
    EXPECT_EQ(sCut, ReadBytes(bench.path("Cut.Fx00a")));
    EXPECT_EQ(sMerged, ReadBytes(bench.path("Merged.Fx00a")));
    EXPECT_EQ(sWhole, ReadBytes(bench.path("Whole.Fx00a")));

    bench.app->m_UpdateRules.m_bRepair = true;
    bench.prompts.onAsk("Cut.Fx00a", EAnswer::eNo).onAsk("isn't whole");
    EXPECT_TRUE(bench.app->UpdateEffectFile(bench.path("Cut.Fx00a").c_str()));
    EXPECT_TRUE(bench.Open(bench.path("Cut.Fx00a")));
}
