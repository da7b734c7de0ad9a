#include "shared/sourcecontrol/GitProvider.h"
#include "WorkCopyBench.h"

#include <chrono>

namespace
{

// Blanks, UTF-8 and a byte that isn't, and what the client program would take for a pattern.
const std::string c_sFile = "Effekte f\xC3\xBCr alle/Feu\xE9 [1]*.Fx00a";

// A bare repository and a work copy of it with one commit.
class GitProvider : public CWorkCopyBench
{
protected:
    GitProvider() : CWorkCopyBench("git")
    {
        m_Dir.write("gitconfig", "[init]\n\tdefaultBranch = main\n");
        Do("git", {"init", "-q", "--bare", "remote.git"});
        Do("git", {"clone", "-q", "remote.git", "copy"});
        Write(c_sFile, "one\n");
        Write("other.txt", "other\n");
        Write(".gitignore", "*.tmp\n");
        Git({"add", "."});
        Commit("first");
        Git({"push", "-q", "-u", "origin", "main"});
        m_sFile = Backslashes(Path(c_sFile));
    }

    std::string Path(const std::string& sName) const { return m_Dir.path("copy/" + sName); }
    void Write(const std::string& sName, const std::string& sText) const
    {
        m_Dir.write("copy/" + sName, sText);
    }
    std::string Git(std::vector<std::string> arguments, const std::string& sCopy = "copy") const
    {
        arguments.insert(arguments.begin(), {"-c", "user.name=Ada", "-c", "user.email=ada@example.com"});
        return Do("git", arguments, m_Dir.path(sCopy));
    }
    void Commit(const std::string& sText, const std::string& sCopy = "copy") const
    {
        Git({"commit", "-q", "-a", "-m", sText}, sCopy);
    }
    // Somebody else changes a file and pushes it.
    void ChangeElsewhere(const std::string& sName, const std::string& sText) const
    {
        if (!m_Dir.has("bobs"))
            Do("git", {"clone", "-q", "remote.git", "bobs"});
        m_Dir.write("bobs/" + sName, sText);
        Commit("by Bob", "bobs");
        Git({"push", "-q"}, "bobs");
    }

    std::string m_sFile; // with backslashes
};

} // namespace

TEST_F(GitProvider, CheckOutSaveAndSubmit)
{
    SetReadOnly(Path(c_sFile));
    Connect(Backslashes(m_Dir.path("copy/") + "Effekte f\xC3\xBCr alle")); // any folder of it will do
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_TRUE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    EXPECT_TRUE(IsWritable(Path(c_sFile)));
    EXPECT_EQ(3, State(m_sFile));
    EXPECT_EQ("", Git({"status", "--porcelain"})); // the mark is nobody else's business

    // Submitted as it is, the check-out ends. Nobody is asked for a reason.
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_TRUE(m_Front.m_Described.empty());

    // A save that wasn't checked out counts as well, and what else is changed isn't committed with it. On
    // this machine nobody has said who commits.
    Write(c_sFile, "two\n");
    Write("other.txt", "staged\n");
    Git({"add", "other.txt"});
    EXPECT_EQ(3, State(m_sFile));
    EXPECT_FALSE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_EQ("Cancelled.", m_sTold);
    m_Front.m_Descriptions = {"# Hotter\n\n- for \xC3\xA4ll \"$HOME\""};
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str())) << m_sTold;
    EXPECT_EQ(Path(c_sFile), m_Front.m_Described.back());
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_EQ("# Hotter\n\n- for \xC3\xA4ll \"$HOME\"\n\n", Git({"log", "-1", "--format=%B"}));
    EXPECT_EQ("M  other.txt\n", Git({"status", "--porcelain"}));
    EXPECT_NE("", Git({"log", "origin/main..main", "--format=%an <%ae>"})); // nothing is pushed
    EXPECT_GT(m_Prompts.m_nWaits, 0);
}

