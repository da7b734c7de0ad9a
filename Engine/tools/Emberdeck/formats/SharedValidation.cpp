#include "formats/SharedValidation.h"

#include <bit>
#include <cstring>

bool IsSameContent(const CEffectProperty& left, const CEffectProperty& right)
{
    if (left.GetNumKeys() != right.GetNumKeys())
        return false;
    for (uint32_t i = 0; i < left.GetNumKeys(); ++i)
    {
        const CPropKey& leftKey = *left.GetKey(i);
        const CPropKey& rightKey = *right.GetKey(i);
        if (std::bit_cast<uint32_t>(leftKey.m_fTime) != std::bit_cast<uint32_t>(rightKey.m_fTime))
            return false;
        uint8_t aLeft[CPropData::c_nSize];
        uint8_t aRight[CPropData::c_nSize];
        leftKey.m_Data.CopyTo(aLeft);
        rightKey.m_Data.CopyTo(aRight);
        if (std::memcmp(aLeft, aRight, sizeof(aLeft)) != 0)
            return false;
    }
    return true;
}

void CSharedValidation::Run(CEffectProperty* pProp)
{
    if (pProp && m_Done.insert(pProp).second)
        Validate(pProp);
}

void CSharedValidation::Note(const CEffectPropertySet& set)
{
    m_DoneSets.insert(&set);
}

void CSharedValidation::RunInherited(const CEffectPropertySet& set)
{
    if (!set.GetParent() || m_DoneSets.count(set.GetParent()) != 0)
        return;
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
    {
        if (!set.GetPropertyDirect(i))
            Run(set.GetProperty(i));
    }
}
