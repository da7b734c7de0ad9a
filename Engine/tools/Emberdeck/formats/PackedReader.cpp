#include "formats/PackedReader.h"

#include <cmath>
#include <limits>
#include <unordered_set>

#include "formats/PackedParse.h"
#include "model/MakeOrNull.h"
#include "model/Spell.h"

namespace
{

constexpr uint32_t c_nMagic = 0x58465351;
constexpr uint32_t c_nFileVersion = 2;
constexpr uint32_t c_nHeaderSize = 40;

} // namespace

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
    m_TextUsed.resize(m_Library.m_Strings.size());
    m_FileUsed.resize(m_Library.m_Strings.size());
    return true;
}

bool CPackedReader::ReadText(uint32_t nAt, uint32_t nOffset, uint32_t nMaxLength, std::string& sText,
                             bool bFile)
{
    const auto found = m_StringByOffset.find(nOffset);
    if (found == m_StringByOffset.end())
        return Fail(nAt, QSFormat("no text begins at %u of the string table", nOffset));
    const std::string& sFound = m_Library.m_Strings[found->second].second;
    if (sFound.size() > nMaxLength)
        return Fail(nAt, QSFormat("a text of more than %u bytes", nMaxLength));
    m_TextUsed[found->second] = true;
    if (bFile)
        m_FileUsed[found->second] = true;
    sText = sFound;
    return true;
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
    if (nStart < nEnd && !HasCurvesWithoutValues())
        return Fail(CurveTableOffset() + nStart, "bytes that belong to no curve");
    while (nStart < nEnd)
    {
        reader.SetWindow(CurveTableOffset() + nStart, CurveTableOffset() + nEnd);
        const uint32_t nKeys = reader.ReadU32();
        const uint64_t nSize = 4 + uint64_t(4) * nKeys;
        if (!reader.IsOk() || nSize > nEnd - nStart)
            return Fail(CurveTableOffset() + nStart, "bytes that belong to no curve");
        float fLast = std::numeric_limits<float>::lowest();
        for (uint32_t i = 0; i < nKeys; ++i)
        {
            const float fTime = reader.ReadFloat();
            if (!std::isfinite(fTime) || fTime < fLast)
                return Fail(reader.Tell() - 4, "times of a curve that don't go up");
            fLast = fTime;
        }
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
        if (!ReadText(nAt, m_Reader.ReadU32(), CSpell::c_nMaxName, sName))
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

namespace
{

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
