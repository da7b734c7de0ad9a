#include "app/Recovery.h"

#include "app/ContentStamp.h"
#include "app/StatusText.h"
#include "changes/Compare.h"
#include "changes/Merge.h"
#include "changes/Replay.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

std::string SentenceOf(const std::string& sWhy)
{
    return sWhy.empty() || sWhy.back() == '.' ? sWhy : sWhy + ".";
}

// A library of a base's text alone.
std::shared_ptr<const CLibraryImage> ImageOfBase(const CJournalStore::CEntry& entry, const char* pszSuffix,
                                                 const std::string& sHash, const CEffectModule& module)
{
    std::string sText, sWhy;
    CReplay replay(module);
    const bool bDone =
        CJournalStore::ReadBase(entry.m_sStem, pszSuffix, sHash, sText) && replay.Do(sText, sWhy);
    return bDone ? replay.MakeImage() : nullptr;
}

bool ReplayNow(const CJournalStore::CEntry& entry, const CEffectModule& module, CReplayedJournal& replayed)
{
    std::string sText, sBase, sWhy;
    CJournalText journal;
    if (!CJournalStore::Read(entry.m_sStem, sText, journal))
    {
        replayed.m_sProblem = "The journal can't be read.";
        return false;
    }
    if (!CJournalStore::ReadBase(entry.m_sStem, c_szBaseSuffix, journal.m_Head.m_sBase, sBase))
    {
        replayed.m_sProblem = "The library that the journal began with is missing or damaged.";
        return false;
    }
    CReplay replay(module);
    if (!replay.Do(sBase, sWhy))
    {
        replayed.m_sProblem = SentenceOf("The library that the journal began with can't be made: " + sWhy);
        return false;
    }
    if (journal.m_Head.m_nStepsBefore == 0)
        replayed.m_pOrigin = replay.MakeImage();
    else if (!journal.m_Head.m_sOrigin.empty())
        replayed.m_pOrigin = ImageOfBase(entry, c_szOriginSuffix, journal.m_Head.m_sOrigin, module);
    replayed.m_nSteps = journal.m_Head.m_nStepsBefore;
    for (const CJournalStep& step : journal.m_Steps)
    {
        if (!replay.Do(step.m_Change, sWhy))
        {
            replayed.m_sProblem = SentenceOf(step.m_sLabel + " can't be done: " + sWhy);
            break;
        }
        ++replayed.m_nSteps;
    }
    if (replayed.m_sProblem.empty() && journal.m_nWhole < sText.size())
        replayed.m_sProblem = "What stands behind that can't be read.";
    replayed.m_pNow = replay.MakeImage();
    return replayed.m_pNow != nullptr;
}

// A new library on the plug-in that the journal's stood on.
bool BeginNew(CEmberdeckApp& app, const CJournalHead& head)
{
    if (!head.m_sLocator.empty() && LocatorProblem(head.m_sLocator).empty())
    {
        if (!app.LocateProject(head.m_sLocator.c_str()))
            return false;
        app.SourceControl().SetProject(app.m_Project.m_sProvider, app.m_Project.m_sDatabase);
        if (!app.LoadProjectPlugin())
            return false;
    }
    app.NewEffectFile();
    return app.m_EffectModule.IsLoaded();
}

CLibraryParts PartsOf(CEmberdeckApp& app)
{
    return {app.m_SpellMgr, app.m_EffectTree, app.m_PrefabTree};
}

// Makes the application's library that of the picture, in one edit. Empty: done.
std::string MakeIt(CEmberdeckApp& app, const CLibraryImage& image, const std::string& sLabel)
{
    CImageMaker maker;
    const auto pNow = CLibraryImage::Make(PartsOf(app), maker);
    const CLibraryChange change = Compare(*pNow, *Align(*pNow, image));
    CLibraryOwner owner(app.Context());
    const auto conflict = Apply(change, {PartsOf(app), app.m_EffectModule, app.m_Edits, owner}, sLabel);
    return conflict ? conflict->m_sWhy : std::string();
}

// Whether a file holds what the picture would be saved as: a program was killed between its save and its journal's end.
bool IsSavedIn(const CLibraryImage& image, const std::string& sFile)
{
    const std::string sTemporary = MakeTemporaryFile("emberdeck-recover-");
    const std::string sSaved = sTemporary + sFile.back(); // the last letter decides the form
    std::string sBytes, sThere;
    const bool bSame = !sTemporary.empty() && SaveLibraryImage(sSaved.c_str(), image) &&
                       ReadWholeFile(sSaved, sBytes) && ReadWholeFile(sFile, sThere, sBytes.size()) &&
                       sBytes == sThere;
    RemoveFile(sSaved);
    RemoveFile(sTemporary);
    return bSame;
}

// One journal on its way back.
class CBringing
{
public:
    CBringing(CEmberdeckApp& app, const CJournalStore::CEntry& entry)
        : m_App(app),
          m_Head(entry.m_Head),
          m_sFile(entry.m_Head.m_sLibrary)
    {
        m_bThere = !m_sFile.empty() && PathExists(m_sFile);
        m_bOpen = m_bThere && !app.m_sFileName.empty() && IsSameFile(app.m_sFileName, m_sFile);
    }

