#pragma once

#include <string>
#include <string_view>

// A name as it may stand in a file: double quotes replaced by single ones, blanks at both ends off, cut
// to nMaxBytes at a whole UTF-8 character.
std::string CleanName(std::string_view sText, size_t nMaxBytes);
constexpr size_t c_nMaxEntryName = 255; // of groups and prefabs, as the entry fields limit them
