#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/BackupStore.h"
#include "app/EditContext.h"
#include "app/History.h"
#include "app/Journal.h"
#include "changes/ChangeRecorder.h"
#include "formats/LoadReport.h"
#include "platform/CrashMark.h"
#include "platform/FileLock.h"
#include "platform/IProfile.h"
#include "shared/engine/ProjectLocator.h"
#include "shared/sourcecontrol/SourceControl.h"

// What the application is given by its front; all of it outlives the application.
struct CAppServices
{
    IPrompts& m_Prompts;
    IProfile& m_Profile;
    ISourceControl& m_SourceControl;
    IDocuments* m_pDocuments = nullptr;              // null: nothing is ever open
    IEditorHost* m_pHost = nullptr;                  // null: no prefab is ever active
    std::string m_sBackupDirectory = std::string();  // empty: in the user's state directory
    std::string m_sJournalDirectory = std::string(); // empty: no journal is written
};

// Which files an update leaves as they are, besides those that don't load.
struct CUpdateRules
{
    bool m_bRepair = false; // saves those, too, that are cut or in conflict
    bool m_bStrict = false; // leaves all that the loader found anything in; m_OnLoaded must be set
};

// Owns everything that outlives a window: the library, its trees, the plug-in, the project and the
// edit clipboard. One effect file at a time. Plain sequencing; every question goes to IPrompts.
class CEmberdeckApp
{
public:
    explicit CEmberdeckApp(const CAppServices& services);
    ~CEmberdeckApp();
    CEmberdeckApp(const CEmberdeckApp&) = delete;
    CEmberdeckApp& operator=(const CEmberdeckApp&) = delete;

    // Before the first file: names the program to source control, and turns the journal on.
    void Start();
    // The first file of a session: the one that was asked for, else the last one, else a new library. The
    // session goes on whatever came of it. While the plug-in loads a mark stands in the state directory; when
    // it is still there at the next start, that opens no last file, and says so, until one has been opened.
    void OpenFirstFile(const std::string& sAskedFor = std::string());

    // The library is replaced without a question. Each failure has shown its message and leaves the
    // state of NewEffectFile. pszPath may be m_sFileName's own text.
    void NewEffectFile();
    bool OpenEffectFile(const char* pszPath) { return Open(pszPath, false); }
    // The same for a save over the same file at once: until then, or until the library goes, no other program of this
    // kind can write it, and the save fails when somebody else has.
    bool OpenToSave(const char* pszPath) { return Open(pszPath, true); }
    bool OpenWithDialog();

    // What the last open found in its file.
    const CLoadReport& GetLoadReport() const { return m_LoadReport; }
    // A front that tells findings in its own way: hears of each load, with all repairs listed. Without it a box
    // tells of a file that is cut or in conflict, and of no other.
    std::function<void(const std::string& sFile, const CLoadReport& report)> m_OnLoaded;
    // The first save over a file that is cut or in conflict asks; not after this.
    void AcceptDamage() { m_sDamagedFile.clear(); }

    // Writes in place, after a copy of what is there has gone to the backups; when none can be made, through a
    // temporary file, so that a failure leaves the old content. False without a message when the user doesn't
    // want to save over a file that wasn't whole. Without a name it is SaveEffectFileAs, which is
    // false without a message when cancelled. After a failed save the name
    // stays, the new one too.
    bool SaveEffectFile();
    bool SaveEffectFileAs();
    // Where the last save put the copy of the old bytes; empty when there was nothing to keep, or when
    // no copy could be made (Backups().GetLastProblem() then says why).
    const std::string& GetLastBackup() const { return m_sLastBackup; }
    CBackupStore& Backups() { return m_Backups; }

    // Closes all views and empties model and trees, which have no root then. Plug-in, project and
    // clipboard stay; a key on the clipboard takes over what it inherits, since its prefab goes.
    void ClearAll();

    // The project of a file, into m_Project. A failure has shown its message and changes nothing.
    bool LocateProject(const char* pszPath);
    // The plug-in of m_Project in place of the present one. A library that may stand on that one is
    // given up (NewEffectFile) first. A failure has shown its message, and no plug-in is loaded then.
    bool LoadProjectPlugin();

    // Asks for a project's locator file and loads the plug-in that it names, so that a new library has types of
    // keys before it has a file. False: cancelled, or the failure has shown its message.
    bool ChooseProject();

    // The message of a file that can't be loaded, by whoever loads it.
    void TellLoadFailed(const std::string& sPath, const std::string& sError, const CLoadReport& report);
    // The same for a pack, by the name as it is shown.
    void TellPackFailed(const std::string& sPackName) noexcept;

