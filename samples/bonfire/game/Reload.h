// SPDX-License-Identifier: 0BSD
#pragma once

#include <cstdint>
#include <string>

// When the packed file on the disk counts as changed. Plain code: the window asks it whenever something moved
// in the folder, and now and then without a reason, since not every file system tells.

// What tells one state of a file from another.
struct CFileStamp
{
    bool m_bThere = false;
    uint64_t m_nSize = 0;
    int64_t m_nTime = 0;  // nanoseconds of the last change
    uint64_t m_nFile = 0; // number of the file: another one after a save that replaces it

    bool operator==(const CFileStamp&) const = default;
};
CFileStamp StampOf(const std::string& sPath);

enum class EReload
{
    eNothing, // what is shown is what lies there
    eWait,    // something moves: ask again soon
    eLoad,    // read the file now
    eGone     // the file isn't there any more
};

class CReloadWatch
{
public:
    // A writer may be at work, or may have moved the old file away a moment before the new one comes.
    static constexpr double c_fSettle = 0.12; // seconds of rest before a changed file is read
    static constexpr double c_fGone = 1.0;    // seconds before a missing file is believed

    // The file was read, or found missing, in this state.
    void Loaded(const CFileStamp& stamp);
    // fNow in seconds of any clock that goes up. eLoad and eGone are told once, then again after a change.
    EReload Ask(const CFileStamp& stamp, double fNow);

private:
    CFileStamp m_Shown;
    CFileStamp m_Seen;
    double m_fSeen = 0; // since when the file has been as m_Seen
};
