#include "changes/LibraryImage.h"

#include "changes/EditScope.h"
#include "formats/FormatsTest.h"
#include "support/RandomTexts.h"

namespace
{
CLibraryParts PartsOf(CTestLibrary& library)
{
    return {library.m_SpellMgr, library.m_EffectTree, library.m_PrefabTree};
}

std::string ImageBytes(const CLibraryImage& image, const std::string& sName = "library.Fx00a")
{
    const CTempDir dir;
    EXPECT_TRUE(SaveLibraryImage(dir.path(sName).c_str(), image));
    return ReadBytes(dir.path(sName));
}

void ExpectSameText(CTestLibrary& library)
{
    CImageMaker maker;
    ASSERT_EQ(SavedBytes(library), ImageBytes(*CLibraryImage::Make(PartsOf(library), maker)));
}
} // namespace

TEST(LibraryImage, WritesWhatTheSaverWrites)
{
    for (uint32_t nRound = 0; nRound < 100; ++nRound)
    {
        CRandomTexts texts(nRound);
        auto pModule = std::make_shared<CTestModule>([&](CTestPlugin& plugin) { texts.Table(plugin); });
        CLoaded loaded = LoadText(texts.NextText(), pModule);
        ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
        ExpectSameText(*loaded.m_pLibrary);
    }

    for (const char* pszSample : {"bonfire.Fx00a", "inferno.Fx00c"})
    {
        auto pModule = std::make_shared<CTestModule>([](CTestPlugin&) {});
        ASSERT_TRUE(pModule->m_Module.Load(EMBERDECK_BIN_DIR "/fireglass.so"));
        CTestLibrary library(pModule);
        const std::string sFile = std::string(EMBERDECK_SOURCE_DIR "/samples/bonfire/project/") + pszSample;
        std::string sError;
        ASSERT_TRUE(LoadEffectLibrary(sFile.c_str(), library.m_SpellMgr, library.Module(),
                                      &library.m_EffectTree, &library.m_PrefabTree, sError))
            << sError;
        CImageMaker maker;
        const auto pImage = CLibraryImage::Make(PartsOf(library), maker);
        EXPECT_EQ(SavedBytes(library, "x.Fx00a"), ImageBytes(*pImage, "x.Fx00a"));
        EXPECT_EQ(SavedBytes(library, "x.Fx00c"), ImageBytes(*pImage, "x.Fx00c"));
        library.m_EffectTree.DeleteAllItems();
        library.m_SpellMgr.Clear();
    }

    // Without roots, with several, with items of nobody, and as deep as a file may be.
    CTestLibrary odd;
    ExpectSameText(odd);
    CSpell* pSpell = odd.m_SpellMgr.AddSpell();
    odd.m_EffectTree.InsertLeaf("leaf", {}, pSpell);
    ExpectSameText(odd);
    HLibraryItem hGroup = odd.m_PrefabTree.InsertGroup("first", {});
    odd.m_PrefabTree.InsertLeaf("nobody", hGroup, nullptr);
    odd.m_PrefabTree.InsertGroup("second", {});
    ExpectSameText(odd);
    const CTempDir dir;
    CImageMaker maker;
    for (int nSaved = 0; nSaved < 600; ++nSaved)
    {
        hGroup = odd.m_PrefabTree.InsertGroup("deep", hGroup);
        if (nSaved < 490)
            continue;
        const bool bSaved =
            SaveEffectLibrary(dir.path("deep.Fx00a").c_str(), odd.m_EffectTree, odd.m_PrefabTree);
        ASSERT_EQ(bSaved, SaveLibraryImage(dir.path("picture.Fx00a").c_str(),
                                           *CLibraryImage::Make(PartsOf(odd), maker)))
            << nSaved;
        if (!bSaved)
            break;
        ASSERT_LT(nSaved, 599);
        ASSERT_EQ(ReadBytes(dir.path("deep.Fx00a")), ReadBytes(dir.path("picture.Fx00a")));
    }
    EXPECT_FALSE(SaveLibraryImage(nullptr, *CLibraryImage::Make(PartsOf(odd), maker)));
}

