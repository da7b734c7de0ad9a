#include "model/EffectProperty.h"

#include <algorithm>
#include <cmath>

#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "qsassert.h"

namespace
{

// Times come from files. One that is no number counts as later than all others, which keeps the order a
// strict weak one.
bool IsEarlier(const CPropKey& left, const CPropKey& right)
{
    if (std::isnan(left.m_fTime))
        return false;
    return std::isnan(right.m_fTime) || left.m_fTime < right.m_fTime;
}

struct CKindName
{
    EEffectPropertyType m_eType;
    const char* m_pszName;
};
constexpr CKindName c_KindNames[] = {
    {ePropType_String, "String"},
    {ePropType_Filename, "Filename"},
    {ePropType_Enum, "Enum"},
    {ePropType_Int, "Int"},
    {ePropType_Float, "Float"},
    {ePropType_Color, "Color"},
    {ePropType_Vector, "Vector"},
    {ePropType_Animation, "Animation"},
    {ePropType_FireglassRef, "FireglassRef"},
};

} // namespace

CEffectProperty::CEffectProperty(const CEffectPropertyDesc* pDesc) : m_pDesc(pDesc)
{
    QS_ASSERT_MSG(pDesc, "Error: Null property description used");
}

CPropKey* CEffectProperty::GetKey(uint32_t nIndex)
{
    if (nIndex >= m_Keys.size())
        return nullptr;
    SortPending();
    m_eOrder = eOrder_Unknown;
    return &m_Keys[nIndex];
}

const CPropKey* CEffectProperty::GetKey(uint32_t nIndex) const
{
    if (nIndex >= m_Keys.size())
        return nullptr;
    SortPending();
    return &m_Keys[nIndex];
}

void CEffectProperty::AddKey(const CPropKey& key)
{
    if (!TryAllocating([&] { m_Keys.push_back(key); }))
        return;
    const size_t nLast = m_Keys.size() - 1;
    if (m_eOrder != eOrder_Sorted || (nLast > 0 && IsEarlier(m_Keys[nLast], m_Keys[nLast - 1])))
        m_eOrder = eOrder_Pending;
}

void CEffectProperty::AddDefaultKey(float fTime)
{
    CPropKey key;
    key.m_fTime = fTime;
    if (m_pDesc)
        key.m_Data.Assign(m_pDesc->m_Default);
    AddKey(key);
}

void CEffectProperty::RemoveKey(uint32_t nIndex)
{
    if (nIndex >= m_Keys.size())
        return;
    SortPending();
    m_Keys.erase(m_Keys.begin() + nIndex);
}

void CEffectProperty::ClearKeys()
{
    m_Keys = std::vector<CPropKey>();
    m_eOrder = eOrder_Sorted;
}

void CEffectProperty::SortKeys()
{
    if (m_eOrder != eOrder_Sorted)
        SortNow();
}

void CEffectProperty::SortNow() const
{
    // A stable sort helps itself without memory of its own, only more slowly.
    if (!std::is_sorted(m_Keys.begin(), m_Keys.end(), IsEarlier))
        std::stable_sort(m_Keys.begin(), m_Keys.end(), IsEarlier);
    m_eOrder = eOrder_Sorted;
}

bool HasValue(const CEffectProperty* pProp)
{
    return pProp && pProp->GetDesc() && pProp->GetDesc()->m_eType != ePropType_None &&
           pProp->GetDesc()->m_eType != ePropType_UI;
}

const char* GetPropTypeName(uint32_t eType)
{
    for (const CKindName& kind : c_KindNames)
    {
        if (kind.m_eType == eType)
            return kind.m_pszName;
    }
    QS_ASSERT_FORCED("Error: Found property with unknown type");
    return "Unknown";
}

bool ParsePropTypeName(const char* pszName, EEffectPropertyType& eType)
{
    for (const CKindName& kind : c_KindNames)
    {
        if (pszName && IsSameName(kind.m_pszName, pszName))
        {
            eType = kind.m_eType;
            return true;
        }
    }
    return false;
}

bool IsTextKind(uint32_t eType)
{
    switch (eType)
    {
    case ePropType_String:
    case ePropType_Filename:
    case ePropType_Enum:
    case ePropType_Animation:
    case ePropType_FireglassRef:
        return true;
    default:
        return false;
    }
}

bool IsSameValue(uint32_t eType, const CPropData& left, const CPropData& right)
{
    if (IsTextKind(eType))
        return left.GetText() == right.GetText();
    switch (eType)
    {
    case ePropType_Int:
        return left.GetInt() == right.GetInt();
    case ePropType_Float:
        return left.GetFloat() == right.GetFloat();
    case ePropType_Color:
        return left.GetColor() == right.GetColor();
    case ePropType_Vector:
        return left.GetVector() == right.GetVector();
    default:
        QS_ASSERT_FORCED("Error: Unexpected property type");
        return false;
    }
}

std::string DescName(const CEffectPropertyDesc& desc)
{
    return std::string(BoundedText(desc.m_szName));
}

std::string DescData(const CEffectPropertyDesc& desc)
{
    return std::string(BoundedText(desc.m_szData));
}

std::string DescHelp(const CEffectPropertyDesc& desc)
{
    return std::string(BoundedText(desc.m_szHelp));
}

std::string TypeName(const CEffectTypeDesc& desc)
{
    return std::string(BoundedText(desc.m_szName));
}
