#include <cstdio>

#include "app/BackupStore.h"
#include "batch/Batch.h"
#include "platform/Profile.h"
#include "shared/engine/SharedSourceControlMgr.h"

namespace
{
// Stands in where the command line asked for no check-out: a build must not wait for a server.
class CNoSourceControl : public ISourceControl
{
public:
    void SetChangeSetInfo(const std::string&, const std::string&) override {}
    bool SetProject(const std::string&, const std::string&) override { return true; }
    bool Connect() override { return true; }
    void Disconnect() override {}
    bool IsConnected() const override { return false; }
    ESourceControlState SourceControlStateForFile(const char*) override { return eSCState_Unknown; }
    bool CheckOut(const char*, int) override { return true; }
    bool EnsureCheckedOut(const char*, int) override { return true; }
    bool AddFile(const char*) override { return true; }
    bool Submit(const char*) override { return true; }
    bool Undo(const char*) override { return true; }
    bool GetLatest(const char*) override { return true; }
    bool History(const char*) override { return true; }
};
} // namespace

CBatchSession::CBatchSession(const CBatchOptions& options)
    : m_Prompts(options.m_bCheckOut, options.m_bQuiet), m_pProfile(MakeMemoryProfile())
{
    if (options.m_bCheckOut)
        m_pSourceControl = std::make_unique<CSharedSourceControlMgr>();
    else
        m_pSourceControl = std::make_unique<CNoSourceControl>();
    m_pApp = std::make_unique<CEmberdeckApp>(CAppServices{m_Prompts, *m_pProfile, *m_pSourceControl});
    m_pApp->Start();
}

CBatchSession::~CBatchSession() { m_pApp.reset(); }

bool CBatchSession::Open(const std::string& sFile) { return m_pApp->OpenEffectFile(sFile.c_str()); }

bool CBatchSession::OpenProject(const std::string& sFile)
{
    return m_pApp->LocateProject(sFile.c_str()) && m_pApp->LoadProjectPlugin();
}
