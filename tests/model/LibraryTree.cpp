#include "model/LibraryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{

// Names in display order, children in brackets.
std::string Draw(const CLibraryTree& tree, HLibraryItem hItem)
{
    std::string s;
    for (; hItem; hItem = tree.GetNextSiblingItem(hItem))
    {
        s += tree.GetItemText(hItem);
        if (tree.HasChildren(hItem))
            s += "(" + Draw(tree, tree.GetChildItem(hItem)) + ")";
    }
    return s;
}
std::string Draw(const CLibraryTree& tree)
{
    return Draw(tree, tree.GetRootItem());
}

} // namespace

TEST(LibraryTree, KeepsItsShape)
{
    TLibraryTree<int> tree;
    int aData[3];
    const HLibraryItem hRoot = tree.InsertGroup("R", {});
    const HLibraryItem hGroup = tree.InsertGroup("g", hRoot);
    const HLibraryItem hB = tree.InsertLeaf("b", hGroup, &aData[0]);
    const HLibraryItem hA = tree.InsertLeaf("a", hGroup, &aData[1]);
    const HLibraryItem hC = tree.InsertLeaf("c", hRoot, &aData[2]);
    const HLibraryItem hSecond = tree.InsertGroup("S", {});
    EXPECT_EQ("R(g(ba)c)S", Draw(tree));
    EXPECT_EQ(hRoot, tree.GetRootItem());
    EXPECT_EQ(hGroup, tree.GetParentItem(hA));
    EXPECT_EQ(hA, tree.GetLastChildItem(hGroup));
    EXPECT_EQ(hB, tree.GetPrevSiblingItem(hA));
    EXPECT_TRUE(tree.IsAncestor(hRoot, hA) && tree.IsAncestor(hA, hA));
    EXPECT_FALSE(tree.IsAncestor(hGroup, hC) || tree.IsAncestor({}, hC));
    EXPECT_TRUE(tree.IsGroup(hGroup) && tree.IsLeaf(hA));
    EXPECT_EQ(eImage_GroupOpen, tree.GetItemSelectedImage(hGroup));
    std::string sWalk;
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        sWalk += tree.GetItemText(h);
    EXPECT_EQ("RgbacS", sWalk);

    tree.SortChildren(hGroup, [&](HLibraryItem hLeft, HLibraryItem hRight)
                      { return tree.GetItemText(hLeft).compare(tree.GetItemText(hRight)); });
    EXPECT_EQ("R(g(ab)c)S", Draw(tree));
    tree.SetItemText(hA, "x");
    tree.DeleteItem(hGroup);
    EXPECT_EQ("R(c)S", Draw(tree));
    EXPECT_EQ(3u, tree.GetCount());
    tree.DeleteItem(hRoot);
    EXPECT_EQ(hSecond, tree.GetRootItem());

    // Dead handles find nothing, also in a tree that was filled anew.
    tree.DeleteAllItems();
    tree.InsertGroup("N", {});
    for (const HLibraryItem hDead : {hRoot, hA, hSecond, HLibraryItem{999}})
    {
        EXPECT_FALSE(tree.IsAlive(hDead));
        EXPECT_EQ("", tree.GetItemText(hDead));
        EXPECT_EQ(nullptr, tree.GetItemData(hDead));
        EXPECT_EQ(-1, tree.GetItemImage(hDead));
        EXPECT_FALSE(tree.GetNextItem(hDead) || tree.GetParentItem(hDead) || tree.InsertGroup("x", hDead));
        tree.SetItemText(hDead, "x");
        tree.DeleteItem(hDead);
        tree.SortChildren(hDead, [](HLibraryItem, HLibraryItem) { return 0; });
    }
    EXPECT_EQ("N", Draw(tree));
}

TEST(LibraryTree, FindsTheFirstItemOfAData)
{
    TLibraryTree<int> tree;
    int nData, nOther;
    const HLibraryItem hRoot = tree.InsertGroup("R", {});
    const HLibraryItem hLate = tree.InsertLeaf("late", hRoot, &nData);
    EXPECT_EQ(hLate, tree.FindData(&nData));
    EXPECT_FALSE(tree.FindData(&nOther));
    EXPECT_EQ(hRoot, tree.FindData(nullptr));
    const HLibraryItem hGroup = tree.InsertGroup("g", hRoot);
    const HLibraryItem hTwin = tree.InsertLeaf("twin", hGroup, &nData);
    EXPECT_EQ(hLate, tree.FindData(&nData));
    tree.DeleteItem(hLate);
    EXPECT_EQ(hTwin, tree.FindData(&nData));
    tree.DeleteItem(hTwin);
    EXPECT_FALSE(tree.FindData(&nData));

    // A moved item is another one, with what it stands for; so are those below it, in their order.
    const HLibraryItem hInner = tree.InsertGroup("inner", hGroup);
    tree.InsertLeaf("a", hInner, &nData);
    tree.InsertLeaf("b", hInner, &nOther);
    const HLibraryItem hMoved = tree.MoveItem(hInner, hRoot);
    EXPECT_EQ("R(ginner(ab))", Draw(tree));
    EXPECT_FALSE(tree.IsAlive(hInner));
    EXPECT_EQ(hMoved, tree.GetParentItem(tree.FindData(&nOther)));
    EXPECT_EQ(&nData, tree.GetItemData(tree.GetChildItem(hMoved)));
    EXPECT_EQ(eImage_Group, tree.GetItemSelectedImage(hMoved));
}

TEST(LibraryTree, TellsOneListener)
{
    CLibraryTree tree;
    std::string sHeard;
    tree.SetListener(
        [&](CLibraryTree::EChange eChange, HLibraryItem hItem) {
            sHeard +=
                std::to_string(int(eChange)) + (tree.IsAlive(hItem) ? tree.GetItemText(hItem) : "-") + " ";
        });
    const HLibraryItem hRoot = tree.InsertGroup("R", {});
    const HLibraryItem hGroup = tree.InsertGroup("g", hRoot);
    tree.InsertGroup("h", hGroup);
    tree.SetItemText(hGroup, "k");
    tree.DeleteItem(hGroup); // told once, for all below it
    tree.SortChildren(hRoot, [](HLibraryItem, HLibraryItem) { return 0; });
    tree.DeleteAllItems();
    EXPECT_EQ("0R 0g 0h 3k 1k 2- 4R 5- ", sHeard);
}

TEST(LibraryTree, DeepAndWideTrees)
{
    TLibraryTree<CLibraryTree> tree;
    const HLibraryItem hRoot = tree.InsertGroup("R", {});
    HLibraryItem hDeep = hRoot;
    for (int i = 0; i < 100000; ++i)
        hDeep = tree.InsertGroup("d", hDeep);
    for (int i = 0; i < 100000; ++i)
        tree.InsertLeaf(std::to_string(i * 7919 % 100000), hRoot, &tree);
    tree.SortChildren(hRoot, [&](HLibraryItem hLeft, HLibraryItem hRight)
                      { return tree.GetItemText(hLeft).compare(tree.GetItemText(hRight)); });
    uint32_t nCount = 0;
    for (HLibraryItem h = hRoot; h; h = tree.GetNextItem(h))
        ++nCount;
    EXPECT_EQ(200001u, nCount);
    EXPECT_EQ("0", tree.GetItemText(tree.GetChildItem(hRoot)));
    tree.DeleteItem(hRoot);
    EXPECT_EQ(0u, tree.GetCount());
    EXPECT_FALSE(tree.GetRootItem());
}
