#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "formats/PackedReader.h"
#include "qsnumber.h"

// The work of ReadPackedLibrary.

// A file's name as the game finds it, as the packer writes it.
std::string PackedFileName(const std::string& sText);

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
    // The library's byte order is known already.
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
               ReadEffectNames() && CheckKeyCounts() && CheckCurveValues() && CheckCurvesDiffer() &&
               CheckTexts();
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
    struct CCurve;
    bool ReadCurveRecord(const CEffectPropertyDesc& desc, uint32_t nOffset, CCurve& curve);
    bool ReadValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value);
    // A text of the table, of so many bytes at most; bFile notes it as a Filename's value.
    bool ReadText(uint32_t nAt, uint32_t nOffset, uint32_t nMaxLength, std::string& sText,
                  bool bFile = false);
    bool ReadTextValue(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value);
    bool ReadEnumerator(CByteReader& reader, const CEffectPropertyDesc& desc, CPackedValue& value);
    bool ReadColor(CByteReader& reader, CPackedValue& value);
    bool CheckValues(uint32_t nAt, const CEffectPropertyDesc& desc, const CPackedValues& values);
    bool CheckCurveTable();
    // What only the schema tells: see PackedReaderSchema.cpp.
    bool CheckCurveValues();
    bool CheckCurvesDiffer();
    bool CheckTexts();
    uint64_t CountSources(const CPackedValues& values);
    bool HasCurvesWithoutValues() const;
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
        uint32_t m_nEnd = 0;  // offset behind the record; 0 before it is read
        uint32_t m_eType = 0; // of those that refer to it
        CPackedValues m_Values;
        std::vector<const CEffectPropertyDesc*> m_Checks; // whose values these must be
    };
    std::map<uint32_t, CCurve> m_Curves;       // by offset
    std::vector<bool> m_TextUsed;              // by m_Library.m_Strings, as the next
    std::vector<bool> m_FileUsed;              // a Filename's value
    std::vector<bool> m_TypesUsed;             // by number
    std::map<std::string, uint64_t> m_Sources; // texts that packing turns into this one
    std::unordered_map<uint32_t, const CEffectTypeDesc*> m_TypesByID;
};
