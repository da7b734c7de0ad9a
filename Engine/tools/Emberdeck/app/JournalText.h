#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// A journal's bytes, readable by people: records, each a line
//
//     KIND LENGTH HASH
//
// with LENGTH bytes behind it and a line end. The hash is that of the kind and the bytes, so that a record of which
// only a part has come to the disk is known for one. The first record is the head, of kind "journal 1"; each further
// one a "step".

// What a journal began with.
struct CJournalHead
{
    std::string m_sLibrary; // the machine's one name of the file; empty: it had none
    // Of the file's content when the journal began. No hash: there was no file, or it wasn't known.
    uint64_t m_nSize = 0;
    std::string m_sHash;
    std::string m_sLocator; // of the project; empty: none
    std::string m_sPlugin;
    uint64_t m_nPluginVersion = 0;
    std::string m_sTypes;  // hash of the plug-in's table
    std::string m_sBase;   // hash of the base's text
    std::string m_sOrigin; // of what the file held, where that is known and isn't the base; else empty
    // Steps that the base holds already, since the journal was begun anew within the work, and the last of them.
    uint64_t m_nStepsBefore = 0;
    uint64_t m_nLastTime = 0;
    std::string m_sLastLabel;
    std::string m_sLastEffect;
};

struct CJournalStep
{
    uint64_t m_nTime = 0;      // nanoseconds since 1970
    std::string m_sLabel;      // "Move Keys"
    std::string m_sEffect;     // the one effect that it changed; empty: none or several
    std::string_view m_Change; // as of changes/ChangeText.h; a part of the text that was read
};

struct CJournalText
{
    CJournalHead m_Head;
    std::vector<CJournalStep> m_Steps;
    size_t m_nWhole = 0; // bytes up to the end of the last whole record
};

std::string WriteJournalHead(const CJournalHead& head);
std::string WriteJournalStep(uint64_t nTime, const std::string& sLabel, const std::string& sEffect,
                             std::string_view sChange);

// Reads all up to the first record that isn't whole. False: not even the head is. The text outlives the result.
bool ReadJournalText(std::string_view sText, CJournalText& journal);
