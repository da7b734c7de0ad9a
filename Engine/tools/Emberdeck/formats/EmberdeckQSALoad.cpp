#include "formats/EmberdeckQSA.h"

#include <functional>

#include "formats/LibraryLoader.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/IPrompts.h"
#include "platform/Paths.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsacompressedfile.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsautil.h"

namespace
{

constexpr CFieldName c_ContainerName = "container";

constexpr int32_t c_nFormatVersion = 1;
constexpr uint32_t c_nLoadBlockSize = 262144;
constexpr const char* c_pszUnreadable = "Failed to load the file from disk into memory";

// The node tree of a file, freed in the order that it needs.
struct CLoadedNodes
{
    CLoadedNodes() = default;
    ~CLoadedNodes() { m_Root.Free(&m_Alloc); }
    CLoadedNodes(const CLoadedNodes&) = delete;
    CLoadedNodes& operator=(const CLoadedNodes&) = delete;

    CQSANode m_Root; // goes last
    CQSALoadOnlyAlloc m_Alloc{c_nLoadBlockSize};
    CQSATextOutcome m_Outcome;
};

bool IsVersionSupported(const CQSANode& root)
{
    const CQSANode* pHeader = CQSAUtil::ShallowFindList(&root, "header");
    if (!pHeader)
        return false;
    static constexpr std::array<CFieldName, 1> c_aNames = {"version"};
    const CNodeFields<1> fields(*pHeader, c_aNames, [](const CQSANode&) {});
    const char* pszVersion = fields.FindValue(0);
    return pszVersion && QSTextToInt(pszVersion) == c_nFormatVersion;
}

// pszFilename is null for a text in memory.
bool LoadNodes(CLibraryLoader& loader, const CEffectModule& module, const char* pszFilename,
               const std::function<bool(CLoadedNodes&)>& read)
{
    if (!module.IsLoaded())
    {
        loader.AppendError("No Fireglass DLL was loaded");
        return false;
    }
    CLoadedNodes nodes;
    const bool bRead = read(nodes);
    loader.TellText(nodes.m_Outcome, pszFilename);
    if (!bRead)
    {
        loader.AppendError(c_pszUnreadable);
        return false;
    }
    if (!IsVersionSupported(nodes.m_Root))
    {
        loader.AppendError("Invalid file version");
        return false;
    }
    return loader.LoadRoot(nodes.m_Root);
}

// False.
bool NoteOutOfMemory(std::string& sError)
{
    TryAllocating([&] { sError += sError.empty() ? "Out of memory." : "\r\nOut of memory."; });
    return false;
}

} // namespace

bool LoadEffectLibrary(const char* pszFilename, CSpellMgr& spellMgr, const CEffectModule& module,
                       CEffectTree* pEffectTree, CPrefabTree* pPrefabTree, std::string& sError,
                       IPrompts* pPrompts, ILoadObserver* pObserver, const CLoadGoOn& goOn)
{
    const CWaitScope wait(pPrompts);
    bool bLoaded = false;
    const bool bWhole = AllocateAll(
        [&]
        {
            CLibraryLoader loader(spellMgr, module, pEffectTree, pPrefabTree, sError, pObserver, goOn);
            const std::string sPath = pszFilename ? pszFilename : "";
            const CFileLock lock(sPath, ELock::eShared);
            if (!lock.IsHeld())
                loader.AppendError(lock.GetProblem().c_str());
            const bool bReadable = pszFilename && lock.IsHeld();
            bLoaded = LoadNodes(loader, module, pszFilename,
                                [&](CLoadedNodes& nodes)
                                {
                                    return bReadable && CQSANodeReader::LoadEntireFile(
                                                            NativePath(pszFilename).c_str(),
                                                            CQSAUtil::IsFileCompressed(pszFilename),
                                                            &nodes.m_Root, &nodes.m_Alloc, nodes.m_Outcome);
                                });
        });
    return (bWhole || NoteOutOfMemory(sError)) && bLoaded;
}

bool LoadEffectText(std::string_view sText, CSpellMgr& spellMgr, const CEffectModule& module,
                    CEffectTree* pEffectTree, CPrefabTree* pPrefabTree, std::string& sError,
                    ILoadObserver* pObserver)
{
    bool bLoaded = false;
    const bool bWhole = AllocateAll(
        [&]
        {
            CLibraryLoader loader(spellMgr, module, pEffectTree, pPrefabTree, sError, pObserver);
            bLoaded = LoadNodes(loader, module, nullptr,
                                [&](CLoadedNodes& nodes) {
                                    return QSALoadText(sText.data(), sText.size(), &nodes.m_Root,
                                                       &nodes.m_Alloc, &nodes.m_Outcome);
                                });
        });
    return (bWhole || NoteOutOfMemory(sError)) && bLoaded;
}

std::optional<bool> IsWholeEffectFile(const std::string& sName, std::string_view sContent)
{
    // Compressed text is 8 times as long at the most, the tree of a text twice as large.
    constexpr size_t c_nMaxText = size_t(256) << 20;
    std::vector<uint8_t> text;
    bool bEnded = true;
    if (CQSAUtil::IsFileCompressed(sName.c_str()))
    {
        if (!QSADecompress(reinterpret_cast<const uint8_t*>(sContent.data()), sContent.size(), text,
                           c_nMaxText, &bEnded))
            return sContent.size() > c_nMaxText / 8 ? std::nullopt : std::optional(false);
        sContent = std::string_view(reinterpret_cast<const char*>(text.data()), text.size());
    }
    if (sContent.size() > c_nMaxText)
        return std::nullopt;
    CLoadedNodes nodes;
    return QSALoadText(sContent.data(), sContent.size(), &nodes.m_Root, &nodes.m_Alloc, &nodes.m_Outcome) &&
           bEnded && !nodes.m_Outcome.IsCut() && !nodes.m_Outcome.IsConflict() &&
           IsVersionSupported(nodes.m_Root) && CQSAUtil::ShallowFindList(&nodes.m_Root, "effect-tree");
}

