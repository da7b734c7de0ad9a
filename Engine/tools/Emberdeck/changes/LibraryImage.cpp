#include "changes/LibraryImage.h"

#include <algorithm>
#include <bit>
#include <unordered_set>

#include "changes/EditScope.h"
#include "model/NameIndex.h"

const CSetImage::CSlot* CSetImage::FindSlot(uint32_t nSlot) const
{
    const auto found = std::lower_bound(m_Slots.begin(), m_Slots.end(), nSlot,
                                        [](const CSlot& slot, uint32_t n) { return slot.m_nSlot < n; });
    return found != m_Slots.end() && found->m_nSlot == nSlot ? &*found : nullptr;
}

const CGroupImage* FindGroup(const CTreeImage& tree, uint32_t nItem)
{
    const auto found = std::lower_bound(tree.begin(), tree.end(), nItem,
                                        [](const auto& pGroup, uint32_t n) { return pGroup->m_nItem < n; });
    return found != tree.end() && (*found)->m_nItem == nItem ? found->get() : nullptr;
}

bool IsSamePoint(const CPointImage& left, const CPointImage& right)
{
    // To the bit: -0 isn't 0 in a packed file.
    return std::bit_cast<uint32_t>(left.m_fTime) == std::bit_cast<uint32_t>(right.m_fTime) &&
           left.m_Data == right.m_Data;
}

bool IsSameSet(const CSetImage& left, const CSetImage& right)
{
    const auto sameSlot = [](const CSetImage::CSlot& a, const CSetImage::CSlot& b)
    { return a.m_nSlot == b.m_nSlot && a.m_nCount == b.m_nCount; };
    return left.m_sName == right.m_sName && left.m_nParent == right.m_nParent &&
           std::equal(left.m_Slots.begin(), left.m_Slots.end(), right.m_Slots.begin(), right.m_Slots.end(),
                      sameSlot) &&
           std::equal(left.m_Points.begin(), left.m_Points.end(), right.m_Points.begin(),
                      right.m_Points.end(), IsSamePoint);
}

bool IsSameKey(const CKeyImage& left, const CKeyImage& right)
{
    return left.m_nKeyID == right.m_nKeyID && left.m_nStartTime == right.m_nStartTime &&
           left.m_nEndTime == right.m_nEndTime && left.m_bMotionLinked == right.m_bMotionLinked &&
           left.m_nMotionLinkID == right.m_nMotionLinkID && IsSameSet(left, right);
}

std::shared_ptr<const CTypeImage> CImageMaker::TypeOf(const CEffectTypeDesc* pTypeDesc)
{
    if (!pTypeDesc)
        return nullptr;
    std::shared_ptr<const CTypeImage>& pKnown = m_ByDesc[pTypeDesc];
    if (pKnown)
        return pKnown;
    auto pType = std::make_shared<CTypeImage>();
    pType->m_sName = TypeName(*pTypeDesc);
    pType->m_Props.reserve(pTypeDesc->m_nNumProps);
    for (uint32_t i = 0; i < pTypeDesc->m_nNumProps; ++i)
        pType->m_Props.push_back({DescName(pTypeDesc->m_pProps[i]), pTypeDesc->m_pProps[i].m_eType});
    const auto equal = std::find_if(m_Types.begin(), m_Types.end(),
                                    [&pType](const auto& pOther) { return *pOther == *pType; });
    if (equal != m_Types.end())
        return pKnown = *equal;
    m_Types.push_back(pType);
    return pKnown = pType;
}

void CImageMaker::FillSet(CSetImage& image, const CEffectPropertySet& set)
{
    image.m_nSerial = set.m_Serial.Get();
    image.m_pType = TypeOf(set.m_pTypeDesc);
    image.m_sName = set.m_sName;
    if (const CEffectPropertySet* pParent = set.GetParent())
    {
        image.m_nParent = pParent->m_Serial.Get();
        image.m_sParent = pParent->m_sName;
    }
    uint32_t nSlots = 0;
    uint32_t nPoints = 0;
    for (const std::unique_ptr<CEffectProperty>& pProp : set.m_Props)
    {
        nSlots += pProp ? 1 : 0;
        nPoints += pProp ? pProp->GetNumKeys() : 0;
    }
    image.m_Slots.reserve(nSlots);
    image.m_Points.reserve(nPoints);
    for (uint32_t i = 0; i < set.m_Props.size(); ++i)
    {
        const CEffectProperty* pProp = set.m_Props[i].get();
        if (!pProp)
            continue;
        image.m_Slots.push_back({i, static_cast<uint32_t>(image.m_Points.size()), pProp->GetNumKeys()});
        for (uint32_t k = 0; k < pProp->GetNumKeys(); ++k)
        {
            const CPropKey& key = *pProp->GetKey(k);
            image.m_Points.push_back({key.m_fTime, key.m_Data});
        }
    }
}

