#include <functional>

#include "TreeBench.h"

TEST(TreeClicks, ShiftExtendsFromItsAnchorAndCtrlToggles)
{
    CTreeBench bench;
    EXPECT_EQ("[b]", bench.Click("b"));
    EXPECT_EQ(" +b! click", bench.log);
    EXPECT_EQ("b G c [d]", bench.Click("d", c_Shift));   // the caret is the anchor
    EXPECT_EQ("[a] b G c d", bench.Click("a", c_Shift)); // the same anchor; Shift keeps the others
    EXPECT_EQ("b G [c]", bench.Click("c", c_CtrlShift)); // and with Ctrl the range is all
    EXPECT_EQ("b G c [f]", bench.Click("f", c_Ctrl));
    EXPECT_EQ("b G c [-f]", bench.Click("f", c_Ctrl));   // keeps the focus
    EXPECT_EQ("b G c [e] f", bench.Click("e", c_Shift)); // Ctrl has reset the anchor: f again
    EXPECT_EQ("b G c [e] f", bench.Press(bench.view.Icon(bench.item("a")), c_Ctrl)); // nothing at the press
    bench.ctrl.OnMouseLost();
    EXPECT_EQ("b G c [e] f", bench.Release({0, 0}));

    // No anchor and no caret: the clicked one. A hidden anchor: what shows of it.
    bench.ctrl.SelectOnly({});
    bench.ctrl.SetCaret({});
    EXPECT_EQ("[c]", bench.Click("c", c_Shift));
    bench.ctrl.Expand(bench.item("G"), false);
    EXPECT_EQ("[b] G", bench.Click("b", c_Shift));
    // The only selected item's label edits, but not with Ctrl.
    bench.Click(bench.view.Label(bench.item("a")));
    EXPECT_EQ("[-a]", bench.Click(bench.view.Label(bench.item("a")), c_Ctrl));
    EXPECT_FALSE(bench.view.m_bTimer);
}

TEST(TreeClicks, SelectionIsKeptUntilTheReleaseAndCanBeDragged)
{
    CTreeBench bench;
    bench.Select("acd");
    const CPoint pt = bench.view.Icon(bench.item("c"));
    EXPECT_EQ("a [c] d", bench.Press(pt));
    bench.Move({pt.x + 4, pt.y - 4}); // within the limit
    EXPECT_EQ("", bench.log);
    bench.Move({pt.x + 5, pt.y});
    EXPECT_EQ(" drag c " + std::to_string(pt.x) + "," + std::to_string(pt.y), bench.log);
    EXPECT_FALSE(bench.ctrl.IsBusy());
    EXPECT_EQ("a [c] d", bench.Release(pt)); // nobody's
    EXPECT_EQ("[c]", bench.Click("c"));

    // With Ctrl a dragged item joins; a move without the button is a release.
    bench.log.clear();
    const CPoint ptF = bench.view.Label(bench.item("f"));
    bench.Press(ptF, c_Ctrl);
    EXPECT_EQ("c [f]", bench.Move({ptF.x, ptF.y + 5}));
    bench.Press(bench.view.Icon(bench.item("a")));
    EXPECT_EQ("[a]", (bench.ctrl.OnMove(bench.view.Icon(bench.item("a")), false), bench.sel()));
    EXPECT_FALSE(bench.ctrl.IsBusy());
    // While a press is tracked, nothing else begins, and Esc leaves it.
    bench.Press(bench.view.Icon(bench.item("b")));
    bench.ctrl.OnRightPress(bench.view.Icon(bench.item("f")), {});
    EXPECT_EQ("[b]", bench.Key(ETreeKey::eDown));
    bench.Key(ETreeKey::eEscape);
    EXPECT_FALSE(bench.ctrl.IsBusy());
}

