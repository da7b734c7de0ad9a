#include "app/StoreNames.h"

#include <chrono>
#include <cstdio>
#include <random>

#include "platform/Paths.h"

std::string HexDigits(uint64_t nValue, int nDigits)
{
    char szText[20];
    std::snprintf(szText, sizeof(szText), "%0*llx", nDigits, static_cast<unsigned long long>(nValue));
    return szText;
}

std::string HashOf(std::string_view sText)
{
    uint64_t nFirst = 0xCBF29CE484222325u;
    uint64_t nSecond = 0x9E3779B97F4A7C15u;
    for (const char c : sText)
    {
        const uint64_t nByte = static_cast<unsigned char>(c);
        nFirst = (nFirst ^ nByte) * 0x100000001B3u;
        nSecond = (nSecond + nByte) * 0xFF51AFD7ED558CCDu;
        nSecond ^= nSecond >> 29;
    }
    return HexDigits(nFirst, 16) + HexDigits(nSecond, 16);
}

uint64_t NowNanoseconds()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const int64_t nTime = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    return nTime < 0 ? 0 : static_cast<uint64_t>(nTime);
}

std::string TimeDigits(uint64_t nTime)
{
    char szText[24];
    std::snprintf(szText, sizeof(szText), "%020llu", static_cast<unsigned long long>(nTime));
    return szText;
}

std::string RandomMark()
{
    std::random_device random;
    return HexDigits(random() & 0xFFFFFFFFu, c_nMarkDigits);
}

std::string OwnerOf(const std::string& sPath)
{
    const std::string sResolved = ResolvedPath(sPath);
    return sResolved.empty() ? MakeFullPath(sPath) : sResolved;
}
