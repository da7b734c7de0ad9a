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
    struct
    {
        const char* m_pszCaret; // a b and this are selected; "": a and b, and no caret
        ETreeKey m_eKey;
        const char* m_pszExpected;
        const char* m_pszFolds;
    } const c_Cases[] = {
        {"c", ETreeKey::eHome, "[R]", ""},          {"c", ETreeKey::eEnd, "[f]", ""},
        {"f", ETreeKey::ePageUp, "[c]", ""}, // the view shows four rows
        {"b", ETreeKey::ePageUp, "[R]", ""},        {"a", ETreeKey::ePageDown, "[d]", ""},
        {"e", ETreeKey::ePageDown, "[f]", ""},      {"", ETreeKey::ePageDown, "[c]", ""},
        {"c", ETreeKey::eLeft, "[G]", ""},          {"H", ETreeKey::eLeft, "a b [H]", " close H"},
        {"R", ETreeKey::eBackspace, "[R] a b", ""}, {"e", ETreeKey::eBackspace, "[H]", ""},
        {"G", ETreeKey::eRight, "[c]", ""},         {"c", ETreeKey::eRight, "a b [c]", ""},
        {"G", ETreeKey::ePlus, "a b [G]", ""},      {"G", ETreeKey::eMinus, "a b [G]", " close G close H"},
        {"G", ETreeKey::eMultiply, "a b [G]", ""},  {"", ETreeKey::eMinus, "", " close R close H close G"},
    };
    const auto folds = [](const std::string& sLog)
    {
        std::string sFolds;
        for (size_t i = 0; (i = sLog.find_first_of("oc", i)) != std::string::npos; ++i)
            if (i > 0 && sLog[i - 1] == ' ')
                sFolds += sLog.substr(i - 1, sLog.find(' ', i) - i + 3);
        return sFolds;
    };
    for (const auto& c : c_Cases)
    {
        CTreeBench bench;
        bench.Select(std::string("ab") + c.m_pszCaret);
        if (!*c.m_pszCaret)
            bench.ctrl.SetCaret({});
        EXPECT_EQ(c.m_pszExpected, bench.Key(c.m_eKey)) << c.m_pszCaret << int(c.m_eKey);
        EXPECT_EQ(c.m_pszFolds, folds(bench.log)) << c.m_pszCaret << int(c.m_eKey);
    }
    CTreeBench bench;
    bench.Select("G");
    bench.Key(ETreeKey::eMinus), bench.Key(ETreeKey::eRight);
    EXPECT_TRUE(bench.ctrl.IsVisible(bench.item("c")) && !bench.ctrl.IsVisible(bench.item("e")));
    bench.Key(ETreeKey::eLeft), bench.Key(ETreeKey::ePlus);
    EXPECT_FALSE(bench.ctrl.IsVisible(bench.item("e")));
    bench.Key(ETreeKey::eMinus), bench.Key(ETreeKey::eMultiply);
    EXPECT_TRUE(bench.ctrl.IsVisible(bench.item("e")));
    // Where it is there already, it is scrolled to all the same, and a Shift selection begins anew.
    bench.Select("d");
    bench.Key(ETreeKey::eDown, c_Ctrl);
    bench.Key(ETreeKey::eEnd), bench.Key(ETreeKey::eEnd);
    EXPECT_EQ(bench.item("f"), bench.view.m_hScrolled);
    EXPECT_EQ("[e] f", bench.Key(ETreeKey::eUp, c_Shift));
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eEnd, c_Ctrl})); // scrolls
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eDown, {}, true}));
    EXPECT_FALSE(bench.ctrl.OnKey({ETreeKey::eF, c_Ctrl, true}));
    EXPECT_FALSE(bench.ctrl.OnKey({}));
    bench.tree.InsertLeaf("z", bench.tree.InsertGroup("S", {}), &bench); // another root
    EXPECT_EQ("[S]", bench.Key(ETreeKey::eEnd));
    bench.tree.DeleteAllItems();
    for (const ETreeKey eKey : {ETreeKey::eDown, ETreeKey::eHome, ETreeKey::eEnd, ETreeKey::ePageUp,
                                ETreeKey::eLeft, ETreeKey::eRight, ETreeKey::eMultiply, ETreeKey::eF2})
        EXPECT_EQ("", bench.Key(eKey)); // nothing to go to
    EXPECT_FALSE(bench.view.m_bEditBox);
}

TEST(TreeKeys, LettersFindWhatBeginsWithThem)
{
    CTreeBench bench;
    bench.tree.SetItemText(bench.item("d"), "cx y");
    bench.tree.SetItemText(bench.item("H"), "cxz");
    bench.tree.SetItemText(bench.item("e"), "xe");
    struct
    {
        const char* m_pszTyped;
        uint64_t m_nTime;
        const char* m_pszExpected; // "": not taken
    } const c_Cases[] = {
        {"C", 5000, "[c]"},    {"c", 6000, "[cx y]"}, // within a second: the next with that letter
        {"c", 6001, "[cxz]"},  {"c", 6002, "[c]"},    // once round
        {"q", 7003, "[c]"},                           // a new word, that nothing begins with
        {"c", 9000, "[cx y]"}, {"x", 9100, "[cx y]"}, // stays where it fits
        {" ", 9200, "[cx y]"}, {"Y", 9300, "[cx y]"}, {"z", 9400, "[cx y]"}, {" ", 20000, ""},
        {"\x7F", 20000, ""},   {"\r", 20000, ""},     {"", 20000, ""},       {"c", 20000, "[cxz]"},
        {"x", 20010, "[cxz]"}, {"z", 20020, "[cxz]"}, {"g", 30000, "[G]"},   {"r", 40000, "[R]"},
    };
    for (const auto& c : c_Cases)
    {
        const bool bTaken = bench.ctrl.OnCharacter(c.m_pszTyped, c.m_nTime);
        EXPECT_EQ(c.m_pszExpected, bTaken ? bench.sel() : "") << c.m_pszTyped << c.m_nTime;
    }
    bench.ctrl.Expand(bench.item("R"), false);
    bench.ctrl.OnCharacter("c", 50000); // what is folded isn't found
    EXPECT_EQ("[R]", bench.sel());
    bench.Press({300, 390}, c_Ctrl);
    EXPECT_FALSE(
        bench.ctrl.OnCharacter("r", 60000)); // nor anything while a gesture runs, or a name is edited
    bench.ctrl.OnMouseLost();
    bench.ctrl.Expand(bench.item("R"), true);
    bench.ctrl.EditLabel(bench.item("a"));
    EXPECT_FALSE(bench.ctrl.OnCharacter("r", 70000));
    bench.ctrl.CancelEdit();
}

TEST(TreeKeys, F2EditsTheCaretOfASingleSelection)
{
    CTreeBench bench;
    bench.Select("ab");
    bench.Key(ETreeKey::eF2); // only with one
    EXPECT_FALSE(bench.view.m_bEditBox);
    bench.Select("b");
    bench.ctrl.SetCaret({});
    bench.Key(ETreeKey::eF2);
    EXPECT_FALSE(bench.view.m_bEditBox);
    bench.ctrl.SetCaret(bench.item("a")); // the caret is edited, whatever is selected
    bench.Key(ETreeKey::eF2);
    EXPECT_EQ("a", bench.view.m_sBox);
    bench.view.m_sBox = "gone";
    bench.log.clear();
    bench.ctrl.CancelEdit();
    EXPECT_EQ("", bench.log);
    EXPECT_FALSE(bench.view.m_bEditBox);
}
