#include "bench/Measure.h"

#include <sys/mman.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/Paths.h"
#include "platform/Process.h"
#include "qsnumber.h"

double Now()
{
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

std::vector<CSample> MeasureRounds(const std::vector<CSubject>& subjects, int nRounds)
{
    std::vector<std::vector<double>> times(subjects.size());
    for (int nRound = 0; nRound < nRounds; ++nRound)
        for (size_t i = 0; i < subjects.size(); ++i)
        {
            const size_t n = nRound % 2 ? subjects.size() - 1 - i : i;
            times[n].push_back(subjects[n].m_Run());
        }
    std::vector<CSample> samples;
    for (size_t i = 0; i < subjects.size(); ++i)
    {
        std::vector<double>& t = times[i];
        std::sort(t.begin(), t.end());
        samples.push_back({subjects[i].m_sName, t[t.size() / 2], t.front(), t.back(), t.front() >= 0.0});
    }
    return samples;
}

double MeasureInFreshProcess(const std::vector<std::string>& arguments)
{
    const CProcessResult result = RunProcess(GetExecutablePath(), arguments, "", 600000);
    if (!result.m_bStarted || result.m_nExitCode != 0)
        return -1.0;
    return QSTextToDouble(result.m_sOutput.c_str());
}

uint64_t ResidentMemory()
{
    // The figures in "status" lag behind by some pages for each thread; these are counted when read.
    std::FILE* pFile = std::fopen("/proc/self/smaps_rollup", "r");
    if (!pFile)
        return 0;
    char szLine[256];
    uint64_t nKiB = 0;
    while (std::fgets(szLine, sizeof(szLine), pFile))
    {
        if (std::strncmp(szLine, "Rss:", 4) == 0)
            nKiB = std::strtoull(szLine + 4, nullptr, 10);
    }
    std::fclose(pFile);
    return nKiB * 1024;
}

double PageCost()
{
    constexpr size_t c_nPages = 16384;
    std::vector<double> costs;
    for (int i = 0; i < 5; ++i)
    {
        void* p = mmap(nullptr, c_nPages * 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED)
            return 0.0;
        madvise(p, c_nPages * 4096, MADV_NOHUGEPAGE);
        const double fStart = Now();
        for (size_t n = 0; n < c_nPages; ++n)
            static_cast<volatile char*>(p)[n * 4096] = 1;
        costs.push_back((Now() - fStart) * 1e6 / c_nPages);
        munmap(p, c_nPages * 4096);
    }
    std::sort(costs.begin(), costs.end());
    return costs[2];
}
