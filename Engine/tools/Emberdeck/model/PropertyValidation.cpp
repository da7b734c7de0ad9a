#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "model/EffectProperty.h"
#include "model/NameIndex.h"
#include "qsnumber.h"
#include "qsstrutils.h"

namespace
{

// Takes the next item off a comma-separated list; false when nothing is left.
bool TakeItem(std::string_view& sList, std::string_view& sItem)
{
    if (sList.empty())
        return false;
    const size_t nComma = sList.find(',');
    sItem = sList.substr(0, nComma);
    sList.remove_prefix(nComma == std::string_view::npos ? sList.size() : nComma + 1);
    return true;
}

int FindItem(std::string_view sList, std::string_view sValue)
{
    sValue = QSTrim(sValue);
    std::string_view sItem;
    for (int nIndex = 0; TakeItem(sList, sItem); ++nIndex)
    {
        if (IsSameName(QSTrim(sItem), sValue))
            return nIndex;
    }
    return -1;
}

// The comparisons are written so that a value that is no number takes the minimum. Without one the end of a
// side is the largest float: a library holds no number that its file couldn't.
float ClampFloat(const CPropRange& range, float fValue)
{
    if (range.m_bHasMin && !(range.m_fMin < fValue))
        fValue = range.m_fMin;
    if (range.m_bHasMax && fValue > range.m_fMax)
        fValue = range.m_fMax;
    return QSNearestFloat(fValue);
}

int32_t ClampInt(const CPropRange& range, int32_t nValue)
{
    if (range.m_bHasMin && nValue < RoundToInt(range.m_fMin))
        nValue = RoundToInt(range.m_fMin);
    if (range.m_bHasMax && nValue > RoundToInt(range.m_fMax))
        nValue = RoundToInt(range.m_fMax);
    return nValue;
}

void ClampKey(uint32_t eType, const CPropRange& range, CPropData& data)
{
    if (eType == ePropType_Int)
    {
        data.SetInt(ClampInt(range, data.GetInt()));
    }
    else if (eType == ePropType_Float)
    {
        data.SetFloat(ClampFloat(range, data.GetFloat()));
    }
    else
    {
        const CVector3 v = data.GetVector();
        data.SetVector(CVector3{ClampFloat(range, v.x), ClampFloat(range, v.y), ClampFloat(range, v.z)});
    }
}

// The comparisons of what stays as it is go by bits: a negative zero is changed, too.
bool IsSameFloat(float fLeft, float fRight)
{
    return std::bit_cast<uint32_t>(fLeft) == std::bit_cast<uint32_t>(fRight);
}

bool IsInRange(uint32_t eType, const CPropRange& range, const CPropData& data)
{
    const auto stays = [&range](float fValue) { return IsSameFloat(ClampFloat(range, fValue), fValue); };
    switch (eType)
    {
    case ePropType_Int:
        return ClampInt(range, data.GetInt()) == data.GetInt();
    case ePropType_Float:
        return stays(data.GetFloat());
    case ePropType_Vector:
    {
        const CVector3 v = data.GetVector();
        return stays(v.x) && stays(v.y) && stays(v.z);
    }
    default:
        return true;
    }
}

// Whether times are as SettleStructure leaves them.
bool AreTimesSettled(const CEffectPropertyDesc& desc, const CPropKey* pKeys, uint32_t nCount)
{
    if (nCount == 0 || !IsSameFloat(pKeys[0].m_fTime, 0.0f))
        return false;
    if (!desc.m_bFunctionCurve)
        return nCount == 1;
    for (uint32_t i = 1; i < nCount; ++i)
    {
        if (!(pKeys[i - 1].m_fTime <= pKeys[i].m_fTime))
            return false;
    }
    const float fLast = pKeys[nCount - 1].m_fTime;
    return desc.m_bInterpolate ? nCount > 1 && fLast == 1.0f : std::isfinite(fLast);
}

} // namespace

bool IsSettled(const CEffectProperty& prop, const CPropRange& range)
{
    if (!prop.m_pDesc || prop.m_pDesc->m_eType == ePropType_UI)
        return true;
    const CEffectPropertyDesc& desc = *prop.m_pDesc;
    const CPropKey* pKeys = prop.m_Keys.begin();
    if (!AreTimesSettled(desc, pKeys, prop.m_Keys.Size()))
        return false;
    const bool bEnum = desc.m_eType == ePropType_Enum;
    const std::string_view sList = bEnum ? BoundedText(desc.m_szData) : std::string_view();
    for (uint32_t i = 0; i < prop.m_Keys.Size(); ++i)
    {
        if (bEnum ? FindItem(sList, pKeys[i].m_Data.GetText()) < 0
                  : !IsInRange(desc.m_eType, range, pKeys[i].m_Data))
            return false;
    }
    return true;
}

// Works on the list itself: this pass runs on every value of a library that is loaded, and most are in
// line already.
void ValidateStructure(CEffectProperty* pProp)
{
    const CEffectPropertyDesc* pDesc = pProp ? pProp->m_pDesc : nullptr;
    if (!pDesc || pDesc->m_eType == ePropType_UI)
        return;
    CPropKeyList& keys = pProp->m_Keys;
    pProp->SortKeys();
    if (keys.Size() == 0)
        pProp->AddDefaultKey(0.0f);
    if (keys.Size() == 0)
        return; // out of memory
    if (!pDesc->m_bFunctionCurve)
        keys.Shorten(1);
    keys[0].m_fTime = 0.0f;
    if (pDesc->m_bFunctionCurve && pDesc->m_bInterpolate)
    {
        if (keys.Size() > 1)
            keys[keys.Size() - 1].m_fTime = 1.0f;
        else
            pProp->AddDefaultKey(1.0f);
    }
    if (keys.Size() > 1)
        pProp->SortNow();
}

