#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/EffectPropertySet.h"
#include "model/Spell.h"

// All effects and prefabs of one library, owned, newest last. Their addresses stay as they are until they are deleted.
// The order is that of the file and of the packed file; the trees have one of their own.
//
// Nothing here knows the trees, open windows or edit scopes: the editor's own changes go through CLibraryEditor
// (app/LibraryEditor.h), which keeps them all in step. By itself this is for loaders, tools and tests.
class CSpellMgr
{
public:
    CSpellMgr() = default;
    ~CSpellMgr() { Clear(); }
    CSpellMgr(const CSpellMgr&) = delete;
    CSpellMgr& operator=(const CSpellMgr&) = delete;

    CSpell* AddSpell();                           // null when out of memory
    CSpell* FindSpell(const char* pszName) const; // without regard to case, first wins; null
    // The name itself when FindSpell doesn't find it; else the name without the digits and underscores at its
    // end, an underscore, and the lowest number from 1 on that is free. One walk over the effects, however
    // many numbers are taken; who makes many names uses CUniqueNames.
    void MakeUniqueSpellName(const char* pszName, std::string& sOut) const;
    void DeleteSpell(CSpell* pSpell); // reported, nothing destroyed, when it isn't here
    // Out of the list, in the order asked for; those that aren't here are passed over. Throws std::bad_alloc
    // before anything is taken.
    std::vector<std::unique_ptr<CSpell>> TakeSpells(const std::vector<CSpell*>& spells);
    CSpell*
    AdoptSpell(std::unique_ptr<CSpell> pSpell); // at the end; null when out of memory, it is gone then

    CEffectPropertySet*
    AddPrefab(const CEffectTypeDesc* pTypeDesc);               // empty, unnamed; null when out of memory
    CEffectPropertySet* FindPrefab(const char* pszName) const; // as FindSpell
    void MakeUniquePrefabName(const char* pszName, std::string& sOut) const; // as MakeUniqueSpellName
    // Nothing when it isn't here. The caller has detached every key from it.
    void DeletePrefab(CEffectPropertySet* pPrefab); // null: nothing

    void Clear(); // all effects, then all prefabs: keys go before what they inherit from

    // Every key of every effect, in list order: effect by effect, track by track, by time. visit adds and removes
    // none.
    void ForEachKey(const std::function<void(CSpell&, CKey&)>& visit) const;

    // For whoever puts effects or prefabs back where they were: the lists themselves, without null.
    std::vector<std::unique_ptr<CSpell>>& SpellsToRestore() { return m_Spells; }
    std::vector<std::unique_ptr<CEffectPropertySet>>& PrefabsToRestore() { return m_Prefabs; }

    const std::vector<std::unique_ptr<CSpell>>& Spells() const { return m_Spells; }
    const std::vector<std::unique_ptr<CEffectPropertySet>>& Prefabs() const { return m_Prefabs; }

private:
    std::vector<std::unique_ptr<CSpell>> m_Spells;
    std::vector<std::unique_ptr<CEffectPropertySet>> m_Prefabs;
};
