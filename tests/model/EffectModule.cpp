#include "model/EffectModule.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/TestPlugin.h"

namespace
{

std::string PluginPath(const char* pszName)
{
    return std::string(EMBERDECK_BIN_DIR) + "/test_modules/" + pszName;
}

std::string TakeCalls()
{
    const char* pszCalls = std::getenv("EMBERDECK_TEST_CALLS");
    const std::string sCalls = pszCalls ? pszCalls : "";
    unsetenv("EMBERDECK_TEST_CALLS");
    return sCalls;
}

} // namespace

TEST(EffectModule, LoadsAndReleasesALibrary)
{
    TakeCalls();
    {
        CEffectModule module;
        ASSERT_TRUE(module.Load(PluginPath("plugin_whole.so").c_str()));
        EXPECT_TRUE(module.IsLoaded());
        EXPECT_EQ(7u, module.GetVersion());
        const CEffectTypeDesc* pType = module.FindType("sPARK");
        ASSERT_TRUE(pType);
        EXPECT_EQ(pType, module.GetType(0));
        EXPECT_EQ(nullptr, module.GetType(1));
        EXPECT_EQ(0, module.FindPropertyIndex(pType, "SIZE"));
        EXPECT_EQ("g", TakeCalls());
        // The old one goes before the new one is looked for.
        EXPECT_FALSE(module.Load(PluginPath("nothing.so").c_str()));
        EXPECT_EQ("r", TakeCalls());
        EXPECT_FALSE(module.IsLoaded());
        EXPECT_TRUE(module.Load(PluginPath("Plugin_Whole.DLL").c_str()));
    }
    EXPECT_EQ("gr", TakeCalls());
}

TEST(EffectModule, RefusesFaultyLibraries)
{
    struct
    {
        const char* m_pszFile;
        const char* m_pszCalls;
    } const cases[] = {{"plugin_half.so", ""}, {"plugin_empty.so", "gn"}, {"plugin_wild.so", "gr"}};
    TakeCalls();
    for (const auto& c : cases)
    {
        CEffectModule module;
        EXPECT_FALSE(module.Load(PluginPath(c.m_pszFile).c_str())) << c.m_pszFile;
        EXPECT_EQ(c.m_pszCalls, TakeCalls()) << c.m_pszFile;
        EXPECT_FALSE(module.IsLoaded());
        EXPECT_EQ(0u, module.GetNumTypes());
        EXPECT_EQ(0u, module.GetVersion());
        EXPECT_EQ(nullptr, module.FindType("Spark"));
        EXPECT_EQ(nullptr, module.GetType(0));
    }
    CEffectModule module;
    EXPECT_FALSE(module.Load(nullptr));
    EXPECT_EQ("", TakeCalls());
}

TEST(EffectModule, BoundsTables)
{
    CEffectTypeDesc desc = {};
    CEffectTypeTable table = {1, 0, nullptr};
    CEffectModule module;
    EXPECT_TRUE(module.Adopt(&table)); // no types: valid, and nothing is found
    EXPECT_EQ(nullptr, module.FindType(""));
    EXPECT_EQ(-1, module.FindPropertyIndex(nullptr, "x"));

    table.m_nNumTypes = 1;
    EXPECT_FALSE(module.Adopt(&table));
    table.m_pTypes = &desc;
    desc.m_nTypeID = 0xFFFFFFFF; // the plug-in's own fault, not looked at here
    EXPECT_TRUE(module.Adopt(&table));
    desc.m_nNumProps = 1;
    EXPECT_FALSE(module.Adopt(&table));
    CEffectPropertyDesc prop = {};
    desc.m_pProps = &prop;
    desc.m_nNumProps = CEffectModule::c_nMaxProps + 1;
    EXPECT_FALSE(module.Adopt(&table));
    EXPECT_FALSE(module.IsLoaded());

    // Names that fill their arrays are read up to the last byte.
    desc.m_nNumProps = 1;
    std::memset(desc.m_szName, 'n', sizeof(desc.m_szName));
    std::memset(prop.m_szName, 'p', sizeof(prop.m_szName));
    ASSERT_TRUE(module.Adopt(&table));
    EXPECT_EQ(&desc, module.FindType(std::string(127, 'N').c_str()));
    EXPECT_EQ(nullptr, module.FindType(std::string(128, 'N').c_str()));
    EXPECT_EQ(0, module.FindPropertyIndex(&desc, std::string(127, 'P')));
}

TEST(EffectModule, FirstOfEqualNamesWins)
{
    const CTestModule test(
        [](CTestPlugin& plugin)
        {
            for (int nType = 0; nType < 300; ++nType)
            {
                plugin.type(("Type" + std::to_string(nType % 100)).c_str());
                for (int nProp = 0; nProp < 40; ++nProp)
                    plugin.prop(ePropType_Int, ("prop" + std::to_string(nProp % 30)).c_str());
            }
        });
    const CEffectModule& module = test.m_Module;
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(module.GetType(i), module.FindType(("tYPE" + std::to_string(i)).c_str()));
    EXPECT_EQ(nullptr, module.FindType("Type100"));

    const CEffectTypeDesc foreign = *module.GetType(5); // another address: walked, with the same result
    for (const CEffectTypeDesc* pType : {module.GetType(299), &foreign})
    {
        for (int i = 0; i < 30; ++i)
            ASSERT_EQ(i, module.FindPropertyIndex(pType, "PROP" + std::to_string(i)));
        EXPECT_EQ(-1, module.FindPropertyIndex(pType, "prop30"));
        EXPECT_EQ(-1, module.FindPropertyIndex(pType, ""));
    }
}
