#include "platform/DynamicLibrary.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

#include "platform/Paths.h"
#include "platform/PluginCall.h"

namespace
{

void* LoadOne(const std::string& sPath, std::string& sError)
{
    // Opening a pipe would wait for somebody to write to it.
    struct stat info;
    if (stat(sPath.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
    {
        sError = sPath + ": not a file";
        return nullptr;
    }
    // A bare name would be looked for among the system's libraries.
    const std::string sName = sPath.find('/') == std::string::npos ? "./" + sPath : sPath;
    const CPluginCall call(sName.c_str()); // its constructors run
    void* hModule = dlopen(sName.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!hModule)
    {
        const char* pszError = dlerror();
        sError = pszError ? pszError : sPath + ": can't be loaded";
    }
    return hModule;
}

} // namespace

void* LoadDynamicLibrary(const std::string& sPath, std::string* pError)
{
    std::string sError = sPath + ": no such file";
    for (const std::string& sCandidate : NativeLibraryPaths(sPath))
    {
        if (void* hModule = LoadOne(sCandidate, sError))
            return hModule;
    }
    if (pError)
        *pError = sError;
    return nullptr;
}

void* GetLibrarySymbol(void* hModule, const char* pszName)
{
    return hModule && pszName ? dlsym(hModule, pszName) : nullptr;
}

void FreeDynamicLibrary(void* hModule)
{
    if (!hModule)
        return;
    struct link_map* pMap = nullptr;
    const bool bNamed = dlinfo(hModule, RTLD_DI_LINKMAP, &pMap) == 0 && pMap;
    const CPluginCall call(bNamed ? pMap->l_name : nullptr); // its destructors run
    dlclose(hModule);
}
