#include "batch/CheckOutWatch.h"

#include <cstdio>

#include "platform/Paths.h"
#include "shared/sourcecontrol/BuiltInProviders.h"

namespace
{
// Several lines of a client program as one.
std::string Joined(const std::string& sText)
{
    std::string sOut;
    for (char c : sText)
    {
        const char cNext = static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        if (cNext != ' ' || (!sOut.empty() && sOut.back() != ' '))
            sOut += cNext;
    }
    return sOut;
}
} // namespace

CCheckOutWatch::CCheckOutWatch(const CProviderRegistry& registry, IPrompts& prompts)
    : m_Registry(registry),
      m_Prompts(prompts),
      m_Manager(
          [&]
          {
              CSourceControlServices services;
              services.m_pRegistry = &registry;
              services.m_TellFailure = [this](const std::string& sText)
              {
                  if (m_sHeard.find(sText) == std::string::npos)
                      m_sHeard += (m_sHeard.empty() ? "" : "; ") + sText;
              };
              return services;
          }())
{
}

void CCheckOutWatch::SetChangeSetInfo(const std::string& sName, const std::string& sDescription)
{
    m_Manager.SetChangeSetInfo(sName, sDescription);
}

bool CCheckOutWatch::SetProject(const std::string& sProvider, const std::string& sDatabase)
{
    if (sProvider != m_sProvider || sDatabase != m_sDatabase)
        m_sNoConnection.clear();
    m_sProvider = sProvider;
    m_sDatabase = sDatabase;
    return m_Manager.SetProject(sProvider, sDatabase);
}

ESourceControlState CCheckOutWatch::SourceControlStateForFile(const char* szFile)
{
    return m_Manager.SourceControlStateForFile(szFile);
}

bool CCheckOutWatch::CheckOut(const char* szFile, int nFlag)
{
    return Watch(&CSharedSourceControlMgr::CheckOut, szFile, nFlag);
}

bool CCheckOutWatch::EnsureCheckedOut(const char* szFile, int nFlag)
{
    return Watch(&CSharedSourceControlMgr::EnsureCheckedOut, szFile, nFlag);
}

bool CCheckOutWatch::Watch(COperation operation, const char* szFile, int nFlag)
{
    if (!szFile)
        return false;
    m_sHeard = m_sNoConnection;
    const bool bResult = m_sNoConnection.empty() && (m_Manager.*operation)(szFile, nFlag);
    // Where no folder is named, the next file may well lie in a work copy.
    if (!IsConnected() && !m_sDatabase.empty())
        m_sNoConnection = m_sHeard;
    if (IsCheckedOut(szFile, bResult))
        return true;
    const std::string sFile = DisplayPath(szFile);
    if (m_Told.insert(sFile).second)
        std::fprintf(stderr, "emberdeck-batch: %s is not checked out. %s\n", sFile.c_str(),
                     WhyNot(szFile).c_str());
    return false;
}

// Whether that is done which a check-out is for. The provider's result alone doesn't say so: it is also true
// without a connection, and for a file that a neighbouring work copy keeps.
bool CCheckOutWatch::IsCheckedOut(const char* szFile, bool bResult)
{
    if (!IsConnected())
        return false;
    const ESourceControlState eState = m_Manager.SourceControlStateForFile(szFile);
    if (eState == eSCState_Blocked)
        m_Manager.EnsureCheckedOut(szFile, 0); // says what blocks it
    if (eState != eSCState_NotControlled)
        return bResult && eState != eSCState_Blocked;
    const std::string sOther = FindWorkCopyThatKeeps(szFile, &m_Prompts);
    if (!sOther.empty())
        m_sHeard = "It belongs to " + sOther + ", which is not the one that the project names.";
    return sOther.empty();
}

std::string CCheckOutWatch::WhyNot(const char* szFile) const
{
    if (m_sProvider.empty())
        return "No source control: the proj00 file of the project names no Provider.";
    if (!m_Registry.IsRegistered(m_Registry.IdFromText(m_sProvider)))
        return ProviderName() + " source control: there is no provider of that name on this machine.";
    return ProviderName() + " source control: " +
           (m_sHeard.empty() ? std::string("no reason was given for ") + szFile : Joined(m_sHeard));
}

std::string CCheckOutWatch::ProviderName() const
{
    const CClassId id = m_Registry.IdFromText(m_sProvider);
    for (const CProviderRegistry::CEntry& entry : m_Registry.Entries())
    {
        if (entry.m_Id == id)
            return entry.m_sName;
    }
    return m_sProvider;
}
