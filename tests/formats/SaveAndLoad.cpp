// Writer and reader against each other.

#include <clocale>
#include <cmath>
#include <random>

#include "FormatsTest.h"
#include "formats/LineWriter.h"
#include "qsamgr/qsanodebuilder.h"
#include "support/ScriptedPrompts.h"

namespace
{

// A library with a bit of everything, by a seed.
std::unique_ptr<CTestLibrary> Generated(unsigned nSeed)
{
    std::mt19937 random(nSeed);
    const auto below = [&](unsigned n) { return int(random() % n); };
    const auto text = [&]
    {
        static const char* const c_Texts[] = {"",
                                              "a",
                                              "fx\\Smoke.Texture00c",
                                              "two words",
                                              "(paren) ; , %s %d",
                                              "tab\tand\r\nline",
                                              "\xE4\xF6\xFC \x80\xFF",
                                              "quote \" here",
                                              "\x01"};
        return std::string(c_Texts[below(9)]) + std::string(size_t(below(40)), 'x');
    };
    CLibraryBuilder builder = aLibrary();
    for (int i = 0; i < 3; ++i)
        builder.prefab(i % 2 ? "Light" : "Sprite", "P" + std::to_string(i))
            .value(i % 2 ? "Radius" : "Size", i * 0.7 + 1);
    for (int nEffect = 0; nEffect < 8; ++nEffect)
    {
        if (below(3) == 0)
            builder.group(text());
        builder.effect("E" + std::to_string(nEffect) + text()).length(int32_t(random()));
        for (int nTrack = below(4); nTrack > 0; --nTrack)
        {
            builder.track();
            for (int nKey = 1 + below(5); nKey > 0; --nKey)
            {
                builder.key(below(2) ? "Sprite" : "Light").name(text());
                if (below(3) == 0)
                    builder.link(random());
                if (std::string(builder.lastKey()->m_pTypeDesc->m_szName) == "Light")
                {
                    if (below(2))
                        builder.onPrefab("P1");
                    builder.value("Color", CTestColor{below(256), below(256), below(256), below(256)});
                    continue;
                }
                if (below(2))
                    builder.onPrefab(below(2) ? "P0" : "P2");
                builder.value("Label", text()).value("Clip", text()).value("Texture", text());
                builder.value("Count", 1 + below(1000))
                    .value("Velocity", CVector3{below(10) / 3.0f, -0.0f, 1e-9f});
                std::vector<std::pair<float, double>> values = {{0.0f, 1.0}};
                for (int i = below(6); i > 0; --i)
                    values.push_back({float(below(1000)) / 1000.0f, below(100000) / 1000.0});
                values.push_back({1.0f, 3.0});
                builder.curve<double>("Size", values);
            }
        }
    }
    return builder.build();
}

CLoaded Reloaded(const CTestLibrary& library, const std::string& sName, std::string* pBytes = nullptr)
{
    const CTempDir dir;
    CLoaded loaded;
    loaded.m_pLibrary = std::make_unique<CTestLibrary>(library.m_pModule);
    CTestLibrary& target = *loaded.m_pLibrary;
    CFindingList observer(loaded.m_Findings);
    CScriptedPrompts prompts;
    EXPECT_TRUE(
        SaveEffectLibrary(dir.path(sName).c_str(), library.m_EffectTree, library.m_PrefabTree, &prompts));
    loaded.m_bLoaded =
        LoadEffectLibrary(dir.path(sName).c_str(), target.m_SpellMgr, target.Module(), &target.m_EffectTree,
                          &target.m_PrefabTree, loaded.m_sError, &prompts, &observer);
    EXPECT_EQ(2, prompts.m_nWaits);
    if (pBytes)
        *pBytes = ReadBytes(dir.path(sName));
    return loaded;
}

} // namespace

