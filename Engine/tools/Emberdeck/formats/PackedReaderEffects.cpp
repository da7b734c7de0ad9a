#include <cmath>

#include "formats/PackedParse.h"
#include "model/EffectProperty.h"
#include "model/NameIndex.h"
#include "model/PropKinds.h"
#include "model/Spell.h"

namespace
{

constexpr uint32_t c_nEffectHeadSize = 12;
constexpr uint32_t c_nKeyHeadSize = 24;
constexpr uint32_t c_nPropertyHeadSize = 8;
constexpr uint32_t c_nMaxName = sizeof(CEffectPropertyDesc::m_szName) - 1;

bool HasRecord(const CEffectPropertyDesc& desc)
{
    return PropKind(desc.m_eType).m_bValue;
}

// Whether some whole number of milliseconds is packed as this.
bool IsPackedTime(float fSeconds)
{
    constexpr float fSecondsPerMillisecond = 0.001f;
    const float fNear = std::round(fSeconds / fSecondsPerMillisecond);
    if (!(std::fabs(fNear) <= 2147483648.0f))
        return false;
    for (const float fMilliseconds :
         {fNear, std::round(std::nextafter(fNear, -HUGE_VALF)), std::round(std::nextafter(fNear, HUGE_VALF)),
          fNear - 1.0f, fNear + 1.0f})
    {
        if (fMilliseconds * fSecondsPerMillisecond == fSeconds)
            return true;
    }
    return false;
}

} // namespace

const CEffectTypeDesc* CPackedReader::TypeByID(uint32_t nID)
{
    if (m_TypesByID.empty())
    {
        for (uint32_t i = 0; i < m_Module.GetNumTypes(); ++i)
            m_TypesByID.emplace(m_Module.GetType(i)->m_nTypeID, m_Module.GetType(i));
    }
    const auto found = m_TypesByID.find(nID);
    return found == m_TypesByID.end() ? nullptr : found->second;
}

bool CPackedReader::ReadEffects()
{
    m_Reader.SetWindow(EffectsOffset(), Head().m_nEffectNamesOffset);
    if (Head().m_nNumEffects > m_Reader.Remaining() / c_nEffectHeadSize)
        return Fail(24, QSFormat("%u effects, more than the file has room for", Head().m_nNumEffects));
    m_Library.m_Effects.resize(Head().m_nNumEffects);
    for (CPackedEffect& effect : m_Library.m_Effects)
    {
        if (!ReadEffect(effect))
            return false;
    }
    return m_Reader.Remaining() == 0 || Fail(m_Reader.Tell(), "bytes that belong to no effect");
}

bool CPackedReader::ReadEffect(CPackedEffect& effect)
{
    effect.m_nOffset = m_Reader.Tell();
    const uint32_t nName = m_Reader.ReadU32();
    effect.m_nPhaseLength = m_Reader.ReadU32();
    const uint32_t nNumKeys = m_Reader.ReadU32();
    if (!m_Reader.IsOk())
        return FailShort();
    if (!ReadText(effect.m_nOffset, nName, CSpell::c_nMaxName, effect.m_sName))
        return false;
    if (nNumKeys > m_Reader.Remaining() / c_nKeyHeadSize)
        return Fail(effect.m_nOffset + 8, QSFormat("%u keys, more than the file has room for", nNumKeys));
    effect.m_Keys.resize(nNumKeys);
    for (CPackedKey& key : effect.m_Keys)
    {
        if (!ReadKey(key))
            return false;
    }
    return true;
}

bool CPackedReader::ReadKey(CPackedKey& key)
{
    key.m_nOffset = m_Reader.Tell();
    key.m_nTypeID = m_Reader.ReadU32();
    key.m_fStart = m_Reader.ReadFloat();
    key.m_fEnd = m_Reader.ReadFloat();
    key.m_nID = m_Reader.ReadU32();
    key.m_nLink = m_Reader.ReadU32();
    const uint32_t nNumProps = m_Reader.ReadU32();
    if (!m_Reader.IsOk())
        return FailShort();
    const CEffectTypeDesc* pType = key.m_nTypeID < Head().m_nNumTypes ? TypeByID(key.m_nTypeID) : nullptr;
    if (!pType)
        return Fail(key.m_nOffset, QSFormat("the plug-in has no type %u", key.m_nTypeID));
    for (const float fTime : {key.m_fStart, key.m_fEnd})
    {
        if (!IsPackedTime(fTime))
            return Fail(key.m_nOffset + 4,
                        QSFormat("a time of %g, which is no whole millisecond", double(fTime)));
    }
    m_TypesUsed.resize(Head().m_nNumTypes);
    m_TypesUsed[key.m_nTypeID] = true;
    return ReadProperties(*pType, nNumProps, key);
}

