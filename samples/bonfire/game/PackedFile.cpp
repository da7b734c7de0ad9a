// SPDX-License-Identifier: 0BSD
#include "game/PackedFile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>

namespace
{
constexpr uint32_t c_nMagic = 0x58465351; // "QSFX"
constexpr uint32_t c_nFileVersion = 2;
constexpr uint32_t c_nHeaderSize = 40;
constexpr uint32_t c_nMinEffectSize = 12;   // name, phase length, key count
constexpr uint32_t c_nMinKeySize = 24;      // type, start, end, id, link, property count
constexpr uint32_t c_nMinPropertySize = 12; // name, end position, value or curve

// Bytes that a value takes in the file; 0 for a kind without values.
uint32_t ValueSize(uint32_t eType)
{
    switch (eType)
    {
    case ePropType_None:
    case ePropType_UI:
        return 0;
    case ePropType_Vector:
        return 12;
    case ePropType_Color:
        return 16;
    default:
        return eType <= ePropType_FireglassRef ? 4 : 0;
    }
}

// Walks over the file. Offsets are 64 bits wide, so that no sum of two numbers of the file overflows.
class CReader
{
public:
    CReader(CPackedFile& file, const CEffectTypeTable& types, std::string& sError)
        : m_File(file),
          m_Types(types),
          m_sError(sError)
    {
    }

    bool Read()
    {
        return ReadHeader() && ReadKeyCounts() && ReadStrings() && ReadEffects() && ReadNames() &&
               CheckCurves();
    }

private:
    bool Damaged(uint64_t nOffset, const std::string& sWhat)
    {
        m_sError = "damaged at offset " + std::to_string(nOffset) + ": " + sWhat;
        return false;
    }
    uint64_t Left() const { return m_nLimit - m_nPos; }

    // Unchecked: who calls has made sure that the bytes are there.
    uint32_t TakeU32()
    {
        const uint8_t* p = m_File.m_Bytes.data() + m_nPos;
        m_nPos += 4;
        if (m_File.m_bBigEndian)
            return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
        return uint32_t(p[3]) << 24 | uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
    }
    float TakeF32() { return std::bit_cast<float>(TakeU32()); }

    bool Need(uint64_t nBytes, const char* pszWhat)
    {
        return nBytes <= Left() || Damaged(m_nPos, std::string(pszWhat) + " is cut off");
    }

    bool ReadHeader();
    bool CheckHeader();
    bool ReadKeyCounts();
    bool ReadStrings();
    bool ReadEffects();
    bool ReadEffect();
    bool ReadKey(CKey& key);
    bool ReadProperty(const CEffectTypeDesc& type, uint32_t& nSlot, CProperty& prop);
    bool ReadText(std::string_view& sText);
    bool ReadValue(const CEffectPropertyDesc& desc, CValue& value);
    bool ReadCurve(const CEffectPropertyDesc& desc, uint32_t& nCurve);
    bool ReadCurveRecord(const CEffectPropertyDesc& desc, CCurve& curve);
    bool ReadNames();
    bool CheckCurves();
    bool SkipCurvesWithoutValues(uint32_t nAt, uint32_t nEnd);

    CPackedFile& m_File;
    const CEffectTypeTable& m_Types;
    std::string& m_sError;
    uint64_t m_nPos = 0;
    uint64_t m_nLimit = 0;           // end of the section that is being read
    uint64_t m_nCurves = 0;          // start of the curve table
    std::vector<uint32_t> m_Counted; // keys met, by type

