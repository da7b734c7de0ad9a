#include <cstdlib>

#include "programs/Programs.h"

// Builds run beside artists: what a run checks out, the team's version control system knows.

namespace
{
namespace fs = std::filesystem;

class BatchSourceControl : public testing::Test
{
protected:
    void SetUp() override
    {
        setenv("GIT_CONFIG_NOSYSTEM", "1", 1);
        setenv("GIT_CONFIG_GLOBAL", "/dev/null", 1);
    }

    // Runs a client program that must succeed; gives what it prints.
    std::string Do(const std::string& sProgram, const std::vector<std::string>& arguments,
                   const std::string& sFolder = std::string()) const
    {
        const CProcessResult result =
            RunProcess(sProgram, arguments, sFolder.empty() ? m_Project.dir() : sFolder, 60000);
        EXPECT_EQ(0, result.m_nExitCode) << sProgram << ' ' << arguments[0] << ": " << result.m_sErrors;
        return result.m_sOutput;
    }
    void SetProvider(const std::string& sLines) const
    {
        m_Project.write("bonfire.proj00", m_sLocator + "[Source Control]\r\n" + sLines);
    }
    void Protect(const std::string& sName) const { fs::permissions(m_Project.path(sName), fs::perms(0444)); }
    bool IsWritable(const std::string& sName) const
    {
        return (fs::status(m_Project.path(sName)).permissions() & fs::perms::owner_write) != fs::perms::none;
    }
    std::string Marks() const
    {
        const std::string sFile = m_Project.path(".git/emberdeck-checkouts");
        return fs::exists(sFile) ? ReadBytes(sFile) : std::string();
    }

    static int CountOf(const std::string& sText, const std::string& sPart)
    {
        int nCount = 0;
        for (size_t n = sText.find(sPart); n != std::string::npos; n = sText.find(sPart, n + 1))
            ++nCount;
        return nCount;
    }
    // A repository with all that lies in a folder.
    void Commit(const std::string& sFolder) const
    {
        Do("git", {"init", "-q"}, sFolder);
        Do("git", {"add", "."}, sFolder);
        Do("git", {"-c", "user.name=Ada", "-c", "user.email=ada@example.com", "commit", "-q", "-m", "all"},
           sFolder);
    }
    // Both commands that check out end with 1, have done their work, and tell each file once, with the provider.
    void ExpectToldOnce(const std::string& sProvider, const std::string& sWhy) const
    {
        fs::remove(m_Project.path("inferno.Fx00c"));
        for (const std::string sCommand : {"pack", "update"})
        {
            const std::string sWhat = sCommand == "pack" ? "bonfire.Fx00a" : "";
            const CProcessResult result =
                Batch({"--json", sCommand, m_Project.path(sWhat), "--checkout", "yes"});
            EXPECT_EQ(1, result.m_nExitCode) << sCommand << sProvider;
            const std::string sLine = m_Project.path("bonfire.Fx00a") + " is not checked out. " + sProvider;
            EXPECT_EQ(1, CountOf(result.m_sErrors, sLine)) << sCommand << result.m_sErrors;
            EXPECT_TRUE(Holds(result.m_sErrors, sWhy)) << sCommand << result.m_sErrors;
            EXPECT_FALSE(Holds(result.m_sErrors, "source control modules")) << result.m_sErrors;
            EXPECT_TRUE(nlohmann::json::accept(result.m_sOutput)) << result.m_sOutput;
        }
        EXPECT_TRUE(m_Project.has("bonfire.Fx00p"));
    }

    CSampleProject m_Project;
    const std::string m_sLocator = ReadBytes(m_Project.path("bonfire.proj00"));
};
} // namespace

