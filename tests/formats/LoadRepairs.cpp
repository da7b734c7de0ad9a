// What a load puts up with, how it repairs it, and that it tells whoever listens.

#include <chrono>

#include "FormatsTest.h"

namespace
{

CLoaded LoadKeys(const std::string& sKeys, const std::string& sPrefabs = "")
{
    CLoaded loaded = LoadText(FileOf(sPrefabs, EffectOf(sKeys)));
    EXPECT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    return loaded;
}
CLoaded LoadProps(const std::string& sType, const std::string& sProps)
{
    return LoadKeys(KeyText(sType, "(properties " + sProps + ")"));
}
std::string Value(const std::string& sData, const std::string& sTime = "0")
{
    return "(value (time " + sTime + ") (data " + sData + "))";
}

} // namespace

TEST(LoadRepairs, ListsOfTheFile)
{
    // Any order, other lists and stray atoms; names are compared exactly, the first of a name counts.
    const CLoaded loaded = LoadText("stray (unknown 1) (effect-tree x (Effect (name a) (length 1)) (effect "
                                    "(name \"Smoke\") (name \"Fog\") (length 7 8)"
                                    " (Key) (key-list (Key) " +
                                    KeyText("Marker") + " (other)))) (header (version 1))");
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    EXPECT_EQ("Smoke\n", DumpTree(loaded.m_pLibrary->m_EffectTree));
    EXPECT_EQ("[[Prefabs]]\n", DumpTree(loaded.m_pLibrary->m_PrefabTree));
    EXPECT_EQ(7, loaded.Mgr().Spells().at(0)->m_Tracks.m_nPhaseLength);
    EXPECT_EQ(1u, loaded.Mgr().Spells().at(0)->m_Tracks.GetNumKeys());
    for (const char* pszPart :
         {"\"unknown\"", "\"Effect\"", "\"name\"", "\"Key\"", "\"other\"", "no prefab tree", "\"x\""})
        EXPECT_TRUE(loaded.Found(pszPart)) << pszPart << "\n" << loaded.Findings();

    // Trees without an item, and with two; only the first is saved again, which is told.
    const CLoaded empty = LoadText("(header (version 1)) (prefab-tree) (effect-tree)");
    EXPECT_TRUE(empty.m_bLoaded);
    EXPECT_EQ("", DumpTree(empty.m_pLibrary->m_EffectTree) + DumpTree(empty.m_pLibrary->m_PrefabTree));
    const CLoaded two = LoadText(
        "(header (version 1)) (prefab-tree) (effect-tree (container (name A)) (container (name B)))");
    EXPECT_EQ("[A]\n[B]\n", DumpTree(two.m_pLibrary->m_EffectTree));
    EXPECT_TRUE(two.Found("more than one item"));
    EXPECT_EQ(std::string::npos, SavedBytes(*two.m_pLibrary).find("\"B\""));
}

