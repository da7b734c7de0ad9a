#include "BrowserBench.h"
#include "support/HistoryBench.h"

namespace
{
std::string MenuText(const std::vector<CMenuEntry>& menu)
{
    std::string sText;
    for (const CMenuEntry& entry : menu)
        sText += entry.IsSeparator() ? "|"
                                     : std::to_string(entry.m_nID) + (entry.m_bEnabled ? "+" : "-") +
                                           (entry.m_bDefault ? "*" : "") + " ";
    return sText;
}
} // namespace

TEST(EffectPanel, MenuFollowsTheSelection)
{
    CBrowserBench bench("[G Smoke Fire]");
    EXPECT_EQ("32887-* |32880- 32881- 32884+ 32883- |32885- 32888- |57636+ 32895+ ",
              MenuText(bench.effects.GetMenu()));
    bench.Select({"G"});
    EXPECT_EQ("32887+* |32880+ 32881+ 32884+ 32883+ |32885+ 32888+ |57636+ 32895+ ",
              MenuText(bench.effects.GetMenu()));
    bench.Select({"G", "Fire"});
    EXPECT_EQ("32887+* |32880- 32881- 32884+ 32883+ |32885+ 32888- |57636+ 32895+ ",
              MenuText(bench.effects.GetMenu()));
    EXPECT_EQ("Delete Selection", bench.effects.GetMenu()[7].m_sLabel);
    EXPECT_EQ("Delete", bench.effects.GetMenu()[7].m_sKey);
    bench.effects.Command(c_nCmdNewEffectInGroup); // greyed
    EXPECT_EQ(2u, bench.lib->m_SpellMgr.Spells().size());
    EXPECT_TRUE(bench.effects.OnRightRelease({10, 500}).empty());
    bench.effectView.m_bFocus = false;
    EXPECT_EQ(12u, bench.effects.OnRightRelease({10, 10}).size());
    EXPECT_TRUE(bench.effectView.m_bFocus);
    // By its key it opens below the caret, which comes into view, or in the corner.
    CPoint pt;
    bench.effectView.m_hScrolled = {};
    EXPECT_EQ(12u, bench.effects.OnMenuKey(pt).size());
    const CRect rcFire = bench.effectView.GetLabelRect(bench.item("Fire"));
    EXPECT_EQ((CPoint{rcFire.left, rcFire.bottom}), pt);
    EXPECT_EQ(bench.item("Fire"), bench.effectView.m_hScrolled);
    bench.effects.m_Tree.SetCaret({});
    EXPECT_EQ(12u, bench.effects.OnMenuKey(pt).size());
    EXPECT_EQ((CPoint{0, 0}), pt);
    bench.effects.ScrollTo(bench.lib->m_SpellMgr.FindSpell("Smoke"));
    EXPECT_EQ(bench.item("Smoke"), bench.effectView.m_hScrolled);

    // A name that is being edited is taken over first. While a gesture runs there is no menu, and no command.
    for (const bool bKey : {false, true})
    {
        bench.effects.m_Tree.EditLabel(bench.item("G"));
        bench.effectView.m_sBox = "G";
        EXPECT_EQ(12u, (bKey ? bench.effects.OnMenuKey(pt) : bench.effects.OnRightRelease({10, 10})).size());
        EXPECT_FALSE(bench.effectView.m_bEditBox);
    }
    bench.Select({"G"});
    bench.effects.OnLeftPress(bench.effectView.Icon(bench.item("G")), {});
    EXPECT_TRUE(bench.effects.IsBusy());
    EXPECT_TRUE(bench.effects.OnMenuKey(pt).empty() && bench.effects.OnRightRelease({10, 10}).empty());
    for (const int32_t nID : {c_nCmdNewEffectInGroup, c_nCmdOpenSelection, c_nControlOk})
        bench.effects.Command(nID);
    EXPECT_FALSE(bench.effects.OnCharacter("s", 5));
    bench.effects.OnMouseLost();
    EXPECT_EQ(2u, bench.lib->m_SpellMgr.Spells().size());
    EXPECT_TRUE(bench.documents.m_Open.empty());
    EXPECT_TRUE(bench.effects.OnCharacter("s", 5));
    EXPECT_EQ("[Smoke]", bench.sel());

    // Enabled by the selection, acting on the caret.
    bench.Select({"G"});
    bench.effects.m_Tree.SetCaret(bench.item("Fire"));
    bench.effects.Command(c_nCmdNewEffectInGroup);
    EXPECT_EQ(2u, bench.lib->m_SpellMgr.Spells().size());
}

