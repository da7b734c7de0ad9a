#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "changes/ImageNodes.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"

class CLibraryChange;

// Every command and every gesture that alters the library does so inside a CEditScope. Whoever shows
// something listens at the hub and refreshes what was touched.

// What a scope may touch. The library stands for all of it, so a listener asks for that beside the things it shows.
enum class ETouched
{
    eSpell,
    ePrefab,
    eEffectTree,
    ePrefabTree,
    eSpellList,  // which effects there are, and their order
    ePrefabList, // the same of prefabs
    eLibrary,    // another one is in its place, or none: nothing of the old one is left
};

enum class EPart : uint8_t
{
    eWhole,
    eHead,   // of an effect: name and phase length
    eTracks, // of an effect: which tracks there are, and their order
    eTrack,  // of an effect: which keys a track has, and their order
    eKey,    // of an effect: all fields and values of a key
    eGroup,  // of a tree: the children of an item, or the roots, their texts among them
};

struct CTouch
{
    ETouched m_eKind;
    const void* m_pObject =
        nullptr;            // CSpell or prefab; null for a tree, list or library. May be dead when told.
    uint64_t m_nSerial = 0; // of the effect or prefab
    EPart m_ePart = EPart::eWhole;
    const void* m_pPart = nullptr; // CTrack or CKey. May be dead when told.
    uint64_t m_nPart = 0;          // its serial, or the group's handle
    friend bool operator==(const CTouch&, const CTouch&) = default;
};

// An edit that is over, as listeners hear of it: what it touched, each thing once, in the order of the first touch.
struct CEdit
{
    std::string m_sLabel; // as a person would name it: "Move Keys"
    std::vector<CTouch> m_Touched;
    // What the edit has changed; null when nobody records, it could not be recorded, or it touched the library as a
    // whole. Empty when in the end nothing has changed.
    std::shared_ptr<const CLibraryChange> m_pChange;
    bool m_bStep = true; // false: for undo it belongs to the step before
    bool m_bRecordFailed = false;
    bool m_bContinues = false; // completes the edit before it: to a person both are one
    // Memory was short: more was touched than m_Touched tells. So m_bRecordFailed, too.
    bool m_bTouchesLost = false;

    // An effect, also by one of its parts, prefab, track or key. Where touches are lost, it may be any.
    bool Touches(const void* pObject) const;
    bool Touches(ETouched eKind) const;
};

class IEditListener
{
public:
    virtual ~IEditListener() = default;
    // Before an object's first change within the outermost scope: here its old state can still be kept.
    virtual void OnTouching(const std::string& sLabel, const CTouch& touch)
    {
        (void)sLabel;
        (void)touch;
    }
    // A gesture has done a step, and its scope goes on. The edit is what was touched so far, without a change.
    virtual void OnEditStep(const CEdit& edit) { (void)edit; }
    // After the outermost scope has closed, when anything was touched.
    virtual void OnEdit(const CEdit& edit) = 0;
};

// Who keeps what edits change. One for a hub.
class IEditRecorder
{
public:
    virtual ~IEditRecorder() = default;
    // Before the change, and before any listener hears of it.
    virtual void OnTouching(const CTouch& touch) = 0;
    // At the end of the outermost scope: fills in what the edit has changed. It allocates, and must not throw.
    virtual void Finish(CEdit& edit) = 0;
    // Puts back what the open edit has changed so far. False: it can't.
    virtual bool PutBack(const CEdit& edit) = 0;
};

// Listeners are called in the order in which they were added. One that is added within a call hears of
// the next event on; one that is removed within a call hears nothing more. A listener may open scopes
// of its own within OnEdit, which are edits of their own.
//
// An edit never fails for lack of memory here: what can't be noted is lost, and the edit says so.
//
// One for each library, of one thread. It outlives its listeners and scopes.
class CEditHub
{
public:
    void AddListener(IEditListener* pListener);    // not owned; null, or one that is there already: nothing
    void RemoveListener(IEditListener* pListener); // also from within a call
    void SetRecorder(IEditRecorder* pRecorder) { m_pRecorder = pRecorder; } // not owned; null: nobody records
    bool HasRecorder() const { return m_pRecorder != nullptr; }
    bool IsOpen() const { return m_nDepth > 0; }
    uint64_t GetNumEdits() const { return m_nNumEdits; } // scopes that touched something, once closed

private:
    friend class CEditScope;
    void Open(std::string_view sLabel);
    void Touch(const CTouch& touch);
    void Step();
    bool Abandon();
    void Close();
    bool HasTouched() const { return !m_Edit.m_Touched.empty() || m_Edit.m_bTouchesLost; }
    template <typename TCall>
    void Tell(const TCall& call);

    struct CTouchHash
    {
        size_t operator()(const CTouch& touch) const
        {
            return std::hash<uint64_t>()(touch.m_nSerial * 31 + touch.m_nPart * 7 +
                                         static_cast<uint64_t>(touch.m_eKind) * 8 +
                                         static_cast<uint64_t>(touch.m_ePart));
        }
    };

    std::vector<IEditListener*> m_Listeners; // null: removed while a call is under way
    IEditRecorder* m_pRecorder = nullptr;
    CEdit m_Edit;
    std::unordered_set<CTouch, CTouchHash> m_Seen; // what m_Edit has touched
    int m_nTelling = 0;
    int m_nDepth = 0;
    uint64_t m_nNumEdits = 0;
};

// Opens before the first change and closes after the last. A scope within a scope joins it. A scope
// that touched nothing tells nobody.
//
// What is touched must be all that changes, and is best no more: what lies in the undo history, and is painted anew,
// is what was touched. An effect that is made or deleted touches the list and, when it is deleted, itself; a prefab
// likewise. A key that comes or goes touches its track, and when it goes itself.
class CEditScope
{
public:
    CEditScope(CEditHub& hub, std::string_view sLabel);
    ~CEditScope();
    // What is to change isn't what the user does: it is undone together with the step before. Of the outermost scope.
    void BelongToStepBefore() { m_Hub.m_Edit.m_bStep = false; }
    CEditScope(const CEditScope&) = delete;
    CEditScope& operator=(const CEditScope&) = delete;

    // Call before the change. Null touches nothing.
    void Touch(const CSpell* pSpell); // all of it
    void TouchHead(const CSpell& spell);
    void TouchTracks(const CSpell& spell);
    void TouchTrack(const CSpell& spell, const CTrack& track);
    void TouchKey(const CSpell& spell, const CKey& key);
    void TouchPrefab(const CEffectPropertySet* pPrefab);
    void TouchSpellList();
    void TouchPrefabList();
    void TouchTree(ETreeSide eSide);                      // all of it
    void TouchGroup(ETreeSide eSide, HLibraryItem hItem); // empty: the roots
    void TouchEffectTree() { TouchTree(ETreeSide::eEffects); }
    void TouchPrefabTree() { TouchTree(ETreeSide::ePrefabs); }
    void TouchLibrary();

    // The edit completes the one before it, as a new item's first name does.
    void Continue() { m_Hub.m_Edit.m_bContinues = true; }
    // A gesture's step is done, and may be shown.
    void Step() { m_Hub.Step(); }
    // Puts back what was when the outermost scope opened; the scope stays open, and ends as an edit that has changed
    // nothing. False: nobody records, or not all of it was recorded; then all stays.
    bool Abandon() { return m_Hub.Abandon(); }

private:
    void TouchPart(const CSpell& spell, EPart ePart, const void* pPart, uint64_t nPart);

    CEditHub& m_Hub;
};
