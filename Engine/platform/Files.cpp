#include "platform/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileHandle.h"
#include "platform/NameFold.h"
#include "platform/Paths.h"

namespace
{

constexpr uint64_t c_nMaxStreamSize = 256u << 20;
constexpr size_t c_nMaxPrefix = 64;

bool GetStatus(const std::string& sPath, struct stat& info)
{
    return stat(NativePath(sPath).c_str(), &info) == 0;
}

// Reads to the end. nExpected is only a hint: a file can grow, and pipes tell no size.
bool ReadToEnd(int nFile, std::string& sContent, uint64_t nExpected, uint64_t nMaxSize)
{
    uint64_t nUsed = 0;
    // One byte more than expected, so that the end is found without growing.
    sContent.resize(std::min(nExpected, nMaxSize) + 1);
    for (;;)
    {
        const ssize_t nRead = read(nFile, sContent.data() + nUsed, sContent.size() - nUsed);
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead < 0)
            return false;
        if (nRead == 0)
            break;
        nUsed += static_cast<uint64_t>(nRead);
        if (nUsed > nMaxSize)
            return false;
        if (nUsed == sContent.size())
            sContent.resize(std::min<uint64_t>(nUsed * 2, nMaxSize) + 1);
    }
    sContent.resize(nUsed);
    return true;
}

bool ReadFile(const std::string& sPath, std::string& sContent, uint64_t nMaxSize, bool bOrdinary)
{
    sContent.clear();
    // Without O_NONBLOCK, opening a pipe that nobody writes to would wait forever.
    CFileHandle file(open(NativePath(sPath).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info;
    if (!file.IsOpen() || fstat(file.Get(), &info) != 0 || S_ISDIR(info.st_mode))
        return false;
    const bool bRegular = S_ISREG(info.st_mode);
    if (bOrdinary && !bRegular)
        return false;
    fcntl(file.Get(), F_SETFL, fcntl(file.Get(), F_GETFL) & ~O_NONBLOCK);
    const uint64_t nSize = bRegular ? static_cast<uint64_t>(info.st_size) : 0;
    if (nSize > nMaxSize)
        return false;
    // Files of the proc kind have size 0 and content: they count as streams.
    const uint64_t nLimit = std::min<uint64_t>(nMaxSize, std::max(nSize, c_nMaxStreamSize));
    bool bOk = false;
    try
    {
        bOk = ReadToEnd(file.Get(), sContent, bRegular ? nSize : 4095, nLimit);
    }
    catch (const std::exception&)
    {
    }
    if (!bOk)
        sContent.clear();
    return bOk;
}

int CompareEntries(const CDirectoryEntry& left, const CDirectoryEntry& right)
{
    const int nFolded = CompareFolded(left.m_sName, right.m_sName);
    return nFolded != 0 ? nFolded : left.m_sName.compare(right.m_sName);
}

CDirectoryEntry MakeEntry(DIR* pDir, const dirent& entry)
{
    CDirectoryEntry result;
    result.m_sName = entry.d_name;
    result.m_bDirectory = entry.d_type == DT_DIR;
    result.m_bLink = entry.d_type == DT_LNK;
    struct stat info;
    if (entry.d_type == DT_UNKNOWN && fstatat(dirfd(pDir), entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0)
    {
        result.m_bDirectory = S_ISDIR(info.st_mode);
        result.m_bLink = S_ISLNK(info.st_mode);
    }
    if (result.m_bLink)
        result.m_bDirectory = fstatat(dirfd(pDir), entry.d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
    return result;
}

} // namespace

bool FileExists(const std::string& sPath)
{
    struct stat info;
    return GetStatus(sPath, info) && !S_ISDIR(info.st_mode);
}

bool IsSameFile(const std::string& sLeft, const std::string& sRight)
{
    struct stat left;
    struct stat right;
    return GetStatus(sLeft, left) && GetStatus(sRight, right) && left.st_dev == right.st_dev &&
           left.st_ino == right.st_ino;
}

bool PathExists(const std::string& sPath)
{
    struct stat info;
    return GetStatus(sPath, info);
}

bool DirectoryExists(const std::string& sPath)
{
    struct stat info;
    return GetStatus(sPath, info) && S_ISDIR(info.st_mode);
}

CFileVersion FileVersion(const std::string& sPath)
{
    struct stat info;
    if (!GetStatus(sPath, info))
        return CFileVersion();
    return {info.st_ino, static_cast<uint64_t>(info.st_size),
            info.st_mtim.tv_sec * INT64_C(1000000000) + info.st_mtim.tv_nsec};
}

uint64_t FileSize(const std::string& sPath)
{
    struct stat info;
    return GetStatus(sPath, info) && S_ISREG(info.st_mode) ? static_cast<uint64_t>(info.st_size) : 0;
}

bool ReadWholeFile(const std::string& sPath, std::string& sContent, uint64_t nMaxSize)
{
    return ReadFile(sPath, sContent, nMaxSize, false);
}

bool ReadOrdinaryFile(const std::string& sPath, std::string& sContent, uint64_t nMaxSize)
{
    return ReadFile(sPath, sContent, nMaxSize, true);
}

bool RemoveFile(const std::string& sPath)
{
    return unlink(NativePath(sPath).c_str()) == 0;
}

bool MakeDirectories(const std::string& sPath, unsigned nMode)
{
    const std::string sNative = NativePath(sPath);
    for (size_t i = 1; i <= sNative.size(); ++i)
    {
        if (i < sNative.size() && sNative[i] != '/')
            continue;
        const std::string sPart = sNative.substr(0, i);
        if (mkdir(sPart.c_str(), nMode) != 0 && errno != EEXIST && access(sPart.c_str(), F_OK) != 0)
            return false;
    }
    return DirectoryExists(sNative);
}

bool ListDirectory(const std::string& sPath, std::vector<CDirectoryEntry>& entries)
{
    entries.clear();
    std::unique_ptr<DIR, int (*)(DIR*)> pDir(opendir(NativePath(sPath).c_str()), closedir);
    if (!pDir)
        return false;
    for (;;)
    {
        errno = 0;
        const dirent* pEntry = readdir(pDir.get());
        if (!pEntry)
            break;
        const std::string_view sName = pEntry->d_name;
        if (sName != "." && sName != "..")
            entries.push_back(MakeEntry(pDir.get(), *pEntry));
    }
    if (errno != 0)
    {
        entries.clear();
        return false;
    }
    std::sort(entries.begin(), entries.end(),
              [](const CDirectoryEntry& left, const CDirectoryEntry& right)
              { return CompareEntries(left, right) < 0; });
    return true;
}

std::string MakeTemporaryFile(const std::string& sPrefix)
{
    std::string sName = sPrefix.substr(0, c_nMaxPrefix);
    for (char& c : sName)
    {
        if (IsSeparator(c) || c == '\0')
            c = '_';
    }
    std::string sPath = GetTemporaryDirectory() + '/' + sName + "XXXXXX";
    CFileHandle file(mkostemp(sPath.data(), O_CLOEXEC));
    return file.IsOpen() ? sPath : std::string();
}
