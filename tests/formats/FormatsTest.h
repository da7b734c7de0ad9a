#pragma once

#include "formats/EmberdeckQSA.h"
#include "qsamgr/qsafile.h"
#include "support/LibraryBuilder.h"
#include "support/TempDir.h"

// The bytes that saving a library gives; the compressed form's are unpacked by the caller.
inline std::string SavedBytes(const CTestLibrary& library, const std::string& sName = "library.Fx00a")
{
    const CTempDir dir;
    EXPECT_TRUE(SaveEffectLibrary(dir.path(sName).c_str(), library.m_EffectTree, library.m_PrefabTree));
    return ReadBytes(dir.path(sName));
}

// What a load gave.
struct CLoaded
{
    std::unique_ptr<CTestLibrary> m_pLibrary;
    bool m_bLoaded = false;
    std::string m_sError;
    std::vector<CLoadFinding> m_Findings;

    const CSpellMgr& Mgr() const { return m_pLibrary->m_SpellMgr; }
    bool Found(const std::string& sPart) const
    {
        for (const CLoadFinding& finding : m_Findings)
            if (finding.m_sText.find(sPart) != std::string::npos)
                return true;
        return false;
    }
    std::string Findings() const
    {
        std::string sAll;
        for (const CLoadFinding& finding : m_Findings)
            sAll += finding.m_sEffect + " | " + finding.m_sKey + " | " + finding.m_sText + "\n";
        return sAll;
    }
};

struct CFindingList : ILoadObserver
{
    explicit CFindingList(std::vector<CLoadFinding>& findings) : m_Findings(findings) {}
    void OnFinding(const CLoadFinding& finding) override { m_Findings.push_back(finding); }
    std::vector<CLoadFinding>& m_Findings;
};

inline CLoaded LoadText(const std::string& sText,
                        std::shared_ptr<CTestModule> pModule = std::make_shared<CTestModule>())
{
    CLoaded loaded;
    loaded.m_pLibrary = std::make_unique<CTestLibrary>(std::move(pModule));
    CFindingList observer(loaded.m_Findings);
    CTestLibrary& library = *loaded.m_pLibrary;
    loaded.m_bLoaded = LoadEffectText(sText, library.m_SpellMgr, library.Module(), &library.m_EffectTree,
                                      &library.m_PrefabTree, loaded.m_sError, &observer);
    return loaded;
}

// A file around some prefabs and effects.
inline std::string FileOf(const std::string& sPrefabs, const std::string& sEffects)
{
    return "(header (version 1)) (prefab-tree (container (name \"[Prefabs]\") (children " + sPrefabs +
           "))) (effect-tree (container (name \"[Effects]\") (children " + sEffects + ")))";
}
inline std::string EffectOf(const std::string& sKeys, const std::string& sName = "Smoke")
{
    return "(effect (name \"" + sName + "\") (length 5000) (key-list " + sKeys + "))";
}
inline std::string KeyText(const std::string& sType, const std::string& sMore = "", int nID = 0,
                           int nStart = 0, int nEnd = 1000, int nTrack = 0)
{
    return "(key (name \"K\") (type \"" + sType + "\") (id " + std::to_string(nID) + ") (start-time " +
           std::to_string(nStart) + ") (end-time " + std::to_string(nEnd) + ") (track " +
           std::to_string(nTrack) + ") " + sMore + ")";
}
inline std::string PropText(const std::string& sName, const std::string& sKind, const std::string& sValues)
{
    return "(property (name \"" + sName + "\") (type \"" + sKind + "\") (value-list " + sValues + "))";
}