TEST(EffectPanel, NewItemsAreSelectedAndNamedAtOnce)
{
    CBrowserBench bench("[G Smoke] Fire");
    CScopeChecker checker(bench.context);
    CHistoryBench undo(bench.context);
    bench.effects.m_Tree.Expand(bench.item("G"), false);
    bench.Run(bench.effects, {"G"}, c_nCmdNewEffectInGroup);
    EXPECT_EQ(0u, bench.effectView.m_sBox.find("Untitled FX "));
    EXPECT_EQ("[" + bench.effectView.m_sBox + "]", bench.sel());
    checker.ExpectEdits(1);
    bench.Type(bench.effects, bench.effectView, "  A \"B\"\t");
    checker.ExpectEdits(1); // a new effect and its name are two edits
    EXPECT_STREQ("A 'B'", bench.lib->m_SpellMgr.Spells()[2]->m_szName);
    EXPECT_TRUE(bench.documents.m_Open.empty());
    EXPECT_EQ("[[Effects]]\n  [G]\n    A 'B'\n    Smoke\n  Fire\n", bench.dump()); // the name has sorted
    EXPECT_EQ("[A 'B']", bench.sel());

    bench.Run(bench.effects, {"G"}, c_nCmdNewGroup);
    EXPECT_EQ("New_Group", bench.effectView.m_sBox);
    bench.Type(bench.effects, bench.effectView, "Fire"); // groups share names; no sort
    EXPECT_EQ("New Effect|New Group", undo.Labels()) << "with their names";
    undo.Check(2);
    bench.Run(bench.effects, {"Fire"}, c_nCmdNewGroup);
    undo.m_History.MarkSaved(); // what is saved stays a position of its own
    bench.Type(bench.effects, bench.effectView, "Inner");
    EXPECT_EQ("New Effect|New Group|New Group|Name New Item", undo.Labels());
    EXPECT_TRUE(undo.m_History.GoTo(2));
    EXPECT_EQ("[[Effects]]\n  [G]\n    A 'B'\n    Smoke\n    [Fire]\n  Fire\n", bench.dump());
    bench.Select({"Smoke"});
    bench.effects.OnNewGroup();
    bench.effects.OnNewEffect();
    EXPECT_EQ(3u, bench.lib->m_SpellMgr.Spells().size());
}