TEST(SaveAndLoad, WhatWasSavedIsSavedAgainTheSame)
{
    for (unsigned nSeed = 0; nSeed < 12; ++nSeed)
    {
        const std::string sName = nSeed % 2 ? "library.fx00c" : "library.fx00a";
        const auto pLibrary = Generated(nSeed);
        std::string sFirst;
        const CLoaded once = Reloaded(*pLibrary, sName, &sFirst);
        ASSERT_TRUE(once.m_bLoaded) << once.m_sError;
        for (const CLoadFinding& finding : once.m_Findings) // the links point anywhere
            EXPECT_NE(std::string::npos, finding.m_sText.find("is linked to key")) << finding.m_sText;
        std::string sSecond;
        const CLoaded twice = Reloaded(*once.m_pLibrary, sName, &sSecond);
        ASSERT_TRUE(twice.m_bLoaded);
        EXPECT_TRUE(sFirst == sSecond) << nSeed;
        EXPECT_EQ(pLibrary->m_SpellMgr.Spells().size(), twice.Mgr().Spells().size());
    }
}

TEST(SaveAndLoad, FieldsSurvive)
{
    const auto pLibrary = aLibrary()
                              .prefab("Light", "Lamp")
                              .group("Weapons")
                              .effect("Smoke")
                              .length(-7)
                              .track()
                              .track()
                              .key("Light", 100, 2000)
                              .id(4000000000u)
                              .onPrefab("lamp")
                              .link(3999999999u)
                              .track()
                              .build();
    const CLoaded loaded = Reloaded(*pLibrary, "a.Fx00c");
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    EXPECT_EQ("[[Effects]]\n  [Weapons]\n    Smoke\n", DumpTree(loaded.m_pLibrary->m_EffectTree));
    EXPECT_EQ("[[Prefabs]]\n  Lamp\n", DumpTree(loaded.m_pLibrary->m_PrefabTree));
    const CSpell& spell = *loaded.Mgr().Spells().at(0);
    EXPECT_EQ(-7, spell.m_Tracks.m_nPhaseLength);
    EXPECT_EQ(2u, spell.m_Tracks.GetNumTracks()); // the empty one at the end is nobody's
    EXPECT_EQ(4000000001u, spell.m_Tracks.m_nNextKeyID);
    const CKey& key = *KeyOf(loaded.Mgr(), "SMOKE", 1);
    EXPECT_EQ(4000000000u, key.m_nKeyID);
    EXPECT_EQ(3999999999u, key.m_nMotionLinkID);
    EXPECT_TRUE(key.m_bMotionLinked);
    EXPECT_EQ(loaded.Mgr().Prefabs().at(0).get(), key.GetParent());
    EXPECT_EQ(nullptr, OwnPropOf(key, "Radius"));
    EXPECT_EQ(&spell,
              loaded.m_pLibrary->m_EffectTree.GetItemData(loaded.m_pLibrary->m_EffectTree.FindData(&spell)));
}

TEST(SaveAndLoad, AwkwardNames)
{
    const std::string sLong(5000, 'n');
    const auto pLibrary = aLibrary()
                              .prefab("Light", "a \"b\"")
                              .group(sLong)
                              .effect(sLong)
                              .key("Light")
                              .name(std::string("before\0behind", 13))
                              .onPrefab("a \"b\"")
                              .end()
                              .effect("Say \"hi\"")
                              .build();
    const CLoaded loaded = Reloaded(*pLibrary, "a.Fx00a");
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    EXPECT_EQ("[[Effects]]\n  [" + std::string(1023, 'n') + "]\n    " + std::string(127, 'n') +
                  "\n  Say 'hi'\n",
              DumpTree(loaded.m_pLibrary->m_EffectTree));
    const CKey& key = *loaded.Mgr().Spells().at(0)->m_Tracks.GetTrack(0)->GetKey(0);
    EXPECT_EQ("before", key.m_sName);
    ASSERT_TRUE(key.GetParent());
    EXPECT_EQ("a 'b'", key.GetParent()->m_sName);
}

// What is saved loads again; a tree that is too deep for that leaves the file as it was.
TEST(SaveAndLoad, DeepTrees)
{
    const auto nested = [](int nGroups, bool bEffect, bool bKey)
    {
        CLibraryBuilder builder = aLibrary();
        for (int i = 1; i < nGroups; ++i) // the root is one
            builder.group("g");
        if (bEffect)
            builder.effect("Deep");
        if (bKey)
            builder.key("Light");
        return builder.build();
    };
    for (const auto& [nDeepest, bEffect, bKey] :
         {std::tuple(507, true, true), std::tuple(510, true, false), std::tuple(511, false, false)})
    {
        const CLoaded loaded = Reloaded(*nested(nDeepest, bEffect, bKey), "a.Fx00a");
        EXPECT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
        const CTempDir dir;
        const std::string sFile = dir.write("a.Fx00a", "old");
        const auto pTooDeep = nested(nDeepest + 1, bEffect, bKey);
        EXPECT_FALSE(SaveEffectLibrary(sFile.c_str(), pTooDeep->m_EffectTree, pTooDeep->m_PrefabTree));
        EXPECT_EQ("old", ReadBytes(sFile));
    }
    // Nothing recurses, however deep.
    const auto pAbyss = nested(100000, true, true);
    EXPECT_FALSE(SaveEffectLibrary("/nowhere/a.Fx00a", pAbyss->m_EffectTree, pAbyss->m_PrefabTree));
}

