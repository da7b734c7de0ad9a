// What a library provides and needs.

#include "FormatsTest.h"
#include "formats/ResourceCollector.h"
#include "shared/engine/AssetLibrarySource.h"

TEST(ResourceList, ValuesInForceCount)
{
    const auto pLibrary = aLibrary()
                              .prefab("Sprite", "P")
                              .value("Texture", "p.dds")
                              .effect("Zed")
                              .key("Sprite")
                              .onPrefab("P")
                              .value("Child", " Smoke ;;zed;\t; smoke")
                              .key("Sprite")
                              .onPrefab("P")
                              .value("Texture", "P.DDS")
                              .value("Clip", "")
                              .group("Sub")
                              .effect("")
                              .key("Sprite")
                              .value("Texture", "")
                              .effect("Alpha")
                              .build();
    CAssetLibrarySource source;
    ASSERT_TRUE(CollectResources(pLibrary->m_EffectTree, pLibrary->m_EffectTree.GetRootItem(), source));
    std::string sAll;
    for (const auto& pResource : source.Resources())
        sAll += pResource->m_sName + ":" + pResource->m_sType + "\n";
    for (const auto& pDep : source.Dependencies())
        sAll += pDep->m_sSource + " " + pDep->m_sResource + ":" + pDep->m_sResourceType + " " +
                std::to_string(pDep->m_nCount) + "\n";
    EXPECT_EQ("Zed:FX\nAlpha:FX\n"
              "Zed p.dds: 2\nZed idle:Animation 1\nZed Smoke:FX 2\nZed zed:FX 1\n"
              " idle:Animation 1\n",
              sAll);
}