// What is pinned on an end by one pass comes to lie inside of what is beyond that end, so that the passes
// leave such keys on the end in the opposite order.
void SettleStructure(CEffectProperty* pProp)
{
    const CEffectPropertyDesc* pDesc = pProp ? pProp->m_pDesc : nullptr;
    if (!pDesc || pDesc->m_eType == ePropType_UI)
        return;
    CPropKeyList& keys = pProp->m_Keys;
    pProp->SortKeys(); // a time that is no number is the last one, and stays there
    for (CPropKey& key : keys)
    {
        if (!std::isfinite(key.m_fTime))
            key.m_fTime =
                std::isnan(key.m_fTime) ? std::numeric_limits<float>::max() : QSNearestFloat(key.m_fTime);
    }
    ValidateStructure(pProp);
    CPropKey* const pBegin = keys.begin();
    CPropKey* const pFirst =
        std::find_if(pBegin, keys.end(), [](const CPropKey& key) { return key.m_fTime >= 0.0f; });
    std::for_each(pBegin, pFirst, [](CPropKey& key) { key.m_fTime = 0.0f; });
    std::reverse(pBegin, pFirst);
    if (!pDesc->m_bFunctionCurve || !pDesc->m_bInterpolate)
        return;
    CPropKey* const pBeyond =
        std::find_if(pFirst, keys.end(), [](const CPropKey& key) { return key.m_fTime > 1.0f; });
    std::for_each(pBeyond, keys.end(), [](CPropKey& key) { key.m_fTime = 1.0f; });
    std::reverse(pBeyond, keys.end());
}

CPropRange DescRange(const CEffectPropertyDesc& desc)
{
    if (desc.m_eType != ePropType_Int && desc.m_eType != ePropType_Float && desc.m_eType != ePropType_Vector)
        return {};
    // The text ends in its array nearly always, and can be read where it is then.
    const std::string_view sData = BoundedText(desc.m_szData);
    if (sData.size() < sizeof(desc.m_szData) - 1)
        return ParseRange(desc.m_szData);
    char szData[sizeof(desc.m_szData)];
    std::memcpy(szData, desc.m_szData, sizeof(szData) - 1);
    szData[sizeof(szData) - 1] = 0;
    return ParseRange(szData);
}

void ClampToRange(CEffectProperty* pProp)
{
    if (pProp && pProp->GetDesc() && pProp->GetNumKeys() != 0)
        ClampToRange(pProp, DescRange(*pProp->GetDesc()));
}

void ClampToRange(CEffectProperty* pProp, const CPropRange& range)
{
    const uint32_t eType = pProp && pProp->GetDesc() ? pProp->GetDesc()->m_eType : uint32_t(ePropType_None);
    const bool bFloats = eType == ePropType_Float || eType == ePropType_Vector;
    if (!bFloats && (eType != ePropType_Int || (!range.m_bHasMin && !range.m_bHasMax)))
        return;
    pProp->SortPending();
    for (CPropKey& key : pProp->m_Keys)
        ClampKey(eType, range, key.m_Data);
}

void ValidateEnum(CEffectProperty* pProp)
{
    if (!pProp || !pProp->GetDesc() || pProp->GetDesc()->m_eType != ePropType_Enum)
        return;
    const CEffectPropertyDesc& desc = *pProp->GetDesc();
    const std::string_view sList = BoundedText(desc.m_szData);
    for (uint32_t i = 0; i < pProp->GetNumKeys(); ++i)
    {
        CPropData& data = pProp->GetKey(i)->m_Data;
        if (FindItem(sList, data.GetText()) < 0)
            data.Assign(desc.m_Default);
    }
}

void Validate(CEffectProperty* pProp)
{
    SettleStructure(pProp);
    ClampToRange(pProp);
    ValidateEnum(pProp);
}

void Validate(CEffectProperty* pProp, const CPropRange& range)
{
    SettleStructure(pProp);
    ClampToRange(pProp, range);
    ValidateEnum(pProp);
}

CPropRange ParseRange(const char* pszData)
{
    CPropRange range;
    const char* pszSplit = pszData ? std::strchr(pszData, ';') : nullptr;
    if (!pszSplit)
        return range;
    // A conversion stops at the semicolon by itself, so no side has to be cut out.
    range.m_bHasMin = pszSplit != pszData;
    if (range.m_bHasMin)
        range.m_fMin = QSTextToFloat(pszData);
    range.m_bHasMax = pszSplit[1] != 0;
    if (range.m_bHasMax)
        range.m_fMax = QSTextToFloat(pszSplit + 1);
    return range;
}

int FindEnumIndex(const char* pszList, const char* pszValue)
{
    return FindItem(pszList ? pszList : "", pszValue ? pszValue : "");
}

std::vector<std::string> SplitEnumList(const char* pszList)
{
    std::vector<std::string> items;
    std::string_view sList = pszList ? pszList : "";
    std::string_view sItem;
    while (TakeItem(sList, sItem))
        items.emplace_back(sItem);
    return items;
}

int32_t RoundToInt(float fValue)
{
    if (std::isnan(fValue))
        return 0;
    // In double, where the sum is exact: a float below a half would round up to 1, a large one to its
    // neighbour.
    const double fSum = fValue < 0.0f ? fValue - 0.5 : fValue + 0.5;
    if (fSum >= 2147483648.0)
        return std::numeric_limits<int32_t>::max();
    if (fSum <= -2147483649.0)
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(fSum);
}
