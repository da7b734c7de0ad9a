#include "timeline/TrackMenu.h"

#include <algorithm>
#include <utility>

#include "app/StatusText.h"

bool CTrackMenuState::IsAllowed(EEnableRule eRule) const
{
    const bool bFree = m_bTrack && !m_pKey;
    const bool bSingle = m_pKey && m_nSelected == 1;
    switch (eRule)
    {
    case EEnableRule::eAlways:
        return true;
    case EEnableRule::eOnTrack:
        return m_bTrack;
    case EEnableRule::eOnFreeSpace:
        return bFree;
    case EEnableRule::eCanAddPrefab:
        return bFree && m_pActivePrefab;
    case EEnableRule::eCanPasteKey:
        return bFree && m_bKeyOnClipboard;
    case EEnableRule::eOnKey:
        return m_pKey;
    case EEnableRule::eKeyUnlinked:
        return m_pKey && !m_pKey->m_bMotionLinked;
    case EEnableRule::eKeyHasLinks:
        return m_pKey && (m_pKey->m_bMotionLinked || m_bLinkedTo);
    case EEnableRule::eOneKeySelected:
        return bSingle;
    case EEnableRule::eCanAssignPrefab:
        return bSingle && m_pActivePrefab && m_pActivePrefab->m_pTypeDesc == m_pKey->m_pTypeDesc;
    case EEnableRule::eCanEditKey:
        return bSingle && m_pKey->m_pTypeDesc;
    default:
        return false;
    }
}

namespace
{

// The active prefab's name is filled in.
CMenuEntry Entry(const CMenuItem& item, const CTrackMenuState& state)
{
    CMenuEntry entry = MakeMenuEntry(item);
    const size_t nPlace = entry.m_sLabel.find("%s");
    if (nPlace != std::string::npos && state.m_pActivePrefab)
        entry.m_sLabel.replace(nPlace, 2, DoubleAmpersands(state.m_pActivePrefab->GetDisplayName()));
    return entry;
}

std::vector<CMenuEntry> Offered(const CMenuTable& table, const CTrackMenuState& state)
{
    std::vector<CMenuEntry> entries;
    for (const CMenuItem& item : table)
    {
        const CCommand* pCommand = FindCommand(item.m_nID);
        CMenuEntry entry = Entry(item, state);
        if (item.m_pSubmenu)
        {
            entry.m_Entries = Offered(*item.m_pSubmenu, state);
            if (std::any_of(entry.m_Entries.begin(), entry.m_Entries.end(),
                            [](const CMenuEntry& inner) { return !inner.IsSeparator(); }))
                entries.push_back(std::move(entry));
        }
        else if (!pCommand || state.IsAllowed(pCommand->m_eRule))
            entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace

std::vector<CMenuEntry> BuildTrackMenu(const CTrackMenuState& state)
{
    return Offered(c_TimelineMenu, state);
}
