#include "qsnumber.h"
#include "qsstrutils.h"

#include <bit>
#include <clocale>
#include <cmath>
#include <cstring>
#include <random>

namespace
{

// Runs under a locale with a decimal comma where the machine has one; every case holds under both.
class Numbers : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* pszName : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE"})
        {
            if (std::setlocale(LC_ALL, pszName))
                return;
        }
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

} // namespace

TEST_F(Numbers, FixedTextEqualsPrintf)
{
    std::mt19937_64 random(7);
    std::vector<double> values{0.0, -0.0, 0.5, 1.5, 2.5, 0.125, 5e-7, 1.5e-6, 1e15, 1e22, 5e-324, 9.9999995};
    values.insert(values.end(),
                  {INFINITY, -INFINITY, NAN, -NAN, 1.7976931348623157e308, 0x1p63, 0x1p64, 0x1p53 + 1});
    for (int n = 0; n < 30000; ++n)
    {
        values.push_back(std::bit_cast<double>(random()));
        values.push_back(double(std::bit_cast<float>(uint32_t(random()))));
        values.push_back(double(int64_t(random())) / 9.0e12);
        values.push_back(double(int32_t(random())) / 128.0); // many ties
    }
    std::vector<std::string> texts;
    for (size_t n = 0; n < values.size(); ++n)
        texts.push_back(QSFixedText(values[n], n % 2 ? 6 : int(n / 2 % 13)));
    std::setlocale(LC_ALL, "C"); // the library's own words there are the measure
    for (size_t n = 0; n < values.size(); ++n)
    {
        char sz[512];
        std::snprintf(sz, sizeof sz, "%.*f", n % 2 ? 6 : int(n / 2 % 13), values[n]);
        ASSERT_EQ(sz, texts[n]);
    }
    char szShort[6];
    EXPECT_EQ(5u, QSFormatFixed(szShort, sizeof szShort, -12.345, 6));
    EXPECT_STREQ("-12.3", szShort);
}

TEST_F(Numbers, TextToDoubleIsCorrectlyRounded)
{
    std::mt19937_64 random(11);
    for (int n = 0; n < 30000; ++n)
    {
        char sz[64];
        const double f = std::bit_cast<double>(random());
        std::setlocale(LC_ALL, "C");
        if (n % 3 == 0)
            std::snprintf(sz, sizeof sz, "%.*e", int(random() % 20), f);
        else
            std::snprintf(sz, sizeof sz, "%.*f", int(random() % 20), double(int64_t(random())) / 1e12);
        if (std::isfinite(f))
        {
            ASSERT_EQ(std::strtod(sz, nullptr), QSTextToDouble(sz)) << sz;
        }
    }
    SetUp();
    for (const char* psz : {"", ".", "-", "+-1", "e5", "inf", "nan", "0x10", "1e-400", "0e999999999"})
        EXPECT_EQ(0.0, QSTextToDouble(psz)) << psz;
    for (const char* psz :
         {"1,5", "1e", "1e+", "+1.", " \t\n\v\f\r1x", "0.000000000000000000000000000001e30"})
        EXPECT_EQ(1.0, QSTextToDouble(psz)) << psz;
    EXPECT_EQ(0.0, QSTextToDouble(nullptr));
    EXPECT_EQ(-0.25, QSTextToDouble("-.25"));
    EXPECT_EQ(0.2, QSTextToDouble("2E-1"));
    EXPECT_EQ(5e-324, QSTextToDouble("4.9e-324"));
    EXPECT_EQ(HUGE_VAL, QSTextToDouble("1e400"));
    EXPECT_EQ(-HUGE_VAL, QSTextToDouble("-1e99999999999999999999"));
    EXPECT_TRUE(std::signbit(QSTextToDouble("-0")));
    EXPECT_EQ(HUGE_VAL, QSTextToDouble((std::string(400, '9') + ".5").c_str()));
    EXPECT_EQ(0.1, QSTextToDouble(("0.1" + std::string(5000, '0')).c_str()));
    EXPECT_EQ(0.0, QSTextToDouble(("0." + std::string(5000, '0') + "1").c_str()));
    EXPECT_EQ(std::numeric_limits<float>::max(), QSTextToFloat("1e39")); // the nearest that there is
    EXPECT_EQ(-std::numeric_limits<float>::max(), QSTextToFloat("-1e400"));
    EXPECT_EQ(0.0f, QSNearestFloat(NAN));
    EXPECT_EQ(16777216.0f, QSTextToFloat("16777217"));
}

TEST_F(Numbers, TextToIntWrapsAt32Bits)
{
    for (const char* psz : {"", "- 5", "--5", "x1", "\xA0", "4294967296"})
        EXPECT_EQ(0, QSTextToInt(psz)) << psz;
    for (const char* psz : {"2147483648", "-2147483648", "+2147483648.9"})
        EXPECT_EQ(INT32_MIN, QSTextToInt(psz)) << psz;
    EXPECT_EQ(0, QSTextToInt(nullptr));
    EXPECT_EQ(-12, QSTextToInt(" \v-12abc"));
}

TEST_F(Numbers, WhatIsTypedTakesTheNearestEnd)
{
    for (const char* psz : {"2147483647", "2147483648", "4294967296x", "99999999999999999999999999"})
        EXPECT_EQ(INT32_MAX, QSTextToNearestInt(psz)) << psz;
    for (const char* psz : {"-2147483648", " -2147483649", "-99999999999999999999999999"})
        EXPECT_EQ(INT32_MIN, QSTextToNearestInt(psz)) << psz;
    for (const char* psz : {"", "- 5", "x1"})
        EXPECT_EQ(0, QSTextToNearestInt(psz)) << psz;
    EXPECT_EQ(0, QSTextToNearestInt(nullptr));
    EXPECT_EQ(-2147483647, QSTextToNearestInt("\t-2147483647.9"));

    int64_t nWhole = 7;
    for (const char* psz : {"", " ", "-", "1 2", "1.", "--1", "+-1", "0x1", "9223372036854775808"})
        EXPECT_FALSE(QSParseInt(psz, nWhole)) << psz;
    EXPECT_EQ(7, nWhole);
    EXPECT_TRUE(QSParseInt(" +12\n", nWhole) && nWhole == 12);
    EXPECT_TRUE(QSParseInt("-4294967296", nWhole) && nWhole == -4294967296);

    float fValue = 7.0f;
    for (const char* psz : {"", "1x", "1e", "1 2", "inf", "3.4028236e38", "1e400"})
        EXPECT_FALSE(QSParseFloat(psz, fValue)) << psz;
    EXPECT_EQ(7.0f, fValue);
    EXPECT_TRUE(QSParseFloat("3.4028235e38", fValue) && fValue == std::numeric_limits<float>::max());
    EXPECT_TRUE(QSParseFloat(" -.5e1 ", fValue) && fValue == -5.0f);
}

TEST_F(Numbers, FormatsKeepTheDecimalPoint)
{
    char sz[16];
    QSSNPrintF(sz, sizeof sz, "%6.4f", 0.5);
    EXPECT_STREQ("0.5000", sz);
    EXPECT_EQ("0.25|-3|a", QSFormat("%.2f|%d|%s", 0.25, -3, "a"));
    const std::string sLong(2000, 'x');
    EXPECT_EQ(sLong + "7", QSFormat("%s%u", sLong.c_str(), 7u));
}
