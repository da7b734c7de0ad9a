// Which copy is brought back, and how.

#include "app/BackupStore.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/FileMode.h"
#include "platform/Files.h"
#include "platform/Paths.h"

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
