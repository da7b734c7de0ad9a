#include "qsamgr/qsasystem.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

bool QSACreateTempFile(char* pszPath, uint32_t nSize)
{
    if (nSize == 0)
        return false;
    pszPath[0] = '\0';
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    const std::string sPath = (directory / "qsaXXXXXX").string();
    if (error || sPath.size() >= nSize)
        return false;
    std::memcpy(pszPath, sPath.c_str(), sPath.size() + 1);
    const int nFile = mkstemp(pszPath);
    if (nFile < 0)
    {
        pszPath[0] = '\0';
        return false;
    }
    close(nFile);
    return true;
}

void QSARemoveFile(const char* pszPath)
{
    if (pszPath[0] != '\0')
        std::remove(pszPath);
}

namespace
{
// Advice on the whole pages inside a range: what lies around it belongs to others.
void Advise(void* pMemory, size_t nSize, int nAdvice)
{
    constexpr uintptr_t c_nPage = 4096;
    const uintptr_t nStart = (reinterpret_cast<uintptr_t>(pMemory) + c_nPage - 1) & ~(c_nPage - 1);
    const uintptr_t nEnd = (reinterpret_cast<uintptr_t>(pMemory) + nSize) & ~(c_nPage - 1);
    if (nStart < nEnd)
        madvise(reinterpret_cast<void*>(nStart), nEnd - nStart, nAdvice);
}
} // namespace

void QSAAdviseLargePages([[maybe_unused]] void* pMemory, [[maybe_unused]] size_t nSize)
{
#if defined(MADV_HUGEPAGE)
    Advise(pMemory, nSize, MADV_HUGEPAGE);
#endif
}

void QSAPrepareMemory([[maybe_unused]] void* pMemory, [[maybe_unused]] size_t nSize)
{
#if defined(__linux__)
    constexpr int c_nPopulateWrite = 23; // MADV_POPULATE_WRITE, which older headers lack
    Advise(pMemory, nSize, c_nPopulateWrite);
#endif
}
