#include "app/Journal.h"

#include "app/StatusText.h"
#include "changes/Compare.h"
#include "support/JournalBench.h"

TEST(Journal, HoldsEachStepOfARandomWalk)
{
    for (uint32_t nSeed = 0; nSeed < 4; ++nSeed)
    {
        CJournalBench bench;
        if (nSeed == 0)
        {
            bench.app->NewEffectFile(); // without a file
        }
        CEditWalk walk(*bench.app, nSeed);
        CHistory& history = bench.app->History();
        uint64_t nSteps = 0;
        for (int i = 0; i < 160; ++i)
        {
            const size_t nBefore = history.GetNumSteps() + history.GetPosition();
            const auto pBefore = walk.Image();
            if (i % 7 == 6)
                history.Undo();
            else if (i % 21 == 20)
                history.Redo();
            else
                walk.EditOnce();
            nSteps += Compare(*pBefore, *walk.Image()).IsEmpty() ? 0 : 1;
            if (i == 80 && nSeed > 1)
            {
                // The library isn't quite what its file would load as: the order of effects, tracks without keys.
                ASSERT_TRUE(bench.app->SaveEffectFile());
                nSteps = 0;
            }
            if (nSteps == 0 || (i % 9 != 0 && i < 155))
                continue;
            const CJournalStore::CEntry entry = bench.CrashOne();
            ASSERT_EQ(walk.Text(), bench.Replayed(entry, nSteps)) << nSeed << " " << i << " " << nBefore;
        }

        // Another program brings it all back, to the packed byte, as one step.
        const std::string sPacked = walk.Packed();
        const std::string sText = walk.Text();
        const CJournalStore::CEntry entry = bench.CrashOne();
        const std::string sBefore = nSeed == 0 ? "" : ReadBytes(bench.m_sFile);
        bench.app.reset(); // two can't share the plug-in
        CAppBench other;
        other.app->Journal().TurnOn();
        if (nSeed != 0)
            other.prompts.onAsk("checkout the following file", EAnswer::eNo);
        const CBroughtBack result = BringBack(*other.app, entry);
        ASSERT_TRUE(result.m_bDone && result.m_bWhole) << result.m_sText;
        SettleJournal(*other.app, entry, result);
        EXPECT_EQ(nSeed == 0, result.m_bRenamed);
        CEditWalk there(*other.app, 0);
        EXPECT_EQ(sText, there.Text());
        EXPECT_EQ(sPacked, there.Packed());
        EXPECT_FALSE(std::filesystem::exists(entry.m_sStem + ".journal")) << "it is in the new one";
        EXPECT_EQ(1u, other.app->History().GetNumSteps());
        EXPECT_EQ(TellThings("Bring Back", nSteps, "Change"), other.app->History().GetLabel(0));
        ASSERT_TRUE(other.app->History().Undo());
        if (nSeed == 1)
        {
            EXPECT_EQ(sBefore, there.Text());
        }
    }
}

TEST(Journal, BeginsAndEndsWithTheWork)
{
    CJournalBench bench;
    const auto living = [&] { return bench.app->Journals().List().size(); };
    const auto files = [&]
    {
        const std::filesystem::directory_iterator all(bench.dir.path("journals"));
        return std::distance(begin(all), end(all));
    };
    EXPECT_FALSE(bench.dir.has("journals")) << "nothing is written before the first step";
    {
        CEditScope scope(bench.app->m_Edits, "Nothing");
        scope.Touch(bench.app->m_SpellMgr.Spells()[0].get());
    }
    EXPECT_FALSE(bench.dir.has("journals"));
    bench.Rename("Campfire");
    EXPECT_EQ(2, files());
    EXPECT_EQ(0u, living()) << "its editor lives";
    CJournalStore::CEntry entry = bench.CrashOne();
    EXPECT_EQ(std::filesystem::canonical(bench.m_sFile), entry.m_Head.m_sLibrary);
    EXPECT_EQ(1u, entry.m_nSteps);
    const std::string sTold = TellJournal(entry);
    EXPECT_TRUE(sTold.starts_with("1 change to bonfire.Fx00a at ") &&
                sTold.ends_with(": Rename Effect in Smoke"))
        << sTold;
    EXPECT_EQ(CContentStamp::EState::eSame,
              CContentStamp(bench.m_sFile, entry.m_Head.m_nSize, entry.m_Head.m_sHash).Look());

    // A save ends it; so does one under another name, where the next one begins.
    ASSERT_TRUE(bench.app->SaveEffectFile());
    EXPECT_EQ(0, files());
    bench.Rename("Bonfire");
    bench.prompts.onFile(bench.path("other.Fx00a"));
    ASSERT_TRUE(bench.app->SaveEffectFileAs());
    EXPECT_EQ(0, files());
    bench.Rename("Torch");
    EXPECT_EQ(std::filesystem::canonical(bench.path("other.Fx00a")), bench.CrashOne().m_Head.m_sLibrary);

    // Taken back there is nothing to keep.
    ASSERT_TRUE(bench.app->History().Undo());
    bench.app->NewEffectFile();
    EXPECT_EQ(0, files());

    // New, Open and No keep it, and say so; an end without an answer leaves it for the next start.
    ASSERT_TRUE(bench.Open(bench.m_sFile));
    bench.Rename("A");
    bench.app->NewEffectFile();
    EXPECT_EQ("1 unsaved change kept: File > Recover", bench.host.m_Status.back());
    ASSERT_TRUE(bench.Open(bench.m_sFile));
    bench.Rename("B");
    ASSERT_TRUE(bench.Open(bench.m_sFile));
    EXPECT_TRUE(bench.host.m_Status.back().ends_with("1 unsaved change kept: File > Recover"));
    bench.Rename("C");
    bench.prompts.onAsk("save your work", EAnswer::eNo);
    EXPECT_TRUE(bench.app->ConfirmExit());
    bench.Restart();
    bench.Rename("D");
    bench.prompts.onAsk("save your work", EAnswer::eNo);
    EXPECT_TRUE(bench.app->ConfirmExit());
    bench.Rename("E"); // he stayed
    bench.Restart();
    const auto entries = bench.app->Journals().List(bench.path("./bonfire.fx00A"));
    ASSERT_EQ(4u, entries.size());
    EXPECT_EQ("E", std::string(entries[0].m_bKept ? "" : "E"));
    EXPECT_TRUE(entries[1].m_bKept && entries[2].m_bKept && entries[3].m_bKept);
    EXPECT_NE(std::string::npos, bench.Replayed(entries[0], 2).find("\"E\""));

    // A fortnight later what was kept goes; what a crash has left, and what is in use, doesn't.
    bench.Rename("F");
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 15);
    for (const auto& file : std::filesystem::directory_iterator(bench.dir.path("journals")))
        std::filesystem::last_write_time(file, old);
    bench.dir.write("journals/readme.journal", "mine");
    const std::string sOrphan = bench.dir.write("journals/01234567890123456789-01234567.base", "orphan");
    std::filesystem::last_write_time(sOrphan, old);
    CJournalStore::Keep(entries[1].m_sStem); // once more
    bench.app->Journals().Prune();
    EXPECT_EQ(2u, living());
    EXPECT_EQ(7, files());

    bench.app->Journal().TurnOff();
    EXPECT_EQ(5, files());
    bench.Rename("G");
    EXPECT_EQ(5, files());
}

