// SPDX-License-Identifier: 0BSD
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "make/LibraryText.h"
#include "make/Resources.h"

// bonfire-make-libraries DIRECTORY writes the sample's two libraries and its resources there. The checked-in
// files are what it wrote, saved once more by the editor's own code.

EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable);

namespace
{
bool WriteFile(const std::filesystem::path& path, const std::string& sBytes)
{
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(sBytes.data(), std::streamsize(sBytes.size()));
    stream.close();
    if (!stream)
        std::fprintf(stderr, "bonfire-make-libraries: cannot write %s\n", path.c_str());
    return bool(stream);
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || argv[1][0] == '-')
    {
        std::fputs("usage: bonfire-make-libraries DIRECTORY\n", stderr);
        return 2;
    }
    const std::filesystem::path directory = argv[1];
    CEffectTypeTable* pTable = nullptr;
    EmberdeckGetInfo(&pTable);
    bool bDone = WriteFile(directory / "bonfire.Fx00a", MakeBonfire(*pTable).Write()) &&
                 WriteFile(directory / "inferno.Fx00a", MakeInferno(*pTable).Write());
    for (const CResource& resource : MakeResources())
    {
        std::string sName = resource.m_sName;
        for (char& c : sName)
            if (c == '\\')
                c = '/';
        bDone = bDone && WriteFile(directory / "resources" / sName, resource.m_sBytes);
    }
    return bDone ? 0 : 1;
}
