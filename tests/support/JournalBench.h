#pragma once

#include "app/Recovery.h"
#include "support/AppBench.h"
#include "support/EditWalk.h"

// An application that writes journals, and what another one finds of them.
struct CJournalBench : CAppBench
{
    explicit CJournalBench(uint64_t nMaxSize = CJournal::c_nDefaultMaxSize)
    {
        m_sFile = MakeFile("bonfire.Fx00a");
        Restart(nMaxSize);
    }
    // Another program run, with the file open.
    void Restart(uint64_t nMaxSize = CJournal::c_nDefaultMaxSize)
    {
        Start();
        app->Journal().TurnOn(nMaxSize);
        EXPECT_TRUE(Open(m_sFile));
    }
    void Rename(const std::string& sName)
    {
        CEffectEditor editor(app->Context());
        const HLibraryItem hItem = app->m_EffectTree.FindData(app->m_SpellMgr.Spells()[0].get());
        EXPECT_EQ(ERename::eDone, editor.Rename(hItem, sName));
    }
    // What a kill of the machine would leave now; a folder for each call.
    CJournalStore Crash()
    {
        const std::string sDirectory = dir.path("crash" + std::to_string(m_nCrashes++));
        std::filesystem::create_directory(sDirectory);
        if (dir.has("journals"))
            std::filesystem::copy(dir.path("journals"), sDirectory, std::filesystem::copy_options::recursive);
        return CJournalStore(sDirectory);
    }
    CJournalStore::CEntry CrashOne()
    {
        const auto entries = Crash().List();
        EXPECT_EQ(1u, entries.size());
        return entries.empty() ? CJournalStore::CEntry() : entries[0];
    }
    std::string TextOf(const CLibraryImage& image)
    {
        EXPECT_TRUE(SaveLibraryImage(dir.path("image.Fx00a").c_str(), image));
        return ReadBytes(dir.path("image.Fx00a"));
    }
    std::string Text()
    {
        EXPECT_TRUE(SaveEffectLibrary(dir.path("text.Fx00a").c_str(), app->m_EffectTree, app->m_PrefabTree));
        return ReadBytes(dir.path("text.Fx00a"));
    }
    std::string Replayed(const CJournalStore::CEntry& entry, uint64_t nSteps,
                         const std::string& sProblem = "")
    {
        CReplayedJournal replayed;
        EXPECT_TRUE(ReplayJournal(entry, app->m_EffectModule, replayed)) << replayed.m_sProblem;
        EXPECT_EQ(nSteps, replayed.m_nSteps);
        EXPECT_NE(std::string::npos, replayed.m_sProblem.find(sProblem)) << replayed.m_sProblem;
        EXPECT_EQ(sProblem.empty(), replayed.m_sProblem.empty()) << replayed.m_sProblem;
        return replayed.m_pNow ? TextOf(*replayed.m_pNow) : std::string();
    }

    std::string m_sFile;

private:
    int m_nCrashes = 0;
};
