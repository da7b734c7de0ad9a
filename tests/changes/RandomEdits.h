#pragma once

#include <algorithm>
#include <random>

#include "changes/MergeTest.h"

// A picture that can be changed, as an editor would.
class CEditor
{
public:
    CEditor(const CLibraryImage& image, uint32_t nSeed, uint64_t nFirst)
        : m_Image(image),
          m_Random(nSeed),
          m_nFirst(nFirst),
          m_nNext(nFirst)
    {
    }

    uint32_t Below(uint32_t n) { return m_Random() % n; }

    void Edit()
    {
        if (m_Image.m_Spells.empty())
            return;
        const size_t nSpell = Below(uint32_t(m_Image.m_Spells.size()));
        auto pSpell = std::make_shared<CSpellImage>(*m_Image.m_Spells[nSpell]);
        switch (Below(14))
        {
        case 0:
            AddSpell();
            return;
        case 1:
            if (Below(3) == 0)
                DeleteSpell(nSpell);
            return;
        case 2:
            Rename(*pSpell);
            break;
        case 3:
            pSpell->m_nPhaseLength = int32_t(Below(9000)) + 1;
            break;
        case 4:
            Move(pSpell->m_nSerial);
            return;
        case 5:
            EditPrefab();
            return;
        case 6:
            AddKey(*pSpell);
            break;
        case 7:
            DeleteKey(*pSpell);
            break;
        default:
            EditKey(*pSpell);
        }
        // A track that came with a key goes with it: empty ones are no facts.
        std::erase_if(pSpell->m_Tracks, [&](const auto& pTrack)
                      { return pTrack->m_Keys.empty() && pTrack->m_nSerial >= m_nFirst; });
        m_Image.m_Spells[nSpell] = pSpell;
    }

    const CLibraryImage& Image() const { return m_Image; }

private:
    static constexpr int32_t c_nGrid = 100;

    CTreeImage& Tree(ETreeSide eSide) { return m_Image.m_Trees[size_t(eSide)]; }
    // Of the groups the first is the list of the roots.
    CGroupImage& Group(ETreeSide eSide, size_t n)
    {
        auto pGroup = std::make_shared<CGroupImage>(*Tree(eSide)[n]);
        CGroupImage& group = *pGroup;
        Tree(eSide)[n] = std::move(pGroup);
        return group;
    }
    void AddItem(ETreeSide eSide, const std::string& sText, uint64_t nObject)
    {
        const size_t nGroup = 1 + Below(uint32_t(Tree(eSide).size() - 1));
        Group(eSide, nGroup).m_Children.push_back({uint32_t(m_nNext++), sText, 2, 2, nObject});
    }
    void DeleteItem(ETreeSide eSide, uint64_t nObject)
    {
        for (size_t i = 0; i < Tree(eSide).size(); ++i)
            std::erase_if(Group(eSide, i).m_Children,
                          [&](const CItemImage& item) { return item.m_nObject == nObject; });
    }
    void SetItemText(ETreeSide eSide, uint64_t nObject, const std::string& sText)
    {
        for (size_t i = 0; i < Tree(eSide).size(); ++i)
        {
            for (CItemImage& item : Group(eSide, i).m_Children)
                item.m_sText = item.m_nObject == nObject ? sText : item.m_sText;
        }
    }
    std::string FreeName(const char* pszWhat)
    {
        std::string sName;
        bool bTaken = true;
        for (int i = 0; bTaken && i < 100; ++i)
        {
            sName = pszWhat + std::to_string(Below(12));
            bTaken = false;
            for (const auto& pSpell : m_Image.m_Spells)
                bTaken = bTaken || pSpell->m_sName == sName;
            for (const auto& pPrefab : m_Image.m_Prefabs)
                bTaken = bTaken || pPrefab->m_sName == sName;
        }
        return bTaken ? pszWhat + std::to_string(m_nNext) : sName;
    }

