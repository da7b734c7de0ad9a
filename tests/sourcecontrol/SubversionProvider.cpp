#include "WorkCopyBench.h"

namespace
{

const std::string c_sFile = "Effekte f\xC3\xBCr alle/Feuer @2x.Fx00a";

// A repository and two work copies of it, with two files of which the first needs a lock.
class SubversionProvider : public CWorkCopyBench
{
protected:
    SubversionProvider() : CWorkCopyBench("subversion")
    {
        Do("svnadmin", {"create", "depot"});
        CheckOut("mine");
        m_Dir.write("mine/" + c_sFile, "one\n");
        m_Dir.write("mine/free.txt", "free\n");
        Svn({"add", "--parents", c_sFile + "@", "free.txt"});
        Svn({"propset", "svn:needs-lock", "*", c_sFile + "@"});
        Svn({"commit", "-m", "first\n\n------\nline"});
        CheckOut("bobs");
        m_sFile = Backslashes(Path(c_sFile));
        m_sFree = Path("free.txt");
    }

    void CheckOut(const std::string& sCopy) const
    {
        Do("svn", {"checkout", "-q", "file://" + m_Dir.path("depot"), sCopy});
    }
    std::string Path(const std::string& sName) const { return m_Dir.path("mine/" + sName); }
    std::string Svn(std::vector<std::string> arguments, const std::string& sCopy = "mine") const
    {
        const CVariable locale("LC_ALL", "C.UTF-8");
        arguments.insert(arguments.end(), {"-q", "--non-interactive"});
        if (sCopy == "bobs")
            arguments.insert(arguments.end(), {"--username", "bob"});
        return Do("svn", arguments, m_Dir.path(sCopy));
    }
    void ChangeElsewhere(const std::string& sText) const
    {
        m_Dir.write("bobs/free.txt", sText);
        Svn({"commit", "-m", "by Bob"}, "bobs");
    }

    std::string m_sFile; // needs a lock; with backslashes
    std::string m_sFree;
};

} // namespace

TEST_F(SubversionProvider, CheckOutIsALockThatSubmitAndUndoGiveBack)
{
    Connect(m_Dir.path("mine/"));
    SetReadOnly(Path(c_sFile)); // as a check-out of the work copy leaves it
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_TRUE(m_pMgr->CheckOut(m_sFile.c_str(), 0)) << m_sTold;
    EXPECT_TRUE(IsWritable(Path(c_sFile)));
    EXPECT_EQ(3, State(m_sFile));
    EXPECT_TRUE(m_pMgr->CheckOut(m_sFile.c_str(), 0)); // once is enough
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str()));      // nothing has changed: only the lock goes
    EXPECT_TRUE(m_Front.m_Described.empty());
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_FALSE(IsWritable(Path(c_sFile)));

    EXPECT_TRUE(m_pMgr->EnsureCheckedOut(m_sFile.c_str(), 0));
    WriteBytes(Path(c_sFile), "two\n");
    EXPECT_TRUE(m_pMgr->Undo(m_sFile.c_str())) << m_sTold;
    EXPECT_EQ("one\n", ReadBytes(Path(c_sFile)));
    EXPECT_EQ(0, Word(m_sFile));

    EXPECT_TRUE(m_pMgr->EnsureCheckedOut(m_sFile.c_str(), 0));
    WriteBytes(Path(c_sFile), "two\n");
    WriteBytes(m_sFree, "not with it\n");
    EXPECT_FALSE(m_pMgr->Submit(m_sFile.c_str()));
    EXPECT_EQ("Cancelled.", m_sTold);
    m_Front.m_Descriptions = {"Hei\xC3\x9F"};
    EXPECT_TRUE(m_pMgr->Submit(m_sFile.c_str())) << m_sTold;
    EXPECT_EQ(4, State(m_sFile));
    EXPECT_EQ(3, State(m_sFree));
    EXPECT_TRUE(m_pMgr->History(m_sFile.c_str())) << m_sTold;
    ASSERT_EQ(2u, m_Front.m_History.size());
    EXPECT_EQ("Hei\xC3\x9F", m_Front.m_History[0].m_sMessage);
    EXPECT_EQ("r1", m_Front.m_History[1].m_sRevision);
    EXPECT_EQ("first\n\n------\nline", m_Front.m_History[1].m_sMessage);
}

