#pragma once

#include <functional>
#include <string>
#include <vector>

// Splits a command line at blanks; double quotes keep blanks together, and two of them alone are an
// empty argument. Nothing else is special: no shell, no escapes.
std::vector<std::string> SplitCommandLine(const std::string& sLine);

// Starts a program that goes on by itself: not waited for, no zombie stays. Its input is empty. It prints where we do,
// but not into a pipe, at whose other end somebody would wait for as long as it runs. Arguments do not hold the
// program's own name. The directory counts in the child only; empty: inherited. A program with a
// separator in its name is a path as it is seen from here, else it is looked for in PATH; NAME.exe
// that can't be run is tried as NAME. False when it couldn't be started.
bool StartProcess(const std::string& sProgram, const std::vector<std::string>& arguments,
                  const std::string& sDirectory);

// Runs a program to its end without a shell and gives what it printed, at most nMaxOutput bytes of
// each; more is read and dropped. Its input is empty. When the time limit passes (0 or less: none), it
// is ended with all that it started. The exit code is 128 and the signal's number when a signal ended
// it. When it wasn't started, m_sErrors says why.
struct CProcessResult
{
    bool m_bStarted = false;
    bool m_bTimedOut = false;
    bool m_bStopped = false; // by m_KeepGoing
    int m_nExitCode = -1;
    std::string m_sOutput;
    std::string m_sErrors;
};
CProcessResult RunProcess(const std::string& sProgram, const std::vector<std::string>& arguments,
                          const std::string& sDirectory, int nTimeoutMs, size_t nMaxOutput = 16 << 20);

// The same with more to say. Like every program run here it has no terminal, so that nothing that it
// starts can ask for a password there.
struct CProcessRequest
{
    std::string m_sProgram;
    std::vector<std::string> m_Arguments;
    std::string m_sDirectory;               // empty: inherited
    std::vector<std::string> m_Environment; // "NAME=VALUE" sets, "NAME" removes; the rest is inherited
    int m_nTimeoutMs = 0;                   // 0 or less: none
    // What is to be ended is asked to end first, and has this long to clean up behind itself.
    int m_nGraceMs = 0;
    size_t m_nMaxOutput = 16 << 20;
    std::function<bool()> m_KeepGoing; // asked some fifty times a second; false ends the program
};
CProcessResult RunProcess(const CProcessRequest& request);
