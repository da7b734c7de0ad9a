// Makes the seeds that are no text: fuzz_make_seeds CORPUS packs and compresses the effect libraries of
// CORPUS/effect_library, and puts together a few tables of types. To be run when a format changes.

#include <filesystem>
#include <fstream>
#include <iterator>

#include "CurvesPlugin.h"
#include "FuzzLibrary.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{
void WriteSeed(const std::filesystem::path& path, std::string_view sBytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << sBytes;
}

void PackSeeds(const std::filesystem::path& corpus, const CEffectModule& types, const std::string& sName,
               const std::string& sText, const std::vector<std::string>& readers)
{
    for (const char* pszTarget : {"PC", "Xenon"})
    {
        CFuzzLibrary library(types);
        std::string sPacked;
        if (!library.Load(sText) || !library.Pack(sPacked, pszTarget))
            std::printf("%s: not packed %s\n", sName.c_str(), library.m_sError.c_str());
        else
            for (const std::string& sReader : readers)
                WriteSeed(corpus / sReader / (sName + "." + pszTarget), sPacked);
    }
}

void DeriveSeeds(const std::filesystem::path& corpus, const std::string& sName, const std::string& sText)
{
    std::vector<uint8_t> compressed;
    QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), compressed);
    WriteSeed(corpus / "container" / sName,
              {reinterpret_cast<const char*>(compressed.data()), compressed.size()});
    WriteSeed(corpus / "node_text" / sName, sText);
    static CTestModule s_Types;
    PackSeeds(corpus, s_Types.m_Module, sName, sText, {"packed_file", "effects_header"});
}

std::string Text(std::string_view s)
{
    return char(s.size()) + std::string(s);
}

// As CWildTable reads it: one property of each kind up to nKinds for each of nTypes types.
std::string TableSeed(uint8_t nTypes, uint8_t nKinds, uint8_t nFlags)
{
    std::string s(1, char(nTypes));
    for (uint8_t t = 0; t < nTypes; ++t)
    {
        s += char(nKinds);
        for (uint8_t k = 0; k < nKinds; ++k)
        {
            s += Text("Prop" + std::to_string(k)) + Text(k % 2 ? "0;10" : "Add, Alpha") + "\1" +
                 char(k + t * 5);
            s += char(nFlags & 1);
            s += std::string(size_t(nFlags & 1), '\1') + char(nFlags >> 1) + Text(k % 3 ? "Alpha" : "1234");
        }
        s += Text("Type" + std::to_string(t)) + "\1";
    }
    return s + "VERS" + std::string(1, '\0') + "\1@\4text\1\x80\4Addx\1\xFF\5Alpha";
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const std::filesystem::path corpus = argv[1];
    for (const auto& entry : std::filesystem::directory_iterator(corpus / "effect_library"))
    {
        std::ifstream file(entry.path(), std::ios::binary);
        DeriveSeeds(corpus, entry.path().filename(), std::string(std::istreambuf_iterator<char>(file), {}));
    }
    CatchAsserts(FUZZ_GO_ON); // a curve of a kind without a value is the plug-in's fault
    CTestModule curves([](CTestPlugin& plugin) { DescribeCurves(plugin); });
    PackSeeds(corpus, curves.m_Module, "curves",
              R"((header (version 1))(effect-tree (container (name "[Effects]") (children
(effect (name "E") (length 900) (key-list
(key (name "a") (type "All") (id 1) (start-time 0) (end-time 500) (track 0) (properties))
(key (name "b") (type "All") (id 2) (start-time 500) (end-time 800) (track 0) (motion-link (id 1)) (properties
(property (name "Count") (type "Int") (value-list
(value (time 0) (data 1)) (value (time 0.5) (data 9)) (value (time 1) (data 2))))))
))))))",
              {"effects_header"});
    WriteSeed(corpus / "plugin_table" / "constants", TableSeed(3, 6, 0));
    WriteSeed(corpus / "plugin_table" / "steps", TableSeed(2, 7, 1));
    WriteSeed(corpus / "plugin_table" / "lines", TableSeed(5, 7, 3));
    return 0;
}
