#pragma once

#include "support/TempDir.h"

// Works in a directory for a scope.
class CWorkingDir
{
public:
    explicit CWorkingDir(const std::string& sDir) : m_Old(std::filesystem::current_path())
    {
        std::filesystem::current_path(sDir);
    }
    ~CWorkingDir() { std::filesystem::current_path(m_Old); }
    CWorkingDir(const CWorkingDir&) = delete;
    CWorkingDir& operator=(const CWorkingDir&) = delete;

private:
    std::filesystem::path m_Old;
};

// Makes a directory below another, with all on the way. Its path.
inline std::string MakeDir(const CTempDir& dir, const std::string& sName)
{
    std::filesystem::create_directories(dir.path(sName));
    return dir.path(sName);
}
