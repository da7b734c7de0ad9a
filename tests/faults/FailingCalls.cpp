// Each call that touches the disk fails in turn: the first write, the second, and so on, then each sync, each
// rename and each open. The real programs run, and the calls fail below all of their code, in the kernel's
// answer.

#include <regex>
#include <sstream>

#include "JobBench.h"

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

struct CCallBench : CJobBench
{
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

    std::string m_sHit;

private:
    std::string LogFile() const { return dir.path("calls"); }
    CProcessResult Trace(const std::vector<std::string>& options, const CFailure& failure,
                         const std::vector<std::string>& command)
    {
        std::vector<std::string> words = {
            "strace", "-f", "-qq", "-y", "-o", LogFile(), "-e", std::string("trace=") + failure.m_pszCalls};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), command.begin(), command.end());
        return Run(words, {"ASAN_OPTIONS=detect_leaks=0"}); // which needs the tracer's place
    }
};

// The kernel's calls can't be made to fail where no process may look at another.
bool CanTrace()
{
    const CProcessResult result = RunProcess("strace", {"-qq", "-o", "/dev/null", "true"}, "", 20000);
    return result.m_bStarted && result.m_nExitCode == 0;
}

void EachCall(CCallBench& bench, const CJob& job, const CFailure& failure)
{
    const std::vector<std::string> command = bench.Command(job);
    ASSERT_NO_FATAL_FAILURE(bench.DoIt(job));
    bench.Prepare(job);
    const std::vector<CCall> calls = bench.CallsOnFiles(command, failure);
    int nTold = 0;
    for (const CCall& call : calls)
    {
        bench.Prepare(job);
        const CProcessResult result = bench.RunFailing(command, failure, call);
        ASSERT_FALSE(bench.m_sHit.empty()) << call.m_sName << " " << call.m_nNumber << " wasn't made again";
        SCOPED_TRACE(job.m_Arguments.front() + ", " + bench.m_sHit + "\nit said: " + result.m_sErrors);
        bench.CheckOutcome(job, result);
        const bool bOnTarget = bench.m_sHit.find(bench.path(job.m_sTarget)) != std::string::npos;
        nTold += result.m_nExitCode != 0 && (bOnTarget || !job.m_bInPlace) ? 1 : 0;
    }
    // A lost write may show in the close alone.
    EXPECT_TRUE(nTold > 0 || failure.m_pszCalls != std::string("close")) << job.m_Arguments.front();
}

template <class TDescribe>
void EachFailure(const TDescribe& describe)
{
    if (!CanTrace())
        GTEST_SKIP() << "no process may look at another here";
    CCallBench bench;
    for (const CJob& job : describe(bench))
        for (const CFailure& failure : c_Failures)
            EachCall(bench, job, failure);
}
} // namespace

TEST(FailingCalls, ASaveInPlace)
{
    EachFailure([](CJobBench& bench) { return std::vector{bench.Save("Fx00a"), bench.Save("Fx00c")}; });
}

TEST(FailingCalls, AnUpdateAndASaveOntoItself)
{
    EachFailure([](CJobBench& bench) { return std::vector{bench.Update(), bench.SaveOntoItself()}; });
}

TEST(FailingCalls, ARecovery)
{
    EachFailure([](CJobBench& bench) { return std::vector{bench.Recovery()}; });
}

TEST(FailingCalls, WhatIsWrittenBeside)
{
    EachFailure([](CJobBench& bench) { return bench.Replacements(); });
    EachFailure([](CJobBench& bench) { return std::vector{bench.DepFile()}; });
}
