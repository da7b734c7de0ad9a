#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "platform/IPrompts.h"

// Answers from a list, in order. A question that isn't expected, or another than the one that is next, fails
// the test and is answered by Cancel or No; so does a question that never came, at the end.
//
//     CScriptedPrompts prompts;
//     prompts.onAsk("out of date", EAnswer::eYes).onFile("/tmp/a.Fx00c").onText("Plume").onNumber(500);
class CScriptedPrompts : public IPrompts
{
public:
    CScriptedPrompts() = default;
    ~CScriptedPrompts() override
    {
        EXPECT_EQ(0, m_nWaitDepth) << "a wait sign is still up";
        for (const CStep& step : m_Script)
            ADD_FAILURE() << "never asked: " << c_Kinds[int(step.m_eKind)] << " " << step.m_sExpected;
    }

    // sPart stands somewhere in the message's text.
    CScriptedPrompts& onAsk(const std::string& sPart, EAnswer eAnswer = EAnswer::eOk)
    {
        CStep step{EKind::eAsk, sPart};
        step.m_eAnswer = eAnswer;
        return Add(step);
    }
    // The answers of the dialogs; without one they are cancelled. sPart stands in caption or label; for a
    // file dialog in its suggested name.
    CScriptedPrompts& onFile(std::optional<std::string> sPath, const std::string& sPart = "")
    {
        CStep step{EKind::eFile, sPart};
        step.m_sText = std::move(sPath);
        return Add(step);
    }
    CScriptedPrompts& onText(std::optional<std::string> sText, const std::string& sPart = "")
    {
        CStep step{EKind::eText, sPart};
        step.m_sText = std::move(sText);
        return Add(step);
    }
    CScriptedPrompts& onNumber(std::optional<double> fValue, const std::string& sPart = "")
    {
        CStep step{EKind::eNumber, sPart};
        step.m_fValue = fValue;
        return Add(step);
    }
    CScriptedPrompts& onFloat(std::optional<double> fValue, const std::string& sPart = "")
    {
        CStep step{EKind::eFloat, sPart};
        step.m_fValue = fValue;
        return Add(step);
    }

    EAnswer Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons,
                EIcon eIcon) override
    {
        m_Asked.push_back({sText, sCaption, eButtons, eIcon});
        const CStep step = Next(EKind::eAsk, sText);
        if (step.m_bValid)
            return step.m_eAnswer;
        return eButtons == EButtons::eOk      ? EAnswer::eOk
               : eButtons == EButtons::eYesNo ? EAnswer::eNo
                                              : EAnswer::eCancel;
    }
    void Advise(const std::string& sText) override { m_Advice.push_back(sText); }
    bool ChooseFile(const CFileDialogRequest& request, std::string& sPath) override
    {
        m_Files.push_back(request);
        return Give(Next(EKind::eFile, request.m_sInitialName).m_sText, sPath);
    }
    bool EnterText(const CTextEntry& request, std::string& sText) override
    {
        m_Offered.push_back(sText);
        return Give(Next(EKind::eText, request.m_sCaption + "\n" + request.m_sLabel).m_sText, sText);
    }
    bool EnterNumber(const CNumberEntry& request, int32_t& nValue) override
    {
        m_Numbers.push_back(request);
        m_OfferedNumbers.push_back(nValue);
        return Give(Next(EKind::eNumber, request.m_sCaption + "\n" + request.m_sLabel).m_fValue, nValue);
    }
    bool EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue) override
    {
        return Give(Next(EKind::eFloat, sCaption + "\n" + sLabel).m_fValue, fValue);
    }
    void BeginWait() override
    {
        ++m_nWaitDepth;
        ++m_nWaits;
    }
    void EndWait() override { --m_nWaitDepth; }

    struct CAsked
    {
        std::string m_sText;
        std::string m_sCaption;
        EButtons m_eButtons;
        EIcon m_eIcon;
    };
    std::vector<CAsked> m_Asked; // what came, expected or not
    std::vector<std::string> m_Advice;
    std::vector<CFileDialogRequest> m_Files;
    std::vector<std::string> m_Offered; // first texts of text entries
    std::vector<CNumberEntry> m_Numbers;
    std::vector<int32_t> m_OfferedNumbers; // first values of number entries
    int m_nWaits = 0;
    int m_nWaitDepth = 0;

private:
    enum class EKind
    {
        eAsk,
        eFile,
        eText,
        eNumber,
        eFloat
    };
    static constexpr const char* c_Kinds[] = {"message", "file dialog", "text entry", "number entry",
                                              "float entry"};
    struct CStep
    {
        EKind m_eKind = EKind::eAsk;
        std::string m_sExpected;
        EAnswer m_eAnswer = EAnswer::eCancel;
        std::optional<std::string> m_sText;
        std::optional<double> m_fValue;
        bool m_bValid = true;
    };

    CScriptedPrompts& Add(const CStep& step)
    {
        m_Script.push_back(step);
        return *this;
    }
    CStep Next(EKind eKind, const std::string& sText)
    {
        CStep none;
        none.m_bValid = false;
        if (m_Script.empty() || m_Script.front().m_eKind != eKind ||
            sText.find(m_Script.front().m_sExpected) == std::string::npos)
        {
            ADD_FAILURE() << "unexpected " << c_Kinds[int(eKind)] << ": " << sText;
            return none;
        }
        CStep step = m_Script.front();
        m_Script.pop_front();
        return step;
    }
    template <class T, class TOut>
    static bool Give(const std::optional<T>& answer, TOut& out)
    {
        if (!answer)
            return false;
        out = static_cast<TOut>(*answer);
        return true;
    }

    std::deque<CStep> m_Script;
};
