#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Plain file work on paths of any form (see Paths.h). False or null is failure; nothing throws.

bool FileExists(const std::string& sPath); // a file or anything else that isn't a directory
bool PathExists(const std::string& sPath);
bool DirectoryExists(const std::string& sPath);
bool IsSameFile(const std::string& sLeft, const std::string& sRight); // by whatever names; both are there
uint64_t FileSize(const std::string& sPath);                          // 0 when there is none

// Which content a file has, told without reading it: another version is another content, as far as the file system
// tells. All 0 when it isn't there.
struct CFileVersion
{
    uint64_t m_nFile = 0; // its number
    uint64_t m_nSize = 0;
    int64_t m_nTime = 0; // of its last change, nanoseconds
    bool operator==(const CFileVersion&) const = default;
};
CFileVersion FileVersion(const std::string& sPath);

// At most nMaxSize bytes are taken; a larger file fails. What has no size of its own, such as a pipe,
// is read to its end, at most 256 MB of it.
bool ReadWholeFile(const std::string& sPath, std::string& sContent, uint64_t nMaxSize = UINT64_MAX);
// The same, but fails at once for what is no ordinary file: a folder, pipe, socket or device.
bool ReadOrdinaryFile(const std::string& sPath, std::string& sContent, uint64_t nMaxSize = UINT64_MAX);
// Whole or not at all, through a CReplacingFile (see ReplacingFile.h, which also says where that can't be had).
// A new file gets nNewMode, less what the user's mask takes away.
bool WriteFileSafely(const std::string& sPath, const std::string& sContent, unsigned nNewMode = 0666);
bool RemoveFile(const std::string& sPath); // no directories; a link itself, not its target
// With all above; true when it is there already. Those that are made get nMode, less what the user's mask takes.
bool MakeDirectories(const std::string& sPath, unsigned nMode = 0777);

struct CDirectoryEntry
{
    std::string m_sName;
    bool m_bDirectory = false; // links are looked through
    bool m_bLink = false;
};
// In name order, without regard to case and then by bytes; without the two dot entries.
// False when the directory can't be read.
bool ListDirectory(const std::string& sPath, std::vector<CDirectoryEntry>& entries);

// An empty file of its own in the machine's temporary directory; empty path on failure.
std::string MakeTemporaryFile(const std::string& sPrefix);
