#include "properties/PropertyBench.h"
#include "properties/SwatchPainter.h"
#include "support/RecordingSurface.h"

namespace
{

using Lines = std::vector<std::string>;

// The row of a standard property, without its name label, after the label has been looked at.
Lines RowOf(CPropertyBench& bench, const std::string& sName, const CRowPlace& place, uint32_t nExpected)
{
    CEffectPropertyCtrls row(bench.services);
    uint32_t nCount = 99;
    EXPECT_TRUE(row.CreateControls(&bench.Desc(sName), place, nCount));
    EXPECT_EQ(nExpected, nCount) << sName;
    Lines lines = RowText(row);
    EXPECT_EQ(nCount, lines.size());
    EXPECT_EQ("label 20,12 70x13 #65535 '" + sName + " :' right", lines.at(0));
    lines.erase(lines.begin());
    return lines;
}

} // namespace

TEST(RowLayout, EveryKindHasItsParts)
{
    CPropertyBench bench;
    const CRowPlace place = bench.Place();
    EXPECT_EQ(Lines{"edit 100,10 300x17 #5001"}, RowOf(bench, "Label", place, 2));
    EXPECT_EQ(Lines{"edit 100,10 300x17 #5001"}, RowOf(bench, "Clip", place, 2));
    EXPECT_EQ(Lines{"edit 100,10 300x17 #5001"}, RowOf(bench, "Child", place, 2));
    EXPECT_EQ((Lines{"file 100,8 279x21 #5001", "clear 379,8 21x21 #0 'C'"}),
              RowOf(bench, "Texture", place, 3));
    EXPECT_EQ(Lines{"combo 100,10 70x17 #5001"}, RowOf(bench, "Blend", place, 2));
    EXPECT_EQ((Lines{"edit 100,10 100x17 #5001", "spin 200,10 40x17 #0"}), RowOf(bench, "Count", place, 3));
    EXPECT_EQ((Lines{"edit 100,10 100x17 #5001", "spin 200,10 40x17 #0"}), RowOf(bench, "Size", place, 3));
    EXPECT_EQ((Lines{"swatch 100,10 105x17 #5001", "label 215,12 30x13 #65535 'Alpha:' right",
                     "edit 255,10 105x17 #5003", "spin 360,10 40x17 #0"}),
              RowOf(bench, "Color", place, 5));
    EXPECT_EQ((Lines{"label 100,12 10x13 #65535 'X:' right", "edit 110,10 63x17 #5002",
                     "label 178,12 10x13 #65535 'Y:' right", "edit 188,10 63x17 #5004",
                     "label 256,12 10x13 #65535 'Z:' right", "edit 266,10 63x17 #5006",
                     "vector 334,8 66x19 #0 '...'"}),
              RowOf(bench, "Velocity", place, 8));
    EXPECT_EQ(Lines{}, RowOf(bench, "Spare", place, 1)); // None
}

TEST(RowLayout, ListsTooltipsAndWidthsThatRunOut)
{
    CPropertyBench bench;
    CEffectPropertyCtrls row(bench.services);
    uint32_t nCount = 0;
    ASSERT_TRUE(row.CreateControls(&bench.Desc("Blend"), bench.Place(CRect{100, 10, 120, 27}), nCount));
    EXPECT_EQ((Lines{"Add", "Alpha", "Multiply"}), row.GetControl(1)->m_Items);
    EXPECT_EQ(-1, row.GetControl(1)->m_nSelected); // nothing yet
    EXPECT_EQ(100, row.GetControl(1)->m_nDropHeight);
    EXPECT_EQ(70, row.GetControl(1)->m_rc.Width()); // however wide the row is

    ASSERT_TRUE(row.CreateControls(&bench.Desc("Texture"), bench.Place(), nCount));
    EXPECT_EQ("", row.GetControl(0)->m_sToolTip);
    EXPECT_EQ("What the sprite shows", row.GetControl(1)->m_sToolTip);
    EXPECT_EQ("What the sprite shows", row.GetControl(2)->m_sToolTip);

    for (const char* pszName : {"Color", "Velocity", "Texture", "Count"})
    {
        ASSERT_TRUE(row.CreateControls(&bench.Desc(pszName), bench.Place(CRect{100, 10, 112, 27}), nCount));
        for (int i = 0; i < int(nCount); ++i)
            EXPECT_GE(row.GetControl(i)->m_rc.Width(), 0) << pszName << i;
    }
}

