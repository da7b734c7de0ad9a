// The benchmark: Emberdeck's hot roads beside what people use for the same jobs, in one run.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>

#include "bench/Generator.h"
#include "bench/Measure.h"
#include "bench/Peers.h"
#include "bench/Steps.h"
#include "formats/EmberdeckQSA.h"
#include "platform/Files.h"
#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsatextloader.h"
#include "qsnumber.h"

namespace
{
// One size of library with the same content in each peer's form, in files of a folder of its own.
struct CContent
{
    std::string m_sFile; // the library
    std::string m_sText;
    std::string m_sJson;
    std::string m_sXml;
};

std::string g_sDir;

std::string FilePath(const char* pszName, size_t nMegabytes)
{
    return g_sDir + "/" + pszName + std::to_string(nMegabytes);
}

bool MakeLibraryFile(size_t nMegabytes, const std::string& sFile)
{
    CGeneratedLibrary library;
    GenerateLibrary(library, nMegabytes * 1000000, 42);
    return SaveEffectLibrary(sFile.c_str(), library.m_EffectTree, library.m_PrefabTree);
}

bool MakeContent(size_t nMegabytes, bool bPeers, CContent& content)
{
    content.m_sFile = FilePath("library", nMegabytes) + ".Fx00a";
    if (!MakeLibraryFile(nMegabytes, content.m_sFile) || !ReadWholeFile(content.m_sFile, content.m_sText))
        return false;
    if (!bPeers)
        return true;
    CQSALoadOnlyAlloc alloc(0x40000);
    CQSANode root;
    if (!QSALoadText(content.m_sText.data(), content.m_sText.size(), &root, &alloc))
        return false;
    content.m_sJson = NodesAsJson(root);
    content.m_sXml = NodesAsXml(root);
    root.Free(&alloc);
    return WriteFileSafely(FilePath("json", nMegabytes), content.m_sJson) &&
           WriteFileSafely(FilePath("xml", nMegabytes), content.m_sXml);
}

// A table of samples; speeds are megabytes of node text a second, whatever the form measured.
void PrintSamples(const char* pszStep, const std::vector<CSample>& samples, size_t nTextBytes)
{
    for (const CSample& sample : samples)
    {
        const double fMb = static_cast<double>(nTextBytes) / 1e6;
        if (sample.m_bOk)
            std::printf("| %s | %s | %.3f | %.3f | %.3f | %.0f |\n", pszStep, sample.m_sName.c_str(),
                        sample.m_fMedian * 1e3, sample.m_fMin * 1e3, sample.m_fMax * 1e3,
                        fMb / sample.m_fMedian);
        else
            std::printf("| %s | %s | failed | | | |\n", pszStep, sample.m_sName.c_str());
    }
    std::fflush(stdout);
}

void PrintHead(const char* pszTitle)
{
    std::printf(
        "\n### %s\n\n| step | who | median ms | min | max | MB of node text/s |\n|---|---|---|---|---|---|\n",
        pszTitle);
}

void MeasureWarm(const CContent& content, int nRounds)
{
    const std::string sOut = g_sDir + "/out";
    const size_t nBytes = content.m_sText.size();
    std::vector<uint8_t> packed;
    StepCompress(content.m_sText, &packed);
    const CPacked zlib6 = CompressZlib(content.m_sText, 6), zlib1 = CompressZlib(content.m_sText, 1),
                  lz4 = CompressLz4(content.m_sText), zstd = CompressZstd(content.m_sText, 1);
    const CPeerWriters writers(content.m_sXml, content.m_sJson);

    PrintSamples("text to tree",
                 MeasureRounds({{"Emberdeck", [&] { return StepTextToTree(content.m_sText); }},
                                {"Emberdeck, kept", [&] { return StepTextToTreeKept(content.m_sText); }},
                                {"plain twin", [&] { return PlainTextToTree(content.m_sText); }},
                                {"pugixml", [&] { return ParsePugixml(content.m_sXml); }},
                                {"pugixml in place", [&] { return ParsePugixmlInPlace(content.m_sXml); }},
                                {"RapidJSON", [&] { return ParseRapidJson(content.m_sJson); }},
                                {"RapidJSON in situ", [&] { return ParseRapidJsonInSitu(content.m_sJson); }},
                                {"simdjson DOM, kept", [&] { return ParseSimdjson(content.m_sJson); }},
                                {"memcpy", [&] { return CopyMemory(content.m_sText); }}},
                               nRounds),
                 nBytes);
    PrintSamples("tree to text",
                 MeasureRounds({{"Emberdeck", [&] { return StepTreeToText(content.m_sText); }},
                                {"pugixml", [&] { return writers.WritePugixml(); }},
                                {"RapidJSON pretty", [&] { return writers.WriteRapidJsonPretty(); }}},
                               nRounds),
                 nBytes);
    PrintSamples("compress",
                 MeasureRounds({{"Emberdeck", [&] { return StepCompress(content.m_sText); }},
                                {"plain twin", [&] { return PlainCompressStep(content.m_sText); }},
                                {"zlib -1", [&] { return CompressZlib(content.m_sText, 1).m_fSeconds; }},
                                {"zlib -6", [&] { return CompressZlib(content.m_sText, 6).m_fSeconds; }},
                                {"lz4", [&] { return CompressLz4(content.m_sText).m_fSeconds; }},
                                {"zstd -1", [&] { return CompressZstd(content.m_sText, 1).m_fSeconds; }}},
                               std::max(3, nRounds / 3)),
                 nBytes);
    PrintSamples("decompress",
                 MeasureRounds({{"Emberdeck", [&] { return StepDecompress(packed, nBytes); }},
                                {"plain twin", [&] { return PlainDecompressStep(packed); }},
                                {"zlib -1", [&] { return DecompressZlib(zlib1.m_Bytes, nBytes); }},
                                {"zlib -6", [&] { return DecompressZlib(zlib6.m_Bytes, nBytes); }},
                                {"lz4", [&] { return DecompressLz4(lz4.m_Bytes, nBytes); }},
                                {"zstd -1", [&] { return DecompressZstd(zstd.m_Bytes, nBytes); }}},
                               nRounds),
                 nBytes);
    PrintSamples("library",
                 MeasureRounds({{"LoadEffectLibrary", [&] { return StepLoadLibrary(content.m_sFile); }},
                                {"SaveEffectLibrary", [&] { return StepSaveLibrary(content.m_sFile, sOut); }},
                                {"PackEffectLibrary", [&] { return StepPackLibrary(content.m_sFile, sOut); }},
                                {"RapidJSON parses", [&] { return ParseRapidJson(content.m_sJson); }},
                                {"RapidJSON pretty-writes", [&] { return writers.WriteRapidJsonPretty(); }}},
                               nRounds),
                 nBytes);
}

// A child's part: one first run of one step on a file, printed as seconds. By hand, what a profiler is set upon.
int RunCold(const char* pszWho, const char* pszFile)
{
    std::string sText;
    if (!ReadWholeFile(pszFile, sText))
        return 1;
    double fTime = -1.0;
    const std::string sWho = pszWho;
    if (sWho == "emberdeck")
        fTime = StepTextToTree(sText);
    else if (sWho == "pugixml")
        fTime = ParsePugixml(sText);
    else if (sWho == "pugixml-inplace")
        fTime = ParsePugixmlInPlace(sText);
    else if (sWho == "rapidjson")
        fTime = ParseRapidJson(sText);
    else if (sWho == "rapidjson-insitu")
        fTime = ParseRapidJsonInSitu(sText);
    else if (sWho == "simdjson")
        fTime = ParseSimdjsonFresh(sText);
    else if (sWho == "load")
        fTime = StepLoadLibrary(pszFile);
    else if (sWho == "save")
        fTime = StepSaveLibrary(pszFile, std::string(pszFile) + ".saved");
    else if (sWho == "pack")
        fTime = StepPackLibrary(pszFile, std::string(pszFile) + ".packed");
    else if (sWho == "tree-memory") // bytes, not seconds
        fTime = static_cast<double>(TreeMemory(sText));
    else if (sWho == "pugixml-memory")
        fTime = static_cast<double>(PugixmlMemory(sText));
    std::printf("%s\n", QSFixedText(fTime, 9).c_str());
    return fTime < 0.0 ? 1 : 0;
}

void MeasureCold(size_t nMegabytes, const CContent& content, int nRounds)
{
    const auto cold = [](const char* pszWho, const std::string& sFile) {
        return CSubject{pszWho, [=] { return MeasureInFreshProcess({"--cold", pszWho, sFile}); }};
    };
    PrintSamples(
        "text to tree, cold",
        MeasureRounds({cold("emberdeck", content.m_sFile), cold("pugixml", FilePath("xml", nMegabytes)),
                       cold("pugixml-inplace", FilePath("xml", nMegabytes)),
                       cold("rapidjson", FilePath("json", nMegabytes)),
                       cold("rapidjson-insitu", FilePath("json", nMegabytes)),
                       cold("simdjson", FilePath("json", nMegabytes)), cold("load", content.m_sFile)},
                      nRounds),
        content.m_sText.size());
}

int RunAll(bool bQuick)
{
    g_sDir = std::filesystem::temp_directory_path().string() + "/emberdeck-bench";
    std::filesystem::create_directories(g_sDir);
    std::printf("A fresh page of 4 KiB costs %.2f us here.\n", PageCost());
    for (const size_t nMegabytes : {size_t(1), size_t(20)})
    {
        CContent content;
        if (!MakeContent(nMegabytes, true, content) || !CheckAgainstTwins(content.m_sText))
            return 1;
        PrintHead((std::to_string(nMegabytes) + " MB, " + std::to_string(content.m_sText.size()) +
                   " bytes of node text")
                      .c_str());
        const int nRounds = bQuick ? 3 : nMegabytes == 1 ? 51 : 15;
        MeasureWarm(content, nRounds);
        MeasureCold(nMegabytes, content, bQuick ? 3 : 11);
        const double fTree = MeasureInFreshProcess({"--cold", "tree-memory", content.m_sFile});
        const double fDom = MeasureInFreshProcess({"--cold", "pugixml-memory", FilePath("xml", nMegabytes)});
        std::printf("\nMemory beyond the text: node tree %.2f MB, pugixml DOM %.2f MB, ratio %.2f\n",
                    fTree / 1e6, fDom / 1e6, fTree / fDom);
    }
    if (!bQuick)
    {
        CContent content;
        if (!MakeContent(200, false, content))
            return 1;
        PrintHead("200 MB, the program's own steps");
        std::vector<uint8_t> packed;
        StepCompress(content.m_sText, &packed);
        const std::string sOut = g_sDir + "/out";
        PrintSamples(
            "scale",
            MeasureRounds({{"text to tree", [&] { return StepTextToTree(content.m_sText); }},
                           {"text to tree, kept", [&] { return StepTextToTreeKept(content.m_sText); }},
                           {"tree to text", [&] { return StepTreeToText(content.m_sText); }},
                           {"compress", [&] { return StepCompress(content.m_sText); }},
                           {"decompress", [&] { return StepDecompress(packed, content.m_sText.size()); }},
                           {"LoadEffectLibrary", [&] { return StepLoadLibrary(content.m_sFile); }},
                           {"SaveEffectLibrary", [&] { return StepSaveLibrary(content.m_sFile, sOut); }},
                           {"PackEffectLibrary", [&] { return StepPackLibrary(content.m_sFile, sOut); }}},
                          3),
            content.m_sText.size());
    }
    std::filesystem::remove_all(g_sDir);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--cold") == 0)
        return RunCold(argv[2], argv[3]);
    if (argc == 4 && std::strcmp(argv[1], "--make") == 0)
        return MakeLibraryFile(static_cast<size_t>(std::clamp(QSTextToInt(argv[2]), 1, 1000)), argv[3]) ? 0
                                                                                                        : 1;
    const bool bQuick = argc == 2 && std::strcmp(argv[1], "--quick") == 0;
    if (argc != 1 && !bQuick)
    {
        std::fprintf(stderr,
                     "usage: emberdeck-bench [--quick]\n"
                     "       emberdeck-bench --make MEGABYTES FILE    a library to profile on\n"
                     "       emberdeck-bench --cold load|save|pack|emberdeck FILE    one run of one step\n");
        return 2;
    }
    return RunAll(bQuick);
}
