#include <random>

#include "BrowserBench.h"
#include "support/HistoryBench.h"

namespace
{

// Answers anything by chance.
struct CRandomPrompts : CScriptedPrompts
{
    explicit CRandomPrompts(std::mt19937& r) : m_Random(r) {}
    EAnswer Ask(const std::string&, const std::string&, EButtons, EIcon) override
    {
        constexpr EAnswer c_Answers[] = {EAnswer::eOk, EAnswer::eYes, EAnswer::eOk, EAnswer::eCancel};
        return c_Answers[m_Random() % 4];
    }
    bool ChooseFile(const CFileDialogRequest&, std::string& sPath) override { return sPath = m_sFile, true; }
    std::mt19937& m_Random;
    std::string m_sFile;
};

class CMonkey
{
public:
    explicit CMonkey(uint32_t nSeed) : m_Random(nSeed)
    {
        auto pModule = std::make_shared<CTestModule>();
        auto pOther = aLibrary(pModule)
                          .prefab("Light", "P")
                          .effect("In")
                          .key("Light")
                          .onPrefab("P")
                          .effect("Q")
                          .build();
        m_Prompts.m_sFile = m_Dir.path("in.Fx00a");
        SaveEffectLibrary(m_Prompts.m_sFile.c_str(), pOther->m_EffectTree, pOther->m_PrefabTree);
        m_pLibrary =
            aLibrary(pModule).prefab("Light", "p").group("G").effect("a").key("Light").onPrefab("p").build();
    }
    uint32_t Roll(uint32_t n) { return m_Random() % n; }
    CPoint RandomPoint(const CFakeTreeView& view, const CMultiSelectTreeCtrl& ctrl)
    {
        const HLibraryItem h = RandomItem(ctrl);
        return h && Roll(5) ? view.At(h, int32_t(Roll(60)) - 40)
                            : CPoint{int32_t(Roll(450)), int32_t(Roll(420))};
    }
    HLibraryItem RandomItem(const CMultiSelectTreeCtrl& ctrl)
    {
        HLibraryItem h = ctrl.Tree().GetRootItem();
        for (uint32_t n = Roll(12); n > 0 && ctrl.NextVisible(h); --n)
            h = ctrl.NextVisible(h);
        return h;
    }
    void Step(CBrowserBench& bench, CLibraryPanel& panel, CFakeTreeView& view)
    {
        constexpr int32_t c_Commands[] = {c_nCmdOpenSelection,
                                          c_nCmdNewGroup,
                                          c_nCmdNewEffectInGroup,
                                          c_nCmdImportEffects,
                                          c_nCmdDuplicate,
                                          c_nCmdDeleteSelection,
                                          c_nCmdRenameItem,
                                          c_nCmdNewPrefab,
                                          c_nCmdSetActivePrefab,
                                          c_nCmdFindNext,
                                          1,
                                          2};
        constexpr ETreeKey c_Keys[] = {ETreeKey::eUp,       ETreeKey::eDown,   ETreeKey::eLeft,
                                       ETreeKey::eRight,    ETreeKey::eInsert, ETreeKey::eDelete,
                                       ETreeKey::eEnd,      ETreeKey::eHome,   ETreeKey::eEscape,
                                       ETreeKey::eMultiply, ETreeKey::eF2,     ETreeKey::eF3};
        const HLibraryItem hRoot = panel.m_Tree.Tree().GetRootItem();
        if (panel.m_Tree.IsSelected(hRoot) && Roll(8)) // or Delete would leave nothing most of the time
            panel.m_Tree.SelectItem(hRoot, false);
        const CModifiers modifiers{Roll(4) == 0, Roll(4) == 0};
        const CPoint pt = RandomPoint(view, panel.m_Tree);
        if (view.m_bEditBox && Roll(2))
            view.m_sBox = std::string(1, char('a' + Roll(8)));
        const uint32_t nKind = Roll(12);
        if (nKind < 5)
            RunCommand(bench, panel, c_Commands[Roll(std::size(c_Commands))]);
        else if (nKind == 5)
            panel.OnKey({c_Keys[Roll(std::size(c_Keys))], modifiers});
        else if (nKind == 6)
            panel.OnRightPress(pt, modifiers), panel.OnRightRelease(pt);
        else if (nKind == 7)
            panel.OnDoubleClick(pt, modifiers);
        else if (nKind == 8 && Roll(3) == 0)
            panel.m_Tree.FindText("a", Roll(2), Roll(2), Roll(2));
        else if (nKind == 8)
            panel.m_Tree.OnEditTimer();
        else
            Gesture(panel, view, pt, modifiers);
    }
    void RunCommand(CBrowserBench& bench, CLibraryPanel& panel, int32_t nID)
    {
        if (Roll(3))
        {
            panel.m_Tree.SelectOnly({});
            panel.m_Tree.SetItemStateEx(RandomItem(panel.m_Tree), 3, 3);
        }
        // A library that doubles again and again isn't what is looked for here.
        const CSpellMgr& spellMgr = bench.lib->m_SpellMgr;
        const bool bMany = spellMgr.Spells().size() > 40 || spellMgr.Prefabs().size() > 40;
        if (bMany)
            panel.m_Tree.SelectAllItems(true, {});
        panel.Command(bMany ? c_nCmdDeleteSelection : nID);
    }
    void Gesture(CLibraryPanel& panel, const CFakeTreeView& view, CPoint pt, CModifiers modifiers)
    {
        panel.OnLeftPress(pt, modifiers);
        for (uint32_t n = Roll(4); n > 0; --n)
            panel.OnMove(RandomPoint(view, panel.m_Tree), true);
        const uint32_t nEnd = Roll(8);
        if (nEnd == 0)
            panel.OnMouseLost();
        else if (nEnd == 1)
            panel.OnKey({ETreeKey::eEscape, {}});
        else
            panel.OnLeftRelease(RandomPoint(view, panel.m_Tree));
        EXPECT_FALSE(panel.IsBusy());
    }

    std::mt19937 m_Random;
    CTempDir m_Dir;
    CRandomPrompts m_Prompts{m_Random};
    std::unique_ptr<CTestLibrary> m_pLibrary;
};

} // namespace

TEST(RandomCommands, ModelAndTreesStayTogether)
{
    for (uint32_t nSeed = 1; nSeed <= 2; ++nSeed)
    {
        CMonkey monkey(nSeed);
        CBrowserBench bench(std::move(monkey.m_pLibrary), monkey.m_Prompts);
        bench.host.m_pChosen = bench.lib->Module().FindType("Light");
        bench.import.m_Selected = {0, 1};
        CScopeChecker checker(bench.context);
        CHistoryBench undo(bench.context);
        size_t nSince = 0;
        for (int i = 0; i < 1000 && !::testing::Test::HasFailure(); ++i)
        {
            SCOPED_TRACE("seed " + std::to_string(nSeed) + " step " + std::to_string(i));
            if (monkey.Roll(3))
                monkey.Step(bench, bench.effects, bench.effectView);
            else
                monkey.Step(bench, bench.prefabs, bench.prefabView);
            bench.CheckModel();
            checker.Check();
            ++nSince;
            if (bench.effectView.m_bEditBox || bench.prefabView.m_bEditBox)
                continue;                             // undo takes a name first that is being typed
            undo.Check(2 * std::exchange(nSince, 0)); // a command takes a name, too
            bench.CheckModel();
            checker.Check();
        }
        EXPECT_GT(bench.edits.GetNumEdits(), 60u);
        bench.effects.CancelModes();
        bench.prefabs.CancelModes();
        undo.CheckAll();
    }
}
