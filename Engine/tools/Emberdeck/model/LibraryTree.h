#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Handle of a tree item. Numbers are never given twice in the life of a tree, so a handle that was
// kept too long finds nothing, rather than another item.
struct HLibraryItem
{
    uint32_t m_nID = 0; // 0: no item
    explicit operator bool() const { return m_nID != 0; }
    friend bool operator==(HLibraryItem, HLibraryItem) = default;
    friend auto operator<=>(HLibraryItem, HLibraryItem) = default;
};

// What an item shows, which also tells what it is: a group has eImage_Group, a leaf eImage_Leaf.
enum ELibraryImage : int
{
    eImage_Group = 0,     // closed folder
    eImage_GroupOpen = 1, // its selected image
    eImage_Leaf = 2,      // both images
};

// The hierarchy of one side of the library: groups, and leaves. What a leaf stands for is the data of
// TLibraryTree, below; this is what can be done without knowing it. Every operation takes a dead or empty handle: it gives null, 0 or
// empty text, or does nothing. Nothing recurses on the stack, however deep the tree. Steps from item to
// item take constant time; IsAncestor takes the depth, SortChildren and DeleteItem what they touch.
class CLibraryTree
{
public:
    CLibraryTree();
    ~CLibraryTree();
    CLibraryTree(const CLibraryTree&) = delete;
    CLibraryTree& operator=(const CLibraryTree&) = delete;

    // Steps. Each gives the empty handle where there is no such item.
    HLibraryItem GetRootItem() const;                    // the first one, when a file had several
    HLibraryItem GetChildItem(HLibraryItem hItem) const; // first child
    HLibraryItem GetLastChildItem(HLibraryItem hItem) const;
    HLibraryItem GetNextSiblingItem(HLibraryItem hItem) const; // of a root: the next root
    HLibraryItem GetPrevSiblingItem(HLibraryItem hItem) const;
    HLibraryItem GetParentItem(HLibraryItem hItem) const; // null for a root
    bool IsAlive(HLibraryItem hItem) const;
    bool HasChildren(HLibraryItem hItem) const { return bool(GetChildItem(hItem)); }
    bool IsAncestor(HLibraryItem hAncestor, HLibraryItem hItem) const; // of itself: true
    uint32_t GetCount() const;                                         // all items

    int GetItemImage(HLibraryItem hItem) const;         // an ELibraryImage; -1 for a dead handle
    int GetItemSelectedImage(HLibraryItem hItem) const; // the same
    bool IsGroup(HLibraryItem hItem) const { return GetItemImage(hItem) == eImage_Group; }
    bool IsLeaf(HLibraryItem hItem) const { return GetItemImage(hItem) == eImage_Leaf; }
    const std::string& GetItemText(HLibraryItem hItem) const; // good until the item's text changes or it goes

    // As last child of hParent, or as last root for an empty one. The new item's handle; empty, nothing
    // inserted, when hParent is dead or memory is out.
    HLibraryItem InsertGroup(std::string_view sText, HLibraryItem hParent)
    {
        return InsertItem(sText, eImage_Group, eImage_GroupOpen, hParent, nullptr);
    }
    // With all below it, as last child of hTarget, which isn't within it. What has moved are new items, each with
    // its image for both states; the old ones are dead. The new handle of hItem.
    HLibraryItem MoveItem(HLibraryItem hItem, HLibraryItem hTarget);
    void SetItemText(HLibraryItem hItem, std::string_view sText);
    void SwapItemText(HLibraryItem hItem,
                      std::string& sText); // the same, without memory, and gives the old one
    void DeleteItem(HLibraryItem hItem);   // with all below it
    void DeleteAllItems(); // handles that were given out stay dead: their numbers don't come again
    // Reorders the children of hItem: stable, by compare(left, right) < 0. compare changes nothing here.
    void SortChildren(HLibraryItem hItem, const std::function<int(HLibraryItem, HLibraryItem)>& compare);

    // For whoever takes a change back, as these need no memory. An item without children goes out of the tree, and
    // later back to where it was, under its handle: what has changed since is taken back by then.
    class CTakenItem;
    void TakeItem(HLibraryItem hItem, CTakenItem& taken); // with children, or dead: nothing is taken
    void PutBackItem(CTakenItem& taken);                  // nothing, when nothing is taken
    void OrderChildren(HLibraryItem hItem, const std::vector<HLibraryItem>& children); // all of hItem's, once

