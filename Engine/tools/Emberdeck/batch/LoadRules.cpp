#include "batch/LoadRules.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "app/Advice.h"
#include "batch/Output.h"

void AddStrictOption(CLI::App& command, CLoadRules& rules)
{
    command.add_flag("--strict", rules.m_bStrict,
                     "Whatever the loader repairs or drops is a failure, before anything is written");
}

void AddAllowOption(CLI::App& command, CLoadRules& rules, const char* pszName, const std::string& sHelp)
{
    rules.m_bAllowDamaged = false;
    rules.m_pszAllow = pszName;
    command.add_flag(pszName, rules.m_bAllowDamaged, sHelp);
}

void TellFindings(const std::string& sFile, const CLoadReport& report)
{
    if (!report.Findings().empty())
        std::fprintf(stderr, "%s\n", ReadableText(report.Lines(sFile + ": ")).c_str());
}

bool MayGoOn(const std::string& sFile, const CLoadReport& report, const CLoadRules& rules)
{
    if (report.IsDamaged() && !rules.m_bAllowDamaged)
    {
        Fail(sFile + " isn't whole: " + DamageText(report) + ". Nothing was written; " + rules.m_pszAllow +
             " goes on all the same");
        return false;
    }
    if (rules.m_bStrict && !report.Findings().empty())
    {
        Fail(sFile + ": the loader found something in it, and --strict was given. Nothing was written");
        return false;
    }
    return true;
}
