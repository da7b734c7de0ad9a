#include <filesystem>

#include "programs/Programs.h"

// The headers that games are built on: each compiles alone, without a warning, for whatever compiler is there, and the
// example at its head runs.

namespace
{
const std::string c_sHeader = std::string(EMBERDECK_SOURCE_DIR) + "/Engine/sdk/inc/emberdeck_effects.h";
const std::string c_sPlugIn = std::string(EMBERDECK_SOURCE_DIR) + "/samples/bonfire/plugin/fireglass.c";

std::string Compile(const std::string& sCommand)
{
    const CProcessResult result =
        RunProcess("sh",
                   {"-c", sCommand + " -Wall -Wextra -Wpedantic -Wconversion -O2 -I " + EMBERDECK_SOURCE_DIR +
                              "/Engine/sdk/inc"},
                   "", 120000);
    return result.m_nExitCode == 0 ? result.m_sErrors : "failed: " + result.m_sErrors;
}
bool IsThere(const std::string& sProgram)
{
    return RunProcess("sh", {"-c", "command -v " + sProgram}, "", 10000).m_nExitCode == 0;
}

// The lines between "An example" and the next words of the comment at the head of the header.
std::string Example()
{
    const std::string sHeader = ReadBytes(c_sHeader), sBegin = " *     ";
    std::string sExample;
    for (size_t n = sHeader.find("An example, whole:"); n != std::string::npos;)
    {
        n = sHeader.find('\n', n) + 1;
        const std::string sLine = sHeader.substr(n, sHeader.find('\n', n) - n);
        if (sLine == " *")
            sExample += '\n';
        else if (sLine.compare(0, sBegin.size(), sBegin) == 0)
            sExample += sLine.substr(sBegin.size()) + '\n';
        else
            return sExample.substr(1, sExample.size() - 2);
    }
    return sExample;
}
} // namespace

TEST(GameHeaders, CompileForEveryCompilerWithoutAWarning)
{
    CTempDir dir;
    const std::string sText =
        "#include \"emberdeck_effects.h\"\nint main(void) { CEmberdeckFile file; return "
        "EmberdeckOpen(&file, \"\", 0, NULL, NULL, 0, NULL); }\n";
    dir.write("header.c", sText);
    dir.write("header.cpp", sText);
    const std::string sOut = " -c -o " + dir.path("header.o") + " " + dir.path("header");
    int nTried = 0;
    for (const std::string sCompiler : {"cc", "gcc", "clang", "x86_64-w64-mingw32-gcc", "c++", "clang++"})
    {
        if (!IsThere(sCompiler))
            continue;
        ++nTried;
        const bool bCpp = sCompiler.back() == '+';
        EXPECT_EQ("",
                  Compile(sCompiler + (bCpp ? " -std=c++17" : " -std=c99") + sOut + (bCpp ? ".cpp" : ".c")))
            << sCompiler;
    }
    EXPECT_GE(nTried, 2);
}

TEST(GameHeaders, TheExampleRuns)
{
    const std::string sExample = Example();
    EXPECT_TRUE(Holds(ReadBytes(std::string(EMBERDECK_SOURCE_DIR) + "/docs/manual/game-headers.md"),
                      "```c\n" + sExample + "```\n"))
        << "page and header differ";
    CSampleProject project;
    ASSERT_EQ(0, Batch({"pack", project.path("bonfire.Fx00a")}).m_nExitCode);
    const std::string sMain = sExample + R"(
#define ROOM 100000
int main(int argc, char** argv)
{
    static char s_Bytes[ROOM];
    CEffectTypeTable* pTypes = NULL;
    FILE* pFile = fopen(argv[argc - 1], "rb");
    const size_t nSize = pFile ? fread(s_Bytes, 1, ROOM, pFile) : 0;
    EmberdeckGetInfo(&pTypes);
    Show(s_Bytes, nSize, pTypes);
    Show(s_Bytes, nSize - 4, pTypes);
    return 0;
}
)";
    project.write("example.c",
                  "#include \"effecttypes.h\"\nextern void EmberdeckGetInfo(CEffectTypeTable**);\n" + sMain);
    project.write("example.cpp",
                  "#include \"effecttypes.h\"\nextern \"C\" void EmberdeckGetInfo(CEffectTypeTable**);\n" +
                      sMain);
    EXPECT_EQ("", Compile("cc -std=c99 -c -o " + project.path("plugin.o") + " " + c_sPlugIn));
    for (const std::string sHow : {"cc -std=c99 example.c", "c++ -std=c++17 example.cpp"})
    {
        EXPECT_EQ("", Compile("cd " + project.dir() + " && " + sHow + " plugin.o -o example"));
        const CProcessResult result =
            RunProcess(project.path("example"), {project.path("bonfire.Fx00p")}, "", 10000);
        EXPECT_EQ("Emitter from 0.1 s, size 0.425 in the middle\n"
                  "Emitter from 1 s, size 0.03 in the middle\n"
                  "Emitter from 8 s, size 1 in the middle\n"
                  "byte 36: the effect names are not between the effects and the end of the file\n",
                  result.m_sOutput)
            << sHow;
    }
}
