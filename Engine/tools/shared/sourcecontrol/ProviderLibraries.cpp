#include "shared/sourcecontrol/ProviderLibraries.h"

#include <algorithm>
#include <utility>

#include "platform/DynamicLibrary.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "qsnumber.h"

namespace
{

constexpr uint64_t c_nMaxListSize = 64 << 10;
constexpr size_t c_nMaxLibraries = 64;
constexpr std::string_view c_sBlanks = " \t\r";

using CVersionFunction = uint32_t();
using CMakeFunction = ISourceControlProvider*(const char*);

// Loads the library on first use and makes its providers.
class CProviderLibrary
{
public:
    CProviderLibrary(std::string sPath, const CClassId& id) : m_sPath(std::move(sPath)), m_Id(id) {}

    std::unique_ptr<ISourceControlProvider> Make()
    {
        if (!m_pMake)
            Load();
        std::unique_ptr<ISourceControlProvider> pProvider(m_pMake(m_Id.ToText().c_str()));
        if (!pProvider)
            Fail("has no provider " + m_Id.ToText());
        return pProvider;
    }

private:
    [[noreturn]] void Fail(const std::string& sReason) const
    {
        throw CSourceControlError(c_nSourceControlNoClass, "The library " + m_sPath + ' ' + sReason + '.');
    }

    void Load()
    {
        std::string sError;
        void* hModule = LoadDynamicLibrary(m_sPath, &sError);
        if (!hModule)
            Fail("can't be loaded (" + sError + ')');
        const auto pVersion =
            reinterpret_cast<CVersionFunction*>(GetLibrarySymbol(hModule, "SourceControlProviderVersion"));
        const auto pMake =
            reinterpret_cast<CMakeFunction*>(GetLibrarySymbol(hModule, "MakeSourceControlProvider"));
        const bool bGood = pVersion && pMake && pVersion() == c_nProviderLibraryVersion;
        if (!bGood)
        {
            FreeDynamicLibrary(hModule);
            Fail("isn't a source control provider for this program");
        }
        m_pMake = pMake;
    }

    std::string m_sPath;
    CClassId m_Id;
    CMakeFunction* m_pMake = nullptr;
};

std::string_view TakeWord(std::string_view& sRest)
{
    sRest.remove_prefix(std::min(sRest.find_first_not_of(c_sBlanks), sRest.size()));
    const std::string_view sWord = sRest.substr(0, sRest.find_first_of(c_sBlanks));
    sRest.remove_prefix(sWord.size());
    return sWord;
}

// Why a line can't be used; empty when it could.
std::string RegisterLine(CProviderRegistry& registry, const std::string& sFolder, std::string_view sLine)
{
    std::string_view sRest = sLine;
    const std::string sName(TakeWord(sRest));
    const CClassId id = CClassId::FromText(TakeWord(sRest));
    sRest.remove_prefix(std::min(sRest.find_first_not_of(c_sBlanks), sRest.size()));
    sRest = sRest.substr(0, sRest.find_last_not_of(c_sBlanks) + 1);
    if (id.IsZero() || sRest.empty())
        return "a name, a class id in braces and a library are expected";
    std::string sPath(sRest);
    if (!IsSeparator(sPath[0]))
        sPath = sFolder + sPath;
    const auto pLibrary = std::make_shared<CProviderLibrary>(sPath, id);
    if (!registry.Register(id, sName, [pLibrary] { return pLibrary->Make(); }))
        return "this class id is taken";
    return std::string();
}

} // namespace

std::vector<std::string> RegisterProviderLibraries(CProviderRegistry& registry, const std::string& sListFile)
{
    std::vector<std::string> complaints;
    std::string sText;
    if (!PathExists(sListFile))
        return complaints;
    if (!ReadWholeFile(sListFile, sText, c_nMaxListSize))
        return {sListFile + " can't be read, or is too long."};
    const std::string sFolder = sListFile.substr(0, sListFile.find_last_of('/') + 1);
    size_t nLibraries = 0;
    int nLine = 0;
    for (size_t nBegin = 0; nBegin < sText.size();)
    {
        const size_t nEnd = std::min(sText.find('\n', nBegin), sText.size());
        const std::string_view sLine = std::string_view(sText).substr(nBegin, nEnd - nBegin);
        nBegin = nEnd + 1;
        ++nLine;
        const size_t nFirst = sLine.find_first_not_of(c_sBlanks);
        if (nFirst == std::string_view::npos || sLine[nFirst] == '#' || sLine[nFirst] == ';')
            continue;
        const std::string sProblem =
            nLibraries++ < c_nMaxLibraries ? RegisterLine(registry, sFolder, sLine) : "there are too many";
        if (!sProblem.empty())
            complaints.push_back(sListFile + QSFormat(", line %d: ", nLine) + sProblem + '.');
    }
    return complaints;
}

std::string GetProviderListFile()
{
    return GetConfigDirectory() + "/emberdeck/providers.txt";
}
