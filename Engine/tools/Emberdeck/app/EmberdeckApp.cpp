#include "app/EmberdeckApp.h"

#include <algorithm>

#include "app/Advice.h"
#include "app/EffectEditor.h"
#include "app/Messages.h"
#include "app/StatusText.h"
#include "formats/EmberdeckQSA.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/FileProblem.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsnumber.h"

namespace
{

// Stand in where there is no front: nothing is open, and no prefab is active.
class CNoDocuments : public IDocuments
{
public:
    bool IsOpen(const CSpell*) const override { return false; }
    void Open(CSpell&) override {}
    void Close(const CSpell*) override {}
    void CloseAll() override {}
    void RetitleAll() override {}
};

class CNoHost : public IEditorHost
{
public:
    CEffectPropertySet* GetActivePrefab() override { return nullptr; }
    void OfferActivePrefab(CEffectPropertySet*) override {}
    void ClearActivePrefab() override {}
    bool EditProperties(CEffectPropertySet&) override { return false; }
    const CEffectTypeDesc* ChooseEffectType() override { return nullptr; }
    void ShowStatus(const std::string&) override {}
};

IDocuments& DocumentsOf(const CAppServices& services)
{
    static CNoDocuments s_None;
    return services.m_pDocuments ? *services.m_pDocuments : s_None;
}

IEditorHost& HostOf(const CAppServices& services)
{
    static CNoHost s_None;
    return services.m_pHost ? *services.m_pHost : s_None;
}

// Below the message that comes next. Without memory that stands alone.
template <class TAdvice>
void Advise(IPrompts& prompts, const TAdvice& advice)
{
    TryAllocating([&] { prompts.Advise(advice()); });
}

} // namespace

CEmberdeckApp::CEmberdeckApp(const CAppServices& services)
    : m_Services(services),
      m_Context{m_SpellMgr,      m_EffectModule, m_Clipboard,        m_EffectTree,     m_PrefabTree,
                m_sResourceRoot, m_Edits,        services.m_Prompts, HostOf(services), DocumentsOf(services)},
      m_Recorder(ApplyTarget()),
      m_History(ApplyTarget()),
      m_Journal({{m_SpellMgr, m_EffectTree, m_PrefabTree}, m_EffectModule, m_Project, m_Edits},
                CJournalStore(services.m_sJournalDirectory), [this] { return m_History.IsSaved(); }),
      m_Backups(services.m_sBackupDirectory, IsWholeEffectFile)
{
}

// The plug-in goes before the model. That is safe, since nothing that destroys a key, prefab or effect
// reads its type; and a plug-in that looks at its own tables while it goes still finds the rest standing.
CEmberdeckApp::~CEmberdeckApp()
{
    m_EffectModule.Unload();
    m_SpellMgr.Clear();
}

void CEmberdeckApp::Start()
{
    m_Services.m_SourceControl.SetChangeSetInfo("Emberdeck", "Change set created by Emberdeck");
    TryAllocating([this] { ReadHistorySize(); });
    if (!m_Services.m_sJournalDirectory.empty())
        TryAllocating([this] { TurnJournalOn(); });
}

void CEmberdeckApp::OpenFirstFile(const std::string& sAskedFor)
{
    const std::string sFile =
        sAskedFor.empty() ? m_Services.m_Profile.GetString("", c_szSettingLastFile) : MakeFullPath(sAskedFor);
    std::string sState = m_Backups.GetDirectory();
    RemoveLastComponent(sState);
    m_pPluginMark = std::make_unique<CCrashMark>(sState.empty() ? sState : sState + "/loading-plug-in");
    if (sFile.empty() || (sAskedFor.empty() && WarnOfPluginThatEnded()))
    {
        NewEffectFile();
        return;
    }
    m_bStarting = true;
    OpenEffectFile(sFile.c_str());
    m_bStarting = false;
}

