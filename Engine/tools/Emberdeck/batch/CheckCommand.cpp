#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/EmberdeckQSA.h"

namespace
{
class CFindings : public ILoadObserver
{
public:
    void OnFinding(const CLoadFinding& finding) override { m_List.push_back(finding); }
    std::vector<CLoadFinding> m_List;
};

// A name may hold line ends; a finding stays on its line.
std::string OnOneLine(std::string sText)
{
    for (char& c : sText)
        c = static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    return sText;
}

std::string Where(const CLoadFinding& finding)
{
    std::string sWhere;
    if (!finding.m_sEffect.empty())
        sWhere += finding.m_sEffect + ": ";
    if (!finding.m_sKey.empty())
        sWhere += finding.m_sKey + ": ";
    return sWhere;
}

// One library, loaded into a model of its own. Gives its entry of the JSON list.
CJson CheckOne(const std::string& sFile, const CBatchOptions& options, bool& bLoaded, size_t& nFindings)
{
    CBatchSession session(options);
    CFindings findings;
    std::string sError;
    CEmberdeckApp& app = *session.m_pApp;
    bLoaded = session.OpenProject(sFile);
    if (bLoaded && !LoadEffectLibrary(sFile.c_str(), app.m_SpellMgr, app.m_EffectModule, &app.m_EffectTree,
                                      &app.m_PrefabTree, sError, &session.m_Prompts, &findings))
    {
        bLoaded = false;
        app.TellLoadFailed(sFile, sError);
    }
    nFindings = findings.m_List.size();

    CJson list = CJson::array();
    for (const CLoadFinding& finding : findings.m_List)
    {
        list.push_back({{"effect", ReadableText(finding.m_sEffect)},
                        {"key", ReadableText(finding.m_sKey)},
                        {"text", ReadableText(finding.m_sText)}});
        if (!options.m_bJson)
            std::printf("%s: %s%s\n", sFile.c_str(), OnOneLine(ReadableText(Where(finding))).c_str(),
                        OnOneLine(ReadableText(finding.m_sText)).c_str());
    }
    if (!options.m_bJson && !options.m_bQuiet && bLoaded)
        std::printf("%s: %s\n", sFile.c_str(),
                    nFindings == 0 ? "sound" : (std::to_string(nFindings) + " findings").c_str());
    return {{"file", ReadableText(sFile)}, {"loaded", bLoaded}, {"error", ReadableText(bLoaded || !sError.empty() ? sError : session.m_Prompts.GetLastFailure())}, {"findings", std::move(list)}};
}
} // namespace

void AddCheckCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand =
        app.add_subcommand("check", "Load libraries and tell what the loader repairs or drops in silence");
    auto pFiles = std::make_shared<std::vector<std::string>>();
    auto pStrict = std::make_shared<bool>(false);
    pCommand->add_option("LIB", *pFiles, "The libraries")->required();
    pCommand->add_flag("--strict", *pStrict, "A finding is a failure");
    pCommand->callback([&options, &nResult, pFiles, pStrict] {
        CJson all = CJson::array();
        for (const std::string& sFile : *pFiles)
        {
            bool bLoaded = false;
            size_t nFindings = 0;
            all.push_back(CheckOne(sFile, options, bLoaded, nFindings));
            if (!bLoaded || (*pStrict && nFindings > 0))
                nResult = eExit_Failed;
        }
        if (options.m_bJson)
            PrintJson(all);
    });
}
