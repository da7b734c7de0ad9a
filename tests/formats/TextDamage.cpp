
#include <algorithm>

#include "formats/FormatsTest.h"
#include "formats/LoadReport.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsatextloader.h"
#include "support/TempDir.h"

TEST(TextDamage, CutAndConflictAreSeenAtAnyPlace)
{
    struct CCase
    {
        const char* m_pszText;
        bool m_bCut;
        uint64_t m_nConflictLine;
    };
    const CCase aCases[] = {
        {"", false, 0},
        {"( a \"b)(\" )", false, 0},
        {"( a ( b ) ) )", false, 0}, // told elsewhere
        {"( a ( b )", true, 0},
        {"( a \"b )", true, 0},
        {"( a )\n<<<<<<< HEAD\n( b )\n=======\n( c )\n>>>>>>> other\n", false, 2},
        {"=======\r\n", false, 1},
        {"( a )\n|||||||", false, 2},
        {"( a <<<<<<< )\n ======= \n<<<<<<<<\n<<<<<<\n<<<<<<=\n<<<<<<<a\n", false, 0},
        {"( a \"\n<<<<<<< HEAD\n\" )", false, 0}, // the artist's own
    };
    const CTempDir dir;
    for (const CCase& one : aCases)
    {
        // Around the ends of the reader's blocks and windows, in a line of its own.
        for (const size_t nBefore : {0u, 1u, 50u, 57u, 58u, 63u, 64u, 65510u, 65521u, 65529u, 65535u, 65536u})
        {
            std::string sText = std::string(nBefore, ' ') + one.m_pszText;
            if (nBefore > 0)
                sText[nBefore - 1] = '\n';
            CQSANode root, fileRoot;
            CQSALoadOnlyAlloc alloc(65536);
            CQSATextOutcome outcome, fileOutcome;
            ASSERT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc, &outcome));
            ASSERT_TRUE(CQSANodeReader::LoadEntireFile(dir.write("a", sText).c_str(), false, &fileRoot,
                                                       &alloc, fileOutcome));
            const uint64_t nLine = one.m_nConflictLine + (one.m_nConflictLine > 0 && nBefore > 0);
            for (const CQSATextOutcome* p : {&outcome, &fileOutcome})
            {
                EXPECT_EQ(one.m_bCut, p->IsCut()) << nBefore << sText;
                EXPECT_EQ(nLine, p->m_nConflictLine) << nBefore << sText;
            }
            root.Free(&alloc);
            fileRoot.Free(&alloc);
        }
    }
}

TEST(TextDamage, AReportListsRepairsOfADamagedFileAlone)
{
    const CTempDir dir;
    const auto load = [&](const std::string& sText, bool bAll)
    {
        CLoadReport report(bAll);
        CTestLibrary library;
        std::string sError;
        LoadEffectLibrary(dir.write("a.Fx00a", sText).c_str(), library.m_SpellMgr, library.Module(), nullptr,
                          nullptr, sError, nullptr, &report);
        return report;
    };
    const std::string sRepaired = FileOf("", EffectOf(KeyText("Marker", "( nobody knows )")));
    EXPECT_EQ(1u, load(sRepaired, true).Findings().size());
    EXPECT_TRUE(load(sRepaired, false).Findings().empty());

    const CLoadReport cut = load(sRepaired.substr(0, sRepaired.size() - 2), false);
    EXPECT_TRUE(cut.IsCut() && cut.IsDamaged() && !cut.IsConflict());
    EXPECT_EQ(2u, cut.Findings().size()) << cut.Lines();
    const CLoadReport conflict =
        load(sRepaired + "\n<<<<<<< HEAD\n( a )\n=======\n( b )\n>>>>>>> b\n", false);
    EXPECT_TRUE(conflict.IsConflict() && !conflict.IsCut()) << conflict.Lines();

    CLoadReport many;
    for (int i = 0; i < 25; ++i)
        many.OnFinding({"Fire\nplace", "", "Number " + std::to_string(i)});
    const std::string sLines = many.Lines("F: ");
    EXPECT_EQ(20, std::count(sLines.begin(), sLines.end(), '\n'));
    EXPECT_EQ(0u, sLines.find("F: Fire place: Number 0\n"));
    EXPECT_NE(std::string::npos, sLines.find("F: and 5 more"));
}

TEST(TextDamage, AMissingTypeIsNamedWithItsKeyAndEffect)
{
    const auto missing = [](const std::string& sPrefabs, const std::string& sEffects)
    {
        CLoadReport report(false); // it is told whatever is wanted
        CTestLibrary library;
        std::string sError;
        EXPECT_FALSE(LoadEffectText(FileOf(sPrefabs, sEffects), library.m_SpellMgr, library.Module(), nullptr,
                                    nullptr, sError, &report));
        return report.MissingTypes();
    };
    EXPECT_EQ("Smoke: K, id 7: The plug-in has no type \"Laser\".",
              missing("", EffectOf(KeyText("Laser", "", 7))));
    EXPECT_EQ("Beam: The plug-in has no type \"Laser\".",
              missing("(prefab (name \"Beam\") (type \"Laser\") (properties))", ""));
}
