#include "model/EditClipboard.h"

#include <utility>

#include "model/MakeOrNull.h"
#include "model/PropKinds.h"

namespace
{

struct CFrozenProperty
{
    std::string m_sName;
    uint32_t m_eType = 0;
    std::vector<CPropKey> m_Keys;
};

std::vector<CPropKey> KeysOf(const CEffectProperty& prop)
{
    std::vector<CPropKey> keys;
    keys.reserve(prop.GetNumKeys());
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
        keys.push_back(*prop.GetKey(i));
    return keys;
}

// What a file would keep of a value: the form of its kind, no other bytes, no selection.
CPropKey StoredForm(uint32_t eType, const CPropKey& key)
{
    CPropKey stored;
    stored.m_fTime = key.m_fTime;
    if (IsTextKind(eType))
        stored.m_Data.SetText(key.m_Data.GetText());
    else if (eType == ePropType_Vector)
        stored.m_Data.SetVector(key.m_Data.GetVector());
    else
        stored.m_Data.SetColor(key.m_Data.GetColor()); // four bytes, whatever they mean
    return stored;
}

// A kind that the text format has a name for; a file keeps no others.
bool IsStoredKind(uint32_t eType)
{
    return PropKind(eType).m_eForm != EPropForm::eNone;
}

} // namespace

struct CEditClipboard::CFrozenKey
{
    std::string m_sTypeName;
    std::string m_sName;
    int32_t m_nStartTime = 0;
    int32_t m_nEndTime = 0;
    bool m_bSelected = false;
    bool m_bMotionLinked = false;
    uint32_t m_nMotionLinkID = 0;
    std::vector<CFrozenProperty> m_Props;

    explicit CFrozenKey(const CKey& key)
        : m_sTypeName(key.m_pTypeDesc ? TypeName(*key.m_pTypeDesc) : std::string()),
          m_sName(key.m_sName),
          m_nStartTime(key.m_nStartTime),
          m_nEndTime(key.m_nEndTime),
          m_bSelected(key.m_bSelected),
          m_bMotionLinked(key.m_bMotionLinked),
          m_nMotionLinkID(key.m_nMotionLinkID)
    {
        for (const std::unique_ptr<CEffectProperty>& pProp : key.m_Props)
        {
            if (!HasValue(pProp.get()) || !IsStoredKind(pProp->GetDesc()->m_eType))
                continue;
            const uint32_t eType = pProp->GetDesc()->m_eType;
            CFrozenProperty& frozen = m_Props.emplace_back();
            frozen.m_sName = DescName(*pProp->GetDesc());
            frozen.m_eType = eType;
            for (const CPropKey& propKey : KeysOf(*pProp))
                frozen.m_Keys.push_back(StoredForm(eType, propKey));
        }
    }

    std::unique_ptr<CKey> Thaw(const CEffectModule& module, const CEffectTypeDesc* pTypeDesc) const
    {
        auto pKey = std::make_unique<CKey>(pTypeDesc);
        pKey->m_sName = m_sName;
        pKey->m_nStartTime = m_nStartTime;
        pKey->m_nEndTime = m_nEndTime;
        pKey->m_bSelected = m_bSelected;
        pKey->m_bMotionLinked = m_bMotionLinked;
        pKey->m_nMotionLinkID = m_nMotionLinkID;
        for (const CFrozenProperty& frozen : m_Props)
        {
            const int nProp = module.FindPropertyIndex(pTypeDesc, frozen.m_sName);
            if (nProp < 0)
                continue;
            auto pProp = std::make_unique<CEffectProperty>(&pTypeDesc->m_pProps[nProp]);
            for (const CPropKey& propKey : frozen.m_Keys)
                pProp->AddKey(propKey);
            pKey->AddProperty(pProp);
        }
        EnsureComplete(pKey.get());
        ValidateSet(pKey.get());
        return pKey;
    }
};

CEditClipboard::CEditClipboard() = default;
CEditClipboard::~CEditClipboard() = default;

void CEditClipboard::CopyKey(const CKey* pKey, uint64_t nEffectSerial)
{
    std::unique_ptr<CKey> pCopy = pKey ? pKey->Clone() : nullptr; // first: pKey may be the one held here
    m_pFrozenKey.reset();
    m_pKey = std::move(pCopy);
    m_nEffectSerial = m_pKey ? nEffectSerial : 0;
    if (m_pKey)
    {
        m_pKey->m_nKeyID = 0;
        m_pKey->m_nTrack = 0;
    }
}

void CEditClipboard::CopyCurve(const CEffectProperty* pProp)
{
    m_bHasCurve = false;
    m_CurveKeys.clear();
    if (!pProp || !pProp->GetDesc())
        return;
    m_eCurveType = pProp->GetDesc()->m_eType;
    m_bHasCurve = TryAllocating([&] { m_CurveKeys = KeysOf(*pProp); });
}

bool CEditClipboard::CanPasteCurve(const CEffectProperty* pProp) const
{
    return m_bHasCurve && pProp && pProp->GetDesc() && pProp->GetDesc()->m_eType == m_eCurveType;
}

void CEditClipboard::PasteCurve(CEffectProperty* pProp) const
{
    if (!CanPasteCurve(pProp))
        return;
    pProp->ClearKeys();
    for (const CPropKey& key : m_CurveKeys)
        pProp->AddKey(key);
}

void CEditClipboard::FlattenKey()
{
    if (m_pKey)
        m_pKey->Flatten();
}

void CEditClipboard::FreezeForUnload()
{
    if (!m_pKey)
        return; // nothing, or frozen since an earlier plug-in
    m_pKey->Flatten();
    m_pFrozenKey = MakeOrNull<CFrozenKey>(*m_pKey);
    m_pKey.reset();
}

void CEditClipboard::Thaw(const CEffectModule& module)
{
    if (!m_pFrozenKey || !module.IsLoaded())
        return;
    const CEffectTypeDesc* pTypeDesc = module.FindType(m_pFrozenKey->m_sTypeName.c_str());
    if (pTypeDesc)
        TryAllocating([&] { m_pKey = m_pFrozenKey->Thaw(module, pTypeDesc); });
    m_pFrozenKey.reset();
}
