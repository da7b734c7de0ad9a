#include "platform/FileMode.h"

#include <sys/stat.h>

#include "platform/Paths.h"

bool MakeFileWritable(const std::string& sPath)
{
    const std::string sNative = NativePath(sPath);
    struct stat info;
    if (stat(sNative.c_str(), &info) != 0)
        return false;
    return (info.st_mode & S_IWUSR) != 0 || chmod(sNative.c_str(), (info.st_mode & 07777) | S_IWUSR) == 0;
}

unsigned FileMode(const std::string& sPath)
{
    struct stat info;
    return stat(NativePath(sPath).c_str(), &info) == 0 ? info.st_mode & 0666 : 0666;
}

bool MakePrivate(const std::string& sPath)
{
    const std::string sNative = NativePath(sPath);
    struct stat info;
    if (stat(sNative.c_str(), &info) != 0)
        return false;
    return (info.st_mode & 0077) == 0 || chmod(sNative.c_str(), info.st_mode & 07700) == 0;
}
