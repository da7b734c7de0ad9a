#include "loadlibrary.h"

#include "qsstrutils.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace
{

// A library that is there but can't be loaded is passed over like a missing one: the next name may be the
// right one.
void* TryLoad(const char* pszDirectory, int nDirectoryLength, const char* pszPrefix, const char* pszName,
              int nNameLength, const char* pszSuffix, char* pszPath)
{
    const int nLength = std::snprintf(pszPath, c_nMaxLibraryPath, "%.*s%s%.*s%s", nDirectoryLength,
                                      pszDirectory, pszPrefix, nNameLength, pszName, pszSuffix);
    if (nLength < 0 || uint32_t(nLength) >= c_nMaxLibraryPath)
        return nullptr;
    if (nDirectoryLength > 0 && access(pszPath, R_OK) != 0)
        return nullptr;
    return dlopen(pszPath, RTLD_NOW | RTLD_LOCAL);
}

} // namespace

bool GetExecutablePath(char* pszPath, uint32_t nSize)
{
    const ssize_t nLength = readlink("/proc/self/exe", pszPath, nSize);
    if (nLength <= 0 || size_t(nLength) >= nSize)
        return false;
    pszPath[nLength] = '\0';
    return true;
}

void* LoadNamedLibrary(const char* pszName, char* pszPath)
{
    char szExecutable[c_nMaxLibraryPath];
    int nDirectory = 0; // length with the separator
    if (GetExecutablePath(szExecutable, sizeof szExecutable))
    {
        if (const char* pSlash = std::strrchr(szExecutable, '/'))
            nDirectory = int(pSlash - szExecutable) + 1;
    }

    const int nWhole = int(std::strlen(pszName));
    const int32_t nExtension = FindExtension(pszName);
    const int nBase = nExtension > 0 ? nExtension - 1 : nWhole;

    for (const int nPlace : {nDirectory, 0})
    {
        if (void* pLibrary = TryLoad(szExecutable, nPlace, "", pszName, nWhole, "", pszPath))
            return pLibrary;
        if (void* pLibrary = TryLoad(szExecutable, nPlace, "", pszName, nBase, ".so", pszPath))
            return pLibrary;
        if (void* pLibrary = TryLoad(szExecutable, nPlace, "lib", pszName, nBase, ".so", pszPath))
            return pLibrary;
        if (nDirectory == 0)
            break;
    }
    pszPath[0] = '\0';
    return nullptr;
}

bool IsLibraryLoaded(const char* pszPath)
{
    void* pLibrary = dlopen(pszPath, RTLD_NOLOAD | RTLD_LAZY);
    if (!pLibrary)
        return false;
    dlclose(pLibrary); // the handle counted once more
    return true;
}

void* FindLibrarySymbol(void* pLibrary, const char* pszName)
{
    return pLibrary ? dlsym(pLibrary, pszName) : nullptr;
}

void UnloadLibrary(void* pLibrary)
{
    if (pLibrary)
        dlclose(pLibrary);
}
