#include "platform/Process.h"

std::vector<std::string> SplitCommandLine(const std::string& sLine)
{
    std::vector<std::string> arguments;
    std::string sArgument;
    bool bInside = false; // an argument has begun, maybe an empty one in quotes
    bool bQuoted = false;
    for (const char c : sLine)
    {
        if (c == '"')
        {
            bQuoted = !bQuoted;
            bInside = true;
        }
        else if (!bQuoted && (c == ' ' || (c >= '\t' && c <= '\r')))
        {
            if (bInside)
                arguments.push_back(std::move(sArgument));
            sArgument.clear();
            bInside = false;
        }
        else
        {
            sArgument += c;
            bInside = true;
        }
    }
    if (bInside)
        arguments.push_back(std::move(sArgument));
    return arguments;
}
