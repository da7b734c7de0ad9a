#include "qsassert.h"

#include <cstdlib>
#include <cstring>
#include <execinfo.h>

// The assertion library: it fills in the message, asks the handler that the program registered, and has the
// report written to the log. It knows no window; who shows the question registers a handler.

namespace
{

constexpr size_t c_nMaxText = 4096;
constexpr size_t c_nMaxDetail = 4096;
constexpr int c_nMaxFrames = 32;

// The answer where nobody is there to ask.
int32_t TellStandardError(const CAssertReport& report, void*)
{
    std::fprintf(stderr, "Assertion Failure: %s\n  %s:%d: %s\n", report.m_pszExpression, report.m_pszFile,
                 int(report.m_nLine), report.m_pszFunction);
    if (*report.m_pszText)
        std::fprintf(stderr, "  %s\n", report.m_pszText);
    return ASSERT_RESULT_CONTINUE;
}

AssertHandler s_pfnHandler = &TellStandardError;
void* s_pHandlerUser = nullptr;

const char* Text(const char* psz)
{
    return psz ? psz : "";
}

// The calls that led to the assertion, one a line, without the library's own.
void DescribeCallers(char (&szDetail)[c_nMaxDetail])
{
    szDetail[0] = '\0';
    void* frames[c_nMaxFrames];
    const int nFrames = backtrace(frames, c_nMaxFrames);
    char** ppszNames = backtrace_symbols(frames, nFrames);
    if (!ppszNames)
        return;
    size_t nUsed = 0;
    for (int n = 2; n < nFrames; ++n)
    {
        const size_t nLength = std::strlen(ppszNames[n]);
        if (nUsed + nLength + 2 > c_nMaxDetail)
            break;
        std::memcpy(szDetail + nUsed, ppszNames[n], nLength);
        nUsed += nLength;
        szDetail[nUsed++] = '\n';
        szDetail[nUsed] = '\0';
    }
    std::free(ppszNames);
}

class CAssertWin32Mgr final : public IAssertWin32Mgr
{
public:
    void SetLogHandler(AssertLogCallback pfnHandler, uintptr_t) override { m_pfnLog = pfnHandler; }

    int32_t ReportAssert(const char* pszExpression, const char* pszFile, int32_t nLine,
                         const char* pszFunction, const char* pszMessage, va_list* pArgs) override
    {
        char szText[c_nMaxText] = "";
        if (pszMessage && pArgs && std::vsnprintf(szText, sizeof szText, pszMessage, *pArgs) < 0)
            szText[0] = '\0';

        const CAssertReport report{Text(pszExpression), Text(pszFile), nLine, Text(pszFunction), szText};
        const int32_t nResult = s_pfnHandler(report, s_pHandlerUser);
        if (m_pfnLog)
        {
            char szDetail[c_nMaxDetail];
            DescribeCallers(szDetail);
            m_pfnLog(report.m_pszExpression, report.m_pszFile, nLine, report.m_pszFunction, szText, szDetail,
                     nResult);
        }
        return nResult;
    }

private:
    AssertLogCallback m_pfnLog = nullptr;
};

CAssertWin32Mgr s_Manager;

} // namespace

extern "C" __attribute__((visibility("default"))) IAssertWin32Mgr* GetAssertWin32Mgr()
{
    return &s_Manager;
}

extern "C" __attribute__((visibility("default"))) void SetAssertReportHandler(AssertHandler pfnHandler,
                                                                              void* pUser)
{
    s_pfnHandler = pfnHandler ? pfnHandler : &TellStandardError;
    s_pHandlerUser = pUser;
}
