#include "model/SpellMgr.h"
#include "model/UniqueNames.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/resource.h>

#include "sdk/AssertCatcher.h"
#include "support/TestPlugin.h"

namespace
{

struct CEffects : testing::Test
{
    CTestModule m_Test;
    CSpellMgr m_Mgr; // goes before the plug-in

    CKey* AddKey(CSpell& spell, uint32_t nTrack, uint32_t nID)
    {
        while (spell.m_Tracks.GetNumTracks() <= nTrack)
            spell.m_Tracks.AddTrack();
        auto pKey = std::make_unique<CKey>(m_Test.m_Module.GetType(0));
        EnsureComplete(pKey.get());
        pKey->m_nKeyID = nID;
        pKey->m_nTrack = nTrack;
        return spell.m_Tracks.GetTrack(nTrack)->AppendKey(std::move(pKey));
    }
    std::string UniqueName(const char* pszName)
    {
        std::string sName;
        m_Mgr.MakeUniqueSpellName(pszName, sName);
        return sName;
    }
};

} // namespace

TEST_F(CEffects, DefaultNamesCountConstructions)
{
    CSpell* pFirst = m_Mgr.AddSpell();
    const int nNumber = std::stoi(std::string(pFirst->m_szName).substr(12));
    EXPECT_EQ("Untitled FX " + std::to_string(nNumber), pFirst->m_szName);
    m_Mgr.DeleteSpell(pFirst);
    EXPECT_EQ("Untitled FX " + std::to_string(nNumber + 1), m_Mgr.AddSpell()->m_szName);

    CSpell* pSpell = m_Mgr.AddSpell();
    pSpell->SetName(std::string(200, 'n'));
    EXPECT_EQ(std::string(127, 'n'), pSpell->m_szName);
    pSpell->SetName(std::string_view(pSpell->m_szName).substr(125));
    EXPECT_STREQ("nn", pSpell->m_szName);
}

TEST_F(CEffects, NamesAreFoundAndMadeUnique)
{
    EXPECT_EQ(nullptr, m_Mgr.FindSpell("Smoke"));
    EXPECT_EQ("Smoke_7", UniqueName("Smoke_7"));
    for (const char* pszName : {"smoke", "SMOKE_1", "Fire2", "123", "Smoke_7", "Smoke_03", "Smoke_3x"})
        m_Mgr.AddSpell()->SetName(pszName);
    EXPECT_EQ(m_Mgr.Spells()[0].get(), m_Mgr.FindSpell("SMOKE"));
    EXPECT_EQ(nullptr, m_Mgr.FindSpell(nullptr));
    EXPECT_EQ("Smoke_2", UniqueName("Smoke"));
    EXPECT_EQ("Smoke_2", UniqueName("Smoke_7"));
    EXPECT_EQ("FIRE_1", UniqueName("FIRE2"));
    EXPECT_EQ("_1", UniqueName("123"));
    for (const char* pszName : {"_1", "_2", "Smoke_2", "Smoke_4"})
        m_Mgr.AddSpell()->SetName(pszName);
    EXPECT_EQ("_3", UniqueName("123"));
    EXPECT_EQ("Smoke_3", UniqueName("SMOKE_1").replace(0, 5, "Smoke"));

    // Who makes many: one walk in all, and the same names.
    CUniqueNames names;
    names.Reserve(m_Mgr.Spells().size() + 2000);
    for (const auto& pSpell : m_Mgr.Spells())
        names.Add(pSpell->m_szName);
    std::string sName;
    for (int i = 0; i < 2000; ++i)
    {
        sName = names.Make(i % 2 ? "Spark_1" : "SPARK");
        if (i % 100 == 0)
        {
            EXPECT_EQ(UniqueName(i % 2 ? "Spark_1" : "SPARK"), sName);
        }
        m_Mgr.AddSpell()->SetName(sName);
        names.Add(m_Mgr.Spells().back()->m_szName);
    }
    EXPECT_EQ("Spark_1999", sName);
    EXPECT_EQ("smoke_3", names.Make("smoke"));

    const CEffectTypeDesc* pType = m_Test.m_Module.GetType(0);
    m_Mgr.AddPrefab(pType)->m_sName = "Glow";
    m_Mgr.AddPrefab(pType)->m_sName = "GLOW";
    EXPECT_EQ(m_Mgr.Prefabs()[0].get(), m_Mgr.FindPrefab("gLOW"));
    m_Mgr.MakeUniquePrefabName("glow", sName);
    EXPECT_EQ("glow_1", sName);
}

TEST_F(CEffects, DeletingWhatIsNotThere)
{
    CAssertCatcher catcher;
    m_Mgr.AddSpell();
    m_Mgr.AddPrefab(m_Test.m_Module.GetType(0));
    CSpell other;
    m_Mgr.DeleteSpell(&other);
    ASSERT_EQ(1u, catcher.GetCount());
    EXPECT_EQ("CSpellMgr::DeleteSpell", catcher.GetLast().m_sFunction);
    CEffectPropertySet foreign(m_Test.m_Module.GetType(0));
    m_Mgr.DeletePrefab(&foreign);
    EXPECT_EQ(1u, m_Mgr.Spells().size());
    EXPECT_EQ(1u, m_Mgr.Prefabs().size());
    m_Mgr.DeletePrefab(m_Mgr.Prefabs()[0].get());
    m_Mgr.Clear();
    EXPECT_TRUE(m_Mgr.Spells().empty() && m_Mgr.Prefabs().empty());
    EXPECT_EQ(1u, catcher.GetCount());
}

