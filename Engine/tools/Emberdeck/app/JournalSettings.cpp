#include "app/EmberdeckApp.h"
#include "app/Messages.h"
#include "model/MakeOrNull.h"
#include "qsnumber.h"

// What the application does about its journal, and the room that this and the history take.

namespace
{

// Bytes; the default for anything but whole megabytes from 1 on.
uint64_t ReadSize(const IProfile& profile, const char* pszSection, int nMost, uint64_t nDefault)
{
    int64_t nMegabytes = 0;
    const bool bSize = QSParseInt(profile.GetString(pszSection, c_szSettingMegabytes), nMegabytes) &&
                       nMegabytes > 0 && nMegabytes <= nMost;
    return bSize ? static_cast<uint64_t>(nMegabytes) << 20 : nDefault;
}

} // namespace

void CEmberdeckApp::ReadHistorySize()
{
    m_History.SetBudget(ReadSize(m_Services.m_Profile, c_szHistorySection, c_nMaxHistoryMegabytes,
                                 CHistory::c_nDefaultBudget));
}

void CEmberdeckApp::TurnJournalOn()
{
    m_Journal.m_OnProblem = [this](const std::string& sProblem) { m_Context.m_Host.ShowStatus(sProblem); };
    Journals().Prune();
    const IProfile& profile = m_Services.m_Profile;
    if (profile.GetString(c_szJournalSection, c_szSettingJournalKeep, "1") == "0")
        return;
    m_Journal.TurnOn(
        ReadSize(profile, c_szJournalSection, c_nMaxJournalMegabytes, CJournal::c_nDefaultMaxSize));
}

void CEmberdeckApp::SetJournalOn(bool bOn)
{
    TryAllocating(
        [&]
        {
            m_Services.m_Profile.WriteString(c_szJournalSection, c_szSettingJournalKeep, bOn ? "1" : "0");
            m_Journal.TurnOff();
            if (bOn)
                TurnJournalOn();
        });
}

void CEmberdeckApp::TellKept(std::string sText)
{
    const std::string sKept = m_Journal.TakeKept();
    if (!sKept.empty())
        sText += (sText.empty() ? "" : ". ") + sKept;
    if (!sText.empty())
        m_Context.m_Host.ShowStatus(sText);
}
