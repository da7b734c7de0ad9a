#pragma once

#include <memory>

#include "app/LibraryEditor.h"

// The library editor of the effects.
class CEffectEditor final : public CLibraryEditor
{
public:
    explicit CEffectEditor(CEditContext& context)
        : CLibraryEditor(context, context.m_EffectTree, c_szEffectRoot, "Effect", CSpell::c_nMaxName)
    {
    }

    // hGroup is where it goes, as last child; no handle: the root. The new item, or null.
    HLibraryItem NewEffect(HLibraryItem hGroup);

    // Takes effects out of a temporary library: keys flattened, names made unique, items under the
    // root, then sorted. Pointers that aren't in source are skipped. How many came. While the keys are
    // flattened, which is the long part, the user may stop it: none has come then, though source has lost
    // them.
    unsigned ImportEffects(CSpellMgr& source, const std::vector<CSpell*>& spells);

private:
    void TouchTree(CEditScope& scope) const override { scope.TouchEffectTree(); }
    void TouchGroup(CEditScope& scope, HLibraryItem hGroup) const override
    {
        scope.TouchGroup(ETreeSide::eEffects, hGroup);
    }
    const char* LeafName(HLibraryItem hItem) const override;
    bool IsNameTaken(const std::string& sName) const override;
    void RenameLeaf(CEditScope& scope, HLibraryItem hItem, const std::string& sName) override;
    bool IndexNames(size_t nMore, CUniqueNames& names) const override;
    HLibraryItem DuplicateLeaf(HLibraryItem hItem, CUniqueNames& names) override;
    bool DeleteLeaves(CEditScope& scope, const std::vector<HLibraryItem>& leaves) override;

    static std::string UniqueName(CUniqueNames& names, const std::string& sName);
    bool FlattenAll(const std::vector<std::unique_ptr<CSpell>>& spells);
};
