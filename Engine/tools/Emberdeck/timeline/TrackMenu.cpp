#include "timeline/TrackMenu.h"

#include <algorithm>

#include "app/StatusText.h"
#include "app/resources/Menus.h"

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
std::string Label(const CMenuItem& item, const CTrackMenuState& state)
{
    std::string sLabel = item.GetLabel();
    const size_t nPlace = sLabel.find("%s");
    if (nPlace != std::string::npos && state.m_pActivePrefab)
        sLabel.replace(nPlace, 2, DoubleAmpersands(state.m_pActivePrefab->GetDisplayName()));
    return sLabel;
}

std::vector<CMenuEntry> Offered(const CMenuTable& table, const CTrackMenuState& state)
{
    std::vector<CMenuEntry> entries;
    for (const CMenuItem& item : table)
    {
        const CCommand* pCommand = FindCommand(item.m_nID);
        if (item.m_pSubmenu)
        {
            CMenuEntry popup{Label(item, state), 0, Offered(*item.m_pSubmenu, state)};
            if (std::any_of(popup.m_Entries.begin(), popup.m_Entries.end(),
                            [](const CMenuEntry& entry) { return !entry.IsSeparator(); }))
                entries.push_back(std::move(popup));
        }
        else if (!pCommand || state.IsAllowed(pCommand->m_eRule))
            entries.push_back(CMenuEntry{Label(item, state), item.m_nID, {}});
    }
    return entries;
}

} // namespace

std::vector<CMenuEntry> BuildTrackMenu(const CTrackMenuState& state)
{
    return Offered(c_TimelineMenu, state);
}
