// SPDX-License-Identifier: 0BSD
#include "game/Listing.h"

#include <charconv>
#include <cstddef>

#include "game/Playback.h"

namespace
{
std::string ShortNumber(double f)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), f, std::chars_format::general, 6);
    return std::string(buffer, result.ptr);
}

// Between double quotes, control characters as \xNN; other bytes go to the terminal as they are.
std::string Quoted(std::string_view sText)
{
    static const char c_szHex[] = "0123456789abcdef";
    std::string s = "\"";
    for (const char c : sText)
    {
        const auto n = static_cast<unsigned char>(c);
        if (n < 0x20 || n == 0x7f)
            s += std::string("\\x") + c_szHex[n >> 4] + c_szHex[n & 15];
        else
            s += c;
    }
    return s + "\"";
}

// The enumerator of that index, or its number where the list doesn't reach.
std::string EnumeratorText(const CEffectPropertyDesc& desc, double fIndex)
{
    size_t nLength = 0;
    const char* pName = EmberdeckEnumerator(&desc, uint32_t(fIndex), &nLength);
    return pName ? std::string(pName, nLength) : ShortNumber(fIndex);
}

std::string SampleText(const CEffectPropertyDesc& desc, const CSample& sample)
{
    if (sample.m_eType == ePropType_Enum)
        return EnumeratorText(desc, sample.m_Numbers[0]);
    const size_t nNumbers = NumberCount(sample.m_eType);
    if (nNumbers == 0)
        return Quoted(sample.m_sText);
    if (nNumbers == 1)
        return ShortNumber(sample.m_Numbers[0]);
    std::string s;
    for (size_t i = 0; i < nNumbers; ++i)
        s += (i == 0 ? "(" : ", ") + ShortNumber(sample.m_Numbers[i]);
    return s + ")";
}

// What the effects of a reference are in this file.
std::string ReferenceText(const CPackedFile& file, std::string_view sReference)
{
    std::string s;
    for (std::string_view sName : SplitReference(sReference))
    {
        const CEffect* pEffect = file.FindEffect(sName);
        s += s.empty() ? "  plays " : ", ";
        s += pEffect ? Quoted(pEffect->m_sName) : Quoted(sName) + " (missing)";
    }
    return s;
}

void ListProperty(const CPackedFile& file, const CProperty& prop, std::string& s)
{
    s += "      " + std::string(FieldText(prop.m_pDesc->m_szName)) + " =";
    if (!prop.m_pDesc->m_bFunctionCurve)
    {
        const CSample sample = Evaluate(prop, 0);
        s += " " + SampleText(*prop.m_pDesc, sample);
        if (sample.m_eType == ePropType_FireglassRef)
            s += ReferenceText(file, sample.m_sText);
    }
    else
    {
        for (const double fTime : {0.0, 0.25, 0.5, 0.75, 1.0})
        {
            const CSample sample = Evaluate(prop, fTime);
            s += " [" + ShortNumber(fTime) + "] " + SampleText(*prop.m_pDesc, sample);
            if (sample.m_eType == ePropType_FireglassRef)
                s += ReferenceText(file, sample.m_sText);
        }
    }
    s += '\n';
}

class CJsonText
{
public:
    CJsonText& Raw(std::string_view s)
    {
        m_s += s;
        return *this;
    }
    CJsonText& Text(std::string_view sText)
    {
        static const char c_szHex[] = "0123456789abcdef";
        m_s += '"';
        for (const char c : sText)
        {
            const auto n = static_cast<unsigned char>(c);
            if (n < 0x20 || n >= 0x7f || n == '"' || n == '\\')
                m_s += std::string("\\u00") + c_szHex[n >> 4] + c_szHex[n & 15];
            else
                m_s += c;
        }
        m_s += '"';
        return *this;
    }
    template <class TNumber>
    CJsonText& Number(TNumber n)
    {
        char buffer[64];
        m_s.append(buffer, std::to_chars(buffer, buffer + sizeof(buffer), n).ptr);
        return *this;
    }
    CJsonText& Float(float f)
    {
        const double fValue = f;
        return fValue - fValue == 0 ? Number(fValue) : Raw("null");
    }
    CJsonText& Field(std::string_view sName, uint32_t n) { return Raw("\"").Raw(sName).Raw("\":").Number(n); }
    // A comma before every element of a list but the first.
    CJsonText& Next(bool& bFirst)
    {
        if (!bFirst)
            m_s += ',';
        bFirst = false;
        return *this;
    }
    std::string Take() { return std::move(m_s); }

private:
    std::string m_s;
};

const char* KindName(uint32_t eType)
{
    static const char* const c_Names[] = {"None",  "String", "Filename", "Enum",      "Int",         "Float",
                                          "Color", "Vector", "UI",       "Animation", "FireglassRef"};
    return eType < std::size(c_Names) ? c_Names[eType] : "Unknown";
}

void DumpValue(const CEmberdeckValue& value, CJsonText& json)
{
    switch (value.m_eType)
    {
    case ePropType_Int:
    case ePropType_Enum:
        json.Number(int64_t(value.m_Numbers[0]));
        break;
    case ePropType_Float:
        json.Float(float(value.m_Numbers[0]));
        break;
    case ePropType_Vector:
    case ePropType_Color:
    {
        json.Raw("[");
        bool bFirst = true;
        for (uint32_t i = 0; i < value.m_nNumNumbers; ++i)
            json.Next(bFirst).Float(float(value.m_Numbers[i]));
        json.Raw("]");
        break;
    }
    default:
        json.Text(value.m_pszText);
    }
}

