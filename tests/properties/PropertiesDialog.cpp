#include "properties/PropertyBench.h"
#include "support/ScopeChecker.h"

namespace
{

const CRect c_rcRows{10, 20, 310, 240}; // ten rows

std::string TextIn(const CFXPropertiesDlg& dialog, const CEffectPropertySet& set, const char* pszProp,
                   int nSlot = 1)
{
    return dialog.GetRows()[SlotOf(set, pszProp)].m_pCtrls->GetControl(nSlot)->m_sText;
}

// A key on a prefab, both sprites.
struct CDialogBench : CPropertyBench
{
    CDialogBench()
    {
        auto builder = Build();
        pPrefab = builder.prefab("Sprite", "Puff").value("Count", 7).value("Label", "from prefab").lastSet();
        pKey = builder.effect("Smoke").key("Sprite", 100, 900).name("Plume").onPrefab("Puff").lastKey();
        checker = std::make_unique<CScopeChecker>(context);
    }
    uint32_t Check(const char* pszProp) { return CFXPropertiesDlg::c_nFirstCheckID + SlotOf(*pKey, pszProp); }
    void Type(CFXPropertiesDlg& dialog, const char* pszProp, const char* pszText, int nSlot = 1)
    {
        dialog.GetRows()[SlotOf(*pKey, pszProp)].m_pCtrls->SetText(nSlot, pszText);
    }

    CEffectPropertySet* pPrefab = nullptr;
    CKey* pKey = nullptr;
    std::unique_ptr<CScopeChecker> checker;
};

} // namespace

TEST(PropertiesDialog, RowsStandInTheirPlaces)
{
    CDialogBench bench;
    CFXPropertiesDlg dialog(bench.services, *bench.pKey);
    dialog.OnInitDialog(c_rcRows, &bench.dialogs.m_Font);
    EXPECT_EQ("Plume - Sprite", dialog.GetCaption());
    EXPECT_EQ(10, dialog.GetNumVisibleRows());
    ASSERT_EQ(12u, dialog.GetRows().size());
    const auto& rows = dialog.GetRows();
    EXPECT_EQ("check 10,42 20x17 #7001", ControlText(rows[1].m_pCheck.get()));
    EXPECT_EQ("label 30,44 80x13 #65535 'Blend :' right", ControlText(rows[1].m_pCtrls->GetControl(0)));
    // Texture has taken three ids.
    EXPECT_EQ("combo 120,42 70x17 #5004 off", ControlText(rows[1].m_pCtrls->GetControl(1)));
    EXPECT_EQ("label 120,66 190x13 #65535 'Look'", ControlText(rows[2].m_pCtrls->GetControl(0)));
    EXPECT_TRUE(rows[2].m_pCheck->m_bChecked);
    EXPECT_EQ("Check box that indicates whether or not the property gets its value from this key or the "
              "parent prefab.",
              rows[2].m_pCheck->m_sToolTip);
    EXPECT_EQ("function 120,84 190x21 #5007 'Function'", ControlText(rows[3].m_pCtrls->GetControl(1)));
    EXPECT_TRUE(rows[9].m_pCheck->m_bVisible);
    EXPECT_FALSE(rows[10].m_pCheck->m_bVisible);
    EXPECT_EQ("7", TextIn(dialog, *bench.pKey, "Count"));

    CFXPropertiesDlg prefab(bench.services, *bench.pPrefab);
    prefab.OnInitDialog(c_rcRows, &bench.dialogs.m_Font);
    EXPECT_EQ(nullptr, prefab.GetRows()[1].m_pCheck);
    EXPECT_FALSE(prefab.HasParentButtons());
    EXPECT_EQ("combo 120,42 70x17 #5004", ControlText(prefab.GetRows()[1].m_pCtrls->GetControl(1)));
    EXPECT_EQ(30, prefab.GetRows()[1].m_pCtrls->GetControl(0)->m_rc.left);
}

TEST(PropertiesDialog, TheViewHearsOfWhatChanges)
{
    struct CView : IPropertiesView
    {
        void OnCheckChanged(uint32_t nRow) override { log += "c" + std::to_string(nRow) + " "; }
        void OnScrollBarChanged() override { log += "bar "; }
        void OnParentButtonsChanged() override { log += "buttons "; }
        void Repaint() override { log += "paint "; }
        std::string Take() { return std::exchange(log, std::string()); }
        std::string log;
    } view;
    CPropertyBench bench([](CTestPlugin& plugin)
                         { plugin.type("T").prop(ePropType_Int, "A").prop(ePropType_Int, "B"); });
    auto builder = bench.Build();
    builder.prefab("T", "P");
    CKey* pKey = builder.effect("E").key("T", 0, 10).onPrefab("P").lastKey();
    CFXPropertiesDlg dialog(bench.services, *pKey);
    dialog.SetView(&view);
    dialog.OnInitDialog(CRect{0, 0, 300, 22}, &bench.dialogs.m_Font);
    EXPECT_EQ("c0 c0 c1 c1 bar paint buttons ", view.Take());
    dialog.OnCheck(CFXPropertiesDlg::c_nFirstCheckID + 1, false);
    EXPECT_EQ("c1 ", view.Take());
    dialog.OnCheck(CFXPropertiesDlg::c_nFirstCheckID + 2, true);
    dialog.OnVScroll(EScrollCode::eOther);
    dialog.OnVScroll(EScrollCode::eLineUp);
    EXPECT_EQ("", view.Take());
    dialog.OnVScroll(EScrollCode::eLineDown);
    EXPECT_EQ("bar c0 c1 paint ", view.Take());
    dialog.OnDisconnect();
    EXPECT_EQ("c0 c1 buttons ", view.Take());
    dialog.OnDisconnect();
    EXPECT_EQ("", view.Take());
}

