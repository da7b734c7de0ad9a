#include "batch/BatchPrompts.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace
{
// The system's texts end lines with CR LF or LF; a terminal wants the latter.
std::string Lines(const std::string& sText)
{
    std::string sOut;
    for (char c : sText)
        if (c != '\r')
            sOut += c;
    return sOut;
}
} // namespace

CBatchPrompts::CBatchPrompts(bool bCheckOut, bool bQuiet)
    : m_bCheckOut(bCheckOut),
      m_bProgress(!bQuiet && isatty(STDERR_FILENO))
{
}

CBatchPrompts::~CBatchPrompts()
{
    ClearProgress();
}

EAnswer CBatchPrompts::Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons,
                           EIcon eIcon)
{
    ClearProgress();
    if (eIcon == EIcon::eStop || eIcon == EIcon::eExclamation)
    {
        std::fprintf(stderr, "%s: %s\n", sCaption.c_str(), Lines(sText).c_str());
        if (eButtons == EButtons::eOk)
        {
            ++m_nFailures;
            m_sLastFailure = Lines(sText) + (m_sAdvice.empty() ? "" : "\n") + m_sAdvice;
        }
        if (!m_sAdvice.empty())
            std::fprintf(stderr, "%s\n", m_sAdvice.c_str());
    }
    m_sAdvice.clear();
    switch (eButtons)
    {
    case EButtons::eOk:
        return EAnswer::eOk;
    case EButtons::eOkCancel:
        return EAnswer::eCancel;
    default:
        break;
    }

    // The one question that a command line answers; every other is declined, which changes nothing.
    const bool bYes = m_bCheckOut && sCaption == "Checkout For Edit?";
    if (m_bTellCheckOut && sCaption == "Checkout For Edit?")
    {
        const size_t nFile = sText.rfind('\n');
        std::fprintf(stderr, "%s %s: %s\n", sCaption.c_str(),
                     nFile == std::string::npos ? "" : sText.c_str() + nFile + 1, bYes ? "Yes" : "No");
    }
    return bYes ? EAnswer::eYes : EAnswer::eNo;
}

bool CBatchPrompts::ChooseFile(const CFileDialogRequest&, std::string&)
{
    return false;
}
bool CBatchPrompts::EnterText(const CTextEntry&, std::string&)
{
    return false;
}
bool CBatchPrompts::EnterNumber(const CNumberEntry&, int32_t&)
{
    return false;
}
bool CBatchPrompts::EnterFloat(const std::string&, const std::string&, float&)
{
    return false;
}

void CBatchPrompts::EndWait()
{
    ClearProgress();
}

bool CBatchPrompts::Progress(const std::string& sWhat, double fFraction)
{
    if (!m_bProgress)
        return true;
    std::string sLine = sWhat;
    if (fFraction >= 0.0)
        sLine += " " + std::to_string(static_cast<int>(std::min(fFraction, 1.0) * 100.0)) + "%";
    sLine.resize(std::min<size_t>(sLine.size(), 78));
    std::string sPadded = sLine;
    if (sPadded.size() < m_nShown)
        sPadded.append(m_nShown - sPadded.size(), ' ');
    std::fprintf(stderr, "\r%s", sPadded.c_str());
    std::fflush(stderr);
    m_nShown = sLine.size();
    return true;
}

void CBatchPrompts::ClearProgress()
{
    if (m_nShown == 0)
        return;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_nShown), "");
    std::fflush(stderr);
    m_nShown = 0;
}
