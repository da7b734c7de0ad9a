#include "app/Recovery.h"

#include "support/JournalBench.h"

namespace
{
std::string JournalOf(const CJournalStore::CEntry& entry)
{
    return ReadBytes(entry.m_sStem + ".journal");
}
} // namespace

TEST(Recovery, BringsBackAllWholeStepsOfADamagedJournal)
{
    CJournalBench bench;
    std::vector<std::string> texts; // behind each step
    std::vector<size_t> ends = {0}; // of each record
    for (int i = 0; i < 6; ++i)
    {
        bench.Rename("Line\nbreak 100% " + std::to_string(i));
        const std::string sJournal = JournalOf(bench.CrashOne());
        CJournalText journal;
        ASSERT_TRUE(ReadJournalText(sJournal, journal));
        ASSERT_EQ(sJournal.size(), journal.m_nWhole);
        if (i == 0)
            ends[0] = WriteJournalHead(journal.m_Head).size();
        ends.push_back(sJournal.size());
        texts.push_back(bench.Text());
    }
    const CJournalStore::CEntry entry = bench.CrashOne();
    const std::string sWhole = JournalOf(entry);
    const auto stepsBefore = [&](size_t n)
    { return size_t(std::upper_bound(ends.begin(), ends.end(), n) - ends.begin()); };
    for (size_t n = 0; n < sWhole.size(); ++n)
    {
        std::string sSpoilt = sWhole;
        sSpoilt[n] = static_cast<char>(sSpoilt[n] ^ (1 << n % 8));
        for (const std::string& sText : {sWhole.substr(0, n), sSpoilt})
        {
            CJournalText journal;
            const size_t nRecords = stepsBefore(n);
            ASSERT_EQ(nRecords > 0, ReadJournalText(sText, journal)) << n;
            ASSERT_EQ(nRecords > 0 ? nRecords - 1 : 0, journal.m_Steps.size()) << n;
            if (n % 61 != 0)
                continue;
            WriteBytes(entry.m_sStem + ".journal", sText);
            const auto found = CJournalStore(std::filesystem::path(entry.m_sStem).parent_path()).List();
            ASSERT_EQ(1u, found.size());
            ASSERT_EQ(nRecords > 0, found[0].m_bReadable);
            if (nRecords > 1)
            {
                ASSERT_EQ(texts[nRecords - 2],
                          bench.Replayed(found[0], nRecords - 1, found[0].m_bCut ? "can't be read" : ""));
            }
        }
    }
    // A step that reads well, but can't be done, ends it, too.
    CJournalText journal;
    ASSERT_TRUE(ReadJournalText(sWhole, journal));
    WriteBytes(entry.m_sStem + ".journal", sWhole.substr(0, ends[3]) +
                                               WriteJournalStep(1, "Twice", "", journal.m_Steps[2].m_Change) +
                                               sWhole.substr(ends[3]));
    EXPECT_EQ(texts[2], bench.Replayed(entry, 3, "Twice can't be done: "));

    // What came back of it isn't all, so it is kept.
    const CJournalStore::CEntry last = bench.CrashOne();
    bench.app.reset(); // two can't share the plug-in
    CAppBench other;
    other.app->Journal().TurnOn();
    other.prompts.onAsk("checkout the following file", EAnswer::eNo);
    const CBroughtBack result = BringBack(*other.app, entry);
    EXPECT_TRUE(result.m_bDone && !result.m_bWhole && !result.m_bRenamed) << result.m_sText;
    SettleJournal(*other.app, entry, result);
    EXPECT_TRUE(std::filesystem::exists(entry.m_sStem + ".kept"));

    // Without its base nothing can be had.
    std::string sBase = ReadBytes(last.m_sStem + ".base");
    sBase[sBase.size() / 2] = static_cast<char>(sBase[sBase.size() / 2] ^ 1);
    WriteBytes(last.m_sStem + ".base", sBase);
    CReplayedJournal replayed;
    EXPECT_FALSE(ReplayJournal(last, other.app->m_EffectModule, replayed));
    EXPECT_EQ("The library that the journal began with is missing or damaged.", replayed.m_sProblem);
    std::filesystem::remove(last.m_sStem + ".base");
    EXPECT_FALSE(ReplayJournal(last, other.app->m_EffectModule, replayed));
}

