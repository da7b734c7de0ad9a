// Each allocation of the real programs fails in turn, below all of their code.

#include <cstdlib>
#include <random>

#include "JobBench.h"

namespace
{
// Every so many of a job's allocations fail, from a place at random on; all of them with a 1 in the environment.
int Step()
{
    const char* pszStep = std::getenv("EMBERDECK_FAULT_STEP");
    return std::max(pszStep ? std::atoi(pszStep) : 23, 1);
}

void EachAllocation(CJobBench& bench, const CJob& job)
{
    const std::vector<std::string> command = bench.Command(job);
    const std::string sShim = "LD_PRELOAD=" EMBERDECK_BIN_DIR "/test_modules/FailingMalloc.so";
    const std::string sCount = bench.dir.path("count");
    ASSERT_NO_FATAL_FAILURE(bench.DoIt(job));
    bench.Prepare(job);
    ASSERT_EQ(0, bench.Run(command, {sShim, "EMBERDECK_COUNT_MALLOC=" + sCount}).m_nExitCode);
    const int nCount = std::stoi(ReadBytes(sCount));
    const int nStart = 1 + static_cast<int>(std::random_device{}() % static_cast<unsigned>(Step()));
    int nFailed = 0;
    for (int nFailAt = nStart; nFailAt <= nCount; nFailAt += Step())
    {
        bench.Prepare(job);
        const CProcessResult result =
            bench.Run(command, {sShim, "EMBERDECK_FAIL_MALLOC=" + std::to_string(nFailAt)});
        SCOPED_TRACE(job.m_Arguments.front() + ", allocation " + std::to_string(nFailAt) +
                     "\nit said: " + result.m_sErrors);
        bench.CheckOutcome(job, result);
        nFailed += result.m_nExitCode;
    }
    EXPECT_GT(nFailed, 0) << job.m_Arguments.front() << ", " << nCount << " allocations";
}
} // namespace

TEST(ProgramsOutOfMemory, TellItAndLoseNothing)
{
#ifdef EMBERDECK_SANITIZED
    GTEST_SKIP() << "the sanitizer's own malloc can't be made to fail";
#endif
    CJobBench bench;
    std::vector<CJob> jobs = bench.Replacements();
    jobs.insert(jobs.end(), {bench.Save("Fx00a"), bench.Save("Fx00c"), bench.SaveOntoItself(), bench.Update(),
                             bench.Recovery(), bench.DepFile()});
    for (const CJob& job : jobs)
        EachAllocation(bench, job);
}
