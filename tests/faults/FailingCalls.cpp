// Each call that touches the disk fails in turn: the first write, the second, and so on, then each sync, each
// rename and each open. The real programs run, and the calls fail below all of their code, in the kernel's
// answer. Whatever fails, the command says so and ends with 1; what was there is there or comes back; and after
// the next run nothing of ours is left behind.

#include <map>
#include <regex>
#include <sstream>

#include "FaultBench.h"
#include "platform/Process.h"
#include "platform/ReplacingFile.h"

namespace
{
namespace fs = std::filesystem;

struct CFailure
{
    const char* m_pszCalls; // which fail
    const char* m_pszError;
};
constexpr CFailure c_Failures[] = {
    {"write,writev,pwrite64", "ENOSPC"},
    {"fsync,fdatasync", "EIO"},
    {"rename,renameat,renameat2", "EACCES"},
    {"open,openat,creat", "EMFILE"},
    {"read,pread64", "EIO"},
#ifndef EMBERDECK_SANITIZED // where a program takes ten times as long to start
    {"write,writev,pwrite64", "EIO"},
    {"ftruncate,truncate", "EIO"},
    {"fchmod,fchmodat,chmod", "EPERM"},
    {"close", "EIO"},
    {"mkdir,mkdirat", "ENOSPC"},
    {"flock", "ENOLCK"},
#endif
};

// One of the calls that a program makes: the n-th of that name, from 1.
struct CCall
{
    std::string m_sName;
    int m_nNumber;
};

// One job of a program, on files of the bench.
struct CJob
{
    std::string m_sProgram;
    std::vector<std::string> m_Arguments; // what begins with an at sign is a file of the bench
    std::string m_sTarget;                // what it writes
    std::string m_sOld;                   // what stands there before
    bool m_bInPlace = false;              // what stood there may come back by "recover" alone
    std::string m_sSavedOver;             // what a save finds there before that; empty: there is none
};

struct CCallBench : CFaultBench
{
    CCallBench()
    {
        for (const char* pszName : {"a.Fx00a", "a.Fx00c"})
            m_Content[pszName] = MakeFile(pszName, 2, "Old");
        m_Content["b.Fx00a"] = MakeFile("b.Fx00a", 3, "New");
    }

    std::vector<std::string> Command(const std::string& sProgram,
                                     const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> command = {EMBERDECK_BIN_DIR "/" + sProgram};
        for (const std::string& sArgument : arguments)
            command.push_back(sArgument[0] == '@' ? path(sArgument.substr(1)) : sArgument);
        return command;
    }

    CProcessResult Run(const std::vector<std::string>& command) { return RunUnder({}, command); }
    // The calls of these names that a command makes on files of the bench's, each told by its place among those
    // of its name. What the program loads before its first own step isn't its matter.
    std::vector<CCall> CallsOnFiles(const std::vector<std::string>& command, const CFailure& failure)
    {
        Trace({}, failure, command);
        std::vector<CCall> calls;
        std::map<std::string, int> counts;
        std::istringstream lines(ReadBytes(LogFile()));
        for (std::string sLine; std::getline(lines, sLine);)
        {
            std::smatch match;
            if (!std::regex_search(sLine, match, std::regex("^[0-9]+ +([a-z0-9]+)\\(")))
                continue;
            const int nNumber = ++counts[match[1]];
            if (sLine.find(dir.dir()) != std::string::npos)
                calls.push_back({match[1], nNumber});
        }
        return calls;
    }
    // Runs a command with that call failing. m_sHit tells it as it was made; empty when it wasn't.
    CProcessResult RunFailing(const std::vector<std::string>& command, const CFailure& failure,
                              const CCall& call)
    {
        const CProcessResult result = Trace({"-e", "inject=" + call.m_sName + ":error=" + failure.m_pszError +
                                                       ":when=" + std::to_string(call.m_nNumber)},
                                            failure, command);
        m_sHit.clear();
        std::istringstream lines(ReadBytes(LogFile()));
        for (std::string sLine; std::getline(lines, sLine);)
            if (sLine.find("INJECTED") != std::string::npos)
                m_sHit = sLine.substr(0, 300);
        return result;
    }

