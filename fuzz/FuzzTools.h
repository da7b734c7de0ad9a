#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include "qsassert.h"

// What every fuzz body is, for libFuzzer as for the replay under the tests.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize);

// A property that holds for every input. Ends the process, which is how a fuzzer learns of a finding.
inline void Require(bool bHolds, const char* pszWhat)
{
    if (bHolds)
        return;
    std::fprintf(stderr, "fuzz: %s\n", pszWhat);
    std::abort();
}

// No bytes from outside may fail an assertion: each one that does is a finding, but for a text that is longer
// than its field, whose cut is reported by design. Once for each process. The body of wild
// plug-ins takes FUZZ_GO_ON, since a bad table is what assertions are there to tell.
enum EFuzzAsserts
{
    FUZZ_STOP,
    FUZZ_GO_ON
};
inline void CatchAsserts(EFuzzAsserts eAsserts = FUZZ_STOP)
{
    static EFuzzAsserts s_eAsserts;
    s_eAsserts = eAsserts;
    static const bool s_bInstalled = SetAssertHandler(
        [](const CAssertReport& report, void*) -> int32_t
        {
            if (s_eAsserts == FUZZ_GO_ON || std::strstr(report.m_pszText, "Copy source is truncated"))
                return ASSERT_RESULT_IGNORE;
            std::fprintf(stderr, "fuzz: assertion %s %s (%s:%d)\n", report.m_pszExpression, report.m_pszText,
                         report.m_pszFile, report.m_nLine);
            std::abort();
        },
        nullptr);
    Require(s_bInstalled, "the assertion library isn't beside the program");
}

// Cuts an input into numbers and pieces; zeros and empty pieces when it has ended.
class CFuzzInput
{
public:
    CFuzzInput(const uint8_t* pData, size_t nSize) : m_sLeft(reinterpret_cast<const char*>(pData), nSize) {}

    uint8_t Byte()
    {
        const std::string_view s = Take(1);
        return s.empty() ? 0 : uint8_t(s[0]);
    }
    uint32_t Below(uint32_t nLimit) { return Byte() % nLimit; }
    uint32_t U32()
    {
        uint32_t n = 0;
        const std::string_view s = Take(4);
        std::memcpy(&n, s.data(), s.size());
        return n;
    }
    std::string_view Take(size_t n)
    {
        const std::string_view s = m_sLeft.substr(0, n);
        m_sLeft.remove_prefix(s.size());
        return s;
    }
    // Up to the next line feed, which goes too.
    std::string Line()
    {
        const std::string sLine(m_sLeft.substr(0, m_sLeft.find('\n')));
        Take(sLine.size() + 1);
        return sLine;
    }
    std::string_view Rest() { return Take(m_sLeft.size()); }
    bool IsEmpty() const { return m_sLeft.empty(); }

private:
    std::string_view m_sLeft;
};

// A file of a path without a disk.
class CMemoryFile
{
public:
    CMemoryFile() : m_nFile(memfd_create("fuzz", MFD_CLOEXEC))
    {
        Require(m_nFile >= 0, "no memory file");
        m_sPath = "/proc/self/fd/" + std::to_string(m_nFile);
    }
    explicit CMemoryFile(std::string_view sBytes) : CMemoryFile() { Write(sBytes); }
    ~CMemoryFile() { close(m_nFile); }
    CMemoryFile(const CMemoryFile&) = delete;
    CMemoryFile& operator=(const CMemoryFile&) = delete;

    const char* Path() const { return m_sPath.c_str(); }
    void Write(std::string_view sBytes)
    {
        const bool bDone = ftruncate(m_nFile, 0) == 0 &&
                           pwrite(m_nFile, sBytes.data(), sBytes.size(), 0) == ssize_t(sBytes.size());
        Require(bDone, "the memory file can't be written");
    }
    std::string Read() const
    {
        const off_t nSize = lseek(m_nFile, 0, SEEK_END);
        std::string sBytes(nSize > 0 ? size_t(nSize) : 0, '\0');
        Require(pread(m_nFile, sBytes.data(), sBytes.size(), 0) == ssize_t(sBytes.size()), "unreadable");
        return sBytes;
    }

private:
    int m_nFile;
    std::string m_sPath;
};
