#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "changes/ImageNodes.h"
#include "model/EffectPropertySet.h"
#include "model/LibraryTree.h"
#include "model/SpellMgr.h"

struct CEdit;

// What a picture is made of; borrowed.
struct CLibraryParts
{
    CSpellMgr& m_SpellMgr;
    CEffectTree& m_EffectTree;
    CPrefabTree& m_PrefabTree;
    CLibraryTree& Tree(ETreeSide eSide) const
    {
        return eSide == ETreeSide::eEffects ? static_cast<CLibraryTree&>(m_EffectTree) : m_PrefabTree;
    }
    // The serial of what an item stands for; 0: nothing.
    uint64_t ObjectOf(ETreeSide eSide, HLibraryItem hItem) const;
};

// Makes nodes of what is in the model now. Types are shared among the nodes of one maker.
class CImageMaker
{
public:
    std::shared_ptr<const CKeyImage> MakeKey(const CKey& key);
    std::shared_ptr<const CSetImage> MakePrefab(const CEffectPropertySet& prefab);
    std::shared_ptr<const CTrackImage> MakeTrack(const CTrack& track);
    std::shared_ptr<const CSpellImage> MakeSpell(const CSpell& spell);
    static CItemImage MakeItem(const CLibraryParts& library, ETreeSide eSide, HLibraryItem hItem);
    // hItem empty: the roots.
    static std::shared_ptr<const CGroupImage> MakeGroup(const CLibraryParts& library, ETreeSide eSide,
                                                        HLibraryItem hItem);
    static CTreeImage MakeTree(const CLibraryParts& library, ETreeSide eSide);

    // The plug-in may be another one from here on.
    void ForgetTypes() { m_ByDesc.clear(); }

private:
    void FillSet(CSetImage& image, const CEffectPropertySet& set);
    std::shared_ptr<const CTypeImage> TypeOf(const CEffectTypeDesc* pTypeDesc);

    std::unordered_map<const CEffectTypeDesc*, std::shared_ptr<const CTypeImage>> m_ByDesc;
    std::vector<std::shared_ptr<const CTypeImage>> m_Types; // all, so that equal ones are one
};

// An immutable picture of a library: what its file holds, and what it doesn't but undo must put back (empty tracks, all
// roots, values to the bit). The order of effects and prefabs is the library's, which orders the pack.
class CLibraryImage
{
public:
    static std::shared_ptr<const CLibraryImage> Make(const CLibraryParts& library, CImageMaker& maker);
    // After an edit of the library that this is the picture of: nodes that the edit didn't touch are shared.
    std::shared_ptr<const CLibraryImage> Next(const CLibraryParts& library, const CEdit& edit,
                                              CImageMaker& maker) const;

    std::vector<std::shared_ptr<const CSpellImage>> m_Spells;
    std::vector<std::shared_ptr<const CSetImage>> m_Prefabs;
    CTreeImage m_Trees[c_nNumSides];

    const CTreeImage& Tree(ETreeSide eSide) const { return m_Trees[static_cast<size_t>(eSide)]; }
};

// Writes the text that SaveEffectLibrary gives for the library, byte for byte, in the form that the name tells. False
// as there: it can't be written, or nests too deep to be loaded again.
bool SaveLibraryImage(const char* pszFilename, const CLibraryImage& image);
