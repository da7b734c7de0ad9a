#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "effecttypes.h"
#include "game/PackedFile.h"

// A table of types and a packed file to go with it, put together by hand.

inline CEffectPropertyDesc Desc(const char* pszName, uint32_t eType, const char* pszData = "",
                                bool bCurve = false, bool bInterpolate = false)
{
    CEffectPropertyDesc desc = {};
    std::strcpy(desc.m_szName, pszName);
    std::strcpy(desc.m_szData, pszData);
    desc.m_eType = eType;
    desc.m_bFunctionCurve = bCurve;
    desc.m_bInterpolate = bInterpolate;
    return desc;
}

inline const CEffectTypeTable& SmallTypes()
{
    static const std::vector<CEffectPropertyDesc> c_Spark = {
        Desc("UIType_TextLine", ePropType_UI, "Look"),
        Desc("Texture", ePropType_Filename),
        Desc("Blend", ePropType_Enum, "Add, Alpha,"),
        Desc("Size", ePropType_Float, "0;9", true, true),
        Desc("Frame", ePropType_Int, "", true, false),
        Desc("Offset", ePropType_Vector),
        Desc("Spare", ePropType_None),
        Desc("Color", ePropType_Color, "", true, true),
        Desc("Words", ePropType_String, "", true, true),
        Desc("Count", ePropType_Int),
        Desc("Child", ePropType_FireglassRef),
    };
    static const CEffectTypeDesc c_Types[] = {{"Wait", 0, 0, nullptr},
                                              {"Spark", 1, uint32_t(c_Spark.size()), c_Spark.data()}};
    static const CEffectTypeTable c_Table = {7, 2, c_Types};
    return c_Table;
}

class CSmallFile
{
public:
    explicit CSmallFile(bool bBigEndian = false) : m_bBigEndian(bBigEndian) {}

    // Two effects: "Fire" with two Sparks and a Wait, and an empty "Dark" whose name is no ASCII.
    std::vector<uint8_t> Bytes()
    {
        const uint32_t nCurveSize = 4 + 2 * 8, nFrames = 4 + 2 * 8, nColors = 4 + 2 * 20, nWords = 4 + 2 * 8;
        const uint32_t nTexts = uint32_t(MakeStrings());
        const uint32_t nCurves = nCurveSize + nFrames + nColors + nWords;
        for (uint32_t n : {0x58465351u, 2u, 7u, nTexts, nCurves, 3u, 2u, 2u, 48u, 0u, 1u, 2u})
            U32(n);
        m_Marks["strings"] = Here();
        m_Bytes.insert(m_Bytes.end(), m_sTexts.begin(), m_sTexts.end());
        m_Marks["curves"] = Here();
        for (float f : {0.0f, 1.0f, 1.0f, 3.0f}) // Size
            f == 0.0f ? (U32(2), F32(f)) : F32(f);
        U32(2), F32(0), U32(4), F32(0.5f), U32(uint32_t(-6)); // Frame
        U32(2), F32(0), Color(1, 0, 0, 1), F32(1), Color(0, 0, 1, 0.5f);
        U32(2), F32(0), U32(m_Texts["hot"]), F32(0.25f), U32(m_Texts[""]); // Words
        Effects();
        m_Marks["names"] = Here();
        U32(m_Texts["Fire"]), U32(m_Texts["D\xfcster"]);
        Patch(36, m_Marks["names"]);
        return m_Bytes;
    }

    void U32(uint32_t n)
    {
        m_Bytes.resize(m_Bytes.size() + 4);
        Patch(Here() - 4, n);
    }
    void F32(float f) { U32(std::bit_cast<uint32_t>(f)); }
    void Patch(size_t nAt, uint32_t n)
    {
        for (size_t i = 0; i < 4; ++i)
            m_Bytes[nAt + i] = uint8_t(n >> 8 * (m_bBigEndian ? 3 - i : i));
    }
    uint32_t Here() const { return uint32_t(m_Bytes.size()); }

