#include "BrowserBench.h"
#include "support/HistoryBench.h"

TEST(PrefabPanel, FirstNewPrefabBecomesActive)
{
    CBrowserBench bench("Smoke");
    CScopeChecker checker(bench.context);
    bench.Run(bench.prefabs, {"[Prefabs]"}, c_nCmdNewPrefab); // no type was chosen
    EXPECT_EQ("[[Prefabs]]\n", bench.prefabDump());
    bench.host.m_pChosen = bench.lib->Module().FindType("Sprite");
    bench.prefabs.Command(c_nCmdNewPrefab);
    checker.ExpectEdits(1);
    CEffectPropertySet* pFirst = bench.prefabs.GetActivePrefab();
    ASSERT_TRUE(pFirst);
    EXPECT_EQ("Sprite", bench.prefabView.m_sBox);
    EXPECT_EQ("Textures\\Smoke.Texture00a", TextOf(*pFirst, "Texture"));
    bench.Type(bench.prefabs, bench.prefabView, "Zeppelin");
    bench.Run(bench.prefabs, {"[Prefabs]"}, c_nCmdNewPrefab);
    bench.Type(bench.prefabs, bench.prefabView, "", c_nControlCancel);
    bench.Run(bench.prefabs, {"[Prefabs]"}, c_nCmdNewPrefab);
    EXPECT_EQ("Sprite_1", bench.prefabView.m_sBox);
    bench.prompts.onAsk("A prefab with the name 'zeppelin' already exists.");
    bench.Type(bench.prefabs, bench.prefabView, "zeppelin");
    EXPECT_EQ("Error Renaming Prefab", bench.prompts.m_Asked[0].m_sCaption);
    EXPECT_EQ(pFirst, bench.prefabs.GetActivePrefab());
    bench.prefabs.Command(c_nCmdRenameItem);
    bench.Type(bench.prefabs, bench.prefabView, std::string(300, 'y')); // longer than an effect's may be
    EXPECT_EQ(255u, bench.lib->m_SpellMgr.Prefabs()[2]->m_sName.size());
    EXPECT_EQ("[[Prefabs]]\n  Sprite\n  " + std::string(255, 'y') + "\n  Zeppelin\n", bench.prefabDump());

    const auto canSet = [&](const std::vector<std::string>& names)
    {
        bench.Select(bench.prefabs, names);
        return bench.prefabs.GetMenu()[9].m_bEnabled;
    };
    EXPECT_EQ(c_nCmdSetActivePrefab, bench.prefabs.GetMenu()[9].m_nID);
    EXPECT_FALSE(canSet({"[Prefabs]"}) || canSet({"Sprite", "Zeppelin"}) || canSet({}));
    EXPECT_TRUE(canSet({"Sprite"}));
    bench.prefabs.Command(c_nCmdSetActivePrefab);
    EXPECT_EQ("Sprite", bench.prefabs.GetActivePrefab()->m_sName);
    bench.prefabs.m_Tree.SetCaret(bench.prefab("[Prefabs]"));
    bench.prefabs.OnSetActivePrefab(); // a group: nothing
    bench.CheckModel();

    // Gone with its item: the next new one takes over, a copy doesn't.
    bench.prompts.onAsk("0 groups selected.\n1 prefabs selected.", EAnswer::eOk);
    bench.prefabs.OnDeleteSelection();
    EXPECT_FALSE(bench.prefabs.GetActivePrefab());
    bench.Run(bench.prefabs, {"Zeppelin"}, c_nCmdDuplicate);
    EXPECT_EQ("[Zeppelin_1]", SelectionOf(bench.prefabs.m_Tree));
    EXPECT_FALSE(bench.prefabs.GetActivePrefab());
    bench.Run(bench.prefabs, {"[Prefabs]"}, c_nCmdNewPrefab);
    EXPECT_EQ("Sprite", bench.prefabs.GetActivePrefab()->m_sName);
    bench.prefabs.CancelModes();
}

TEST(PrefabPanel, OpensOneEditorAfterTheOther)
{
    CBrowserBench bench("", "a b c d e f");
    bench.host.m_bAccept = false; // Cancel goes on with the next
    bench.Select(bench.prefabs, {"[Prefabs]"});
    bench.prompts.onAsk(
        "You currently have 6 prefabs in the selection...\n\nDo you really want to open these for editing?",
        EAnswer::eOk);
    CBrowserBench::Key(bench.prefabs, ETreeKey::eEnter);
    ASSERT_EQ(6u, bench.host.m_Edited.size());
    EXPECT_EQ("f", bench.host.m_Edited[5]->m_sName);
    bench.prompts.onAsk("6 prefabs in the selection...\n\nDo you really want to duplicate", EAnswer::eNo);
    bench.prefabs.OnDuplicate();
    bench.Select(bench.prefabs, {});
    bench.prompts.onAsk("No prefabs are selected for copying...")
        .onAsk("No prefabs are selected for opening...");
    bench.prefabs.OnDuplicate();
    bench.prefabs.OnOpenPrefabs();
    std::string sCaptions;
    for (const auto& asked : bench.prompts.m_Asked)
        sCaptions += asked.m_sCaption + "|";
    EXPECT_EQ("Open Prefabs?|Duplicate Prefabs?|Prefab Duplicate Error|Prefab Open Error|", sCaptions);
}

