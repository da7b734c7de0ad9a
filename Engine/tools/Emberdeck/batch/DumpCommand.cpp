#include <algorithm>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/PackedReader.h"
#include "platform/Files.h"

namespace
{
// How texts are given: ByteText for programs, which get every byte, ReadableText for people.
using CTextForm = std::string (*)(std::string_view);

CJson ValueJson(const CPackedValue& value, CTextForm asText)
{
    struct CVisitor
    {
        CTextForm m_AsText;
        CJson operator()(const std::string& s) const { return m_AsText(s); }
        CJson operator()(int32_t n) const { return n; }
        CJson operator()(uint32_t n) const { return n; }
        CJson operator()(float f) const { return static_cast<double>(f); }
        CJson operator()(const CVector3& v) const
        {
            return CJson::array({double(v.x), double(v.y), double(v.z)});
        }
        CJson operator()(const CPackedColor& c) const
        {
            return CJson::array({double(c.r), double(c.g), double(c.b), double(c.a)});
        }
    };
    return std::visit(CVisitor{asText}, value.m_Value);
}

CJson PropertyJson(const CPackedProperty& prop, CTextForm asText)
{
    CJson values = CJson::array();
    for (const CPackedCurveKey& key : prop.m_Keys)
        values.push_back({{"time", double(key.m_fTime)}, {"value", ValueJson(key.m_Value, asText)}});
    CJson json = {{"name", asText(prop.m_sName)},
                  {"offset", prop.m_nOffset},
                  {"type", GetPropTypeName(prop.m_eType)},
                  {"curve", prop.m_bCurve}};
    if (prop.m_bCurve)
        json["curveOffset"] = prop.m_nCurveOffset;
    json["values"] = std::move(values);
    return json;
}

CJson KeyJson(const CPackedKey& key, const CEffectModule& module, CTextForm asText)
{
    std::string sType;
    for (uint32_t i = 0; i < module.GetNumTypes() && sType.empty(); ++i)
        if (module.GetType(i)->m_nTypeID == key.m_nTypeID)
            sType = TypeName(*module.GetType(i));
    CJson properties = CJson::array();
    for (const CPackedProperty& prop : key.m_Properties)
        properties.push_back(PropertyJson(prop, asText));
    return {{"offset", key.m_nOffset},   {"type", asText(sType)},
            {"typeId", key.m_nTypeID},   {"start", double(key.m_fStart)},
            {"end", double(key.m_fEnd)}, {"id", key.m_nID},
            {"link", key.m_nLink},       {"properties", std::move(properties)}};
}

CJson HeaderJson(const CPackedHeader& h)
{
    return {{"magic", h.m_nMagic},
            {"fileVersion", h.m_nFileVersion},
            {"typeTableVersion", h.m_nTypeTableVersion},
            {"stringTableSize", h.m_nStringTableSize},
            {"curveTableSize", h.m_nCurveTableSize},
            {"numKeys", h.m_nNumKeys},
            {"numEffects", h.m_nNumEffects},
            {"numTypes", h.m_nNumTypes},
            {"stringTableOffset", h.m_nStringTableOffset},
            {"effectNamesOffset", h.m_nEffectNamesOffset}};
}

// ---- As JSON. A document of a large file would take many times the file's size, so that only one key is made
// at a time; the text is that of one document.

// A value as it stands nIndent columns deep.
void PutValue(const CJson& value, size_t nIndent)
{
    const std::string sBreak = '\n' + std::string(nIndent, ' ');
    const std::string sText = value.dump(2, ' ', false, CJson::error_handler_t::replace);
    for (size_t i = 0, nEnd; i <= sText.size(); i = nEnd + 1)
    {
        nEnd = std::min(sText.find('\n', i), sText.size());
        Put(i == 0 ? "" : sBreak);
        Put(std::string_view(sText).substr(i, nEnd - i));
    }
}

template <class TList, class TPut>
void PutList(const TList& list, size_t nIndent, const TPut& put)
{
    const std::string sBreak = '\n' + std::string(nIndent, ' ');
    Put("[");
    for (size_t i = 0; i < list.size(); ++i)
    {
        Put((i == 0 ? "" : ",") + sBreak + "  ");
        put(list[i]);
    }
    Put(list.empty() ? "]" : sBreak + "]");
}

void PutEffect(const CPackedEffect& effect, const CEffectModule& module)
{
    Put("{\n      \"name\": ");
    PutValue(ByteText(effect.m_sName), 6);
    Put(",\n      \"offset\": " + std::to_string(effect.m_nOffset));
    Put(",\n      \"phaseLength\": " + std::to_string(effect.m_nPhaseLength));
    Put(",\n      \"keys\": ");
    PutList(effect.m_Keys, 6, [&](const CPackedKey& key) { PutValue(KeyJson(key, module, ByteText), 8); });
    Put("\n    }");
}

void PrintLibraryJson(const CPackedLibrary& library, const CEffectModule& module)
{
    Put("{\n  \"header\": ");
    PutValue(HeaderJson(library.m_Header), 2);
    Put(",\n  \"byteOrder\": ");
    PutValue(library.m_bBigEndian ? "big" : "little", 2);
    Put(",\n  \"keyCounts\": ");
    PutValue(library.m_KeyCounts, 2);
    Put(",\n  \"strings\": ");
    PutList(library.m_Strings, 2,
            [](const auto& entry) {
                PutValue(CJson::array({entry.first, ByteText(entry.second)}), 4);
            });
    Put(",\n  \"effects\": ");
    PutList(library.m_Effects, 2, [&](const CPackedEffect& effect) { PutEffect(effect, module); });
    Put(",\n  \"effectNames\": ");
    PutList(library.m_EffectNames, 2, [](const std::string& sName) { PutValue(ByteText(sName), 4); });
    Put("\n}\n");
}

// ---- As text

void PrintKey(const CJson& key)
{
    std::printf("  [%u] %s %u, %g s to %g s, link %u\n", key["offset"].get<uint32_t>(),
                key["type"].get<std::string>().c_str(), key["id"].get<uint32_t>(), key["start"].get<double>(),
                key["end"].get<double>(), key["link"].get<uint32_t>());
    for (const CJson& prop : key["properties"])
    {
        std::printf("    %s", prop["name"].get<std::string>().c_str());
        for (const CJson& value : prop["values"])
            if (prop["curve"].get<bool>())
                std::printf("  %g: %s", value["time"].get<double>(), value["value"].dump().c_str());
            else
                std::printf("  %s", value["value"].dump().c_str());
        std::printf("\n");
    }
}

void PrintLibrary(const CPackedLibrary& library, const CEffectModule& module)
{
    const CPackedHeader& h = library.m_Header;
    std::printf("packed effects, version %u, %s-endian, plug-in version %u\n", h.m_nFileVersion,
                library.m_bBigEndian ? "big" : "little", h.m_nTypeTableVersion);
    std::printf(
        "%u effects, %u keys, %u types, strings %u bytes at %u, curves %u bytes, effect names at %u\n",
        h.m_nNumEffects, h.m_nNumKeys, h.m_nNumTypes, h.m_nStringTableSize, h.m_nStringTableOffset,
        h.m_nCurveTableSize, h.m_nEffectNamesOffset);
    for (const CPackedEffect& effect : library.m_Effects)
    {
        std::printf("\n[%u] %s, %u ms\n", effect.m_nOffset, ReadableText(effect.m_sName).c_str(),
                    effect.m_nPhaseLength);
        for (const CPackedKey& key : effect.m_Keys)
            PrintKey(KeyJson(key, module, ReadableText));
    }
}
} // namespace

void AddDumpCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand(
        "dump", "Read a packed file strictly and print what it holds, or what is wrong and where");
    auto pFile = std::make_shared<std::string>();
    auto pProject = std::make_shared<std::string>();
    pCommand->add_option("PACKED", *pFile, "The packed file")->required();
    pCommand->add_option(
        "--project", *pProject,
        "A path in the project whose plug-in packed it; by default the packed file's own place");
    pCommand->callback(
        [&options, &nResult, pFile, pProject]
        {
            CBatchSession session(options);
            nResult = eExit_Failed;
            std::string sBytes;
            if (!ReadOrdinaryFile(*pFile, sBytes))
            {
                FailToRead(*pFile);
                return;
            }
            if (!session.OpenProject(pProject->empty() ? *pFile : *pProject))
                return;
            CPackedLibrary library;
            std::string sError;
            if (!ReadPackedLibrary(sBytes, session.m_pApp->m_EffectModule, library, sError))
            {
                Fail(*pFile + ": " + sError);
                return;
            }
            nResult = eExit_Done;
            if (options.m_bJson)
                PrintLibraryJson(library, session.m_pApp->m_EffectModule);
            else
                PrintLibrary(library, session.m_pApp->m_EffectModule);
        });
}