TEST_F(SubversionProvider, LocksOfOthersBlock)
{
    Connect(m_Dir.path("mine"));
    EXPECT_TRUE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    Svn({"lock", "--force", c_sFile + "@"}, "bobs"); // takes it away
    EXPECT_EQ(0x20000, Word(m_sFile));
    EXPECT_EQ(5, State(m_sFile));
    EXPECT_FALSE(m_pMgr->EnsureCheckedOut(m_sFile.c_str(), 0));
    Svn({"update"});
    EXPECT_EQ(5, State(m_sFile));
    EXPECT_FALSE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    EXPECT_NE(std::string::npos, m_sTold.find("already locked by user 'bob'")) << m_sTold;
    Svn({"unlock", c_sFile + "@"}, "bobs");
    EXPECT_EQ(4, State(m_sFile));
}

TEST_F(SubversionProvider, StatusWordOfEachState)
{
    Connect(m_Dir.path("mine"));
    m_Dir.write("mine/new.txt", "x");
    m_Dir.write("mine/Feu\xE9.txt", "x");
    EXPECT_EQ(-1, Word(Path("new.txt")));
    EXPECT_EQ(-1, Word(Path("nowhere/x")));
    EXPECT_EQ(-1, Word(Path(".svn/wc.db")));
    EXPECT_EQ(-1, Word(m_Dir.path("bobs/free.txt")));
    EXPECT_EQ(-1, Word(""));
    EXPECT_EQ(0, Word(Backslashes(Path(""))));
    EXPECT_EQ(-1, Word(Backslashes(m_Dir.dir() + "/")));
    EXPECT_EQ(0, Word(m_sFree));
    EXPECT_EQ(4, State(Path("Feu\xE9.txt"))); // the client program refuses the name
    EXPECT_FALSE(m_pMgr->AddFile(Path("Feu\xE9.txt").c_str()));

    WriteBytes(m_sFree, "changed\n");
    EXPECT_EQ(0x2, Word(m_sFree));
    std::filesystem::remove(m_sFree);
    EXPECT_EQ(0x2, Word(m_sFree));
    EXPECT_FALSE(m_pMgr->Submit(m_sFree.c_str()));
    EXPECT_TRUE(m_pMgr->Undo(m_sFree.c_str()));
    EXPECT_EQ("free\n", ReadBytes(m_sFree));
    Svn({"delete", "free.txt"});
    EXPECT_EQ(0x12, Word(m_sFree));
    m_Dir.write("mine/free.txt", "another");
    Svn({"add", "free.txt"});
    EXPECT_EQ(0x2, Word(m_sFree)); // replaced
}

TEST_F(SubversionProvider, AddInNewFoldersAsksOnceForAll)
{
    Connect(m_Dir.path("mine"));
    m_Dir.write("mine/new/deep/x.Fx00c", "x");
    const std::string sNew = Backslashes(Path("new/deep/x.Fx00c"));
    EXPECT_EQ(1, State(sNew));
    EXPECT_TRUE(m_pMgr->AddFile(sNew.c_str())) << m_sTold;
    EXPECT_EQ(0xA, Word(sNew));
    EXPECT_EQ(0xA, Word(Backslashes(Path("new/deep/"))));
    EXPECT_TRUE(m_pMgr->CheckOut(sNew.c_str(), 0)); // is open already
    m_Front.m_Descriptions = {"Something new"};
    EXPECT_TRUE(m_pMgr->Submit(sNew.c_str())) << m_sTold;
    EXPECT_EQ(std::vector<std::string>{Path("new/")}, m_Front.m_Described);
    EXPECT_EQ(4, State(sNew));
    Svn({"update"}, "bobs");
    EXPECT_EQ("x", ReadBytes(m_Dir.path("bobs/new/deep/x.Fx00c")));

    // The next change has a reason of its own.
    WriteBytes(Path("new/deep/x.Fx00c"), "y");
    EXPECT_FALSE(m_pMgr->Submit(sNew.c_str()));
    EXPECT_EQ(2u, m_Front.m_Described.size());
    EXPECT_TRUE(m_pMgr->Undo(sNew.c_str()));
}