TEST_F(GitProvider, StatusWordOfEachState)
{
    Connect(m_Dir.path("copy"));
    const auto word = [this](const char* pszName) { return Word(Path(pszName)); };
    Write("new.txt", "x");
    Write("x.tmp", "x");
    EXPECT_EQ(-1, word("new.txt"));
    EXPECT_EQ(-1, word("x.tmp"));
    EXPECT_EQ(-1, word(".git/config"));
    EXPECT_EQ(-1, Word(m_Dir.path("gitconfig")));
    EXPECT_EQ(-1, Word(""));
    EXPECT_EQ(-1, Word("C:\\copy\\other.txt"));
    EXPECT_EQ(0, Word(Backslashes(Path("")))); // folders
    EXPECT_EQ(0, word("to come\\"));
    EXPECT_EQ(-1, Word(Backslashes(m_Dir.dir() + "/")));

    Git({"add", "new.txt"});
    EXPECT_EQ(0xA, word("new.txt"));
    EXPECT_EQ(0, word("other.txt"));
    EXPECT_EQ(0, word("OTHER.TXT")); // found as the rest of the program finds it
    std::filesystem::create_symlink(Path("other.txt"), m_Dir.path("link"));
    EXPECT_EQ(0, Word(m_Dir.path("link")));
    std::filesystem::remove(Path("other.txt"));
    EXPECT_EQ(0x2, word("other.txt"));
    EXPECT_FALSE(m_pMgr->Submit(Path("other.txt").c_str())); // no deletion in passing
    EXPECT_TRUE(m_pMgr->Undo(Path("other.txt").c_str()));
    EXPECT_EQ(0, word("other.txt"));
    EXPECT_EQ("other\n", ReadBytes(Path("other.txt")));
    Git({"rm", "-q", "--cached", "other.txt"});
    EXPECT_EQ(-1, word("other.txt"));
}

TEST_F(GitProvider, AddInNewFoldersAndUndo)
{
    Connect(m_Dir.path("copy"));
    Write("new/deep/x y.Fx00c", "x");
    const std::string sNew = Backslashes(Path("new/deep/x y.Fx00c"));
    EXPECT_EQ(1, State(sNew));
    EXPECT_TRUE(m_pMgr->AddFile(sNew.c_str())) << m_sTold;
    EXPECT_EQ(3, State(sNew));
    EXPECT_TRUE(m_pMgr->Undo(sNew.c_str())); // what was never kept stays on the disk
    EXPECT_EQ(1, State(sNew));
    EXPECT_EQ("x", ReadBytes(Path("new/deep/x y.Fx00c")));
    EXPECT_TRUE(m_pMgr->AddFile(sNew.c_str()));
    m_Front.m_Descriptions = {"new"};
    EXPECT_TRUE(m_pMgr->Submit(sNew.c_str())) << m_sTold;
    EXPECT_EQ("new/deep/x y.Fx00c\n", Git({"show", "--format=", "--name-only"}));

    Write("x.tmp", "x");
    EXPECT_FALSE(m_pMgr->AddFile(Path("x.tmp").c_str()));
    EXPECT_NE(std::string::npos, m_sTold.find("ignored")) << m_sTold;
}

TEST_F(GitProvider, LatestVersionConflictAndHistory)
{
    Connect(m_Dir.path("copy"));
    ChangeElsewhere(c_sFile, "by Bob\n");
    Write("other.txt", "mine\n"); // in nobody's way
    EXPECT_TRUE(m_pMgr->GetLatest(m_sFile.c_str())) << m_sTold;
    EXPECT_EQ("by Bob\n", ReadBytes(Path(c_sFile)));
    EXPECT_TRUE(m_pMgr->History(m_sFile.c_str())) << m_sTold;
    ASSERT_EQ(2u, m_Front.m_History.size());
    EXPECT_EQ("by Bob", m_Front.m_History[0].m_sMessage);
    EXPECT_EQ("Ada", m_Front.m_History[1].m_sAuthor);
    EXPECT_EQ(Git({"log", "-1", "--format=%h"}), m_Front.m_History[0].m_sRevision + "\n");

    // Histories that have parted aren't merged here.
    ChangeElsewhere(c_sFile, "by Bob again\n");
    Write(c_sFile, "by me\n");
    m_Front.m_Descriptions = {"mine"};
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_FALSE(m_pMgr->GetLatest(m_sFile.c_str()));
    EXPECT_EQ("Not possible to fast-forward, aborting.", m_sTold.substr(m_sTold.rfind('\n') + 1));
    EXPECT_EQ("by me\n", ReadBytes(Path(c_sFile)));

    RunProcess("git", {"-c", "user.name=A", "-c", "user.email=a@b", "stash", "-q"}, m_Dir.path("copy"),
               60000);
    RunProcess("git", {"-c", "user.name=A", "-c", "user.email=a@b", "merge", "-q", "origin/main"},
               m_Dir.path("copy"), 60000);
    EXPECT_EQ(0x20000, Word(m_sFile));
    EXPECT_EQ(5, State(m_sFile));
    EXPECT_FALSE(m_pMgr->EnsureCheckedOut(m_sFile.c_str(), 0));
    m_Front.m_Descriptions = {"with marks in it"};
    EXPECT_FALSE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_TRUE(m_pMgr->Undo(m_sFile.c_str())) << m_sTold;
    EXPECT_EQ("by me\n", ReadBytes(Path(c_sFile)));
    EXPECT_EQ(4, State(m_sFile));
}

