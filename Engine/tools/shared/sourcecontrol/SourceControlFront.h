#pragma once

#include <functional>
#include <string>
#include <vector>

class IPrompts;

// One change of a file's history.
struct CHistoryEntry
{
    std::string m_sRevision;
    std::string m_sAuthor;
    std::string m_sDate;    // with the time, as the version control system writes it
    std::string m_sMessage; // may have several lines; no line end behind the last
};

// The windows that a source control provider opens from within its calls. Texts are UTF-8 where the system
// has them so; file names are bytes.
class ISourceControlFront
{
public:
    virtual ~ISourceControlFront() = default;

    // What a change of a file or folder is about, for all to read. sText is the suggestion and the answer,
    // in UTF-8. False: cancelled.
    virtual bool DescribeChange(const std::string& sPath, std::string& sText) = 0;
    // A folder on this machine that belongs to a work copy of the named system. sWhy tells what was wrong
    // with the present one. False: cancelled.
    virtual bool ChooseWorkCopy(const std::string& sSystem, const std::string& sWhy,
                                std::string& sFolder) = 0;
    // The newest change first. Comes back when the window is closed.
    virtual void ShowHistory(const std::string& sPath, const std::vector<CHistoryEntry>& entries) = 0;
};

// What a provider is given by the program; all of it outlives it and may be null.
struct CProviderHost
{
    IPrompts* m_pPrompts = nullptr;             // the wait sign, and the user's wish to stop. Null: neither
    ISourceControlFront* m_pFront = nullptr;    // null: nobody can be asked or shown anything
    std::function<std::string()> m_CurrentFile; // the library that is worked on; empty when it has no name
};