TEST_F(CEffects, OutOfMemoryIsNull)
{
#ifdef EMBERDECK_SANITIZED
    GTEST_SKIP() << "the sanitizer ends the process instead";
#else
    rlimit before;
    getrlimit(RLIMIT_AS, &before);
    const rlimit tight = {rlim_t(8) << 30, before.rlim_max};
    setrlimit(RLIMIT_AS, &tight);
    CEffectTypeDesc vast = {};
    vast.m_nNumProps = UINT32_MAX; // slots for 32 GB
    const CEffectPropertySet* pPrefab = m_Mgr.AddPrefab(&vast);
    setrlimit(RLIMIT_AS, &before);
    EXPECT_EQ(nullptr, pPrefab);
    EXPECT_TRUE(m_Mgr.Prefabs().empty());
#endif
}

TEST_F(CEffects, TracksKeepTheirKeysNumbered)
{
    CSpell& spell = *m_Mgr.AddSpell();
    CTrackList& tracks = spell.m_Tracks;
    CKey* pTop = AddKey(spell, 0, 3);
    CKey* pLow = AddKey(spell, 2, 9);
    EXPECT_EQ(pLow, tracks.FindKey(9));
    EXPECT_EQ(nullptr, tracks.FindKey(4));
    EXPECT_EQ(tracks.GetTrack(2), tracks.FindTrackOf(pLow));
    EXPECT_EQ(nullptr, tracks.GetTrack(3));

    CTrack* pInserted = tracks.InsertTrackAfter(tracks.GetTrack(0));
    EXPECT_EQ(1u, tracks.GetTrackNumber(pInserted));
    EXPECT_EQ(3u, pLow->m_nTrack);
    tracks.InsertTrackAfter(nullptr);
    EXPECT_EQ(1u, pTop->m_nTrack);
    EXPECT_TRUE(tracks.RemoveTrack(pInserted));
    EXPECT_EQ(3u, pLow->m_nTrack);
    CTrack foreign;
    EXPECT_EQ(nullptr, tracks.InsertTrackAfter(&foreign));
    EXPECT_EQ(nullptr, tracks.RemoveTrack(&foreign));
    EXPECT_EQ(UINT32_MAX, tracks.GetTrackNumber(&foreign));

    EXPECT_EQ(2u, tracks.GetNumKeys());
    while (tracks.AddTrack())
    {
    }
    EXPECT_EQ(CTrackList::c_nMaxTracks, tracks.GetNumTracks());
}

TEST_F(CEffects, KeyIdsGrowAndSurviveAWrap)
{
    CSpell& spell = *m_Mgr.AddSpell();
    CTrackList& tracks = spell.m_Tracks;
    EXPECT_EQ(0u, tracks.TakeKeyID());
    AddKey(spell, 0, 3);
    AddKey(spell, 1, 9);
    tracks.RecalcNextKeyID();
    EXPECT_EQ(10u, tracks.m_nNextKeyID);
    tracks.RecalcNextKeyID();
    EXPECT_EQ(11u, tracks.m_nNextKeyID);
    EXPECT_EQ(11u, tracks.TakeKeyID());

    AddKey(spell, 0, 0);
    AddKey(spell, 0, UINT32_MAX);
    tracks.RecalcNextKeyID();
    EXPECT_EQ(0u, tracks.m_nNextKeyID);
    EXPECT_EQ(1u, tracks.TakeKeyID());
    EXPECT_EQ(2u, tracks.TakeKeyID());
}

TEST_F(CEffects, CopiesKeepIdsAndLinks)
{
    CSpell& source = *m_Mgr.AddSpell();
    source.m_Tracks.m_nPhaseLength = 777;
    AddKey(source, 1, 5)->Link(0);
    AddKey(source, 1, 6)->m_bSelected = true;
    AddKey(source, 2, 0);
    CSpell& copy = *m_Mgr.AddSpell();
    copy.SetName("Copy");
    ASSERT_TRUE(copy.CopyFrom(source));
    EXPECT_STREQ("Copy", copy.m_szName);
    EXPECT_EQ(777, copy.m_Tracks.m_nPhaseLength);
    EXPECT_EQ(3u, copy.m_Tracks.GetNumTracks());
    EXPECT_EQ(7u, copy.m_Tracks.m_nNextKeyID);
    const CKey* pLinked = copy.m_Tracks.GetTrack(1)->GetKey(0);
    EXPECT_TRUE(pLinked->m_bMotionLinked);
    EXPECT_TRUE(copy.m_Tracks.FindKey(6)->m_bSelected);
    EXPECT_NE(source.m_Tracks.FindKey(5)->GetPropertyDirect(4), pLinked->GetPropertyDirect(4));

    std::string sOrder;
    m_Mgr.ForEachKey([&](CSpell&, CKey& key) { sOrder += std::to_string(key.m_nKeyID); });
    EXPECT_EQ("560560", sOrder);
}
