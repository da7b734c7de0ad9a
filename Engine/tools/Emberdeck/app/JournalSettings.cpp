#include "app/EmberdeckApp.h"
#include "app/Messages.h"
#include "model/MakeOrNull.h"
#include "qsnumber.h"

// What the application does about its journal.

void CEmberdeckApp::TurnJournalOn()
{
    m_Journal.m_OnProblem = [this](const std::string& sProblem) { m_Context.m_Host.ShowStatus(sProblem); };
    Journals().Prune();
    const IProfile& profile = m_Services.m_Profile;
    if (profile.GetString(c_szJournalSection, c_szSettingJournalKeep, "1") == "0")
        return;
    int64_t nMegabytes = 0;
    const bool bSize =
        QSParseInt(profile.GetString(c_szJournalSection, c_szSettingJournalSize), nMegabytes) &&
        nMegabytes > 0 && nMegabytes <= c_nMaxJournalMegabytes;
    m_Journal.TurnOn(bSize ? static_cast<uint64_t>(nMegabytes) << 20 : CJournal::c_nDefaultMaxSize);
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
