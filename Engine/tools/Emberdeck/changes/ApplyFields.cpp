#include "changes/Applier.h"

// Fields and values.

namespace
{

struct CNameBack
{
    CSpell& m_Spell;
    std::string m_sName;
    void operator()() { m_Spell.SetName(m_sName); }
};

// Another list of values for a property, which itself stays; and the old one back.
struct CSetValues
{
    CEffectProperty& m_Prop;
    CPropKeyList m_Keys;
    void operator()()
    {
        CPropKeyList keys = m_Prop.TakeKeys();
        m_Prop.SetKeys(std::move(m_Keys));
        m_Keys = std::move(keys);
    }
};

} // namespace

CApplier::TWhy CApplier::DoHead(const CDifference& d, CSpell& spell)
{
    m_Scope.TouchHead(spell);
    if (d.m_eKind == EDifference::eEffectName)
        return SetField<std::string>(d, std::string(spell.m_szName),
                                     [&](const std::string& s)
                                     {
                                         Note(CNameBack{spell, spell.m_szName});
                                         spell.SetName(s);
                                     });
    int32_t& nLength = spell.m_Tracks.m_nPhaseLength;
    return SetField<int64_t>(d, nLength, [&](int64_t n) { Set(nLength, static_cast<int32_t>(n)); });
}

CApplier::TWhy CApplier::DoKeyLink(const CDifference& d, CKey& key)
{
    const auto* pBefore = std::get_if<int64_t>(&d.m_Before);
    const auto* pAfter = std::get_if<int64_t>(&d.m_After);
    if (!pBefore != !key.m_bMotionLinked || (pBefore && *pBefore != int64_t(key.m_nMotionLinkID)))
        return c_szOther;
    Note(CSetBack<bool>{key.m_bMotionLinked, key.m_bMotionLinked});
    Note(CSetBack<uint32_t>{key.m_nMotionLinkID, key.m_nMotionLinkID});
    if (pAfter)
        key.Link(static_cast<uint32_t>(*pAfter));
    else
        key.Unlink();
    return {};
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
                                     Set(key.m_nKeyID, static_cast<uint32_t>(n));
                                     RaiseCounter(spell.m_Tracks, key.m_nKeyID);
                                 });
    case EDifference::eKeyStart:
        return SetField<int64_t>(d, key.m_nStartTime,
                                 [&](int64_t n) { Set(key.m_nStartTime, static_cast<int32_t>(n)); });
    case EDifference::eKeyEnd:
        return SetField<int64_t>(d, key.m_nEndTime,
                                 [&](int64_t n) { Set(key.m_nEndTime, static_cast<int32_t>(n)); });
    case EDifference::eKeyLink:
        return DoKeyLink(d, key);
    default:
        return DoSetField(d, key);
    }
}

CApplier::TWhy CApplier::DoSetField(const CDifference& d, CEffectPropertySet& set)
{
    if (d.m_eKind == EDifference::eSetName)
        return SetField<std::string>(d, set.m_sName, [&](const std::string& s) { Set(set.m_sName, s); });
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
    Note(CSetBack<CEffectPropertySet*>{set.m_pParent, set.m_pParent});
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
        Set(pProp, std::unique_ptr<CEffectProperty>());
        return {};
    }
    if (pAfter->m_nFirst > points.size())
        return c_szOther;
    points.insert(points.begin() + pAfter->m_nFirst, pAfter->m_Points.begin(), pAfter->m_Points.end());
    if (pProp)
    {
        Note(CSetValues{*pProp, ListOf(std::move(points))})();
        return {};
    }
    auto pMade = std::make_unique<CEffectProperty>(&set.m_pTypeDesc->m_pProps[*nSlot]);
    pMade->SetKeys(ListOf(std::move(points)));
    Set(pProp, std::move(pMade));
    return {};
}
