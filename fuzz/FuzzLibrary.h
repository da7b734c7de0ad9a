#pragma once

#include <string>
#include <utility>
#include <vector>

#include "FuzzTools.h"
#include "GameFile.h"
#include "formats/EmberdeckPacker.h"
#include "formats/EmberdeckQSA.h"
#include "formats/PackedReader.h"
#include "support/TestPlugin.h"

// A library of its own, to be loaded, saved and packed.
struct CFuzzLibrary
{
    explicit CFuzzLibrary(const CEffectModule& module) : m_Module(module) {}

    bool Load(std::string_view sText, ILoadObserver* pObserver = nullptr)
    {
        return LoadEffectText(sText, m_SpellMgr, m_Module, &m_EffectTree, &m_PrefabTree, m_sError, pObserver);
    }
    // The text that the library is saved as; false when it can't be.
    bool Save(std::string& sText) const
    {
        const CMemoryFile file;
        if (!SaveEffectLibrary(file.Path(), m_EffectTree, m_PrefabTree))
            return false;
        sText = file.Read();
        return true;
    }
    bool Pack(std::string& sBytes, const char* pszTarget = "PC")
    {
        const CMemoryFile file;
        const bool bPacked = PackEffectLibrary(file.Path(), m_SpellMgr, m_Module, nullptr, pszTarget);
        sBytes = file.Read();
        return bPacked;
    }

    const CEffectModule& m_Module;
    CEffectTree m_EffectTree;
    CPrefabTree m_PrefabTree;
    CSpellMgr m_SpellMgr;
    std::string m_sError;
};
