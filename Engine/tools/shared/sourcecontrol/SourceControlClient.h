#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/IPrompts.h"
#include "shared/sourcecontrol/ProviderRegistry.h"
#include "shared/sourcecontrol/SourceControl.h"

// What source control is given by its front; all of it outlives the manager and its client.
struct CSourceControlServices
{
    const CProviderRegistry* m_pRegistry = nullptr; // null: no providers
    IPrompts* m_pPrompts = nullptr;                 // null: errors while connecting go to m_TellFailure
    // Makes the chooser of providers. Empty: CSilentLocator. A null result is an installation that is
    // broken, which the user is told.
    std::function<std::unique_ptr<ISourceControlLocator>()> m_MakeLocator;
    SourceControlWindow m_hWindow = nullptr;
    // Told what a provider says of an operation that failed, and why a connect came to nothing where no
    // message says so. For a log: the user sees the result alone. Empty: told to nobody.
    std::function<void(const std::string&)> m_TellFailure;
};

// Sets a mark for a scope, and takes it away whichever way the scope ends.
class CBusyScope
{
public:
    explicit CBusyScope(bool& bBusy) : m_bBusy(bBusy) { m_bBusy = true; }
    ~CBusyScope() { m_bBusy = false; }
    CBusyScope(const CBusyScope&) = delete;
    CBusyScope& operator=(const CBusyScope&) = delete;

private:
    bool& m_bBusy;
};

// Holds the connection to a provider and turns file operations into its calls. Dialogs come up only
// while connecting; an operation that fails on a provider's error tells it by its result alone.
class CSourceControlClient
{
public:
    // bWorkWithout is the user's choice to work without source control. It outlives the client and
    // answers the choice of a provider until somebody clears it, so that a project without provider
    // doesn't ask at each save.
    CSourceControlClient(const CSourceControlServices& services, bool& bWorkWithout);
    CSourceControlClient(const CSourceControlClient&) = delete;
    CSourceControlClient& operator=(const CSourceControlClient&) = delete;

    // Counts with the next Connect.
    void SetProvider(const CClassId& id, const std::string& sDatabase);

    // Drops an old connection first. bSelectProvider lets the user choose the provider. nInitFlag is for
    // the provider. bCalledFor: somebody wants the connection; it isn't only tried because a file is written.
    // True with no connection when there is no provider to connect to: look at IsConnected.
    bool Connect(const std::string& sChangeSetName, const std::string& sChangeSetDesc, bool bSelectProvider,
                 int nInitFlag, bool bCalledFor = true);
    void Disconnect();
    bool IsConnected() const { return (m_nFlags & c_nConnected) != 0; }
    // A dialog of a connect or of the provider may be up, whose events can lead back here: no time for
    // another operation, nor to destroy the client.
    bool IsBusy() const { return m_bBusy; }
    bool UsesChangeSets() const { return (m_nFlags & c_nChangeSets) != 0; }

    // The provider's status word; -1 for a file that it doesn't know; 0 without a connection and after an
    // error.
    int32_t GetFileStatus(const std::string& sPath);
    ESourceControlState SourceControlStateForFile(const std::string& sPath);
    static ESourceControlState StateFromStatus(int32_t nStatus);

    // Each of these is true without a connection, and false after a provider's error.
    bool CheckOut(const std::string& sPath, int nFlag);         // false for an unknown file
    bool EnsureCheckedOut(const std::string& sPath, int nFlag); // false for a blocked file
    bool AddFile(const std::string& sPath, int nFlag);          // with the folders above that are missing
    bool Submit(const std::string& sPath);                      // new folders above it first
    bool Undo(const std::string& sPath);
    bool GetLatest(const std::string& sPath, int nFlag);
    bool History(const std::string& sPath);

private:
    enum class EStep
    {
        eGoOn,
        eWithout,
        eFailed
    };

    bool RunConnect(bool bSelectProvider, int nInitFlag, bool bCalledFor);
    EStep ChooseProvider(bool bMayRemember, bool bCalledFor, std::string* pError = nullptr);
    EStep FindProvider(bool bSelectProvider, bool bCalledFor);
    EStep StartProvider(int nInitFlag);
    EStep AfterFailedStart(const CSourceControlError& error, bool& bRetried);
    bool OpenDatabase();
    void UseChangeSets();
    void ShowError(const std::string& sText);
    void TellFailure(const std::string& sText) const;
    // Runs an operation of the provider and turns its error into a result.
    template <class TResult, class TOperation>
    TResult Guard(TResult onError, TOperation operation);

    ISourceControlProvider& Provider();
    bool IsKnown(const std::string& sPath);
    std::string LocalToDepot(const std::string& sPath);
    void AddMissingFolders(const std::string& sPath);
    void SubmitPendingFolders(const std::string& sPath);

    static constexpr uint32_t c_nConnected = 1;
    static constexpr uint32_t c_nChangeSets = 2;

    uint32_t m_nFlags = 0;
    std::unique_ptr<ISourceControlLocator> m_pLocator; // kept once it is made
    std::unique_ptr<ISourceControlProvider> m_pProvider;
    CClassId m_ProviderClsid;
    std::string m_sDatabase;
    std::string m_sChangeSetName;
    std::string m_sChangeSetDesc;

    const CSourceControlServices& m_Services;
    bool& m_bWorkWithout;
    bool m_bBusy = false;
};