// A plug-in that has ended the last start would end this one, too, and every one after it.
bool CEmberdeckApp::WarnOfPluginThatEnded()
{
    std::string sLeft;
    if (!m_pPluginMark->WasLeft(sLeft))
        return false;
    const size_t nEnd = std::min(sLeft.find('\0'), sLeft.size());
    const std::string sPlugin = sLeft.substr(0, nEnd);
    const std::string sFile = sLeft.substr(std::min(nEnd + 1, sLeft.size()));
    Advise(m_Services.m_Prompts, AdviseOnPluginThatEnded);
    ShowMessage(m_Services.m_Prompts, c_MsgPluginEndedLast, {DisplayPath(sPlugin), DisplayPath(sFile)});
    return true;
}

void CEmberdeckApp::InsertRoots()
{
    m_EffectTree.InsertGroup(c_szEffectRoot, {});
    m_PrefabTree.InsertGroup(c_szPrefabRoot, {});
}

// The library without its views. Runs within a scope that has touched the library.
void CEmberdeckApp::EmptyLibrary()
{
    m_Context.m_Host.ClearActivePrefab();
    m_Clipboard.FlattenKey();
    // Items before what they point to, so that whoever shows a tree never sees a dead pointer in it.
    m_EffectTree.DeleteAllItems();
    m_PrefabTree.DeleteAllItems();
    m_SpellMgr.Clear();
}

void CEmberdeckApp::ClearAll()
{
    CEditScope scope(m_Edits, "Clear");
    scope.TouchLibrary();
    m_pHold.reset();
    m_sDamagedFile.clear();
    m_Context.m_Documents.CloseAll();
    EmptyLibrary();
}

void CEmberdeckApp::NewEffectFile()
{
    CEditScope scope(m_Edits, "New");
    m_sFileName.clear();
    ClearAll();
    InsertRoots();
    m_Journal.Begin(CContentStamp());
    TryAllocating([this] { TellKept(std::string()); });
}

bool CEmberdeckApp::LocateProject(const char* pszPath)
{
    std::string sUnusable;
    if (FindAndLoadProject(pszPath, m_Project, &sUnusable))
        return true;
    const std::string sPath = pszPath ? pszPath : "";
    Advise(m_Services.m_Prompts, [&] { return AdviseOnMissingProject(sPath, sUnusable); });
    ShowMessage(m_Services.m_Prompts, c_MsgNoProject, {sPath, c_szProjectExtension});
    return false;
}

bool CEmberdeckApp::LoadProjectPlugin()
{
    // With the name gone too, a later save can't put an empty library over the file.
    // Without a plug-in there has been none that it could stand on.
    if (m_EffectModule.IsLoaded() && (!m_SpellMgr.Spells().empty() || !m_SpellMgr.Prefabs().empty()))
        NewEffectFile();

    m_History.Forget(); // an empty library, too, may have steps: of effects whose types go now
    m_Clipboard.FreezeForUnload();
    if (m_bStarting)
        m_pPluginMark->Set(m_Project.m_sFireglass + '\0' + m_sFileName);
    const bool bLoaded = m_EffectModule.Load(m_Project.m_sFireglass.c_str());
    if (m_bStarting)
        m_pPluginMark->Clear();
    if (!bLoaded)
    {
        // The clipboard stays frozen until a plug-in comes that may know its key.
        Advise(m_Services.m_Prompts, [this] { return AdviseOnPlugin(m_Project); });
        ShowMessage(m_Services.m_Prompts, c_MsgNoPlugin, {DisplayPath(m_Project.m_sFireglass)});
        return false;
    }
    m_Clipboard.Thaw(m_EffectModule);
    m_sResourceRoot = m_Project.m_sResourceRoot;
    return true;
}

