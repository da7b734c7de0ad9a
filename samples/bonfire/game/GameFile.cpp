// SPDX-License-Identifier: 0BSD
#include "game/GameFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

namespace
{
bool ReadBytes(const std::string& sPath, std::vector<uint8_t>& bytes, std::string& sError)
{
    std::error_code error;
    const auto nSize = std::filesystem::file_size(sPath, error); // an error for directories and devices too
    if (error)
    {
        sError = "cannot read " + sPath + ": " + error.message();
        return false;
    }
    if (nSize > UINT32_MAX)
    {
        sError = sPath + ": larger than a packed file can be";
        return false;
    }
    bytes.resize(size_t(nSize));
    std::ifstream stream(sPath, std::ios::binary);
    stream.read(reinterpret_cast<char*>(bytes.data()), std::streamsize(nSize));
    if (!stream || uintmax_t(stream.gcount()) != nSize)
    {
        sError = "cannot read " + sPath;
        return false;
    }
    return true;
}

bool IsPackedName(std::string sExtension)
{
    std::transform(sExtension.begin(), sExtension.end(), sExtension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return sExtension == ".fx00p";
}
} // namespace

std::unique_ptr<CGame> LoadGame(const std::string& sFile, const std::string& sPlugIn, std::string& sError)
{
    auto pGame = std::make_unique<CGame>();
    std::vector<uint8_t> bytes;
    if (!ReadBytes(sFile, bytes, sError) || !pGame->m_PlugIn.Load(OwnPath(sPlugIn), sError))
        return nullptr;
    if (!ReadPackedFile(std::move(bytes), *pGame->m_PlugIn.GetTable(), pGame->m_File, sError))
    {
        sError = sFile + ": " + sError;
        return nullptr;
    }
    return pGame;
}

std::string BesideTheProgram(const char* pszName)
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (error ? std::filesystem::path(".") : program.parent_path()) / pszName;
}

std::string OwnPath(const std::string& sPath)
{
    std::error_code error;
    if (std::filesystem::exists(sPath, error))
        return sPath;
    std::string sTurned = sPath;
    std::replace(sTurned.begin(), sTurned.end(), '\\', '/');
    return std::filesystem::exists(sTurned, error) ? sTurned : sPath;
}

std::string NewestPackedFile(const std::string& sFolder)
{
    std::string sNewest;
    std::filesystem::file_time_type newest;
    std::error_code error;
    std::filesystem::directory_iterator it(sFolder, error);
    for (; !error && it != std::filesystem::directory_iterator(); it.increment(error))
    {
        std::error_code problem;
        if (!IsPackedName(it->path().extension()) || !it->is_regular_file(problem))
            continue;
        const auto time = it->last_write_time(problem);
        const std::string sPath = it->path();
        // Of two written at once the first by name, so that the choice doesn't hang on the folder's order.
        if (problem || (!sNewest.empty() && (time < newest || (time == newest && sPath > sNewest))))
            continue;
        newest = time;
        sNewest = sPath;
    }
    return sNewest;
}

std::string ChooseFile(const std::vector<std::string>& folders, const std::string& sMissing)
{
    for (const std::string& sFolder : folders)
        if (std::string sFile = NewestPackedFile(sFolder); !sFile.empty())
            return sFile;
    return sMissing;
}
