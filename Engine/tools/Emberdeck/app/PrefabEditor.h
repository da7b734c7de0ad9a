#pragma once

#include "app/LibraryEditor.h"

// The library editor of the prefabs.
class CPrefabEditor final : public CLibraryEditor
{
public:
    explicit CPrefabEditor(CEditContext& context)
        : CLibraryEditor(context, context.m_PrefabTree, c_szPrefabRoot, "Prefab", c_nMaxEntryName)
    {
    }

    // hGroup is where it goes, as last child; no handle: the root. The new item, or null. Named after its type,
    // with a value for every property; becomes active when no prefab is now.
    HLibraryItem NewPrefab(HLibraryItem hGroup, const CEffectTypeDesc* pType);
    // From a key's values, inherited ones too; the key stays as it is. Under the root. The name is made
    // unique, and isn't trimmed.
    CEffectPropertySet* CreatePrefabFromKey(const CKey& key, const std::string& sName);

private:
    void TouchTree(CEditScope& scope) const override { scope.TouchPrefabTree(); }
    void TouchGroup(CEditScope& scope, HLibraryItem hGroup) const override
    {
        scope.TouchGroup(ETreeSide::ePrefabs, hGroup);
    }
    const char* LeafName(HLibraryItem hItem) const override;
    bool IsNameTaken(const std::string& sName) const override;
    void RenameLeaf(CEditScope& scope, HLibraryItem hItem, const std::string& sName) override;
    bool IndexNames(size_t nMore, CUniqueNames& names) const override;
    HLibraryItem DuplicateLeaf(HLibraryItem hItem, CUniqueNames& names) override;
    bool DeleteLeaves(CEditScope& scope, const std::vector<HLibraryItem>& leaves) override;

    using CDoomed = std::unordered_set<const CEffectPropertySet*>; // to be destroyed
    void FreeFrom(CEditScope& scope, const CDoomed& doomed);
};