bool CEmberdeckApp::ChooseProject()
{
    CFileDialogRequest request;
    request.m_bOpen = true;
    request.m_sInitialDirectory = GetCurrentDirectoryPath();
    request.m_sFilter = c_szProjectFilter;
    std::string sPath;
    if (!m_Services.m_Prompts.ChooseFile(request, sPath) || !LocateProject(sPath.c_str()))
        return false;
    m_Services.m_SourceControl.SetProject(m_Project.m_sProvider, m_Project.m_sDatabase);
    if (!LoadProjectPlugin())
        return false;
    m_Context.m_Host.ShowStatus("Project " + TellName(sPath) + ": " +
                                TellCount(m_EffectModule.GetNumTypes(), "type") + " of keys");
    return true;
}

// The library of a file in place of the empty one. On failure nothing of it is left.
bool CEmberdeckApp::LoadLibrary(const std::string& sPath, std::string& sError)
{
    {
        CEditScope scope(m_Edits, c_szOpenLabel);
        scope.TouchLibrary();
        m_LoadReport = CLoadReport(m_OnLoaded != nullptr);
        if (m_pHold && !m_pHold->IsHeld())
            sError = m_pHold->GetProblem();
        else if (LoadEffectLibrary(sPath.c_str(), m_SpellMgr, m_EffectModule, &m_EffectTree, &m_PrefabTree,
                                   sError, &m_Services.m_Prompts, &m_LoadReport))
            return true;
        ClearAll();
    }
    NewEffectFile(); // an edit of its own: the history begins with a new library, not with an opened one
    return false;
}

bool CEmberdeckApp::Open(const char* pszPath, bool bHold)
{
    bool bOpened = false;
    if (TryAllocating([&] { bOpened = OpenNow(pszPath ? pszPath : "", bHold); }))
        return bOpened;
    // Half a library must never be saved over a whole one.
    m_sFileName.clear();
    TryAllocating([this] { NewEffectFile(); });
    ShowFailure(m_Services.m_Prompts, c_MsgLoadFailed, pszPath, "Out of memory.");
    return false;
}

bool CEmberdeckApp::OpenNow(const std::string& sPath, bool bHold)
{
    IPrompts& prompts = m_Services.m_Prompts;
    m_sFileName = sPath;
    ClearAll();
    if (!LocateProject(sPath.c_str()))
    {
        NewEffectFile();
        return false;
    }

    m_Services.m_SourceControl.SetProject(m_Project.m_sProvider, m_Project.m_sDatabase);
    if (ShowMessage(prompts, c_MsgCheckOut, {sPath}) == EAnswer::eYes)
        m_Services.m_SourceControl.CheckOut(sPath.c_str(), 0);

    if (!LoadProjectPlugin())
    {
        NewEffectFile();
        return false;
    }
    std::string sError;
    const CContentStamp stamp(sPath); // before it is read: what comes later is another content
    if (bHold)                        // not before the check-out, which may put another file there
        m_pHold = std::make_unique<CFileHold>(sPath);
    if (!LoadLibrary(sPath, sError))
    {
        TellLoadFailed(sPath, sError, m_LoadReport);
        return false;
    }
    if (m_LoadReport.IsDamaged())
        m_sDamagedFile = sPath;
    m_Journal.Begin(stamp);
    RememberFile(sPath);
    if (m_pPluginMark)
        m_pPluginMark->Clear();
    TellDone("Opened", sPath);
    TellReport(sPath);
    return true;
}

void CEmberdeckApp::TellReport(const std::string& sPath)
{
    if (m_OnLoaded)
    {
        m_OnLoaded(sPath, m_LoadReport);
        return;
    }
    if (!m_LoadReport.IsDamaged())
        return;
    Advise(m_Services.m_Prompts,
           [&] { return AdviseOnDamage(m_LoadReport, !m_Backups.List(sPath).empty()); });
    ShowMessage(m_Services.m_Prompts, c_MsgDamaged, {sPath});
}

