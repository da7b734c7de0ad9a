#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "app/EditContext.h"
#include "app/LibraryNames.h"
#include "model/UniqueNames.h"

constexpr const char* c_szEffectRoot = "[Effects]";
constexpr const char* c_szPrefabRoot = "[Prefabs]";
constexpr const char* c_szNewGroup = "New_Group";

enum class ERename
{
    eDone,
    eUnchanged, // nothing left of the new name, the same but for case, or an item that can't be renamed
    eInUse,     // c_MsgEffectNameInUse or c_MsgPrefabNameInUse is to be shown
};

// Makes, copies, renames, moves and deletes what is on one side of the library together with its items, so that
// model and trees always agree. No other code does. CEffectEditor and CPrefabEditor know the objects; here is what
// is the same for both. Each operation is one edit scope. Dead handles, and items of the wrong kind, change nothing
// and give null or false. It asks nothing: questions and the selection are the callers'. An operation that memory
// runs out for stops.
class CLibraryEditor
{
public:
    virtual ~CLibraryEditor() = default;
    CLibraryEditor(const CLibraryEditor&) = delete;
    CLibraryEditor& operator=(const CLibraryEditor&) = delete;

    // The root group, made when a file left the tree without one. A file whose tree begins with a leaf
    // gets all its roots moved under a new one, since what lies beside the first root isn't saved.
    HLibraryItem EnsureRoot();

    // hGroup is where the new item goes, as last child; no handle: the root. The new item, or null.
    HLibraryItem NewGroup(HLibraryItem hGroup, const char* pszName = c_szNewGroup);

    // A copy beside its source, under a unique name; not active. Null for a group.
    HLibraryItem Duplicate(HLibraryItem hItem);
    // The copies, in the order given, and the side sorted behind them.
    std::vector<HLibraryItem> DuplicateItems(const std::vector<HLibraryItem>& items);

    // With all below, which takes views, model objects and links to them along. Never the root.
    bool Delete(HLibraryItem hItem);
    // Leaves first, then groups; what went with an outer group is skipped.
    void DeleteItems(const std::vector<HLibraryItem>& items);

    // The text as it was typed. An effect or prefab takes it when no other bears it, then views are
    // retitled and the side is sorted.
    ERename Rename(HLibraryItem hItem, const std::string& sText);
    // What Rename makes of a text for that item.
    std::string NameFor(HLibraryItem hItem, const std::string& sText) const;

    // A new item under hTarget, a group, with all that stood below the old one; images as CLibraryTree::MoveItem
    // gives them. hItem itself when it is there already. Null: nothing moved (the root, a group into itself or
    // below, no group as target).
    HLibraryItem Move(HLibraryItem hItem, HLibraryItem hTarget);
    // Leaves first, then groups, then sorted. A group within another one of the list stays in that.
    void MoveItems(const std::vector<HLibraryItem>& items, HLibraryItem hTarget);

    // Groups first as they stand, then leaves by name; stable, at all levels.
    void Sort();

protected:
    // nMaxName: of the objects' names, in bytes.
    // pszLeaf: what a leaf stands for, as the labels of steps tell it: "Effect".
    CLibraryEditor(CEditContext& context, CLibraryTree& tree, const char* pszRoot, const char* pszLeaf,
                   size_t nMaxName)
        : m_Context(context),
          m_Tree(tree),
          m_pszRoot(pszRoot),
          m_pszLeaf(pszLeaf),
          m_nMaxName(nMaxName)
    {
    }

    // The group that a new item goes to. False: hGroup is something else.
    bool FindGroup(HLibraryItem& hGroup);

    // What a side knows about the objects of its leaves.
    virtual void TouchTree(CEditScope& scope) const = 0;
    virtual void TouchGroup(CEditScope& scope, HLibraryItem hGroup) const = 0; // what lies in it, not below
    virtual const char* LeafName(HLibraryItem hItem) const = 0; // null: the item stands for no object
    virtual bool IsNameTaken(const std::string& sName) const = 0;
    virtual void RenameLeaf(CEditScope& scope, HLibraryItem hItem, const std::string& sName) = 0;
    // The names of the side, with room for so many more. False: out of memory.
    virtual bool IndexNames(size_t nMore, CUniqueNames& names) const = 0;
    // Within an edit scope. The copy has no item when the source has none, and is in names.
    virtual HLibraryItem DuplicateLeaf(HLibraryItem hItem, CUniqueNames& names) = 0;
    // Items of leaves with all that they stand for. The items go first: while they are taken away, whoever shows
    // them can still read their data.
    // False: out of memory, and nothing is deleted.
    virtual bool DeleteLeaves(CEditScope& scope, const std::vector<HLibraryItem>& leaves) = 0;

    CEditContext& m_Context;

private:
    CLibraryTree& m_Tree;
    // "Delete Effect", "Move Group", "Delete 3 Items", by those of the items that are there.
    std::string LabelFor(const char* pszVerb, const std::vector<HLibraryItem>& items) const;

    const char* const m_pszRoot;
    const char* const m_pszLeaf;
    const size_t m_nMaxName;
};

// The objects that leaves stand for. Throws std::bad_alloc.
template <class TObject>
std::unordered_set<const TObject*> ObjectsOf(const TLibraryTree<TObject>& tree,
                                             const std::vector<HLibraryItem>& leaves)
{
    std::unordered_set<const TObject*> objects;
    for (const HLibraryItem hItem : leaves)
    {
        if (const TObject* pObject = tree.GetItemData(hItem))
            objects.insert(pObject);
    }
    return objects;
}
