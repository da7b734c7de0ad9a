#pragma once

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <optional>

#include "platform/Process.h"
#include "shared/sourcecontrol/BuiltInProviders.h"
#include "shared/sourcecontrol/SharedSourceControlMgr.h"
#include "support/ScriptedPrompts.h"
#include "support/TempDir.h"

// The windows of the providers, answered from lists.
class CScriptedFront : public ISourceControlFront
{
public:
    bool DescribeChange(const std::string& sPath, std::string& sText) override
    {
        m_Described.push_back(sPath);
        if (m_Descriptions.empty())
            return false;
        sText = m_Descriptions.front();
        m_Descriptions.pop_front();
        return true;
    }
    bool ChooseWorkCopy(const std::string&, const std::string& sWhy, std::string& sFolder) override
    {
        ++m_nFoldersAsked;
        m_sWhy = sWhy;
        sFolder = m_sFolder;
        return !m_sFolder.empty();
    }
    void ShowHistory(const std::string&, const std::vector<CHistoryEntry>& entries) override
    {
        m_History = entries;
    }

    std::deque<std::string> m_Descriptions; // none left: cancelled
    std::vector<std::string> m_Described;
    std::string m_sFolder; // empty: cancelled
    int m_nFoldersAsked = 0;
    std::string m_sWhy;
    std::vector<CHistoryEntry> m_History;
};

// Somebody who wants one sort of call to stop, once it has got so far that it has made a file. Sooner the program could be
// between making its own lock and keeping it in mind, and then leaves it, whoever stops it.
class CImpatientPrompts : public CScriptedPrompts
{
public:
    bool Progress(const std::string& sWhat, double) override
    {
        return sWhat != m_sStopAt || !std::filesystem::exists(m_sStopBehind);
    }
    std::string m_sStopAt;
    std::string m_sStopBehind;
};

// An environment variable for the time of a test; no value: unset.
class CVariable
{
public:
    CVariable(const char* pszName, const std::optional<std::string>& sValue) : m_pszName(pszName)
    {
        if (const char* pszOld = std::getenv(pszName))
            m_sOld = pszOld;
        Set(sValue);
    }
    ~CVariable() { Set(m_sOld); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;
    void Set(const std::optional<std::string>& sValue) const
    {
        sValue ? setenv(m_pszName, sValue->c_str(), 1) : unsetenv(m_pszName);
    }

private:
    const char* m_pszName;
    std::optional<std::string> m_sOld;
};

// A machine with a home of its own, on which a real provider works on a real repository.
class CWorkCopyBench : public testing::Test
{
protected:
    explicit CWorkCopyBench(const char* pszProvider) : m_sProvider(pszProvider)
    {
        RegisterBuiltInProviders(m_Registry, {&m_Prompts, &m_Front, [this] { return m_sCurrentFile; }});
        m_Services.m_pRegistry = &m_Registry;
        m_Services.m_pPrompts = &m_Prompts;
        m_Services.m_TellFailure = [this](const std::string& sText) { m_sTold = sText; };
        m_pMgr = std::make_unique<CSharedSourceControlMgr>(m_Services);
    }
    ~CWorkCopyBench() override { m_pMgr->Disconnect(); }

    // Runs a program that must succeed; gives what it prints.
    std::string Do(const std::string& sProgram, std::vector<std::string> arguments,
                   const std::string& sDir = "") const
    {
        const CProcessResult result =
            RunProcess(sProgram, arguments, sDir.empty() ? m_Dir.dir() : sDir, 60000);
        EXPECT_EQ(0, result.m_nExitCode) << sProgram << ' ' << arguments[0] << ": " << result.m_sErrors;
        return result.m_sOutput;
    }

    void Connect(const std::string& sFolder)
    {
        m_pMgr->SetProject(m_sProvider, sFolder);
        EXPECT_TRUE(m_pMgr->Connect()) << m_sTold;
    }
    int State(const std::string& sPath) const { return m_pMgr->SourceControlStateForFile(sPath.c_str()); }
    // The status word as the provider gives it; -1 for an unknown file.
    int Word(const std::string& sPath) const { return m_pMgr->GetClient()->GetFileStatus(sPath); }
    static bool IsWritable(const std::string& sPath)
    {
        const auto mode = std::filesystem::status(sPath).permissions();
        return (mode & std::filesystem::perms::owner_write) != std::filesystem::perms::none;
    }
    static void SetReadOnly(const std::string& sPath)
    {
        std::filesystem::permissions(sPath, std::filesystem::perms(0444));
    }
    // A path as the program has it.
    static std::string Backslashes(std::string sPath)
    {
        std::replace(sPath.begin(), sPath.end(), '/', '\\');
        return sPath;
    }
    // A program of the test's own, found before all others.
    void MakeProgram(const std::string& sName, const std::string& sText)
    {
        std::filesystem::permissions(m_Dir.write("bin/" + sName, "#!/bin/sh\n" + sText),
                                     std::filesystem::perms(0755));
        m_Path.Set(m_Dir.path("bin") + ":" + m_sOldPath);
    }

    CTempDir m_Dir;
    std::string m_sProvider;
    std::string m_sOldPath = std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin";
    CVariable m_Path{"PATH", m_sOldPath};
    CVariable m_Home{"HOME", m_Dir.dir()};
    CVariable m_Config{"GIT_CONFIG_GLOBAL", m_Dir.path("gitconfig")};
    CVariable m_System{"GIT_CONFIG_NOSYSTEM", "1"};
    CVariable m_XdgConfig{"XDG_CONFIG_HOME", m_Dir.path("config")};
    CVariable m_Mail{"EMAIL", std::nullopt};
    CImpatientPrompts m_Prompts;
    CScriptedFront m_Front;
    std::string m_sCurrentFile;
    CProviderRegistry m_Registry;
    CSourceControlServices m_Services;
    std::string m_sTold; // the last failure
    std::unique_ptr<CSharedSourceControlMgr> m_pMgr;
};
