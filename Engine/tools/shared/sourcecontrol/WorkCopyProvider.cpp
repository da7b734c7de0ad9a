#include "shared/sourcecontrol/WorkCopyProvider.h"

#include <algorithm>
#include <utility>

#include "platform/Files.h"
#include "platform/Paths.h"

std::vector<std::string_view> SplitLines(std::string_view sText)
{
    std::vector<std::string_view> lines;
    while (!sText.empty())
    {
        const size_t nEnd = std::min(sText.find('\n'), sText.size());
        lines.push_back(sText.substr(0, nEnd));
        sText.remove_prefix(std::min(nEnd + 1, sText.size()));
    }
    return lines;
}

CWorkCopyProvider::CWorkCopyProvider(const char* pszSystem, CClientProgram program, const CProviderHost& host)
    : m_pszSystem(pszSystem),
      m_Program(std::move(program)),
      m_Host(host)
{
}

CWorkCopyProvider::CRun CWorkCopyProvider::Run(const std::vector<std::string>& arguments, const char* pszWhat,
                                               EPatience ePatience) const
{
    return m_Program.Run(arguments, pszWhat, ePatience);
}

CSourceControlStatus CWorkCopyProvider::Initialize(SourceControlWindow, int)
{
    return Run({"--version"}, "Looking for the client program").m_Status;
}

CSourceControlStatus CWorkCopyProvider::ChooseDatabase(std::string& sDatabase)
{
    // Only once: the folder has a name, so that it counts as named should it not open.
    if (m_bUnnamed && m_Host.m_CurrentFile)
    {
        const std::string sFolder = FolderOf(DepotPath(m_Host.m_CurrentFile()));
        CWorkCopy found;
        if (!sFolder.empty() && !FindWorkCopyOf(sFolder, found).Failed())
        {
            sDatabase = m_sOffered = sFolder;
            return {};
        }
    }
    if (!m_Host.m_pFront || !m_Host.m_pFront->ChooseWorkCopy(m_pszSystem, m_sWhyNot, sDatabase))
        return {c_nSourceControlCancelled, std::string("No work copy of ") + m_pszSystem + " was chosen."};
    return {};
}

CSourceControlStatus CWorkCopyProvider::OpenDatabase(const std::string& sDatabase, int)
{
    CWorkCopy workCopy;
    const CStatus status = FindWorkCopy(sDatabase, workCopy);
    m_WorkCopy = workCopy;
    m_bUnnamed = sDatabase.empty();
    m_bFollow = !m_bUnnamed && sDatabase == m_sOffered;
    m_sOffered.clear();
    m_ByFolder.clear();
    m_sWhyNot = status.m_sText;
    return status;
}

bool CWorkCopyProvider::Covers(const std::string& sFile)
{
    const std::string sPath = DepotPath(sFile);
    return !sPath.empty() && !OpenDatabase(FolderOf(sPath), 0).Failed() && !IsIgnored(sPath);
}

bool CWorkCopyProvider::Keeps(const std::string& sFile)
{
    const std::string sPath = DepotPath(sFile);
    bool bKnown = false;
    return !sPath.empty() && !OpenDatabase(FolderOf(sPath), 0).Failed() && !IsKnown(sPath, bKnown).Failed() &&
           bKnown;
}

void CWorkCopyProvider::Follow(const std::string& sDepotPath)
{
    if (!m_bFollow || sDepotPath.empty())
        return;
    // A folder that isn't there yet will lie in the work copy of the one that is.
    std::string sFolder = FolderOf(sDepotPath);
    while (sFolder.size() > 1 && !DirectoryExists(sFolder))
        sFolder = FolderOf(sFolder.substr(0, sFolder.size() - 1));
    const auto it = m_ByFolder.find(sFolder);
    m_WorkCopy = it != m_ByFolder.end() ? it->second : CWorkCopy();
    if (it == m_ByFolder.end() && !FindWorkCopy(sFolder, m_WorkCopy).Failed())
        m_ByFolder[sFolder] = m_WorkCopy;
}

