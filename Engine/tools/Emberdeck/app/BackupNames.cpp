#include "app/BackupNames.h"

#include <string_view>

#include "app/StoreNames.h"

namespace
{

constexpr const char* c_szBackupSuffix = ".bak";
constexpr const char* c_szOwnerSuffix = ".path";

bool IsHash(const std::string& sText)
{
    return sText.size() == c_nHashDigits && sText.find_first_not_of("0123456789abcdef") == std::string::npos;
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

} // namespace

std::string OwnerFileName(const std::string& sHash)
{
    return sHash + c_szOwnerSuffix;
}

std::string BackupName(const std::string& sHash, uint64_t nTime, uint32_t nMark, std::optional<bool> bSound)
{
    return sHash + '-' + TimeDigits(nTime) + '-' + HexDigits(nMark, c_nMarkDigits) + '-' +
           SoundLetter(bSound) + c_szBackupSuffix;
}

bool ParseBackupName(const std::string& sName, std::string& sHash, uint64_t& nTime,
                     std::optional<bool>& bSound)
{
    constexpr size_t nLength = c_nHashDigits + 1 + c_nTimeDigits + 1 + c_nMarkDigits;
    const std::string_view sSuffix = c_szBackupSuffix;
    if (sName.size() < nLength + sSuffix.size() || !sName.ends_with(sSuffix) || sName[c_nHashDigits] != '-' ||
        sName[c_nHashDigits + 1 + c_nTimeDigits] != '-')
        return false;
    const std::string_view sBehind = std::string_view(sName).substr(nLength);
    if (!ParseSound(sBehind.substr(0, sBehind.size() - sSuffix.size()), bSound))
        return false;
    sHash = sName.substr(0, c_nHashDigits);
    nTime = 0;
    for (const char c : sName.substr(c_nHashDigits + 1, c_nTimeDigits))
    {
        if (c < '0' || c > '9')
            return false;
        nTime = nTime * 10 + static_cast<uint64_t>(c - '0');
    }
    return IsHash(sHash);
}
