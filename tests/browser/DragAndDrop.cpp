#include <functional>

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
        EXPECT_TRUE(effects.IsDragging() && effects.IsBusy());
    }
    void DropOn(const std::string& s) { DropAt(effectView.Right(item(s))); } // the whole row counts
    void DropAt(CPoint pt)
    {
        effects.OnMove(pt, true);
        effects.OnLeftRelease(pt);
        EXPECT_FALSE(effects.IsDragging() || effects.IsBusy() || effects.GetDropTarget());
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
    EXPECT_EQ(bench.item("H"), bench.effects.GetDropTarget()); // an effect's row is its group's
    EXPECT_EQ(8u, bench.effects.m_Tree.GetItemStateEx(bench.item("H"), 8));
    EXPECT_TRUE(bench.effects.IsBusy());
    for (const int32_t x : {-3, 403}) // beside the tree a drop opens
    {
        bench.effects.OnMove({x, bench.effectView.At(bench.item("b"), 0).y}, true);
        EXPECT_FALSE(bench.effects.GetDropTarget());
        EXPECT_EQ(0u, bench.effects.m_Tree.GetItemStateEx(bench.item("H"), 8));
    }
    // Nothing else begins meanwhile.
    bench.effects.Command(c_nCmdImportEffects);
    CBrowserBench::Key(bench.effects, ETreeKey::eDelete);
    EXPECT_TRUE(bench.effects.OnLeftPress(bench.effectView.Button(bench.item("T")), {}));
    bench.effects.OnRightPress(bench.effectView.Icon(bench.item("t")), {});
    bench.effects.OnDoubleClick(bench.effectView.Icon(bench.item("t")), {});
    EXPECT_FALSE(bench.effects.OnCharacter("t", 9));
    EXPECT_TRUE(bench.effects.m_Tree.IsExpanded(bench.item("T")));
    EXPECT_EQ("[d]", bench.sel());
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
    EXPECT_EQ(EDragCursor::eSeveralItems, bench.effectView.m_eCursor);
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

    // Esc and a lost mouse cancel, and so does all that leaves the page.
    const std::function<void()> c_Ends[] = {
        [&] { CBrowserBench::Key(bench.effects, ETreeKey::eEscape); },
        [&] { bench.effects.OnMouseLost(); },
        [&] {
            bench.effects.OnMove({900, 50}, false);
        },
        [&] { bench.effects.OnPageShown(false); },
        [&] { bench.effects.CancelModes(); },
        [&]
        {
            CEditScope scope(bench.edits, "New");
            scope.TouchLibrary();
            EXPECT_FALSE(bench.effects.IsDragging());
        },
    };
    for (const auto& end : c_Ends)
    {
        bench.Begin("c");
        bench.effects.OnMove(bench.effectView.Icon(bench.item("T")), true);
        end();
        EXPECT_EQ(EDragCursor::eNone, bench.effectView.m_eCursor);
        EXPECT_EQ(0u, bench.effects.m_Tree.GetItemStateEx(bench.item("T"), 8));
        EXPECT_FALSE(bench.effects.IsBusy());
        bench.effects.OnLeftRelease({900, 900});
    }
    EXPECT_TRUE(bench.documents.m_Open.empty());
    // The target may go before the drop.
    bench.Begin("c");
    bench.effects.OnMove(bench.effectView.Right(bench.item("T")), true);
    {
        CEditScope scope(bench.edits, "Other");
        scope.TouchEffectTree();
        bench.lib->m_EffectTree.InsertGroup("U", bench.item("G"));
        bench.effects.OnMove(bench.effectView.Right(bench.item("U")), true);
        bench.lib->m_EffectTree.DeleteItem(bench.item("U"));
    }
    bench.effects.OnLeftRelease(bench.effectView.Right(bench.item("T")));
    EXPECT_EQ(sBefore, bench.dump());
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