TEST(TreeClicks, SecondClickOnTheLabelEditsAfterTheDoubleClickTime)
{
    CTreeBench bench;
    bench.Select("b");
    const CPoint pt = bench.view.Label(bench.item("b"));
    bench.Click(bench.view.Icon(bench.item("b")));
    EXPECT_FALSE(bench.view.m_bTimer); // never on the icon
    bench.Click(pt);
    EXPECT_TRUE(bench.view.m_bTimer);
    bench.ctrl.OnDoubleClick(pt, {}); // it was the first half of a double click
    bench.ctrl.OnEditTimer();
    EXPECT_FALSE(bench.view.m_bEditBox);
    EXPECT_NE(std::string::npos, bench.log.find(" double"));

    bench.log.clear();
    bench.Press(pt); // dragged by its label
    bench.Move({pt.x + 9, pt.y});
    EXPECT_EQ(0u, bench.log.find(" drag b"));
    bench.Click(pt);
    bench.Key(ETreeKey::eDown);
    bench.ctrl.OnEditTimer();
    EXPECT_FALSE(bench.view.m_bEditBox);
    bench.Select("b");
    bench.Click(pt);
    bench.ctrl.OnEditTimer();
    ASSERT_TRUE(bench.view.m_bEditBox);
    EXPECT_EQ("b", bench.view.m_sBox);

    // Whatever comes between keeps it from beginning.
    bench.ctrl.CancelEdit();
    const std::function<void()> c_Between[] = {
        [&] { bench.ctrl.OnFocusChange(false); },
        [&] { bench.ctrl.OnKey({}); },
        [&] { bench.ctrl.OnRightPress(bench.view.Label(bench.item("b")), {}); },
        [&] {
            bench.Press({300, 390}, c_Ctrl), bench.ctrl.OnMouseLost();
        },
        [&] { bench.ctrl.SetCaret({}), bench.ctrl.SetCaret(bench.item("b")); },
        [&] { bench.ctrl.SelectItem(bench.item("f"), true); },
        [&] { bench.ctrl.SelectItem(bench.item("b"), false), bench.ctrl.SelectItem(bench.item("f"), true); },
        [&] { bench.ctrl.OpenFindDialog(); },
        [&] { bench.ctrl.CancelModes(); },
        [&] { bench.Press(pt); },
        [&] { bench.ctrl.OnFocusChange(true); }, // but for this
    };
    for (const auto& between : c_Between)
    {
        bench.ctrl.OnMouseLost();
        bench.Select("b");
        bench.Click(pt);
        between();
        bench.ctrl.OnEditTimer();
        EXPECT_EQ(&between == &c_Between[10], bench.view.m_bEditBox) << &between - c_Between;
    }
    bench.ctrl.OnEditTimer();

    // A click elsewhere takes the text over before the caret moves; had that asked something, the press is gone.
    bench.view.m_sBox = "new";
    bench.log.clear();
    bench.view.m_bButton = false;
    bench.Click("a");
    EXPECT_EQ(" named new", bench.log);
    EXPECT_EQ("[b]", bench.sel());
    bench.view.m_bButton = true;
    EXPECT_FALSE(bench.ctrl.EditLabel(bench.item("R"))); // refused by the parent
    EXPECT_FALSE(bench.ctrl.EditLabel({}) || bench.ctrl.IsEditing());
    // Folding what is above takes it over, too; folding the edited group itself doesn't hide it.
    bench.ctrl.EditLabel(bench.item("e"));
    bench.ctrl.Expand(bench.item("G"), false);
    bench.ctrl.EditLabel(bench.item("G"));
    bench.ctrl.Expand(bench.item("G"), true), bench.ctrl.Expand(bench.item("G"), false);
    EXPECT_TRUE(bench.ctrl.IsEditing());
    bench.view.m_bFocus = false;
    bench.ctrl.OnUserExpand(bench.item("G"), true, false); // by hand, it is
    EXPECT_EQ("b [-G]", bench.sel());
    EXPECT_EQ(" close H open G close G named G open G", bench.log.substr(bench.log.find(" named e") + 8));
    // A gesture refuses it.
    bench.Press(bench.view.Icon(bench.item("a")));
    EXPECT_FALSE(bench.ctrl.EditLabel(bench.item("a")) || bench.view.m_bEditBox);
    EXPECT_TRUE(bench.view.m_bFocus);
}

