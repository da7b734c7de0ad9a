#include "timeline/TrackViewOptions.h"

namespace
{

constexpr const char* c_szSection = "Timeline";

} // namespace

CTrackViewOptions LoadTrackViewOptions(const IProfile& profile)
{
    CTrackViewOptions options = CTrackViewOptions::ForUsers();
    for (const CTrackViewSwitch& option : c_TrackViewSwitches)
    {
        const std::string sValue = profile.GetString(c_szSection, option.m_pszKey);
        if (sValue == "0" || sValue == "1")
            options.*option.m_pbOption = sValue == "1";
    }
    return options;
}

void SaveTrackViewOption(IProfile& profile, const CTrackViewSwitch& option, bool bOn)
{
    profile.WriteString(c_szSection, option.m_pszKey, bOn ? "1" : "0");
}
