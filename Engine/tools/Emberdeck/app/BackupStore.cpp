#include "app/BackupStore.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string_view>
#include <tuple>
#include <utility>

#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/FileMode.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

constexpr size_t c_nHashLength = 32;
constexpr size_t c_nTimeLength = 20;
constexpr size_t c_nMarkLength = 8;
constexpr const char* c_szBackupSuffix = ".bak";
constexpr const char* c_szOwnerSuffix = ".path";
constexpr uint64_t c_nMaxOwner = 64 << 10;
constexpr uint64_t c_nSmallest = 4096; // what even a tiny copy takes of a disk
constexpr std::chrono::seconds c_ScanLife(2);

std::string Hex(uint64_t nValue, int nDigits)
{
    char szText[20];
    std::snprintf(szText, sizeof(szText), "%0*llx", nDigits, static_cast<unsigned long long>(nValue));
    return szText;
}

// 128 bits: two files never share a name by chance.
std::string HashOf(const std::string& sText)
{
    uint64_t nFirst = 0xCBF29CE484222325u;
    uint64_t nSecond = 0x9E3779B97F4A7C15u;
    for (const char c : sText)
    {
        const uint64_t nByte = static_cast<unsigned char>(c);
        nFirst = (nFirst ^ nByte) * 0x100000001B3u;
        nSecond = (nSecond + nByte) * 0xFF51AFD7ED558CCDu;
        nSecond ^= nSecond >> 29;
    }
    return Hex(nFirst, 16) + Hex(nSecond, 16);
}

// The machine's one name of the file, so that it doesn't matter how it was written.
std::string OwnerOf(const std::string& sPath)
{
    const std::string sResolved = ResolvedPath(sPath);
    return sResolved.empty() ? MakeFullPath(sPath) : sResolved;
}

bool IsHash(const std::string& sText)
{
    return sText.size() == c_nHashLength && sText.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// The letter of a name for what is known of the copy.
constexpr char SoundLetter(std::optional<bool> bSound)
{
    return !bSound ? 'u' : *bSound ? 's' : 'd';
}

// "-s" before the ending; older copies have none.
bool ParseSound(std::string_view sLetter, std::optional<bool>& bSound)
{
    bSound.reset();
    if (sLetter.empty() || sLetter == "-u")
        return true;
    bSound = sLetter == "-s";
    return *bSound || sLetter == "-d";
}

bool ParseName(const std::string& sName, std::string& sHash, uint64_t& nTime, std::optional<bool>& bSound)
{
    constexpr size_t nLength = c_nHashLength + 1 + c_nTimeLength + 1 + c_nMarkLength;
    const std::string_view sSuffix = c_szBackupSuffix;
    if (sName.size() < nLength + sSuffix.size() || !sName.ends_with(sSuffix) || sName[c_nHashLength] != '-' ||
        sName[c_nHashLength + 1 + c_nTimeLength] != '-')
        return false;
    const std::string_view sBehind = std::string_view(sName).substr(nLength);
    if (!ParseSound(sBehind.substr(0, sBehind.size() - sSuffix.size()), bSound))
        return false;
    sHash = sName.substr(0, c_nHashLength);
    nTime = 0;
    for (const char c : sName.substr(c_nHashLength + 1, c_nTimeLength))
    {
        if (c < '0' || c > '9')
            return false;
        nTime = nTime * 10 + static_cast<uint64_t>(c - '0');
    }
    return IsHash(sHash);
}

std::string TimeText(uint64_t nTime)
{
    char szText[24];
    std::snprintf(szText, sizeof(szText), "%020llu", static_cast<unsigned long long>(nTime));
    return szText;
}

uint64_t Now()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const int64_t nTime = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    return nTime < 0 ? 0 : static_cast<uint64_t>(nTime);
}

