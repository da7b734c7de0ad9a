#include "app/BackupNames.h"

#include <cstdio>
#include <string_view>

#include "platform/Paths.h"

namespace
{

constexpr size_t c_nHashLength = 32;
constexpr size_t c_nTimeLength = 20;
constexpr size_t c_nMarkLength = 8;
constexpr const char* c_szBackupSuffix = ".bak";
constexpr const char* c_szOwnerSuffix = ".path";

std::string Hex(uint64_t nValue, int nDigits)
{
    char szText[20];
    std::snprintf(szText, sizeof(szText), "%0*llx", nDigits, static_cast<unsigned long long>(nValue));
    return szText;
}

bool IsHash(const std::string& sText)
{
    return sText.size() == c_nHashLength && sText.find_first_not_of("0123456789abcdef") == std::string::npos;
}

// The letter of a name for what is known of the copy.
constexpr char SoundLetter(std::optional<bool> bSound)
{
    return !bSound ? 'u' : *bSound ? 's' : 'd';
}

// "-s" before the ending; older copies have none.
bool ParseSound(std::string_view sLetter, std::optional<bool>& bSound)
{
    bSound.reset();
    if (sLetter.empty() || sLetter == "-u")
        return true;
    bSound = sLetter == "-s";
    return *bSound || sLetter == "-d";
}

std::string TimeText(uint64_t nTime)
{
    char szText[24];
    std::snprintf(szText, sizeof(szText), "%020llu", static_cast<unsigned long long>(nTime));
    return szText;
}

} // namespace

std::string BackupHash(const std::string& sText)
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
    return Hex(nFirst, 16) + Hex(nSecond, 16);
}

std::string OwnerOf(const std::string& sPath)
{
    const std::string sResolved = ResolvedPath(sPath);
    return sResolved.empty() ? MakeFullPath(sPath) : sResolved;
}

std::string OwnerFileName(const std::string& sHash)
{
    return sHash + c_szOwnerSuffix;
}

std::string BackupName(const std::string& sHash, uint64_t nTime, uint32_t nMark, std::optional<bool> bSound)
{
    return sHash + '-' + TimeText(nTime) + '-' + Hex(nMark, c_nMarkLength) + '-' + SoundLetter(bSound) +
           c_szBackupSuffix;
}

bool ParseBackupName(const std::string& sName, std::string& sHash, uint64_t& nTime,
                     std::optional<bool>& bSound)
{
    constexpr size_t nLength = c_nHashLength + 1 + c_nTimeLength + 1 + c_nMarkLength;
    const std::string_view sSuffix = c_szBackupSuffix;
    if (sName.size() < nLength + sSuffix.size() || !sName.ends_with(sSuffix) || sName[c_nHashLength] != '-' ||
        sName[c_nHashLength + 1 + c_nTimeLength] != '-')
        return false;
    const std::string_view sBehind = std::string_view(sName).substr(nLength);
    if (!ParseSound(sBehind.substr(0, sBehind.size() - sSuffix.size()), bSound))
        return false;
    sHash = sName.substr(0, c_nHashLength);
    nTime = 0;
    for (const char c : sName.substr(c_nHashLength + 1, c_nTimeLength))
    {
        if (c < '0' || c > '9')
            return false;
        nTime = nTime * 10 + static_cast<uint64_t>(c - '0');
    }
    return IsHash(sHash);
}
