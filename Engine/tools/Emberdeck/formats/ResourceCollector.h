#pragma once

#include <functional>
#include <string>

#include "model/LibraryTree.h"
#include "model/Spell.h"
#include "model/SpellMgr.h"

class CAssetLibrarySource;
class CQSAFile;

// What a library provides, and what it depends on: the resource list at the head of an effect file, and of
// the dependency list that a build asks for.

// Adds the effects at and below an item, in tree order: each named one as a resource of type "FX", and what
// it depends on. False when memory is out.
bool CollectResources(const CLibraryTree& tree, HLibraryItem hItem, CAssetLibrarySource& source);

// Adds what an effect's keys refer to: files, animations and other effects, one record for each distinct
// one. The values in force count, a prefab's too, since the game needs these. False when memory is out.
bool CollectDependencies(const CSpell& spell, CAssetLibrarySource& source);

// Calls with each file that a key's values in force name, relative to the resource folder, and where it is named.
void ForEachResourceFile(const CSpellMgr& spellMgr,
                         const std::function<void(const CSpell&, const CKey&, const CEffectProperty&,
                                                  const std::string& sFile)>& call);

// Writes the list for the effects below the tree's root to a file that is open for writing. A tree without
// a root has no effects. False when memory is out, with nothing written, or when a write failed.
bool WriteResourceDatabase(const CLibraryTree& effectTree, CQSAFile& file);
