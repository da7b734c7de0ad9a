#include "qsassert.h"

#include "loadlibrary.h"

#include <atomic>
#include <cstdlib>

namespace
{

constexpr uint32_t c_nMaxFunctionName = 256;

char s_szLibraryPath[c_nMaxLibraryPath];
void* s_pLibrary = nullptr;
IAssertWin32Mgr* s_pManager = nullptr;
bool s_bTried = false;

// One report at a time: what fails inside the handler or the log would otherwise report itself without end.
std::atomic_flag s_Reporting;

class CReportScope
{
public:
    CReportScope() : m_bEntered(!s_Reporting.test_and_set()) {}
    ~CReportScope()
    {
        if (m_bEntered)
            s_Reporting.clear();
    }
    CReportScope(const CReportScope&) = delete;
    CReportScope& operator=(const CReportScope&) = delete;

    bool IsEntered() const { return m_bEntered; }

private:
    const bool m_bEntered;
};

int32_t Report(const char* pszExpression, const char* pszFile, int32_t nLine, const char* pszFunction,
               const char* pszMessage, va_list* pArgs)
{
    const CReportScope scope;
    if (!scope.IsEntered())
        return ASSERT_RESULT_CONTINUE;

    IAssertWin32Mgr* pManager = GetAssertMgr();
    if (!pManager)
        return ASSERT_RESULT_CONTINUE;
    return pManager->ReportAssert(pszExpression, pszFile, nLine, pszFunction, pszMessage, pArgs);
}

// True when the site shall trap.
bool CarryOut(int32_t nResult, unsigned char& bIgnore)
{
    if (nResult == ASSERT_RESULT_ABORT)
        std::abort();
    if (nResult == ASSERT_RESULT_IGNORE)
        bIgnore = 1;
    return nResult == ASSERT_RESULT_DEBUG;
}

// The library is there before main runs, and the log learns of every report from the first one on.
bool InstallLogHandler()
{
    IAssertWin32Mgr* pManager = GetAssertMgr();
    if (pManager)
        pManager->SetLogHandler(&WriteAssertRecord, 0);
    return std::atexit(&CloseAssertLog) == 0;
}

[[maybe_unused]] const bool s_bInstalled = InstallLogHandler();

} // namespace

IAssertWin32Mgr* GetAssertMgr()
{
    if (s_pManager)
        return IsLibraryLoaded(s_szLibraryPath) ? s_pManager : nullptr;
    if (s_bTried)
        return nullptr;
    s_bTried = true;

    s_pLibrary = LoadNamedLibrary("AssertWin32DLL.dll", s_szLibraryPath);
    if (!s_pLibrary)
        return nullptr;
    using GetManagerFn = IAssertWin32Mgr* (*)();
    if (const auto pfnGet =
            reinterpret_cast<GetManagerFn>(FindLibrarySymbol(s_pLibrary, "GetAssertWin32Mgr")))
        s_pManager = pfnGet();
    if (!s_pManager)
    {
        UnloadLibrary(s_pLibrary);
        s_pLibrary = nullptr;
    }
    return s_pManager;
}

bool SetAssertHandler(AssertHandler pfnHandler, void* pUser)
{
    if (!GetAssertMgr())
        return false;
    using SetHandlerFn = void (*)(AssertHandler, void*);
    const auto pfnSet =
        reinterpret_cast<SetHandlerFn>(FindLibrarySymbol(s_pLibrary, "SetAssertReportHandler"));
    if (!pfnSet)
        return false;
    pfnSet(pfnHandler, pUser);
    return true;
}

int32_t AssertFailed(const char* pszExpression, const char* pszFile, int32_t nLine, const char* pszFunction,
                     const char* pszMessage, ...)
{
    va_list args;
    va_start(args, pszMessage);
    const int32_t nResult = Report(pszExpression, pszFile, nLine, pszFunction, pszMessage, &args);
    va_end(args);
    return nResult;
}

bool ReportAssertSite(unsigned char& bIgnore, const char* pszExpression, const char* pszFile, int32_t nLine,
                      const char* pszSignature)
{
    char szFunction[c_nMaxFunctionName];
    CutFunctionName(pszSignature, szFunction, sizeof szFunction);
    return CarryOut(AssertFailed(pszExpression, pszFile, nLine, szFunction, ""), bIgnore);
}

bool ReportAssertSiteMessage(unsigned char& bIgnore, const char* pszExpression, const char* pszFile,
                             int32_t nLine, const char* pszSignature, const char* pszMessage, ...)
{
    char szFunction[c_nMaxFunctionName];
    CutFunctionName(pszSignature, szFunction, sizeof szFunction);
    va_list args;
    va_start(args, pszMessage);
    const int32_t nResult = Report(pszExpression, pszFile, nLine, szFunction, pszMessage, &args);
    va_end(args);
    return CarryOut(nResult, bIgnore);
}