namespace
{
// Follows the edits of a library by pictures.
struct CFollower : IEditListener
{
    CFollower(CEditHub& hub, CTestLibrary& library)
        : m_Hub(hub),
          m_Library(library),
          m_pImage(CLibraryImage::Make(PartsOf(library), m_Maker))
    {
        hub.AddListener(this);
    }
    void OnEdit(const CEdit& edit) override { m_pImage = m_pImage->Next(PartsOf(m_Library), edit, m_Maker); }

    CEditHub& m_Hub;
    CTestLibrary& m_Library;
    CImageMaker m_Maker;
    std::shared_ptr<const CLibraryImage> m_pImage;
};
} // namespace

TEST(LibraryImage, TheNextOneSharesWhatWasNotTouched)
{
    auto pLibrary = aLibrary()
                        .prefab("Sprite", "Puff")
                        .prefab("Light", "Lamp")
                        .effect("Smoke")
                        .key("Sprite")
                        .key("Sprite")
                        .onPrefab("Puff")
                        .track()
                        .key("Light")
                        .effect("Fire")
                        .key("Sprite")
                        .group("Old")
                        .effect("Ash")
                        .build();
    CEditHub hub;
    CFollower follower(hub, *pLibrary);
    CSpell& smoke = *pLibrary->m_SpellMgr.FindSpell("Smoke");
    auto pBefore = follower.m_pImage;
    {
        CEditScope scope(hub, "Move");
        CKey& key = *KeyOf(pLibrary->m_SpellMgr, "Smoke", 0, 1);
        scope.TouchKey(smoke, key);
        key.m_nEndTime += 7;
    }
    auto pAfter = follower.m_pImage;
    EXPECT_EQ(SavedBytes(*pLibrary), ImageBytes(*pAfter));
    EXPECT_EQ(pBefore->m_Prefabs, pAfter->m_Prefabs);
    EXPECT_EQ(pBefore->m_Trees[0], pAfter->m_Trees[0]);
    EXPECT_EQ(pBefore->m_Spells[1], pAfter->m_Spells[1]);
    const CSpellImage& old = *pBefore->m_Spells[0];
    const CSpellImage& next = *pAfter->m_Spells[0];
    EXPECT_EQ(old.m_Tracks[1], next.m_Tracks[1]);
    EXPECT_EQ(old.m_Tracks[0]->m_Keys[0], next.m_Tracks[0]->m_Keys[0]);
    EXPECT_EQ(2000, old.m_Tracks[0]->m_Keys[1]->m_nEndTime);
    EXPECT_EQ(2007, next.m_Tracks[0]->m_Keys[1]->m_nEndTime);

    {
        CEditScope scope(hub, "Many");
        scope.TouchTracks(smoke);
        scope.TouchTrack(smoke, *smoke.m_Tracks.GetTrack(0));
        scope.TouchHead(smoke);
        smoke.SetName("Smog");
        auto pKey = smoke.m_Tracks.GetTrack(0)->RemoveKey(smoke.m_Tracks.GetTrack(0)->GetKey(0));
        smoke.m_Tracks.InsertTrackAfter(nullptr)->AppendKey(std::move(pKey))->m_nTrack = 0;
        scope.TouchPrefab(pLibrary->m_SpellMgr.Prefabs()[1].get());
        pLibrary->m_SpellMgr.Prefabs()[1]->m_sName = "Bulb";
        const HLibraryItem hRoot = pLibrary->m_EffectTree.GetRootItem();
        scope.TouchGroup(ETreeSide::eEffects, hRoot);
        scope.TouchSpellList();
        CSpell* pNew = pLibrary->m_SpellMgr.AddSpell();
        pLibrary->m_EffectTree.InsertLeaf("New", pLibrary->m_EffectTree.InsertGroup("G", hRoot), pNew);
    }
    EXPECT_EQ(SavedBytes(*pLibrary), ImageBytes(*follower.m_pImage));
    EXPECT_EQ(pAfter->m_Prefabs[0], follower.m_pImage->m_Prefabs[0]);
    EXPECT_EQ(next.m_Tracks[0]->m_Keys[0], follower.m_pImage->m_Spells[0]->m_Tracks[0]->m_Keys[0]);
    EXPECT_EQ(FindGroup(pAfter->m_Trees[0], 3), FindGroup(follower.m_pImage->m_Trees[0], 3));
}