    struct CSpan
    {
        uint32_t m_nSize = 0;
        uint32_t m_nIndex = 0;
        uint32_t m_eType = 0;
        uint32_t m_nMaxEnum = 0; // the largest index in it, for the other enumerations that share it
    };
    std::map<uint32_t, CSpan> m_CurveSpans; // by offset in the curve table
};

bool CReader::ReadHeader()
{
    m_nLimit = m_File.m_Bytes.size();
    if (m_nLimit > UINT32_MAX)
        return Damaged(0, "the file is larger than its offsets can tell");
    if (!Need(c_nHeaderSize, "the header"))
        return false;
    CHeader& h = m_File.m_Header;
    m_File.m_bBigEndian = m_File.m_Bytes[0] == 'X'; // the magic number shows which end comes first
    for (uint32_t* pField :
         {&h.m_nMagic, &h.m_nFileVersion, &h.m_nTypeTableVersion, &h.m_nStringTableSize, &h.m_nCurveTableSize,
          &h.m_nNumKeys, &h.m_nNumEffects, &h.m_nNumTypes, &h.m_nStringTableOffset, &h.m_nEffectNamesOffset})
        *pField = TakeU32();
    return CheckHeader();
}

bool CReader::CheckHeader()
{
    const CHeader& h = m_File.m_Header;
    const uint64_t nSize = m_File.m_Bytes.size();
    if (h.m_nMagic != c_nMagic)
        return Damaged(0, "this is no packed effect file");
    if (h.m_nFileVersion != c_nFileVersion)
        return Damaged(4, "file version " + std::to_string(h.m_nFileVersion) + " instead of 2");
    if (h.m_nTypeTableVersion != m_Types.m_nVersion)
    {
        m_sError = "packed with version " + std::to_string(h.m_nTypeTableVersion) +
                   " of the effect types, the plug-in offers version " + std::to_string(m_Types.m_nVersion);
        return false;
    }
    if (h.m_nNumTypes != m_Types.m_nNumTypes)
        return Damaged(28, std::to_string(h.m_nNumTypes) + " effect types, the plug-in has " +
                               std::to_string(m_Types.m_nNumTypes));
    if (h.m_nStringTableOffset != c_nHeaderSize + 4 * uint64_t(h.m_nNumTypes))
        return Damaged(32, "the string table is not behind the key counts");
    if (h.m_nStringTableOffset > nSize)
        return Damaged(32, "the string table begins behind the end of the file");
    if (h.m_nStringTableSize % 4 != 0)
        return Damaged(12, "the string table's size is no multiple of 4");
    m_nCurves = uint64_t(h.m_nStringTableOffset) + h.m_nStringTableSize;
    if (m_nCurves > nSize)
        return Damaged(12, "the string table is larger than the file");
    if (m_nCurves + h.m_nCurveTableSize > nSize)
        return Damaged(16, "the curve table is larger than the file");
    if (h.m_nEffectNamesOffset < m_nCurves + h.m_nCurveTableSize)
        return Damaged(36, "the effect names lie before the effects");
    if (h.m_nEffectNamesOffset + 4 * uint64_t(h.m_nNumEffects) != nSize)
        return Damaged(36, "the effect names don't end with the file");
    return true;
}

bool CReader::ReadKeyCounts()
{
    const uint32_t nTypes = m_File.m_Header.m_nNumTypes;
    m_Counted.assign(nTypes, 0);
    uint64_t nSum = 0;
    for (uint32_t i = 0; i < nTypes; ++i)
    {
        m_File.m_KeyCounts.push_back(TakeU32());
        nSum += m_File.m_KeyCounts.back();
    }
    return nSum == m_File.m_Header.m_nNumKeys || Damaged(20, "the key counts of the types have another sum");
}

bool CReader::ReadStrings()
{
    const char* pszTable = reinterpret_cast<const char*>(m_File.m_Bytes.data()) + m_nPos;
    const uint64_t nStart = m_nPos;
    const uint32_t nSize = m_File.m_Header.m_nStringTableSize;
    uint32_t nAt = 0;
    while (nAt < nSize)
    {
        const char* pEnd = std::find(pszTable + nAt, pszTable + nSize, '\0');
        if (pEnd == pszTable + nSize)
            return Damaged(nStart + nAt, "a text without an end");
        m_File.m_Strings.emplace_back(nAt, std::string_view(pszTable + nAt, size_t(pEnd - pszTable) - nAt));
        const auto nNext = uint32_t(pEnd - pszTable) / 4 * 4 + 4; // the size is a multiple of 4
        if (std::any_of(pEnd, pszTable + nNext, [](char c) { return c != '\0'; }))
            return Damaged(nStart + nAt, "a text that isn't filled up with zeros");
        nAt = nNext;
    }
    std::vector<std::string_view> sorted;
    for (const auto& [nOffset, sText] : m_File.m_Strings)
        sorted.push_back(sText);
    std::sort(sorted.begin(), sorted.end());
    const auto twin = std::adjacent_find(sorted.begin(), sorted.end());
    if (twin != sorted.end())
        return Damaged(nStart + uint64_t(std::max(twin[0].data(), twin[1].data()) - pszTable),
                       "a text stored twice");
    m_nPos = m_nCurves + m_File.m_Header.m_nCurveTableSize;
    return true;
}

bool CReader::ReadEffects()
{
    m_nLimit = m_File.m_Header.m_nEffectNamesOffset;
    const uint32_t nEffects = m_File.m_Header.m_nNumEffects;
    if (nEffects > Left() / c_nMinEffectSize)
        return Damaged(24, "more effects than the file has room for");
    m_File.m_Effects.reserve(nEffects);
    for (uint32_t i = 0; i < nEffects; ++i)
        if (!ReadEffect())
            return false;
    if (Left() != 0)
        return Damaged(m_nPos, "bytes that belong to no effect");
    for (uint32_t i = 0; i < m_Counted.size(); ++i)
        if (m_Counted[i] != m_File.m_KeyCounts[i])
            return Damaged(c_nHeaderSize + 4 * uint64_t(i), std::to_string(m_File.m_KeyCounts[i]) +
                                                                " keys of a type of which there are " +
                                                                std::to_string(m_Counted[i]));
    return true;
}

bool CReader::ReadEffect()
{
    CEffect& effect = m_File.m_Effects.emplace_back();
    effect.m_nOffset = uint32_t(m_nPos);
    if (!Need(c_nMinEffectSize, "an effect") || !ReadText(effect.m_sName))
        return false;
    effect.m_nPhaseLength = TakeU32();
    const uint32_t nKeys = TakeU32();
    if (nKeys > Left() / c_nMinKeySize)
        return Damaged(m_nPos - 4, "more keys than the file has room for");
    effect.m_Keys.resize(nKeys);
    for (CKey& key : effect.m_Keys)
        if (!ReadKey(key))
            return false;
    return true;
}

bool CReader::ReadKey(CKey& key)
{
    key.m_nOffset = uint32_t(m_nPos);
    if (!Need(c_nMinKeySize, "a key"))
        return false;
    const uint32_t nTypeID = TakeU32();
    key.m_pType = FindType(m_Types, nTypeID);
    if (nTypeID >= m_Counted.size() || !key.m_pType)
        return Damaged(key.m_nOffset, "a key of an unknown type");
    ++m_Counted[nTypeID];
    key.m_fStart = TakeF32();
    key.m_fEnd = TakeF32();
    if (!std::isfinite(key.m_fStart) || !std::isfinite(key.m_fEnd))
        return Damaged(key.m_nOffset + uint64_t(4), "a time that is no number");
    key.m_nID = TakeU32();
    key.m_nLink = TakeU32();
    const uint32_t nProps = TakeU32();
    if (nProps > (key.m_pType->m_pProps ? key.m_pType->m_nNumProps : 0))
        return Damaged(m_nPos - 4, "more properties than the type has");
    if (nProps > Left() / c_nMinPropertySize)
        return Damaged(m_nPos - 4, "more properties than the file has room for");
    key.m_Properties.resize(nProps);
    uint32_t nSlot = 0;
    for (CProperty& prop : key.m_Properties)
        if (!ReadProperty(*key.m_pType, nSlot, prop))
            return false;
    return true;
}

// Records stand in the order of the type's slots; nSlot is the first that may come.
bool CReader::ReadProperty(const CEffectTypeDesc& type, uint32_t& nSlot, CProperty& prop)
{
    prop.m_nOffset = uint32_t(m_nPos);
    if (!Need(c_nMinPropertySize, "a property"))
        return false;
    std::string_view sName;
    if (!ReadText(sName))
        return false;
    const auto fits = [&](const CEffectPropertyDesc& desc)
    { return ValueSize(desc.m_eType) != 0 && FieldText(desc.m_szName) == sName; };
    while (nSlot < type.m_nNumProps && !fits(type.m_pProps[nSlot]))
        ++nSlot;
    if (nSlot == type.m_nNumProps)
        return Damaged(prop.m_nOffset, "a property that the type doesn't have at this place");
    prop.m_pDesc = &type.m_pProps[nSlot++];
    const uint32_t nEnd = TakeU32();
    if (!(prop.m_pDesc->m_bFunctionCurve ? ReadCurve(*prop.m_pDesc, prop.m_nCurve)
                                         : ReadValue(*prop.m_pDesc, prop.m_Value)))
        return false;
    return nEnd == m_nPos ||
           Damaged(prop.m_nOffset + uint64_t(4), "a property that ends elsewhere than it says");
}

bool CReader::ReadText(std::string_view& sText)
{
    const uint32_t nOffset = TakeU32();
    const auto it = std::lower_bound(m_File.m_Strings.begin(), m_File.m_Strings.end(), nOffset,
                                     [](const auto& entry, uint32_t n) { return entry.first < n; });
    if (it == m_File.m_Strings.end() || it->first != nOffset)
        return Damaged(m_nPos - 4, "no text begins at " + std::to_string(nOffset) + " of the string table");
    sText = it->second;
    return true;
}

bool CReader::ReadValue(const CEffectPropertyDesc& desc, CValue& value)
{
    value.m_eType = desc.m_eType;
    const uint32_t nSize = ValueSize(desc.m_eType);
    if (!Need(nSize, "a value"))
        return false;
    switch (desc.m_eType)
    {
    case ePropType_Int:
        value.m_nInt = int32_t(TakeU32());
        return true;
    case ePropType_Enum:
        value.m_nEnum = TakeU32();
        return value.m_nEnum < std::max(1u, CountEnumerators(FieldText(desc.m_szData))) ||
               Damaged(m_nPos - 4, "an index behind the last enumerator");
    case ePropType_Float:
    case ePropType_Vector:
    case ePropType_Color:
        for (uint32_t i = 0; i < nSize / 4; ++i)
            value.m_Floats[i] = TakeF32();
        return true;
    default:
        return ReadText(value.m_sText);
    }
}

bool CReader::ReadCurve(const CEffectPropertyDesc& desc, uint32_t& nCurve)
{
    const uint64_t nReference = m_nPos;
    const uint32_t nOffset = TakeU32();
    const uint32_t nTable = m_File.m_Header.m_nCurveTableSize;
    const auto next = m_CurveSpans.lower_bound(nOffset);
    if (next != m_CurveSpans.end() && next->first == nOffset)
    {
        const CSpan& span = next->second;
        if (span.m_eType != desc.m_eType)
            return Damaged(nReference, "a curve of another kind");
        if (desc.m_eType == ePropType_Enum &&
            span.m_nMaxEnum >= std::max(1u, CountEnumerators(FieldText(desc.m_szData))))
            return Damaged(nReference, "a curve with an index behind the last enumerator");
        nCurve = span.m_nIndex;
        return true;
    }
    if (nOffset > nTable || nTable - nOffset < 4)
        return Damaged(nReference, "a curve outside the curve table");
    // No two records may share bytes, or a small file could claim any amount of memory.
    if (next != m_CurveSpans.begin())
    {
        const auto& [nBefore, span] = *std::prev(next);
        if (nOffset - nBefore < span.m_nSize)
            return Damaged(nReference, "a curve that begins inside another");
    }
    CCurve curve;
    curve.m_nOffset = nOffset;
    const uint64_t nEnd = next == m_CurveSpans.end() ? nTable : next->first;
    const uint64_t nOuterPos = m_nPos, nOuterLimit = m_nLimit;
    m_nPos = m_nCurves + nOffset;
    m_nLimit = m_nCurves + nEnd;
    if (!ReadCurveRecord(desc, curve))
        return false;
    CSpan span = {uint32_t(m_nPos - m_nCurves) - nOffset, uint32_t(m_File.m_Curves.size()), desc.m_eType, 0};
    for (const CCurveKey& key : curve.m_Keys)
        span.m_nMaxEnum = std::max(span.m_nMaxEnum, key.m_Value.m_nEnum);
    m_nPos = nOuterPos;
    m_nLimit = nOuterLimit;
    nCurve = span.m_nIndex;
    m_CurveSpans.emplace(nOffset, span);
    m_File.m_Curves.push_back(std::move(curve));
    return true;
}

bool CReader::ReadCurveRecord(const CEffectPropertyDesc& desc, CCurve& curve)
{
    if (!Need(4, "a curve"))
        return false;
    const uint32_t nKeys = TakeU32();
    if (nKeys == 0)
        return Damaged(m_nPos - 4, "a curve without keys");
    if (nKeys > Left() / (4 + ValueSize(desc.m_eType)))
        return Damaged(m_nPos - 4, "a curve longer than its place in the table");
    curve.m_Keys.resize(nKeys);
    float fLast = -HUGE_VALF;
    for (CCurveKey& key : curve.m_Keys)
    {
        key.m_fTime = TakeF32();
        if (!std::isfinite(key.m_fTime) || key.m_fTime < fLast)
            return Damaged(m_nPos - 4, "times of a curve that don't go up");
        fLast = key.m_fTime;
        if (!ReadValue(desc, key.m_Value))
            return false;
    }
    return true;
}

bool CReader::ReadNames()
{
    m_nLimit = m_File.m_Bytes.size();
    for (const CEffect& effect : m_File.m_Effects)
    {
        std::string_view sName;
        if (!Need(4, "the list of names") || !ReadText(sName))
            return false;
        if (sName != effect.m_sName)
            return Damaged(m_nPos - 4, "the name of another effect");
        m_File.m_EffectNames.push_back(sName);
    }
    return true;
}

// Properties of a kind without a value have no record, but their curves may stand in the table: times alone.
bool CReader::SkipCurvesWithoutValues(uint32_t nAt, uint32_t nEnd)
{
    m_nPos = m_nCurves + nAt;
    m_nLimit = m_nCurves + nEnd;
    while (Left() > 0)
    {
        const uint64_t nStart = m_nPos;
        uint32_t nKeys = Left() < 4 ? UINT32_MAX : TakeU32();
        if (nKeys > Left() / 4)
            return Damaged(nStart, "a part of the curve table that no property uses");
        for (float fLast = -HUGE_VALF; nKeys > 0; --nKeys)
        {
            const float fTime = TakeF32();
            if (!std::isfinite(fTime) || fTime < fLast)
                return Damaged(m_nPos - 4, "times of a curve that don't go up");
            fLast = fTime;
        }
    }
    return true;
}

// The table holds what is referred to, and those without values. Puts the curves in the table's order.
bool CReader::CheckCurves()
{
    uint32_t nAt = 0;
    std::vector<uint32_t> newIndex(m_File.m_Curves.size());
    std::vector<CCurve> sorted;
    sorted.reserve(m_File.m_Curves.size());
    for (const auto& [nOffset, span] : m_CurveSpans)
    {
        if (!SkipCurvesWithoutValues(nAt, nOffset))
            return false;
        nAt = nOffset;
        nAt += span.m_nSize;
        newIndex[span.m_nIndex] = uint32_t(sorted.size());
        sorted.push_back(std::move(m_File.m_Curves[span.m_nIndex]));
    }
    if (!SkipCurvesWithoutValues(nAt, m_File.m_Header.m_nCurveTableSize))
        return false;
    m_File.m_Curves = std::move(sorted);
    for (CEffect& effect : m_File.m_Effects)
        for (CKey& key : effect.m_Keys)
            for (CProperty& prop : key.m_Properties)
                if (prop.m_pDesc->m_bFunctionCurve)
                    prop.m_nCurve = newIndex[prop.m_nCurve];
    return true;
}

char LowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}
} // namespace

const CEffect* CPackedFile::FindEffect(std::string_view sName) const
{
    for (const CEffect& effect : m_Effects)
        if (std::equal(effect.m_sName.begin(), effect.m_sName.end(), sName.begin(), sName.end(),
                       [](char a, char b) { return LowerCase(a) == LowerCase(b); }))
            return &effect;
    return nullptr;
}

bool ReadPackedFile(std::vector<uint8_t> bytes, const CEffectTypeTable& types, CPackedFile& file,
                    std::string& sError)
{
    file = CPackedFile();
    file.m_Bytes = std::move(bytes);
    return CReader(file, types, sError).Read();
}