std::shared_ptr<const CKeyImage> CImageMaker::MakeKey(const CKey& key)
{
    auto pImage = std::make_shared<CKeyImage>();
    FillSet(*pImage, key);
    pImage->m_nKeyID = key.m_nKeyID;
    pImage->m_nStartTime = key.m_nStartTime;
    pImage->m_nEndTime = key.m_nEndTime;
    pImage->m_bMotionLinked = key.m_bMotionLinked;
    pImage->m_nMotionLinkID = key.m_nMotionLinkID;
    return pImage;
}

std::shared_ptr<const CSetImage> CImageMaker::MakePrefab(const CEffectPropertySet& prefab)
{
    auto pImage = std::make_shared<CSetImage>();
    FillSet(*pImage, prefab);
    return pImage;
}

std::shared_ptr<const CTrackImage> CImageMaker::MakeTrack(const CTrack& track)
{
    auto pImage = std::make_shared<CTrackImage>();
    pImage->m_nSerial = track.m_Serial.Get();
    pImage->m_Keys.reserve(track.GetNumKeys());
    for (const std::unique_ptr<CKey>& pKey : track.Keys())
        pImage->m_Keys.push_back(MakeKey(*pKey));
    return pImage;
}

std::shared_ptr<const CSpellImage> CImageMaker::MakeSpell(const CSpell& spell)
{
    auto pImage = std::make_shared<CSpellImage>();
    pImage->m_nSerial = spell.m_nSerial;
    pImage->m_sName = BoundedText(spell.m_szName);
    pImage->m_nPhaseLength = spell.m_Tracks.m_nPhaseLength;
    pImage->m_Tracks.reserve(spell.m_Tracks.GetNumTracks());
    for (const std::unique_ptr<CTrack>& pTrack : spell.m_Tracks.Tracks())
        pImage->m_Tracks.push_back(MakeTrack(*pTrack));
    return pImage;
}

uint64_t CLibraryParts::ObjectOf(ETreeSide eSide, HLibraryItem hItem) const
{
    if (eSide == ETreeSide::eEffects)
    {
        const CSpell* pSpell = m_EffectTree.GetItemData(hItem);
        return pSpell ? uint64_t(pSpell->m_nSerial) : 0;
    }
    const CEffectPropertySet* pPrefab = m_PrefabTree.GetItemData(hItem);
    return pPrefab ? pPrefab->m_Serial.Get() : 0;
}

CItemImage CImageMaker::MakeItem(const CLibraryParts& library, ETreeSide eSide, HLibraryItem hItem)
{
    const CLibraryTree& tree = library.Tree(eSide);
    CItemImage item{hItem.m_nID, tree.GetItemText(hItem), tree.GetItemImage(hItem),
                    tree.GetItemSelectedImage(hItem)};
    item.m_nObject = library.ObjectOf(eSide, hItem);
    return item;
}

std::shared_ptr<const CGroupImage> CImageMaker::MakeGroup(const CLibraryParts& library, ETreeSide eSide,
                                                          HLibraryItem hItem)
{
    const CLibraryTree& tree = library.Tree(eSide);
    auto pImage = std::make_shared<CGroupImage>();
    pImage->m_nItem = hItem.m_nID;
    HLibraryItem h = hItem ? tree.GetChildItem(hItem) : tree.GetRootItem();
    for (; h; h = tree.GetNextSiblingItem(h))
        pImage->m_Children.push_back(MakeItem(library, eSide, h));
    return pImage;
}