TEST_F(BatchSourceControl, GitKnowsWhatUpdateAndPackHaveCheckedOut)
{
    const std::string sLibrary = m_Project.path("bonfire.Fx00a");
    ASSERT_EQ(0, Batch({"pack", sLibrary}).m_nExitCode);
    SetProvider("Provider=Git\r\nDatabase=%PROJDIR%\r\n");
    Do("git", {"init", "-q"});
    Do("git", {"add", "."});
    Do("git", {"-c", "user.name=Ada", "-c", "user.email=ada@example.com", "commit", "-q", "-m", "all"});
    for (const char* pszName : {"bonfire.Fx00a", "inferno.Fx00c", "bonfire.Fx00p"})
        Protect(pszName);

    const CProcessResult update = Batch({"update", m_Project.dir(), "--checkout", "yes"});
    EXPECT_EQ(0, update.m_nExitCode) << update.m_sErrors;
    EXPECT_TRUE(Holds(update.m_sErrors, "bonfire.Fx00a: Yes")) << update.m_sErrors;
    EXPECT_FALSE(Holds(update.m_sErrors, "source control:")) << update.m_sErrors;
    EXPECT_EQ(std::string("bonfire.Fx00a\0inferno.Fx00c\0", 28), Marks());
    EXPECT_TRUE(IsWritable("bonfire.Fx00a"));
    EXPECT_FALSE(IsWritable("bonfire.Fx00p"));
    EXPECT_EQ("", Do("git", {"status", "--porcelain"})) << "the sample is saved as the writer has it";

    // A file that nobody has added is written without a word; one that is known is checked out first.
    EXPECT_EQ(0,
              Batch({"pack", sLibrary, "-o", m_Project.path("new.Fx00p"), "--checkout", "yes"}).m_nExitCode);
    EXPECT_EQ(0, Batch({"pack", sLibrary, "--checkout", "yes"}).m_nExitCode);
    EXPECT_TRUE(Holds(Marks(), "bonfire.Fx00p"));
    EXPECT_FALSE(Holds(Marks(), "new.Fx00p"));
    EXPECT_TRUE(IsWritable("bonfire.Fx00p"));

    // No leaves it all alone, and so does a provider that can't connect, but for telling so.
    fs::remove(m_Project.path(".git/emberdeck-checkouts"));
    EXPECT_EQ(0, Batch({"update", m_Project.dir()}).m_nExitCode);
    EXPECT_EQ("", Marks());
    fs::rename(m_Project.path(".git"), m_Project.path("gone"));
    const CProcessResult without = Batch({"update", m_Project.dir(), "--checkout", "yes"});
    EXPECT_EQ(1, without.m_nExitCode);
    EXPECT_TRUE(Holds(without.m_sErrors, "source control: " + m_Project.dir() + "/: not a git repository"))
        << without.m_sErrors;
}

TEST_F(BatchSourceControl, SubversionLocksWhatNeedsALock)
{
    SetProvider("Provider=subversion\r\n"); // the work copy around the library is meant
    CTempDir team;
    Do("svnadmin", {"create", team.path("repository")});
    const std::string sUrl = "file://" + team.path("repository");
    Do("svn", {"checkout", "-q", sUrl, "."});
    Do("svn", {"add", "-q", "bonfire.Fx00a", "bonfire.proj00"});
    Do("svn", {"propset", "-q", "svn:needs-lock", "yes", "bonfire.Fx00a"});
    Do("svn", {"commit", "-q", "-m", "all"});
    Do("svn", {"checkout", "-q", sUrl, team.path("bobs")});
    EXPECT_FALSE(IsWritable("bonfire.Fx00a"));

    EXPECT_EQ(0, Batch({"update", m_Project.dir(), "--checkout", "yes"}).m_nExitCode);
    EXPECT_TRUE(IsWritable("bonfire.Fx00a"));
    EXPECT_EQ('K', Do("svn", {"status", "bonfire.Fx00a"}).at(5));

    // Somebody else can't have it at the same time, and is told.
    const CProcessResult other = Batch({"update", team.path("bobs"), "--checkout", "yes"});
    EXPECT_EQ(1, other.m_nExitCode);
    EXPECT_EQ(1, CountOf(other.m_sErrors, "bonfire.Fx00a is not checked out. Subversion")) << other.m_sErrors;
    EXPECT_TRUE(Holds(other.m_sErrors, "is already locked by user")) << other.m_sErrors;
    EXPECT_TRUE(Holds(other.m_sErrors, "another holds a lock on it")) << other.m_sErrors;
}

