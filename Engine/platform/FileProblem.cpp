#include "platform/FileProblem.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "platform/Paths.h"

namespace
{

// The system's own words follow the user's language, which these sentences don't.
std::string Words(int nError)
{
    switch (nError)
    {
    case EACCES:
    case EPERM:
        return "permission denied";
    case ENAMETOOLONG:
        return "the name is too long";
    case EROFS:
        return "the disk is read-only";
    case ELOOP:
        return "its links lead in a circle";
    default:
        return std::strerror(nError);
    }
}

// What is wrong with a path before anything looks at the disk.
std::string NameProblem(const std::string& sPath)
{
    if (sPath.empty())
        return "The name is empty.";
    return IsForeignPath(sPath) ? sPath + " is a path of another system." : std::string();
}

// For a path where nothing is, or that can't be looked at.
std::string MissingProblem(const std::string& sNative, int nError)
{
    if (nError != ENOENT && nError != ENOTDIR)
        return sNative + " can't be reached: " + Words(nError) + ".";
    struct stat info;
    const std::string sFolder = NativeFolderOf(sNative);
    if (stat(sFolder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        return "There is no folder " + sFolder + ".";
    return "There is no file " + sNative + ".";
}

} // namespace

std::string ReadProblem(const std::string& sPath)
{
    std::string sProblem = NameProblem(sPath);
    if (!sProblem.empty())
        return sProblem;
    const std::string sNative = NativePath(sPath);
    struct stat info;
    if (stat(sNative.c_str(), &info) != 0)
        return MissingProblem(sNative, errno);
    if (S_ISDIR(info.st_mode))
        return sNative + " is a folder, not a file.";
    if (!S_ISREG(info.st_mode))
        return sNative + " is a pipe, a socket or a device, not a file.";
    if (access(sNative.c_str(), R_OK) != 0)
        return sNative + " can't be read: " + Words(errno) + ".";
    return std::string();
}

std::string WriteProblem(const std::string& sPath)
{
    std::string sProblem = NameProblem(sPath);
    if (!sProblem.empty())
        return sProblem;
    const std::string sNative = NativePath(sPath);
    const std::string sFolder = NativeFolderOf(sNative);
    struct stat info;
    if (stat(sNative.c_str(), &info) == 0)
    {
        if (S_ISDIR(info.st_mode))
            return sNative + " is a folder, not a file.";
        if (access(sNative.c_str(), W_OK) != 0)
            return sNative + " can't be written: " + Words(errno) + ".";
        if ((info.st_mode & 0222) == 0)
            return sNative + " is write-protected.";
    }
    else if (errno != ENOENT || access(sFolder.c_str(), F_OK) != 0)
        return MissingProblem(sNative, errno);
    else if (access(sFolder.c_str(), W_OK) != 0)
        return "No file can be made in " + sFolder + ": " + Words(errno) + ".";
    struct statvfs disk;
    if (statvfs(sFolder.c_str(), &disk) == 0 && disk.f_blocks != 0 && disk.f_bavail == 0)
        return "The disk that holds " + sFolder + " is full.";
    return std::string();
}
