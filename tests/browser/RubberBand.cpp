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
    EXPECT_FALSE(bench.view.m_Band || bench.ctrl.IsBusy() || bench.ctrl.OnWheel());

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

TEST(RubberBand, HoldsBothItsEndsAndNothingBeyond)
{
    // The label of d: from 64 to 72, rows of 20 from 100 on; that of G begins at 48.
    struct
    {
        CPoint m_ptFrom, m_ptTo;
        const char* m_pszExpected;
    } const c_Cases[] = {
        {{300, 105}, {72, 115}, ""},       {{300, 105}, {71, 115}, "d"},
        {{0, 105}, {63, 115}, ""},         {{0, 105}, {64, 115}, "d"},
        {{300, 119}, {70, 100}, "d"},      {{300, 99}, {70, 80}, "c"},
        {{300, 120}, {70, 139}, "H"},      {{300, 119}, {70, 120}, "d H"},
        {{300, 100}, {70, 99}, "c d"},     {{300, 390}, {300, INT32_MAX}, ""},
        {{0, 105}, {INT32_MAX, 105}, "d"}, {{0, 150}, {INT32_MIN, INT32_MIN}, ""},
    };
    for (const auto& c : c_Cases)
    {
        CTreeBench bench;
        bench.Select("f");
        bench.Band(c.m_ptFrom, {{c.m_ptFrom.x, c.m_ptFrom.y + 9}, c.m_ptTo}, c_Plain);
        bench.ctrl.SetCaret({});
        EXPECT_EQ(c.m_pszExpected, bench.sel()) << c.m_ptFrom.x << "," << c.m_ptFrom.y;
        bench.view.m_nTop = -500;
        bench.tree.DeleteItem(bench.item("d")); // the band is about no item
        EXPECT_TRUE(bench.ctrl.IsBusy());
        bench.ctrl.CancelModes();
        EXPECT_FALSE(bench.view.m_Band || bench.ctrl.IsBusy());
    }
    CTreeBench bench;
    bench.Select("ab");
    EXPECT_EQ("a [b]", bench.Band({300, 390}, {{300, 394}}));
    bench.ctrl.CancelModes(); // without effect
    EXPECT_EQ("a [b]", bench.sel());
    bench.Band({300, 390}, {{300, 394}}, c_CtrlShift);
    bench.ctrl.OnMouseLost(); // no band, but not a plain click either
    EXPECT_EQ("a [b]", bench.sel());
    bench.Band({300, 390}, {{300, 394}});
    bench.ctrl.OnMove({300, 394}, false); // released elsewhere: a click
    EXPECT_EQ("[-b]", bench.sel());
    // A pressed item that goes takes the press with it, and so does what is above it.
    for (const char* pszGone : {"c", "G"})
    {
        bench.Press(bench.view.Icon(bench.item(*pszGone == 'G' ? "e" : "c")));
        bench.tree.DeleteItem(bench.item(pszGone));
        EXPECT_FALSE(bench.ctrl.IsBusy());
    }
}
