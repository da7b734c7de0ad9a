#include "app/JournalStore.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <utility>

#include "app/StatusText.h"
#include "app/StoreNames.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/FileMode.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{

// A base comes before its journal.
constexpr std::chrono::hours c_OrphanLife(1);

// Whether a file's name is a stem with that ending.
bool IsNamed(std::string_view sName, std::string_view sSuffix)
{
    constexpr size_t nLength = c_nTimeDigits + 1 + c_nMarkDigits;
    return sName.size() == nLength + sSuffix.size() && sName.ends_with(sSuffix) &&
           sName.find_first_not_of("0123456789") == c_nTimeDigits && sName[c_nTimeDigits] == '-';
}

std::filesystem::file_time_type::duration AgeOf(const std::string& sFile)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(NativePath(sFile), error);
    return error ? std::filesystem::file_time_type::duration::zero()
                 : std::filesystem::file_time_type::clock::now() - time;
}

std::string FileOf(const std::string& sStem)
{
    const std::string sKept = sStem + c_szKeptSuffix;
    return FileExists(sKept) ? sKept : sStem + c_szJournalSuffix;
}

std::string LocalTime(std::time_t nSeconds, const char* pszForm)
{
    std::tm local = {};
    char szText[32] = "";
    if (localtime_r(&nSeconds, &local))
        std::strftime(szText, sizeof(szText), pszForm, &local);
    return szText;
}

} // namespace

std::string CJournalStore::GetDirectory() const
{
    if (!m_sDirectory.empty())
        return m_sDirectory;
    const std::string sState = GetStateDirectory();
    return sState.empty() ? std::string() : sState + "/emberdeck/journals";
}

std::string CJournalStore::MakeStem() const
{
    const std::string sDirectory = GetDirectory();
    // What a library holds is as private here as it is there.
    if (sDirectory.empty() || !MakeDirectories(sDirectory, 0700) || !MakePrivate(sDirectory))
        return std::string();
    return sDirectory + '/' + TimeDigits(NowNanoseconds()) + '-' + RandomMark();
}

bool CJournalStore::WriteBase(const std::string& sStem, const char* pszSuffix, const std::string& sText)
{
    std::vector<uint8_t> packed;
    if (!QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), packed))
        return false;
    const std::string sPacked(packed.begin(), packed.end());
    return WriteFileSafely(sStem + pszSuffix, sPacked, 0600);
}

bool CJournalStore::ReadBase(const std::string& sStem, const char* pszSuffix, const std::string& sHash,
                             std::string& sText)
{
    std::string sPacked;
    std::vector<uint8_t> text;
    if (!ReadOrdinaryFile(sStem + pszSuffix, sPacked, c_nMaxFile) ||
        !QSADecompress(reinterpret_cast<const uint8_t*>(sPacked.data()), sPacked.size(), text, c_nMaxFile))
        return false;
    sText.assign(text.begin(), text.end());
    return HashOf(sText) == sHash;
}

bool CJournalStore::Read(const std::string& sStem, std::string& sText, CJournalText& journal)
{
    return ReadOrdinaryFile(FileOf(sStem), sText, c_nMaxFile) && ReadJournalText(sText, journal);
}

std::vector<CJournalStore::CEntry> CJournalStore::List() const
{
    std::vector<CEntry> found;
    const std::string sDirectory = GetDirectory();
    std::vector<CDirectoryEntry> files;
    if (sDirectory.empty() || !ListDirectory(sDirectory, files))
        return found;
    for (const CDirectoryEntry& file : files)
    {
        const bool bKept = IsNamed(file.m_sName, c_szKeptSuffix);
        const std::string sFile = sDirectory + '/' + file.m_sName;
        if (file.m_bDirectory || file.m_bLink || (!bKept && !IsNamed(file.m_sName, c_szJournalSuffix)) ||
            CFileLock::IsInUse(sFile))
            continue;
        CEntry& entry = found.emplace_back();
        entry.m_sStem = sFile.substr(0, sFile.rfind('.'));
        entry.m_bKept = bKept;
        std::string sText;
        CJournalText journal;
        entry.m_bReadable = Read(entry.m_sStem, sText, journal);
        if (!entry.m_bReadable)
            continue;
        entry.m_bCut = journal.m_nWhole < sText.size();
        entry.m_Head = journal.m_Head;
        entry.m_nSteps = journal.m_Head.m_nStepsBefore + journal.m_Steps.size();
        const bool bSteps = !journal.m_Steps.empty();
        entry.m_nLastTime = bSteps ? journal.m_Steps.back().m_nTime : journal.m_Head.m_nLastTime;
        entry.m_sLastLabel = bSteps ? journal.m_Steps.back().m_sLabel : journal.m_Head.m_sLastLabel;
        entry.m_sLastEffect = bSteps ? journal.m_Steps.back().m_sEffect : journal.m_Head.m_sLastEffect;
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const CEntry& a, const CEntry& b) { return a.m_nLastTime > b.m_nLastTime; });
    return found;
}

