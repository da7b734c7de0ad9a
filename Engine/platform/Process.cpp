#include "platform/Process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "platform/FileHandle.h"
#include "platform/NameFold.h"
#include "platform/Paths.h"

namespace
{

using CClock = std::chrono::steady_clock;

// Away from the numbers of standard input and output, which the child puts its own files on.
CFileHandle AboveStandard(int nFile)
{
    CFileHandle file(nFile);
    if (nFile < 0 || nFile > 2)
        return file;
    return CFileHandle(fcntl(nFile, F_DUPFD_CLOEXEC, 3));
}

struct CPipe
{
    CFileHandle m_Read;
    CFileHandle m_Write;
    bool Open()
    {
        int files[2];
        if (pipe2(files, O_CLOEXEC) != 0)
            return false;
        m_Read = AboveStandard(files[0]);
        m_Write = AboveStandard(files[1]);
        return m_Read.IsOpen() && m_Write.IsOpen();
    }
};

bool IsProgram(const std::string& sPath)
{
    struct stat info;
    return stat(sPath.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(sPath.c_str(), X_OK) == 0;
}

std::string FindInPath(const std::string& sName)
{
    const char* pszPath = std::getenv("PATH");
    std::string sRest = pszPath ? pszPath : "/usr/local/bin:/usr/bin:/bin";
    while (!sRest.empty())
    {
        const size_t nColon = std::min(sRest.find(':'), sRest.size());
        const std::string sCandidate = (nColon == 0 ? "." : sRest.substr(0, nColon)) + '/' + sName;
        if (IsProgram(sCandidate))
            return sCandidate;
        sRest.erase(0, nColon + 1);
    }
    return std::string();
}

// What to execute for a program's name; a path becomes absolute, since the child changes directory
// first. Empty when there is no such thing.
std::string ProgramPath(const std::string& sProgram)
{
    if (IsForeignPath(sProgram) || sProgram.empty())
        return std::string();
    std::string sNative =
        sProgram.find_first_of("\\/") == std::string::npos ? FindInPath(sProgram) : NativePath(sProgram);
    if (sNative.empty() || sNative[0] == '/')
        return sNative;
    return GetCurrentDirectoryPath() + '/' + sNative;
}

// This program's own environment with changes: "NAME=VALUE" sets, "NAME" removes.
std::vector<std::string> MakeEnvironment(const std::vector<std::string>& changes)
{
    std::vector<std::string> variables;
    for (char** ppVariable = environ; ppVariable && *ppVariable; ++ppVariable)
    {
        const std::string_view sVariable = *ppVariable;
        const std::string_view sName = sVariable.substr(0, sVariable.find('='));
        const bool bChanged = std::any_of(changes.begin(), changes.end(),
                                          [sName](std::string_view sChange)
                                          { return sChange.substr(0, sChange.find('=')) == sName; });
        if (!bChanged)
            variables.emplace_back(sVariable);
    }
    std::copy_if(changes.begin(), changes.end(), std::back_inserter(variables),
                 [](const std::string& sChange) { return sChange.find('=') != std::string::npos; });
    return variables;
}

// Everything that the child needs, made before the fork: between fork and exec nothing may allocate,
// since another thread of the parent may have held the heap's lock.
class CChildPlan
{
public:
    CChildPlan(std::vector<std::string> programs, const std::vector<std::string>& arguments,
               const std::string& sDirectory, const std::vector<std::string>& environment = {})
        : m_Programs(std::move(programs)),
          m_Arguments(arguments),
          m_Environment(MakeEnvironment(environment)),
          m_sDirectory(NativePath(sDirectory)),
          m_bDirectory(!sDirectory.empty())
    {
        for (std::string& sVariable : m_Environment)
            m_Variables.push_back(sVariable.data());
        m_Variables.push_back(nullptr);
        m_Texts.push_back(nullptr); // the program's own name
        for (std::string& sArgument : m_Arguments)
            m_Texts.push_back(sArgument.data());
        m_Texts.push_back(nullptr);
    }
    CChildPlan(const CChildPlan&) = delete;
    CChildPlan& operator=(const CChildPlan&) = delete;

    // In the child; comes back only with the number of the error.
    int Execute()
    {
        std::signal(SIGPIPE, SIG_DFL);
        std::signal(SIGXFSZ, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        if (m_bDirectory && chdir(m_sDirectory.c_str()) != 0)
            return errno;
        // What other code of this program has open is none of the child's business.
        close_range(3, ~0u, CLOSE_RANGE_CLOEXEC);
        int nError = ENOENT;
        for (std::string& sProgram : m_Programs)
        {
            m_Texts[0] = sProgram.data();
            execve(sProgram.c_str(), m_Texts.data(), m_Variables.data());
            nError = errno;
        }
        return nError;
    }

private:
    std::vector<std::string> m_Programs;
    std::vector<std::string> m_Arguments;
    std::vector<std::string> m_Environment;
    std::vector<char*> m_Texts;
    std::vector<char*> m_Variables;
    std::string m_sDirectory;
    bool m_bDirectory;
};

[[noreturn]] void TellAndExit(int nPipe, int nError)
{
    // If even this fails, the parent finds an ended child, which is all that could be said.
    [[maybe_unused]] const ssize_t nWritten = write(nPipe, &nError, sizeof(nError));
    _exit(127);
}

// 0 when the pipe closed with a successful exec, else the error.
int ReadChildError(const CPipe& status)
{
    int nError = 0;
    ssize_t nRead;
    do
        nRead = read(status.m_Read.Get(), &nError, sizeof(nError));
    while (nRead < 0 && errno == EINTR);
    return nRead == static_cast<ssize_t>(sizeof(nError)) ? nError : 0;
}

int WaitFor(pid_t nChild)
{
    int nStatus = -1;
    while (waitpid(nChild, &nStatus, 0) < 0)
    {
        if (errno != EINTR)
            return -1;
    }
    return nStatus;
}

int ExitCode(int nStatus)
{
    if (WIFEXITED(nStatus))
        return WEXITSTATUS(nStatus);
    return WIFSIGNALED(nStatus) ? 128 + WTERMSIG(nStatus) : -1;
}

// Takes what is there; closes the pipe at its end.
void Drain(CPipe& pipe, std::string& sText, size_t nMax)
{
    char buffer[16384];
    while (pipe.m_Read.IsOpen())
    {
        const ssize_t nRead = read(pipe.m_Read.Get(), buffer, sizeof(buffer));
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead < 0 && errno == EAGAIN)
            return;
        if (nRead <= 0)
            pipe.m_Read.Close();
        else
            sText.append(buffer, std::min(static_cast<size_t>(nRead), nMax - std::min(nMax, sText.size())));
        if (nRead < static_cast<ssize_t>(sizeof(buffer)))
            return;
    }
}

// Milliseconds to wait at once: short, because a program may end while something that it started
// still holds its pipes.
int WaitSlice(CClock::time_point end, bool bLimited, int nSlice)
{
    if (!bLimited)
        return nSlice;
    const auto nLeft = std::chrono::duration_cast<std::chrono::milliseconds>(end - CClock::now()).count();
    return static_cast<int>(std::clamp<long long>(nLeft + 1, 0, nSlice));
}

// A running child and what it prints.
class CChildWatch
{
public:
    CChildWatch(pid_t nChild, CPipe& output, CPipe& errors, size_t nMax, CProcessResult& result)
        : m_nChild(nChild),
          m_Output(output),
          m_Errors(errors),
          m_nMax(nMax),
          m_Result(result)
    {
    }

    // Until the child has ended or must end.
    void Run(const CProcessRequest& request)
    {
        const bool bLimited = request.m_nTimeoutMs > 0;
        const CClock::time_point end =
            CClock::now() + std::chrono::milliseconds(std::max(request.m_nTimeoutMs, 0));
        for (int nSlice = 1; !WaitABit(WaitSlice(end, bLimited, nSlice)); nSlice = std::min(nSlice * 2, 20))
        {
            m_Result.m_bTimedOut = bLimited && CClock::now() >= end;
            m_Result.m_bStopped = !m_Result.m_bTimedOut && request.m_KeepGoing && !request.m_KeepGoing();
            if (!m_Result.m_bTimedOut && !m_Result.m_bStopped)
                continue;
            End(request.m_nGraceMs);
            break;
        }
        m_Result.m_nExitCode = ExitCode(WaitFor(m_nChild));
    }

private:
    // Takes what is printed meanwhile. Whether the child has ended; it is still to be waited for then, so
    // that its number stays its own.
    bool WaitABit(int nMilliseconds)
    {
        std::array<pollfd, 2> files{pollfd{m_Output.m_Read.Get(), POLLIN, 0},
                                    pollfd{m_Errors.m_Read.Get(), POLLIN, 0}};
        poll(files.data(), files.size(), nMilliseconds); // skips negative numbers
        siginfo_t info;
        info.si_pid = 0;
        const int nError = waitid(P_PID, static_cast<id_t>(m_nChild), &info, WEXITED | WNOHANG | WNOWAIT);
        const bool bEnded = nError == 0 ? info.si_pid == m_nChild : errno == ECHILD;
        Drain(m_Output, m_Result.m_sOutput, m_nMax);
        Drain(m_Errors, m_Result.m_sErrors, m_nMax);
        return bEnded;
    }

    void End(int nGraceMs)
    {
        if (nGraceMs > 0)
        {
            const CClock::time_point end = CClock::now() + std::chrono::milliseconds(nGraceMs);
            kill(-m_nChild, SIGTERM);
            while (!WaitABit(WaitSlice(end, true, 20)) && CClock::now() < end)
            {
            }
        }
        kill(-m_nChild, SIGKILL);
    }

    pid_t m_nChild;
    CPipe& m_Output;
    CPipe& m_Errors;
    size_t m_nMax;
    CProcessResult& m_Result;
};

[[noreturn]] void RunChild(CChildPlan& plan, int nInput, CPipe& output, CPipe& errors, CPipe& status)
{
    setsid();
    if (dup2(nInput, 0) < 0 || dup2(output.m_Write.Get(), 1) < 0 || dup2(errors.m_Write.Get(), 2) < 0)
        TellAndExit(status.m_Write.Get(), errno);
    TellAndExit(status.m_Write.Get(), plan.Execute());
}

// In a child that outlives us.
void LetGoOfPipes(int nNull)
{
    dup2(nNull, STDIN_FILENO);
    for (const int nOutput : {STDOUT_FILENO, STDERR_FILENO})
    {
        struct stat info;
        if (fstat(nOutput, &info) != 0 || S_ISFIFO(info.st_mode) || S_ISSOCK(info.st_mode))
            dup2(nNull, nOutput);
    }
}

} // namespace

bool StartProcess(const std::string& sProgram, const std::vector<std::string>& arguments,
                  const std::string& sDirectory)
{
    std::vector<std::string> programs;
    constexpr std::string_view c_sEnd = ".exe";
    programs.push_back(ProgramPath(sProgram));
    if (EndsWithFolded(sProgram, c_sEnd))
        programs.push_back(ProgramPath(sProgram.substr(0, sProgram.size() - c_sEnd.size())));
    std::erase(programs, std::string());
    CPipe status;
    const CFileHandle null = AboveStandard(open("/dev/null", O_RDWR | O_CLOEXEC));
    if (programs.empty() || !null.IsOpen() || !status.Open())
        return false;
    CChildPlan plan(std::move(programs), arguments, sDirectory);
    const pid_t nChild = fork();
    if (nChild < 0)
        return false;
    if (nChild == 0)
    {
        // The grandchild has no parent to wait for it but the system's own, so it leaves no zombie.
        setsid();
        const pid_t nGrandchild = fork();
        if (nGrandchild > 0)
            _exit(0);
        if (nGrandchild == 0)
            LetGoOfPipes(null.Get());
        TellAndExit(status.m_Write.Get(), nGrandchild == 0 ? plan.Execute() : errno);
    }
    status.m_Write.Close();
    WaitFor(nChild);
    return ReadChildError(status) == 0;
}

CProcessResult RunProcess(const std::string& sProgram, const std::vector<std::string>& arguments,
                          const std::string& sDirectory, int nTimeoutMs, size_t nMaxOutput)
{
    CProcessRequest request;
    request.m_sProgram = sProgram;
    request.m_Arguments = arguments;
    request.m_sDirectory = sDirectory;
    request.m_nTimeoutMs = nTimeoutMs;
    request.m_nMaxOutput = nMaxOutput;
    return RunProcess(request);
}

CProcessResult RunProcess(const CProcessRequest& request)
{
    CProcessResult result;
    const std::string sPath = ProgramPath(request.m_sProgram);
    CPipe status, output, errors;
    CFileHandle input = AboveStandard(open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (sPath.empty() || !input.IsOpen() || !status.Open() || !output.Open() || !errors.Open())
    {
        result.m_sErrors = request.m_sProgram + ": " + std::strerror(sPath.empty() ? ENOENT : errno);
        return result;
    }
    CChildPlan plan({sPath}, request.m_Arguments, request.m_sDirectory, request.m_Environment);
    const pid_t nChild = fork();
    if (nChild == 0)
        RunChild(plan, input.Get(), output, errors, status);
    const int nForkError = errno;
    status.m_Write.Close();
    output.m_Write.Close();
    errors.m_Write.Close();
    const int nError = nChild < 0 ? nForkError : ReadChildError(status);
    if (nError != 0)
    {
        if (nChild > 0)
            WaitFor(nChild);
        result.m_sErrors = request.m_sProgram + ": " + std::strerror(nError);
        return result;
    }
    result.m_bStarted = true;
    fcntl(output.m_Read.Get(), F_SETFL, O_NONBLOCK);
    fcntl(errors.m_Read.Get(), F_SETFL, O_NONBLOCK);
    CChildWatch(nChild, output, errors, request.m_nMaxOutput, result).Run(request);
    return result;
}
