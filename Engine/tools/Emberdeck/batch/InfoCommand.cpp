#include <map>

#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/Files.h"
#include "qsamgr/qsautil.h"

namespace
{
uint32_t CountGroups(const CLibraryTree& tree)
{
    uint32_t nGroups = 0;
    for (HLibraryItem h = tree.GetRootItem(); h; h = tree.GetNextItem(h))
        nGroups += tree.IsGroup(h) ? 1 : 0;
    return nGroups;
}

CJson Describe(const std::string& sFile, const CEmberdeckApp& app)
{
    std::map<std::string, uint32_t> types;
    CJson effects = CJson::array();
    uint32_t nKeys = 0, nTracks = 0, nLinks = 0, nOnPrefabs = 0;
    for (const auto& pSpell : app.m_SpellMgr.Spells())
    {
        nTracks += pSpell->m_Tracks.GetNumTracks();
        nKeys += pSpell->m_Tracks.GetNumKeys();
        effects.push_back({{"name", ReadableText(pSpell->m_szName)},
                           {"length", pSpell->m_Tracks.m_nPhaseLength},
                           {"tracks", pSpell->m_Tracks.GetNumTracks()},
                           {"keys", pSpell->m_Tracks.GetNumKeys()}});
    }
    app.m_SpellMgr.ForEachKey(
        [&](CSpell&, CKey& key)
        {
            ++types[ReadableText(TypeName(*key.m_pTypeDesc))];
            nLinks += key.m_bMotionLinked ? 1 : 0;
            nOnPrefabs += key.m_pParent ? 1 : 0;
        });
    CJson byType = CJson::object();
    for (const auto& [sName, nCount] : types)
        byType[sName] = nCount;
    return {
        {"file", ReadableText(sFile)},
        {"form", CQSAUtil::IsFileCompressed(sFile.c_str()) ? "compressed" : "text"},
        {"bytes", FileSize(sFile)},
        {"groups", {{"effects", CountGroups(app.m_EffectTree)}, {"prefabs", CountGroups(app.m_PrefabTree)}}},
        {"effects", app.m_SpellMgr.Spells().size()},
        {"prefabs", app.m_SpellMgr.Prefabs().size()},
        {"tracks", nTracks},
        {"keys", nKeys},
        {"keysOnPrefabs", nOnPrefabs},
        {"motionLinks", nLinks},
        {"keysByType", std::move(byType)},
        {"effectList", std::move(effects)}};
}

void PrintInfo(const CJson& info)
{
    const auto number = [&](const char* pszName) { return info[pszName].get<uint64_t>(); };
    std::printf("%s: %s, %llu bytes\n", info["file"].get<std::string>().c_str(),
                info["form"].get<std::string>().c_str(), static_cast<unsigned long long>(number("bytes")));
    std::printf("  groups   %llu of effects, %llu of prefabs\n",
                static_cast<unsigned long long>(info["groups"]["effects"].get<uint64_t>()),
                static_cast<unsigned long long>(info["groups"]["prefabs"].get<uint64_t>()));
    std::printf("  effects  %llu\n  prefabs  %llu\n", static_cast<unsigned long long>(number("effects")),
                static_cast<unsigned long long>(number("prefabs")));
    std::printf("  keys     %llu on %llu tracks, %llu on prefabs, %llu motion links\n",
                static_cast<unsigned long long>(number("keys")),
                static_cast<unsigned long long>(number("tracks")),
                static_cast<unsigned long long>(number("keysOnPrefabs")),
                static_cast<unsigned long long>(number("motionLinks")));
    for (const auto& [sName, nCount] : info["keysByType"].items())
        std::printf("    %-24s %llu\n", sName.c_str(),
                    static_cast<unsigned long long>(nCount.get<uint64_t>()));
}
} // namespace

void AddInfoCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("info", "Count what a library holds");
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
            const CJson info = Describe(*pFile, *session.m_pApp);
            if (options.m_bJson)
                PrintJson(info);
            else
                PrintInfo(info);
        });
}
