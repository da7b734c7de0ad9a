#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "model/LibraryTree.h"
#include "model/SpellMgr.h"

// Every command and every gesture that alters the library does so inside a CEditScope. Whoever shows
// something listens at the hub and refreshes what was touched.

// What a scope may touch. The library stands for all of it, so a listener asks for that beside the things it shows.
enum class ETouched
{
    eSpell,
    ePrefab,
    eEffectTree,
    ePrefabTree,
    eLibrary
};

struct CTouch
{
    ETouched m_eKind;
    const void* m_pObject =
        nullptr; // CSpell or prefab; null for a tree or the library. May be dead when told.
    friend bool operator==(const CTouch&, const CTouch&) = default;
};

// An edit that is over, as listeners hear of it: what it touched, each thing once, in the order of the first touch.
struct CEdit
{
    std::string m_sLabel; // as a person would name it: "Move Keys"
    std::vector<CTouch> m_Touched;
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
    // After the outermost scope has closed, when anything was touched.
    virtual void OnEdit(const CEdit& edit) = 0;
};

// Listeners are called in the order in which they were added. One that is added within a call hears of
// the next event on; one that is removed within a call hears nothing more. A listener may open scopes
// of its own within OnEdit, which are edits of their own.
//
// One for each library, of one thread. It outlives its listeners and scopes.
class CEditHub
{
public:
    void AddListener(IEditListener* pListener);    // not owned; null, or one that is there already: nothing
    void RemoveListener(IEditListener* pListener); // also from within a call
    bool IsOpen() const { return m_nDepth > 0; }
    uint64_t GetNumEdits() const { return m_nNumEdits; } // scopes that touched something, once closed

private:
    friend class CEditScope;
    void Open(const std::string& sLabel);
    void Touch(const CTouch& touch);
    void Close();
    template <typename TCall>
    void Tell(const TCall& call);

    struct CTouchHash
    {
        size_t operator()(const CTouch& touch) const
        {
            return std::hash<const void*>()(touch.m_pObject) * 31 + static_cast<size_t>(touch.m_eKind);
        }
    };

    std::vector<IEditListener*> m_Listeners; // null: removed while a call is under way
    CEdit m_Edit;
    std::unordered_set<CTouch, CTouchHash> m_Seen; // what m_Edit has touched
    int m_nTelling = 0;
    int m_nDepth = 0;
    uint64_t m_nNumEdits = 0;
};

// Opens before the first change and closes after the last. A scope within a scope joins it. A scope
// that touched nothing tells nobody.
class CEditScope
{
public:
    CEditScope(CEditHub& hub, const std::string& sLabel);
    ~CEditScope();
    CEditScope(const CEditScope&) = delete;
    CEditScope& operator=(const CEditScope&) = delete;

    // Call before the change.
    void Touch(const CSpell* pSpell);
    void TouchPrefab(const CEffectPropertySet* pPrefab);
    void TouchEffectTree();
    void TouchPrefabTree();
    void TouchLibrary();

private:
    CEditHub& m_Hub;
};
