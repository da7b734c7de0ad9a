// Which copies make room for newer ones.

#include <algorithm>
#include <tuple>

#include "app/BackupNames.h"
#include "app/BackupStore.h"
#include "platform/Files.h"

namespace
{

constexpr uint64_t c_nSmallest = 4096; // what even a tiny copy takes of a disk

uint64_t Cost(uint64_t nSize)
{
    return std::max(nSize, c_nSmallest);
}

} // namespace

void CBackupStore::Remove(const std::string& sHash, size_t nIndex)
{
    const auto it = m_Items.find(sHash);
    const std::string sDirectory = GetDirectory();
    RemoveFile(sDirectory + '/' + it->second[nIndex].m_sName);
    it->second.erase(it->second.begin() + static_cast<std::ptrdiff_t>(nIndex));
    if (!it->second.empty())
        return;
    RemoveFile(sDirectory + '/' + OwnerFileName(sHash));
    m_Items.erase(it);
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
