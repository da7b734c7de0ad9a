#include "app/Advice.h"
#include "app/EmberdeckApp.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsstrutils.h"

namespace
{

bool IsEffectFile(const std::string& sName)
{
    const int32_t nExtension = FindExtension(sName.c_str());
    if (nExtension < 0)
        return false;
    const char* pszExtension = sName.c_str() + nExtension;
    return QSStrIEquals(pszExtension, "Fx00a") || QSStrIEquals(pszExtension, "Fx00c");
}

// All effect files below a directory, in the order of its entries, those of a directory at its place.
// The walk is over before the first file is written, so that no save changes what it finds. False: the
// user stopped it.
bool CollectEffectFiles(const std::string& sDirectory, IPrompts& prompts, std::vector<std::string>& files,
                        std::vector<std::string>& unread)
{
    std::vector<CDirectoryEntry> entries;
    if (!ListDirectory(sDirectory, entries))
    {
        unread.push_back(sDirectory);
        return true;
    }
    if (!prompts.Progress("Looking for effect files", -1.0))
        return false;
    const bool bRoot = !sDirectory.empty() && IsSeparator(sDirectory.back());
    for (const CDirectoryEntry& entry : entries)
    {
        const std::string sPath = sDirectory + (bRoot ? "" : "/") + entry.m_sName;
        if (!entry.m_bDirectory)
        {
            if (IsEffectFile(entry.m_sName))
                files.push_back(sPath);
        }
        // A link could lead back up, and the walk would never end.
        else if (!entry.m_bLink && !CollectEffectFiles(sPath, prompts, files, unread))
            return false;
    }
    return true;
}

} // namespace

bool CEmberdeckApp::UpdateEffectsInDirectory(const char* pszDirectory)
{
    std::string sDirectory = pszDirectory ? pszDirectory : "";
    m_UnreadDirectories.clear();
    if (sDirectory.empty())
        return true;
    if (sDirectory.size() > 1 && IsSeparator(sDirectory.back()))
        sDirectory.pop_back();
    sDirectory = MakeFullPath(sDirectory);

    IPrompts& prompts = m_Services.m_Prompts;
    std::vector<std::string> files;
    if (!CollectEffectFiles(sDirectory, prompts, files, m_UnreadDirectories))
        return false;
    for (size_t i = 0; i < files.size(); ++i)
    {
        const double fDone = static_cast<double>(i) / static_cast<double>(files.size());
        if (!prompts.Progress("Updating " + files[i], fDone) || !UpdateEffectFile(files[i].c_str()))
            return false;
    }
    prompts.Progress("Updated " + std::to_string(files.size()) + " files", 1.0);
    return true;
}

// Saved as it was read, a file that isn't whole would look like one that is.
std::string CEmberdeckApp::WhyLeft() const
{
    if (m_LoadReport.IsDamaged() && !m_UpdateRules.m_bRepair)
        return DamageText(m_LoadReport);
    if (m_UpdateRules.m_bStrict && !m_LoadReport.Findings().empty())
        return "the loader found something in it";
    return std::string();
}

bool CEmberdeckApp::UpdateEffectFile(const char* pszPath)
{
    const std::string sPath = pszPath ? pszPath : "";
    bool bSaved = OpenToSave(pszPath);
    const std::string sWhy = bSaved ? WhyLeft() : std::string();
    if (!sWhy.empty() && m_OnLeft)
        m_OnLeft(sPath, sWhy);
    if (bSaved && m_UpdateRules.m_bRepair)
        AcceptDamage();
    bSaved = bSaved && sWhy.empty() && SaveEffectFile();
    m_pHold.reset(); // of a file that is left as it is
    if (m_OnUpdated)
        m_OnUpdated(sPath, bSaved);
    return true;
}