// Each of these is gone when the library is saved, and nothing else is told of it.
TEST(LoadRepairs, WhatIsNotSavedAgain)
{
    const auto effect = [](const std::string& sProp)
    {
        return FileOf("(prefab (name P) (type Light) (properties " +
                          PropText("Color", "Color", Value("1 2 3 4") + Value("1 2 3 4", "1")) +
                          PropText("Radius", "Float", Value("2")) +
                          PropText("Flicker", "Float", Value("2") + Value("3", "1")) + "))",
                      EffectOf(KeyText("Light", "(parent P) (properties " + sProp + ")")));
    };
    const std::string sSound = effect("");
    const auto with = [&](const std::string& sOld, const std::string& sNew)
    {
        std::string sText = sSound;
        const size_t nAt = sText.find(sOld);
        EXPECT_NE(std::string::npos, nAt) << sOld;
        return sText.replace(nAt, sOld.size(), sNew);
    };
    EXPECT_EQ("", LoadText(sSound).Findings());
    const std::pair<std::string, const char*> aCases[] = {
        {with("(header (version 1))", "(header (version 1) (author 2))"), "\"author\""},
        {with("(version 1)", "(version 1 2)"), "more in a list \"version\""},
        {with("(version 1)", "(version 1x)"), "\"1x\" in version"},
        {"stray " + sSound, "\"stray\" stands outside"},
        {"(first) " + sSound, "\"first\""},
        {with("\"[Effects]\"", "\"[Effects]\" more"), "more in a list \"name\""},
        {with("\"K\"", "\"K\" (x)"), "more in a list \"name\""},
        {with("(name \"K\")", "(name)"), "\"name\" has no value"},
        {with("(parent P)", "(parent)"), "\"parent\" has no value"},
        {with("(parent P)", "(parent (P))"), "\"parent\" has no value"},
        {with("(track 0)", "(track 0 0)"), "more in a list \"track\""},
        {with("(length 5000)", "(length 4294967295)"), "\"4294967295\" in length"},
        {with("\"K\"", std::string("\"K\0L\"", 5)), "bytes that are 0"},
        {effect(PropText("Radius", "Float", Value("3 4"))), "more in a list \"data\""},
        {effect(PropText("Radius", "Float", Value("1.0000004"))), "more decimals than are saved"},
        {effect(PropText("Radius", "Float", Value("3", "0 1"))), "more in a list \"time\""},
        {effect(PropText("Flicker", "Float", Value("1e-50") + Value("3", "1"))), "more decimals"},
        {effect("(property (name Radius) (type Float Int) (value-list " + Value("3") + "))"),
         "more in a list \"type\""},
    };
    for (const auto& [sText, pszPart] : aCases)
    {
        const CLoaded loaded = LoadText(sText);
        EXPECT_TRUE(loaded.m_bLoaded && loaded.Found(pszPart)) << sText << "\n" << loaded.Findings();
    }
    for (const char* pszNumber : {"250.3", "-16777217", "0.000001", "12.345678", "1.50000000", "3e2"})
        EXPECT_EQ(
            "",
            LoadText(effect(PropText("Flicker", "Float", Value(pszNumber) + Value("3", "1")))).Findings());
    EXPECT_EQ("", LoadText(with("(id 0)", "(id 4294967295)")).Findings());
}

// What the tree of nodes doesn't show any more.
TEST(LoadRepairs, CutTexts)
{
    const std::string sWhole = FileOf("", EffectOf(KeyText("Marker")));
    const CTempDir dir;
    const auto findingsIn = [&](const std::string& sText)
    {
        CLoaded loaded;
        CTestLibrary library;
        CFindingList observer(loaded.m_Findings);
        EXPECT_TRUE(LoadEffectLibrary(dir.write("a.Fx00a", sText).c_str(), library.m_SpellMgr,
                                      library.Module(), nullptr, nullptr, loaded.m_sError, nullptr,
                                      &observer));
        return loaded;
    };
    const CLoaded whole = findingsIn(sWhole);
    EXPECT_FALSE(whole.Found("list")) << whole.Findings();
    EXPECT_TRUE(findingsIn(sWhole.substr(0, sWhole.size() - 3)).Found("ends within a list, 3 deep"));
    const CLoaded odd = findingsIn(") " + sWhole + " ) \"" + std::string(1024, 't') + "\"");
    EXPECT_TRUE(odd.Found("2 closing parentheses") && odd.Found("cut to 1023 bytes")) << odd.Findings();
}

TEST(LoadRepairs, WithoutTreesTheModelAloneIsFilled)
{
    CTestLibrary library;
    std::string sError;
    ASSERT_TRUE(LoadEffectText(
        FileOf("(container (name G) (children (prefab (name \"P\") (type \"Light\"))))", EffectOf("")),
        library.m_SpellMgr, library.Module(), nullptr, nullptr, sError));
    EXPECT_TRUE(library.m_SpellMgr.FindPrefab("p"));
    EXPECT_TRUE(library.m_SpellMgr.FindSpell("smoke"));
    EXPECT_EQ("", sError);
}

