#include "programs/Programs.h"

// What a plug-in does besides its job mustn't reach the readers of output and exit status.

namespace
{
using nlohmann::json;

// A project whose plug-in is the manual's smallest one with more code in it: at the load of the library, in
// either entry point, and at the end.
class COddPlugin : public CTempDir
{
public:
    COddPlugin(const std::string& sLoad, const std::string& sInfo, const std::string& sRelease,
               const std::string& sEnd, const std::string& sLink = "-Wl,-z,lazy")
    {
        std::string sText = ReadBytes(std::string(EMBERDECK_SOURCE_DIR) + "/docs/manual/smallest-plugin.c");
        Insert(sText, "    const float fSize", "    " + sInfo + "\n");
        Insert(sText, "    (void)pTable;", "    " + sRelease + "\n");
        write("odd.c", "#include <signal.h>\n#include <stdio.h>\n#include <stdlib.h>\n#include "
                       "<sys/wait.h>\n#include <unistd.h>\n" +
                           sText + "__attribute__((constructor)) static void Load(void) { " + sLoad + " }\n" +
                           "__attribute__((destructor)) static void End(void) { " + sEnd + " }\n");
        const CProcessResult result = RunProcess(
            "cc",
            {"-shared", "-fPIC", sLink, std::string("-I") + EMBERDECK_SOURCE_DIR + "/Engine/sdk/inc", "-o",
             "odd.so", "odd.c"},
            dir(), 60000);
        EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
        write("game.proj00", "[Project Binaries]\nFireglass=odd.so\n");
    }

private:
    static void Insert(std::string& sText, const std::string& sBefore, const std::string& sMore)
    {
        const size_t n = sText.find(sBefore);
        ASSERT_NE(std::string::npos, n);
        sText.insert(n, sMore);
    }
};
} // namespace

TEST(PlugIns, WhatTheyPrintStaysOutOfTheOutput)
{
    // Each place by its name, through the library's buffer and without one.
    const auto print = [](const std::string& sPlace)
    {
        return "printf(\"" + sPlace + "-buffered \"); if (write(1, \"" + sPlace + "-raw \", " +
               std::to_string(sPlace.size() + 5) + ") < 0) return;";
    };
    const COddPlugin game(print("load"), print("info"), print("release"), print("end"));
    const CProcessResult result = Batch({"--json", "types", game.path("x")});
    EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    EXPECT_TRUE(json::accept(result.m_sOutput)) << result.m_sOutput;
    for (const std::string sPlace : {"load", "info", "release", "end"})
    {
        EXPECT_TRUE(Holds(result.m_sErrors, sPlace + "-buffered")) << result.m_sErrors;
        EXPECT_TRUE(Holds(result.m_sErrors, sPlace + "-raw")) << result.m_sErrors;
    }

    // One that stays in memory prints at the very end.
    const COddPlugin stays("", "", "", print("end"), "-Wl,-z,nodelete");
    const CProcessResult late = Batch({"--json", "types", stays.path("x")});
    EXPECT_TRUE(json::accept(late.m_sOutput)) << late.m_sOutput;
    EXPECT_TRUE(Holds(late.m_sErrors, "end-raw")) << late.m_sErrors;
}

TEST(PlugIns, WhatEndsTheProgramIsNamedAndNoSuccess)
{
    const std::string aEnds[] = {"exit(0);", "_exit(0);", "quick_exit(0);", "abort();",
                                 "*(volatile int*)0 = 1;"};
    for (const std::string& sEnd : aEnds)
        for (const std::string sPlace : {"load", "info", "release", "end"})
        {
            const COddPlugin game(sPlace == "load" ? sEnd : "", sPlace == "info" ? sEnd : "",
                                  sPlace == "release" ? sEnd : "", sPlace == "end" ? sEnd : "");
            const CProcessResult result = Batch({"types", game.path("x")});
            EXPECT_NE(0, result.m_nExitCode) << sPlace << sEnd;
            EXPECT_TRUE(Holds(result.m_sErrors, "emberdeck-batch: the plug-in " + game.dir()))
                << sPlace << sEnd << result.m_sErrors;
            EXPECT_TRUE(Holds(result.m_sErrors, "odd.so has ")) << result.m_sErrors;
        }
    // A process of its own may end.
    const COddPlugin forks("", "const int n = fork(); if (n == 0) _exit(0); waitpid(n, 0, 0);", "", "");
    const CProcessResult result = Batch({"types", forks.path("x")});
    EXPECT_EQ(0, result.m_nExitCode);
    EXPECT_EQ("", result.m_sErrors);
}

TEST(BatchJson, ToldReasonsAndFilesStandInIt)
{
    CTempDir bare;
    const std::string sLost = bare.write("a.Fx00a", "( header )");
    json list = json::parse(Batch({"--json", "check", sLost}).m_sOutput);
    EXPECT_TRUE(Holds(list[0]["error"], "Unable to find a project locator file")) << list;
    bare.write("game.proj00", "[Project Binaries]\nFireglass=none.dll\n");
    list = json::parse(Batch({"--json", "check", sLost}).m_sOutput);
    EXPECT_TRUE(Holds(list[0]["error"], "Unable to load the Fireglass library")) << list;
    EXPECT_TRUE(Holds(list[0]["error"], "There is no such file")) << list;

    CSampleProject project;
    project.write("broken.Fx00a", "( header ( version 2 ) )");
    const CProcessResult result = Batch({"--json", "update", project.dir()});
    EXPECT_EQ(1, result.m_nExitCode);
    const json files = json::parse(result.m_sOutput)["files"];
    ASSERT_EQ(3u, files.size()) << files;
    EXPECT_EQ(json({{"file", project.path("bonfire.Fx00a")}, {"result", "saved"}, {"error", ""}}), files[0]);
    EXPECT_EQ("failed", files[1]["result"]);
    EXPECT_TRUE(Holds(files[1]["error"], "Invalid file version")) << files;
    EXPECT_EQ("saved", files[2]["result"]);
}
