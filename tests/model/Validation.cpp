#include "model/EffectProperty.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

#include "support/TestPlugin.h"

namespace
{

enum EForm
{
    eForm_Constant,
    eForm_Step,
    eForm_Linear
};

CEffectPropertyDesc Desc(uint32_t eType, const char* pszData, EForm eForm = eForm_Constant)
{
    CEffectPropertyDesc desc = {};
    desc.m_eType = eType;
    std::strcpy(desc.m_szData, pszData);
    desc.m_bFunctionCurve = eForm != eForm_Constant ? 2 : 0;
    desc.m_bInterpolate = eForm == eForm_Linear ? 0x80 : 0;
    const int32_t nDefault = 77;
    std::memcpy(desc.m_Default, &nDefault, sizeof(nDefault));
    return desc;
}

std::vector<float> ValidTimes(EForm eForm, const std::vector<float>& times)
{
    const CEffectPropertyDesc desc = Desc(ePropType_Int, "", eForm);
    CEffectProperty prop(&desc);
    for (const float fTime : times)
    {
        CPropKey key;
        key.m_fTime = fTime;
        prop.AddKey(key);
    }
    ValidateStructure(&prop);
    std::vector<float> result;
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        result.push_back(prop.GetKey(i)->m_fTime);
    return result;
}

int ClampedInt(const char* pszRange, int nValue)
{
    const CEffectPropertyDesc desc = Desc(ePropType_Int, pszRange);
    CEffectProperty prop(&desc);
    CPropKey key;
    key.m_Data.SetInt(nValue);
    prop.AddKey(key);
    ClampToRange(&prop);
    return prop.GetKey(0)->m_Data.GetInt();
}

CVector3 ClampedVector(const char* pszRange, const CVector3& v)
{
    const CEffectPropertyDesc desc = Desc(ePropType_Vector, pszRange);
    CEffectProperty prop(&desc);
    CPropKey key;
    key.m_Data.SetVector(v);
    prop.AddKey(key);
    ClampToRange(&prop);
    return prop.GetKey(0)->m_Data.GetVector();
}

using CTimes = std::vector<float>;

} // namespace

TEST(Validation, BringsTheKeyListInLine)
{
    EXPECT_EQ((CTimes{0}), ValidTimes(eForm_Constant, {}));
    EXPECT_EQ((CTimes{0}), ValidTimes(eForm_Constant, {0.5f, 0.25f, 0.75f}));
    EXPECT_EQ((CTimes{0}), ValidTimes(eForm_Step, {}));
    EXPECT_EQ((CTimes{0, 0.7f}), ValidTimes(eForm_Step, {0.7f, 0.2f}));
    EXPECT_EQ((CTimes{0, 1}), ValidTimes(eForm_Linear, {}));
    EXPECT_EQ((CTimes{0, 1}), ValidTimes(eForm_Linear, {0.3f}));
    EXPECT_EQ((CTimes{0, 1}), ValidTimes(eForm_Linear, {0.2f, 0.7f}));
    // Times outside of 0 to 1 between the ends stay where the last sort puts them.
    EXPECT_EQ((CTimes{-0.5f, 0, 1}), ValidTimes(eForm_Linear, {-1, -0.5f, 0.2f}));
    EXPECT_EQ((CTimes{0, 1, 2}), ValidTimes(eForm_Linear, {0, 2, 3}));

    // The end key that a curve lacks is the default, the earliest value of a constant wins.
    const CEffectPropertyDesc linear = Desc(ePropType_Int, "", eForm_Linear);
    CEffectProperty prop(&linear);
    prop.AddKey(CPropKey());
    ValidateStructure(&prop);
    EXPECT_EQ(0, prop.GetKey(0)->m_Data.GetInt());
    EXPECT_EQ(77, prop.GetKey(1)->m_Data.GetInt());

    const CEffectPropertyDesc row = Desc(ePropType_UI, "", eForm_Linear);
    CEffectProperty ui(&row);
    Validate(&ui);
    EXPECT_EQ(0u, ui.GetNumKeys());
}

// What the passes of ValidateStructure come to when they are run until nothing changes, for any times, and a second
// run changes nothing.
TEST(Validation, SettlesWhatThePassesSettle)
{
    std::mt19937 random(5);
    for (int nRound = 0; nRound < 5000; ++nRound)
    {
        const CEffectPropertyDesc desc = Desc(ePropType_Float, "", EForm(random() % 3));
        CEffectProperty prop(&desc);
        for (uint32_t n = random() % 9; n > 0; --n)
        {
            CPropKey key;
            key.m_fTime = float(int(random() % 13) - 4) / 4.0f;
            key.m_Data.SetFloat(float(n));
            prop.AddKey(key);
        }
        CEffectProperty passes(prop);
        for (int i = 0; i < 12; ++i)
            ValidateStructure(&passes);
        for (int nRun = 0; nRun < 2; ++nRun)
        {
            SettleStructure(&prop);
            ASSERT_EQ(passes.GetNumKeys(), prop.GetNumKeys());
            for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
            {
                ASSERT_EQ(passes.GetKey(i)->m_fTime, prop.GetKey(i)->m_fTime) << nRound;
                ASSERT_EQ(passes.GetKey(i)->m_Data.GetFloat(), prop.GetKey(i)->m_Data.GetFloat()) << nRound;
            }
        }
    }
}

