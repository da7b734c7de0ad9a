#include "model/FunctionCurve.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <string_view>

#include "model/MakeOrNull.h"
#include "model/PropKinds.h"
#include "qsassert.h"

namespace
{

uint32_t KindOf(const CEffectProperty& prop)
{
    return prop.GetDesc() ? prop.GetDesc()->m_eType : uint32_t(ePropType_None);
}

// Place of an axis' channel in the colour word; all above blue are alpha.
int ColorShift(int nAxis)
{
    constexpr int c_Shifts[] = {16, 8, 0, 24};
    return c_Shifts[std::min(nAxis, 3)];
}

float AxisOf(const CVector3& v, int nAxis)
{
    return nAxis == 0 ? v.x : nAxis == 1 ? v.y : nAxis == 2 ? v.z : 0.0f;
}

void SetVectorAxis(CPropData& data, int nAxis, float fValue)
{
    CVector3 v = data.GetVector();
    if (nAxis == 0)
        v.x = fValue;
    else if (nAxis == 1)
        v.y = fValue;
    else if (nAxis == 2)
        v.z = fValue;
    data.SetVector(v);
}

void SetColorAxis(CPropData& data, int nAxis, float fValue)
{
    if (nAxis < 0)
        return;
    // In float, so that every channel that GetAxisValue gave comes back as it was.
    const auto nChannel = static_cast<uint32_t>(std::clamp(fValue, 0.0f, 1.0f) * 255.0f);
    const int nShift = ColorShift(nAxis);
    data.SetColor((data.GetColor() & ~(0xFFu << nShift)) | nChannel << nShift);
}

// What rules the value at a time: key m_nKey alone, or a part of the way from it to the next one.
struct CCurvePlace
{
    uint32_t m_nKey = 0;
    bool m_bBetween = false;
    double m_fPart = 0.0; // 0 to 1 in m_bBetween
};

// The keys need not be in order: while a curve is edited they may not be. The walk from the front finds a
// key all the same, and the one before it lies below the time, so nothing is divided by zero.
CCurvePlace FindPlace(const CEffectProperty& prop, double fTime, uint32_t* pnWalk = nullptr)
{
    const uint32_t nNumKeys = prop.GetNumKeys();
    if (!(fTime > double(prop.GetKey(0)->m_fTime)))
        return CCurvePlace{0};
    if (!(fTime < double(prop.GetKey(nNumKeys - 1)->m_fTime)))
        return CCurvePlace{nNumKeys - 1};
    uint32_t nKey = pnWalk && *pnWalk > 0 && *pnWalk < nNumKeys ? *pnWalk : 1;
    while (nKey + 1 < nNumKeys && double(prop.GetKey(nKey)->m_fTime) < fTime)
        ++nKey;
    if (pnWalk)
        *pnWalk = nKey;
    if (!prop.GetDesc() || !prop.GetDesc()->m_bInterpolate)
        return CCurvePlace{nKey - 1};
    const double fBefore = prop.GetKey(nKey - 1)->m_fTime;
    return CCurvePlace{nKey - 1, true, (fTime - fBefore) / (double(prop.GetKey(nKey)->m_fTime) - fBefore)};
}

uint32_t MixChannel(uint32_t nFrom, uint32_t nTo, double fPart)
{
    // Equal ends give that value; the formula could come out a hair below and lose one.
    if (nFrom == nTo)
        return nFrom;
    const double fMixed = (1.0 - fPart) * nFrom + fPart * nTo;
    return fMixed > 0.0 ? static_cast<uint32_t>(std::min(fMixed, 255.0)) : 0;
}

// All four channels of a property's colour word.
uint32_t MixColor(uint32_t nFrom, uint32_t nTo, double fPart)
{
    uint32_t nMixed = 0;
    for (int nShift = 0; nShift < 32; nShift += 8)
        nMixed |= MixChannel(nFrom >> nShift & 0xFF, nTo >> nShift & 0xFF, fPart) << nShift;
    return nMixed;
}

// Values that compare equal have one hash, -0 and 0 among them.
uint32_t FloatBits(float fValue)
{
    if (fValue == 0.0f)
        return 0;
    uint32_t nBits;
    std::memcpy(&nBits, &fValue, sizeof(nBits));
    return nBits;
}

class CCurveHash
{
public:
    void Add(uint64_t nWord)
    {
        m_nHash = (m_nHash ^ nWord) * 0x9E3779B97F4A7C15u;
        m_nHash ^= m_nHash >> 32;
    }
    void Add(std::string_view sText) { Add(std::hash<std::string_view>()(sText)); }
    uint64_t m_nHash = 0;
};

uint64_t HashCurve(const CEffectProperty& prop)
{
    const uint32_t eType = KindOf(prop);
    CCurveHash hash;
    hash.Add(eType);
    hash.Add(prop.GetNumKeys());
    for (uint32_t i = 0; i < prop.GetNumKeys(); ++i)
    {
        const CPropKey& key = *prop.GetKey(i);
        switch (PropKind(eType).m_eForm)
        {
        case EPropForm::eText:
            hash.Add(key.m_Data.GetText());
            break;
        case EPropForm::eInt:
        case EPropForm::eColor:
            hash.Add(key.m_Data.GetColor());
            break;
        case EPropForm::eFloat:
            hash.Add(FloatBits(key.m_Data.GetFloat()));
            break;
        case EPropForm::eVector:
        {
            const CVector3 v = key.m_Data.GetVector();
            hash.Add(uint64_t(FloatBits(v.x)) << 32 | FloatBits(v.y));
            hash.Add(FloatBits(v.z));
            break;
        }
        case EPropForm::eNone: // the comparison reports it
            return hash.m_nHash;
        }
        hash.Add(FloatBits(key.m_fTime));
    }
    return hash.m_nHash;
}

bool IsSameCurve(const CEffectProperty& left, const CEffectProperty& right)
{
    const uint32_t eType = KindOf(left);
    if (eType != KindOf(right) || left.GetNumKeys() != right.GetNumKeys())
        return false;
    if (&left == &right)
        return true;
    for (uint32_t i = 0; i < left.GetNumKeys(); ++i)
    {
        const CPropKey& leftKey = *left.GetKey(i);
        const CPropKey& rightKey = *right.GetKey(i);
        if (leftKey.m_fTime != rightKey.m_fTime || !IsSameValue(eType, leftKey.m_Data, rightKey.m_Data))
            return false;
    }
    return true;
}

} // namespace

