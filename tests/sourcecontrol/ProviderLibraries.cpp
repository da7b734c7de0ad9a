#include "shared/sourcecontrol/ProviderLibraries.h"

#include <filesystem>

#include "shared/sourcecontrol/SharedSourceControlMgr.h"
#include "support/ScriptedPrompts.h"
#include "support/TempDir.h"

namespace
{

const std::string c_sLibrary = std::string(EMBERDECK_BIN_DIR) + "/test_modules/TestProvider.so";

} // namespace

TEST(ProviderLibraries, ListedLibraryIsAProviderLikeAnyOther)
{
    CTempDir dir;
    const std::string sList = dir.write(
        "emberdeck/providers.txt",
        "# comment\r\n\n ; another\nDepot\t{0f5b7c1e-4d2a-4e63-9b18-7a6c5d4e3f21}   my depot.so \r\n"
        "Other {11111111-4D2A-4E63-9B18-7A6C5D4E3F21} " +
            c_sLibrary + "\nNone {22222222-4D2A-4E63-9B18-7A6C5D4E3F21} /no/such.so\n" +
            "Wrong {33333333-4D2A-4E63-9B18-7A6C5D4E3F21} /proc/self/exe");
    std::filesystem::create_symlink(c_sLibrary, dir.path("emberdeck/my depot.so"));
    CScriptedPrompts prompts;
    CProviderRegistry registry;
    EXPECT_TRUE(RegisterProviderLibraries(registry, sList).empty());
    ASSERT_EQ(4u, registry.Entries().size());

    CSourceControlServices services;
    services.m_pRegistry = &registry;
    services.m_pPrompts = &prompts;
    std::string sTold;
    services.m_TellFailure = [&](const std::string& sText) { sTold = sText; };
    CSharedSourceControlMgr mgr(services);
    mgr.SetProject("depot", "anything");
    EXPECT_TRUE(mgr.Connect());
    EXPECT_EQ(eSCState_CheckedOut, mgr.SourceControlStateForFile("x"));
    EXPECT_FALSE(mgr.Submit("x"));
    EXPECT_EQ("not in this test", sTold);
    mgr.Disconnect();

    const std::pair<const char*, const char*> failures[] = {{"other", "has no provider {11111111-4D2A"},
                                                            {"none", "/no/such.so can't be loaded"},
                                                            {"wrong", "self/exe"}};
    for (const auto& [pszName, pszMessage] : failures)
    {
        mgr.SetProject(pszName, "anything");
        prompts.onAsk(pszMessage);
        EXPECT_FALSE(mgr.Connect());
    }
}

TEST(ProviderLibraries, BadLinesAreToldAndTheOthersCount)
{
    CTempDir dir;
    CProviderRegistry registry;
    EXPECT_TRUE(RegisterProviderLibraries(registry, dir.path("none")).empty());
    const std::string sGood = " {0F5B7C1E-4D2A-4E63-9B18-7A6C5D4E3F21} x.so\n";
    const std::string sList =
        dir.write("list", "Depot\nDepot {no id} x.so\n" + std::string("Depot") + sGood + "Again" + sGood);
    const std::vector<std::string> problems = RegisterProviderLibraries(registry, sList);
    ASSERT_EQ(3u, problems.size());
    EXPECT_EQ(sList + ", line 2: a name, a class id in braces and a library are expected.", problems[1]);
    EXPECT_EQ(sList + ", line 4: this class id is taken.", problems[2]);
    EXPECT_EQ(1u, registry.Entries().size());
    EXPECT_EQ(1u, RegisterProviderLibraries(registry, dir.write("long", std::string(100000, '\n'))).size());
}
