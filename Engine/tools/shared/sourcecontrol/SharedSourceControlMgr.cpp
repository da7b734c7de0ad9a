#include "shared/sourcecontrol/SharedSourceControlMgr.h"

#include <new>

#include "qsassert.h"
#include "qsstrutils.h"

CSharedSourceControlMgr::CSharedSourceControlMgr(CSourceControlServices services)
    : m_Services(std::move(services))
{
}

CSharedSourceControlMgr& CSharedSourceControlMgr::Instance(const CSourceControlServices& services)
{
    static CSharedSourceControlMgr s_Instance(services);
    return s_Instance;
}

void CSharedSourceControlMgr::SetChangeSetInfo(const std::string& sName, const std::string& sDescription)
{
    m_sChangeSetName = sName;
    m_sChangeSetDesc = sDescription;
}

bool CSharedSourceControlMgr::SetProject(const std::string& sProvider, const std::string& sDatabase)
{
    const CClassId id = m_Services.m_pRegistry ? m_Services.m_pRegistry->IdFromText(sProvider)
                                               : CClassId::FromText(sProvider);
    if (IsConnected())
    {
        if (id == m_ProviderClsid && QSStrICmp(sDatabase.c_str(), m_sDatabase.c_str()) == 0)
            return true;
        Disconnect();
    }
    m_ProviderClsid = id;
    m_sDatabase = sDatabase;
    return true;
}

CSourceControlClient* CSharedSourceControlMgr::GetClient(bool bCalledFor)
{
    if (!m_pClient)
    {
        try
        {
            m_pClient = std::make_unique<CSourceControlClient>(m_Services, m_bWorkWithout);
        }
        catch (const std::bad_alloc&)
        {
            return nullptr;
        }
        m_bOwnsClient = true;
    }
    if (m_pClient->IsBusy())
        return nullptr;
    if (!m_pClient->IsConnected())
    {
        const bool bSelectProvider = m_ProviderClsid.IsZero();
        if (!bSelectProvider)
            m_pClient->SetProvider(m_ProviderClsid, m_sDatabase);
        m_pClient->Connect(m_sChangeSetName, m_sChangeSetDesc, bSelectProvider, 0, bCalledFor);
        DisconnectIfAsked();
    }
    return m_pClient.get();
}

bool CSharedSourceControlMgr::Connect()
{
    if (IsConnected())
        return true;
    m_bWorkWithout = false;
    GetClient();
    return IsConnected();
}

void CSharedSourceControlMgr::Disconnect()
{
    if (!m_pClient || !m_bOwnsClient)
        return;
    m_bDropSoon = m_pClient->IsBusy();
    if (m_bDropSoon)
        return;
    m_pClient->Disconnect();
    m_pClient.reset();
}

void CSharedSourceControlMgr::DisconnectIfAsked()
{
    if (m_bDropSoon)
        Disconnect();
}

bool CSharedSourceControlMgr::IsConnected() const
{
    return m_pClient && m_pClient->IsConnected();
}

ESourceControlState CSharedSourceControlMgr::SourceControlStateForFile(const char* szFile)
{
    QS_ASSERT(szFile);
    CSourceControlClient* pClient = szFile ? GetClient(false) : nullptr;
    const ESourceControlState eState =
        pClient ? pClient->SourceControlStateForFile(szFile) : eSCState_Unknown;
    DisconnectIfAsked();
    return eState;
}

template <class TOperation>
bool CSharedSourceControlMgr::OnFile(const char* szFile, TOperation operation, bool bCalledFor)
{
    CSourceControlClient* pClient = szFile ? GetClient(bCalledFor) : nullptr;
    const bool bResult = pClient && operation(*pClient, std::string(szFile));
    DisconnectIfAsked();
    return bResult;
}

bool CSharedSourceControlMgr::CheckOut(const char* szFile, int nFlag)
{
    return OnFile(szFile,
                  [=](auto& client, const std::string& sPath) { return client.CheckOut(sPath, nFlag); });
}

bool CSharedSourceControlMgr::EnsureCheckedOut(const char* szFile, int nFlag)
{
    return OnFile(
        szFile, [=](auto& client, const std::string& sPath) { return client.EnsureCheckedOut(sPath, nFlag); },
        false);
}

bool CSharedSourceControlMgr::AddFile(const char* szFile)
{
    return OnFile(szFile, [](auto& client, const std::string& sPath) { return client.AddFile(sPath, 0); });
}

bool CSharedSourceControlMgr::Submit(const char* szFile)
{
    return OnFile(szFile, [](auto& client, const std::string& sPath) { return client.Submit(sPath); });
}

bool CSharedSourceControlMgr::Undo(const char* szFile)
{
    return OnFile(szFile, [](auto& client, const std::string& sPath) { return client.Undo(sPath); });
}

bool CSharedSourceControlMgr::GetLatest(const char* szFile)
{
    return OnFile(szFile, [](auto& client, const std::string& sPath) { return client.GetLatest(sPath, 0); });
}

bool CSharedSourceControlMgr::History(const char* szFile)
{
    return OnFile(szFile, [](auto& client, const std::string& sPath) { return client.History(sPath); });
}
