#include "shared/sourcecontrol/ClientProgram.h"

#include <algorithm>
#include <utility>

#include "platform/IPrompts.h"
#include "platform/Process.h"
#include "qsnumber.h"

namespace
{

constexpr int c_nGraceMs = 3000;
constexpr size_t c_nMaxDescription = 2000;

// English words that don't change with the user's language, but names of files in UTF-8. No program that a
// password could be typed into; what an agent or a store of passwords knows still works.
constexpr const char* c_apszEnvironment[] = {
    "LC_ALL=C.UTF-8",
    "LANGUAGE",
    "SSH_ASKPASS",
    "SSH_ASKPASS_REQUIRE=never",
};

// The words of a program without the advice that follows in some lines, and without what says nothing.
std::string Description(const std::string& sText)
{
    std::string sOut;
    size_t nBegin = 0;
    while (nBegin < sText.size())
    {
        const size_t nEnd = std::min(sText.find('\n', nBegin), sText.size());
        std::string sLine = sText.substr(nBegin, nEnd - nBegin);
        nBegin = nEnd + 1;
        while (!sLine.empty() && (sLine.back() == '\r' || sLine.back() == ' '))
            sLine.pop_back();
        for (const char* pszMark : {"fatal: ", "error: "})
        {
            if (sLine.starts_with(pszMark))
                sLine.erase(0, std::char_traits<char>::length(pszMark));
        }
        if (sLine.empty() || sLine.starts_with("hint: "))
            continue;
        if (sOut.size() + sLine.size() > c_nMaxDescription)
            break;
        sOut += (sOut.empty() ? "" : "\n") + sLine;
    }
    return sOut;
}

} // namespace

CClientProgram::CClientProgram(std::string sName, std::vector<std::string> environment, IPrompts* pPrompts)
    : m_sName(std::move(sName)),
      m_Environment(std::move(environment)),
      m_pPrompts(pPrompts)
{
    m_Environment.insert(m_Environment.end(), std::begin(c_apszEnvironment), std::end(c_apszEnvironment));
}

CClientProgram::CRun CClientProgram::Run(const std::vector<std::string>& arguments, const char* pszWhat,
                                         EPatience ePatience) const
{
    CProcessRequest request;
    request.m_sProgram = m_sName;
    request.m_Arguments = arguments;
    request.m_Environment = m_Environment;
    request.m_nTimeoutMs = static_cast<int>(ePatience);
    request.m_nGraceMs = c_nGraceMs;
    if (m_pPrompts)
        request.m_KeepGoing = [this, pszWhat] { return m_pPrompts->Progress(pszWhat, -1.0); };
    CProcessResult result;
    {
        const CWaitScope wait(m_pPrompts);
        result = RunProcess(request);
    }

    CRun run;
    run.m_bStarted = result.m_bStarted;
    run.m_sOutput = std::move(result.m_sOutput);
    if (!result.m_bStarted)
        run.m_Status = {c_nSourceControlFailed, "The program " + m_sName + " can't be started (" +
                                                    result.m_sErrors +
                                                    "). It has to be installed, in a folder of PATH."};
    else if (result.m_bStopped)
        run.m_Status = {c_nSourceControlCancelled, std::string(pszWhat) + ": stopped."};
    else if (result.m_bTimedOut)
        run.m_Status = {c_nSourceControlFailed, std::string(pszWhat) + ": " + m_sName + " had no answer in " +
                                                    QSFormat("%d", request.m_nTimeoutMs / 1000) +
                                                    " seconds and was stopped."};
    else
        run.m_nExitCode = result.m_nExitCode;
    if (run.m_Status.Failed() || run.m_nExitCode == 0)
        return run;
    std::string sText = Description(result.m_sErrors);
    if (sText.empty())
        sText = Description(run.m_sOutput);
    if (sText.empty())
        sText =
            std::string(pszWhat) + ": " + m_sName + QSFormat(" failed with exit status %d.", run.m_nExitCode);
    run.m_Status = {c_nSourceControlFailed, sText};
    return run;
}
