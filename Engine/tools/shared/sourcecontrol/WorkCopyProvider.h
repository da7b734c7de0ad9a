#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "shared/sourcecontrol/ClientProgram.h"
#include "shared/sourcecontrol/SourceControlFront.h"

// What providers have in common that work on a work copy on this machine through a client program. The
// database is a folder of the work copy. Where the project has named none, each file is worked on in the work
// copy that it lies in. A depot path is the file's one name on this machine, absolute and without links; that
// of a folder ends with a slash.
class CWorkCopyProvider : public ISourceControlProvider
{
public:
    // Fails, with a sentence that names it, when the client program isn't there.
    CSourceControlStatus Initialize(SourceControlWindow hWindow, int nFlag) override;
    // Where the project has named no folder, the work copy that the library lies in is meant, if there is
    // one; else the user is asked.
    CSourceControlStatus ChooseDatabase(std::string& sDatabase) override;
    CSourceControlStatus OpenDatabase(const std::string& sDatabase, int nFlag) override;
    // Of a file the description is asked for, unless sText has it already. What the user says of a folder
    // holds for everything below that is submitted with it.
    CSourceControlStatus SubmitFile(const std::string& sDepotPath, const std::string& sText,
                                    int nFlag) override;
    CSourceControlStatus LocalToDepot(const std::string& sLocalPath, std::string& sDepotPath) override;
    CSourceControlStatus GetCapabilities(uint32_t& nCapabilities) override;
    CSourceControlStatus ShowHistory(const std::string& sDepotPath) override;
    CSourceControlStatus SetActiveChangeSet(int nChangeSet) override;
    CSourceControlStatus CreateChangeSet(const std::string& sName, const std::string& sDescription,
                                         int nFlag) override;

    // These two leave this provider in the work copy that the file lies in, if there is one. Whether a file,
    // there already or not, lies in a work copy and isn't ignored there.
    bool Covers(const std::string& sFile);
    // Whether a file is under version control in that work copy.
    bool Keeps(const std::string& sFile);

    const std::string& Top() const { return m_WorkCopy.m_sTop; } // with a slash at its end; empty: none
    const char* SystemName() const { return m_pszSystem; }

protected:
    using CStatus = CSourceControlStatus;
    using CRun = CClientProgram::CRun;

    static constexpr size_t c_nMaxHistory = 1000;

    CWorkCopyProvider(const char* pszSystem, CClientProgram program, const CProviderHost& host);

    // Folders of a work copy, with a slash at their ends.
    struct CWorkCopy
    {
        std::string m_sTop;
        std::string m_sOwnFolder; // where the system keeps its own files for it, if the provider needs that
    };
    // The work copy that a folder lies in, as the client program tells it; its folders in any form.
    virtual CStatus FindWorkCopyOf(const std::string& sFolder, CWorkCopy& workCopy) = 0;
    virtual bool IsIgnored(const std::string&) const { return false; }
    // Whether there is something to send, with bAsk unset when the answer ends the submit as it is.
    virtual CStatus BeforeSubmit(const std::string& sDepotPath, bool& bAsk) = 0;
    virtual CStatus Commit(const std::string& sDepotPath, const std::string& sText) = 0;
    virtual CStatus ReadHistory(const std::string& sDepotPath, std::vector<CHistoryEntry>& entries) = 0;

    CRun Run(const std::vector<std::string>& arguments, const char* pszWhat,
             EPatience ePatience = EPatience::eLocal) const;
    CStatus Failure(const std::string& sText) const { return {c_nSourceControlFailed, sText}; }

    const std::string& OwnFolder() const { return m_WorkCopy.m_sOwnFolder; }
    bool IsInside(const std::string& sDepotPath) const
    {
        return !Top().empty() && sDepotPath.starts_with(Top());
    }
    // Where no folder was named: goes to the work copy of that file or folder, or to none. To be called first
    // by whatever gets a local path.
    void Follow(const std::string& sDepotPath);
    static bool IsFolder(const std::string& sDepotPath) { return sDepotPath.ends_with('/'); }
    // Empty for a path that has no place on this machine.
    static std::string DepotPath(const std::string& sLocalPath);
    static std::string FolderOf(const std::string& sDepotPath)
    {
        return sDepotPath.substr(0, sDepotPath.rfind('/') + 1);
    }

private:
    CStatus AskForText(const std::string& sDepotPath, std::string& sText);
    CStatus FindWorkCopy(const std::string& sDatabase, CWorkCopy& workCopy);

    const char* m_pszSystem;
    CClientProgram m_Program;
    CProviderHost m_Host;
    CWorkCopy m_WorkCopy;                        // the one that is worked in
    bool m_bUnnamed = false;                     // the database that was opened last had no name
    bool m_bFollow = false;                      // ... and the work copy of the file at hand is taken
    std::string m_sOffered;                      // the folder that was given for the missing name
    std::map<std::string, CWorkCopy> m_ByFolder; // those that were found while following
    std::string m_sWhyNot;                       // what was wrong with it
    std::string m_sSaidOfFolder;                 // a folder that was submitted last, and what was said of it
    std::string m_sFolderText;
};

// The lines of a text, without their ends; a last line without an end counts.
std::vector<std::string_view> SplitLines(std::string_view sText);
