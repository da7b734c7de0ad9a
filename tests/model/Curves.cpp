#include "model/FunctionCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "sdk/AssertCatcher.h"
#include "support/TestPlugin.h"

namespace
{

const CEffectPropertyDesc* Desc(uint32_t eType, bool bLinear)
{
    static const CTestModule s_Test(
        [](CTestPlugin& plugin)
        {
            plugin.type("All");
            for (uint32_t i = 0; i <= ePropType_FireglassRef; ++i)
            {
                plugin.prop(i, "step").step();
                plugin.prop(i, "linear").linear();
            }
        });
    return &s_Test.m_Module.GetType(0)->m_pProps[eType * 2 + (bLinear ? 1 : 0)];
}

void AddFloat(CEffectProperty& prop, float fTime, float fValue)
{
    CPropKey key;
    key.m_fTime = fTime;
    key.m_Data.SetFloat(fValue);
    prop.AddKey(key);
}

void AddColor(CEffectProperty& prop, float fTime, uint32_t nColor)
{
    CPropKey key;
    key.m_fTime = fTime;
    key.m_Data.SetColor(nColor);
    prop.AddKey(key);
}

} // namespace

TEST(Curves, AreSteppedOrLinear)
{
    CEffectProperty step(Desc(ePropType_Float, false)), line(Desc(ePropType_Float, true));
    EXPECT_EQ(0.0, EvaluateAxis(step, 0, 0.5));
    AddFloat(step, 0, 1);
    EXPECT_EQ(1.0, EvaluateAxis(step, 0, 7));
    AddFloat(step, 0.5f, 3);
    AddFloat(step, 0.75f, 3);
    EXPECT_EQ(1.0, EvaluateAxis(step, 0, 0.5)); // at the time itself still the old value
    EXPECT_EQ(3.0, EvaluateAxis(step, 0, std::nextafter(0.5, 1.0)));
    EXPECT_EQ(3.0, EvaluateAxis(step, 0, 1));

    AddFloat(line, 0, 1);
    AddFloat(line, 1, 3);
    EXPECT_EQ(2.0, EvaluateAxis(line, 0, 0.5));
    EXPECT_EQ(1.0, EvaluateAxis(line, 0, -1));
    AddFloat(line, 0.5f, 10); // two keys of one time: a jump
    AddFloat(line, 0.5f, 20);
    EXPECT_EQ(10.0, EvaluateAxis(line, 0, 0.5));
    EXPECT_NEAR(20.0, EvaluateAxis(line, 0, 0.5000001), 0.001);

    line.GetKey(0)->m_fTime = 0.9f; // out of order while it is edited: walked from the front
    EXPECT_TRUE(std::isfinite(EvaluateAxis(line, 0, 0.95)));
    EXPECT_EQ(1.0, EvaluateAxis(line, 0, std::numeric_limits<double>::quiet_NaN()));
}

TEST(Curves, ColoursMixByChannel)
{
    CEffectProperty line(Desc(ePropType_Color, true));
    AddColor(line, 0, MakePropColor(0, 77, 255, 255));
    AddColor(line, 1, MakePropColor(255, 77, 0, 0));
    EXPECT_EQ(0x004DFFu, EvaluateColor(line, 0));
    EXPECT_EQ(0x7F4D7Fu, EvaluateColor(line, 0.5f));
    for (int i = 0; i <= 678; ++i)
        ASSERT_EQ(77u, EvaluateColor(line, float(i) / 678) >> 8 & 0xFF); // even stays even
    EXPECT_EQ(0u, EvaluateColor(CEffectProperty(Desc(ePropType_Float, true)), 0));
}

TEST(Curves, AxesReadAndWriteScalars)
{
    CEffectProperty color(Desc(ePropType_Color, false));
    AddColor(color, 0, 0);
    CPropKey& colorKey = *color.GetKey(0);
    for (uint32_t nChannel = 0; nChannel < 256; ++nChannel)
    {
        colorKey.m_Data.SetColor(MakePropColor(nChannel, 1, 2, 3));
        SetAxisValue(float(GetAxisValue(color, colorKey, 0)), colorKey, 0, color);
        ASSERT_EQ(MakePropColor(nChannel, 1, 2, 3), colorKey.m_Data.GetColor());
    }
    SetAxisValue(0.5f, colorKey, 3, color);
    EXPECT_EQ(127u, PropColorAlpha(colorKey.m_Data.GetColor()));
    SetAxisValue(9.0f, colorKey, 7, color); // above 2 is alpha
    EXPECT_EQ(255u, PropColorAlpha(colorKey.m_Data.GetColor()));
    SetAxisValue(-1.0f, colorKey, 1, color);
    EXPECT_EQ(0u, PropColorGreen(colorKey.m_Data.GetColor()));

    CEffectProperty whole(Desc(ePropType_Int, false));
    AddFloat(whole, 0, 0);
    for (const auto& [fValue, nExpected] : {std::pair(2.5f, 3), std::pair(-2.5f, -3),
                                            std::pair(1e20f, INT32_MAX), std::pair(float(INFINITY), 0)})
    {
        SetAxisValue(fValue, *whole.GetKey(0), 0, whole);
        EXPECT_EQ(nExpected, GetAxisValue(whole, *whole.GetKey(0), 0));
    }

    CEffectProperty vector(Desc(ePropType_Vector, false)), text(Desc(ePropType_String, false));
    AddFloat(vector, 0, 1);
    SetAxisValue(5, *vector.GetKey(0), 2, vector);
    SetAxisValue(6, *vector.GetKey(0), 3, vector);
    EXPECT_EQ((CVector3{1, 0, 5}), vector.GetKey(0)->m_Data.GetVector());
    EXPECT_EQ(0.0, GetAxisValue(vector, *vector.GetKey(0), 3));
    AddFloat(text, 0, 1);
    SetAxisValue(5, *text.GetKey(0), 0, text);
    EXPECT_EQ(1.0f, text.GetKey(0)->m_Data.GetFloat());
    EXPECT_EQ(0.0, GetAxisValue(text, *text.GetKey(0), 0));
}