// The loss can't be seen any more in a file that is saved from what was left of it.
bool CEmberdeckApp::MaySaveOver(const std::string& sPath)
{
    if (m_sDamagedFile.empty() || (sPath != m_sDamagedFile && !IsSameFile(sPath, m_sDamagedFile)))
        return true;
    return ShowMessage(m_Services.m_Prompts, c_MsgSaveOverDamaged, {sPath}) == EAnswer::eYes;
}

void CEmberdeckApp::TellDone(const char* pszDone, const std::string& sPath)
{
    TryAllocating([&] { TellKept(TellFile(pszDone, sPath, m_SpellMgr.Spells().size())); });
}

void CEmberdeckApp::TellLoadFailed(const std::string& sPath, const std::string& sError,
                                   const CLoadReport& report)
{
    Advise(m_Services.m_Prompts,
           [&] { return AdviseOnLoading(sPath, m_Project, !m_Backups.List(sPath).empty(), report); });
    ShowMessage(m_Services.m_Prompts, c_MsgLoadFailed, {sPath, sError});
}

// A setting that can't be kept is no reason to take back what is done.
void CEmberdeckApp::RememberFile(const std::string& sPath)
{
    TryAllocating([&] { m_Services.m_Profile.WriteString("", c_szSettingLastFile, sPath); });
}

bool CEmberdeckApp::OpenWithDialog()
{
    CFileDialogRequest request;
    request.m_bOpen = true;
    request.m_sDefaultExtension = "Fx00c";
    request.m_sInitialName = "*.Fx00a;*.Fx00c";
    request.m_sInitialDirectory = GetCurrentDirectoryPath();
    request.m_sFilter = c_szEffectFilter;
    std::string sPath;
    return m_Services.m_Prompts.ChooseFile(request, sPath) && OpenEffectFile(sPath.c_str());
}

bool CEmberdeckApp::SaveEffectFile()
{
    if (m_sFileName.empty())
        return SaveEffectFileAs();

    bool bMaySave = false; // without memory for the question the save fails, and says so
    if (TryAllocating([this, &bMaySave] { bMaySave = MaySaveOver(std::string(m_sFileName)); }) && !bMaySave)
        return false;

    bool bSaved = false;
    std::string sProblem;
    TryAllocating([&] { bSaved = bMaySave && SaveNow(sProblem); });
    if (bSaved)
    {
        if (!m_sDamagedFile.empty() && IsSameFile(m_sFileName, m_sDamagedFile))
            AcceptDamage();
        m_History.MarkSaved();
        m_Journal.Begin(CContentStamp(m_sFileName));
        TellDone("Saved", m_sFileName);
    }
    if (!bSaved)
    {
        // Written in place, so the file may hold a part of it, or what was there before.
        if (bMaySave)
            m_History.MarkUnsaved();
        Advise(m_Services.m_Prompts,
               [&]
               {
                   if (!sProblem.empty())
                       return sProblem;
                   std::string sAdvice = WriteProblem(m_sFileName);
                   const std::string sOld = WhereOldContentLies();
                   return sAdvice + (sAdvice.empty() || sOld.empty() ? "" : "\n") + sOld;
               });
        ShowFailure(m_Services.m_Prompts, c_MsgSaveFailed, m_sFileName.c_str());
    }
    return bSaved;
}

// Throws when memory is out. sProblem says why nothing was tried; empty: the file couldn't be written.
bool CEmberdeckApp::SaveNow(std::string& sProblem)
{
    // A copy: the prompts of source control may run anything.
    const std::string sPath = m_sFileName;
    m_Services.m_SourceControl.EnsureCheckedOut(sPath.c_str(), 0);
    const std::unique_ptr<CFileHold> pHold = std::move(m_pHold);
    if (pHold && (pHold->GetPath() == sPath || IsSameFile(pHold->GetPath(), sPath)))
        sProblem = pHold->FindChange();
    if (!sProblem.empty())
        return false;
    const CFileLock lock(sPath, ELock::eExclusive, true);
    sProblem = lock.GetProblem();
    if (!lock.IsHeld())
        return false;
    m_sLastBackup = m_Backups.Keep(sPath);
    // A program that waited in vain for a lock on a file of its own making may just have taken it away.
    const bool bSaved = SaveTo(sPath) && PathExists(sPath);
    // Cut short, it would pass for a library. Where a link leads to, not the link.
    if (!bSaved && lock.IsNew())
        RemoveFile(ResolvedPath(sPath));
    if (bSaved)
        RememberFile(sPath);
    return bSaved;
}