TEST(PropertiesDialog, ChecksTakeAndGiveBackValues)
{
    CDialogBench bench;
    bench.dialogs.m_Properties = [&](CFXPropertiesDlg& dialog)
    {
        const CEffectPropertySet& set = *bench.pKey;
        dialog.OnCheck(bench.Check("Count"), false);
        bench.Type(dialog, "Count", "55");
        bench.Type(dialog, "Label", "disabled"); // not the key's own: can't be typed into
        dialog.OnCheck(bench.Check("Count"), true);
        EXPECT_EQ("7", TextIn(dialog, set, "Count")); // the typed one is gone
        EXPECT_TRUE(dialog.GetRows()[SlotOf(set, "Count")].m_pCheck->m_bChecked);

        dialog.OnCheck(bench.Check("Count"), false);
        bench.Type(dialog, "Count", "5000"); // beyond its range
        dialog.OnCheck(bench.Check("Label"), false);
        dialog.OnCheck(bench.Check("Count") - 1000, true); // ids of others
        dialog.OnCheck(7012, true);
        return true;
    };
    EXPECT_TRUE(EditProperties(bench.services, *bench.pKey));
    bench.checker->ExpectEdits(1);
    EXPECT_EQ(1000, OwnPropOf(*bench.pKey, "Count")->GetKey(0)->m_Data.GetInt());
    EXPECT_EQ("from prefab", OwnPropOf(*bench.pKey, "Label")->GetKey(0)->m_Data.GetText());
    EXPECT_EQ(nullptr, OwnPropOf(*bench.pKey, "Velocity"));
    EXPECT_EQ(bench.pPrefab, bench.pKey->GetParent());
    EXPECT_EQ(100, bench.pKey->m_nStartTime);

    bench.checker.reset();
    PropOf(*bench.pPrefab, "Label")->GetKey(0)->m_Data.SetText("later"); // reaches the key no more
    EXPECT_EQ("from prefab", TextOf(*bench.pKey, "Label"));
}

TEST(PropertiesDialog, DisconnectKeepsWhatIsTypedAndCancelKeepsTheLink)
{
    CDialogBench bench;
    bool bAccept = false;
    bench.dialogs.m_Properties = [&](CFXPropertiesDlg& dialog)
    {
        dialog.OnCheck(bench.Check("Count"), false);
        bench.Type(dialog, "Count", "33");
        dialog.OnDisconnect();
        EXPECT_FALSE(dialog.HasParentButtons());
        EXPECT_EQ(nullptr, dialog.GetRows()[0].m_pCheck);
        EXPECT_TRUE(dialog.GetRows()[8].m_pCtrls->GetControl(1)->m_bEnabled);
        EXPECT_EQ("33", TextIn(dialog, *bench.pKey, "Count"));
        bench.Type(dialog, "Label", "own");
        return bAccept;
    };
    EXPECT_FALSE(EditProperties(bench.services, *bench.pKey));
    bench.checker->ExpectEdits(0);
    EXPECT_EQ(bench.pPrefab, bench.pKey->GetParent());
    bAccept = true;
    EXPECT_TRUE(EditProperties(bench.services, *bench.pKey));
    bench.checker->ExpectEdits(1);
    EXPECT_EQ(nullptr, bench.pKey->GetParent());
    EXPECT_EQ(33, IntOf(*bench.pKey, "Count"));
    EXPECT_EQ("own", TextOf(*bench.pKey, "Label"));
    EXPECT_EQ("from prefab", TextOf(*bench.pPrefab, "Label"));
}

TEST(PropertiesDialog, OpenParentChangesThePrefabAtOnce)
{
    CDialogBench bench;
    bool bNestedOk = false;
    bool bNested = false;
    bench.dialogs.m_Properties = [&](CFXPropertiesDlg& dialog)
    {
        if (bNested)
        {
            EXPECT_EQ("Puff - Sprite", dialog.GetCaption());
            bench.Type(dialog, "Label", "nested");
            return bNestedOk;
        }
        bNested = true;
        dialog.OnCheck(bench.Check("Count"), false);
        bench.Type(dialog, "Count", "5000");
        dialog.OnOpenParent();
        // Read and brought into range in either case, but only an OK shows it.
        EXPECT_EQ(1000, IntOf(dialog.m_Props, "Count"));
        EXPECT_EQ(bNestedOk ? "1000" : "5000", TextIn(dialog, *bench.pKey, "Count"));
        EXPECT_EQ(bNestedOk ? "nested" : "from prefab", TextIn(dialog, *bench.pKey, "Label"));
        bench.checker->ExpectEdits(bNestedOk ? 1 : 0); // told before the outer dialog goes on
        bNested = false;
        return false;
    };
    EXPECT_FALSE(EditProperties(bench.services, *bench.pKey));
    bNestedOk = true;
    EXPECT_FALSE(EditProperties(bench.services, *bench.pKey));
    EXPECT_EQ("nested", TextOf(*bench.pPrefab, "Label")); // stays
    EXPECT_EQ(nullptr, OwnPropOf(*bench.pKey, "Count"));  // and this is gone
}

