// Places of every kind for planted faults, each of which Check.cpp sees. What has to be known while compiling can't
// take a fault; selftest requires that it is dropped.

#include "Sample.h"

namespace
{

constexpr int c_nFirst = 4 - 3; // passed over

template <int N>
int Times(int nFactor)
{
    return nFactor * N;
}

} // namespace

int Distance(int nFrom, int nTo)
{
    if (nFrom < nTo)
        return nTo - nFrom;
    return (nFrom - nTo) * 2 + 1;
}

bool IsWithin(int nAt, int nFirst, int nLast)
{
    return nAt >= nFirst && nAt < nLast;
}

int Weigh(const std::vector<int>& values)
{
    int nSum = 100;
    for (size_t i = 0; i != values.size(); ++i)
    {
        if (values[i] < 3) // "a < b" in a comment is no place
            nSum -= values[i];
        else
            nSum += values[i];
    }
    return nSum / 2;
}

std::unique_ptr<std::string> Name(const char* pszName)
{
    if (!pszName || !*pszName)
        return nullptr;
    auto pResult = std::make_unique<std::string>("a < b ");
    pResult->append(pszName);
    return pResult;
}

const char* Kind(int nKind)
{
    const char* pszKind = "other";
    switch (nKind)
    {
    case c_nFirst + 1: // no label can change
        pszKind = "two";
        break;
    default:
        break;
    }
    return pszKind;
}

int Fivefold(int nValue)
{
    const int nResult = Times<5>(nValue);
    return nResult;
}

bool Flag(bool bTurned)
{
    bool bFlag = true;
    while (bTurned && bFlag)
        bFlag = false;
    return bFlag;
}

bool Ask(int (*pCount)(int))
{
    const bool bBoth = pCount(1) == 1 && pCount(2) == 2;
    const bool bOne = pCount(3) == 3 || pCount(4) == 4;
    return bBoth && bOne;
}