TEST(TreeClicks, ButtonsDoubleClicksAndTheRightButton)
{
    CTreeBench bench;
    const HLibraryItem hG = bench.item("G");
    bench.Click(bench.view.Button(hG));
    EXPECT_FALSE(bench.ctrl.IsExpanded(hG));
    bench.ctrl.OnDoubleClick(bench.view.Icon(hG), c_Ctrl);
    EXPECT_TRUE(bench.ctrl.IsVisible(bench.item("e")));
    bench.ctrl.OnDoubleClick(bench.view.Button(hG), {}); // the second press of two: no opening
    EXPECT_FALSE(bench.ctrl.IsExpanded(hG));
    bench.log.clear();
    bench.ctrl.OnDoubleClick(bench.view.Right(bench.item("a")), {});
    bench.Press({300, 390}, c_Ctrl);
    bench.ctrl.OnDoubleClick(bench.view.Label(bench.item("a")), {}); // not while a gesture runs
    bench.ctrl.OnMouseLost();
    EXPECT_EQ(" click", bench.log);
    bench.ctrl.OnDoubleClick(bench.view.Label(hG), {});
    EXPECT_EQ(" click open G double", bench.log);
    bench.Click(bench.view.Button(hG));
    bench.Click(bench.view.Button(hG), c_Ctrl); // all of the branch
    EXPECT_TRUE(bench.ctrl.IsVisible(bench.item("e")));

    bench.ctrl.ExpandChildren(bench.item("R"), true, true);
    struct
    {
        const char* m_pszItem; // "": below all rows
        int32_t m_nPlace;      // 0 icon, 1 right of the label
        CModifiers m_Modifiers;
        const char* m_pszExpected; // from "a [b]"
    } const c_Cases[] = {
        {"a", 0, c_Plain, "[a] b"}, {"f", 0, c_Plain, "[f]"},    {"f", 1, c_Plain, "[-b]"},
        {"", 0, c_Plain, "[-b]"},   {"f", 0, c_Shift, "[-b] f"}, {"a", 1, c_Shift, "a [b]"},
        {"", 0, c_Shift, "a [b]"},  {"f", 0, c_Ctrl, "a [b]"},   {"", 0, c_Ctrl, "a [b]"},
    };
    for (const auto& c : c_Cases)
    {
        bench.Select("ab");
        const std::string sItem = c.m_pszItem;
        const CPoint pt =
            sItem.empty() ? CPoint{10, 390} : bench.view.At(bench.item(sItem), c.m_nPlace ? 200 : -8);
        bench.view.m_bFocus = false;
        bench.ctrl.OnRightPress(pt, c.m_Modifiers);
        EXPECT_TRUE(bench.view.m_bFocus);
        EXPECT_EQ(c.m_pszExpected, bench.sel()) << sItem << c.m_nPlace;
    }
}

TEST(TreeClicks, StylesLeaveCheckBoxesAndDragsAlone)
{
    CTreeBench bench({.m_ptDragLimit = {2, 7}, .m_bCheckBoxes = true, .m_bDisableDragDrop = true});
    bench.Select("a");
    const HLibraryItem hB = bench.item("b");
    bench.view.m_nExtraHit = eHit_StateIcon;
    EXPECT_FALSE(bench.ctrl.OnLeftPress(bench.view.Icon(hB), {})); // the view's own
    EXPECT_FALSE(bench.ctrl.IsBusy());
    bench.view.m_nExtraHit = 0;
    const CPoint pt = bench.view.Icon(hB);
    struct
    {
        int32_t x, y;
        bool m_bEnds;
    } const c_Moves[] = {{2, 7, false}, {-2, -7, false}, {3, 0, true},
                         {-3, 0, true}, {0, 8, true},    {0, -8, true}};
    for (const auto& move : c_Moves)
    {
        bench.Press(pt, c_Ctrl);
        bench.Move({pt.x + move.x, pt.y + move.y});
        EXPECT_EQ(move.m_bEnds, !bench.ctrl.IsBusy()) << move.x << "," << move.y;
        bench.ctrl.OnMouseLost();
    }
    EXPECT_EQ(" +b!", bench.log); // selected as for a drag, and none begins
    EXPECT_EQ("a [b]", bench.sel());
}
