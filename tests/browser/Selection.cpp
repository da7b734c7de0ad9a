#include "TreeBench.h"

TEST(TreeSelection, CaretAndSelectedBitAreApart)
{
    // The bits to set, the mask, and the selection behind it, starting from a and b selected, the caret on b.
    struct
    {
        const char* m_pszItem;
        uint32_t m_nState, m_nMask;
        const char* m_pszExpected;
        const char* m_pszLog;
    } const c_Cases[] = {
        {"f", 1, 1, "a b [-f]", ""},    // the caret alone
        {"b", 0, 1, "a b", ""},         // no caret
        {"f", 0, 1, "a [b]", ""},       // it isn't the caret
        {"f", 3, 3, "a b [f]", " +f!"}, // both
        {"b", 3, 3, "a [b]", ""},       // nothing new, nothing said
        {"b", 1, 3, "a [-b]", " -b!"},  // caret kept, deselected
        {"b", 2, 3, "a b", ""},         // selected, not the caret any more
        {"f", 2, 2, "a [b] f", " +f!"}, // the bit alone
        {"a", 0, 2, "[b]", " -a!"},     {"f", 16, 18, "a [b]", ""},
    };
    for (const auto& c : c_Cases)
    {
        CTreeBench bench;
        bench.Select("ab");
        EXPECT_TRUE(bench.ctrl.SetItemStateEx(bench.item(c.m_pszItem), c.m_nState, c.m_nMask));
        EXPECT_EQ(c.m_pszExpected, bench.sel()) << c.m_pszItem << c.m_nState << c.m_nMask;
        EXPECT_EQ(c.m_pszLog, bench.log) << c.m_pszItem << c.m_nState << c.m_nMask;
    }
    CTreeBench bench;
    bench.Select("ab");
    EXPECT_FALSE(bench.ctrl.SetItemStateEx({}, 3, 3));
    EXPECT_TRUE(bench.ctrl.SetItemStateEx(bench.item("f"), 8 + 16, 8 + 16));
    EXPECT_EQ(16u, bench.ctrl.GetItemStateEx(bench.item("f"), 16 + 2 + 1));
    EXPECT_EQ(3u, bench.ctrl.GetItemStateEx(bench.item("b"), 3 + 16));
    EXPECT_EQ(0u, bench.ctrl.GetItemStateEx(HLibraryItem{99}, ~0u) | bench.ctrl.GetItemStateEx({}, ~0u));
    bench.ctrl.Expand(bench.item("G"), false);
    EXPECT_TRUE(bench.ctrl.SetItemStateEx(bench.item("e"), 0, 2)); // it isn't: nothing opens
    EXPECT_FALSE(bench.ctrl.IsExpanded(bench.item("G")));
    bench.ctrl.SetItemStateEx(bench.item("f"), 0, 8);
    bench.refused = "f"; // the caret has moved by then
    EXPECT_FALSE(bench.ctrl.SetItemStateEx(bench.item("f"), 3, 3));
    EXPECT_EQ("a b [-f]", bench.sel());
    EXPECT_FALSE(bench.ctrl.SelectOnly(bench.item("f")));
    EXPECT_EQ("[-f]", bench.sel());

    // Whoever is asked may do it himself, or take the item away.
    bench.refused = "";
    bench.log.clear();
    bench.onChanging = [&] { bench.ctrl.SelectItem(bench.item("a"), true); };
    EXPECT_TRUE(bench.ctrl.SelectItem(bench.item("a"), true));
    EXPECT_EQ(" +a +a!!", bench.log);
    EXPECT_EQ(1u, bench.ctrl.GetSelectedCount());
    bench.onChanging = [&] { bench.tree.DeleteItem(bench.item("b")); };
    EXPECT_FALSE(bench.ctrl.SelectItem(bench.item("b"), true));
    EXPECT_EQ("a [-f]", bench.sel());
    // So may whoever takes over the text that was typed for the caret.
    bench.ctrl.EditLabel(bench.item("a"));
    bench.onNamed = [&] { bench.tree.DeleteItem(bench.item("e")); };
    bench.log.clear();
    EXPECT_FALSE(bench.ctrl.SetItemStateEx(bench.item("e"), 3, 3));
    EXPECT_EQ(" named a", bench.log);
    EXPECT_EQ("[a]", bench.sel());
}