    bool PackEffects();   // beside the effect file; without a name PackEffectsAs
    bool PackEffectsAs(); // false without a message, but for the library's own name
    // Packs to that file for that target, without a message. False for the library's own file, which stays.
    bool PackTo(const std::string& sPackName, const char* pszTarget = "PC") noexcept;
    bool SaveAndPack();
    void SavePackLaunch();
    void LaunchGame();   // doesn't wait, and reports in the status line alone
    void EditGameInfo(); // the game's command line
    // The name that PackEffects packs a file to.
    static std::string MakePackName(const std::string& sFileName);

    // Re-saves every effect file below a directory, which doesn't have to be there; links to
    // directories aren't followed. A file that can't be opened or saved has shown its message, and the
    // walk goes on. A file that the rules leave alone keeps its bytes. False: only when the walk had to stop, on request of IPrompts::Progress.
    bool UpdateEffectsInDirectory(const char* pszDirectory);
    bool UpdateEffectFile(const char* pszPath); // always true
    CUpdateRules m_UpdateRules;
    // Told of each file that an update leaves alone, and why.
    std::function<void(const std::string& sFile, const std::string& sWhy)> m_OnLeft;
    // Told of each file of an update when it is done: whether it has been saved.
    std::function<void(const std::string& sFile, bool bSaved)> m_OnUpdated;
    // The directories below which the last update could not look.
    const std::vector<std::string>& GetUnreadDirectories() const { return m_UnreadDirectories; }

    CSpell* NewEffect();         // adds it under the root and opens it; null when out of memory
    bool ConfirmExit();          // the exit question; false: stay
    void ConnectSourceControl(); // the Connect command: saves a library without a name first, if allowed

    CEditContext& Context() { return m_Context; }
    ISourceControl& SourceControl() { return m_Services.m_SourceControl; }
    IProfile& Profile() { return m_Services.m_Profile; }
    CHistory& History() { return m_History; }
    // Of the work since the last load or save. The profile may turn it off (see Start).
    CJournal& Journal() { return m_Journal; }
    void SetJournalOn(bool bOn); // and in the profile; off takes away what there is of one
    CJournalStore Journals() const { return CJournalStore(m_Services.m_sJournalDirectory); }

    // What every room works on. Destroyed in the order that the destructor gives: the plug-in before the model.
    std::string m_sFileName; // empty for a library that was never saved
    CProjectInfo m_Project;
    std::string m_sResourceRoot;
    CEffectModule m_EffectModule;
    CSpellMgr m_SpellMgr;
    CEffectTree m_EffectTree;
    CPrefabTree m_PrefabTree;
    CEditClipboard m_Clipboard;
    CEditHub m_Edits;

private:
    CApplyTarget ApplyTarget()
    {
        return {{m_SpellMgr, m_EffectTree, m_PrefabTree}, m_EffectModule, m_Edits, m_Owner};
    }
    bool IsOwnFile(const std::string& sPackName) const;
    void EmptyLibrary();
    void InsertRoots();
    bool Open(const char* pszPath, bool bHold);
    bool OpenNow(const std::string& sPath, bool bHold); // throws when memory is out
    bool WarnOfPluginThatEnded();
    bool LoadLibrary(const std::string& sPath, std::string& sError);
    bool SaveNow(std::string& sProblem);
    void TellReport(const std::string& sPath);
    bool MaySaveOver(const std::string& sPath);
    std::string WhyLeft() const; // by the rules of an update; empty: the file may be saved
    bool SaveTo(const std::string& sPath);
    void RememberFile(const std::string& sPath);
    void TellDone(const char* pszDone, const std::string& sPath); // in the status line
    void ReadHistorySize();
    void TurnJournalOn();
    void TellKept(std::string sText);        // in the status line, with what was kept of the work before
    std::string WhereOldContentLies() const; // for the user, after a save that failed

    CAppServices m_Services;
    CEditContext m_Context;
    CLibraryOwner m_Owner{m_Context};
    CChangeRecorder m_Recorder;
    CHistory m_History;
    CJournal m_Journal;
    CBackupStore m_Backups;
    std::string m_sLastBackup;
    CLoadReport m_LoadReport;
    std::unique_ptr<CFileHold> m_pHold; // the open file, when it is to be saved at once
    std::string m_sDamagedFile;         // the open file, while a save over it has to ask
    std::string m_sPackError;           // of the last pack, when the library had no place in a packed file
    std::unique_ptr<CCrashMark> m_pPluginMark; // null: this session hasn't begun with a file
    bool m_bStarting = false;                  // the first file is being opened
    std::vector<std::string> m_UnreadDirectories;
};
