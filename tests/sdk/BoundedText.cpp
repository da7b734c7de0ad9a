#include "qsstrutils.h"
#include "sdk/AssertCatcher.h"

#include <clocale>
#include <cstring>

TEST(BoundedText, CopyFillsCutsAndReports)
{
    CAssertCatcher catcher;
    char sz[10];
    std::memset(sz, 'x', sizeof sz);
    QSStrCpy(sz, "abc", sizeof sz);
    EXPECT_EQ(0, std::memcmp(sz, "abc\0\0\0\0\0\0", 10));
    EXPECT_EQ(0u, catcher.GetCount());

    QSStrCpy(sz, "0123456789", sizeof sz);
    EXPECT_STREQ("012345678", sz);
    EXPECT_EQ("nBufferChars > QSStrLen(pSrc)|QSStrCpy : Copy source is truncated", catcher.Take());
    QSStrCpy(sz, nullptr, sizeof sz);
    EXPECT_STREQ("", sz);
    EXPECT_EQ(" [Forced Assert]|QSStrCpy: Invalid source string provided", catcher.Take());
    sz[0] = 'k';
    QSStrCpy(sz, "a", 0);
    QSStrCpy(nullptr, "a", 4);
    EXPECT_EQ('k', sz[0]);
    EXPECT_EQ(2u, catcher.GetCount());
    EXPECT_EQ(" [Forced Assert]|QSStrCpy: Invalid destination buffer provided", catcher.Take());
}

TEST(BoundedText, AppendStaysInItsBuffer)
{
    CAssertCatcher catcher;
    char sz[8] = "abc";
    QSStrCat(sz, "defg", sizeof sz);
    EXPECT_STREQ("abcdefg", sz);
    EXPECT_EQ(0u, catcher.GetCount());
    QSStrCat(sz, "h", sizeof sz);
    EXPECT_STREQ("abcdefg", sz);
    EXPECT_EQ("catLen >= QSStrLen(pSrc)|QSStrCat : Copy source is truncated", catcher.Take());

    char full[9] = {'a', 'b', 'c', 'd', 'Z', 'Z', 'Z', 'Z', 'Z'};
    QSStrCat(full, "", 4); // no NUL in its size
    EXPECT_EQ(0, std::memcmp(full, "abc\0ZZZZZ", 9));
    EXPECT_EQ("catLen >= QSStrLen(pSrc)|QSStrCat : Copy source is truncated", catcher.Take());
    QSStrCat(full, nullptr, 4);
    EXPECT_EQ(" [Forced Assert]|QSStrCat: Invalid source string provided", catcher.Take());
    QSStrCat(nullptr, "a", 4);
    EXPECT_EQ(" [Forced Assert]|QSStrCat: Invalid destination buffer provided", catcher.Take());
}

TEST(BoundedText, FormatTellsWhatDidNotFit)
{
    CAssertCatcher catcher;
    char sz[5];
    EXPECT_EQ(4, QSSNPrintF(sz, sizeof sz, "%d", 1234));
    EXPECT_EQ(5, QSSNPrintF(sz, sizeof sz, "%d", 12345)); // its size: the count, the last byte cut
    EXPECT_STREQ("1234", sz);
    EXPECT_EQ(-1, QSSNPrintF(sz, sizeof sz, "%d", 123456));
    EXPECT_STREQ("1234", sz);
    EXPECT_EQ(0u, catcher.GetCount());
    const char* pszNull = nullptr;
    EXPECT_EQ(0, QSSNPrintF(sz, sizeof sz, pszNull, 1));
    EXPECT_STREQ("", sz);
    EXPECT_EQ(" [Forced Assert]|QSVSNPrintF: Invalid source string provided", catcher.Take());
    EXPECT_EQ(-1, QSSNPrintF(sz, 0, "%d", 1));
    EXPECT_EQ(" [Forced Assert]|QSVSNPrintF: Invalid destination buffer provided", catcher.Take());
}

TEST(BoundedText, CompareFoldsOnlyPlainLetters)
{
    CAssertCatcher catcher;
    EXPECT_EQ(0, QSStrICmp("Fx00A", "fX00a"));
    EXPECT_TRUE(QSStrIEquals("", ""));
    EXPECT_LT(QSStrICmp("_", "Z"), 0); // folded down, so that "_" stands before the letters
    EXPECT_GT(QSStrICmp("\xC4", "a"), 0);
    EXPECT_NE(0, QSStrICmp("\xC4", "\xE4"));
    EXPECT_LT(QSStrICmp("ab", "abc"), 0);
    EXPECT_EQ(-1, QSStrCmp("A", "a"));
    EXPECT_EQ(1, QSStrCmp("\x80", "a"));
    EXPECT_EQ(0u, catcher.GetCount());

    EXPECT_EQ(0, QSStrCmp(nullptr, nullptr));
    EXPECT_EQ("pszStr1 && pszStr2|Error: Invalid input to QSStrCmp", catcher.Take());
    EXPECT_LT(QSStrICmp(nullptr, ""), 0);
    EXPECT_GT(QSStrICmp("", nullptr), 0);
    EXPECT_EQ("pszStr1 && pszStr2|Error: Invalid input to QSStrICmp", catcher.Take());
}

TEST(BoundedText, ExtensionEndsAtASeparator)
{
    const std::pair<const char*, int32_t> cases[] = {{"a.b.Fx00a", 4}, {"d.x/name", -1}, {"d.x\\name", -1},
                                                     {".x", 1},        {"x.", 2},        {"name", -1},
                                                     {"", -1},         {nullptr, -1}};
    for (const auto& [pszPath, nIndex] : cases)
        EXPECT_EQ(nIndex, FindExtension(pszPath)) << (pszPath ? pszPath : "null");
}

TEST(BoundedText, NumberedPlaces)
{
    EXPECT_EQ("Cannot find '%1!s!'", FormatNumbered("Cannot find '%1!s!'", {"%1!s!"})); // not scanned again
    EXPECT_EQ("b a|100%|\r\n", FormatNumbered("%2!d! %1|100%%|%n%3!s!", {"a", "b"}));
    EXPECT_EQ("a!x a%", FormatNumbered("%1!x %1!d!%", {"a"}));
    EXPECT_EQ("", FormatNumbered(nullptr, {}));
    EXPECT_EQ(c_nMaxNumberedText, FormatNumbered("%1%1", {std::string(50000, 'x')}).size());
}
