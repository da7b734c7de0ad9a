#include "changes/Compare.h"

#include "changes/ChangeRecorder.h"
#include "formats/FormatsTest.h"

namespace
{
std::shared_ptr<const CLibraryImage> ImageOf(CTestLibrary& library)
{
    CImageMaker maker;
    return CLibraryImage::Make({library.m_SpellMgr, library.m_EffectTree, library.m_PrefabTree}, maker);
}

std::string Words(const CLibraryChange& change)
{
    std::string sWords;
    for (const CDifference& difference : change.m_Differences)
        sWords += Tell(difference) + "\n";
    return sWords;
}

std::unique_ptr<CTestLibrary> Two()
{
    return aLibrary()
        .prefab("Sprite", "Puff")
        .group("Old")
        .effect("Smoke")
        .key("Sprite")
        .name("A")
        .key("Sprite")
        .onPrefab("Puff")
        .track()
        .track()
        .key("Light")
        .name("C")
        .end()
        .effect("Fire")
        .key("Sprite")
        .build();
}

struct CNoOwner : ILibraryOwner
{
    void OnReleasing(const CSpell&) override {}
    void OnReleasing(CEffectPropertySet&) override {}
};

// A library whose edits are recorded and can be done.
struct CRecordedLibrary
{
    std::unique_ptr<CTestLibrary> m_pLibrary = Two();
    CEditHub m_Hub;
    CNoOwner m_Owner;
    CApplyTarget m_Target{{m_pLibrary->m_SpellMgr, m_pLibrary->m_EffectTree, m_pLibrary->m_PrefabTree},
                          m_pLibrary->Module(),
                          m_Hub,
                          m_Owner};
    CChangeRecorder m_Recorder{m_Target};
};

struct CLastEdit : IEditListener
{
    explicit CLastEdit(CEditHub& hub) { hub.AddListener(this); }
    void OnEditStep(const CEdit& edit) override { m_nSteps += edit.m_Touched.size(); }
    void OnEdit(const CEdit& edit) override { m_Edit = edit; }
    CEdit m_Edit;
    size_t m_nSteps = 0;
};
} // namespace

TEST(Compare, LibrariesOfTwoFilesAreAlignedByNamesAndIds)
{
    auto pMine = Two();
    auto pTheirs = Two();
    const auto pBase = ImageOf(*pMine);
    EXPECT_EQ("", Words(Compare(*pBase, *Align(*pBase, *ImageOf(*pTheirs)))));

    CSpell& smoke = *pTheirs->m_SpellMgr.FindSpell("Smoke");
    smoke.m_Tracks.RemoveTrack(smoke.m_Tracks.GetTrack(1));
    smoke.m_Tracks.GetTrack(1)->GetKey(0)->m_nEndTime = 77;
    PropOf(*pTheirs->m_SpellMgr.FindPrefab("PUFF"), "Count")->GetKey(0)->m_Data.SetInt(3);
    pTheirs->m_SpellMgr.FindSpell("Fire")->SetName("FIRE");
    const CLibraryChange change = Compare(*pBase, *Align(*pBase, *ImageOf(*pTheirs)));
    EXPECT_EQ("effect \"Fire\", name: \"Fire\" -> \"FIRE\"\n"
              "Smoke: key 2, end: 1000 ms -> 77 ms\n",
              [&]
              {
                  std::string sWords = Words(change);
                  const std::string sCount = "prefab \"Puff\", Count: 10 -> 3\n";
                  EXPECT_EQ(0u, sWords.find(sCount)) << sWords;
                  sWords.erase(0, sCount.size());
                  const std::string sTrack = "Smoke: track 1 is gone\n";
                  const size_t nTrack = sWords.find(sTrack);
                  EXPECT_NE(std::string::npos, nTrack) << sWords;
                  sWords.erase(std::min(nTrack, sWords.size()), sTrack.size());
                  // In the order of the effects.
                  const size_t nFire = sWords.find("effect");
                  return sWords.substr(nFire) + sWords.substr(0, nFire);
              }());
}

