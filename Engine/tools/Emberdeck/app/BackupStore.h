#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Keeps what a save is about to overwrite. A save writes in place, so that a full disk or a crash part
// way leaves a cut file; the copy that lies here is then the artist's way back.
//
// A copy is a plain file HASH-TIME-MARK-SOUND.bak in the store's folder, and HASH.path beside it tells whoever looks into the folder whose it is.
// SOUND is a letter that says whether the content was found whole when the copy was made: s for sound, d for damaged,
// u for not known; older copies have none. There is no index that could be damaged: names alone say what belongs
// together, files that don't fit the pattern are left alone, and programs that run side by side never write one name.
class CBackupStore
{
public:
    static constexpr size_t c_nKeptPerFile = 5;
    static constexpr uint64_t c_nMaxFile = uint64_t(512) << 20;   // a larger one isn't kept
    static constexpr uint64_t c_nMaxTotal = uint64_t(1024) << 20; // of all copies; the oldest go first

    // Whether the bytes that a file of that name has held are whole; none: it can't be told.
    using CSoundCheck =
        std::function<std::optional<bool>(const std::string& sPath, const std::string& sContent)>;

    struct CEntry
    {
        std::string m_sBackup;             // full path of the copy
        uint64_t m_nTime = 0;              // nanoseconds since 1970
        uint64_t m_nSize = 0;              // bytes
        std::optional<bool> m_bSound = {}; // as its name says; none: it doesn't
    };

    // Empty: the folder emberdeck/backups of the user's state directory. Without a check nothing is known of any
    // copy.
    explicit CBackupStore(std::string sDirectory = std::string(), CSoundCheck isSound = {})
        : m_sDirectory(std::move(sDirectory)),
          m_IsSound(std::move(isSound))
    {
    }

    // Copies the file's present content, synced to the disk. The oldest copies go then, but never the last one that is
    // sound. The path of the copy, which is an earlier
    // one when that has the same bytes. Empty when there is nothing to keep (no file, or an empty one),
    // and when the copy can't be made: GetLastProblem then says why.
    std::string Keep(const std::string& sPath);

    std::vector<CEntry> List(const std::string& sPath) const; // newest first

    // The number in List of the copy that a recovery should bring back: the newest one that is found sound now,
    // whatever its name says, and that isn't what the file holds already: a recovery that was killed may have kept
    // that. Else the newest of which nothing can be told; none when all of them are damaged.
    std::optional<size_t> ChooseSound(const std::string& sPath) const;
    // Looks into a copy.
    std::optional<bool> IsSound(const std::string& sPath, const CEntry& entry) const;

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
        std::optional<bool> m_bSound;
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
    void Prune(const std::string& sPath, const std::string& sHash, const std::string& sKeep);
    void PruneTotal(const std::string& sKeep);
    std::optional<bool> Examine(const std::string& sPath, const std::string& sContent) const;
    bool MayGo(const std::vector<CItem>& items, size_t nIndex) const;
    size_t FindLastSound(const std::vector<CItem>& items) const;
    void ExamineUntilSound(const std::string& sPath, std::vector<CItem>& items) const;

    std::string m_sDirectory;
    CSoundCheck m_IsSound;
    uint64_t m_nMaxTotal = c_nMaxTotal;
    std::string m_sLastProblem;
    std::string m_sInUse; // the name of the copy that a recovery is about to bring back

    // What the folder held when it was last read: a run over many files doesn't read it for each.
    CItems m_Items;
    bool m_bScanned = false;
    int64_t m_nFolderTime = 0; // of the folder at that time, own changes included
    std::chrono::steady_clock::time_point m_ScanTime;
};
