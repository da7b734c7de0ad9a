#include <random>

#include "properties/PropertyBench.h"
#include "support/HistoryBench.h"

// What was done in a dialog is taken back in it.

TEST(OwnUndo, ARunIsOneStepAndWhatChangesNothingIsNone)
{
    struct CNumber : TOwnUndo<int>
    {
        int GetState() const override { return m_n; }
        void SetState(const int& n) override { m_n = n; }
        void Do(int n, uint64_t nRun = 0)
        {
            m_n = n;
            NoteStep(nRun);
        }
        int m_n = 0;
    } number;
    number.NoteStep();
    EXPECT_FALSE(number.Undo() || number.Redo());
    for (const int n : {1, 12, 123})
        number.Do(n, 7);
    number.Do(5);
    number.Do(5);
    EXPECT_TRUE(number.Undo());
    EXPECT_EQ(123, number.m_n);
    EXPECT_TRUE(number.Undo());
    EXPECT_EQ(0, number.m_n);
    EXPECT_FALSE(number.Undo());
    EXPECT_TRUE(number.Redo() && number.Redo());
    EXPECT_EQ(5, number.m_n);
    EXPECT_FALSE(number.Redo());

    // A run that comes back to where it began is no step; one that follows an undo begins anew.
    number.Do(6, 8);
    number.Do(5, 8);
    EXPECT_TRUE(number.Undo());
    EXPECT_EQ(123, number.m_n);
    number.Do(9, 8);
    EXPECT_FALSE(number.Redo());
    EXPECT_TRUE(number.Undo());
    EXPECT_EQ(123, number.m_n);
    number.m_n = 4; // not noted yet: undo sees it first
    EXPECT_TRUE(number.Undo());
    EXPECT_EQ(123, number.m_n);
    for (int n = 0; n < 1000; ++n)
        number.Do(1000 + n);
    int nSteps = 0;
    while (number.Undo())
        ++nSteps;
    EXPECT_EQ(int(CFunctionCurveDlg::c_nMostStates) - 1, nSteps);
}

TEST(OwnUndo, ACurveGetsItsKeysBack)
{
    CPropertyBench bench([](CTestPlugin& plugin)
                         { plugin.type("T").prop(ePropType_Float, "Line").linear(); });
    const CEffectProperty value = bench.Value("Line");
    CFunctionCurveDlg dialog(bench.services, &value, false);
    dialog.OnInitDialog(c_rcTestCurve, CRect{10, 130, 60, 147}, CRect{70, 130, 370, 147},
                        &bench.dialogs.m_Font);
    const auto keys = [&]
    {
        std::string sKeys;
        for (uint32_t i = 0; i < dialog.m_Prop.GetNumKeys(); ++i)
        {
            const CPropKey& key = *std::as_const(dialog.m_Prop).GetKey(i);
            sKeys += std::to_string(int(key.m_fTime * 100)) + (key.m_bSelected ? "* " : " ");
        }
        return sKeys;
    };
    EXPECT_EQ("0 100 ", keys());
    dialog.OnRightUp({60, 70});
    dialog.NoteStep();
    dialog.OnLeftDown({60, 70}, false);
    for (const int32_t x : {70, 80})
        dialog.OnMouseMove({x, 70}, false);
    dialog.OnLeftUp();
    dialog.NoteStep();
    EXPECT_EQ("0 70* 100 ", keys());
    dialog.OnCommand(c_nCmdUnselectAllCurveKeys); // no step
    dialog.NoteStep();
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("0 50* 100 ", keys());
    EXPECT_TRUE(dialog.GetControl(eCurve_Time).m_bEnabled) << "the key is selected again";
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("0 100 ", keys());
    EXPECT_FALSE(dialog.Undo());
    EXPECT_TRUE(dialog.Redo() && dialog.Redo());
    EXPECT_EQ("0 70* 100 ", keys());
}

TEST(OwnUndo, AVectorSwingsBack)
{
    CPropertyBench bench;
    CEditVectorDlg dialog(bench.prompts, CVector3{0, 2, 0});
    dialog.OnInitDialog({0, 0, 100, 100}, {100, 0, 200, 100});
    dialog.OnPreset(2);
    dialog.NoteStep();
    dialog.SetMagnitudeText("7");
    dialog.NoteStep(1);
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ(c_VectorPresets[2].m_vDirection.x, dialog.m_vDirection.x);
    EXPECT_NE("7", dialog.GetMagnitudeText());
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ(1.0f, dialog.m_vDirection.y);
    EXPECT_TRUE(dialog.Redo() && dialog.Redo());
    EXPECT_TRUE(dialog.OnOK());
    EXPECT_EQ(-7.0f, dialog.m_vResult.x);
}

TEST(OwnUndo, AColourAndThePaletteComeBack)
{
    CPropertyBench bench;
    CKRColorDialog dialog(bench.services, 0x00402010, CKRColorDialog::c_nOpaque);
    dialog.OnInitDialog(203, 69);
    dialog.OnText(eColor_RedBox, "200");
    dialog.NoteStep(1);
    dialog.OnText(eColor_AlphaBox, "9");
    dialog.NoteStep(2);
    dialog.OnCommand(eColor_AddButton);
    dialog.NoteStep();
    dialog.OnText(eColor_DescriptionBox, "Ember");
    dialog.NoteStep(3);
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("", dialog.GetText(eColor_DescriptionBox));
    EXPECT_EQ(0x094020C8u, dialog.GetPalette().GetColor(0));
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ(CCustomColorPalette::c_nEmptyColor, dialog.GetPalette().GetColor(0));
    EXPECT_EQ("9", dialog.GetText(eColor_AlphaBox));
    EXPECT_TRUE(dialog.Undo() && dialog.Undo());
    EXPECT_FALSE(dialog.Undo());
    EXPECT_EQ("16", dialog.GetText(eColor_RedBox));
    EXPECT_EQ("255", dialog.GetText(eColor_AlphaBox));
    EXPECT_EQ(0x402010u, dialog.GetChooser().GetRgb());
    while (dialog.Redo())
        ;
    EXPECT_TRUE(dialog.OnOK());
    EXPECT_EQ(0x094020C8u, dialog.m_nResultColor);
    EXPECT_EQ("Ember", dialog.GetDescription(0));
}