CLibraryLoader::CLibraryLoader(CSpellMgr& spellMgr, const CEffectModule& module, CEffectTree* pEffectTree,
                               CPrefabTree* pPrefabTree, std::string& sError, ILoadObserver* pObserver,
                               const CLoadGoOn& goOn)
    : m_Load(module, sError, pObserver),
      m_Properties(m_Load),
      m_Prefabs(m_Load, m_Properties, spellMgr, pPrefabTree),
      m_Effects(m_Load, m_Properties, m_Prefabs, spellMgr, pEffectTree),
      m_GoOn(goOn)
{
}

void CLoadState::AddMessage(const std::string& sMessage)
{
    if (!m_sError.empty())
        m_sError += "\r\n";
    m_sError += sMessage;
}

void CLibraryLoader::TellText(const CQSATextOutcome& outcome, const char* pszFilename)
{
    m_Load.m_Findings.TellDamage(outcome);
    if (m_Load.m_Findings)
        m_Load.m_Findings.TellText(outcome, pszFilename);
}

// Prefabs come first, since keys refer to them by name; the file may hold its lists in any order.
bool CLibraryLoader::LoadRoot(const CQSANode& root)
{
    if (m_Load.m_Findings)
        TellRoot(root);

    if (const CQSANode* pPrefabs = CQSAUtil::ShallowFindList(&root, "prefab-tree"))
    {
        if (!LoadTree(*pPrefabs, m_Prefabs))
        {
            m_Load.AppendError("Failed loading prefab tree");
            return false;
        }
    }
    else if (CLibraryTree* pTree = m_Prefabs.Tree())
    {
        pTree->InsertGroup("[Prefabs]", {});
    }

    const CQSANode* pEffects = CQSAUtil::ShallowFindList(&root, "effect-tree");
    if (!pEffects)
    {
        m_Load.AppendError("No effect list found in the file");
        return false;
    }
    if (!LoadTree(*pEffects, m_Effects))
    {
        m_Load.AppendError("Failed loading effect tree");
        return false;
    }
    return true;
}

void CLibraryLoader::TellRoot(const CQSANode& root)
{
    static constexpr std::array<CFieldName, 4> c_aNames = {"resource-database", "header", "prefab-tree",
                                                           "effect-tree"};
    const CNodeFields<4> fields(root, c_aNames, m_Load.TellingSkipped(), false);
    if (const CQSANode* pHeader = fields.FindList(1))
        TellHeader(*pHeader);
    if (!fields.FindList(2))
        m_Load.m_Findings.Tell("There is no prefab tree; an empty one was made.");
    for (const size_t nTree : {2u, 3u})
    {
        const CQSANode* pTree = fields.FindList(nTree);
        if (pTree && pTree->GetNumElements() > 2)
            m_Load.m_Findings.Tell(
                QSFormat("The %s has more than one item at its top; only the first is saved again.",
                         ListName(*pTree)));
    }
}

void CLibraryLoader::TellHeader(const CQSANode& header)
{
    static constexpr std::array<CFieldName, 1> c_aNames = {"version"};
    const CNodeFields<1> fields(header, c_aNames, m_Load.TellingSkipped());
    if (const char* pszVersion = m_Load.FindValue(fields, 0))
        m_Load.m_Findings.TellWholeNumber(pszVersion, "version");
}

bool CLibraryLoader::LoadTree(const CQSANode& list, ILeafLoader& leaves)
{
    for (uint32_t i = 1; i < list.GetNumElements(); ++i)
    {
        if (!LoadTreeNode(*list.GetElement(i), {}, leaves))
            return false;
    }
    return true;
}

// Recurses as deep as groups nest, which the node reader has limited to some five hundred.
bool CLibraryLoader::LoadTreeNode(const CQSANode& node, HLibraryItem hParent, ILeafLoader& leaves)
{
    if (m_GoOn && !m_GoOn())
    {
        m_Load.AppendError("Stopped by the user");
        return false;
    }
    if (IsListNamed(node, c_ContainerName))
        return LoadContainer(node, hParent, leaves);
    if (IsListNamed(node, leaves.ListName()))
        return leaves.LoadLeaf(node, hParent);
    if (m_Load.m_Findings)
        m_Load.m_Findings.TellSkipped(node);
    return true;
}

bool CLibraryLoader::LoadContainer(const CQSANode& node, HLibraryItem hParent, ILeafLoader& leaves)
{
    static constexpr std::array<CFieldName, 2> c_aNames = {"name", "children"};
    const CNodeFields<2> fields(node, c_aNames, m_Load.TellingSkipped());
    const char* pszName = m_Load.FindValue(fields, 0);
    if (!pszName)
    {
        m_Load.AppendError("Unable to find container name");
        return false;
    }
    CLibraryTree* pTree = leaves.Tree();
    const HLibraryItem hGroup = pTree ? pTree->InsertGroup(pszName, hParent) : HLibraryItem();
    if (pTree && !hGroup)
        return false; // out of memory

    const CQSANode* pChildren = fields.FindList(1);
    for (uint32_t i = 1; pChildren && i < pChildren->GetNumElements(); ++i)
    {
        if (!LoadTreeNode(*pChildren->GetElement(i), hGroup, leaves))
        {
            m_Load.AppendError("Failed loading children of container %s", pszName);
            return false;
        }
    }
    return true;
}
