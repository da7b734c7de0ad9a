#pragma once

#include <cstdint>
#include <string>

enum ESourceControlState
{
    eSCState_Unknown = 0,
    eSCState_NotControlled = 1,
    eSCState_PendingElsewhere = 2,
    eSCState_CheckedOut = 3,
    eSCState_CheckedIn = 4,
    eSCState_Blocked = 5,
};

// What the file workflow asks of source control. A call that names a file connects first if it isn't
// connected; results of the file operations are advice, and the workflow goes on whatever they are.
class ISourceControl
{
public:
    virtual ~ISourceControl() = default;
    virtual void SetChangeSetInfo(const std::string& sName, const std::string& sDescription) = 0;
    virtual bool SetProject(const std::string& sProvider, const std::string& sDatabase) = 0; // always true
    virtual bool Connect() = 0;
    virtual void Disconnect() = 0;
    virtual bool IsConnected() const = 0; // doesn't connect
    virtual ESourceControlState SourceControlStateForFile(const char* szFile) = 0;
    virtual bool CheckOut(const char* szFile, int nFlag) = 0;
    virtual bool EnsureCheckedOut(const char* szFile, int nFlag) = 0;
    virtual bool AddFile(const char* szFile) = 0;
    virtual bool Submit(const char* szFile) = 0;
    virtual bool Undo(const char* szFile) = 0;
    virtual bool GetLatest(const char* szFile) = 0;
    virtual bool History(const char* szFile) = 0;
};
