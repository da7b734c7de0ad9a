#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "shared/sourcecontrol/SharedSourceControlMgr.h"
#include "support/ScriptedPrompts.h"

// A version control system that does as it is told and writes down each call. Two providers, ids A
// and B, are registered as "alpha" and "beta".
class CScriptedSourceControl
{
public:
    static constexpr CClassId c_A{{0xA}};
    static constexpr CClassId c_B{{0xB}};
    static constexpr CClassId c_Unregistered{{0xC}};

    CScriptedSourceControl()
    {
        m_Registry.Register(c_A, "alpha", [this] { return std::make_unique<CProvider>(*this, "A"); });
        m_Registry.Register(c_B, "Beta", [this] { return std::make_unique<CProvider>(*this, "B"); });
        m_Services.m_pRegistry = &m_Registry;
        m_Services.m_pPrompts = &m_Prompts;
        m_Services.m_MakeLocator = [this] { return std::make_unique<CLocator>(*this); };
    }
    ~CScriptedSourceControl() { EXPECT_EQ(0, m_nProviders) << "a provider is still held"; }

    // The next calls of an operation fail, in order; a code of 0 lets one pass.
    void Fail(const std::string& sOperation, uint32_t nCode, const std::string& sText = std::string())
    {
        m_Failures[sOperation].push_back({nCode, sText});
    }
    void Choose(const CClassId& id) { m_Choices.push_back({{}, id}); }
    // A locator that sees nothing to choose from, and says so where nobody has called for a choice.
    void ChooseUnasked() { m_Choices.push_back({{c_nSourceControlUnasked, ""}, {}}); }
    void CancelChoice(const std::string& sText)
    {
        m_Choices.push_back({{c_nSourceControlFailed, sText}, {}});
    }

    std::string TakeLog() { return std::exchange(m_sLog, std::string()); }

    CScriptedPrompts m_Prompts;
    CProviderRegistry m_Registry;
    CSourceControlServices m_Services;
    std::map<std::string, uint32_t> m_Files; // known paths and their status words
    std::string m_sChosenDatabase = "chosen";
    uint32_t m_nCapabilities = 0;
    int m_nProviders = 0;
    std::function<void(const std::string&)> m_OnCall; // in the middle of an operation, with its name

private:
    CSourceControlStatus Call(const std::string& sOperation, const std::string& sArguments = std::string())
    {
        m_sLog += sOperation + (sArguments.empty() ? "" : " " + sArguments) + "; ";
        if (m_OnCall)
            m_OnCall(sOperation);
        auto& failures = m_Failures[sOperation];
        CSourceControlStatus status;
        if (!failures.empty())
        {
            status = failures.front();
            failures.pop_front();
        }
        return status;
    }

    class CLocator final : public ISourceControlLocator
    {
    public:
        explicit CLocator(CScriptedSourceControl& world) : m_World(world) {}
        CSourceControlStatus SelectProvider(CClassId& id, bool bCalledFor) override
        {
            m_World.Call(bCalledFor ? "select" : "select-unasked");
            if (m_World.m_Choices.empty())
            {
                ADD_FAILURE() << "unexpected choice of a provider";
                return {c_nSourceControlFailed, ""};
            }
            const auto choice = m_World.m_Choices.front();
            m_World.m_Choices.pop_front();
            id = choice.second;
            return choice.first;
        }

    private:
        CScriptedSourceControl& m_World;
    };

    class CProvider final : public ISourceControlProvider
    {
    public:
        using CStatus = CSourceControlStatus;
        using CText = std::string;

        CProvider(CScriptedSourceControl& world, const char* pszName) : m_World(world), m_pszName(pszName)
        {
            ++m_World.m_nProviders;
        }
        ~CProvider() override { --m_World.m_nProviders; }

        CStatus Initialize(SourceControlWindow, int) override { return m_World.Call("init", m_pszName); }
        CStatus ChooseDatabase(CText& sDatabase) override
        {
            sDatabase = m_World.m_sChosenDatabase;
            return m_World.Call("choose-db");
        }
        CStatus OpenDatabase(const CText& sDatabase, int) override
        {
            return m_World.Call("open", '[' + sDatabase + ']');
        }
        CStatus GetFileStatus(const CText& sDepot, uint32_t& nStatus) override
        {
            nStatus = m_World.m_Files[sDepot.substr(1)];
            return m_World.Call("status", sDepot);
        }
        CStatus SyncFile(const CText& sDepot, int n) override
        {
            return m_World.Call("sync", sDepot + Flag(n));
        }
        CStatus CheckOutFile(const CText& sDepot, const CText& s, int n) override
        {
            return m_World.Call("check-out", sDepot + s + Flag(n));
        }
        CStatus SubmitFile(const CText& sDepot, const CText& s, int n) override
        {
            return m_World.Call("submit", sDepot + s + Flag(n));
        }
        CStatus RevertFile(const CText& sDepot, const CText& s, int n) override
        {
            return m_World.Call("revert", sDepot + s + Flag(n));
        }
        CStatus AddFile(const CText& sLocal, const CText& s, int n) override
        {
            return m_World.Call("add", sLocal + s + Flag(n));
        }
        CStatus AddFolder(const CText& sParent, const CText& sLocal, const CText& s, int n) override
        {
            m_World.m_Files[sLocal] = c_nPendingAdd | c_nOpenHere;
            return m_World.Call("add-folder", sParent + ' ' + sLocal + s + Flag(n));
        }
        CStatus IsKnown(const CText& sLocal, bool& bKnown) override
        {
            bKnown = m_World.m_Files.contains(sLocal);
            return m_World.Call("known", sLocal);
        }
        CStatus LocalToDepot(const CText& sLocal, CText& sDepot) override
        {
            sDepot = '@' + sLocal;
            return CStatus();
        }
        CStatus GetCapabilities(uint32_t& n) override
        {
            n = m_World.m_nCapabilities;
            return m_World.Call("caps");
        }
        CStatus ShowHistory(const CText& sDepot) override { return m_World.Call("history", sDepot); }
        CStatus SetActiveChangeSet(int n) override { return m_World.Call("activate", std::to_string(n)); }
        CStatus CreateChangeSet(const CText& sName, const CText& sDescription, int n) override
        {
            return m_World.Call("create", sName + ',' + sDescription + Flag(n));
        }

    private:
        static CText Flag(int n) { return '/' + std::to_string(n); }

        CScriptedSourceControl& m_World;
        const char* m_pszName;
    };

    std::string m_sLog;
    std::map<std::string, std::deque<CSourceControlStatus>> m_Failures;
    std::deque<std::pair<CSourceControlStatus, CClassId>> m_Choices;
};
