#pragma once

#include <memory>
#include <string>

#include "shared/sourcecontrol/SourceControl.h"
#include "shared/sourcecontrol/SourceControlClient.h"

// The one source control object of the process, which the file workflow calls. The connection is lazy:
// the first call that names a file makes it, and one that failed is tried again at each call.
class CSharedSourceControlMgr final : public ISourceControl
{
public:
    // Without services: no providers, nothing is asked, every file operation succeeds.
    explicit CSharedSourceControlMgr(CSourceControlServices services = {});
    CSharedSourceControlMgr(const CSharedSourceControlMgr&) = delete;
    CSharedSourceControlMgr& operator=(const CSharedSourceControlMgr&) = delete;

    // The single object, made on first use and destroyed at the end of the process. The services count
    // when given with the first call.
    static CSharedSourceControlMgr& Instance(const CSourceControlServices& services = {});

    // The main window for the next connect, when it is made behind the manager.
    void SetWindow(SourceControlWindow hWindow) { m_Services.m_hWindow = hWindow; }

    void SetChangeSetInfo(const std::string& sName, const std::string& sDescription) override;
    // Drops the connection, unless it is to the same provider and database.
    bool SetProject(const std::string& sProvider, const std::string& sDatabase) override;

    // The client, connected if that can be; null when none could be made, and while an operation runs
    // whose dialog has led back here. bCalledFor as with the client's Connect.
    CSourceControlClient* GetClient(bool bCalledFor = true);

    // The user's own wish to connect: asks again also when the choice was to work without. Whether the
    // connection stands.
    bool Connect() override;
    void Disconnect() override; // behind the operation that runs, if one does
    bool IsConnected() const override;

    // A null file is reported and gives eSCState_Unknown.
    ESourceControlState SourceControlStateForFile(const char* szFile) override;
    // A null file gives false.
    bool CheckOut(const char* szFile, int nFlag) override;
    bool EnsureCheckedOut(const char* szFile, int nFlag) override;
    bool AddFile(const char* szFile) override;
    bool Submit(const char* szFile) override;
    bool Undo(const char* szFile) override;
    bool GetLatest(const char* szFile) override;
    bool History(const char* szFile) override;

private:
    template <class TOperation>
    bool OnFile(const char* szFile, TOperation operation, bool bCalledFor = true);
    void DisconnectIfAsked();

    std::unique_ptr<CSourceControlClient> m_pClient; // null until first needed
    std::string m_sChangeSetName;
    std::string m_sChangeSetDesc;
    CClassId m_ProviderClsid; // the project's; all zero: none is known
    std::string m_sDatabase;
    bool m_bOwnsClient = false;

    CSourceControlServices m_Services;
    bool m_bDropSoon = false;    // Disconnect came in the middle of an operation
    bool m_bWorkWithout = false; // the user's choice, for the session
};
