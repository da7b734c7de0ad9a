#include "app/EffectEditor.h"
#include "app/PrefabEditor.h"
#include "support/AppBench.h"
#include "support/ScopeChecker.h"

namespace
{
struct CEditorBench : CAppBench
{
    CEmberdeckApp& lib() { return *app; }
    CEffectEditor effectEditor{app->Context()};
    CPrefabEditor prefabEditor{app->Context()};
    HLibraryItem effect(const std::string& s) { return ItemOf(app->m_EffectTree, s); }
    HLibraryItem prefab(const std::string& s) { return ItemOf(app->m_PrefabTree, s); }
    std::string effects() { return DumpTree(app->m_EffectTree); }
};
} // namespace

TEST(LibraryEditor, CopiesGetFreeNamesBesideTheirSources)
{
    CEditorBench bench;
    bench.Build()
        .group("Weapons")
        .effect("Smoke")
        .key("Sprite", 0, 500)
        .name("A")
        .track()
        .key("Sprite", 10, 400)
        .linkTo("A");
    CScopeChecker checker(bench.app->Context());
    const auto copies = bench.effectEditor.DuplicateItems({bench.effect("Smoke"), bench.effect("Weapons")});
    checker.ExpectEdits(1);
    ASSERT_EQ(1u, copies.size());
    bench.effectEditor.Duplicate(bench.effect("Smoke"));
    bench.effectEditor.Duplicate(bench.effect("Smoke_1"));
    EXPECT_EQ("[[Effects]]\n  [Weapons]\n    Smoke\n    Smoke_1\n    Smoke_2\n    Smoke_3\n",
              bench.effects());
    EXPECT_TRUE(KeyOf(bench.app->m_SpellMgr, "Smoke_3", 1)->m_bMotionLinked);
    EXPECT_NE(KeyOf(bench.app->m_SpellMgr, "Smoke_3", 1), KeyOf(bench.app->m_SpellMgr, "Smoke", 1));

    // The number of a name of full length is kept, and no character is cut in two.
    CSpell* pLong = bench.app->NewEffect();
    const std::string sLong = std::string(115, 'x') + "\xC3\xA4" + std::string(10, 'y');
    {
        CEditScope scope(bench.app->m_Edits, "Test");
        scope.TouchHead(*pLong);
        pLong->SetName(sLong);
    }
    const HLibraryItem hCopy = bench.effectEditor.Duplicate(bench.app->m_EffectTree.FindData(pLong));
    EXPECT_EQ(std::string(115, 'x'), bench.app->m_EffectTree.GetItemText(hCopy));
    EXPECT_EQ(std::string(115, 'x') + "_1", bench.app->m_EffectTree.GetItemText(bench.effectEditor.Duplicate(
                                                bench.app->m_EffectTree.FindData(pLong))));
}

TEST(LibraryEditor, RenamesWhatIsFreeAndTellsViewsAndOrder)
{
    CEditorBench bench;
    bench.Build()
        .effect("Fire")
        .effect("Smoke")
        .group("Old")
        .prefab("Sprite", "Puff")
        .prefab("Light", "Lamp");
    CSpell* pSmoke = bench.app->m_SpellMgr.FindSpell("Smoke");
    bench.documents.Open(*pSmoke);
    CScopeChecker checker(bench.app->Context());
    EXPECT_EQ(ERename::eInUse, bench.effectEditor.Rename(bench.effect("Smoke"), " FIRE "));
    EXPECT_EQ(ERename::eInUse, bench.prefabEditor.Rename(bench.prefab("Lamp"), "puff"));
    for (const char* pszText : {"SMOKE", "  \t", ""})
        EXPECT_EQ(ERename::eUnchanged, bench.effectEditor.Rename(bench.effect("Smoke"), pszText));
    EXPECT_EQ(ERename::eUnchanged, bench.effectEditor.Rename(bench.app->m_EffectTree.GetRootItem(), "Root"));
    EXPECT_EQ(ERename::eUnchanged, bench.effectEditor.Rename({}, "Nothing"));
    checker.ExpectEdits(0);

    EXPECT_EQ(ERename::eDone, bench.effectEditor.Rename(bench.effect("Old"), "Fire"));
    EXPECT_EQ("[[Effects]]\n  Fire\n  Smoke\n  [Fire]\n", bench.effects())
        << "a group may repeat, and sorts nothing";
    EXPECT_EQ(ERename::eDone, bench.effectEditor.Rename(bench.effect("Smoke"), "\t\"Ash\" "));
    EXPECT_EQ("[[Effects]]\n  [Fire]\n  'Ash'\n  Fire\n", bench.effects());
    EXPECT_STREQ("'Ash'", pSmoke->m_szName);
    EXPECT_EQ(std::vector<std::string>{"'Ash'"}, bench.documents.m_Titles);
    checker.ExpectEdits(2);

    // 126 bytes, and a character of three that doesn't fit; in another code page bytes are characters.
    const std::string sLong(126, 'n');
    bench.effectEditor.Rename(bench.effect("'Ash'"), sLong + "\xE2\x82\xAC");
    EXPECT_EQ(sLong, pSmoke->m_szName);
    EXPECT_EQ(sLong + "\xE4", CleanName(sLong + "\xE4\xE4", 127));
    EXPECT_EQ(ERename::eDone, bench.prefabEditor.Rename(bench.prefab("Puff"), std::string(200, 'p')));
    EXPECT_TRUE(bench.app->m_SpellMgr.FindPrefab(std::string(200, 'p').c_str()));
}

