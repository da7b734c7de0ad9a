#include <functional>

#include "programs/Programs.h"

// Two clones edit one library, and git brings them together.

namespace
{

using CEdit = std::function<std::string(const std::string&)>;

// The first one of a text behind another replaced; it has to be there.
std::string Replaced(const std::string& sText, const std::string& sBehind, const std::string& sOld,
                     const std::string& sNew)
{
    const size_t nBehind = sText.find(sBehind);
    const size_t nAt = sText.find(sOld, nBehind == std::string::npos ? 0 : nBehind);
    EXPECT_NE(std::string::npos, nBehind) << sBehind;
    EXPECT_NE(std::string::npos, nAt) << sOld;
    return nAt == std::string::npos ? sText : sText.substr(0, nAt) + sNew + sText.substr(nAt + sOld.size());
}
CEdit Replacing(const std::string& sBehind, const std::string& sOld, const std::string& sNew)
{
    return [=](const std::string& s) { return Replaced(s, sBehind, sOld, sNew); };
}
// Without an effect: its lines from "( effect" to the one that closes it.
CEdit Without(const std::string& sEffect)
{
    return [=](const std::string& s)
    {
        const size_t nName = s.find("( name \"" + sEffect + "\" )\r\n");
        const size_t nStart = s.rfind("\n", s.rfind("( effect\r\n", nName)) + 1;
        const std::string sTabs = s.substr(nStart, s.find('(', nStart) - nStart);
        const std::string sEnd = "\n" + sTabs + ")\r\n";
        const size_t nEnd = s.find(sEnd, nStart) + sEnd.size();
        return s.substr(0, nStart) + s.substr(nEnd);
    };
}

struct CGitCase
{
    const char* m_pszWhat;
    CEdit m_Mine;
    CEdit m_Theirs;
    std::vector<std::string> m_Differs;   // what diff tells of base and merged, in parts
    std::vector<std::string> m_Conflicts; // the same of the conflicts; none: it is clean
};

const CGitCase c_Cases[] = {
    {"different keys",
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"),
     Replacing("( name \"Torch\" )", "( name \"\" )", "( name \"T\" )"),
     {"effect \"Campfire\"\n    key 2, end: 9000 ms -> 9400 ms",
      "effect \"Torch\"\n    key 1, name: \"\" -> \"T\""},
     {}},
    {"one key, different properties",
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"),
     Replacing("\"Campfire\"", "( name \"Flames\" )", "( name \"Fire\" )"),
     {"key 2, end: 9000 ms -> 9400 ms", "key 2, name: \"Flames\" -> \"Fire\""},
     {}},
    {"one property",
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"),
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9300 )"),
     {"key 2, end: 9000 ms -> 9400 ms"},
     {"Campfire: key 2, end: 9000 ms, mine 9400 ms, theirs 9300 ms; mine stands"}},
    {"renamed and changed",
     Replacing("( effect\r\n", "( name \"Campfire\" )", "( name \"Lagerfeuer\" )"),
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"),
     {"name: \"Campfire\" -> \"Lagerfeuer\"", "key 2, end: 9000 ms -> 9400 ms"},
     {}},
    {"deleted and changed",
     Without("Campfire"),
     Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"),
     {"effect \"Campfire\"\n  - is gone"},
     {"effect \"Campfire\": mine deleted it, theirs changed it; mine stands"}},
};

class CRepository
{
public:
    explicit CRepository(const std::string& sHome, const std::string& sFolder)
        : m_sFolder(sFolder),
          m_Environment{"HOME=" + sHome,          "GIT_CONFIG_NOSYSTEM=1",
                        "GIT_AUTHOR_NAME=Ada",    "GIT_AUTHOR_EMAIL=a@example.com",
                        "GIT_COMMITTER_NAME=Ada", "GIT_COMMITTER_EMAIL=a@example.com",
                        "GIT_EDITOR=true",        "XDG_CONFIG_HOME"}
    {
    }
    CProcessResult Git(const std::vector<std::string>& arguments) const
    {
        CProcessRequest request;
        request.m_sProgram = "git";
        request.m_Arguments = arguments;
        request.m_sDirectory = m_sFolder;
        request.m_Environment = m_Environment;
        request.m_nTimeoutMs = 60000;
        return RunProcess(request);
    }
    void Do(const std::vector<std::string>& arguments) const
    {
        const CProcessResult result = Git(arguments);
        ASSERT_EQ(0, result.m_nExitCode) << arguments[0] << ": " << result.m_sOutput << result.m_sErrors;
    }
    void Commit(const CEdit& edit) const
    {
        WriteBytes(EffectFile(), edit(ReadBytes(EffectFile())));
        Do({"commit", "-q", "-a", "-m", "edit"});
    }
    std::string EffectFile() const { return m_sFolder + "/bonfire.Fx00a"; }

