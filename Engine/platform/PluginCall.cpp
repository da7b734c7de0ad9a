#include "platform/PluginCall.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr int c_aSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr size_t c_nSignals = sizeof(c_aSignals) / sizeof(c_aSignals[0]);

// Plain memory: a signal handler reads it.
char s_szPlugin[512] = "";          // what is longer is cut; empty: none is called
const char* s_pszProgram = nullptr; // null: nobody is told
pid_t s_nProcess = 0;               // which calls it: one that it starts itself may end as it likes
struct sigaction s_aBefore[c_nSignals];

// Nothing but what a signal handler may call.
void Tell(const char* pszWhat)
{
    for (const char* pszText :
         {s_pszProgram, ": the plug-in ", static_cast<const char*>(s_szPlugin), pszWhat, "\n"})
    {
        [[maybe_unused]] const ssize_t nWritten = write(STDERR_FILENO, pszText, std::strlen(pszText));
    }
}

bool IsPluginCalled()
{
    return s_szPlugin[0] != '\0' && getpid() == s_nProcess;
}

void OnExit()
{
    if (IsPluginCalled())
        EndProgram(EXIT_FAILURE);
}

void OnSignal(int nSignal)
{
    Tell(" has crashed");
    for (size_t i = 0; i < c_nSignals; ++i)
        sigaction(c_aSignals[i], &s_aBefore[i], nullptr);
    raise(nSignal);
}

void WatchSignals(bool bWatch)
{
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_NODEFER | SA_ONSTACK;
    for (size_t i = 0; i < c_nSignals; ++i)
        sigaction(c_aSignals[i], bWatch ? &action : &s_aBefore[i], bWatch ? &s_aBefore[i] : nullptr);
}

} // namespace

CPluginCall::CPluginCall(const char* pszPlugin) : m_bOutermost(s_szPlugin[0] == '\0')
{
    if (!m_bOutermost)
        return;
    std::strncpy(s_szPlugin, pszPlugin && *pszPlugin ? pszPlugin : "?", sizeof(s_szPlugin) - 1);
    s_nProcess = getpid();
    if (s_pszProgram)
        WatchSignals(true);
    std::fflush(stdout);
    m_nOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (m_nOutput >= 0)
        dup2(STDERR_FILENO, STDOUT_FILENO);
}

CPluginCall::~CPluginCall()
{
    if (!m_bOutermost)
        return;
    if (m_nOutput >= 0)
    {
        std::fflush(stdout); // what the plug-in has left there
        dup2(m_nOutput, STDOUT_FILENO);
        close(m_nOutput);
    }
    if (s_pszProgram)
        WatchSignals(false);
    s_szPlugin[0] = '\0';
}

void TellOfPluginsThatEnd(const char* pszProgram)
{
    if (!s_pszProgram)
    {
        std::atexit(OnExit);
        std::at_quick_exit(OnExit);
    }
    s_pszProgram = pszProgram;
}

void EndProgram(int nStatus)
{
    if (s_pszProgram && IsPluginCalled())
    {
        Tell(" has ended the program while it was called");
        nStatus = EXIT_FAILURE;
    }
    for (;;)
        syscall(SYS_exit_group, nStatus);
}

void CloseOutputToPlugins()
{
    std::fflush(stdout);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}