// Records stand in the order of the type's properties; those without a value have none.
bool CPackedReader::ReadProperties(const CEffectTypeDesc& type, uint32_t nCount, CPackedKey& key)
{
    if (nCount > type.m_nNumProps || nCount > m_Reader.Remaining() / c_nPropertyHeadSize)
        return Fail(key.m_nOffset + 20, QSFormat("%u properties, more than there can be", nCount));
    key.m_Properties.reserve(nCount);
    uint32_t nSlot = 0;
    for (uint32_t i = 0; i < nCount; ++i, ++nSlot)
    {
        CPackedProperty& prop = key.m_Properties.emplace_back();
        prop.m_nOffset = m_Reader.Tell();
        const uint32_t nName = m_Reader.ReadU32();
        const uint32_t nEnd = m_Reader.ReadU32();
        if (!m_Reader.IsOk())
            return FailShort();
        if (!ReadText(prop.m_nOffset, nName, c_nMaxName, prop.m_sName))
            return false;
        while (nSlot < type.m_nNumProps && !(HasRecord(type.m_pProps[nSlot]) &&
                                             prop.m_sName == BoundedText(type.m_pProps[nSlot].m_szName)))
            ++nSlot;
        if (nSlot == type.m_nNumProps)
        {
            return Fail(prop.m_nOffset, QSFormat("%s is no property of type %s, or stands out of order",
                                                 prop.m_sName.c_str(), TypeName(type).c_str()));
        }
        if (!ReadPropertyData(type.m_pProps[nSlot], prop))
            return false;
        if (m_Reader.Tell() != nEnd)
        {
            return Fail(prop.m_nOffset + 4,
                        QSFormat("end position %u, but the record ends at %u", nEnd, m_Reader.Tell()));
        }
    }
    const auto nAll =
        static_cast<uint32_t>(std::count_if(type.m_pProps, type.m_pProps + type.m_nNumProps, HasRecord));
    if (nCount < nAll)
        return Fail(key.m_nOffset + 20,
                    QSFormat("%u properties, but the type %s has %u", nCount, TypeName(type).c_str(), nAll));
    return true;
}

bool CPackedReader::ReadPropertyData(const CEffectPropertyDesc& desc, CPackedProperty& prop)
{
    prop.m_eType = desc.m_eType;
    prop.m_bCurve = desc.m_bFunctionCurve != 0;
    if (prop.m_bCurve)
    {
        prop.m_nCurveOffset = m_Reader.ReadU32();
        return m_Reader.IsOk() ? ReadCurve(desc, prop) : FailShort();
    }
    const uint32_t nAt = m_Reader.Tell();
    std::vector<CPackedCurveKey> keys(1);
    keys[0].m_fTime = 0.0f;
    if (!ReadValue(m_Reader, desc, keys[0].m_Value))
        return false;
    prop.m_Keys = CPackedValues(std::move(keys));
    return CheckValues(nAt, desc, prop.m_Keys);
}

bool CPackedReader::ReadCurve(const CEffectPropertyDesc& desc, CPackedProperty& prop)
{
    const uint32_t nAt = m_Reader.Tell() - 4;
    if (prop.m_nCurveOffset % 4 != 0 || prop.m_nCurveOffset >= Head().m_nCurveTableSize)
        return Fail(nAt, QSFormat("no curve can begin at %u of the curve table", prop.m_nCurveOffset));
    CCurve& curve = m_Curves[prop.m_nCurveOffset];
    if (curve.m_nEnd == 0 && !ReadCurveRecord(desc, prop.m_nCurveOffset, curve))
        return false;
    if (curve.m_eType != desc.m_eType)
        return Fail(nAt, "a curve that another property reads as another kind");
    prop.m_Keys = curve.m_Values;
    if (std::find(curve.m_Checks.begin(), curve.m_Checks.end(), &desc) == curve.m_Checks.end())
        curve.m_Checks.push_back(&desc);
    return true;
}

