// What a game pays to open a packed file with emberdeck_effects.h, beside copying its bytes.

#include <cstdio>
#include <cstring>
#include <filesystem>

#include "bench/Generator.h"
#include "bench/Measure.h"
#include "emberdeck_effects.h"
#include "formats/EmberdeckPacker.h"
#include "formats/PackedReader.h"
#include "platform/Files.h"

namespace
{
struct CPackedBytes
{
    std::string m_sBytes;
    std::vector<uint32_t> m_Index;
    CEmberdeckFile m_File;
};

bool Open(CPackedBytes& packed)
{
    return EmberdeckOpen(&packed.m_File, packed.m_sBytes.data(), packed.m_sBytes.size(), BenchTypeTable(),
                         packed.m_Index.data(), packed.m_Index.size(), nullptr);
}

// Each curve of each key once in its middle, as a game that starts all effects would.
double SumOfMiddles(const CEmberdeckFile& file)
{
    double fSum = 0;
    CEmberdeckEffect effect;
    CEmberdeckKey key;
    CEmberdeckProperty prop;
    for (uint32_t i = 0; EmberdeckGetEffect(&file, i, &effect); ++i)
        for (bool bKey = EmberdeckFirstKey(&effect, &key); bKey; bKey = EmberdeckNextKey(&key))
            for (bool bProp = EmberdeckFirstProperty(&key, &prop); bProp;
                 bProp = EmberdeckNextProperty(&prop))
                fSum += EmberdeckEvaluate(&prop, 0.5).m_Numbers[0];
    return fSum;
}

// Seconds of a call, below 0 when it gives false.
template <class TStep>
double Time(const TStep& step)
{
    const double fStart = Now();
    const bool bOk = step();
    return bOk ? Now() - fStart : -1.0;
}

bool Pack(CGeneratedLibrary& library, const char* pszTarget, CPackedBytes& packed)
{
    const std::string sFile = std::filesystem::temp_directory_path().string() + "/emberdeck-bench-packed";
    if (!PackEffectLibrary(sFile.c_str(), library.m_SpellMgr, library.m_Module, nullptr, pszTarget) ||
        !ReadWholeFile(sFile, packed.m_sBytes))
        return false;
    std::filesystem::remove(sFile);
    packed.m_Index.resize(EmberdeckIndexLength(packed.m_sBytes.data(), packed.m_sBytes.size()));
    return Open(packed);
}

int Measure(size_t nMegabytes)
{
    CGeneratedLibrary library;
    GenerateLibrary(library, nMegabytes * 1000000, 42);
    CPackedBytes little, big;
    if (!Pack(library, "PC", little) || !Pack(library, "Xenon", big))
        return 1;
    const CEmberdeckFile& file = little.m_File;
    const size_t nSize = little.m_sBytes.size();
    std::printf("\n%zu bytes packed (texts %u, curves %u), %u effects, %u keys, index %zu bytes\n\n"
                "| step | median ms | min | max | MB/s |\n|---|---|---|---|---|\n",
                nSize, file.m_nStringTableSize, file.m_nCurveTableSize, file.m_nNumEffects, file.m_nNumKeys,
                4 * little.m_Index.size());
    std::string sCopy(nSize, '\0');
    volatile double fSum = 0;
    const std::vector<CSubject> subjects = {
        {"memcpy",
         [&] {
             return Time([&] { return std::memcpy(sCopy.data(), little.m_sBytes.data(), nSize) != nullptr; });
         }},
        {"EmberdeckOpen", [&] { return Time([&] { return Open(little); }); }},
        {"EmberdeckOpen, high byte first", [&] { return Time([&] { return Open(big); }); }},
        {"every property evaluated once",
         [&]
         {
             return Time(
                 [&]
                 {
                     fSum = SumOfMiddles(file);
                     return true;
                 });
         }},
        {"the editor's strict reader", [&]
         {
             CPackedLibrary packed;
             std::string sError;
             return Time([&]
                         { return ReadPackedLibrary(little.m_sBytes, library.m_Module, packed, sError); });
         }}};
    for (const CSample& sample : MeasureRounds(subjects, nMegabytes > 10 ? 11 : 51))
        std::printf("| %s | %.3f | %.3f | %.3f | %.0f |\n", sample.m_sName.c_str(), sample.m_fMedian * 1e3,
                    sample.m_fMin * 1e3, sample.m_fMax * 1e3,
                    static_cast<double>(nSize) / 1e6 / sample.m_fMedian);
    return 0;
}
} // namespace

int main()
{
    return Measure(1) + Measure(20);
}