TEST_F(BatchSourceControl, WhatIsNotCheckedOutFailsTheRunAndIsToldOnce)
{
    ExpectToldOnce("No source control", "names no Provider");
    SetProvider("Provider=Vault\r\n");
    ExpectToldOnce("Vault source control", "there is no provider of that name");
    SetProvider("Provider=Git\r\nDatabase=%PROJDIR%depot\r\n");
    ExpectToldOnce("Git source control", "There is no folder " + m_Project.path("depot"));
    SetProvider("Provider=Git\r\n");
    ExpectToldOnce("Git source control", "No folder of a Git work copy is named");

    const std::string sPath = std::getenv("PATH");
    setenv("PATH", m_Project.path("resources").c_str(), 1);
    ExpectToldOnce("Git source control", "The program git can't be started");
    setenv("PATH", sPath.c_str(), 1);

    // Named is the work copy of the whole game, but the library is kept by one within it.
    fs::create_directory(m_Project.path("game"));
    WriteBytes(m_Project.path("game/notes.txt"), "no library");
    Commit(m_Project.path("game"));
    SetProvider("Provider=Git\r\nDatabase=%PROJDIR%game\r\n");
    Commit(m_Project.dir());
    ExpectToldOnce("Git source control", "It belongs to the Git work copy " + m_Project.dir() + "/");
    EXPECT_FALSE(fs::exists(m_Project.path("game/.git/emberdeck-checkouts")));
}

TEST_F(BatchSourceControl, AConflictBlocksTheLibrary)
{
    SetProvider("Provider=Git\r\n");
    Commit(m_Project.dir());
    const std::string sBlob = Do("git", {"hash-object", "bonfire.Fx00a"});
    std::string sStages;
    for (const std::string sStage : {"1", "2", "3"})
        sStages += "100644 " + sBlob.substr(0, sBlob.size() - 1) + " " + sStage + "\tbonfire.Fx00a\n";
    m_Project.write("resources/stages", sStages);
    Do("git", {"rm", "-q", "--cached", "bonfire.Fx00a"});
    Do("sh", {"-c", "git update-index --index-info < resources/stages"});
    ExpectToldOnce("Git source control", "it is in conflict");
}

TEST_F(BatchSourceControl, WithoutADatabaseEachFileIsWorkedOnInItsOwnWorkCopy)
{
    SetProvider("Provider=Git\r\n");
    for (const std::string sName : {"east", "west"})
    {
        m_Project.write(sName + "/" + sName + ".Fx00a", ReadBytes(m_Project.path("bonfire.Fx00a")));
        Commit(m_Project.path(sName));
        Protect(sName + "/" + sName + ".Fx00a");
    }
    for (const char* pszName : {"bonfire.Fx00a", "inferno.Fx00c"})
        fs::remove(m_Project.path(pszName));

    const CProcessResult update = Batch({"update", m_Project.dir(), "--checkout", "yes"});
    EXPECT_EQ(0, update.m_nExitCode) << update.m_sErrors;
    EXPECT_EQ(std::string("east.Fx00a\0", 11), ReadBytes(m_Project.path("east/.git/emberdeck-checkouts")));
    EXPECT_EQ(std::string("west.Fx00a\0", 11), ReadBytes(m_Project.path("west/.git/emberdeck-checkouts")));
    EXPECT_TRUE(IsWritable("west/west.Fx00a"));
    EXPECT_FALSE(Holds(update.m_sErrors, "not checked out")) << update.m_sErrors;
}