std::vector<CJournalStore::CEntry> CJournalStore::List(const std::string& sPath) const
{
    std::vector<CEntry> entries = List();
    const std::string sOwner = OwnerOf(sPath);
    std::erase_if(entries, [&](const CEntry& entry) { return entry.m_Head.m_sLibrary != sOwner; });
    return entries;
}

bool CJournalStore::Keep(const std::string& sStem)
{
    std::error_code error;
    const std::string sKept = sStem + c_szKeptSuffix;
    if (!FileExists(sKept))
        std::filesystem::rename(NativePath(sStem + c_szJournalSuffix), sKept, error);
    if (!error)
        std::filesystem::last_write_time(sKept, std::filesystem::file_time_type::clock::now(), error);
    return !error;
}

void CJournalStore::Remove(const std::string& sStem)
{
    // The journal first: without it the others are nobody's.
    for (const char* pszSuffix : {c_szJournalSuffix, c_szKeptSuffix, c_szBaseSuffix, c_szOriginSuffix})
        RemoveFile(sStem + pszSuffix);
}

void CJournalStore::Prune() const
{
    const std::string sDirectory = GetDirectory();
    std::vector<CDirectoryEntry> files;
    if (sDirectory.empty() || !ListDirectory(sDirectory, files))
        return;
    std::vector<std::pair<decltype(AgeOf({})), std::string>> kept;
    for (const CDirectoryEntry& file : files)
    {
        const std::string sStem = sDirectory + '/' + file.m_sName.substr(0, file.m_sName.rfind('.'));
        const auto age = AgeOf(sDirectory + '/' + file.m_sName);
        if (IsNamed(file.m_sName, c_szKeptSuffix))
            kept.emplace_back(age, sStem);
        const bool bPart = IsNamed(file.m_sName, c_szBaseSuffix) || IsNamed(file.m_sName, c_szOriginSuffix);
        if (bPart && age > c_OrphanLife && !FileExists(FileOf(sStem)))
            RemoveFile(sDirectory + '/' + file.m_sName);
    }
    std::sort(kept.begin(), kept.end());
    uint64_t nTotal = 0;
    for (const auto& [age, sStem] : kept)
    {
        for (const char* pszSuffix : {c_szKeptSuffix, c_szBaseSuffix, c_szOriginSuffix})
            nTotal += FileSize(sStem + pszSuffix);
        const bool bOld = age > std::chrono::seconds(c_nKeptSeconds);
        if ((bOld || nTotal > c_nMaxKept) && !CFileLock::IsInUse(sStem + c_szKeptSuffix))
            Remove(sStem);
    }
}

std::string TellJournal(const CJournalStore::CEntry& entry)
{
    if (!entry.m_bReadable)
        return "A journal that can't be read";
    const auto nLast = static_cast<std::time_t>(entry.m_nLastTime / 1000000000u);
    const bool bToday = LocalTime(nLast, "%F") == LocalTime(std::time(nullptr), "%F");
    return TellCount(entry.m_nSteps, "change") + " to " +
           (entry.m_Head.m_sLibrary.empty() ? "a new library" : TellName(entry.m_Head.m_sLibrary)) +
           (entry.m_nSteps == 1 ? " at " : ", the last at ") +
           LocalTime(nLast, bToday ? "%H:%M" : "%Y-%m-%d %H:%M") + ": " + entry.m_sLastLabel +
           (entry.m_sLastEffect.empty() ? "" : " in ") + entry.m_sLastEffect;
}
