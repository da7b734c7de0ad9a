// Each allocation in turn fails, once or for good: a load, a save and a pack end in a failure that is told, or
// in what they would have done anyway. Nothing is lost, and nothing is thrown.

#include "FaultBench.h"
#include "FaultyMemory.h"

namespace
{
// Prepares, works and checks once for each allocation of the work, which fails. check is told whether the work
// was done. Gives the number of runs.
size_t EachFault(const std::function<void()>& prepare, const std::function<bool()>& work,
                 const std::function<void(bool)>& check)
{
    size_t nRuns = 0;
    for (const bool bForever : {false, true})
    {
        for (size_t nFailAt = 1; nFailAt == 1 || CFaultyMemory::WasHit(); ++nFailAt, ++nRuns)
        {
            SCOPED_TRACE(std::to_string(nFailAt) + (bForever ? " and all behind it" : ""));
            prepare();
            bool bDone = false, bThrown = false;
            try
            {
                const CFaultyMemory fault(nFailAt, bForever);
                bDone = work();
            }
            catch (const std::exception&)
            {
                bThrown = true;
            }
            EXPECT_FALSE(bThrown);
            check(bDone);
            EXPECT_TRUE(bDone || CFaultyMemory::WasHit()) << "failed for nothing";
        }
    }
    return nRuns;
}

std::string SavedText(const CTestLibrary& library, const std::string& sPath)
{
    EXPECT_TRUE(SaveEffectLibrary(sPath.c_str(), library.m_EffectTree, library.m_PrefabTree));
    return ReadBytes(sPath);
}

std::unique_ptr<CTestLibrary> SmallLibrary(const std::shared_ptr<CTestModule>& pModule)
{
    auto pLibrary = std::make_unique<CTestLibrary>(pModule);
    BuildLibrary(
        aLibrary(pLibrary->Module(), pLibrary->m_SpellMgr, pLibrary->m_EffectTree, pLibrary->m_PrefabTree), 2,
        "Old");
    return pLibrary;
}
} // namespace

TEST(OutOfMemory, ALoadIsWholeOrFails)
{
    const CTempDir dir;
    const auto pModule = std::make_shared<CTestModule>();
    for (const char* pszName : {"a.Fx00a", "a.Fx00c"})
    {
        const std::string sPath = dir.path(pszName), sAgain = dir.path(std::string("b") + pszName);
        const std::string sText = SavedText(*SmallLibrary(pModule), sPath);
        std::unique_ptr<CTestLibrary> pLibrary;
        std::string sError;
        const auto prepare = [&]
        {
            pLibrary = std::make_unique<CTestLibrary>(pModule);
            sError.clear();
        };
        const auto load = [&]
        {
            return LoadEffectLibrary(sPath.c_str(), pLibrary->m_SpellMgr, pLibrary->Module(),
                                     &pLibrary->m_EffectTree, &pLibrary->m_PrefabTree, sError);
        };
        const auto check = [&](bool bDone)
        {
            if (bDone)
            {
                EXPECT_EQ(sText, SavedText(*pLibrary, sAgain));
            }
        };
        EXPECT_GT(EachFault(prepare, load, check), 200u);
    }
}

TEST(OutOfMemory, ASaveOrAPackIsWholeOrFails)
{
    const CTempDir dir;
    const auto pLibrary = SmallLibrary(std::make_shared<CTestModule>());
    const std::string sPath = dir.path("a.out");
    const auto Check = [&](const std::function<bool()>& work)
    {
        ASSERT_TRUE(work());
        const std::string sBytes = ReadBytes(sPath);
        const auto check = [&](bool bDone)
        {
            if (bDone)
            {
                EXPECT_EQ(sBytes, ReadBytes(sPath));
            }
        };
        EXPECT_GT(EachFault([] {}, work, check), 10u);
    };
    Check([&] { return SaveEffectLibrary(sPath.c_str(), pLibrary->m_EffectTree, pLibrary->m_PrefabTree); });
    for (const char* pszTarget : {"PC", "Xenon"})
        Check(
            [&] {
                return PackEffectLibrary(sPath.c_str(), pLibrary->m_SpellMgr, pLibrary->Module(), nullptr,
                                         pszTarget);
            });
}

TEST(OutOfMemory, ASaveOfTheApplicationLosesNothing)
{
    CFaultBench bench;
    const std::string sOld = bench.MakeFile("old.Fx00a", 1, "Old");
    const std::string sNew = bench.MakeFile("new.Fx00a", 2, "New");
    const auto pApp = bench.StartWith("file.Fx00a", 2, "New");
    const auto prepare = [&]
    {
        WriteBytes(bench.path("file.Fx00a"), sOld);
        bench.prompts.m_nFailures = 0;
    };
    const auto check = [&](bool bDone)
    {
        EXPECT_EQ(bDone ? 0 : 1, bench.prompts.m_nFailures);
        if (bDone)
        {
            EXPECT_EQ(sNew, ReadBytes(bench.path("file.Fx00a")));
        }
        else
        {
            EXPECT_TRUE(bench.CanHave("file.Fx00a", sOld));
        }
    };
    EXPECT_GT(EachFault(
                  prepare, [&] { return pApp->SaveEffectFile(); }, check),
              100u);

    ASSERT_TRUE(pApp->PackEffects());
    const std::string sPacked = ReadBytes(bench.path("file.Fx00p"));
    const auto checkPack = [&](bool bDone)
    {
        EXPECT_EQ(bDone ? 0 : 1, bench.prompts.m_nFailures);
        if (bDone)
        {
            EXPECT_EQ(sPacked, ReadBytes(bench.path("file.Fx00p")));
        }
    };
    EXPECT_GT(EachFault(
                  prepare, [&] { return pApp->PackEffects(); }, checkPack),
              20u);
}

TEST(OutOfMemory, AnOpenThatFailsLeavesNothingToSaveOverTheFile)
{
    CFaultBench bench;
    const std::string sText = bench.MakeFile("file.Fx00a", 2, "New");
    const std::string sPath = bench.path("file.Fx00a");
    std::unique_ptr<CEmberdeckApp> pApp;
    const auto prepare = [&] { pApp = bench.Start(); };
    const auto check = [&](bool bDone)
    {
        EXPECT_EQ(sText, ReadBytes(sPath));
        EXPECT_EQ(bDone ? sPath : "", pApp->m_sFileName);
        if (bDone)
        {
            pApp->m_sFileName = bench.path("again.Fx00a");
            EXPECT_TRUE(pApp->SaveEffectFile());
            EXPECT_EQ(sText, ReadBytes(bench.path("again.Fx00a")));
        }
        pApp.reset();
    };
    EXPECT_GT(EachFault(
                  prepare, [&] { return pApp->OpenEffectFile(sPath.c_str()); }, check),
              200u);
}