bool CPackedReader::ReadCurveRecord(const CEffectPropertyDesc& desc, uint32_t nOffset, CCurve& curve)
{
    CByteReader reader(m_sBytes, m_Library.m_bBigEndian);
    reader.SetWindow(CurveTableOffset() + nOffset, EffectsOffset());
    const uint32_t nNumKeys = reader.ReadU32();
    if (nNumKeys == 0 || nNumKeys > reader.Remaining() / (4 + PropKind(desc.m_eType).m_nPackedBytes))
        return Fail(reader.Tell() - 4, QSFormat("a curve of %u keys", nNumKeys));
    // No two may share bytes, or a small file could ask for more than any memory.
    const uint64_t nEnd = nOffset + 4 + uint64_t(nNumKeys) * (4 + PropKind(desc.m_eType).m_nPackedBytes);
    const auto own = m_Curves.find(nOffset);
    if ((own != m_Curves.begin() && std::prev(own)->second.m_nEnd > nOffset) ||
        (std::next(own) != m_Curves.end() && std::next(own)->first < nEnd))
        return Fail(CurveTableOffset() + nOffset, "a curve that begins within another");
    std::vector<CPackedCurveKey> keys(nNumKeys);
    for (CPackedCurveKey& key : keys)
    {
        key.m_fTime = reader.ReadFloat();
        if (!ReadValue(reader, desc, key.m_Value))
            return false;
    }
    curve.m_nEnd = static_cast<uint32_t>(nEnd);
    curve.m_eType = desc.m_eType;
    curve.m_Values = CPackedValues(std::move(keys));
    return true;
}

bool CPackedReader::ReadValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value)
{
    const uint32_t nAt = reader.Tell();
    switch (PropKind(desc.m_eType).m_eForm)
    {
    case EPropForm::eText:
        if (desc.m_eType == ePropType_Enum ? !ReadEnumerator(reader, desc, value)
                                           : !ReadTextValue(reader, desc, value))
            return false;
        break;
    case EPropForm::eInt:
        value.m_Value = static_cast<int32_t>(reader.ReadU32());
        break;
    case EPropForm::eFloat:
        value.m_Value = reader.ReadFloat();
        break;
    case EPropForm::eVector:
    {
        CVector3 v;
        for (float* pComponent : {&v.x, &v.y, &v.z})
            *pComponent = reader.ReadFloat();
        value.m_Value = v;
        break;
    }
    case EPropForm::eColor:
        if (!ReadColor(reader, value))
            return false;
        break;
    case EPropForm::eNone:
        return Fail(nAt, QSFormat("%s is of a kind without a form", DescName(desc).c_str()));
    }
    return reader.IsOk() || Fail(nAt, "the file, or the part that this belongs to, ends here");
}

bool CPackedReader::ReadTextValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value)
{
    const uint32_t nAt = reader.Tell();
    const uint32_t nOffset = reader.ReadU32();
    std::string sText;
    const bool bFile = !PropKind(desc.m_eType).m_bTyped;
    if (reader.IsOk() && !ReadText(nAt, nOffset, CPropData::c_nMaxText, sText, bFile))
        return false;
    if (bFile && PackedFileName(sText) != sText)
        return Fail(nAt, "a file name that packing would have changed");
    value.m_Value = std::move(sText);
    return true;
}

bool CPackedReader::ReadEnumerator(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value)
{
    const uint32_t nAt = reader.Tell();
    const uint32_t nIndex = reader.ReadU32();
    const size_t nItems = SplitEnumList(DescData(desc).c_str()).size();
    if (nIndex >= std::max<size_t>(nItems, 1))
        return Fail(nAt, QSFormat("%s has no enumerator %u", DescName(desc).c_str(), nIndex));
    value.m_Value = nIndex;
    return true;
}

bool CPackedReader::ReadColor(CByteReader& reader, CPackedValue& value)
{
    CPackedColor color = {};
    for (float* pChannel : {&color.r, &color.g, &color.b, &color.a})
    {
        const float fChannel = reader.ReadFloat();
        const float fByte = std::round(fChannel * 255.0f);
        if (!(fByte >= 0.0f && fByte <= 255.0f && fByte * c_fOneOver255 == fChannel))
            return Fail(reader.Tell() - 4, QSFormat("a channel of %g, which is no 255th", double(fChannel)));
        *pChannel = fChannel;
    }
    value.m_Value = color;
    return true;
}