    const std::string m_sFolder;

private:
    const std::vector<std::string> m_Environment;
};

// Both branches of one work copy, as two clones would bring them together by a fetch.
void TryCase(const CGitCase& c, bool bRebase)
{
    CTempDir home;
    const CSampleProject project;
    const CRepository git(home.dir(), project.dir());
    git.Do({"init", "-q", "-b", "main"});
    ASSERT_EQ(0, Batch({"git-setup", project.dir()}).m_nExitCode);
    git.Do({"add", ".gitattributes", "bonfire.Fx00a"});
    git.Do({"commit", "-q", "-m", "base"});
    const std::string sBase = home.write("base.Fx00a", ReadBytes(git.EffectFile()));
    git.Do({"clone", "-q", project.dir(), home.path("other")});
    const CRepository other(home.dir(), home.path("other"));
    ASSERT_EQ(0, Batch({"git-setup", home.path("other")}).m_nExitCode);
    git.Commit(c.m_Mine);
    other.Commit(c.m_Theirs);
    git.Do({"fetch", "-q", home.path("other"), "main:theirs"});

    // The rebase plays their commit onto mine, so that the sides are what they are in a merge.
    if (bRebase)
        git.Do({"checkout", "-q", "-b", "work", "theirs"});
    const CProcessResult merged =
        git.Git(bRebase ? std::vector<std::string>{"rebase", "--onto", "main", "theirs~1", "work"}
                        : std::vector<std::string>{"merge", "-q", "--no-edit", "theirs"});
    EXPECT_EQ(c.m_Conflicts.empty(), merged.m_nExitCode == 0) << merged.m_sOutput << merged.m_sErrors;
    EXPECT_EQ(0, Batch({"check", "--strict", git.EffectFile()}).m_nExitCode) << "it loads, conflicts or not";
    const CProcessResult diff = Batch({"diff", sBase, git.EffectFile()});
    for (const std::string& sPart : c.m_Differs)
        EXPECT_TRUE(Holds(diff.m_sOutput, sPart)) << diff.m_sOutput;
    const std::string sSideFile = git.EffectFile() + ".conflicts";
    EXPECT_EQ(!c.m_Conflicts.empty(), std::filesystem::exists(sSideFile));
    for (const std::string& sConflict : c.m_Conflicts)
    {
        const auto list = nlohmann::json::parse(ReadBytes(sSideFile));
        EXPECT_EQ(c.m_Conflicts.size(), list.size());
        EXPECT_EQ(sConflict, list[0]["text"]);
        EXPECT_TRUE(Holds(git.Git({"status", "--porcelain"}).m_sOutput, "bonfire.Fx00a\n"));
    }
}
} // namespace

TEST(GitMerge, TwoClonesOfOneLibraryComeTogether)
{
    for (const CGitCase& c : c_Cases)
    {
        SCOPED_TRACE(c.m_pszWhat);
        TryCase(c, false);
        TryCase(c, true);
    }
}

TEST(GitMerge, GitShowsAndForgetsWhatItWasSetUpFor)
{
    CTempDir home;
    const CSampleProject project;
    const CRepository git(home.dir(), project.dir());
    EXPECT_EQ(1, Batch({"git-setup", project.dir()}).m_nExitCode) << "no work copy yet";
    project.write(".gitattributes", "*.dds binary");
    git.Do({"init", "-q", "-b", "main"});
    for (int i = 0; i < 2; ++i)
        ASSERT_EQ(0, Batch({"git-setup", project.path("resources")}).m_nExitCode);
    const std::string sAttributes = ReadBytes(project.path(".gitattributes"));
    EXPECT_EQ(sAttributes.find("Fx00a"), sAttributes.rfind("Fx00a")) << "set up twice, written once";
    git.Do({"add", "-A"});
    git.Do({"commit", "-q", "-m", "base"});
    git.Commit(Replacing("\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"));
    const std::string sDiff = git.Git({"diff", "HEAD~1"}).m_sOutput;
    EXPECT_TRUE(Holds(sDiff, "effect \"Campfire\"\n    key 2, end: 9000 ms -> 9400 ms\n")) << sDiff;
    const std::string sLog = git.Git({"log", "-p", "-1"}).m_sOutput;
    EXPECT_TRUE(Holds(sLog, "-    end 9000 ms\n+    end 9400 ms\n")) << sLog;
    std::filesystem::rename(git.EffectFile(), project.path("renamed.Fx00a"));
    git.Do({"add", "-A"});
    EXPECT_EQ(0, git.Git({"diff", "-M", "HEAD"}).m_nExitCode);
    EXPECT_EQ(0, Batch({"git-setup", project.dir(), "--undo"}).m_nExitCode);
    EXPECT_EQ("*.dds binary\n", ReadBytes(project.path(".gitattributes")));
    EXPECT_NE(0, git.Git({"config", "merge.emberdeck.driver"}).m_nExitCode);
}

