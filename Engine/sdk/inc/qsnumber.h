#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Numbers as text, the same under every locale. All functions take a null text as empty.

// Skips blanks (the six of C), takes one sign, then decimal digits up to the first other byte; what follows
// is ignored. No digit gives 0. The value wraps at 32 bits, so that ids of 32 bits can be written either way.
int32_t QSTextToInt(const char* pszText);
// The same for what somebody types: beyond 32 bits the nearest end.
int32_t QSTextToNearestInt(const char* pszText);

// Skips blanks, takes one sign, digits with a decimal point, and an exponent; what follows is ignored, no
// number gives 0. Correctly rounded. Decimal forms only: inf, nan and hexadecimal forms are no numbers. Too
// large gives infinity, too small 0.
double QSTextToDouble(const char* pszText);

// As above, to double first and then to float, as values in files are read. Beyond a float its largest number
// of that sign: never infinite.
float QSTextToFloat(const char* pszText);
// A number as a finite float: the nearest one, 0 for what is no number.
float QSNearestFloat(double fValue);

// The whole text, blanks around it aside, must be a number: digits with a sign or none, or, for the second, a
// decimal number of the forms above that a float can hold. Else false, and the value stays.
bool QSParseInt(std::string_view sText, int64_t& nValue);
bool QSParseFloat(std::string_view sText, float& fValue);

// Writes value with so many decimals (limited to 0 to 64), correctly rounded, ties to even: what printf makes
// of
// %.*f in the C locale, with inf, -inf, nan and -nan. Cut at nSize - 1 bytes, terminated. Gives the number of
// bytes stored without the NUL. 384 bytes hold every double.
size_t QSFormatFixed(char* pszDst, size_t nSize, double fValue, int nDecimals);
std::string QSFixedText(double fValue, int nDecimals);

// A text by a printf format, of any length.
std::string QSFormat(const char* pszFormat, ...) __attribute__((format(printf, 1, 2)));