TEST(LibraryEditor, DeletesObjectsViewsAndItemsTogetherButNeverTheRoot)
{
    CEditorBench bench;
    bench.Build().effect("A").group("G").effect("B").group("H").effect("C").end().end().effect("D");
    CSpellMgr& spells = bench.app->m_SpellMgr;
    bench.documents.Open(*spells.FindSpell("B"));
    bench.documents.Open(*spells.FindSpell("D"));
    const HLibraryItem hB = bench.effect("B");
    CScopeChecker checker(bench.app->Context());
    bench.effectEditor.DeleteItems(
        {bench.app->m_EffectTree.GetRootItem(), bench.effect("G"), hB, bench.effect("H"), bench.effect("C")});
    checker.ExpectEdits(1);
    EXPECT_EQ("[[Effects]]\n  A\n  D\n", bench.effects());
    EXPECT_EQ(2u, spells.Spells().size());
    EXPECT_EQ(std::vector<const CSpell*>{spells.FindSpell("D")}, bench.documents.m_Open);
    EXPECT_FALSE(bench.effectEditor.Delete(hB)); // dead
    EXPECT_FALSE(bench.effectEditor.Duplicate(hB));
    checker.ExpectEdits(0);
}

TEST(LibraryEditor, PrefabsComeWithValuesAndLeaveThemBehind)
{
    CEditorBench bench;
    bench.Build().effect("Smoke").key("Sprite", 0, 500).name("Plume").value("Count", 7);
    CEmberdeckApp& app = *bench.app;
    CScopeChecker checker(app.Context());
    const CEffectTypeDesc* pSprite = app.m_EffectModule.FindType("Sprite");
    const HLibraryItem hFirst = bench.prefabEditor.NewPrefab({}, pSprite);
    const HLibraryItem hSecond = bench.prefabEditor.NewPrefab({}, pSprite);
    EXPECT_EQ("[[Prefabs]]\n  Sprite\n  Sprite_1\n", DumpTree(app.m_PrefabTree));
    CEffectPropertySet* pFirst = app.m_PrefabTree.GetItemData(hFirst);
    EXPECT_EQ(pFirst, bench.host.m_pActive) << "the first one becomes active by itself";
    EXPECT_EQ(10, IntOf(*pFirst, "Count"));
    EXPECT_FALSE(bench.prefabEditor.NewPrefab(hSecond, pSprite)) << "not under a leaf";
    EXPECT_FALSE(bench.prefabEditor.NewPrefab({}, nullptr));

    // From a key: its own name is free, its prefab's values come along, and it stays as it is.
    CKey& key = *KeyOf(app.m_SpellMgr, "Smoke");
    CEffectPropertySet* pMade = bench.prefabEditor.CreatePrefabFromKey(key, "Plume");
    EXPECT_EQ("Plume", pMade->m_sName);
    EXPECT_EQ(7, IntOf(*pMade, "Count"));
    EXPECT_EQ(nullptr, key.GetParent());
    checker.ExpectEdits(3);

    // Delete: keys and the clipboard take over what they inherited.
    {
        CEditScope scope(app.m_Edits, "Assign");
        scope.Touch(app.m_SpellMgr.FindSpell("Smoke"));
        key.ClearProperties();
        key.SetParent(pMade);
        app.m_Clipboard.CopyKey(&key, 1);
    }
    bench.host.m_pActive = pMade;
    bench.prefabEditor.Duplicate(bench.prefab("Plume"));
    EXPECT_EQ(pMade, bench.host.m_pActive);
    EXPECT_TRUE(bench.prefabEditor.Delete(bench.prefab("Plume")));
    EXPECT_EQ("[[Prefabs]]\n  Sprite\n  Sprite_1\n  Plume_1\n", DumpTree(app.m_PrefabTree));
    EXPECT_EQ(nullptr, bench.host.m_pActive);
    EXPECT_TRUE(!key.GetParent() && !app.m_Clipboard.GetKey()->GetParent());
    EXPECT_EQ(7, IntOf(key, "Count"));
    EXPECT_EQ(7, IntOf(*app.m_Clipboard.GetKey(), "Count"));
}

