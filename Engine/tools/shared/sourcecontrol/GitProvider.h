#pragma once

#include <set>

#include "shared/sourcecontrol/WorkCopyProvider.h"

// Git, through its client program. Files are committed one by one to the branch that is checked out; nothing
// is pushed. Git has no check-out of its own: it is a mark in the repository's own folder, which a submit or
// undo takes away; files with the attribute "lockable" are locked at the server besides.
class CGitProvider final : public CWorkCopyProvider
{
public:
    static constexpr CClassId c_Id{
        {0x6F, 0x0E, 0x3B, 0x52, 0x9C, 0x1D, 0x4A, 0x87, 0x8E, 0x35, 0x2B, 0x7D, 0x4C, 0x90, 0xA1, 0xF6}};

    explicit CGitProvider(const CProviderHost& host);

    CSourceControlStatus GetFileStatus(const std::string& sDepotPath, uint32_t& nStatus) override;
    // Brings the whole branch up to what its upstream has, when that takes no merge.
    CSourceControlStatus SyncFile(const std::string& sDepotPath, int nFlag) override;
    CSourceControlStatus CheckOutFile(const std::string& sDepotPath, const std::string& sText,
                                      int nFlag) override;
    CSourceControlStatus RevertFile(const std::string& sDepotPath, const std::string& sText,
                                    int nFlag) override;
    CSourceControlStatus AddFile(const std::string& sLocalPath, const std::string& sText, int nFlag) override;
    CSourceControlStatus AddFolder(const std::string& sParentDepotPath, const std::string& sLocalPath,
                                   const std::string& sText, int nFlag) override;
    CSourceControlStatus IsKnown(const std::string& sLocalPath, bool& bKnown) override;

private:
    // The two letters of a file that differs from the last commit (index, then disk); blank for the rest.
    struct CLetters
    {
        char m_cIndex = ' ';
        char m_cDisk = ' ';
        bool IsClean() const { return m_cIndex == ' ' && m_cDisk == ' '; }
        bool IsAdded() const { return m_cIndex == 'A' || m_cDisk == 'A'; }
        bool IsUnmerged() const;
    };

    CStatus FindWorkCopyOf(const std::string& sFolder, CWorkCopy& workCopy) override;
    bool IsIgnored(const std::string& sDepotPath) const override;
    CStatus BeforeSubmit(const std::string& sDepotPath, bool& bAsk) override;
    CStatus Commit(const std::string& sDepotPath, const std::string& sText) override;
    CStatus ReadHistory(const std::string& sDepotPath, std::vector<CHistoryEntry>& entries) override;

    // Runs at the top of the work copy.
    CRun Git(const std::vector<std::string>& arguments, const char* pszWhat,
             EPatience ePatience = EPatience::eLocal) const;
    CStatus ReadLetters(const std::string& sDepotPath, CLetters& letters) const;
    bool IsInRepositoryFolder(const std::string& sDepotPath) const
    {
        return sDepotPath.starts_with(OwnFolder());
    }
    std::vector<std::string> Identity() const;

    bool IsLockable(const std::string& sDepotPath) const;
    bool IsLockedByAnother(const std::string& sDepotPath) const;

    std::string MarkFile() const { return OwnFolder() + "emberdeck-checkouts"; }
    std::string BelowTop(const std::string& sDepotPath) const { return sDepotPath.substr(Top().size()); }
    std::set<std::string> ReadMarks() const;
    bool IsMarked(const std::string& sDepotPath) const { return ReadMarks().contains(BelowTop(sDepotPath)); }
    CStatus SetMark(const std::string& sDepotPath, bool bMark) const;
};
