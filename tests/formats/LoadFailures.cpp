// Every way in which a load fails, with its words, innermost first.

#include "FormatsTest.h"

namespace
{

const std::string c_sEffectTail = "\r\nError loading effect\r\nFailed loading children of container "
                                  "[Effects]\r\nFailed loading effect tree";
const std::string c_sKeyTail = "\r\nError loading key for effect Smoke" + c_sEffectTail;
const std::string c_sPrefabTail = "\r\nError loading prefab\r\nFailed loading children of container "
                                  "[Prefabs]\r\nFailed loading prefab tree";

// Behind the first CR LF, for what has no message of its own.
std::string Tail(const std::string& sText)
{
    return sText.substr(2);
}

std::string Without(std::string sText, const std::string& sPart)
{
    const size_t nPos = sText.find(sPart);
    EXPECT_NE(std::string::npos, nPos) << sPart;
    return sText.erase(nPos, sPart.size());
}

} // namespace

TEST(LoadFailures, TheFileAsAWhole)
{
    const CTempDir dir;
    CTestLibrary library;
    std::string sError = "before";
    const auto load = [&](const std::string& sPath, const CEffectModule& module)
    { return LoadEffectLibrary(sPath.c_str(), library.m_SpellMgr, module, nullptr, nullptr, sError); };
    CEffectModule none;
    EXPECT_FALSE(load(dir.write("good.Fx00a", FileOf("", "")), none));
    EXPECT_EQ("before\r\nNo Fireglass DLL was loaded", sError);

    // A missing file, plain text under a compressed name, lists that nest too deep.
    const std::string sDeep(1024, '(');
    for (const std::string& sPath : {dir.path("missing.Fx00a"), dir.write("plain.Fx00c", FileOf("", "")),
                                     dir.write("deep.Fx00a", sDeep), dir.dir()})
    {
        sError.clear();
        EXPECT_FALSE(load(sPath, library.Module())) << sPath;
        EXPECT_EQ("Failed to load the file from disk into memory", sError) << sPath;
    }
    EXPECT_FALSE(LoadEffectLibrary(nullptr, library.m_SpellMgr, library.Module(), nullptr, nullptr, sError));
    EXPECT_TRUE(library.m_SpellMgr.Spells().empty());
    sError.clear();
    EXPECT_TRUE(load(dir.write("sub/good.Fx00a", FileOf("", "")), library.Module())) << sError;

    for (const char* pszText :
         {"", "(prefab-tree) (effect-tree)", "(header) (effect-tree)", "(header (version)) (effect-tree)",
          "(header (version 2)) (effect-tree)", "(header (version (1))) (effect-tree)",
          "(other (version 1)) (effect-tree)", "(Header (version 1)) (effect-tree)",
          "(header (version x) (version 1)) (effect-tree)"})
    {
        const CLoaded loaded = LoadText(pszText);
        EXPECT_FALSE(loaded.m_bLoaded);
        EXPECT_EQ("Invalid file version", loaded.m_sError) << pszText;
    }
    EXPECT_EQ("No effect list found in the file", LoadText("(header (version 1)) (prefab-tree)").m_sError);
}

TEST(LoadFailures, GroupsPrefabsAndEffects)
{
    EXPECT_EQ("Unable to find container name\r\nFailed loading children of container [Effects]\r\nFailed "
              "loading effect tree",
              LoadText(FileOf("", "(container (children))")).m_sError);
    EXPECT_EQ("Unable to find container name\r\nFailed loading prefab tree",
              LoadText("(header (version 1)) (prefab-tree (container (name (x))))").m_sError);

    for (const char* pszPrefab : {"(prefab (name \"P\"))", "(prefab (type \"Light\"))", "(prefab)"})
        EXPECT_EQ("Unable to find a required parameter for prefab" + c_sPrefabTail,
                  LoadText(FileOf(pszPrefab, "")).m_sError);
    EXPECT_EQ(Tail(c_sPrefabTail), LoadText(FileOf("(prefab (name \"P\") (type \"Gone\"))", "")).m_sError);
    const CLoaded badProp = LoadText(
        FileOf("(prefab (name \"P\") (type \"Light\") (properties (property (name \"Radius\"))))", ""));
    EXPECT_EQ("Error loading name or type for property\r\nError loading property of key P" + c_sPrefabTail,
              badProp.m_sError);
    EXPECT_TRUE(badProp.Mgr().Prefabs().empty());

    for (const char* pszEffect :
         {"(effect (name \"E\"))", "(effect (length 5))", "(effect (name) (length 5))"})
        EXPECT_EQ("Error finding name and length of effect" + c_sEffectTail,
                  LoadText(FileOf("", pszEffect)).m_sError);
}

