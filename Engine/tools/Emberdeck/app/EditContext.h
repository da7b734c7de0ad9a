#pragma once

#include <string>

#include "changes/EditScope.h"
#include "model/EditClipboard.h"
#include "model/EffectModule.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"
#include "platform/IPrompts.h"

// What one editing room needs of another, wired by the front at start. Of the user interface's thread alone, like all
// of the editor. The calls that show a dialog run a message loop: when they return, anything may have changed.
class IEditorHost
{
public:
    virtual ~IEditorHost() = default;
    virtual CEffectPropertySet* GetActivePrefab() = 0; // null: none is active
    // A prefab was made: it becomes the active one when there is none now.
    virtual void OfferActivePrefab(CEffectPropertySet* pPrefab) = 0;
    virtual void ClearActivePrefab() = 0; // none is active; it is also called when there was none
    // Opens the property editor on a key or prefab, which it changes on OK. True: accepted.
    virtual bool EditProperties(CEffectPropertySet& set) = 0;
    virtual const CEffectTypeDesc* ChooseEffectType() = 0; // null: cancelled, or nothing chosen
    // What has come of a command, or why it did nothing, where no box tells it: one line in the library's own
    // bytes. It stays until the next one, or for a while; "" takes it away.
    virtual void ShowStatus(const std::string& sText) = 0;
};

// The open views of effects. An effect is open in at most one. Closing a view deletes no effect, but an effect that is
// deleted must be closed before.
class IDocuments
{
public:
    virtual ~IDocuments() = default;
    virtual bool IsOpen(const CSpell* pSpell) const = 0; // false for null, and for one that is gone
    virtual void Open(CSpell& spell) = 0;                // or brings its view to the front
    virtual void Close(const CSpell* pSpell) = 0;        // at once; nothing when it isn't open
    virtual void CloseAll() = 0;
    virtual void RetitleAll() = 0; // after a rename
};

// What an editing room works on and works with: given to its constructor, and borrowed for its life. The application
// owns all but the last three, which the front brings.
struct CEditContext
{
    CSpellMgr& m_SpellMgr;
    CEffectModule& m_EffectModule;
    CEditClipboard& m_Clipboard;
    CEffectTree& m_EffectTree;
    CPrefabTree& m_PrefabTree;
    const std::string& m_sResourceRoot; // of the project, with a separator at its end; empty without one
    CEditHub& m_Edits;
    IPrompts& m_Prompts;
    IEditorHost& m_Host;
    IDocuments& m_Documents;
};
