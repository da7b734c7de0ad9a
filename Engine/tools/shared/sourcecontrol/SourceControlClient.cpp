#include "shared/sourcecontrol/SourceControlClient.h"

#include <vector>

#include "platform/Files.h"
#include "shared/sourcecontrol/TokenStringUtils.h"

namespace
{

using IProvider = ISourceControlProvider;

// The folders above a file, from the top, each with a separator at its end.
std::vector<std::string> FoldersAbove(const std::string& sPath)
{
    std::vector<std::string> names;
    TokenizeString(sPath.c_str(), names, "\\/");
    std::vector<std::string> folders;
    std::string sFolder;
    for (size_t i = 0; i + 1 < names.size(); ++i)
    {
        sFolder += names[i] + '\\';
        folders.push_back(sFolder);
    }
    return folders;
}

} // namespace

CSourceControlClient::CSourceControlClient(const CSourceControlServices& services, bool& bWorkWithout)
    : m_Services(services),
      m_bWorkWithout(bWorkWithout)
{
}

void CSourceControlClient::SetProvider(const CClassId& id, const std::string& sDatabase)
{
    m_ProviderClsid = id;
    m_sDatabase = sDatabase;
}

void CSourceControlClient::Disconnect()
{
    m_pProvider.reset();
    m_nFlags &= ~(c_nConnected | c_nChangeSets);
}

template <class TResult, class TOperation>
TResult CSourceControlClient::Guard(TResult onError, TOperation operation)
{
    if (m_bBusy)
        return onError;
    const CBusyScope busy(m_bBusy);
    try
    {
        return operation();
    }
    catch (const CSourceControlError& error)
    {
        TellFailure(error.Description());
        return onError;
    }
}

void CSourceControlClient::TellFailure(const std::string& sText) const
{
    if (m_Services.m_TellFailure && !sText.empty())
        m_Services.m_TellFailure(sText);
}

ISourceControlProvider& CSourceControlClient::Provider()
{
    if (!m_pProvider)
        throw CSourceControlError(c_nSourceControlNoPointer, std::string());
    return *m_pProvider;
}

bool CSourceControlClient::IsKnown(const std::string& sPath)
{
    bool bKnown = false;
    CheckStatus(Provider().IsKnown(sPath, bKnown));
    return bKnown;
}

std::string CSourceControlClient::LocalToDepot(const std::string& sPath)
{
    std::string sDepot;
    CheckStatus(Provider().LocalToDepot(sPath, sDepot));
    return sDepot;
}

int32_t CSourceControlClient::GetFileStatus(const std::string& sPath)
{
    if (!IsConnected())
        return 0;
    return Guard<int32_t>(0,
                          [&]() -> int32_t
                          {
                              if (!IsKnown(sPath))
                                  return -1;
                              uint32_t nStatus = 0;
                              CheckStatus(Provider().GetFileStatus(LocalToDepot(sPath), nStatus));
                              return static_cast<int32_t>(nStatus);
                          });
}

ESourceControlState CSourceControlClient::SourceControlStateForFile(const std::string& sPath)
{
    return StateFromStatus(GetFileStatus(sPath));
}

ESourceControlState CSourceControlClient::StateFromStatus(int32_t nStatus)
{
    // All bits are set in -1: it must not be read as a word of bits.
    if (nStatus == -1)
        return eSCState_NotControlled;
    const uint32_t nBits = static_cast<uint32_t>(nStatus);
    const ESourceControlState eBase =
        nBits & IProvider::c_nOpenHere ? eSCState_CheckedOut : eSCState_CheckedIn;
    if (nBits & IProvider::c_nShortCut)
        return eBase;
    if ((nBits & (IProvider::c_nPendingAdd | IProvider::c_nPendingDelete)) == 0)
    {
        if (nBits & IProvider::c_nOpen)
            return eSCState_CheckedOut;
        return nBits & IProvider::c_nBlocked ? eSCState_Blocked : eBase;
    }
    if (nBits & IProvider::c_nOpenHere)
        return eSCState_CheckedOut;
    return nBits & IProvider::c_nElsewhere ? eSCState_PendingElsewhere : eSCState_CheckedIn;
}