uint64_t Cost(uint64_t nSize)
{
    return std::max(nSize, c_nSmallest);
}

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
            !ParseName(entry.m_sName, sHash, item.m_nTime, item.m_bSound))
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
    const std::string sOwnerFile = sDirectory + '/' + sHash + c_szOwnerSuffix;
    const auto writeOwner = [&]
    {
        std::string sOld;
        if (!ReadWholeFile(sOwnerFile, sOld, c_nMaxOwner) || sOld != sOwner)
            WriteFileSafely(sOwnerFile, sOwner, 0600);
    };

    writeOwner();
    // The clock may have been set back: the newest copy still sorts last.
    item.m_nTime = Now();
    const auto it = m_Items.find(sHash);
    if (it != m_Items.end() && !it->second.empty())
        item.m_nTime = std::max(item.m_nTime, it->second.back().m_nTime + 1);
    std::random_device random;
    item.m_nSize = sContent.size();
    item.m_sName = sHash + '-' + TimeText(item.m_nTime) + '-' + Hex(random() & 0xFFFFFFFFu, c_nMarkLength) +
                   '-' + SoundLetter(item.m_bSound) + c_szBackupSuffix;
    if (!WriteFileSafely(sDirectory + '/' + item.m_sName, sContent, nMode))
        return false;
    writeOwner(); // another program may just have tidied up
    return true;
}

void CBackupStore::Remove(const std::string& sHash, size_t nIndex)
{
    const auto it = m_Items.find(sHash);
    const std::string sDirectory = GetDirectory();
    RemoveFile(sDirectory + '/' + it->second[nIndex].m_sName);
    it->second.erase(it->second.begin() + static_cast<std::ptrdiff_t>(nIndex));
    if (!it->second.empty())
        return;
    RemoveFile(sDirectory + '/' + sHash + c_szOwnerSuffix);
    m_Items.erase(it);
}

// What the check says. When memory runs out over it nothing is known, and no save fails for that.
std::optional<bool> CBackupStore::Examine(const std::string& sPath, const std::string& sContent) const
{
    std::optional<bool> bSound;
    TryAllocating(
        [&]
        {
            if (m_IsSound)
                bSound = m_IsSound(sPath, sContent);
        });
    return bSound;
}

std::optional<bool> CBackupStore::IsSound(const std::string& sPath, const CEntry& entry) const
{
    std::string sContent;
    if (!ReadWholeFile(entry.m_sBackup, sContent, c_nMaxFile))
        return false;
    return Examine(sPath, sContent);
}

// The newest copy that is said to be sound; the number of copies without one.
size_t CBackupStore::FindLastSound(const std::vector<CItem>& items) const
{
    for (size_t i = items.size(); i-- > 0;)
    {
        if (items[i].m_bSound.value_or(false))
            return i;
    }
    return items.size();
}

// Whether a copy may make room for newer ones.
bool CBackupStore::MayGo(const std::vector<CItem>& items, size_t nIndex) const
{
    return nIndex != FindLastSound(items) && items[nIndex].m_sName != m_sInUse;
}

// Copies of earlier versions say nothing of themselves: they are looked at before one of them may have to go.
void CBackupStore::ExamineUntilSound(const std::string& sPath, std::vector<CItem>& items) const
{
    for (size_t i = items.size(); i-- > 0 && FindLastSound(items) == items.size();)
    {
        if (!items[i].m_bSound)
            items[i].m_bSound = IsSound(sPath, {GetDirectory() + '/' + items[i].m_sName});
    }
}

void CBackupStore::Prune(const std::string& sPath, const std::string& sHash, const std::string& sKeep)
{
    std::vector<CItem>& items = m_Items[sHash];
    if (items.size() > c_nKeptPerFile && m_IsSound)
        ExamineUntilSound(sPath, items);
    for (size_t i = 0; items.size() > c_nKeptPerFile && i < items.size();)
    {
        if (MayGo(items, i))
            Remove(sHash, i);
        else
            ++i;
    }
    PruneTotal(sKeep);
}

