#pragma once

#include <string>
#include <vector>

#include "shared/sourcecontrol/SourceControlProvider.h"

class IPrompts;

// Milliseconds that a run may take before it is given up.
enum class EPatience : int
{
    eLocal = 60 * 1000,       // works on the disk alone
    eServer = 15 * 60 * 1000, // moves files over a network
    eGlance = 10 * 1000,      // asks a server for something that isn't worth a long wait
};

// The client program of a version control system, run without a shell and with nothing that could ask
// for a password. Behind a wait sign; a run that lasts shows what it waits for, and the user can stop it.
// One that is given up is asked to end first, so that it takes its own locks off the work copy.
class CClientProgram
{
public:
    // The environment is changed as CProcessRequest has it. pPrompts may be null.
    CClientProgram(std::string sName, std::vector<std::string> environment, IPrompts* pPrompts);

    struct CRun
    {
        CSourceControlStatus m_Status; // a failure has a sentence to show, whatever the reason
        bool m_bStarted = false;
        int m_nExitCode = -1; // of a run that came to its end
        std::string m_sOutput;
    };
    // Succeeds when the program ended by itself with 0. pszWhat is shown to whoever waits, in a few words.
    CRun Run(const std::vector<std::string>& arguments, const char* pszWhat, EPatience ePatience) const;

    const std::string& Name() const { return m_sName; }

private:
    std::string m_sName;
    std::vector<std::string> m_Environment;
    IPrompts* m_pPrompts;
};