double GetAxisValue(const CEffectProperty& prop, const CPropKey& key, int nAxis)
{
    switch (PropKind(KindOf(prop)).m_eForm)
    {
    case EPropForm::eInt:
        return key.m_Data.GetInt();
    case EPropForm::eFloat:
        return key.m_Data.GetFloat();
    case EPropForm::eColor:
        if (nAxis < 0)
            return 0.0;
        return static_cast<float>(key.m_Data.GetColor() >> ColorShift(nAxis) & 0xFF) * c_fOneOver255;
    case EPropForm::eVector:
        return AxisOf(key.m_Data.GetVector(), nAxis);
    default:
        return 0.0;
    }
}

void SetAxisValue(float fValue, CPropKey& key, int nAxis, CEffectProperty& prop)
{
    if (!std::isfinite(fValue))
        fValue = 0.0f;
    switch (PropKind(KindOf(prop)).m_eForm)
    {
    case EPropForm::eInt:
        key.m_Data.SetInt(RoundToInt(fValue));
        break;
    case EPropForm::eFloat:
        key.m_Data.SetFloat(fValue);
        break;
    case EPropForm::eColor:
        SetColorAxis(key.m_Data, nAxis, fValue);
        break;
    case EPropForm::eVector:
        SetVectorAxis(key.m_Data, nAxis, fValue);
        break;
    default:
        break;
    }
    ClampToRange(&prop);
}

double EvaluateAxis(const CEffectProperty& prop, int nAxis, double fTime)
{
    if (prop.GetNumKeys() == 0)
        return 0.0;
    const CCurvePlace place = FindPlace(prop, fTime);
    const double fFrom = GetAxisValue(prop, *prop.GetKey(place.m_nKey), nAxis);
    if (!place.m_bBetween)
        return fFrom;
    const double fTo = GetAxisValue(prop, *prop.GetKey(place.m_nKey + 1), nAxis);
    return (1.0 - place.m_fPart) * fFrom + place.m_fPart * fTo;
}

CPropData EvaluateValue(const CEffectProperty& prop, double fTime)
{
    if (prop.GetNumKeys() == 0)
        return CPropData();
    const CCurvePlace place = FindPlace(prop, fTime);
    CPropData data = prop.GetKey(place.m_nKey)->m_Data;
    if (!place.m_bBetween)
        return data;
    const CPropData& to = prop.GetKey(place.m_nKey + 1)->m_Data;
    switch (PropKind(KindOf(prop)).m_eForm)
    {
    case EPropForm::eInt:
        data.SetInt(RoundToInt(static_cast<float>(EvaluateAxis(prop, 0, fTime))));
        break;
    case EPropForm::eFloat:
        data.SetFloat(static_cast<float>(EvaluateAxis(prop, 0, fTime)));
        break;
    case EPropForm::eColor:
        data.SetColor(MixColor(data.GetColor(), to.GetColor(), place.m_fPart));
        break;
    case EPropForm::eVector:
        data.SetVector(CVector3{static_cast<float>(EvaluateAxis(prop, 0, fTime)),
                                static_cast<float>(EvaluateAxis(prop, 1, fTime)),
                                static_cast<float>(EvaluateAxis(prop, 2, fTime))});
        break;
    default:
        break;
    }
    return data;
}

