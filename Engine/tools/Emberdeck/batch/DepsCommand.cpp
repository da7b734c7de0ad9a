#include <new>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "formats/ResourceCollector.h"
#include "shared/engine/AssetLibrarySource.h"

void AddDepsCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("deps", "Tell what a library provides and what it needs");
    auto pFile = std::make_shared<std::string>();
    pCommand->add_option("LIB", *pFile, "The library")->required();
    auto pRules = std::make_shared<CLoadRules>();
    AddStrictOption(*pCommand, *pRules);
    pCommand->callback(
        [&options, &nResult, pFile, pRules]
        {
            CBatchSession session(options);
            if (!session.Open(*pFile, *pRules))
            {
                nResult = eExit_Failed;
                return;
            }
            CAssetLibrarySource source;
            const CEffectTree& tree = session.m_pApp->m_EffectTree;
            for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextSiblingItem(h)) // all are packed
            {
                if (!CollectResources(tree, h, source))
                    throw std::bad_alloc();
            }
            CJson provides = CJson::array();
            CJson needs = CJson::array();
            for (const auto& pResource : source.Resources())
                provides.push_back(
                    {{"name", ReadableText(pResource->m_sName)}, {"type", ReadableText(pResource->m_sType)}});
            for (const auto& pDependency : source.Dependencies())
                needs.push_back({{"source", ReadableText(pDependency->m_sSource)},
                                 {"resource", ReadableText(pDependency->m_sResource)},
                                 {"resourceType", ReadableText(pDependency->m_sResourceType)},
                                 {"type", ReadableText(pDependency->m_sType)},
                                 {"count", pDependency->m_nCount}});
            if (options.m_bJson)
            {
                PrintJson({{"provides", std::move(provides)}, {"needs", std::move(needs)}});
                return;
            }
            for (const CJson& resource : provides)
                std::printf("provides %s %s\n", resource["type"].get<std::string>().c_str(),
                            resource["name"].get<std::string>().c_str());
            for (const CJson& need : needs)
            {
                const std::string sKind = need["resourceType"].get<std::string>();
                std::printf("%s needs %s %s (%u times)\n", need["source"].get<std::string>().c_str(),
                            sKind.empty() ? "file" : sKind.c_str(),
                            need["resource"].get<std::string>().c_str(), need["count"].get<uint32_t>());
            }
        });
}
