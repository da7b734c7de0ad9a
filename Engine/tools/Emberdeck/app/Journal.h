#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "app/ContentStamp.h"
#include "app/JournalStore.h"
#include "changes/EditScope.h"
#include "changes/LibraryImage.h"
#include "model/EffectModule.h"
#include "platform/AppendedFile.h"
#include "shared/engine/ProjectLocator.h"

// Keeps each step of the work since the last save in a file of its own, so that it outlives the program and, a second
// later, the machine. app/Recovery.h brings it back. It begins with the first step, and goes when the work is saved.
class CJournal : private IEditListener
{
public:
    static constexpr uint64_t c_nDefaultMaxSize = uint64_t(64) << 20; // bytes

    // What it is about; borrowed.
    struct CSource
    {
        CLibraryParts m_Library;
        const CEffectModule& m_Module;
        const CProjectInfo& m_Project;
        CEditHub& m_Edits;
    };
    // isSaved tells whether all work is in the library's file.
    CJournal(const CSource& source, CJournalStore store, std::function<bool()> isSaved);
    // Saved work needs no journal; of other work it stays, for the next start.
    ~CJournal() override;
    CJournal(const CJournal&) = delete;
    CJournal& operator=(const CJournal&) = delete;

    // Off at first. Beyond nMaxSize bytes of steps a journal is begun anew, from what the library is then.
    void TurnOn(uint64_t nMaxSize = c_nDefaultMaxSize);
    void TurnOff(); // what there is of a journal goes
    bool IsOn() const { return m_bOn; }

    // The library is what that file holds now, after a load or save, or is a new one; a journal of the work before goes.
    void Begin(const CContentStamp& stamp);
    // The user leaves the work as it is: what there is of a journal is kept for File > Recover, unless he goes on.
    void Leave() { m_bLeft = true; }
    // What there was of unsaved work when the last library was replaced, for the user; "" when nothing was kept.
    std::string TakeKept() { return std::exchange(m_sKept, std::string()); }

    // All steps are safe from a failure of the machine.
    bool IsSynced() const { return !m_File.NeedsSync(); }
    bool Sync();
    // A first step waits for that, which is to come within a second. Without it each step looks at the clock.
    std::function<void()> m_OnUnsynced;
    // No journal can be written, and why: once until the next Begin.
    std::function<void(const std::string&)> m_OnProblem;

    const CContentStamp& GetStamp() const { return m_Stamp; } // that the library stands on
    const std::string& GetStem() const { return m_sStem; } // as of CJournalStore; empty: no step is written
    // Whether all steps since Begin are written.
    bool IsWhole() const { return m_File.IsOpen() && m_sPending.empty() && !m_bAnew; }

private:
    std::shared_ptr<const CLibraryImage> MakeImage() const;
    void OnTouching(const std::string& sLabel, const CTouch& touch) override;
    void OnEdit(const CEdit& edit) override;
    void Record(const CEdit& edit);
    bool Start(const std::string& sStep);
    bool StartAnew(const CEdit& edit);
    bool Create(const CJournalHead& head, const std::string& sStep);
    void Append(const std::string& sStep);
    void Wrote();
    void EndLibrary();
    void Drop();
    void Tell(const std::string& sProblem);
    CJournalHead MakeHead(const std::string& sBase);

    CSource m_Source;
    CJournalStore m_Store;
    std::function<bool()> m_IsSaved;
    bool m_bOn = false;
    uint64_t m_nMaxSize = c_nDefaultMaxSize;

    CContentStamp m_Stamp;
    std::shared_ptr<const CLibraryImage> m_pBase; // before the first step; null: not needed any more
    CAppendedFile m_File;
    std::string m_sStem;
    std::string m_sOrigin;  // hash of what the file held, once the base is another; empty: it isn't
    std::string m_sBase;    // hash of the base
    uint64_t m_nSteps = 0;  // of all since Begin
    std::string m_sPending; // steps that could not be written yet
    bool m_bAnew = false;   // steps are missing: the next one begins anew
    bool m_bInEdit = false;
    bool m_bStopped = false; // until the next Begin
    bool m_bTold = false;
    bool m_bLeft = false;
    std::string m_sKept;
    std::chrono::steady_clock::time_point m_LastSync;
    std::chrono::steady_clock::time_point m_NextTry;
};

// A name for what a plug-in's types and properties are.
std::string HashOfTypes(const CEffectModule& module);
