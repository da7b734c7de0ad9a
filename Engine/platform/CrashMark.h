#pragma once

#include <string>

#include "platform/FileHandle.h"

// A small file that stands while something runs that may take the whole process with it. What a process leaves
// behind that didn't come to the end, the next one finds. It is locked as long as its process lives, so that one
// that is still at it isn't taken for a dead one.
class CCrashMark
{
public:
    // An empty path: there is never a mark.
    explicit CCrashMark(const std::string& sPath) : m_sPath(sPath) {}
    CCrashMark(const CCrashMark&) = delete;
    CCrashMark& operator=(const CCrashMark&) = delete;

    // Whether a dead process has left one, and its content, at most 8 KB of it.
    bool WasLeft(std::string& sContent) const;
    // Sets the mark, in the place of one that was left; its folder is made. Where that can't be, or while
    // another process has set it, there is none.
    void Set(const std::string& sContent);
    // Takes away our own, or one that was left.
    void Clear();

private:
    std::string m_sPath;
    CFileHandle m_File;
};
