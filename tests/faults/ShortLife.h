#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs a program with one environment variable alone, and kills it after that time; 0: lets it end. What it prints goes
// to the file, if one is named. Its status, as wait gives it.
inline int RunForAWhile(std::vector<std::string> arguments, const std::string& sVariable,
                        std::chrono::microseconds life, const std::string& sOutput = {})
{
    std::vector<char*> argv;
    for (std::string& sArgument : arguments)
        argv.push_back(sArgument.data());
    argv.push_back(nullptr);
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        char* const envp[] = {const_cast<char*>(sVariable.c_str()), nullptr};
        if (!sOutput.empty())
            dup2(open(sOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        execve(argv[0], argv.data(), envp);
        _exit(127);
    }
    if (life.count() != 0)
    {
        usleep(static_cast<useconds_t>(life.count()));
        kill(nChild, SIGKILL);
    }
    int nStatus = 0;
    EXPECT_EQ(nChild, waitpid(nChild, &nStatus, 0));
    return nStatus;
}
