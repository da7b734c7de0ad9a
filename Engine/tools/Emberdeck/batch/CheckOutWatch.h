#pragma once

#include <set>
#include <string>

#include "shared/sourcecontrol/SharedSourceControlMgr.h"

// Source control for a run that was told to check files out. The work goes on over a file that isn't, as in the
// window; but it is told in one line on standard error, once for each file, and counted, so that the run fails.
// A file that no version control system knows has nothing to be checked out.
class CCheckOutWatch final : public ISourceControl
{
public:
    // The prompts show that somebody waits; no message comes up through them.
    CCheckOutWatch(const CProviderRegistry& registry, IPrompts& prompts);

    int GetNumFailures() const { return static_cast<int>(m_Told.size()); }

    void SetChangeSetInfo(const std::string& sName, const std::string& sDescription) override;
    bool SetProject(const std::string& sProvider, const std::string& sDatabase) override;
    bool Connect() override { return m_Manager.Connect(); }
    void Disconnect() override { m_Manager.Disconnect(); }
    bool IsConnected() const override { return m_Manager.IsConnected(); }
    ESourceControlState SourceControlStateForFile(const char* szFile) override;
    bool CheckOut(const char* szFile, int nFlag) override;
    bool EnsureCheckedOut(const char* szFile, int nFlag) override;
    bool AddFile(const char* szFile) override { return m_Manager.AddFile(szFile); }
    bool Submit(const char* szFile) override { return m_Manager.Submit(szFile); }
    bool Undo(const char* szFile) override { return m_Manager.Undo(szFile); }
    bool GetLatest(const char* szFile) override { return m_Manager.GetLatest(szFile); }
    bool History(const char* szFile) override { return m_Manager.History(szFile); }

private:
    using COperation = bool (CSharedSourceControlMgr::*)(const char*, int);

    bool Watch(COperation operation, const char* szFile, int nFlag);
    bool IsCheckedOut(const char* szFile, bool bResult);
    std::string WhyNot(const char* szFile) const;
    std::string ProviderName() const;

    const CProviderRegistry& m_Registry;
    IPrompts& m_Prompts;
    CSharedSourceControlMgr m_Manager;
    std::string m_sProvider; // the project's words
    std::string m_sDatabase;
    std::string m_sHeard;        // what the provider said during the operation at hand
    std::string m_sNoConnection; // what it said when it couldn't connect: it isn't tried for each file again
    std::set<std::string> m_Told;
};
