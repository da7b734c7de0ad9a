#include "shared/sourcecontrol/SourceControlClient.h"

namespace
{

constexpr const char* c_pszErrorTitle = "Source Control Error";
constexpr const char* c_pszConnectMessage =
    "Failed to connect to source control.\n\nSource control modules may not have been installed.  Please run "
    "'Harrowgate COM install.bat' to register the COM components required to run source control integration.";

} // namespace

bool CSourceControlClient::Connect(const std::string& sChangeSetName, const std::string& sChangeSetDesc,
                                   bool bSelectProvider, int nInitFlag, bool bCalledFor)
{
    if (m_bBusy)
        return false;
    const CBusyScope busy(m_bBusy);
    Disconnect();
    m_sChangeSetName = sChangeSetName;
    m_sChangeSetDesc = sChangeSetDesc;
    const bool bResult = RunConnect(bSelectProvider, nInitFlag, bCalledFor);
    if (!IsConnected())
        m_pProvider.reset();
    return bResult;
}

bool CSourceControlClient::RunConnect(bool bSelectProvider, int nInitFlag, bool bCalledFor)
{
    if (!m_pLocator)
        m_pLocator =
            m_Services.m_MakeLocator ? m_Services.m_MakeLocator() : std::make_unique<CSilentLocator>();
    if (!m_pLocator)
    {
        ShowError(std::string());
        return false;
    }
    EStep eStep = FindProvider(bSelectProvider, bCalledFor);
    if (eStep == EStep::eGoOn)
        eStep = StartProvider(nInitFlag);
    if (eStep != EStep::eGoOn)
        return eStep == EStep::eWithout;
    if (!OpenDatabase())
        return false;
    m_nFlags |= c_nConnected;
    UseChangeSets();
    return true;
}

// Lets the user choose. A choice to work without source control is remembered, and answers at once
// where bMayRemember allows it.
CSourceControlClient::EStep CSourceControlClient::ChooseProvider(bool bMayRemember, bool bCalledFor,
                                                                 std::string* pError)
{
    CClassId id;
    if (!bMayRemember || !m_bWorkWithout)
    {
        const CSourceControlStatus status = m_pLocator->SelectProvider(id, bCalledFor);
        if (status.Failed())
        {
            if (pError)
                *pError = status.m_sText;
            return EStep::eFailed;
        }
        m_bWorkWithout = id.IsZero() && status.m_nCode != c_nSourceControlUnasked;
    }
    m_ProviderClsid = id;
    return id.IsZero() ? EStep::eWithout : EStep::eGoOn;
}

CSourceControlClient::EStep CSourceControlClient::FindProvider(bool bSelectProvider, bool bCalledFor)
{
    if (bSelectProvider)
    {
        const EStep eStep = ChooseProvider(true, bCalledFor);
        if (eStep != EStep::eGoOn)
            return eStep;
    }
    if (m_ProviderClsid.IsZero())
        return EStep::eWithout;
    const auto isRegistered = [this]
    { return m_Services.m_pRegistry && m_Services.m_pRegistry->IsRegistered(m_ProviderClsid); };
    if (isRegistered())
        return EStep::eGoOn;
    const EStep eStep = ChooseProvider(true, true);
    if (eStep != EStep::eGoOn || isRegistered())
        return eStep;
    ShowError(std::string());
    return EStep::eFailed;
}

// Makes the provider and initializes it, with the user's choice of another one after a failure. Goes
// on as long as providers ask for another choice and the user makes one; any other error has one
// second try.
CSourceControlClient::EStep CSourceControlClient::StartProvider(int nInitFlag)
{
    bool bRetried = false;
    for (;;)
    {
        try
        {
            m_pProvider = m_Services.m_pRegistry ? m_Services.m_pRegistry->Make(m_ProviderClsid) : nullptr;
            if (!m_pProvider)
                throw CSourceControlError(c_nSourceControlNoClass, std::string());
            CheckStatus(m_pProvider->Initialize(m_Services.m_hWindow, nInitFlag));
            return EStep::eGoOn;
        }
        catch (const CSourceControlError& error)
        {
            m_pProvider.reset();
            const EStep eStep = AfterFailedStart(error, bRetried);
            if (eStep != EStep::eGoOn)
                return eStep;
        }
    }
}

CSourceControlClient::EStep CSourceControlClient::AfterFailedStart(const CSourceControlError& error,
                                                                   bool& bRetried)
{
    if (error.Code() == c_nSourceControlChooseAgain)
    {
        std::string sText;
        const EStep eStep = ChooseProvider(false, true, &sText);
        if (eStep == EStep::eFailed)
            ShowError(sText);
        return eStep;
    }
    ShowError(error.Description());
    if (bRetried)
        return EStep::eFailed;
    bRetried = true;
    return ChooseProvider(true, true);
}

bool CSourceControlClient::OpenDatabase()
{
    for (;;)
    {
        const CSourceControlStatus opened = m_pProvider->OpenDatabase(m_sDatabase, 0);
        if (!opened.Failed())
            return true;
        std::string sDatabase;
        if (m_pProvider->ChooseDatabase(sDatabase).Failed())
        {
            TellFailure(opened.m_sText);
            return false;
        }
        m_sDatabase = sDatabase;
    }
}

// Change sets are a convenience: the connection stands whatever comes of them.
void CSourceControlClient::UseChangeSets()
{
    uint32_t nCapabilities = 0;
    if (m_pProvider->GetCapabilities(nCapabilities).Failed() ||
        (nCapabilities & ISourceControlProvider::c_nCanChangeSets) == 0)
        return;
    if (m_sChangeSetName.empty() ||
        (!m_pProvider->CreateChangeSet(m_sChangeSetName, m_sChangeSetDesc, 1).Failed() &&
         !m_pProvider->SetActiveChangeSet(-1).Failed()))
        m_nFlags |= c_nChangeSets;
}

// Shows what an error says of itself, or what is most likely wrong. Where nothing can be shown it is told.
void CSourceControlClient::ShowError(const std::string& sText)
{
    const std::string sShown = sText.empty() ? c_pszConnectMessage : sText;
    if (m_Services.m_pPrompts)
        m_Services.m_pPrompts->Ask(sShown, c_pszErrorTitle, EButtons::eOk, EIcon::eStop);
    else
        TellFailure(sShown);
}
