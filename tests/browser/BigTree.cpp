#include <chrono>
#include <cstdio>

#include "BrowserBench.h"

// A library of a hundred thousand items stays below a tenth of a second for what a person does all the time.
// The bounds here are wide, since a debug build on a busy machine is slow: they catch a walk within a walk.
TEST(BigTree, WalksStayLinear)
{
    CBrowserBench bench("Smoke");
    CEffectTree& tree = bench.lib->m_EffectTree;
    CMultiSelectTreeCtrl& ctrl = bench.effects.m_Tree;
    CSpell* pSpell = bench.lib->m_SpellMgr.FindSpell("Smoke");
    CSpell last;
    last.SetName("a");
    const auto measure = [](const char* pszWhat, const std::function<void()>& run)
    {
        const auto start = std::chrono::steady_clock::now();
        run();
        const double fMs =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        std::printf("%-24s %7.1f ms\n", pszWhat, fMs);
        EXPECT_LT(fMs, 5000) << pszWhat;
    };
    std::vector<HLibraryItem> items;
    measure("fill",
            [&]
            {
                HLibraryItem hGroup = tree.GetRootItem();
                for (int i = 0; i < 100000; ++i)
                {
                    if (i % 100 == 0)
                        hGroup = tree.InsertGroup("Group", i % 1000 ? hGroup : tree.GetRootItem());
                    tree.InsertLeaf("Effect " + std::to_string(i), hGroup, i % 3 ? pSpell : &last);
                }
            });
    measure("expand all", [&] { ctrl.ExpandChildren(tree.GetRootItem(), true, true); });
    measure("select all", [&] { ctrl.SelectAllItems(true, {}); });
    ctrl.GetSelectedItems(items);
    EXPECT_EQ(101002u, items.size());
    measure("widen", [&] { ctrl.WidenSelection(); });
    measure("find", [&] { ctrl.FindText("effect 99999", true, false, true); });
    EXPECT_EQ("[Effect 99999]", SelectionOf(ctrl));
    CEffectEditor editor(bench.context);
    measure("sort", [&] { editor.Sort(); });
    bench.effectView.m_nTop = 30;
    measure("rubber band",
            [&]
            {
                bench.effects.OnLeftPress({300, 5}, c_Ctrl);
                bench.effects.OnMove({300, 15}, true);
                for (int i = 0; i < 10; ++i)
                    bench.effects.OnMove({40, 35 + i}, true);
                bench.effects.OnLeftRelease({40, 45});
            });
    measure("collapse", [&] { ctrl.SelectAllItems(true, {}), ctrl.Expand(tree.GetRootItem(), false); });
    EXPECT_EQ("[[Effects]]", SelectionOf(ctrl).substr(0, 11));
    tree.DeleteAllItems();

    // A chain of groups as deep as that: nothing recurses, nothing climbs for each.
    HLibraryItem h = tree.InsertGroup("x", {});
    const HLibraryItem hTop = h;
    for (int i = 0; i < 100000; ++i)
        h = tree.InsertGroup("x", h);
    ctrl.SelectOnly(hTop);
    measure("deep: widen", [&] { ctrl.WidenSelection(), ctrl.WidenSelection(); });
    EXPECT_EQ(100001u, ctrl.GetSelectedCount());
    measure("deep: collapse", [&] { ctrl.Expand(hTop, false); });
    measure("deep: delete", [&] { tree.DeleteItem(tree.GetChildItem(hTop)); });
    tree.DeleteAllItems();
    tree.InsertLeaf("Smoke", tree.InsertGroup("[Effects]", {}), pSpell);
}