TEST_F(GitProvider, LocksOfOthersBlockAFileThatNeedsOne)
{
    Write(".gitattributes", "*.Fx00a lockable\n");
    MakeProgram("git-lfs",
                "d=$(git rev-parse --git-dir)\n"
                "case $1 in\n"
                "locks) [ -f $d/owner ] && echo \"$(cat $d/owner) $4 who\tID:1\"; exit 0 ;;\n"
                "lock) [ -f $d/owner ] && { echo 'already locked' >&2; exit 2; }; printf O > $d/owner ;;\n"
                "unlock) rm $d/owner ;;\nesac\n");
    Connect(m_Dir.path("copy"));
    EXPECT_TRUE(m_pMgr->CheckOut(m_sFile.c_str(), 0)) << m_sTold;
    EXPECT_EQ("O", ReadBytes(Path(".git/owner")));
    EXPECT_EQ(3, State(m_sFile));
    EXPECT_TRUE(m_pMgr->Undo(m_sFile.c_str()));
    EXPECT_FALSE(m_Dir.has("copy/.git/owner"));
    m_Dir.write("copy/.git/owner", " ");
    EXPECT_EQ(5, State(m_sFile));
    EXPECT_FALSE(m_pMgr->EnsureCheckedOut(m_sFile.c_str(), 0));
    EXPECT_FALSE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    EXPECT_EQ("already locked", m_sTold);
    EXPECT_EQ(4, State(Path("other.txt"))); // needs none
}

TEST_F(GitProvider, StoppingACallLeavesNoTrace)
{
    m_Prompts.m_sStopBehind = m_Dir.path("under way");
    Connect(m_Dir.path("copy"));
    const std::string sHook = Path(".git/hooks/pre-commit");
    WriteBytes(sHook, "#!/bin/sh\n: >'" + m_Prompts.m_sStopBehind + "'\nsleep 60\n");
    std::filesystem::permissions(sHook, std::filesystem::perms(0755));
    Write(c_sFile, "two\n");
    m_Front.m_Descriptions = {"two", "two"};
    m_Prompts.m_sStopAt = "Committing the file";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_EQ("Committing the file: stopped.", m_sTold);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    std::filesystem::remove(sHook);
    m_Prompts.m_sStopAt.clear();
    EXPECT_EQ(3, State(m_sFile));
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str())) << m_sTold;
}

TEST_F(GitProvider, TheWorkCopyAroundTheLibraryNeedsNoName)
{
    const auto find = [](const std::string& sFile) { return FindBuiltInProvider(sFile, nullptr); };
    EXPECT_EQ(CGitProvider::c_Id, find(m_sFile));
    EXPECT_EQ(CGitProvider::c_Id, find(Path("new.Fx00a")));
    EXPECT_TRUE(find(Path("ignored.tmp")).IsZero());
    EXPECT_TRUE(find(m_Dir.path("outside.Fx00a")).IsZero());
    Do("svnadmin", {"create", "repository"});
    Do("svn", {"checkout", "-q", "file://" + m_Dir.path("repository"), "svn"});
    EXPECT_EQ(m_Registry.IdFromText("Subversion"), find(m_Dir.path("svn/new.Fx00a")));

    m_sCurrentFile = m_sFile;
    Connect("");
    EXPECT_EQ(4, State(m_sFile));
    m_sCurrentFile = m_Dir.path("outside.Fx00a");
    m_pMgr->Disconnect();
    EXPECT_FALSE(m_pMgr->Connect());
    EXPECT_EQ(1, m_Front.m_nFoldersAsked);
    EXPECT_EQ("No folder of a Git work copy is named.", m_Front.m_sWhy);
}

TEST_F(GitProvider, MissingProgramAndVanishedRepository)
{
    Connect(m_Dir.path("copy"));
    std::filesystem::rename(Path(".git"), m_Dir.path("gone"));
    EXPECT_EQ(4, State(m_sFile)); // nothing is known, so the word is 0
    EXPECT_FALSE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    EXPECT_FALSE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_NE(std::string::npos, m_sTold.find("not a git repository")) << m_sTold;
    m_pMgr->Disconnect();

    // A folder that is none leads to the choice of another, which may be given up.
    EXPECT_FALSE(m_pMgr->Connect());
    EXPECT_EQ(1, m_Front.m_nFoldersAsked);
    EXPECT_NE(std::string::npos, m_Front.m_sWhy.find("not a git repository")) << m_Front.m_sWhy;
    std::filesystem::rename(m_Dir.path("gone"), Path(".git"));
    m_Front.m_sFolder = m_Dir.path("copy");
    m_pMgr->SetProject("git", m_Dir.path("no such folder"));
    EXPECT_TRUE(m_pMgr->Connect());
    EXPECT_EQ(4, State(m_sFile));
    m_pMgr->Disconnect();

    m_Path.Set(m_Dir.path("empty"));
    m_Prompts.onAsk("The program git can't be started");
    EXPECT_FALSE(m_pMgr->Connect());
}
