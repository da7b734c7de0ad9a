#pragma once

#include <string>

#include "platform/IPrompts.h"

// Answers the workflow's questions from the command line and shows its messages on standard error.
class CBatchPrompts : public IPrompts
{
public:
    CBatchPrompts(bool bCheckOut, bool bQuiet);
    ~CBatchPrompts() override;

    EAnswer Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons,
                EIcon eIcon) override;
    void Advise(const std::string& sText) override { m_sAdvice = sText; }
    bool ChooseFile(const CFileDialogRequest& request, std::string& sPath) override;
    bool EnterText(const CTextEntry& request, std::string& sText) override;
    bool EnterNumber(const CNumberEntry& request, int32_t& nValue) override;
    bool EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue) override;
    void BeginWait() override {}
    void EndWait() override;
    bool Progress(const std::string& sWhat, double fFraction) override;

    // Messages that told of a failure so far: a command that goes on after one still fails at its end.
    int GetNumFailures() const { return m_nFailures; }
    // What the last of them said, with the advice below it; empty when there was none.
    const std::string& GetLastFailure() const { return m_sLastFailure; }
    // Whether the answer given to the check-out question is told for each file.
    void TellCheckOut(bool bTell) { m_bTellCheckOut = bTell; }

private:
    void ClearProgress();

    bool m_bCheckOut;
    bool m_bTellCheckOut = false;
    bool m_bProgress;    // standard error is a terminal
    size_t m_nShown = 0; // columns of the progress line on the screen
    int m_nFailures = 0;
    std::string m_sLastFailure;
    std::string m_sAdvice;
};
