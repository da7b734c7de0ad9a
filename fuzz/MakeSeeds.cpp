// Makes the seeds that are no text: fuzz_make_seeds CORPUS packs and compresses the effect libraries of
// CORPUS/effect_library, and puts together a few tables of types. To be run when a format changes.

#include <filesystem>
#include <fstream>
#include <iterator>

#include "FuzzLibrary.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{
void WriteSeed(const std::filesystem::path& path, std::string_view sBytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << sBytes;
}

void DeriveSeeds(const std::filesystem::path& corpus, const std::string& sName, const std::string& sText)
{
    std::vector<uint8_t> compressed;
    QSACompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size(), compressed);
    WriteSeed(corpus / "container" / sName,
              {reinterpret_cast<const char*>(compressed.data()), compressed.size()});
    WriteSeed(corpus / "node_text" / sName, sText);
    static CTestModule s_Types;
    for (const char* pszTarget : {"PC", "Xenon"})
    {
        CFuzzLibrary library(s_Types.m_Module);
        std::string sPacked;
        if (!library.Load(sText) || !library.Pack(sPacked, pszTarget))
        {
            std::printf("%s: not packed %s\n", sName.c_str(), library.m_sError.c_str());
            continue;
        }
        for (const char* pszReader : {"packed_file", "effects_header"})
            WriteSeed(corpus / pszReader / (sName + "." + pszTarget), sPacked);
    }
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
    WriteSeed(corpus / "plugin_table" / "constants", TableSeed(3, 6, 0));
    WriteSeed(corpus / "plugin_table" / "steps", TableSeed(2, 7, 1));
    WriteSeed(corpus / "plugin_table" / "lines", TableSeed(5, 7, 3));
    return 0;
}
