#include "TreeBench.h"

TEST(TreeKeys, ArrowsMoveExtendAndShrink)
{
    CTreeBench bench;
    EXPECT_EQ("[R]", bench.Key(ETreeKey::eUp)); // no caret: the root
    bench.Select("af");
    bench.ctrl.SetCaret(bench.item("a"));
    EXPECT_EQ("[b]", bench.Key(ETreeKey::eDown));
    EXPECT_EQ("b [G]", bench.Key(ETreeKey::eDown, c_Shift));
    EXPECT_EQ("b G [c]", bench.Key(ETreeKey::eDown, c_Shift));
    EXPECT_EQ("b [G]", bench.Key(ETreeKey::eUp, c_Shift));
    EXPECT_EQ("[b]", bench.Key(ETreeKey::eUp, c_Shift));
    bench.log.clear();
    EXPECT_EQ("[a] b", bench.Key(ETreeKey::eUp, c_CtrlShift)); // beyond the anchor
    EXPECT_EQ(" +a!", bench.log);
    EXPECT_EQ("a [-b]",
              (bench.Key(ETreeKey::eUp, c_Shift), bench.Select("a"), bench.Key(ETreeKey::eDown, c_Ctrl)));
    EXPECT_EQ("a [-G]", bench.Key(ETreeKey::eDown, c_Ctrl));
    EXPECT_EQ("a b [G]", (bench.Key(ETreeKey::eDown, c_Ctrl), bench.Key(ETreeKey::eUp, c_Shift)))
        << "Ctrl with an arrow sets the anchor";

    bench.Select("f");
    EXPECT_EQ("[f]", bench.Key(ETreeKey::eDown));
    bench.ctrl.SetItemStateEx(bench.item("f"), 1, 3);
    EXPECT_EQ("[-f]", bench.Key(ETreeKey::eDown, c_Ctrl)); // the end: stays
    EXPECT_EQ("[f]", bench.Key(ETreeKey::eDown, c_Shift));
    bench.ctrl.SetCaret({});
    EXPECT_EQ("[R] f", bench.Key(ETreeKey::eUp, c_Shift));

    // An anchor that a collapse has hidden counts as its group.
    bench.Select("e");
    bench.Key(ETreeKey::eDown, c_Ctrl);
    bench.ctrl.Expand(bench.item("G"), false);
    EXPECT_EQ("[G] f", bench.Key(ETreeKey::eUp, c_Shift));
}

TEST(TreeKeys, OtherKeysTravelLikePlainArrows)
{
    CTreeBench bench;
    bench.Select("abc");
    EXPECT_EQ("[f]", bench.Key(ETreeKey::eEnd));
    EXPECT_EQ("[G]", bench.Key(ETreeKey::ePageUp) == "[c]" ? bench.Key(ETreeKey::eLeft) : "?");
    EXPECT_EQ("[c]", bench.Key(ETreeKey::eRight));
    EXPECT_EQ("[H]", (bench.Key(ETreeKey::eDown), bench.Key(ETreeKey::eDown)));
    bench.Key(ETreeKey::eLeft);
    EXPECT_FALSE(bench.ctrl.IsExpanded(bench.item("H")));
    EXPECT_EQ("[G]", bench.Key(ETreeKey::eBackspace));
    bench.Key(ETreeKey::eMinus);
    bench.Key(ETreeKey::eMultiply);
    EXPECT_TRUE(bench.ctrl.IsVisible(bench.item("e")));
    EXPECT_EQ("[R]", bench.Key(ETreeKey::eHome));
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eEnd, c_Ctrl})); // scrolls
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eDown, {}, true}));

    bench.tree.SetItemText(bench.item("d"), "cx");
    EXPECT_EQ("[c]", (bench.ctrl.OnCharacter("C", 5000), bench.sel()));
    EXPECT_EQ("[cx]", (bench.ctrl.OnCharacter("c", 5100), bench.sel())); // the next with that letter
    bench.ctrl.OnCharacter("c", 9000);
    EXPECT_EQ("[cx]", (bench.ctrl.OnCharacter("x", 9100), bench.sel()));
    EXPECT_EQ("[cx]", (bench.ctrl.OnCharacter("z", 9200), bench.sel())); // nothing begins so
    EXPECT_FALSE(bench.ctrl.OnCharacter("\r", 9300));

    bench.Select("ab");
    bench.Key(ETreeKey::eF2); // only with one
    EXPECT_FALSE(bench.view.m_bEditBox);
    bench.Select("b");
    bench.ctrl.SetCaret(bench.item("a")); // the caret is edited, whatever is selected
    bench.Key(ETreeKey::eF2);
    EXPECT_EQ("a", bench.view.m_sBox);
    bench.ctrl.CancelEdit();
}
