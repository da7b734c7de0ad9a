#include "shell/VersionInfo.h"

#include "platform/DynamicLibrary.h"
#include "platform/Paths.h"
#include "qsassert.h"

namespace
{

constexpr size_t c_nMaxModuleName = 512;
constexpr size_t c_nMaxValue = 4096;

using GetVersionValueFunction = const char* (*)(const char*);

void ReadLibraryBlock(void* hModule, CVersionBlock& block)
{
    const auto pfnGet =
        reinterpret_cast<GetVersionValueFunction>(GetLibrarySymbol(hModule, "GetVersionValue"));
    if (!pfnGet)
        return;
    for (const char* pszName : {c_szVersionProduct, c_szVersionVersion, c_szVersionLegal})
    {
        for (const char* pszLanguage : {"040904b0", "040904e4"})
        {
            const std::string sKey = std::string("\\StringFileInfo\\") + pszLanguage + "\\" + pszName;
            if (const char* pszValue = pfnGet(sKey.c_str()))
                block.SetValue(sKey, std::string(pszValue).substr(0, c_nMaxValue));
        }
    }
}

void TakeValue(const CVersionBlock& block, const char* pszName, std::string& sText)
{
    if (const std::string* pValue = block.Find(pszName))
        sText = *pValue;
}

} // namespace

bool ReadModuleVersion(const std::string& sModule, std::string& sFileName, CVersionBlock& block)
{
    if (sModule.empty())
    {
        sFileName = GetExecutablePath();
        block = GetProgramVersion();
        return true;
    }
    void* hModule = LoadDynamicLibrary(sModule);
    if (!hModule)
        return false;
    sFileName = ResolvedPath(NativeLibraryPath(sModule));
    ReadLibraryBlock(hModule, block);
    FreeDynamicLibrary(hModule);
    return true;
}

bool ExtractVersionInformation(const std::string& sModule, std::string* pstrProductName,
                               std::string* pstrVersion, std::string* pstrCopyright,
                               const ModuleReader& reader)
{
    QS_ASSERT(pstrProductName);
    QS_ASSERT(pstrVersion);
    QS_ASSERT(pstrCopyright);
    if (!pstrProductName || !pstrVersion || !pstrCopyright)
        return false;

    std::string sFileName;
    CVersionBlock block;
    if (!reader(sModule, sFileName, block))
        return false;
    if (sFileName.substr(0, c_nMaxModuleName).find_first_of("\\/") == std::string::npos)
        return false;
    TakeValue(block, c_szVersionProduct, *pstrProductName);
    TakeValue(block, c_szVersionVersion, *pstrVersion);
    TakeValue(block, c_szVersionLegal, *pstrCopyright);
    return true;
}
