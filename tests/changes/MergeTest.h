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

// One side's library, and what is done to it.
struct CSide
{
    CTestLibrary& m_Library;

    CSpell& Spell(const char* pszName) const { return *m_Library.m_SpellMgr.FindSpell(pszName); }
    CKey& Key(const char* pszEffect, uint32_t nID) const { return *Spell(pszEffect).m_Tracks.FindKey(nID); }
    HLibraryItem Item(const char* pszText) const
    {
        HLibraryItem h = m_Library.m_EffectTree.GetRootItem();
        while (h && m_Library.m_EffectTree.GetItemText(h) != pszText)
            h = m_Library.m_EffectTree.GetNextItem(h);
        return h;
    }
    void Value(const char* pszEffect, uint32_t nID, const char* pszProp, int nValue) const
    {
        CKey& key = Key(pszEffect, nID);
        key.MakeLocal(SlotOf(key, pszProp));
        OwnPropOf(key, pszProp)->GetKey(0)->m_Data.SetInt(nValue);
    }
    CKey& Add(const char* pszEffect, uint32_t nTrack, int nStart, int nEnd, const char* pszName = "") const
    {
        CSpell& spell = Spell(pszEffect);
        while (spell.m_Tracks.GetNumTracks() <= nTrack)
            spell.m_Tracks.AddTrack();
        auto pKey = std::make_unique<CKey>(m_Library.Module().FindType("Sprite"));
        pKey->m_nKeyID = spell.m_Tracks.TakeKeyID();
        pKey->m_nTrack = nTrack;
        pKey->m_nStartTime = nStart;
        pKey->m_nEndTime = nEnd;
        pKey->m_sName = pszName;
        EnsureComplete(pKey.get());
        CKey* pPlaced = spell.m_Tracks.GetTrack(nTrack)->AppendKey(std::move(pKey));
        spell.m_Tracks.GetTrack(nTrack)->PlaceKey(pPlaced);
        return *pPlaced;
    }
    void Remove(const char* pszEffect, uint32_t nID) const
    {
        CSpell& spell = Spell(pszEffect);
        CKey& key = Key(pszEffect, nID);
        for (CKey& other : spell.m_Tracks.AllKeys())
        {
            if (other.m_bMotionLinked && other.m_nMotionLinkID == nID)
                other.Unlink();
        }
        spell.m_Tracks.GetTrack(key.m_nTrack)->RemoveKey(&key);
    }
    void RemoveSpell(const char* pszName) const
    {
        m_Library.m_EffectTree.DeleteItem(Item(pszName));
        m_Library.m_SpellMgr.DeleteSpell(&Spell(pszName));
    }
    void AddSpell(const char* pszName, const char* pszGroup, int nLength = 10000) const
    {
        CSpell* pSpell = m_Library.m_SpellMgr.AddSpell();
        pSpell->SetName(pszName);
        pSpell->m_Tracks.m_nPhaseLength = nLength;
        m_Library.m_EffectTree.InsertLeaf(pszName, Item(pszGroup), pSpell);
    }
    void RemovePrefab(const char* pszName) const
    {
        CEffectPropertySet* pPrefab = m_Library.m_SpellMgr.FindPrefab(pszName);
        m_Library.m_SpellMgr.ForEachKey([&](CSpell&, CKey& key) { key.DetachFromParent(pPrefab); });
        m_Library.m_PrefabTree.DeleteItem(m_Library.m_PrefabTree.FindData(pPrefab));
        m_Library.m_SpellMgr.DeletePrefab(pPrefab);
    }
    void Move(const char* pszEffect, const char* pszGroup) const
    {
        m_Library.m_EffectTree.DeleteItem(Item(pszEffect));
        m_Library.m_EffectTree.InsertLeaf(pszEffect, Item(pszGroup), &Spell(pszEffect));
    }
};
