#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/LibraryTree.h"
#include "model/Spell.h"
#include "model/SpellMgr.h"

class CAssetLibrarySource;
class CQSAFile;

// What a library provides, and what it depends on: the resource list at the head of an effect file, and of
// the dependency list that a build asks for.

// Adds the effects at and below an item, in tree order: each named one as a resource of type "FX", and what
// it depends on. False when memory is out.
bool CollectResources(const CEffectTree& tree, HLibraryItem hItem, CAssetLibrarySource& source);

// Adds what an effect's keys refer to: files, animations and other effects, one record for each distinct
// one. The values in force count, a prefab's too, since the game needs these. False when memory is out.
bool CollectDependencies(const CSpell& spell, CAssetLibrarySource& source);

// Calls with each file that a key's values in force name, relative to the resource folder, and where it is named.
void ForEachResourceFile(const CSpellMgr& spellMgr,
                         const std::function<void(const CSpell&, const CKey&, const CEffectProperty&,
                                                  const std::string& sFile)>& call);

// Writes the list for the effects below the tree's root to a file that is open for writing. A tree without
// a root has no effects. False when memory is out, with nothing written, or when a write failed.
bool WriteResourceDatabase(const CEffectTree& effectTree, CQSAFile& file);

// The same from elsewhere: collect adds each effect in tree order, and behind it what its keys refer to by the values
// in force, key by key and slot by slot. It may throw when memory is out.
bool WriteResourceDatabase(const std::function<void(CAssetLibrarySource&)>& collect, CQSAFile& file);
void AddEffectResource(CAssetLibrarySource& source, const char* pszEffect); // one without a name isn't listed
bool IsReferenceKind(uint32_t eType); // its values name files, animations or effects
// The references in one value of that kind.
void AddValueReferences(CAssetLibrarySource& source, const std::string& sEffect, uint32_t eType,
                        std::string_view sText);
