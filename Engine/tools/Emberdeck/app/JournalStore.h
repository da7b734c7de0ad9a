#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/JournalText.h"

// The folder of journals. A journal is a few files of one stem, TIME-MARK as those of backup copies:
//
//     .journal   the steps, as of app/JournalText.h; locked while its editor lives, else what a crash has left
//     .kept      the same of work that was left on purpose, for File > Recover
//     .base      the library that the first step was done to, compressed: a change that makes it from nothing
//     .origin    what the file held, compressed, where that isn't the base any more
class CJournalStore
{
public:
    static constexpr uint64_t c_nMaxFile = uint64_t(1) << 30;     // a larger one isn't read
    static constexpr uint64_t c_nKeptSeconds = 14 * 24 * 60 * 60; // since it was left
    static constexpr uint64_t c_nMaxKept = uint64_t(1024) << 20;  // of all kept; the oldest go first

    // A journal without a living editor, and what it tells of itself.
    struct CEntry
    {
        std::string m_sStem; // full path, without an ending
        bool m_bKept = false;
        bool m_bReadable = false; // else nothing below is known
        bool m_bCut = false;      // something behind the last whole step can't be read
        CJournalHead m_Head;
        uint64_t m_nSteps = 0; // with those that its base holds already
        uint64_t m_nLastTime = 0;
        std::string m_sLastLabel;
        std::string m_sLastEffect;
    };

    // Empty: the folder emberdeck/journals of the user's state directory.
    explicit CJournalStore(std::string sDirectory = std::string()) : m_sDirectory(std::move(sDirectory)) {}
    std::string GetDirectory() const; // empty: the user has no state directory

    // The last work first.
    std::vector<CEntry> List() const;
    // Those of a file; by its name on the machine.
    std::vector<CEntry> List(const std::string& sPath) const;
    // Reads one whole. The entry's text holds what the steps are views of.
    static bool Read(const std::string& sStem, std::string& sText, CJournalText& journal);
    // The text of a base or origin. False: it isn't there, or not what the head says.
    static bool ReadBase(const std::string& sStem, const char* pszSuffix, const std::string& sHash,
                         std::string& sText);

    static bool Keep(const std::string& sStem); // for a fortnight from now on
    static void Remove(const std::string& sStem);
    // Removes what was kept for long enough, and what no journal belongs to.
    void Prune() const;

    // A stem that nothing has, in the folder, which is made. Empty: it can't be made, or not kept private.
    std::string MakeStem() const;
    static bool WriteBase(const std::string& sStem, const char* pszSuffix, const std::string& sText);

private:
    std::string m_sDirectory;
};

constexpr const char* c_szJournalSuffix = ".journal";
constexpr const char* c_szKeptSuffix = ".kept";
constexpr const char* c_szBaseSuffix = ".base";
constexpr const char* c_szOriginSuffix = ".origin";

// "12 changes to bonfire.Fx00a, the last at 14:02: Move Keys in Campfire". The time without its day when that is today.
std::string TellJournal(const CJournalStore::CEntry& entry);