    // The next item in display order as if all were expanded; null at the end.
    HLibraryItem GetNextItem(HLibraryItem hItem) const;

    // Whoever shows the tree may ask to hear of changes. Called after the change; eTree_Removing before it.
    // Removing and Removed tell the item that DeleteItem was called on, not those below it, and the handle
    // is dead by the second one. Text stands for the images too; Sorted gives the parent, Cleared no item.
    // One listener at most; an empty function takes it away.
    enum EChange
    {
        eTree_Inserted,
        eTree_Removing,
        eTree_Removed,
        eTree_Text,
        eTree_Sorted,
        eTree_Cleared
    };
    void SetListener(std::function<void(EChange, HLibraryItem)> listener);

protected:
    // The objects without their type, which TLibraryTree puts on and takes off again.
    void* DataOf(HLibraryItem hItem) const;
    HLibraryItem ItemOf(const void* pData) const;
    HLibraryItem InsertItem(std::string_view sText, int nImage, int nSelectedImage, HLibraryItem hParent,
                            void* pData);
    bool RestoreItem(HLibraryItem hItem, std::string_view sText, int nImage, int nSelectedImage,
                     HLibraryItem hParent, HLibraryItem hPrev, void* pData);
    static constexpr uint32_t c_nMaxGap = 1u << 22;

private:
    struct CItem;
    struct CDataUse;
    CItem* Find(HLibraryItem hItem) const;
    static HLibraryItem HandleOf(const CItem* pItem);
    void Tell(EChange eChange, HLibraryItem hItem) const;
    void Append(CItem* pItem, CItem* pParent);
    void InsertBehind(CItem* pItem, CItem* pParent, CItem* pPrev); // null: in front
    void Unlink(CItem* pItem);
    void Destroy(CItem* pItem);
    void NoteData(const CItem* pItem);
    void ForgetData(const CItem* pItem);

    // By number less m_nFirstID; dead ones are null.
    std::vector<std::unique_ptr<CItem>> m_Items;
    uint32_t m_nFirstID = 1;
    CItem* m_pFirstRoot = nullptr;
    CItem* m_pLastRoot = nullptr;
    uint32_t m_nCount = 0;
    // Which item a data pointer belongs to, null pointers aside.
    std::unordered_map<const void*, CDataUse> m_Data;
    bool m_bDataComplete = true; // false once memory was short: ItemOf walks then
    std::function<void(EChange, HLibraryItem)> m_Listener;
};

class CLibraryTree::CTakenItem
{
public:
    CTakenItem();
    ~CTakenItem();
    CTakenItem(CTakenItem&&) noexcept;
    CTakenItem& operator=(CTakenItem&&) noexcept;

private:
    friend class CLibraryTree;
    std::unique_ptr<CItem> m_pItem;
};

// A tree whose leaves stand for objects of one kind, which it doesn't own.
template <class TObject>
class TLibraryTree : public CLibraryTree
{
public:
    TObject* GetItemData(HLibraryItem hItem) const
    {
        return static_cast<TObject*>(DataOf(hItem));
    } // of a group: null
    HLibraryItem InsertLeaf(std::string_view sText, HLibraryItem hParent, TObject* pData)
    {
        return InsertItem(sText, eImage_Leaf, eImage_Leaf, hParent, pData);
    }
    // An item under a handle that is told, as it was here before or comes from another library: behind hPrev, a child
    // of hParent, or first for an empty one; pData is null for a group. False, nothing inserted: the handle is in use,
    // older than the last DeleteAllItems or c_nMaxGap and more beyond all that were given out, hParent or hPrev is dead
    // or not where it should be, or memory is out.
    bool RestoreItem(HLibraryItem hItem, std::string_view sText, int nImage, int nSelectedImage,
                     HLibraryItem hParent, HLibraryItem hPrev, TObject* pData)
    {
        return CLibraryTree::RestoreItem(hItem, sText, nImage, nSelectedImage, hParent, hPrev, pData);
    }
    // First in tree order whose data this is; null. Without a search when it is the data of one item.
    HLibraryItem FindData(const TObject* pData) const { return ItemOf(pData); }
};

class CEffectPropertySet;
class CSpell;
using CEffectTree = TLibraryTree<CSpell>;
using CPrefabTree = TLibraryTree<CEffectPropertySet>;
