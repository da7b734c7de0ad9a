#include "formats/PackedReader.h"

#include <algorithm>
#include <bit>
#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "model/EffectProperty.h"
#include "model/MakeOrNull.h"
#include "model/NameIndex.h"
#include "qsnumber.h"

namespace
{

constexpr uint32_t c_nMagic = 0x58465351;
constexpr uint32_t c_nFileVersion = 2;
constexpr uint32_t c_nHeaderSize = 40;
constexpr uint32_t c_nEffectHeadSize = 12;
constexpr uint32_t c_nKeyHeadSize = 24;
constexpr uint32_t c_nPropertyHeadSize = 8;
// A curve is shared by any number of properties, and shown with each: a small file could ask for more than
// any memory.
constexpr uint64_t c_nMaxCurveKeys = 8u << 20;

uint32_t ValueSize(uint32_t eType)
{
    if (IsTextKind(eType) || eType == ePropType_Int || eType == ePropType_Float)
        return 4;
    return eType == ePropType_Vector ? 12 : eType == ePropType_Color ? 16 : 0;
}

bool HasRecord(const CEffectPropertyDesc& desc)
{
    return desc.m_eType != ePropType_None && desc.m_eType != ePropType_UI;
}

// Reads numbers of either byte order from a place in the file on. Every read stays before an end; after the
// first that would not, all give 0 and IsOk stays false.
class CByteReader
{
public:
    CByteReader(std::string_view sBytes, bool bBigEndian) : m_sBytes(sBytes), m_bBigEndian(bBigEndian) {}

    void SetWindow(uint64_t nPos, uint64_t nEnd)
    {
        m_nPos = nPos;
        m_nEnd = std::min<uint64_t>(nEnd, m_sBytes.size());
    }
    bool IsOk() const { return m_bOk; }
    uint32_t Tell() const { return static_cast<uint32_t>(m_nPos); }
    uint64_t Remaining() const { return m_nEnd > m_nPos ? m_nEnd - m_nPos : 0; }

    uint32_t ReadU32()
    {
        if (Remaining() < 4)
        {
            m_bOk = false;
            return 0;
        }
        const auto byte = [&](uint64_t n) { return uint32_t(static_cast<uint8_t>(m_sBytes[m_nPos + n])); };
        const uint32_t nValue = m_bBigEndian ? byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3)
                                             : byte(3) << 24 | byte(2) << 16 | byte(1) << 8 | byte(0);
        m_nPos += 4;
        return nValue;
    }
    float ReadFloat() { return std::bit_cast<float>(ReadU32()); }

private:
    std::string_view m_sBytes;
    bool m_bBigEndian;
    bool m_bOk = true;
    uint64_t m_nPos = 0;
    uint64_t m_nEnd = 0;
};

// Memory that runs out throws.
class CPackedReader
{
public:
    CPackedReader(std::string_view sBytes, const CEffectModule& module, CPackedLibrary& library,
                  std::string& sError)
        : m_sBytes(sBytes),
          m_Module(module),
          m_Library(library),
          m_sError(sError),
          m_Reader(sBytes, library.m_bBigEndian)
    {
    }

    bool Read()
    {
        return ReadHeader() && ReadKeyCounts() && ReadStringTable() && ReadEffects() && CheckCurveTable() &&
               ReadEffectNames() && CheckKeyCounts();
    }

private:
    bool ReadHeader();
    bool CheckSections();
    bool ReadKeyCounts();
    bool ReadStringTable();
    bool ReadEffects();
    bool ReadEffect(CPackedEffect& effect);
    bool ReadKey(CPackedKey& key);
    bool ReadProperties(const CEffectTypeDesc& type, uint32_t nCount, CPackedKey& key);
    bool ReadPropertyData(const CEffectPropertyDesc& desc, CPackedProperty& prop);
    bool ReadCurve(const CEffectPropertyDesc& desc, CPackedProperty& prop);
    bool ReadValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value);
    bool ReadText(uint32_t nAt, uint32_t nOffset, std::string& sText);
    bool CheckCurveTable();
    bool CheckCurvesWithoutValues(uint64_t nStart, uint64_t nEnd);
    bool ReadEffectNames();
    bool CheckKeyCounts();
    const CEffectTypeDesc* TypeByID(uint32_t nID);

    bool Fail(uint64_t nAt, const std::string& sWhat)
    {
        m_sError = QSFormat("Byte %s: %s", std::to_string(nAt).c_str(), sWhat.c_str());
        return false;
    }
    bool FailShort()
    {
        return Fail(m_Reader.Tell(), "the file, or the part that this belongs to, ends here");
    }

    const CPackedHeader& Head() const { return m_Library.m_Header; }
    uint64_t CurveTableOffset() const
    {
        return uint64_t(Head().m_nStringTableOffset) + Head().m_nStringTableSize;
    }
    uint64_t EffectsOffset() const { return CurveTableOffset() + Head().m_nCurveTableSize; }

    std::string_view m_sBytes;
    const CEffectModule& m_Module;
    CPackedLibrary& m_Library;
    std::string& m_sError;
    CByteReader m_Reader;

    std::unordered_map<uint32_t, size_t> m_StringByOffset;
    struct CCurve
    {
        uint32_t m_nEnd;  // offset behind the record
        uint32_t m_eType; // of those that refer to it
    };
    std::map<uint32_t, CCurve> m_Curves; // by offset
    uint64_t m_nCurveKeys = 0;
    std::unordered_map<uint32_t, const CEffectTypeDesc*> m_TypesByID;
};

