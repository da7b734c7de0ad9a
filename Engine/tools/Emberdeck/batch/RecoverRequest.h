#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "batch/Batch.h"

// What the command line asks of "recover".
struct CRecoverRequest
{
    std::string m_sFile; // may be empty with m_bJournals
    bool m_bList = false;
    std::optional<uint32_t> m_nCopy; // 1 is the newest; none: the newest one that is sound
    bool m_bJournals = false;        // work that was never saved, in the place of copies
    bool m_bDrop = false;            // removes the journal
    std::string m_sOut;              // where the work is saved; empty: in its own file
};

// A time as the lists tell it: local, to the second.
std::string RecoverTimeText(uint64_t nNanoseconds);

int RecoverJournals(const CRecoverRequest& request, const CBatchOptions& options);