TEST(LoadRepairs, PropertiesAndValues)
{
    const CLoaded dropped = LoadProps(
        "Sprite",
        PropText("gone", "Float", Value("1")) + PropText("Size", "Double", Value("1")) + "(Property) " +
            PropText("velocity", "vector",
                     Value("1 2") + "(value (time 0))" + "(value (data 1 2 3))" + "(Value)") +
            PropText("Count", "INT", Value("12") + Value("13")) + PropText("Label", "String", Value("(x)")));
    const CKey& key = *KeyOf(dropped.Mgr(), "Smoke");
    EXPECT_EQ((CVector3{0, 1, 0}), PropOf(key, "Velocity")->GetKey(0)->m_Data.GetVector());
    EXPECT_EQ(12, IntOf(key, "Count"));
    EXPECT_EQ(1u, PropOf(key, "Count")->GetNumKeys());
    EXPECT_EQ("idle", TextOf(key, "Clip"));
    for (const char* pszPart :
         {"no property gone", "unknown kind Double", "\"Property\"", "Velocity is incomplete", "\"Value\"",
          "Property Count had 2 values, and has 1 value now", "There is no property Clip"})
        EXPECT_TRUE(dropped.Found(pszPart)) << pszPart << "\n" << dropped.Findings();
    EXPECT_EQ("Smoke", dropped.m_Findings.front().m_sEffect);
    EXPECT_EQ("K - Sprite, id 0", dropped.m_Findings.front().m_sKey);

    const CLoaded repaired =
        LoadProps("Sprite", PropText("Color", "Color", Value("300 -1 256 127 9", "0.5")) +
                                PropText("Size", "Float", Value("-3", "0.2") + Value("1e3x", "0.7")) +
                                PropText("Frame", "Int", Value("4294967297", "0.2") + Value("junk", "0.7")) +
                                PropText("Blend", "Enum", Value("\"Screen\"")) +
                                PropText("Label", "String", Value(std::string(300, 'l'))) +
                                PropText("Velocity", "Vector", Value("0x10 inf -99")));
    const CKey& fixed = *KeyOf(repaired.Mgr(), "Smoke");
    const uint32_t nColor = PropOf(fixed, "Color")->GetKey(0)->m_Data.GetColor();
    EXPECT_EQ(44u, PropColorRed(nColor));
    EXPECT_EQ(255u, PropColorGreen(nColor));
    EXPECT_EQ(0u, PropColorBlue(nColor));
    EXPECT_EQ(127u, PropColorAlpha(nColor));
    EXPECT_EQ("0 1", TimesOf(fixed, "Color")); // its end key comes from the default
    EXPECT_EQ("0 1", TimesOf(fixed, "Size"));
    EXPECT_EQ(0.0f, FloatOf(fixed, "Size"));
    EXPECT_EQ(100.0f, FloatOf(fixed, "Size", 1));
    EXPECT_EQ("0 0.7", TimesOf(fixed, "Frame"));
    EXPECT_EQ(1, IntOf(fixed, "Frame"));
    EXPECT_EQ("Alpha", TextOf(fixed, "Blend"));
    EXPECT_EQ(std::string(255, 'l'), TextOf(fixed, "Label"));
    EXPECT_EQ((CVector3{0, 0, -10}), PropOf(fixed, "Velocity")->GetKey(0)->m_Data.GetVector());
    for (const char* pszPart :
         {"channel 300", "channel -1", "channel 256", "Property Size was brought into its range", "\"junk\"",
          "\"4294967297\"", "Blend had a value that isn't in its list", "Label was cut to 255", "\"0x10\"",
          "\"inf\"", "\"1e3x\""})
        EXPECT_TRUE(repaired.Found(pszPart)) << pszPart << "\n" << repaired.Findings();
    EXPECT_FALSE(repaired.Found("channel 127"));
}

TEST(LoadRepairs, PlacesIdsAndLinks)
{
    const CLoaded loaded =
        LoadKeys(KeyText("Marker", "", 1, 1000, 3000) + KeyText("Marker", "", 1, 2000, 4000) +
                 KeyText("Marker", "(motion-link (id 77))", 2, -500, 1500) +
                 KeyText("Marker", "(motion-link (id))", 3, 0, 100, 5) +
                 KeyText("Marker", "(motion-link (id 4) (id 5))", 4, 100, 200, 5));
    const CTrackList& tracks = loaded.Mgr().Spells().at(0)->m_Tracks;
    EXPECT_EQ(6u, tracks.GetNumTracks());
    EXPECT_EQ(5u, tracks.m_nNextKeyID);
    const auto& keys = tracks.GetTrack(0)->Keys();
    ASSERT_EQ(3u, keys.size());
    EXPECT_EQ(0, keys[0]->m_nStartTime);
    EXPECT_EQ(1000, keys[0]->m_nEndTime);
    EXPECT_EQ(77u, keys[0]->m_nMotionLinkID);
    EXPECT_EQ(3000, keys[2]->m_nStartTime);
    EXPECT_FALSE(tracks.GetTrack(5)->GetKey(0)->m_bMotionLinked);
    for (const char* pszPart : {"2000 to 4000 ms, doesn't fit on its track; it is 3000 to 4000",
                                "behind a later one", "-500 to 1500", "Another key of the effect has this id",
                                "linked to key 77", "no id", "linked to itself", "\"id\""})
        EXPECT_TRUE(loaded.Found(pszPart)) << pszPart << "\n" << loaded.Findings();
}