uint32_t EvaluateColor(const CEffectProperty& prop, float fTime, uint32_t* pnWalk)
{
    if (prop.GetNumKeys() == 0 || KindOf(prop) != ePropType_Color)
        return 0;
    const CCurvePlace place = FindPlace(prop, fTime, pnWalk);
    const uint32_t nFrom = prop.GetKey(place.m_nKey)->m_Data.GetColor();
    if (!place.m_bBetween)
        return nFrom & 0xFFFFFF;
    return MixColor(nFrom, prop.GetKey(place.m_nKey + 1)->m_Data.GetColor(), place.m_fPart) & 0xFFFFFF;
}

int CFunctionCurveData::FindProperty(const CEffectProperty* pProp) const
{
    QS_ASSERT_TEXT(pProp && pProp->GetDesc() && pProp->GetDesc()->m_bFunctionCurve,
                   "pProp && pProp->GetDesc()->m_bFunctionCurve",
                   "Error: Invalid property passed into the function curve data object");
    if (!pProp)
        return -1;
    const uint64_t nHash = HashCurve(*pProp);
    if (const int nNext = FindNext(*pProp, nHash); nNext >= 0)
        return nNext;
    int nFound = -1;
    TryAllocating(
        [&]
        {
            Rehash(pProp, nHash);
            const auto bucket = m_Buckets.find(nHash);
            if (bucket == m_Buckets.end())
                return;
            for (const uint32_t nEntry : bucket->second)
            {
                if (IsSameCurve(*m_Entries[nEntry].m_pProp, *pProp))
                {
                    nFound = static_cast<int>(nEntry);
                    return;
                }
            }
        });
    return nFound;
}

int CFunctionCurveData::Add(const CEffectProperty* pProp)
{
    if (!pProp)
        return -1;
    const auto nEntry = static_cast<uint32_t>(m_Entries.size());
    const bool bAdded = TryAllocating(
        [&]
        {
            const uint64_t nHash = HashCurve(*pProp);
            m_Entries.push_back(CEntry{pProp, 0});
            m_ByProperty.try_emplace(pProp, CHome{nEntry, nHash});
            std::vector<uint32_t>& bucket = m_Buckets[nHash];
            m_Added.resize(nEntry);
            m_Added.push_back(CAdded{nHash, bucket.empty()});
            bucket.push_back(nEntry);
        });
    if (bAdded)
        return static_cast<int>(nEntry);
    m_Entries.resize(nEntry, CEntry{nullptr, 0});
    const auto home = m_ByProperty.find(pProp);
    if (home != m_ByProperty.end() && home->second.m_nEntry == nEntry)
        m_ByProperty.erase(home);
    return -1;
}

// A library's properties are asked for in the order in which they were added, mostly: the entry behind the one
// found last may be it. That spares the searches of tables that no cache holds. -1 when they are needed.
int CFunctionCurveData::FindNext(const CEffectProperty& prop, uint64_t nHash) const
{
    if (m_bMoved || m_nNext >= m_Entries.size() || m_Entries[m_nNext].m_pProp != &prop)
    {
        const auto home = m_bMoved ? m_ByProperty.end() : m_ByProperty.find(&prop);
        if (home != m_ByProperty.end())
            m_nNext = home->second.m_nEntry + 1;
        return -1;
    }
    const CAdded& added = m_Added[m_nNext++];
    // Unchanged since, and no entry before it has its hash.
    return added.m_nHash == nHash && added.m_bFirst ? static_cast<int>(m_nNext) - 1 : -1;
}

// An entry whose property was repaired since it was added moves to the bucket of its present curve.
void CFunctionCurveData::Rehash(const CEffectProperty* pProp, uint64_t nHash) const
{
    const auto home = m_ByProperty.find(pProp);
    if (home == m_ByProperty.end() || home->second.m_nHash == nHash)
        return;
    m_bMoved = true;
    std::vector<uint32_t>& to = m_Buckets[nHash];
    to.insert(std::lower_bound(to.begin(), to.end(), home->second.m_nEntry), home->second.m_nEntry);
    std::vector<uint32_t>& from = m_Buckets[home->second.m_nHash];
    from.erase(std::lower_bound(from.begin(), from.end(), home->second.m_nEntry));
    home->second.m_nHash = nHash;
}
