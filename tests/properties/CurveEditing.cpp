#include <cmath>

#include "properties/PropertyBench.h"

namespace
{

// Types of curves without ranges in the way, but for the last.
void DescribeCurves(CTestPlugin& plugin)
{
    plugin.type("Curves").prop(ePropType_Float, "Line").linear();
    plugin.prop(ePropType_Float, "Steps").step();
    plugin.prop(ePropType_Color, "Color").def(CTestColor{10, 20, 30, 255}).linear();
    plugin.prop(ePropType_Vector, "Vector").linear();
    plugin.prop(ePropType_String, "Text").def("t").step();
    plugin.prop(ePropType_Float, "Limited").range("0;5").linear();
}

// A curve dialog on an area of 100 by 100 pixels at 10, 20, with a value range of 0 to 10.
struct CCurveBench : CPropertyBench
{
    explicit CCurveBench(const std::string& sName, std::vector<std::pair<float, float>> keys = {},
                         bool bReadOnly = false)
        : CPropertyBench(DescribeCurves)
    {
        CEffectProperty prop(&Desc(sName));
        for (const auto& [fTime, fValue] : keys)
        {
            CPropKey key;
            key.m_fTime = fTime;
            if (prop.GetDesc()->m_eType == ePropType_Vector)
                key.m_Data.SetVector(CVector3{fValue, 0, 0});
            else
                key.m_Data.SetFloat(fValue);
            prop.AddKey(key);
        }
        ValidateStructure(&prop);
        dlg = std::make_unique<CFunctionCurveDlg>(services, &prop, bReadOnly);
        dlg->OnInitDialog(c_rcTestCurve, CRect{10, 130, 60, 147}, CRect{70, 130, 370, 147}, &dialogs.m_Font);
    }
    void Range(double fMin, double fMax)
    {
        prompts.onFloat(fMin, "minimum Y").onFloat(fMax, "maximum Y");
        dlg->OnCommand(eCurve_YMin);
        dlg->OnCommand(eCurve_YMax);
    }
    CPoint At(double fTime, double fValue) const // with the range 0 to 10
    {
        return CPoint{10 + int(fTime * 100), 120 - int(fValue * 10)};
    }
    // "0:1 0.5:3* 1:2", a star for a selected key.
    std::string Keys() const
    {
        std::string sKeys;
        for (uint32_t i = 0; i < dlg->m_Prop.GetNumKeys(); ++i)
        {
            const CPropKey& key = *std::as_const(dlg->m_Prop).GetKey(i);
            char szKey[64];
            const double fValue = GetAxisValue(dlg->m_Prop, key, dlg->GetView().m_nAxis);
            std::snprintf(szKey, sizeof(szKey), "%s%.3g:%.4g%s", i ? " " : "", double(key.m_fTime), fValue,
                          key.m_bSelected ? "*" : "");
            sKeys += szKey;
        }
        return sKeys;
    }
    std::string TimeButton() const
    {
        const CCurveControlState state = dlg->GetControl(eCurve_Time);
        return state.m_sText + (state.m_bEnabled ? "" : " off");
    }
    std::unique_ptr<CFunctionCurveDlg> dlg;
};

} // namespace

TEST(CurveEditing, PressesSelectWithinTenPixels)
{
    CCurveBench bench("Line", {{0, 1}, {0.5f, 5}, {0.55f, 5}, {1, 1}});
    bench.Range(0, 10);
    bench.dlg->OnLeftDown(bench.At(0.57, 5), false); // both in reach: the earlier one
    EXPECT_EQ("0:1 0.5:5* 0.55:5 1:1", bench.Keys());
    EXPECT_TRUE(bench.dlg->IsDragging());
    bench.dlg->OnLeftUp();
    EXPECT_EQ("0.5000", bench.TimeButton());
    bench.dlg->OnLeftDown(CPoint{10, 119}, true); // 9 pixels from the first
    bench.dlg->OnLeftUp();
    EXPECT_EQ("0:1* 0.5:5* 0.55:5 1:1", bench.Keys());
    EXPECT_EQ("-- off", bench.TimeButton());
    bench.dlg->OnLeftDown(CPoint{10, 119}, true); // Ctrl doesn't take away
    bench.dlg->OnLeftUp();
    EXPECT_EQ("0:1* 0.5:5* 0.55:5 1:1", bench.Keys());
    bench.dlg->OnLeftDown(CPoint{110, 50}, false); // the right edge lies outside
    EXPECT_EQ("0:1* 0.5:5* 0.55:5 1:1", bench.Keys());
    bench.dlg->OnLeftDown(CPoint{10, 99}, true); // 11 pixels from it
    EXPECT_EQ("0:1 0.5:5 0.55:5 1:1", bench.Keys());
    EXPECT_FALSE(bench.dlg->GetRow().GetControl(1)->m_bVisible);
}

