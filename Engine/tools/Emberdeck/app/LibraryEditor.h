#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "app/EditContext.h"
#include "model/UniqueNames.h"

constexpr const char* c_szEffectRoot = "[Effects]";
constexpr const char* c_szPrefabRoot = "[Prefabs]";
constexpr const char* c_szNewGroup = "New_Group";

enum class ELibrarySide
{
    eEffects,
    ePrefabs
};

enum class ERename
{
    eDone,
    eUnchanged, // nothing left of the new name, the same but for case, or an item that can't be renamed
    eInUse,     // c_MsgEffectNameInUse or c_MsgPrefabNameInUse is to be shown
};

// Makes, copies, renames, moves and deletes effects and prefabs together with their items, so that model
// and trees always agree. No other code does. Each operation is one edit scope. Dead handles, and items
// of the wrong kind, change nothing and give null or false. It asks nothing: questions and the selection
// are the callers'. An operation that memory runs out for stops.
class CLibraryEditor
{
public:
    explicit CLibraryEditor(CEditContext& context) : m_Context(context) {}

    // The root group, made when a file left the tree without one. A file whose tree begins with a leaf
    // gets all its roots moved under a new one, since what lies beside the first root isn't saved.
    HLibraryItem EnsureRoot(ELibrarySide eSide);

    // hGroup is where the new item goes, as last child; no handle: the root. The new item, or null.
    HLibraryItem NewGroup(ELibrarySide eSide, HLibraryItem hGroup, const char* pszName = c_szNewGroup);
    HLibraryItem NewEffect(HLibraryItem hGroup);
    // Named after its type, with a value for every property; becomes active when no prefab is now.
    HLibraryItem NewPrefab(HLibraryItem hGroup, const CEffectTypeDesc* pType);
    // From a key's values, inherited ones too; the key stays as it is. Under the root. The name is made
    // unique, and isn't trimmed.
    CEffectPropertySet* CreatePrefabFromKey(const CKey& key, const std::string& sName);

    // A copy beside its source, under a unique name; not active. Null for a group.
    HLibraryItem Duplicate(ELibrarySide eSide, HLibraryItem hItem);
    // The copies, in the order given, and the side sorted behind them.
    std::vector<HLibraryItem> DuplicateItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items);

    // With all below, which takes views, model objects and links to them along. Never the root.
    bool Delete(ELibrarySide eSide, HLibraryItem hItem);
    // Leaves first, then groups; what went with an outer group is skipped.
    void DeleteItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items);

    // The text as it was typed. An effect or prefab takes it when no other bears it, then views are
    // retitled and the side is sorted.
    ERename Rename(ELibrarySide eSide, HLibraryItem hItem, const std::string& sText);

    // A new item under hTarget, a group, with all that stood below the old one; images as MoveItem has
    // always given them. hItem itself when it is there already. Null: nothing moved (the root, a group
    // into itself or below, no group as target).
    HLibraryItem Move(ELibrarySide eSide, HLibraryItem hItem, HLibraryItem hTarget);
    // Leaves first, then groups, then sorted. A group within another one of the list stays in that.
    void MoveItems(ELibrarySide eSide, const std::vector<HLibraryItem>& items, HLibraryItem hTarget);

    // Groups first as they stand, then leaves by name; stable, at all levels.
    void Sort(ELibrarySide eSide);

    // Takes effects out of a temporary library: keys flattened, names made unique, items under the
    // root, then sorted. Pointers that aren't in source are skipped. How many came. While the keys are
    // flattened, which is the long part, the user may stop it: none has come then, though source has lost
    // them.
    unsigned ImportEffects(CSpellMgr& source, const std::vector<CSpell*>& spells);

    CLibraryTree& Tree(ELibrarySide eSide) const
    {
        return eSide == ELibrarySide::eEffects ? m_Context.m_EffectTree : m_Context.m_PrefabTree;
    }

private:
    static void TouchTree(CEditScope& scope, ELibrarySide eSide);
    static void TouchGroup(CEditScope& scope, ELibrarySide eSide, HLibraryItem hGroup);
    static HLibraryItem MoveBranch(CLibraryTree& tree, HLibraryItem hItem, HLibraryItem hTarget);
    bool FindGroup(ELibrarySide eSide, HLibraryItem& hGroup);
    std::string NameOf(ELibrarySide eSide, const void* pData) const;
    // The names of one side, with room for so many more. False: out of memory.
    bool IndexNames(ELibrarySide eSide, size_t nMore, CUniqueNames& names) const;
    static std::string UniqueEffectName(CUniqueNames& names, const std::string& sName);
    HLibraryItem DuplicateLeaf(ELibrarySide eSide, HLibraryItem hItem, CUniqueNames& names);
    HLibraryItem DuplicateEffect(const CSpell& source, HLibraryItem hItem, CUniqueNames& names);
    HLibraryItem DuplicatePrefab(const CEffectPropertySet& source, HLibraryItem hItem, CUniqueNames& names);
    bool FlattenAll(const std::vector<std::unique_ptr<CSpell>>& spells);
    // Effects or prefabs that are to be destroyed.
    using CDoomed = std::unordered_set<const void*>;
    void DeleteLeaves(CEditScope& scope, ELibrarySide eSide, const std::vector<HLibraryItem>& leaves);
    void DropPrefabs(CEditScope& scope, const CDoomed& doomed);
    void DropSpells(const CDoomed& doomed);

    CEditContext& m_Context;
};

// A name as it may stand in a file: double quotes replaced by single ones, blanks at both ends off, cut
// to nMaxBytes at a whole UTF-8 character.
std::string CleanName(std::string_view sText, size_t nMaxBytes);
constexpr size_t c_nMaxEntryName = 255; // of groups and prefabs, as the entry fields limit them