TEST(PropertiesDialog, CurvesOpenReadOnlyWhileTheyAreInherited)
{
    CDialogBench bench;
    const uint32_t nSize = SlotOf(*bench.pKey, "Size");
    bench.dialogs.m_Curve = [](CFunctionCurveDlg& dialog)
    {
        dialog.OnCommand(c_nCmdSelectAllCurveKeys);
        dialog.OnRightUp(CPoint{60, 70});
        return true;
    };
    bool bOwn = false;
    bench.dialogs.m_Properties = [&](CFXPropertiesDlg& dialog)
    {
        if (bOwn)
            dialog.OnCheck(bench.Check("Size"), false);
        dialog.GetRows()[nSize].m_pCtrls->Press(1);
        EXPECT_EQ(bOwn ? 3u : 2u, dialog.m_Props.GetProperty(nSize)->GetNumKeys());
        return bOwn;
    };
    EXPECT_FALSE(EditProperties(bench.services, *bench.pKey));
    bench.checker->ExpectEdits(0);
    EXPECT_FALSE(PropOf(*bench.pPrefab, "Size")->GetKey(0)->m_bSelected); // not even a selection
    bOwn = true;
    EXPECT_TRUE(EditProperties(bench.services, *bench.pKey));
    bench.checker->ExpectEdits(1);
    EXPECT_EQ("0 0.5 1", TimesOf(*bench.pKey, "Size"));
    EXPECT_EQ("0 1", TimesOf(*bench.pPrefab, "Size"));
}

TEST(PropertiesDialog, ScrollingMovesRowsAndStopsAtTheEnds)
{
    CDialogBench bench;
    CFXPropertiesDlg dialog(bench.services, *bench.pKey);
    dialog.OnInitDialog(c_rcRows, &bench.dialogs.m_Font); // 12 rows, 10 in view
    const auto top = [&] { return dialog.GetRows()[0].m_pCheck->m_rc.top; };
    EXPECT_EQ((CScrollBarState{2, 10, 0, true, false, true}), dialog.GetScrollBar());
    dialog.OnMouseWheel(-5000); // one message, one row
    EXPECT_EQ(1, dialog.GetTopRow());
    EXPECT_EQ(20 - 22, top());
    EXPECT_EQ(20 - 22, dialog.GetRows()[0].m_pCtrls->GetControl(1)->m_rc.top + 2);
    EXPECT_FALSE(dialog.GetRows()[0].m_pCheck->m_bVisible);
    EXPECT_TRUE(dialog.GetRows()[10].m_pCtrls->GetControl(0)->m_bVisible);
    dialog.OnMouseWheel(0);
    dialog.OnMouseWheel(-70, true); // a touchpad
    EXPECT_EQ(1, dialog.GetTopRow());
    dialog.OnMouseWheel(-50, true);
    EXPECT_EQ(2, dialog.GetTopRow());
    EXPECT_EQ((CScrollBarState{2, 10, 2, true, true, false}), dialog.GetScrollBar());
    EXPECT_FALSE(dialog.OnTabOut(true));
    EXPECT_TRUE(dialog.OnTabOut(false));
    dialog.OnVScroll(EScrollCode::eThumbTrack, INT32_MAX);
    EXPECT_EQ(2, dialog.GetTopRow());
    dialog.OnVScroll(EScrollCode::ePageUp);
    EXPECT_EQ(0, dialog.GetTopRow());
    EXPECT_EQ(20, top());

    // As many as there is room for: scrolling is on, and goes nowhere.
    CFXPropertiesDlg exact(bench.services, *bench.pKey);
    exact.OnInitDialog(CRect{0, 0, 300, 12 * 22 + 5}, &bench.dialogs.m_Font);
    exact.OnVScroll(EScrollCode::ePageDown);
    EXPECT_EQ((CScrollBarState{0, 12, 0, true, false, false}), exact.GetScrollBar());

    CPropertyBench none([](CTestPlugin& plugin) { plugin.type("Marker"); });
    CEffectPropertySet empty(none.pModule->m_Module.GetType(0));
    CFXPropertiesDlg nothing(none.services, empty);
    nothing.OnInitDialog(c_rcRows, &none.dialogs.m_Font);
    nothing.OnMouseWheel(-120);
    EXPECT_FALSE(nothing.GetScrollBar().m_bEnabled);
    EXPECT_TRUE(nothing.OnOK());
}
