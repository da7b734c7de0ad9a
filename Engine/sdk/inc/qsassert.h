#pragma once

#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

// The one assertion facility of the program. A site tests a precondition; when it fails, the assertion
// library (loaded by name at start) is asked what to do, and writes a record to the log beside the
// executable. Execution may go on behind a failed assertion: an assertion states a precondition, it is no
// run-time check, and the code behind it still has to do the sound thing.
//
//   QS_ASSERT(nIndex < m_nCount);                                   expression text "nIndex < m_nCount"
//   QS_ASSERT_MSG(pDesc, "Error: Null property description used");   with a message, printf style
//   QS_ASSERT_TEXT(n > strlen(p), "n > QSStrLen(p)", "Truncated");   with an expression text of its own
//   QS_ASSERT_FORCED("Unknown kind %d", nKind);                      a place that must not be reached
//
// A passing assertion costs one test. A site that was answered with Ignore costs no call either.

// What the report of a failed assertion gives. Any other number counts as Continue.
enum EAssertResult : int32_t
{
    ASSERT_RESULT_DEBUG = 1100,    // break into the debugger
    ASSERT_RESULT_ABORT = 1101,    // end the process by abort
    ASSERT_RESULT_IGNORE = 1102,   // keep this site silent from now on
    ASSERT_RESULT_CONTINUE = 1103, // go on
};

// Writes one record to the assertion log. pszText and pszDetail are data and are never used as a format; a
// null text counts as empty. Called by the assertion library after the answer is known.
using AssertLogCallback = void (*)(const char* pszExpression, const char* pszFile, int32_t nLine,
                                   const char* pszFunction, const char* pszText, const char* pszDetail,
                                   int32_t nResult);

// The interface of the assertion library "AssertWin32DLL.dll", got from its export GetAssertWin32Mgr. The
// positions of SetLogHandler (5) and ReportAssert (7) are the contract; the operations between them belong to
// the library and are never called from here. The object is the library's own and is never deleted.
class IAssertWin32Mgr
{
public:
    virtual void Reserved0() {}
    virtual void Reserved1() {}
    virtual void Reserved2() {}
    virtual void Reserved3() {}
    virtual void Reserved4() {}
    virtual void SetLogHandler(AssertLogCallback pfnHandler, uintptr_t nUser) = 0;
    virtual void Reserved6() {}
    // pArgs points to the variable arguments of pszMessage, a printf format.
    virtual int32_t ReportAssert(const char* pszExpression, const char* pszFile, int32_t nLine,
                                 const char* pszFunction, const char* pszMessage, va_list* pArgs) = 0;

protected:
    ~IAssertWin32Mgr() = default;
};

// A failed assertion, as a registered handler sees it. All texts are non-null and live until the handler
// returns.
struct CAssertReport
{
    const char* m_pszExpression;
    const char* m_pszFile;
    int32_t m_nLine;
    const char* m_pszFunction;
    const char* m_pszText; // the message with its arguments filled in; empty for most sites
};

// Decides on a failed assertion, and gives an EAssertResult. An assertion that fails inside the handler isn't
// reported, it counts as Continue.
using AssertHandler = int32_t (*)(const CAssertReport& report, void* pUser);

// Registers the handler that the assertion library asks; null brings back the library's own, which writes to
// standard error and goes on. pUser is handed through. False when there is no assertion library, or one that
// takes no handler: a library that does exports SetAssertReportHandler with these two arguments.
bool SetAssertHandler(AssertHandler pfnHandler, void* pUser);

// The loaded assertion library's object, or null without a library. The library is looked for once.
IAssertWin32Mgr* GetAssertMgr();

// Reports a failed assertion and gives the answer, an EAssertResult; ASSERT_RESULT_CONTINUE without an
// assertion library, and while another report is under way. pszFunction is the class-qualified name.
// pszMessage is a printf format for the arguments behind it.
int32_t AssertFailed(const char* pszExpression, const char* pszFile, int32_t nLine, const char* pszFunction,
                     const char* pszMessage, ...);

// The log: NAME_Assert00.log beside the executable NAME. It is opened at the first record, once for each
// process. Null when it can't be opened, and after CloseAssertLog.
std::FILE* OpenAssertLog();
void WriteAssertHeader(std::FILE* pStream);
void WriteAssertRecord(const char* pszExpression, const char* pszFile, int32_t nLine, const char* pszFunction,
                       const char* pszText, const char* pszDetail, int32_t nResult);
void CloseAssertLog();

// Cuts a compiler's full function signature down to the name with its class, as in "CQSANode::GetElement":
// without result, arguments, template arguments and unnamed namespaces. A lambda gives the function around
// it. Writes at most nSize bytes with the NUL.
void CutFunctionName(const char* pszSignature, char* pszName, uint32_t nSize);

// What stands behind a failed test. They report, set the site's ignore flag, abort when told so, and give
// true when the site shall trap. Not for direct use.
bool ReportAssertSite(unsigned char& bIgnore, const char* pszExpression, const char* pszFile, int32_t nLine,
                      const char* pszSignature) __attribute__((cold, noinline));
bool ReportAssertSiteMessage(unsigned char& bIgnore, const char* pszExpression, const char* pszFile,
                             int32_t nLine, const char* pszSignature, const char* pszMessage, ...)
    __attribute__((cold, noinline, format(printf, 6, 7)));

// The trap stands at the site, so that the debugger stops there.
#if defined(__x86_64__) || defined(__i386__)
#define QS_DEBUG_TRAP() __asm__ volatile("int3")
#else
#define QS_DEBUG_TRAP() ((void)std::raise(SIGTRAP))
#endif

#define QS_ASSERT_REPORT(condition, report, ...)                                                             \
    do                                                                                                       \
    {                                                                                                        \
        static unsigned char s_bIgnoreSite = 0;                                                              \
        if (!(condition)) [[unlikely]]                                                                       \
        {                                                                                                    \
            if (s_bIgnoreSite == 0 && report(s_bIgnoreSite, __VA_ARGS__))                                    \
                QS_DEBUG_TRAP();                                                                             \
        }                                                                                                    \
    } while (0)

#define QS_ASSERT(expr)                                                                                      \
    QS_ASSERT_REPORT((expr), ReportAssertSite, #expr, __FILE__, __LINE__, __PRETTY_FUNCTION__)

#define QS_ASSERT_MSG(expr, ...)                                                                             \
    QS_ASSERT_REPORT((expr), ReportAssertSiteMessage, #expr, __FILE__, __LINE__, __PRETTY_FUNCTION__,        \
                     __VA_ARGS__)

#define QS_ASSERT_TEXT(expr, text, ...)                                                                      \
    QS_ASSERT_REPORT((expr), ReportAssertSiteMessage, text, __FILE__, __LINE__, __PRETTY_FUNCTION__,         \
                     __VA_ARGS__)

#define QS_ASSERT_FORCED(...)                                                                                \
    QS_ASSERT_REPORT(false, ReportAssertSiteMessage, " [Forced Assert]", __FILE__, __LINE__,                 \
                     __PRETTY_FUNCTION__, __VA_ARGS__)
