#include <algorithm>

#include "changes/LibraryImage.h"
#include "formats/LibraryLines.h"
#include "formats/ResourceCollector.h"
#include "model/EffectProperty.h"
#include "model/MakeOrNull.h"

namespace
{

// The text of a picture. It goes through the same lines as the saver.
class CImageWriter
{
public:
    explicit CImageWriter(const CLibraryImage& image) : m_Image(image)
    {
        for (const auto& pPrefab : image.m_Prefabs)
            m_Prefabs.emplace(pPrefab->m_nSerial, pPrefab.get());
        for (const auto& pSpell : image.m_Spells)
            m_Spells.emplace(pSpell->m_nSerial, pSpell.get());
    }

    uint32_t GroupDepth() const
    {
        uint32_t nMax = 0;
        for (const ETreeSide eSide : c_TreeSides)
            Walk(
                eSide, [&](const CItemImage&, uint32_t nDepth) { nMax = std::max(nMax, nDepth); },
                [](uint32_t) {}, [](const CItemImage&, uint32_t) {});
        return nMax;
    }

    void WriteTrees(CLineWriter& out) const
    {
        CLibraryLines lines(out);
        lines.Header();
        for (const ETreeSide eSide : {ETreeSide::ePrefabs, ETreeSide::eEffects})
        {
            lines.OpenTree(eSide == ETreeSide::ePrefabs);
            Walk(
                eSide,
                [&](const CItemImage& item, uint32_t nDepth) { lines.OpenGroup(nDepth, item.m_sText); },
                [&](uint32_t nDepth) { lines.Close(nDepth); },
                [&](const CItemImage& item, uint32_t nDepth)
                {
                    if (eSide == ETreeSide::ePrefabs)
                        WritePrefab(lines, Prefab(item.m_nObject), nDepth);
                    else
                        WriteSpell(lines, Spell(item.m_nObject), nDepth);
                });
            lines.CloseTree();
        }
    }

    // The effects at and below the first root.
    void CollectResources(CAssetLibrarySource& source) const
    {
        Walk(
            ETreeSide::eEffects, [](const CItemImage&, uint32_t) {}, [](uint32_t) {},
            [&](const CItemImage& item, uint32_t)
            {
                if (const CSpellImage* pSpell = Spell(item.m_nObject))
                    CollectFrom(*pSpell, source);
            });
    }

private:
    const CSetImage* Prefab(uint64_t nSerial) const
    {
        const auto found = m_Prefabs.find(nSerial);
        return found != m_Prefabs.end() ? found->second : nullptr;
    }
    const CSpellImage* Spell(uint64_t nSerial) const
    {
        const auto found = m_Spells.find(nSerial);
        return found != m_Spells.end() ? found->second : nullptr;
    }

    // In display order below the first root, without recursion.
    template <class TOpen, class TClose, class TLeaf>
    void Walk(ETreeSide eSide, const TOpen& open, const TClose& close, const TLeaf& leaf) const
    {
        struct CLevel
        {
            const CGroupImage* m_pGroup;
            size_t m_nNext;
            size_t m_nEnd;
        };
        const CTreeImage& tree = m_Image.Tree(eSide);
        std::vector<CLevel> levels;
        const CGroupImage* pRoots = FindGroup(tree, 0);
        levels.push_back({pRoots, 0, pRoots && !pRoots->m_Children.empty() ? size_t(1) : 0});
        while (true)
        {
            const auto nDepth = static_cast<uint32_t>(1 + (levels.size() - 1) * CLibraryLines::c_nInner);
            CLevel& level = levels.back();
            if (level.m_nNext == level.m_nEnd)
            {
                levels.pop_back();
                if (levels.empty())
                    return;
                close(nDepth - CLibraryLines::c_nInner);
                continue;
            }
            const CItemImage& item = level.m_pGroup->m_Children[level.m_nNext++];
            if (item.m_nImage == eImage_Leaf && item.m_nObject)
                leaf(item, nDepth);
            if (item.m_nImage != eImage_Group)
                continue;
            open(item, nDepth);
            const CGroupImage* pGroup = FindGroup(tree, item.m_nItem);
            levels.push_back({pGroup, 0, pGroup ? pGroup->m_Children.size() : 0});
        }
    }

    void WriteSlot(CLibraryLines& lines, const CSetImage& set, const CSetImage::CSlot& slot,
                   uint32_t nDepth) const
    {
        const CTypeImage::CProp& prop = set.m_pType->m_Props[slot.m_nSlot];
        if (prop.m_eType == ePropType_None || prop.m_eType == ePropType_UI)
            return;
        lines.OpenProperty(nDepth, prop.m_sName, prop.m_eType);
        for (uint32_t i = 0; i < slot.m_nCount; ++i)
        {
            const CPointImage& point = set.m_Points[slot.m_nFirst + i];
            lines.Value(nDepth + CLibraryLines::c_nInner, prop.m_eType, point.m_fTime, point.m_Data);
        }
        lines.Close(nDepth);
    }

