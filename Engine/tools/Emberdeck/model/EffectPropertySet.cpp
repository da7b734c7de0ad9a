#include "model/EffectPropertySet.h"

#include <utility>

#include "model/MakeOrNull.h"
#include "qsassert.h"

namespace
{

bool StandsOn(const CEffectPropertySet* pSet, const CEffectPropertySet* pAncestor)
{
    while (pSet && pSet != pAncestor)
        pSet = pSet->m_pParent;
    return pSet != nullptr;
}

} // namespace

CEffectPropertySet::CEffectPropertySet(const CEffectTypeDesc* pTypeDesc) : m_pTypeDesc(pTypeDesc)
{
    QS_ASSERT_MSG(m_pTypeDesc, "Error: Invalid type description used to create a property set");
    if (m_pTypeDesc)
        m_Props.resize(m_pTypeDesc->m_nNumProps);
}

CEffectPropertySet::CEffectPropertySet(const CEffectPropertySet& other) : m_pTypeDesc(other.m_pTypeDesc)
{
    *this = other;
}

CEffectPropertySet& CEffectPropertySet::operator=(const CEffectPropertySet& other)
{
    if (this == &other)
        return *this;
    if (StandsOn(&other, this))
    {
        // The copy would end up as its own ancestor, and what the source still reads would be gone.
        QS_ASSERT_FORCED("Error: Assigning a parent to a child");
        return *this;
    }
    // Everything that needs memory comes first, so that a failure leaves this set whole.
    std::string sName = other.m_sName;
    std::vector<std::unique_ptr<CEffectProperty>> props(other.m_Props.size());
    for (size_t i = 0; i < props.size(); ++i)
    {
        if (other.m_Props[i])
            props[i] = std::make_unique<CEffectProperty>(*other.m_Props[i]);
    }
    m_sName = std::move(sName);
    m_pParent = other.m_pParent;
    m_pTypeDesc = other.m_pTypeDesc;
    m_Props = std::move(props);
    return *this;
}

uint32_t CEffectPropertySet::GetNumProps() const
{
    QS_ASSERT_MSG(m_pTypeDesc, "Error: No associated type description for this property set");
    return m_pTypeDesc ? m_pTypeDesc->m_nNumProps : 0;
}

CEffectProperty* CEffectPropertySet::GetPropertyDirect(uint32_t nIndex) const
{
    QS_ASSERT_MSG(nIndex < GetNumProps(), "Error: Invalid index specified to GetPropertyDirect");
    return nIndex < m_Props.size() ? m_Props[nIndex].get() : nullptr;
}

CEffectProperty* CEffectPropertySet::GetProperty(uint32_t nIndex) const
{
    for (const CEffectPropertySet* pSet = this; pSet; pSet = pSet->m_pParent)
    {
        if (nIndex < pSet->m_Props.size() && pSet->m_Props[nIndex])
            return pSet->m_Props[nIndex].get();
    }
    return nullptr;
}

bool CEffectPropertySet::SetParent(CEffectPropertySet* pParent)
{
    if (pParent && (pParent->m_pTypeDesc != m_pTypeDesc || StandsOn(pParent, this)))
        return false;
    m_pParent = pParent;
    return true;
}

bool CEffectPropertySet::AddProperty(std::unique_ptr<CEffectProperty>& pProp)
{
    if (!pProp || !pProp->GetDesc() || !m_pTypeDesc)
        return false;
    // Identity is by address; the difference is taken on the numbers, since the descriptor may belong to
    // another type's array.
    const uintptr_t nOffset =
        reinterpret_cast<uintptr_t>(pProp->GetDesc()) - reinterpret_cast<uintptr_t>(m_pTypeDesc->m_pProps);
    const uintptr_t nSlot = nOffset / sizeof(CEffectPropertyDesc);
    if (nSlot >= m_Props.size() || nOffset % sizeof(CEffectPropertyDesc) != 0)
        return false;
    m_Props[nSlot] = std::move(pProp);
    return true;
}

bool CEffectPropertySet::MakeLocal(uint32_t nIndex)
{
    if (nIndex >= m_Props.size())
        return false;
    if (m_Props[nIndex])
        return true;
    if (const CEffectProperty* pInherited = GetProperty(nIndex))
    {
        m_Props[nIndex] = MakeOrNull<CEffectProperty>(*pInherited);
        return m_Props[nIndex] != nullptr;
    }
    return true;
}

bool CEffectPropertySet::ClearLocal(uint32_t nIndex)
{
    if (nIndex >= m_Props.size() || !m_pParent)
        return false;
    m_Props[nIndex].reset();
    return true;
}

bool CEffectPropertySet::Flatten()
{
    for (uint32_t i = 0; i < m_Props.size(); ++i)
        MakeLocal(i);
    m_pParent = nullptr; // also when memory was short: the parent may be about to go
    return true;
}

bool CEffectPropertySet::DetachFromParent(CEffectPropertySet* pParent)
{
    if (!pParent)
        return false;
    for (CEffectPropertySet* pSet = this; pSet->m_pParent; pSet = pSet->m_pParent)
    {
        if (pSet->m_pParent == pParent)
            return pSet->Flatten();
    }
    return false;
}

void CEffectPropertySet::ClearProperties()
{
    for (std::unique_ptr<CEffectProperty>& pProp : m_Props)
        pProp.reset();
}

std::string CEffectPropertySet::GetDisplayName() const
{
    const std::string sType = m_pTypeDesc ? TypeName(*m_pTypeDesc) : "Unknown";
    return m_sName.empty() ? sType : m_sName + " - " + sType;
}

CEffectProperty* GetProperty(const CEffectPropertySet* pSet, uint32_t nIndex)
{
    return pSet ? pSet->GetProperty(nIndex) : nullptr;
}

void EnsureComplete(CEffectPropertySet* pSet)
{
    if (!pSet || !pSet->m_pTypeDesc)
        return;
    CEffectPropertySet* pRoot = pSet;
    while (pRoot->m_pParent)
        pRoot = pRoot->m_pParent;
    const CEffectTypeDesc* pTypeDesc = pRoot->m_pTypeDesc;
    if (!pTypeDesc || !pTypeDesc->m_pProps)
        return;
    for (uint32_t i = 0; i < pRoot->m_Props.size(); ++i)
    {
        if (pRoot->m_Props[i])
            continue;
        std::unique_ptr<CEffectProperty> pProp = MakeOrNull<CEffectProperty>(&pTypeDesc->m_pProps[i]);
        ValidateStructure(pProp.get());
        pRoot->m_Props[i] = std::move(pProp);
    }
}

void ValidateSet(CEffectPropertySet* pSet)
{
    if (!pSet)
        return;
    for (uint32_t i = 0; i < pSet->m_Props.size(); ++i)
        Validate(pSet->GetProperty(i));
}
