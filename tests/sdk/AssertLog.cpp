#include "qsversion.h"
#include "sdk/AssertCatcher.h"
#include "sdk/ChildProgram.h"

#include <cctype>

namespace
{

constexpr const char* c_szLibrary = "AssertWin32DLL.so";

// What every child here does: one failed assertion, then the end of the process.
void FailOnce()
{
    SetProgramVersion(MakeVersionBlock("Tool", "1.2", ""));
    EXPECT_EQ(ASSERT_RESULT_CONTINUE,
              AssertFailed("n < 3", "a.cpp", 7, "CFoo::Run", "%d%% of %s", 5, "%s%n"));
}

// The clock's digits differ from run to run: all of them become 9.
std::string ReadLog(const CChildProgram& child, const std::string& sFile)
{
    std::string s = child.Read(sFile);
    for (char& c : s)
        c = std::isdigit(static_cast<unsigned char>(c)) ? '9' : c;
    return s;
}

} // namespace

TEST(AssertLog, HoldsHeaderRecordsAndEnd)
{
    if (CChildProgram::IsChild())
        return FailOnce();
    const CChildProgram child("Tool");
    child.Place(c_szLibrary, c_szLibrary);
    ASSERT_TRUE(child.Run()) << child.Output();

    const std::string sLog = ReadLog(child, "Tool_Assert00.log");
    const std::string sRule = "  " + std::string(70, '-');
    const auto blanks = [](size_t n) { return std::string(n, ' '); };
    const std::string sBegin = "\n" + sRule + "\n" + blanks(30) + "Assert Log File\n" + blanks(35) +
                               "Tool\n" + blanks(36) + "9.9\n" + sRule + "\n\n" + blanks(34) +
                               "Unknown\n\n\n" +
                               "This file contains a log of asserts that were fired during the execution of\n"
                               "the above application.\n\nCreated at 99:99:99 on 99/99/99 \n\n---\n\n"
                               "Assertion Failure: n < 9\n\n9% of %s%n\n\nTime:\t\t99:99:99\nFile:\t\ta.cpp\n"
                               "Line:\t\t9\nFunction:\tCFoo::Run\nResult:\t\tContinue\n\n";
    EXPECT_EQ(sBegin, sLog.substr(0, sBegin.size()));
    EXPECT_TRUE(sLog.ends_with("\n---\n\nClosed at 99:99:99\n")) << sLog;
    EXPECT_NE(std::string::npos,
              child.Output().find("Assertion Failure: n < 3")); // nobody registered a handler
}

TEST(AssertLog, TakesTheFirstNameThatIsNotReadOnly)
{
    if (CChildProgram::IsChild())
        return FailOnce();
    using std::filesystem::perms;
    const CChildProgram child("Tool");
    child.Place(c_szLibrary, c_szLibrary);
    std::ofstream(child.Path("Tool_Assert00.log")) << "kept";
    std::filesystem::permissions(child.Path("Tool_Assert00.log"), perms::owner_read | perms::group_read);
    std::ofstream(child.Path("Tool_Assert01.log")) << "old";
    ASSERT_TRUE(child.Run());
    EXPECT_EQ("kept", child.Read("Tool_Assert00.log"));
    EXPECT_EQ(std::string::npos, child.Read("Tool_Assert01.log").find("old"));
    EXPECT_NE(std::string::npos, child.Read("Tool_Assert01.log").find("Closed at"));
}

TEST(AssertLog, FurtherDotLeavesOneName)
{
    if (CChildProgram::IsChild())
        return FailOnce();
    const CChildProgram child("Tool.v2.exe");
    child.Place(c_szLibrary, "libAssertWin32DLL.so");
    ASSERT_TRUE(child.Run());
    EXPECT_NE(std::string::npos, child.Read("Tool.log").find("Closed at"));

    std::filesystem::permissions(child.Path("Tool.log"), std::filesystem::perms::owner_read);
    const std::string sBefore = child.Read("Tool.log");
    ASSERT_TRUE(child.Run()); // the search ends, without a log
    EXPECT_EQ(sBefore, child.Read("Tool.log"));
}

TEST(AssertLog, NothingWithoutLibraryOrFailure)
{
    if (CChildProgram::IsChild())
    {
        if (!GetAssertMgr())
            FailOnce();
        EXPECT_EQ(std::getenv("SDK_TEST_LIBRARY") != nullptr, SetAssertHandler(nullptr, nullptr));
        return;
    }
    const CChildProgram child("Tool");
    ASSERT_TRUE(child.Run()) << child.Output();
    EXPECT_FALSE(std::filesystem::exists(child.Path("Tool_Assert00.log")));

    child.Place(c_szLibrary, "AssertWin32DLL.dll");
    ASSERT_TRUE(child.Run("SDK_TEST_LIBRARY=1")) << child.Output();
    EXPECT_FALSE(std::filesystem::exists(child.Path("Tool_Assert00.log")));
}

TEST(AssertLog, VersionTextsPreferTheFirstLanguage)
{
    CVersionBlock block;
    EXPECT_EQ(nullptr, block.Find("ProductName"));
    block.SetValue("\\StringFileInfo\\040904e4\\ProductName", "second");
    EXPECT_EQ("second", *block.Find("ProductName"));
    block.SetValue("\\StringFileInfo\\040904b0\\ProductName", "first");
    EXPECT_EQ("first", *block.Find("ProductName"));
    EXPECT_EQ(nullptr, block.Find("FileVersion"));
}
