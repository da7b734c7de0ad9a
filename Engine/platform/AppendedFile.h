#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/FileHandle.h"

// A file that grows by whole records, and is locked while its writer lives (CFileLock::IsInUse tells). A record that is
// appended outlives the program; after Sync it outlives the machine.
class CAppendedFile
{
public:
    // Makes the file, for its owner alone. False: there is one of that name, or it can't be made; errno says why.
    bool Create(const std::string& sPath);
    bool IsOpen() const { return m_File.IsOpen(); }

    // Whole, or the file stays as it was. Where not even that can be had, it is closed.
    bool Append(std::string_view sRecord);
    bool NeedsSync() const { return m_bUnsynced; }
    bool Sync(); // with the file's entry in its folder
    void Close();

    const std::string& GetPath() const { return m_sPath; } // the machine's form; empty: none was made
    uint64_t GetSize() const { return m_nSize; }

private:
    std::string m_sPath;
    CFileHandle m_File;
    uint64_t m_nSize = 0;
    bool m_bUnsynced = false;
    bool m_bEntrySynced = false;
};