TEST(LibraryEditor, MovesKeepStructureAndRefuseWhatHasNoPlace)
{
    CEditorBench bench;
    bench.Build()
        .group("T")
        .end()
        .group("Z")
        .effect("b")
        .effect("C")
        .group("Inner")
        .effect("deep")
        .end()
        .end()
        .effect("a");
    const HLibraryItem hRoot = bench.app->m_EffectTree.GetRootItem();
    const HLibraryItem hZ = bench.effect("Z");
    CScopeChecker checker(bench.app->Context());
    EXPECT_FALSE(bench.effectEditor.Move(hRoot, hZ));
    EXPECT_FALSE(bench.effectEditor.Move(hZ, bench.effect("Inner")));
    EXPECT_FALSE(bench.effectEditor.Move(hZ, bench.effect("a")));
    EXPECT_EQ(hZ, bench.effectEditor.Move(hZ, hRoot));
    checker.ExpectEdits(0);

    // An effect from a selected group lands in the target itself, the inner group stays in the outer one.
    bench.effectEditor.MoveItems({hZ, bench.effect("b"), bench.effect("Inner"), bench.effect("a")},
                                 bench.effect("T"));
    checker.ExpectEdits(1);
    EXPECT_EQ("[[Effects]]\n  [T]\n    [Z]\n      [Inner]\n        deep\n      C\n    a\n    b\n",
              bench.effects());
    EXPECT_TRUE(bench.app->m_EffectTree.FindData(bench.app->m_SpellMgr.FindSpell("deep")));

    // A group that can't go where it already leads doesn't hold back what is within it.
    bench.effectEditor.MoveItems({bench.effect("Z"), bench.effect("Inner")}, bench.effect("Z"));
    bench.effectEditor.MoveItems({bench.effect("T"), bench.effect("Inner")}, bench.effect("T"));
    EXPECT_EQ("[[Effects]]\n  [T]\n    [Z]\n      C\n    [Inner]\n      deep\n    a\n    b\n",
              bench.effects());
}

TEST(LibraryEditor, ImportTakesEffectsOutOfTheirLibrary)
{
    CEditorBench bench;
    bench.Build().effect("Smoke").effect("Zoom");
    auto pModule = std::make_shared<CTestModule>();
    CSpellMgr source;
    CEffectTree effectTree;
    CPrefabTree prefabTree;
    aLibrary(bench.app->m_EffectModule, source, effectTree, prefabTree)
        .prefab("Sprite", "Puff")
        .value("Count", 33)
        .effect("Smoke")
        .key("Sprite", 0, 100)
        .onPrefab("Puff")
        .link(5)
        .effect("Left")
        .effect("Smoke");
    CScopeChecker checker(bench.app->Context());
    CSpell* pFirst = source.Spells()[0].get();
    EXPECT_EQ(2u,
              bench.effectEditor.ImportEffects(source, {pFirst, source.Spells()[2].get(), pFirst, nullptr}));
    checker.ExpectEdits(1);
    EXPECT_EQ(1u, source.Spells().size());
    source.Clear();
    EXPECT_EQ("[[Effects]]\n  Smoke\n  Smoke_1\n  Smoke_2\n  Zoom\n", bench.effects());
    const CKey& key = *KeyOf(bench.app->m_SpellMgr, "Smoke_1");
    EXPECT_EQ(33, IntOf(key, "Count"));
    EXPECT_TRUE(!key.GetParent() && key.m_nMotionLinkID == 5);
}

TEST(LibraryEditor, ATreeWithoutASoundRootGetsOneBeforeItsFirstChange)
{
    CEditorBench bench;
    bench.Build();
    CEffectTree& tree = bench.app->m_EffectTree;
    tree.DeleteAllItems();
    CScopeChecker checker(bench.app->Context());
    const CSpell* pNew = bench.app->NewEffect();
    checker.ExpectEdits(1);
    EXPECT_EQ(std::vector<const CSpell*>{pNew}, bench.documents.m_Open);
    EXPECT_EQ("[[Effects]]\n  " + std::string(pNew->m_szName) + "\n", bench.effects());

    // A hand-made file: a leaf at the top, groups beside it. All of it is saved from now on.
    {
        CEditScope scope(bench.app->m_Edits, "Test");
        bench.app->NewEffectFile();
        tree.DeleteAllItems();
        CSpell* pTop = bench.app->m_SpellMgr.AddSpell();
        pTop->SetName("Top");
        tree.InsertLeaf("Top", {}, pTop);
        tree.InsertGroup("Inner", tree.InsertGroup("Beside", {}));
    }
    EXPECT_TRUE(bench.effectEditor.Duplicate(bench.effect("Top")));
    EXPECT_EQ("[[Effects]]\n  Top\n  [Beside]\n    [Inner]\n  Top_1\n", bench.effects());
}