std::string CEmberdeckApp::WhereOldContentLies() const
{
    if (!m_sLastBackup.empty())
        return QSFormat(
            "What the file held before lies in %s; \"emberdeck-batch recover FILE\" brings it back.",
            m_sLastBackup.c_str());
    if (!m_Backups.GetLastProblem().empty())
        return QSFormat("The file holds what it held before. No copy of that could be made: %s",
                        m_Backups.GetLastProblem().c_str());
    return std::string();
}

// In place. When no copy of the old bytes could be made, they stay until the new ones are on the disk.
bool CEmberdeckApp::SaveTo(const std::string& sPath)
{
    IPrompts* pPrompts = &m_Services.m_Prompts;
    if (m_Backups.GetLastProblem().empty())
        return SaveEffectLibrary(sPath.c_str(), m_EffectTree, m_PrefabTree, pPrompts);

    const std::string sTemporary = MakeTemporaryFile("emberdeck-save-");
    if (sTemporary.empty())
        return false;
    // The last letter decides the form.
    const std::string sNew = sTemporary + sPath.back();
    std::string sContent;
    const bool bWritten = SaveEffectLibrary(sNew.c_str(), m_EffectTree, m_PrefabTree, pPrompts) &&
                          ReadWholeFile(sNew, sContent) && WriteFileSafely(sPath, sContent);
    RemoveFile(sNew);
    RemoveFile(sTemporary);
    return bWritten;
}

bool CEmberdeckApp::SaveEffectFileAs()
{
    CFileDialogRequest request;
    request.m_bOpen = false;
    request.m_sDefaultExtension = "*.Fx00c";
    request.m_sInitialName = m_sFileName.empty() || !PathExists(m_sFileName) ? "*.Fx00c" : m_sFileName;
    request.m_sInitialDirectory = GetCurrentDirectoryPath();
    request.m_sFilter = c_szEffectFilter;
    std::string sPath;
    // An empty answer would bring the dialog up again, without an end.
    if (!m_Services.m_Prompts.ChooseFile(request, sPath) || sPath.empty())
        return false;
    const bool bOther = sPath != m_sFileName;
    m_sFileName = sPath;
    const bool bSaved = SaveEffectFile();
    if (!bSaved && bOther)
        m_History.MarkUnsaved(); // under this name nothing is
    return bSaved;
}

CSpell* CEmberdeckApp::NewEffect()
{
    CSpell* pSpell = m_EffectTree.GetItemData(CEffectEditor(m_Context).NewEffect({}));
    if (pSpell)
        m_Context.m_Documents.Open(*pSpell);
    return pSpell;
}

bool CEmberdeckApp::ConfirmExit()
{
    switch (ShowMessage(m_Services.m_Prompts, c_MsgSaveBeforeExit))
    {
    case EAnswer::eYes:
        SaveEffectFile(); // whatever it gives
        return true;
    case EAnswer::eNo:
        m_Journal.Leave();
        return true;
    default:
        return false;
    }
}

void CEmberdeckApp::ConnectSourceControl()
{
    if (m_sFileName.empty())
    {
        if (ShowMessage(m_Services.m_Prompts, c_MsgSaveBeforeConnect) != EAnswer::eYes || !SaveEffectFile())
            return;
    }
    // The save may have connected on its own.
    if (!m_Services.m_SourceControl.IsConnected())
        m_Services.m_SourceControl.Connect();
}
