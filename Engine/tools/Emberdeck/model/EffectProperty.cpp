#include "model/EffectProperty.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "model/PropKinds.h"
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

} // namespace

CEffectProperty::CEffectProperty(const CEffectPropertyDesc* pDesc) : m_pDesc(pDesc)
{
    QS_ASSERT_MSG(pDesc, "Error: Null property description used");
}

CPropKey* CEffectProperty::GetKey(uint32_t nIndex)
{
    if (nIndex >= m_Keys.Size())
        return nullptr;
    SortPending();
    m_eOrder = eOrder_Unknown;
    return &m_Keys[nIndex];
}

const CPropKey* CEffectProperty::GetKey(uint32_t nIndex) const
{
    if (nIndex >= m_Keys.Size())
        return nullptr;
    SortPending();
    return &m_Keys[nIndex];
}

void CEffectProperty::AddKey(const CPropKey& key)
{
    if (TryAllocating([&] { m_Keys.Add(key); }))
        NoteAdded();
}

void CEffectProperty::AddKey(CPropKey&& key)
{
    if (TryAllocating([&] { m_Keys.Add(std::move(key)); }))
        NoteAdded();
}

void CEffectProperty::NoteAdded()
{
    const uint32_t nLast = m_Keys.Size() - 1;
    if (m_eOrder != eOrder_Sorted || (nLast > 0 && IsEarlier(m_Keys[nLast], m_Keys[nLast - 1])))
        m_eOrder = eOrder_Pending;
}

void CEffectProperty::ReserveKeys(uint32_t nCount)
{
    TryAllocating([&] { m_Keys.Reserve(nCount); });
}

void CEffectProperty::AddDefaultKey(float fTime)
{
    CPropKey key;
    key.m_fTime = fTime;
    if (m_pDesc)
        key.m_Data.Assign(m_pDesc->m_Default);
    AddKey(std::move(key));
}

void CEffectProperty::RemoveKey(uint32_t nIndex)
{
    if (nIndex >= m_Keys.Size())
        return;
    SortPending();
    m_Keys.Remove(nIndex);
}

void CEffectProperty::ClearKeys()
{
    m_Keys.Clear();
    m_eOrder = eOrder_Sorted;
}

CPropKeyList CEffectProperty::TakeKeys()
{
    SortPending();
    m_eOrder = eOrder_Sorted;
    return std::move(m_Keys);
}

void CEffectProperty::SetKeys(CPropKeyList keys)
{
    m_Keys = std::move(keys);
    m_eOrder = eOrder_Unknown;
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

CPropKeyList::CPropKeyList(const CPropKeyList& other)
{
    *this = other;
}

CPropKeyList& CPropKeyList::operator=(const CPropKeyList& other)
{
    if (this == &other)
        return *this;
    CPropKeyList copy;
    copy.Reserve(other.m_nCount);
    const CPropKey* pFrom = other.m_pMany ? other.m_pMany.get() : &other.m_One;
    std::copy(pFrom, pFrom + other.m_nCount, copy.begin());
    m_pMany = std::move(copy.m_pMany);
    m_One = std::move(copy.m_One);
    m_nCount = other.m_nCount;
    m_nCapacity = copy.m_nCapacity;
    return *this;
}

CPropKeyList::CPropKeyList(CPropKeyList&& other) noexcept
{
    *this = std::move(other);
}

CPropKeyList& CPropKeyList::operator=(CPropKeyList&& other) noexcept
{
    if (this == &other)
        return *this;
    m_pMany = std::move(other.m_pMany);
    m_One = std::move(other.m_One);
    m_nCount = std::exchange(other.m_nCount, 0);
    m_nCapacity = std::exchange(other.m_nCapacity, 1);
    return *this;
}

void CPropKeyList::Reserve(uint32_t nCount)
{
    if (nCount <= m_nCapacity)
        return;
    auto pMany = std::make_unique<CPropKey[]>(nCount);
    std::move(begin(), end(), pMany.get());
    m_pMany = std::move(pMany);
    m_nCapacity = nCount;
}

CPropKey& CPropKeyList::Append()
{
    if (m_nCount == m_nCapacity)
        Reserve(std::max(4u, m_nCapacity * 2));
    return begin()[m_nCount++];
}

void CPropKeyList::Add(const CPropKey& key)
{
    Add(CPropKey(key)); // it may be one of the list
}

void CPropKeyList::Add(CPropKey&& key)
{
    Append() = std::move(key);
}

void CPropKeyList::Remove(uint32_t nIndex)
{
    std::move(begin() + nIndex + 1, end(), begin() + nIndex);
    Shorten(m_nCount - 1);
}

void CPropKeyList::Shorten(uint32_t nCount)
{
    while (m_nCount > nCount)
        begin()[--m_nCount] = CPropKey();
}

void CPropKeyList::Clear()
{
    m_pMany.reset();
    m_One = CPropKey();
    m_nCount = 0;
    m_nCapacity = 1;
}

bool HasValue(const CEffectProperty* pProp)
{
    return pProp && pProp->GetDesc() && PropKind(pProp->GetDesc()->m_eType).m_bValue;
}

const char* GetPropTypeName(uint32_t eType)
{
    const CPropKind& kind = PropKind(eType);
    if (kind.m_eForm != EPropForm::eNone)
        return kind.m_pszName;
    QS_ASSERT_FORCED("Error: Found property with unknown type");
    return "Unknown";
}

bool ParsePropTypeName(const char* pszName, EEffectPropertyType& eType)
{
    for (uint32_t i = 0; PropKind(i).m_eType == i; ++i) // up to the first number that is no kind
    {
        const CPropKind& kind = PropKind(i);
        if (pszName && kind.m_eForm != EPropForm::eNone &&
            FoldNameByte(*pszName) == FoldNameByte(*kind.m_pszName) && IsSameName(kind.m_pszName, pszName))
        {
            eType = kind.m_eType;
            return true;
        }
    }
    return false;
}

bool IsTextKind(uint32_t eType)
{
    return PropKind(eType).m_eForm == EPropForm::eText;
}

bool IsSameValue(uint32_t eType, const CPropData& left, const CPropData& right)
{
    switch (PropKind(eType).m_eForm)
    {
    case EPropForm::eText:
        return left.GetText() == right.GetText();
    case EPropForm::eInt:
        return left.GetInt() == right.GetInt();
    case EPropForm::eFloat:
        return left.GetFloat() == right.GetFloat();
    case EPropForm::eColor:
        return left.GetColor() == right.GetColor();
    case EPropForm::eVector:
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