bool CPackedReader::ReadHeader()
{
    m_Reader.SetWindow(0, m_sBytes.size());
    CPackedHeader& head = m_Library.m_Header;
    for (uint32_t* pField :
         {&head.m_nMagic, &head.m_nFileVersion, &head.m_nTypeTableVersion, &head.m_nStringTableSize,
          &head.m_nCurveTableSize, &head.m_nNumKeys, &head.m_nNumEffects, &head.m_nNumTypes,
          &head.m_nStringTableOffset, &head.m_nEffectNamesOffset})
        *pField = m_Reader.ReadU32();
    if (!m_Reader.IsOk())
        return Fail(m_sBytes.size(), "the header isn't complete");
    if (head.m_nFileVersion != c_nFileVersion)
        return Fail(4, QSFormat("file version %u, expected %u", head.m_nFileVersion, c_nFileVersion));
    if (head.m_nTypeTableVersion != m_Module.GetVersion())
    {
        return Fail(8, QSFormat("packed with version %u of the plug-in's types, this is version %u",
                                head.m_nTypeTableVersion, m_Module.GetVersion()));
    }
    if (head.m_nNumTypes != m_Module.GetNumTypes())
    {
        return Fail(
            28, QSFormat("%u effect types, the plug-in has %u", head.m_nNumTypes, m_Module.GetNumTypes()));
    }
    return CheckSections();
}

bool CPackedReader::CheckSections()
{
    const CPackedHeader& head = Head();
    if (head.m_nStringTableOffset != c_nHeaderSize + uint64_t(4) * head.m_nNumTypes)
        return Fail(
            32, QSFormat("string table at %u, which isn't behind the key counts", head.m_nStringTableOffset));
    if (head.m_nStringTableSize % 4 != 0)
        return Fail(12, QSFormat("size of the string table %u is no multiple of 4", head.m_nStringTableSize));
    if (head.m_nCurveTableSize % 4 != 0)
        return Fail(16, QSFormat("size of the curve table %u is no multiple of 4", head.m_nCurveTableSize));
    if (EffectsOffset() > head.m_nEffectNamesOffset)
        return Fail(
            36, QSFormat("effect names at %u, within what stands before them", head.m_nEffectNamesOffset));
    if (uint64_t(head.m_nEffectNamesOffset) + uint64_t(4) * head.m_nNumEffects != m_sBytes.size())
        return Fail(36, "the effect names don't end with the file");
    return true;
}

bool CPackedReader::ReadKeyCounts()
{
    m_Library.m_KeyCounts.resize(Head().m_nNumTypes);
    for (uint32_t& nCount : m_Library.m_KeyCounts)
        nCount = m_Reader.ReadU32();
    return m_Reader.IsOk() || FailShort();
}

bool CPackedReader::ReadStringTable()
{
    const std::string_view sTable = m_sBytes.substr(Head().m_nStringTableOffset, Head().m_nStringTableSize);
    std::unordered_set<std::string_view> texts;
    for (size_t nOffset = 0; nOffset < sTable.size();)
    {
        const uint64_t nAt = uint64_t(Head().m_nStringTableOffset) + nOffset;
        const size_t nNul = sTable.find('\0', nOffset);
        if (nNul == std::string_view::npos)
            return Fail(nAt, "a text without an end");
        const size_t nNext = (nNul / 4 + 1) * 4;
        if (sTable.substr(nNul, nNext - nNul).find_first_not_of('\0') != std::string_view::npos)
            return Fail(nAt, "the padding of a text isn't zero");
        const std::string_view sText = sTable.substr(nOffset, nNul - nOffset);
        if (!texts.insert(sText).second)
            return Fail(nAt, "a text that stands in the table twice");
        m_StringByOffset.emplace(static_cast<uint32_t>(nOffset), m_Library.m_Strings.size());
        m_Library.m_Strings.emplace_back(static_cast<uint32_t>(nOffset), sText);
        nOffset = nNext;
    }
    return true;
}