namespace
{

// The groups of a tree, each as makeGroup gives it.
template <class TMake>
CTreeImage CollectTree(const CLibraryTree& tree, const TMake& makeGroup)
{
    CTreeImage image;
    image.push_back(makeGroup(HLibraryItem()));
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
    {
        if (tree.HasChildren(h))
            image.push_back(makeGroup(h));
    }
    std::sort(image.begin(), image.end(),
              [](const auto& pLeft, const auto& pRight) { return pLeft->m_nItem < pRight->m_nItem; });
    return image;
}

// What an edit has touched, by numbers, since the objects may be gone.
struct CTouchedSet
{
    struct CSpellParts
    {
        bool m_bWhole = false;
        std::unordered_set<uint64_t> m_Parts; // tracks and keys
    };
    explicit CTouchedSet(const CEdit& edit)
    {
        for (const CTouch& touch : edit.m_Touched)
        {
            if (touch.m_eKind == ETouched::eSpell && touch.m_ePart == EPart::eWhole)
                m_Spells[touch.m_nSerial].m_bWhole = true;
            else if (touch.m_eKind == ETouched::eSpell)
                m_Spells[touch.m_nSerial].m_Parts.insert(touch.m_nPart);
            else if (touch.m_eKind == ETouched::ePrefab)
                m_Prefabs.insert(touch.m_nSerial);
            else if (touch.m_eKind == ETouched::eEffectTree || touch.m_eKind == ETouched::ePrefabTree)
                NoteTree(touch);
        }
    }
    void NoteTree(const CTouch& touch)
    {
        const size_t nSide = touch.m_eKind == ETouched::eEffectTree ? 0 : 1;
        if (touch.m_ePart == EPart::eWhole)
            m_bWholeTree[nSide] = true;
        else
            m_Groups[nSide].insert(static_cast<uint32_t>(touch.m_nPart));
    }

    std::unordered_map<uint64_t, CSpellParts> m_Spells;
    std::unordered_set<uint64_t> m_Prefabs;
    bool m_bWholeTree[c_nNumSides] = {};
    std::unordered_set<uint32_t> m_Groups[c_nNumSides];
};

template <class TNode>
using CBySerial = std::unordered_map<uint64_t, std::shared_ptr<const TNode>>;

template <class TNode>
CBySerial<TNode> IndexOf(const std::vector<std::shared_ptr<const TNode>>& nodes)
{
    CBySerial<TNode> index;
    index.reserve(nodes.size());
    for (const auto& pNode : nodes)
        index.emplace(pNode->m_nSerial, pNode);
    return index;
}

template <class TNode>
std::shared_ptr<const TNode> Find(const CBySerial<TNode>& index, uint64_t nSerial)
{
    const auto found = index.find(nSerial);
    return found != index.end() ? found->second : nullptr;
}

// An effect of which a part was touched.
std::shared_ptr<const CSpellImage> NextSpell(const CSpell& spell, const CSpellImage& previous,
                                             const std::unordered_set<uint64_t>& touched, CImageMaker& maker)
{
    const CBySerial<CTrackImage> tracks = IndexOf(previous.m_Tracks);
    CBySerial<CKeyImage> keys;
    for (const auto& pTrack : previous.m_Tracks)
    {
        for (const auto& pKey : pTrack->m_Keys)
            keys.emplace(pKey->m_nSerial, pKey);
    }
    auto pImage = std::make_shared<CSpellImage>();
    pImage->m_nSerial = spell.m_nSerial;
    pImage->m_sName = BoundedText(spell.m_szName);
    pImage->m_nPhaseLength = spell.m_Tracks.m_nPhaseLength;
    for (const std::unique_ptr<CTrack>& pTrack : spell.m_Tracks.Tracks())
    {
        auto pNext = std::make_shared<CTrackImage>();
        pNext->m_nSerial = pTrack->m_Serial.Get();
        const auto pOld = Find(tracks, pNext->m_nSerial);
        bool bSame = pOld && pOld->m_Keys.size() == pTrack->Keys().size();
        pNext->m_Keys.reserve(pTrack->Keys().size());
        for (const std::unique_ptr<CKey>& pKey : pTrack->Keys())
        {
            const uint64_t nSerial = pKey->m_Serial.Get();
            auto pKeyImage = touched.contains(nSerial) ? nullptr : Find(keys, nSerial);
            pNext->m_Keys.push_back(pKeyImage ? pKeyImage : maker.MakeKey(*pKey));
            bSame = bSame && pOld->m_Keys[pNext->m_Keys.size() - 1] == pKeyImage;
        }
        pImage->m_Tracks.push_back(bSame ? pOld : pNext);
    }
    return pImage;
}

} // namespace

