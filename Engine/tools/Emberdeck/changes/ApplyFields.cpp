#include "changes/Applier.h"

#include "model/MakeOrNull.h"

// Fields, values and tree items.

CApplier::TWhy CApplier::DoHead(const CDifference& d, CSpell& spell)
{
    m_Scope.TouchHead(spell);
    if (d.m_eKind == EDifference::eEffectName)
        return SetField<std::string>(d, std::string(spell.m_szName),
                                     [&](const std::string& s) { spell.SetName(s); });
    return SetField<int64_t>(d, spell.m_Tracks.m_nPhaseLength,
                             [&](int64_t n) { spell.m_Tracks.m_nPhaseLength = static_cast<int32_t>(n); });
}

CApplier::TWhy CApplier::DoKeyField(const CDifference& d, CSpell& spell, CKey& key)
{
    m_Scope.TouchKey(spell, key);
    switch (d.m_eKind)
    {
    case EDifference::eKeyID:
        return SetField<int64_t>(d, key.m_nKeyID,
                                 [&](int64_t n)
                                 {
                                     key.m_nKeyID = static_cast<uint32_t>(n);
                                     RaiseCounter(spell.m_Tracks, key.m_nKeyID);
                                 });
    case EDifference::eKeyStart:
        return SetField<int64_t>(d, key.m_nStartTime,
                                 [&](int64_t n) { key.m_nStartTime = static_cast<int32_t>(n); });
    case EDifference::eKeyEnd:
        return SetField<int64_t>(d, key.m_nEndTime,
                                 [&](int64_t n) { key.m_nEndTime = static_cast<int32_t>(n); });
    case EDifference::eKeyLink:
    {
        const CChangeValue now =
            key.m_bMotionLinked ? CChangeValue(int64_t(key.m_nMotionLinkID)) : CChangeValue();
        const auto* pBefore = std::get_if<int64_t>(&d.m_Before);
        const auto* pNow = std::get_if<int64_t>(&now);
        if (!pBefore != !pNow || (pBefore && *pBefore != *pNow))
            return c_szOther;
        if (const auto* pAfter = std::get_if<int64_t>(&d.m_After))
            key.Link(static_cast<uint32_t>(*pAfter));
        else
            key.Unlink();
        return {};
    }
    default:
        return DoSetField(d, key);
    }
}

CApplier::TWhy CApplier::DoSetField(const CDifference& d, CEffectPropertySet& set)
{
    if (d.m_eKind == EDifference::eSetName)
        return SetField<std::string>(d, set.m_sName, [&](const std::string& s) { set.m_sName = s; });
    if (d.m_eKind == EDifference::eSetValue)
        return DoValue(d, set);
    const auto* pBefore = std::get_if<CChangeRef>(&d.m_Before);
    const auto* pAfter = std::get_if<CChangeRef>(&d.m_After);
    const uint64_t nNow = set.GetParent() ? SerialOf(*set.GetParent()) : 0;
    if (nNow != (pBefore ? pBefore->m_nSerial : 0))
        return c_szOther;
    CEffectPropertySet* pParent = pAfter ? FindPrefab(pAfter->m_nSerial) : nullptr;
    if (pAfter && !pParent)
        return "the prefab isn't there";
    return set.SetParent(pParent) ? TWhy() : TWhy("the prefab is of another type");
}

CApplier::TWhy CApplier::DoValue(const CDifference& d, CEffectPropertySet& set)
{
    const auto nSlot = SlotOf(set, d.m_nSlot, {d.m_sProperty, d.m_eType}, m_Target.m_Module);
    if (!nSlot)
        return c_szNoType;
    std::unique_ptr<CEffectProperty>& pProp = set.m_Props[*nSlot];
    const auto* pBefore = std::get_if<CChangePoints>(&d.m_Before);
    const auto* pAfter = std::get_if<CChangePoints>(&d.m_After);
    if (!pBefore != !pProp)
        return c_szOther;
    std::vector<CPointImage> points;
    for (uint32_t i = 0; pProp && i < pProp->GetNumKeys(); ++i)
    {
        const CPropKey& key = *std::as_const(*pProp).GetKey(i);
        points.push_back({key.m_fTime, key.m_Data});
    }
    if (pBefore)
    {
        const auto sameWritten = [&](const CPointImage& a, const CPointImage& b)
        { return IsSameWritten(a, b, d.m_eType); };
        const size_t nFirst = pBefore->m_nFirst;
        const size_t nCount = pBefore->m_Points.size();
        const bool bWhole = !pAfter && (nFirst != 0 || nCount != points.size());
        if (bWhole || nFirst > points.size() || nCount > points.size() - nFirst ||
            (pAfter && pAfter->m_nFirst != nFirst) ||
            !std::equal(pBefore->m_Points.begin(), pBefore->m_Points.end(),
                        points.begin() + static_cast<std::ptrdiff_t>(nFirst), sameWritten))
            return c_szOther;
        const auto first = points.begin() + static_cast<std::ptrdiff_t>(nFirst);
        points.erase(first, first + static_cast<std::ptrdiff_t>(nCount));
    }
    if (!pAfter)
    {
        pProp.reset();
        return {};
    }
    if (pAfter->m_nFirst > points.size())
        return c_szOther;
    points.insert(points.begin() + pAfter->m_nFirst, pAfter->m_Points.begin(), pAfter->m_Points.end());
    if (!pProp)
        pProp = std::make_unique<CEffectProperty>(&set.m_pTypeDesc->m_pProps[*nSlot]);
    SetPoints(*pProp, std::move(points));
    return {};
}

