#include "model/EffectPropertySet.h"

#include <gtest/gtest.h>

#include <memory>

#include "model/Key.h"
#include "sdk/AssertCatcher.h"
#include "support/TestPlugin.h"

namespace
{

struct CSets : testing::Test
{
    CTestModule m_Test{[](CTestPlugin& plugin)
                       {
                           plugin.type("Spark").prop(ePropType_Int, "A").range("0;100").def(5);
                           plugin.prop(ePropType_UI, "UIType_TextLine").data("row");
                           plugin.prop(ePropType_Int, "B").def(6).linear();
                           plugin.type("Light").prop(ePropType_Int, "A");
                       }};
    const CEffectTypeDesc* m_pSpark = m_Test.m_Module.GetType(0);
    const CEffectTypeDesc* m_pLight = m_Test.m_Module.GetType(1);

    void SetValue(CEffectPropertySet& set, uint32_t nIndex, int nValue)
    {
        auto pProp = std::make_unique<CEffectProperty>(&set.m_pTypeDesc->m_pProps[nIndex]);
        pProp->AddDefaultKey(0);
        pProp->GetKey(0)->m_Data.SetInt(nValue);
        EXPECT_TRUE(set.AddProperty(pProp));
    }
    static int Value(const CEffectPropertySet& set, uint32_t nIndex)
    {
        return set.GetProperty(nIndex) ? set.GetProperty(nIndex)->GetKey(0)->m_Data.GetInt() : -1;
    }
};

} // namespace

TEST_F(CSets, EmptySlotsFallBackAlongTheChain)
{
    CEffectPropertySet root(m_pSpark), middle(m_pSpark), leaf(m_pSpark);
    EXPECT_TRUE(middle.SetParent(&root));
    EXPECT_TRUE(leaf.SetParent(&middle));
    SetValue(root, 0, 1);
    EXPECT_EQ(1, Value(leaf, 0));
    SetValue(leaf, 0, 2);
    EXPECT_EQ(2, Value(leaf, 0));
    EXPECT_EQ(nullptr, GetProperty(nullptr, 0));
    EXPECT_EQ(nullptr, leaf.GetProperty(99));

    EXPECT_TRUE(leaf.ClearLocal(0));
    EXPECT_EQ(1, Value(leaf, 0));
    EXPECT_FALSE(leaf.ClearLocal(3));
    EXPECT_FALSE(root.ClearLocal(0)); // a root keeps its values
    EXPECT_EQ(1, Value(root, 0));

    EXPECT_TRUE(leaf.MakeLocal(0));
    EXPECT_TRUE(leaf.MakeLocal(2)); // nothing to take: true, still empty
    EXPECT_EQ(nullptr, leaf.GetPropertyDirect(2));
    EXPECT_FALSE(leaf.MakeLocal(3));
    root.GetPropertyDirect(0)->GetKey(0)->m_Data.SetInt(9);
    EXPECT_EQ(1, Value(leaf, 0)); // a copy of its own

    // The root is completed, not the set that it is asked for; its rows count as filled.
    EnsureComplete(&leaf);
    EXPECT_EQ(nullptr, leaf.GetPropertyDirect(2));
    EXPECT_EQ(6, Value(leaf, 2));
    EXPECT_EQ(2u, root.GetPropertyDirect(2)->GetNumKeys());
    EXPECT_EQ(0u, root.GetPropertyDirect(1)->GetNumKeys());
    root.GetPropertyDirect(0)->GetKey(0)->m_Data.SetInt(500);
    ValidateSet(&middle); // reaches the values of its parents
    EXPECT_EQ(100, Value(root, 0));
    EnsureComplete(nullptr);
    ValidateSet(nullptr);
}

TEST_F(CSets, ParentsOfAnotherTypeAndRingsAreRefused)
{
    CEffectPropertySet a(m_pSpark), b(m_pSpark), c(m_pSpark), light(m_pLight);
    EXPECT_FALSE(a.SetParent(&light));
    EXPECT_FALSE(a.SetParent(&a));
    EXPECT_TRUE(b.SetParent(&a));
    EXPECT_TRUE(c.SetParent(&b));
    EXPECT_FALSE(a.SetParent(&c));
    EXPECT_EQ(nullptr, a.GetParent());
    EXPECT_TRUE(c.SetParent(nullptr));
    EXPECT_EQ(nullptr, c.GetParent());

    auto pForeign = std::make_unique<CEffectProperty>(&m_pLight->m_pProps[0]);
    EXPECT_FALSE(a.AddProperty(pForeign));
    EXPECT_TRUE(pForeign); // stays with the caller
    std::unique_ptr<CEffectProperty> pNone;
    EXPECT_FALSE(a.AddProperty(pNone));
}

