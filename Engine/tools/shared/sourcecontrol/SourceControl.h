#pragma once

#include <cstdint>
#include <string>

// How a file stands with source control. The enable rules of the commands go by it.
enum ESourceControlState
{
    eSCState_Unknown = 0,          // there is no client
    eSCState_NotControlled = 1,    // nobody has added it
    eSCState_PendingElsewhere = 2, // another has it checked out
    eSCState_CheckedOut = 3,       // here; or it is to be added or removed with the next submit
    eSCState_CheckedIn = 4,
    eSCState_Blocked = 5, // another's lock, or a conflict: it can't be checked out
};

// What the file workflow asks of source control. A call that names a file connects first if it isn't
// connected; results of the file operations are advice, and the workflow goes on whatever they are. Paths are those of
// the library, in any form (platform/Paths.h); a null one gives false.
//
// Calls may take long, show dialogs of the provider, and run a message loop in them. A file operation shows no message
// when it fails. Where no connection comes about it gives true: there is nothing that it could do.
class ISourceControl
{
public:
    virtual ~ISourceControl() = default;
    // What a change set that is made from here is called. Before the first connection.
    virtual void SetChangeSetInfo(const std::string& sName, const std::string& sDescription) = 0;
    // The provider and its database, as the project names them; empty: the user is asked while connecting. Another one
    // of either, but for letter case, ends the connection. Always true.
    virtual bool SetProject(const std::string& sProvider, const std::string& sDatabase) = 0;
    virtual bool Connect() = 0; // false: there is no connection
    virtual void Disconnect() = 0;
    virtual bool IsConnected() const = 0; // doesn't connect
    virtual ESourceControlState SourceControlStateForFile(const char* szFile) = 0;
    // False: the file isn't known. The flags are the provider's own; the workflow gives 0.
    virtual bool CheckOut(const char* szFile, int nFlag) = 0;
    // The same before a file is written, unless it is checked out already or not controlled. False: blocked.
    virtual bool EnsureCheckedOut(const char* szFile, int nFlag) = 0;
    // With the folders above it that aren't known yet. False: the file isn't on the disk.
    virtual bool AddFile(const char* szFile) = 0;
    virtual bool Submit(const char* szFile) = 0; // with folders above it that were added
    virtual bool Undo(const char* szFile) = 0;   // the file's content is what was checked out
    virtual bool GetLatest(const char* szFile) = 0;
    virtual bool History(const char* szFile) = 0; // shows the provider's dialog
};
