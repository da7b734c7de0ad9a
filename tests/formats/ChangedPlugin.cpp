// A file meets another version of the plug-in that it was written with.

#include "FormatsTest.h"

namespace
{

std::shared_ptr<CTestModule> Described(const std::function<void(CTestPlugin&)>& describe)
{
    return std::make_shared<CTestModule>(describe);
}

void Before(CTestPlugin& plugin)
{
    plugin.type("Old").type("Spark");
    plugin.prop(ePropType_Float, "Kept").def(1.0);
    plugin.prop(ePropType_Int, "Removed").def(2);
    plugin.prop(ePropType_Int, "Retyped").def(0x41424344);
    plugin.prop(ePropType_Float, "Narrowed").def(50.0);
    plugin.prop(ePropType_Enum, "Listed").data("Red,Green").def("Red");
    plugin.prop(ePropType_Float, "Flat").def(1.0);
    plugin.prop(ePropType_Float, "Curved").def(1.0).linear();
}

void After(CTestPlugin& plugin)
{
    plugin.type("Spark");
    plugin.prop(ePropType_Float, "Curved").def(9.0);
    plugin.prop(ePropType_String, "Added").def("new");
    plugin.prop(ePropType_Float, "KEPT").def(8.0);
    plugin.prop(ePropType_String, "Retyped").def("x");
    plugin.prop(ePropType_Float, "Narrowed").range("0;10").def(5.0);
    plugin.prop(ePropType_Enum, "Listed").data("Blue,GREEN").def("Blue");
    plugin.prop(ePropType_Float, "Flat").def(7.0).linear();
}

} // namespace

TEST(ChangedPlugin, PropertiesAreReconciledByName)
{
    const auto pOld = aLibrary(Described(Before))
                          .effect("Smoke")
                          .key("Spark")
                          .value("Kept", 3.5)
                          .value("Retyped", 0x00434241)
                          .value("Listed", "Green")
                          .value("Flat", 2.5)
                          .curve<double>("Curved", {{0.0f, 4.0}, {0.5f, 5.0}, {1.0f, 6.0}})
                          .key("Spark")
                          .build();
    const CLoaded loaded = LoadText(SavedBytes(*pOld), Described(After));
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    const CKey& key = *KeyOf(loaded.Mgr(), "Smoke");
    EXPECT_EQ(3.5f, FloatOf(key, "KEPT"));
    EXPECT_EQ("new", TextOf(key, "Added"));
    EXPECT_EQ("ABC", TextOf(key, "Retyped")); // the bytes of the old kind
    EXPECT_EQ(10.0f, FloatOf(key, "Narrowed"));
    EXPECT_EQ("Green", TextOf(key, "Listed")); // in the list but for its case
    EXPECT_EQ("Blue", TextOf(*KeyOf(loaded.Mgr(), "Smoke", 0, 1), "Listed"));
    EXPECT_EQ("0 1", TimesOf(key, "Flat")); // a constant that became a curve
    EXPECT_EQ(2.5f, FloatOf(key, "Flat", 0));
    EXPECT_EQ(7.0f, FloatOf(key, "Flat", 1));
    EXPECT_EQ("0", TimesOf(key, "Curved")); // and back
    EXPECT_EQ(4.0f, FloatOf(key, "Curved"));
    for (const char* pszPart :
         {"no property Removed", "no property Added", "stored as Int", "Narrowed was brought",
          "Listed had a value", "Flat had 1 value, and has 2 values", "Curved had 3 values, and has 1 value"})
        EXPECT_TRUE(loaded.Found(pszPart)) << pszPart << "\n" << loaded.Findings();

    // The way back: what had no place is gone, what had one stands where it was.
    const CLoaded back = LoadText(SavedBytes(*loaded.m_pLibrary), Described(Before));
    ASSERT_TRUE(back.m_bLoaded);
    EXPECT_EQ(3.5f, FloatOf(*KeyOf(back.Mgr(), "Smoke"), "Kept"));
    EXPECT_EQ(2, IntOf(*KeyOf(back.Mgr(), "Smoke"), "Removed"));
    EXPECT_EQ("0 1", TimesOf(*KeyOf(back.Mgr(), "Smoke"), "Curved"));
}

TEST(ChangedPlugin, AMissingTypeFailsTheFile)
{
    const auto pOld = aLibrary(Described(Before)).effect("Smoke").key("Old").build();
    EXPECT_FALSE(LoadText(SavedBytes(*pOld), Described(After)).m_bLoaded);
    const CLoaded loaded = LoadText(SavedBytes(*pOld), Described(Before));
    EXPECT_TRUE(loaded.m_bLoaded); // a type without properties
    EXPECT_EQ(0u, KeyOf(loaded.Mgr(), "Smoke")->GetNumProps());
}

// A kind that no table knows is written under a name that the loader drops.
TEST(ChangedPlugin, UnknownKindsAreLeftOut)
{
    const auto describe = [](CTestPlugin& plugin)
    { plugin.type("Spark").prop(77, "Odd").prop(ePropType_Int, "Count").def(5); };
    const auto pLibrary = aLibrary(Described(describe)).effect("Smoke").key("Spark").build();
    const CLoaded loaded = LoadText(SavedBytes(*pLibrary), Described(describe));
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    EXPECT_EQ(5, IntOf(*KeyOf(loaded.Mgr(), "Smoke"), "Count"));
    EXPECT_TRUE(loaded.Found("unknown kind Unknown"));
}
