#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The names of files in a folder of backup copies (see CBackupStore).

// A hash is that of app/StoreNames.h, of the owner's name.
std::string OwnerFileName(const std::string& sHash); // of the file that holds the owner's name
// Of a copy: nTime in nanoseconds since 1970, nMark a number at random.
std::string BackupName(const std::string& sHash, uint64_t nTime, uint32_t nMark, std::optional<bool> bSound);
// Takes a copy's name apart. False: it is none, and what is given stays unknown. Older copies don't say whether they
// are sound.
bool ParseBackupName(const std::string& sName, std::string& sHash, uint64_t& nTime,
                     std::optional<bool>& bSound);
