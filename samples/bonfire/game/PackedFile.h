// SPDX-License-Identifier: 0BSD
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "game/PlugIn.h"

// A value as the packed file holds it. Which member counts says m_eType.
struct CValue
{
    uint32_t m_eType = ePropType_None; // EEffectPropertyType
    std::string_view m_sText;          // String, Filename, Animation, FireglassRef
    int32_t m_nInt = 0;                // Int
    uint32_t m_nEnum = 0;              // Enum: index into the descriptor's enumerators
    std::array<float, 4> m_Floats{};   // Float: 1, Vector: x y z, Color: red green blue alpha, 0 to 1
};

struct CCurveKey
{
    float m_fTime = 0; // share of the key's length, 0 to 1
    CValue m_Value;
};

// A record of the curve table, shared by every property that has the same curve.
struct CCurve
{
    uint32_t m_nOffset = 0;        // in the curve table
    std::vector<CCurveKey> m_Keys; // at least one; times never decrease
};

struct CProperty
{
    const CEffectPropertyDesc* m_pDesc = nullptr; // of the plug-in
    uint32_t m_nOffset = 0;                       // of the record, from the start of the file
    uint32_t m_nCurve = 0; // index into CPackedFile::m_Curves, if the descriptor says curve
    CValue m_Value;        // if it doesn't
};

struct CKey
{
    uint32_t m_nOffset = 0;
    const CEffectTypeDesc* m_pType = nullptr;
    float m_fStart = 0; // seconds
    float m_fEnd = 0;   // seconds; an editor may leave it at or before the start
    uint32_t m_nID = 0;
    uint32_t m_nLink = 0; // id of the key that it moves with; its own id for none
    std::vector<CProperty> m_Properties;
};

struct CEffect
{
    std::string_view m_sName;
    uint32_t m_nOffset = 0;
    uint32_t m_nPhaseLength = 0; // milliseconds
    std::vector<CKey> m_Keys;
};

struct CHeader
{
    uint32_t m_nMagic = 0;
    uint32_t m_nFileVersion = 0;
    uint32_t m_nTypeTableVersion = 0;
    uint32_t m_nStringTableSize = 0;
    uint32_t m_nCurveTableSize = 0;
    uint32_t m_nNumKeys = 0;
    uint32_t m_nNumEffects = 0;
    uint32_t m_nNumTypes = 0;
    uint32_t m_nStringTableOffset = 0;
    uint32_t m_nEffectNamesOffset = 0;
};

// All that a packed effect file holds. The texts are views into m_Bytes, so the file may be moved but not
// copied; descriptors belong to the plug-in, which must outlive it.
struct CPackedFile
{
    CPackedFile() = default;
    CPackedFile(CPackedFile&&) = default;
    CPackedFile& operator=(CPackedFile&&) = default;

    std::vector<uint8_t> m_Bytes;
    CHeader m_Header;
    bool m_bBigEndian = false;
    std::vector<uint32_t> m_KeyCounts;                            // by type number
    std::vector<std::pair<uint32_t, std::string_view>> m_Strings; // offset in the string table, text
    std::vector<CCurve> m_Curves;                                 // by offset once the file is read
    std::vector<CEffect> m_Effects;
    std::vector<std::string_view> m_EffectNames;

    // The first effect of that name, without regard to ASCII case, or null.
    const CEffect* FindEffect(std::string_view sName) const;
};

// Reads bytes strictly: every section where it belongs, every count, offset, end position and name checked,
// nothing between and nothing behind. Either byte order, told by the magic number. Memory stays in
// proportion to the bytes, whatever they say. False: sError tells what is wrong, with the offset in the file
// ("damaged at offset 40: ..."), and the file holds nothing to be used.
bool ReadPackedFile(std::vector<uint8_t> bytes, const CEffectTypeTable& types, CPackedFile& file,
                    std::string& sError);
