#include "programs/Programs.h"

// The pages of the manual that show what the program does: they are what it does.

namespace
{

std::string Page(const std::string& sName)
{
    return ReadBytes(std::string(EMBERDECK_SOURCE_DIR) + "/docs/manual/" + sName);
}

// The first line that begins so, from there on.
std::string LineThatBegins(const std::string& sText, const std::string& sBegin)
{
    const size_t nStart = sText.find("\n" + sBegin);
    if (nStart == std::string::npos)
        return {};
    return sText.substr(nStart + 1, sText.find('\n', nStart + 1) - nStart - 1);
}

} // namespace

TEST(ManualPages, TheSmallestPlugInBuildsAndLoadsAsItsPageShows)
{
    const std::string sPage = Page("plug-in.md");
    EXPECT_TRUE(Holds(sPage, "```c\n" + Page("smallest-plugin.c") + "```\n")) << "page and file differ";

    CTempDir game;
    for (const char* pszFolder : {"Engine", "docs"})
        std::filesystem::create_directory_symlink(std::string(EMBERDECK_SOURCE_DIR) + "/" + pszFolder,
                                                  game.path(pszFolder));
    const std::string sCommand = LineThatBegins(sPage, "$ cc ");
    ASSERT_FALSE(sCommand.empty());
    CProcessResult result = RunProcess("sh", {"-c", sCommand.substr(2)}, game.dir(), 60000);
    ASSERT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    EXPECT_EQ("", result.m_sErrors) << "it builds without a warning";

    game.write("game.proj00", "[Project Binaries]\n" + LineThatBegins(sPage, "Fireglass=") + "\n");
    result = Batch({"types", game.path("game.proj00")});
    ASSERT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    std::string sTypes = result.m_sOutput;
    sTypes.replace(sTypes.find(game.dir()), game.dir().size(), "/home/anna/game");
    EXPECT_TRUE(Holds(sPage, sTypes)) << sTypes;
}

TEST(ManualPages, TheBatchPageShowsWhatTheProgramPrints)
{
    CTempDir dir;
    const CProcessResult result = RunProcess("sh",
                                             {std::string(EMBERDECK_SOURCE_DIR) + "/docs/make-batch-page",
                                              EMBERDECK_BIN_DIR, dir.path("batch.md")},
                                             "", 120000);
    ASSERT_EQ(0, result.m_nExitCode) << result.m_sErrors;
    EXPECT_EQ(ReadBytes(dir.path("batch.md")), Page("batch.md")) << "run docs/make-batch-page";
}