TEST(SaveAndLoad, FailedSavesSaySo)
{
    const auto pLibrary = aLibrary().effect("Smoke").key().build();
    const CTempDir dir;
    EXPECT_FALSE(SaveEffectLibrary(nullptr, pLibrary->m_EffectTree, pLibrary->m_PrefabTree));
    EXPECT_FALSE(SaveEffectLibrary(dir.path("no/where.Fx00a").c_str(), pLibrary->m_EffectTree,
                                   pLibrary->m_PrefabTree));
    EXPECT_FALSE(SaveEffectLibrary(dir.dir().c_str(), pLibrary->m_EffectTree, pLibrary->m_PrefabTree));
    if (std::filesystem::exists("/dev/full")) // a disk without room
    {
        std::filesystem::create_symlink("/dev/full", dir.path("full.Fx00a"));
        std::filesystem::create_symlink("/dev/full", dir.path("full.Fx00c"));
        EXPECT_FALSE(SaveEffectLibrary(dir.path("full.Fx00a").c_str(), pLibrary->m_EffectTree,
                                       pLibrary->m_PrefabTree));
        EXPECT_FALSE(SaveEffectLibrary(dir.path("full.Fx00c").c_str(), pLibrary->m_EffectTree,
                                       pLibrary->m_PrefabTree));
    }
    // Backslashes are separators here, too.
    EXPECT_TRUE(
        SaveEffectLibrary((dir.dir() + "\\a.Fx00a").c_str(), pLibrary->m_EffectTree, pLibrary->m_PrefabTree));
    EXPECT_TRUE(dir.has("a.Fx00a"));
}

// Six decimals, rounded as the C library does it, under every locale.
TEST(SaveAndLoad, NumbersAreRoundedCorrectly)
{
    const CTempDir dir;
    std::vector<float> values = {
        0.0f,        -0.0f,      1e-9f,       -1e-9f,        0.5e-6f,        1.5e-6f,  2.5e-6f,
        0.0000005f,  0.9999995f, 999999.9f,   1e9f,          -1e9f,          3.4e38f,  1e-45f,
        123456.789f, 8388608.5f, 16777216.0f, 1.0f / 128.0f, 0.0078125f * 3, INFINITY, -INFINITY};
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i)
    {
        const uint32_t nBits = random();
        float fValue;
        std::memcpy(&fValue, &nBits, 4);
        values.push_back(i % 2 ? fValue
                               : std::ldexp(float(random() % 4096), -int(random() % 24))); // many ties
    }
    std::string sExpected;
    for (const float fValue : values)
    {
        if (std::isnan(fValue))
            continue;
        char szLine[128];
        std::snprintf(szLine, sizeof(szLine), "\t\t( x %.6f )\r\n", double(fValue));
        sExpected += szLine;
    }
    const bool bComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    {
        CQSAFile file(dir.path("numbers").c_str(), false, false, false);
        CLineWriter out(&file);
        for (const float fValue : values)
        {
            if (std::isnan(fValue))
                continue;
            out.ValueLine(2, "x", fValue);
        }
    }
    if (bComma)
    {
        const CLoaded loaded = LoadText(FileOf(
            "", EffectOf(KeyText("Light", "(properties " +
                                              PropText("Radius", "Float", "(value (time 0.0) (data 2.75))") +
                                              ")"))));
        EXPECT_EQ(2.75f, FloatOf(*KeyOf(loaded.Mgr(), "Smoke"), "Radius"));
        std::setlocale(LC_NUMERIC, "C");
    }
    EXPECT_TRUE(sExpected == ReadBytes(dir.path("numbers")));
}
