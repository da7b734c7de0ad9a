#pragma once

#include <string>
#include <string_view>

// Names without regard to case. Only the letters A to Z are folded, to lower case, and bytes count as
// unsigned, so that the result doesn't hang on a locale or on the encoding of a name.

constexpr char FoldChar(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// A copy with every byte folded: equal for names that differ in case alone, so it serves as a key of a map. May throw
// std::bad_alloc; the others need no memory.
std::string FoldName(std::string_view sName);

// Less than, equal to or greater than zero, by the folded bytes; a text comes before a longer one that begins
// with it.
int CompareFolded(std::string_view sLeft, std::string_view sRight);

bool EqualFolded(std::string_view sLeft, std::string_view sRight);
// True for an empty end.
bool EndsWithFolded(std::string_view sText, std::string_view sEnd);