TEST(BatchMerge, DamagedAndMissingFilesAreRefusedOrEmpty)
{
    const CSampleProject project;
    const std::string sBase = project.path("bonfire.Fx00a"), sOut = project.path("out.Fx00a");
    const std::string sBytes = ReadBytes(sBase);
    const std::string sChanged = project.write(
        "changed.Fx00a", Replaced(sBytes, "\"Campfire\"", "( end-time 9000 )", "( end-time 9400 )"));

    // One side as the base is, no base, and the compressed form.
    for (const auto& files : {std::vector{sBase, sBase, sChanged}, std::vector{sBase, sChanged, sBase},
                              std::vector{project.path("none"), sChanged, sChanged},
                              std::vector{std::string("/dev/null"), sChanged, sChanged}})
    {
        const CProcessResult result = Batch({"merge", files[0], files[1], files[2], "-o", sOut});
        EXPECT_EQ(0, result.m_nExitCode) << result.m_sErrors;
        EXPECT_EQ(ReadBytes(sChanged), ReadBytes(sOut));
    }
    const std::string sPacked = project.path("packed.Fx00c");
    EXPECT_EQ(0, Batch({"merge", sBase, sBase, sChanged, "-o", sPacked}).m_nExitCode);
    EXPECT_EQ(0, Batch({"diff", sChanged, sPacked}).m_nExitCode);
    EXPECT_EQ(1, Batch({"diff", "--stat", sBase, sPacked}).m_nExitCode);

    const struct
    {
        const char* m_pszWhat;
        std::string m_sBytes;
        const char* m_pszTold;
    } wrong[] = {
        {"cut", sBytes.substr(0, sBytes.size() / 2), "it was cut"},
        {"in conflict", "<<<<<<< ours\r\n" + sBytes, "a merge has left its marks in it, at line 1"},
        {"nothing of ours", "( something )", "isn't known: something"},
        {"with more than there is", Replaced(sBytes, "\"Campfire\"", "( key\r\n", "( key ( colour 3 )\r\n"),
         "isn't known: colour"},
        {"on no prefab", Replaced(sBytes, "\"Campfire\"", "( parent \"", "( parent \"no "),
         "there is no prefab"},
        {"of another version", Replaced(sBytes, "", "( version 1 )", "( version 2 )"), "of another version"},
    };
    project.write("out.Fx00a", "old");
    for (const auto& w : wrong)
    {
        SCOPED_TRACE(w.m_pszWhat);
        const std::string sFile = project.write("wrong.Fx00a", w.m_sBytes);
        CProcessResult result = Batch({"merge", sBase, sFile, sChanged, "-o", sOut});
        EXPECT_EQ(2, result.m_nExitCode);
        EXPECT_TRUE(Holds(result.m_sErrors, "wrong.Fx00a: ") && Holds(result.m_sErrors, w.m_pszTold))
            << result.m_sErrors;
        EXPECT_EQ(129, Batch({"merge", "--git", sBase, sFile, sChanged, "wrong.Fx00a"}).m_nExitCode);
        EXPECT_EQ(w.m_sBytes, ReadBytes(sFile)) << "git finds it as it was";
        EXPECT_EQ(2, Batch({"diff", sBase, sFile}).m_nExitCode);
    }
    EXPECT_EQ("old", ReadBytes(sOut));
    EXPECT_EQ(2, Batch({"merge", sBase, sBase, "-o", sOut}).m_nExitCode);
    EXPECT_EQ(2, Batch({"diff", sBase}).m_nExitCode);
}
