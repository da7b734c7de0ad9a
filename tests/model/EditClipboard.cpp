#include "model/EditClipboard.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/TestPlugin.h"

namespace
{

void DescribeOld(CTestPlugin& plugin)
{
    plugin.type("Spark").prop(ePropType_Int, "Count").range("0;100").def(1);
    plugin.prop(ePropType_String, "Gone").def("x");
    plugin.prop(ePropType_Float, "Size").def(1.0).step();
    plugin.prop(ePropType_Enum, "Blend").data("Add,Alpha").def("Add");
    plugin.prop(ePropType_String, "Changed").def("");
}

// What a newer plug-in may do: order, range, form and kind change, properties come and go.
void DescribeNew(CTestPlugin& plugin)
{
    plugin.type("Other");
    plugin.type("SPARK").prop(ePropType_Float, "size").def(2.0).linear();
    plugin.prop(ePropType_Int, "count").range("0;10").def(1);
    plugin.prop(ePropType_Enum, "Blend").data("Multiply").def("Multiply");
    plugin.prop(ePropType_Int, "Changed");
    plugin.prop(ePropType_Int, "New").def(33);
}

std::unique_ptr<CKey> MakeSpark(const CEffectModule& module)
{
    auto pKey = std::make_unique<CKey>(module.FindType("Spark"));
    EnsureComplete(pKey.get());
    pKey->m_sName = "Smoke";
    pKey->m_nKeyID = 8;
    pKey->m_nTrack = 3;
    pKey->m_nStartTime = 100;
    pKey->m_nEndTime = 200;
    pKey->m_bSelected = true;
    pKey->Link(4);
    pKey->GetPropertyDirect(0)->GetKey(0)->m_Data.SetInt(50);
    pKey->GetPropertyDirect(2)->GetKey(0)->m_Data.SetFloat(9.0f);
    pKey->GetPropertyDirect(3)->GetKey(0)->m_Data.SetText("Alpha");
    pKey->GetPropertyDirect(4)->GetKey(0)->m_Data.SetText("abcd and more text");
    return pKey;
}

} // namespace

TEST(EditClipboard, KeyIsBoundAnewToTheNextPlugin)
{
    auto pOld = std::make_unique<CTestModule>(DescribeOld);
    CEditClipboard clipboard;
    {
        const std::unique_ptr<CKey> pSource = MakeSpark(pOld->m_Module);
        CEffectPropertySet prefab(pSource->m_pTypeDesc);
        EnsureComplete(&prefab);
        prefab.GetPropertyDirect(0)->GetKey(0)->m_Data.SetInt(40);
        pSource->SetParent(&prefab);
        pSource->ClearLocal(0);
        clipboard.CopyKey(pSource.get(), 12);
        EXPECT_EQ(0u, clipboard.GetKey()->m_nKeyID);
        EXPECT_EQ(0u, clipboard.GetKey()->m_nTrack);
        EXPECT_EQ(&prefab, clipboard.GetKey()->GetParent());
        clipboard.FlattenKey();
    }
    clipboard.FreezeForUnload();
    EXPECT_EQ(nullptr, clipboard.GetKey());
    pOld.reset();

    CEffectModule none;
    clipboard.Thaw(none); // a load that failed
    clipboard.FreezeForUnload();
    CTestModule fresh(DescribeNew);
    clipboard.Thaw(fresh.m_Module);
    const CKey* pKey = clipboard.GetKey();
    ASSERT_TRUE(pKey);
    EXPECT_EQ(12u, clipboard.GetKeyEffectSerial());
    EXPECT_EQ("Smoke - SPARK", pKey->GetDisplayName());
    EXPECT_EQ(100, pKey->m_nStartTime);
    EXPECT_EQ(200, pKey->m_nEndTime);
    EXPECT_TRUE(pKey->m_bSelected && pKey->m_bMotionLinked);
    EXPECT_EQ(4u, pKey->m_nMotionLinkID);
    const CEffectProperty& size = *pKey->GetPropertyDirect(0);
    EXPECT_EQ(2u, size.GetNumKeys()); // a step became a line: its end is the default
    EXPECT_EQ(9.0f, size.GetKey(0)->m_Data.GetFloat());
    EXPECT_EQ(2.0f, size.GetKey(1)->m_Data.GetFloat());
    EXPECT_EQ(10, pKey->GetPropertyDirect(1)->GetKey(0)->m_Data.GetInt());
    EXPECT_EQ("Multiply", pKey->GetPropertyDirect(2)->GetKey(0)->m_Data.GetText());
    EXPECT_EQ("abcd and more text",
              pKey->GetPropertyDirect(3)->GetKey(0)->m_Data.GetText()); // by its old kind
    EXPECT_EQ(33, pKey->GetPropertyDirect(4)->GetKey(0)->m_Data.GetInt());

    clipboard.FreezeForUnload();
    clipboard.Thaw(CTestModule([](CTestPlugin& plugin) { plugin.type("Other"); }).m_Module);
    EXPECT_EQ(nullptr, clipboard.GetKey());
    clipboard.Thaw(fresh.m_Module); // dropped for good
    EXPECT_EQ(nullptr, clipboard.GetKey());
}

TEST(EditClipboard, NewCopyReplacesAFrozenKey)
{
    CTestModule test(DescribeOld);
    CEditClipboard clipboard;
    const std::unique_ptr<CKey> pKey = MakeSpark(test.m_Module);
    clipboard.CopyKey(pKey.get(), 1);
    clipboard.CopyKey(clipboard.GetKey(), 2); // its own
    EXPECT_EQ("Smoke", clipboard.GetKey()->m_sName);
    clipboard.FreezeForUnload();
    clipboard.CopyKey(nullptr, 3);
    clipboard.Thaw(test.m_Module);
    EXPECT_EQ(nullptr, clipboard.GetKey());
}

TEST(EditClipboard, CurveNeedsNoPlugin)
{
    CEditClipboard clipboard;
    {
        const CTestModule test;
        CEffectProperty color(&test.m_Module.FindType("Sprite")->m_pProps[3]);
        Validate(&color);
        color.GetKey(0)->m_Data.SetColor(123);
        color.GetKey(1)->m_bSelected = true;
        EXPECT_FALSE(clipboard.CanPasteCurve(&color));
        clipboard.CopyCurve(&color);
    }
    const CTestModule test;
    EXPECT_TRUE(clipboard.HasCurve());
    CEffectProperty color(&test.m_Module.FindType("Light")->m_pProps[0]);
    CEffectProperty other(&test.m_Module.FindType("Light")->m_pProps[1]);
    color.AddDefaultKey(0.5f);
    EXPECT_TRUE(clipboard.CanPasteCurve(&color));
    EXPECT_FALSE(clipboard.CanPasteCurve(&other) || clipboard.CanPasteCurve(nullptr));
    clipboard.PasteCurve(&color);
    clipboard.PasteCurve(&other);
    EXPECT_EQ(0u, other.GetNumKeys());
    ASSERT_EQ(2u, color.GetNumKeys());
    EXPECT_EQ(123u, color.GetKey(0)->m_Data.GetColor());
    EXPECT_TRUE(color.GetKey(1)->m_bSelected);
    clipboard.CopyCurve(nullptr);
    EXPECT_FALSE(clipboard.HasCurve());
}
