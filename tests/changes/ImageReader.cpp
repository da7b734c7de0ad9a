#include "changes/ImageReader.h"

#include "changes/ChangeListing.h"
#include "changes/RandomEdits.h"
#include "changes/Renames.h"

namespace
{
std::string Listed(const CLibraryImage& base, const CLibraryImage& other)
{
    std::string sText;
    for (const CToldChange& told : ListChange(Compare(base, *AlignRenamed(base, other))))
        sText += told.m_sWhere + ": " + told.m_sWhat + "\n";
    return sText;
}

std::unique_ptr<CTestLibrary> Named()
{
    return aLibrary()
        .prefab("Sprite", "Puff")
        .value("Count", 7)
        .group("Old")
        .effect("Smoke")
        .key("Sprite")
        .onPrefab("Puff")
        .key("Light")
        .name("B")
        .key("Sprite")
        .name("C")
        .key("Light")
        .name("D")
        .end()
        .effect("Fire")
        .key("Sprite")
        .build();
}
} // namespace

TEST(ImageReader, GivesBackWhatTheWriterWrote)
{
    const CTempDir dir;
    const auto expectSame = [&](const std::string& sBytes, const char* pszName)
    {
        std::vector<std::shared_ptr<const CLibraryImage>> images;
        std::string sError;
        const bool bCompressed = std::string(pszName).back() == 'c';
        ASSERT_TRUE(ReadLibraryImages({{"file", sBytes, bCompressed}}, images, sError)) << sError;
        ASSERT_TRUE(SaveLibraryImage(dir.path(pszName).c_str(), *images[0]));
        ASSERT_EQ(sBytes, ReadBytes(dir.path(pszName)));
    };
    for (const char* pszSample : {"bonfire.Fx00a", "inferno.Fx00c"})
        expectSame(ReadBytes(std::string(EMBERDECK_SOURCE_DIR "/samples/bonfire/project/") + pszSample),
                   pszSample);
    for (uint32_t nRound = 0; nRound < 30; ++nRound)
    {
        CEditor editor(*RandomBase(nRound), nRound, 1000);
        for (int i = 0; i < 10; ++i)
            editor.Edit();
        expectSame(ImageBytes(editor.Image()), "x.Fx00a");
    }
}

TEST(Renames, AreFoundByContent)
{
    const auto pBase = Named();
    const auto pImage = ImageOf(*pBase);
    const std::string sFile = SavedBytes(*pBase);
    const auto listed = [&](const std::function<void(const CSide&)>& edit)
    {
        CLoaded loaded = LoadText(sFile);
        edit(CSide{*loaded.m_pLibrary});
        return Listed(*pImage, *ImageOf(*LoadText(SavedBytes(*loaded.m_pLibrary)).m_pLibrary));
    };
    EXPECT_EQ("", listed([](const CSide&) {}));
    EXPECT_EQ(
        "effect \"Smoke\": name: \"Smoke\" -> \"Smog\"\neffect \"Smoke\": key 1, end: 2000 ms -> 1999 ms\n",
        listed(
            [](const CSide& s)
            {
                s.Key("Smoke", 1).m_nEndTime = 1999;
                s.Spell("Smoke").SetName("Smog");
            }))
        << "half of it is as it was";
    EXPECT_EQ("effect \"Smog\": is new\neffect \"Smoke\": is gone\n",
              listed(
                  [](const CSide& s)
                  {
                      for (uint32_t nID = 0; nID < 3; ++nID)
                          s.Key("Smoke", nID).m_nEndTime -= 1;
                      s.Spell("Smoke").SetName("Smog");
                  }));
    EXPECT_EQ("prefab \"Puff\": name: \"Puff\" -> \"Cloud\"\n",
              listed([](const CSide& s) { s.m_Library.m_SpellMgr.FindPrefab("Puff")->m_sName = "Cloud"; }));
    EXPECT_EQ("prefab \"Puff\": is new\nprefab \"Puff\": is gone\n",
              Listed(*ImageOf(*aLibrary().prefab("Sprite", "Puff").build()),
                     *ImageOf(*aLibrary().prefab("Light", "Puff").build())))
        << "of another type it is another one";
    EXPECT_EQ("effects: group \"Old\", name: \"Old\" -> \"Smoky\"\n",
              listed([](const CSide& s) { s.m_Library.m_EffectTree.SetItemText(s.Item("Old"), "Smoky"); }));
    EXPECT_EQ("effects: group \"Empty\" is new\neffect \"Fire\": group: \"[Effects]\" -> \"Old\"\n",
              listed(
                  [](const CSide& s)
                  {
                      s.m_Library.m_EffectTree.InsertGroup("Empty", s.Item("[Effects]"));
                      s.Move("Fire", "Old");
                  }));
}