TEST(Recovery, GoesByWhatHasBecomeOfTheFile)
{
    CJournalBench bench;
    bench.Rename("Campfire");
    const std::string sText = bench.Text();
    const std::string sOld = ReadBytes(bench.m_sFile);
    bench.app.reset(); // two can't share the plug-in
    struct CCase
    {
        const char* m_pszWhat;
        std::function<void()> m_Do;
        const char* m_pszTold;
        bool m_bRenamed;
    };
    const CCase cases[] = {
        {"written anew, the same", [&] { WriteBytes(bench.m_sFile, sOld); }, "", false},
        {"changed, but not what is in it", [&] { WriteBytes(bench.m_sFile, sOld + "\r\n"); },
         "They are merged into bonfire.Fx00a, which has been changed since.", false},
        {"gone", [&] { std::filesystem::remove(bench.m_sFile); },
         "bonfire.Fx00a is gone: save them under a name.", true},
    };
    for (const CCase& one : cases)
    {
        const CJournalStore::CEntry entry = bench.CrashOne();
        one.m_Do();
        CAppBench other;
        if (std::filesystem::exists(bench.m_sFile))
            other.prompts.onAsk("checkout the following file", EAnswer::eNo);
        const CBroughtBack result = BringBack(*other.app, entry);
        EXPECT_NE(std::string::npos, result.m_sText.find(one.m_pszTold)) << one.m_pszWhat << result.m_sText;
        EXPECT_EQ(one.m_bRenamed, result.m_bRenamed) << one.m_pszWhat;
        EXPECT_EQ(one.m_bRenamed ? "" : entry.m_Head.m_sLibrary, other.app->m_sFileName) << one.m_pszWhat;
        EXPECT_TRUE(result.m_bWhole) << one.m_pszWhat;
        EXPECT_EQ(sText, CEditWalk(*other.app, 0).Text()) << one.m_pszWhat;
        SettleJournal(*other.app, entry, result);
        EXPECT_TRUE(std::filesystem::exists(entry.m_sStem + ".kept")) << "no journal holds it yet";
        WriteBytes(bench.m_sFile, sOld);
    }
    for (const bool bConflict : {false, true})
    {
        // Somebody else has renamed a prefab, or the same effect.
        const CJournalStore::CEntry entry = bench.CrashOne();
        std::string sTheirs = sOld;
        const std::string sName = bConflict ? "Smoke" : "Puff";
        for (size_t n = 0; (n = sTheirs.find('"' + sName + '"', n)) != std::string::npos; n += 8)
            sTheirs.replace(n + 1, sName.size(), "Theirs");
        WriteBytes(bench.m_sFile, sTheirs);
        CAppBench other;
        other.prompts.onAsk("checkout the following file", EAnswer::eNo);
        const CBroughtBack result = BringBack(*other.app, entry);
        EXPECT_TRUE(result.m_bDone && result.m_bWhole && !result.m_bRenamed) << result.m_sText;
        EXPECT_EQ(bConflict, !result.m_Conflicts.empty());
        EXPECT_TRUE(other.app->m_SpellMgr.FindSpell("Campfire"));
        EXPECT_EQ(!bConflict, other.app->m_SpellMgr.FindPrefab("Theirs") != nullptr);
        ASSERT_TRUE(other.app->History().Undo());
        EXPECT_EQ(sTheirs, CEditWalk(*other.app, 0).Text());
        WriteBytes(bench.m_sFile, sOld);
    }
    {
        // Killed between a save and the end of its journal.
        const CJournalStore::CEntry entry = bench.CrashOne();
        WriteBytes(bench.m_sFile, sText);
        CAppBench other;
        other.prompts.onAsk("checkout the following file", EAnswer::eNo);
        const CBroughtBack result = BringBack(*other.app, entry);
        EXPECT_EQ("bonfire.Fx00a holds them already.", result.m_sText);
        EXPECT_EQ(0u, other.app->History().GetNumSteps());
        SettleJournal(*other.app, entry, result);
        EXPECT_FALSE(std::filesystem::exists(entry.m_sStem + ".journal"));
        WriteBytes(bench.m_sFile, sOld);
    }
    // Without its project the types of its keys are nowhere.
    const CJournalStore::CEntry entry = bench.CrashOne();
    std::filesystem::remove(bench.path("game.proj00"));
    for (const bool bThere : {true, false})
    {
        CAppBench other;
        if (bThere)
            other.prompts.onAsk("Unable to find a project locator");
        else
            std::filesystem::remove(bench.m_sFile);
        const CBroughtBack result = BringBack(*other.app, entry);
        EXPECT_FALSE(result.m_bDone);
        EXPECT_EQ(bThere ? "The file can't be opened." : "The plug-in of its project can't be loaded.",
                  result.m_sText);
        SettleJournal(*other.app, entry, result);
        EXPECT_TRUE(std::filesystem::exists(entry.m_sStem + ".journal"));
    }
}
