#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "model/EffectModule.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"

// Made-up libraries in the style of real ones: effects in nested groups, a third of the keys on prefabs
// with a few values of their own, links, curves, file names that repeat. The same seed gives the same
// library on every machine.
struct CGeneratedLibrary
{
    CEffectModule m_Module; // destroyed last: the table itself is static
    CSpellMgr m_SpellMgr;
    CEffectTree m_EffectTree;
    CPrefabTree m_PrefabTree;
};

// The table of effect types that the made-up libraries use.
CEffectTypeTable* BenchTypeTable();

// Fills the library until its text is about nTextBytes long.
void GenerateLibrary(CGeneratedLibrary& library, size_t nTextBytes, uint64_t nSeed);