    CBroughtBack Run(const CJournalStore::CEntry& entry)
    {
        // Before it is opened, which may check it out.
        CContentStamp stamp(m_sFile, m_Head.m_nSize, m_Head.m_sHash);
        const bool bSame = m_bThere && stamp.Look() == CContentStamp::EState::eSame &&
                           (!m_bOpen || (m_App.History().IsSaved() && !m_App.History().CanUndo()));
        if (m_bThere && !m_bOpen && !m_App.OpenEffectFile(m_sFile.c_str()))
            return Fail("The file can't be opened.");
        if (!m_bThere && !BeginNew(m_App, m_Head))
            return Fail("The plug-in of its project can't be loaded.");
        if (!ReplayJournal(entry, m_App.m_EffectModule, m_Replayed))
            return Fail(m_Replayed.m_sProblem);
        if (bSame || !m_bThere)
            return Make(*m_Replayed.m_pNow, !m_bThere);
        if (!m_bOpen && m_Replayed.m_sProblem.empty() && IsSavedIn(*m_Replayed.m_pNow, m_sFile))
        {
            m_Result.m_bDone = m_Result.m_bWhole = true;
            m_Result.m_nSteps = m_Replayed.m_nSteps;
            m_Result.m_sText = TellName(m_sFile) + " holds them already.";
            return m_Result;
        }
        if (m_Replayed.m_pOrigin)
            return MergeThem();
        return BeginNew(m_App, m_Head) ? Make(*m_Replayed.m_pNow, true)
                                       : Fail("The plug-in of its project can't be loaded.");
    }

private:
    // Onto what has become of the file meanwhile.
    CBroughtBack MergeThem()
    {
        CImageMaker maker;
        const CLibraryImage& base = *m_Replayed.m_pOrigin;
        const auto pMine = Align(base, *m_Replayed.m_pNow);
        const auto pTheirs = Align(base, *CLibraryImage::Make(PartsOf(m_App), maker));
        const CMerged merged = Merge(base, *pMine, *pTheirs);
        if (!merged.m_pImage)
            return Fail("Out of memory.");
        Make(*merged.m_pImage, false);
        if (!m_Result.m_bDone)
            return m_Result;
        for (const CMergeConflict& conflict : merged.m_Conflicts)
            m_Result.m_Conflicts.push_back(Tell(conflict));
        m_Result.m_sText += " They are merged into " + TellName(m_sFile) + ", which has been changed since";
        m_Result.m_sText += m_Result.m_Conflicts.empty()
                                ? "."
                                : "; both sides changed " + TellCount(m_Result.m_Conflicts.size(), "thing") +
                                      ", where yours stands.";
        return m_Result;
    }

    CBroughtBack Fail(const std::string& sWhy)
    {
        m_Result.m_sText = sWhy;
        return m_Result;
    }

    CBroughtBack Make(const CLibraryImage& image, bool bRenamed)
    {
        const std::string sChanges = TellCount(m_Replayed.m_nSteps, "change");
        const std::string sWhy =
            MakeIt(m_App, image, TellThings("Bring Back", m_Replayed.m_nSteps, "Change"));
        if (!sWhy.empty())
            return Fail(SentenceOf("They can't be brought back: " + sWhy));
        m_Result.m_bDone = true;
        m_Result.m_bWhole = m_Replayed.m_sProblem.empty();
        m_Result.m_bRenamed = bRenamed;
        m_Result.m_nSteps = m_Replayed.m_nSteps;
        m_Result.m_sText = "Brought back " + sChanges + ".";
        if (!m_Replayed.m_sProblem.empty())
            m_Result.m_sText += " " + m_Replayed.m_sProblem;
        if (bRenamed && !m_sFile.empty())
            m_Result.m_sText += " " + TellName(m_sFile) +
                                (m_bThere ? " has been changed since: save them under another name."
                                          : " is gone: save them under a name.");
        return m_Result;
    }

    CEmberdeckApp& m_App;
    const CJournalHead& m_Head;
    std::string m_sFile;
    bool m_bThere = false;
    bool m_bOpen = false;
    CReplayedJournal m_Replayed;
    CBroughtBack m_Result;
};

} // namespace

bool ReplayJournal(const CJournalStore::CEntry& entry, const CEffectModule& module,
                   CReplayedJournal& replayed)
{
    bool bDone = false;
    if (!TryAllocating([&] { bDone = ReplayNow(entry, module, replayed); }) ||
        (!bDone && !replayed.m_pNow && replayed.m_sProblem.empty()))
        replayed.m_sProblem = "Out of memory.";
    return bDone;
}

CBroughtBack BringBack(CEmberdeckApp& app, const CJournalStore::CEntry& entry)
{
    CBroughtBack result;
    const auto work = [&]
    {
        // Two programs never bring one journal back.
        const std::string sFile = entry.m_sStem + (entry.m_bKept ? c_szKeptSuffix : c_szJournalSuffix);
        const bool bFree = !CFileLock::IsInUse(sFile); // nobody is to wait
        const CFileLock lock(sFile, ELock::eExclusive);
        if (!bFree || !lock.IsHeld() || !FileExists(sFile))
        {
            result.m_sText = "Another program has brought them back.";
            return;
        }
        result = CBringing(app, entry).Run(entry);
    };
    if (!TryAllocating(work))
    {
        result = CBroughtBack();
        TryAllocating([&] { result.m_sText = "Out of memory."; });
    }
    return result;
}

void SettleJournal(CEmberdeckApp& app, const CJournalStore::CEntry& entry, const CBroughtBack& result)
{
    if (!result.m_bDone)
        return;
    const bool bSafe = app.History().IsSaved() || (app.Journal().IsWhole() && app.Journal().Sync());
    if (bSafe && result.m_bWhole && result.m_Conflicts.empty())
        CJournalStore::Remove(entry.m_sStem);
    else
        CJournalStore::Keep(entry.m_sStem);
}