TEST(LoadRepairs, Prefabs)
{
    const std::string sPrefabs =
        "(prefab (name \"Lamp\") (type \"light\") (properties " + PropText("Radius", "Float", Value("3")) +
        ")) (prefab (name \"LAMP\") (type \"Light\")) (prefab (name \"Puff\") (type \"Sprite\"))";
    const CLoaded loaded =
        LoadKeys(KeyText("Light", "(parent \"lamp\")") + KeyText("Light", "(parent \"Puff\")", 1, 1000, 2000),
                 sPrefabs);
    EXPECT_EQ(3.0f, FloatOf(*KeyOf(loaded.Mgr(), "Smoke"), "Radius"));
    EXPECT_EQ(nullptr, OwnPropOf(*KeyOf(loaded.Mgr(), "Smoke"), "Color"));
    EXPECT_EQ(nullptr, KeyOf(loaded.Mgr(), "Smoke", 0, 1)->GetParent());
    EXPECT_TRUE(OwnPropOf(*KeyOf(loaded.Mgr(), "Smoke", 0, 1), "Color"));
    EXPECT_TRUE(loaded.Found("Puff is of another type"));
    EXPECT_TRUE(loaded.Found("Another prefab has this name"));
}

// A curve outside 0 to 1 takes more than one pass to settle; how many keys inherit it makes no difference.
TEST(LoadRepairs, InheritedValuesAreValidatedWithEachKey)
{
    const std::string sPrefab =
        "(prefab (name \"P\") (type \"Sprite\") (properties " +
        PropText("Frame", "Int", Value("1", "-5") + Value("2", "-3") + Value("3", "-1")) + "))";
    for (int nKeys = 0; nKeys < 5; ++nKeys)
    {
        std::string sKeys;
        for (int i = 0; i < nKeys; ++i)
            sKeys += KeyText("Sprite", "(parent \"P\")", i, i * 1000, i * 1000 + 1000);
        CLoaded loaded = LoadKeys(sKeys, sPrefab);

        CEffectPropertySet twin(loaded.m_pLibrary->Module().FindType("Sprite"));
        auto pProp = std::make_unique<CEffectProperty>(&twin.m_pTypeDesc->m_pProps[SlotOf(twin, "Frame")]);
        for (int i = 0; i < 3; ++i)
        {
            CPropKey key;
            key.m_fTime = float(-5 + 2 * i);
            key.m_Data.SetInt(i + 1);
            pProp->AddKey(key);
        }
        twin.AddProperty(pProp);
        ValidateSet(&twin);
        EXPECT_EQ("0 0 0", TimesOf(twin, "Frame"));
        EXPECT_EQ(TimesOf(twin, "Frame"), TimesOf(*loaded.Mgr().FindPrefab("P"), "Frame")) << nKeys;
    }
}

// Many keys on one prefab with a long curve cost no more than they are long.
TEST(LoadRepairs, ManyKeysOnAPrefab)
{
    std::string sValues;
    for (int i = 0; i <= 2000; ++i)
        sValues += Value("1.5", std::to_string(i / 2000.0));
    std::string sKeys;
    for (int i = 0; i < 20000; ++i)
        sKeys += KeyText("Sprite", "(parent \"P\")", i, i, i + 1, i % 10);
    const std::string sText = FileOf("(prefab (name \"P\") (type \"Sprite\") (properties " +
                                         PropText("Size", "Float", sValues) + "))",
                                     EffectOf(sKeys));
    CTestLibrary library;
    std::string sError;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(LoadEffectText(sText, library.m_SpellMgr, library.Module(), nullptr, nullptr, sError))
        << sError;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}
