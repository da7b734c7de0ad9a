#include "TreeBench.h"

// Rows from the top: R a b G c d H e f.

TEST(RubberBand, SelectsWhatItTouchesAndFallsBackBehindIt)
{
    CTreeBench bench;
    bench.Select("f");
    EXPECT_EQ("[f]", bench.Band({300, 25}, {{300, 29}, {296, 25}})); // within the limit: nothing yet
    EXPECT_FALSE(bench.view.m_Band);
    EXPECT_EQ("[-f]", bench.Move({300, 30})); // it begins, at its start
    EXPECT_EQ((CRect{300, 25, 301, 26}), bench.view.m_Band);
    EXPECT_TRUE(bench.ctrl.OnWheel());
    EXPECT_EQ("a b G [-f]", bench.Move({50, 75}));
    EXPECT_EQ((CRect{50, 25, 301, 76}), bench.view.m_Band);
    EXPECT_EQ("a b [-f]", bench.Move({50, 45}));
    bench.Key(ETreeKey::eF2); // swallowed
    bench.log.clear();
    bench.Release({50, 50});
    EXPECT_EQ(" click", bench.log);
    EXPECT_FALSE(bench.view.m_Band || bench.view.m_bCapture || bench.ctrl.OnWheel());

    // A straight line holds both its ends; a release behind one far move is a move, too.
    bench.Band({48, 200}, {{48, 150}});
    EXPECT_EQ("b G [f]", bench.Release({48, 59})); // c and d begin further right
    bench.Press({300, 390});
    EXPECT_EQ("[-f]", bench.Release({300, 390})); // a click on empty space
    // Labels above the window count.
    bench.view.m_nTop = -100;
    EXPECT_EQ("R a b G c d H e [f]", bench.Band({300, 390}, {{0, 300}, {34, -95}}));
    bench.ctrl.OnMouseLost(); // ends as a release does
    EXPECT_EQ(9u, bench.ctrl.GetSelectedCount());
}

TEST(RubberBand, CtrlInvertsAndShiftAdds)
{
    CTreeBench bench;
    bench.Select("abc");
    EXPECT_EQ("a b [c]", bench.Band({300, 45}, {{300, 55}}, c_Ctrl));
    EXPECT_EQ("a G [-c]", bench.Move({50, 90})); // b and c off, G on
    EXPECT_EQ("a G [c]", bench.Move({50, 70}));  // c is back
    EXPECT_EQ("a b [c]", bench.Release({300, 46}));

    // Shift: one of the old selection that the band has touched goes with it; one never touched stays.
    EXPECT_EQ("a b G [c]", bench.Band({300, 45}, {{300, 55}, {50, 70}}, c_Shift));
    EXPECT_EQ("a [c]", bench.Move({300, 46}));
    EXPECT_EQ("a [c]", bench.Release({300, 46}));
    bench.Press({300, 390}, c_Shift); // a click with Shift clears nothing
    EXPECT_EQ("a [c]", bench.Release({300, 390}));

    // Esc clears all, and what follows is nobody's.
    bench.log.clear();
    bench.Band({300, 45}, {{300, 55}, {50, 50}}, c_Ctrl);
    EXPECT_EQ("[-c]", bench.Key(ETreeKey::eEscape));
    EXPECT_FALSE(bench.view.m_Band);
    bench.Move({50, 90});
    EXPECT_EQ("[-c]", bench.Release({50, 90}));
    EXPECT_EQ(bench.log.find(" click"), bench.log.rfind(" click"));
    bench.Press(bench.view.At(bench.item("c"), -40)); // the indent is empty space
    EXPECT_TRUE(bench.ctrl.IsBusy());
    EXPECT_EQ("[-c]", bench.Release(bench.view.At(bench.item("c"), -40)));
}