TEST(CurveEditing, DragsMoveFromTheLastPointerOn)
{
    CCurveBench bench("Line", {{0, 1}, {0.5f, 5}, {0.75f, 2}, {1, 1}});
    bench.Range(0, 10);
    bench.dlg->OnLeftDown(bench.At(0.5, 5), false);
    bench.dlg->OnMouseMove(CPoint{64, 70}, false); // 4 pixels: no drag yet
    EXPECT_EQ("0:1 0.5:5* 0.75:2 1:1", bench.Keys());
    bench.dlg->OnMouseMove(CPoint{65, 60}, false); // includes the way up to here
    EXPECT_EQ("0:1 0.55:6* 0.75:2 1:1", bench.Keys());
    EXPECT_EQ("6.0000", bench.dlg->GetRow().GetControl(1)->m_sText);
    EXPECT_EQ("0.5500", bench.TimeButton());
    bench.dlg->OnMouseMove(CPoint{95, 50}, true); // Shift: the value alone
    EXPECT_EQ("0:1 0.55:7* 0.75:2 1:1", bench.Keys());
    bench.dlg->OnMouseMove(CPoint{65, 50}, true);
    bench.dlg->OnMouseMove(CPoint{95, 50}, false); // past its neighbour
    EXPECT_EQ("0:1 0.75:2 0.85:7* 1:1", bench.Keys());
    bench.dlg->OnMouseMove(CPoint{500, 50}, false); // the time ends at 1
    bench.dlg->OnLeftUp();
    bench.dlg->OnMouseMove(CPoint{60, 100}, false);
    EXPECT_EQ("0:1 0.75:2 1:7* 1:1", bench.Keys());
    EXPECT_FALSE(bench.dlg->CancelDrag()) << "over";

    // Taken back, also past a neighbour; the moves that follow belong to nobody.
    bench.dlg->OnLeftDown(bench.At(0.75, 2), false);
    bench.dlg->OnMouseMove(CPoint{20, 30}, false);
    EXPECT_EQ("0:1 0.1:9* 1:7 1:1", bench.Keys());
    EXPECT_TRUE(bench.dlg->CancelDrag());
    EXPECT_EQ("0:1 0.75:2* 1:7 1:1", bench.Keys());
    EXPECT_EQ("2.0000 0.7500", bench.dlg->GetRow().GetControl(1)->m_sText + " " + bench.TimeButton());
    bench.dlg->OnMouseMove(CPoint{20, 30}, false);
    EXPECT_EQ("0:1 0.75:2* 1:7 1:1", bench.Keys());
}

TEST(CurveEditing, GroupsMoveTogetherAndPinnedKeysKeepTheirTime)
{
    CCurveBench bench("Line", {{0, 1}, {0.5f, 5}, {0.9f, 5}, {1, 1}});
    bench.Range(0, 10);
    bench.dlg->OnCommand(c_nCmdSelectAllCurveKeys);
    bench.dlg->OnLeftDown(bench.At(0.5, 5), true); // without Ctrl it would be alone
    bench.dlg->OnMouseMove(CPoint{80, 60}, false);
    EXPECT_EQ("0:2* 0.7:6* 1:6* 1:2*", bench.Keys()); // pressed against 1 it loses its spacing
    bench.dlg->OnLeftUp();
    bench.dlg->OnCommand(c_nCmdDeleteCurveKeys);
    EXPECT_EQ("0:2 1:2", bench.Keys());
    EXPECT_TRUE(bench.dlg->IsTimeLocked(1) && bench.dlg->IsTimeLocked(2));

    CCurveBench steps("Steps", {{0, 1}, {0.5f, 5}, {1, 1}});
    steps.Range(0, 10);
    steps.dlg->OnLeftDown(steps.At(1, 1), false); // outside: x = 110
    steps.dlg->OnLeftDown(CPoint{105, 110}, false);
    steps.dlg->OnMouseMove(CPoint{95, 110}, false); // the last of a step curve is free
    steps.dlg->OnLeftUp();
    EXPECT_EQ("0:1 0.5:5 0.9:1*", steps.Keys());
    EXPECT_FALSE(steps.dlg->IsTimeLocked(2));
    EXPECT_TRUE(steps.dlg->IsTimeLocked(3)); // none
    steps.dlg->OnCommand(c_nCmdSelectAllCurveKeys);
    steps.dlg->OnCommand(c_nCmdDeleteCurveKeys);
    EXPECT_EQ("0:1", steps.Keys());
}