TEST(LoadFailures, Keys)
{
    const std::string sGood = KeyText("Light");
    ASSERT_TRUE(LoadText(FileOf("", EffectOf(sGood))).m_bLoaded);
    for (const char* pszField :
         {"(type \"Light\")", "(id 0)", "(start-time 0)", "(end-time 1000)", "(track 0)"})
    {
        EXPECT_EQ("Unable to find a required parameter for key" + c_sKeyTail,
                  LoadText(FileOf("", EffectOf(Without(sGood, pszField)))).m_sError);
    }
    EXPECT_EQ(Tail(c_sKeyTail), LoadText(FileOf("", EffectOf(KeyText("Gone")))).m_sError);
    EXPECT_EQ("Failed to find prefab Lamp for key K" + c_sKeyTail,
              LoadText(FileOf("", EffectOf(KeyText("Light", "(parent \"Lamp\")")))).m_sError);
    EXPECT_EQ("Failed to find prefab %s for key " + c_sKeyTail,
              LoadText(FileOf("", EffectOf(Without(KeyText("Light", "(parent \"%s\")"), "(name \"K\")"))))
                  .m_sError);
    EXPECT_EQ("Error loading name or type for property\r\nError loading property of key K" + c_sKeyTail,
              LoadText(FileOf("", EffectOf(KeyText("Light", "(properties (property (type \"Float\")))"))))
                  .m_sError);
}

// Track numbers that no timeline has are refused before anything is made for them.
TEST(LoadFailures, TrackNumbers)
{
    const std::string sRefused = "Unable to allocate track for effect Smoke" + c_sEffectTail;
    for (const int nTrack : {-1, 65536, INT32_MAX, INT32_MIN})
        EXPECT_EQ(sRefused, LoadText(FileOf("", EffectOf(KeyText("Marker", "", 0, 0, 1, nTrack)))).m_sError);
    const CLoaded last = LoadText(FileOf("", EffectOf(KeyText("Marker", "", 0, 0, 1, 65535))));
    ASSERT_TRUE(last.m_bLoaded);
    EXPECT_EQ(65536u, last.Mgr().Spells()[0]->m_Tracks.GetNumTracks());

    std::string sMany;
    for (int i = 0; i < 20; ++i)
        sMany += EffectOf(KeyText("Marker", "", 0, 0, 1, 65535));
    EXPECT_EQ(sRefused, LoadText(FileOf("", sMany)).m_sError);
}

// Cut anywhere, or with any byte changed, a file loads or fails in order.
TEST(LoadFailures, DamagedFiles)
{
    const auto pLibrary = aLibrary()
                              .prefab("Light", "Lamp")
                              .effect("Smoke")
                              .key("Light")
                              .onPrefab("Lamp")
                              .value("Flicker", 0.5)
                              .build();
    const std::string sText = SavedBytes(*pLibrary);
    const std::string sPacked = SavedBytes(*pLibrary, "a.Fx00c");
    const CTempDir dir;
    int nLoaded = 0;
    for (size_t i = 0; i < sText.size(); ++i)
    {
        std::string sDamaged = sText;
        sDamaged[i] = "()\" 9\0"[i % 6];
        for (const std::string& s : {sText.substr(0, i), sDamaged})
        {
            const CLoaded loaded = LoadText(s, pLibrary->m_pModule);
            EXPECT_NE(loaded.m_bLoaded, !loaded.m_sError.empty());
            nLoaded += loaded.m_bLoaded;
        }
    }
    EXPECT_GT(nLoaded, 100);
    for (size_t i = 0; i < sPacked.size(); i += 7)
    {
        CTestLibrary target(pLibrary->m_pModule);
        std::string sError;
        LoadEffectLibrary(dir.write("cut.Fx00c", sPacked.substr(0, i)).c_str(), target.m_SpellMgr,
                          target.Module(), &target.m_EffectTree, &target.m_PrefabTree, sError);
    }
}