void CBackupStore::PruneTotal(const std::string& sKeep)
{
    uint64_t nTotal = 0;
    for (const auto& [sOther, list] : m_Items)
    {
        for (const CItem& item : list)
            nTotal += Cost(item.m_nSize);
    }
    if (nTotal <= m_nMaxTotal)
        return;

    // All but the one that the save at hand relies on, oldest first; the last sound one of each file behind these.
    struct CCandidate
    {
        bool m_bLastSound;
        uint64_t m_nTime;
        std::string m_sHash;
        std::string m_sName;
        bool operator<(const CCandidate& other) const
        {
            return std::tie(m_bLastSound, m_nTime, m_sHash) <
                   std::tie(other.m_bLastSound, other.m_nTime, other.m_sHash);
        }
    };
    std::vector<CCandidate> candidates;
    for (const auto& [sOther, list] : m_Items)
    {
        const size_t nLastSound = FindLastSound(list);
        for (size_t i = 0; i < list.size(); ++i)
        {
            if (list[i].m_sName != sKeep && list[i].m_sName != m_sInUse)
                candidates.push_back({i == nLastSound, list[i].m_nTime, sOther, list[i].m_sName});
        }
    }
    std::sort(candidates.begin(), candidates.end());
    for (const CCandidate& candidate : candidates)
    {
        if (nTotal <= m_nMaxTotal)
            break;
        const std::vector<CItem>& list = m_Items[candidate.m_sHash];
        const auto found = std::find_if(list.begin(), list.end(),
                                        [&](const CItem& item) { return item.m_sName == candidate.m_sName; });
        nTotal -= Cost(found->m_nSize);
        Remove(candidate.m_sHash, static_cast<size_t>(found - list.begin()));
    }
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

std::optional<size_t> CBackupStore::ChooseSound(const std::string& sPath) const
{
    std::string sPresent;
    const bool bPresent = FileSize(sPath) > 0 && ReadWholeFile(sPath, sPresent, c_nMaxFile);
    std::optional<size_t> nEqual; // sound, and what the file holds
    std::optional<size_t> nUnknown;
    const std::vector<CEntry> entries = List(sPath);
    for (size_t i = 0; i < entries.size(); ++i)
    {
        std::string sContent;
        if (!ReadWholeFile(entries[i].m_sBackup, sContent, c_nMaxFile))
            continue;
        const bool bEqual = bPresent && sContent == sPresent;
        const std::optional<bool> bSound = Examine(sPath, sContent);
        if (bSound.value_or(false) && !bEqual)
            return i;
        if (bSound.value_or(false) && !nEqual)
            nEqual = i;
        if (!bSound && !bEqual && !nUnknown)
            nUnknown = i;
    }
    return nEqual ? nEqual : nUnknown;
}

std::vector<CBackupStore::CKeptFile> CBackupStore::ListAll() const
{
    std::vector<CKeptFile> files;
    for (const auto& [sHash, list] : Scan())
    {
        CKeptFile file;
        const bool bRead =
            ReadWholeFile(GetDirectory() + '/' + sHash + c_szOwnerSuffix, file.m_sPath, c_nMaxOwner);
        // A damaged owner file would send a recovery to the wrong place.
        if (!bRead || HashOf(file.m_sPath) != sHash)
            file.m_sPath.clear();
        for (auto item = list.rbegin(); item != list.rend(); ++item)
            file.m_Entries.push_back(
                {GetDirectory() + '/' + item->m_sName, item->m_nTime, item->m_nSize, item->m_bSound});
        files.push_back(std::move(file));
    }
    std::sort(files.begin(), files.end(),
              [](const CKeptFile& left, const CKeptFile& right) { return left.m_sPath < right.m_sPath; });
    return files;
}

bool CBackupStore::Recover(const std::string& sPath, size_t nIndex, std::string& sError)
{
    const std::vector<CEntry> entries = List(sPath);
    const std::string sName = DisplayPath(sPath);
    if (nIndex >= entries.size())
    {
        sError = entries.empty() ? "There is no backup copy of " + sName + "."
                                 : "There are only " + std::to_string(entries.size()) + " backup copies of " +
                                       sName + ".";
        return false;
    }
    std::string sContent;
    if (!ReadWholeFile(entries[nIndex].m_sBackup, sContent, c_nMaxFile))
    {
        sError = "The backup copy " + entries[nIndex].m_sBackup + " can't be read.";
        return false;
    }
    const CFileLock lock(sPath, ELock::eExclusive);
    if (!lock.IsHeld())
    {
        sError = lock.GetProblem();
        return false;
    }
    const unsigned nMode = FileMode(entries[nIndex].m_sBackup);
    // Killed in between, a later recovery must still find it.
    m_sInUse = entries[nIndex].m_sBackup.substr(entries[nIndex].m_sBackup.rfind('/') + 1);
    const bool bKept = FileSize(sPath) == 0 || !Keep(sPath).empty();
    m_sInUse.clear();
    if (!bKept)
    {
        sError = m_sLastProblem;
        return false;
    }
    if (!WriteFileSafely(sPath, sContent, nMode))
    {
        sError = "The file " + sName + " can't be written.";
        return false;
    }
    return true;
}
