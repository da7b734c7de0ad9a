#include "qsassert.h"

#include "loadlibrary.h"
#include "qsstrutils.h"
#include "qsversion.h"

#include <cstring>
#include <ctime>
#include <sys/stat.h>

namespace
{

constexpr uint32_t c_nMaxLogName = 512;
constexpr int c_nHeaderWidth = 75;

std::FILE* s_pLog = nullptr;
bool s_bLogTried = false;

const char* Text(const char* psz)
{
    return psz ? psz : "";
}

struct CClock
{
    char m_szTime[16]; // HH:MM:SS
    char m_szDate[16]; // MM/DD/YY

    CClock()
    {
        const std::time_t nNow = std::time(nullptr);
        std::tm now{};
        localtime_r(&nNow, &now);
        QSSNPrintF(m_szTime, sizeof m_szTime, "%02d:%02d:%02d", now.tm_hour, now.tm_min, now.tm_sec);
        QSSNPrintF(m_szDate, sizeof m_szDate, "%02d/%02d/%02d", now.tm_mon + 1, now.tm_mday,
                   now.tm_year % 100);
    }
};

// The mode alone counts: an access test would let the super-user pass.
bool IsReadOnly(const char* pszPath)
{
    struct stat status;
    return stat(pszPath, &status) == 0 && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

// The log's name with this number, or false when it doesn't fit: a cut name would be another file.
bool MakeLogName(const char* pszBase, int nNumber, char* pszName)
{
    const int32_t nLength = QSSNPrintF(pszName, c_nMaxLogName, "%s_Assert%.2d", pszBase, nNumber);
    if (nLength < 0 || uint32_t(nLength) + sizeof ".log" > c_nMaxLogName)
        return false;
    const int32_t nExtension = FindExtension(pszName);
    QSStrCpy(pszName + (nExtension < 0 ? nLength : nExtension), nExtension < 0 ? ".log" : "log",
             sizeof ".log");
    return true;
}

// The first name that is missing or may be written. An executable with a further dot in its name gives the
// same log for each number, so that a read-only one ends the search.
bool FindLogName(char* pszName)
{
    char szBase[c_nMaxLogName];
    if (!GetExecutablePath(szBase, sizeof szBase))
        return false;
    const int32_t nExtension = FindExtension(szBase);
    if (nExtension > 0)
        szBase[nExtension - 1] = '\0';

    char szLast[c_nMaxLogName] = "";
    for (int n = 0;; ++n)
    {
        if (!MakeLogName(szBase, n, pszName) || std::strcmp(pszName, szLast) == 0)
            return false;
        if (!IsReadOnly(pszName))
            return true;
        QSStrCpy(szLast, pszName, sizeof szLast);
    }
}

void WriteCentred(std::FILE* pStream, const char* pszText)
{
    const size_t nLength = std::strlen(pszText);
    const int nBlanks = nLength < size_t(c_nHeaderWidth) ? (c_nHeaderWidth - int(nLength)) / 2 : 0;
    char szLine[96];
    QSSNPrintF(szLine, sizeof szLine, "%*s%s", nBlanks, "", pszText);
    std::fputs(szLine, pStream);
}

const char* ResultWord(int32_t nResult)
{
    switch (nResult)
    {
    case ASSERT_RESULT_DEBUG:
        return "Debug";
    case ASSERT_RESULT_ABORT:
        return "Abort";
    case ASSERT_RESULT_IGNORE:
        return "Ignore";
    default:
        return "Continue";
    }
}

} // namespace

std::FILE* OpenAssertLog()
{
    if (s_pLog || s_bLogTried)
        return s_pLog;
    s_bLogTried = true;

    char szName[c_nMaxLogName];
    if (!FindLogName(szName))
        return nullptr;
    s_pLog = std::fopen(szName, "w");
    if (!s_pLog)
        return nullptr;
    std::setvbuf(s_pLog, nullptr, _IONBF, 0); // a crash loses nothing
    WriteAssertHeader(s_pLog);
    return s_pLog;
}

void WriteAssertHeader(std::FILE* pStream)
{
    if (!pStream)
        return;
    const CClock clock;
    std::fputs("\n  ----------------------------------------------------------------------\n", pStream);
    WriteCentred(pStream, "Assert Log File");
    std::fputs("\n", pStream);
    WriteCentred(pStream, GetProgramVersionText(c_szVersionProduct).c_str());
    std::fputs("\n", pStream);
    WriteCentred(pStream, GetProgramVersionText(c_szVersionVersion).c_str());
    std::fputs("\n", pStream);
    std::fputs("  ----------------------------------------------------------------------\n\n", pStream);
    WriteCentred(pStream, GetProgramVersionText(c_szVersionLegal).c_str());
    std::fputs("\n\n\n", pStream);
    std::fputs("This file contains a log of asserts that were fired during the execution of\n"
               "the above application.\n\n",
               pStream);
    std::fprintf(pStream, "Created at %s on %s \n\n---\n\n", clock.m_szTime, clock.m_szDate);
}

void WriteAssertRecord(const char* pszExpression, const char* pszFile, int32_t nLine, const char* pszFunction,
                       const char* pszText, const char* pszDetail, int32_t nResult)
{
    std::FILE* pStream = OpenAssertLog();
    if (!pStream)
        return;
    const CClock clock;
    std::fprintf(pStream, "Assertion Failure: %s\n\n", Text(pszExpression));
    std::fprintf(pStream, "%s\n\n", Text(pszText));
    std::fprintf(pStream, "Time:\t\t%s\n", clock.m_szTime);
    std::fprintf(pStream, "File:\t\t%s\n", Text(pszFile));
    std::fprintf(pStream, "Line:\t\t%d\n", int(nLine));
    std::fprintf(pStream, "Function:\t%s\n", Text(pszFunction));
    std::fprintf(pStream, "Result:\t\t%s\n\n", ResultWord(nResult));
    std::fputs(Text(pszDetail), pStream);
    std::fputs("\n---\n\n", pStream);
}

void CloseAssertLog()
{
    if (!s_pLog)
        return;
    std::fprintf(s_pLog, "Closed at %s\n", CClock().m_szTime);
    std::fclose(s_pLog);
    s_pLog = nullptr; // and no new one: the log was tried
}