TEST(CurveEditing, SlowDragsOfWholeNumbersStayAsTheyAre)
{
    CPropertyBench plain([](CTestPlugin& plugin)
                         { plugin.type("T").prop(ePropType_Int, "I").range("0;8").linear(); });
    CEffectProperty prop = plain.Value("I");
    CFunctionCurveDlg dlg(plain.services, &prop, false);
    dlg.OnInitDialog(c_rcTestCurve, CRect{}, CRect{}, &plain.dialogs.m_Font); // flat at 0: -10 to 10
    EXPECT_EQ("-10.00", dlg.GetControl(eCurve_YMin).m_sText);
    dlg.OnLeftDown(CPoint{10, 70}, false);
    for (int y = 65; y > 55; --y)
        dlg.OnMouseMove(CPoint{10, y}, false); // 5 pixels are 1, then steps of 0.2 that round away
    EXPECT_EQ(1, dlg.m_Prop.GetKey(0)->m_Data.GetInt());
    dlg.OnMouseMove(CPoint{10, -500}, false);
    EXPECT_EQ(8, dlg.m_Prop.GetKey(0)->m_Data.GetInt()); // its range
}

TEST(CurveEditing, KeysAreAddedUnclampedAndAtTheirPlace)
{
    CCurveBench bench("Limited", {{0, 1}, {0.5f, 99}, {1, 1}});
    bench.Range(0, 10);
    bench.dlg->OnRightUp(bench.At(0.5, 7)); // behind the old one of that time; the others come into range
    EXPECT_EQ("0:1 0.5:5 0.5:7* 1:1", bench.Keys());
    bench.dlg->OnRightUp(CPoint{110, 50});
    bench.dlg->OnRightUp(CPoint{50, 120});
    EXPECT_EQ(4u, bench.dlg->m_Prop.GetNumKeys()); // the right and the bottom edge
    bench.dlg->OnLeftDown(bench.At(0.5, 7), false);
    bench.dlg->OnMouseMove(bench.At(0.5, 6.4), false);
    bench.dlg->OnRightUp(bench.At(0.2, 3)); // within the drag, which goes on with the new key
    bench.dlg->OnMouseMove(bench.At(0.6, 5.4), false);
    EXPECT_EQ("0:1 0.3:2* 0.5:5 0.5:5 1:1", bench.Keys());
    bench.dlg->OnOK();
    EXPECT_EQ("0:1 0.3:2* 0.5:5 0.5:5 1:1", bench.Keys());

    CCurveBench color("Color");
    color.dlg->OnAxisChange(1);
    color.dlg->OnRightUp(CPoint{60, 20 + 50}); // half way between -0.1 and 1.1
    EXPECT_EQ(MakePropColor(10, 127, 30, 255), color.dlg->m_Prop.GetKey(1)->m_Data.GetColor());
}

TEST(CurveEditing, TheKeyboardStepsAndInserts)
{
    CCurveBench bench("Line", {{0.0f, 0.0f}, {0.5f, 4.0f}, {1.0f, 2.0f}});
    bench.Range(0, 10);
    CFunctionCurveDlg& dlg = *bench.dlg;
    dlg.OnStepKey(false, false);
    EXPECT_EQ("0:0* 0.5:4 1:2", bench.Keys()) << "from nowhere";
    dlg.OnStepKey(true, true);
    dlg.OnStepKey(true, false);
    dlg.OnStepKey(true, false);
    EXPECT_EQ("0:0 0.5:4 1:2*", bench.Keys()) << "the end";
    dlg.OnStepKey(false, false);
    dlg.OnInsertKey();
    EXPECT_EQ("0:0 0.5:4 0.75:3* 1:2", bench.Keys());
    dlg.SelectAll(false);
    dlg.OnInsertKey();
    EXPECT_EQ(5u, dlg.m_Prop.GetNumKeys());

    CCurveBench looked("Line", {{0.0f, 0.0f}, {1.0f, 2.0f}}, true);
    looked.dlg->OnStepKey(true, false);
    looked.dlg->OnInsertKey();
    EXPECT_EQ("0:0* 1:2", looked.Keys());
}

