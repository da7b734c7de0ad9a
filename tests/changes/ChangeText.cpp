#include "changes/ChangeText.h"

#include "changes/Compare.h"
#include "formats/FormatsTest.h"

namespace
{
std::shared_ptr<const CLibraryImage> ImageOf(CTestLibrary& library)
{
    CImageMaker maker;
    return CLibraryImage::Make({library.m_SpellMgr, library.m_EffectTree, library.m_PrefabTree}, maker);
}
} // namespace

TEST(ChangeText, IsReadBackAsItWasWritten)
{
    auto pLibrary = aLibrary()
                        .prefab("Sprite", "Puff")
                        .group("Old")
                        .effect("Smoke")
                        .key("Sprite")
                        .name("Plume")
                        .key("Sprite")
                        .onPrefab("Puff")
                        .track()
                        .key("Light")
                        .link(0)
                        .build();
    CTestLibrary& library = *pLibrary;
    const auto pBefore = ImageOf(library);
    CSpell& smoke = *library.m_SpellMgr.FindSpell("Smoke");
    CKey& plume = *smoke.m_Tracks.GetTrack(0)->GetKey(0);
    plume.m_nStartTime = 5;
    PropOf(plume, "Size")->GetKey(0)->m_Data.SetFloat(1.0f / 3.0f);
    PropOf(plume, "Texture")->GetKey(0)->m_Data.SetText("a \"b\"");
    plume.m_sName = "Fume";
    auto pMoved = smoke.m_Tracks.GetTrack(0)->RemoveKey(smoke.m_Tracks.GetTrack(0)->GetKey(1));
    smoke.m_Tracks.GetTrack(1)->AppendKey(std::move(pMoved))->m_nTrack = 1;
    smoke.m_Tracks.GetTrack(1)->GetKey(0)->Unlink();
    smoke.m_Tracks.AddTrack();
    library.m_EffectTree.SetItemText(HLibraryItem{2}, "New");
    CSpell* pFire = library.m_SpellMgr.AddSpell();
    pFire->CopyFrom(smoke);
    library.m_EffectTree.InsertLeaf("Fire", HLibraryItem{1}, pFire);
    const CLibraryChange change = Compare(*pBefore, *ImageOf(library));

    for (const CLibraryChange& one : {change, change.TurnedRound()})
    {
        const std::string sText = WriteChangeText(one);
        CLibraryChange read;
        std::string sError;
        ASSERT_TRUE(ReadChangeText(sText, read, sError)) << sError << "\n" << sText;
        EXPECT_EQ(sText, WriteChangeText(read));
        EXPECT_EQ(one.m_Differences.size(), size_t(std::count(sText.begin(), sText.end(), '\n')));
        // All that isn't exactly this is refused: a piece less, or one more.
        for (const char* pszPiece : {"( number 5 )", "\"Plume\"", "( property", "( 0 0.33333334 )", " 2 )"})
        {
            const size_t nPiece = sText.find(pszPiece);
            if (nPiece == std::string::npos)
                continue;
            std::string sSpoilt = sText;
            sSpoilt.replace(nPiece, strlen(pszPiece), std::string(pszPiece) + " more");
            EXPECT_FALSE(ReadChangeText(sSpoilt, read, sError)) << pszPiece;
            if (pszPiece[2] == '0')
                continue; // a point less is another curve
            sSpoilt = sText;
            sSpoilt.erase(nPiece, strlen(pszPiece));
            EXPECT_FALSE(ReadChangeText(sSpoilt, read, sError)) << pszPiece;
            EXPECT_TRUE(read.IsEmpty());
        }
        for (size_t nCut = 1; nCut < sText.size(); nCut += 97)
        {
            const bool bLineEnd = sText[nCut - 1] == '\n' || sText[nCut] == '\r' || sText[nCut] == '\n';
            EXPECT_EQ(bLineEnd, ReadChangeText(sText.substr(0, nCut), read, sError)) << nCut;
        }
    }
    std::string sWords;
    for (const CDifference& difference : change.m_Differences)
        sWords += Tell(difference) + "\n";
    for (const char* pszLine :
         {"Smoke: key 0, start: 0 ms -> 5 ms\n", "Smoke: key 0, name: \"Plume\" -> \"Fume\"\n",
          "Smoke: key 1, track: 0 -> 1\n", "Smoke: key 2, motion link to: 0 -> none\n",
          "Smoke: key 0, Size: 1.500000 -> 0.333333\n", "Smoke: track 2 is new\n",
          "item \"Old\", name: \"Old\" -> \"New\"\n", "effect \"Untitled FX "})
        EXPECT_NE(std::string::npos, sWords.find(pszLine)) << pszLine << "in\n" << sWords;
}

TEST(ChangeText, RefusesWhatNoChangeIs)
{
    CLibraryChange change;
    std::string sError;
    EXPECT_TRUE(ReadChangeText("", change, sError));
    EXPECT_TRUE(ReadChangeText(
        " ( name ( object \"x\" 3 ) ( before ( text \"a\" ) ) ( after ( text \"b\" ) ) )\n", change, sError));
    EXPECT_EQ(1u, change.m_Differences.size());
    for (const char* pszText :
         {"atom", "()", "( \"name\" )", "( unknown )", "( name )", "( name ( before ( text \"a\" ) ) )",
          "( key-start ( before ( number 1 ) ) ( after ( number 4000000000 ) ) )",
          "( key-id ( before ( number -1 ) ) ( after ( number 0 ) ) )",
          "( value ( property \"p\" \"Float\" 0 ) ( after ( points 0 ( 0 nan ) ) ) )",
          "( value ( property \"p\" \"Float\" 99999 ) ( after ( points 0 ( 0 1 ) ) ) )",
          "( value ( property \"p\" \"float\" 0 ) ( after ( points 0 ( 0 1 ) ) ) )",
          "( value ( property \"p\" \"Color\" 0 ) ( after ( points 0 ( 0 1 2 3 256 ) ) ) )",
          "( effect ( object \"e\" 5 ) ( after ( effect 6 \"e\" 10 ) ) )",
          "( key ( object \"1\" 5 ) ( after ( key 1 0 9 5 \"k\" \"T\" ( slot 1 \"a\" \"Int\" ( 0 1 ) ) "
          "( slot 1 \"b\" \"Int\" ( 0 1 ) ) ) ) )",
          "( item ( object \"i\" 5 ) ( before ( item 5 \"i\" 0 1 0 ) ) ( after ( item 5 \"i\" 0 1 0 ) ) )",
          "<<<<<<< mine\n"})
    {
        EXPECT_FALSE(ReadChangeText(pszText, change, sError)) << pszText;
        EXPECT_FALSE(sError.empty());
    }
}
