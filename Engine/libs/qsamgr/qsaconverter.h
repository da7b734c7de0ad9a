#pragma once

#include <cstdint>

// Integers as the decimal text that node files hold, and back.
class CQSAConverter
{
public:
    // Skips white space (0x09 to 0x0D, blank), takes one sign, then digits up to the first other byte; what
    // follows is ignored. No digit gives 0, and so does a null. The value wraps at 32 bits.
    static int32_t StrToInt(const char* pszValue);

    // Writes the number and a NUL into nBufferLen bytes, and gives the number of characters stored without
    // the NUL. A buffer that is too small keeps the leading characters; 12 bytes hold every number. A null
    // buffer or a size of 0 is reported and gives 0.
    static uint32_t IntToStr(int32_t nValue, char* pszBuffer, uint32_t nBufferLen);
};