TEST_F(SubversionProvider, LatestVersionAndConflict)
{
    Connect(m_Dir.path("mine"));
    ChangeElsewhere("by Bob\n");
    EXPECT_TRUE(m_pMgr->GetLatest(m_sFree.c_str())) << m_sTold;
    EXPECT_EQ("by Bob\n", ReadBytes(m_sFree));

    ChangeElsewhere("by Bob again\n");
    WriteBytes(m_sFree, "by me\n");
    m_Front.m_Descriptions = {"free.txt"}; // not taken for a file
    EXPECT_FALSE(m_pMgr->Submit(m_sFree.c_str()));
    EXPECT_NE(std::string::npos, m_sTold.find("out of date")) << m_sTold;
    EXPECT_EQ("by me\n", ReadBytes(m_sFree));
    EXPECT_TRUE(m_pMgr->GetLatest(m_sFree.c_str()));
    EXPECT_EQ(0x20000, Word(m_sFree));
    EXPECT_EQ(5, State(m_sFree));
    EXPECT_TRUE(m_pMgr->Undo(m_sFree.c_str()));
    EXPECT_EQ("by Bob again\n", ReadBytes(m_sFree));
    EXPECT_EQ(4, State(m_sFree));
}

TEST_F(SubversionProvider, MissingProgramAndVanishedRepository)
{
    Connect(m_Dir.path("mine"));
    std::filesystem::rename(m_Dir.path("depot"), m_Dir.path("gone"));
    EXPECT_EQ(4, State(m_sFile)); // what the work copy knows by itself
    EXPECT_FALSE(m_pMgr->CheckOut(m_sFile.c_str(), 0));
    EXPECT_NE(std::string::npos, m_sTold.find("Unable to connect")) << m_sTold;
    WriteBytes(m_sFree, "mine\n");
    EXPECT_EQ(3, State(m_sFree));
    EXPECT_FALSE(m_pMgr->GetLatest(m_sFree.c_str()));
    EXPECT_FALSE(m_pMgr->History(m_sFree.c_str()));
    m_pMgr->Disconnect();

    m_pMgr->SetProject("subversion", m_Dir.dir());
    EXPECT_FALSE(m_pMgr->Connect());
    EXPECT_EQ(1, m_Front.m_nFoldersAsked);
    m_Path.Set(m_Dir.path("empty"));
    m_Prompts.onAsk("The program svn can't be started");
    EXPECT_FALSE(m_pMgr->Connect());
}

TEST_F(SubversionProvider, StoppingACallLeavesNoTrace)
{
    m_Prompts.m_sStopBehind = m_Dir.path("under way");
    const std::string sHook =
        m_Dir.write("depot/hooks/pre-commit", "#!/bin/sh\n: >'" + m_Prompts.m_sStopBehind + "'\nsleep 60\n");
    std::filesystem::permissions(sHook, std::filesystem::perms(0755));
    Connect(m_Dir.path("mine"));
    WriteBytes(m_sFree, "changed\n");
    m_Prompts.m_sStopAt = "Committing the file";
    m_Front.m_Descriptions = {"changed", "changed"};
    EXPECT_FALSE(m_pMgr->Submit(m_sFree.c_str()));
    EXPECT_EQ("Committing the file: stopped.", m_sTold);
    std::filesystem::remove(sHook);
    m_Prompts.m_sStopAt.clear();
    EXPECT_EQ(3, State(m_sFree));
    EXPECT_TRUE(m_pMgr->Submit(m_sFree.c_str())) << m_sTold;
    EXPECT_EQ(4, State(m_sFree));
}
