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
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodewriter.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsawriter.h"

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

double StepTreeToText(const std::string& sText)
{
    CTree tree;
    if (!QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc))
        return -1.0;
    const double fStart = Now();
    CQSAFile file("/dev/null", false, false, false);
    CQSAWriter writer(&file);
    bool bOk = true;
    for (uint32_t i = 0; i < tree.m_Root.GetNumElements(); ++i)
        bOk = CQSANodeWriter::SaveNode(tree.m_Root.GetElement(i), &writer) && bOk;
    bOk = writer.Close() && bOk;
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
    std::vector<uint8_t> out;
    const double fStart = Now();
    const bool bOk = QSADecompress(packed.data(), packed.size(), out);
    const double fTime = Now() - fStart;
    return bOk && out.size() == nSize ? fTime : -1.0;
}

double StepLoadLibrary(const std::string& sFile)
{
    auto pLibrary = std::make_unique<CGeneratedLibrary>();
    pLibrary->m_Module.Adopt(BenchTypeTable());
    std::string sError;
    const double fStart = Now();
    const bool bOk = LoadEffectLibrary(sFile.c_str(), pLibrary->m_SpellMgr, pLibrary->m_Module, &pLibrary->m_EffectTree,
                                       &pLibrary->m_PrefabTree, sError);
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
        if (!LoadEffectLibrary(sFile.c_str(), s_pLibrary->m_SpellMgr, s_pLibrary->m_Module, &s_pLibrary->m_EffectTree,
                               &s_pLibrary->m_PrefabTree, sError))
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
    const std::vector<uint8_t> out = PlainCompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size());
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
    bool bOk = QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc) && PlainReadNodes(sText, nodes) &&
               nodes.size() == tree.m_Root.GetNumElements();
    for (uint32_t i = 0; bOk && i < tree.m_Root.GetNumElements(); ++i)
        bOk = SameTree(*tree.m_Root.GetElement(i), nodes[i]);
    if (!bOk)
        std::fprintf(stderr, "the fast and the plain reader disagree\n");

    std::vector<uint8_t> fast, back;
    const std::vector<uint8_t> plain = PlainCompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size());
    QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), fast);
    const bool bPacked = fast == plain && QSADecompress(fast.data(), fast.size(), back) && back.size() == sText.size() &&
                         std::memcmp(back.data(), sText.data(), back.size()) == 0;
    if (!bPacked)
        std::fprintf(stderr, "the fast and the plain container disagree\n");
    return bOk && bPacked;
}

uint64_t TreeMemory(const std::string& sText)
{
    CTree tree;
    ResetPeak();
    const uint64_t nBefore = CurrentMemory();
    QSALoadText(sText.data(), sText.size(), &tree.m_Root, &tree.m_Alloc);
    const uint64_t nPeak = PeakMemory();
    return nPeak > nBefore ? nPeak - nBefore : 0;
}
