#include <cstdio>

#include "Sample.h"

static std::string s_sAsked;
static std::string s_sTrue; // the numbers that are answered truly

static int Count(int nResult)
{
    s_sAsked += std::to_string(nResult);
    return s_sTrue.find(std::to_string(nResult)) != std::string::npos ? nResult : -1;
}

static bool Asks(const char* pszTrue, bool bAnswer, const char* pszAsked)
{
    s_sAsked.clear();
    s_sTrue = pszTrue;
    return Ask(Count) == bAnswer && s_sAsked == pszAsked;
}

static bool Works()
{
    const auto pName = Name("> c");
    return Distance(2, 7) == 5 && Distance(7, 2) == 11 && Distance(3, 3) == 1 && IsWithin(2, 2, 5) &&
           !IsWithin(5, 2, 5) && IsWithin(4, 2, 5) && !IsWithin(1, 2, 5) && !IsWithin(6, 2, 5) &&
           Weigh({8, 2, 3}) == 54 && Weigh({}) == 50 && Weigh({2, 2}) == 48 && pName &&
           *pName == "a < b > c" && !Name("") && !Name(nullptr) && std::string(Kind(1)) == "other" &&
           std::string(Kind(2)) == "two" && Fivefold(3) == 15 && Flag(false) && !Flag(true) &&
           Asks("1234", true, "123") && Asks("124", true, "1234") && Asks("", false, "134") &&
           Asks("12", false, "1234") && Asks("134", false, "123");
}

int main()
{
    std::puts(Works() ? "works" : "fails");
    return 0;
}
