// What only the plug-in's descriptors tell of a packed file that is sound in structure.

#include <utility>

#include "formats/PackedParse.h"
#include "model/EffectProperty.h"
#include "model/NameIndex.h"
#include "model/PropData.h"
#include "model/PropKinds.h"
#include "shared/engine/ProjectLocator.h"

namespace
{

constexpr uint32_t c_nMaxPath = 260;

// What the packer compares curves by, as bytes: values that are equal by == have the same.
void AppendNumber(std::string& sBytes, float fValue)
{
    const auto nBits = std::bit_cast<uint32_t>(fValue == 0.0f ? 0.0f : fValue);
    sBytes.append(reinterpret_cast<const char*>(&nBits), sizeof(nBits));
}

std::string CurveBytes(uint32_t eType, const CPackedValues& values)
{
    std::string sBytes = std::to_string(eType);
    for (const CPackedCurveKey& key : values)
    {
        AppendNumber(sBytes, key.m_fTime);
        if (const auto* pText = std::get_if<std::string>(&key.m_Value.m_Value))
            (sBytes += *pText) += '\0';
        else if (const auto* pInt = std::get_if<int32_t>(&key.m_Value.m_Value))
            sBytes.append(reinterpret_cast<const char*>(pInt), sizeof(*pInt));
        else if (const auto* pFloat = std::get_if<float>(&key.m_Value.m_Value))
            AppendNumber(sBytes, *pFloat);
        else if (const auto* pVector = std::get_if<CVector3>(&key.m_Value.m_Value))
            for (const float f : {pVector->x, pVector->y, pVector->z})
                AppendNumber(sBytes, f);
        else if (const auto* pColor = std::get_if<CPackedColor>(&key.m_Value.m_Value))
            for (const float f : {pColor->r, pColor->g, pColor->b, pColor->a})
                AppendNumber(sBytes, f);
    }
    return sBytes;
}

} // namespace

std::string PackedFileName(const std::string& sText)
{
    char szPacked[c_nMaxPath];
    ConvertToPackedName(sText.c_str(), szPacked, sizeof(szPacked));
    return szPacked;
}

bool CPackedReader::CheckCurveValues()
{
    for (const auto& [nOffset, curve] : m_Curves)
    {
        for (const CEffectPropertyDesc* pDesc : curve.m_Checks)
        {
            if (!CheckValues(static_cast<uint32_t>(CurveTableOffset() + nOffset), *pDesc, curve.m_Values))
                return false;
        }
    }
    return true;
}

// Values are validated before they are packed, so validation has nothing left to do: times, and the range of
// numbers. Enumerators have become indices: equal texts are one curve, with the indices of the list that came first.
bool CPackedReader::CheckValues(uint32_t nAt, const CEffectPropertyDesc& desc, const CPackedValues& values)
{
    CEffectProperty prop(&desc);
    prop.ReserveKeys(static_cast<uint32_t>(values.size()));
    for (const CPackedCurveKey& value : values)
    {
        CPropKey key;
        key.m_fTime = value.m_fTime;
        if (const auto* pInt = std::get_if<int32_t>(&value.m_Value.m_Value))
            key.m_Data.SetInt(*pInt);
        else if (const auto* pFloat = std::get_if<float>(&value.m_Value.m_Value))
            key.m_Data.SetFloat(*pFloat);
        else if (const auto* pVector = std::get_if<CVector3>(&value.m_Value.m_Value))
            key.m_Data.SetVector(*pVector);
        prop.AddKey(std::move(key));
    }
    SettleStructure(&prop);
    bool bSameTimes = prop.GetNumKeys() == values.size();
    for (uint32_t i = 0; bSameTimes && i < prop.GetNumKeys(); ++i)
        bSameTimes = std::as_const(prop).GetKey(i)->m_fTime == values[i].m_fTime;
    if (!bSameTimes)
        return Fail(nAt, QSFormat("times of property %s that no curve of it has", DescName(desc).c_str()));
    const CEffectProperty before(prop);
    ClampToRange(&prop);
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
    {
        if (!IsTextKind(desc.m_eType) &&
            !IsSameValue(desc.m_eType, before.GetKey(i)->m_Data, std::as_const(prop).GetKey(i)->m_Data))
            return Fail(nAt, QSFormat("a value beyond the range of property %s", DescName(desc).c_str()));
    }
    return true;
}

bool CPackedReader::HasCurvesWithoutValues() const
{
    for (const auto& [nID, pType] : m_TypesByID)
    {
        for (uint32_t i = 0; nID < m_TypesUsed.size() && m_TypesUsed[nID] && i < pType->m_nNumProps; ++i)
        {
            const CEffectPropertyDesc& desc = pType->m_pProps[i];
            if (desc.m_bFunctionCurve && !PropKind(desc.m_eType).m_bValue)
                return true;
        }
    }
    return false;
}

// The packer stores equal curves once. What it compares are the library's texts: of an Enum several stand for one
// index, and several names of a file for one packed one.
bool CPackedReader::CheckCurvesDiffer()
{
    std::unordered_map<std::string, uint64_t> counts;
    for (const auto& [nOffset, curve] : m_Curves)
    {
        if (curve.m_eType == ePropType_Enum)
            continue;
        const uint64_t nCount = ++counts[CurveBytes(curve.m_eType, curve.m_Values)];
        if (nCount > 1 && (curve.m_eType != ePropType_Filename || nCount > CountSources(curve.m_Values)))
            return Fail(CurveTableOffset() + nOffset, "a curve that stands in the table twice");
    }
    return true;
}

// How many curves of a library become this one; a large number for more.
uint64_t CPackedReader::CountSources(const CPackedValues& values)
{
    constexpr uint64_t c_nMany = 1u << 31;
    if (m_Sources.empty())
    {
        for (const auto& [nOffset, sText] : m_Library.m_Strings)
        {
            if (sText.size() <= CPropData::c_nMaxText)
                ++m_Sources[PackedFileName(sText)];
        }
    }
    uint64_t nCurves = 1;
    for (const CPackedCurveKey& key : values)
        nCurves = std::min(nCurves * m_Sources[std::get<std::string>(key.m_Value.m_Value)], c_nMany);
    return nCurves;
}

// The table holds what is referred to, the names of all properties of the keys' types, and the names of files as
// the library has them.
bool CPackedReader::CheckTexts()
{
    std::unordered_map<std::string_view, size_t> texts;
    for (size_t i = 0; i < m_Library.m_Strings.size(); ++i)
        texts.emplace(m_Library.m_Strings[i].second, i);
    for (const auto& [nID, pType] : m_TypesByID)
    {
        for (uint32_t i = 0; nID < m_TypesUsed.size() && m_TypesUsed[nID] && i < pType->m_nNumProps; ++i)
        {
            const auto found = texts.find(BoundedText(pType->m_pProps[i].m_szName));
            if (found == texts.end())
                return Fail(Head().m_nStringTableOffset, QSFormat("no text %s, the name of a property",
                                                                  DescName(pType->m_pProps[i]).c_str()));
            m_TextUsed[found->second] = true;
        }
    }
    for (size_t i = 0; i < m_Library.m_Strings.size(); ++i)
    {
        if (m_TextUsed[i])
            continue;
        const auto& [nOffset, sText] = m_Library.m_Strings[i];
        const auto packed =
            sText.size() <= CPropData::c_nMaxText ? texts.find(PackedFileName(sText)) : texts.end();
        if (packed == texts.end() || packed->second == i || !m_FileUsed[packed->second])
            return Fail(uint64_t(Head().m_nStringTableOffset) + nOffset, "a text that nothing refers to");
    }
    return true;
}