bool CPackedReader::ReadText(uint32_t nAt, uint32_t nOffset, std::string& sText)
{
    const auto found = m_StringByOffset.find(nOffset);
    if (found == m_StringByOffset.end())
        return Fail(nAt, QSFormat("no text begins at %u of the string table", nOffset));
    sText = m_Library.m_Strings[found->second].second;
    return true;
}

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
    if (!ReadText(effect.m_nOffset, nName, effect.m_sName))
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
        if (!ReadText(prop.m_nOffset, nName, prop.m_sName))
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
    CPackedCurveKey& key = prop.m_Keys.emplace_back();
    key.m_fTime = 0.0f;
    return ReadValue(m_Reader, desc, key.m_Value);
}

bool CPackedReader::ReadCurve(const CEffectPropertyDesc& desc, CPackedProperty& prop)
{
    const uint32_t nAt = m_Reader.Tell() - 4;
    if (prop.m_nCurveOffset % 4 != 0 || prop.m_nCurveOffset >= Head().m_nCurveTableSize)
        return Fail(nAt, QSFormat("no curve can begin at %u of the curve table", prop.m_nCurveOffset));
    CByteReader reader(m_sBytes, m_Library.m_bBigEndian);
    reader.SetWindow(CurveTableOffset() + prop.m_nCurveOffset, EffectsOffset());
    const uint32_t nNumKeys = reader.ReadU32();
    if (nNumKeys == 0 || nNumKeys > reader.Remaining() / (4 + ValueSize(desc.m_eType)))
        return Fail(reader.Tell() - 4, QSFormat("a curve of %u keys", nNumKeys));
    m_nCurveKeys += nNumKeys;
    if (m_nCurveKeys > c_nMaxCurveKeys)
        return Fail(nAt, "the curves of all properties together have more keys than this reader takes");

    prop.m_Keys.resize(nNumKeys);
    for (CPackedCurveKey& key : prop.m_Keys)
    {
        key.m_fTime = reader.ReadFloat();
        if (!ReadValue(reader, desc, key.m_Value))
            return false;
    }
    const CCurve curve = {static_cast<uint32_t>(reader.Tell() - CurveTableOffset()), desc.m_eType};
    const auto [known, bNew] = m_Curves.emplace(prop.m_nCurveOffset, curve);
    if (!bNew && known->second.m_eType != curve.m_eType)
        return Fail(nAt, "a curve that another property reads as another kind");
    return true;
}

bool CPackedReader::ReadValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value)
{
    const uint32_t nAt = reader.Tell();
    switch (desc.m_eType)
    {
    case ePropType_String:
    case ePropType_Filename:
    case ePropType_Animation:
    case ePropType_FireglassRef:
    {
        const uint32_t nOffset = reader.ReadU32();
        std::string sText;
        if (reader.IsOk() && !ReadText(nAt, nOffset, sText))
            return false;
        value.m_Value = std::move(sText);
        break;
    }
    case ePropType_Enum:
    {
        const uint32_t nIndex = reader.ReadU32();
        const size_t nItems = SplitEnumList(DescData(desc).c_str()).size();
        if (nIndex >= std::max<size_t>(nItems, 1))
            return Fail(nAt, QSFormat("%s has no enumerator %u", DescName(desc).c_str(), nIndex));
        value.m_Value = nIndex;
        break;
    }
    case ePropType_Int:
        value.m_Value = static_cast<int32_t>(reader.ReadU32());
        break;
    case ePropType_Float:
        value.m_Value = reader.ReadFloat();
        break;
    case ePropType_Vector:
    {
        CVector3 v;
        for (float* pComponent : {&v.x, &v.y, &v.z})
            *pComponent = reader.ReadFloat();
        value.m_Value = v;
        break;
    }
    case ePropType_Color:
    {
        CPackedColor color = {};
        for (float* pChannel : {&color.r, &color.g, &color.b, &color.a})
            *pChannel = reader.ReadFloat();
        value.m_Value = color;
        break;
    }
    default:
        return Fail(nAt, QSFormat("%s is of a kind without a form", DescName(desc).c_str()));
    }
    return reader.IsOk() || Fail(nAt, "the file, or the part that this belongs to, ends here");
}