void DumpProperty(const CProperty& prop, CJsonText& json)
{
    json.Raw("{\"name\":").Text(FieldText(prop.m_pDesc->m_szName)).Raw(",").Field("offset", prop.m_nOffset);
    json.Raw(",\"type\":\"").Raw(KindName(prop.m_pDesc->m_eType)).Raw("\",\"curve\":");
    if (prop.m_pDesc->m_bFunctionCurve)
        json.Raw("true,").Field("curveOffset", prop.m_nCurve).Raw(",\"values\":[");
    else
        json.Raw("false,\"values\":[");
    bool bFirst = true;
    for (uint32_t i = 0; i < prop.m_nNumValues; ++i)
    {
        json.Next(bFirst).Raw("{\"time\":").Float(EmberdeckTimeAt(&prop, i)).Raw(",\"value\":");
        DumpValue(EmberdeckValueAt(&prop, i), json);
        json.Raw("}");
    }
    json.Raw("]}");
}

void DumpKey(const CKey& key, CJsonText& json)
{
    json.Raw("{").Field("offset", key.m_nOffset).Raw(",\"type\":").Text(FieldText(key.m_pType->m_szName));
    json.Raw(",").Field("typeId", key.m_pType->m_nTypeID);
    json.Raw(",\"start\":").Float(key.m_fStart).Raw(",\"end\":").Float(key.m_fEnd);
    json.Raw(",").Field("id", key.m_nID).Raw(",").Field("link", key.m_nLink).Raw(",\"properties\":[");
    bool bFirst = true;
    for (const CProperty& prop : key.m_Properties)
        DumpProperty(prop, json.Next(bFirst));
    json.Raw("]}");
}

void DumpEffect(const CEffect& effect, CJsonText& json)
{
    json.Raw("{\"name\":").Text(effect.m_sName).Raw(",").Field("offset", effect.m_nOffset);
    json.Raw(",").Field("phaseLength", effect.m_nPhaseLength).Raw(",\"keys\":[");
    bool bFirst = true;
    for (const CKey& key : effect.m_Keys)
        DumpKey(key, json.Next(bFirst));
    json.Raw("]}");
}

void DumpHeader(const CPackedFile& file, CJsonText& json)
{
    const CEmberdeckFile& h = *file.m_pFile;
    json.Raw("\"header\":{").Field("magic", EMBERDECK_MAGIC).Raw(",").Field("fileVersion", h.m_nFileVersion);
    json.Raw(",").Field("typeTableVersion", h.m_nTypeTableVersion);
    json.Raw(",").Field("stringTableSize", h.m_nStringTableSize);
    json.Raw(",").Field("curveTableSize", h.m_nCurveTableSize);
    json.Raw(",").Field("numKeys", h.m_nNumKeys).Raw(",").Field("numEffects", h.m_nNumEffects);
    json.Raw(",").Field("numTypes", h.m_nNumTypes);
    json.Raw(",").Field("stringTableOffset", h.m_nStringTableOffset);
    json.Raw(",").Field("effectNamesOffset", h.m_nEffectNamesOffset);
    json.Raw("},\"byteOrder\":\"").Raw(h.m_bBigEndian ? "big" : "little").Raw("\"");
}
} // namespace

std::string ListEffect(const CPackedFile& file, const CEffect& effect)
{
    std::string s = "effect " + Quoted(effect.m_sName) + ", " + std::to_string(effect.m_nPhaseLength) +
                    " ms, " + std::to_string(effect.m_Keys.size()) +
                    (effect.m_Keys.size() == 1 ? " key\n" : " keys\n");
    for (const CEvent& event : ListEvents(effect))
    {
        const CKey& key = *event.m_pKey;
        s += "  " + ShortNumber(event.m_fTime) + " s: " + (event.m_bStart ? "start " : "end ") +
             std::string(FieldText(key.m_pType->m_szName)) + " " + std::to_string(key.m_nID);
        if (!event.m_bStart)
        {
            s += '\n';
            continue;
        }
        s += ", until " + ShortNumber(key.m_fEnd) + " s";
        if (const CKey* pOther = FindLinkedKey(effect, key))
            s += ", moves with " + std::string(FieldText(pOther->m_pType->m_szName)) + " " +
                 std::to_string(pOther->m_nID);
        else if (key.m_nLink != key.m_nID)
            s += ", would move with " + std::to_string(key.m_nLink) + " (missing)";
        s += '\n';
        for (const CProperty& prop : key.m_Properties)
            ListProperty(file, prop, s);
    }
    return s;
}

std::string DumpAsJson(const CPackedFile& file, const CEffect* pOnly)
{
    CJsonText json;
    json.Raw("{");
    DumpHeader(file, json);
    json.Raw(",\"keyCounts\":[");
    bool bFirst = true;
    for (uint32_t i = 0; i < file.m_pFile->m_nNumTypes; ++i)
        json.Next(bFirst).Number(EmberdeckKeyCount(file.m_pFile.get(), i));
    json.Raw("],\"strings\":[");
    bFirst = true;
    for (const auto& [nOffset, sText] : file.m_Strings)
        json.Next(bFirst).Raw("[").Number(nOffset).Raw(",").Text(sText).Raw("]");
    json.Raw("],\"effects\":[");
    bFirst = true;
    for (const CEffect& effect : file.m_Effects)
        if (!pOnly || pOnly == &effect)
            DumpEffect(effect, json.Next(bFirst));
    json.Raw("],\"effectNames\":[");
    bFirst = true;
    for (const CEffect& effect : file.m_Effects)
        json.Next(bFirst).Text(effect.m_sName);
    return json.Raw("]}\n").Take();
}
