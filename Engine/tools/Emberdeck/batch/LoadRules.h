#pragma once

#include <string>

#include "formats/LoadReport.h"

namespace CLI
{
class App;
}

// What a command makes of what the loader finds in its library.
struct CLoadRules
{
    bool m_bStrict = false;      // a finding is a failure, before anything is written
    bool m_bAllowDamaged = true; // goes on with a file that is cut or in conflict
    const char* m_pszAllow = ""; // the option that allows it
};

// Adds --strict.
void AddStrictOption(CLI::App& command, CLoadRules& rules);
// Adds the option that allows a file that isn't whole, such as "--repair", which is refused without it.
void AddAllowOption(CLI::App& command, CLoadRules& rules, const char* pszName, const std::string& sHelp);

// Tells on standard error what was found in a file, in the words of every command.
void TellFindings(const std::string& sFile, const CLoadReport& report);
// Whether the rules let the command go on. False: the reason has been told.
bool MayGoOn(const std::string& sFile, const CLoadReport& report, const CLoadRules& rules);
