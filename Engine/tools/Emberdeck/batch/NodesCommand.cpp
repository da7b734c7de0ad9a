#include <CLI/CLI.hpp>

#include "batch/Batch.h"
#include "batch/Output.h"
#include "platform/FileLock.h"
#include "platform/FileProblem.h"
#include "platform/Paths.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsanode.h"
#include "qsamgr/qsanodereader.h"
#include "qsamgr/qsautil.h"

namespace
{
// A JSON string with each byte as the character of its number.
std::string Quoted(std::string_view sBytes)
{
    std::string sOut = "\"";
    for (char c : sBytes)
    {
        const unsigned n = static_cast<unsigned char>(c);
        char szEscape[8];
        if (c == '"' || c == '\\')
            (sOut += '\\') += c;
        else if (n < 0x20 || n >= 0x7F)
        {
            std::snprintf(szEscape, sizeof(szEscape), "\\u%04x", n);
            sOut += szEscape;
        }
        else
            sOut += c;
    }
    return sOut + "\"";
}

// Lists nest 1,023 deep at most, as the reader sees to it, so recursion is bounded.
void PrintJsonNode(const CQSANode& node)
{
    if (node.IsAtom())
    {
        Put(node.IsString() ? "{\"string\":" : "{\"value\":");
        Put(Quoted(node.GetValue()));
        Put("}");
        return;
    }
    Put("[");
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
    {
        if (i > 0)
            Put(",");
        PrintJsonNode(*node.GetElement(i));
    }
    Put("]");
}

void PrintTextNode(const CQSANode& node, int nDepth)
{
    if (node.IsAtom())
    {
        std::printf("%*s%s\n", nDepth * 2, "",
                    node.IsString() ? ('"' + std::string(node.GetValue()) + '"').c_str() : node.GetValue());
        return;
    }
    std::printf("%*s(\n", nDepth * 2, "");
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
        PrintTextNode(*node.GetElement(i), nDepth + 1);
    std::printf("%*s)\n", nDepth * 2, "");
}
} // namespace

void AddNodesCommand(CLI::App& app, const CBatchOptions& options, CCommandResult& nResult)
{
    CLI::App* pCommand = app.add_subcommand("nodes", "Print the node tree of a file");
    auto pFile = std::make_shared<std::string>();
    pCommand->add_option("FILE", *pFile, "A node file; compressed when its name ends in c")->required();
    pCommand->callback(
        [&options, &nResult, pFile]
        {
            CQSALoadOnlyAlloc alloc(0x40000);
            CQSANode root;
            const std::string sNative = NativePath(*pFile);
            const CFileLock lock(*pFile, ELock::eShared);
            if (!lock.IsHeld())
            {
                nResult = Fail(lock.GetProblem());
                return;
            }
            if (!CQSANodeReader::LoadEntireFile(sNative.c_str(), CQSAUtil::IsFileCompressed(pFile->c_str()),
                                                &root, &alloc))
            {
                root.Free(&alloc);
                nResult = !ReadProblem(*pFile).empty()
                              ? FailToRead(*pFile)
                              : Fail(*pFile + ": it is damaged, nests deeper than 1023 lists, or is "
                                              "compressed text under a name "
                                              "that doesn't end in c, or the other way round");
                return;
            }
            if (options.m_bJson)
            {
                PrintJsonNode(root);
                Put("\n");
            }
            else
                for (uint32_t i = 0; i < root.GetNumElements(); ++i)
                    PrintTextNode(*root.GetElement(i), 0);
            root.Free(&alloc);
        });
}