// The table finds through a hash what a walk over all entries would find first.
TEST(Curves, TableFindsTheFirstEqualCurve)
{
    CFunctionCurveData table;
    std::vector<std::unique_ptr<CEffectProperty>> props;
    const auto walk = [&](const CEffectProperty& prop)
    {
        for (size_t i = 0; i < table.Entries().size(); ++i)
        {
            const CEffectProperty& entry = *table.Entries()[i].m_pProp;
            bool bEqual = entry.GetDesc()->m_eType == prop.GetDesc()->m_eType &&
                          entry.GetNumKeys() == prop.GetNumKeys();
            for (uint32_t k = 0; bEqual && &entry != &prop && k < prop.GetNumKeys(); ++k)
            {
                bEqual =
                    std::as_const(entry).GetKey(k)->m_fTime == prop.GetKey(k)->m_fTime &&
                    IsSameValue(prop.GetDesc()->m_eType, entry.GetKey(k)->m_Data, prop.GetKey(k)->m_Data);
            }
            if (bEqual)
                return int(i);
        }
        return -1;
    };
    const uint32_t aKinds[] = {ePropType_String, ePropType_Int, ePropType_Float, ePropType_Color,
                               ePropType_Vector};
    const float aFloats[] = {0.0f, -0.0f, 0.5f, 0.50000006f, std::numeric_limits<float>::quiet_NaN()};
    std::mt19937 random(3);
    int nFound = 0;
    for (int nRound = 0; nRound < 3000; ++nRound)
    {
        auto& pProp =
            props.emplace_back(std::make_unique<CEffectProperty>(Desc(aKinds[random() % 5], random() % 2)));
        for (uint32_t n = random() % 3; n > 0; --n)
        {
            CPropKey key;
            key.m_fTime = aFloats[random() % 4];
            key.m_Data.SetVector({aFloats[random() % 5], random() % 9 ? 0.0f : 1.0f, 0});
            pProp->AddKey(key);
        }
        // Entries change as a pack does it: the one that is looked up next.
        if (nRound % 7 == 0)
        {
            CEffectProperty& changed = *props[random() % props.size()];
            if (changed.GetNumKeys() > 0)
                changed.GetKey(0)->m_Data.SetFloat(0.25f);
            ASSERT_EQ(walk(changed), table.FindProperty(&changed));
        }
        const int nExpected = walk(*pProp);
        ASSERT_EQ(nExpected, table.FindProperty(pProp.get()));
        nFound += nExpected >= 0;
        if (nExpected < 0 || random() % 50 == 0)
        {
            const int nEnd = int(table.Entries().size());
            ASSERT_EQ(nEnd, table.Add(pProp.get()));
        }
        ASSERT_EQ(walk(*pProp), table.FindProperty(pProp.get()));
    }
    EXPECT_GT(nFound, 100);
    EXPECT_LT(nFound, 2900);
}

TEST(Curves, TableReportsWhatIsNoCurve)
{
    CAssertCatcher catcher;
    CFunctionCurveData table;
    EXPECT_EQ(-1, table.FindProperty(nullptr));
    EXPECT_EQ("pProp && pProp->GetDesc()->m_bFunctionCurve|"
              "Error: Invalid property passed into the function curve data object",
              catcher.Take());
    CEffectProperty odd(Desc(ePropType_UI, true)), twin(Desc(ePropType_UI, true));
    AddFloat(odd, 0, 0);
    AddFloat(twin, 0, 0);
    table.Add(&odd);
    EXPECT_EQ(-1, table.FindProperty(&twin));
    EXPECT_EQ(" [Forced Assert]|Error: Unexpected property type", catcher.Take());
    EXPECT_EQ(0, table.FindProperty(&odd)); // itself needs no comparison
}
