#pragma once

#include "changes/Compare.h"
#include "changes/Merge.h"
#include "formats/FormatsTest.h"

inline std::shared_ptr<const CLibraryImage> ImageOf(CTestLibrary& library)
{
    CImageMaker maker;
    return CLibraryImage::Make({library.m_SpellMgr, library.m_EffectTree, library.m_PrefabTree}, maker);
}

inline std::string ImageBytes(const CLibraryImage& image)
{
    const CTempDir dir;
    EXPECT_TRUE(SaveLibraryImage(dir.path("x.Fx00a").c_str(), image));
    return ReadBytes(dir.path("x.Fx00a"));
}

// What a picture's file would load as: the loader finds nothing in it, and it is saved as it was.
inline void ExpectSound(const CLibraryImage& image)
{
    const std::string sBytes = ImageBytes(image);
    const CLoaded loaded = LoadText(sBytes);
    ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
    EXPECT_EQ("", loaded.Findings());
    EXPECT_EQ(sBytes, SavedBytes(*loaded.m_pLibrary));
    EXPECT_EQ(image.m_Spells.size(), loaded.Mgr().Spells().size()) << "an effect without an item";
    EXPECT_EQ(image.m_Prefabs.size(), loaded.Mgr().Prefabs().size()) << "a prefab without an item";
}