TEST(EffectPanel, RenamingTakesWhatIsFree)
{
    CBrowserBench bench("Smoke Fire");
    bench.documents.Open(*bench.lib->m_SpellMgr.FindSpell("Smoke"));
    const auto rename = [&](const std::string& s, int32_t nID = c_nControlOk)
    {
        bench.Select({bench.lib->m_SpellMgr.Spells()[0]->m_szName});
        bench.effects.Command(c_nCmdRenameItem);
        bench.Type(bench.effects, bench.effectView, s, nID);
        return std::string(bench.lib->m_SpellMgr.Spells()[0]->m_szName);
    };
    EXPECT_EQ("Smoke", rename("SMOKE")); // case alone isn't taken
    EXPECT_EQ("Smoke", rename("  "));
    EXPECT_EQ("Smoke", rename("Other", c_nControlCancel));
    bench.prompts.onAsk("An effect with the name 'FIRE' already exists.");
    bench.effectView.m_bFocus = false;
    EXPECT_EQ("Smoke", rename(" FIRE "));
    EXPECT_TRUE(bench.effectView.m_bFocus);
    EXPECT_EQ(std::string(126, 'x'), rename(std::string(126, 'x') + "\xC3\xA4z"));
    EXPECT_EQ("Able", rename("Able"));
    EXPECT_EQ("Able", bench.documents.m_Titles[0]);
    EXPECT_TRUE(bench.documents.m_Open.size() == 1); // Enter has opened nothing
    EXPECT_EQ("[[Effects]]\n  Able\n  Fire\n", bench.dump());
    bench.Select({"[Effects]"});
    bench.effects.OnRenameItem(); // the root never
    EXPECT_FALSE(bench.effectView.m_bEditBox);

    // A command takes the text over first; a page that goes away does, too. New and Open drop it.
    bench.Select({"Able"});
    bench.effects.OnRenameItem();
    bench.effectView.m_sBox = "Baker";
    bench.effects.Command(c_nCmdDuplicate);
    EXPECT_NE(std::string::npos, bench.dump().find("Baker_1"));
    bench.effects.OnRenameItem();
    bench.effectView.m_sBox = "Charlie";
    bench.effects.OnPageShown(false);
    EXPECT_TRUE(bench.lib->m_SpellMgr.FindSpell("Charlie"));
    bench.effects.OnRenameItem();
    bench.effectView.m_sBox = "Delta";
    {
        CEditScope scope(bench.edits, "Clear");
        scope.TouchLibrary();
        EXPECT_FALSE(bench.effectView.m_bEditBox || bench.lib->m_SpellMgr.FindSpell("Delta"));
        // A library opens with its root unfolded.
        bench.effects.m_Tree.Expand(bench.lib->m_EffectTree.GetRootItem(), false);
    }
    EXPECT_TRUE(bench.effects.m_Tree.IsExpanded(bench.lib->m_EffectTree.GetRootItem()));
}

TEST(EffectPanel, DuplicatesAskAboveFour)
{
    CBrowserBench bench("[G a b [H c d]] e");
    CScopeChecker checker(bench.context);
    bench.effects.m_Tree.Expand(bench.item("G"), false);
    bench.Select({"G"}); // four, once it is widened
    CBrowserBench::Key(bench.effects, ETreeKey::eInsert);
    checker.ExpectEdits(1);
    EXPECT_EQ("[[Effects]]\n  [G]\n    [H]\n      c\n      c_1\n      d\n      d_1\n"
              "    a\n    a_1\n    b\n    b_1\n  e\n",
              bench.dump());
    EXPECT_EQ("[d_1]", bench.sel()); // the last one made, by the order before the sort
    for (const CTreeKey& key : {CTreeKey{ETreeKey::eInsert, c_Ctrl}, CTreeKey{ETreeKey::eDelete, c_Shift},
                                CTreeKey{ETreeKey::eEnter, {}, true}, CTreeKey{ETreeKey::eEnter, c_Ctrl}})
        EXPECT_FALSE(bench.effects.OnKey(key)); // other commands'
    EXPECT_TRUE(bench.documents.m_Open.empty());
    EXPECT_TRUE(bench.effects.OnKey({ETreeKey::eEscape, {}}));
    bench.Select({"a", "b", "c", "d", "e"});
    bench.prompts.onAsk(
        "You currently have 5 effects in the selection...\n\nDo you really want to duplicate these?",
        EAnswer::eCancel);
    bench.effects.OnDuplicate();
    EXPECT_EQ("Duplicate Effects?", bench.prompts.m_Asked[0].m_sCaption);
    EXPECT_EQ(9u, bench.lib->m_SpellMgr.Spells().size());
    bench.Select({"[Effects]"});
    bench.prompts.onAsk("You currently have 9 effects", EAnswer::eOk);
    bench.effects.OnDuplicate();
    EXPECT_EQ(18u, bench.lib->m_SpellMgr.Spells().size());
    EXPECT_TRUE(bench.lib->m_SpellMgr.FindSpell("a_2") && bench.lib->m_SpellMgr.FindSpell("a_3"));
    bench.Select({});
    bench.prompts.onAsk("No effects are selected for copying...");
    bench.effectView.m_bFocus = false;
    bench.effects.OnDuplicate();
    EXPECT_TRUE(bench.effectView.m_bFocus);
    EXPECT_EQ("Effect Duplicate Error", bench.prompts.m_Asked[2].m_sCaption);
}

