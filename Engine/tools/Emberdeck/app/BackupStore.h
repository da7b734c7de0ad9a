#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Keeps what a save is about to overwrite. A save writes in place, so that a full disk or a crash part
// way leaves a cut file; the copy that lies here is then the artist's way back.
//
// A copy is a plain file HASH-TIME-MARK.bak in the store's folder, and HASH.path beside it tells
// whose it is. There is no index that could be damaged: names alone say what belongs together, files
// that don't fit the pattern are left alone, and programs that run side by side never write one name.
class CBackupStore
{
public:
    static constexpr size_t c_nKeptPerFile = 5;
    static constexpr uint64_t c_nMaxFile = uint64_t(512) << 20;   // a larger one isn't kept
    static constexpr uint64_t c_nMaxTotal = uint64_t(1024) << 20; // of all copies; the oldest go first

    struct CEntry
    {
        std::string m_sBackup; // full path of the copy
        uint64_t m_nTime = 0;  // nanoseconds since 1970
        uint64_t m_nSize = 0;  // bytes
    };
    struct CKeptFile
    {
        std::string m_sPath;           // whose copies they are; empty when its .path file is lost
        std::vector<CEntry> m_Entries; // newest first
    };

    // Empty: the folder emberdeck/backups of the user's state directory.
    explicit CBackupStore(std::string sDirectory = std::string()) : m_sDirectory(std::move(sDirectory)) {}

    // Copies the file's present content, synced to the disk. The path of the copy, which is an earlier
    // one when that has the same bytes. Empty when there is nothing to keep (no file, or an empty one),
    // and when the copy can't be made: GetLastProblem then says why.
    std::string Keep(const std::string& sPath);

    std::vector<CEntry> List(const std::string& sPath) const; // newest first
    std::vector<CKeptFile> ListAll() const;

    // Writes copy nIndex of List back over the file, whose present content is kept first. False:
    // sError says why, and the file is as it was.
    bool Recover(const std::string& sPath, size_t nIndex, std::string& sError);

    // Why the last Keep could not do its work, as a sentence; empty when it could.
    const std::string& GetLastProblem() const { return m_sLastProblem; }
    std::string GetDirectory() const; // empty: the user has no state directory

    void SetMaxTotal(uint64_t nMaxTotal) { m_nMaxTotal = nMaxTotal; }

private:
    struct CItem
    {
        uint64_t m_nTime;
        uint64_t m_nSize;
        std::string m_sName; // within the folder
    };
    // By hash; each list from the oldest on.
    using CItems = std::map<std::string, std::vector<CItem>>;

    std::string KeepNow(const std::string& sPath); // throws when memory is out
    CItems Scan() const;
    void Refresh();
    int64_t FolderTime() const;
    bool Write(const std::string& sHash, const std::string& sOwner, const std::string& sContent,
               unsigned nMode, CItem& item);
    void Remove(const std::string& sHash, size_t nIndex);
    void Prune(const std::string& sHash, const std::string& sKeep);

    std::string m_sDirectory;
    uint64_t m_nMaxTotal = c_nMaxTotal;
    std::string m_sLastProblem;

    // What the folder held when it was last read: a run over many files doesn't read it for each.
    CItems m_Items;
    bool m_bScanned = false;
    int64_t m_nFolderTime = 0; // of the folder at that time, own changes included
    std::chrono::steady_clock::time_point m_ScanTime;
};