TEST(RowLayout, LinesOfTextCurvesAndWhatIsMissing)
{
    CPropertyBench bench(
        [](CTestPlugin& plugin)
        {
            plugin.type("T").prop(ePropType_UI, "uitype_TEXTLINE").data("Look").help("not for labels");
            plugin.prop(ePropType_UI, "UIType_Other").data("Look");
            plugin.prop(77, "Odd");
            plugin.prop(ePropType_Int, "Curve").step();
        });
    CEffectPropertyCtrls row(bench.services);
    uint32_t nCount = 9;
    ASSERT_TRUE(row.CreateControls(&bench.Desc("uitype_TEXTLINE"), bench.Place(), nCount));
    EXPECT_EQ(Lines{"label 100,12 300x13 #65535 'Look'"}, RowText(row));
    EXPECT_EQ(1u, nCount);
    ASSERT_TRUE(row.CreateControls(&bench.Desc("UIType_Other"), bench.Place(), nCount));
    EXPECT_EQ(0u, nCount);
    ASSERT_TRUE(row.CreateControls(&bench.Desc("Odd"), bench.Place(), nCount));
    EXPECT_EQ(1u, nCount);

    CEffectPropertySet set(bench.pModule->m_Module.GetType(0));
    EXPECT_FALSE(row.CreateFunctionControls(&set, 3, bench.Place(), nCount)); // nothing in the slot
    EXPECT_EQ(0u, nCount);
    EXPECT_EQ(nullptr, row.GetControl(0));
    EnsureComplete(&set);
    ASSERT_TRUE(row.CreateFunctionControls(&set, 3, bench.Place(), nCount));
    EXPECT_EQ((Lines{"label 20,12 70x13 #65535 'Curve :' right", "function 100,8 300x21 #5001 'Function'"}),
              RowText(row));
    row.EnableControls(false); // never
    EXPECT_TRUE(row.GetControl(1)->m_bEnabled);
    EXPECT_FALSE(row.SetFromProperty(set.GetProperty(3), 0));
    EXPECT_FALSE(row.GetFromControls(set.GetProperty(3), 0));
    row.DestroyControls();
    EXPECT_EQ(0u, row.GetType());

    CRowPlace noFont = bench.Place();
    noFont.m_pFont = nullptr;
    EXPECT_FALSE(row.CreateControls(&bench.Desc("Odd"), noFont, nCount));
    EXPECT_FALSE(row.CreateControls(nullptr, bench.Place(), nCount));
    EXPECT_FALSE(row.CreateFunctionControls(nullptr, 0, bench.Place(), nCount));
}

TEST(RowLayout, OnlyValuesAreDisabledAndAllMove)
{
    CPropertyBench bench;
    CEffectPropertyCtrls row(bench.services);
    uint32_t nCount = 0;
    ASSERT_TRUE(row.CreateControls(&bench.Desc("Color"), bench.Place(), nCount));
    row.EnableControls(false);
    row.ShowControls(false);
    row.MoveControls(3, -22);
    EXPECT_EQ(
        (Lines{"label 23,-10 70x13 #65535 'Color :' right hidden", "swatch 103,-12 105x17 #5001 off hidden",
               "label 218,-10 30x13 #65535 'Alpha:' right hidden", "edit 258,-12 105x17 #5003 off hidden",
               "spin 363,-12 40x17 #0 off hidden"}),
        RowText(row));
}

TEST(RowLayout, LargerFontsStretchEveryNumberOnce)
{
    const CRowMetrics usual(15);
    EXPECT_EQ(22, usual.m_nPitch);
    EXPECT_EQ(17, usual.m_nHeight);
    const CRowMetrics large(24); // 26 / 17
    EXPECT_EQ(34, large.m_nPitch);
    EXPECT_EQ(26, large.m_nHeight);
    EXPECT_EQ(31, large.m_nCheckWidth);
    EXPECT_EQ(15, large.m_nGap);
    EXPECT_EQ(61, large.m_nSpinWidth);
    EXPECT_EQ(46, large.m_nListExtra);
    EXPECT_EQ(8, large.m_nGroupGap);
    EXPECT_EQ(3, large.m_nOverhang);

    EXPECT_EQ(0, ListHeightToGiveUp(700, 700, 440, usual));
    EXPECT_EQ(44, ListHeightToGiveUp(723, 700, 440, usual)); // whole rows
    EXPECT_EQ(19 * 22, ListHeightToGiveUp(5000, 700, 440, usual));
}

TEST(RowLayout, SwatchHasARaisedEdge)
{
    CRecordingSurface surface;
    PaintSwatch(surface, CRect{0, 0, 10, 8}, 0x112233);
    EXPECT_EQ(
        (Lines{"fill 0,0 10x8 #112233", "line 0,0 9,0", "line 0,0 0,7", "line 9,7 -1,7", "line 9,7 9,-1"}),
        surface.m_Calls);
}