    std::map<std::string, uint32_t> m_Marks; // where parts of the file begin
    std::map<std::string, uint32_t> m_Texts; // offsets in the string table
    std::vector<uint8_t> m_Bytes;

private:
    size_t MakeStrings()
    {
        for (const char* psz :
             {"Fire", "UIType_TextLine", "Texture", "a\\b.dds", "Blend", "Size", "Frame", "Offset", "Color",
              "Words", "hot", "", "Count", "Child", "fire; Gone", "D\xfcster"})
        {
            m_Texts[psz] = uint32_t(m_sTexts.size());
            m_sTexts += psz;
            m_sTexts.append(4 - m_sTexts.size() % 4, '\0');
        }
        return m_sTexts.size();
    }
    void Color(float r, float g, float b, float a) { F32(r), F32(g), F32(b), F32(a); }
    void Property(const char* pszName, std::vector<uint32_t> data)
    {
        m_Marks[pszName] = Here();
        U32(m_Texts[pszName]);
        U32(Here() + 4 + 4 * uint32_t(data.size()));
        for (uint32_t n : data)
            U32(n);
    }
    void Key(uint32_t nType, float fStart, float fEnd, uint32_t nID, uint32_t nLink, uint32_t nProps)
    {
        U32(nType), F32(fStart), F32(fEnd), U32(nID), U32(nLink), U32(nProps);
    }
    void Effects()
    {
        m_Marks["effects"] = Here();
        U32(m_Texts["Fire"]), U32(4000), U32(3);
        m_Marks["key"] = Here();
        Key(1, 0, 2, 5, 5, 9);
        Property("Texture", {m_Texts["a\\b.dds"]});
        Property("Blend", {1});
        Property("Size", {0});
        Property("Frame", {20});
        Property("Offset", {std::bit_cast<uint32_t>(1.5f), 0, std::bit_cast<uint32_t>(-2.0f)});
        Property("Color", {40});
        Property("Words", {84});
        Property("Count", {uint32_t(-3)});
        Property("Child", {m_Texts["fire; Gone"]});
        Key(0, 2, 2, 6, 9, 0);
        Key(1, 2, 3, 8, 5, 1);
        Property("Size", {0}); // shares the first key's curve
        U32(m_Texts["D\xfcster"]), U32(0), U32(0);
    }

    bool m_bBigEndian;
    std::string m_sTexts;
};

// Values for tests of what plays them, in memory that has nothing else of a file.
class CLooseValues
{
public:
    CLooseValues()
    {
        m_File.m_pBytes = m_Bytes.data();
        m_File.m_nStringTableSize = m_File.m_nSize = uint32_t(m_Bytes.size());
    }
    CLooseValues(const CLooseValues&) = delete;

    // Points of a time and the words of a value; of a constant one, whose time doesn't count.
    CProperty Property(const CEffectPropertyDesc& desc,
                       const std::vector<std::pair<float, std::vector<uint32_t>>>& points)
    {
        CProperty prop = {};
        prop.m_pFile = &m_File;
        prop.m_pDesc = &desc;
        prop.m_nValues = m_nEnd + 4;
        prop.m_nNumValues = uint32_t(points.size());
        for (const auto& [fTime, words] : points)
        {
            Add(&fTime, 4);
            Add(words.data(), 4 * words.size());
        }
        return prop;
    }
    uint32_t Text(std::string_view s)
    {
        const uint32_t nAt = m_nEnd += 4; // behind a word that ends with a 0
        Add(s.data(), s.size());
        m_nEnd += 4 - m_nEnd % 4;
        return nAt;
    }

private:
    void Add(const void* p, size_t nSize)
    {
        std::memcpy(m_Bytes.data() + m_nEnd, p, nSize);
        m_nEnd += uint32_t(nSize);
    }

    std::vector<uint8_t> m_Bytes = std::vector<uint8_t>(16384);
    uint32_t m_nEnd = 0;
    CEmberdeckFile m_File = {};
};

inline uint32_t Bits(float f)
{
    return std::bit_cast<uint32_t>(f);
}

inline CPackedFile ReadSmallFile()
{
    CPackedFile file;
    std::string sError;
    if (!ReadPackedFile(CSmallFile().Bytes(), SmallTypes(), file, sError))
        throw std::runtime_error(sError);
    return file;
}
