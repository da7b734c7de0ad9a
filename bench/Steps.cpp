#include "bench/Steps.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "bench/Generator.h"
#include "bench/Measure.h"
#include "bench/plain/PlainContainer.h"
#include "bench/plain/PlainNodeReader.h"
#include "formats/EmberdeckPacker.h"
#include "formats/EmberdeckQSA.h"
#include "platform/Files.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsacompressedfile.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsatextwriter.h"

namespace
{
struct CTree
{
    CQSALoadOnlyAlloc m_Alloc{0x40000};
    CQSANode m_Root;
    ~CTree() { m_Root.Free(&m_Alloc); }
};

bool SameTree(const CQSANode& node, const CPlainNode& plain)
{
    if (node.IsAtom() != plain.m_bAtom)
        return false;
    if (plain.m_bAtom)
        return node.IsString() == plain.m_bString && plain.m_sValue == node.GetValue();
    if (node.GetNumElements() != plain.m_Elements.size())
        return false;
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
        if (!SameTree(*node.GetElement(i), plain.m_Elements[i]))
            return false;
    return true;
}
} // namespace

double StepTextToTree(const std::string& sText)
{
    CTree tree;
    const double fStart = Now();
    const bool bOk = QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double StepTextToTreeKept(const std::string& sText)
{
    static CTree s_Tree;
    s_Tree.m_Root.Free(&s_Tree.m_Alloc);
    s_Tree.m_Alloc.Reset();
    const double fStart = Now();
    const bool bOk = QSALoadText(sText.data(), sText.size(), &s_Tree.m_Root, &s_Tree.m_Alloc);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

namespace
{
// The tree of a text, read once and kept: the writer is measured many times on it.
CTree* TreeOf(const std::string& sText)
{
    static std::unique_ptr<CTree> s_pTree;
    static size_t s_nSize;
    if (!s_pTree || s_nSize != sText.size())
    {
        s_pTree = std::make_unique<CTree>();
        s_nSize = sText.size();
        if (!QSALoadText(sText.data(), sText.size(), &s_pTree->m_Root, &s_pTree->m_Alloc))
            s_pTree.reset();
    }
    return s_pTree.get();
}

bool WriteTree(const CQSANode& root, CQSATextBuffer& buffer)
{
    buffer.Clear();
    CQSATextLayout layout;
    for (uint32_t i = 0; i < root.GetNumElements(); ++i)
    {
        if (!QSASaveText(*root.GetElement(i), layout, buffer))
            return false;
    }
    return true;
}
} // namespace

double StepTreeToText(const std::string& sText)
{
    static CQSATextBuffer s_Buffer;
    const CTree* pTree = TreeOf(sText);
    if (!pTree)
        return -1.0;
    const double fStart = Now();
    const bool bOk = WriteTree(pTree->m_Root, s_Buffer);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double StepCompress(const std::string& sText, std::vector<uint8_t>* pOut)
{
    std::vector<uint8_t> out;
    const double fStart = Now();
    const bool bOk = QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), out);
    const double fTime = Now() - fStart;
    if (pOut)
        *pOut = std::move(out);
    return bOk ? fTime : -1.0;
}

double StepDecompress(const std::vector<uint8_t>& packed, size_t nSize)
{
    std::vector<uint8_t> out(nSize);
    size_t nOut = 0;
    const double fStart = Now();
    const bool bOk = QSADecompress(packed.data(), packed.size(), out.data(), out.size(), nOut);
    const double fTime = Now() - fStart;
    return bOk && nOut == nSize ? fTime : -1.0;
}

double StepLoadLibrary(const std::string& sFile)
{
    auto pLibrary = std::make_unique<CGeneratedLibrary>();
    pLibrary->m_Module.Adopt(BenchTypeTable());
    std::string sError;
    const double fStart = Now();
    const bool bOk = LoadEffectLibrary(sFile.c_str(), pLibrary->m_SpellMgr, pLibrary->m_Module,
                                       &pLibrary->m_EffectTree, &pLibrary->m_PrefabTree, sError);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

namespace
{
// The library of a file, read once and kept: writers are measured many times on it.
CGeneratedLibrary* Loaded(const std::string& sFile)
{
    static std::unique_ptr<CGeneratedLibrary> s_pLibrary;
    static std::string s_sFile;
    if (s_sFile != sFile || !s_pLibrary)
    {
        s_pLibrary = std::make_unique<CGeneratedLibrary>();
        s_pLibrary->m_Module.Adopt(BenchTypeTable());
        s_sFile = sFile;
        std::string sError;
        if (!LoadEffectLibrary(sFile.c_str(), s_pLibrary->m_SpellMgr, s_pLibrary->m_Module,
                               &s_pLibrary->m_EffectTree, &s_pLibrary->m_PrefabTree, sError))
            s_pLibrary.reset();
    }
    return s_pLibrary.get();
}
} // namespace

double StepSaveLibrary(const std::string& sFile, const std::string& sOut)
{
    CGeneratedLibrary* pLibrary = Loaded(sFile);
    if (!pLibrary)
        return -1.0;
    std::remove(sOut.c_str()); // to give a file back to the system isn't the writer's work
    const double fStart = Now();
    const bool bOk = SaveEffectLibrary(sOut.c_str(), pLibrary->m_EffectTree, pLibrary->m_PrefabTree);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double StepPackLibrary(const std::string& sFile, const std::string& sOut)
{
    CGeneratedLibrary* pLibrary = Loaded(sFile);
    if (!pLibrary)
        return -1.0;
    std::remove(sOut.c_str());
    const double fStart = Now();
    const bool bOk = PackEffectLibrary(sOut.c_str(), pLibrary->m_SpellMgr, pLibrary->m_Module);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double PlainTextToTree(const std::string& sText)
{
    std::vector<CPlainNode> nodes;
    const double fStart = Now();
    const bool bOk = PlainReadNodes(sText, nodes);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double PlainCompressStep(const std::string& sText)
{
    const double fStart = Now();
    const std::vector<uint8_t> out =
        PlainCompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size());
    const double fTime = Now() - fStart;
    return out.empty() ? -1.0 : fTime;
}

double PlainDecompressStep(const std::vector<uint8_t>& packed)
{
    std::vector<uint8_t> out;
    const double fStart = Now();
    const bool bOk = PlainDecompress(packed.data(), packed.size(), out);
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

bool CheckAgainstTwins(const std::string& sText)
{
    CTree tree;
    std::vector<CPlainNode> nodes;
    bool bOk = QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc) &&
               PlainReadNodes(sText, nodes) && nodes.size() == tree.m_Root.GetNumElements();
    for (uint32_t i = 0; bOk && i < tree.m_Root.GetNumElements(); ++i)
        bOk = SameTree(*tree.m_Root.GetElement(i), nodes[i]);
    if (!bOk)
        std::fprintf(stderr, "the fast and the plain reader disagree\n");

    // Written and read again: the same tree.
    CQSATextBuffer buffer;
    CTree again;
    bool bSame =
        WriteTree(tree.m_Root, buffer) &&
        QSALoadText(buffer.GetText().data(), buffer.GetText().size(), &again.m_Root, &again.m_Alloc) &&
        again.m_Root.GetNumElements() == nodes.size();
    for (uint32_t i = 0; bSame && i < again.m_Root.GetNumElements(); ++i)
        bSame = SameTree(*again.m_Root.GetElement(i), nodes[i]);
    if (!bSame)
        std::fprintf(stderr, "the writer gives another tree\n");

    std::vector<uint8_t> fast, back;
    const std::vector<uint8_t> plain =
        PlainCompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size());
    QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), fast);
    const bool bPacked = fast == plain && QSADecompress(fast.data(), fast.size(), back) &&
                         back.size() == sText.size() &&
                         std::memcmp(back.data(), sText.data(), back.size()) == 0;
    if (!bPacked)
        std::fprintf(stderr, "the fast and the plain container disagree\n");
    return bOk && bSame && bPacked;
}

uint64_t TreeMemory(const std::string& sText)
{
    CTree tree;
    const uint64_t nBefore = ResidentMemory();
    const bool bOk = QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc);
    const uint64_t nAfter = ResidentMemory();
    return bOk && nAfter > nBefore ? nAfter - nBefore : 0;
}
