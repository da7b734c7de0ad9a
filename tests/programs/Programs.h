#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/Process.h"
#include "support/TempDir.h"

// Runs one of the built programs to its end.
inline CProcessResult Run(const std::string& sProgram, const std::vector<std::string>& arguments,
                          const std::string& sDirectory = std::string())
{
    const CProcessResult result = RunProcess(std::string(EMBERDECK_BIN_DIR) + "/" + sProgram, arguments,
                                             sDirectory, 120000, size_t(256) << 20);
    EXPECT_TRUE(result.m_bStarted) << sProgram;
    EXPECT_FALSE(result.m_bTimedOut) << sProgram;
    return result;
}
inline CProcessResult Batch(const std::vector<std::string>& arguments)
{
    return Run("emberdeck-batch", arguments);
}

// A copy of the sample project with a locator of its own.
class CSampleProject : public CTempDir
{
public:
    explicit CSampleProject(const std::string& sPlugin = "fireglass")
    {
        std::filesystem::copy(std::string(EMBERDECK_BIN_DIR) + "/bonfire-project", dir(),
                              std::filesystem::copy_options::recursive);
        SetPlugin(std::string(EMBERDECK_BIN_DIR) + "/" + sPlugin + ".dll");
    }
    void SetPlugin(const std::string& sPath) const
    {
        write("bonfire.proj00",
              "[Project Directories]\r\nResourceRoot=resources\r\n[Project Binaries]\r\nFireglass=" + sPath +
                  "\r\n[Tools Launch]\r\nPCBinary=" + EMBERDECK_BIN_DIR + "/bonfire\r\n");
    }
};

inline bool Holds(const std::string& sText, const std::string& sPart)
{
    return sText.find(sPart) != std::string::npos;
}
