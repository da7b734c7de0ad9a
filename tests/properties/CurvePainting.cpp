#include <map>

#include "platform/ColorContrast.h"
#include "properties/CurvePainter.h"
#include "properties/PropertyBench.h"
#include "support/RecordingSurface.h"

namespace
{

using Lines = std::vector<std::string>;

struct CPaintBench : CPropertyBench
{
    CPaintBench()
        : CPropertyBench(
              [](CTestPlugin& plugin)
              {
                  plugin.type("T").prop(ePropType_Float, "Line").linear();
                  plugin.prop(ePropType_Float, "Steps").step();
                  plugin.prop(ePropType_Color, "Color").linear();
              })
    {
        view.m_rc = CRect{10, 20, 50, 70}; // 40 by 50
        view.m_fYMin = 0.0f;
        view.m_fYMax = 10.0f;
    }
    CEffectProperty Curve(const char* pszName, const std::vector<std::pair<float, float>>& keys)
    {
        CEffectProperty prop(&Desc(pszName));
        for (const auto& [fTime, fValue] : keys)
        {
            CPropKey key;
            key.m_fTime = fTime;
            key.m_Data.SetFloat(fValue);
            prop.AddKey(key);
        }
        return prop;
    }
    Lines Paint(const CEffectProperty& prop, const std::string& sStart, CRect rcSeen = CRect{0, 0, 40, 50})
    {
        CRecordingSurface surface(rcSeen);
        PaintCurve(&surface, view, prop);
        return surface.Calls(sStart);
    }
    CCurveView view;
};

const std::string c_sPen = " w2 #000000";

} // namespace

TEST(CurvePainting, LinesAndKeysInOrder)
{
    CPaintBench bench;
    CEffectProperty line = bench.Curve("Line", {{0, 10}, {0.5f, 0}, {1, 5}});
    line.GetKey(1)->m_bSelected = true;
    const Lines all = bench.Paint(line, "");
    EXPECT_EQ("fill 0,0 40x50 #FFFFFF", all.front());
    EXPECT_EQ("rect 0,0 40x50", all.back());
    EXPECT_EQ((Lines{"ellipse -10,-10 20x20 #FFFF00", "ellipse 10,40 20x20 #0000FF",
                     "ellipse 30,15 20x20 #FFFF00"}),
              bench.Paint(line, "ellipse"));
    // Ten columns, the zero line, then the curve and its end.
    const Lines lines = bench.Paint(line, "line");
    ASSERT_EQ(10u + 1 + 2, lines.size());
    EXPECT_EQ("line 1,50 1,2", lines[0]); // u = 0.05: 0.95 * 0 + 0.05 * 50
    EXPECT_EQ("line 37,50 37,28", lines[9]);
    EXPECT_EQ("line 0,50 40,50 w2 #007F40", lines[10]);
    EXPECT_EQ((Lines{"line 0,0 20,50" + c_sPen, "line 20,50 40,25" + c_sPen}),
              Lines(lines.begin() + 11, lines.end()));

    const Lines steps = bench.Paint(bench.Curve("Steps", {{0, 8}, {0.5f, 2}}), "line");
    EXPECT_EQ((Lines{"line 0,10 20,10" + c_sPen, "line 20,10 20,40" + c_sPen, "line 20,40 40,40" + c_sPen}),
              Lines(steps.end() - 3, steps.end()));
    EXPECT_EQ("line 17,50 17,10", steps[4]);
    EXPECT_EQ("line 21,50 21,40", steps[5]);

    EXPECT_EQ(Lines{"line 0,50 40,50 w2 #007F40"}, bench.Paint(bench.Curve("Steps", {{0, 4}}), "line 0"));
    EXPECT_EQ(Lines{"fill 0,0 40x50 #FFFFFF"}, bench.Paint(bench.Curve("Line", {}), "")); // nothing else
    PaintCurve(nullptr, bench.view, line);
}

TEST(CurvePainting, OddCurvesDivideNothingByZero)
{
    CPaintBench bench;
    bench.view.m_fStartTime = bench.view.m_fEndTime = 0.0f; // -0.05 to 0.05
    const CEffectProperty jump = bench.Curve("Line", {{0, 8}, {0, 2}, {1, 2}});
    EXPECT_EQ("line 1,50 1,10", bench.Paint(jump, "line")[0]);   // not above the first time
    EXPECT_EQ("line 21,50 21,40", bench.Paint(jump, "line")[5]); // above it
    bench.view.m_fStartTime = 0.0f;
    bench.view.m_fEndTime = 1.0f;

    CEffectProperty backward = bench.Curve("Line", {{0, 8}, {0.25f, 2}, {0.5f, 4}, {1, 4}});
    backward.GetKey(1)->m_fTime = 0.75f; // entered, and not sorted yet
    const Lines lines = bench.Paint(backward, "line");
    EXPECT_EQ("line 30,40 20,30" + c_sPen, lines[lines.size() - 2]);
    EXPECT_EQ("line 29,50 29,39", lines[7]); // 0.725 lies before key 1: from 10 to 40
    EXPECT_EQ("line 33,50 33,30", lines[8]); // 0.825 is passed by keys 1 and 2

    bench.view.m_fYMin = bench.view.m_fYMax = 8.0f; // -2 to 18
    EXPECT_EQ("ellipse -10,15 20x20 #FFFF00", bench.Paint(backward, "ellipse").at(0));
    bench.view.m_fYMax = 8.0000010f; // far away, and still pixels
    for (const std::string& sLine : bench.Paint(backward, ""))
        EXPECT_LT(sLine.size(), 60u) << sLine;
}