    // All that is in the folders of the project and of the user's files, by name, but for the target and copies.
    std::map<std::string, std::string> Others(const CJob& job) const
    {
        std::map<std::string, std::string> files;
        for (const char* pszFolder : {"game", "home"})
        {
            if (!fs::exists(dir.path(pszFolder)))
                continue;
            for (const auto& entry : fs::recursive_directory_iterator(dir.path(pszFolder)))
                if (entry.is_regular_file() && entry.path() != path(job.m_sTarget) &&
                    entry.path().parent_path().filename() != "backups")
                    files[entry.path()] = ReadBytes(entry.path());
                else if (entry.path().filename().string().starts_with(c_szSafeWritePrefix))
                    files[entry.path()] = "left over";
        }
        return files;
    }

    std::string m_sHit;
    std::map<std::string, std::string> m_Content;

private:
    std::string LogFile() const { return dir.path("calls"); }
    CProcessResult Trace(const std::vector<std::string>& options, const CFailure& failure,
                         const std::vector<std::string>& command)
    {
        std::vector<std::string> words = {
            "strace", "-f", "-qq", "-y", "-o", LogFile(), "-e", std::string("trace=") + failure.m_pszCalls};
        words.insert(words.end(), options.begin(), options.end());
        return RunUnder(words, command);
    }
    CProcessResult RunUnder(std::vector<std::string> words, const std::vector<std::string>& command)
    {
        words.insert(words.end(), command.begin(), command.end());
        CProcessRequest request;
        request.m_sProgram = words.front();
        request.m_Arguments.assign(words.begin() + 1, words.end());
        for (const char* pszVariable : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            request.m_Environment.push_back(std::string(pszVariable) + "=" + dir.path("home"));
        request.m_Environment.push_back("ASAN_OPTIONS=detect_leaks=0"); // which needs the tracer's place
        request.m_nTimeoutMs = 60000;
        const CProcessResult result = RunProcess(request);
        EXPECT_TRUE(result.m_bStarted && !result.m_bTimedOut) << words.front();
        return result;
    }
};

// The kernel's calls can't be made to fail where no process may look at another.
bool CanTrace()
{
    const CProcessResult result = RunProcess("strace", {"-qq", "-o", "/dev/null", "true"}, "", 20000);
    return result.m_bStarted && result.m_nExitCode == 0;
}

void CheckOutcome(CCallBench& bench, const CJob& job, const std::string& sNew, const CProcessResult& result)
{
    const std::string sTarget = bench.path(job.m_sTarget);
    const std::string sFound = fs::exists(sTarget) ? ReadBytes(sTarget) : "";
    if (result.m_nExitCode == 0)
    {
        EXPECT_TRUE(sFound == sNew) << "done, it said";
        return;
    }
    EXPECT_FALSE(result.m_sErrors.empty()) << "failed without a word";
    if (sFound == job.m_sOld || sFound == sNew)
        return;
    EXPECT_TRUE(job.m_bInPlace) << "neither the old nor the new content";
    const CProcessResult recovered = bench.Run(bench.Command("emberdeck-batch", {"recover", sTarget}));
    EXPECT_EQ(0, recovered.m_nExitCode) << recovered.m_sErrors;
    EXPECT_TRUE(ReadBytes(sTarget) == job.m_sOld) << "the old content didn't come back";
}

void EachCall(CCallBench& bench, const CJob& job, const CFailure& failure)
{
    const std::string sTarget = bench.path(job.m_sTarget);
    const std::vector<std::string> command = bench.Command(job.m_sProgram, job.m_Arguments);
    const auto Prepare = [&]
    {
        fs::remove_all(bench.dir.path("home"));
        if (!job.m_sSavedOver.empty())
        {
            bench.dir.write("game/" + job.m_sTarget, job.m_sSavedOver);
            const auto save = bench.Command("emberdeck-batch", {"convert", "@b.Fx00a", sTarget});
            EXPECT_EQ(0, bench.Run(save).m_nExitCode);
        }
        bench.dir.write("game/" + job.m_sTarget, job.m_sOld);
    };
    Prepare();
    ASSERT_EQ(0, bench.Run(command).m_nExitCode);
    const std::string sNew = ReadBytes(sTarget);
    ASSERT_TRUE(job.m_sOld != sNew) << "nothing to see";
    const auto others = bench.Others(job);
    Prepare();
    const std::vector<CCall> calls = bench.CallsOnFiles(command, failure);

    for (const CCall& call : calls)
    {
        Prepare();
        const CProcessResult result = bench.RunFailing(command, failure, call);
        ASSERT_FALSE(bench.m_sHit.empty()) << call.m_sName << " " << call.m_nNumber << " wasn't made again";
        SCOPED_TRACE(job.m_Arguments.front() + ", " + bench.m_sHit + "\nit said: " + result.m_sErrors);
        CheckOutcome(bench, job, sNew, result);
        EXPECT_EQ(0, bench.Run(command).m_nExitCode) << "the next run";
        for (const auto& [sName, sBytes] : bench.Others(job))
            EXPECT_TRUE(others.count(sName) && others.at(sName) == sBytes)
                << "changed, made or left behind: " << sName;
    }
}

void EachFailure(const std::function<CJob(CCallBench&)>& describe)
{
    if (!CanTrace())
        GTEST_SKIP() << "no process may look at another here";
    CCallBench bench;
    const CJob job = describe(bench);
    for (const CFailure& failure : c_Failures)
        EachCall(bench, job, failure);
}
} // namespace

TEST(FailingCalls, ASaveInPlace)
{
    for (const std::string sForm : {"Fx00a", "Fx00c"})
        EachFailure(
            [&](CCallBench& bench)
            {
                return CJob{"emberdeck-batch",
                            {"convert", "@b.Fx00a", "@file." + sForm},
                            "file." + sForm,
                            bench.m_Content["a." + sForm],
                            true,
                            {}};
            });
}

TEST(FailingCalls, AnUpdate)
{
    EachFailure(
        [](CCallBench& bench)
        {
            return CJob{"emberdeck-batch",
                        {"update", "@all"},
                        "all/file.Fx00a",
                        bench.m_Content["a.Fx00a"] + "\r\n",
                        true,
                        {}};
        });
}

TEST(FailingCalls, ARecovery)
{
    EachFailure(
        [](CCallBench& bench)
        {
            return CJob{"emberdeck-batch",
                        {"recover", "@file.Fx00a"},
                        "file.Fx00a",
                        bench.m_Content["b.Fx00a"],
                        true,
                        bench.m_Content["a.Fx00a"]};
        });
}

TEST(FailingCalls, WhatIsWrittenBeside)
{
    const std::string sBatch = "emberdeck-batch", sWriter = "settings_writer";
    EachFailure(
        [&](CCallBench&) {
            return CJob{sBatch, {"pack", "@b.Fx00a", "-o", "@file.Fx00p"}, "file.Fx00p", "old", false, {}};
        });
    EachFailure(
        [&](CCallBench& bench)
        {
            bench.Run(bench.Command(sBatch, {"pack", "@b.Fx00a"}));
            return CJob{sBatch, {"pack", "@b.Fx00a", "--depfile", "@file.d"}, "file.d", "old", false, {}};
        });
    EachFailure(
        [&](CCallBench&) {
            return CJob{sBatch, {"compress", "@b.Fx00a", "@file.z"}, "file.z", "old", false, {}};
        });
    EachFailure(
        [&](CCallBench&) {
            return CJob{sBatch, {"decompress", "@a.Fx00c", "@file.t"}, "file.t", "old", false, {}};
        });
    EachFailure(
        [&](CCallBench&) {
            return CJob{sWriter, {"settings", "@file.ini"}, "file.ini", "[Section]\r\nFirst=old\r\n", false,
                        {}};
        });
    EachFailure(
        [&](CCallBench&) {
            return CJob{sWriter, {"palette", "@file.ccp"}, "file.ccp", "[Other]\r\na=b\r\n", false, {}};
        });
}
