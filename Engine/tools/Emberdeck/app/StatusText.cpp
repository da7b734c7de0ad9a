#include "app/StatusText.h"

#include "platform/Files.h"

std::string TellCount(uint64_t nCount, const char* pszWord)
{
    std::string sText = std::to_string(nCount);
    for (size_t nPlace = sText.size(); nPlace > 3;)
    {
        nPlace -= 3;
        sText.insert(nPlace, 1, ',');
    }
    return sText + ' ' + pszWord + (nCount == 1 ? "" : "s");
}

std::string TellThings(const char* pszVerb, uint64_t nCount, const char* pszThing)
{
    return std::string(pszVerb) + ' ' + (nCount == 1 ? std::string(pszThing) : TellCount(nCount, pszThing));
}

std::string TellName(const std::string& sPath)
{
    const size_t nSeparator = sPath.find_last_of("\\/");
    return nSeparator == std::string::npos ? sPath : sPath.substr(nSeparator + 1);
}

std::string TellFile(const char* pszDone, const std::string& sPath, uint64_t nEffects)
{
    return std::string(pszDone) + ' ' + TellName(sPath) + ": " + TellCount(nEffects, "effect") + ", " +
           TellCount(FileSize(sPath), "byte");
}

std::string DoubleAmpersands(const std::string& sText)
{
    std::string sDoubled;
    for (const char c : sText)
        sDoubled.append(c == '&' ? 2 : 1, c);
    return sDoubled;
}
