#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Bounded text helpers over NUL-terminated bytes. None writes outside the size that it is given, each leaves
// the buffer terminated, and misuse is reported as an assertion. nBufferChars is the whole size of the buffer
// in bytes, the NUL included. None looks at the process locale.

// Copies src and fills the rest of the buffer with zeros. A source that doesn't fit is reported and cut; a
// null source is reported and counts as empty; a null dst or a size of zero is reported and nothing is done.
void QSStrCpy(char* pszDst, const char* pszSrc, uint32_t nBufferChars);

// Appends src behind the text in dst, under the same rules. A dst without a NUL in its size counts as full.
void QSStrCat(char* pszDst, const char* pszSrc, uint32_t nBufferChars);

// Formats as printf does, always with a decimal point. The result is the length of the whole text, also when
// it is exactly the buffer's size and its last byte gave way to the NUL; -1 when it is longer, or when dst is
// null or the size zero (both reported). A null format is reported and counts as empty.
int32_t QSVSNPrintF(char* pszDst, uint32_t nBufferChars, const char* pszFormat, va_list args)
    __attribute__((format(printf, 3, 0)));
int32_t QSSNPrintF(char* pszDst, uint32_t nBufferChars, const char* pszFormat, ...)
    __attribute__((format(printf, 3, 4)));

// Compares bytes as unsigned: -1, 0 or 1. A null is reported; it is less than any text and equal to another
// null.
int32_t QSStrCmp(const char* pszStr1, const char* pszStr2);

// The same without regard to case: less than, equal to or greater than zero. Only the letters A to Z are
// folded, to lower case, so that file names and keywords compare alike under every locale.
int32_t QSStrICmp(const char* pszStr1, const char* pszStr2);
bool QSStrIEquals(const char* pszStr1, const char* pszStr2);

// Index of the first byte of the path's extension, behind the dot; -1 when its last component has no dot, and
// for a null or empty path. Both separators end the search.
int32_t FindExtension(const char* pszPath);

// Without the blanks at both ends: spaces, and tab to carriage return.
std::string_view QSTrim(std::string_view sText);

// At most nMaxBytes of a text, cut at a whole UTF-8 character. Text in another code page is cut at bytes.
std::string CutAtCharacter(std::string_view sText, size_t nMaxBytes);

// Fills the numbered places of a text: %1 to %99, with or without a format part as in %1!s!, take the
// argument of that number, %% is a percent sign, %n a line end (CR LF), %0 ends the text. A number without an
// argument gives nothing. Arguments are inserted as they are and not scanned again. The result is cut at
// c_nMaxNumberedText bytes.
constexpr uint32_t c_nMaxNumberedText = 65535;
std::string FormatNumbered(const char* pszText, const std::vector<std::string>& args);
