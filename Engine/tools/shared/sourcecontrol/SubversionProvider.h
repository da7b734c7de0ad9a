#pragma once

#include <chrono>

#include "shared/sourcecontrol/WorkCopyProvider.h"

// Subversion, through its client program. A file with the property svn:needs-lock is checked out by locking
// it; others need no check-out. Names that aren't UTF-8 can't be kept there, and are unknown.
class CSubversionProvider final : public CWorkCopyProvider
{
public:
    static constexpr CClassId c_Id{
        {0xD8, 0x3A, 0x57, 0xC4, 0x0B, 0x6E, 0x4F, 0x19, 0xA2, 0xD7, 0x51, 0xE9, 0x8B, 0x3F, 0x6C, 0x20}};

    explicit CSubversionProvider(const CProviderHost& host);

    CSourceControlStatus GetFileStatus(const std::string& sDepotPath, uint32_t& nStatus) override;
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
    // The columns of the status of one item.
    struct CColumns
    {
        bool m_bKnown = false;
        char m_cItem = ' ';
        char m_cProperties = ' ';
        char m_cLock = ' '; // K: held here, O: by another, T: was held here and another has taken it
        char m_cTree = ' ';
        bool IsConflict() const { return m_cItem == 'C' || m_cProperties == 'C' || m_cTree == 'C'; }
        bool IsMissing() const { return m_cItem == '!'; }
        bool IsChanged() const { return m_cItem != ' ' || m_cProperties != ' '; }
    };

    CStatus FindWorkCopyOf(const std::string& sFolder, CWorkCopy& workCopy) override;
    CStatus BeforeSubmit(const std::string& sDepotPath, bool& bAsk) override;
    CStatus Commit(const std::string& sDepotPath, const std::string& sText) override;
    CStatus ReadHistory(const std::string& sDepotPath, std::vector<CHistoryEntry>& entries) override;

    CRun Svn(std::vector<std::string> arguments, const std::string& sDepotPath, const char* pszWhat,
             EPatience ePatience = EPatience::eLocal) const;
    CStatus ReadColumns(const std::string& sDepotPath, CColumns& columns) const;
    // Of an item that has to be under version control.
    CStatus ReadKnown(const std::string& sDepotPath, CColumns& columns) const;
    // The lock column as the server has it; that of the work copy when there is no answer.
    void AskServerForLock(const std::string& sDepotPath, CColumns& columns);
    bool NeedsLock(const std::string& sDepotPath) const;

    std::chrono::steady_clock::time_point
        m_AskAgain{}; // a server without an answer is left in peace till then
};
