#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "model/EffectModule.h"
#include "qsvector.h"

// Strict reading of a packed file: everything that it holds, with every offset, count and end
// position checked, and every value against what its descriptor allows: what the packer can't have written for
// this plug-in is refused. For `dump` and the tests; the editor itself never reads one back.

struct CPackedColor
{
    float r, g, b, a;
};
struct CPackedValue
{
    // String offsets are resolved to text; an Enum is its index.
    std::variant<std::string, int32_t, uint32_t, float, CVector3, CPackedColor> m_Value;
};
struct CPackedCurveKey
{
    float m_fTime;
    CPackedValue m_Value;
};
// The values of a property, at least one. Those that refer to one curve share one list.
class CPackedValues
{
public:
    CPackedValues() = default;
    explicit CPackedValues(std::vector<CPackedCurveKey>&& keys)
        : m_pKeys(std::make_shared<const std::vector<CPackedCurveKey>>(std::move(keys)))
    {
    }
    size_t size() const { return m_pKeys ? m_pKeys->size() : 0; }
    const CPackedCurveKey& at(size_t n) const { return m_pKeys->at(n); }
    const CPackedCurveKey& operator[](size_t n) const { return (*m_pKeys)[n]; }
    const CPackedCurveKey* begin() const { return m_pKeys ? m_pKeys->data() : nullptr; }
    const CPackedCurveKey* end() const { return begin() + size(); }

private:
    std::shared_ptr<const std::vector<CPackedCurveKey>> m_pKeys;
};
struct CPackedProperty
{
    std::string m_sName;
    uint32_t m_eType = 0; // from the plug-in's descriptor of that name
    bool m_bCurve = false;
    uint32_t m_nCurveOffset = 0; // in the curve table
    uint32_t m_nOffset = 0;      // of the record in the file
    CPackedValues m_Keys;        // one, at time 0, for a constant
};
struct CPackedKey
{
    uint32_t m_nTypeID = 0;
    float m_fStart = 0, m_fEnd = 0; // seconds
    uint32_t m_nID = 0, m_nLink = 0;
    uint32_t m_nOffset = 0;
    std::vector<CPackedProperty> m_Properties;
};
struct CPackedEffect
{
    std::string m_sName;
    uint32_t m_nPhaseLength = 0; // milliseconds
    uint32_t m_nOffset = 0;
    std::vector<CPackedKey> m_Keys;
};
struct CPackedHeader
{
    uint32_t m_nMagic = 0, m_nFileVersion = 0, m_nTypeTableVersion = 0, m_nStringTableSize = 0,
             m_nCurveTableSize = 0, m_nNumKeys = 0, m_nNumEffects = 0, m_nNumTypes = 0,
             m_nStringTableOffset = 0, m_nEffectNamesOffset = 0;
};
struct CPackedLibrary
{
    CPackedHeader m_Header;
    bool m_bBigEndian = false;
    std::vector<uint32_t> m_KeyCounts;
    std::vector<std::pair<uint32_t, std::string>> m_Strings; // offset, text, in table order
    std::vector<CPackedEffect> m_Effects;
    std::vector<std::string> m_EffectNames;
};

// The file says nothing of kinds, so the plug-in that it was packed with gives them; its version must
// match the header's. False: sError tells what is wrong and at which byte.
bool ReadPackedLibrary(const std::string& sBytes, const CEffectModule& module, CPackedLibrary& library,
                       std::string& sError);
