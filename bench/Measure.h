#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// One thing that is measured. m_Run does it once and gives how many seconds it took, without what it had
// to prepare; below 0 when it went wrong.
struct CSubject
{
    std::string m_sName;
    std::function<double()> m_Run;
};

struct CSample
{
    std::string m_sName;
    double m_fMedian = 0.0;
    double m_fMin = 0.0;
    double m_fMax = 0.0;
    bool m_bOk = true;
};

// Seconds by a clock that only goes forward.
double Now();

// Runs all subjects by turns, nRounds times, the order turned round in every second round, so that a slow
// minute of the machine falls on all of them.
std::vector<CSample> MeasureRounds(const std::vector<CSubject>& subjects, int nRounds);

// Starts this program again with the given arguments and gives the number that it prints, or below 0.
double MeasureInFreshProcess(const std::vector<std::string>& arguments);

// The process's resident memory now, in bytes; 0 where the system doesn't tell.
uint64_t ResidentMemory();

// What a fresh page of 4 KiB costs here, in microseconds.
double PageCost();