TEST(OwnUndo, RowsGetValuesInheritanceAndThePrefabBack)
{
    CPropertyBench bench;
    auto builder = bench.Build();
    builder.prefab("Sprite", "Puff").value("Count", 7);
    CKey* pKey = builder.effect("Smoke").key("Sprite").onPrefab("Puff").lastKey();
    CFXPropertiesDlg dialog(bench.services, *pKey);
    dialog.OnInitDialog(CRect{10, 20, 310, 64}, &bench.dialogs.m_Font); // two rows
    const uint32_t nCount = SlotOf(*pKey, "Count");
    // "own 55 check", or "inherited 7"
    const auto row = [&]
    {
        const CFXPropertiesDlg::CRow& count = dialog.GetRows()[nCount];
        return std::string(dialog.m_Props.GetPropertyDirect(nCount) ? "own " : "inherited ") +
               count.m_pCtrls->GetControl(1)->m_sText +
               (count.m_pCheck ? count.m_pCheck->m_bChecked ? " marked" : " unmarked" : "");
    };
    EXPECT_EQ("inherited 7 marked", row());
    dialog.OnCheck(CFXPropertiesDlg::c_nFirstCheckID + nCount, false);
    dialog.NoteStep();
    for (const char* pszText : {"5", "55"})
    {
        dialog.GetRows()[nCount].m_pCtrls->SetText(1, pszText);
        dialog.NoteStep(1);
    }
    dialog.OnDisconnect();
    EXPECT_EQ("own 55", row());
    while (dialog.GetTopRow() < int32_t(nCount))
        dialog.OnVScroll(EScrollCode::eLineDown);
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("own 55 unmarked", row());
    EXPECT_TRUE(dialog.HasParentButtons());
    const CControlDesc& check = *dialog.GetRows()[nCount].m_pCheck;
    EXPECT_TRUE(check.m_bVisible) << "where the list is by now";
    EXPECT_EQ(20, check.m_rc.top);
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("own 7 unmarked", row());
    EXPECT_TRUE(dialog.Undo());
    EXPECT_EQ("inherited 7 marked", row());
    EXPECT_FALSE(dialog.Undo());
    EXPECT_TRUE(dialog.Redo() && dialog.Redo() && dialog.Redo());
    EXPECT_EQ("own 55", row());
    EXPECT_FALSE(dialog.HasParentButtons());
    EXPECT_TRUE(dialog.OnOK());
    EXPECT_EQ(55, std::as_const(*dialog.m_Props.GetPropertyDirect(nCount)).GetKey(0)->m_Data.GetInt());
}

// What was done in it is one step behind OK and none behind Cancel; the prefab's dialog on top of it has its own.
TEST(OwnUndo, OkIsOneStepOfTheLibrary)
{
    CPropertyBench bench;
    auto builder = bench.Build();
    CEffectPropertySet* pPrefab = builder.prefab("Sprite", "Puff").value("Count", 7).lastSet();
    CKey* pKey = builder.effect("Smoke").key("Sprite").onPrefab("Puff").lastKey();
    CHistoryBench undo(bench.context);
    std::mt19937 random(7);
    const auto below = [&](size_t n) { return static_cast<uint32_t>(random() % n); };
    int nDepth = 0;
    bench.dialogs.m_Properties = [&](CFXPropertiesDlg& dialog)
    {
        ++nDepth;
        for (uint32_t n = below(8); n > 0; --n)
        {
            const uint32_t nRow = below(dialog.GetRows().size());
            CEffectPropertyCtrls* pCtrls = dialog.GetRows()[nRow].m_pCtrls.get();
            if (below(4) == 0)
                dialog.OnCheck(CFXPropertiesDlg::c_nFirstCheckID + nRow, below(2) == 0);
            else if (below(12) == 0)
                dialog.OnDisconnect();
            else if (below(12) == 0 && nDepth == 1)
                dialog.OnOpenParent();
            else if (pCtrls)
                pCtrls->SetText(1, std::to_string(below(20)));
            dialog.NoteStep();
            if (below(4) == 0)
                below(2) ? dialog.Undo() : dialog.Redo();
        }
        --nDepth;
        return below(4) != 0;
    };
    for (int i = 0; i < 200; ++i)
    {
        EditProperties(bench.services, below(3) ? static_cast<CEffectPropertySet&>(*pKey) : *pPrefab);
        undo.Check(2); // the prefab's own
        ASSERT_FALSE(HasFatalFailure()) << i;
        if (!pKey->GetParent())
        {
            EXPECT_TRUE(undo.m_History.Undo());
            undo.Forget();
        }
    }
    EXPECT_GT(undo.m_History.GetNumSteps(), 20u);
    undo.CheckAll();
}