TEST_F(CSets, DetachingKeepsAllValues)
{
    CEffectPropertySet root(m_pSpark), middle(m_pSpark), leaf(m_pSpark), other(m_pSpark);
    middle.SetParent(&root);
    leaf.SetParent(&middle);
    SetValue(root, 0, 1);
    SetValue(middle, 2, 2);
    EXPECT_FALSE(leaf.DetachFromParent(&other));
    EXPECT_FALSE(leaf.DetachFromParent(nullptr));
    EXPECT_FALSE(leaf.DetachFromParent(&leaf));
    EXPECT_EQ(&root, middle.GetParent());

    EXPECT_TRUE(leaf.DetachFromParent(&root)); // the set that stands on it is flattened
    EXPECT_EQ(nullptr, middle.GetParent());
    EXPECT_EQ(&middle, leaf.GetParent());
    EXPECT_EQ(1, Value(middle, 0));
    root.ClearProperties();
    EXPECT_EQ(1, Value(leaf, 0));
    EXPECT_TRUE(root.Flatten()); // without a parent nothing changes
    EXPECT_EQ(3u, root.m_Props.size());
}

TEST_F(CSets, AssignmentIsDeepButSharesTheParent)
{
    CAssertCatcher catcher;
    CEffectPropertySet root(m_pSpark), source(m_pSpark), target(m_pLight);
    source.SetParent(&root);
    source.m_sName = "Smoke";
    SetValue(source, 0, 3);
    SetValue(target, 0, 4);
    target = source;
    EXPECT_EQ(m_pSpark, target.m_pTypeDesc);
    EXPECT_EQ(&root, target.GetParent());
    EXPECT_EQ("Smoke - Spark", target.GetDisplayName());
    source.GetPropertyDirect(0)->GetKey(0)->m_Data.SetInt(8);
    EXPECT_EQ(3, Value(target, 0));
    EXPECT_EQ(nullptr, target.GetPropertyDirect(2));
    target = *&target;
    EXPECT_EQ(3, Value(target, 0));
    EXPECT_EQ(0u, catcher.GetCount());

    SetValue(root, 0, 1);
    root = source; // the source stands on it
    EXPECT_EQ(" [Forced Assert]|Error: Assigning a parent to a child", catcher.Take());
    EXPECT_EQ(1, Value(root, 0));
    EXPECT_EQ(nullptr, root.GetParent());
    EXPECT_EQ("Spark", root.GetDisplayName());
}

TEST_F(CSets, FaultyUseIsReportedAndHarmless)
{
    CAssertCatcher catcher;
    CEffectPropertySet none(nullptr);
    EXPECT_EQ("m_pTypeDesc|Error: Invalid type description used to create a property set", catcher.Take());
    EXPECT_EQ(0u, none.GetNumProps());
    EXPECT_EQ("m_pTypeDesc|Error: No associated type description for this property set", catcher.Take());
    EXPECT_EQ("Unknown", none.GetDisplayName());
    EnsureComplete(&none);
    CEffectPropertySet set(m_pSpark);
    EXPECT_EQ(nullptr, set.GetPropertyDirect(3));
    EXPECT_EQ("nIndex < GetNumProps()|Error: Invalid index specified to GetPropertyDirect", catcher.Take());
}

// By the time that a model is destroyed, its plug-in and the prefabs may be gone. The table is freed here,
// so that the address sanitizer would tell of any look at it.
TEST(PropertySets, OutliveTheirPlugin)
{
    auto pTest = std::make_unique<CTestModule>();
    const CEffectTypeDesc* pType = pTest->m_Module.GetType(0);
    auto pPrefab = std::make_unique<CEffectPropertySet>(pType);
    EnsureComplete(pPrefab.get());
    CKey source(pType);
    source.SetParent(pPrefab.get());
    source.MakeLocal(3);
    std::unique_ptr<CKey> pKey = source.Clone();
    pPrefab.reset();
    pTest.reset();
    pKey.reset();
}
