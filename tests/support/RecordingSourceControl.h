#pragma once

#include <string>
#include <vector>

#include "shared/sourcecontrol/SourceControl.h"

// Writes down what the workflow asks of source control: "CheckOut PATH 0".
class CRecordingSourceControl : public ISourceControl
{
public:
    void SetChangeSetInfo(const std::string& sName, const std::string& sDescription) override
    {
        m_Calls.push_back("SetChangeSetInfo " + sName + "|" + sDescription);
    }
    bool SetProject(const std::string& sProvider, const std::string& sDatabase) override
    {
        m_Calls.push_back("SetProject " + sProvider + "|" + sDatabase);
        return true;
    }
    bool Connect() override
    {
        m_Calls.push_back("Connect");
        return m_bConnected = true;
    }
    void Disconnect() override { m_bConnected = false; }
    bool IsConnected() const override { return m_bConnected; }
    ESourceControlState SourceControlStateForFile(const char*) override { return m_eState; }
    bool CheckOut(const char* szFile, int nFlag) override { return Call("CheckOut", szFile, nFlag); }
    bool EnsureCheckedOut(const char* szFile, int nFlag) override
    {
        return Call("EnsureCheckedOut", szFile, nFlag);
    }
    bool AddFile(const char* szFile) override { return Call("AddFile", szFile, 0); }
    bool Submit(const char* szFile) override { return Call("Submit", szFile, 0); }
    bool Undo(const char* szFile) override { return Call("Undo", szFile, 0); }
    bool GetLatest(const char* szFile) override { return Call("GetLatest", szFile, 0); }
    bool History(const char* szFile) override { return Call("History", szFile, 0); }

    std::vector<std::string> m_Calls;
    bool m_bConnected = false;
    bool m_bResult = false; // of the file operations: advice, which nobody should follow
    ESourceControlState m_eState = eSCState_CheckedIn;

private:
    bool Call(const char* pszName, const char* szFile, int nFlag)
    {
        m_Calls.push_back(std::string(pszName) + " " + szFile + " " + std::to_string(nFlag));
        return m_bResult;
    }
};
