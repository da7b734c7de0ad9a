#pragma once

#include "qsassert.h"

#include <string>
#include <vector>

// Takes every failed assertion as long as it lives, and gives the same answer to each.
class CAssertCatcher
{
public:
    struct CCaught
    {
        std::string m_sExpression, m_sFile, m_sFunction, m_sText;
        int32_t m_nLine;
    };

    explicit CAssertCatcher(int32_t nAnswer = ASSERT_RESULT_CONTINUE) : m_nAnswer(nAnswer)
    {
        m_bActive = SetAssertHandler(
            [](const CAssertReport& report, void* pUser)
            {
                auto* pThis = static_cast<CAssertCatcher*>(pUser);
                pThis->m_Caught.push_back({report.m_pszExpression, report.m_pszFile, report.m_pszFunction,
                                           report.m_pszText, report.m_nLine});
                return pThis->m_nAnswer;
            },
            this);
    }
    ~CAssertCatcher() { SetAssertHandler(nullptr, nullptr); }
    CAssertCatcher(const CAssertCatcher&) = delete;
    CAssertCatcher& operator=(const CAssertCatcher&) = delete;

    bool IsActive() const { return m_bActive; } // false: the assertion library isn't beside the test program
    size_t GetCount() const { return m_Caught.size(); }
    const CCaught& GetLast() const { return m_Caught.at(m_Caught.size() - 1); }

    // "EXPRESSION|TEXT" of the last report; empties the list.
    std::string Take()
    {
        const std::string s = m_Caught.empty() ? "" : GetLast().m_sExpression + "|" + GetLast().m_sText;
        m_Caught.clear();
        return s;
    }

private:
    std::vector<CCaught> m_Caught;
    int32_t m_nAnswer;
    bool m_bActive;
};
