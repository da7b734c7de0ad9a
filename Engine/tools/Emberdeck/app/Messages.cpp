#include "app/Messages.h"

#include <string_view>

#include "model/MakeOrNull.h"
#include "qsstrutils.h"

std::string FillMessage(const CMessage& message, std::initializer_list<std::string> arguments)
{
    std::string_view sText = message.m_pszText;
    if (sText.find("%1!") != std::string_view::npos)
        return FormatNumbered(message.m_pszText, arguments);

    std::string sOut;
    const std::string* pNext = arguments.begin();
    for (size_t nPlace; (nPlace = sText.find("%s")) != std::string_view::npos;)
    {
        sOut += sText.substr(0, nPlace);
        if (pNext != arguments.end())
            sOut += *pNext++;
        sText.remove_prefix(nPlace + 2);
    }
    return sOut += sText;
}

EAnswer ShowMessage(IPrompts& prompts, const CMessage& message, std::initializer_list<std::string> arguments)
{
    return prompts.Ask(FillMessage(message, arguments), message.m_pszCaption, message.m_eButtons,
                       message.m_eIcon);
}

void ShowFailure(IPrompts& prompts, const CMessage& message, const char* pszFirst,
                 const char* pszSecond) noexcept
{
    const auto show = [&] {
        ShowMessage(prompts, message, {pszFirst ? pszFirst : "", pszSecond ? pszSecond : ""});
    };
    // Texts as short as these lie within the string itself.
    if (!TryAllocating(show))
        TryAllocating([&] { prompts.Ask("Out of memory.", "Error", EButtons::eOk, EIcon::eStop); });
}