TEST(Journal, BeginsAnewWhereItWouldGrowTooLargeOrMissesAStep)
{
    CJournalBench bench(3000);
    const std::string sFile = ReadBytes(bench.m_sFile);
    size_t nLargest = 0;
    for (int i = 0; i < 100; ++i)
    {
        bench.Rename("Name " + std::to_string(i));
        for (const auto& file : std::filesystem::directory_iterator(bench.dir.path("journals")))
            nLargest = std::max(nLargest, file.path().extension() == ".journal" ? file.file_size() : 0);
    }
    EXPECT_LT(nLargest, 3001u);
    CJournalStore::CEntry entry = bench.CrashOne();
    EXPECT_GT(entry.m_Head.m_nStepsBefore, 50u);
    EXPECT_EQ(bench.Text(), bench.Replayed(entry, 100));
    CReplayedJournal replayed;
    ASSERT_TRUE(ReplayJournal(entry, bench.app->m_EffectModule, replayed));
    ASSERT_TRUE(replayed.m_pOrigin) << "what the file holds is still known";
    EXPECT_EQ(sFile, bench.TextOf(*replayed.m_pOrigin));

    // Somebody else records, and can't.
    struct CForgetful : IEditRecorder
    {
        void OnTouching(const CTouch&) override {}
        void Finish(CEdit& edit) override { edit.m_bRecordFailed = true; }
        bool PutBack(const CEdit&) override { return false; }
    };
    for (const bool bFirst : {true, false})
    {
        CJournalBench other;
        if (!bFirst)
            other.Rename("Recorded");
        CForgetful forgetful;
        other.app->m_Edits.SetRecorder(&forgetful);
        other.Rename("Forgotten");
        entry = other.CrashOne();
        EXPECT_EQ(other.Text(), other.Replayed(entry, bFirst ? 1 : 2));
        ASSERT_TRUE(ReplayJournal(entry, other.app->m_EffectModule, replayed));
        ASSERT_TRUE(replayed.m_pOrigin);
        EXPECT_EQ(ReadBytes(other.m_sFile), other.TextOf(*replayed.m_pOrigin));
        other.app->m_Edits.SetRecorder(nullptr);
    }
}

TEST(Journal, TellsOnceThatItCannotBeWritten)
{
    CJournalBench bench;
    std::vector<std::string> problems;
    bench.app->Journal().m_OnProblem = [&](const std::string& s) { problems.push_back(s); };
    bench.dir.write("journals", "a file");
    bench.Rename("A");
    bench.Rename("B");
    ASSERT_EQ(1u, problems.size());
    EXPECT_NE(std::string::npos, problems[0].find(bench.dir.path("journals")));
    // The next work begins anew.
    std::filesystem::remove(bench.dir.path("journals"));
    bench.Rename("C");
    ASSERT_TRUE(bench.app->SaveEffectFile());
    bench.Rename("D");
    EXPECT_EQ(bench.Text(), bench.Replayed(bench.CrashOne(), 1));
    EXPECT_EQ(1u, problems.size());
}