// A key that the keyboard inserts lies on the curve, on all axes, wherever the view's pixels are.
TEST(CurveEditing, InsertLeavesTheCurveAsItIs)
{
    CCurveBench bench("Line", {{0.0f, 0.123f}, {0.437f, 3.21f}, {1.0f, 2.0f}});
    bench.Range(-1000, 1000); // a pixel is 20
    CFunctionCurveDlg& dlg = *bench.dlg;
    const CEffectProperty before = dlg.m_Prop;
    dlg.OnStepKey(true, false);
    for (int i = 0; i < 4; ++i)
        dlg.OnInsertKey();
    dlg.OnStepKey(true, false);
    for (int i = 0; i < 9; ++i)
        dlg.OnStepKey(true, false);
    dlg.OnInsertKey(); // the last one is pinned to the end: before it
    ASSERT_EQ(8u, dlg.m_Prop.GetNumKeys());
    EXPECT_TRUE(dlg.m_Prop.GetKey(6)->m_bSelected);
    EXPECT_EQ(1.0f, dlg.m_Prop.GetKey(7)->m_fTime);
    for (int i = 0; i <= 100; ++i)
        EXPECT_NEAR(EvaluateAxis(before, 0, i / 100.0), EvaluateAxis(dlg.m_Prop, 0, i / 100.0), 1e-6) << i;

    CCurveBench steps("Steps", {{0.0f, 5.0f}, {0.6f, 1.0f}});
    steps.dlg->SelectAll(false);
    steps.dlg->OnInsertKey();
    EXPECT_EQ("0:5 0.5:5* 0.6:1", steps.Keys());

    // At the time of others: behind them, with the last one's value, which holds from there on.
    CCurveBench equal("Steps", {{0.0f, 1.0f}, {0.5f, 3.0f}, {0.8f, 2.0f}});
    equal.dlg->SelectAll(false);
    equal.dlg->OnInsertKey();
    EXPECT_EQ("0:1 0.5:3 0.5:3* 0.8:2", equal.Keys());
    steps.dlg->OnStepKey(true, false);
    steps.dlg->OnInsertKey();
    EXPECT_EQ("0:5 0.5:5 0.6:1 0.8:1*", steps.Keys());

    CCurveBench vector("Vector");
    vector.dlg->m_Prop.GetKey(0)->m_Data.SetVector(CVector3{1, 20, -300});
    vector.dlg->m_Prop.GetKey(1)->m_Data.SetVector(CVector3{3, 40, -500});
    vector.dlg->OnInsertKey();
    EXPECT_EQ((CVector3{2, 30, -400}), vector.dlg->m_Prop.GetKey(1)->m_Data.GetVector());

    CCurveBench color("Color");
    color.dlg->m_Prop.GetKey(0)->m_Data.SetColor(MakePropColor(200, 7, 100, 254));
    color.dlg->m_Prop.GetKey(1)->m_Data.SetColor(MakePropColor(100, 7, 50, 54));
    color.dlg->OnInsertKey();
    EXPECT_EQ(MakePropColor(150, 7, 75, 154), color.dlg->m_Prop.GetKey(1)->m_Data.GetColor());

    CCurveBench text("Text");
    text.dlg->m_Prop.GetKey(0)->m_Data.SetText("own");
    text.dlg->OnInsertKey();
    EXPECT_EQ("own", text.dlg->m_Prop.GetKey(1)->m_Data.GetText());
}

TEST(CurveEditing, ReadOnlyCurvesCanOnlyBeLookedAt)
{
    CCurveBench bench("Line", {{0, 1}, {0.5f, 5}, {1, 1}}, true);
    bench.Range(0, 10);
    bench.dlg->OnLeftDown(bench.At(0.5, 5), false);
    bench.dlg->OnMouseMove(bench.At(0.7, 7), false);
    bench.dlg->OnLeftUp();
    EXPECT_EQ("0:1 0.5:5* 1:1", bench.Keys());
    EXPECT_EQ("5.0000", bench.dlg->GetRow().GetControl(1)->m_sText);
    EXPECT_FALSE(bench.dlg->GetRow().GetControl(1)->m_bEnabled);
    EXPECT_EQ("0.5000 off", bench.TimeButton());
    bench.dlg->OnCommand(eCurve_Time); // asks nothing
    bench.dlg->OnRightUp(bench.At(0.2, 2));
    bench.dlg->OnCommand(eCurve_Copy);
    bench.dlg->OnCommand(eCurve_Paste);
    EXPECT_FALSE(bench.dlg->GetControl(eCurve_Paste).m_bEnabled);
    bench.dlg->OnCommand(c_nCmdDeleteCurveKeys);
    EXPECT_EQ("0:1 0.5:5 1:1", bench.Keys());
    bench.dlg->OnBestFit();
    EXPECT_EQ("0.80", bench.dlg->GetControl(eCurve_YMin).m_sText);
}

