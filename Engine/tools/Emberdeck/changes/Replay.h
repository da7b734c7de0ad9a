#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "changes/Apply.h"
#include "changes/ChangeText.h"

// All of a picture, as what has come to a library that has nothing, not even roots.
CLibraryChange ComeFromNothing(const CLibraryImage& image);

// A library of its own, empty at first, in which changes that another process has written are done one after the
// other. The objects have numbers here that nothing else in this process has.
class CReplay
{
public:
    // The module outlives it.
    explicit CReplay(const CEffectModule& module) : m_Module(module) {}
    CReplay(const CReplay&) = delete;
    CReplay& operator=(const CReplay&) = delete;

    // The next change, whole or not at all. False: sWhy tells it in a sentence's part.
    bool Do(std::string_view sChangeText, std::string& sWhy);

    // What is there now. Values are brought in line with the plug-in first, as a load does it. Null: out of memory.
    std::shared_ptr<const CLibraryImage> MakeImage();

private:
    // Nobody else holds on to what is in there.
    class COwner : public ILibraryOwner
    {
    public:
        void OnReleasing(const CSpell&) override {}
        void OnReleasing(CEffectPropertySet&) override {}
    };

    const CEffectModule& m_Module;
    CSpellMgr m_SpellMgr;
    CEffectTree m_EffectTree;
    CPrefabTree m_PrefabTree;
    CEditHub m_Edits;
    COwner m_Owner;
    CChangeNumbers m_Numbers;
    CImageMaker m_Maker;
};
