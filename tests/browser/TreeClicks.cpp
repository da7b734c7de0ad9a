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
    EXPECT_FALSE(bench.view.m_bCapture);
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
    EXPECT_FALSE(bench.ctrl.IsBusy() || bench.view.m_bCapture);
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

    // A click elsewhere takes the text over before the caret moves; had that asked something, the press is gone.
    bench.view.m_sBox = "new";
    bench.log.clear();
    bench.view.m_bButton = false;
    bench.Click("a");
    EXPECT_EQ(" named new", bench.log);
    EXPECT_EQ("[b]", bench.sel());
    bench.view.m_bButton = true;
    EXPECT_FALSE(bench.ctrl.EditLabel(bench.item("R"))); // refused by the parent
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
    EXPECT_EQ("", bench.log);

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
        bench.ctrl.OnRightPress(pt, c.m_Modifiers);
        EXPECT_EQ(c.m_pszExpected, bench.sel()) << sItem << c.m_nPlace;
    }
}
