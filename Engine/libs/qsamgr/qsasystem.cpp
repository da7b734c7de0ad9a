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

void QSAAdviseLargePages([[maybe_unused]] void* pMemory, [[maybe_unused]] size_t nSize)
{
#if defined(MADV_HUGEPAGE)
    // Whole pages inside the range only: what lies behind it belongs to others.
    constexpr uintptr_t c_nPage = 4096;
    madvise(pMemory, nSize & ~(c_nPage - 1), MADV_HUGEPAGE);
#endif
}