TEST(TreeSelection, VisibleOrderGoesBothWays)
{
    CTreeBench bench;
    const CMultiSelectTreeCtrl& ctrl = bench.ctrl;
    const auto walk = [&](bool bDown)
    {
        std::string sWalk;
        HLibraryItem h = bench.item(bDown ? "R" : "f");
        for (; h; h = bDown ? ctrl.NextVisible(h) : ctrl.PrevVisible(h))
            sWalk += bench.tree.GetItemText(h);
        return sWalk;
    };
    EXPECT_EQ("RabGcdHef", walk(true));
    EXPECT_EQ("feHdcGbaR", walk(false));
    bench.ctrl.Expand(bench.item("H"), false);
    EXPECT_EQ("fHdcGbaR", walk(false));
    bench.log.clear();
    bench.ctrl.Expand(bench.item("G"), false);
    EXPECT_EQ("fGbaR", walk(false));
    EXPECT_FALSE(ctrl.IsVisible(bench.item("H")) || ctrl.IsVisible(HLibraryItem{99}));
    // Opened from above, closed from below, each told once; what is so already isn't told.
    bench.ctrl.ExpandChildren(bench.item("R"), true, false);
    EXPECT_FALSE(ctrl.IsExpanded(bench.item("H")));
    bench.ctrl.ExpandChildren(bench.item("R"), true, true);
    bench.ctrl.ExpandChildren(bench.item("G"), false, false);
    bench.ctrl.EnsureVisible(bench.item("e"));
    EXPECT_EQ(bench.item("e"), bench.view.m_hScrolled);
    EXPECT_FALSE(bench.ctrl.Expand(bench.item("G"), true));
    bench.ctrl.ExpandChildren(bench.item("R"), false, true);
    bench.ctrl.Expand(bench.item("H"), true); // with what is above it
    EXPECT_TRUE(ctrl.IsVisible(bench.item("e")));
    EXPECT_EQ(" close G open G open H close H open H close H close G open G open H", bench.log);
}

TEST(TreeSelection, WholeSelectionsGoByTheVisibleOrder)
{
    CTreeBench bench;
    CMultiSelectTreeCtrl& ctrl = bench.ctrl;
    bench.Select("f");
    EXPECT_EQ("b G c d [f]", (ctrl.SelectRange(bench.item("d"), bench.item("b"), true), bench.sel()));
    EXPECT_EQ(" +b! +G! +c! +d!", bench.log);
    EXPECT_EQ("c d H [-f]", (ctrl.SelectRange(bench.item("c"), bench.item("H"), false), bench.sel()));
    EXPECT_EQ("a [-f]", (ctrl.SelectRange(bench.item("a"), bench.item("a"), false), bench.sel()));

    bench.log.clear();
    ctrl.SelectAllItems(false, bench.item("a"));
    EXPECT_EQ("", bench.log); // no needless word
    EXPECT_EQ("R a b c d H e [f]", (ctrl.SelectAllItems(true, bench.item("G")), bench.sel()));
    EXPECT_TRUE(ctrl.SelectOnly(bench.item("c"))); // keeps the others
    EXPECT_EQ(8u, ctrl.GetSelectedCount());
    EXPECT_EQ(0u, ctrl.CountFiltered(-1));
    ctrl.m_pfnFilter = [](const CMultiSelectTreeCtrl& t, HLibraryItem h, int32_t n, uint32_t nData)
    { return t.GetItemKind(h) == int(nData) && n == -1; };
    ctrl.m_pFilterData = 2;
    EXPECT_EQ(6u, ctrl.CountFiltered(-1));
    EXPECT_FALSE(ctrl.SelectOnly({}));
    EXPECT_EQ("[-f]", bench.sel());
    EXPECT_EQ("R a b G c d H e [-f]", (ctrl.SelectAllItems(true, bench.item("f")), bench.sel()));
    ctrl.SelectOnly({});

    ctrl.SetItemStateEx(bench.item("e"), 1, 1);
    EXPECT_TRUE(ctrl.SelectChildren(bench.item("G"), true, true));
    EXPECT_EQ("c d H [e]", bench.sel());
    EXPECT_FALSE(ctrl.SelectChildren(bench.item("G"), false, false));
    EXPECT_EQ("[e]", bench.sel());
}

