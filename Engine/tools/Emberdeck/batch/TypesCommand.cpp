#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "model/PropData.h"
#include "model/PropKinds.h"
#include "platform/Paths.h"
#include "qsnumber.h"

namespace
{
CJson DefaultValue(const CEffectPropertyDesc& desc)
{
    CPropData data;
    data.Assign(&desc.m_Default);
    switch (desc.m_eType)
    {
    case ePropType_Int:
        return data.GetInt();
    case ePropType_Float:
        return static_cast<double>(data.GetFloat());
    case ePropType_Color:
    {
        const uint32_t n = data.GetColor();
        return CJson::array({PropColorRed(n), PropColorGreen(n), PropColorBlue(n), PropColorAlpha(n)});
    }
    case ePropType_Vector:
    {
        const CVector3 v = data.GetVector();
        return CJson::array({static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)});
    }
    default:
        return IsTextKind(desc.m_eType) ? CJson(ReadableText(data.GetText())) : CJson(nullptr);
    }
}

CJson TypeTable(const CEffectModule& module)
{
    CJson types = CJson::array();
    for (uint32_t i = 0; i < module.GetNumTypes(); ++i)
    {
        const CEffectTypeDesc& type = *module.GetType(i);
        CJson properties = CJson::array();
        for (uint32_t j = 0; j < type.m_nNumProps; ++j)
        {
            const CEffectPropertyDesc& desc = type.m_pProps[j];
            properties.push_back({{"name", ReadableText(DescName(desc))},
                                  {"data", ReadableText(DescData(desc))},
                                  {"help", ReadableText(DescHelp(desc))},
                                  {"type", PropKind(desc.m_eType).m_pszName},
                                  {"functionCurve", desc.m_bFunctionCurve != 0},
                                  {"interpolate", desc.m_bInterpolate != 0},
                                  {"default", DefaultValue(desc)}});
        }
        types.push_back({{"name", ReadableText(TypeName(type))},
                         {"id", type.m_nTypeID},
                         {"properties", std::move(properties)}});
    }
    return {{"version", module.GetVersion()}, {"types", std::move(types)}};
}

void PrintTable(const CEffectModule& module, const CProjectInfo& project)
{
    const std::string sLoaded =
        NativeLibraryPath(project.m_sFireglass); // a name in .dll may stand for one in .so
    std::printf("Plug-in %s, version %u, %u effect types\n",
                (sLoaded.empty() ? DisplayPath(project.m_sFireglass) : sLoaded).c_str(), module.GetVersion(),
                module.GetNumTypes());
    const CJson table = TypeTable(module);
    for (const CJson& type : table["types"])
    {
        std::printf("\n%s (id %u)\n", type["name"].get<std::string>().c_str(), type["id"].get<uint32_t>());
        for (const CJson& prop : type["properties"])
        {
            const bool bCurve = prop["functionCurve"].get<bool>();
            const char* pszCurve = !bCurve                           ? ""
                                   : prop["interpolate"].get<bool>() ? ", linear curve"
                                                                     : ", step curve";
            std::string sLine =
                "  " + prop["name"].get<std::string>() + ": " + prop["type"].get<std::string>() + pszCurve;
            if (!prop["default"].is_null())
                sLine += ", default " + prop["default"].dump(-1, ' ', false, CJson::error_handler_t::replace);
            if (!prop["data"].get<std::string>().empty())
                sLine += ", " + prop["data"].get<std::string>();
            std::printf("%s\n", sLine.c_str());
        }
    }
}
} // namespace

void AddTypesCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("types", "Print the effect types of a file's project");
    auto pFile = std::make_shared<std::string>();
    pCommand->add_option("FILE", *pFile, "A library, or any path in the project's folders")->required();
    pCommand->callback(
        [&options, &nResult, pFile]
        {
            CBatchSession session(options);
            if (!session.OpenProject(*pFile))
            {
                nResult = eExit_Failed;
                return;
            }
            if (options.m_bJson)
                PrintJson(TypeTable(session.m_pApp->m_EffectModule));
            else
                PrintTable(session.m_pApp->m_EffectModule, session.m_pApp->m_Project);
        });
}
