#include <cstdio>
#include <functional>
#include <utility>

#include "batch/Batch.h"
#include "batch/CheckOutWatch.h"
#include "platform/Paths.h"
#include "platform/Profile.h"
#include "shared/sourcecontrol/BuiltInProviders.h"
#include "shared/sourcecontrol/ProviderLibraries.h"

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

// A relative name with a colon in it would pass for one with a drive, and no project is looked for above those.
std::string LibraryPath(const std::string& sFile)
{
    return sFile.find(':') != std::string::npos ? MakeFullPath(sFile) : sFile;
}

// The same providers as in the window, but with nobody to answer their questions.
void RegisterProviders(CProviderRegistry& registry, IPrompts& prompts,
                       std::function<std::string()> currentFile)
{
    RegisterBuiltInProviders(registry, {&prompts, nullptr, std::move(currentFile)});
    for (const std::string& sProblem : RegisterProviderLibraries(registry, GetProviderListFile()))
        std::fprintf(stderr, "source control: %s\n", sProblem.c_str());
}
} // namespace

CBatchSession::CBatchSession(const CBatchOptions& options)
    : m_Prompts(options.m_bCheckOut, options.m_bQuiet),
      m_pProfile(MakeMemoryProfile())
{
    if (options.m_bCheckOut)
    {
        RegisterProviders(m_Providers, m_Prompts,
                          [this] { return m_pApp ? m_pApp->m_sFileName : std::string(); });
        auto pWatch = std::make_unique<CCheckOutWatch>(m_Providers, m_Prompts);
        m_pCheckOuts = pWatch.get();
        m_pSourceControl = std::move(pWatch);
    }
    else
        m_pSourceControl = std::make_unique<CNoSourceControl>();
    m_pApp = std::make_unique<CEmberdeckApp>(CAppServices{m_Prompts, *m_pProfile, *m_pSourceControl});
    m_pApp->m_OnLoaded = TellFindings;
    m_pApp->Start();
}

CBatchSession::~CBatchSession()
{
    m_pApp.reset();
}

int CBatchSession::NumNotCheckedOut() const
{
    return m_pCheckOuts ? m_pCheckOuts->GetNumFailures() : 0;
}

bool CBatchSession::Open(const std::string& sFile, const CLoadRules& rules, bool bToSave)
{
    const std::string sPath = LibraryPath(sFile);
    if (!(bToSave ? m_pApp->OpenToSave(sPath.c_str()) : m_pApp->OpenEffectFile(sPath.c_str())) ||
        !MayGoOn(sFile, m_pApp->GetLoadReport(), rules))
        return false;
    m_pApp->AcceptDamage();
    return true;
}

bool CBatchSession::LocateProject(const std::string& sFile)
{
    return m_pApp->LocateProject(LibraryPath(sFile).c_str());
}

bool CBatchSession::OpenProject(const std::string& sFile)
{
    return LocateProject(sFile) && m_pApp->LoadProjectPlugin();
}