CTreeImage CImageMaker::MakeTree(const CLibraryParts& library, ETreeSide eSide)
{
    return CollectTree(library.Tree(eSide),
                       [&](HLibraryItem hItem) { return MakeGroup(library, eSide, hItem); });
}

std::shared_ptr<const CLibraryImage> CLibraryImage::Make(const CLibraryParts& library, CImageMaker& maker)
{
    auto pImage = std::make_shared<CLibraryImage>();
    pImage->m_Prefabs.reserve(library.m_SpellMgr.Prefabs().size());
    for (const auto& pPrefab : library.m_SpellMgr.Prefabs())
        pImage->m_Prefabs.push_back(maker.MakePrefab(*pPrefab));
    pImage->m_Spells.reserve(library.m_SpellMgr.Spells().size());
    for (const auto& pSpell : library.m_SpellMgr.Spells())
        pImage->m_Spells.push_back(maker.MakeSpell(*pSpell));
    for (const ETreeSide eSide : c_TreeSides)
        pImage->m_Trees[static_cast<size_t>(eSide)] = CImageMaker::MakeTree(library, eSide);
    return pImage;
}

std::shared_ptr<const CLibraryImage> CLibraryImage::Next(const CLibraryParts& library, const CEdit& edit,
                                                         CImageMaker& maker) const
{
    if (edit.Touches(ETouched::eLibrary))
        return Make(library, maker);
    const CTouchedSet touched(edit);
    auto pImage = std::make_shared<CLibraryImage>();

    const CBySerial<CSetImage> prefabs = IndexOf(m_Prefabs);
    for (const auto& pPrefab : library.m_SpellMgr.Prefabs())
    {
        const uint64_t nSerial = pPrefab->m_Serial.Get();
        auto pOld = touched.m_Prefabs.contains(nSerial) ? nullptr : Find(prefabs, nSerial);
        pImage->m_Prefabs.push_back(pOld ? pOld : maker.MakePrefab(*pPrefab));
    }

    const CBySerial<CSpellImage> spells = IndexOf(m_Spells);
    for (const auto& pSpell : library.m_SpellMgr.Spells())
    {
        const auto pOld = Find(spells, pSpell->m_nSerial);
        const auto parts = touched.m_Spells.find(pSpell->m_nSerial);
        if (!pOld || (parts != touched.m_Spells.end() && parts->second.m_bWhole))
            pImage->m_Spells.push_back(maker.MakeSpell(*pSpell));
        else if (parts != touched.m_Spells.end())
            pImage->m_Spells.push_back(NextSpell(*pSpell, *pOld, parts->second.m_Parts, maker));
        else
            pImage->m_Spells.push_back(pOld);
    }

    for (const ETreeSide eSide : c_TreeSides)
    {
        const size_t nSide = static_cast<size_t>(eSide);
        const CLibraryTree& tree = library.Tree(eSide);
        if (!touched.m_bWholeTree[nSide] && touched.m_Groups[nSide].empty())
        {
            pImage->m_Trees[nSide] = m_Trees[nSide];
            continue;
        }
        const auto nextGroup = [&](HLibraryItem hItem) -> std::shared_ptr<const CGroupImage>
        {
            const auto found = std::lower_bound(m_Trees[nSide].begin(), m_Trees[nSide].end(), hItem.m_nID,
                                                [](const auto& p, uint32_t n) { return p->m_nItem < n; });
            const bool bKept = !touched.m_bWholeTree[nSide] && found != m_Trees[nSide].end() &&
                               (*found)->m_nItem == hItem.m_nID &&
                               !touched.m_Groups[nSide].contains(hItem.m_nID);
            return bKept ? *found : CImageMaker::MakeGroup(library, eSide, hItem);
        };
        pImage->m_Trees[nSide] = CollectTree(tree, nextGroup);
    }
    return pImage;
}
