#pragma once

#include <string>
#include <string_view>

#include "model/NameIndex.h"

// Two names that are one, as the program compares them, give the same text.
inline std::string FoldedName(std::string_view sName)
{
    std::string sFolded;
    sFolded.reserve(sName.size());
    for (const char c : sName)
        sFolded += static_cast<char>(FoldNameByte(c));
    return sFolded;
}
