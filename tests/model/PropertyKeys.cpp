#include "model/EffectProperty.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "sdk/AssertCatcher.h"
#include "support/TestPlugin.h"

namespace
{

CPropKey KeyAt(float fTime, int nValue)
{
    CPropKey key;
    key.m_fTime = fTime;
    key.m_Data.SetInt(nValue);
    return key;
}

std::vector<int> Values(const CEffectProperty& prop)
{
    std::vector<int> values;
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        values.push_back(prop.GetKey(i)->m_Data.GetInt());
    return values;
}

} // namespace

TEST(PropertyKeys, StayInOrderOfTimeAndArrival)
{
    const CTestModule test;
    std::mt19937 random(2);
    for (int nRound = 0; nRound < 50; ++nRound)
    {
        CEffectProperty prop(&test.m_Module.GetType(0)->m_pProps[0]);
        std::vector<std::pair<float, int>> plain;
        for (int i = 0; i < 40; ++i)
        {
            const float fTime = float(random() % 12) * 0.1f;
            prop.AddKey(KeyAt(fTime, i));
            plain.emplace_back(fTime, i);
            if (nRound % 2) // looking in between, and removing, changes nothing
            {
                ASSERT_EQ(prop.GetKey(0)->m_fTime, std::min_element(plain.begin(), plain.end())->first);
            }
        }
        std::stable_sort(plain.begin(), plain.end(),
                         [](const auto& left, const auto& right) { return left.first < right.first; });
        plain.erase(plain.begin() + 7);
        prop.RemoveKey(7);
        std::vector<int> expected;
        for (const auto& p : plain)
            expected.push_back(p.second);
        ASSERT_EQ(expected, Values(prop));
    }
}

TEST(PropertyKeys, EditedTimesWaitForTheNextSort)
{
    const CTestModule test;
    CEffectProperty prop(&test.m_Module.GetType(0)->m_pProps[0]);
    for (int i = 0; i < 3; ++i)
        prop.AddKey(KeyAt(float(i), i));
    prop.GetKey(0)->m_fTime = 5.0f;
    EXPECT_EQ((std::vector<int>{0, 1, 2}), Values(prop));
    prop.AddKey(KeyAt(6.0f, 3)); // sorts them all, though it comes last itself
    EXPECT_EQ((std::vector<int>{1, 2, 0, 3}), Values(prop));

    const float fNaN = std::numeric_limits<float>::quiet_NaN();
    prop.GetKey(1)->m_fTime = fNaN;
    prop.AddKey(KeyAt(fNaN, 4));
    prop.AddKey(KeyAt(-1.0f, 5));
    EXPECT_EQ((std::vector<int>{5, 1, 0, 3, 2, 4}), Values(prop));

    prop.RemoveKey(6);
    EXPECT_EQ(6u, prop.GetNumKeys());
    EXPECT_EQ(nullptr, prop.GetKey(6));
    CEffectProperty copy(prop);
    prop.ClearKeys();
    EXPECT_EQ(6u, copy.GetNumKeys());
    copy = prop;
    EXPECT_EQ(0u, copy.GetNumKeys());
}

// A hostile file may hold any number of values in any order.
TEST(PropertyKeys, LongListsInReverse)
{
    const CTestModule test;
    CEffectProperty prop(&test.m_Module.GetType(0)->m_pProps[0]);
    for (int i = 0; i < 200000; ++i)
        prop.AddKey(KeyAt(float(-i), i));
    EXPECT_EQ(199999, prop.GetKey(0)->m_Data.GetInt());
}

TEST(PropertyKeys, NullDescriptorIsReported)
{
    CAssertCatcher catcher;
    CEffectProperty prop(nullptr);
    EXPECT_EQ("pDesc|Error: Null property description used", catcher.Take());
    Validate(&prop);
    prop.AddDefaultKey(0.5f);
    EXPECT_EQ(1u, prop.GetNumKeys());
    EXPECT_FALSE(HasValue(&prop));
    EXPECT_FALSE(HasValue(nullptr));
    Validate(nullptr);

    EXPECT_STREQ("Unknown", GetPropTypeName(8));
    EXPECT_EQ(" [Forced Assert]|Error: Found property with unknown type", catcher.Take());
    EXPECT_FALSE(IsSameValue(77, CPropData(), CPropData()));
    EXPECT_EQ(" [Forced Assert]|Error: Unexpected property type", catcher.Take());
    EEffectPropertyType eType = ePropType_None;
    EXPECT_TRUE(ParsePropTypeName("fireglassREF", eType));
    EXPECT_EQ(ePropType_FireglassRef, eType);
    EXPECT_FALSE(ParsePropTypeName("UI", eType));
}
