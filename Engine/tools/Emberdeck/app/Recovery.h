#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/EmberdeckApp.h"
#include "app/JournalStore.h"
#include "changes/LibraryImage.h"

// What a journal makes of its base.
struct CReplayedJournal
{
    std::shared_ptr<const CLibraryImage> m_pOrigin; // what the file held; null: not known
    std::shared_ptr<const CLibraryImage> m_pNow;    // behind the last step that could be done
    uint64_t m_nSteps = 0;                          // which these are, with those that the base holds
    std::string m_sProblem;                         // why it was the last; empty: there are no more
};

// Does the steps of a journal in a library of its own. False: not even its base is there, and m_sProblem says why.
bool ReplayJournal(const CJournalStore::CEntry& entry, const CEffectModule& module,
                   CReplayedJournal& replayed);

struct CBroughtBack
{
    bool m_bDone = false;    // else the library is what it was, or what opening the file has made of it
    bool m_bWhole = false;   // nothing is missing
    bool m_bRenamed = false; // the library has no file
    uint64_t m_nSteps = 0;   // that came back
    // Where the file has been changed meanwhile at the same place, a line for each: the journal's side stands.
    std::vector<std::string> m_Conflicts;
    std::string m_sText; // for the user: what came back, or why nothing did
};

// Brings a journal's work into the application as one step. It opens the journal's file, unless that is open; where the
// file is what the journal began with, the library is then what it was. Where it isn't, or there are edits since, the
// journal's changes are merged onto it. Where the file is gone, or what the journal began with isn't known, the library
// comes back whole as one without a file, so that nobody's work is written over. What is brought back is unsaved, and
// in the application's own journal. The old one stays as it is.
CBroughtBack BringBack(CEmberdeckApp& app, const CJournalStore::CEntry& entry);

// Behind it: removes the old journal when all of it is saved or in the application's own one, and else keeps it.
void SettleJournal(CEmberdeckApp& app, const CJournalStore::CEntry& entry, const CBroughtBack& result);
