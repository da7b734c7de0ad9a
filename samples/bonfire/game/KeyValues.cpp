// SPDX-License-Identifier: 0BSD
#include "game/KeyValues.h"

#include <algorithm>
#include <cmath>

namespace
{
// Not std::clamp alone, which hands on what is no number.
double Bounded(double f, double fMin, double fMax)
{
    return f > fMin ? std::min(f, fMax) : fMin;
}
} // namespace

CKeyValues::CKeyValues(const CKey& key, double fShare) : m_Key(key), m_fShare(Bounded(fShare, 0, 1)) {}

const CProperty* CKeyValues::Find(std::string_view sName) const
{
    for (const CProperty& prop : m_Key.m_Properties)
        if (FieldText(prop.m_pDesc->m_szName) == sName)
            return &prop;
    return nullptr;
}

double CKeyValues::Number(std::string_view sName, double fDefault, double fMin, double fMax) const
{
    const CProperty* pProp = Find(sName);
    if (!pProp || NumberCount(pProp->m_pDesc->m_eType) == 0)
        return fDefault;
    return Bounded(Evaluate(*pProp, m_fShare).m_Numbers[0], fMin, fMax);
}

CPoint CKeyValues::Point(std::string_view sName, const CPoint& def) const
{
    constexpr double c_fFar = 10000;
    const CProperty* pProp = Find(sName);
    if (!pProp || pProp->m_pDesc->m_eType != ePropType_Vector)
        return def;
    const auto numbers = Evaluate(*pProp, m_fShare).m_Numbers;
    return {Bounded(numbers[0], -c_fFar, c_fFar), Bounded(numbers[1], -c_fFar, c_fFar),
            Bounded(numbers[2], -c_fFar, c_fFar)};
}

CTint CKeyValues::Tint(std::string_view sName) const
{
    const CProperty* pProp = Find(sName);
    if (!pProp || pProp->m_pDesc->m_eType != ePropType_Color)
        return {};
    const auto numbers = Evaluate(*pProp, m_fShare).m_Numbers;
    return {Bounded(numbers[0], 0, 1), Bounded(numbers[1], 0, 1), Bounded(numbers[2], 0, 1),
            Bounded(numbers[3], 0, 1)};
}

std::string_view CKeyValues::Text(std::string_view sName) const
{
    const CProperty* pProp = Find(sName);
    return pProp ? Evaluate(*pProp, m_fShare).m_sText : std::string_view();
}

std::string_view CKeyValues::Enumerator(std::string_view sName) const
{
    const CProperty* pProp = Find(sName);
    if (!pProp || pProp->m_pDesc->m_eType != ePropType_Enum)
        return {};
    size_t nLength = 0;
    const char* pEnumerator =
        EmberdeckEnumerator(pProp->m_pDesc, uint32_t(Evaluate(*pProp, m_fShare).m_Numbers[0]), &nLength);
    return pEnumerator ? std::string_view(pEnumerator, nLength) : std::string_view();
}

double ShareOf(const CKey& key, double fSeconds)
{
    const double fLength = double(key.m_fEnd) - double(key.m_fStart);
    return fLength > 0 ? fSeconds / fLength : 1;
}