    void AddSpell()
    {
        auto pSpell = std::make_shared<CSpellImage>();
        pSpell->m_nSerial = m_nNext++;
        pSpell->m_sName = FreeName("Effect");
        pSpell->m_nPhaseLength = int32_t(m_nNext);
        AddItem(ETreeSide::eEffects, pSpell->m_sName, pSpell->m_nSerial);
        m_Image.m_Spells.push_back(std::move(pSpell));
    }
    void DeleteSpell(size_t n)
    {
        DeleteItem(ETreeSide::eEffects, m_Image.m_Spells[n]->m_nSerial);
        m_Image.m_Spells.erase(m_Image.m_Spells.begin() + std::ptrdiff_t(n));
    }
    void Rename(CSpellImage& spell)
    {
        spell.m_sName = FreeName("Effect");
        SetItemText(ETreeSide::eEffects, spell.m_nSerial, spell.m_sName);
    }
    void Move(uint64_t nObject)
    {
        std::string sText;
        for (const auto& pSpell : m_Image.m_Spells)
            sText = pSpell->m_nSerial == nObject ? pSpell->m_sName : sText;
        DeleteItem(ETreeSide::eEffects, nObject);
        AddItem(ETreeSide::eEffects, sText, nObject);
    }
    void EditPrefab()
    {
        if (m_Image.m_Prefabs.empty())
            return;
        const size_t n = Below(uint32_t(m_Image.m_Prefabs.size()));
        auto pPrefab = std::make_shared<CSetImage>(*m_Image.m_Prefabs[n]);
        if (Below(4) == 0)
        {
            DeleteItem(ETreeSide::ePrefabs, pPrefab->m_nSerial);
            m_Image.m_Prefabs.erase(m_Image.m_Prefabs.begin() + std::ptrdiff_t(n));
            for (auto& pSpell : m_Image.m_Spells)
                ForEachKey(pSpell, [&](CKeyImage& key) { Detach(key, *pPrefab); });
            return;
        }
        if (Below(3) == 0)
        {
            pPrefab->m_sName = FreeName("Prefab");
            SetItemText(ETreeSide::ePrefabs, pPrefab->m_nSerial, pPrefab->m_sName);
        }
        else
            SetValue(*pPrefab);
        m_Image.m_Prefabs[n] = pPrefab;
    }
    template <class TCall>
    static void ForEachKey(std::shared_ptr<const CSpellImage>& pSpell, const TCall& call)
    {
        auto pCopy = std::make_shared<CSpellImage>(*pSpell);
        for (auto& pTrack : pCopy->m_Tracks)
        {
            auto pTrackCopy = std::make_shared<CTrackImage>(*pTrack);
            for (auto& pKey : pTrackCopy->m_Keys)
            {
                auto pKeyCopy = std::make_shared<CKeyImage>(*pKey);
                call(*pKeyCopy);
                pKey = std::move(pKeyCopy);
            }
            pTrack = std::move(pTrackCopy);
        }
        pSpell = std::move(pCopy);
    }
    static void Detach(CSetImage& key, const CSetImage& prefab)
    {
        if (key.m_nParent != prefab.m_nSerial)
            return;
        key.m_nParent = 0;
        CSetImage full = key;
        full.m_Slots.clear();
        full.m_Points.clear();
        for (uint32_t i = 0; i < key.m_pType->m_Props.size(); ++i)
        {
            const CSetImage& from = key.FindSlot(i) ? static_cast<const CSetImage&>(key) : prefab;
            const CSetImage::CSlot& slot = *from.FindSlot(i);
            full.m_Slots.push_back({i, uint32_t(full.m_Points.size()), slot.m_nCount});
            full.m_Points.insert(full.m_Points.end(), from.m_Points.begin() + slot.m_nFirst,
                                 from.m_Points.begin() + slot.m_nFirst + slot.m_nCount);
        }
        key.m_Slots = full.m_Slots;
        key.m_Points = full.m_Points;
    }
    // Of a number or a text, if the set has one of its own.
    void SetValue(CSetImage& set)
    {
        for (const CSetImage::CSlot& slot : set.m_Slots)
        {
            const std::string& sProp = set.m_pType->m_Props[slot.m_nSlot].m_sName;
            CPropData& data = set.m_Points[slot.m_nFirst].m_Data;
            if (slot.m_nCount && Below(3) == 0 && sProp == "Count")
                data.SetInt(int32_t(Below(3)) + 1);
            else if (slot.m_nCount && Below(3) == 0 && sProp == "Label")
                data.SetText("text " + std::to_string(Below(3)));
        }
    }

