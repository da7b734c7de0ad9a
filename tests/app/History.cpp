#include "app/History.h"

#include <random>

#include "app/EffectEditor.h"
#include "app/PrefabEditor.h"
#include "support/AppBench.h"
#include "support/EditWalk.h"
#include "support/ScopeChecker.h"
#include "support/UndoChecker.h"

namespace
{

void WalkAndComeBack(CAppBench& bench, uint32_t nSeed)
{
    CEditWalk walk(*bench.app, nSeed);
    bench.documents.CloseAll();
    bench.app->History().Forget(); // what it was made by
    CScopeChecker checker(bench.app->Context());
    CUndoChecker undo(bench.app->Context(), bench.app->History());
    for (int i = 0; i < WalkSteps() / 8; ++i)
    {
        walk.EditOnce();
        undo.Check(std::to_string(nSeed) + "." + std::to_string(i) + " " + undo.Label());
        if (::testing::Test::HasFailure())
            return;
    }
    undo.Finish();
}

void BuildAnything(CLibraryBuilder builder, std::mt19937& random)
{
    const char* const types[] = {"Sprite", "Light", "Marker"};
    for (uint32_t i = 0; i < 12; ++i)
    {
        const std::string sName = "n" + std::to_string(i);
        const char* pszType = types[random() % 3];
        switch (random() % 4)
        {
        case 0:
            builder.group(sName);
            break;
        case 1:
            builder.prefabGroup(sName).prefab(pszType, "p" + sName);
            break;
        default:
            builder.prefab(pszType, sName).effect(sName).key(pszType).onPrefab(sName.c_str());
            for (uint32_t n = random() % 4; n > 0; --n)
                (random() % 2 ? builder.track() : builder).key(types[random() % 3]);
        }
    }
}
} // namespace

TEST(History, RandomWalksLeadBackAndForth)
{
    {
        CAppBench bench;
        bench.Build()
            .prefab("Sprite", "Puff")
            .prefabGroup("Lights")
            .prefab("Light", "Lamp")
            .group("Old")
            .effect("Smoke")
            .key("Sprite")
            .onPrefab("Puff")
            .key("Light")
            .track()
            .key("Marker")
            .end()
            .effect("Fire")
            .key("Sprite");
        WalkAndComeBack(bench, 0);
    }
    for (uint32_t nSeed = 1; nSeed <= 2 && !HasFailure(); ++nSeed)
    {
        CAppBench bench;
        std::mt19937 random(nSeed);
        BuildAnything(bench.Build(), random);
        WalkAndComeBack(bench, nSeed);
    }
}

TEST(History, ARandomWalkOverTheSampleLeadsBackAndForth)
{
    CAppBench bench;
    bench.WriteProject("Fireglass=" EMBERDECK_BIN_DIR "/fireglass.so\r\n");
    std::filesystem::copy(EMBERDECK_SOURCE_DIR "/samples/bonfire/project/bonfire.Fx00a",
                          bench.path("bonfire.Fx00a"));
    ASSERT_TRUE(bench.Open(bench.path("bonfire.Fx00a")));
    WalkAndComeBack(bench, 3);
}

TEST(History, AnotherPluginBeginsItAnew)
{
    CAppBench bench;
    bench.Build();
    CHistory& history = bench.app->History();
    CEffectEditor editor(bench.app->Context());
    const HLibraryItem hItem = editor.NewEffect({});
    EXPECT_TRUE(editor.Delete(hItem));
    EXPECT_EQ(2u, history.GetNumSteps());
    EXPECT_TRUE(bench.app->LoadProjectPlugin()); // an empty library stays as it is
    EXPECT_EQ(0u, history.GetNumSteps());
    EXPECT_TRUE(!history.IsSaved() && history.GetProblem().empty());
}

TEST(History, TheSettingsSayHowMuchItKeeps)
{
    for (const char* pszMegabytes : {"1", "0", "-1", "much"})
    {
        CAppBench bench;
        bench.Build().effect("Smoke");
        bench.profile->WriteString("History", "Megabytes", pszMegabytes);
        bench.app->Start();
        CHistory& history = bench.app->History();
        CEffectEditor editor(bench.app->Context());
        const HLibraryItem hItem = ItemOf(bench.app->m_EffectTree, "Smoke");
        const size_t nBefore = history.GetNumSteps();
        size_t nSteps = 0; // somewhat over a megabyte of them
        for (size_t nBytes = 0; nBytes < size_t(1200) << 10; ++nSteps)
        {
            ASSERT_EQ(ERename::eDone, editor.Rename(hItem, "n" + std::to_string(nSteps)));
            nBytes += sizeof(CLibraryChange) + history.GetChange(history.GetNumSteps() - 1).GetMemory();
        }
        const bool bDropped = history.GetNumSteps() < nBefore + nSteps;
        EXPECT_EQ(std::string(pszMegabytes) == "1", bDropped) << pszMegabytes;
        EXPECT_EQ(bDropped, history.GetMemory() <= size_t(1) << 20);
    }
}