TEST(TreeSelection, CollapsingDeselectsWhatItHides)
{
    CTreeBench bench;
    CMultiSelectTreeCtrl& ctrl = bench.ctrl;
    // A caret far below goes; the group itself stays as it was.
    bench.Select("ade");
    EXPECT_TRUE(ctrl.Expand(bench.item("G"), false));
    EXPECT_EQ("a", bench.sel());
    EXPECT_FALSE(ctrl.IsExpanded(bench.item("H")));
    ctrl.OnUserExpand(bench.item("G"), true, true); // Ctrl: all of it
    EXPECT_TRUE(ctrl.IsVisible(bench.item("e")));
    bench.Select("Ge");
    EXPECT_EQ("[G]", (ctrl.OnUserExpand(bench.item("G"), false, false), bench.sel()));
    ctrl.OnUserExpand(bench.item("G"), true, false);
    EXPECT_FALSE(ctrl.IsVisible(bench.item("e")));
    EXPECT_FALSE(ctrl.Expand(bench.item("a"), true)); // nothing to show

    // What can't be deselected can't be hidden.
    bench.Select("d");
    bench.refused = "d";
    EXPECT_FALSE(ctrl.Expand(bench.item("G"), false));
    EXPECT_EQ("[d]", bench.sel());
    bench.refused = "";

    // The caret opens what is above it, and selecting does, too.
    ctrl.Expand(bench.item("R"), false);
    EXPECT_TRUE(ctrl.SetCaret(bench.item("e")));
    EXPECT_EQ("[-e]", bench.sel());
    ctrl.Expand(bench.item("R"), false);
    EXPECT_EQ("e", (ctrl.SetItemStateEx(bench.item("e"), 2, 2), bench.sel()));

    // Widening: selected items inside selected groups, leaves between.
    bench.Select("aGcHf");
    EXPECT_EQ("a G c d H e [f]", (ctrl.WidenSelection(), bench.sel()));
    EXPECT_EQ(" +d! +e!", bench.log);
    bench.tree.InsertLeaf("z", bench.tree.InsertGroup("I", bench.item("R")), &bench);
    bench.Select("GcI");
    EXPECT_EQ("G c d H e [I] z", (ctrl.WidenSelection(), bench.sel()));
    bench.tree.DeleteItem(bench.item("I"));
    ctrl.Expand(bench.item("R"), false);
    bench.Select("R");
    ctrl.WidenSelection();
    EXPECT_EQ(9u, ctrl.GetSelectedCount());
}

TEST(TreeSelection, DeletedItemsLeaveNothingBehind)
{
    CTreeBench bench;
    CMultiSelectTreeCtrl& ctrl = bench.ctrl;
    bench.Select("acde");
    const HLibraryItem hDead = bench.item("e");
    bench.tree.DeleteItem(bench.item("G")); // the caret was inside: the next one, not selected
    EXPECT_EQ("a [-f]", bench.sel());
    EXPECT_EQ(1u, ctrl.GetSelectedCount());
    EXPECT_FALSE(ctrl.SetItemStateEx(hDead, 3, 3));
    EXPECT_EQ("a [-b]", (bench.tree.DeleteItem(bench.item("f")), bench.sel()));
    bench.tree.DeleteItem(bench.item("a"));
    EXPECT_EQ("[-R]", (bench.tree.DeleteItem(bench.item("b")), bench.sel()));
    EXPECT_FALSE(ctrl.IsExpanded(bench.item("R")));

    // Clearing ends what runs.
    bench.tree.InsertLeaf("x", bench.item("R"), &bench);
    ctrl.Expand(bench.item("R"), true);
    bench.Band({300, 5}, {{300, 60}, {34, 5}});
    bench.tree.DeleteAllItems();
    EXPECT_FALSE(bench.view.m_Band || ctrl.IsBusy() || ctrl.GetCaret());
    bench.tree.InsertGroup("N", {});
    ctrl.SetItemStateEx(bench.item("N"), 3, 3);
    ctrl.EditLabel(bench.tree.InsertLeaf("x", bench.item("N"), &bench));
    EXPECT_TRUE(bench.view.m_bEditBox);
    bench.log.clear();
    bench.tree.DeleteItem(bench.item("x"));
    EXPECT_FALSE(bench.view.m_bEditBox);
    EXPECT_EQ("", bench.log);
}