CApplier::TWhy CApplier::DoItem(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    if (const auto* pOld = std::get_if<CItemImage>(&d.m_Before))
    {
        if (!tree.IsAlive(hItem) || tree.GetParentItem(hItem) != hParent)
            return c_szGone;
        if (tree.HasChildren(hItem) || CImageMaker::MakeItem(m_Target.m_Library, d.m_eSide, hItem) != *pOld)
            return c_szOther;
        m_Scope.TouchGroup(d.m_eSide, hParent);
        tree.DeleteItem(hItem);
        return {};
    }
    const auto* pNew = std::get_if<CItemImage>(&d.m_After);
    if (!pNew || tree.IsAlive(hItem) || (hParent && !tree.IsAlive(hParent)))
        return c_szThere;
    const bool bEffects = d.m_eSide == ETreeSide::eEffects;
    CSpell* pSpell = bEffects && pNew->m_nObject ? FindSpell(pNew->m_nObject) : nullptr;
    CEffectPropertySet* pPrefab = !bEffects && pNew->m_nObject ? FindPrefab(pNew->m_nObject) : nullptr;
    if (pNew->m_nObject && !pSpell && !pPrefab)
        return "what it stands for isn't there";
    HLibraryItem hPrev;
    HLibraryItem h = hParent ? tree.GetChildItem(hParent) : tree.GetRootItem();
    for (uint32_t i = 0; i < d.m_Place.m_nPlace && h; ++i, h = tree.GetNextSiblingItem(h))
        hPrev = h;
    m_Scope.TouchGroup(d.m_eSide, hParent);
    const auto restore = [&](auto& side, auto* pObject)
    {
        return side.RestoreItem(hItem, pNew->m_sText, pNew->m_nImage, pNew->m_nSelectedImage, hParent, hPrev,
                                pObject);
    };
    const bool bRestored = bEffects ? restore(m_Target.m_Library.m_EffectTree, pSpell)
                                    : restore(m_Target.m_Library.m_PrefabTree, pPrefab);
    return bRestored ? TWhy() : TWhy("its handle isn't free");
}

std::vector<uint64_t> SortedNumbers(const std::vector<CChangeRef>& refs)
{
    std::vector<uint64_t> numbers;
    numbers.reserve(refs.size());
    for (const CChangeRef& ref : refs)
        numbers.push_back(ref.m_nSerial);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

CApplier::TWhy CApplier::DoItemOrder(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hParent{static_cast<uint32_t>(d.m_Place.m_List.m_nSerial)};
    const auto* pBefore = std::get_if<std::vector<CChangeRef>>(&d.m_Before);
    const auto* pAfter = std::get_if<std::vector<CChangeRef>>(&d.m_After);
    if (!tree.IsAlive(hParent) || !pBefore || !pAfter || SortedNumbers(*pBefore) != SortedNumbers(*pAfter))
        return c_szGone;
    std::unordered_map<uint32_t, size_t> places;
    size_t nChild = 0;
    for (HLibraryItem h = tree.GetChildItem(hParent); h; h = tree.GetNextSiblingItem(h), ++nChild)
    {
        const size_t nFrom = nChild - d.m_Place.m_nPlace; // wraps before the range
        if (nFrom < pBefore->size() && (*pBefore)[nFrom].m_nSerial != h.m_nID)
            return c_szOther;
        places.emplace(h.m_nID, nChild);
    }
    if (d.m_Place.m_nPlace > nChild || pBefore->size() > nChild - d.m_Place.m_nPlace)
        return c_szOther;
    for (size_t i = 0; i < pAfter->size(); ++i)
    {
        const auto found = places.find(static_cast<uint32_t>((*pAfter)[i].m_nSerial));
        if (found == places.end())
            return c_szOther;
        found->second = d.m_Place.m_nPlace + i;
    }
    m_Scope.TouchGroup(d.m_eSide, hParent);
    tree.SortChildren(hParent, [&](HLibraryItem hLeft, HLibraryItem hRight)
                      { return places[hLeft.m_nID] < places[hRight.m_nID] ? -1 : 1; });
    return {};
}

CApplier::TWhy CApplier::DoItemText(const CDifference& d)
{
    CLibraryTree& tree = m_Target.m_Library.Tree(d.m_eSide);
    const HLibraryItem hItem{static_cast<uint32_t>(d.m_Object.m_nSerial)};
    if (!tree.IsAlive(hItem))
        return c_szGone;
    m_Scope.TouchGroup(d.m_eSide, tree.GetParentItem(hItem));
    return SetField<std::string>(d, tree.GetItemText(hItem),
                                 [&](const std::string& s) { tree.SetItemText(hItem, s); });
}