TEST(Validation, NothingStaysThatNoFileCouldHold)
{
    const float fMax = std::numeric_limits<float>::max(), fInf = std::numeric_limits<float>::infinity();
    const CEffectPropertyDesc desc = Desc(ePropType_Float, "", eForm_Step);
    CEffectProperty prop(&desc);
    for (const float fValue : {-fInf, 0.5f, fInf, std::numeric_limits<float>::quiet_NaN()})
    {
        CPropKey key;
        key.m_fTime = fValue;
        key.m_Data.SetFloat(fValue);
        prop.AddKey(key);
    }
    Validate(&prop);
    const float aTimes[] = {0, 0.5f, fMax, fMax}, aValues[] = {-fMax, 0.5f, fMax, 0};
    ASSERT_EQ(4u, prop.GetNumKeys());
    for (uint32_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(aTimes[i], prop.GetKey(i)->m_fTime);
        EXPECT_EQ(aValues[i], prop.GetKey(i)->m_Data.GetFloat());
    }
    EXPECT_EQ(fMax, ClampedVector("1e39;", {1, 2, 3}).x); // a range beyond the numbers, too
}

TEST(Validation, ReadsRanges)
{
    struct
    {
        const char* m_pszText;
        bool m_bMin;
        float m_fMin;
        bool m_bMax;
        float m_fMax;
    } const cases[] = {
        {"0.6;3.4", true, 0.6f, true, 3.4f}, {"-1.5;", true, -1.5f, false, 0},  {";2", false, 0, true, 2},
        {"5", false, 0, false, 0},           {"", false, 0, false, 0},          {";", false, 0, false, 0},
        {"1;2;3", true, 1, true, 2},         {" ; ", true, 0, true, 0},         {" 4 ; x", true, 4, true, 0},
        {"0x10;1e2", true, 0, true, 100},    {"junk;-7z", true, 0, true, -7.0f}};
    for (const auto& c : cases)
    {
        const CPropRange range = ParseRange(c.m_pszText);
        EXPECT_EQ(c.m_bMin, range.m_bHasMin) << c.m_pszText;
        EXPECT_EQ(c.m_fMin, range.m_fMin) << c.m_pszText;
        EXPECT_EQ(c.m_bMax, range.m_bHasMax) << c.m_pszText;
        EXPECT_EQ(c.m_fMax, range.m_fMax) << c.m_pszText;
    }
    EXPECT_FALSE(ParseRange(nullptr).m_bHasMin);
}

TEST(Validation, ClampsByKind)
{
    EXPECT_EQ(1, ClampedInt("0.6;3.4", -9));
    EXPECT_EQ(3, ClampedInt("0.6;3.4", 9));
    EXPECT_EQ(-2, ClampedInt("-1.5;", -9));
    EXPECT_EQ(2, ClampedInt("5;2", 3)); // the maximum comes last
    EXPECT_EQ(123456789, ClampedInt("-1e30;1e30", 123456789));
    EXPECT_EQ(INT32_MAX, ClampedInt("1e30;", 5));
    EXPECT_EQ(9, ClampedInt("5", 9));
    EXPECT_EQ((CVector3{0, 0.5f, 1}), ClampedVector("0;1", {-1, 0.5f, 7}));
    EXPECT_EQ(2.0f, ClampedVector("2;", {std::numeric_limits<float>::quiet_NaN(), 9, 9}).x);

    CEffectPropertyDesc full = Desc(ePropType_Int, ""); // a text without an end
    std::memset(full.m_szData, ' ', sizeof(full.m_szData));
    std::memcpy(full.m_szData + sizeof(full.m_szData) - 4, "3;89", 4);
    std::memset(full.m_szHelp, '9', sizeof(full.m_szHelp));
    CEffectProperty prop(&full);
    prop.AddDefaultKey(0);
    ClampToRange(&prop);
    EXPECT_EQ(8, prop.GetKey(0)->m_Data.GetInt());
}

TEST(Validation, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(3, RoundToInt(2.5f));
    EXPECT_EQ(-3, RoundToInt(-2.5f));
    EXPECT_EQ(0, RoundToInt(0.49999997f));
    EXPECT_EQ(8388609, RoundToInt(8388609.0f));
    EXPECT_EQ(INT32_MAX, RoundToInt(2147483648.0f));
    EXPECT_EQ(INT32_MIN, RoundToInt(-2147483648.0f));
    EXPECT_EQ(INT32_MIN, RoundToInt(-1e30f));
    EXPECT_EQ(0, RoundToInt(std::numeric_limits<float>::quiet_NaN()));
}

TEST(Validation, FindsEnumerators)
{
    struct
    {
        const char* m_pszList;
        const char* m_pszValue;
        int m_nIndex;
    } const cases[] = {{"Add, Alpha ,Multiply", "ALPHA", 1},
                       {"Add,Alpha", " add\t", 0},
                       {"a,,b", "b", 2},
                       {"a,,b", "", 1},
                       {"a,b,", "", -1},
                       {"", "", -1},
                       {" ", "", 0},
                       {"ab", "a", -1},
                       {",", "", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(c.m_nIndex, FindEnumIndex(c.m_pszList, c.m_pszValue)) << c.m_pszList << "|" << c.m_pszValue;
    EXPECT_EQ((std::vector<std::string>{"Add", " Alpha", ""}), SplitEnumList("Add, Alpha,,"));

    CEffectPropertyDesc desc = Desc(ePropType_Enum, "One,Two");
    std::strcpy(reinterpret_cast<char*>(desc.m_Default), "Nine"); // not checked itself
    CEffectProperty prop(&desc);
    for (const char* pszValue : {"tWO", "Three"})
    {
        CPropKey key;
        key.m_Data.SetText(pszValue);
        prop.AddKey(key);
    }
    ValidateEnum(&prop);
    EXPECT_EQ("tWO", prop.GetKey(0)->m_Data.GetText()); // keeps its spelling
    EXPECT_EQ("Nine", prop.GetKey(1)->m_Data.GetText());
}
