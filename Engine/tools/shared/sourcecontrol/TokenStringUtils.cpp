#include "shared/sourcecontrol/TokenStringUtils.h"

#include <string_view>

#include "qsassert.h"

void TokenizeString(const char* szString, std::vector<std::string>& tokens, const char* szTokens)
{
    QS_ASSERT(szString);
    QS_ASSERT(szTokens);
    if (!szString || !szTokens || !*szString || !*szTokens)
        return;
    const std::string_view sText = szString;
    size_t nBegin = 0;
    for (;;)
    {
        const size_t nEnd = sText.find_first_of(szTokens, nBegin);
        tokens.emplace_back(sText.substr(nBegin, nEnd - nBegin));
        if (nEnd == std::string_view::npos)
            return;
        nBegin = nEnd + 1;
    }
}
