#include "batch/LibraryListing.h"

#include <unordered_map>

#include "changes/ChangeWords.h"

namespace
{
class CListing
{
public:
    explicit CListing(const CLibraryImage& image) : m_Image(image)
    {
        for (const auto& pPrefab : image.m_Prefabs)
            m_Prefabs.emplace(pPrefab->m_nSerial, pPrefab.get());
        for (const auto& pSpell : image.m_Spells)
            m_Spells.emplace(pSpell->m_nSerial, pSpell.get());
    }

    std::string Run()
    {
        for (const ETreeSide eSide : {ETreeSide::ePrefabs, ETreeSide::eEffects})
            ListGroup(eSide, 0, std::string());
        return m_sText;
    }

private:
    void Line(size_t nDepth, const std::string& sText)
    {
        m_sText += std::string(nDepth * 2, ' ') + sText + "\n";
    }

    // As deep as groups nest in a file, some five hundred.
    void ListGroup(ETreeSide eSide, uint32_t nGroup, const std::string& sPath)
    {
        const CGroupImage* pGroup = FindGroup(m_Image.Tree(eSide), nGroup);
        for (size_t i = 0; pGroup && i < pGroup->m_Children.size(); ++i)
        {
            const CItemImage& item = pGroup->m_Children[i];
            const auto prefab = m_Prefabs.find(item.m_nObject);
            const auto spell = m_Spells.find(item.m_nObject);
            if (!item.m_nObject)
            {
                Line(0, "group \"" + sPath + item.m_sText + "\"");
                ListGroup(eSide, item.m_nItem, sPath + item.m_sText + "/");
            }
            else if (eSide == ETreeSide::ePrefabs && prefab != m_Prefabs.end())
            {
                Line(0, "prefab \"" + prefab->second->m_sName + "\": " + TypeOf(*prefab->second));
                ListSet(*prefab->second, 1);
            }
            else if (eSide == ETreeSide::eEffects && spell != m_Spells.end())
                ListSpell(*spell->second);
        }
    }
    void ListSpell(const CSpellImage& spell)
    {
        Line(0, "effect \"" + spell.m_sName + "\"");
        Line(1, "length " + std::to_string(spell.m_nPhaseLength) + " ms");
        for (size_t nTrack = 0; nTrack < spell.m_Tracks.size(); ++nTrack)
        {
            for (const auto& pKey : spell.m_Tracks[nTrack]->m_Keys)
                ListKey(*pKey, nTrack);
        }
    }
    void ListKey(const CKeyImage& key, size_t nTrack)
    {
        Line(1, "key " + std::to_string(key.m_nKeyID) + ": " + TypeOf(key));
        if (!key.m_sName.empty())
            Line(2, "name \"" + key.m_sName + "\"");
        Line(2, "track " + std::to_string(nTrack));
        Line(2, "start " + std::to_string(key.m_nStartTime) + " ms");
        Line(2, "end " + std::to_string(key.m_nEndTime) + " ms");
        if (const auto parent = m_Prefabs.find(key.m_nParent); parent != m_Prefabs.end())
            Line(2, "prefab \"" + parent->second->m_sName + "\"");
        if (key.m_bMotionLinked)
            Line(2, "motion link to " + std::to_string(key.m_nMotionLinkID));
        ListSet(key, 2);
    }
    void ListSet(const CSetImage& set, size_t nDepth)
    {
        CDifference value;
        value.m_eKind = EDifference::eSetValue;
        for (const CSetImage::CSlot& slot : set.m_Slots)
        {
            const CTypeImage::CProp& prop = set.m_pType->m_Props[slot.m_nSlot];
            value.m_eType = prop.m_eType;
            const auto first = set.m_Points.begin() + slot.m_nFirst;
            Line(nDepth,
                 prop.m_sName + ": " +
                     TellValue(value,
                               CChangePoints{0, std::vector<CPointImage>(first, first + slot.m_nCount)}));
        }
    }
    static std::string TypeOf(const CSetImage& set)
    {
        return set.m_pType ? set.m_pType->m_sName : std::string("no type");
    }

    const CLibraryImage& m_Image;
    std::string m_sText;
    std::unordered_map<uint64_t, const CSetImage*> m_Prefabs;
    std::unordered_map<uint64_t, const CSpellImage*> m_Spells;
};
} // namespace

std::string ListLibrary(const CLibraryImage& image)
{
    return CListing(image).Run();
}