TEST(Compare, AnEffectAndAPrefabMayHaveOneNumber)
{
    auto pMine = Two();
    auto pTheirs = Two();
    const auto pBase = ImageOf(*pMine);
    CLibraryImage other = *ImageOf(*pTheirs);
    auto pSmoke = std::make_shared<CSpellImage>(*other.m_Spells[0]);
    const uint64_t nOld = std::exchange(pSmoke->m_nSerial, other.m_Prefabs[0]->m_nSerial);
    other.m_Spells[0] = pSmoke;
    for (auto& pGroup : other.m_Trees[0])
    {
        auto pCopy = std::make_shared<CGroupImage>(*pGroup);
        for (CItemImage& item : pCopy->m_Children)
            item.m_nObject = item.m_nObject == nOld ? pSmoke->m_nSerial : item.m_nObject;
        pGroup = pCopy;
    }
    EXPECT_EQ("", Words(Compare(*pBase, *Align(*pBase, other))));
}

TEST(Compare, WhatIsNotAsItShouldBeStaysAsItIs)
{
    CRecordedLibrary recorded;
    CTestLibrary& library = *recorded.m_pLibrary;
    CLastEdit last(recorded.m_Hub);
    CSpell& smoke = *library.m_SpellMgr.FindSpell("Smoke");
    CKey& key = *KeyOf(library.m_SpellMgr, "Smoke");
    {
        CEditScope scope(recorded.m_Hub, "Two things");
        scope.TouchHead(smoke);
        smoke.m_Tracks.m_nPhaseLength = 1;
        scope.TouchKey(smoke, key);
        key.m_nEndTime = 50;
    }
    ASSERT_TRUE(last.m_Edit.m_pChange);
    const CLibraryChange change = *last.m_Edit.m_pChange;
    ASSERT_EQ(2u, change.m_Differences.size());
    key.m_nEndTime = 51;
    const std::string sBefore = SavedBytes(library);
    const auto conflict = Apply(change.TurnedRound(), recorded.m_Target, "Undo");
    ASSERT_TRUE(conflict);
    EXPECT_EQ("Smoke: key 0, end: 50 ms -> 1000 ms: something else is there", conflict->m_sWhy);
    EXPECT_EQ(sBefore, SavedBytes(library));
    ASSERT_TRUE(last.m_Edit.m_pChange);
    EXPECT_TRUE(last.m_Edit.m_pChange->IsEmpty());
    key.m_nEndTime = 50;
    EXPECT_FALSE(Apply(change.TurnedRound(), recorded.m_Target, "Undo"));
    EXPECT_EQ(1000, key.m_nEndTime);

    // Steps join where only fields change, and what comes back to where it was is none.
    EXPECT_TRUE(change.Joined(change.TurnedRound()).IsEmpty());
    EXPECT_EQ(2u, change.Joined(change.TurnedRound()).Joined(change).m_Differences.size());
}

TEST(EditScope, CanBeAbandonedAndTellsItsSteps)
{
    CRecordedLibrary recorded;
    CTestLibrary& library = *recorded.m_pLibrary;
    CLastEdit last(recorded.m_Hub);
    const std::string sBefore = SavedBytes(library);
    CSpell& smoke = *library.m_SpellMgr.FindSpell("Smoke");
    CKey* pKey = KeyOf(library.m_SpellMgr, "Smoke", 0, 1);
    {
        CEditScope scope(recorded.m_Hub, "Carry");
        scope.Step();
        EXPECT_EQ(0u, last.m_nSteps) << "nothing was touched";
        scope.TouchKey(smoke, *pKey);
        pKey->m_nEndTime += 9;
        scope.Step();
        EXPECT_EQ(1u, last.m_nSteps);
        scope.TouchTrack(smoke, *smoke.m_Tracks.GetTrack(0));
        scope.TouchTrack(smoke, *smoke.m_Tracks.GetTrack(1));
        smoke.m_Tracks.GetTrack(1)->AppendKey(smoke.m_Tracks.GetTrack(0)->RemoveKey(pKey))->m_nTrack = 1;
        scope.TouchSpellList();
        library.m_SpellMgr.AddSpell();
        EXPECT_TRUE(scope.Abandon());
        EXPECT_EQ(sBefore, SavedBytes(library));
    }
    EXPECT_TRUE(last.m_Edit.m_pChange && last.m_Edit.m_pChange->IsEmpty());
    EXPECT_EQ(pKey, KeyOf(library.m_SpellMgr, "Smoke", 0, 1)) << "the object itself has come back";
    EXPECT_EQ(2u, library.m_SpellMgr.Spells().size());

    CEditHub hub; // nobody records
    CEditScope scope(hub, "Nothing");
    EXPECT_TRUE(scope.Abandon());
    scope.Touch(&smoke);
    EXPECT_FALSE(scope.Abandon());
}