// The records that properties refer to follow each other without a gap, but for those of curves whose kind
// has no value: nothing refers to them.
bool CPackedReader::CheckCurveTable()
{
    uint64_t nEnd = 0;
    for (const auto& [nOffset, curve] : m_Curves)
    {
        if (nOffset < nEnd)
            return Fail(CurveTableOffset() + nOffset, "a curve that begins within another");
        if (!CheckCurvesWithoutValues(nEnd, nOffset))
            return false;
        nEnd = curve.m_nEnd;
    }
    return CheckCurvesWithoutValues(nEnd, Head().m_nCurveTableSize);
}

bool CPackedReader::CheckCurvesWithoutValues(uint64_t nStart, uint64_t nEnd)
{
    CByteReader reader(m_sBytes, m_Library.m_bBigEndian);
    while (nStart < nEnd)
    {
        reader.SetWindow(CurveTableOffset() + nStart, CurveTableOffset() + nEnd);
        const uint64_t nSize = 4 + uint64_t(4) * reader.ReadU32();
        if (!reader.IsOk() || nSize > nEnd - nStart)
            return Fail(CurveTableOffset() + nStart, "bytes that belong to no curve");
        nStart += nSize;
    }
    return true;
}

bool CPackedReader::ReadEffectNames()
{
    m_Reader.SetWindow(Head().m_nEffectNamesOffset, m_sBytes.size());
    m_Library.m_EffectNames.resize(Head().m_nNumEffects);
    for (size_t i = 0; i < m_Library.m_EffectNames.size(); ++i)
    {
        const uint32_t nAt = m_Reader.Tell();
        std::string& sName = m_Library.m_EffectNames[i];
        if (!ReadText(nAt, m_Reader.ReadU32(), sName))
            return false;
        if (sName != m_Library.m_Effects[i].m_sName)
            return Fail(nAt, QSFormat("name %s, but the effect is called %s", sName.c_str(),
                                      m_Library.m_Effects[i].m_sName.c_str()));
    }
    return true;
}

bool CPackedReader::CheckKeyCounts()
{
    std::vector<uint32_t> counts(Head().m_nNumTypes);
    uint64_t nNumKeys = 0;
    for (const CPackedEffect& effect : m_Library.m_Effects)
    {
        nNumKeys += effect.m_Keys.size();
        for (const CPackedKey& key : effect.m_Keys)
            ++counts[key.m_nTypeID];
    }
    if (nNumKeys != Head().m_nNumKeys)
        return Fail(20, QSFormat("%u keys, but the effects have %s", Head().m_nNumKeys,
                                 std::to_string(nNumKeys).c_str()));
    for (uint32_t i = 0; i < counts.size(); ++i)
    {
        if (counts[i] != m_Library.m_KeyCounts[i])
        {
            return Fail(c_nHeaderSize + 4 * i, QSFormat("%u keys of type %u, but the effects have %u",
                                                        m_Library.m_KeyCounts[i], i, counts[i]));
        }
    }
    return true;
}

// 1 big-endian, 0 little-endian, -1 no packed file.
int ByteOrder(const std::string& sBytes)
{
    CByteReader little(sBytes, false);
    CByteReader big(sBytes, true);
    little.SetWindow(0, sBytes.size());
    big.SetWindow(0, sBytes.size());
    if (little.ReadU32() == c_nMagic)
        return 0;
    return big.ReadU32() == c_nMagic ? 1 : -1;
}

} // namespace

bool ReadPackedLibrary(const std::string& sBytes, const CEffectModule& module, CPackedLibrary& library,
                       std::string& sError)
{
    library = CPackedLibrary();
    const int nOrder = ByteOrder(sBytes);
    if (nOrder < 0)
    {
        sError = "Byte 0: this is no packed effect file";
        return false;
    }
    library.m_bBigEndian = nOrder == 1;
    if (sBytes.size() > UINT32_MAX)
    {
        sError = "Byte 0: the file is larger than its positions can tell";
        return false;
    }
    bool bRead = false;
    if (!TryAllocating([&] { bRead = CPackedReader(sBytes, module, library, sError).Read(); }))
        sError = "There isn't enough memory for this file";
    return bRead;
}
