#include <CLI/CLI.hpp>

#include "app/Advice.h"
#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/LoadFindings.h"
#include "formats/LoadReport.h"
#include "formats/ResourceCollector.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{
struct CCheckRequest
{
    std::vector<std::string> m_Files;
    bool m_bStrict = false;
    bool m_bResources = false;
};

// The names that programs know kinds of findings by.
const char* KindName(EFinding eKind)
{
    switch (eKind)
    {
    case EFinding::eCut:
        return "cut";
    case EFinding::eConflict:
        return "conflict";
    case EFinding::eMissingType:
        return "missing type";
    case EFinding::eMissingFile:
        return "missing resource";
    default:
        return "repair";
    }
}

// Files of the resource folder that properties name and that aren't there.
void FindMissingResources(const CEmberdeckApp& app, CLoadReport& report)
{
    ForEachResourceFile(
        app.m_SpellMgr,
        [&](const CSpell& spell, const CKey& key, const CEffectProperty& prop, const std::string& sFile)
        {
            if (!FileExists(NativePath(app.m_sResourceRoot + sFile)))
                report.OnFinding(
                    {spell.m_szName, KeyTitle(key),
                     "The file \"" + sFile + "\" of property " + DescName(*prop.GetDesc()) + " isn't there.",
                     EFinding::eMissingFile});
        });
}

// One library, loaded into a model of its own. Gives its entry of the JSON list.
CJson CheckOne(const std::string& sFile, const CCheckRequest& request, const CBatchOptions& options,
               bool& bSound)
{
    CBatchSession session(options);
    CLoadReport report;
    std::string sError;
    CEmberdeckApp& app = *session.m_pApp;
    bool bLoaded = session.OpenProject(sFile);
    if (bLoaded && !LoadEffectLibrary(sFile.c_str(), app.m_SpellMgr, app.m_EffectModule, &app.m_EffectTree,
                                      &app.m_PrefabTree, sError, &session.m_Prompts, &report))
    {
        bLoaded = false;
        app.TellLoadFailed(sFile, sError, report);
    }
    if (bLoaded && request.m_bResources)
        FindMissingResources(app, report);
    const size_t nFindings = report.Findings().size();
    bSound = bLoaded && !report.IsDamaged() && !(request.m_bStrict && nFindings > 0);

    CJson list = CJson::array();
    for (const CLoadFinding& finding : report.Findings())
    {
        list.push_back({{"effect", ReadableText(finding.m_sEffect)},
                        {"key", ReadableText(finding.m_sKey)},
                        {"text", ReadableText(finding.m_sText)},
                        {"kind", KindName(finding.m_eKind)}});
        if (!options.m_bJson)
            std::printf("%s: %s\n", sFile.c_str(), ReadableText(FindingLine(finding)).c_str());
    }
    if (!options.m_bJson && !options.m_bQuiet && bLoaded)
        std::printf("%s: %s\n", sFile.c_str(),
                    report.IsDamaged() ? ("not whole: " + DamageText(report)).c_str()
                    : nFindings == 0   ? "sound"
                                       : (std::to_string(nFindings) + " findings").c_str());
    return {{"file", ReadableText(sFile)},
            {"loaded", bLoaded},
            {"whole", bLoaded && !report.IsDamaged()},
            {"error", ReadableText(bLoaded || !sError.empty() ? sError : session.m_Prompts.GetLastFailure())},
            {"findings", std::move(list)}};
}
} // namespace

void AddCheckCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand =
        app.add_subcommand("check", "Load libraries and tell what the loader repairs or drops in silence");
    auto pRequest = std::make_shared<CCheckRequest>();
    pCommand->add_option("LIB", pRequest->m_Files, "The libraries")->required();
    pCommand->add_flag("--strict", pRequest->m_bStrict,
                       "A finding is a failure; a library that is cut or in conflict always is one");
    pCommand->add_flag("--resources", pRequest->m_bResources,
                       "Find resource files, too, that properties name and that aren't there");
    pCommand->callback(
        [&options, &nResult, pRequest]
        {
            CJson all = CJson::array();
            for (const std::string& sFile : pRequest->m_Files)
            {
                bool bSound = false;
                all.push_back(CheckOne(sFile, *pRequest, options, bSound));
                if (!bSound)
                    nResult = eExit_Failed;
            }
            if (options.m_bJson)
                PrintJson(all);
        });
}
