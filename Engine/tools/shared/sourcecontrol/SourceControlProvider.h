#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "shared/sourcecontrol/ClassId.h"

// What an operation of a provider or locator gives: a code, of which the highest bit means failure,
// and for a failure a sentence to show, which may be empty.
struct CSourceControlStatus
{
    uint32_t m_nCode = 0;
    std::string m_sText;

    bool Failed() const { return (m_nCode & 0x80000000u) != 0; }
};

constexpr uint32_t c_nSourceControlFailed = 0x80004005; // no further meaning
constexpr uint32_t c_nSourceControlNoPointer = 0x80004003;
constexpr uint32_t c_nSourceControlNoClass = 0x80040154;   // no such provider is registered
constexpr uint32_t c_nSourceControlCancelled = 0x800704C7; // by the user
constexpr uint32_t c_nSourceControlUnasked = 1; // a success: from SelectProvider, that nobody was asked
constexpr uint32_t c_nSourceControlChooseAgain =
    0x80040210; // from Initialize: choose another, without a message

// A failed operation on its way to the client, the only one that catches it.
class CSourceControlError
{
public:
    CSourceControlError(uint32_t nCode, std::string sDescription)
        : m_nCode(nCode),
          m_sDescription(std::move(sDescription))
    {
    }
    explicit CSourceControlError(const CSourceControlStatus& status)
        : CSourceControlError(status.m_nCode, status.m_sText)
    {
    }

    uint32_t Code() const { return m_nCode; }
    const std::string& Description() const { return m_sDescription; }

private:
    uint32_t m_nCode;
    std::string m_sDescription;
};

inline void CheckStatus(const CSourceControlStatus& status)
{
    if (status.Failed())
        throw CSourceControlError(status);
}

// The main window, for whoever opens dialogs; the engine only passes it on. A QWidget of the window
// program; null without a window.
using SourceControlWindow = void*;

// Lets the user choose a provider.
class ISourceControlLocator
{
public:
    virtual ~ISourceControlLocator() = default;

    // Success with all zero is the choice to work without source control. A failure means that nothing
    // was chosen. Every call asks, or a provider that keeps asking for another would never end; except that
    // without bCalledFor, where a file is only about to be written in a project that names no provider,
    // c_nSourceControlUnasked with all zero may say that there is nothing to choose from.
    virtual CSourceControlStatus SelectProvider(CClassId& id, bool bCalledFor) = 0;
};

// A connection to one version control system. Paths come with backslashes, those of folders with one
// at the end; only the provider turns them into what its system needs. A depot path is a name for a
// file that the provider made and gets back as it is. Dialogs run inside the calls.
class ISourceControlProvider
{
public:
    virtual ~ISourceControlProvider() = default;

    virtual CSourceControlStatus Initialize(SourceControlWindow hWindow, int nFlag) = 0;
    // Lets the user name a database. A failure means that none was named.
    virtual CSourceControlStatus ChooseDatabase(std::string& sDatabase) = 0;
    virtual CSourceControlStatus OpenDatabase(const std::string& sDatabase, int nFlag) = 0;

    // Bits of the status word, as the client reads them.
    static constexpr uint32_t c_nShortCut = 0x1;   // bit 0x2 alone decides
    static constexpr uint32_t c_nOpenHere = 0x2;   // open for edit on this client
    static constexpr uint32_t c_nElsewhere = 0x4;  // with one of the next two: pending elsewhere
    static constexpr uint32_t c_nPendingAdd = 0x8; // a folder with it is submitted before its files
    static constexpr uint32_t c_nPendingDelete = 0x10;
    static constexpr uint32_t c_nOpen = 0x10000;
    static constexpr uint32_t c_nBlocked = 0x20000; // can't be opened for edit
    virtual CSourceControlStatus GetFileStatus(const std::string& sDepotPath, uint32_t& nStatus) = 0;

    virtual CSourceControlStatus SyncFile(const std::string& sDepotPath, int nFlag) = 0;
    virtual CSourceControlStatus CheckOutFile(const std::string& sDepotPath, const std::string& sText,
                                              int nFlag) = 0;
    virtual CSourceControlStatus SubmitFile(const std::string& sDepotPath, const std::string& sText,
                                            int nFlag) = 0;
    virtual CSourceControlStatus RevertFile(const std::string& sDepotPath, const std::string& sText,
                                            int nFlag) = 0;
    virtual CSourceControlStatus AddFile(const std::string& sLocalPath, const std::string& sText,
                                         int nFlag) = 0;
    virtual CSourceControlStatus AddFolder(const std::string& sParentDepotPath, const std::string& sLocalPath,
                                           const std::string& sText, int nFlag) = 0;
    virtual CSourceControlStatus IsKnown(const std::string& sLocalPath, bool& bKnown) = 0;
    virtual CSourceControlStatus LocalToDepot(const std::string& sLocalPath, std::string& sDepotPath) = 0;

    static constexpr uint32_t c_nCanChangeSets = 0x100;
    virtual CSourceControlStatus GetCapabilities(uint32_t& nCapabilities) = 0;
    virtual CSourceControlStatus ShowHistory(const std::string& sDepotPath) = 0;
    virtual CSourceControlStatus SetActiveChangeSet(int nChangeSet) = 0; // -1: the one made last
    virtual CSourceControlStatus CreateChangeSet(const std::string& sName, const std::string& sDescription,
                                                 int nFlag) = 0;
};
