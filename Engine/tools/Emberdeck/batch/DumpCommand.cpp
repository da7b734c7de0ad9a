#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/PackedReader.h"
#include "platform/Files.h"

namespace
{
CJson ValueJson(const CPackedValue& value)
{
    struct CVisitor
    {
        CJson operator()(const std::string& s) const { return ByteText(s); }
        CJson operator()(int32_t n) const { return n; }
        CJson operator()(uint32_t n) const { return n; }
        CJson operator()(float f) const { return static_cast<double>(f); }
        CJson operator()(const CVector3& v) const { return CJson::array({double(v.x), double(v.y), double(v.z)}); }
        CJson operator()(const CPackedColor& c) const
        {
            return CJson::array({double(c.r), double(c.g), double(c.b), double(c.a)});
        }
    };
    return std::visit(CVisitor{}, value.m_Value);
}

CJson PropertyJson(const CPackedProperty& prop)
{
    CJson values = CJson::array();
    for (const CPackedCurveKey& key : prop.m_Keys)
        values.push_back({{"time", double(key.m_fTime)}, {"value", ValueJson(key.m_Value)}});
    CJson json = {{"name", ByteText(prop.m_sName)},
                  {"offset", prop.m_nOffset},
                  {"type", GetPropTypeName(prop.m_eType)},
                  {"curve", prop.m_bCurve}};
    if (prop.m_bCurve)
        json["curveOffset"] = prop.m_nCurveOffset;
    json["values"] = std::move(values);
    return json;
}

CJson KeyJson(const CPackedKey& key, const CEffectModule& module)
{
    std::string sType;
    for (uint32_t i = 0; i < module.GetNumTypes() && sType.empty(); ++i)
        if (module.GetType(i)->m_nTypeID == key.m_nTypeID)
            sType = TypeName(*module.GetType(i));
    CJson properties = CJson::array();
    for (const CPackedProperty& prop : key.m_Properties)
        properties.push_back(PropertyJson(prop));
    return {{"offset", key.m_nOffset},
            {"type", ByteText(sType)},
            {"typeId", key.m_nTypeID},
            {"start", double(key.m_fStart)},
            {"end", double(key.m_fEnd)},
            {"id", key.m_nID},
            {"link", key.m_nLink},
            {"properties", std::move(properties)}};
}

CJson LibraryJson(const CPackedLibrary& library, const CEffectModule& module)
{
    const CPackedHeader& h = library.m_Header;
    CJson strings = CJson::array();
    for (const auto& [nOffset, sText] : library.m_Strings)
        strings.push_back(CJson::array({nOffset, ByteText(sText)}));
    CJson effects = CJson::array();
    for (const CPackedEffect& effect : library.m_Effects)
    {
        CJson keys = CJson::array();
        for (const CPackedKey& key : effect.m_Keys)
            keys.push_back(KeyJson(key, module));
        effects.push_back({{"name", ByteText(effect.m_sName)},
                           {"offset", effect.m_nOffset},
                           {"phaseLength", effect.m_nPhaseLength},
                           {"keys", std::move(keys)}});
    }
    CJson names = CJson::array();
    for (const std::string& sName : library.m_EffectNames)
        names.push_back(ByteText(sName));
    return {{"header",
             {{"magic", h.m_nMagic},
              {"fileVersion", h.m_nFileVersion},
              {"typeTableVersion", h.m_nTypeTableVersion},
              {"stringTableSize", h.m_nStringTableSize},
              {"curveTableSize", h.m_nCurveTableSize},
              {"numKeys", h.m_nNumKeys},
              {"numEffects", h.m_nNumEffects},
              {"numTypes", h.m_nNumTypes},
              {"stringTableOffset", h.m_nStringTableOffset},
              {"effectNamesOffset", h.m_nEffectNamesOffset}}},
            {"byteOrder", library.m_bBigEndian ? "big" : "little"},
            {"keyCounts", library.m_KeyCounts},
            {"strings", std::move(strings)},
            {"effects", std::move(effects)},
            {"effectNames", std::move(names)}};
}

void PrintLibrary(const CJson& json)
{
    const CJson& h = json["header"];
    std::printf("packed effects, version %u, %s-endian, plug-in version %u\n", h["fileVersion"].get<uint32_t>(),
                json["byteOrder"].get<std::string>().c_str(), h["typeTableVersion"].get<uint32_t>());
    std::printf("%u effects, %u keys, %u types, strings %u bytes at %u, curves %u bytes, effect names at %u\n",
                h["numEffects"].get<uint32_t>(), h["numKeys"].get<uint32_t>(), h["numTypes"].get<uint32_t>(),
                h["stringTableSize"].get<uint32_t>(), h["stringTableOffset"].get<uint32_t>(),
                h["curveTableSize"].get<uint32_t>(), h["effectNamesOffset"].get<uint32_t>());
    for (const CJson& effect : json["effects"])
    {
        std::printf("\n[%u] %s, %u ms\n", effect["offset"].get<uint32_t>(), effect["name"].get<std::string>().c_str(),
                    effect["phaseLength"].get<uint32_t>());
        for (const CJson& key : effect["keys"])
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
    }
}
} // namespace

void AddDumpCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand =
        app.add_subcommand("dump", "Read a packed file strictly and print what it holds, or what is wrong and where");
    auto pFile = std::make_shared<std::string>();
    auto pProject = std::make_shared<std::string>();
    pCommand->add_option("PACKED", *pFile, "The packed file")->required();
    pCommand->add_option("--project", *pProject,
                         "A path in the project whose plug-in packed it; by default the packed file's own place");
    pCommand->callback([&options, &nResult, pFile, pProject] {
        CBatchSession session(options);
        nResult = eExit_Failed;
        std::string sBytes;
        if (!ReadWholeFile(*pFile, sBytes))
        {
            Fail("cannot read " + *pFile);
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
        const CJson json = LibraryJson(library, session.m_pApp->m_EffectModule);
        if (options.m_bJson)
            PrintJson(json);
        else
            PrintLibrary(json);
    });
}
