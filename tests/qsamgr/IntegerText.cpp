#include "qsamgr/qsaconverter.h"

#include <cstdint>
#include <gtest/gtest.h>

TEST(IntegerText, ReadsNumbers)
{
    struct CCase
    {
        const char* m_pszText;
        int32_t m_nValue;
    };
    for (const CCase& c : {CCase{"12", 12},
                           {"  -7", -7},
                           {"\t\n\v\f\r +5", 5},
                           {"- 5", 0},
                           {"+-5", 0},
                           {"abc", 0},
                           {"12abc", 12},
                           {"1.5", 1},
                           {"", 0},
                           {"   ", 0},
                           {"-", 0},
                           {"\xA0"
                            "5",
                            0},
                           {"5\xFF", 5},
                           {"2147483647", INT32_MAX},
                           {"-2147483648", INT32_MIN},
                           {"4294967297", 1},
                           {"2147483648", INT32_MIN}})
        EXPECT_EQ(c.m_nValue, CQSAConverter::StrToInt(c.m_pszText)) << c.m_pszText;
}

TEST(IntegerText, WritesNumbersIntoAnyBuffer)
{
    struct CCase
    {
        int32_t m_nValue;
        uint32_t m_nSize;
        const char* m_pszText;
    };
    for (const CCase& c : {CCase{0, 2, "0"},
                           {-10, 128, "-10"},
                           {12345, 4, "123"},
                           {12345, 6, "12345"},
                           {12345, 1, ""},
                           {-5, 1, ""},
                           {-5, 2, "-"},
                           {INT32_MIN, 12, "-2147483648"},
                           {INT32_MIN, 11, "-214748364"},
                           {INT32_MAX, 12, "2147483647"},
                           {1000000000, 12, "1000000000"}})
    {
        char szBuffer[130];
        std::fill(std::begin(szBuffer), std::end(szBuffer), '#');
        EXPECT_EQ(std::string(c.m_pszText).size(), CQSAConverter::IntToStr(c.m_nValue, szBuffer, c.m_nSize));
        EXPECT_STREQ(c.m_pszText, szBuffer);
        EXPECT_EQ('#', szBuffer[c.m_nSize]) << "the byte behind the buffer";
    }
    EXPECT_EQ(0u, CQSAConverter::IntToStr(1, nullptr, 8));
}