TEST(CurveEditing, BestFitByKind)
{
    const auto fit = [](const std::string& sName, std::vector<std::pair<float, float>> keys)
    {
        CCurveBench bench(sName, std::move(keys));
        char szText[64];
        std::snprintf(szText, sizeof(szText), "%g %g", double(bench.dlg->GetView().m_fYMin),
                      double(bench.dlg->GetView().m_fYMax));
        return std::string(szText);
    };
    EXPECT_EQ("-7 13", fit("Line", {{0, 3}, {1, 3}}));
    EXPECT_EQ("-0.1 2.1", fit("Line", {{0, 0}, {1, 2}}));
    EXPECT_EQ("1.9 4.1", fit("Line", {{0, 2}, {0.5f, 4}, {1, 3}}));
    EXPECT_EQ("-4.1 -1.9", fit("Line", {{0, -2}, {0.5f, -4}, {1, -3}}));
    EXPECT_EQ("-10 10.005", fit("Line", {{0, 0}, {1, 0.005f}}));
    EXPECT_EQ("-0.1 1.1", fit("Color", {}));
    EXPECT_EQ("-0.5 0.5", fit("Text", {}));
    EXPECT_EQ("-0.1 2.1", fit("Line", {{0, NAN}, {1, 2}}));
    EXPECT_EQ("-3.40282e+38 3.40282e+38", fit("Line", {{0, -3.4e38f}, {1, 3.4e38f}}));

    CCurveBench vector("Vector", {{0, 4}, {1, 8}}); // X alone differs
    EXPECT_FLOAT_EQ(8.2f, vector.dlg->GetView().m_fYMax);
    vector.dlg->OnAxisChange(2);
    EXPECT_FLOAT_EQ(8.2f, vector.dlg->GetView().m_fYMax); // as it was, until asked
    vector.dlg->OnBestFit();
    EXPECT_FLOAT_EQ(10.0f, vector.dlg->GetView().m_fYMax);
    EXPECT_FALSE(vector.dlg->GetControl(eCurve_YMax).m_bVisible);
    EXPECT_TRUE(vector.dlg->GetControl(eCurve_Axis).m_bVisible);

    CCurveBench color("Color");
    EXPECT_EQ(3, color.dlg->GetView().m_nAxis); // opens on alpha
    EXPECT_EQ((std::vector<std::string>{"R", "G", "B", "A"}), color.dlg->GetAxes());
    CCurveBench text("Text");
    EXPECT_FALSE(text.dlg->GetControl(eCurve_AxisLabel).m_bVisible);
}

TEST(CurveEditing, RangesSwapAndMayBeEmpty)
{
    CCurveBench bench("Line", {{0, 5}, {0.5f, 5}, {1, 5}});
    bench.prompts.onFloat(0.5, "ending time").onFloat(0.8, "starting time").onFloat(std::nullopt, "minimum");
    bench.dlg->OnCommand(eCurve_End);
    bench.dlg->OnCommand(eCurve_Start);
    bench.dlg->OnCommand(eCurve_YMin);
    EXPECT_EQ("0.5000", bench.dlg->GetControl(eCurve_Start).m_sText);
    EXPECT_EQ("0.8000", bench.dlg->GetControl(eCurve_End).m_sText);
    EXPECT_EQ("-5.00", bench.dlg->GetControl(eCurve_YMin).m_sText);

    bench.Range(5, 5);
    bench.prompts.onFloat(0.5).onFloat(7.0);
    bench.dlg->OnCommand(eCurve_End);
    bench.dlg->OnCommand(eCurve_Start); // 7 counts as 1, and the two swap
    EXPECT_EQ("0.5000", bench.dlg->GetControl(eCurve_Start).m_sText);
    bench.prompts.onFloat(0.5);
    bench.dlg->OnCommand(eCurve_End);
    EXPECT_EQ("0.5000", bench.dlg->GetControl(eCurve_End).m_sText); // stays as it was entered
    const CCurveView& view = bench.dlg->GetView();
    const CPoint ptMiddle = view.KeyToPoint(bench.dlg->m_Prop, *bench.dlg->m_Prop.GetKey(1));
    EXPECT_NEAR(60, ptMiddle.x, 1); // 0.5 lies a hair before the middle of 0.45 to 0.55
    EXPECT_EQ(70, ptMiddle.y);
    EXPECT_DOUBLE_EQ(0.45, view.XToTime(10)); // 0.45 to 0.55, -5 to 15
    EXPECT_DOUBLE_EQ(-5.0, view.YToValue(120));
    bench.dlg->OnLeftDown(CPoint{60, 70}, false);
    bench.dlg->OnMouseMove(CPoint{70, 60}, false);
    EXPECT_EQ("0:5 0.51:7* 1:5", bench.Keys());
}

