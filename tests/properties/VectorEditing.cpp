#include <cmath>

#include "properties/PropertyBench.h"
#include "support/RecordingSurface.h"

namespace
{

const CRect c_rcSide{10, 10, 110, 110}; // centre 60, 60
const CRect c_rcTop{200, 10, 301, 111}; // 250, 60

struct CVectorBench
{
    explicit CVectorBench(const CVector3& v) : dlg(prompts, v) { dlg.OnInitDialog(c_rcSide, c_rcTop); }
    void ExpectDirection(float x, float y, float z) const
    {
        EXPECT_NEAR(x, dlg.m_vDirection.x, 1e-5);
        EXPECT_NEAR(y, dlg.m_vDirection.y, 1e-5);
        EXPECT_NEAR(z, dlg.m_vDirection.z, 1e-5);
    }
    void Drag(std::initializer_list<CPoint> points)
    {
        dlg.OnLeftDown(*points.begin());
        for (auto it = points.begin() + 1; it != points.end(); ++it)
            dlg.OnMouseMove(*it);
        dlg.OnLeftUp();
    }
    CScriptedPrompts prompts;
    CEditVectorDlg dlg;
};

const float c_fDiagonal = std::sqrt(0.5f);

} // namespace

TEST(VectorEditing, DirectionTimesMagnitude)
{
    CVectorBench bench({0, 3, 4});
    EXPECT_EQ("5", bench.dlg.GetMagnitudeText());
    bench.ExpectDirection(0, 0.6f, 0.8f);
    ASSERT_TRUE(bench.dlg.OnOK());
    EXPECT_FLOAT_EQ(3.0f, bench.dlg.m_vResult.y);
    bench.dlg.OnPreset(5);
    bench.dlg.OnPreset(6);
    ASSERT_TRUE(bench.dlg.OnOK());
    EXPECT_EQ((CVector3{0, 0, -5}), bench.dlg.m_vResult);
    bench.dlg.SetMagnitudeText(" 0.001 ");
    EXPECT_TRUE(bench.dlg.OnOK());
}

TEST(VectorEditing, StepsGoThroughThePresets)
{
    CVectorBench bench({0, 0.6f, 0.8f});
    bench.dlg.OnStepPreset(true);
    bench.ExpectDirection(0, 1, 0); // from anywhere the first
    bench.dlg.OnStepPreset(true);
    bench.ExpectDirection(0, -1, 0);
    for (int i = 0; i < 9; ++i)
        bench.dlg.OnStepPreset(true);
    bench.ExpectDirection(0, 0, -1); // the end
    bench.dlg.OnStepPreset(false);
    bench.ExpectDirection(0, 0, 1);
    EXPECT_EQ("1", bench.dlg.GetMagnitudeText());
}

TEST(VectorEditing, OutOfRangeMagnitudesStay)
{
    CVectorBench bench({0, 3, 4});
    for (const char* pszText : {"0", "0.0009", "1000.1", "-5", "5x", ""})
    {
        const bool bNumber = std::string(pszText) != "5x" && *pszText;
        bench.prompts.onAsk(bNumber ? "Enter a number between 0.001 and 1000." : "Enter a number.");
        bench.dlg.SetMagnitudeText(pszText);
        EXPECT_FALSE(bench.dlg.OnOK()) << pszText;
    }
    EXPECT_EQ(5.0f, bench.dlg.m_fMagnitude);

    for (const CVector3& v : {CVector3{}, CVector3{NAN, 0, 0}, CVector3{0, INFINITY, 0}})
    {
        CVectorBench none(v);
        none.ExpectDirection(0, 1, 0);
        EXPECT_EQ("0", none.dlg.GetMagnitudeText());
        none.prompts.onAsk("between");
        EXPECT_FALSE(none.dlg.OnOK());
        none.dlg.SetMagnitudeText("2");
        EXPECT_TRUE(none.dlg.OnOK());
    }
    CVectorBench huge({3e38f, 3e38f, 0});
    huge.ExpectDirection(c_fDiagonal, c_fDiagonal, 0);
    CVectorBench tiny({0, 0, -1e-40f});
    tiny.ExpectDirection(0, 0, -1);
    tiny.prompts.onAsk("between");
    EXPECT_FALSE(tiny.dlg.OnOK());
}

TEST(VectorEditing, ViewsSwingAtHalfTheSpeed)
{
    CVectorBench side({0, 1, 0});
    side.Drag({{60, 30}, {90, 60}}); // a quarter clockwise
    side.ExpectDirection(0, c_fDiagonal, c_fDiagonal);

    CVectorBench top({0, 0, 1});
    top.Drag({{250, 30}, {280, 60}});
    top.ExpectDirection(c_fDiagonal, 0, c_fDiagonal); // clockwise as well
    CVectorBench axis({0, 1, 0});
    axis.Drag({{250, 30}, {280, 60}, {250, 90}});
    axis.ExpectDirection(0, 1, 0);

    CVectorBench steps({0, 1, 0});
    steps.Drag({{60, 30}, {90, 60}, {60, 90}}); // each from where the last one ended
    steps.ExpectDirection(0, 0, 1);

    // Straight down the angle jumps by a turn: two degrees of the pointer are one of the direction.
    CVectorBench down({0, 1, 0});
    down.Drag({{61, 90}, {59, 90}});
    EXPECT_NEAR(std::sin(std::atan(1.0 / 30)), down.dlg.m_vDirection.z, 1e-5);
    EXPECT_GT(down.dlg.m_vDirection.y, 0.99f);
}

TEST(VectorEditing, PointersWithoutAnAngleAndPressesElsewhere)
{
    CVectorBench bench({0, 1, 0});
    bench.Drag({{60, 30}, {60, 60}, {90, 60}}); // across the centre, which is skipped
    bench.ExpectDirection(0, c_fDiagonal, c_fDiagonal);
    bench.Drag({{60, 60}, {90, 60}, {90, 60}}); // from the centre: no turn yet
    bench.ExpectDirection(0, c_fDiagonal, c_fDiagonal);
    bench.Drag({{110, 60}, {60, 30}, {90, 60}}); // right edge
    bench.dlg.OnMouseMove({60, 90});
    bench.ExpectDirection(0, c_fDiagonal, c_fDiagonal);
    EXPECT_FALSE(bench.dlg.IsDragging() || bench.dlg.CancelDrag());
    bench.dlg.OnLeftDown({60, 30});
    bench.dlg.OnMouseMove({90, 60});
    EXPECT_TRUE(bench.dlg.CancelDrag());
    bench.dlg.OnMouseMove({60, 90});
    bench.ExpectDirection(0, c_fDiagonal, c_fDiagonal); // taken back
}

TEST(VectorEditing, ViewsShowAnArrowWithACross)
{
    CVectorBench bench({0, 3, 4});
    CRecordingSurface surface;
    bench.dlg.PaintView(surface, EVectorView::eSide, c_rcSide);
    EXPECT_EQ((std::vector<std::string>{"fill 10,10 100x100 #000000", "line 66,68 54,52", "line 54,52 100,30",
                                        "line 100,30 66,68", "line 98,30 103,30", "line 100,28 100,33"}),
              surface.m_Calls);
    CVectorBench up({0, 1, 0});
    CRecordingSurface top;
    up.dlg.PaintView(top, EVectorView::eTop, c_rcTop); // a dot
    EXPECT_EQ("line 250,60 250,60", top.m_Calls[1]);
    EXPECT_EQ("line 248,60 253,60", top.m_Calls[4]);
}
