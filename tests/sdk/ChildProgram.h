#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <unistd.h>

// Runs the current test again in a copy of the test program, in a directory of its own, so that what lies
// beside the executable can be chosen. The test asks IsChild first and then does the child's part.
class CChildProgram
{
public:
    explicit CChildProgram(const std::string& sName) : m_sName(sName)
    {
        char szTemplate[] = "/tmp/sdk_childXXXXXX";
        m_Directory = mkdtemp(szTemplate);
        std::filesystem::copy_file("/proc/self/exe", m_Directory / m_sName);
    }
    ~CChildProgram() { std::filesystem::remove_all(m_Directory); }

    static bool IsChild() { return std::getenv("SDK_TEST_CHILD") != nullptr; }

    std::filesystem::path Path(const std::string& sFile) const { return m_Directory / sFile; }

    void Place(const std::string& sBuilt, const std::string& sFile) const
    {
        std::filesystem::copy_file(std::filesystem::path(EMBERDECK_BIN_DIR) / sBuilt, Path(sFile));
    }

    // True when the child's part passed. Its words are in Output.
    bool Run(const std::string& sVariables = "") const
    {
        const auto* pInfo = testing::UnitTest::GetInstance()->current_test_info();
        const std::string sCommand = "SDK_TEST_CHILD=1 " + sVariables + " '" + Path(m_sName).string() +
                                     "' --gtest_filter=" + pInfo->test_suite_name() + "." + pInfo->name() +
                                     " >'" + Path("output").string() + "' 2>&1";
        return std::system(sCommand.c_str()) == 0;
    }

    std::string Output() const { return Read("output"); }

    std::string Read(const std::string& sFile) const
    {
        std::ifstream file(Path(sFile), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

private:
    std::filesystem::path m_Directory;
    std::string m_sName;
};