TEST(PrefabPanel, ActivePrefabFollowsItsItem)
{
    CBrowserBench bench("", "[G [H a]] b [T]");
    CHistoryBench undo(bench.context);
    bench.Run(bench.prefabs, {"a"}, c_nCmdSetActivePrefab);
    CEffectPropertySet* pActive = bench.prefabs.GetActivePrefab();
    const HLibraryItem hOld = bench.prefabs.GetActiveItem();
    bench.Select(bench.prefabs, {"G"}); // moved inside of its group
    bench.prefabs.OnLeftPress(bench.prefabView.Icon(bench.prefab("G")), {});
    bench.prefabs.OnMove(bench.prefabView.Icon(bench.prefab("T")), true);
    bench.prefabs.OnMove(bench.prefabView.Right(bench.prefab("T")), true);
    bench.prefabs.OnLeftRelease(bench.prefabView.Right(bench.prefab("T")));
    EXPECT_EQ("[[Prefabs]]\n  [T]\n    [G]\n      [H]\n        a\n  b\n", bench.prefabDump());
    EXPECT_EQ(pActive, bench.prefabs.GetActivePrefab());
    EXPECT_NE(hOld, bench.prefabs.GetActiveItem());
    bench.CheckModel();

    // Undone and redone, with its mark; when it is deleted there is none, and with it it comes back.
    CHistory& history = undo.m_History;
    const auto isActive = [&](const CEffectPropertySet* pPrefab)
    {
        const HLibraryItem hItem = bench.prefabs.GetActiveItem();
        return bench.prefabs.GetActivePrefab() == pPrefab &&
               (!pPrefab || (bench.lib->m_PrefabTree.GetItemData(hItem) == pPrefab &&
                             bench.prefabs.m_Tree.GetItemStateEx(hItem, eState_Bold) == eState_Bold));
    };
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_TRUE(history.Undo() && isActive(pActive) && bench.prefabs.GetActiveItem() == hOld);
        EXPECT_TRUE(history.Redo() && isActive(pActive) && bench.prefabs.GetActiveItem() != hOld);
    }
    bench.prompts.onAsk("3 groups selected.\n1 prefabs selected.", EAnswer::eOk);
    bench.Run(bench.prefabs, {"T"}, c_nCmdDeleteSelection);
    EXPECT_TRUE(isActive(nullptr));
    ASSERT_TRUE(history.Undo());
    pActive = bench.lib->m_SpellMgr.FindPrefab("a"); // made anew
    EXPECT_TRUE(isActive(pActive));
    EXPECT_TRUE(history.Redo() && isActive(nullptr));
    EXPECT_TRUE(history.GoTo(0) && isActive(bench.lib->m_SpellMgr.FindPrefab("a")));
    bench.CheckModel();

    // New and Open: none.
    {
        CEditScope scope(bench.edits, "Clear");
        scope.TouchLibrary();
        bench.lib->m_EffectTree.DeleteAllItems();
        bench.lib->m_PrefabTree.DeleteAllItems();
        bench.lib->m_SpellMgr.Clear();
    }
    EXPECT_FALSE(bench.prefabs.GetActivePrefab());
    // A tree without a root gets one with the first item.
    EXPECT_TRUE(bench.prefabs.CanInsert());
    bench.host.m_pChosen = bench.lib->Module().FindType("Light");
    bench.prefabs.Command(c_nCmdNewPrefab);
    EXPECT_EQ("[[Prefabs]]\n  Light\n", bench.prefabDump());
    bench.effects.Command(c_nCmdNewGroup);
    EXPECT_EQ("[[Effects]]\n  [New_Group]\n", bench.dump());
}

// One walk over the keys frees them from all that goes, whatever the order of list and tree.
TEST(PrefabPanel, DeletingManyLeavesTheirValues)
{
    CLibraryBuilder builder = aLibrary();
    builder.prefabGroup("G").prefab("Sprite", "z").value("Count", 3).endPrefabGroup();
    builder.prefab("Sprite", "b").value("Count", 4).prefab("Sprite", "a").value("Count", 5);
    builder.effect("Smoke").key().onPrefab("z").key().onPrefab("a").key().onPrefab("b");
    CBrowserBench bench(builder);
    CKey* keys[3];
    for (uint32_t i = 0; i < 3; ++i)
        keys[i] = KeyOf(bench.lib->m_SpellMgr, "Smoke", 0, i);
    bench.clipboard.CopyKey(keys[1], 1);
    bench.prompts.onAsk("1 groups selected.\n2 prefabs selected.", EAnswer::eOk);
    bench.Run(bench.prefabs, {"G", "a"}, c_nCmdDeleteSelection);
    EXPECT_EQ("[[Prefabs]]\n  b\n", bench.prefabDump());
    EXPECT_EQ("3 5 4", std::to_string(IntOf(*keys[0], "Count")) + " " +
                           std::to_string(IntOf(*keys[1], "Count")) + " " +
                           std::to_string(IntOf(*keys[2], "Count")));
    EXPECT_TRUE(!keys[0]->GetParent() && !keys[1]->GetParent() && keys[2]->GetParent());
    EXPECT_EQ(nullptr, bench.clipboard.GetKey()->GetParent());
    EXPECT_EQ(5, IntOf(*bench.clipboard.GetKey(), "Count"));
}
