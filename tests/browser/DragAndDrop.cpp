#include "BrowserBench.h"

namespace
{
struct CDragBench : CBrowserBench
{
    CDragBench() : CBrowserBench("[G [H b] a] [T t] c d") {}
    void Begin(const std::string& s)
    {
        const CPoint pt = effectView.Icon(item(s));
        effects.OnLeftPress(pt, {});
        effects.OnMove({pt.x + 9, pt.y}, true);
        EXPECT_TRUE(effects.m_bDragging && effectView.m_bCapture);
    }
    void DropOn(const std::string& s) { DropAt(effectView.Right(item(s))); } // the whole row counts
    void DropAt(CPoint pt)
    {
        effects.OnMove(pt, true);
        effects.OnLeftRelease(pt);
        EXPECT_FALSE(effects.m_bDragging || effectView.m_bCapture || effects.m_hDropTarget);
        EXPECT_EQ(EDragCursor::eNone, effectView.m_eCursor);
    }
};
} // namespace

TEST(DragAndDrop, MovesTheSelectionToTheHighlightedGroup)
{
    CDragBench bench;
    CScopeChecker checker(bench.context);
    bench.Select({"c"});
    bench.Begin("d"); // the dragged one alone
    EXPECT_EQ(EDragCursor::eOneItem, bench.effectView.m_eCursor);
    bench.effects.OnMove(bench.effectView.Icon(bench.item("b")), true);
    EXPECT_EQ(bench.item("H"), bench.effects.m_hDropTarget); // an effect's row is its group's
    EXPECT_EQ(8u, bench.effects.m_Tree.GetItemStateEx(bench.item("H"), 8));
    EXPECT_TRUE(bench.effects.IsBusy());
    for (const int32_t x : {-3, 403}) // beside the tree a drop opens
    {
        bench.effects.OnMove({x, bench.effectView.At(bench.item("b"), 0).y}, true);
        EXPECT_FALSE(bench.effects.m_hDropTarget);
        EXPECT_EQ(0u, bench.effects.m_Tree.GetItemStateEx(bench.item("H"), 8));
    }
    bench.effects.Command(c_nCmdImportEffects); // refused meanwhile
    CBrowserBench::Key(bench.effects, ETreeKey::eDelete);
    bench.DropOn("t");
    EXPECT_EQ("[[Effects]]\n  [G]\n    [H]\n      b\n    a\n  [T]\n    d\n    t\n  c\n", bench.dump());
    EXPECT_EQ("[-T]", bench.sel()); // the caret went with what moved
    checker.ExpectEdits(1);

    // Effects first, those of a selected group, too; nested groups stay in the outer one.
    bench.Select({"G", "H", "b"});
    bench.Begin("H");
    EXPECT_EQ(EDragCursor::eSeveralItems, bench.effectView.m_eCursor);
    bench.DropOn("T");
    EXPECT_EQ("[[Effects]]\n  [T]\n    [G]\n      [H]\n      a\n    b\n    d\n    t\n  c\n", bench.dump());
    EXPECT_EQ(0u, bench.effects.m_Tree.GetSelectedCount());

    // A group into what is below it: refused; the others move.
    bench.effects.m_Tree.ExpandChildren(bench.item("T"), true, true);
    bench.Select({"T", "c"});
    bench.Begin("T");
    bench.DropOn("a"); // not selected, in G of T
    EXPECT_EQ("[[Effects]]\n  [T]\n    [G]\n      [H]\n      a\n      c\n    b\n    d\n    t\n",
              bench.dump());
    EXPECT_EQ("[T]", bench.sel());
}

TEST(DragAndDrop, WithoutATargetNothingIsLost)
{
    CDragBench bench;
    CScopeChecker checker(bench.context);
    const std::string sBefore = bench.dump();
    bench.Select({"G", "c"});
    bench.Begin("G");
    bench.effects.OnMove(bench.effectView.Icon(bench.item("T")), true);
    bench.DropOn("c"); // a selected item is none
    bench.Begin("G");
    bench.DropAt({10, 390}); // below the rows
    bench.Select({"[Effects]"});
    bench.Begin("[Effects]");
    bench.DropOn("T"); // the root stays
    EXPECT_EQ(sBefore, bench.dump());
    bench.Select({"c"});
    bench.Begin("c");
    bench.DropOn("[Effects]"); // it is there already
    EXPECT_EQ("[c]", bench.sel());
    checker.ExpectEdits(0);

    // Esc and a lost mouse cancel.
    for (int i = 0; i < 2; ++i)
    {
        bench.Begin("c");
        bench.effects.OnMove(bench.effectView.Icon(bench.item("T")), true);
        if (i == 0)
            CBrowserBench::Key(bench.effects, ETreeKey::eEscape);
        else
            bench.effects.OnMouseLost();
        EXPECT_FALSE(bench.effects.m_bDragging || bench.effectView.m_bCapture);
        bench.effects.OnLeftRelease({900, 900});
    }
    EXPECT_TRUE(bench.documents.m_Open.empty());
    // Out of the tree: opens.
    bench.Begin("c");
    bench.DropAt({900, 50});
    EXPECT_EQ(std::vector<std::string>{"c"}, bench.documents.m_Titles);
    EXPECT_EQ(sBefore, bench.dump());
}

TEST(DragAndDrop, ALeafBesideTheRootComesToWhereItIsSaved)
{
    CDragBench bench;
    CSpell* pStray = bench.lib->m_SpellMgr.AddSpell();
    {
        CEditScope scope(bench.edits, "Load");
        scope.TouchLibrary();
        pStray->SetName("stray");
        bench.lib->m_EffectTree.InsertLeaf("stray", {}, pStray);
    }
    bench.Select({"stray"});
    bench.Begin("stray");
    bench.DropOn("T");
    EXPECT_EQ(bench.item("T"),
              bench.lib->m_EffectTree.GetParentItem(bench.lib->m_EffectTree.FindData(pStray)));
}