TEST(CurveEditing, TimesAreEnteredWithoutSorting)
{
    CCurveBench bench("Line", {{0, 1}, {0.25f, 5}, {0.5f, 6}, {1, 1}});
    bench.Range(0, 10);
    bench.dlg->OnLeftDown(bench.At(0.25, 5), false);
    bench.dlg->OnLeftUp();
    bench.prompts.onFloat(0.75, "Enter the new time");
    bench.dlg->OnCommand(eCurve_Time);
    EXPECT_EQ("0:1 0.75:5* 0.5:6 1:1", bench.Keys());
    bench.prompts.onFloat(-4.0);
    bench.dlg->OnCommand(eCurve_Time);
    EXPECT_EQ("0:1 0:5* 0.5:6 1:1", bench.Keys());
    bench.prompts.onFloat(0.75);
    bench.dlg->OnCommand(eCurve_Time);
    bench.dlg->OnOK();
    EXPECT_EQ("0:1 0.5:6 0.75:5* 1:1", bench.Keys());
    bench.dlg->OnLeftDown(bench.At(0, 1), false);
    bench.dlg->OnCommand(eCurve_Time); // pinned: asks nothing
    EXPECT_EQ("0.0000 off", bench.TimeButton());
}

TEST(CurveEditing, TheRowWritesWholeValuesToAllSelectedKeys)
{
    CCurveBench bench("Vector", {{0, 1}, {0.5f, 2}, {1, 3}});
    bench.dlg->OnCommand(c_nCmdSelectAllCurveKeys);
    bench.dlg->GetRow().SetText(4, "8"); // all of X, Y and Z of the first key
    EXPECT_EQ((CVector3{1, 8, 0}), bench.dlg->m_Prop.GetKey(2)->m_Data.GetVector());

    CCurveBench limited("Limited", {{0, 1}, {1, 1}});
    limited.dlg->OnCommand(c_nCmdSelectAllCurveKeys);
    limited.dlg->GetRow().Spin(2, 1); // from the row's 1 to 0.75
    limited.dlg->GetRow().SetText(1, "77");
    EXPECT_EQ("0:77* 1:77*", limited.Keys()); // unchecked until OK
    limited.dlg->OnOK();
    EXPECT_EQ("0:5* 1:5*", limited.Keys());
}

TEST(CurveEditing, PasteReplacesKeysOfTheSameKind)
{
    CCurveBench steps("Steps", {{0, 1}, {0.3f, 2}, {0.6f, 3}});
    steps.Range(0, 10);
    steps.dlg->OnLeftDown(steps.At(0.3, 2), false);
    EXPECT_FALSE(steps.dlg->GetControl(eCurve_Paste).m_bEnabled);
    steps.dlg->OnCommand(eCurve_Copy);
    EXPECT_TRUE(steps.dlg->GetControl(eCurve_Paste).m_bEnabled);

    CCurveBench line("Line");
    line.clipboard.CopyCurve(&steps.dlg->m_Prop);
    line.dlg->OnCommand(eCurve_Paste);
    EXPECT_EQ("0:1 0.3:2* 0.6:3", line.Keys()); // selected as they were, and the last one pinned where it is
    EXPECT_TRUE(line.dlg->IsTimeLocked(2));
    EXPECT_EQ("0.3000", line.TimeButton());
    line.dlg->OnOK();
    EXPECT_EQ("0:1 0.3:2* 1:3", line.Keys());

    CCurveBench color("Color");
    color.clipboard.CopyCurve(&steps.dlg->m_Prop);
    color.dlg->OnCommand(eCurve_Paste);
    EXPECT_EQ(2u, color.dlg->m_Prop.GetNumKeys());
    EXPECT_FALSE(color.dlg->OnCommand(1));
}
