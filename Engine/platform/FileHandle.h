#pragma once

#include <cerrno>
#include <string_view>
#include <unistd.h>
#include <utility>

// Owns an open file of the machine; a negative number is none.
class CFileHandle
{
public:
    explicit CFileHandle(int nFile = -1) : m_nFile(nFile) {}
    ~CFileHandle() { Close(); }
    CFileHandle(CFileHandle&& other) noexcept : m_nFile(std::exchange(other.m_nFile, -1)) {}
    CFileHandle& operator=(CFileHandle&& other) noexcept
    {
        std::swap(m_nFile, other.m_nFile);
        return *this;
    }

    bool IsOpen() const { return m_nFile >= 0; }
    int Get() const { return m_nFile; }
    // False when the machine reports, only now, that written data was lost.
    bool Close() { return m_nFile < 0 || close(std::exchange(m_nFile, -1)) == 0; }

private:
    int m_nFile;
};

// All of it, whatever interrupts. False: errno says why, and part of it may be written.
inline bool WriteAll(int nFile, std::string_view sContent)
{
    while (!sContent.empty())
    {
        const ssize_t nWritten = write(nFile, sContent.data(), sContent.size());
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        sContent.remove_prefix(static_cast<size_t>(nWritten));
    }
    return true;
}
