// Node text by all its roads: the twin, the fast one from memory and from a file, and the one token by token.
// What was read is written and read once more.

#include <algorithm>

#include "FuzzTools.h"
#include "plain/PlainNodeReader.h"
#include "qsamgr/NodeSupport.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsanodewriter.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsawriter.h"

namespace
{
constexpr const char* c_szFailed = "FAILED";

void AppendPlain(const CPlainNode& node, std::string& sText)
{
    if (node.m_bAtom)
    {
        sText += node.m_bString ? '"' + node.m_sValue + '"' : '<' + node.m_sValue + '>';
        return;
    }
    sText += '(';
    for (const CPlainNode& element : node.m_Elements)
        AppendPlain(element, sText);
    sText += ')';
}

// Lists round the innermost node; the node itself counts.
size_t Depth(const CPlainNode& node)
{
    size_t nDeepest = 0;
    for (const CPlainNode& element : node.m_Elements)
        nDeepest = std::max(nDeepest, Depth(element));
    return nDeepest + 1;
}

template <class TAlloc>
std::string LoadFile(const char* pszPath, TAlloc&& alloc)
{
    CRoot root(alloc);
    return CQSANodeReader::LoadEntireFile(pszPath, false, &root, &alloc) ? TreeText(&root) : c_szFailed;
}

void CheckWriting(CRoot& root, const std::string& sTree)
{
    static CMemoryFile s_Written;
    const auto pFile = std::make_unique<CQSAFile>(s_Written.Path(), false, false, false);
    CQSAWriter writer(pFile.get());
    Require(CQSANodeWriter::SaveNode(&root, &writer) && writer.Close(), "a tree can't be written");
    Require(LoadFile(s_Written.Path(), CQSALoadOnlyAlloc(262144)) == '(' + sTree + ')',
            "what was written reads differently");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CMemoryFile s_File;
    const std::string sText(reinterpret_cast<const char*>(pData), nSize);
    CPlainNode twin;
    std::string sTree;
    if (PlainReadNodes(sText, twin.m_Elements))
        AppendPlain(twin, sTree);
    else
        sTree = c_szFailed;

    // From the input itself, which ends where it ends.
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    const bool bLoaded = QSALoadText(reinterpret_cast<const char*>(pData), nSize, &root, &alloc);
    Require((bLoaded ? TreeText(&root) : c_szFailed) == sTree, "the twin and the loader differ");
    Require(bLoaded || root.GetNumElements() == 0, "a failed load touched the root");

    s_File.Write(sText);
    Require(LoadFile(s_File.Path(), CQSALoadOnlyAlloc(262144)) == sTree, "memory and file differ");
    Require(LoadFile(s_File.Path(), CQSADefaultAlloc()) == sTree, "tokens and loader differ");
    // A NUL leaves a bare value without text, which no file can hold; one more list must find its place.
    if (bLoaded && sText.find('\0') == std::string::npos && Depth(twin) < 1000 && sText.size() < 4096)
        CheckWriting(root, sTree);
    return 0;
}