    // Calls with each value in force: the set's own or the nearest one above.
    template <class TCall>
    void ForEachInForce(const CSetImage& set, const TCall& call) const
    {
        for (uint32_t i = 0; set.m_pType && i < set.m_pType->m_Props.size(); ++i)
        {
            for (const CSetImage* p = &set; p; p = Prefab(p->m_nParent))
            {
                const CSetImage::CSlot* pSlot = p->FindSlot(i);
                if (!pSlot)
                    continue;
                call(*p, *pSlot);
                break;
            }
        }
    }

    void WritePrefab(CLibraryLines& lines, const CSetImage* pPrefab, uint32_t nDepth) const
    {
        if (!pPrefab || !pPrefab->m_pType)
            return;
        lines.OpenPrefab(nDepth, pPrefab->m_sName, pPrefab->m_pType->m_sName);
        ForEachInForce(*pPrefab, [&](const CSetImage& set, const CSetImage::CSlot& slot)
                       { WriteSlot(lines, set, slot, nDepth + CLibraryLines::c_nInner); });
        lines.Close(nDepth);
    }

    void WriteSpell(CLibraryLines& lines, const CSpellImage* pSpell, uint32_t nDepth) const
    {
        if (!pSpell)
            return;
        lines.OpenEffect(nDepth, pSpell->m_sName, pSpell->m_nPhaseLength);
        for (uint32_t nTrack = 0; nTrack < pSpell->m_Tracks.size(); ++nTrack)
        {
            for (const auto& pKey : pSpell->m_Tracks[nTrack]->m_Keys)
                WriteKey(lines, *pKey, nTrack, nDepth + CLibraryLines::c_nInner);
        }
        lines.Close(nDepth);
    }

    void WriteKey(CLibraryLines& lines, const CKeyImage& key, uint32_t nTrack, uint32_t nDepth) const
    {
        if (!key.m_pType)
            return;
        const CSetImage* pParent = Prefab(key.m_nParent);
        CKeyLines fields;
        fields.m_sName = key.m_sName;
        fields.m_sType = key.m_pType->m_sName;
        fields.m_nKeyID = key.m_nKeyID;
        fields.m_nStartTime = key.m_nStartTime;
        fields.m_nEndTime = key.m_nEndTime;
        fields.m_nTrack = nTrack;
        fields.m_pParent = pParent ? &pParent->m_sName : nullptr;
        fields.m_bMotionLinked = key.m_bMotionLinked;
        fields.m_nMotionLinkID = key.m_nMotionLinkID;
        lines.OpenKey(nDepth, fields);
        for (const CSetImage::CSlot& slot : key.m_Slots)
            WriteSlot(lines, key, slot, nDepth + CLibraryLines::c_nInner);
        lines.Close(nDepth);
    }

    void CollectFrom(const CSpellImage& spell, CAssetLibrarySource& source) const
    {
        AddEffectResource(source, spell.m_sName.c_str());
        const auto collect = [&](const CSetImage& set, const CSetImage::CSlot& slot)
        {
            const uint32_t eType = set.m_pType->m_Props[slot.m_nSlot].m_eType;
            for (uint32_t i = 0; IsReferenceKind(eType) && i < slot.m_nCount; ++i)
                AddValueReferences(source, spell.m_sName, eType,
                                   set.m_Points[slot.m_nFirst + i].m_Data.GetText());
        };
        for (const auto& pTrack : spell.m_Tracks)
        {
            for (const auto& pKey : pTrack->m_Keys)
                ForEachInForce(*pKey, collect);
        }
    }

    const CLibraryImage& m_Image;
    std::unordered_map<uint64_t, const CSetImage*> m_Prefabs;
    std::unordered_map<uint64_t, const CSpellImage*> m_Spells;
};

} // namespace

bool SaveLibraryImage(const char* pszFilename, const CLibraryImage& image)
{
    bool bSaved = false;
    const auto save = [&]
    {
        const CImageWriter writer(image);
        bSaved = WriteLibraryFile(
            pszFilename, writer.GroupDepth(),
            [&](CQSAFile& file) {
                WriteResourceDatabase([&](CAssetLibrarySource& source) { writer.CollectResources(source); },
                                      file);
            },
            [&](CLineWriter& out) { writer.WriteTrees(out); });
    };
    return pszFilename && AllocateAll(save) && bSaved;
}