TEST(CurvePainting, ColorsFillTheBackground)
{
    CPaintBench bench;
    CEffectProperty color(&bench.Desc("Color"));
    for (const auto& [fTime, nColor] :
         {std::pair{0.0f, MakePropColor(255, 40, 77, 0)}, std::pair{0.5f, MakePropColor(255, 40, 77, 9)},
          std::pair{1.0f, MakePropColor(0, 40, 77, 0)}})
    {
        CPropKey key;
        key.m_fTime = fTime;
        key.m_Data.SetColor(nColor);
        color.AddKey(key);
    }
    const Lines fills = bench.Paint(color, "fill");
    EXPECT_EQ("fill 0,0 21x50 #4D28FF", fills[0]); // an even colour is even
    ASSERT_EQ(20u, fills.size());
    EXPECT_EQ("fill 30,0 1x50 #4D287F", fills[10]); // half way
}

TEST(CurvePainting, OnlyWhatIsInViewIsDrawn)
{
    CPaintBench bench;
    bench.view.m_rc = CRect{0, 0, 1000, 50};
    bench.view.m_fStartTime = 0.5f;
    bench.view.m_fEndTime = 0.51f;
    std::vector<std::pair<float, float>> keys;
    for (int i = 0; i <= 20000; ++i)
        keys.emplace_back(float(i) / 20000, float(i % 10));
    const CEffectProperty many = bench.Curve("Line", keys);
    // A window of a hundred pixels, with a key every five and those that reach in from outside.
    const CRect rcSeen{200, 0, 300, 50};
    EXPECT_NEAR(24.0, double(bench.Paint(many, "ellipse", rcSeen).size()), 2.0);
    EXPECT_NEAR(25.0 + 1 + 21, double(bench.Paint(many, "line", rcSeen).size()), 3.0);
}

// The worst contrast of a pen to what lies under it.
class CPenSurface : public CRecordingSurface
{
public:
    CPenSurface() : CRecordingSurface(CRect{0, 0, 256, 50}) {}
    void FillRect(const CRect& rc, CColorRef nColor) override
    {
        for (int32_t x = std::max(rc.left, 0); x < rc.right && x < 256; ++x)
            m_Ground[x] = nColor;
    }
    void DrawLine(CPoint from, CPoint to, const CPenSpec& pen) override
    {
        for (int32_t x = std::max(from.x, 0); x < 256 && x < std::max(to.x, from.x + 1); ++x)
            m_fWorst = std::min(m_fWorst, ContrastRatio(pen.m_nColor, m_Ground[x]));
        m_Reached[pen.m_nWidth] = std::max(m_Reached[pen.m_nWidth], to.x);
    }
    void DrawEllipse(const CRect& rc, const CPenSpec& pen, const CBrushSpec&) override
    {
        const int32_t x = std::clamp((rc.left + rc.right) / 2, 0, 255);
        m_fWorst = std::min(m_fWorst, ContrastRatio(pen.m_nColor, m_Ground[x]));
    }
    CColorRef m_Ground[256] = {};
    double m_fWorst = 21.0;
    std::map<int32_t, int32_t> m_Reached;
};

