#include "TreeBench.h"

namespace
{
// The texts in the order in which a search of that direction meets them, from the start once round.
std::string Walk(const CLibraryTree& tree, HLibraryItem hStart, bool bDown)
{
    std::string sWalk;
    HLibraryItem h = hStart;
    CFindOptions options{".", true, false, bDown};
    for (int i = 0; i < 50; ++i)
    {
        HLibraryItem hFound;
        // Every leaf holds a dot in this tree.
        const EFind eFind = FindInTree(
            tree, h, options,
            [&]
            {
                sWalk += "|";
                return true;
            },
            hFound);
        if (eFind != EFind::eFound || hFound == hStart)
            break;
        sWalk += tree.GetItemText(hFound).substr(1);
        h = hFound;
    }
    return sWalk;
}
} // namespace

TEST(Find, WalksEveryLeafOnceInEitherDirection)
{
    TLibraryTree<CLibraryTree> tree;
    const HLibraryItem hRoot = tree.InsertGroup(".R", {});
    const HLibraryItem hA = tree.InsertLeaf(".a", hRoot, &tree);
    const HLibraryItem hG = tree.InsertGroup(".G", hRoot);
    tree.InsertLeaf(".b", hG, &tree);
    tree.InsertGroup(".E", hG); // empty: compared like a leaf
    tree.InsertLeaf(".c", hG, &tree);
    const HLibraryItem hD = tree.InsertLeaf(".d", hRoot, &tree);
    EXPECT_EQ("bEcd|", Walk(tree, hA, true));
    EXPECT_EQ("|abEc", Walk(tree, hD, true));
    EXPECT_EQ("cEba|", Walk(tree, hD, false)); // into a group from its last child on
    EXPECT_EQ("|dcEb", Walk(tree, hA, false));
    HLibraryItem hFound;
    EXPECT_EQ(EFind::eFound, FindInTree(
                                 tree, hG, {".", true, false, false}, [] { return false; }, hFound));
    EXPECT_EQ(".c", tree.GetItemText(hFound));
    // Beside other roots the walk still ends.
    const HLibraryItem hOther = tree.InsertGroup(".S", {});
    tree.InsertLeaf(".x", hOther, &tree);
    EXPECT_EQ("dcEba|", Walk(tree, tree.GetChildItem(hOther), false));
    EXPECT_EQ("|abEcd", Walk(tree, tree.GetChildItem(hOther), true));
    EXPECT_EQ(EFind::eNothing, FindInTree(
                                   CLibraryTree(), {}, {"x"}, [] { return true; }, hFound));
}

TEST(Find, AsksAtTheEndAndTellsWhatItDidNotFind)
{
    CTreeBench bench;
    bench.tree.SetItemText(bench.item("e"), "Fire2");
    bench.tree.SetItemText(bench.item("b"), "FIRE");
    bench.ctrl.Expand(bench.item("G"), false);
    bench.Select("aG");
    bench.ctrl.FindText("fire", false, false, true);
    EXPECT_EQ("[Fire2]", bench.sel()); // opened for it
    bench.ctrl.SelectAllItems(true, {});
    bench.ctrl.SetCaret(bench.item("d"));
    bench.Key(ETreeKey::eF3);
    EXPECT_EQ("[Fire2]", bench.sel()); // alone, also when it was selected before
    EXPECT_EQ(bench.item("Fire2"), bench.view.m_hScrolled);
    bench.prompts.onAsk("Finished parsing through to the end of the tree.  Would you like to start",
                        EAnswer::eYes);
    bench.ctrl.FindText("fire", true, false, true); // whole words: not Fire2
    EXPECT_EQ("[FIRE]", bench.sel());
    EXPECT_EQ("Reached End", bench.prompts.m_Asked[0].m_sCaption);
    bench.prompts.onAsk("Finished", EAnswer::eYes).onAsk("Cannot find 'fire'");
    EXPECT_EQ("[FIRE]", bench.Key(ETreeKey::eF3)); // the only one is where it began
    EXPECT_EQ("String Not Found", bench.prompts.m_Asked[2].m_sCaption);
    bench.prompts.onAsk("Finished", EAnswer::eNo);
    bench.ctrl.FindText("fire", false, true, true);
    bench.prompts.onAsk("Finished", EAnswer::eYes).onAsk("Cannot find '%1!s! 50%'");
    bench.ctrl.FindText("%1!s! 50%", false, true, false);
    bench.ctrl.FindText("", false, false, true); // nothing, and the last search stays
    EXPECT_EQ("%1!s! 50%", bench.ctrl.GetLastSearch().m_sText);
    EXPECT_EQ("[FIRE]", bench.sel());
}

TEST(Find, OneDialogForEachTree)
{
    CTreeBench bench;
    bench.Key(ETreeKey::eF3); // no search yet
    EXPECT_EQ(1, bench.view.m_nDialogs);
    bench.Key(ETreeKey::eF, c_Ctrl);
    EXPECT_EQ(1, bench.view.m_nDialogs);
    EXPECT_EQ(1, bench.view.m_nRaised);
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eF, {}}));
    bench.ctrl.ShowFindDialog(false);
    EXPECT_FALSE(bench.view.m_bDialogShown);
    bench.ctrl.OnFindNext({"e", false, false, true});
    EXPECT_EQ(1, bench.prompts.m_nWaits);
    bench.ctrl.OnFindDialogClosed();
    EXPECT_EQ(0, bench.view.m_nDialogs);
    bench.ctrl.ShowFindDialog(true);
    EXPECT_FALSE(bench.view.m_bDialogShown);
    bench.prompts.onAsk("Finished", EAnswer::eNo);
    EXPECT_EQ("[e]", bench.Key(ETreeKey::eF3)); // goes on without a dialog
}
