#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <stdlib.h>

// The bytes of a file of known size; a failure and an empty text when it can't be read.
inline std::string ReadBytes(const std::string& sPath)
{
    std::ifstream file(sPath, std::ios::binary | std::ios::ate);
    EXPECT_TRUE(file) << sPath;
    std::string sBytes(file ? static_cast<size_t>(file.tellg()) : 0, '\0');
    file.seekg(0).read(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
    return sBytes;
}
inline void WriteBytes(const std::string& sPath, const std::string& sBytes)
{
    std::ofstream file(sPath, std::ios::binary | std::ios::trunc);
    file.write(sBytes.data(), std::streamsize(sBytes.size()));
    EXPECT_TRUE(file.flush()) << sPath;
}

// A directory of the test's own, gone with all that is in it at the end.
class CTempDir
{
public:
    CTempDir()
    {
        std::string sTemplate = (std::filesystem::temp_directory_path() / "emberdeck_test_XXXXXX").string();
        const char* pszDir = mkdtemp(sTemplate.data());
        EXPECT_TRUE(pszDir) << sTemplate;
        m_sDir = pszDir ? pszDir : "";
    }
    ~CTempDir()
    {
        std::error_code error;
        if (!m_sDir.empty())
            std::filesystem::remove_all(m_sDir, error);
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;

    const std::string& dir() const { return m_sDir; }
    std::string path(const std::string& sName) const { return m_sDir + "/" + sName; }
    // Makes the directories on the way, too. The path of the file.
    std::string write(const std::string& sName, const std::string& sBytes) const
    {
        const std::string sPath = path(sName);
        std::filesystem::create_directories(std::filesystem::path(sPath).parent_path());
        WriteBytes(sPath, sBytes);
        return sPath;
    }
    bool has(const std::string& sName) const { return std::filesystem::exists(path(sName)); }

private:
    std::string m_sDir;
};