    static std::shared_ptr<CKeyImage> TakeKey(CSpellImage& spell, size_t nTrack, size_t nKey)
    {
        auto pTrack = std::make_shared<CTrackImage>(*spell.m_Tracks[nTrack]);
        auto pKey = std::make_shared<CKeyImage>(*pTrack->m_Keys[nKey]);
        pTrack->m_Keys.erase(pTrack->m_Keys.begin() + std::ptrdiff_t(nKey));
        spell.m_Tracks[nTrack] = std::move(pTrack);
        return pKey;
    }
    // False: there is no room.
    static bool PutKey(CSpellImage& spell, size_t nTrack, const std::shared_ptr<const CKeyImage>& pKey)
    {
        auto pTrack = std::make_shared<CTrackImage>(*spell.m_Tracks[nTrack]);
        size_t n = 0;
        while (n < pTrack->m_Keys.size() && pTrack->m_Keys[n]->m_nStartTime < pKey->m_nStartTime)
            ++n;
        if ((n > 0 && pTrack->m_Keys[n - 1]->m_nEndTime > pKey->m_nStartTime) ||
            (n < pTrack->m_Keys.size() && pTrack->m_Keys[n]->m_nStartTime < pKey->m_nEndTime))
            return false;
        pTrack->m_Keys.insert(pTrack->m_Keys.begin() + std::ptrdiff_t(n), pKey);
        spell.m_Tracks[nTrack] = std::move(pTrack);
        return true;
    }
    bool AnyKey(const CSpellImage& spell, size_t& nTrack, size_t& nKey)
    {
        if (spell.m_Tracks.empty())
            return false;
        nTrack = Below(uint32_t(spell.m_Tracks.size()));
        const auto& keys = spell.m_Tracks[nTrack]->m_Keys;
        nKey = keys.empty() ? 0 : Below(uint32_t(keys.size()));
        return !keys.empty();
    }
    void AddKey(CSpellImage& spell)
    {
        size_t nTrack = 0, nKey = 0;
        if (!AnyKey(spell, nTrack, nKey))
            return;
        auto pKey = std::make_shared<CKeyImage>(*spell.m_Tracks[nTrack]->m_Keys[nKey]);
        pKey->m_nSerial = m_nNext++;
        pKey->m_sName = "New" + std::to_string(m_nNext);
        pKey->m_bMotionLinked = false;
        pKey->m_nMotionLinkID = 0;
        for (const auto& pTrack : spell.m_Tracks)
        {
            for (const auto& pOther : pTrack->m_Keys)
                pKey->m_nKeyID = std::max(pKey->m_nKeyID, pOther->m_nKeyID + 1);
        }
        pKey->m_nStartTime = int32_t(Below(40)) * c_nGrid;
        pKey->m_nEndTime = pKey->m_nStartTime + int32_t(1 + Below(4)) * c_nGrid;
        if (Below(4) == 0)
        {
            auto pTrack = std::make_shared<CTrackImage>();
            pTrack->m_nSerial = m_nNext++;
            nTrack = Below(uint32_t(spell.m_Tracks.size() + 1));
            spell.m_Tracks.insert(spell.m_Tracks.begin() + std::ptrdiff_t(nTrack), std::move(pTrack));
        }
        PutKey(spell, nTrack, pKey);
    }
    void DeleteKey(CSpellImage& spell)
    {
        size_t nTrack = 0, nKey = 0;
        if (!AnyKey(spell, nTrack, nKey))
            return;
        const uint32_t nID = TakeKey(spell, nTrack, nKey)->m_nKeyID;
        std::shared_ptr<const CSpellImage> pSpell = std::make_shared<CSpellImage>(spell);
        ForEachKey(pSpell,
                   [&](CKeyImage& key)
                   {
                       key.m_bMotionLinked = key.m_bMotionLinked && key.m_nMotionLinkID != nID;
                       key.m_nMotionLinkID = key.m_bMotionLinked ? key.m_nMotionLinkID : 0;
                   });
        spell = *pSpell;
    }
    void EditKey(CSpellImage& spell)
    {
        size_t nTrack = 0, nKey = 0, nOtherTrack = 0, nOther = 0;
        if (!AnyKey(spell, nTrack, nKey))
            return;
        const CSpellImage before = spell;
        const auto pKey = TakeKey(spell, nTrack, nKey);
        switch (Below(7))
        {
        case 0:
            pKey->m_nStartTime = int32_t(Below(40)) * c_nGrid;
            pKey->m_nEndTime = pKey->m_nStartTime + int32_t(1 + Below(4)) * c_nGrid;
            break;
        case 1:
            pKey->m_nEndTime += c_nGrid;
            break;
        case 2:
            if (pKey->m_nEndTime - pKey->m_nStartTime > c_nGrid)
                pKey->m_nStartTime += c_nGrid;
            break;
        case 3:
            nTrack = Below(uint32_t(spell.m_Tracks.size()));
            break;
        case 4:
            if (AnyKey(spell, nOtherTrack, nOther))
            {
                pKey->m_bMotionLinked = true;
                pKey->m_nMotionLinkID = spell.m_Tracks[nOtherTrack]->m_Keys[nOther]->m_nKeyID;
            }
            break;
        case 5:
            pKey->m_sName = "Key" + std::to_string(Below(3));
            for (const auto& pPrefab : m_Image.m_Prefabs)
            {
                if (pPrefab->m_pType->m_sName != pKey->m_pType->m_sName || Below(2))
                    continue;
                pKey->m_nParent = pPrefab->m_nSerial;
                pKey->m_Slots.clear();
                pKey->m_Points.clear();
            }
            break;
        default:
            SetValue(*pKey);
        }
        if (!PutKey(spell, nTrack, pKey))
            spell = before;
    }

    CLibraryImage m_Image;
    std::mt19937 m_Random;
    const uint64_t m_nFirst; // number of what it makes
    uint64_t m_nNext;
};

inline std::shared_ptr<const CLibraryImage> RandomBase(uint32_t nSeed)
{
    std::mt19937 random(nSeed);
    auto builder = aLibrary();
    builder.prefab("Sprite", "Prefab0").prefab("Light", "Prefab1").prefab("Sprite", "Prefab2");
    for (int i = 0; i < 4; ++i)
    {
        if (i == 1 || i == 3)
            builder.group("Group" + std::to_string(i));
        builder.effect("Effect" + std::to_string(i));
        for (uint32_t nTrack = 1 + random() % 3; nTrack > 0; --nTrack)
        {
            builder.track();
            for (int nKey = 0; nKey < int(random() % 4); ++nKey)
            {
                builder.key(random() % 2 ? "Sprite" : "Light", nKey * 900, nKey * 900 + 200).name("Key");
                if (random() % 3 == 0)
                    builder.value("Color", CTestColor{int(random() % 3), 0, 0, 255});
            }
        }
    }
    return ImageOf(*builder.build());
}