TEST(EffectPanel, DeletingCountsGroupsAndKeepsTheRoot)
{
    CBrowserBench bench("[G a [H b] [I c]] d");
    CScopeChecker checker(bench.context);
    for (const char* psz : {"a", "d"})
        bench.documents.Open(*bench.lib->m_SpellMgr.FindSpell(psz));
    bench.Select({});
    CBrowserBench::Key(bench.effects, ETreeKey::eDelete); // nothing selected: no question
    bench.Select({"G"});
    bench.prompts.onAsk(
        "3 groups selected.\n3 effects selected.\n\nDo you really want to delete all of these?",
        EAnswer::eCancel);
    bench.effectView.m_bFocus = false;
    CBrowserBench::Key(bench.effects, ETreeKey::eDelete);
    EXPECT_TRUE(bench.effectView.m_bFocus);
    EXPECT_EQ("[G] a H b I c", bench.sel()); // stays widened
    bench.prompts.onAsk("3 groups", EAnswer::eOk);
    bench.effects.Command(c_nCmdDeleteSelection);
    checker.ExpectEdits(1);
    EXPECT_EQ("[[Effects]]\n  d\n", bench.dump());
    EXPECT_EQ("[-d]", bench.sel());
    EXPECT_EQ(std::vector<std::string>{"d"}, bench.documents.m_Titles);
    bench.Select({"[Effects]"});
    bench.prompts.onAsk("1 groups selected.\n1 effects", EAnswer::eOk);
    bench.effects.OnDeleteSelection();
    EXPECT_EQ("[[Effects]]\n", bench.dump());
    bench.prompts.onAsk("1 groups selected.\n0 effects", EAnswer::eOk);
    bench.effects.OnDeleteSelection();
    EXPECT_EQ("[[Effects]]\n", bench.dump());
}

TEST(EffectPanel, OpensByEnterDoubleClickAndMenu)
{
    CBrowserBench bench("[G a b c d] e");
    bench.effects.m_Tree.Expand(bench.item("G"), false);
    bench.Select({"G"});
    CBrowserBench::Key(bench.effects, ETreeKey::eEnter);
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c", "d"}), bench.documents.m_Titles);
    bench.Select({"b"});
    bench.effects.OnDoubleClick(bench.effectView.Label(bench.item("b")), {});
    EXPECT_EQ((std::vector<std::string>{"a", "c", "d", "b"}), bench.documents.m_Titles); // to the top
    bench.Select({"G"});
    bench.effects.OnDoubleClick(bench.effectView.Icon(bench.item("G")), {}); // only folds
    EXPECT_FALSE(bench.effects.m_Tree.IsExpanded(bench.item("G")));
    CBrowserBench::Key(bench.effects, ETreeKey::eEscape);
    bench.Select({"[Effects]"});
    bench.prompts.onAsk("5 effects in the selection...\n\nDo you really want to open these for editing?",
                        EAnswer::eOk);
    bench.effectView.m_bFocus = false;
    bench.effects.Command(c_nCmdOpenSelection);
    EXPECT_TRUE(bench.effectView.m_bFocus);
    EXPECT_EQ("Open Effects?", bench.prompts.m_Asked[0].m_sCaption);
    EXPECT_EQ(5u, bench.documents.m_Open.size());
    bench.Select({});
    bench.prompts.onAsk("No effects are selected for opening...");
    CBrowserBench::Key(bench.effects, ETreeKey::eEnter);
    EXPECT_EQ("Effect Open Error", bench.prompts.m_Asked[1].m_sCaption);
}
