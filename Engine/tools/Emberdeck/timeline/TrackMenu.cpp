#include "timeline/TrackMenu.h"

#include <utility>

#include "timeline/KeyInfoBar.h"
#include "timeline/TrackCommands.h"

namespace
{

std::string Label(const CTrackCommand& command, const CTrackMenuState& state)
{
    std::string sLabel = command.m_pszLabel;
    const size_t nPlace = sLabel.find("%s");
    if (nPlace != std::string::npos && state.m_pActivePrefab)
        sLabel.replace(nPlace, 2, DoubleAmpersands(state.m_pActivePrefab->GetDisplayName()));
    return sLabel;
}

CMenuEntry Popup(const char* pszLabel, ETrackPopup ePopup, const CTrackMenuState& state)
{
    CMenuEntry popup;
    popup.m_sLabel = pszLabel;
    for (const CTrackCommand& command : c_TrackCommands)
    {
        if (command.m_ePopup == ePopup && (state.*command.m_pfnOffered)())
            popup.m_Entries.push_back(CMenuEntry{Label(command, state), command.m_nID, {}});
    }
    return popup;
}

} // namespace

std::vector<CMenuEntry> BuildTrackMenu(const CTrackMenuState& state)
{
    std::vector<CMenuEntry> entries;
    if (state.m_pKey)
        entries.push_back(Popup("&Key", ETrackPopup::eKey, state));
    entries.push_back(Popup("&Track", ETrackPopup::eTrack, state));
    return entries;
}
