#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What the names of files in the user's state directory are made of: those of different programs never clash, and
// those of one kind sort by time.

std::string HexDigits(uint64_t nValue, int nDigits);
// 128 bits as 32 digits: two texts never share it by chance. No guard against somebody who wants them to.
std::string HashOf(std::string_view sText);
// Nanoseconds since 1970, and 20 digits of such a time.
uint64_t NowNanoseconds();
std::string TimeDigits(uint64_t nTime);
std::string RandomMark(); // 8 digits
constexpr size_t c_nHashDigits = 32;
constexpr size_t c_nTimeDigits = 20;
constexpr size_t c_nMarkDigits = 8;

// The machine's one name of a file, so that it doesn't matter how it was written.
std::string OwnerOf(const std::string& sPath);