bool CSourceControlClient::CheckOut(const std::string& sPath, int nFlag)
{
    if (!IsConnected())
        return true;
    return Guard(false,
                 [&]
                 {
                     if (!IsKnown(sPath))
                         return false;
                     CheckStatus(Provider().CheckOutFile(LocalToDepot(sPath), std::string(), nFlag));
                     return true;
                 });
}

bool CSourceControlClient::EnsureCheckedOut(const std::string& sPath, int nFlag)
{
    if (!IsConnected())
        return true;
    const int32_t nStatus = GetFileStatus(sPath);
    if (nStatus == -1)
        return true;
    if (static_cast<uint32_t>(nStatus) & IProvider::c_nBlocked)
    {
        TellFailure(sPath + " can't be checked out: it is in conflict, or another holds a lock on it.");
        return false;
    }
    if (static_cast<uint32_t>(nStatus) & IProvider::c_nOpenHere)
        return true;
    return CheckOut(sPath, nFlag);
}

bool CSourceControlClient::AddFile(const std::string& sPath, int nFlag)
{
    if (!IsConnected())
        return true;
    if (!PathExists(sPath))
        return false;
    return Guard(false,
                 [&]
                 {
                     AddMissingFolders(sPath);
                     CheckStatus(Provider().AddFile(sPath, std::string(), nFlag));
                     return true;
                 });
}

// Below the first known folder only: what lies above it is the user's own.
void CSourceControlClient::AddMissingFolders(const std::string& sPath)
{
    const std::vector<std::string> folders = FoldersAbove(sPath);
    size_t i = 0;
    while (i < folders.size() && !IsKnown(folders[i]))
        ++i;
    for (++i; i < folders.size(); ++i)
    {
        if (!IsKnown(folders[i]))
            CheckStatus(Provider().AddFolder(LocalToDepot(folders[i - 1]), folders[i], std::string(), 0));
    }
}

bool CSourceControlClient::Submit(const std::string& sPath)
{
    if (!IsConnected())
        return true;
    return Guard(false,
                 [&]
                 {
                     SubmitPendingFolders(sPath);
                     CheckStatus(Provider().SubmitFile(LocalToDepot(sPath), std::string(), 0));
                     return true;
                 });
}

void CSourceControlClient::SubmitPendingFolders(const std::string& sPath)
{
    for (const std::string& sFolder : FoldersAbove(sPath))
    {
        if (!IsKnown(sFolder))
            continue;
        const std::string sDepot = LocalToDepot(sFolder);
        uint32_t nStatus = 0;
        CheckStatus(Provider().GetFileStatus(sDepot, nStatus));
        if (nStatus & IProvider::c_nPendingAdd)
            CheckStatus(Provider().SubmitFile(sDepot, std::string(), 0));
    }
}

bool CSourceControlClient::Undo(const std::string& sPath)
{
    return !IsConnected() ||
           Guard(false,
                 [&]
                 {
                     CheckStatus(Provider().RevertFile(LocalToDepot(sPath), std::string(), 0));
                     return true;
                 });
}

bool CSourceControlClient::GetLatest(const std::string& sPath, int nFlag)
{
    return !IsConnected() || Guard(false,
                                   [&]
                                   {
                                       CheckStatus(Provider().SyncFile(LocalToDepot(sPath), nFlag));
                                       return true;
                                   });
}

bool CSourceControlClient::History(const std::string& sPath)
{
    return !IsConnected() || Guard(false,
                                   [&]
                                   {
                                       CheckStatus(Provider().ShowHistory(LocalToDepot(sPath)));
                                       return true;
                                   });
}