CSourceControlStatus CWorkCopyProvider::FindWorkCopy(const std::string& sDatabase, CWorkCopy& workCopy)
{
    if (sDatabase.empty())
        return Failure(std::string("No folder of a ") + m_pszSystem + " work copy is named.");
    const std::string sFolder = DepotPath(sDatabase + '/');
    if (!DirectoryExists(sFolder))
        return Failure("There is no folder " + DisplayPath(sDatabase) + '.');
    CWorkCopy found;
    CStatus status = FindWorkCopyOf(sFolder, found);
    if (status.Failed())
    {
        status.m_sText = sFolder + ": " + status.m_sText;
        return status;
    }
    const std::string sTop = DepotPath(found.m_sTop + '/');
    if (sTop.empty())
        return Failure(sFolder + " is in no work copy.");
    workCopy.m_sTop = sTop;
    workCopy.m_sOwnFolder = DepotPath(found.m_sOwnFolder.empty() ? std::string() : found.m_sOwnFolder + '/');
    return {};
}

// The folder part is resolved, and so is the file itself where it is a link: what is written goes to its
// target, and that is what a version control system sees change. Of what isn't there, whole folders
// perhaps, the part that is there is resolved.
std::string CWorkCopyProvider::DepotPath(const std::string& sLocalPath)
{
    if (sLocalPath.empty() || IsForeignPath(sLocalPath))
        return std::string();
    std::string sPath = NativePath(sLocalPath);
    if (sPath.empty())
        return std::string();
    if (sPath[0] != '/')
        sPath = GetCurrentDirectoryPath() + '/' + sPath;
    while (sPath.size() > 1 && sPath.back() == '/')
        sPath.pop_back();

    std::string sMissing;
    std::string sResolved = ResolvedPath(sPath);
    while (sResolved.empty())
    {
        const size_t nSlash = sPath.rfind('/');
        if (nSlash == 0 || nSlash == std::string::npos)
            return std::string();
        sMissing.insert(0, sPath.substr(nSlash));
        sPath.resize(nSlash);
        sResolved = ResolvedPath(sPath);
    }
    sResolved += sMissing;
    const bool bFolder = IsSeparator(sLocalPath.back()) || DirectoryExists(sResolved);
    if (bFolder && sResolved.back() != '/')
        sResolved += '/';
    return sResolved;
}

CSourceControlStatus CWorkCopyProvider::LocalToDepot(const std::string& sLocalPath, std::string& sDepotPath)
{
    sDepotPath = DepotPath(sLocalPath);
    if (sDepotPath.empty())
        return Failure("There is no place for " + sLocalPath + " on this machine.");
    Follow(sDepotPath);
    return Top().empty() ? Failure(sDepotPath + " is in no work copy.") : CStatus();
}

CSourceControlStatus CWorkCopyProvider::AskForText(const std::string& sDepotPath, std::string& sText)
{
    if (!m_sSaidOfFolder.empty() && sDepotPath.starts_with(m_sSaidOfFolder))
        sText = m_sFolderText;
    else if (!m_Host.m_pFront)
        return Failure("Nobody is there to describe the change.");
    else if (!m_Host.m_pFront->DescribeChange(sDepotPath, sText))
        return {c_nSourceControlCancelled, "Cancelled."};
    const bool bFolder = IsFolder(sDepotPath);
    m_sSaidOfFolder = bFolder ? sDepotPath : std::string();
    m_sFolderText = bFolder ? sText : std::string();
    return {};
}

CSourceControlStatus CWorkCopyProvider::SubmitFile(const std::string& sDepotPath, const std::string& sText,
                                                   int)
{
    bool bAsk = false;
    CStatus status = BeforeSubmit(sDepotPath, bAsk);
    if (status.Failed() || !bAsk)
        return status;
    std::string sSaid = sText;
    if (sSaid.empty())
        status = AskForText(sDepotPath, sSaid);
    return status.Failed() ? status : Commit(sDepotPath, sSaid);
}

CSourceControlStatus CWorkCopyProvider::ShowHistory(const std::string& sDepotPath)
{
    if (!m_Host.m_pFront)
        return Failure("There is no window to show a history in.");
    std::vector<CHistoryEntry> entries;
    const CStatus status = ReadHistory(sDepotPath, entries);
    if (!status.Failed())
        m_Host.m_pFront->ShowHistory(sDepotPath, entries);
    return status;
}

CSourceControlStatus CWorkCopyProvider::GetCapabilities(uint32_t& nCapabilities)
{
    nCapabilities = 0;
    return {};
}

CSourceControlStatus CWorkCopyProvider::SetActiveChangeSet(int)
{
    return Failure(std::string(m_pszSystem) + " has no change sets.");
}

CSourceControlStatus CWorkCopyProvider::CreateChangeSet(const std::string&, const std::string&, int)
{
    return Failure(std::string(m_pszSystem) + " has no change sets.");
}
