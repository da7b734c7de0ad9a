#include "app/BackupStore.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <utility>

#include "app/BackupNames.h"
#include "app/StoreNames.h"
#include "model/MakeOrNull.h"
#include "platform/FileMode.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

constexpr uint64_t c_nMaxOwner = 64 << 10;
constexpr std::chrono::seconds c_ScanLife(2);

} // namespace

std::string CBackupStore::GetDirectory() const
{
    if (!m_sDirectory.empty())
        return m_sDirectory;
    const std::string sState = GetStateDirectory();
    return sState.empty() ? std::string() : sState + "/emberdeck/backups";
}

CBackupStore::CItems CBackupStore::Scan() const
{
    CItems items;
    const std::string sDirectory = GetDirectory();
    std::vector<CDirectoryEntry> entries;
    if (sDirectory.empty() || !ListDirectory(sDirectory, entries))
        return items;
    for (const CDirectoryEntry& entry : entries)
    {
        std::string sHash;
        CItem item;
        if (entry.m_bDirectory || entry.m_bLink ||
            !ParseBackupName(entry.m_sName, sHash, item.m_nTime, item.m_bSound))
            continue;
        item.m_nSize = FileSize(sDirectory + '/' + entry.m_sName);
        item.m_sName = entry.m_sName;
        items[sHash].push_back(std::move(item)); // the folder's order is that of time, too
    }
    return items;
}

void CBackupStore::Refresh()
{
    // Other programs keep copies in the same folder. One that came behind ours must be known: what is newest
    // is what a recovery takes.
    const auto now = std::chrono::steady_clock::now();
    const int64_t nFolderTime = FolderTime();
    if (m_bScanned && now - m_ScanTime < c_ScanLife && nFolderTime == m_nFolderTime)
        return;
    m_Items = Scan();
    m_nFolderTime = nFolderTime;
    m_ScanTime = now;
    m_bScanned = true;
}

// When a file last came into the folder or went.
int64_t CBackupStore::FolderTime() const
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(NativePath(GetDirectory()), error);
    return error ? 0 : time.time_since_epoch().count();
}

std::string CBackupStore::Keep(const std::string& sPath)
{
    m_sLastProblem.clear();
    std::string sCopy;
    if (TryAllocating([&] { sCopy = KeepNow(sPath); }))
        return sCopy;
    m_bScanned = false;                // what was noted of the folder may be half of it
    m_sLastProblem = "Out of memory."; // short enough to need none
    return std::string();
}

std::string CBackupStore::KeepNow(const std::string& sPath)
{
    const uint64_t nSize = FileSize(sPath);
    if (nSize == 0)
        return std::string();
    const std::string sName = DisplayPath(sPath);
    const std::string sDirectory = GetDirectory();
    // What a library holds is as private here as it is there.
    if (sDirectory.empty() || !MakeDirectories(sDirectory, 0700) || !MakePrivate(sDirectory))
    {
        m_sLastProblem =
            "The folder for backup copies " + sDirectory + " can't be made, or not kept private.";
        return std::string();
    }
    std::string sContent;
    if (nSize > c_nMaxFile)
    {
        m_sLastProblem = "The file " + sName + " is too large for a backup copy.";
        return std::string();
    }
    if (!ReadWholeFile(sPath, sContent, c_nMaxFile))
    {
        m_sLastProblem = "The file " + sName + " can't be read for a backup copy.";
        return std::string();
    }

    Refresh();
    const std::string sOwner = OwnerOf(sPath);
    const std::string sHash = HashOf(sOwner);
    const auto it = m_Items.find(sHash);
    if (it != m_Items.end() && !it->second.empty())
    {
        // Saving twice in a row must not push older states out.
        const CItem& last = it->second.back();
        const std::string sLast = sDirectory + '/' + last.m_sName;
        std::string sOld;
        if (last.m_nSize == sContent.size() && ReadWholeFile(sLast, sOld, c_nMaxFile) && sOld == sContent)
            return sLast;
    }

    CItem item;
    item.m_bSound = Examine(sPath, sContent);
    if (!Write(sHash, sOwner, sContent, FileMode(sPath), item))
    {
        m_sLastProblem = "A backup copy of " + sName + " can't be written to " + sDirectory + ".";
        return std::string();
    }
    const std::string sNewName = item.m_sName;
    m_Items[sHash].push_back(std::move(item));
    Prune(sPath, sHash, sNewName);
    m_nFolderTime = FolderTime();
    return sDirectory + '/' + sNewName;
}

bool CBackupStore::Write(const std::string& sHash, const std::string& sOwner, const std::string& sContent,
                         unsigned nMode, CItem& item)
{
    const std::string sDirectory = GetDirectory();
    const std::string sOwnerFile = sDirectory + '/' + OwnerFileName(sHash);
    const auto writeOwner = [&]
    {
        std::string sOld;
        if (!ReadWholeFile(sOwnerFile, sOld, c_nMaxOwner) || sOld != sOwner)
            WriteFileSafely(sOwnerFile, sOwner, 0600);
    };

    writeOwner();
    // The clock may have been set back: the newest copy still sorts last.
    item.m_nTime = NowNanoseconds();
    const auto it = m_Items.find(sHash);
    if (it != m_Items.end() && !it->second.empty())
        item.m_nTime = std::max(item.m_nTime, it->second.back().m_nTime + 1);
    std::random_device random;
    item.m_nSize = sContent.size();
    item.m_sName = BackupName(sHash, item.m_nTime, random(), item.m_bSound);
    if (!WriteFileSafely(sDirectory + '/' + item.m_sName, sContent, nMode))
        return false;
    writeOwner(); // another program may just have tidied up
    return true;
}

std::vector<CBackupStore::CEntry> CBackupStore::List(const std::string& sPath) const
{
    std::vector<CEntry> entries;
    const CItems items = Scan();
    const auto it = items.find(HashOf(OwnerOf(sPath)));
    if (it == items.end())
        return entries;
    for (auto item = it->second.rbegin(); item != it->second.rend(); ++item)
        entries.push_back(
            {GetDirectory() + '/' + item->m_sName, item->m_nTime, item->m_nSize, item->m_bSound});
    return entries;
}