TEST(CurvePainting, PensStandOutFromEveryGround)
{
    CPaintBench bench;
    bench.view.m_rc = CRect{0, 0, 256, 50};
    bench.view.m_fYMin = -0.1f;
    bench.view.m_fYMax = 1.1f;
    const std::vector<std::vector<uint32_t>> grounds = {{0xFF000000, 0xFFFFFFFF},
                                                        {0xFF00FF00, 0xFF0000FF},
                                                        {0xFFFF0000, 0xFF00FFFF},
                                                        {0xFF808080, 0xFF407F00}};
    for (const auto& colors : grounds)
    {
        CEffectProperty color(&bench.Desc("Color"));
        for (size_t i = 0; i < colors.size(); ++i)
        {
            CPropKey key;
            key.m_fTime = float(i);
            key.m_Data.SetColor(colors[i]);
            color.AddKey(key);
        }
        CPenSurface plain, clear;
        PaintCurve(&plain, bench.view, color);
        PaintCurve(&clear, bench.view, color, CCurvePaintOptions{.m_bContrastPens = true});
        EXPECT_LT(plain.m_fWorst, 3.0);
        EXPECT_GE(clear.m_fWorst, 3.0) << std::hex << colors[0];
        EXPECT_EQ(plain.m_Reached, clear.m_Reached) << "in pieces, and whole";
    }
    // A slanted line changes its pen where the ground has become bright enough for black.
    CEffectProperty slope(&bench.Desc("Color"));
    for (const uint32_t nColor : {0xFF000000u, 0xFFFFFFFFu})
    {
        CPropKey key;
        key.m_fTime = nColor == 0xFFFFFFFFu ? 1.0f : 0.0f;
        key.m_Data.SetColor(nColor);
        slope.AddKey(key);
    }
    bench.view.m_rc = CRect{0, 0, 40, 50};
    bench.view.m_fYMin = 0.0f;
    bench.view.m_fYMax = 1.0f;
    CRecordingSurface pieces(CRect{0, 0, 40, 50});
    PaintCurve(&pieces, bench.view, slope, CCurvePaintOptions{.m_bContrastPens = true});
    const Lines lines = pieces.Calls("line");
    EXPECT_EQ((Lines{"line 0,50 19,27 w2 #FFFFFF", "line 19,27 40,0 w2 #000000"}),
              Lines(lines.end() - 2, lines.end()));
    // On white, all is as it always was.
    const CEffectProperty line = bench.Curve("Line", {{0, 1}, {0.5f, 0}, {1, 0.5f}});
    CRecordingSurface plain, clear;
    PaintCurve(&plain, bench.view, line);
    PaintCurve(&clear, bench.view, line, CCurvePaintOptions{.m_bContrastPens = true});
    EXPECT_EQ(plain.m_Calls, clear.m_Calls);
}

TEST(CurvePainting, TheScaleHasRoundValuesAtTheirHeights)
{
    CPaintBench bench;
    const auto scale = [&](const char* pszName, float fMin, float fMax)
    {
        bench.view.m_rc = CRect{0, 0, 100, 200};
        bench.view.m_fYMin = fMin;
        bench.view.m_fYMax = fMax;
        std::string sMarks;
        for (const CScaleMark& mark : bench.view.GetScale(CEffectProperty(&bench.Desc(pszName)), 24))
            sMarks += (sMarks.empty() ? "" : " ") + mark.m_sText + "@" + std::to_string(mark.y);
        return sMarks;
    };
    EXPECT_EQ("0.0@184 0.2@151 0.4@117 0.6@84 0.8@51 1.0@17", scale("Color", -0.1f, 1.1f));
    EXPECT_EQ("-5@190 0@140 5@90 10@40", scale("Line", -6, 14));
    EXPECT_EQ("7.000@200 7.002@161 7.004@121 7.006@81 7.008@41 7.010@1", scale("Line", 7, 7.01f));
    EXPECT_EQ("", scale("Line", 0, 3e38f));
    EXPECT_EQ("-10@200 -5@150 0@100 5@50 10@0", scale("Line", 0, 0)); // the view of a range without a size
    EXPECT_TRUE(bench.Paint(bench.Curve("Line", {{0, 1}, {1, 2}}), "text").empty()) << "off by itself";

    // Dots across every six pixels, and each value above its line, below it where there is no room above.
    const auto paint = [&](const std::string& sStart, CRect rcSeen)
    {
        CRecordingSurface surface(rcSeen);
        bench.view.m_rc = CRect{0, 0, 40, 50};
        bench.view.m_fYMin = 0;
        bench.view.m_fYMax = 10;
        PaintCurve(&surface, bench.view, bench.Curve("Line", {{0, 20}, {1, 20}}),
                   CCurvePaintOptions{.m_bScale = true});
        return surface.Calls(sStart);
    };
    const CRect rcAll{0, 0, 40, 50};
    EXPECT_EQ((Lines{"text 17,37 0", "text 17,12 5", "text 17,2 10"}), paint("text", rcAll));
    EXPECT_EQ((Lines{"fill 0,0 40x50 #FFFFFF", "fill 15,37 10x12 #FFFFFF", "fill 15,12 10x12 #FFFFFF",
                     "fill 15,2 16x12 #FFFFFF"}),
              paint("fill", rcAll));
    const Lines dots = paint("line", rcAll);
    EXPECT_EQ("line 0,50 1,50", dots.at(0));
    EXPECT_EQ("line 36,25 37,25", dots.at(13));
    EXPECT_EQ(Lines{"text 17,12 5"}, paint("text", CRect{20, 14, 40, 37})) << "what is in view";
    EXPECT_EQ("line 18,25 19,25", paint("line", CRect{20, 14, 40, 37}).at(0));
}
